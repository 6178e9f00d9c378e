// The builder: what it makes equals what the plain operations make, and lives as any record does,
// in whole and in part.
#include "vorn/vorn.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace
{

using vorn::cParName;
using vorn::cRecord;
using vorn::cRecordBuilder;

constexpr cParName kNumber("number"), kData("data"), kList("list"), kElement("element");
const std::string kLong(100, 'x'); // more than a parameter holds in place

template <typename Record>
void Fill(Record& record, int seed)
{
    record.AppendUIntPar(kNumber, static_cast<unsigned>(seed), 0);
    record.AppendSIntPar(kNumber, -seed, 0);
    record.AppendUInt64Par(kNumber, ~0ULL - static_cast<unsigned>(seed), 0);
    record.AppendSInt64Par(kNumber, -5000000000LL * seed, 0);
    record.AppendBoolPar(kNumber, seed % 2 == 0, 0);
    record.AppendDataPar(kData, "abc", seed % 4, 0);
    record.AppendDataPar(kData, nullptr, 5, 0);
    record.AppendDataPar(kData, kLong.data(), static_cast<int>(kLong.size()) - seed % 3, 0);
}

cRecord Plain(int elements)
{
    cRecord list, outer;
    for (int i = 0; i < elements; ++i) {
        cRecord element;
        Fill(element, i);
        list.AppendRecordPar(kElement, element, 0);
    }
    list.AppendRecordPar(kElement, cRecord(), 0);
    outer.AppendRecordPar(kList, list, 0);
    Fill(outer, 7);
    return outer;
}

// The same, announced as having that many elements.
cRecord Built(cRecordBuilder& builder, int elements, std::size_t announced)
{
    builder.Open();
    builder.Open();
    builder.Expect(announced);
    for (int i = 0; i < elements; ++i) {
        builder.Open();
        Fill(builder, i);
        builder.AppendRecordPar(kElement, builder.Close(), 0);
        if (i == 3) {
            builder.Open();
            Fill(builder, 1);
            builder.Drop();
        }
    }
    builder.Open();
    builder.AppendRecordPar(kElement, builder.Close(), 0);
    builder.AppendRecordPar(kList, builder.Close(), 0);
    Fill(builder, 7);
    const cRecord record = builder.Get(builder.Close());
    builder.Create();
    return record;
}

TEST(Builder, BuildsWhatPlainOperationsBuild)
{
    cRecordBuilder builder;
    for (const int elements : {0, 1, 4, 5, 100, 5000})
        for (const std::size_t announced : {0UL, 1UL, 6UL, 101UL})
            EXPECT_EQ(Built(builder, elements, announced), Plain(elements))
                << elements << " elements, announced: " << announced;
}

TEST(Builder, PartsOutliveTheWholeAndChangesStayApart)
{
    cRecordBuilder builder;
    cRecord whole = Built(builder, 5, 0);
    cRecord list;
    whole.GetFirstPar(kList, 0, 0).GetRecord(list);
    const vorn::cRecordPar element = list.GetFirstPar(kElement, 0, 0);
    cRecord changed = list;
    changed.DeletePar(kElement, 0, 0);
    changed.AppendUIntPar("more", 1, 0);
    EXPECT_EQ(list.GetParCount(nullptr, 0, 0), 6);
    EXPECT_EQ(changed.GetParCount(nullptr, 0, 0), 6);
    whole.AppendRecordPar(kList, changed, 0);
    whole.Create();
    list.Create();
    changed.Create();
    cRecord expected, kept;
    Fill(expected, 0);
    ASSERT_TRUE(element.GetRecord(kept));
    EXPECT_EQ(kept, expected);
}

// The memory of trees that are gone serves the next ones; what is kept of any tree stays as it is.
TEST(Builder, WhatIsKeptIsNotBuiltOver)
{
    cRecordBuilder builder;
    std::map<int, cRecord> kept;
    std::set<const vorn::cRecordPar*> places;
    constexpr int kTrees = 200;
    for (int i = 0; i < kTrees; ++i) {
        const cRecord tree = Built(builder, i % 3 + (i % 50 == 0 ? 500 : 0), 0);
        places.insert(tree.begin());
        if (i % 5 == 0)
            tree.begin()->GetRecord(kept[i]);
        kept.erase(i - 60);
    }
    EXPECT_LT(places.size(), kTrees / 2U);
    for (const auto& [i, list] : kept) {
        cRecord expected;
        Plain(i % 3 + (i % 50 == 0 ? 500 : 0)).begin()->GetRecord(expected);
        EXPECT_EQ(list, expected) << "tree " << i;
    }
}

TEST(Builder, OpenRecordsAreCopiedAndClearedAsTheyStand)
{
    cRecordBuilder builder;
    builder.Open();
    Fill(builder, 1);
    builder.Open();
    Fill(builder, 2);
    const cRecord outer = builder.Copy(0), inner = builder.Copy(1);
    builder.Clear(0);
    EXPECT_EQ(builder.Levels(), 2U);
    EXPECT_EQ(builder.Copy(0), cRecord());
    EXPECT_EQ(builder.Copy(1), inner);
    builder.Clear(1);
    Fill(builder, 3);
    const cRecord refilled = builder.Copy(1);
    builder.Create();
    cRecord expected[3];
    for (int i = 0; i < 3; ++i)
        Fill(expected[i], i + 1);
    EXPECT_EQ(outer, expected[0]);
    EXPECT_EQ(inner, expected[1]);
    EXPECT_EQ(refilled, expected[2]);
}

} // namespace
