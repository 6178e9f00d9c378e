// Memory that is taken in pieces and given back as a whole, and what of a record may lie in it:
// nodes and shared blocks of bytes. Whoever holds a reference to one of them holds the arena; what
// lies in an arena refers to its neighbours without counting. Nothing in an arena refers to memory
// outside of it, so that giving it back never goes further. Private to vorn.
#ifndef VORN_ARENA_H
#define VORN_ARENA_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace vorn::detail
{

class alignas(8) Arena
{
public:
    // The one reference belongs to the caller. Throws std::bad_alloc, as Take does.
    static Arena* New();

    // Memory for bytes, aligned for whatever a record holds. Only the builder that made the arena
    // takes from it, while others may already read what it holds.
    void* Take(std::size_t bytes)
    {
        bytes = (bytes + kAlign - 1) / kAlign * kAlign;
        if (bytes > uiLeft)
            MakeRoom(bytes);
        void* const taken = pcNext;
        pcNext += bytes;
        uiLeft -= bytes;
        return taken;
    }

    // The same, in a piece of its own, which can be given back alone.
    void* TakeAlone(std::size_t bytes);
    void FreeAlone(void* taken) noexcept;

    // Takes back what lies behind unused, if it is the last that was taken.
    void GiveBack(void* unused, void* end) noexcept
    {
        if (end != pcNext)
            return;
        uiLeft += static_cast<std::size_t>(pcNext - static_cast<char*>(unused));
        pcNext = static_cast<char*>(unused);
    }

    // Forgets what lies in it, when nobody but the caller holds a reference: the memory is then to
    // be taken again. False when somebody does.
    bool Reuse() noexcept;
    // It is small enough to be kept for that.
    bool IsWorthKeeping() const noexcept
    {
        return pAlone == nullptr &&
               (pLast == nullptr || (pLast->pBefore == nullptr && pLast->uiSize <= kMostKept));
    }

    void AddRef() noexcept { uiRefs.fetch_add(1, std::memory_order_relaxed); }
    void DropRef() noexcept
    {
        if (uiRefs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            Free();
    }

private:
    // The second chunk is twice the first, so that most trees need no third; each further one is as
    // large as all before it, so that half is used at least.
    static constexpr std::size_t kAlign = 8;
    static constexpr std::size_t kFirstChunk = 2048;
    static constexpr std::size_t kMostGrowth = std::size_t{64} * 1024;
    static constexpr std::size_t kMostKept = 4 * kFirstChunk; // in a second chunk

    struct alignas(kAlign) Chunk {
        Chunk* pBefore;
        std::size_t uiSize;
    };

    // In front of a piece taken alone: its neighbours in their list.
    struct alignas(kAlign) Alone {
        Alone* pBefore;
        Alone* pAfter;
    };

    Arena() noexcept = default;
    void Begin() noexcept;
    void MakeRoom(std::size_t bytes);
    void FreeChunks() noexcept;
    void Free() noexcept;

    std::atomic<std::uint32_t> uiRefs{1};
    Chunk* pLast = nullptr; // behind the first, which begins with the arena itself
    char* pcNext = nullptr;
    std::size_t uiLeft = 0;
    std::size_t uiTaken = kFirstChunk; // bytes of all chunks
    Alone* pAlone = nullptr;           // the last that was taken
    Chunk* pSpare = nullptr;           // a second chunk that is not in use again yet
};

// Bytes that several buffers share, behind this head.
struct alignas(8) Block {
    std::atomic<std::uint32_t> uiRefs{1}; // without meaning in an arena
    Arena* pArena = nullptr;              // where the block lies; null: in memory of its own

    char* Bytes() noexcept { return reinterpret_cast<char*>(this + 1); }

    void AddRef() noexcept
    {
        if (pArena != nullptr)
            pArena->AddRef();
        else
            uiRefs.fetch_add(1, std::memory_order_relaxed);
    }
    void DropRef() noexcept
    {
        if (pArena != nullptr)
            pArena->DropRef();
        else if (uiRefs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            ::operator delete(this);
    }
};

} // namespace vorn::detail

#endif
