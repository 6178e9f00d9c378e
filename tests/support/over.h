// A cBuffer over the bytes of a string.
#ifndef TESTS_SUPPORT_OVER_H
#define TESTS_SUPPORT_OVER_H

#include "quarn/quarn.h"

#include <string>
#include <string_view>

namespace test
{

// As large as storage, of which the first filled bytes count as written.
struct Over : cBuffer {
    Over(std::string& storage, std::size_t filled, int flags)
        : cBuffer(storage.data(), static_cast<long>(storage.size()), flags, 0)
    {
        Commit(static_cast<long>(filled));
    }
    std::string_view Content() const { return {ReadPtr(), static_cast<std::size_t>(Left())}; }
};

} // namespace test

#endif
