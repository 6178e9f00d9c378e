// CRC-16 of runs of bytes in two ways, neither of which depends on the byte order of the host.
//
// By tables: table k holds the register's change for a byte that is followed by k further bytes, so
// that sixteen bytes cost sixteen independent look-ups instead of a chain of sixteen dependent
// ones.
//
// By folding, for long runs: the polynomial G = x^16 + x^12 + x^5 + 1 has few terms, and so has any
// power of it to a power of two, for squaring doubles the exponents. G^64 gives
//
//     x^1024 = x^768 + x^320 + 1    (modulo G)
//
// so that a word of 64 bits may be taken away from the front of the data when it is added to the
// words 4, 11 and 16 places behind it: three exclusive-ors for eight bytes. The last sixteen words,
// which have taken up all those before them, and what is behind them go by tables.
#include "vorn/crc16.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

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

// The register behind sizeof...(I) + 2 bytes. Only the first two look-ups wait for the register.
template <std::size_t... I>
inline unsigned Step(const unsigned char* p, unsigned reg, std::index_sequence<I...>)
{
    constexpr std::size_t last = sizeof...(I) + 1;
    const unsigned rest = (unsigned{kTables[last - 2 - I][p[I + 2]]} ^ ... ^ 0U);
    return (kTables[last][(reg ^ p[0]) & 0xFFU] ^ kTables[last - 1][((reg >> 8) ^ p[1]) & 0xFFU]) ^
           rest;
}

// A step of that many bytes, when left has that bit.
template <std::size_t Bytes>
inline void StepIf(std::size_t left, const unsigned char*& p, unsigned& reg)
{
    if ((left & Bytes) == 0)
        return;
    reg = Step(p, reg, std::make_index_sequence<Bytes - 2>());
    p += Bytes;
}

unsigned ByTables(const unsigned char* p, std::size_t left, unsigned reg)
{
    for (; left >= kStep; left -= kStep, p += kStep)
        reg = Step(p, reg, std::make_index_sequence<kStep - 2>());
    StepIf<8>(left, p, reg);
    StepIf<4>(left, p, reg);
    StepIf<2>(left, p, reg);
    return (left & 1) != 0 ? Shift(reg, *p) : reg;
}

constexpr std::size_t kWindow = 16;        // words that a word is folded over
constexpr std::size_t kWorthFolding = 384; // bytes

std::uint64_t Word(const unsigned char* p)
{
    std::uint64_t word = 0;
    std::memcpy(&word, p, sizeof word);
    return word;
}

template <std::size_t I>
inline void FoldWord(const unsigned char* p, std::uint64_t* next)
{
    const std::uint64_t word = Word(p + I * sizeof word) ^ next[I];
    next[I] = word;
    next[(I + 4) % kWindow] ^= word;
    next[(I + 11) % kWindow] ^= word;
}

template <std::size_t... I>
void FoldGroup(const unsigned char* p, std::uint64_t* next, std::index_sequence<I...>)
{
    (FoldWord<I>(p, next), ...);
}

// Folds the register and the words of data, in groups of sixteen, into the last group: what stands
// in window then has the CRC of all bytes up to there. Returns how many those are. REQUIRES: left
// is at least twice the size of window.
std::size_t Fold(const unsigned char* data, std::size_t left, unsigned reg, unsigned char* window)
{
    std::uint64_t next[kWindow] = {}; // what is to be added to the next words
    const unsigned char start[sizeof(std::uint64_t)] = {static_cast<unsigned char>(reg),
                                                        static_cast<unsigned char>(reg >> 8)};
    next[0] = Word(start);
    const unsigned char* p = data;
    const std::size_t group = sizeof next;
    for (; left >= 2 * group; left -= group, p += group)
        FoldGroup(p, next, std::make_index_sequence<kWindow>());
    for (std::size_t i = 0; i < kWindow; ++i) {
        const std::uint64_t word = Word(p + i * sizeof word) ^ next[i];
        std::memcpy(window + i * sizeof word, &word, sizeof word);
    }
    return static_cast<std::size_t>(p - data) + group;
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
    if (left >= kWorthFolding) {
        unsigned char window[kWindow * sizeof(std::uint64_t)];
        const std::size_t folded = Fold(p, left, reg, window);
        reg = ByTables(window, sizeof window, 0);
        p += folded;
        left -= folded;
    }
    return static_cast<unsigned short>(~ByTables(p, left, reg));
}

} // namespace vorn
