// The codecs: parameters out of the message, the bytes through the state machine, parameters back.
// Records are changed in a copy that replaces the caller's at the end, so that a call that fails
// has changed nothing.
#include "quarn/transport/codec.h"

#include "quarn/foundation/fields.h"
#include "quarn/foundation/labels.h"
#include "quarn/foundation/trace.h"

#include <algorithm>
#include <limits>
#include <utility>

using namespace quarn::detail;
using namespace quarn::detail::transport;

namespace
{

// What the machine may still hold from the messages before: the window and a run of escapes.
constexpr long long kHeldBack = 12;

void AppendBytes(vorn::cRecord& record, const char* label, const HeapBuffer& buffer)
{
    record.AppendDataPar(label, buffer.ReadPtr(), static_cast<int>(buffer.Left()), 0);
}

void AppendFlags(vorn::cRecord& record, const HeapBuffer& buffer)
{
    record.AppendUIntPar(label::SmltFlags, static_cast<unsigned int>(buffer.GetFlags()), 0);
}

// Takes a step that hosts may take alone; without memory it fails, with a line in its name.
template <typename Step>
bool Taken(const char* name, Step step) noexcept
{
    try {
        return step();
    } catch (...) {
        Trace(LibSmlt, kError, "%s(): Out of memory!", name);
    }
    return false;
}

} // namespace

// No buffer is larger than a data parameter can be, so that every buffer can be appended whole.
void CodecBuffers::Create(const vorn::cRecordPar& raw, int flags, long long outSize)
{
    constexpr long long most = std::numeric_limits<int>::max();
    Release();
    pInput.reset(new HeapBuffer(raw.GetSize(), flags));
    pOutput.reset(new HeapBuffer(static_cast<long>(std::min(outSize, most)), 0));
    pInput->Put(raw.GetData(), raw.GetSize());
}

void CodecBuffers::Release() noexcept
{
    pInput.reset();
    pOutput.reset();
}

int cSMLTenc::Encode(vorn::cMsg& msg) noexcept
{
    int result = SMLT_ENCODE_REFUSED;
    try {
        if (TakeFlags(msg) && TakeRawData(msg) && Frame()) {
            PutBack(msg);
            result = SMLT_ENCODE_DONE;
        }
    } catch (...) {
        Fail("Encode(): Out of memory!");
    }
    ReleaseBuffers();
    return result;
}

int cSMLTenc::GetFlags(const vorn::cMsg& msg) noexcept
{
    return Taken("GetFlags", [&] { return TakeFlags(msg); }) ? 1 : 0;
}

int cSMLTenc::GetMsgRawData(const vorn::cMsg& msg) noexcept
{
    return Taken("GetMsgRawData", [&] { return TakeRawData(msg); }) ? 1 : 0;
}

bool cSMLTenc::ReplaceRecord(vorn::cMsg& msg) const noexcept
{
    return buffers.Out() != nullptr && Taken("ReplaceRecord", [&] { return PutBack(msg), true; });
}

void cSMLTenc::ReleaseBuffers() noexcept { buffers.Release(); }

bool cSMLTenc::TakeFlags(const vorn::cMsg& msg)
{
    vorn::cRecordPar flags;
    if (!FindField(msg.GetRecord(), label::SmltFlags, KIND_UINT, flags)) {
        Trace(LibSmlt, kError, "GetFlags():-%d- SMLTFLAGS invalid/missing/wrong type", iCodecState);
        return false;
    }
    uiFlags = flags.GetUInt();
    return (uiFlags & BUF_FLAG_SML) != 0;
}

bool cSMLTenc::TakeRawData(const vorn::cMsg& msg)
{
    vorn::cRecord ifRec;
    vorn::cRecordPar raw;
    if (!FindRecord(msg.GetRecord(), label::IfRec, ifRec) ||
        !FindField(ifRec, label::RawData, KIND_DATA, raw)) {
        Trace(LibSmlt, kError, "GetMsgRawData():-%d- MSGRAWDATA invalid/missing/wrong type",
              iCodecState);
        return false;
    }
    buffers.Create(raw, static_cast<int>(uiFlags), 2LL * raw.GetSize());
    return true;
}

bool cSMLTenc::Frame() noexcept
{
    if (iCodecState != CODEC_IDLE && iCodecState != CODEC_FRAME_OPEN)
        return Fail("Encode(): Unknown state!");
    if (iCodecState == CODEC_IDLE && (uiFlags & BUF_FLAG_FIRST) == 0)
        return Fail("Encode(): BUF_FLAG_FIRST not set in state IDLE");

    const int rc = Process(buffers.In(), buffers.Out());
    if (rc != SMLTP_INPUT_EMPTY && rc != SMLTP_FINISHED)
        return Fail("Encode(): Output-Buffer-Overflow or unexpected rc!");
    iCodecState = rc == SMLTP_INPUT_EMPTY ? CODEC_FRAME_OPEN : CODEC_IDLE;
    return true;
}

void cSMLTenc::PutBack(vorn::cMsg& msg) const
{
    vorn::cRecord next = msg.GetRecord();
    vorn::cRecord ifRec;
    FindRecord(next, label::IfRec, ifRec);
    ifRec.DeletePar(label::RawData, 0, 0);
    AppendBytes(ifRec, label::RawData, *buffers.Out());
    next.DeletePar(label::IfRec, 0, 0);
    next.AppendRecordPar(label::IfRec, ifRec, 0);
    next.DeletePar(label::SmltFlags, 0, 0);
    AppendFlags(next, *buffers.Out());
    msg.GetRecord() = std::move(next);
}

// Back to where the next message must begin a frame.
bool cSMLTenc::Fail(const char* text) noexcept
{
    Reset();
    iCodecState = CODEC_IDLE;
    Trace(LibSmlt, kError, text);
    return false;
}

int cSMLTdec::Decode(vorn::cMsg& msg, vorn::cRecord& ifRec, vorn::cRecord& out) noexcept
{
    iRemaining = 0;
    int result = SMLT_DECODE_ERROR;
    try {
        if (TakeRawData(msg, ifRec)) {
            result = Unframe();
            if (result != SMLT_DECODE_ERROR)
                PutOut(out);
        } else {
            result = Fail(SMLT_DECODE_NO_DATA, nullptr);
        }
    } catch (...) {
        result = Fail(SMLT_DECODE_ERROR, "Decode(): Out of memory!");
    }
    ReleaseBuffers();
    return result;
}

int cSMLTdec::GetMsgRawData(const vorn::cMsg& msg, vorn::cRecord& ifRec) noexcept
{
    return Taken("GetMsgRawData", [&] { return TakeRawData(msg, ifRec); }) ? 1 : 0;
}

bool cSMLTdec::AppendRecords(vorn::cRecord& out) const noexcept
{
    return buffers.Out() != nullptr && Taken("AppendRecords", [&] { return PutOut(out), true; });
}

void cSMLTdec::ReleaseBuffers() noexcept { buffers.Release(); }

bool cSMLTdec::TakeRawData(const vorn::cMsg& msg, vorn::cRecord& ifRec)
{
    if (!FindRecord(msg.GetRecord(), label::IfRec, ifRec)) {
        Trace(LibSmlt, kError, "GetMsgRawData():-%d- IF_RECORD_LABEL invalid/missing/wrong type",
              iCodecState);
        return false;
    }
    vorn::cRecordPar raw;
    if (!FindField(ifRec, label::RawData, KIND_DATA, raw)) {
        Trace(LibSmlt, kError, "GetMsgRawData():-%d- RAWDATA_LABEL invalid/missing/wrong type",
              iCodecState);
        return false;
    }
    buffers.Create(raw, BUF_FLAG_TP, raw.GetSize() + kHeldBack);
    return true;
}

int cSMLTdec::Unframe() noexcept
{
    if (iCodecState != CODEC_IDLE && iCodecState != CODEC_FRAME_OPEN)
        return Fail(SMLT_DECODE_ERROR, "Decode(): Unknown state!");

    const int rc = Process(buffers.In(), buffers.Out());
    iCodecState = rc == SMLTP_INPUT_EMPTY ? CODEC_FRAME_OPEN : CODEC_IDLE;
    switch (rc) {
    case SMLTP_INPUT_LEFT:
        iRemaining = static_cast<int>(buffers.In()->Left());
        return SMLT_DECODE_LEFT;
    case SMLTP_FINISHED:
        return SMLT_DECODE_FRAME;
    case SMLTP_INPUT_EMPTY:
        return SMLT_DECODE_MORE;
    default:
        return Fail(SMLT_DECODE_ERROR, "Decode(): Output-Buffer-Overflow or unexpected rc!");
    }
}

void cSMLTdec::PutOut(vorn::cRecord& out) const
{
    vorn::cRecord next = out;
    AppendFlags(next, *buffers.Out());
    AppendBytes(next, label::SmlRawData, *buffers.Out());
    out = std::move(next);
}

// Back to the hunt for a frame; text, unless null, tells why.
int cSMLTdec::Fail(int result, const char* text) noexcept
{
    Reset();
    iCodecState = CODEC_IDLE;
    iRemaining = 0;
    if (text != nullptr)
        Trace(LibSmlt, kError, text);
    return result;
}
