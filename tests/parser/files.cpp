// Files: their order, borders, CRCs and time-outs, told by results, records and traces.
#include "tests/support/message.h"
#include "tests/support/parse.h"
#include "tests/support/rows.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <sstream>

using test::CloseRes;
using test::Hex;
using test::Message;
using test::OpenRes;
using test::Parser;
using test::TraceCapture;

namespace
{

constexpr unsigned kFirst = BUF_FLAG_FIRST;

// A message whose CRC is altered, or has its two bytes exchanged.
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

// Feeds a piece as the table tells it, whole or byte by byte up to where it is refused; what the
// parser answers last, if anything.
std::string Feed(Parser& parser, const std::string& piece, bool whole)
{
    static const std::string close = CloseRes();
    static const std::string other =
        test::Finish(Hex("76 05 01 02 03 04 62 00 62 00 72 63 02 01 71 01"));
    static const std::string closeReq = Message("0200", "71 01");
    static const std::string request = Message("0700", "75 02 C1 01 01 01 01");
    static const std::map<char, std::string> kMessages = {
        {'O', OpenRes()},
        {'w', test::OddOpenRes()},
        {'o', BadCrc(OpenRes())},
        {'s', SwappedCrc(OpenRes())},
        {'q', BadCrc(closeReq)},
        {'C', close},
        {'c', BadCrc(close)},
        {'r', BadCrc(request)},
        {'G', Hex("11 11")},
        {'a', close.substr(0, 5)},
        {'b', close.substr(5)},
        {'h', other.substr(0, 4)},
        {'i', other.substr(4, 1)},
        {'j', other.substr(5)},
        {'d', close.substr(0, close.size() - 1)},
        {'e', close.substr(0, close.size() - 2)},
    };
    static const std::map<char, unsigned> kFlags = {
        {'f', kFirst}, {'l', BUF_FLAG_LAST}, {'x', BUF_FLAG_CRC_ERROR}, {'-', 0}};
    const std::size_t colon = piece.find(':');
    if (colon == std::string::npos) {
        static const std::map<char, void (cSMLP::*)()> kCalls = {
            {'T', &cSMLP::TimeoutEvent},
            {'M', &cSMLP::Reset_MsgAttributes},
            {'F', &cSMLP::Reset_FileAttributes}};
        (parser.parser.*kCalls.at(piece[0]))();
        return "";
    }
    unsigned flags = 0;
    std::string bytes;
    for (const char c : piece.substr(0, colon))
        flags |= kFlags.at(c);
    for (const char c : piece.substr(colon + 1))
        bytes += kMessages.at(c);
    const std::size_t size = whole ? bytes.size() : 1;
    std::size_t at = 0;
    do
        parser.Feed(flags, bytes.substr(at, size));
    while ((at += size) < bytes.size() && parser.results.back() >= 0);
    return std::to_string(parser.results.back()) + ' ';
}

void ExpectFile(const test::Row& row, bool whole)
{
    const TraceCapture trace(LibSmlp, whole ? 16 : 2);
    Parser parser;
    std::istringstream pieces(row[1]);
    std::string results;
    for (std::string piece; pieces >> piece;)
        results += Feed(parser, piece, whole);
    EXPECT_EQ(results, row[2] + ' ');
    EXPECT_EQ(std::to_string(parser.count), row[3]);
    if (parser.count != 0) {
        const vorn::cRecord status = test::Nested(parser.records[parser.count - 1], "SmlStatus");
        EXPECT_EQ(status.begin()->ToString(), "Error=" + row[4]);
    }
    if (whole) {
        EXPECT_NE(trace.Text().find("LibSmlp" + row[5]), std::string::npos) << trace.Text();
    }
}

TEST(ParserFiles, OrderBordersCrcsAndTimeouts)
{
    for (const test::Row& row : test::Rows("parser/files.txt", 6)) {
        for (const bool whole : {true, false}) {
            SCOPED_TRACE(row[0] + (whole ? "" : ", byte by byte"));
            ExpectFile(row, whole);
        }
    }
}

TEST(ParserFiles, InputIsRefusedWithoutItsParameters)
{
    const TraceCapture trace(LibSmlp);
    Parser parser;
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

// An open message that is ignored changes nothing; the server of a later message is compared.
TEST(ParserFiles, TheOpenMessageStandsForItsFile)
{
    const TraceCapture trace(LibSmlp, 4);
    Parser parser;
    parser.Feed(kFirst, OpenRes() + Message("0101", "76 01 02 C9 02 F9 02 A9 01 01") +
                            Message("0701", "77 01 04 AA BD CC 01 01 70 01 01"));
    ASSERT_EQ(parser.count, 2);
    const std::string header = test::Nested(parser.records[1], "SmlMsgHeader").ToString();
    EXPECT_NE(header.find("openCid=, openRfid=1122, openSid=aabbcc"), std::string::npos) << header;
    EXPECT_EQ(trace.Text(), "LibSmlp[2]: Ignore multiple Open!, smlp[7]\n"
                            "LibSmlp[4]: GetListResp:ServerId DIFF!, OSrvId:0xbb, SrvId:0xbd, "
                            "Index:0x0001, smlp[7]\n"
                            "LibSmlp[4]: rec_SmlGetListRes= {}\n\n");
}

TEST(ParserFiles, NoRecordCarriesFieldsOfAnEarlierMessage)
{
    const TraceCapture quiet;
    Parser parser;
    parser.Feed(kFirst, OpenRes() + Message("0701", "77 01 02 AA 01 01 70 01 01") +
                            test::Head("0701") + Hex("78"));
    ASSERT_EQ(parser.count, 3);
    EXPECT_EQ(test::Nested(parser.records[2], "SmlGetListRes").ToString(), "{}");
    // An unknown tag in the first message: taken for an open request, the tag told as it came.
    Parser first;
    first.Feed(kFirst, test::Head("0800"));
    const std::string text = first.records[0].ToString();
    EXPECT_EQ(text.find("smlMsgIdentifier=2048, "), text.find("smlMsg")) << text;
    EXPECT_EQ(test::Nested(first.records[0], "SmlOpenReq").ToString(), "{}");
}

// The host asks what a code calls for: the answer, and what the message says that is in progress or
// comes next.
TEST(ParserFiles, ErrorsThatTheHostFinds)
{
    const TraceCapture quiet;
    const auto error = [](const Parser& parser) {
        return parser.records.rbegin()->second.GetFirstParByPath("SmlStatus.Error", ".", 0, 0);
    };
    const struct {
        int iCode;
        bool bFirst;       // message of its file
        char cAbort;       // its abort-on-error
        std::size_t uiFed; // bytes of it
        int iAnswer;
        int iError;
    } rows[] = {
        {10, false, 0, 0, -3, SML_STATUS_FE10},
        {11, false, 0, 0, -3, SML_STATUS_FE09},
        {30, false, 0, 7, -2, SML_STATUS_FE01},
        {20, true, 0, 7, -2, SML_STATUS_IGNORE_FILE},
        {20, false, 0, 7, -2, SML_STATUS_FE01},
        {140, true, 0, 7, -2, SML_STATUS_IGNORE_FILE},
        {140, false, 0, 7, -3, SML_STATUS_CRC},
        {140, false, 1, 7, -2, SML_STATUS_CRC},
        {140, false, 0, 11, -2, SML_STATUS_CRC_CLOSE},
        {204, false, 0, 0, -2, SML_STATUS_UNKNOWN_STATE},
        {230, false, 0, 0, -2, SML_STATUS_NULL_POINTER},
        {0, false, 0, 0, -2, SML_STATUS_FE00},
        {231, false, 0, 0, -2, SML_STATUS_FE00},
    };
    for (const auto& row : rows) {
        const std::string message =
            test::Finish(Hex("76 02 01 62 00 62") + row.cAbort + Hex("72 63 02 00 71 01"));
        Parser parser;
        parser.Feed(kFirst, (row.bFirst ? "" : OpenRes()) + message.substr(0, row.uiFed));
        EXPECT_EQ(parser.parser.ErrorHandler(row.iCode), row.iAnswer) << row.iCode;
        parser.Feed(kFirst, message.substr(row.uiFed));
        EXPECT_EQ(error(parser).GetSInt(), row.iError) << row.iCode;
        parser.Feed(kFirst, OpenRes());
        EXPECT_EQ(error(parser).GetSInt(), SML_STATUS_OK) << row.iCode;
    }
}

} // namespace
