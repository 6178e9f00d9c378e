// What the structures share, and the tree path.
#include "quarn/encoder/structures.h"

#include "quarn/foundation/schema.h"
#include "quarn/foundation/trace.h"

#include <new>

using quarn::detail::kError;
using quarn::detail::Trace;

namespace
{

unsigned Slots(int n) { return n > 0 ? static_cast<unsigned>(n) : 0; }

} // namespace

namespace quarn::detail
{

ListStructure::ListStructure(unsigned typeId, unsigned n) noexcept
    : list(static_cast<int>(n), false)
{
    list.SetTypeId(static_cast<int>(typeId));
    list.SetToCode(false);
}

ListStructure::~ListStructure() = default;

void ListStructure::ToBin(cBuffer* buf) { list.ToBin(buf); }

int ListStructure::SetListElement(Sml_Type* e, unsigned i) noexcept
{
    list.SetToCode(true);
    return list.SetElement(e, static_cast<int>(i));
}

Sml_Type* ListStructure::GetListElement(unsigned i) const noexcept
{
    return list.GetElement(static_cast<int>(i));
}

} // namespace quarn::detail

Sml_PeriodEntry::~Sml_PeriodEntry() = default;
Sml_ListEntry::~Sml_ListEntry() = default;
Sml_TupelEntry::~Sml_TupelEntry() = default;
Sml_TreePath::~Sml_TreePath() = default;
Sml_Tree::~Sml_Tree() = default;

Sml_TupelEntry::Sml_TupelEntry(bool dynamic) noexcept
    : ListStructure(SML_TYPE_TUPEL_ENTRY, quarn::schema::kTupelEntry.uiCount)
{
    list.SetToCode(true);
    list.SetDynamicFlag(dynamic);
}

Sml_TreePath::Sml_TreePath(int n, bool dynamic) noexcept
    : ListStructure(SML_TYPE_TREE_PATH, Slots(n))
{
    list.SetToCode(true);
    list.SetDynamicFlag(dynamic);
}

int Sml_TreePath::SetTreePath(const char* name, int i) noexcept
{
    return SetNewEntry(
        name != nullptr ? new (std::nothrow) Sml_OctetString(name, SML_NAME_SIZE, -1) : nullptr, i);
}

int Sml_TreePath::SetTreePath(long long name, int i) noexcept
{
    return SetNewEntry(new (std::nothrow) Sml_OctetString(name), i);
}

int Sml_TreePath::SetTreePath(Sml_OctetString* entry, int i) noexcept
{
    list.SetToCode(true);
    return entry != nullptr ? list.SetElement(entry, i) : int{SML_LIST_NO_ELEMENT};
}

int Sml_TreePath::SetNewEntry(Sml_OctetString* entry, int i) noexcept
{
    const int rc = SetTreePath(entry, i);
    if (rc != SML_LIST_OK)
        delete entry;
    return rc;
}

Sml_OctetString* Sml_TreePath::Entry(const char* caller, int i) const noexcept
{
    if (i < 0 || i >= list.GetCount())
        Trace(LibSmle, kError, "%s: List empty or index out of range! Index=%04x\n", caller,
              static_cast<unsigned>(i));
    return static_cast<Sml_OctetString*>(list.GetElement(i));
}

Sml_OctetString* Sml_TreePath::GetTreePath_OStr(int i) const noexcept
{
    return Entry("GetTreePath_OStr", i);
}

long long Sml_TreePath::GetTreePath_LL(int i) const noexcept
{
    const Sml_OctetString* const entry = Entry("GetTreePath_LL", i);
    return entry != nullptr ? entry->GetObisValue() : 0;
}
