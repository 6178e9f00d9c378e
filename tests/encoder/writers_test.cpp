// The writers: exact bytes, and all or nothing at every size of the room that is left.
#include "tests/encoder/encoder_support.h"

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
    {"unsigned 48, low bits", With<U64>(ToBin_as_Unsigned48, 0xFFFF010203040506),
     "67 01 02 03 04 05 06"},
    {"unsigned 64", With<U64>(ToBin_as_Unsigned64, 0x8102030405060708),
     "69 81 02 03 04 05 06 07 08"},
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

// The shortest forms, on both sides of every border.
struct ShortestRow {
    long long value;
    const char* asUnsigned;
    const char* asInteger;
};

const ShortestRow kShortest[] = {
    {0, "62 00", "52 00"},
    {127, "62 7F", "52 7F"},
    {128, "62 80", "53 00 80"},
    {0xFF, "62 FF", "53 00 FF"},
    {0x100, "63 01 00", "53 01 00"},
    {0x7FFF, "63 7F FF", "53 7F FF"},
    {0x8000, "63 80 00", "54 00 80 00"},
    {0xFFFF, "63 FF FF", "54 00 FF FF"},
    {0x10000, "64 01 00 00", "54 01 00 00"},
    {0x7FFFFF, "64 7F FF FF", "54 7F FF FF"},
    {0x800000, "64 80 00 00", "55 00 80 00 00"},
    {0xFFFFFF, "64 FF FF FF", "55 00 FF FF FF"},
    {0x1000000, "65 01 00 00 00", "55 01 00 00 00"},
    {0x7FFFFFFF, "65 7F FF FF FF", "55 7F FF FF FF"},
    {0x80000000, "65 80 00 00 00", "57 00 00 80 00 00 00"},
    {0xFFFFFFFF, "65 FF FF FF FF", "57 00 00 FF FF FF FF"},
    {0x100000000, "67 00 01 00 00 00 00", "57 00 01 00 00 00 00"},
    {0x7FFFFFFFFFFF, "67 7F FF FF FF FF FF", "57 7F FF FF FF FF FF"},
    {0x800000000000, "67 80 00 00 00 00 00", "59 00 00 80 00 00 00 00 00"},
    {0xFFFFFFFFFFFF, "67 FF FF FF FF FF FF", "59 00 00 FF FF FF FF FF FF"},
    {0x1000000000000, "69 00 01 00 00 00 00 00 00", "59 00 01 00 00 00 00 00 00"},
    {-1, "69 FF FF FF FF FF FF FF FF", "52 FF"},
    {-128, "69 FF FF FF FF FF FF FF 80", "52 80"},
    {-129, "69 FF FF FF FF FF FF FF 7F", "53 FF 7F"},
    {-0x8000, "69 FF FF FF FF FF FF 80 00", "53 80 00"},
    {-0x8001, "69 FF FF FF FF FF FF 7F FF", "54 FF 7F FF"},
    {-0x800000, "69 FF FF FF FF FF 80 00 00", "54 80 00 00"},
    {-0x800001, "69 FF FF FF FF FF 7F FF FF", "55 FF 7F FF FF"},
    {-0x80000000LL, "69 FF FF FF FF 80 00 00 00", "55 80 00 00 00"},
    {-0x80000001LL, "69 FF FF FF FF 7F FF FF FF", "57 FF FF 7F FF FF FF"},
    {-0x800000000000, "69 FF FF 80 00 00 00 00 00", "57 80 00 00 00 00 00"},
    {-0x800000000001, "69 FF FF 7F FF FF FF FF FF", "59 FF FF 7F FF FF FF FF FF"},
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
    for (const ShortestRow& row : kShortest) {
        ExpectAllOrNothing({"shortest unsigned",
                            With(ToBin_as_Unsigned, static_cast<U64>(row.value)), row.asUnsigned});
        ExpectAllOrNothing({"shortest integer", With(ToBin_as_Integer, row.value), row.asInteger});
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
