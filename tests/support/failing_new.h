// Replaces the global operator new of a test program, so that allocations can be made to fail:
// while a FailingNew lives, the first count allocations succeed and all others throw. To be
// included by one source file of a program.
#ifndef TESTS_SUPPORT_FAILING_NEW_H
#define TESTS_SUPPORT_FAILING_NEW_H

#include <cstdlib>
#include <limits>
#include <new>

namespace test
{

inline thread_local long lAllocationsLeft = std::numeric_limits<long>::max();

struct FailingNew {
    explicit FailingNew(long count) { lAllocationsLeft = count; }
    ~FailingNew() { lAllocationsLeft = std::numeric_limits<long>::max(); }
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
};

} // namespace test

// Not inlined: compilers compare what they see of new with what they see of delete.
#define TESTS_NOINLINE __attribute__((noinline))

TESTS_NOINLINE void* operator new(std::size_t size)
{
    void* const p = test::lAllocationsLeft > 0 ? std::malloc(size != 0 ? size : 1) : nullptr;
    if (p == nullptr)
        throw std::bad_alloc();
    --test::lAllocationsLeft;
    return p;
}
TESTS_NOINLINE void* operator new[](std::size_t size) { return ::operator new(size); }
TESTS_NOINLINE void operator delete(void* p) noexcept { std::free(p); }
TESTS_NOINLINE void operator delete[](void* p) noexcept { std::free(p); }
TESTS_NOINLINE void operator delete(void* p, std::size_t) noexcept { std::free(p); }
TESTS_NOINLINE void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

#endif
