// What the parser makes of a file must not depend on how the file is cut into pieces.
#ifndef TESTS_PARSER_IN_PIECES_H
#define TESTS_PARSER_IN_PIECES_H

#include "tests/support/parse.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace test
{

inline void ExpectSameWhenCut(const std::string& file, const std::vector<std::size_t>& cuts,
                              const Parser& whole)
{
    Parser parts;
    parts.FeedFile(file, cuts);
    const auto result = std::find_if(parts.results.begin(), parts.results.end(),
                                     [](int r) { return r != SMLP_OK; });
    ASSERT_TRUE(parts.records == whole.records &&
                (result != parts.results.end() ? *result : SMLP_OK) == whole.results[0])
        << cuts.size() << " cuts, from " << cuts.front() << " to " << cuts.back() << ":\n"
        << parts.Text() << "instead of\n"
        << whole.Text();
}

// Byte by byte from one position to another, and in three pieces of which the middle one begins
// there and, of 0 bytes to middle, fits into a field.
inline void ExpectSameInPieces(const std::string& file, std::size_t from, std::size_t to,
                               const Parser& whole, std::size_t middle = 12)
{
    std::vector<std::size_t> bytewise(to - from);
    std::iota(bytewise.begin(), bytewise.end(), from);
    ExpectSameWhenCut(file, bytewise, whole);
    for (std::size_t i = from; i < to; ++i) {
        for (std::size_t j = i; j < std::min(i + middle + 1, to); ++j)
            ASSERT_NO_FATAL_FAILURE(ExpectSameWhenCut(file, {i, j}, whole));
    }
}

} // namespace test

#endif
