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
    uiTaken = kFirstChunk;
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
        const std::size_t next =
            uiTaken == kFirstChunk ? 2 * kFirstChunk : std::min(uiTaken, kMostGrowth);
        const std::size_t size = std::max(bytes + sizeof(Chunk), next);
        chunk = new (::operator new(size)) Chunk{nullptr, size};
    }
    uiTaken += chunk->uiSize;
    chunk->pBefore = pLast;
    pLast = chunk;
    pcNext = reinterpret_cast<char*>(chunk + 1);
    uiLeft = chunk->uiSize - sizeof(Chunk);
}

void* Arena::TakeAlone(std::size_t bytes)
{
    auto* const alone = new (::operator new(sizeof(Alone) + bytes)) Alone{pAlone, nullptr};
    if (pAlone != nullptr)
        pAlone->pAfter = alone;
    pAlone = alone;
    return alone + 1;
}

void Arena::FreeAlone(void* taken) noexcept
{
    Alone* const alone = static_cast<Alone*>(taken) - 1;
    if (alone->pBefore != nullptr)
        alone->pBefore->pAfter = alone->pAfter;
    (alone->pAfter != nullptr ? alone->pAfter->pBefore : pAlone) = alone->pBefore;
    ::operator delete(alone);
}

void Arena::FreeChunks() noexcept
{
    while (pAlone != nullptr)
        ::operator delete(std::exchange(pAlone, pAlone->pBefore));
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
