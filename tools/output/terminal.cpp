// See terminal.h.
#include "tools/output/terminal.h"

#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tool
{
namespace
{

std::string_view Environment(const char* name) noexcept
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

bool IsScreen(int fd) noexcept { return ::isatty(fd) != 0 && Environment("TERM") != "dumb"; }

bool WantsColour(int fd) noexcept { return IsScreen(fd) && Environment("NO_COLOR").empty(); }

unsigned ScreenLines(int fd) noexcept
{
    winsize size = {};
    return ::ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_row != 0 ? size.ws_row : 24U;
}

} // namespace tool
