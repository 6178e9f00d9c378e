// What every subject is compared with: memcpy of the same number of bytes, in the same run.
#ifndef BENCH_MEMCPY_H
#define BENCH_MEMCPY_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace bench
{

inline void Memcpy(benchmark::State& state, std::size_t size)
{
    const std::string from(size, '\x5A');
    std::string to(size, '\0');
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), size);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

} // namespace bench

#endif
