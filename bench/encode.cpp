// What encoding a list response costs, beside a plain copy of the bytes it yields: the record is
// read, converted into objects, written and wrapped into the result record.
#include "bench/memcpy.h"
#include "quarn/quarn.h"

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
        if (Encode_GetList_Response(body, header, result) != SML_ENCODE_OK)
            state.SkipWithError("not encoded");
        benchmark::DoNotOptimize(result);
    }
    state.SetBytesProcessed(state.iterations() *
                            result.GetFirstPar("SmlMsgRawData", 0, 0).GetSize());
}
BENCHMARK(EncodeListResponse)->Arg(6)->Arg(100);

void CopyListResponse(benchmark::State& state)
{
    vorn::cRecord header = Header();
    vorn::cRecord body = ListResponse(state.range(0));
    vorn::cRecord result;
    Encode_GetList_Response(body, header, result);
    bench::Memcpy(state,
                  static_cast<std::size_t>(result.GetFirstPar("SmlMsgRawData", 0, 0).GetSize()));
}
BENCHMARK(CopyListResponse)->Arg(6)->Arg(100);

} // namespace
