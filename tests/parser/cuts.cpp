// Cutting the input changes nothing: files of real meters, whole and in pieces.
#include "tests/parser/in_pieces.h"
#include "tests/support/captures.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using test::Parser;

namespace
{

// The payloads of a capture's finished frames.
std::vector<std::string> Payloads(const std::string& bytes)
{
    std::vector<std::string> payloads;
    cSMLTdec decoder(SMLT_MODE_TP);
    for (std::size_t from = 0; from < bytes.size();) {
        vorn::cMsg msg = test::Carrier(0, std::string_view(bytes).substr(from));
        vorn::cRecord ifRec;
        vorn::cRecord out;
        if (decoder.Decode(msg, ifRec, out) == SMLT_DECODE_MORE)
            break;
        payloads.push_back(test::BytesAt(out, "SmlRawData"));
        from = bytes.size() - static_cast<std::size_t>(decoder.GetRemaining());
    }
    return payloads;
}

TEST(ParserCuts, CapturedFilesInAnyPieces)
{
    const auto captures = test::Captures();
    if (captures.empty())
        GTEST_SKIP() << "no captures in " << test::CapturesDir();
    const test::TraceCapture quiet;
    for (const auto& path : captures) {
        for (const std::string& payload : Payloads(test::ReadFile(path))) {
            SCOPED_TRACE(path);
            Parser whole;
            whole.FeedFile(payload, {});
            test::ExpectSameInPieces(payload, 0, payload.size(), whole, 0);
        }
    }
}

} // namespace
