// Every class of the table with all its fields, then with each one missing and of the wrong kind in
// turn; setters; what a profile-list response becomes.
#include "class_table.h"

using test::Lines;
using test::Outcome;
using test::Rec;
using test::Row;
using test::Rows;
using test::Written;

namespace
{

vorn::cRecord Enclosed(const std::string& label, const std::string& fields)
{
    return Rec(label + "={" + fields + "}");
}

std::string Bare(const std::string& field) { return field.substr(field.find_first_not_of("*+-~")); }

// Runs the row with field number index left out or replaced (npos: all there), and checks it.
void Check(const Row& row, std::size_t index, bool wrongKind)
{
    std::string input, expected, visible, all;
    bool valid = true;
    for (std::size_t i = 0; i < row.fields.size(); ++i) {
        const std::string& field = row.fields[i];
        std::string kept = Bare(field);
        all += kept;
        if (i == index) {
            const std::string& label = row.labels[i];
            const bool isData = field.find("=x") != std::string::npos;
            if (wrongKind) // every kind of "value" is right, but not every record
                input += label + (label == "value" ? "={} " : isData ? "=u1 " : "=x00 ");
            kept = field[0] == '+'   ? label + "=x "
                   : field[0] == '~' ? label + field.substr(field.find('='), 2) + "0 "
                                     : "";
            valid = field[0] != '*';
        } else {
            input += kept;
        }
        expected += kept;
        visible += field[0] == '-' ? "" : kept;
    }
    SCOPED_TRACE(std::string(row.name) + " from " + input);
    const auto read = [&](const std::string& text) {
        return (row.rules & test::kDirect) != 0 ? Rec(text) : Enclosed(row.label, text);
    };
    const auto only = [&](unsigned rule, const vorn::cRecord& record) {
        return (row.rules & rule) != 0 && !valid ? vorn::cRecord() : record;
    };
    test::TraceCapture traces(LibQuarn);
    const Outcome o = row.run(read(input), read(all));
    const vorn::cRecord yielded =
        only(test::kYieldsValid, Rec(visible + (valid ? "valid=b1" : "")));
    EXPECT_EQ(o.fields, yielded);
    EXPECT_EQ(o.copied, yielded);
    EXPECT_EQ(o.assigned, only(test::kCopiesValid, yielded));
    EXPECT_EQ(o.written, only(test::kWritesValid, Enclosed(row.label, expected)));
    EXPECT_EQ(traces.Has("LibQuarn[2]: " + std::string(row.name) + "::ToRecord: class invalid"),
              (row.rules & test::kWritesValid) != 0 && !valid);
}

TEST(Classes, AllFieldsThenEachMissingOrOfTheWrongKind)
{
    for (const Row& row : Rows()) {
        Check(row, std::string::npos, false);
        for (std::size_t i = 0; i < row.fields.size(); ++i) {
            Check(row, i, false);
            Check(row, i, true);
        }
    }
}

TEST(Classes, RecordMissing)
{
    for (const Row& row : Rows()) {
        SCOPED_TRACE(row.name);
        test::TraceCapture traces(LibQuarn, 16);
        const Outcome o = row.run(Rec("other=u1"), {});
        EXPECT_EQ(o.fields, vorn::cRecord());
        Lines expected; // of object, sample, sample, moved; of writing
        if (*row.missing != '\0')
            expected.assign(4, std::string("LibQuarn") + row.missing +
                                   "::CTOR: record invalid/empty!");
        if ((row.rules & test::kWritesValid) != 0)
            expected.push_back("LibQuarn[2]: " + std::string(row.name) +
                               "::ToRecord: class invalid");
        EXPECT_EQ(traces.Lines(), expected);
    }
    EXPECT_EQ(Written(cSmlGetListReq()), Rec("SmlGetListReq={}"));
    // Lists that may be missing without a word, and one that may not.
    test::TraceCapture traces(LibQuarn, 16);
    cSmlGetListRes(Rec("SmlGetListRes={}"));
    cSmlGetProfPackRes(Rec("SmlGetProfPackRes={}"));
    EXPECT_EQ(traces.Lines(), Lines{"LibQuarn[16]: cSmlTreePath::CTOR: record invalid/empty!"});
}

// Each entry is valid once the last required field is set, and not before.
TEST(Classes, Setters)
{
    const cSmlValue value(Rec("value=u5"));
    cSmlTime time;
    time.SetTime(1, 77);
    cSmlPeriodEntry period;
    EXPECT_TRUE(period.SetUnit(30) && period.SetScaler(-1) && period.SetValue(value));
    EXPECT_FALSE(period.IsValid());
    EXPECT_TRUE(period.SetObjName(1) && period.IsValid() && period.SetValueSign("A"));
    EXPECT_EQ(Written(period), Rec("SmlPeriodEntry={objName=U1 unit=u30 scaler=i-1 value=u5 "
                                   "valueSignature=x41}"));
    cSmlListEntry entry;
    EXPECT_TRUE(entry.SetStatus(2) && entry.SetValTime(time) && entry.SetUnit(30) &&
                entry.SetScaler(-1) && entry.SetValueSign("A") && entry.SetObjName(1));
    EXPECT_FALSE(entry.IsValid());
    EXPECT_TRUE(entry.SetValue(cSmlValue()) && entry.IsValid()); // present, though not valid
    EXPECT_TRUE(entry.SetValue(value));
    EXPECT_EQ(Written(entry), Rec("valListEntry={objName=U1 status=U2 valTime" TIME
                                  "unit=u30 scaler=i-1 value=u5 valueSignature=x41}"));
    cSmlTupelEntry tupel;
    EXPECT_TRUE(tupel.SetServerId("S") && tupel.SetSecIndex(time) && tupel.SetStatus(7) &&
                tupel.SetUSV_R1(3, -2, 1) && tupel.SetUSV_R4(3, -2, 1) &&
                tupel.SetSignature_pAR1R4("A") && tupel.SetUSV_mA(3, -2, 1) &&
                tupel.SetUSV_R2(3, -2, 1) && tupel.SetUSV_R3(3, -2, 1) &&
                tupel.SetSignature_mAR2R3("B"));
    EXPECT_FALSE(tupel.IsValid());
    EXPECT_TRUE(tupel.SetUSV_pA(3, -2, 1) && tupel.IsValid());
    std::string all = "SmlTupelEntry={serverId=x53 secIndex" TIME "status=U7 " USV("pA") USV("R1")
        USV("R4") "signature_pA_R1_R4=x41 " USV("mA") USV("R2") USV("R3") "signature_mA_R2_R3=x42}";
    all.erase(std::remove(all.begin(), all.end(), '~'), all.end());
    EXPECT_EQ(Written(tupel), Rec(all));
}

TEST(Classes, ProfilePackSignature)
{
    for (const char* text : {"periodSignature=x50", "periodSignature=x51 profileSignature=x50"})
        EXPECT_EQ(Written(cSmlGetProfPackRes(Enclosed("SmlGetProfPackRes", text))),
                  Rec("SmlGetProfPackRes={profileSignature=x50}"));
}

TEST(Classes, ProfileListResponseToListResponse)
{
    const std::string head = "serverId=x53 actTime" TIME "regPeriod=u900 valTime" TIME
                             "parTreePath={path_Entry=U1} status=U7 ";
    const std::string both = "status=U7 valTime" TIME;
    const std::string one = "unit=u30 scaler=i-1 value=I5} ";
    const std::string two = "unit=u30 scaler=i0 value=x41 valueSignature=x42} ";
    test::TraceCapture traces(LibQuarn);
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

} // namespace
