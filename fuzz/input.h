// What the fuzz targets share: an input as the fuzzer made it, taken apart from both ends, pieces
// of bytes, and the check of an invariant. A target is a plain LLVMFuzzerTestOneInput that knows
// nothing of the fuzzer that drives it.
#ifndef FUZZ_INPUT_H
#define FUZZ_INPUT_H

#include "quarn/quarn.h"
#include "tests/support/choices.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz
{

// Ends the program, which every fuzzer takes for a finding.
inline void Require(bool holds, const char* invariant, const std::string& details = {})
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n%s\n", invariant, details.c_str());
    std::abort();
}

// Gives bytes to take in pieces, half of them of small bytes at most and half of large, until take
// returns false.
template <typename Take>
void InPieces(std::string_view bytes, test::Choices& cuts, unsigned small, unsigned large,
              Take take)
{
    for (bool more = true; more && !bytes.empty();) {
        const unsigned size = 1 + cuts.Below(cuts.Chance(50) ? small : large);
        const std::string_view piece = bytes.substr(0, size);
        bytes.remove_prefix(piece.size());
        more = take(piece, bytes.empty());
    }
}

class Input
{
public:
    // Damage is meant: the library need not trace it.
    Input(const std::uint8_t* data, std::size_t size)
        : bytes(reinterpret_cast<const char*>(data), size)
    {
        for (vorn::cUnit* unit : {LibSmle, LibSmlp, LibSmlt, LibQuarn})
            unit->iLevel = 0;
    }
    bool IsEmpty() const { return bytes.empty(); }
    std::string Rest() const { return std::string(bytes); }

    // Numbers made of the next bytes in front, or of those at the end; of zeros behind the last.
    test::Choices Front()
    {
        return Numbers([this] {
            const char byte = bytes.front();
            bytes.remove_prefix(1);
            return byte;
        });
    }
    test::Choices Back()
    {
        return Numbers([this] {
            const char byte = bytes.back();
            bytes.remove_suffix(1);
            return byte;
        });
    }
    // Choices without end, of a seed that the last two bytes give.
    test::Choices Seeded() { return {Back().Below(0x10000)}; }

private:
    template <typename Take>
    test::Choices Numbers(Take take)
    {
        return test::Choices([this, take](unsigned count) {
            unsigned long long number = 0;
            for (; count > 0 && !bytes.empty(); --count)
                number = number << 8 | static_cast<unsigned char>(take());
            return number;
        });
    }

    std::string_view bytes;
};

} // namespace fuzz

#endif
