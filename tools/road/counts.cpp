// See counts.h.
#include "tools/road/counts.h"

#include <string>

namespace tool
{

void WriteCount(cOutput& out, std::string_view name, std::uint64_t count)
{
    constexpr std::size_t kNameWidth = 48;
    constexpr std::size_t kNumberWidth = 12;
    out.Append(name);
    out.Pad(name.size() < kNameWidth ? kNameWidth - name.size() : 1);
    const std::string digits = std::to_string(count);
    out.Pad(digits.size() < kNumberWidth ? kNumberWidth - digits.size() : 0);
    out.Append(digits);
    out.Put('\n');
}

} // namespace tool
