// The node behind a record: a head and the parameters behind it, in one piece of memory of its own
// or in an arena. A node with more than one reference, or in an arena, is never written to. Only
// the records themselves use it; it stands in a header so that reading them costs no calls.
#ifndef VORN_NODE_H
#define VORN_NODE_H

#include "vorn/arena.h"
#include "vorn/record.h"

#include <cstring>
#include <new>

namespace vorn::detail
{

struct alignas(cRecordPar) Node {
    std::atomic<std::uint32_t> uiRefs{1}; // without meaning in an arena
    std::uint32_t uiCount = 0;
    std::uint32_t uiCapacity;  // 0: in an arena
    Node* pNextDead = nullptr; // links the nodes that Release still has to destroy
    Arena* pArena = nullptr;

    explicit Node(std::size_t capacity) : uiCapacity(static_cast<std::uint32_t>(capacity)) {}
    Node(Arena& arena, std::size_t count)
        : uiCount(static_cast<std::uint32_t>(count)), uiCapacity(0), pArena(&arena)
    {
    }

    cRecordPar* Pars() noexcept { return std::launder(reinterpret_cast<cRecordPar*>(this + 1)); }
    bool IsInArena() const noexcept { return uiCapacity == 0; }
    bool IsShared() const noexcept
    {
        return IsInArena() || uiRefs.load(std::memory_order_acquire) != 1;
    }
    void AddRef() noexcept
    {
        if (IsInArena())
            pArena->AddRef();
        else
            uiRefs.fetch_add(1, std::memory_order_relaxed);
    }

    // Memory for a node of that many parameters.
    static std::size_t Size(std::size_t capacity);
    static Node* New(std::size_t capacity); // REQUIRES: capacity > 0
    // Drops a reference to node, which may be null.
    static void Release(Node* node) noexcept;

private:
    // The next node to destroy, when the reference that is dropped here is the last: node, now in
    // front of dead, or dead itself.
    static Node* Drop(Node* node, Node* dead) noexcept;
    // Destroys the parameters. Nested nodes that die with them are put before dead, not recursed
    // into.
    Node* Clear(Node* dead) noexcept;
};

static_assert(sizeof(Node) % alignof(cRecordPar) == 0, "parameters follow the header directly");

} // namespace vorn::detail

namespace vorn
{

inline const cRecordPar* cRecord::begin() const noexcept
{
    return pNode != nullptr ? pNode->Pars() : nullptr;
}

inline const cRecordPar* cRecord::end() const noexcept
{
    return pNode != nullptr ? pNode->Pars() + pNode->uiCount : nullptr;
}

inline detail::Node* cRecordPar::Nested() const noexcept
{
    detail::Node* node = nullptr;
    if (ucType == TYPE_RECORD)
        std::memcpy(&node, buf.GetData(), sizeof node);
    return node;
}

inline const cRecordPar* cRecordPar::begin() const noexcept
{
    detail::Node* const node = Nested();
    return node != nullptr ? node->Pars() : nullptr;
}

inline const cRecordPar* cRecordPar::end() const noexcept
{
    detail::Node* const node = Nested();
    return node != nullptr ? node->Pars() + node->uiCount : nullptr;
}

inline std::uint64_t cRecordPar::Scalar() const noexcept
{
    std::uint64_t bits = 0;
    if (ucType != TYPE_NONE && ucType != TYPE_DATA && ucType != TYPE_RECORD)
        std::memcpy(&bits, buf.GetData(), sizeof bits);
    return bits;
}

} // namespace vorn

#endif
