// The chain of slots. The slots that a list starts with stand in one block; those added later are
// allocated one by one.
#include "quarn/encoder/list.h"

#include "quarn/encoder/tl_field.h"
#include "quarn/encoder/tl_writers.h"
#include "quarn/foundation/limits.h"
#include "quarn/foundation/trace.h"

#include <cstdint>
#include <functional>
#include <new>
#include <utility>

using quarn::detail::kError;
using quarn::detail::Trace;

namespace
{

// A tree of SML_MAX_TREE_DEPTH levels, of two lists each, and what stands around and inside it.
constexpr unsigned kMostNested = 2 * SML_MAX_TREE_DEPTH + 8;

// Lives while a list is being written; knows how many such lists there are in this thread.
class Writing
{
public:
    Writing() noexcept { ++uiNested; }
    ~Writing() { --uiNested; }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

    bool IsTooDeep() const noexcept { return uiNested > kMostNested; }

private:
    static thread_local unsigned uiNested;
};

thread_local unsigned Writing::uiNested = 0;

} // namespace

Sml_ListObject::~Sml_ListObject() = default;

Sml_ListOf::Sml_ListOf() noexcept { iTypeId = SML_TYPE_LIST; }

Sml_ListOf::Sml_ListOf(int n, bool dynamic) noexcept : Sml_ListOf()
{
    SetDynamicFlag(dynamic);
    if (n <= 0)
        return;
    pBlock.reset(new (std::nothrow) Sml_ListObject[static_cast<std::size_t>(n)]);
    if (!pBlock)
        return;
    iBlockSize = n;
    for (int i = 0; i < n; ++i)
        Append(&pBlock[static_cast<std::size_t>(i)]);
}

Sml_ListOf::~Sml_ListOf()
{
    Sml_ListOf* list = this;
    for (list->pHead = list->TakeReversed(); list != nullptr;) {
        Sml_ListObject* const node = list->pHead;
        if (node == nullptr) {
            list = std::exchange(list->pOuter, nullptr);
            continue;
        }
        // The element's own list is emptied first, so that its deletion goes no deeper.
        Sml_Type* const element = list->bDynamic ? node->pElement : nullptr;
        Sml_ListOf* const inner = element != nullptr ? element->Parts() : nullptr;
        if (inner != nullptr && inner->pHead != nullptr) {
            inner->pHead = inner->TakeReversed();
            inner->pOuter = list;
            list = inner;
        } else {
            list->pHead = node->pNext;
            list->DeleteNode(node);
        }
    }
}

Sml_ListObject* Sml_ListOf::TakeReversed() noexcept
{
    Sml_ListObject* last = nullptr;
    while (pHead != nullptr) {
        Sml_ListObject* const next = pHead->pNext;
        pHead->pNext = last;
        last = pHead;
        pHead = next;
    }
    pTail = pCursor = nullptr;
    iCount = 0;
    return last;
}

void Sml_ListOf::DeleteNode(Sml_ListObject* node) noexcept
{
    if (bDynamic)
        delete node->pElement;
    const std::less<Sml_ListObject*> before; // a total order also between unrelated objects
    const bool inBlock =
        pBlock && !before(node, pBlock.get()) && before(node, pBlock.get() + iBlockSize);
    if (!inBlock)
        delete node;
}

void Sml_ListOf::Append(Sml_ListObject* node) noexcept
{
    (pTail != nullptr ? pTail->pNext : pHead) = node;
    pTail = node;
    ++iCount;
}

int Sml_ListOf::Add(Sml_Type* e) noexcept
{
    auto* const node = new (std::nothrow) Sml_ListObject(e);
    if (node == nullptr)
        return SML_LIST_NO_MEMORY;
    Append(node);
    return SML_LIST_OK;
}

Sml_ListObject* Sml_ListOf::NodeAt(int i) const noexcept
{
    if (pCursor == nullptr || i < iCursor) {
        pCursor = pHead;
        iCursor = 0;
    }
    for (; iCursor < i; ++iCursor)
        pCursor = pCursor->pNext;
    return pCursor;
}

Sml_Type* Sml_ListOf::GetElement(int i) const noexcept
{
    return HasSlot(i) ? NodeAt(i)->pElement : nullptr;
}

int Sml_ListOf::SetElement(Sml_Type* e, int i) noexcept
{
    if (!HasSlot(i))
        return SML_LIST_BAD_INDEX;
    Sml_ListObject* const node = NodeAt(i);
    if (bDynamic && e != nullptr && e != node->pElement)
        delete node->pElement;
    node->pElement = e;
    return SML_LIST_OK;
}

int Sml_ListOf::Remove(int i) noexcept
{
    if (!HasSlot(i))
        return SML_LIST_BAD_INDEX;
    Sml_ListObject* const before = i > 0 ? NodeAt(i - 1) : nullptr;
    Sml_ListObject* const node = before != nullptr ? before->pNext : pHead;
    (before != nullptr ? before->pNext : pHead) = node->pNext;
    if (node == pTail)
        pTail = before;
    if (before == nullptr)
        pCursor = nullptr;
    --iCount;
    DeleteNode(node);
    return SML_LIST_OK;
}

void Sml_ListOf::ToBin(cBuffer* buf)
{
    if (!bToCode) {
        ToBin_As_Option(buf);
    } else if (const Writing writing; writing.IsTooDeep()) {
        Trace(LibSmle, kError, "Sml_ListOf::ToBin: nested too deep");
        ToBin_As_Option(buf);
    } else {
        WriteElements(buf);
    }
}

void Sml_ListOf::WriteElements(cBuffer* buf)
{
    const int n = Calculate_TLFCount_ListOf(iCount);
    if (buf->Free() >= n)
        quarn::detail::encoder::PutTl(*buf, quarn::detail::kTlList, n,
                                      static_cast<std::uint32_t>(iCount));
    for (const Sml_ListObject* node = pHead; node != nullptr; node = node->pNext) {
        if (node->pElement != nullptr)
            node->pElement->ToBin(buf);
        else if (iTypeId == SML_TYPE_TREE)
            ToBin_As_Option(buf);
    }
}
