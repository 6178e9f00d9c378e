// A nested record of about 60 parameters, shaped like the response of a household meter: building
// it, copying it, and copying it with a change at the innermost level, beside memcpy of the bytes
// that its parameters occupy.
#include "bench/memcpy.h"
#include "quarn/quarn.h"

namespace
{

constexpr unsigned kEntries = 6;
constexpr int kParameters = 2 + 4 + 2 + static_cast<int>(kEntries) * 9; // 62, as Build appends them

vorn::cRecord Entry(unsigned number)
{
    vorn::cRecord time;
    time.AppendUIntPar("choice", 1, 0);
    time.AppendUIntPar("secIndex", 1000 + number, 0);
    vorn::cRecord entry;
    entry.AppendUInt64Par("objName", 0x0100010800FFULL + number, 0);
    entry.AppendUInt64Par("status", 386, 0);
    entry.AppendRecordPar("valTime", time, 0);
    entry.AppendUIntPar("unit", 30, 0);
    entry.AppendSIntPar("scaler", -1, 0);
    entry.AppendSInt64Par("value", 147981129 + number, 0);
    return entry;
}

vorn::cRecord Build()
{
    vorn::cRecord list;
    for (unsigned i = 0; i < kEntries; ++i)
        list.AppendRecordPar("valListEntry", Entry(i), 0);
    vorn::cRecord body;
    body.AppendDataPar("serverId", "\x0A\x01\x45\x4D\x48\x00\x00\x1C\x8D\x5B", 10, 0);
    body.AppendRecordPar("valList", list, 0);
    vorn::cRecord header;
    header.AppendDataPar("transactionId", "0123456789", 10, 0);
    header.AppendUIntPar("groupNo", 0, 0);
    header.AppendUIntPar("abortOnError", 0, 0);
    header.AppendUIntPar("smlMsgIdentifier", 0x701, 0);
    vorn::cRecord message;
    message.AppendRecordPar("SmlMsgHeader", header, 0);
    message.AppendRecordPar("SmlGetListRes", body, 0);
    return message;
}

void RecordBuild(benchmark::State& state)
{
    for (auto _ : state) {
        const vorn::cRecord record = Build();
        benchmark::DoNotOptimize(&record);
    }
    state.SetItemsProcessed(state.iterations() * kParameters);
}
BENCHMARK(RecordBuild);

void RecordDeepCopy(benchmark::State& state)
{
    const vorn::cRecord record = Build();
    for (auto _ : state) {
        const vorn::cRecord copy = record; // a deep value, whatever it costs
        benchmark::DoNotOptimize(&copy);
    }
    state.SetItemsProcessed(state.iterations() * kParameters);
}
BENCHMARK(RecordDeepCopy);

void RecordCopyAndChange(benchmark::State& state)
{
    const vorn::cRecord record = Build();
    vorn::cRecordPath path;
    path.AddLevel("SmlGetListRes", vorn::cRecord());
    path.AddLevel("valList", vorn::cRecord());
    path.AddLevel("valListEntry", vorn::cRecord());
    for (auto _ : state) {
        const vorn::cRecord copy =
            vorn::ChangeRecord(record, path, vorn::cRecord(), "valTime", true);
        benchmark::DoNotOptimize(&copy);
    }
    state.SetItemsProcessed(state.iterations() * kParameters);
}
BENCHMARK(RecordCopyAndChange);

void RecordMemcpy(benchmark::State& state)
{
    bench::Memcpy(state, kParameters * sizeof(vorn::cRecordPar));
}
BENCHMARK(RecordMemcpy);

} // namespace
