// What a message's status, or the number of an attention response, tells a person.
#ifndef TOOLS_READING_STATUS_H
#define TOOLS_READING_STATUS_H

#include <cstdint>

namespace tool
{

// The meaning of a value of "SmlStatus"."Error" (eSML_STATUS), as the end of a sentence that begins
// with "frame 1, message 2: ".
const char* StatusMeaning(int error) noexcept;

// The meaning of the number in an attention response, such as 8181C7C7FE00; null when not known.
const char* AttentionMeaning(std::uint64_t number) noexcept;

} // namespace tool

#endif
