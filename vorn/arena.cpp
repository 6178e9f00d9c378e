// See arena.h.
#include "vorn/arena.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vorn::detail
{

Arena* Arena::New()
{
    auto* const arena = new (::operator new(kFirstChunk)) Arena;
    arena->Begin();
    return arena;
}

void Arena::Begin() noexcept
{
    pcNext = reinterpret_cast<char*>(this + 1);
    uiLeft = kFirstChunk - sizeof(Arena);
}

bool Arena::Reuse() noexcept
{
    if (uiRefs.load(std::memory_order_acquire) != 1)
        return false;
    if (pLast != nullptr)
        pSpare = std::exchange(pLast, nullptr);
    Begin();
    return true;
}

void Arena::MakeRoom(std::size_t bytes)
{
    if (bytes > std::numeric_limits<std::size_t>::max() / 2)
        throw std::bad_alloc();
    Chunk* chunk = std::exchange(pSpare, nullptr);
    if (chunk == nullptr || chunk->uiSize < bytes + sizeof(Chunk)) {
        ::operator delete(chunk);
        const std::size_t size = std::max(bytes + sizeof(Chunk), uiNextChunk);
        chunk = new (::operator new(size)) Chunk{nullptr, size};
        uiNextChunk = std::min(2 * uiNextChunk, kMostGrowth);
    }
    chunk->pBefore = pLast;
    pLast = chunk;
    pcNext = reinterpret_cast<char*>(chunk + 1);
    uiLeft = chunk->uiSize - sizeof(Chunk);
}

void Arena::FreeChunks() noexcept
{
    ::operator delete(std::exchange(pSpare, nullptr));
    while (pLast != nullptr)
        ::operator delete(std::exchange(pLast, pLast->pBefore));
}

void Arena::Free() noexcept
{
    FreeChunks();
    this->~Arena();
    ::operator delete(this);
}

} // namespace vorn::detail
