// Memory that runs out: every allocation in turn fails, and an object is then either whole or not
// valid, what is written is written whole or not at all, and nothing is thrown.
#include "written.h"

#include <cstdlib>
#include <new>

namespace
{
long lLeft = -1; // allocations until one fails; below 0: none does
}

// Not inlined, lest the compiler takes new and free for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    void* p = lLeft >= 0 && lLeft-- == 0 ? nullptr : std::malloc(size > 0 ? size : 1);
    return p != nullptr ? p : throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }

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
        lLeft = n;
        auto result = step();
        failed = lLeft < 0;
        lLeft = -1;
        check(result, failed);
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
    cSmlList list;
    std::string sign;
    cSmlValue value;
    const auto failsOnlyThen = [](bool done, bool failed) { EXPECT_EQ(done, !failed); };
    FailEach([&] { return entry.GetValueSign(sign) && entry.GetValue(value); }, failsOnlyThen);
    FailEach([&] { return list.SetListEntry(entry); }, failsOnlyThen);
    FailEach(
        [&] {
            cSmlListEntry target;
            std::string unset;
            return target.SetValueSign(sign) == target.GetValueSign(unset) && !unset.empty();
        },
        failsOnlyThen);
    int count = 0;
    EXPECT_TRUE(list.GetListCount(count) && count == 1);
}

} // namespace
