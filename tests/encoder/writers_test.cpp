// The writers: exact bytes, and all or nothing at every size of the room that is left.
#include "tests/encoder/encoder_support.h"
#include "tests/support/rows.h"

namespace
{

using namespace test;

struct WriterRow {
    const char* name;
    std::function<void(cBuffer*)> write;
    const char* hex;
};

template <typename T>
std::function<void(cBuffer*)> With(void (*writer)(T, cBuffer*), T value)
{
    return [=](cBuffer* buf) { writer(value, buf); };
}

const WriterRow kWriters[] = {
    {"unsigned 8", With<unsigned char>(ToBin_as_Unsigned8, 0xFE), "62 FE"},
    {"unsigned 16", With<unsigned short>(ToBin_as_Unsigned16, 5), "63 00 05"},
    {"unsigned 24, low bits", With<unsigned>(ToBin_as_Unsigned24, 0x81234567), "64 23 45 67"},
    {"unsigned 32", With<unsigned>(ToBin_as_Unsigned32, 0x12345678), "65 12 34 56 78"},
    {"unsigned 48, low bits", With<U64>(ToBin_as_Unsigned48, 0xFFFF010203040506), "67010203040506"},
    {"unsigned 64", With<U64>(ToBin_as_Unsigned64, 0x8102030405060708), "698102030405060708"},
    {"integer 8", With<signed char>(ToBin_as_Integer8, -2), "52 FE"},
    {"integer 16", With<short>(ToBin_as_Integer16, -2), "53 FF FE"},
    {"integer 24", With<int>(ToBin_as_Integer24, -2), "54 FF FF FE"},
    {"integer 32", With<int>(ToBin_as_Integer32, -2), "55 FF FF FF FE"},
    {"integer 48", With<long long>(ToBin_as_Integer48, -2), "57 FF FF FF FF FF FE"},
    {"integer 64", With<long long>(ToBin_as_Integer64, -2), "59 FF FF FF FF FF FF FF FE"},
    {"not set", ToBin_As_Option, "01"},
    {"choice", With<unsigned char>(ToBin_as_Choice, 3), "72 62 03"},
    {"list of 0", With<unsigned short>(ToBin_as_ListCount, 0), "70"},
    {"list of 15", With<unsigned short>(ToBin_as_ListCount, 15), "7F"},
    {"list of 16", With<unsigned short>(ToBin_as_ListCount, 16), "F1 00"},
    {"list of 0x1234", With<unsigned short>(ToBin_as_ListCount, 0x1234), "F1 82 83 04"},
    {"list of 0xFFFF", With<unsigned short>(ToBin_as_ListCount, 0xFFFF), "FF 8F 8F 0F"},
};

void ExpectAllOrNothing(const WriterRow& row)
{
    const std::string whole = Hexed(row.hex);
    EXPECT_EQ(Written(row.write), whole) << row.name;
    for (std::size_t size = 0; size <= whole.size() / 2; ++size)
        EXPECT_EQ(Written(row.write, size), size < whole.size() / 2 ? "" : whole)
            << row.name << " in a buffer of " << size;
}

TEST(Writers, WriteWholeFieldsOrNothing)
{
    for (const WriterRow& row : kWriters)
        ExpectAllOrNothing(row);
    for (const Row& row : Rows("encoder/shortest.txt", 3)) {
        const U64 value = std::strtoull(row[0].c_str(), nullptr, 0);
        const auto number = static_cast<long long>(value);
        ExpectAllOrNothing({row[0].c_str(), With(ToBin_as_Unsigned, value), row[1].c_str()});
        ExpectAllOrNothing({row[0].c_str(), With(ToBin_as_Integer, number), row[2].c_str()});
    }
}

// The head of a long choice needs 5 free bytes even for a short tag, and keeps them when a tag of
// 32 bits then finds no room.
TEST(Writers, Choice32)
{
    EXPECT_EQ(Written(With(ToBin_as_Choice32, 0x0100U), 5), "72630100");
    EXPECT_EQ(Written(With(ToBin_as_Choice32, 0x0100U), 4), "");
    EXPECT_EQ(Written(With(ToBin_as_Choice32, 0x12345678U), 6), "726512345678");
    EXPECT_EQ(Written(With(ToBin_as_Choice32, 0x12345678U), 5), "72");
}

// Each border is the greatest length with that many TL bytes.
TEST(Writers, TlCounts)
{
    const int octets[] = {14, 253, 4092, 65531, 1048570, 16777209, 268435448};
    const int elements[] = {15, 255, 4095, 65535, 1048575, 16777215, 268435455};
    for (int n = 1; n <= 7; ++n) {
        EXPECT_EQ(Calculate_TLFCount_OctStr(octets[n - 1]), n);
        EXPECT_EQ(Calculate_TLFCount_OctStr(octets[n - 1] + 1), n + 1);
        EXPECT_EQ(Calculate_TLFCount_ListOf(elements[n - 1]), n);
        EXPECT_EQ(Calculate_TLFCount_ListOf(elements[n - 1] + 1), n + 1);
    }
    EXPECT_EQ(Calculate_TLFCount_OctStr(-5) + Calculate_TLFCount_OctStr(0), 2);
    EXPECT_EQ(Calculate_TLFCount_ListOf(-5) + Calculate_TLFCount_ListOf(0), 2);
    EXPECT_EQ(Calculate_TLFCount_OctStr(0x7FFFFFFF), 8);
    EXPECT_EQ(Calculate_TLFCount_ListOf(0x7FFFFFFF), 8);
}

} // namespace
