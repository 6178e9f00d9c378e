// quarn decode --explain: what the command line asks for, done.
#ifndef TOOLS_EXPLAIN_EXPLAIN_H
#define TOOLS_EXPLAIN_EXPLAIN_H

#include "tools/input/format.h"
#include "tools/input/source.h"

#include <string>

namespace tool
{

// Explains the inputs, as text on standard output or, unless page is empty, as an HTML page in the
// file of that name ("-": on standard output). The file is written whole, or stays as it was when
// an input cannot be read to its end. Returns the exit status.
int Explain(const InputOptions& inputs, eINPUT kind, const std::string& page);

} // namespace tool

#endif
