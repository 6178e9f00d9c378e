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
    const char* name;
    int (*convert)(cRecord& rec, std::string& hex);
    cRecord rec;
    int rc;
    std::string hex;
    std::string lines;
};

const cRecord kNone;
const cRecord kTime = Rec({{"type", 1U}, {"value", 0x5F5E1000U}});
const cRecord kLocal =
    Rec({{"type", 3U}, {"value", 7U}, {"locOffset", 0x1003C}, {"seaOffset", -60}});
const cRecord kLeaf = Rec({{"parName", U64{0x0100000000FF}}});
const cRecord kPeriod = Rec({{"objName", U64{0x0100010800FF}},
                             {"unit", 0x11EU},
                             {"scaler", 0x1FF},
                             {"value", 5U},
                             {"valueSignature", Data("AA BB")}});
const std::string kPeriodHex = "75 07010001 0800FF 621E 52FF 6205 03AABB";

cRecord ListTypeOf(const cRecord& time)
{
    return Rec({{"smlList", Rec({{"type", 1U}, {"SmlTime", time}})}});
}

cRecord TypedValue(unsigned type, const cRecord& value)
{
    return Rec({{"type", type}, {"value", value}});
}

// A path whose second entry is of the wrong kind.
const cRecord kPath = Rec({{"parTreePath", Rec({{"path_Entry", U64{0x0100010800FF}},
                                                {"path_Entry", Data("01")},
                                                {"path_Entry", U64{0x0100020800FF}}})}});

const Row kRows[] = {
    {"path", Path, kPath, 1, "73 07010001 0800FF 07010002 0800FF",
     "2 Rec2TreePath: path_Entry not of type UInt64"},
    {"no path", Path, kNone, 0, "70", "2 Rec2TreePath: record <parTreePath> missing"},
    {"objects", ThreeOf<Record_2_SmlObjectList>,
     Rec({{"object_List_Entry", U64{1}}, {"other", 5U}, {"object_List_Entry", U64{2}}}), 1,
     "73 07000000000001 07000000000002", "2 Rec2SmlObjectList: Entry missing/wrong"},
    {"children", ThreeOf<Record_2_SmlChildList>,
     Rec({{"parTree", kLeaf}, {"parTree", 5U}, {"parTree", kNone}}), 1,
     "73 73 070100000000FF 0101 01",
     "2 Rec2ChildList: Problem with Tree|2 Rec2Tree: <parName> missing/wrong"},

    {"tree", Tree,
     Rec({{"parName", U64{1}},
          {"procParVal", Rec({{"type", 1U}, {"value", 5U}})},
          {"child_List", Rec({{"parTree", kLeaf}, {"parTree", kLeaf}})}}),
     1, "73 07000000000001 7262016205 72 73070100000000FF0101 73070100000000FF0101", ""},
    {"tree in a record of its label", Tree, Rec({{"parTree", kLeaf}}), 1, "73 070100000000FF 01 01",
     ""},
    {"tree without anything", Tree, Rec({{"child_List", kNone}}), 1, "01",
     "2 Rec2Tree: <parName> missing/wrong|2 Rec2Tree: child_List: tree_Entry-count == 0"},
    {"tree with a tupel entry", Tree,
     Rec({{"parName", U64{0x0100000000FF}}, {"procParVal", TypedValue(3, kNone)}}), 1,
     "73 070100000000FF 01 01", "2 Rec2ProcParVal: <SmlTupelEntry> not supported"},

    {"value, signed", Value, Rec({{"type", 1U}, {"value", -200}}), 1, "726201 53FF38", ""},
    {"value, unsigned 64", Value, Rec({{"type", 1U}, {"value", U64{1} << 32}}), 1,
     "726201 690000000100000000", ""},
    {"value, signed 64", Value, Rec({{"type", 1U}, {"value", -1LL}}), 1, "726201 52FF", ""},
    {"value, bool", Value, Rec({{"type", 1U}, {"value", true}}), 1, "726201 4201", ""},
    {"value, data", Value, Rec({{"type", 1U}, {"value", Data("41")}}), 1, "726201 0241", ""},
    {"value, list type", Value, TypedValue(1, ListTypeOf(kTime)), 1,
     "726201 726201 726201 655F5E1000", ""},
    {"value, bad list type", Value, TypedValue(1, kNone), 1, "01",
     "2 Rec2ListType: RecParVal invalid/empty|2 RecParVal= {}\n"},
    {"value of no type", Value, Rec({{"value", 5U}}), 1, "01",
     "2 Rec2ProcParVal: parType invalid/empty"},
    {"value out of range", Value, Rec({{"type", 6U}, {"value", 5U}}), 1, "01",
     "2 Rec2ProcParVal: Type out of range"},
    {"no value", Value, Rec({{"type", 1U}}), 1, "01", "2 Rec2ProcParVal: parType invalid/empty"},
    {"tupel", Value, TypedValue(3, kNone), 0, "01",
     "2 Rec2ProcParVal: <SmlTupelEntry> not supported"},
    {"value, period entry", Value, TypedValue(2, Rec({{"SmlPeriodEntry", kPeriod}})), 1,
     "726202" + kPeriodHex, ""},
    {"value, period entry directly", Value, TypedValue(2, kPeriod), 1, "726202" + kPeriodHex, ""},
    {"value, no period entry", Value, TypedValue(2, kNone), 1, "01",
     "2 Rec2ProcParVal: <SmlPeriodEntry> empty/wrong"},
    {"value, period entry of a wrong kind", Value, Rec({{"type", 2U}, {"value", 5U}}), 1, "01",
     "2 Rec2ProcParVal: <SmlPeriodEntry> empty/wrong"},
    {"value, time", Value, TypedValue(4, Rec({{"SmlTime", kLocal}})), 1,
     "726204 726203 73 6207 523C 52C4", ""},
    {"value, time of another kind", Value,
     TypedValue(4, Rec({{"SmlTime", Rec({{"type", 2}, {"value", U64{9}}})}})), 1,
     "726204 726202 6209", ""},
    {"value, time without members", Value, TypedValue(4, Rec({{"SmlTime", kNone}})), 1, "726204 01",
     "16 Rec2ProcParVal: <SmlTime>:Type invalid/empty|"
     "16 Rec2ProcParVal: <SmlTime>:Value invalid/empty"},
    {"value, no time", Value, TypedValue(4, kNone), 1, "726204 01",
     "16 Rec2ProcParVal: <SmlTime>:Record invalid/empty|2 recTime= {}\n"},
    {"value, time of a wrong kind", Value, Rec({{"type", 4U}, {"value", 5U}}), 1, "01",
     "16 Rec2ProcParVal: <SmlTime> invalid/empty"},
    {"value, list entry", Value, TypedValue(5, Rec({{"objName", U64{1}}, {"value", 5U}})), 1,
     "726205 77 07000000000001 01 01 01 01 6205 01", ""},
    {"value, list entry of a wrong kind", Value, Rec({{"type", 5U}, {"value", 5U}}), 1, "01",
     "16 Rec2ProcParVal: <SmlListEntry> invalid/empty"},

    {"list type, local time", ListType, ListTypeOf(kLocal), 1, "726201 726203 73 6207 523C 52C4",
     ""},
    {"list type, time of a type beyond 8 bits", ListType, ListTypeOf(Rec({{"type", 0x101U}})), 1,
     "726201 01", ""},
    {"list type without time", ListType, Rec({{"smlList", Rec({{"type", 1U}})}}), 1, "726201 01",
     "2 Rec2ListType: parTime invalid/empty"},
    {"list type without type", ListType, Rec({{"smlList", Rec({{"type", 1}})}}), 0, "01",
     "2 Rec2ListType: parType invalid/empty|2 RecParVal= {smlList={type=1}}\n"},
    {"list type of another type", ListType, Rec({{"smlList", Rec({{"type", 2U}})}}), 0, "01",
     "2 Rec2ListType: Type out of range"},

    {"period entry", Period, kPeriod, 1, kPeriodHex, ""},
    {"period entry in a record of its label", Period, Rec({{"SmlPeriodEntry", kPeriod}}), 1,
     kPeriodHex, ""},
    {"period entry without anything", Period, kNone, 1, "75 01 01 01 01",
     "2 Rec2PerEntry: <objName> is missing/wrong!|2 Rec2PerEntry: <unit> is missing/wrong!|"
     "2 Rec2PerEntry: <scaler> is missing/wrong!|2 Rec2PerEntry: <value> is missing/wrong!"},
    {"period entry of a list type", Period,
     Rec({{"objName", U64{1}}, {"unit", 1U}, {"scaler", 0}, {"value", ListTypeOf(kTime)}}), 1,
     "75 07000000000001 6201 5200 726201 726201 655F5E1000 01",
     "8 Rec2PerEntry:recListType= {smlList={type=1, SmlTime={type=1, value=1600000000}}}\n"},
    {"list entry", Entry,
     Rec({{"objName", U64{1}},
          {"status", U64{0x100}},
          {"valTime", kTime},
          {"unit", 30U},
          {"scaler", -1},
          {"value", 5U},
          {"valueSignature", Data("AA")}}),
     1, "77 07000000000001 630100 726201655F5E1000 621E 52FF 6205 02AA", ""},
    {"list entry without anything", Entry, kNone, 1, "77 01 01 01 01 01 01",
     "2 Rec2ListEntry: <objName> is missing/wrong!|2 Rec2ListEntry: <value> is missing/wrong!"},
};

TEST(Converters, MakeObjectsOfRecords)
{
    for (const Row& row : kRows) {
        EncoderTrace trace;
        cRecord rec = row.rec;
        std::string hex;
        EXPECT_EQ(row.convert(rec, hex), row.rc) << row.name;
        EXPECT_EQ(hex, Hexed(row.hex)) << row.name;
        EXPECT_EQ(trace.Lines(), row.lines) << row.name;
        EXPECT_EQ(rec, row.rec) << row.name;
    }
}

TEST(Converters, RefuseNullPointersAndNoElements)
{
    EncoderTrace trace;
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
