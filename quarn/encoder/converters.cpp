// The converters as the library exports them: null pointers and a lack of memory are met here.
#include "quarn/encoder/converters.h"

#include "quarn/encoder/convert.h"

namespace
{

using namespace quarn::detail;
using namespace quarn::detail::encoder;

template <typename Conversion>
int Converted(bool usable, const char* refusal, Conversion convert) noexcept
{
    if (!usable) {
        Trace(LibSmle, kError, refusal);
        return 0;
    }
    try {
        return convert();
    } catch (...) {
        Trace(LibSmle, kError, "Record conversion: out of memory");
        return 0;
    }
}

} // namespace

int Record_2_SmlMsgHeader(vorn::cRecord& rec, Sml_OctetString* transactionId,
                          Sml_Unsigned8* groupNo, Sml_Unsigned8* abortOnError)
{
    const bool usable = transactionId != nullptr && groupNo != nullptr && abortOnError != nullptr;
    return Converted(usable, "Rec2MsgHeader: NULL-Pointer", [&] {
        return ConvertMsgHeader(rec, *transactionId, *groupNo, *abortOnError);
    });
}

int Record_GetTreePathEntryCount(vorn::cRecord& rec) { return CountPathEntries(rec); }

int Record_2_SmlTreePath(vorn::cRecord& rec, Sml_TreePath* path)
{
    return Converted(path != nullptr, "Rec2TreePath: NULL-Pointer",
                     [&] { return ConvertTreePath(rec, *path); });
}

int Record_2_SmlTree(vorn::cRecord& rec, Sml_Tree* tree)
{
    return Converted(tree != nullptr, "Rec2Tree: NULL-Pointer",
                     [&] { return ConvertTree(rec, *tree, eENTRIES::AS_FOUND); });
}

int Record_2_SmlChildList(vorn::cRecord& rec, Sml_ListOf* list, int n)
{
    return Converted(list != nullptr && n > 0, "Rec2ChildList: NULL-Pointer/Cnt=0",
                     [&] { return ConvertChildList(rec, *list, n, eENTRIES::AS_FOUND); });
}

int Record_2_SmlProcParValue(vorn::cRecord& rec, Sml_ProcParValue* ppv)
{
    return Converted(ppv != nullptr, "Rec2ProcParVal: NULL-Pointer",
                     [&] { return ConvertProcParValue(rec, *ppv, eENTRIES::AS_FOUND); });
}

int Record_2_SmlListType(vorn::cRecord& rec, Sml_ListType* lt)
{
    return Converted(lt != nullptr, "Rec2ListType: NULL-Pointer",
                     [&] { return ConvertListType(rec, *lt); });
}

int Record_2_SmlPeriodEntry(vorn::cRecord& rec, Sml_PeriodEntry* pe)
{
    return Converted(pe != nullptr, "Rec2PerEntry: NULL-Pointer",
                     [&] { return ConvertPeriodEntry(rec, *pe, eENTRIES::AS_FOUND); });
}

int Record_2_SmlListEntry(vorn::cRecord& rec, Sml_ListEntry* le)
{
    return Converted(le != nullptr, "Rec2ListEntry: NULL-Pointer",
                     [&] { return ConvertListEntry(rec, *le, eENTRIES::AS_FOUND); });
}

int Record_2_SmlObjectList(vorn::cRecord& rec, Sml_ListOf* list, int n)
{
    return Converted(list != nullptr && n > 0, "Rec2SmlObjectList: NULL-Pointer",
                     [&] { return ConvertObjectList(rec, *list, n); });
}
