// See builder.h. The parameters of a record are written where they stay, into the arena, behind the
// head of its node; a record that outgrows its place moves to a larger one. Large ones have memory
// of their own, so that what they leave is given back: a record of n parameters has room for 3n/2
// at most, and while it moves for 5n/2.
#include "vorn/builder.h"

#include "vorn/node.h"

#include <algorithm>
#include <utility>

namespace vorn
{

using detail::Arena;
using detail::Block;
using detail::Node;

namespace
{

constexpr std::size_t kFirstCapacity = 4;
constexpr std::size_t kLarge = 32; // parameters

// Room for a record that has count parameters and no room for one more.
std::size_t Capacity(std::size_t count, std::size_t expected) noexcept
{
    if (count == 0)
        return expected != 0 ? expected : kFirstCapacity;
    return count < kLarge ? 2 * count : count + count / 2;
}

void DropRef(Arena* arena) noexcept
{
    if (arena != nullptr)
        arena->DropRef();
}

} // namespace

cRecordBuilder::~cRecordBuilder()
{
    DropRef(pArena);
    for (Arena* const kept : apKept)
        DropRef(kept);
}

void cRecordBuilder::Create() noexcept
{
    aLevels.clear();
    Arena* const done = std::exchange(pArena, nullptr);
    if (done == nullptr)
        return;
    if (!done->IsWorthKeeping()) {
        done->DropRef();
        return;
    }
    DropRef(std::exchange(apKept[uiOldest], done));
    uiOldest = (uiOldest + 1) % kKeptArenas;
}

void cRecordBuilder::Grow(Level& level)
{
    const auto count = static_cast<std::size_t>(level.pNext - level.pFirst);
    const std::size_t capacity = Capacity(count, level.uiExpected);
    Arena& arena = TheArena();
    const std::size_t size = Node::Size(capacity);
    void* const place = capacity >= kLarge ? arena.TakeAlone(size) : arena.Take(size);
    auto* const node = new (place) Node(arena, 0);
    cRecordPar* const pars = node->Pars();
    for (std::size_t i = 0; i < count; ++i)
        new (pars + i) cRecordPar(level.pFirst[i], cRecordPar::Uncounted());
    if (count >= kLarge)
        arena.FreeAlone(level.pNode);
    level.pNode = node;
    level.pFirst = pars;
    level.pNext = pars + count;
    level.pEnd = pars + capacity;
}

Arena& cRecordBuilder::TheArena()
{
    if (pArena != nullptr)
        return *pArena;
    Arena*& oldest = apKept[uiOldest];
    if (oldest != nullptr && oldest->Reuse())
        pArena = std::exchange(oldest, nullptr);
    else
        pArena = Arena::New();
    return *pArena;
}

void cRecordBuilder::AppendBlock(const cParName& name, const void* p, std::size_t bytes)
{
    Arena& arena = TheArena();
    auto* const block = new (arena.Take(sizeof(Block) + bytes)) Block;
    block->pArena = &arena;
    std::memcpy(block->Bytes(), p, bytes);
    Append(name, block, bytes);
}

cRecordBuilder::cPart cRecordBuilder::Close() noexcept
{
    const Level& level = aLevels.back();
    cPart part;
    if (level.pNext != level.pFirst) {
        part.pNode = level.pNode;
        part.pNode->uiCount = static_cast<std::uint32_t>(level.pNext - level.pFirst);
        pArena->GiveBack(level.pNext, level.pEnd);
    }
    aLevels.pop_back();
    return part;
}

void cRecordBuilder::Drop() noexcept { aLevels.pop_back(); }

void cRecordBuilder::Clear(std::size_t level) noexcept
{
    aLevels[level].pNext = aLevels[level].pFirst;
}

cRecord cRecordBuilder::Copy(std::size_t level) const
{
    const Level& open = aLevels[level];
    cRecord copy;
    if (open.pNext == open.pFirst)
        return copy;
    copy.pNode = Node::New(Count(level) + kFirstCapacity);
    for (const cRecordPar* par = open.pFirst; par != open.pNext; ++par, ++copy.pNode->uiCount)
        new (copy.pNode->Pars() + copy.pNode->uiCount) cRecordPar(*par);
    return copy;
}

cRecord cRecordBuilder::Get(cPart part) const noexcept
{
    cRecord record;
    record.pNode = part.pNode;
    if (part.pNode != nullptr)
        part.pNode->AddRef();
    return record;
}

} // namespace vorn
