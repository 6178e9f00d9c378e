// Parameter trees with their values and children, and tree paths. The recursion over the children
// is bounded here, and with it the depth of everything that is later written and deleted.
#include "quarn/encoder/convert.h"
#include "quarn/foundation/labels.h"
#include "quarn/foundation/limits.h"

#include <new>
#include <utility>

namespace quarn::detail::encoder
{
namespace
{

// Takes over what a tree's setter accepts; without slots there is no memory.
template <typename T>
void Give(Sml_Tree& tree, int (Sml_Tree::*set)(T*) noexcept, std::unique_ptr<T> part)
{
    if ((tree.*set)(part.get()) != SML_LIST_OK)
        throw std::bad_alloc();
    static_cast<void>(part.release());
}

unsigned AnyUInt(const vorn::cRecord& time, const char* label, const char* missing)
{
    const vorn::cRecordPar par = time.GetFirstPar(label, 0, 0);
    if (par.IsValid() && !par.IsEmpty())
        return par.GetUInt();
    Trace(LibSmle, kDetail, missing);
    return 0;
}

Object MakePeriodAlternative(const vorn::cRecordPar& par, eENTRIES entries)
{
    vorn::cRecord value;
    vorn::cRecord nested;
    vorn::cRecordPar objName;
    if (!RecordOf(par, value) || !(FindRecord(value, label::SmlPeriodEntry, nested) ||
                                   FindField(value, label::objName, KIND_UINT64, objName))) {
        Trace(LibSmle, kError, "Rec2ProcParVal: <SmlPeriodEntry> empty/wrong");
        return nullptr;
    }
    auto entry = std::make_unique<Sml_PeriodEntry>();
    ConvertPeriodEntry(value, *entry, entries);
    return entry;
}

Object MakeTimeAlternative(const vorn::cRecordPar& par)
{
    vorn::cRecord value;
    vorn::cRecord time;
    if (!RecordOf(par, value)) {
        Trace(LibSmle, kDetail, "Rec2ProcParVal: <SmlTime> invalid/empty");
        return nullptr;
    }
    if (!FindRecord(value, label::SmlTime, time)) {
        Trace(LibSmle, kDetail, "Rec2ProcParVal: <SmlTime>:Record invalid/empty");
        TraceRecord(kError, "recTime= %s\n", value);
        return std::make_unique<Sml_Time>();
    }
    const unsigned type =
        AnyUInt(time, label::type, "Rec2ProcParVal: <SmlTime>:Type invalid/empty");
    const unsigned seconds =
        AnyUInt(time, label::value, "Rec2ProcParVal: <SmlTime>:Value invalid/empty");
    return Object(new Sml_Time(TimeOf(time, type, seconds)));
}

Object MakeListAlternative(const vorn::cRecordPar& par, eENTRIES entries)
{
    vorn::cRecord value;
    if (!RecordOf(par, value)) {
        Trace(LibSmle, kDetail, "Rec2ProcParVal: <SmlListEntry> invalid/empty");
        return nullptr;
    }
    auto entry = std::make_unique<Sml_ListEntry>();
    ConvertListEntry(value, *entry, entries);
    return entry;
}

Object MakeAlternative(unsigned choice, const vorn::cRecordPar& par, eENTRIES entries)
{
    switch (choice) {
    case 1:
        return MakeValue(par, "Rec2ProcParVal: <Value> of unknown Type");
    case 2:
        return MakePeriodAlternative(par, entries);
    case 4:
        return MakeTimeAlternative(par);
    case 5:
        return MakeListAlternative(par, entries);
    default:
        return nullptr;
    }
}

void ConvertChildren(const vorn::cRecord& tree, Sml_Tree& out, eENTRIES entries, unsigned level)
{
    vorn::cRecord children;
    if (!FindRecord(tree, label::child_List, children))
        return;
    const int n = children.GetParCount(label::parTree, 0, 0);
    if (n == 0) {
        Trace(LibSmle, kError, "Rec2Tree: child_List: tree_Entry-count == 0");
    } else if (level + 1 >= SML_MAX_TREE_DEPTH) {
        Trace(LibSmle, kError, "Rec2Tree: child_List: more than %u levels", SML_MAX_TREE_DEPTH);
    } else {
        auto list = MakeList(n);
        ConvertChildList(children, *list, n, entries, level + 1);
        Give(out, &Sml_Tree::Set_ChildList, std::move(list));
    }
}

} // namespace

int ConvertTree(const vorn::cRecord& rec, Sml_Tree& tree, eENTRIES entries, unsigned level)
{
    vorn::cRecord fields;
    if (level != 0 || !FindRecord(rec, label::parTree, fields))
        fields = rec;
    tree.SetDynamicFlag(true);

    vorn::cRecordPar name;
    if (FindField(fields, label::parName, KIND_UINT64, name))
        Give(tree, &Sml_Tree::Set_ParName, OnHeap(MakeName, name));
    else
        Trace(LibSmle, kError, "Rec2Tree: <parName> missing/wrong");

    vorn::cRecord value;
    if (FindRecord(fields, label::procParVal, value)) {
        auto ppv = std::make_unique<Sml_ProcParValue>();
        if (ConvertProcParValue(value, *ppv, entries) != 0)
            Give(tree, &Sml_Tree::Set_ParValue, std::move(ppv));
    }
    ConvertChildren(fields, tree, entries, level);
    return 1;
}

int ConvertChildList(const vorn::cRecord& rec, Sml_ListOf& list, int n, eENTRIES entries,
                     unsigned level)
{
    int slot = 0;
    Walk(rec, label::parTree, n, [&](const vorn::cRecordPar& par) {
        vorn::cRecord child;
        if (!RecordOf(par, child)) {
            Trace(LibSmle, kError, "Rec2ChildList: Problem with Tree");
            return;
        }
        auto tree = std::make_unique<Sml_Tree>();
        ConvertTree(child, *tree, entries, level);
        Place(list, std::move(tree), slot++);
    });
    return 1;
}

int ConvertProcParValue(const vorn::cRecord& rec, Sml_ProcParValue& ppv, eENTRIES entries)
{
    unsigned choice = 0;
    vorn::cRecordPar type;
    if (FindField(rec, label::type, KIND_UINT, type)) {
        choice = type.GetUInt();
        if (choice < 1 || choice > 5)
            Trace(LibSmle, kError, "Rec2ProcParVal: Type out of range");
    } else {
        Trace(LibSmle, kError, "Rec2ProcParVal: parType invalid/empty");
    }
    const vorn::cRecordPar value = rec.GetFirstPar(label::value, 0, 0);
    if (!value.IsValid() || value.IsEmpty()) {
        Trace(LibSmle, kError, "Rec2ProcParVal: parType invalid/empty");
        return 1;
    }
    if (choice == 3) {
        Trace(LibSmle, kError, "Rec2ProcParVal: <SmlTupelEntry> not supported");
        return 0;
    }
    if (Object object = MakeAlternative(choice, value, entries))
        ppv.Set_ProcParValue(static_cast<unsigned char>(choice), object.release());
    return 1;
}

int CountPathEntries(const vorn::cRecord& rec)
{
    vorn::cRecord path;
    return FindRecord(rec, label::parTreePath, path) ? path.GetParCount(label::path_Entry, 0, 0)
                                                     : 0;
}

int ConvertTreePath(const vorn::cRecord& rec, Sml_TreePath& path)
{
    vorn::cRecord entries;
    if (!FindRecord(rec, label::parTreePath, entries)) {
        Trace(LibSmle, kError, "Rec2TreePath: record <parTreePath> missing");
        return 0;
    }
    path.SetDynamicFlag(true);
    int slot = 0;
    vorn::cRecordPar par = entries.GetFirstPar(label::path_Entry, 0, 0);
    for (; par.IsValid() && !par.IsEmpty(); entries.SeekNextPar(par, nullptr, 0, 0)) {
        if (!IsOfKind(par, KIND_UINT64))
            Trace(LibSmle, kError, "Rec2TreePath: path_Entry not of type UInt64");
        else if (path.SetTreePath(static_cast<long long>(par.GetUInt64()), slot++) ==
                 SML_LIST_NO_ELEMENT)
            throw std::bad_alloc();
    }
    return 1;
}

} // namespace quarn::detail::encoder
