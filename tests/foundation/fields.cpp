// What every wing relies on: fields count only in their own kind, silent trace lines are never
// formatted, units are ready before a host's own statics.
#include "quarn/foundation/fields.h"
#include "quarn/foundation/trace.h"
#include "tests/support/record_text.h"
#include "tests/support/trace_capture.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace
{

using namespace quarn::detail;

const int kLevelAtStart = LibQuarn != nullptr ? LibQuarn->iLevel.load() : -1;

TEST(Foundation, AFieldCountsOnlyInItsOwnKind)
{
    static constexpr eKIND kKinds[] = {KIND_SINT,   KIND_UINT,   KIND_DATA, KIND_RECORD,
                                       KIND_SINT64, KIND_UINT64, KIND_BOOL};
    const vorn::cRecord inner = test::Rec("x=u1");
    const vorn::cRecord record = test::Rec("2=i1 3=u1 5=x78 6={x=u1} 8=I1 9=U1 10=b1");
    for (const eKIND stored : kKinds) {
        const std::string label = std::to_string(stored);
        for (const eKIND wanted : kKinds) {
            vorn::cRecordPar par;
            EXPECT_EQ(FindField(record, label.c_str(), wanted, par), stored == wanted)
                << stored << " as " << wanted;
        }
        vorn::cRecord out = record;
        EXPECT_EQ(FindRecord(record, label.c_str(), out), stored == KIND_RECORD);
        EXPECT_TRUE(out == (stored == KIND_RECORD ? inner : record)) << label;
    }
    vorn::cRecordPar par;
    EXPECT_FALSE(FindField(record, "absent", KIND_UINT, par));
}

// The numbers of the fields found, asked for in this order, and of the elements visited.
template <bool kInPlace>
std::string ReadAll(const vorn::cRecord& record, const std::vector<std::string>& labels)
{
    std::string found;
    RecordReader<vorn::cRecord, kInPlace> reader(record);
    for (const std::string& label : labels) {
        const vorn::cRecordPar* const par = reader.Find(label.c_str());
        found += par != nullptr ? std::to_string(par->GetUInt()) + ' ' : "- ";
    }
    for (const char* next : {static_cast<const char*>(nullptr), labels[1].c_str()}) {
        const auto visit = [&](const vorn::cRecordPar& par) {
            found += std::to_string(par.GetUInt()) + '.';
            return par.GetUInt() != 7;
        };
        const RecordReader<vorn::cRecord, kInPlace> elements(record);
        elements.VisitElements(labels[0].c_str(), next, visit);
    }
    return found;
}

// Whether parameters are read in place or by lookups, and in whatever order they stand.
TEST(Foundation, RecordsAreReadAlikeBothWays)
{
    std::vector<std::string> labels = {"a", "ab", "b", "c", "d"};
    std::mt19937 random(1);
    for (int run = 0; run < 2000; ++run) {
        vorn::cRecord record;
        for (unsigned i = 0; i < 1 + random() % 9; ++i)
            record.AppendUIntPar(labels[random() % 5].c_str(), i, 0);
        std::shuffle(labels.begin(), labels.end(), random);
        ASSERT_EQ(ReadAll<true>(record, labels), ReadAll<false>(record, labels))
            << record.ToString();
    }
}

TEST(Foundation, UnitsAreReadyBeforeAHostsStatics)
{
    EXPECT_EQ(kLevelAtStart, 2);
    for (const auto& [unit, name] : {std::pair(LibSmle, "LibSmle"),
                                     {LibSmlp, "LibSmlp"},
                                     {LibSmlt, "LibSmlt"},
                                     {LibQuarn, "LibQuarn"}})
        EXPECT_EQ(vorn::FindUnit(name), unit) << name;
}

TEST(Foundation, TextWithoutArgumentsIsNoFormat)
{
    const test::TraceCapture capture(LibSmlt, 4);
    Trace(LibSmlt, kAnomaly, "100%d");
    Trace(LibSmlt, kAnomaly, "rc=%d", 3);
    Trace(LibSmlt, kProgress, "silent");
    EXPECT_EQ(capture.Text(), "LibSmlt[4]: 100%d\nLibSmlt[4]: rc=3\n");
}

} // namespace
