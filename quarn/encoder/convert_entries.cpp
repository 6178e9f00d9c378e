// Entries of lists, each a table of its fields, and the lists of object names.
#include "quarn/encoder/convert.h"
#include "quarn/foundation/labels.h"

#include <new>

namespace quarn::detail::encoder
{
namespace
{

Object ReadValue(const vorn::cRecord& rec, const Field& field, const char* unknown,
                 const char* dump)
{
    const vorn::cRecordPar par = rec.GetFirstPar(field.pcLabel, 0, 0);
    if (par.IsValid() && !par.IsEmpty())
        return MakeValue(par, unknown, dump);
    TraceMissing(field);
    return nullptr;
}

template <Object (*kRead)(const vorn::cRecord&, const Field&)>
constexpr Conversion kValue = {kRead, WriteValue};

Object ReadPeriodValue(const vorn::cRecord& rec, const Field& field)
{
    return ReadValue(rec, field, "Rec2PerEntry: <value> of unknown Type",
                     "Rec2PerEntry:recListType= %s\n");
}

Object ReadListValue(const vorn::cRecord& rec, const Field& field)
{
    return ReadValue(rec, field, "Rec2ListEntry: <value> of unknown Type", nullptr);
}

constexpr Field kPeriodEntry[] = {
    {label::objName, kName, "Rec2PerEntry: <objName> is missing/wrong!"},
    {label::unit, kUnsigned8, "Rec2PerEntry: <unit> is missing/wrong!"},
    {label::scaler, kInteger8, "Rec2PerEntry: <scaler> is missing/wrong!"},
    {label::value, kValue<ReadPeriodValue>, "Rec2PerEntry: <value> is missing/wrong!"},
    {label::valueSignature, kSignature},
};

constexpr Field kListEntry[] = {
    {label::objName, kName, "Rec2ListEntry: <objName> is missing/wrong!"},
    {label::status, kUnsigned64},
    {label::valTime, kTime},
    {label::unit, kUnsigned8},
    {label::scaler, kInteger8},
    {label::value, kValue<ReadListValue>, "Rec2ListEntry: <value> is missing/wrong!"},
    {label::valueSignature, kSignature},
};

template <std::size_t N>
int FillEntry(const vorn::cRecord& rec, ListStructure& entry, const Field (&fields)[N],
              eENTRIES entries)
{
    entry.SetDynamicFlag(true);
    unsigned slot = 0;
    for (const Field& field : fields) {
        Object object = field.how.pRead(rec, field);
        if (!object && entries == eENTRIES::WHOLE)
            object = std::make_unique<Sml_OctetString>();
        if (object) {
            if (entry.SetListElement(object.get(), slot) != SML_LIST_OK)
                throw std::bad_alloc(); // the entry has no slots
            static_cast<void>(object.release());
        }
        ++slot;
    }
    return 1;
}

} // namespace

int ConvertPeriodEntry(const vorn::cRecord& rec, Sml_PeriodEntry& pe, eENTRIES entries)
{
    vorn::cRecord nested;
    return FillEntry(FindRecord(rec, label::SmlPeriodEntry, nested) ? nested : rec, pe,
                     kPeriodEntry, entries);
}

int ConvertListEntry(const vorn::cRecord& rec, Sml_ListEntry& le, eENTRIES entries)
{
    return FillEntry(rec, le, kListEntry, entries);
}

bool WritePeriodEntry(const vorn::cRecord& rec, cBuffer& buf)
{
    ToBin_as_ListCount(5, &buf);
    return rec.GetParCount(label::SmlPeriodEntry, 0, 0) == 0 && WriteEach<kPeriodEntry>(rec, buf);
}

bool WriteListEntry(const vorn::cRecord& rec, cBuffer& buf)
{
    ToBin_as_ListCount(7, &buf);
    return WriteEach<kListEntry>(rec, buf);
}

int ConvertObjectList(const vorn::cRecord& rec, Sml_ListOf& list, int n)
{
    int slot = 0;
    Walk(rec, label::object_List_Entry, n, [&](const vorn::cRecordPar& par) {
        if (IsOfKind(par, KIND_UINT64))
            Place(list, OnHeap(MakeName, par), slot++);
        else
            Trace(LibSmle, kError, "Rec2SmlObjectList: Entry missing/wrong");
    });
    return 1;
}

} // namespace quarn::detail::encoder
