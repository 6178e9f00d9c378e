// Records at their boundaries: kinds and what other getters make of them, names and data around
// the sizes that are held in place, dumps, and nesting beyond any stack. How edits and copies work
// together is the subject of the fuzz target of records.
#include "vorn/vorn.h"

#include <gtest/gtest.h>

#include <climits>

namespace
{

using vorn::cRecord;
using vorn::cRecordPar;

TEST(Record, EachKindThroughOtherGetters)
{
    struct {
        const char* dump;
        void (*append)(cRecord&);
        int type;
        unsigned asUInt;
        long long asSInt64;
    } const table[] = {
        {"n=-2147483648", [](cRecord& r) { r.AppendSIntPar("n", INT_MIN, 0); }, 2, 1U << 31,
         INT_MIN},
        {"n=4294967295", [](cRecord& r) { r.AppendUIntPar("n", UINT_MAX, 0); }, 3, UINT_MAX,
         UINT_MAX},
        {"n=-9223372036854775808", [](cRecord& r) { r.AppendSInt64Par("n", LLONG_MIN, 0); }, 8, 0,
         LLONG_MIN},
        {"n=18446744073709551615", [](cRecord& r) { r.AppendUInt64Par("n", ULLONG_MAX, 0); }, 9,
         UINT_MAX, -1},
        {"n=true", [](cRecord& r) { r.AppendBoolPar("n", true, 0); }, 10, 1, 1},
        {"n=ab0001", [](cRecord& r) { r.AppendDataPar("n", "\xAB\0\x01", 3, 0); }, 5, 0, 0},
        {"n=", [](cRecord& r) { r.AppendDataPar("n", "x", -1, 0); }, 5, 0, 0},
        {"n={}", [](cRecord& r) { r.AppendRecordPar("n", r, 0); }, 6, 0, 0},
        {"", [](cRecord& r) { r.AppendBoolPar("other", true, 0); }, 0, 0, 0},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.dump);
        cRecord record;
        row.append(record);
        const cRecordPar par = record.GetFirstPar("n", 0, 0);
        EXPECT_EQ(par.ToString(), row.dump);
        EXPECT_EQ(par.GetType(1), row.type);
        EXPECT_EQ(par.IsEmpty(), row.type == 0);
        EXPECT_EQ(par.GetUInt(), row.asUInt);
        EXPECT_EQ(par.GetSInt64(), row.asSInt64);
        EXPECT_EQ(par.GetBool(), row.asSInt64 != 0);
        EXPECT_EQ(par.GetData() != nullptr, row.type == 5);
    }
}

TEST(Record, NamesAreCutOffAt127Bytes)
{
    const std::string name(128, 'n');
    cRecord record;
    record.AppendUIntPar(name.c_str(), 1, 0);
    record.AppendUIntPar(nullptr, 2, 0);
    EXPECT_EQ(record.ToString(), "{" + name.substr(1) + "=1, =2}");
    EXPECT_TRUE(record.GetFirstPar(name.c_str(), 0, 0).IsValid());
}

TEST(Record, PathsOfOneNameAndOfNone)
{
    cRecord record;
    record.AppendRecordPar("a.b", cRecord(), 0);
    EXPECT_FALSE(record.GetFirstParByPath("a.b", ".", 0, 0).IsValid());
    for (const char* const separator : {"", static_cast<const char*>(nullptr)})
        EXPECT_TRUE(record.GetFirstParByPath("a.b", separator, 0, 0).IsValid());
    EXPECT_TRUE(record.GetFirstParByPath(nullptr, ".", 0, 0).IsValid()); // any name
}

TEST(Record, DumpsOfEveryShape)
{
    cRecord inner;
    inner.AppendUIntPar("a", 1, 0);
    inner.AppendRecordPar("e", cRecord(), 0);
    cRecord record;
    record.AppendRecordPar("r", inner, 0);
    record.AppendBoolPar("b", false, 0);
    EXPECT_EQ(record.ToString2(0, 0), "{r={a=1, e={}}, b=false}");
    EXPECT_EQ(record.ToString2(0, 1), "{r=..., b=false}");
    EXPECT_EQ(record.ToString2(2, 0), "{\n  r={\n    a=1,\n    e={}\n  },\n  b=false\n}");
}

cRecord Deep(std::size_t levels, unsigned innermost)
{
    cRecord record;
    record.AppendUIntPar("x", innermost, 0);
    for (; levels > 0; --levels) {
        cRecord outer;
        outer.AppendRecordPar("r", record, 0);
        record = outer;
    }
    return record;
}

TEST(Record, AMillionLevelsNeedNoStack)
{
    constexpr std::size_t kLevels = 1000000;
    cRecord record = Deep(kLevels, 1);
    cRecordPar kept = record.GetFirstPar("r", 0, 0);
    EXPECT_TRUE(record == Deep(kLevels, 1));
    EXPECT_FALSE(record == Deep(kLevels, 2));
    const std::string dump = record.ToString();
    EXPECT_EQ(dump.substr(dump.find("...")), "..." + std::string(cRecord::kMaxDumpDepth, '}'));
    record.Create();
    EXPECT_TRUE(kept.IsValid());
    kept = cRecordPar();
}

} // namespace
