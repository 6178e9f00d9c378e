// The parser over a file of a meter with six entries, from open to close: in one piece and byte by
// byte; a deep copy of its list record; and memcpy of the file's bytes.
#include "bench/memcpy.h"
#include "quarn/quarn.h"
#include "tests/support/message.h"

#include <map>

namespace
{

std::string SixEntryFile()
{
    const char* const list =
        "77 01 0B 0A 01 58 59 5A 00 00 00 00 07 07 01 00 62 0A FF FF 72 62 01 65 00 01 E2 40 76"
        "77 07 81 81 C7 82 03 FF 01 01 01 01 04 58 59 5A 01"
        "77 07 01 00 00 00 09 FF 01 01 01 01 0B 0A 01 58 59 5A 00 00 00 00 07 01"
        "77 07 01 00 01 08 00 FF 65 00 01 01 80 01 62 1E 52 FF 69 00 00 00 00 08 D1 F4 29 01"
        "77 07 01 00 02 08 00 FF 01 01 62 1E 52 FF 69 00 00 00 00 00 00 10 92 01"
        "77 07 01 00 10 07 00 FF 01 01 62 1B 52 00 55 00 00 01 2C 01"
        "77 07 81 81 C7 82 05 FF 01 01 01 01 83 02"
        "00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF 00 11 22 33 44 55 66 77"
        "88 99 AA BB CC DD EE FF 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF 01"
        "01 01";
    return test::OpenRes() + test::Message("0701", list) + test::CloseRes();
}

vorn::cRecord Piece(int flags, const char* bytes, std::size_t size)
{
    vorn::cRecord piece;
    piece.AppendUIntPar("SmltFlags", static_cast<unsigned>(flags), 0);
    piece.AppendDataPar("SmlRawData", bytes, static_cast<int>(size), 0);
    return piece;
}

void ParseFile(benchmark::State& state)
{
    const std::string file = SixEntryFile();
    cSMLP parser(1);
    for (auto _ : state) {
        vorn::cRecord in = Piece(BUF_FLAG_FIRST | BUF_FLAG_LAST, file.data(), file.size());
        std::map<int, vorn::cRecord> records;
        int count = 0;
        if (parser.SmlParser(in, records, count) != SMLP_FILE_COMPLETE || count != 3)
            state.SkipWithError("not parsed");
        benchmark::DoNotOptimize(records);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}
BENCHMARK(ParseFile);

void ParseFileByBytes(benchmark::State& state)
{
    const std::string file = SixEntryFile();
    cSMLP parser(1);
    for (auto _ : state) {
        std::map<int, vorn::cRecord> records;
        int count = 0;
        for (std::size_t i = 0; i < file.size(); ++i) {
            vorn::cRecord in = Piece(i == 0 ? int{BUF_FLAG_FIRST} : 0, &file[i], 1);
            parser.SmlParser(in, records, count);
        }
        if (count != 3)
            state.SkipWithError("not parsed");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}
BENCHMARK(ParseFileByBytes);

void CopyListRecord(benchmark::State& state)
{
    const std::string file = SixEntryFile();
    cSMLP parser(1);
    vorn::cRecord in = Piece(BUF_FLAG_FIRST | BUF_FLAG_LAST, file.data(), file.size());
    std::map<int, vorn::cRecord> records;
    int count = 0;
    parser.SmlParser(in, records, count);
    for (auto _ : state) {
        vorn::cRecord copy = records[1];
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(CopyListRecord);

void ParseMemcpy(benchmark::State& state) { bench::Memcpy(state, SixEntryFile().size()); }
BENCHMARK(ParseMemcpy);

} // namespace
