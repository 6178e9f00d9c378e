// Bytes from hex text, white space ignored: Hex("1B 1B 01") is the three bytes it shows.
#ifndef TESTS_SUPPORT_HEX_H
#define TESTS_SUPPORT_HEX_H

#include <cctype>
#include <stdexcept>
#include <string>
#include <string_view>

namespace test
{

inline std::string Hex(std::string_view text)
{
    std::string bytes;
    int nibble = -1;
    for (const char c : text) {
        if (std::isspace(static_cast<unsigned char>(c)) != 0)
            continue;
        const std::size_t digit =
            std::string_view("0123456789abcdef").find(static_cast<char>(std::tolower(c)));
        if (digit == std::string_view::npos)
            throw std::invalid_argument("not hex: " + std::string(text));
        if (nibble >= 0)
            bytes += static_cast<char>(nibble * 16 + static_cast<int>(digit));
        nibble = nibble >= 0 ? -1 : static_cast<int>(digit);
    }
    if (nibble >= 0)
        throw std::invalid_argument("odd number of digits: " + std::string(text));
    return bytes;
}

inline std::string ToHex(std::string_view bytes)
{
    std::string text;
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        text += "0123456789ABCDEF"[b >> 4];
        text += "0123456789ABCDEF"[b & 0x0FU];
    }
    return text;
}

} // namespace test

#endif
