// Records at their boundaries: kinds and what other getters make of them, names and data around
// the sizes that are held in place, dumps, and nesting beyond any stack. How edits and copies work
// together is the subject of the fuzz target of records.
#include "tests/support/record_text.h"

#include <gtest/gtest.h>

#include <climits>

namespace
{

using test::Rec;
using vorn::cRecord;
using vorn::cRecordPar;

TEST(Record, EachKindThroughOtherGetters)
{
    const struct {
        const char* text;
        const char* dump;
        int type;
        unsigned asUInt;
        long long asSInt64;
    } table[] = {
        {"n=i-2147483648", "n=-2147483648", 2, 1U << 31, INT_MIN},
        {"n=u4294967295", "n=4294967295", 3, UINT_MAX, UINT_MAX},
        {"n=I-9223372036854775808", "n=-9223372036854775808", 8, 0, LLONG_MIN},
        {"n=U18446744073709551615", "n=18446744073709551615", 9, UINT_MAX, -1},
        {"n=b1", "n=true", 10, 1, 1},
        {"n=xAB0001", "n=ab0001", 5, 0, 0},
        {"n=x", "n=", 5, 0, 0},
        {"n={}", "n={}", 6, 0, 0},
        {"other=b1", "", 0, 0, 0},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.text);
        const cRecordPar par = Rec(row.text).GetFirstPar("n", 0, 0);
        EXPECT_EQ(par.ToString(), row.dump);
        EXPECT_EQ(par.GetType(1), row.type);
        EXPECT_EQ(par.IsEmpty(), row.type == 0);
        EXPECT_EQ(par.GetUInt(), row.asUInt);
        EXPECT_EQ(par.GetSInt64(), row.asSInt64);
        EXPECT_EQ(par.GetBool(), row.asSInt64 != 0);
        EXPECT_EQ(par.GetData() != nullptr, row.type == 5);
    }
    cRecord record;
    record.AppendDataPar("n", "x", -1, 0);
    EXPECT_EQ(record, Rec("n=x"));
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
    const cRecord record = Rec("a.b={}");
    EXPECT_FALSE(record.GetFirstParByPath("a.b", ".", 0, 0).IsValid());
    for (const char* const separator : {"", static_cast<const char*>(nullptr)})
        EXPECT_TRUE(record.GetFirstParByPath("a.b", separator, 0, 0).IsValid());
    EXPECT_TRUE(record.GetFirstParByPath(nullptr, ".", 0, 0).IsValid()); // any name
}

TEST(Record, DumpsOfEveryShape)
{
    const cRecord record = Rec("r={a=u1 e={}} b=b0");
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
