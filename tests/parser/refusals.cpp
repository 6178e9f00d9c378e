// Every code with which a message is refused, from real message bytes, with its trace, as the first
// and as a later message of its file; and the status that it gives the host.
#include "tests/support/refusals.h"
#include "tests/parser/in_pieces.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <map>

namespace
{

const std::map<std::string, int> kStatus = {
    {"FE00", SML_STATUS_FE00}, {"FE01", SML_STATUS_FE01}, {"FE10", SML_STATUS_FE10}};

void ExpectRefusal(const test::Row& row, bool first)
{
    const std::string bytes = test::Refused(row);
    test::Parser parser;
    if (!first)
        parser.Feed(BUF_FLAG_FIRST, test::OpenRes());
    const test::TraceCapture trace(LibSmlp, 4);
    const std::size_t last = bytes.size() - 1;
    EXPECT_EQ(parser.Feed(first ? unsigned{BUF_FLAG_FIRST} : 0U, bytes.substr(0, last)), SMLP_OK);
    EXPECT_EQ(parser.Feed(0, bytes.substr(last)), SMLP_DECODING_ERROR);
    const std::string level = row[3][0] == '[' ? "" : "[2]: ";
    const std::string told = row[3].empty() ? "" : "LibSmlp" + level + row[3] + ", smlp[7]\n";
    const std::string code = "LibSmlp[2]: Decoding-Error: rc=" + row[2] + ", smlp[7]\n";
    const std::string text = trace.Text();
    EXPECT_TRUE(text.find(code) < text.size() && text.find(told) < text.size()) << text;
    EXPECT_TRUE(!told.empty() || text.find(code) == 0) << text;

    const int key = first ? 0 : 1;
    if (first && row[4].empty()) { // such a file is ignored
        EXPECT_EQ(parser.count, 0);
        return;
    }
    ASSERT_EQ(parser.count, key + 1);
    const vorn::cRecord& record = parser.records[key];
    EXPECT_EQ(test::Nested(record, "SmlMsgHeader").GetParCount("openSid", 0, 0), 1);
    const vorn::cRecordPar error = record.GetFirstParByPath("SmlStatus.Error", ".", 0, 0);
    if (error.IsValid()) { // a message without a tag has no status
        EXPECT_EQ(error.GetSInt(), kStatus.at(row[4].empty() ? "FE01" : row[4]));
    }
}

TEST(ParserRefusals, EveryCodeWithItsTraceAndStatus)
{
    for (const test::Row& row : test::Refusals()) {
        for (const bool first : {true, false}) {
            SCOPED_TRACE(row[0] + (first ? ", first message" : ", later message"));
            ExpectRefusal(row, first);
        }
        const test::TraceCapture quiet;
        test::Parser whole;
        const std::string file = test::OpenRes() + test::Refused(row);
        whole.FeedFile(file, {});
        test::ExpectSameInPieces(file, test::OpenRes().size(), file.size(), whole);
    }
}

} // namespace
