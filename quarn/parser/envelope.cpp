// The envelope of a message: transaction id, group number, abort-on-error, body, CRC and end byte;
// the classification of a complete message, and the record made of it.
#include "quarn/parser/engine.h"

#include "quarn/foundation/messages.h"
#include "quarn/foundation/tl.h"

#include <algorithm>
#include <cstring>

using namespace quarn::detail;

const cSMLP::Layout cSMLP::Tables::kMessage{aMessage,
                                            6,
                                            {RC_MSG_TYPE, "SmlMsg: ERROR: Seq-Type, smlp[%d]"},
                                            {RC_MSG_COUNT, "SmlMsg: ERROR: Seq-Len, smlp[%d]"},
                                            {}};
const cSMLP::Field cSMLP::Tables::aMessage[] = {
    Field::Octets(SML_MAX_TRANSACTION_ID)
        .Refused({RC_TRANSACTION_ID_TYPE, "tId: ERROR: Type, smlp[%d]"},
                 {RC_TRANSACTION_ID_LENGTH, "tId: ERROR: Len, smlp[%d]"})
        .Kept(label::transactionId, KIND_DATA, Keep::Always)
        .Then(&cSMLP::KeepTransactionId),
    Field::Number(TLF_UNSIGNED, 1, 1)
        .Refused({RC_GROUP_NO_TYPE, "grpNo: ERROR: Type, smlp[%d]"},
                 {RC_GROUP_NO_LENGTH, "grpNo: ERROR: Len, smlp[%d]"})
        .Kept(label::groupNo, KIND_UINT, Keep::Always)
        .Then(&cSMLP::KeepGroupNo),
    Field::Number(TLF_UNSIGNED, 1, 1)
        .Refused({RC_ABORT_ON_ERROR_TYPE, "abortOnError: ERROR: Type, smlp[%d]"},
                 {RC_ABORT_ON_ERROR_LENGTH, "abortOnError: ERROR: Len, smlp[%d]"})
        .Kept(label::abortOnError, KIND_UINT, Keep::Always)
        .Then(&cSMLP::CheckAbortOnError),
    Field::Structure(kMessageBody).ReadBy(&cSMLP::ReadBody),
    Field::Of(&cSMLP::ReadCrc),
    Field::Of(&cSMLP::ReadEnd),
};

const cSMLP::Layout cSMLP::Tables::kMessageBody{aMessageBody,
                                                2,
                                                {RC_BODY_TYPE, "%s:Seq-Type!, smlp[%d]"},
                                                {RC_BODY_COUNT, "%s:Seq-Cnt!, smlp[%d]"},
                                                {},
                                                "SmlMsgBody"};
const cSMLP::Field cSMLP::Tables::aMessageBody[] = {
    Field::Number(TLF_UNSIGNED, 0, 4)
        .Refused({RC_TAG_TYPE, "MsgBody:Choice-Type, smlp[%d]"},
                 {RC_TAG_LENGTH, "MsgBody:Choice-Len, smlp[%d]"})
        .Then(&cSMLP::CheckMsgIdentifier),
    Field::Of(&cSMLP::ReadBody),
};

int cSMLP::KeepTransactionId()
{
    transactionId.Set(pucString, uiStringLen);
    return RC_DONE;
}

int cSMLP::KeepGroupNo()
{
    ucGroupNo = static_cast<unsigned char>(ullInteger);
    return RC_DONE;
}

int cSMLP::CheckAbortOnError()
{
    ucAbortOnError = static_cast<unsigned char>(ullInteger);
    if (ucAbortOnError <= 0x02 || ucAbortOnError == 0xFF)
        return RC_DONE;
    uiMsgIdentifier = uiMsgNo == 1 ? unsigned{SML_OPEN_REQ} : 0U;
    return Refuse({RC_ABORT_ON_ERROR_VALUE, "abortOnError: ERROR: Value, smlp[%d]"});
}

// The header tells the tag as it came; a message with an unknown one is taken for the open request
// when it is the first of its file.
int cSMLP::CheckMsgIdentifier()
{
    uiMsgIdentifier = static_cast<std::uint32_t>(ullInteger);
    Target().AppendUIntPar(label::smlMsgIdentifier, uiMsgIdentifier, 0);
    pBodyLayout = Tables::FindBody(uiMsgIdentifier);
    recBody.Create();
    if (pBodyLayout != nullptr)
        return RC_DONE;
    uiMsgIdentifier = uiMsgNo == 1 ? unsigned{SML_OPEN_REQ} : 0U;
    return Refuse({RC_TAG_VALUE, "SmlMsgBody:Choice-Value!, smlp[%d]"});
}

// Of the message: the choice, whose tag goes into the header. Of the choice: the body that the tag
// selected.
int cSMLP::ReadBody(const Field& field)
{
    if (field.pLayout != nullptr)
        return Enter(*field.pLayout, false, &rec_SmlMsgHeader);
    return Enter(*pBodyLayout, false, &recBody);
}

int cSMLP::ReadCrc(const Field&)
{
    if (usFieldState == 0) {
        if (StoreFree() < 2)
            return RC_STORE_FULL;
        if (pucInData == pucInEnd)
            return RC_INPUT_EMPTY;
        const auto used = static_cast<int>(StoreUsed());
        usCrcMsg = vorn::createCRC16(StoreBytes(), used, usCrcCalc);
        const unsigned b = *pucInData++;
        if (b != (kTlUnsigned | 3U) && b != (kTlUnsigned | 2U))
            return Refuse({RC_CRC_TYPE, "SmlMsg: CRC: Type-Error: Byte=0x%02x, smlp[%d]"}, b);
        uiTLF_Type = TLF_UNSIGNED;
        uiTLF_Count = (b & kTlLengthMask) - 1;
        usFieldState = 1;
    }
    const int rc = Parse_IntegerTypes(uiTLF_Count);
    if (rc == RC_DONE) {
        usCrcRcv = static_cast<std::uint16_t>(ullInteger);
        usFieldState = 0;
    }
    return rc;
}

int cSMLP::ReadEnd(const Field&) { return Parse_EndOfSmlMsg(); }

// ---- Classification

void cSMLP::SmlMsg_Validate() noexcept
{
    const auto cast = [](const auto& id) {
        return IsMucBroadcast(id.acData.data(), id.uiLen) ? 0 : 2;
    };
    if (uiMsgIdentifier == SML_OPEN_REQ)
        iFileCast = iCast = cast(openServerId);
    else
        iCast = uiMsgIdentifier == SML_CLOSE_REQ ? -1 : cast(msgServerId);
    iType = static_cast<int>(uiMsgIdentifier & 1U);
}

bool cSMLP::IsMucBroadcast(const char* id, unsigned int len) noexcept
{
    return len == 0 || ((len == 6 || len == 7) &&
                        std::all_of(id, id + len, [](char c) { return c == '\xFF'; }));
}

bool cSMLP::IsMucUnicast(const char* id, unsigned int len) noexcept
{
    static constexpr char kOwnId[] = {5, 0, 0, 0, 0, 0, 0};
    return (len == 6 || len == 7) && std::memcmp(id, kOwnId + sizeof kOwnId - len, len) == 0;
}

bool cSMLP::IsMucMulticast(const char* id, unsigned int len) noexcept
{
    if (len != 6 && len != 7)
        return false;
    const char* const group = id + (len - 6);
    return group[0] == 0x01 && group[1] == 0x00 && group[2] == 0x5E &&
           static_cast<unsigned char>(group[3]) < 0x80;
}

bool cSMLP::Addressed_2_Us(int) noexcept { return true; }

void cSMLP::Reverse_OctetString(char* s, int n) noexcept
{
    if (n > 0)
        std::reverse(s, s + n);
}

void cSMLP::ReverseCopy_OctetString(const char* src, int n, char* dst) noexcept
{
    if (n > 0)
        std::reverse_copy(src, src + n, dst);
}

// ---- The record

// Fills recSmlMsg for a whole message or a packet, whose body is given; -1 when the message has no
// identifier that the parser knows: the record then ends with the header.
int cSMLP::Build_MsgRecord(const vorn::cRecord& body)
{
    const auto data = [this](const char* name, const auto& bytes) {
        rec_SmlMsgHeader.AppendDataPar(name, bytes.acData.data(), static_cast<int>(bytes.uiLen), 0);
    };
    recSmlMsg.Create();
    if (uiPaketNo > 1) { // the header was emptied with the first packet
        data(label::transactionId, transactionId);
        rec_SmlMsgHeader.AppendUIntPar(label::groupNo, ucGroupNo, 0);
        rec_SmlMsgHeader.AppendUIntPar(label::abortOnError, ucAbortOnError, 0);
        rec_SmlMsgHeader.AppendUIntPar(label::smlMsgIdentifier, uiMsgIdentifier, 0);
    }
    data(label::openCid, openClientId);
    data(label::openRfid, openReqFileId);
    data(label::openSid, openServerId);
    data(label::openTid, openTransactionId);
    rec_SmlMsgHeader.AppendUIntPar(label::openGNo, ucOpenGroupNo, 0);
    rec_SmlMsgHeader.AppendUIntPar(label::openAOE, ucOpenAbortOnError, 0);
    recSmlMsg.AppendRecordPar(label::SmlMsgHeader, rec_SmlMsgHeader, 0);

    const MessageKind* const kind = FindMessageKind(uiMsgIdentifier);
    if (kind == nullptr) {
        Say(kError, "BuildMsgRecord:UNKNOWN MsgIdentifier!, smlp[%d]");
        return -1;
    }
    recSmlMsg.AppendRecordPar(kind->pcBodyLabel, body, 0);
    recSmlMsg.AppendUIntPar(label::SmlCrc, bPaket ? usCrcCalc : usCrcRcv, 0);

    recSmlStatus.AppendSIntPar(label::Error, iError, 0);
    recSmlStatus.AppendSIntPar(label::Type, iType, 0);
    recSmlStatus.AppendSIntPar(label::Cast, iCast, 0);
    recSmlStatus.AppendUIntPar(label::MsgNoInFile, uiMsgNo, 0);
    recSmlMsg.AppendRecordPar(label::SmlStatus, recSmlStatus, 0);
    recSmlMsg.AppendUIntPar(label::SmltFlags, uiSmltFlagsOut, 0);
    if (Traces(LibSmlp, kDetail)) {
        if (iError != 0)
            Say(kDetail, "recSmlMsg= %s, smlp[%d]", recSmlMsg.ToString2(0, 0).c_str());
        else
            Say(kDetail, "rec_SmlMsgHeader= %s, smlp[%d]", rec_SmlMsgHeader.ToString().c_str());
    }
    const auto used = static_cast<int>(StoreUsed());
    recSmlMsg.AppendDataPar(label::SmlMsgRawData, StoreBytes(), used, 0);
    rec_SmlMsgHeader.Create();
    recSmlStatus.Create();
    return 0;
}
