// The framing state machine, one function per state. A state's function returns the result of
// Process, or kGoOn when the machine has entered another state with the call not done.
#include "quarn/transport/tp_tx.h"

#include "quarn/foundation/frame_format.h"
#include "quarn/foundation/trace.h"
#include "quarn/transport/run.h"

#include <algorithm>

using namespace quarn::detail;
using namespace quarn::detail::transport;

namespace
{

constexpr char kPadding[kFrameMaxPadding] = {};
constexpr int kCrcLowAt = kFrameEndSize - kFrameCrcSize; // place in the end sequence

} // namespace

SmlTpTx::SmlTpTx(int mode) noexcept : iMode(mode)
{
    Reset();
    Trace(LibSmlt, kDetail, "SMLT-Encoder created successfull, Mode=%d", mode);
}

void SmlTpTx::Reset() noexcept { eState = iMode == SMLT_MODE_RAW ? STATE_RAW : STATE_IDLE; }

int SmlTpTx::Process(cBuffer* in, cBuffer* out) noexcept
{
    int result = kGoOn;
    lUncounted = 0;
    while (result == kGoOn)
        result = Step(*in, *out);
    CountIn(*out);
    if (eState >= STATE_START)
        out->SetFlags(BUF_FLAG_TP);
    return result;
}

int SmlTpTx::Step(cBuffer& in, cBuffer& out) noexcept
{
    switch (eState) {
    case STATE_RAW:
        return Raw(in, out);
    case STATE_IDLE:
        return Idle(in);
    case STATE_START:
        return Start(out);
    case STATE_DATA:
        return Data(in, out);
    case STATE_ESC_COUNT:
        return EscCount(in);
    case STATE_ESC_WRITE:
        return EscWrite(out);
    case STATE_PAD:
        return Pad(out);
    case STATE_END:
        return End(out);
    }
    eState = STATE_IDLE; // a state that does not exist
    return kGoOn;
}

int SmlTpTx::Raw(cBuffer& in, cBuffer& out) noexcept
{
    PassThrough(in, out);
    if (in.Left() > 0)
        return SMLTP_OUTPUT_FULL;
    if (!in.TestFlagsAnd(BUF_FLAG_LAST))
        return SMLTP_INPUT_EMPTY;
    Reset();
    return SMLTP_FINISHED;
}

int SmlTpTx::Idle(cBuffer& in) noexcept
{
    const bool framed = iMode == SMLT_MODE_RAW || in.TestFlagsAnd(BUF_FLAG_TP);
    const bool begins = in.TestFlagsAnd(BUF_FLAG_FIRST);
    if (in.Left() == 0 && (framed || !begins)) // a file of no bytes is still a frame
        return SMLTP_INPUT_EMPTY;
    if (framed) {
        eState = STATE_RAW;
        return kGoOn;
    }
    if (!begins) {
        in.Clear();
        return SMLTP_NO_FIRST;
    }
    usCrc = vorn::initCRC16();
    uiLength = 0;
    Enter(STATE_START);
    return kGoOn;
}

int SmlTpTx::Start(cBuffer& out) noexcept
{
    if (iIndex == 0 && out.Free() > 0)
        out.SetFlags(BUF_FLAG_FIRST);
    if (!WriteSequence(kFrameStartSequence.data(), kFrameStartSize, out))
        return SMLTP_OUTPUT_FULL;
    eState = STATE_DATA;
    return kGoOn;
}

int SmlTpTx::Data(cBuffer& in, cBuffer& out) noexcept
{
    while (in.Left() > 0) {
        const long run = PlainRun(in, out.Free());
        if (run > 0) {
            Write(in.ReadPtr(), run, out);
            in.Skip(run);
        } else if (IsEscapeNext(in)) {
            in.Skip(1);
            iCount = 1;
            eState = STATE_ESC_COUNT;
            return kGoOn;
        } else {
            return SMLTP_OUTPUT_FULL;
        }
    }
    if (!in.TestFlagsAnd(BUF_FLAG_LAST))
        return SMLTP_INPUT_EMPTY;
    iCount = static_cast<int>((kFrameAlignment - uiLength % kFrameAlignment) % kFrameAlignment);
    Enter(STATE_PAD);
    return kGoOn;
}

int SmlTpTx::EscCount(cBuffer& in) noexcept
{
    while (in.Left() > 0) {
        if (!IsEscapeNext(in)) {
            Enter(STATE_ESC_WRITE);
            return kGoOn;
        }
        in.Skip(1);
        if (++iCount == kFrameEscapeSize) {
            iCount = 2 * kFrameEscapeSize;
            Enter(STATE_ESC_WRITE);
            return kGoOn;
        }
    }
    if (!in.TestFlagsAnd(BUF_FLAG_LAST))
        return SMLTP_INPUT_EMPTY;
    Enter(STATE_ESC_WRITE); // the end of the content ends the run; DATA then goes on to PAD
    return kGoOn;
}

int SmlTpTx::EscWrite(cBuffer& out) noexcept
{
    if (!WriteSequence(kFrameEscapedRun.data(), iCount, out))
        return SMLTP_OUTPUT_FULL;
    eState = STATE_DATA;
    return kGoOn;
}

int SmlTpTx::Pad(cBuffer& out) noexcept
{
    if (!WriteSequence(kPadding, iCount, out))
        return SMLTP_OUTPUT_FULL;
    Enter(STATE_END);
    return kGoOn;
}

int SmlTpTx::End(cBuffer& out) noexcept
{
    char covered[kCrcLowAt] = {};
    kFrameEndSequence.copy(covered, kFrameEndSequence.size());
    covered[kFrameEndSequence.size()] = static_cast<char>(iCount);
    if (iIndex < kCrcLowAt && !WriteSequence(covered, kCrcLowAt, out))
        return SMLTP_OUTPUT_FULL;
    CountIn(out);
    for (; iIndex < kFrameEndSize; ++iIndex) {
        if (out.Free() == 0)
            return SMLTP_OUTPUT_FULL;
        const auto crc = static_cast<unsigned short>(~usCrc);
        out.PutQuick(static_cast<char>(iIndex == kCrcLowAt ? crc & 0xFF : crc >> 8));
    }
    out.SetFlags(BUF_FLAG_LAST | BUF_FLAG_TP);
    eState = STATE_IDLE;
    return SMLTP_FINISHED;
}

// Into a state that writes a sequence from its beginning.
void SmlTpTx::Enter(eSTATE state) noexcept
{
    iIndex = 0;
    eState = state;
}

// Writes what is left of a sequence that the CRC covers; false when out is full before its end.
bool SmlTpTx::WriteSequence(const char* sequence, int length, cBuffer& out) noexcept
{
    const auto run = static_cast<int>(std::min<long>(length - iIndex, out.Free()));
    Write(sequence + iIndex, run, out);
    iIndex += run;
    return iIndex == length;
}

void SmlTpTx::Write(const char* bytes, long length, cBuffer& out) noexcept
{
    uiLength += static_cast<unsigned int>(length);
    out.Put(bytes, length);
    lUncounted += length;
    if (lUncounted >= kMaxRun)
        CountIn(out);
}

// Takes the last bytes of out that the CRC has yet to cover into it, in one pass.
void SmlTpTx::CountIn(const cBuffer& out) noexcept
{
    usCrc = CrcOfRun(out.ReadPtr() + out.Left() - lUncounted, lUncounted, usCrc);
    lUncounted = 0;
}
