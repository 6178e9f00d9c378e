// CRC-16 against its definition, bit by bit.
#include "vorn/crc16.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

// The register after the bytes, by the definition.
unsigned short Reference(const std::string& bytes, std::size_t size)
{
    unsigned reg = 0xFFFF;
    for (std::size_t i = 0; i < size; ++i) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            const unsigned in = static_cast<unsigned char>(bytes[i]) >> bit & 1U;
            reg = ((reg ^ in) & 1U) != 0 ? reg >> 1 ^ 0x8408U : reg >> 1;
        }
    }
    return static_cast<unsigned short>(reg);
}

unsigned short Complement(unsigned short crc) { return static_cast<unsigned short>(~crc); }

TEST(Crc16, KnownValues)
{
    const std::string start = test::Hex("1B1B1B1B 01010101");
    EXPECT_EQ(vorn::createCRC16("123456789", 9, vorn::initCRC16()), 0x906E);
    EXPECT_EQ(Complement(vorn::createCRC16(start.data(), 8, vorn::initCRC16())), 0x91DC);
    EXPECT_EQ(vorn::createCRC16(start.data(), -1, 0x1234), Complement(0x1234));

    // A frame followed by its CRC, low byte first, leaves the residue of a good frame.
    const std::string frame = "123456789" + test::Hex("6E90");
    EXPECT_EQ(Complement(vorn::createCRC16(frame.data(), 11, vorn::initCRC16())), 0xF0B8);
}

TEST(Crc16, EveryLengthAndSplit)
{
    std::mt19937 random(1);
    std::string bytes(900, '\0'); // long enough for every way of computing it
    for (char& c : bytes)
        c = static_cast<char>(random());
    unsigned short byByte = vorn::initCRC16();
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const unsigned short expected = Reference(bytes, size);
        ASSERT_EQ(byByte, expected) << size;
        for (std::size_t split = 0; split <= size; split += 7) {
            const unsigned short head =
                vorn::createCRC16(bytes.data(), static_cast<int>(split), vorn::initCRC16());
            ASSERT_EQ(Complement(vorn::createCRC16(
                          bytes.data() + split, static_cast<int>(size - split), Complement(head))),
                      expected)
                << size << " bytes, split at " << split;
        }
        if (size < bytes.size())
            byByte = vorn::addByte2CRC16(static_cast<unsigned char>(bytes[size]), byByte);
    }
}

} // namespace
