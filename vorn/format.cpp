// Formatted strings: a line that fits the stack buffer is formatted once, a longer one twice.
#include "vorn/format.h"

#include <array>
#include <cstdarg>
#include <cstdio>

namespace vorn
{

std::string FormatString(const char* format, ...)
{
    std::array<char, 256> line{};
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int len = std::vsnprintf(line.data(), line.size(), format, args);
    va_end(args);

    std::string text;
    if (len >= 0 && static_cast<std::size_t>(len) < line.size()) {
        text.assign(line.data(), static_cast<std::size_t>(len));
    } else if (len >= 0) {
        try {
            text.resize(static_cast<std::size_t>(len));
        } catch (...) {
            va_end(again);
            throw;
        }
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}

} // namespace vorn
