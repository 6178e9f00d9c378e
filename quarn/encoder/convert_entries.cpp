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

// value: the conversion of values, each with the traces of its kind of entry.
template <std::size_t N, std::size_t M>
constexpr auto EntryFields(const schema::Element (&elements)[N], const Missing (&missing)[M],
                           const Conversion& value)
{
    return FieldsOf(elements, missing, M, [&](const schema::Element& element) {
        return element.eType == schema::eTYPE::VALUE ? value : ConversionOf(element);
    });
}

constexpr auto kPeriodEntry =
    EntryFields(schema::aPeriodEntry,
                {
                    {label::objName, "Rec2PerEntry: <objName> is missing/wrong!"},
                    {label::unit, "Rec2PerEntry: <unit> is missing/wrong!"},
                    {label::scaler, "Rec2PerEntry: <scaler> is missing/wrong!"},
                    {label::value, "Rec2PerEntry: <value> is missing/wrong!"},
                },
                kValue<ReadPeriodValue>);

constexpr auto kListEntry =
    EntryFields(schema::aListEntry,
                {
                    {label::objName, "Rec2ListEntry: <objName> is missing/wrong!"},
                    {label::value, "Rec2ListEntry: <value> is missing/wrong!"},
                },
                kValue<ReadListValue>);

template <std::size_t N>
int FillEntry(const vorn::cRecord& rec, ListStructure& entry, const std::array<Field, N>& fields,
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
