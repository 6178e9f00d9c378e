// What an input holds: transport frames, one SML file without framing, or the hex text of either.
#ifndef TOOLS_INPUT_FORMAT_H
#define TOOLS_INPUT_FORMAT_H

#include <string_view>

namespace tool
{

enum eINPUT : int { INPUT_AUTO, INPUT_FRAMED, INPUT_RAW, INPUT_HEX };

// Tells the kind by the first bytes:
//   hex     32 hex digits, white space aside, and nothing else among them
//   raw     an SML open message: a list of six whose body is tagged 0x0100 or 0x0101
//   framed  everything else, such as a recording that begins inside a frame
// INPUT_AUTO: head is too short to tell. With complete, head is the whole input, and the answer is
// always one of the three.
eINPUT DetectInput(std::string_view head, bool complete) noexcept;

// No head longer than this leaves the question open, unless it is white space.
constexpr unsigned kDetectHead = 128;

} // namespace tool

#endif
