// What the parser says of a payload, and at which byte it says so: the payload goes byte by byte
// through a receive road of its own, and the trace lines which that causes are kept. Where the line
// was silent, that road is told as well.
#ifndef TOOLS_EXPLAIN_VERDICT_H
#define TOOLS_EXPLAIN_VERDICT_H

#include "tools/road/receiver.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool
{

struct Verdict {
    std::uint64_t ullEnd = 0; // bytes of the payload that had been read
    int iError = 0;           // one of eSML_STATUS
    bool bSilence = false;    // no verdict: here the line was silent, and the file was given up
    std::string trace;        // the first line that the parser wrote about it

    bool IsCrc() const noexcept
    {
        return iError == SML_STATUS_CRC || iError == SML_STATUS_CRC_CLOSE;
    }
    // The parser went no further.
    bool IsRefusal() const noexcept { return iError != SML_STATUS_OK && !IsCrc(); }
    // "the parser stops here: ... (status -11; trace: ...)"
    std::string Text() const;
};

class cJudge : private cReceiverEvents
{
public:
    cJudge() : road(true, *this) {}

    void Feed(std::string_view payload);
    // The line was silent for too long.
    void Timeout();
    // The payload has ended.
    void End();

    std::uint64_t Fed() const noexcept { return ullFed; } // bytes
    const std::vector<Verdict>& Verdicts() const noexcept { return verdicts; }
    // Forgets what has been said of the first bytes of the payload.
    void Forget(std::uint64_t bytes);

private:
    void OnMessage(const Frame& frame, const vorn::cRecord& record) override;
    void OnRefused(const Frame& frame, int result) override;
    void OnFrameEnd(const Frame&) override {}
    void OnFrameLost(const Frame&, eLOSS) override {}
    void OnTimeout(const Frame&) override;
    void OnGap(std::uint64_t, std::uint64_t, eGAP) override {}
    template <typename Work>
    void Listening(Work work);
    void Add(int error, bool silence = false);

    cReceiver road;
    std::uint64_t ullFed = 0;
    std::vector<Verdict> verdicts;
    std::string trace;
};

} // namespace tool

#endif
