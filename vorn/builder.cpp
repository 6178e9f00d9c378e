// See builder.h. Open records lie in one stack of parameters; closing one copies its parameters
// behind a head into the arena, where they stay.
#include "vorn/builder.h"

#include "vorn/node.h"

#include <algorithm>
#include <utility>

namespace vorn
{

using detail::Arena;
using detail::Block;
using detail::Node;

cRecordBuilder::~cRecordBuilder()
{
    Create();
    ::operator delete(pPars);
}

void cRecordBuilder::Create() noexcept
{
    uiCount = 0;
    uiStart = 0;
    aStarts.clear();
    if (pArena != nullptr)
        std::exchange(pArena, nullptr)->DropRef();
    if (uiCapacity > kMostKept) {
        ::operator delete(std::exchange(pPars, nullptr));
        uiCapacity = 0;
    }
}

void cRecordBuilder::Grow()
{
    const std::size_t capacity = std::max(kFirstCapacity, std::size_t{uiCapacity} * 2);
    auto* const pars =
        static_cast<cRecordPar*>(::operator new(Node::Size(capacity) - sizeof(Node)));
    for (std::uint32_t i = 0; i < uiCount; ++i)
        new (pars + i) cRecordPar(pPars[i], cRecordPar::Uncounted());
    ::operator delete(std::exchange(pPars, pars));
    uiCapacity = static_cast<std::uint32_t>(capacity);
}

Arena& cRecordBuilder::TheArena()
{
    if (pArena == nullptr)
        pArena = Arena::New();
    return *pArena;
}

void cRecordBuilder::AppendDataPar(const cParName& name, const void* p, int size, int)
{
    const std::size_t bytes = p != nullptr && size > 0 ? static_cast<std::size_t>(size) : 0;
    if (bytes <= cMemBuffer::kInPlace) {
        new (Next()) cRecordPar(name, p, bytes, uiCount - 1 - uiStart);
        return;
    }
    Arena& arena = TheArena();
    auto* const block = new (arena.Take(sizeof(Block) + bytes)) Block;
    block->pArena = &arena;
    std::memcpy(block->Bytes(), p, bytes);
    new (Next()) cRecordPar(name, *block, bytes, uiCount - 1 - uiStart);
}

void cRecordBuilder::AppendRecordPar(const cParName& name, cPart part, int)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &part.pNode, sizeof part.pNode);
    Append(name, TYPE_RECORD, bits);
}

cRecordBuilder::cPart cRecordBuilder::Close()
{
    cPart part;
    const std::uint32_t count = uiCount - uiStart;
    if (count != 0) {
        Arena& arena = TheArena();
        part.pNode = new (arena.Take(Node::Size(count))) Node(arena, count);
        const cRecordPar* from = pPars + uiStart;
        cRecordPar* to = part.pNode->Pars();
        for (const cRecordPar* const end = from + count; from != end; ++from, ++to)
            new (to) cRecordPar(*from, cRecordPar::Uncounted());
    }
    Drop();
    return part;
}

void cRecordBuilder::Drop() noexcept
{
    uiCount = uiStart;
    aStarts.pop_back();
    uiStart = aStarts.empty() ? 0 : aStarts.back();
}

void cRecordBuilder::Clear(std::size_t level) noexcept
{
    uiCount = aStarts[level];
    std::fill(aStarts.begin() + static_cast<std::ptrdiff_t>(level), aStarts.end(), uiCount);
    uiStart = uiCount;
}

cRecord cRecordBuilder::Copy(std::size_t level) const
{
    const std::uint32_t first = aStarts[level];
    const std::uint32_t last = level + 1 < aStarts.size() ? aStarts[level + 1] : uiCount;
    cRecord copy;
    if (first == last)
        return copy;
    copy.pNode = Node::New(last - first);
    for (std::uint32_t i = first; i < last; ++i, ++copy.pNode->uiCount)
        new (copy.pNode->Pars() + copy.pNode->uiCount) cRecordPar(pPars[i]);
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
