// See report.h.
#include "tools/road/report.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace tool
{

void cReport::Say(eEXIT severity, const char* format, ...)
{
    eStatus = std::max(eStatus, severity);
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    // One write per line, so that the lines of several programs in a pipeline do not mix.
    const std::string line = "quarn: " + subject + (subject.empty() ? "" : ": ") + text + '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace tool
