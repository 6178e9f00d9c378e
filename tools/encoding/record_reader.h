// A line of JSON, as --format records prints it, to a record: the inverse of that format. Keys are
// the labels of records; the kind of a parameter goes by its label, and for "value" by what stands
// there: a number is of 32 bits when it fits (signed when it is negative), else of 64.
#ifndef TOOLS_ENCODING_RECORD_READER_H
#define TOOLS_ENCODING_RECORD_READER_H

#include "quarn/quarn.h"

#include <string>
#include <string_view>

namespace tool
{

// Levels of objects and arrays that are followed; deeper lines are refused.
constexpr unsigned kMaxJsonDepth = 64;

// False when the line is no JSON object or holds what no record does; error then tells why.
bool ReadRecord(std::string_view line, vorn::cRecord& record, std::string& error);

} // namespace tool

#endif
