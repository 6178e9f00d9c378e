// Every class with all its fields, then with each one missing and of the wrong kind in turn; what
// single classes do beyond that, as one table; setters, trees and the conversion.
#include "class_table.h"

using namespace test;

// It takes the compiler a while to make the table's code: the other test does with its rows.
std::vector<const Row*> test::Cases()
{
    return std::apply([](const auto&... c) { return std::vector<const Row*>{&c...}; }, Classes());
}

namespace
{

// Runs the class with field number index left out or replaced (all are there when there is none
// such), and checks it.
void Check(const Row& row, std::size_t index, bool wrongKind)
{
    std::string input, expected, visible;
    bool valid = true;
    for (std::size_t i = 0; i < row.fields.size(); ++i) {
        const std::string& label = row.labels[i];
        const char mark = row.marks[i];
        std::string given = row.fields[i], kept = given;
        const bool isData = given[label.size() + 1] == 'x';
        if (i == index) {
            const std::string kind = given.substr(label.size(), 2); // an equals sign with it
            // every kind of "value" is right, but not every record
            given = !wrongKind ? ""
                               : label + (label == "value" ? "={} "
                                          : isData         ? "=u1 "
                                                           : "=x00 ");
            kept = mark == '+' ? label + kind + ' ' : mark == '~' ? label + kind + "0 " : "";
            valid = mark != '*' && mark != '&';
        }
        input += given;
        expected += kept;
        const bool isHidden = mark == '&' && index < row.marks.size() && row.marks[index] == '&';
        visible += mark == '-' || isHidden ? "" : kept;
    }
    SCOPED_TRACE(row.name + " from " + input);
    const auto only = [&](unsigned rule, const vorn::cRecord& record) {
        return (row.rules & rule) != 0 && !valid ? vorn::cRecord() : record;
    };
    TraceCapture traces(LibQuarn);
    const Outcome o = row.Run(row.Input(input), row.Sample());
    const vorn::cRecord yielded = only(kYieldsValid, Rec(visible + (valid ? "valid=b1" : "")));
    EXPECT_EQ(o.fields, yielded);
    EXPECT_EQ(o.copied, yielded);
    EXPECT_EQ(o.assigned, only(kCopiesValid, yielded));
    EXPECT_EQ(o.written, only(kWritesValid, Enclosed(row.label, expected)));
    EXPECT_EQ(traces.Has("LibQuarn" + row.texts.refused),
              (row.rules & kWritesValid) != 0 && !valid);
}

TEST(Classes, AllFieldsThenEachMissingOrOfTheWrongKind)
{
    for (const Row* row : Cases()) {
        for (std::size_t i = 0; i <= row->fields.size(); ++i) {
            Check(*row, i, false);
            Check(*row, i, true);
        }
    }
}

// Reads input, twice, and expects this line, with its level in front, so many times for each; and
// the one on writing what is not valid.
void CheckLines(const Row& row, const std::string& input, const std::string& line,
                std::size_t times, bool isRefused)
{
    SCOPED_TRACE(row.name + " from " + input);
    TraceCapture traces(LibQuarn, 16);
    const Outcome o = row.Run(Rec(input), row.Sample());
    Lines expected(line.empty() ? 0 : 2 * times, "LibQuarn" + line);
    if (isRefused)
        expected.push_back("LibQuarn" + row.texts.refused);
    EXPECT_EQ(traces.Lines(), expected);
}

TEST(Classes, TraceLines)
{
    for (const Row* row : Cases()) {
        const Texts& texts = row->texts;
        const bool isRefused = (row->rules & kWritesValid) != 0;
        CheckLines(*row, "other=u1", texts.missing, 1, isRefused);
        if (!row->label.empty())
            CheckLines(*row, row->label + "=u1", texts.missing, 1, isRefused);
        if (texts.fault.empty())
            continue;
        const std::string open = row->label + "={", one = row->fields[0],
                          wrong = row->labels[0] + "=u1 ";
        const bool isSilent = (row->rules & kStepsByLabel) != 0;
        CheckLines(*row, open + one + wrong + one + '}', texts.fault, 1, false);
        CheckLines(*row, open + wrong + wrong + '}', texts.fault, 2, true);
        CheckLines(*row, open + one + "other=b1 " + one, texts.fault, isSilent ? 0 : 1, false);
        CheckLines(*row, open + "other=b1}", texts.empty, 1, true);
    }
    // Lists that may be missing without a word, and one that may not.
    CheckLines(CaseOf("cSmlGetListRes"), "SmlGetListRes={}", "", 0, false);
    CheckLines(CaseOf("cSmlGetProfPackRes"), "SmlGetProfPackRes={}",
               "[16]: cSmlTreePath::CTOR: record invalid/empty!", 1, false);
}

// clang-format off
TEST(Classes, RulesOfTheirOwn)
{
    const std::string entry = "objName=U1 unit=u30 scaler=i-1 value=u5", time = "={type=u1 value=u5} ";
    const std::string header = "pObjHdEntry={objName=U1 unit=u1 scaler=i1} ";
    const struct {
        std::string name, input, fields;
        std::string assigned = "=", written = "="; // fields and input again
    } rows[] = {
        {"cSmlTime", "t={type=u0 value=u5}", "type=u0 value=u5 valid=b1"},
        {"cSmlTime", "t={type=u2 value=u5 locOffset=i3 seaOffset=i4}", "type=u2 value=u5 locOffset=i3 seaOffset=i4 valid=b1",
            "type=u2 value=u5 valid=b1", "t={type=u2 value=u5}"},
        {"cSmlTime", "t={type=u3 value=u5 locOffset=i-3 seaOffset=i65537}", "type=u3 value=u5 locOffset=i-3 seaOffset=i1 valid=b1",
            "=", "t={type=u3 value=u5 locOffset=i-3 seaOffset=i1}"},
        {"cSmlTime", "t={type=u4 value=u5}", "type=u4 value=u5", "", ""},
        {"cSmlListType", "smlList={type=u2 SmlTime" + time + "}", "type=u2 SmlTime" + time + "valid=b1", "type=u2"},
        {"cSmlValue", "value=x", "value=x valid=b1"},
        {"cSmlValue", "value={smlList={type=u1 SmlTime" + time + "}}", "smlList={type=u1 SmlTime" + time + "} valid=b1"},
        {"cSmlValue", "value={smlList={type=u2 SmlTime" + time + "}}", "valid=b1"}, // its getter does not take the time over
        {"cSmlValue", "value={smlList={type=u1}}", "", "", ""},
        {"cSmlPeriodEntry", entry, entry + " valid=b1", "=", "SmlPeriodEntry={" + entry + "}"}, // either shape
        // what is not valid is counted, and held as a cleared element
        {"cSmlList", "valList={valListEntry={unit=u1} valListEntry={objName=U1 value=u1}}", "valListEntry={objName=U1 value=u1} valid=b1",
            "=", "valList={valListEntry={objName=U1 value=u1}}"},
        {"cSmlHeaderList", "header_List={" + header + "pObjHdEntry={}}", "pObjHdEntry={} pObjHdEntry={} valid=b1",
            "=", "header_List={pObjHdEntry={} pObjHdEntry={}}"},
        {"cSmlProfObjPeriodList", "period_List={pObjPerEntry={pObjPerEntry={status=U1}} pObjPerEntry={}}",
            "pObjPerEntry={pObjPerEntry={}} pObjPerEntry={pObjPerEntry={}} valid=b1",
            "=", "period_List={pObjPerEntry={pObjPerEntry={}} pObjPerEntry={pObjPerEntry={}}}"},
        {"cSmlPeriodList", "period_List={SmlPeriodEntry={" + entry + "} SmlPeriodEntry={}}",
            "SmlPeriodEntry={SmlPeriodEntry={" + entry + "}} SmlPeriodEntry={} valid=b1",
            "=", "period_List={SmlPeriodEntry={SmlPeriodEntry={" + entry + "}} SmlPeriodEntry={}}"},
        {"cSmlProcParValue", "procParVal={type=u2 value={SmlPeriodEntry={" + entry + "}}}", "type=u2 value={SmlPeriodEntry={" + entry + "}} valid=b1"},
        {"cSmlProcParValue", "procParVal={type=u2 value={" + entry + "}}", "type=u2 value={SmlPeriodEntry={" + entry + "}} valid=b1",
            "=", "procParVal={type=u2 value={SmlPeriodEntry={" + entry + "}}}"},
        {"cSmlProcParValue", "procParVal={type=u3 value={}}", "valid=b1"},
        {"cSmlProcParValue", "procParVal={type=u4 value={SmlTime" + time + "}}", "type=u4 value={SmlTime" + time + "} valid=b1"},
        {"cSmlProcParValue", "procParVal={type=u5 value={objName=U1 status=U2 value=u5}}", "type=u5 value={objName=U1 status=U2 value=u5} valid=b1"},
        {"cSmlProcParValue", "procParVal={type=u5 value={status=U2}}", "valid=b1", "=", "procParVal={type=u5 value={}}"},
        {"cSmlProcParValue", "procParVal={type=u1}", "", "", ""},
        {"cSmlProcParValue", "procParVal={type=u4 value=u5}", "", "", ""},
        {"cSmlProcParValue", "procParVal={type=u6 value={}}", "", "", ""},
        {"cSmlTree", "parName=U1 procParVal={}", "parName=U1 valid=b1", "=", "parTree={parName=U1}"},
        {"cSmlTree", "parName=U1 child_List={parTree=u1}", "parName=U1 valid=b1", "=", "parTree={parName=U1}"},
        {"cSmlTree", "parTree={parName=U1 child_List={}}", "parName=U1 valid=b1", "=", "parTree={parName=U1}"},
        {"cSmlTree", "parName=U1", "parName=U1", "", ""},
        {"cSmlGetProfPackRes", "SmlGetProfPackRes={periodSignature=x50}", "profileSignature=x50", "=", "SmlGetProfPackRes={profileSignature=x50}"},
        {"cSmlGetProfPackRes", "SmlGetProfPackRes={periodSignature=x51 profileSignature=x50}", "profileSignature=x50",
            "=", "SmlGetProfPackRes={profileSignature=x50}"},
        {"cSmlGetListReq", "", "", "=", "SmlGetListReq={}"},
    };
    const TraceCapture quiet(LibQuarn, 0);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name + " from " + row.input);
        const Row& type = CaseOf(row.name);
        const Outcome o = type.Run(Rec(row.input), type.Sample());
        EXPECT_EQ(o.fields, Rec(row.fields));
        EXPECT_EQ(o.copied, Rec(row.fields));
        EXPECT_EQ(o.assigned, Rec(row.assigned == "=" ? row.fields : row.assigned));
        EXPECT_EQ(o.written, Rec(row.written == "=" ? row.input : row.written));
    }
}
// clang-format on

template <class C, class G, class S, typename... T, typename... A>
void Pass(const C& from, C& to, bool (G::*get)(T&...) const noexcept, bool (S::*set)(A...) noexcept)
{
    std::tuple<T...> values;
    std::apply([&](T&... v) { EXPECT_TRUE((from.*get)(v...) && (to.*set)(v...)); }, values);
}

// Sets all fields but one in turn, then all. valid: the numbers of the fields without which the
// object is valid, and that of all of them, as digits that go on behind 9.
template <class C, typename... Getters, typename... Setters>
void CheckSetters(const Case<C, Getters...>& row, const std::string& valid, Setters... setters)
{
    const C source(row.Sample());
    char last = '0', i = '0';
    do {
        SCOPED_TRACE(row.name + " without " + last);
        C target;
        i = '0';
        const auto set = [&](auto get, auto setter) {
            if (i++ != last)
                Pass(source, target, get, setter);
        };
        std::apply([&](auto... getters) { (set(getters, setters), ...); }, row.getters);
        EXPECT_EQ(target.IsValid(), valid.find(last) != std::string::npos);
        EXPECT_EQ(row.Yield(target) == row.Yield(source), last == i);
    } while (last++ != i);
}

// clang-format off
TEST(Classes, Setters)
{
    CheckSetters(std::get<3>(Classes()), "45", &cSmlPeriodEntry::SetObjName, &cSmlPeriodEntry::SetUnit, &cSmlPeriodEntry::SetScaler,
        &cSmlPeriodEntry::SetValue, &cSmlPeriodEntry::SetValueSign);
    CheckSetters(std::get<6>(Classes()), "123467", &cSmlListEntry::SetObjName, &cSmlListEntry::SetStatus, &cSmlListEntry::SetValTime,
        &cSmlListEntry::SetUnit, &cSmlListEntry::SetScaler, &cSmlListEntry::SetValue, &cSmlListEntry::SetValueSign);
    CheckSetters(std::get<7>(Classes()), ";", &cSmlTupelEntry::SetServerId, &cSmlTupelEntry::SetSecIndex, &cSmlTupelEntry::SetStatus,
        &cSmlTupelEntry::SetUSV_pA, &cSmlTupelEntry::SetUSV_R1, &cSmlTupelEntry::SetUSV_R4, &cSmlTupelEntry::SetSignature_pAR1R4,
        &cSmlTupelEntry::SetUSV_mA, &cSmlTupelEntry::SetUSV_R2, &cSmlTupelEntry::SetUSV_R3, &cSmlTupelEntry::SetSignature_mAR2R3);
    cSmlListEntry entry;
    EXPECT_TRUE(entry.SetObjName(1) && entry.SetValue(cSmlValue()) && entry.IsValid());
}
// clang-format on

TEST(Classes, TimesAndKinds)
{
    LabelledTime time; // offsets belong to type 3, and to no other
    unsigned type = 0, value = 0;
    short loc = 0, sea = 0;
    EXPECT_TRUE(time.SetTime(3, 5, -60, 0) && time.GetTime(type, value, loc, sea) && loc == -60);
    EXPECT_EQ(Written(time), Rec("t={type=u3 value=u5 locOffset=i-60 seaOffset=i0}"));
    EXPECT_FALSE(time.SetTime(0, 5) || time.IsValid() || time.GetTime(type, value));
    EXPECT_FALSE(time.SetTime(3, 5) || time.SetTime(2, 5, 0, 0));
    cSmlListType listType;
    EXPECT_FALSE(listType.Set(1, time));
    EXPECT_TRUE(time.SetTime(1, 6) && time.GetTime(type, value) && type == 1 && value == 6);
    EXPECT_FALSE(time.GetTime(type, value, loc, sea));
    EXPECT_FALSE(listType.Set(2, time) || listType.IsValid());
    EXPECT_TRUE(listType.Set(1, time) && listType.IsValid());
    EXPECT_FALSE(cSmlValue(Rec("value={}")).GetListType(listType));
    {
        // Assigned, the list type of another type loses its time; the value stays one, and is
        // written.
        const TraceCapture traces(LibQuarn);
        cSmlListEntry entry;
        cSmlValue assigned;
        assigned = cSmlValue(Rec("value={smlList={type=u2 SmlTime={type=u1 value=u5}}}"));
        EXPECT_TRUE(entry.SetObjName(1) && entry.SetValue(assigned));
        EXPECT_EQ(Written(assigned), Rec("value={}"));
        EXPECT_EQ(Written(entry), Rec("valListEntry={objName=U1 value={}}"));
        EXPECT_EQ(traces.Lines(), Lines(2, "LibQuarn[2]: cSmlListType::ToRecord: class invalid"));
    }
    const TraceCapture quiet(LibQuarn, 0);
    unsigned kind = 0, expected = 0;
    for (const std::string v :
         {"", "value=b1", "value=x00FF", "value=u4294967295", "value=U18446744073709551615",
          "value=i-5", "value=I-9223372036854775808", "value={}"}) {
        const bool isValid = expected > 0 && expected < 7;
        EXPECT_TRUE(cSmlValue(Rec(v)).GetType(kind) && kind == expected++) << v;
        EXPECT_EQ(CaseOf("cSmlValue").Run(Rec(v), {}).assigned,
                  Rec(isValid ? v + " valid=b1" : ""));
    }
}

TEST(Classes, ProfileListResponseToListResponse)
{
    const std::string time = "={type=u1 value=u77} ", both = "status=U7 valTime" + time;
    const std::string head = "serverId=x53 actTime" + time + "regPeriod=u900 valTime" + time +
                             "parTreePath={path_Entry=U1} status=U7 ";
    const std::string one = "unit=u30 scaler=i-1 value=I5} ";
    const std::string two = "unit=u30 scaler=i0 value=x41 valueSignature=x42} ";
    const TraceCapture traces(LibQuarn);
    cSmlGetListRes list(Rec("SmlGetListRes={clientId=x01 listSignature=x02}"));
    // The third entry is not valid: it stays in the list, and is not written.
    list = cSmlGetProfListRes(Enclosed(
        "SmlGetProfListRes", head + "period_List={SmlPeriodEntry={objName=U1 " + one +
                                 "SmlPeriodEntry={objName=U2 " + two + "SmlPeriodEntry={}}"));
    EXPECT_TRUE(list.IsValid());
    EXPECT_EQ(Written(list), Rec("SmlGetListRes={serverId=x53 valList={valListEntry={objName=U1 " +
                                 both + one + "valListEntry={objName=U2 " + both + two + "}}"));
    cSmlList entries;
    int count = 0;
    EXPECT_TRUE(list.GetValList(entries) && entries.GetListCount(count) && count == 3);
    list = cSmlGetProfListRes(Rec("SmlGetProfListRes={serverId=x53}"));
    EXPECT_EQ(Written(list), Rec("SmlGetListRes={}"));
    EXPECT_EQ(traces.Lines(), (Lines{"LibQuarn[2]: cSmlListEntry::ToRecord: class invalid",
                                     "LibQuarn[2]: cSmlGetListRes::operator= : class "
                                     "cSmlGetProfListRes invalid!"}));
}

TEST(Classes, DepthOfTrees)
{
    for (const unsigned levels : {1U, 3U, SML_MAX_TREE_DEPTH, SML_MAX_TREE_DEPTH + 1, 10000U}) {
        SCOPED_TRACE(levels);
        vorn::cRecord tree = Rec("parName=U1 procParVal={type=u1 value=u5}");
        for (unsigned i = 1; i < levels; ++i) {
            vorn::cRecord parent = Rec("parName=U1"), children;
            children.AppendRecordPar("parTree", tree, 0);
            parent.AppendRecordPar("child_List", children, 0);
            tree = parent;
        }
        vorn::cRecord body = Rec("serverId=x53 attentionNo=U1"), message;
        body.AppendRecordPar("parTree", tree, 0);
        message.AppendRecordPar("SmlAttentionRes", body, 0);
        const bool fits = levels <= SML_MAX_TREE_DEPTH;
        const TraceCapture traces(LibQuarn);
        const cSmlAttentionRes attention(message);
        EXPECT_EQ(attention.IsValid(), fits);
        EXPECT_EQ(Written(attention), fits ? message : Rec("SmlAttentionRes={}"));
        EXPECT_EQ(traces.Has("LibQuarn[2]: cSmlAttentionRes: trees nested too deep"), !fits);
    }
}

} // namespace
