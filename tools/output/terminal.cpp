// See terminal.h.
#include "tools/output/terminal.h"

#include "tools/output/escape.h"

#include <algorithm>
#include <csignal>
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

// East Asian wide and full-width forms, and emoji.
bool IsWide(char32_t code) noexcept
{
    static constexpr struct {
        char32_t from;
        char32_t to;
    } kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xAC00, 0xD7A3},
                 {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
                 {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
    return std::any_of(std::begin(kWide), std::end(kWide), [code](const auto& range) {
        return code >= range.from && code <= range.to;
    });
}

} // namespace

bool IsScreen(int fd) noexcept { return ::isatty(fd) != 0 && Environment("TERM") != "dumb"; }

bool WantsColour(int fd) noexcept { return IsScreen(fd) && Environment("NO_COLOR").empty(); }

ScreenSize SizeOf(int fd) noexcept
{
    winsize size = {};
    ::ioctl(fd, TIOCGWINSZ, &size);
    return {size.ws_row != 0 ? size.ws_row : 24U, size.ws_col != 0 ? size.ws_col : 80U};
}

void CatchResizes() noexcept
{
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART; // of reads and writes; poll comes back all the same
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGWINCH, &action, nullptr);
}

std::string CutToWidth(std::string_view line, unsigned columns)
{
    std::string cut;
    unsigned used = 0;
    for (std::size_t size = 0; !line.empty(); line.remove_prefix(size)) {
        if (line.front() == '\x1B') {
            size = std::min(line.find_first_of("mKHJ"), line.size() - 1) + 1;
        } else {
            const Character c = First(line);
            const unsigned width = IsWide(c.code) ? 2 : 1;
            size = c.bytes.size();
            used += width;
            if (used > columns)
                continue;
        }
        cut.append(line.substr(0, size));
    }
    return cut;
}

} // namespace tool
