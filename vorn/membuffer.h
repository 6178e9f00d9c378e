// The byte store inside a record parameter: up to 20 bytes in place, more in a shared block.
//
// A value type: copies are independent of each other, and copying costs at most one reference
// count, since the bytes of a shared block never change. Different copies may be used by different
// threads.
#ifndef VORN_MEMBUFFER_H
#define VORN_MEMBUFFER_H

#include "vorn/export.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vorn
{

namespace detail
{
struct Block; // arena.h
}

class VORN_API cMemBuffer final
{
public:
    static constexpr std::size_t kInPlace = 20;

    struct Uncounted {
    };

    cMemBuffer() noexcept = default;
    explicit cMemBuffer(std::uint64_t bits) noexcept : uiSize(sizeof bits)
    {
        std::memcpy(acStore, &bits, sizeof bits);
    }
    // Copies size bytes; above 20 bytes this may throw std::bad_alloc. REQUIRES: size fits 32 bits.
    cMemBuffer(const void* data, std::size_t size) : uiSize(static_cast<std::uint32_t>(size))
    {
        if (size > kInPlace)
            MakeShared(data);
        else
            CopyInPlace(static_cast<const char*>(data), size);
    }
    cMemBuffer(const cMemBuffer& other) noexcept : uiSize(other.uiSize)
    {
        std::memcpy(acStore, other.acStore, kInPlace);
        if (IsShared())
            AddRef();
    }
    // The bytes of a block in an arena, and a copy within it: without counting a reference.
    // REQUIRES: they are never destroyed.
    cMemBuffer(detail::Block* block, std::size_t size) noexcept
        : uiSize(static_cast<std::uint32_t>(size))
    {
        std::memcpy(acStore, &block, sizeof block);
    }
    cMemBuffer(const cMemBuffer& other, Uncounted) noexcept : uiSize(other.uiSize)
    {
        std::memcpy(acStore, other.acStore, kInPlace);
    }
    cMemBuffer(cMemBuffer&& other) noexcept : uiSize(other.uiSize)
    {
        std::memcpy(acStore, other.acStore, kInPlace);
        other.uiSize = 0;
    }
    cMemBuffer& operator=(const cMemBuffer& other) noexcept
    {
        cMemBuffer copy(other);
        Swap(copy);
        return *this;
    }
    cMemBuffer& operator=(cMemBuffer&& other) noexcept
    {
        Swap(other);
        return *this;
    }
    ~cMemBuffer()
    {
        if (IsShared())
            Release();
    }

    // The bytes, valid while this buffer lives and is not assigned to. Never null.
    const char* GetData() const noexcept { return IsShared() ? SharedData() : acStore; }
    std::size_t GetSize() const noexcept { return uiSize; }

    friend bool operator==(const cMemBuffer& a, const cMemBuffer& b) noexcept
    {
        return a.uiSize == b.uiSize && std::memcmp(a.GetData(), b.GetData(), a.uiSize) == 0;
    }

private:
    bool IsShared() const noexcept { return uiSize > kInPlace; }

    void Swap(cMemBuffer& other) noexcept
    {
        alignas(8) char store[kInPlace];
        std::memcpy(store, acStore, kInPlace);
        std::memcpy(acStore, other.acStore, kInPlace);
        std::memcpy(other.acStore, store, kInPlace);
        const std::uint32_t size = uiSize;
        uiSize = other.uiSize;
        other.uiSize = size;
    }
    // As std::memcpy, without a call: the last bytes of a piece may be copied twice.
    void CopyInPlace(const char* data, std::size_t size) noexcept
    {
        if (size >= 16) {
            std::memcpy(acStore, data, 16);
            std::memcpy(acStore + (size - 4), data + (size - 4), 4);
        } else if (size >= 8) {
            std::memcpy(acStore, data, 8);
            std::memcpy(acStore + (size - 8), data + (size - 8), 8);
        } else if (size >= 4) {
            std::memcpy(acStore, data, 4);
            std::memcpy(acStore + (size - 4), data + (size - 4), 4);
        } else {
            for (std::size_t i = 0; i < size; ++i)
                acStore[i] = data[i];
        }
    }
    void MakeShared(const void* data);
    const char* SharedData() const noexcept;
    void AddRef() const noexcept;
    void Release() noexcept;

    alignas(8) char acStore[kInPlace]; // the bytes, or the address of the shared block
    std::uint32_t uiSize = 0;
};

} // namespace vorn

#endif
