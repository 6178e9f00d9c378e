// Files: their order, borders, CRCs and time-outs, told by results, records and traces.
#include "tests/support/message.h"
#include "tests/support/parse.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using namespace std::string_literals;
using test::CloseRes;
using test::Hex;
using test::Message;
using test::OpenRes;
using test::Parser;
using test::TraceCapture;

namespace
{

constexpr unsigned kFirst = BUF_FLAG_FIRST;
constexpr unsigned kLast = BUF_FLAG_LAST;

// The CRC of a finished message altered, or its two bytes exchanged.
std::string BadCrc(std::string message)
{
    message[message.size() - 2] = static_cast<char>(message[message.size() - 2] ^ 0x55);
    return message;
}
std::string SwappedCrc(std::string message)
{
    std::swap(message[message.size() - 2], message[message.size() - 3]);
    return message;
}

int ErrorOf(const vorn::cRecord& record)
{
    return test::Nested(record, "SmlStatus").GetFirstPar("Error", 0, 0).GetSInt();
}

TEST(ParserFiles, InputIsRefusedWithoutItsParameters)
{
    Parser parser;
    const TraceCapture trace(LibSmlp);
    vorn::cRecord in;
    EXPECT_EQ(parser.parser.SmlParser(in, parser.records, parser.count), SMLP_BAD_PARAMETER);
    in.AppendDataPar("SmltFlags", "x", 1, 0);
    EXPECT_EQ(parser.parser.SmlParser(in, parser.records, parser.count), SMLP_BAD_PARAMETER);
    in.DeletePar("SmltFlags", 0, 0);
    in.AppendUIntPar("SmltFlags", kFirst, 0);
    EXPECT_EQ(parser.parser.SmlParser(in, parser.records, parser.count), SMLP_BAD_PARAMETER);
    EXPECT_EQ(trace.Text(), "LibSmlp[2]: SMLT-Flags missing, smlp[7]\n"
                            "LibSmlp[2]: SMLT-Flags missing, smlp[7]\n"
                            "LibSmlp[2]: SML-RawData missing, smlp[7]\n");
}

TEST(ParserFiles, OrderAndBorders)
{
    const std::string file = OpenRes() + CloseRes();
    const struct {
        const char* pcName;
        std::vector<std::pair<unsigned, std::string>> pieces;
        std::vector<int> results;
        int iRecords;
        const char* pcTrace;
    } rows[] = {
        {"nothing", {{0, ""}}, {0}, 0, "LibSmlp[8]: IDLE: no data, no Flags set"},
        {"end of nothing", {{kLast, ""}}, {0}, 0, "LibSmlp[8]: IDLE: no data, BUF_FLAG_LAST set"},
        {"flag ahead of the bytes",
         {{kFirst, ""}, {0, file}},
         {0, 1},
         2,
         "LibSmlp[8]: IDLE: no data, BUF_FLAG_FIRST set"},
        {"no first flag",
         {{kLast, file}, {kFirst, file}},
         {-2, 1},
         2,
         "LibSmlp[2]: IDLE: wrong frame-order, flags=0x0002"},
        {"two files in a piece", {{kFirst, file + file}}, {1}, 4, "LibSmlp[8]: FILE Ok, Size="},
        {"second open", {{kFirst, OpenRes() + file}}, {1}, 2, "LibSmlp[2]: Ignore multiple Open!"},
        {"damaged second open",
         {{kFirst, OpenRes() + BadCrc(OpenRes()) + CloseRes()}},
         {1},
         2,
         "LibSmlp[2]: Ignore multiple Open!"},
        {"damaged open",
         {{kFirst, BadCrc(OpenRes()) + CloseRes()}, {kFirst, file}},
         {-3, 1},
         2,
         "LibSmlp[2]: CRC-Error in SML_Open!"},
        {"exchanged CRC", {{kFirst, SwappedCrc(OpenRes()) + CloseRes()}}, {1}, 2, "FILE Ok"},
        {"garbage behind the open message",
         {{kFirst, OpenRes() + Hex("11 11")}, {0, file}, {kFirst, file}},
         {-3, -2, 1},
         4,
         "LibSmlp[2]: BuildMsgRecord:UNKNOWN MsgIdentifier!"},
        {"damaged flag from the transport",
         {{kFirst | kLast | BUF_FLAG_CRC_ERROR, file}},
         {1},
         2,
         "FILE Ok"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pcName);
        Parser parser;
        const TraceCapture trace(LibSmlp, 8);
        for (const auto& [flags, bytes] : row.pieces)
            parser.Feed(flags, bytes);
        EXPECT_EQ(parser.results, row.results);
        EXPECT_EQ(parser.count, row.iRecords);
        EXPECT_NE(trace.Text().find(row.pcTrace), std::string::npos) << trace.Text();
    }
}

TEST(ParserFiles, AnIgnoredOpenMessageChangesNothing)
{
    Parser parser;
    const TraceCapture quiet;
    parser.Feed(kFirst, OpenRes() + Message("0101", "76 01 02 C9 02 F9 02 A9 01 01") + CloseRes());
    const vorn::cRecord header = test::Nested(parser.records[1], "SmlMsgHeader");
    EXPECT_EQ(header.GetFirstPar("openSid", 0, 0).ToString(), "openSid=aabbcc");
    EXPECT_EQ(header.GetFirstPar("openRfid", 0, 0).ToString(), "openRfid=1122");
    EXPECT_EQ(header.GetFirstPar("openCid", 0, 0).ToString(), "openCid=");
}

TEST(ParserFiles, CrcErrorsOfLaterMessages)
{
    const struct {
        std::string strMessage;
        bool bFirst;
        int iError;
    } rows[] = {
        {BadCrc(Message("0700", "75 02 C1 01 01 01 01")), false, SML_STATUS_CRC},
        {BadCrc(Message("0200", "71 01")), false, SML_STATUS_CRC_CLOSE},
        {BadCrc(CloseRes()), false, SML_STATUS_CRC},
        {BadCrc(Message("0700", "75 02 C1 01 01 01 01")), true, SML_STATUS_IGNORE_FILE},
    };
    const TraceCapture quiet;
    for (const auto& row : rows) {
        Parser parser;
        parser.Feed(kFirst, (row.bFirst ? "" : OpenRes()) + row.strMessage);
        ASSERT_EQ(parser.count, row.bFirst ? 1 : 2);
        EXPECT_EQ(ErrorOf(parser.records[parser.count - 1]), row.iError);
    }
}

TEST(ParserFiles, TimeoutDropsAMessageButAcceptsACloseWithoutItsEnd)
{
    const TraceCapture trace(LibSmlp, 16);
    const std::string close = CloseRes();
    Parser parser;
    parser.Feed(kFirst, OpenRes() + close.substr(0, close.size() - 1));
    parser.parser.TimeoutEvent();
    EXPECT_EQ(parser.Feed(0, ""), SMLP_OK);
    ASSERT_EQ(parser.count, 2);
    EXPECT_EQ(ErrorOf(parser.records[1]), SML_STATUS_FE01);
    EXPECT_TRUE(trace.Has("LibSmlp[8]: TimerEvent: InterCharacterTo, Id=7"));
    EXPECT_TRUE(trace.Has("LibSmlp[16]: IC-Timeout: WAIT->IDLE, smlp[7]"));

    Parser cut;
    cut.Feed(kFirst, OpenRes() + close.substr(0, close.size() - 2));
    cut.parser.TimeoutEvent();
    cut.Feed(0, "");
    EXPECT_EQ(cut.count, 1);
    cut.Feed(kLast, ""); // the file is given up
    EXPECT_EQ(cut.Feed(0, close), SMLP_WRONG_ORDER);

    Parser late;
    late.Feed(kFirst, OpenRes() + close.substr(0, 5));
    late.parser.TimeoutEvent();
    EXPECT_EQ(late.Feed(kLast, close.substr(5)), SMLP_FILE_COMPLETE);
}

TEST(ParserFiles, NoRecordCarriesFieldsOfAnEarlierMessage)
{
    const TraceCapture quiet;
    Parser parser;
    parser.Feed(kFirst, OpenRes() + Message("0701", "77 01 02 AA 01 01 70 01 01") +
                            test::Head("0701") + Hex("78"));
    ASSERT_EQ(parser.count, 3);
    EXPECT_EQ(test::Nested(parser.records[2], "SmlGetListRes").ToString(), "{}");
    EXPECT_EQ(ErrorOf(parser.records[2]), SML_STATUS_FE01);
    // An unknown tag in the first message: taken for an open request, the tag told as it came.
    Parser first;
    first.Feed(kFirst, test::Head("0800"));
    EXPECT_EQ(first.records[0].ToString().substr(0, 80),
              "{SmlMsgHeader={transactionId=01, groupNo=0, abortOnError=0, smlMsgIdentifier=2048, "
              "openCid=, "s.substr(0, 80));
    EXPECT_EQ(test::Nested(first.records[0], "SmlOpenReq").ToString(), "{}");
}

TEST(ParserFiles, ADifferentServerIdIsTold)
{
    Parser parser;
    const TraceCapture trace(LibSmlp, 4);
    parser.Feed(kFirst, OpenRes() + Message("0701", "77 01 04 AA BD CC 01 01 70 01 01"));
    EXPECT_EQ(parser.count, 2);
    EXPECT_EQ(trace.Text(), "LibSmlp[4]: GetListResp:ServerId DIFF!, OSrvId:0xbb, SrvId:0xbd, "
                            "Index:0x0001, smlp[7]\n"
                            "LibSmlp[4]: rec_SmlGetListRes= {}\n\n");
}

} // namespace
