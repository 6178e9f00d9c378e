// The parts of the byte buffers that are not on the way of every byte.
#include "quarn/foundation/buffer.h"

#include <algorithm>
#include <new>

cBuffer::~cBuffer() = default;

int cBuffer::GetSize() const noexcept { return static_cast<int>(sizeof *this); }

void cBuffer::Release() noexcept {}

HeapBuffer::HeapBuffer(long size, int flags)
    : cBuffer(new char[static_cast<std::size_t>(std::max(size, 0L))], std::max(size, 0L), flags, 2)
{
}

HeapBuffer::~HeapBuffer() = default;

void HeapBuffer::Release() noexcept
{
    delete[] pcBegin;
    pcBegin = pcRead = pcWrite = nullptr;
    lSize = 0;
}

void* HeapBuffer::operator new(std::size_t size) { return ::operator new(size); }

void HeapBuffer::operator delete(void* p) noexcept { ::operator delete(p); }
