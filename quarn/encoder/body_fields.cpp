// Paths, trees and lists of message bodies, made by the converters.
#include "quarn/encoder/body_fields.h"

#include "quarn/foundation/labels.h"

#include <new>

namespace quarn::detail::encoder
{
namespace
{

Object AbsentList()
{
    auto list = std::make_unique<Sml_ListOf>();
    list->SetToCode(false);
    return list;
}

template <typename Entry>
Object ReadEntries(const vorn::cRecord& body, const Field& field, const char* label,
                   int (*convert)(const vorn::cRecord&, Entry&, eENTRIES), const char* problem)
{
    vorn::cRecord entries;
    if (!FindRecord(body, field.pcLabel, entries)) {
        TraceMissing(field);
        return AbsentList();
    }
    auto list = std::make_unique<Sml_ListOf>();
    list->SetDynamicFlag(true);
    Walk(entries, label, entries.GetParCount(label, 0, 0), [&](const vorn::cRecordPar& par) {
        vorn::cRecord rec;
        if (!RecordOf(par, rec)) {
            Trace(LibSmle, kError, problem);
            return;
        }
        auto entry = std::make_unique<Entry>();
        convert(rec, *entry, eENTRIES::WHOLE);
        if (list->Add(entry.get()) != SML_LIST_OK)
            throw std::bad_alloc();
        static_cast<void>(entry.release());
    });
    return list;
}

// Where all entries are good.
template <std::size_t Size>
bool WriteEntries(const vorn::cRecordPar& par, const char (&label)[Size],
                  bool (*write)(const vorn::cRecord&, cBuffer&), cBuffer& buf)
{
    RecordReader<> entries;
    entries.Open(&par);
    int left = entries.Count(label, Size);
    ToBin_as_ListCount(static_cast<unsigned short>(left), &buf);
    entries.VisitElements(label, nullptr, [&](const vorn::cRecordPar& entry) {
        vorn::cRecord rec;
        return RecordOf(entry, rec) && write(rec, buf) && --left > 0;
    });
    return left == 0;
}

} // namespace

Object ReadTreePath(const vorn::cRecord& body, const Field& /*field*/)
{
    const int n = CountPathEntries(body);
    auto path = std::make_unique<Sml_TreePath>(n);
    if (path->GetCount() != n)
        throw std::bad_alloc();
    ConvertTreePath(body, *path);
    return path;
}

Object ReadTree(const vorn::cRecord& body, const Field& field)
{
    auto tree = std::make_unique<Sml_Tree>();
    vorn::cRecord rec;
    if (FindRecord(body, field.pcLabel, rec))
        ConvertTree(rec, *tree, eENTRIES::WHOLE);
    else
        TraceMissing(field);
    return tree;
}

Object ReadObjectList(const vorn::cRecord& body, const Field& field)
{
    vorn::cRecord objects;
    if (!FindRecord(body, field.pcLabel, objects)) {
        TraceMissing(field);
        return AbsentList();
    }
    const int n = objects.GetParCount(label::object_List_Entry, 0, 0);
    if (n == 0) {
        Trace(LibSmle, kError, "GetProfileReq: object_List-count = 0");
        return AbsentList();
    }
    auto list = MakeList(n);
    ConvertObjectList(objects, *list, n);
    return list;
}

bool WritePeriodList(const vorn::cRecordPar& par, cBuffer& buf)
{
    return WriteEntries(par, label::SmlPeriodEntry, WritePeriodEntry, buf);
}

bool WriteValueList(const vorn::cRecordPar& par, cBuffer& buf)
{
    return WriteEntries(par, label::valListEntry, WriteListEntry, buf);
}

Object ReadPeriodList(const vorn::cRecord& body, const Field& field)
{
    return ReadEntries(body, field, label::SmlPeriodEntry, ConvertPeriodEntry,
                       "GetProfileListResp: Problem with PeriodEntry");
}

Object ReadValueList(const vorn::cRecord& body, const Field& field)
{
    return ReadEntries(body, field, label::valListEntry, ConvertListEntry,
                       "GetListRes: Problem with valList_Entry");
}

} // namespace quarn::detail::encoder
