// What every wing relies on: fields count only in their own kind, silent trace lines are never
// formatted, units are ready before a host's own statics.
#include "quarn/foundation/fields.h"
#include "quarn/foundation/trace.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

namespace
{

using namespace quarn::detail;

const int kLevelAtStart = LibQuarn != nullptr ? LibQuarn->iLevel.load() : -1;

TEST(Foundation, AFieldCountsOnlyInItsOwnKind)
{
    static constexpr eKIND kKinds[] = {KIND_SINT,   KIND_UINT,   KIND_DATA, KIND_RECORD,
                                       KIND_SINT64, KIND_UINT64, KIND_BOOL};
    vorn::cRecord inner;
    inner.AppendUIntPar("x", 1, 0);
    vorn::cRecord record;
    record.AppendSIntPar("2", 1, 0);
    record.AppendUIntPar("3", 1, 0);
    record.AppendDataPar("5", "x", 1, 0);
    record.AppendRecordPar("6", inner, 0);
    record.AppendSInt64Par("8", 1, 0);
    record.AppendUInt64Par("9", 1, 0);
    record.AppendBoolPar("10", true, 0);
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
