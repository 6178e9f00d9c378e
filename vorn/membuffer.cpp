// The blocks that several cMemBuffers share.
#include "vorn/membuffer.h"

#include "vorn/arena.h"

namespace vorn
{

using detail::Block;

namespace
{

Block* BlockOf(const char* store) noexcept
{
    Block* block = nullptr;
    std::memcpy(&block, store, sizeof block);
    return block;
}

} // namespace

void cMemBuffer::MakeShared(const void* data)
{
    Block* const block = new (::operator new(sizeof(Block) + uiSize)) Block;
    std::memcpy(block->Bytes(), data, uiSize);
    std::memcpy(acStore, &block, sizeof block);
}

const char* cMemBuffer::SharedData() const noexcept { return BlockOf(acStore)->Bytes(); }

void cMemBuffer::AddRef() const noexcept { BlockOf(acStore)->AddRef(); }

void cMemBuffer::Release() noexcept { BlockOf(acStore)->DropRef(); }

} // namespace vorn
