// Memory that runs out: every allocation in turn fails, and an object is then either whole or not
// valid, what is written is written whole or not at all, nothing is thrown and nothing leaks.
#include "tests/support/failing_new.h"
#include "written.h"

namespace
{

using test::Rec;

// Runs step with the first, the second, ... allocation failing, until it goes through without, and
// hands each result to check, with whether an allocation had failed.
template <typename Step, typename Check>
void FailEach(Step step, Check check)
{
    bool failed = true;
    long n = 0;
    for (; failed && n < 10000; ++n) {
        const long before = test::lBlocksInUse;
        {
            auto result = [&] {
                const test::FailingNew one(n, 1);
                return step();
            }();
            failed = test::lFailuresLeft == 0;
            check(result, failed);
        }
        EXPECT_EQ(test::lBlocksInUse, before);
    }
    EXPECT_GT(n, 1);
}

#define LONG "x4142434445464748494A4B4C4D4E4F505152535455565758595A "
#define TIME "={type=u1 value=u77} "

// Target is made from the text's class, C itself or what a C is turned into.
template <class C, class Target = C>
void Exhaust(const std::string& text)
{
    test::TraceCapture quiet(LibQuarn, 0);
    const vorn::cRecord input = Rec(text);
    const C sample(input);
    ASSERT_TRUE(sample.IsValid());
    Target turned;
    turned = sample;
    vorn::cRecord expected;
    ASSERT_TRUE(turned.ToRecord(expected));
    const auto whole = [](const vorn::cRecord& original) {
        return [&](const auto& object, bool failed) {
            vorn::cRecord written;
            object.ToRecord(written);
            EXPECT_TRUE(object.IsValid() ? written == original : failed) << written.ToString();
        };
    };
    FailEach([&] { return C(input); }, whole(input));
    FailEach([&] { return C(sample); }, whole(input));
    FailEach(
        [&] {
            Target target;
            target = sample;
            return target;
        },
        whole(expected));
    FailEach(
        [&] {
            std::pair<bool, vorn::cRecord> written;
            written.first = sample.ToRecord(written.second);
            return written;
        },
        [&](const std::pair<bool, vorn::cRecord>& written, bool failed) {
            EXPECT_EQ(written.first, !failed);
            EXPECT_EQ(written.second, failed ? vorn::cRecord() : input);
        });
}

TEST(Memory, RunsOut)
{
    Exhaust<cSmlAttentionRes>(
        "SmlAttentionRes={serverId=x01 attentionNo=U1 parTree={parName=U1 "
        "child_List={parTree={parName=U2 procParVal={type=u5 value={objName=U1 "
        "value=u1 valueSignature=" LONG "}}}}}}");
    Exhaust<cSmlGetProfPackRes>(
        "SmlGetProfPackRes={serverId=x01 actTime" TIME "regPeriod=u1 parTreePath={path_Entry=U1} "
        "header_List={pObjHdEntry={pObjHdEntry={objName=U1 unit=u1 scaler=i1}}} period_List={"
        "pObjPerEntry={pObjPerEntry={valTime" TIME "status=U1 value_List={value_List_Entry={"
        "value_List_Entry={value=" LONG "}}} periodSignature=" LONG "}}} profileSignature=" LONG
        "}");
    Exhaust<cSmlGetProfListRes, cSmlGetListRes>(
        "SmlGetProfListRes={serverId=" LONG "actTime" TIME
        "regPeriod=u1 parTreePath={path_Entry=U1} "
        "valTime" TIME "status=U7 period_List={SmlPeriodEntry={SmlPeriodEntry={objName=U1 unit=u30 "
        "scaler=i-1 value=" LONG "}}}}");
}

TEST(Memory, GettersAndSetters)
{
    test::TraceCapture quiet(LibQuarn, 0);
    const cSmlListEntry entry(Rec("objName=U1 value=" LONG "valueSignature=" LONG));
    const std::string text(40, 'A');
    const auto failsOnlyThen = [](bool done, bool failed) { EXPECT_EQ(done, !failed); };
    FailEach(
        [&] {
            std::string sign;
            cSmlValue value;
            return entry.GetValueSign(sign) && entry.GetValue(value);
        },
        failsOnlyThen);
    FailEach(
        [&] {
            cSmlList list;
            int count = 0;
            return list.SetListEntry(entry) == list.GetListCount(count) && count == 1;
        },
        failsOnlyThen);
    FailEach(
        [&] {
            cSmlListEntry target;
            std::string unset;
            return target.SetValueSign(text) == target.GetValueSign(unset) && !unset.empty();
        },
        failsOnlyThen);
    FailEach(
        [&] {
            cSmlProcParValue target;
            target = cSmlTime();
            target = entry;
            return target.IsValid();
        },
        failsOnlyThen);
}

} // namespace
