// How far the reading of a long file is, as a bar on standard error.
#ifndef TOOLS_INPUT_PROGRESS_H
#define TOOLS_INPUT_PROGRESS_H

#include "tools/road/report.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace tool
{

class cProgress
{
public:
    // size: bytes in all. Nothing is shown when it is small or 0, when standard error is no screen,
    // or when what is printed goes to one.
    cProgress(std::uint64_t size, cReport& reporter);
    ~cProgress();
    cProgress(const cProgress&) = delete;
    cProgress& operator=(const cProgress&) = delete;

    void Add(std::size_t size);

private:
    using Clock = std::chrono::steady_clock;

    void Show();

    std::uint64_t ullSize;
    std::uint64_t ullDone = 0;
    cReport& report;
    Clock::time_point next;
};

} // namespace tool

#endif
