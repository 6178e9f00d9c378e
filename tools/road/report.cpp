// See report.h.
#include "tools/road/report.h"

#include "tools/output/escape.h"
#include "tools/output/terminal.h"

#include <cstdarg>
#include <cstdio>
#include <unistd.h>

namespace tool
{
namespace
{

constexpr const char* kOverwrite = "\r\x1B[K";

} // namespace

void cReport::Say(eEXIT severity, const char* format, ...)
{
    eStatus = std::max(eStatus, severity);
    bUnsettled = bUnsettled || severity == EXIT_UNSETTLED;
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    // One write per line, so that the lines of several programs in a pipeline do not mix.
    std::string line(bShown ? kOverwrite : "");
    bShown = false;
    const bool colour = severity != EXIT_GOOD && WantsColour(STDERR_FILENO);
    if (colour)
        line += severity == EXIT_FAILED ? escape::kRed : escape::kYellow;
    line += "quarn:";
    if (colour)
        line += escape::kPlain;
    line += ' ' + ForTerminal(subject + (subject.empty() ? "" : ": ") + text) + '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void cReport::Show(const std::string& line)
{
    if (!bShown && line.empty())
        return;
    const std::string text = std::string(bShown ? kOverwrite : "") + line;
    std::fwrite(text.data(), 1, text.size(), stderr);
    bShown = !line.empty();
}

} // namespace tool
