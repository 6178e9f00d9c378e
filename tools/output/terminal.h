// What the program may do on a terminal: colours, a line that is overwritten, a screen.
#ifndef TOOLS_OUTPUT_TERMINAL_H
#define TOOLS_OUTPUT_TERMINAL_H

#include <string>
#include <string_view>

namespace tool
{

// The descriptor is a terminal that understands escape sequences.
bool IsScreen(int fd) noexcept;

// The same, and the user has not set NO_COLOR.
bool WantsColour(int fd) noexcept;

// Of the screen; 24 lines of 80 columns when that is not known.
struct ScreenSize {
    unsigned uiLines;
    unsigned uiColumns;

    bool operator!=(const ScreenSize& other) const noexcept
    {
        return uiLines != other.uiLines || uiColumns != other.uiColumns;
    }
};
ScreenSize SizeOf(int fd) noexcept;

// Has waits come back when the size changes; to be called once.
void CatchResizes() noexcept;

// As much of a line as fits into so many columns, wide characters counted as two. Escape sequences
// need no column and all stay.
std::string CutToWidth(std::string_view line, unsigned columns);

namespace escape
{

constexpr std::string_view kBold = "\x1B[1m";
constexpr std::string_view kDim = "\x1B[2m";
constexpr std::string_view kRed = "\x1B[31m";
constexpr std::string_view kYellow = "\x1B[33m";
constexpr std::string_view kBlue = "\x1B[34m";
constexpr std::string_view kMagenta = "\x1B[35m";
constexpr std::string_view kCyan = "\x1B[36m";
constexpr std::string_view kPlain = "\x1B[0m";
constexpr std::string_view kHome = "\x1B[H";
constexpr std::string_view kClearScreen = "\x1B[2J";
constexpr std::string_view kClearLine = "\x1B[K";  // from here on
constexpr std::string_view kClearBelow = "\x1B[J"; // from here on

} // namespace escape

} // namespace tool

#endif
