// Replaces the global operator new of a test program, so that allocations can be made to fail:
// while a FailingNew lives, the first count allocations succeed and as many as failures after them
// fail. Counts the blocks in use, so that a leak is seen without a sanitizer, and their bytes. To
// be included by one source file of a program.
#ifndef TESTS_SUPPORT_FAILING_NEW_H
#define TESTS_SUPPORT_FAILING_NEW_H

#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <new>

namespace test
{

inline constexpr long kAll = std::numeric_limits<long>::max();
inline thread_local long lAllocationsLeft = kAll;
inline thread_local long lFailuresLeft = 0;
inline thread_local long lBlocksInUse = 0; // of a program that frees in the thread that allocates
inline thread_local long lBytesInUse = 0;

struct FailingNew {
    explicit FailingNew(long count, long failures = kAll)
    {
        lAllocationsLeft = count;
        lFailuresLeft = failures;
    }
    ~FailingNew() { lAllocationsLeft = kAll; }
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
};

} // namespace test

// Not inlined: compilers compare what they see of new with what they see of delete.
#define TESTS_NOINLINE __attribute__((noinline))

TESTS_NOINLINE void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    if (test::lAllocationsLeft > 0) {
        --test::lAllocationsLeft;
    } else if (test::lFailuresLeft > 0) {
        --test::lFailuresLeft;
        return nullptr;
    }
    void* const p = std::malloc(size != 0 ? size : 1);
    if (p != nullptr) {
        ++test::lBlocksInUse;
        test::lBytesInUse += static_cast<long>(malloc_usable_size(p));
    }
    return p;
}
TESTS_NOINLINE void* operator new(std::size_t size)
{
    if (void* const p = ::operator new(size, std::nothrow))
        return p;
    throw std::bad_alloc();
}
TESTS_NOINLINE void* operator new[](std::size_t size) { return ::operator new(size); }
TESTS_NOINLINE void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept
{
    return ::operator new(size, nothrow);
}
TESTS_NOINLINE void operator delete(void* p) noexcept
{
    if (p != nullptr) {
        --test::lBlocksInUse;
        test::lBytesInUse -= static_cast<long>(malloc_usable_size(p));
    }
    std::free(p);
}
TESTS_NOINLINE void operator delete[](void* p) noexcept { ::operator delete(p); }
TESTS_NOINLINE void operator delete(void* p, std::size_t) noexcept { ::operator delete(p); }
TESTS_NOINLINE void operator delete[](void* p, std::size_t) noexcept { ::operator delete(p); }

#endif
