// The envelope of a message: transaction id, group number, abort-on-error, body, CRC and end byte;
// the classification of a complete message, and the record made of it.
#include "quarn/parser/take.h"

#include "quarn/foundation/tl.h"

#include <algorithm>
#include <cstring>

using namespace quarn::detail;
namespace schema = quarn::schema;

namespace
{

// The id of a MUC: its address, mostly with a byte before it that tells what kind of id it is.
constexpr unsigned kMucAddressSize = 6;
constexpr unsigned kMucIdSize = 1 + kMucAddressSize;

constexpr bool IsMucIdSize(unsigned len) { return len == kMucAddressSize || len == kMucIdSize; }

} // namespace

constexpr std::array<cSMLP::Field, 6> cSMLP::Tables::aMessage =
    Fields(schema::aMessage,
           {
               Field::Octets()
                   .Refused({RC_TRANSACTION_ID_TYPE, "tId: ERROR: Type, smlp[%d]"},
                            {RC_TRANSACTION_ID_LENGTH, "tId: ERROR: Len, smlp[%d]"})
                   .Kept(Keep::Always)
                   .Then(&cSMLP::KeepTransactionId),
               Field::Number()
                   .Refused({RC_GROUP_NO_TYPE, "grpNo: ERROR: Type, smlp[%d]"},
                            {RC_GROUP_NO_LENGTH, "grpNo: ERROR: Len, smlp[%d]"})
                   .Kept(Keep::Always)
                   .Then(&cSMLP::KeepGroupNo),
               Field::Number()
                   .Refused({RC_ABORT_ON_ERROR_TYPE, "abortOnError: ERROR: Type, smlp[%d]"},
                            {RC_ABORT_ON_ERROR_LENGTH, "abortOnError: ERROR: Len, smlp[%d]"})
                   .Kept(Keep::Always)
                   .Then(&cSMLP::CheckAbortOnError),
               Field::Structure(kMessageBody).ReadBy(&cSMLP::ReadBody),
               Field::Of(&cSMLP::ReadCrc),
               Field::Of(&cSMLP::ReadEnd),
           });
const cSMLP::Layout cSMLP::Tables::kMessage = Layout{
    aMessage.data(),
    aMessage.size(),
    {RC_MSG_TYPE, "SmlMsg: ERROR: Seq-Type, smlp[%d]"},
    {RC_MSG_COUNT, "SmlMsg: ERROR: Seq-Len, smlp[%d]"},
    {}}.TakenBy(&cSMLP::TakeFields<aMessage>);

constexpr std::array<cSMLP::Field, 2> cSMLP::Tables::aMessageBody = {
    Field::Number()
        .Refused({RC_TAG_TYPE, "MsgBody:Choice-Type, smlp[%d]"},
                 {RC_TAG_LENGTH, "MsgBody:Choice-Len, smlp[%d]"})
        .Then(&cSMLP::CheckMsgIdentifier)
        .Over(schema::aMsgHeader[3]),
    Field::Of(&cSMLP::ReadBody),
};
const cSMLP::Layout cSMLP::Tables::kMessageBody = Layout{aMessageBody.data(),
                                                         aMessageBody.size(),
                                                         {RC_BODY_TYPE, "%s:Seq-Type!, smlp[%d]"},
                                                         {RC_BODY_COUNT, "%s:Seq-Cnt!, smlp[%d]"},
                                                         {},
                                                         "SmlMsgBody"}
                                                      .TakenBy(&cSMLP::TakeFields<aMessageBody>);

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
    Target().AppendUIntPar(kLabel<label::smlMsgIdentifier>, uiMsgIdentifier, 0);
    pBodyLayout = Tables::FindBody(uiMsgIdentifier);
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
        return Enter(*field.pLayout, false, true, false);
    builder.Open(); // not the structure's own: it stays open when the body has been read
    builder.Expect(pBodyLayout->uiCount);
    return Enter(*pBodyLayout, false, true, false);
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
    return len == 0 ||
           (IsMucIdSize(len) && std::all_of(id, id + len, [](char c) { return c == '\xFF'; }));
}

bool cSMLP::IsMucUnicast(const char* id, unsigned int len) noexcept
{
    static constexpr char kOwnId[kMucIdSize] = {5, 0, 0, 0, 0, 0, 0};
    return IsMucIdSize(len) && std::memcmp(id, kOwnId + sizeof kOwnId - len, len) == 0;
}

bool cSMLP::IsMucMulticast(const char* id, unsigned int len) noexcept
{
    if (!IsMucIdSize(len))
        return false;
    const char* const group = id + (len - kMucAddressSize);
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

namespace
{

// Levels of the builder.
constexpr std::size_t kHeader = 0;
constexpr std::size_t kBody = 1;

template <typename Record, typename Bytes>
void AppendBytes(Record& record, const Label& name, const Bytes& bytes)
{
    record.AppendDataPar(name, bytes.acData.data(), static_cast<int>(bytes.uiLen), 0);
}

} // namespace

template <typename Record>
void cSMLP::AppendOpenData(Record& header) const
{
    AppendBytes(header, kLabel<label::openCid>, openClientId);
    AppendBytes(header, kLabel<label::openRfid>, openReqFileId);
    AppendBytes(header, kLabel<label::openSid>, openServerId);
    AppendBytes(header, kLabel<label::openTid>, openTransactionId);
    header.AppendUIntPar(kLabel<label::openGNo>, ucOpenGroupNo, 0);
    header.AppendUIntPar(kLabel<label::openAOE>, ucOpenAbortOnError, 0);
}

template <typename Record>
void cSMLP::AppendStatus(Record& status) const
{
    status.AppendSIntPar(kLabel<label::Error>, iError, 0);
    status.AppendSIntPar(kLabel<label::Type>, iType, 0);
    status.AppendSIntPar(kLabel<label::Cast>, iCast, 0);
    status.AppendUIntPar(kLabel<label::MsgNoInFile>, uiMsgNo, 0);
}

// All but the raw data. False when the message has no identifier that the parser knows: the record
// then ends with the header.
template <typename Record, typename Part>
bool cSMLP::AppendParts(Record& message, const Part& header, const Part& body,
                        const Part& status) const
{
    message.AppendRecordPar(kLabel<label::SmlMsgHeader>, header, 0);
    const Layout* const layout = Tables::FindBody(uiMsgIdentifier);
    if (layout == nullptr) {
        Say(kError, "BuildMsgRecord:UNKNOWN MsgIdentifier!, smlp[%d]");
        return false;
    }
    message.AppendRecordPar(layout->label, body, 0);
    message.AppendUIntPar(kLabel<label::SmlCrc>, bPaket ? usCrcCalc : usCrcRcv, 0);
    message.AppendRecordPar(kLabel<label::SmlStatus>, status, 0);
    message.AppendUIntPar(kLabel<label::SmltFlags>, uiSmltFlagsOut, 0);
    return true;
}

void cSMLP::TellRecord(const vorn::cRecord& message, const vorn::cRecord& header) const
{
    if (iError != 0)
        Say(kDetail, "recSmlMsg= %s, smlp[%d]", message.ToString2(0, 0).c_str());
    else
        Say(kDetail, "rec_SmlMsgHeader= %s, smlp[%d]", header.ToString().c_str());
}

// The record of a message that came whole. What is still open inside its body is forgotten.
vorn::cRecord cSMLP::Build_MsgRecord()
{
    RecordBuilder::cPart body;
    while (builder.Levels() > kBody + 1)
        builder.Drop();
    if (HasBody())
        body = builder.Close();
    AppendOpenData(builder);
    const RecordBuilder::cPart header = builder.Close();
    builder.Open();
    AppendStatus(builder);
    const RecordBuilder::cPart status = builder.Close();
    builder.Open();
    builder.Expect(schema::kRecord.uiCount + 1);
    if (AppendParts(builder, header, body, status)) {
        if (Traces(LibSmlp, kDetail))
            TellRecord(builder.Copy(0), builder.Get(header));
        const auto used = static_cast<int>(StoreUsed());
        builder.AppendDataPar(kLabel<label::SmlMsgRawData>, StoreBytes(), used, 0);
    }
    return builder.Get(builder.Close());
}

// The record of a packet, or of the last part of a message in packets. The first has the header as
// it was read.
vorn::cRecord cSMLP::Build_PacketRecord(const vorn::cRecord& body)
{
    vorn::cRecord header;
    if (uiPaketNo == 1) {
        header = builder.Copy(kHeader);
    } else {
        AppendBytes(header, kLabel<label::transactionId>, transactionId);
        header.AppendUIntPar(label::groupNo, ucGroupNo, 0);
        header.AppendUIntPar(label::abortOnError, ucAbortOnError, 0);
        header.AppendUIntPar(label::smlMsgIdentifier, uiMsgIdentifier, 0);
    }
    AppendOpenData(header);
    vorn::cRecord status;
    AppendStatus(status);
    vorn::cRecord message;
    if (AppendParts(message, header, body, status)) {
        if (Traces(LibSmlp, kDetail))
            TellRecord(message, header);
        const auto used = static_cast<int>(StoreUsed());
        message.AppendDataPar(label::SmlMsgRawData, StoreBytes(), used, 0);
    }
    return message;
}

bool cSMLP::HasBody() const noexcept { return builder.Levels() > kBody; }

// The body as far as it has been read.
vorn::cRecord cSMLP::Body() const
{
    if (bBodyDone)
        return recBody;
    return HasBody() ? builder.Copy(kBody) : vorn::cRecord();
}
