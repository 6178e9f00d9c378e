// See arena.h.
#include "vorn/arena.h"

#include <algorithm>
#include <limits>

namespace vorn::detail
{

Arena* Arena::New()
{
    auto* const arena = new (::operator new(kFirstChunk)) Arena;
    arena->pcNext = reinterpret_cast<char*>(arena + 1);
    arena->uiLeft = kFirstChunk - sizeof(Arena);
    return arena;
}

void Arena::MakeRoom(std::size_t bytes)
{
    if (bytes > std::numeric_limits<std::size_t>::max() / 2)
        throw std::bad_alloc();
    const std::size_t size = std::max(bytes + sizeof(Chunk), uiNextChunk);
    auto* const chunk = new (::operator new(size)) Chunk{pLast};
    pLast = chunk;
    pcNext = reinterpret_cast<char*>(chunk + 1);
    uiLeft = size - sizeof(Chunk);
    uiNextChunk = std::min(2 * uiNextChunk, kMostGrowth);
}

void Arena::Free() noexcept
{
    while (pLast != nullptr) {
        Chunk* const before = pLast->pBefore;
        ::operator delete(pLast);
        pLast = before;
    }
    this->~Arena();
    ::operator delete(this);
}

} // namespace vorn::detail
