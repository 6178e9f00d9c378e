// Cutting the input changes nothing: files of real meters, whole and in pieces.
#include "tests/parser/in_pieces.h"
#include "tests/support/captures.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using test::Parser;

namespace
{

TEST(ParserCuts, CapturedFilesInAnyPieces)
{
    const auto captures = test::Captures();
    if (captures.empty())
        GTEST_SKIP() << "no captures in " << test::CapturesDir();
    const test::TraceCapture quiet;
    for (const auto& path : captures) {
        for (const std::string& payload : test::Payloads(test::ReadFile(path))) {
            SCOPED_TRACE(path);
            Parser whole;
            whole.FeedFile(payload, {});
            test::ExpectSameInPieces(payload, 0, payload.size(), whole, 0);
        }
    }
}

} // namespace
