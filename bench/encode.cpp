// What encoding a list response costs, beside a plain copy of the bytes it yields: the record is
// read, converted into objects, written and wrapped into the result record.
#include "quarn/quarn.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace
{

vorn::cRecord Header()
{
    vorn::cRecord header;
    header.AppendDataPar("transactionId", "0001", 4, 0);
    header.AppendUIntPar("groupNo", 0, 0);
    header.AppendUIntPar("abortOnError", 0, 0);
    return header;
}

// Entries as a household meter sends them.
vorn::cRecord ListResponse(long entries)
{
    vorn::cRecord valList;
    for (long i = 0; i < entries; ++i) {
        vorn::cRecord entry;
        entry.AppendUInt64Par("objName",
                              0x0100010800FFULL + (static_cast<unsigned long long>(i) << 8), 0);
        entry.AppendUInt64Par("status", 0x182, 0);
        entry.AppendUIntPar("unit", 30, 0);
        entry.AppendSIntPar("scaler", -1, 0);
        entry.AppendUInt64Par("value", 147981129ULL + static_cast<unsigned long long>(i), 0);
        valList.AppendRecordPar("valListEntry", entry, 0);
    }
    vorn::cRecord time;
    time.AppendUIntPar("type", 1, 0);
    time.AppendUIntPar("value", 72214509, 0);
    vorn::cRecord body;
    body.AppendDataPar("serverId", "0123456789", 10, 0);
    body.AppendUInt64Par("listName", 0x0100620AFFFFULL, 0);
    body.AppendRecordPar("actSensorTime", time, 0);
    body.AppendRecordPar("valList", valList, 0);
    return body;
}

void EncodeListResponse(benchmark::State& state)
{
    vorn::cRecord header = Header();
    vorn::cRecord body = ListResponse(state.range(0));
    vorn::cRecord result;
    for (auto _ : state) {
        Encode_GetList_Response(body, header, result);
        benchmark::DoNotOptimize(result);
    }
    const int size = result.GetFirstPar("SmlMsgRawData", 0, 0).GetSize();
    state.SetBytesProcessed(state.iterations() * size);
    state.counters["bytes"] = size;
}

void CopyListResponse(benchmark::State& state)
{
    vorn::cRecord header = Header();
    vorn::cRecord body = ListResponse(state.range(0));
    vorn::cRecord result;
    Encode_GetList_Response(body, header, result);
    const vorn::cRecordPar raw = result.GetFirstPar("SmlMsgRawData", 0, 0);
    const auto size = static_cast<std::size_t>(raw.GetSize());
    std::vector<char> copy(size);
    for (auto _ : state) {
        std::memcpy(copy.data(), raw.GetData(), size);
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * raw.GetSize());
}

BENCHMARK(EncodeListResponse)->Arg(6)->Arg(100);
BENCHMARK(CopyListResponse)->Arg(6)->Arg(100);

} // namespace
