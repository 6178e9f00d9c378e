// What everything is measured on: a get-list response file of a meter, open to close, as host
// records, as wire bytes, as the parser's records, and as those records transcoded (the same
// labels, byte strings as binary, repeated labels as an array, without the raw bytes of the
// messages).
#ifndef BENCH_CONTENT_H
#define BENCH_CONTENT_H

#include "quarn/quarn.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace bench
{

struct Message {
    int (*pEncode)(vorn::cRecord& bodyRec, vorn::cRecord& headerRec, vorn::cRecord& result);
    vorn::cRecord header;
    vorn::cRecord body;
};

using Records = std::map<int, vorn::cRecord>;

struct Content {
    std::vector<Message> messages;
    std::string strFile; // their bytes, joined
    Records records;
    std::vector<std::uint8_t> cbor;
    std::string strMsgpack;
};

// REQUIRES: 6 or 100 entries. Made once, the same for all benchmarks.
Content& ContentOf(std::int64_t entries);

// The input of the parser's call that takes a whole file.
vorn::cRecord WholeFile(const std::string& file);
vorn::cRecord Piece(unsigned flags, const char* bytes, std::size_t size);

// Parses a file that comes in one piece; false when not all of its messages come out.
bool Parse(cSMLP& parser, const std::string& file, Records& records, int messages = 3);

} // namespace bench

#endif
