// See hex_reader.h.
#include "tools/input/hex_reader.h"

namespace tool
{

int HexDigit(char c) noexcept
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool cHexReader::Read(std::string_view text, std::string& bytes)
{
    for (const char c : text) {
        const int digit = HexDigit(c);
        if (digit < 0 && !IsBlank(c))
            return false;
        ++ullPosition;
        if (digit < 0)
            continue;
        if (iHigh < 0) {
            iHigh = digit;
        } else {
            bytes += static_cast<char>(iHigh << 4 | digit);
            iHigh = -1;
        }
    }
    return true;
}

} // namespace tool
