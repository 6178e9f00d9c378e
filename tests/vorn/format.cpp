// Formatted strings around the size up to which they are formatted in place.
#include "vorn/format.h"

#include <gtest/gtest.h>

namespace
{

TEST(Format, EveryLengthAroundTheInPlaceLine)
{
    for (const std::size_t size : {0U, 1U, 253U, 254U, 255U, 256U, 257U, 300U, 100000U}) {
        const std::string filling(size, 'x');
        EXPECT_EQ(vorn::FormatString("%s|%02x", filling.c_str(), 10), filling + "|0a") << size;
    }
    EXPECT_EQ(vorn::FormatString("%%, rc=%d", -1), "%, rc=-1");
}

} // namespace
