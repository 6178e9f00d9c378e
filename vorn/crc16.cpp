// CRC-16 by tables: one table for single bytes, sixteen for runs. Table k holds the register's
// change for a byte that is followed by k further bytes, so that sixteen bytes cost sixteen
// independent look-ups instead of a chain of sixteen dependent ones. Bytes are read one by one, so
// the byte order of the host does not matter.
#include "vorn/crc16.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace vorn
{
namespace
{

constexpr std::uint16_t kPolynomial = 0x8408; // reflected
constexpr std::size_t kStep = 16;             // bytes per step of a run

using Table = std::array<std::uint16_t, 256>;

constexpr std::array<Table, kStep> MakeTables()
{
    std::array<Table, kStep> tables{};
    for (unsigned b = 0; b < 256; ++b) {
        unsigned crc = b;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) != 0 ? (crc >> 1) ^ kPolynomial : crc >> 1;
        tables[0][b] = static_cast<std::uint16_t>(crc);
    }
    for (std::size_t k = 1; k < kStep; ++k) {
        for (unsigned b = 0; b < 256; ++b) {
            const unsigned crc = tables[k - 1][b];
            tables[k][b] = static_cast<std::uint16_t>((crc >> 8) ^ tables[0][crc & 0xFFU]);
        }
    }
    return tables;
}

constexpr std::array<Table, kStep> kTables = MakeTables();

inline unsigned Shift(unsigned crc, unsigned char b)
{
    return (crc >> 8) ^ kTables[0][(crc ^ b) & 0xFFU];
}

} // namespace

unsigned short initCRC16() noexcept { return 0xFFFF; }

unsigned short addByte2CRC16(unsigned char b, unsigned short crc) noexcept
{
    return static_cast<unsigned short>(Shift(crc, b));
}

unsigned short createCRC16(const char* data, int len, unsigned short crc) noexcept
{
    const auto* p = reinterpret_cast<const unsigned char*>(data);
    std::size_t left = len > 0 ? static_cast<std::size_t>(len) : 0;
    unsigned reg = crc;
    for (; left >= kStep; left -= kStep, p += kStep) {
        unsigned next = kTables[kStep - 1][(reg ^ p[0]) & 0xFFU] ^
                        kTables[kStep - 2][((reg >> 8) ^ p[1]) & 0xFFU];
        for (std::size_t i = 2; i < kStep; ++i)
            next ^= kTables[kStep - 1 - i][p[i]];
        reg = next;
    }
    for (; left > 0; --left)
        reg = Shift(reg, *p++);
    return static_cast<unsigned short>(~reg);
}

} // namespace vorn
