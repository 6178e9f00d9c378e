// The unframing state machine, one function per state. A state's function returns the result of
// Process, or kGoOn when the machine has entered another state with the call not done.
//
// Bytes enter the CRC when they are consumed, never when they are only looked at. Content leaves
// the machine through the window alone, three bytes late, so that padding can still be taken back
// when the end sequence tells how much of it there is.
#include "quarn/transport/tp_rx.h"

#include "quarn/foundation/frame_format.h"
#include "quarn/foundation/trace.h"
#include "quarn/transport/run.h"

#include <algorithm>
#include <cstring>

using namespace quarn::detail;
using namespace quarn::detail::transport;

namespace
{

static_assert(Fifo3::kMax == kFrameMaxPadding, "the window holds what may be padding");

constexpr int kTailSize = kFrameStartSize - kFrameEscapeSize; // what follows an escape

// The whole end sequence lies behind the next run bytes.
bool IsEndBehind(const cBuffer& in, long run) noexcept
{
    return in.Left() - run >= kFrameEndSize &&
           std::memcmp(in.ReadPtr() + run, kFrameEndSequence.data(), kFrameEndSequence.size()) == 0;
}

} // namespace

SmlTpRx::SmlTpRx(int mode) noexcept : iMode(mode)
{
    Reset();
    Trace(LibSmlt, kDetail, "SMLT-Decoder created successfull, Mode=%d", mode);
}

void SmlTpRx::Reset() noexcept
{
    const bool raw = iMode == SMLT_MODE_RAW;
    eState = raw ? STATE_RAW : STATE_IDLE;
    Trace(LibSmlt, kDetail, raw ? "Mode==RAW" : "Mode==TP");
}

int SmlTpRx::Process(cBuffer* in, cBuffer* out) noexcept
{
    int result = kGoOn;
    while (result == kGoOn)
        result = Step(*in, *out);
    return result;
}

int SmlTpRx::Step(cBuffer& in, cBuffer& out) noexcept
{
    switch (eState) {
    case STATE_RAW:
        return Raw(in, out);
    case STATE_IDLE:
        return Idle(in);
    case STATE_HUNT:
        return Hunt(in);
    case STATE_START:
        return Start(out);
    case STATE_DATA:
        return Data(in, out);
    case STATE_ESC:
        return Esc(in);
    case STATE_FLUSH:
        return Flush(out);
    case STATE_TAIL:
        return Tail(in, out);
    case STATE_PADCOUNT:
        return PadCount(in);
    case STATE_TAIL_OUT:
        return TailOut(out);
    case STATE_CRC_CHECK:
        return CrcCheck(in, out);
    }
    eState = STATE_IDLE; // a state that does not exist
    return kGoOn;
}

int SmlTpRx::Raw(cBuffer& in, cBuffer& out) noexcept
{
    PassThrough(in, out);
    return in.Left() > 0 ? SMLTP_OUTPUT_FULL : SMLTP_INPUT_EMPTY;
}

int SmlTpRx::Idle(cBuffer& in) noexcept
{
    if (in.Left() == 0)
        return SMLTP_INPUT_EMPTY;
    if (iMode == SMLT_MODE_RAW || !in.TestFlagsAnd(BUF_FLAG_TP)) {
        eState = STATE_RAW;
        return kGoOn;
    }
    iIndex = 0;
    eState = STATE_HUNT;
    return kGoOn;
}

int SmlTpRx::Hunt(cBuffer& in) noexcept
{
    for (;;) {
        if (iIndex == 0) {
            in.Skip(FindEscape(in.ReadPtr(), in.ReadPtr() + in.Left()) - in.ReadPtr());
            if (in.Left() >= kFrameStartSize &&
                std::memcmp(in.ReadPtr(), kFrameStartSequence.data(), kFrameStartSize) == 0) {
                in.Skip(kFrameStartSize);
                eState = STATE_START;
                return kGoOn;
            }
        }
        if (in.Left() == 0)
            break;
        iIndex = MatchFrameStart(iIndex, static_cast<char>(in.GetQuick()));
        if (iIndex == kFrameStartSize) {
            eState = STATE_START;
            return kGoOn;
        }
    }
    if (iIndex == 0)
        eState = STATE_IDLE;
    return SMLTP_INPUT_EMPTY;
}

int SmlTpRx::Start(cBuffer& out) noexcept
{
    usCrc = kFrameCrcAfterStart;
    window.Clear();
    out.Clear();
    out.SetFlags(BUF_FLAG_FIRST);
    eState = STATE_DATA;
    return kGoOn;
}

int SmlTpRx::Data(cBuffer& in, cBuffer& out) noexcept
{
    while (in.Left() > 0) {
        const long run = PlainRun(in, out.Free() + Fifo3::kMax - window.Count());
        if (IsEndBehind(in, run) && out.Free() >= window.Count() + run)
            return Finish(in, run, out);
        if (run > 0) {
            MoveRun(in.ReadPtr(), run, out);
            in.Skip(run);
        } else if (IsEscapeNext(in)) {
            Take(in);
            iEscapeCount = 1;
            eState = STATE_ESC;
            return kGoOn;
        } else {
            return SMLTP_OUTPUT_FULL;
        }
    }
    return SMLTP_INPUT_EMPTY;
}

int SmlTpRx::Esc(cBuffer& in) noexcept
{
    while (in.Left() > 0) {
        const auto b = static_cast<unsigned char>(*in.ReadPtr());
        if (b == kFrameEscape) {
            Take(in);
            if (++iEscapeCount == 2 * kFrameEscapeSize)
                return FlushThen(STATE_DATA, kFrameEscapeSize);
            continue;
        }
        if (iEscapeCount < kFrameEscapeSize) // too few to be an escape: content; b is read again
            return FlushThen(STATE_DATA, iEscapeCount);
        Take(in);
        if (b == kFrameEnd)
            return FlushThen(STATE_PADCOUNT, iEscapeCount - kFrameEscapeSize);
        aucEscapeTail[0] = b;
        iIndex = 1;
        return FlushThen(STATE_TAIL, iEscapeCount - kFrameEscapeSize);
    }
    return SMLTP_INPUT_EMPTY;
}

int SmlTpRx::Flush(cBuffer& out) noexcept
{
    for (; iEscapeCount > 0; --iEscapeCount) {
        if (!ThroughWindow(kFrameEscape, out))
            return SMLTP_OUTPUT_FULL;
    }
    eState = eNextState;
    return kGoOn;
}

int SmlTpRx::Tail(cBuffer& in, cBuffer& out) noexcept
{
    for (; iIndex < kTailSize; ++iIndex) {
        if (in.Left() == 0)
            return SMLTP_INPUT_EMPTY;
        if (window.Count() > 0) {
            if (out.Free() == 0)
                return SMLTP_OUTPUT_FULL;
            out.PutQuick(static_cast<char>(window.Get()));
        }
        aucEscapeTail[iIndex] = Take(in);
    }
    const char* const start = kFrameStartSequence.data() + kFrameEscapeSize;
    eState = std::memcmp(aucEscapeTail, start, kTailSize) == 0 ? STATE_START : STATE_DATA;
    return kGoOn;
}

int SmlTpRx::PadCount(cBuffer& in) noexcept
{
    if (in.Left() == 0)
        return SMLTP_INPUT_EMPTY;
    const int padding = Take(in);
    // What is held back beyond the padding is content. A short frame holds back less than three.
    iIndex = std::max(window.Count() - (padding <= kFrameMaxPadding ? padding : 0), 0);
    eState = STATE_TAIL_OUT;
    return kGoOn;
}

int SmlTpRx::TailOut(cBuffer& out) noexcept
{
    for (; iIndex > 0; --iIndex) {
        if (out.Free() == 0)
            return SMLTP_OUTPUT_FULL;
        out.PutQuick(static_cast<char>(window.Get()));
    }
    eState = STATE_CRC_CHECK; // iIndex is 0, as that state begins
    return kGoOn;
}

int SmlTpRx::CrcCheck(cBuffer& in, cBuffer& out) noexcept
{
    for (; iIndex < kFrameCrcSize; ++iIndex) {
        if (in.Left() == 0)
            return SMLTP_INPUT_EMPTY;
        Take(in);
    }
    return EndFrame(in, out);
}

// The last run of a frame and its end sequence at once, as the states from ESC to CRC_CHECK do byte
// by byte. REQUIRES: IsEndBehind, and room for all that is content.
int SmlTpRx::Finish(cBuffer& in, long run, cBuffer& out) noexcept
{
    usCrc = CrcOfRun(in.ReadPtr(), run + kFrameEndSize, usCrc);
    const int padding =
        static_cast<unsigned char>(in.ReadPtr()[run + static_cast<long>(kFrameEndSequence.size())]);
    const long held = window.Count();
    const long dropped = std::min(padding <= kFrameMaxPadding ? long{padding} : 0L, held + run);
    const long content = held + run - dropped;
    for (long i = std::min(held, content); i > 0; --i)
        out.PutQuick(static_cast<char>(window.Get()));
    out.Put(in.ReadPtr(), std::max(content - held, 0L));
    in.Skip(run + kFrameEndSize);
    return EndFrame(in, out);
}

int SmlTpRx::EndFrame(const cBuffer& in, cBuffer& out) noexcept
{
    out.SetFlags(BUF_FLAG_LAST);
    if (usCrc != kFrameCrcGood) {
        Trace(LibSmlt, kError, "CRC-ERROR");
        out.SetFlags(BUF_FLAG_CRC_ERROR);
    }
    eState = STATE_IDLE;
    return in.Left() > 0 ? SMLTP_INPUT_LEFT : SMLTP_FINISHED;
}

int SmlTpRx::FlushThen(eSTATE next, int escapes) noexcept
{
    iEscapeCount = escapes;
    eNextState = next;
    eState = STATE_FLUSH;
    return kGoOn;
}

unsigned char SmlTpRx::Take(cBuffer& in) noexcept
{
    const unsigned char b = in.GetQuick();
    usCrc = vorn::addByte2CRC16(b, usCrc);
    return b;
}

// Passes one content byte on; false, and nothing done, when a byte is due and out has no room.
bool SmlTpRx::ThroughWindow(unsigned char b, cBuffer& out) noexcept
{
    if (window.Count() < Fifo3::kMax) {
        window.Put(b);
        return true;
    }
    if (out.Free() == 0)
        return false;
    out.PutQuick(static_cast<char>(window.Rot(b)));
    return true;
}

// Passes a run of content on, as ThroughWindow does byte by byte: of what the window and the run
// hold together, the last three stay in the window. REQUIRES: out has room for the others.
void SmlTpRx::MoveRun(const char* run, long length, cBuffer& out) noexcept
{
    usCrc = CrcOfRun(run, length, usCrc);
    const long released = std::max(window.Count() + length - Fifo3::kMax, 0L);
    const long fromWindow = std::min<long>(released, window.Count());
    for (long i = 0; i < fromWindow; ++i)
        out.PutQuick(static_cast<char>(window.Get()));
    const long direct = released - fromWindow;
    out.Put(run, direct);
    for (long i = direct; i < length; ++i)
        window.Put(static_cast<unsigned char>(run[i]));
}
