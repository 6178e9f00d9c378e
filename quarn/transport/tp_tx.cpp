// The framing state machine, one function per state. A state's function returns the result of
// Process, or kGoOn when the machine has entered another state with the call not done.
#include "quarn/transport/tp_tx.h"

#include "quarn/foundation/trace.h"
#include "quarn/transport/run.h"

#include <algorithm>

using namespace quarn::detail;
using namespace quarn::detail::transport;

namespace
{

constexpr unsigned char kStartSequence[] = {kEscape, kEscape, kEscape, kEscape,
                                            kStart,  kStart,  kStart,  kStart};
constexpr unsigned char kEndSequence[] = {kEscape, kEscape, kEscape, kEscape, kEnd};
constexpr int kPadCountAt = 5; // places behind the end sequence
constexpr int kCrcLowAt = 6;
constexpr int kEndLength = 8;

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
    while (result == kGoOn) {
        switch (eState) {
        case STATE_RAW:
            result = Raw(*in, *out);
            break;
        case STATE_IDLE:
            result = Idle(*in);
            break;
        case STATE_START:
            result = Start(*out);
            break;
        case STATE_DATA:
            result = Data(*in, *out);
            break;
        case STATE_ESC_COUNT:
            result = EscCount(*in);
            break;
        case STATE_ESC_WRITE:
            result = EscWrite(*out);
            break;
        case STATE_PAD:
            result = Pad(*out);
            break;
        case STATE_END:
            result = End(*out);
            break;
        default:
            eState = STATE_IDLE;
            break;
        }
    }
    if (eState >= STATE_START)
        out->SetFlags(BUF_FLAG_TP);
    return result;
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
    for (; iIndex < kStartLength; ++iIndex) {
        if (!Write(kStartSequence[iIndex], out))
            return SMLTP_OUTPUT_FULL;
        out.SetFlags(iIndex == 0 ? BUF_FLAG_FIRST : 0);
    }
    eState = STATE_DATA;
    return kGoOn;
}

int SmlTpTx::Data(cBuffer& in, cBuffer& out) noexcept
{
    while (in.Left() > 0) {
        const long run = BytesBeforeEscape(in, std::min(in.Left(), kMaxRun));
        if (run == 0) {
            in.Skip(1);
            iCount = 1;
            eState = STATE_ESC_COUNT;
            return kGoOn;
        }
        const long length = std::min(run, out.Free());
        usCrc = CrcOfRun(in.ReadPtr(), length, usCrc);
        uiLength += static_cast<unsigned int>(length);
        out.Put(in.ReadPtr(), length);
        in.Skip(length);
        if (length < run)
            return SMLTP_OUTPUT_FULL;
    }
    if (!in.TestFlagsAnd(BUF_FLAG_LAST))
        return SMLTP_INPUT_EMPTY;
    iCount = static_cast<int>((kAlignment - uiLength % kAlignment) % kAlignment);
    Enter(STATE_PAD);
    return kGoOn;
}

int SmlTpTx::EscCount(cBuffer& in) noexcept
{
    while (in.Left() > 0) {
        if (static_cast<unsigned char>(*in.ReadPtr()) != kEscape) {
            Enter(STATE_ESC_WRITE);
            return kGoOn;
        }
        in.Skip(1);
        if (++iCount == kEscapeRun) {
            iCount = 2 * kEscapeRun;
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
    for (; iIndex < iCount; ++iIndex) {
        if (!Write(kEscape, out))
            return SMLTP_OUTPUT_FULL;
    }
    eState = STATE_DATA;
    return kGoOn;
}

int SmlTpTx::Pad(cBuffer& out) noexcept
{
    for (; iIndex < iCount; ++iIndex) {
        if (!Write(0, out))
            return SMLTP_OUTPUT_FULL;
    }
    Enter(STATE_END);
    return kGoOn;
}

int SmlTpTx::End(cBuffer& out) noexcept
{
    for (; iIndex < kCrcLowAt; ++iIndex) {
        const int b = iIndex == kPadCountAt ? iCount : kEndSequence[iIndex];
        if (!Write(static_cast<unsigned char>(b), out))
            return SMLTP_OUTPUT_FULL;
    }
    for (; iIndex < kEndLength; ++iIndex) {
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

// Writes one byte that the CRC covers; false, and nothing done, when out has no room.
bool SmlTpTx::Write(unsigned char b, cBuffer& out) noexcept
{
    if (out.Free() == 0)
        return false;
    usCrc = vorn::addByte2CRC16(b, usCrc);
    ++uiLength;
    out.PutQuick(static_cast<char>(b));
    return true;
}
