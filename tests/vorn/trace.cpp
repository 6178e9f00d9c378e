// Trace units, their levels, the sink, and the formatting of lines around the length up to which
// they are formatted in place.
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{

using vorn::cUnit;
using vorn::eLEVEL;

TEST(Trace, LinesPassUpToTheLevelOfTheirUnit)
{
    cUnit unit("T", vorn::LEVEL_ERROR, vorn::OUTPUT_DEFAULT);
    struct {
        int unitLevel;
        const char* lines;
    } const table[] = {
        {0, ""},
        {2, "T[2]: a\nT[2]: b\n"},
        {8, "T[2]: a\nT[2]: b\nT[4]: a\nT[4]: b\nT[8]: a\nT[8]: b\n"},
        {16, "T[2]: a\nT[2]: b\nT[4]: a\nT[4]: b\nT[8]: a\nT[8]: b\nT[16]: a\nT[16]: b\n"},
    };
    for (const auto& row : table) {
        const test::TraceCapture capture(&unit, row.unitLevel);
        for (const int level : {2, 4, 8, 16}) {
            vorn::_Trace(&unit, eLEVEL(level), "a");
            vorn::_Trace(&unit, eLEVEL(level), std::string("b"));
        }
        EXPECT_EQ(capture.Text(), row.lines) << "level " << row.unitLevel;
    }
}

TEST(Trace, BadArgumentsAndFailingSinksLoseTheirLineOnly)
{
    cUnit unit("T", vorn::LEVEL_ERROR, vorn::OUTPUT_DEFAULT);
    {
        const test::TraceCapture capture;
        vorn::_Trace(nullptr, vorn::LEVEL_ERROR, "a");
        vorn::_Trace(&unit, vorn::LEVEL_ERROR, static_cast<const char*>(nullptr));
        EXPECT_EQ(capture.Text(), "");
    }
    vorn::SetTraceSink([](const cUnit&, eLEVEL, const std::string&) {
        vorn::SetTraceSink({}); // a sink may replace itself
        throw std::runtime_error("sink");
    });
    testing::internal::CaptureStderr();
    vorn::_Trace(&unit, vorn::LEVEL_ERROR, "lost");
    vorn::_Trace(&unit, vorn::LEVEL_ERROR, "100%s");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "T[2]: 100%s\n");
}

TEST(Trace, UnitsAreFoundWhileTheyLive)
{
    EXPECT_EQ(vorn::FindUnit("A"), nullptr);
    EXPECT_EQ(vorn::FindUnit(nullptr), nullptr);
    {
        cUnit first("A", vorn::LEVEL_ERROR, vorn::OUTPUT_DEFAULT);
        cUnit other("AB", vorn::LEVEL_INFO, vorn::OUTPUT_DEFAULT);
        {
            const cUnit second("A", vorn::LEVEL_ERROR, vorn::OUTPUT_DEFAULT);
            EXPECT_EQ(vorn::FindUnit("A"), &second);
        }
        EXPECT_EQ(vorn::FindUnit("A"), &first);
        EXPECT_EQ(vorn::FindUnit("AB")->ToString(), "AB=8");
    }
    EXPECT_EQ(vorn::FindUnit("A"), nullptr);
    EXPECT_EQ(vorn::FindUnit("AB"), nullptr);
}

TEST(Trace, LinesAreFormattedAtEveryLength)
{
    for (const std::size_t size : {0U, 1U, 253U, 254U, 255U, 256U, 257U, 300U, 100000U}) {
        const std::string filling(size, 'x');
        EXPECT_EQ(vorn::FormatString("%s|%02x", filling.c_str(), 10), filling + "|0a") << size;
    }
    EXPECT_EQ(vorn::FormatString("%%, rc=%d", -1), "%, rc=-1");
}

} // namespace
