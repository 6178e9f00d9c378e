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
    const std::size_t sizes[] = {0, 1, 8, 19, 20, 21, 22, 1000};
    for (const std::size_t mine : sizes) {
        for (const std::size_t others : sizes) {
            SCOPED_TRACE(std::to_string(mine) + " <- " + std::to_string(others));
            const std::string a(mine, 'a');
            const std::string b(others, 'b');
            cMemBuffer buffer(a.data(), a.size());
            const cMemBuffer keep(buffer);
            const cMemBuffer other(b.data(), b.size());
            EXPECT_EQ(buffer == other, a == b);

            buffer = other;
            EXPECT_EQ(Content(buffer), b);
            EXPECT_EQ(Content(keep), a);
            buffer = std::as_const(buffer);
            EXPECT_EQ(Content(buffer), b);

            cMemBuffer moved(std::move(buffer));
            buffer = keep; // a moved-from buffer may be assigned to
            EXPECT_EQ(Content(moved), b);
            moved = std::move(buffer);
            EXPECT_EQ(Content(moved), a);
            EXPECT_TRUE(moved == keep);
        }
    }
}

} // namespace
