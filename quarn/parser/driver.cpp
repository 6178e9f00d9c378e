// The driver: takes pieces of input, runs the parse of one message after the other, and hands out
// their records. Its three states:
//
//   IDLE    between messages
//   ACTIVE  inside a message, with input left
//   WAIT    inside a message, waiting for the next piece or the inter-character timeout
#include "quarn/parser/engine.h"

#include "quarn/foundation/frame_flags.h"

#include <algorithm>
#include <utility>

using namespace quarn::detail;
namespace schema = quarn::schema;

namespace
{

enum eSTATE : std::uint16_t { STATE_IDLE = 0, STATE_ACTIVE = 1, STATE_WAIT = 4 };

constexpr unsigned kInterCharacterTimeout = 0x01; // bit of usEvents

// What a step answers when the driver is to go on.
constexpr int kGoOn = 2;

// The message's frame stands at its last element: only the end byte is missing.
constexpr std::uint32_t kEndByteIndex = schema::kMessage.uiCount;

} // namespace

cSMLP::cSMLP(int Id) noexcept : iId(Id)
{
    Reset_MsgAttributes();
    Reset_FileAttributes();
    Say(kDetail, "SMLP created successfull, Id=%d");
}

cSMLP::~cSMLP() = default;

void cSMLP::TimeoutEvent() noexcept
{
    usEvents |= kInterCharacterTimeout;
    Say(kProgress, "TimerEvent: InterCharacterTo, Id=%d");
}

void cSMLP::SetMaxMessage(unsigned int bytes) noexcept
{
    uiMaxMessage = std::max({bytes, SML_MESSAGE_STORE, uiPaketBytes});
}

inline void cSMLP::StepWait(Records& out, int& count)
{
    if (InputLeft() != 0) {
        Say(kDetail, "WAIT->ACTIVE, smlp[%d]");
        usParserState = STATE_ACTIVE;
    } else if ((usEvents & kInterCharacterTimeout) != 0) {
        OnTimeout(out, count);
    }
    usEvents &= static_cast<std::uint16_t>(~kInterCharacterTimeout);
}

inline int cSMLP::StepActive(Records& out, int& count)
{
    usEvents = 0;
    const int rc = Walk();
    if (rc != RC_INPUT_EMPTY)
        return OnStop(rc, out, count);
    Say(kDetail, "State:WAIT -> Start IC-Timeout, smlp[%d]");
    usParserState = STATE_WAIT;
    return kGoOn;
}

inline int cSMLP::Drive(Records& out, int& count)
{
    do {
        int result = kGoOn;
        if (usParserState == STATE_WAIT)
            StepWait(out, count);
        else if (usParserState == STATE_IDLE)
            result = StepIdle();
        else if (usParserState != STATE_ACTIVE) {
            Say(kError, "Unknown State!, smlp[%d]");
            return SMLP_UNKNOWN_STATE;
        }
        if (result == kGoOn && usParserState == STATE_ACTIVE)
            result = StepActive(out, count);
        if (result != kGoOn)
            return result;
    } while (InputLeft() != 0 && usParserState != STATE_WAIT);
    return SMLP_OK;
}

int cSMLP::SmlParser(vorn::cRecord& in, std::map<int, vorn::cRecord>& out, int& count) noexcept
{
    try {
        RecordReader fields(in);
        const vorn::cRecordPar* par = fields.Find<label::SmltFlags>();
        if (par == nullptr || !IsOfKind(*par, KIND_UINT)) {
            Say(kError, "SMLT-Flags missing, smlp[%d]");
            return SMLP_BAD_PARAMETER;
        }
        uiSmltFlags = par->GetUInt();
        par = fields.Find<label::SmlRawData>();
        if (par == nullptr || !IsOfKind(*par, KIND_DATA)) {
            Say(kError, "SML-RawData missing, smlp[%d]");
            return SMLP_BAD_PARAMETER;
        }
        const auto* const piece = reinterpret_cast<const unsigned char*>(par->GetData());
        const auto size = static_cast<std::uint32_t>(par->GetSize());
        if (usParserState == STATE_WAIT && FeedPrimitive(piece, size))
            return SMLP_OK;
        pucRun = pucInData = piece;
        pucInEnd = piece + size;
        const int result = Drive(out, count);
        KeepRun(); // what belongs to an unfinished message
        pucInData = pucInEnd = pucRun = nullptr;
        return result;
    } catch (...) { // the framework's only exception: no memory
        pucInData = pucInEnd = pucRun = nullptr;
        Reset_MsgAttributes();
        Reset_FileAttributes();
        Say(kError, "Out of memory, smlp[%d]");
        return SMLP_OUT_OF_MEMORY;
    }
}

int cSMLP::StepIdle()
{
    const bool first = (uiSmltFlags & BUF_FLAG_FIRST) != 0;
    if (InputLeft() == 0) {
        if ((uiSmltFlags & BUF_FLAG_LAST) != 0) {
            Say(kProgress, "IDLE: no data, BUF_FLAG_LAST set, smlp[%d]");
            Reset_MsgAttributes();
            Reset_FileAttributes();
            return SMLP_OK;
        }
        if (uiSmltFlags == 0) {
            Say(kProgress, "IDLE: no data, no Flags set, smlp[%d]");
            return SMLP_OK;
        }
        if (first)
            Say(kProgress, "IDLE: no data, BUF_FLAG_FIRST set, smlp[%d]");
    }
    if (uiMsgNo == 1 && !first) {
        pucRun = pucInData = pucInEnd;
        Say(kError, "IDLE: wrong frame-order, flags=0x%04x, smlp[%d]", uiSmltFlags);
        return SMLP_WRONG_ORDER;
    }
    uiSmltFlagsOut = BUF_FLAG_SML;
    EmptyStore();
    builder.Open();
    builder.Expect(schema::kMsgHeader.uiCount);
    usParserState = STATE_ACTIVE;
    return kGoOn;
}

int cSMLP::OnStop(int rc, Records& out, int& count)
{
    switch (rc) {
    case RC_MESSAGE:
        return OnMessage(out, count);
    case RC_STORE_FULL:
    case RC_CHUNK:
        return OnPacket(rc, out, count);
    default:
        return OnError(rc, out, count);
    }
}

// Drops the message, or accepts a close message that lacks its last byte alone.
void cSMLP::OnTimeout(Records& out, int& count)
{
    if (schema::IsClose(uiMsgIdentifier) && uiDepth == 0 && aFrames[0].uiIndex == kEndByteIndex) {
        SmlMsg_Validate();
        ErrorHandler(RC_MSG_TYPE);
        ullFileSize += StoreUsed();
        Emit(out, count);
    }
    Reset_MsgAttributes();
    Say(kDetail, "IC-Timeout: WAIT->IDLE, smlp[%d]");
}

int cSMLP::OnMessage(Records& out, int& count)
{
    Say(kDetail, "MSG Ok, Id=0x%04x, No=%d, Len=%d, smlp[%d]", uiMsgIdentifier, uiMsgNo,
        StoreUsed());
    bPaket = false;
    const bool open = schema::IsOpen(uiMsgIdentifier);
    const bool close = schema::IsClose(uiMsgIdentifier);
    if (open && !bFileOpen)
        uiSmltFlagsOut |= BUF_FLAG_FIRST;
    if (close && bFileOpen)
        uiSmltFlagsOut |= BUF_FLAG_LAST;

    const auto swapped = static_cast<std::uint16_t>(usCrcRcv << 8 | usCrcRcv >> 8);
    if (usCrcMsg != usCrcRcv && usCrcMsg != swapped) {
        if (open && !bFileOpen)
            return OnOpenCrcError();
        if (!open) {
            Say(kError, "CRC-Error in ***.Req!, smlp[%d]");
            ErrorHandler(RC_CRC);
        }
    }
    if (open && bFileOpen) {
        --uiMsgNo;
        Say(kError, "Ignore multiple Open!, smlp[%d]");
    } else {
        SmlMsg_Validate();
        ullFileSize += StoreUsed();
        Emit(out, count);
        bFileOpen = bFileOpen || open;
    }
    if (close) {
        Say(kProgress, "FILE Ok, Size=%d Bytes, smlp[%d]", static_cast<unsigned>(ullFileSize));
        Reset_FileAttributes();
        Reset_MsgAttributes();
        return InputLeft() == 0 ? int{SMLP_FILE_COMPLETE} : kGoOn;
    }
    ++uiMsgNo;
    Reset_MsgAttributes();
    return kGoOn;
}

int cSMLP::OnOpenCrcError()
{
    Say(kError, "CRC-Error in SML_Open!, smlp[%d]");
    Reset_MsgAttributes();
    Reset_FileAttributes();
    pucRun = pucInData = pucInEnd;
    return SMLP_DECODING_ERROR;
}

// A part of the message is due to be handed out, so that its store has room again. A reader that
// asks for this with nothing in the store would never get on, and a message without bound would
// never end: both are refused.
int cSMLP::OnPacket(int rc, Records& out, int& count)
{
    const std::uint32_t used = StoreUsed();
    if (used == 0)
        return OnError(rc, out, count);
    if (used > uiMaxMessage - uiPaketBytes)
        return OnError(RC_MESSAGE_TOO_LONG, out, count);
    Say(kProgress, "** MsgNo=%d, PaketNo=%d, smlp[%d] **", uiMsgNo, uiPaketNo);
    bPaket = true;
    usCrcCalc = static_cast<std::uint16_t>(
        ~vorn::createCRC16(StoreBytes(), static_cast<int>(used), usCrcCalc));
    vorn::cRecord body = Body();
    AppendPacketTree(body);
    Store(Build_PacketRecord(body), out, count);
    ++uiPaketNo;
    uiPaketBytes += used;
    ullFileSize += used;
    usParserState = InputLeft() != 0 ? STATE_ACTIVE : STATE_WAIT;
    EmptyStore();
    return kGoOn;
}

int cSMLP::OnError(int rc, Records& out, int& count)
{
    Say(kError, "Decoding-Error: rc=%d, smlp[%d]", rc);
    ErrorHandler(rc);
    if (iError != SML_STATUS_IGNORE_FILE) {
        ullFileSize += StoreUsed();
        Emit(out, count);
    }
    Reset_MsgAttributes();
    Reset_FileAttributes();
    pucRun = pucInData;
    return SMLP_DECODING_ERROR;
}

// Hands out the message, or what is left of one in packets.
void cSMLP::Emit(Records& out, int& count)
{
    Store(uiPaketNo == 1 ? Build_MsgRecord() : Build_PacketRecord(Body()), out, count);
}

void cSMLP::Store(vorn::cRecord message, Records& out, int& count)
{
    out.insert_or_assign(out.end(), count, std::move(message));
    ++count;
}

// ---- Resets

void cSMLP::Reset_FileAttributes() noexcept
{
    Say(kDetail, "Reset_FileAttributes(), smlp[%d]");
    iFileCast = -1;
    ullFileSize = 0;
    uiMsgNo = 1;
    bFileOpen = false;
    openTransactionId.uiLen = 0;
    openClientId.uiLen = 0;
    openReqFileId.uiLen = 0;
    openServerId.uiLen = 0;
    ucOpenGroupNo = 0;
    ucOpenAbortOnError = 0;
}

void cSMLP::Reset_MsgAttributes() noexcept
{
    Say(kDetail, "Reset_MsgAttributes(), smlp[%d]");
    EmptyStore();
    usCrcCalc = vorn::initCRC16();
    usCrcRcv = 0;
    uiSmltFlagsOut = 0;
    bPaket = false;
    uiPaketNo = 1;
    uiPaketBytes = 0;
    ullRepeated = 0;
    iError = 0;
    iType = 0;
    iCast = -1;
    transactionId.uiLen = 0;
    ucGroupNo = 0;
    ucAbortOnError = 0;
    uiMsgIdentifier = 0;
    msgServerId.uiLen = 0;
    usEvents = 0;
    usParserState = STATE_IDLE;
    builder.Create();
    recBody.Create();
    bBodyDone = false;
    recPacketTree.Create();
    recResultTree.Create();
    bPacketTree = bResultTree = false;
    CleanUp_Cache();
    usFieldState = 0;
    uiDepth = 0;
    aFrames[0].pLayout = &Tables::kMessage;
    aFrames[0].uiIndex = 0;
    aFrames[0].uiCount = Tables::kMessage.uiCount;
    aFrames[0].bKept = true;
}
