// Exact decimals: an integer times a power of ten, as text, without any floating point.
#ifndef TOOLS_READING_DECIMAL_H
#define TOOLS_READING_DECIMAL_H

#include <cstddef>
#include <cstdint>

namespace tool
{

// An integer of any kind that a record carries: up to 64 bits, with or without sign.
struct Integer {
    std::uint64_t ullMagnitude = 0;
    bool bNegative = false;

    static Integer Of(std::uint64_t v) noexcept { return {v, false}; }
    static Integer OfSigned(std::int64_t v) noexcept
    {
        const auto bits = static_cast<std::uint64_t>(v);
        return v < 0 ? Integer{0 - bits, true} : Integer{bits, false};
    }
};

// The longest text: sign, 20 digits and 128 zeros or the zero and point in front of 128 decimals.
constexpr std::size_t kMaxDecimal = 160;

// Writes number x 10^scaler to out, which has room for kMaxDecimal characters, and returns the
// length; no terminator. A negative scaler gives exactly that many decimals: 100 with -1 is "10.0",
// which tells the resolution of the value. A scaler outside -128 to 127 counts as the nearer of the
// two.
std::size_t FormatDecimal(Integer number, int scaler, char* out) noexcept;

} // namespace tool

#endif
