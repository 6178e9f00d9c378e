// CRC-16 over 64 KiB: byte by byte, in one run, and memcpy of the same bytes.
#include "bench/memcpy.h"
#include "quarn/quarn.h"

namespace
{

constexpr std::size_t kSize = std::size_t{64} * 1024;

std::string Sample()
{
    std::string bytes(kSize, '\0');
    for (std::size_t i = 0; i < kSize; ++i)
        bytes[i] = static_cast<char>(i * 167 + i / 256);
    return bytes;
}

void CrcByBytes(benchmark::State& state)
{
    const std::string bytes = Sample();
    for (auto _ : state) {
        unsigned short crc = vorn::initCRC16();
        for (const char c : bytes)
            crc = vorn::addByte2CRC16(static_cast<unsigned char>(c), crc);
        benchmark::DoNotOptimize(crc);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kSize));
}
BENCHMARK(CrcByBytes);

void CrcInOneRun(benchmark::State& state)
{
    const std::string bytes = Sample();
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            vorn::createCRC16(bytes.data(), static_cast<int>(kSize), vorn::initCRC16()));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kSize));
}
BENCHMARK(CrcInOneRun);

void CrcMemcpy(benchmark::State& state) { bench::Memcpy(state, kSize); }
BENCHMARK(CrcMemcpy);

} // namespace
