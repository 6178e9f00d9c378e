// Memory that runs out at each allocation of a step in turn. Like failing_new.h, it is included by
// one source file of a program.
#ifndef TESTS_SUPPORT_FAIL_IN_TURN_H
#define TESTS_SUPPORT_FAIL_IN_TURN_H

#include "tests/support/failing_new.h"

#include <gtest/gtest.h>

#include <utility>

namespace test
{

// Allocations within a step that must not fail.
class Sparing
{
public:
    Sparing() : lLeft(std::exchange(lAllocationsLeft, kAll)) {}
    ~Sparing() { lAllocationsLeft = lLeft; }
    Sparing(const Sparing&) = delete;
    Sparing& operator=(const Sparing&) = delete;

private:
    long lLeft;
};

// Runs step with the first, the second, ... allocation failing, once alone and once with all that
// follow, until none does any more, and returns how many could. step says whether it was done
// without a lack of memory; what it allocates it has to free.
template <typename Step>
int FailInTurn(Step step)
{
    for (int n = 0;; ++n) {
        bool failed = false;
        bool done = true;
        for (const long failures : {1L, kAll}) {
            const long before = lBlocksInUse;
            {
                const FailingNew failing(n, failures);
                done = step() && done;
                failed = lFailuresLeft != failures;
            }
            EXPECT_EQ(lBlocksInUse, before) << "leaked when allocation " << n << " failed";
        }
        if (!failed || ::testing::Test::HasFailure()) {
            EXPECT_TRUE(done);
            return n;
        }
    }
}

} // namespace test

#endif
