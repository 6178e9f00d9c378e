// The fields of message records as lines of JSON have them, looked up in the schema by their
// labels.
#ifndef TOOLS_READING_KEYS_H
#define TOOLS_READING_KEYS_H

#include "quarn/quarn.h"

#include <string_view>

namespace tool
{

// The element of that label in structure, or, where it has none or is null, in any that a record
// can hold; null when there is none. A value goes before what has its label in a time.
const quarn::schema::Element* FindElement(const quarn::schema::Structure* structure,
                                          std::string_view label);

// Records under that label are lists: all their parameters are elements of one kind.
bool IsList(std::string_view label);

} // namespace tool

#endif
