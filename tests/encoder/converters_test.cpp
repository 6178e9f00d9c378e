// The converters: what each makes of a record, its result, and every line it traces.
#include "tests/encoder/encoder_support.h"

namespace
{

using namespace test;
using vorn::cRecord;

template <typename Object, int (*kConvert)(cRecord&, Object*)>
int Convert(cRecord& rec, std::string& hex)
{
    Object object;
    const int rc = kConvert(rec, &object);
    hex = Written(object);
    return rc;
}

constexpr auto Tree = Convert<Sml_Tree, Record_2_SmlTree>;
constexpr auto Value = Convert<Sml_ProcParValue, Record_2_SmlProcParValue>;
constexpr auto ListType = Convert<Sml_ListType, Record_2_SmlListType>;
constexpr auto Period = Convert<Sml_PeriodEntry, Record_2_SmlPeriodEntry>;
constexpr auto Entry = Convert<Sml_ListEntry, Record_2_SmlListEntry>;

int Path(cRecord& rec, std::string& hex)
{
    Sml_TreePath path(Record_GetTreePathEntryCount(rec), false); // owns what conversion creates
    const int rc = Record_2_SmlTreePath(rec, &path);
    hex = Written(path);
    return rc;
}

template <int (*kConvert)(cRecord&, Sml_ListOf*, int)>
int ThreeOf(cRecord& rec, std::string& hex)
{
    Sml_ListOf list(3, true);
    const int rc = kConvert(rec, &list, 3);
    hex = Written(list);
    return rc;
}

struct Row {
    int (*convert)(cRecord& rec, std::string& hex);
    std::string rec;
    int rc;
    std::string hex;
    std::string lines;
};

const std::string kLocal = "{type=u3 value=u7 locOffset=i0x1003C seaOffset=i-60}";
const std::string kPeriod =
    "objName=U0x0100010800FF unit=u0x11E scaler=i0x1FF value=u5 valueSignature=xAABB";
const std::string kPeriodHex = "75 070100010800FF 621E 52FF 6205 03AABB";

// The name of a row is its record.
const Row kRows[] = {
    {Path, "parTreePath={path_Entry=U0x0100010800FF path_Entry=x01 path_Entry=U2}", 1,
     "73 070100010800FF 07000000000002", "2 Rec2TreePath: path_Entry not of type UInt64"},
    {Path, "parTreePath=u1", 0, "70", "2 Rec2TreePath: record <parTreePath> missing"},
    {ThreeOf<Record_2_SmlObjectList>, "object_List_Entry=U1 other=u5 object_List_Entry=U2", 1,
     "73 07000000000001 07000000000002", "2 Rec2SmlObjectList: Entry missing/wrong"},
    {ThreeOf<Record_2_SmlChildList>, "parTree={parName=U0xFF} parTree=u5 parTree={}", 1,
     "73 73 070000000000FF 0101 01",
     "2 Rec2ChildList: Problem with Tree|2 Rec2Tree: <parName> missing/wrong"},

    {Tree,
     "parName=U1 procParVal={type=u1 value=u5} "
     "child_List={parTree={parName=U2} parTree={parName=U3}}",
     1, "73 07000000000001 7262016205 72 73070000000000020101 73070000000000030101", ""},
    {Tree, "parTree={parName=U0x0100000000FF}", 1, "73 070100000000FF 01 01", ""},
    {Tree, "child_List={}", 1, "01",
     "2 Rec2Tree: <parName> missing/wrong|2 Rec2Tree: child_List: tree_Entry-count == 0"},
    {Tree, "parName=U1 procParVal={type=u3 value={}}", 1, "73 07000000000001 01 01",
     "2 Rec2ProcParVal: <SmlTupelEntry> not supported"},

    {Value, "type=u1 value=i-200", 1, "726201 53FF38", ""},
    {Value, "type=u1 value=U0x100000000", 1, "726201 690000000100000000", ""},
    {Value, "type=u1 value=I-1", 1, "726201 52FF", ""},
    {Value, "type=u1 value=b1", 1, "726201 4201", ""},
    {Value, "type=u1 value=x41", 1, "726201 0241", ""},
    {Value, "type=u1 value={smlList={type=u1 SmlTime={type=u1 value=u9}}}", 1,
     "726201 726201 726201 6209", ""},
    {Value, "type=u1 value={}", 1, "01",
     "2 Rec2ListType: RecParVal invalid/empty|2 RecParVal= {}\n"},
    {Value, "value=u5", 1, "01", "2 Rec2ProcParVal: parType invalid/empty"},
    {Value, "type=u6 value=u5", 1, "01", "2 Rec2ProcParVal: Type out of range"},
    {Value, "type=u1", 1, "01", "2 Rec2ProcParVal: parType invalid/empty"},
    {Value, "type=u3 value={}", 0, "01", "2 Rec2ProcParVal: <SmlTupelEntry> not supported"},
    {Value, "type=u2 value={SmlPeriodEntry={" + kPeriod + "}}", 1, "726202" + kPeriodHex, ""},
    {Value, "type=u2 value={" + kPeriod + "}", 1, "726202" + kPeriodHex, ""},
    {Value, "type=u2 value={}", 1, "01", "2 Rec2ProcParVal: <SmlPeriodEntry> empty/wrong"},
    {Value, "type=u2 value=u5", 1, "01", "2 Rec2ProcParVal: <SmlPeriodEntry> empty/wrong"},
    {Value, "type=u4 value={SmlTime=" + kLocal + "}", 1, "726204 726203 73 6207 523C 52C4", ""},
    {Value, "type=u4 value={SmlTime={type=i2 value=U9}}", 1, "726204 726202 6209", ""},
    {Value, "type=u4 value={SmlTime={}}", 1, "726204 01",
     "16 Rec2ProcParVal: <SmlTime>:Type invalid/empty|"
     "16 Rec2ProcParVal: <SmlTime>:Value invalid/empty"},
    {Value, "type=u4 value={}", 1, "726204 01",
     "16 Rec2ProcParVal: <SmlTime>:Record invalid/empty|2 recTime= {}\n"},
    {Value, "type=u4 value=u5", 1, "01", "16 Rec2ProcParVal: <SmlTime> invalid/empty"},
    {Value, "type=u5 value={objName=U1 value=u5}", 1,
     "726205 77 07000000000001 01 01 01 01 6205 01", ""},
    {Value, "type=u5 value=u5", 1, "01", "16 Rec2ProcParVal: <SmlListEntry> invalid/empty"},

    {ListType, "smlList={type=u1 SmlTime=" + kLocal + "}", 1, "726201 726203 736207523C52C4", ""},
    {ListType, "smlList={type=u1 SmlTime={type=u0x101}}", 1, "726201 01", ""},
    {ListType, "smlList={type=u1}", 1, "726201 01", "2 Rec2ListType: parTime invalid/empty"},
    {ListType, "smlList={type=i1}", 0, "01",
     "2 Rec2ListType: parType invalid/empty|2 RecParVal= {smlList={type=1}}\n"},
    {ListType, "smlList={type=u2}", 0, "01", "2 Rec2ListType: Type out of range"},

    {Period, kPeriod, 1, kPeriodHex, ""},
    {Period, "SmlPeriodEntry={" + kPeriod + "}", 1, kPeriodHex, ""},
    {Period, "", 1, "75 01 01 01 01",
     "2 Rec2PerEntry: <objName> is missing/wrong!|2 Rec2PerEntry: <unit> is missing/wrong!|"
     "2 Rec2PerEntry: <scaler> is missing/wrong!|2 Rec2PerEntry: <value> is missing/wrong!"},
    {Period, "objName=U1 unit=u1 scaler=i0 value={smlList={type=u1 SmlTime={type=u1 value=u9}}}", 1,
     "75 07000000000001 6201 5200 726201 726201 6209 01",
     "8 Rec2PerEntry:recListType= {smlList={type=1, SmlTime={type=1, value=9}}}\n"},
    {Entry,
     "objName=U1 status=U256 valTime={type=u1 value=u9} unit=u30 scaler=i-1 value=u5 "
     "valueSignature=xAA",
     1, "77 07000000000001 630100 726201 6209 621E 52FF 6205 02AA", ""},
    {Entry, "", 1, "77 01 01 01 01 01 01",
     "2 Rec2ListEntry: <objName> is missing/wrong!|2 Rec2ListEntry: <value> is missing/wrong!"},
};

TEST(Converters, MakeObjectsOfRecords)
{
    for (const Row& row : kRows) {
        EncoderTrace trace(16);
        cRecord rec = Rec(row.rec);
        std::string hex;
        EXPECT_EQ(row.convert(rec, hex), row.rc) << row.rec;
        EXPECT_EQ(hex, Hexed(row.hex)) << row.rec;
        EXPECT_EQ(trace.Lines(), row.lines) << row.rec;
        EXPECT_EQ(rec, Rec(row.rec)) << row.rec;
    }
}

TEST(Converters, RefuseNullPointersAndNoElements)
{
    EncoderTrace trace(2);
    cRecord rec;
    Sml_ListOf list;
    Sml_OctetString id;
    Sml_Unsigned8 number;
    EXPECT_EQ(0, Record_2_SmlMsgHeader(rec, &id, nullptr, &number) +
                     Record_2_SmlTreePath(rec, nullptr) + Record_2_SmlTree(rec, nullptr) +
                     Record_2_SmlChildList(rec, &list, 0) + Record_2_SmlChildList(rec, nullptr, 1) +
                     Record_2_SmlProcParValue(rec, nullptr) + Record_2_SmlListType(rec, nullptr) +
                     Record_2_SmlPeriodEntry(rec, nullptr) + Record_2_SmlListEntry(rec, nullptr) +
                     Record_2_SmlObjectList(rec, &list, 0));
    EXPECT_EQ(trace.Lines(), "2 Rec2MsgHeader: NULL-Pointer|2 Rec2TreePath: NULL-Pointer|"
                             "2 Rec2Tree: NULL-Pointer|2 Rec2ChildList: NULL-Pointer/Cnt=0|"
                             "2 Rec2ChildList: NULL-Pointer/Cnt=0|2 Rec2ProcParVal: NULL-Pointer|"
                             "2 Rec2ListType: NULL-Pointer|2 Rec2PerEntry: NULL-Pointer|"
                             "2 Rec2ListEntry: NULL-Pointer|2 Rec2SmlObjectList: NULL-Pointer");
}

} // namespace
