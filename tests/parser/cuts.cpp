// Cutting the input changes nothing: files of real meters, whole and cut at every byte.
#include "tests/support/captures.h"
#include "tests/support/parse.h"
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
    std::string payload;
    for (std::size_t from = 0; from < bytes.size();) {
        vorn::cRecord ifRec;
        ifRec.AppendDataPar("RawData", bytes.data() + from, static_cast<int>(bytes.size() - from),
                            0);
        vorn::cRecord content;
        content.AppendRecordPar("IfRec", ifRec, 0);
        vorn::cMsg msg(content);
        vorn::cRecord out;
        const int result = decoder.Decode(msg, ifRec, out);
        const auto remaining = static_cast<std::size_t>(decoder.GetRemaining());
        if (result != 0 && result != 2)
            break;
        const vorn::cRecordPar data = out.GetFirstPar("SmlRawData", 0, 0);
        payloads.emplace_back(data.GetData(), static_cast<std::size_t>(data.GetSize()));
        from = bytes.size() - remaining;
    }
    return payloads;
}

TEST(ParserCuts, EveryCutOfEveryCapturedFileGivesTheSameRecords)
{
    const auto captures = test::Captures();
    if (captures.empty())
        GTEST_SKIP() << "no captures in " << test::CapturesDir();
    const test::TraceCapture quiet;
    for (const auto& path : captures) {
        for (const std::string& payload : Payloads(test::ReadFile(path))) {
            Parser whole;
            whole.FeedFile(payload, {});
            for (std::size_t cut = 0; cut <= payload.size(); ++cut) {
                Parser parts;
                parts.FeedFile(payload, {cut});
                ASSERT_EQ(parts.records, whole.records) << path << " cut at " << cut;
                if (whole.results[0] == SMLP_FILE_COMPLETE && cut < payload.size()) {
                    ASSERT_EQ(parts.results, (std::vector<int>{0, whole.results[0]})) << cut;
                }
            }
        }
    }
}

} // namespace
