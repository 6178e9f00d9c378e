// Whether time grows as the input does: with the entries of a list, with the messages of a file,
// and with the size of a message that is delivered in packets.
#include "bench/content.h"
#include "tests/support/message.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace
{

using bench::Records;

std::string ListTl(std::int64_t count)
{
    std::string tl;
    for (int shift = 20; shift >= 0; shift -= 4) {
        const std::int64_t nibble = count >> shift & quarn::kTlLengthMask;
        if (tl.empty() && count >> shift == 0)
            continue;
        tl += static_cast<char>((tl.empty() ? quarn::kTlList : quarn::kTlOctetString) |
                                (shift != 0 ? quarn::kTlMore : 0) | nibble);
    }
    return tl;
}

// A list response of that many entries of 24 bytes.
std::string ListMessage(std::int64_t entries)
{
    const std::string entry =
        test::Hex("77 07 01 00 02 08 00 FF 01 01 62 1E 52 FF 69 00 00 00 00 00 00 10 92 01");
    std::string message =
        test::Head("0701") + test::Hex("77 01 04 AA BB CC 01 01") + ListTl(entries);
    for (std::int64_t i = 0; i < entries; ++i)
        message += entry;
    return test::Finish(message + test::Hex("01 01"));
}

void ParseOrSkip(benchmark::State& state, const std::string& file, int messages)
{
    vorn::cRecord in = bench::WholeFile(file);
    cSMLP parser(1);
    for (auto _ : state) {
        Records records;
        int count = 0;
        const int result = parser.SmlParser(in, records, count);
        if (result != SMLP_FILE_COMPLETE || (messages != 0 && count != messages))
            state.SkipWithError("not parsed");
    }
}

void ParseEntries(benchmark::State& state)
{
    const std::string file = test::OpenRes() + ListMessage(state.range(0)) + test::CloseRes();
    ParseOrSkip(state, file, 0);
}
BENCHMARK(ParseEntries)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void ParsePackets(benchmark::State& state)
{
    const std::string message = ListMessage(state.range(0) * 1000000 / 24);
    ParseOrSkip(state, test::OpenRes() + message + test::CloseRes(), 0);
}
BENCHMARK(ParsePackets)->Arg(1)->Arg(10);

std::string FileOf(std::int64_t messages)
{
    std::string file = test::OpenRes();
    for (std::int64_t i = 0; i < messages; ++i)
        file += ListMessage(6);
    return file + test::CloseRes();
}

// In pieces as a channel delivers them, each one's records gone before the next.
void ParseMessages(benchmark::State& state)
{
    constexpr std::size_t size = 4096;
    const std::string file = FileOf(state.range(0));
    std::vector<vorn::cRecord> pieces;
    for (std::size_t i = 0; i < file.size(); i += size)
        pieces.push_back(bench::Piece(i == 0 ? unsigned{BUF_FLAG_FIRST} : 0U, &file[i],
                                      std::min(size, file.size() - i)));
    cSMLP parser(1);
    for (auto _ : state) {
        int count = 0;
        for (vorn::cRecord& piece : pieces) {
            Records records;
            parser.SmlParser(piece, records, count);
        }
        if (count != static_cast<int>(state.range(0)) + 2)
            state.SkipWithError("not parsed");
    }
}
BENCHMARK(ParseMessages)->Arg(1000)->Arg(10000);

// In one piece, all records kept: what this adds is the price of fresh memory.
void KeepMessages(benchmark::State& state)
{
    ParseOrSkip(state, FileOf(state.range(0)), static_cast<int>(state.range(0)) + 2);
}
BENCHMARK(KeepMessages)->Arg(1000)->Arg(10000);

} // namespace
