// See progress.h.
#include "tools/input/progress.h"

#include "tools/output/terminal.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace tool
{
namespace
{

constexpr std::uint64_t kLong = std::uint64_t{4} * 1024 * 1024;
constexpr std::chrono::milliseconds kStep(100);

} // namespace

cProgress::cProgress(std::uint64_t size, cReport& reporter)
    : ullSize(size >= kLong && IsScreen(STDERR_FILENO) && !IsScreen(STDOUT_FILENO) ? size : 0),
      report(reporter), next(Clock::now() + kStep)
{
}

cProgress::~cProgress()
{
    if (ullSize != 0)
        report.Show("");
}

void cProgress::Add(std::size_t size)
{
    ullDone += size;
    if (ullSize == 0 || Clock::now() < next)
        return;
    Show();
    next = Clock::now() + kStep;
}

void cProgress::Show()
{
    constexpr std::size_t kWidth = 40;
    constexpr double kMega = 1e6;
    const double part = std::min(1.0, static_cast<double>(ullDone) / static_cast<double>(ullSize));
    const auto full = static_cast<std::size_t>(part * kWidth);
    char numbers[64];
    std::snprintf(numbers, sizeof numbers, "] %3.0f %%  %.1f of %.1f MB", part * 100,
                  static_cast<double>(ullDone) / kMega, static_cast<double>(ullSize) / kMega);
    report.Show('[' + std::string(full, '#') + std::string(kWidth - full, ' ') + numbers);
}

} // namespace tool
