// See decimal.h.
#include "tools/reading/decimal.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tool
{

std::size_t FormatDecimal(Integer number, int scaler, char* out) noexcept
{
    char digits[20];
    const std::to_chars_result end = std::to_chars(digits, digits + 20, number.ullMagnitude);
    const auto count = static_cast<std::size_t>(end.ptr - digits);
    const int power = std::clamp(scaler, -128, 127);
    char* p = out;
    const auto copy = [&p](const char* from, std::size_t n) {
        std::memcpy(p, from, n);
        p += n;
    };
    const auto zeros = [&p](std::size_t n) {
        std::memset(p, '0', n);
        p += n;
    };

    if (number.bNegative && number.ullMagnitude != 0)
        *p++ = '-';
    if (power >= 0) {
        copy(digits, count);
        if (number.ullMagnitude != 0)
            zeros(static_cast<std::size_t>(power));
        return static_cast<std::size_t>(p - out);
    }
    const auto decimals = static_cast<std::size_t>(-power);
    if (count > decimals) {
        copy(digits, count - decimals);
        *p++ = '.';
        copy(digits + count - decimals, decimals);
    } else {
        copy("0.", 2);
        zeros(decimals - count);
        copy(digits, count);
    }
    return static_cast<std::size_t>(p - out);
}

} // namespace tool
