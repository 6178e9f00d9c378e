// OBIS codes: six numbers that name a quantity, written A-B:C.D.E*F ("1-0:1.8.0*255" is the active
// energy taken from the grid). In a record a code is a 64-bit number with A in bits 47 to 40.
#ifndef TOOLS_READING_OBIS_H
#define TOOLS_READING_OBIS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tool
{

// Selects codes: each of the six numbers is fixed or free.
struct ObisPattern {
    std::uint64_t ullMask = 0; // bits that are fixed
    std::uint64_t ullCode = 0; // and what they must be

    constexpr bool Matches(std::uint64_t code) const noexcept
    {
        return (code & ullMask) == ullCode;
    }
};

namespace detail
{

// Takes one number or '*' off the front of text into bits shift to shift + 7 of pattern.
constexpr bool TakeObisNumber(std::string_view& text, unsigned shift, ObisPattern& pattern) noexcept
{
    if (!text.empty() && text.front() == '*') {
        text.remove_prefix(1);
        return true;
    }
    unsigned value = 0;
    std::size_t digits = 0;
    for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits) {
        value = value * 10 + static_cast<unsigned>(text[digits] - '0');
        if (value > 255)
            return false;
    }
    text.remove_prefix(digits);
    pattern.ullMask |= std::uint64_t{0xFF} << shift;
    pattern.ullCode |= std::uint64_t{value} << shift;
    return digits != 0;
}

} // namespace detail

// Reads [A-B:]C[.D[.E[*F]]] where each letter is a number up to 255 or '*' for any; what is left
// out is free. So "1.8.0", "1-0:1.8.*", "1-0:*.8.0*255" and "*" are patterns. False on anything
// else.
constexpr bool ParseObisPattern(std::string_view text, ObisPattern& pattern) noexcept
{
    pattern = ObisPattern();
    if (text.find(':') != std::string_view::npos) {
        if (!detail::TakeObisNumber(text, 40, pattern) || text.empty() || text.front() != '-')
            return false;
        text.remove_prefix(1);
        if (!detail::TakeObisNumber(text, 32, pattern) || text.empty() || text.front() != ':')
            return false;
        text.remove_prefix(1);
    }
    constexpr std::string_view kSeparators = "..*";
    for (unsigned i = 0;; ++i) {
        if (!detail::TakeObisNumber(text, 24 - 8 * i, pattern))
            return false;
        if (text.empty())
            return true;
        if (i == kSeparators.size() || text.front() != kSeparators[i])
            return false;
        text.remove_prefix(1);
    }
}

constexpr std::size_t kMaxObis = 24; // "255-255:255.255.255*255" and one to spare

// Writes code to out, which has room for kMaxObis characters, and returns the length; no
// terminator.
std::size_t FormatObis(std::uint64_t code, char* out) noexcept;

// What a common code stands for, in English; empty when it is not known.
std::string_view ObisName(std::uint64_t code) noexcept;

} // namespace tool

#endif
