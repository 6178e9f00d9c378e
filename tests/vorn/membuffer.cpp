// The byte store of parameters, at every pair of sizes around the one up to which it holds its
// bytes in place.
#include "vorn/membuffer.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace
{

using vorn::cMemBuffer;

std::string Content(const cMemBuffer& buffer) { return {buffer.GetData(), buffer.GetSize()}; }

TEST(MemBuffer, CopiesMovesAndComparesAtEverySize)
{
    for (const std::size_t mine : {0U, 1U, 19U, 20U, 21U, 1000U}) {
        for (const std::size_t others : {0U, 19U, 20U, 21U, 1000U}) {
            SCOPED_TRACE(std::to_string(mine) + " <- " + std::to_string(others));
            const std::string a(mine, 'a');
            const std::string b(others, 'b');
            const cMemBuffer keep(a.data(), a.size());
            const cMemBuffer other(b.data(), b.size());
            EXPECT_EQ(keep == other, a == b);
            cMemBuffer buffer(keep);
            buffer = other;
            buffer = std::as_const(buffer);
            cMemBuffer moved(std::move(buffer));
            EXPECT_EQ(Content(moved), b);
            buffer = keep; // a moved-from buffer may be assigned to
            moved = std::move(buffer);
            EXPECT_EQ(Content(moved), a);
        }
    }
}

} // namespace
