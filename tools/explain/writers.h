// The two ways to write an explanation down.
#ifndef TOOLS_EXPLAIN_WRITERS_H
#define TOOLS_EXPLAIN_WRITERS_H

#include "tools/explain/annotation.h"
#include "tools/output/output.h"

#include <memory>
#include <string>

namespace tool
{

// Lines of offset, hex and description, as the sections come. colours: with ANSI escapes.
std::unique_ptr<cExplanationWriter> MakeTextWriter(cOutput& output, bool colours);

// One HTML page, complete in itself, which is kept in memory and given to output by Finish. It
// takes kMaxPageInput bytes of input.
constexpr std::uint64_t kMaxPageInput = std::uint64_t{256} * 1024;
std::unique_ptr<cExplanationWriter> MakePageWriter(cOutput& output);

} // namespace tool

#endif
