// See format.h. Each kind is tried by a walk over the head that ends in yes, no or "too short".
#include "tools/input/format.h"

#include "tools/input/hex_reader.h"

#include <cstddef>

namespace tool
{
namespace
{

enum class eFIT { NO, YES, OPEN };

eFIT FitsHex(std::string_view head) noexcept
{
    unsigned digits = 0;
    for (const char c : head) {
        if (IsBlank(c))
            continue;
        if (HexDigit(c) < 0)
            return eFIT::NO;
        if (++digits == 32)
            return eFIT::YES;
    }
    return eFIT::OPEN;
}

// 76, the transaction id, group number and abort-on-error (62 xx or 61 each), 72, 63 01 00 or 01
// (or the same number in four bytes).
eFIT FitsRaw(std::string_view head) noexcept
{
    std::size_t at = 0;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(head[i]); };
    const auto have = [&](std::size_t n) { return head.size() - at >= n; };

    if (!have(1))
        return eFIT::OPEN;
    if (byte(at++) != 0x76)
        return eFIT::NO;
    if (!have(2))
        return eFIT::OPEN;
    std::size_t length = byte(at) & 0x0FU; // of the transaction id, its length field included
    if ((byte(at) & 0xF0U) == 0x80 && byte(at + 1) <= 0x0F)
        length = length << 4U | byte(at + 1);
    else if ((byte(at) & 0xF0U) != 0x00)
        return eFIT::NO;
    if (length < 1 || length > 66)
        return eFIT::NO;
    if (!have(length))
        return eFIT::OPEN;
    at += length;
    for (const unsigned expected : {0x62U, 0U, 0x62U, 0U, 0x72U}) {
        if (!have(1))
            return eFIT::OPEN;
        if (byte(at++) != expected && expected != 0)
            return eFIT::NO;
    }
    if (!have(1))
        return eFIT::OPEN;
    const unsigned tag = byte(at++);
    if (tag != 0x63 && tag != 0x65)
        return eFIT::NO;
    if (tag == 0x65) {
        if (!have(2))
            return eFIT::OPEN;
        at += 2;
    }
    if (!have(2))
        return eFIT::OPEN;
    return byte(at) == 0x01 && byte(at + 1) <= 0x01 ? eFIT::YES : eFIT::NO;
}

} // namespace

eINPUT DetectInput(std::string_view head, bool complete) noexcept
{
    const eFIT hex = FitsHex(head);
    const eFIT raw = FitsRaw(head);
    if (raw == eFIT::YES)
        return INPUT_RAW;
    if (hex == eFIT::YES)
        return INPUT_HEX;
    const bool open = hex == eFIT::OPEN || raw == eFIT::OPEN;
    if (open && !complete)
        return INPUT_AUTO;
    if (head.empty())
        return INPUT_FRAMED;
    return hex == eFIT::OPEN ? INPUT_HEX : raw == eFIT::OPEN ? INPUT_RAW : INPUT_FRAMED;
}

} // namespace tool
