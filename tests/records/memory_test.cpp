// Memory that runs out: every allocation in turn fails, and an object is then either whole or not
// valid, what is written is written whole or not at all, nothing is thrown and nothing leaks.
#include "class_table.h"

#include "tests/support/failing_new.h"

#include <functional>

namespace
{

using namespace test;

// Runs step with the first, the second, ... allocation failing, until it goes through without, and
// hands each result to check, with whether an allocation had failed.
template <typename Step, typename Check>
long FailEach(Step step, Check check)
{
    bool failed = true;
    long n = 0;
    for (; failed && n < 10000; ++n) {
        const long before = lBlocksInUse;
        {
            auto result = [&] {
                const FailingNew one(n, 1);
                return step();
            }();
            failed = lFailuresLeft == 0;
            check(result, failed);
        }
        EXPECT_EQ(lBlocksInUse, before);
    }
    return n;
}

const std::string kLong = "=x4142434445464748494A4B4C4D4E4F505152535455565758595A";

// Target is C itself or what a C is turned into.
template <class C, class Target = C, typename... Getters>
void Exhaust(const Case<C, Getters...>& row)
{
    SCOPED_TRACE(row.name);
    std::string text = row.text; // with strings that are too long to be held without allocating
    for (std::size_t at = 0; (at = text.find("=x", at)) != std::string::npos; ++at)
        text.replace(at, 2, kLong);
    const vorn::cRecord input = row.Input(text);
    const C sample(input);
    const auto assign = [&] {
        Target target;
        target = sample;
        return target;
    };
    const vorn::cRecord original = Written(sample), turned = Written(assign());
    const auto whole = [](const vorn::cRecord& expected) {
        return [&](const auto& object, bool failed) {
            EXPECT_TRUE(object.IsValid() ? Written(object) == expected : failed);
        };
    };
    FailEach([&] { return C(input); }, whole(original));
    FailEach([&] { return C(sample); }, whole(original));
    FailEach(assign, whole(turned));
    const auto write = [&] {
        std::pair<bool, vorn::cRecord> written;
        written.first = sample.ToRecord(written.second);
        return written;
    };
    const long steps = FailEach(write, [&](const auto& written, bool failed) {
        EXPECT_EQ(written.first, !failed);
        EXPECT_EQ(written.second, failed ? vorn::cRecord() : original);
    });
    EXPECT_GT(steps, 1);
}

TEST(Memory, RunsOut)
{
    const TraceCapture quiet(LibQuarn, 0);
    ForEachClass([](const auto& row) {
        Exhaust(row);
        using C = typename std::decay_t<decltype(row)>::Class;
        if constexpr (std::is_same_v<C, cSmlGetProfListRes>)
            Exhaust<C, cSmlGetListRes>(row);
    });
}

TEST(Memory, GettersAndSetters)
{
    const TraceCapture quiet(LibQuarn, 0);
    const cSmlListEntry entry(Rec("objName=U1 value" + kLong + " valueSignature" + kLong));
    const std::string text(40, 'A');
    const std::function<bool()> steps[] = {
        [&] {
            std::string sign;
            cSmlValue value;
            return entry.GetValueSign(sign) && entry.GetValue(value);
        },
        [&] {
            cSmlList list;
            int count = 0;
            const bool added = list.SetListEntry(entry);
            EXPECT_EQ(list.GetListCount(count), added);
            return added;
        },
        [&] {
            cSmlListEntry target;
            std::string got;
            return target.SetValueSign(text) && target.GetValueSign(got) && got == text;
        },
        [&] {
            cSmlProcParValue target;
            target = cSmlTime();
            target = entry;
            return target.IsValid();
        },
    };
    for (const auto& step : steps)
        EXPECT_GT(FailEach(step, [](bool done, bool failed) { EXPECT_EQ(done, !failed); }), 1);
}

} // namespace
