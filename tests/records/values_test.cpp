// Time, value, the value of a tree's node, and how deep trees go.
#include "written.h"

using test::Lines;
using test::Rec;
using test::Written;

namespace
{

std::string Text(const cSmlTime& time)
{
    unsigned type = 0, value = 0;
    short loc = 0, sea = 0;
    std::string text = time.IsValid() ? "valid" : "invalid";
    text += time.GetType(type) ? " type " + std::to_string(type) : "";
    text += time.GetValue(value) ? " value " + std::to_string(value) : "";
    text +=
        time.GetOffsets(loc, sea) ? " at " + std::to_string(loc) + ' ' + std::to_string(sea) : "";
    text += time.GetTime(type, value) ? " two" : "";
    return text + (time.GetTime(type, value, loc, sea) ? " four" : "");
}

TEST(Time, FromRecords)
{
    const struct {
        std::string record, read, assigned, written;
    } rows[] = {
        {"type=u0 value=u5", "valid type 0 value 5 two", "=", "="},
        {"type=u2 value=u5 locOffset=i3 seaOffset=i4", "valid type 2 value 5 at 3 4 two four",
         "valid type 2 value 5 two", "type=u2 value=u5"},
        {"type=u3 value=u5 locOffset=i-3 seaOffset=i65537", "valid type 3 value 5 at -3 1 two four",
         "=", "type=u3 value=u5 locOffset=i-3 seaOffset=i1"},
        {"type=u3 value=u5 locOffset=i3", "invalid type 3 value 5 two", "invalid", ""},
        {"type=u3 value=u5 locOffset=u3 seaOffset=i4", "invalid type 3 value 5 two", "invalid", ""},
        {"type=u4 value=u5", "invalid type 4 value 5 two", "invalid", ""},
        {"type=i1 value=u5", "invalid value 5", "invalid", ""},
        {"type=u1 value=x05", "invalid type 1", "invalid", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.record);
        test::TraceCapture traces(LibQuarn);
        const cSmlTime time(Rec("t={" + row.record + "}"), "t");
        cSmlTime assigned;
        assigned.SetTime(3, 9, 9, 9);
        assigned = time;
        EXPECT_EQ(Text(time), row.read);
        EXPECT_EQ(Text(assigned), row.assigned == "=" ? row.read : row.assigned);
        vorn::cRecord written;
        EXPECT_EQ(time.ToRecord(written, "t"), !row.written.empty());
        EXPECT_EQ(written,
                  row.written.empty()
                      ? vorn::cRecord()
                      : Rec("t={" + (row.written == "=" ? row.record : row.written) + "}"));
        EXPECT_EQ(traces.Has("LibQuarn[2]: cSmlTime::ToRecord: class invalid"),
                  row.written.empty());
    }
    EXPECT_EQ(Text(cSmlTime(Rec("t=u1"), "t")), "invalid");
}

TEST(Time, Set)
{
    cSmlTime time;
    EXPECT_TRUE(time.SetTime(3, 5, -60, 0));
    EXPECT_EQ(Text(time), "valid type 3 value 5 at -60 0 two four");
    EXPECT_FALSE(time.SetTime(0, 5));
    EXPECT_EQ(Text(time), "invalid");
    EXPECT_FALSE(time.SetTime(3, 5) || time.SetTime(2, 5, 0, 0));
    cSmlListType listType;
    EXPECT_FALSE(listType.Set(1, time));
    EXPECT_TRUE(time.SetTime(1, 6));
    EXPECT_FALSE(listType.Set(2, time) || listType.IsValid());
    EXPECT_TRUE(listType.Set(1, time) && listType.IsValid());
}

TEST(Value, Kinds)
{
    const struct {
        const char* record;
        unsigned kind;
        bool valid;
    } rows[] = {
        {"value=b1", 1, true},
        {"value=x00FF", 2, true},
        {"value=x", 2, true},
        {"value=u4294967295", 3, true},
        {"value=U18446744073709551615", 4, true},
        {"value=i-5", 5, true},
        {"value=I-9223372036854775808", 6, true},
        {"value={smlList={type=u1 SmlTime={type=u1 value=u5}}}", 7, true},
        {"value={smlList={type=u2 SmlTime={type=u1 value=u5}}}", 7, true},
        {"value={smlList={type=u1}}", 7, false},
        {"other=u1", 0, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.record);
        test::TraceCapture traces(LibQuarn, 16);
        const cSmlValue value(Rec(row.record));
        cSmlValue assigned(Rec("value=u1")), moved(Rec("value=u1"));
        assigned = value;
        moved = cSmlValue(value);
        EXPECT_EQ(moved.IsValid(), row.valid);
        unsigned kind = 99, ofAssigned = 99, u = 0;
        EXPECT_TRUE(value.GetType(kind) && assigned.GetType(ofAssigned));
        EXPECT_EQ(kind, row.kind);
        EXPECT_EQ(ofAssigned, row.valid ? row.kind : 0);
        EXPECT_EQ(assigned.IsValid(), row.valid);
        EXPECT_EQ(Written(value), row.valid ? Rec(row.record) : vorn::cRecord());
        Lines lines;
        if (row.kind == 0)
            lines.push_back("LibQuarn[16]: cSmlValue::CTOR: record invalid/empty!");
        if (!row.valid)
            lines.push_back("LibQuarn[2]: cSmlValue::ToRecord: class invalid");
        EXPECT_EQ(traces.Lines(), lines);
        bool b = false; // exactly one getter, that of the kind, yields it
        std::string s;
        unsigned long long u64 = 0;
        int i = 0;
        long long i64 = 0;
        cSmlListType listType;
        const bool got[] = {value.GetBool(b),           value.GetString(s), value.GetUInt(u),
                            value.GetUInt64(u64),       value.GetSInt(i),   value.GetSInt64(i64),
                            value.GetListType(listType)};
        for (unsigned k = 1; k <= 7; ++k)
            EXPECT_EQ(got[k - 1], row.valid && k == row.kind) << k;
    }
}

// Makes to of from's alternative if it is a valid T.
template <typename T>
bool Remake(cSmlProcParValue& to, const cSmlProcParValue& from)
{
    T v{};
    const bool got = from.GetParValue(v);
    if (got && v.IsValid())
        to = v;
    return got;
}

TEST(ProcParValue, Alternatives)
{
    const std::string entry = "objName=U1 unit=u30 scaler=i-1 value=u5 ";
    const struct {
        std::string record, written; // inside "procParVal"; "=" as read, "" not valid
        bool whole;                  // the alternative is valid too
    } rows[] = {
        {"type=u1 value=u5", "=", true},
        {"type=u2 value={SmlPeriodEntry={" + entry + "}}", "=", true},
        {"type=u2 value={" + entry + "}", "type=u2 value={SmlPeriodEntry={" + entry + "}}", true},
        {"type=u3 value={}", "=", false},
        {"type=u4 value={SmlTime={type=u1 value=u5}}", "=", true},
        {"type=u5 value={objName=U1 status=U2 value=u5}", "=", true},
        {"type=u5 value={status=U2}", "type=u5 value={}", false},
        {"type=u1", "", false},
        {"type=u4 value=u5", "", false},
        {"type=u6 value={}", "", false},
        {"type=i1 value=u5", "", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.record);
        test::TraceCapture quiet(LibQuarn, 0);
        const cSmlProcParValue value(Rec("procParVal={" + row.record + "}"));
        const vorn::cRecord expected =
            row.written.empty()
                ? vorn::cRecord()
                : Rec("procParVal={" + (row.written == "=" ? row.record : row.written) + "}");
        EXPECT_EQ(Written(value), expected);
        cSmlProcParValue made;
        const int got = Remake<cSmlValue>(made, value) + Remake<cSmlPeriodEntry>(made, value) +
                        Remake<cSmlTupelEntry>(made, value) + Remake<cSmlTime>(made, value) +
                        Remake<cSmlListEntry>(made, value);
        EXPECT_EQ(got, row.written.empty() ? 0 : 1);
        EXPECT_EQ(Written(made), row.whole ? expected : vorn::cRecord());
        made = value;
        made = cSmlTime(); // not valid: clears
        EXPECT_FALSE(made.IsValid());
    }
    test::TraceCapture traces(LibQuarn, 16);
    Written(cSmlProcParValue(Rec("procParVal=u1")));
    Written(cSmlProcParValue(Rec("procParVal={type=u3 value={}}")));
    EXPECT_EQ(traces.Lines(), (Lines{"LibQuarn[16]: cSmlProcParValue::CTOR: record invalid/empty!",
                                     "LibQuarn[2]: cSmlProcParValue::ToRecord: class invalid",
                                     "LibQuarn[16]: cSmlTupelEntry::CTOR: record invalid/empty!",
                                     "LibQuarn[2]: cSmlTupelEntry::ToRecord: class invalid"}));
}

// A tree of so many levels.
vorn::cRecord TreeOf(unsigned levels)
{
    vorn::cRecord tree = Rec("parName=U1 procParVal={type=u1 value=u5}");
    for (; levels > 1; --levels) {
        vorn::cRecord parent = Rec("parName=U1"), children;
        children.AppendRecordPar("parTree", tree, 0);
        parent.AppendRecordPar("child_List", children, 0);
        tree = parent;
    }
    return tree;
}

TEST(Tree, Validity)
{
    test::TraceCapture quiet(LibQuarn, 0);
    for (const char* valid : {"parName=U1 procParVal={}", "parName=U1 child_List={parTree=u1}",
                              "parTree={parName=U1 child_List={}}"})
        EXPECT_TRUE(cSmlTree(Rec(valid)).IsValid()) << valid;
    EXPECT_FALSE(cSmlTree(Rec("parName=U1")).IsValid());
}

TEST(Tree, Depth)
{
    for (const unsigned levels : {1U, 3U, SML_MAX_TREE_DEPTH, SML_MAX_TREE_DEPTH + 1, 10000U}) {
        SCOPED_TRACE(levels);
        const bool fits = levels <= SML_MAX_TREE_DEPTH;
        vorn::cRecord body = Rec("serverId=x53 attentionNo=U1"), message;
        body.AppendRecordPar("parTree", TreeOf(levels), 0);
        message.AppendRecordPar("SmlAttentionRes", body, 0);
        test::TraceCapture traces(LibQuarn);
        const cSmlAttentionRes attention(message);
        EXPECT_EQ(attention.IsValid(), fits);
        EXPECT_EQ(Written(attention), fits ? message : Rec("SmlAttentionRes={}"));
        EXPECT_EQ(traces.Has("LibQuarn[2]: cSmlAttentionRes: trees nested too deep"), !fits);
    }
}

} // namespace
