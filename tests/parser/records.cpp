// What records the parser makes of every kind of message, whole and in pieces.
#include "tests/parser/in_pieces.h"
#include "tests/support/message.h"
#include "tests/support/rows.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using test::CloseRes;
using test::Hex;
using test::Message;
using test::OpenRes;
using test::Parser;

namespace
{

TEST(ParserRecords, BodiesOfEveryKindInAnyPieces)
{
    const test::TraceCapture quiet;
    for (const test::Row& row : test::Rows("parser/bodies.txt", 4)) {
        SCOPED_TRACE(row[0]);
        const bool closes = row[1] == "0200";
        const std::string file = OpenRes() + Message(row[1], row[2]) + (closes ? "" : CloseRes());
        Parser whole;
        whole.FeedFile(file, {});
        EXPECT_EQ(whole.results, std::vector<int>{SMLP_FILE_COMPLETE});
        EXPECT_EQ((whole.records[1].begin() + 1)->ToString(), row[3]);
        test::ExpectSameInPieces(file, OpenRes().size(), file.size(), whole);
    }
}

TEST(ParserRecords, KindsOfValuesFollowTheirEncoding)
{
    std::string list = "77 01 02 AA 01 01 7A";
    for (const char* value :
         {"52 01", "55 00 00 00 01", "56 00 00 00 00 01", "62 01", "65 00 00 00 01",
          "66 00 00 00 00 01", "42 01", "02 01", "01", "72 62 01 72 62 01 62 01"})
        list += std::string("77 02 41 01 01 01 01 ") + value + " 01";
    Parser parser;
    parser.FeedFile(OpenRes() + Message("0701", list + "01 01"), {});
    std::string kinds;
    for (const vorn::cRecordPar& par : test::Nested(parser.records[1], "SmlGetListRes.valList")) {
        vorn::cRecord fields;
        par.GetRecord(fields);
        kinds += std::to_string(fields.GetFirstPar("value", 0, 0).GetType(1)) + ' ';
    }
    EXPECT_EQ(kinds, "2 2 8 3 3 9 10 5 5 6 ");
}

TEST(ParserRecords, OpenRequestAndHeaders)
{
    Parser parser;
    parser.FeedFile(Message("0100", "77 0C 49 53 4F 20 38 38 35 39 2D 31 35 02 C1 02 F1"
                                    "07 FF FF FF FF FF FF 02 75 02 70 62 01") +
                        Message("0700", "75 02 C1 07 FF FF FF FF FF FE 01 01 01") +
                        Message("0200", "71 01"),
                    {});
    const struct {
        const char* pcIdentifier;
        const char* pcBody;
        const char* pcStatus;
        const char* pcFlags;
    } rows[] = {
        {"256",
         "SmlOpenReq={codepage=49534f20383835392d3135, clientId=c1, reqFileId=f1, "
         "serverId=ffffffffffff, username=75, password=70, smlVersion=1}",
         "{Error=0, Type=0, Cast=0, MsgNoInFile=1}", "17"},
        {"1792", "SmlGetListReq={clientId=c1, serverId=fffffffffffe}",
         "{Error=0, Type=0, Cast=2, MsgNoInFile=2}", "16"},
        {"512", "SmlCloseReq={}", "{Error=0, Type=0, Cast=-1, MsgNoInFile=3}", "18"},
    };
    for (int i = 0; i < 3; ++i) {
        const auto& row = rows[i];
        const std::string text = parser.records[i].ToString();
        const std::string begin =
            std::string("{SmlMsgHeader={transactionId=01, groupNo=0, abortOnError=0, "
                        "smlMsgIdentifier=") +
            row.pcIdentifier +
            ", openCid=c1, openRfid=f1, openSid=ffffffffffff, openTid=01, openGNo=0, openAOE=0}, " +
            row.pcBody + ", SmlCrc=";
        EXPECT_EQ(text.substr(0, begin.size()), begin);
        const std::string rest = std::string(", SmlStatus=") + row.pcStatus +
                                 ", SmltFlags=" + row.pcFlags + ", SmlMsgRawData=7602016200";
        EXPECT_NE(text.find(rest), std::string::npos) << text;
    }
}

// An open message tells of itself what it had told when it was refused.
TEST(ParserRecords, OpenDataOfARefusedOpenMessage)
{
    const test::TraceCapture quiet;
    const struct {
        const char* pcMessage;
        const char* pcOpenData;
    } rows[] = {
        {"0100 77 01 02 C1 62", "openCid=c1, openRfid=, openSid=, openTid=, openGNo=0, openAOE=0"},
        {"0100 77 01 02 C1 02 F1 62",
         "openCid=c1, openRfid=f1, openSid=, openTid=09, openGNo=5, openAOE=1"},
        {"0101 76 01 02 C1 02 F1 62",
         "openCid=c1, openRfid=f1, openSid=, openTid=, openGNo=0, openAOE=0"},
    };
    for (const auto& row : rows) {
        Parser parser;
        parser.Feed(BUF_FLAG_FIRST, Hex(std::string("76 02 09 62 05 62 01 72 63") + row.pcMessage));
        const std::string header = test::Nested(parser.records[0], "SmlMsgHeader").ToString();
        EXPECT_NE(header.find(row.pcOpenData), std::string::npos) << header;
    }
}

// Where the value of a tree stops, and that a list type has ended, whatever it is the value of.
TEST(ParserRecords, TracesOfTreeValues)
{
    std::string full = Hex("75 01 0F") + std::string(14, 'u') + Hex("05 70 70 70 70 F3 85 02");
    for (int i = 0; i < 850; ++i)
        full += Hex("07 01 02 03 04 05 06"); // of the path: eight bytes are free where the value is
    const std::string few = Hex("75 01 01 01 70");
    const std::string listType = "72 62 01 72 62 01 65 00 00 00 05";
    const struct {
        const char* pcName;
        std::string strBegin;
        std::string strValue;
        bool bBytewise;
        const char* pcCounts; // ended list types, empty inputs, full outputs
    } rows[] = {
        {"a number", few, "72 62 01 65 00 00 00 05", true, "0 5 0"},
        {"a list type", few, "72 62 01" + listType, true, "1 11 0"},
        {"in a period entry", few, "72 62 02 75 02 41 62 1E 52 FF" + listType + "01", true,
         "1 0 0"},
        {"a list type, the store full", full, "72 62 01" + listType, false, "1 0 1"},
    };
    for (const auto& row : rows) {
        const std::string message =
            test::Finish(test::Head("0600") + row.strBegin + Hex("73 02 41" + row.strValue + "01"));
        const test::TraceCapture trace(LibSmlp, 16);
        Parser parser;
        for (std::size_t at = 0; at < message.size(); at += row.bBytewise ? 1 : message.size())
            parser.Feed(BUF_FLAG_FIRST, message.substr(at, row.bBytewise ? 1 : std::string::npos));
        std::string counts;
        const auto lines = trace.Lines();
        for (const char* line :
             {"[16]: SML_Value:ListType: rc=0", "[16]: Tree: parValue: Input empty",
              "[4]: Tree: parValue: Output full"}) {
            counts += counts.empty() ? "" : " ";
            counts += std::to_string(std::count(lines.begin(), lines.end(),
                                                std::string("LibSmlp") + line + ", smlp[7]"));
        }
        EXPECT_EQ(counts, row.pcCounts) << row.pcName;
    }
}

// What has been read of a tree is forgotten up to the value in progress; elsewhere nothing is.
TEST(ParserRecords, TreeRecordsAreCleanedUp)
{
    const test::TraceCapture quiet;
    const std::string tree = test::Finish(
        test::Head("0600") + Hex("75 01 01 01 71 02 41 73 02 41 72 62 01 62 05 72 73 02 42 01 01"
                                 "73 02 43 72 62 01 65 00 00 00 07 01"));
    const std::string list =
        Message("0701", "77 01 02 AA 01 01 71 77 02 41 01 01 01 01 65 00 00 00 07 01 01 01");
    const struct {
        std::string strMessage;
        std::size_t uiFed; // before
        const char* pcBody;
    } rows[] = {
        {tree, 18,
         "SmlSetProcParReq={serverId=, parTreePath={path_Entry=71468255805440}, "
         "parTree={parName=71468255805440, procParVal={type=1, value=5}, "
         "child_List={parTree={parName=72567767433216}, "
         "parTree={parName=73667279060992, procParVal={type=1, value=7}}}}}"},
        {tree, 41,
         "SmlSetProcParReq={serverId=, parTreePath={path_Entry=71468255805440}, "
         "parTree={child_List={parTree={procParVal={type=1, value=7}}}}}"},
        {list, 28,
         "SmlGetListRes={serverId=aa, valList={valListEntry={objName=71468255805440, "
         "value=7}}}"},
    };
    for (const auto& row : rows) {
        Parser parser;
        parser.parser.Cleanup_TreeRecords();
        parser.Feed(BUF_FLAG_FIRST, row.strMessage.substr(0, row.uiFed));
        parser.parser.Cleanup_TreeRecords();
        parser.Feed(0, row.strMessage.substr(row.uiFed));
        EXPECT_EQ((parser.records[0].begin() + 1)->ToString(), row.pcBody);
    }
}

TEST(ParserRecords, KindsOfServerIds)
{
    const struct {
        const char* pcId;
        const char* pcCasts; // broadcast, unicast, multicast
    } rows[] = {
        {"", "100"},
        {"FFFFFFFFFF", "000"},
        {"FFFFFFFFFFFF", "100"},
        {"FFFFFFFFFFFFFF", "100"},
        {"05000000000000", "010"},
        {"000000000000", "010"},
        {"01005E7F0001", "001"},
        {"01005E800001", "000"},
        {"0501005E000001", "001"},
    };
    for (const auto& row : rows) {
        const std::string id = Hex(row.pcId);
        std::string casts;
        for (const auto is : {cSMLP::IsMucBroadcast, cSMLP::IsMucUnicast, cSMLP::IsMucMulticast})
            casts += is(id.data(), static_cast<unsigned>(id.size())) ? '1' : '0';
        EXPECT_EQ(casts, row.pcCasts) << row.pcId;
    }
}

} // namespace
