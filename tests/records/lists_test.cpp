// The lists, by one table: elements taken, passed over, yielded, written and copied, and every
// trace line with its level.
#include "written.h"

using test::Lines;
using test::Rec;

namespace
{

struct Outcome {
    bool valid, hasCount;
    int count;
    vorn::cRecord written, copied, assigned, rebuilt;
};

// Walks one class through everything, with the names that it gives to its operations.
template <auto Add, auto Get, auto CountOf, class C>
Outcome Walk(const vorn::cRecord& input)
{
    Outcome o{};
    o.count = -1;
    const C list(input);
    const C copy(list);
    C assigned(input), rebuilt;
    assigned = C();
    assigned = list;
    o.valid = list.IsValid();
    o.hasCount = (list.*CountOf)(o.count);
    typename C::Element element{};
    for (int i = 0; (list.*Get)(element, i); ++i)
        (rebuilt.*Add)(element);
    EXPECT_FALSE((list.*Get)(element, -1));
    list.ToRecord(o.written);
    copy.ToRecord(o.copied);
    assigned.ToRecord(o.assigned);
    rebuilt.ToRecord(o.rebuilt);
    rebuilt.Clear();
    EXPECT_FALSE(rebuilt.IsValid());
    return o;
}
template <class C>
constexpr auto kWalk = Walk<&C::SetListEntry, &C::GetListEntry, &C::GetListCount, C>;

struct Row {
    const char* name;
    const char* label;
    const char* elementLabel;
    const char* element;   // one element's text; # stands for its number
    const char* emptyName; // in the line on a list without elements
    const char* fault;     // the line on a parameter that is no element
    const char* invalid;   // the line on writing an empty list
    Outcome (*run)(const vorn::cRecord&);
    int emptyCount;      // what a count of -1 becomes on an empty list
    int missingLevel;    // of the line on no list at all; 0: no line
    bool takesStrangers; // after the first element, another label is not passed over in silence
};

#define WRONG " invalid/empty/wrong type"
#define NONE "[2]: class invalid/no entries"
#define ENTRY "={objName=U# unit=u30 scaler=i-1 value=u#} "
#define VALUE "value_List_Entry={value_List_Entry={value=u#}} "
// clang-format off
const Row kRows[] = {
    {"cSmlList", "valList", "valListEntry", "valListEntry" ENTRY, "<valList>",
     "valListEntry" WRONG, NONE, kWalk<cSmlList>, 0, 16, true},
    {"cSmlPeriodList", "period_List", "SmlPeriodEntry", "SmlPeriodEntry={SmlPeriodEntry" ENTRY "} ",
     "<period_List>", "period_List_Entry" WRONG, NONE, kWalk<cSmlPeriodList>, 0, 16, false},
    {"cSmlValueList", "value_List", "value_List_Entry", VALUE, "<valList>",
     "value_List_Entry" WRONG, NONE, kWalk<cSmlValueList>, 0, 16, true},
    {"cSmlHeaderList", "header_List", "pObjHdEntry",
     "pObjHdEntry={pObjHdEntry={objName=U# unit=u30 scaler=i0}} ", "<valList>",
     "valListEntry" WRONG, NONE, kWalk<cSmlHeaderList>, 0, 16, true},
    {"cSmlProfObjPeriodList", "period_List", "pObjPerEntry",
     "pObjPerEntry={pObjPerEntry={valTime={type=u1 value=u#} status=U# value_List={" VALUE
     "}}} ", "period_List",
     "pObjPerEntry" WRONG, NONE, kWalk<cSmlProfObjPeriodList>, 0, 16, true},
    {"cSmlTreePath", "parTreePath", "path_Entry", "path_Entry=U# ", "<parTreePath>",
     "path_Entry" WRONG, "[2]: class invalid", Walk<&cSmlTreePath::SetPathEntry,
     &cSmlTreePath::GetPathEntry, &cSmlTreePath::GetPathCount, cSmlTreePath>, -1, 16, true},
    {"cSmlObjList", "object_List", "object_List_Entry", "object_List_Entry=U# ", "<object_List>",
     "object_List_Entry" WRONG, "[8]: class invalid/empty", kWalk<cSmlObjList>, 0, 0, true},
    {"cSmlChildList", "child_List", "parTree",
     "parTree={parName=U# procParVal={type=u1 value=u#}} ", "<child_List>",
     "tree_Entry invalid/empty", NONE, Walk<&cSmlChildList::SetTreeEntry,
     &cSmlChildList::GetTreeEntry, &cSmlChildList::GetTreeCount, cSmlChildList>, -1, 16, true},
};
// clang-format on

std::string Element(const Row& row, char number)
{
    std::string text = row.element;
    std::replace(text.begin(), text.end(), '#', number);
    return text;
}

// Reads input, twice, and expects the elements of the given numbers, and each time this line (with
// its level in front) so many times.
void Check(const Row& row, const std::string& input, const std::string& numbers, int level = 0,
           const std::string& line = "", std::size_t times = 1)
{
    SCOPED_TRACE(std::string(row.name) + " from " + input);
    std::string elements = std::string(row.label) + "={";
    for (const char number : numbers)
        elements += Element(row, number);
    const vorn::cRecord expected = numbers.empty() ? vorn::cRecord() : Rec(elements + '}');
    test::TraceCapture traces(LibQuarn, 16);
    const Outcome o = row.run(Rec(input));
    const int count = static_cast<int>(numbers.size());
    EXPECT_EQ(o.valid, count > 0);
    EXPECT_EQ(o.hasCount, count > 0);
    EXPECT_EQ(o.count, count > 0 ? count : row.emptyCount);
    for (const vorn::cRecord& written : {o.written, o.copied, o.assigned, o.rebuilt})
        EXPECT_EQ(written, expected);
    Lines lines;
    if (level != 0)
        lines.assign(times * 2, "LibQuarn[" + std::to_string(level) + "]: " + row.name + line);
    const std::string invalid = row.invalid;
    if (count == 0)
        lines.insert(lines.end(), 4,
                     "LibQuarn" + invalid.substr(0, 5) + row.name +
                         "::ToRecord: " + invalid.substr(5));
    EXPECT_EQ(traces.Lines(), lines);
}

TEST(Lists, Elements)
{
    for (const Row& row : kRows) {
        const std::string open = std::string(row.label) + "={",
                          fault = std::string(": ") + row.fault;
        const std::string one = Element(row, '1'), two = Element(row, '2'),
                          three = Element(row, '3');
        const std::string wrong = std::string(row.elementLabel) + "=u1 ";
        const std::string missing = "::CTOR: record invalid/empty!";
        Check(row, open + one + two + three + '}', "123");
        Check(row, open + one + wrong + three + '}', "13", 2, fault);
        Check(row, open + wrong + wrong + '}', "", 2, fault, 2);
        Check(row, open + one + "other=b1 " + two + '}', "12", row.takesStrangers ? 2 : 0, fault);
        Check(row, open + "other=b1}", "", 2,
              std::string(": Record ") + row.emptyName + " is empty");
        Check(row, "", "", row.missingLevel, missing);
        Check(row, std::string(row.label) + "=u1", "", row.missingLevel, missing);
    }
}

TEST(Lists, ElementsInAnotherShape)
{
    const struct {
        Outcome (*run)(const vorn::cRecord&);
        const char* input;
        const char* output;
    } rows[] = {
        // what is not valid is counted, and held as a cleared element
        {kWalk<cSmlList>, "valList={valListEntry={unit=u1} valListEntry={objName=U1 value=u1}}",
         "valList={valListEntry={objName=U1 value=u1}}"},
        {kWalk<cSmlHeaderList>,
         "header_List={pObjHdEntry={objName=U1 unit=u1 scaler=i1} pObjHdEntry={}}",
         "header_List={pObjHdEntry={} pObjHdEntry={}}"},
        {kWalk<cSmlProfObjPeriodList>,
         "period_List={pObjPerEntry={pObjPerEntry={status=U1}} pObjPerEntry={}}",
         "period_List={pObjPerEntry={pObjPerEntry={}} pObjPerEntry={pObjPerEntry={}}}"},
        {kWalk<cSmlPeriodList>,
         "period_List={SmlPeriodEntry={objName=U1 unit=u30 scaler=i-1 value=u5} SmlPeriodEntry={} "
         "}",
         "period_List={SmlPeriodEntry={SmlPeriodEntry={objName=U1 unit=u30 scaler=i-1 value=u5}} "
         "SmlPeriodEntry={}}"},
    };
    test::TraceCapture quiet(LibQuarn, 0);
    for (const auto& row : rows) {
        const Outcome o = row.run(Rec(row.input));
        EXPECT_EQ(o.count, 2);
        EXPECT_EQ(o.written, Rec(row.output));
        EXPECT_EQ(o.rebuilt, o.written);
    }
    cSmlProfObjPeriodList list;
    list.SetListEntry(cSmlProfObjPeriodEntry(Rec("pObjPerEntry={status=U1}")));
    EXPECT_EQ(test::Written(list), Rec("period_List={pObjPerEntry={pObjPerEntry={}}}"));
}

} // namespace
