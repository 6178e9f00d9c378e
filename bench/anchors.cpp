// What our work is compared with, on the same content: memcpy of the wire bytes, a CRC pass over
// them, and two codecs of self-describing data that build a tree of values as we do.
#include "bench/content.h"

#include <benchmark/benchmark.h>
#include <msgpack.hpp>
#include <nlohmann/json.hpp>

#include <array>
#include <atomic>
#include <cstring>

namespace
{

using bench::Content;
using bench::ContentOf;

void Memcpy(benchmark::State& state)
{
    const std::string& file = ContentOf(state.range(0)).strFile;
    std::string copy(file.size(), '\0');
    for (auto _ : state) {
        std::memcpy(copy.data(), file.data(), file.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Memcpy)->Arg(6)->Arg(100);

void CrcPass(benchmark::State& state)
{
    const std::string& file = ContentOf(state.range(0)).strFile;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            vorn::createCRC16(file.data(), static_cast<int>(file.size()), vorn::initCRC16()));
}
BENCHMARK(CrcPass)->Arg(6)->Arg(100);

void FromCbor(benchmark::State& state)
{
    const Content& content = ContentOf(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::ordered_json::from_cbor(content.cbor));
}
BENCHMARK(FromCbor)->Arg(6)->Arg(100);

void ToCbor(benchmark::State& state)
{
    const auto json = nlohmann::ordered_json::from_cbor(ContentOf(state.range(0)).cbor);
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::ordered_json::to_cbor(json));
}
BENCHMARK(ToCbor)->Arg(6)->Arg(100);

void MsgpackUnpack(benchmark::State& state)
{
    const std::string& packed = ContentOf(state.range(0)).strMsgpack;
    for (auto _ : state) {
        const msgpack::object_handle handle = msgpack::unpack(packed.data(), packed.size());
        benchmark::DoNotOptimize(handle.get());
    }
}
BENCHMARK(MsgpackUnpack)->Arg(6)->Arg(100);

void MsgpackPack(benchmark::State& state)
{
    const std::string& packed = ContentOf(state.range(0)).strMsgpack;
    const msgpack::object_handle handle = msgpack::unpack(packed.data(), packed.size());
    for (auto _ : state) {
        msgpack::sbuffer buffer;
        msgpack::pack(buffer, handle.get());
        benchmark::DoNotOptimize(buffer.data());
    }
}
BENCHMARK(MsgpackPack)->Arg(6)->Arg(100);

// A CRC of one table of 256 words, a byte at a time.
void CrcByBytes(benchmark::State& state)
{
    std::array<std::uint16_t, 256> table{};
    for (unsigned b = 0; b < 256; ++b)
        table[b] = vorn::addByte2CRC16(static_cast<unsigned char>(b), 0);
    const std::string bytes(static_cast<std::size_t>(state.range(0)), '\x5A');
    for (auto _ : state) {
        unsigned crc = 0xFFFF;
        for (const char c : bytes)
            crc = (crc >> 8) ^ table[(crc ^ static_cast<unsigned char>(c)) & 0xFFU];
        benchmark::DoNotOptimize(crc);
    }
}
BENCHMARK(CrcByBytes)->Arg(4096);

void Crc(benchmark::State& state)
{
    const std::string bytes(static_cast<std::size_t>(state.range(0)), '\x5A');
    for (auto _ : state)
        benchmark::DoNotOptimize(
            vorn::createCRC16(bytes.data(), static_cast<int>(bytes.size()), vorn::initCRC16()));
}
BENCHMARK(Crc)->Arg(4096);

void AtomicUpDown(benchmark::State& state)
{
    std::atomic<unsigned> count{1};
    for (auto _ : state) {
        count.fetch_add(1, std::memory_order_relaxed);
        benchmark::DoNotOptimize(count);
        benchmark::DoNotOptimize(count.fetch_sub(1, std::memory_order_acq_rel));
    }
}
BENCHMARK(AtomicUpDown);

} // namespace
