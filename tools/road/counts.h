// What a stream holds, in numbers: counted by whoever reads it, foretold by whoever damages it.
#ifndef TOOLS_ROAD_COUNTS_H
#define TOOLS_ROAD_COUNTS_H

#include "tools/output/output.h"

#include <cstdint>
#include <string_view>

namespace tool
{

struct StreamCounts {
    std::uint64_t ullBytes = 0;
    std::uint64_t ullOutside = 0; // of frames
    std::uint64_t ullGood = 0;    // frames
    std::uint64_t ullDamaged = 0; // frames whose checksum is wrong
    std::uint64_t ullBroken = 0;  // frames that a new one begins inside
    std::uint64_t ullCut = 0;     // frames that the end of an input cuts off
};

// The numbers as they are named in JSON and for people.
constexpr struct {
    const char* pcKey;
    const char* pcText;
    std::uint64_t StreamCounts::*pullCount;
} kStreamCounts[] = {
    {"bytes", "bytes", &StreamCounts::ullBytes},
    {"bytesOutside", "bytes outside frames", &StreamCounts::ullOutside},
    {"framesGood", "frames, good", &StreamCounts::ullGood},
    {"framesDamaged", "frames, damaged", &StreamCounts::ullDamaged},
    {"framesBroken", "frames, broken off", &StreamCounts::ullBroken},
    {"framesCut", "frames, cut off by the end", &StreamCounts::ullCut},
};

// One line: a name and, aligned to the right, its number.
void WriteCount(cOutput& out, std::string_view name, std::uint64_t count);

inline void WriteCounts(cOutput& out, const StreamCounts& counts)
{
    for (const auto& row : kStreamCounts)
        WriteCount(out, row.pcText, counts.*row.pullCount);
}

} // namespace tool

#endif
