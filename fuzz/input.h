// What the fuzz targets share: an input as the fuzzer made it, taken apart from both ends, and the
// check of an invariant. A target is a plain LLVMFuzzerTestOneInput that knows nothing of the
// fuzzer that drives it.
#ifndef FUZZ_INPUT_H
#define FUZZ_INPUT_H

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

class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes(reinterpret_cast<const char*>(data), size)
    {
    }
    bool IsEmpty() const { return bytes.empty(); }
    std::string Rest() const { return std::string(bytes); }

    // Numbers made of the next bytes in front, or of those at the end; of zeros behind the last.
    test::Choices Front()
    {
        return test::Choices([this](unsigned count) {
            unsigned long long number = 0;
            for (; count > 0 && !bytes.empty(); --count) {
                number = number << 8 | static_cast<unsigned char>(bytes.front());
                bytes.remove_prefix(1);
            }
            return number;
        });
    }
    test::Choices Back()
    {
        return test::Choices([this](unsigned count) {
            unsigned long long number = 0;
            for (; count > 0 && !bytes.empty(); --count) {
                number = number << 8 | static_cast<unsigned char>(bytes.back());
                bytes.remove_suffix(1);
            }
            return number;
        });
    }
    // Choices without end, of a seed that the last two bytes give.
    test::Choices Seeded() { return {Back().Below(0x10000)}; }

private:
    std::string_view bytes;
};

} // namespace fuzz

#endif
