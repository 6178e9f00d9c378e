// What a mistyped word was probably meant to be.
#ifndef TOOLS_SPELLING_H
#define TOOLS_SPELLING_H

#include <string>
#include <string_view>
#include <vector>

namespace tool
{

// The name that was probably meant; empty when none is like word.
std::string Nearest(std::string_view word, const std::vector<std::string>& names);

} // namespace tool

#endif
