// Where in the input the bytes of a payload stand. The receive road tells where a frame begins and
// ends, how much payload it holds and whether its checksum is right; here only the places are
// added: which bytes are escapes, which content, and which padding.
#ifndef TOOLS_EXPLAIN_PAYLOAD_MAP_H
#define TOOLS_EXPLAIN_PAYLOAD_MAP_H

#include "tools/explain/annotation.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool
{

enum class eCHECKSUM { RIGHT, WRONG, NONE }; // of a frame; NONE: it has no end

struct PayloadMap {
    std::uint64_t ullOffset = 0; // of the frame in the input
    std::string_view input;      // its bytes
    std::string payload;
    std::vector<std::uint32_t> positions; // of the payload's bytes in input, in order
    std::vector<Annotation> transport;    // the other bytes of input, in order
};

// Of a frame that begins with its start sequence (or a part of it) and yields size bytes of
// payload. input outlives the map.
PayloadMap MapFrame(std::uint64_t offset, std::string_view input, std::uint64_t size,
                    eCHECKSUM checksum);

// Of SML without framing: all bytes are payload.
PayloadMap MapRaw(std::uint64_t offset, std::string_view input);

} // namespace tool

#endif
