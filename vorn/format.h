// Formatted strings for trace lines.
#ifndef VORN_FORMAT_H
#define VORN_FORMAT_H

#include "vorn/export.h"

#include <string>

namespace vorn
{

// A string formatted with the conventions of C's printf. A format that the C library refuses gives
// an empty string. Throws std::bad_alloc when memory runs out, nothing else. Any thread.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
VORN_API std::string
FormatString(const char* format, ...);

} // namespace vorn

#endif
