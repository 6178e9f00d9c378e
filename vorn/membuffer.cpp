// The shared blocks of cMemBuffer: a reference count and the bytes behind it, in one allocation.
#include "vorn/membuffer.h"

#include <atomic>
#include <new>

namespace vorn
{
namespace
{

struct Block {
    std::atomic<std::uint32_t> uiRefs;

    char* Bytes() noexcept { return reinterpret_cast<char*>(this + 1); }
};

Block* BlockOf(const char* store) noexcept
{
    Block* block = nullptr;
    std::memcpy(&block, store, sizeof block);
    return block;
}

} // namespace

void cMemBuffer::MakeShared(const void* data)
{
    Block* const block = new (::operator new(sizeof(Block) + uiSize)) Block{{1}};
    std::memcpy(block->Bytes(), data, uiSize);
    std::memcpy(acStore, &block, sizeof block);
}

const char* cMemBuffer::SharedData() const noexcept { return BlockOf(acStore)->Bytes(); }

void cMemBuffer::AddRef() const noexcept
{
    BlockOf(acStore)->uiRefs.fetch_add(1, std::memory_order_relaxed);
}

void cMemBuffer::Release() noexcept
{
    Block* const block = BlockOf(acStore);
    if (block->uiRefs.fetch_sub(1, std::memory_order_acq_rel) == 1)
        ::operator delete(block);
}

} // namespace vorn
