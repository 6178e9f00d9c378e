// The decisions of a generated test: at random from a seed, or as a source gives them (the bytes of
// a fuzzer's input). What is generated from them need not know which.
#ifndef TESTS_SUPPORT_CHOICES_H
#define TESTS_SUPPORT_CHOICES_H

#include <functional>
#include <random>
#include <utility>

namespace test
{

class Choices
{
public:
    // A number of at least so many random bytes. It must give zeros when it has nothing left.
    using Source = std::function<unsigned long long(unsigned bytes)>;

    Choices(unsigned seed) // NOLINT(google-explicit-constructor): a seed stands for its choices
        : source([random = std::mt19937_64(seed)](unsigned) mutable { return random(); })
    {
    }
    explicit Choices(Source s) : source(std::move(s)) {}

    unsigned long long Number() { return source(8); }
    unsigned Below(unsigned n)
    {
        const unsigned bytes = n <= 0x100 ? 1 : n <= 0x10000 ? 2 : 4;
        return static_cast<unsigned>(source(bytes) % n);
    }
    int Pick(int from, int to) { return from + static_cast<int>(Below(unsigned(to - from) + 1)); }
    bool Chance(int percent) { return Pick(0, 99) >= 100 - percent; }

private:
    Source source;
};

} // namespace test

#endif
