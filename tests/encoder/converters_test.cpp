// The converters: what each makes of a record, its result, and every line it traces.
#include "tests/encoder/encoder_support.h"
#include "tests/support/rows.h"

#include <map>

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

using Converter = int (*)(cRecord& rec, std::string& hex);

const std::map<std::string, Converter> kConverters = {
    {"Path", Path},
    {"Objects", ThreeOf<Record_2_SmlObjectList>},
    {"Children", ThreeOf<Record_2_SmlChildList>},
    {"Tree", Convert<Sml_Tree, Record_2_SmlTree>},
    {"Value", Convert<Sml_ProcParValue, Record_2_SmlProcParValue>},
    {"ListType", Convert<Sml_ListType, Record_2_SmlListType>},
    {"Period", Convert<Sml_PeriodEntry, Record_2_SmlPeriodEntry>},
    {"Entry", Convert<Sml_ListEntry, Record_2_SmlListEntry>},
};

TEST(Converters, MakeObjectsOfRecords)
{
    for (const Row& row : Rows("encoder/converters.txt", 5)) {
        SCOPED_TRACE(row[0] + " of " + row[1]);
        EncoderTrace trace(16);
        cRecord rec = Rec(row[1]);
        std::string hex;
        EXPECT_EQ(kConverters.at(row[0])(rec, hex), std::stoi(row[2]));
        EXPECT_EQ(hex, Hexed(row[3]));
        EXPECT_EQ(trace.Lines(), row[4]);
        EXPECT_EQ(rec, Rec(row[1]));
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
    EXPECT_EQ(trace.Lines(),
              "2 Rec2MsgHeader: NULL-Pointer + 2 Rec2TreePath: NULL-Pointer + "
              "2 Rec2Tree: NULL-Pointer + 2 Rec2ChildList: NULL-Pointer/Cnt=0 + "
              "2 Rec2ChildList: NULL-Pointer/Cnt=0 + 2 Rec2ProcParVal: NULL-Pointer + "
              "2 Rec2ListType: NULL-Pointer + 2 Rec2PerEntry: NULL-Pointer + "
              "2 Rec2ListEntry: NULL-Pointer + 2 Rec2SmlObjectList: NULL-Pointer");
}

} // namespace
