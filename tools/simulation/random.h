// Random numbers that are the same on every machine: the engine is the standard's, and what it
// yields is cut to size here, since the standard's distributions differ between libraries.
#ifndef TOOLS_SIMULATION_RANDOM_H
#define TOOLS_SIMULATION_RANDOM_H

#include <cstdint>
#include <random>

namespace tool
{

class cRandom
{
public:
    explicit cRandom(std::uint64_t seed) : engine(seed) {}

    // From 0 to below limit. REQUIRES: limit > 0.
    template <typename T>
    T Below(T limit)
    {
        return static_cast<T>(engine() % static_cast<std::uint64_t>(limit));
    }
    // From -most to most.
    std::int64_t Around(std::int64_t most)
    {
        return static_cast<std::int64_t>(Below(2 * static_cast<std::uint64_t>(most) + 1)) - most;
    }
    bool Chance(double probability)
    {
        constexpr double kUnit = 1.0 / 9007199254740992.0; // 2^-53
        return static_cast<double>(engine() >> 11U) * kUnit < probability;
    }

private:
    std::mt19937_64 engine;
};

} // namespace tool

#endif
