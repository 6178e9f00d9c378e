// Our work on the content: parsing, encoding, the record classes, copies of a record.
#include "bench/content.h"

#include <benchmark/benchmark.h>

namespace
{

using bench::Content;
using bench::ContentOf;
using bench::Records;

// Unframed bytes to records in the map, CRC checked, raw bytes attached. The input record is the
// transport's to make.
void Parse(benchmark::State& state)
{
    const Content& content = ContentOf(state.range(0));
    vorn::cRecord in = bench::WholeFile(content.strFile);
    cSMLP parser(1);
    for (auto _ : state) {
        Records records;
        int count = 0;
        if (parser.SmlParser(in, records, count) != SMLP_FILE_COMPLETE || count != 3)
            state.SkipWithError("not parsed");
        benchmark::DoNotOptimize(records);
    }
}
BENCHMARK(Parse)->Arg(6)->Arg(100);

void ParseByBytes(benchmark::State& state)
{
    const std::string& file = ContentOf(state.range(0)).strFile;
    std::vector<vorn::cRecord> pieces;
    for (std::size_t i = 0; i < file.size(); ++i)
        pieces.push_back(bench::Piece(i == 0 ? unsigned{BUF_FLAG_FIRST} : 0U, &file[i], 1));
    cSMLP parser(1);
    for (auto _ : state) {
        Records records;
        int count = 0;
        for (vorn::cRecord& piece : pieces)
            parser.SmlParser(piece, records, count);
        if (count != 3)
            state.SkipWithError("not parsed");
    }
}
BENCHMARK(ParseByBytes)->Arg(6)->Arg(100);

void Encode(benchmark::State& state)
{
    Content& content = ContentOf(state.range(0));
    for (auto _ : state) {
        for (bench::Message& message : content.messages) {
            vorn::cRecord result;
            if (message.pEncode(message.body, message.header, result) != SML_ENCODE_OK)
                state.SkipWithError("not encoded");
            benchmark::DoNotOptimize(result);
        }
    }
}
BENCHMARK(Encode)->Arg(6)->Arg(100);

void Classes(benchmark::State& state)
{
    const vorn::cRecord& record = ContentOf(state.range(0)).records[1];
    for (auto _ : state) {
        const cSmlGetListRes list(record);
        vorn::cRecord back;
        if (!list.ToRecord(back))
            state.SkipWithError("not written");
        benchmark::DoNotOptimize(back);
    }
}
BENCHMARK(Classes)->Arg(6)->Arg(100);

void CopyRecord(benchmark::State& state)
{
    const vorn::cRecord& record = ContentOf(state.range(0)).records[1];
    for (auto _ : state) {
        const vorn::cRecord copy = record; // a deep value, whatever it costs
        benchmark::DoNotOptimize(&copy);
    }
}
BENCHMARK(CopyRecord)->Arg(6)->Arg(100);

} // namespace
