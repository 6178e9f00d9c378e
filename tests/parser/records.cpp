// What records the parser makes of every kind of message: whole, and cut at every byte.
#include "tests/support/message.h"
#include "tests/support/parse.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using test::CloseRes;
using test::Message;
using test::OpenRes;
using test::Parser;

namespace
{

// The body of a message that comes second in its file, the same however the file is cut.
std::string BodyOf(const char* tag, const char* hex, const char* label)
{
    const bool closes = tag == std::string("0200");
    const std::string file = OpenRes() + Message(tag, hex) + (closes ? "" : CloseRes());
    Parser whole;
    whole.FeedFile(file, {});
    EXPECT_EQ(whole.results, std::vector<int>{SMLP_FILE_COMPLETE});
    for (std::size_t cut = 0; cut < file.size(); ++cut) {
        Parser parts;
        parts.FeedFile(file, {cut});
        EXPECT_EQ(parts.records, whole.records) << "cut at " << cut;
        EXPECT_EQ(parts.results, (std::vector<int>{SMLP_OK, SMLP_FILE_COMPLETE})) << cut;
    }
    vorn::cRecord body;
    EXPECT_TRUE(whole.records[1].GetFirstPar(label, 0, 0).GetRecord(body)) << whole.Text();
    return body.ToString();
}

TEST(ParserRecords, BodiesOfEveryKind)
{
    const struct {
        const char* pcName;
        const char* pcTag;
        const char* pcHex;
        const char* pcLabel;
        const char* pcBody;
    } rows[] = {
        {"close request", "0200", "71 04 0A 0B 0C", "SmlCloseReq", "{globalSignature=0a0b0c}"},
        {"profile request", "0300",
         "79 02 AA 02 75 02 70 01 72 62 01 65 00 00 01 00 01 72 07 01 00 01 08 00 FF 03 41 42"
         "72 07 01 00 01 08 00 FF 04 41 42 43 73 02 41 01 01",
         "SmlGetProfileReq",
         "{serverId=aa, username=75, password=70, beginTime={type=1, value=256}, endTime={}, "
         "parTreePath={path_Entry=1099528929535, path_Entry=71751723646976}, "
         "object_List={object_List_Entry=1099528929535}, parTree={parName=71468255805440}}"},
        {"profile list request", "0400", "79 01 01 01 01 01 01 70 70 01", "SmlGetProfileReq",
         "{serverId=, beginTime={}, endTime={}}"},
        {"profile pack response", "0301",
         "78 02 AA 72 62 02 62 05 62 0F 71 02 41 71 73 02 41 62 1E 52 FF"
         "71 74 72 62 01 62 01 62 80 71 72 62 05 01 02 53 02 44 02 53",
         "SmlGetProfPackRes", "{serverId=aa, parTreePath={path_Entry=71468255805440}}"},
        {"profile list response", "0401",
         "79 02 AA 72 62 03 73 65 00 00 00 09 53 FF 88 52 FF 62 0F 70 72 62 01 62 07 62 82"
         "72 75 07 01 00 01 08 00 FF 62 1E 52 FF 65 00 01 00 00 01 75 02 41 62 1B 52 00 01 02 53"
         "04 01 02 03 02 54",
         "SmlGetProfListRes",
         "{serverId=aa, actTime={type=3, value=9, locOffset=-120, seaOffset=-1}, regPeriod=15, "
         "valTime={type=1, value=7}, status=130, "
         "period_List={SmlPeriodEntry={objName=1099528929535, unit=30, scaler=-1, value=65536}, "
         "SmlPeriodEntry={objName=71468255805440, unit=27, scaler=0, value=, "
         "valueSignature=53}}, rawdata=010203, periodSignature=54}"},
        {"parameter request", "0500", "75 02 AA 01 01 70 01", "SmlGetProcParReq", "{serverId=aa}"},
        {"parameter response", "0501",
         "73 02 AA 71 02 41 73 02 41 72 62 01 62 05 75"
         "73 02 42 72 62 02 75 02 41 62 1E 52 FF 42 01 01 01"
         "73 02 43 72 62 04 72 62 01 62 07 71 73 02 45 72 62 01 42 00 01"
         "73 02 44 72 62 05 77 02 41 01 01 01 01 72 62 01 72 62 02 62 08 01 01"
         "01"
         "73 02 46 72 62 03 F1 07 01 72 62 01 62 01 62 00"
         "62 1E 52 00 62 01 62 1E 52 00 62 01 62 1E 52 00 62 01 01"
         "62 1E 52 00 62 01 62 1E 52 00 62 01 62 1E 52 00 72 62 01 72 62 01 62 01 01 01",
         "SmlGetProcParRes",
         "{serverId=aa, parTreePath={path_Entry=71468255805440}, parTree={parName=71468255805440, "
         "procParVal={type=1, value=5}, child_List={"
         "parTree={parName=72567767433216, procParVal={type=2, value={objName=71468255805440, "
         "unit=30, scaler=-1, value=true}}}, "
         "parTree={parName=73667279060992, procParVal={type=4, value={SmlTime={type=1, value=7}}}, "
         "child_List={parTree={parName=75866302316544, procParVal={type=1, value=false}}}}, "
         "parTree={parName=74766790688768, procParVal={type=5, value={objName=71468255805440, "
         "value={smlList={type=1, SmlTime={type=2, value=8}}}}}}, "
         "parTree={}, "
         "parTree={parName=76965813944320, procParVal={type=3}}}}}"},
        {"parameter setting", "0600", "75 01 01 01 70 73 02 41 72 62 01 61 01", "SmlSetProcParReq",
         "{serverId=, parTree={parName=71468255805440}}"},
        {"list request", "0700", "75 02 AA 01 01 01 07 01 00 00 62 0A FF", "SmlGetListReq",
         "{clientId=aa, serverId=, listName=1099518053119}"},
        {"list response", "0701",
         "77 02 CC 02 AA 07 01 00 00 62 0A FF 72 62 01 62 09 7A"
         "77 07 01 00 01 08 00 FF 64 01 02 03 72 62 02 62 06 62 1E 52 FF 53 FF FE 02 53"
         "77 02 41 01 01 01 01 55 FF FF FF FE 01"
         "77 02 41 01 01 01 01 54 80 00 00 01"
         "77 02 41 01 01 01 01 56 FF FF FF FF FE 01"
         "77 02 41 01 01 01 01 63 80 00 01"
         "77 02 41 01 01 01 01 69 FF 00 00 00 00 00 00 01 01"
         "77 02 41 01 01 01 01 43 01 00 01"
         "77 02 41 01 01 01 01 51 01"
         "77 02 41 01 01 01 01 41 01"
         "77 08 01 02 03 04 05 06 07 01 01 01 01 03 48 49 01"
         "03 01 02 72 62 01 62 0A",
         "SmlGetListRes",
         "{clientId=cc, serverId=aa, listName=1099518053119, actSensorTime={type=1, value=9}, "
         "valList={"
         "valListEntry={objName=1099528929535, status=66051, valTime={type=2, value=6}, unit=30, "
         "scaler=-1, value=-2, valueSignature=53}, "
         "valListEntry={objName=71468255805440, value=-2}, "
         "valListEntry={objName=71468255805440, value=-8388608}, "
         "valListEntry={objName=71468255805440, value=-2}, "
         "valListEntry={objName=71468255805440, value=32768}, "
         "valListEntry={objName=71468255805440, value=18374686479671623681}, "
         "valListEntry={objName=71468255805440, value=false}, "
         "valListEntry={objName=71468255805440}, "
         "valListEntry={objName=71468255805440}, "
         "valListEntry={objName=1108152157446, value=4849}}, "
         "listSignature=0102, actGatewayTime={type=1, value=10}}"},
        {"attention", "FF01", "74 02 AA 07 81 81 C7 C7 FE 00 03 48 49 01", "SmlAttentionRes",
         "{serverId=aa, attentionNo=142394402536960, attentionMsg=4849}"},
    };
    const test::TraceCapture quiet;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pcName);
        EXPECT_EQ(BodyOf(row.pcTag, row.pcHex, row.pcLabel), row.pcBody);
    }
}

TEST(ParserRecords, KindsOfIntegersFollowTheirEncodedLength)
{
    const struct {
        const char* pcValue;
        int iType;
    } rows[] = {
        {"52 01", 2},
        {"55 00 00 00 01", 2},
        {"56 00 00 00 00 01", 8},
        {"62 01", 3},
        {"65 00 00 00 01", 3},
        {"66 00 00 00 00 01", 9},
        {"42 01", 10},
        {"02 01", 5},
        {"01", 5},
        {"72 62 01 72 62 01 62 01", 6},
    };
    for (const auto& row : rows) {
        Parser parser;
        const std::string entry = std::string("77 02 41 01 01 01 01 ") + row.pcValue + " 01";
        parser.FeedFile(OpenRes() + Message("0701", "77 01 02 AA 01 01 71" + entry + "01 01"), {});
        const vorn::cRecord list = test::Nested(parser.records[1], "SmlGetListRes.valList");
        const vorn::cRecord fields = test::Nested(list, "valListEntry");
        EXPECT_EQ(fields.GetFirstPar("value", 0, 0).GetType(1), row.iType) << row.pcValue;
    }
}

TEST(ParserRecords, OpenRequestAndHeaders)
{
    Parser parser;
    parser.FeedFile(Message("0100", "77 0C 49 53 4F 20 38 38 35 39 2D 31 35 02 C1 02 F1"
                                    "07 FF FF FF FF FF FF 02 75 02 70 62 01") +
                        Message("0700", "75 02 C1 07 FF FF FF FF FF FE 01 01 01") +
                        Message("0200", "71 01"),
                    {});
    EXPECT_EQ(parser.results, std::vector<int>{SMLP_FILE_COMPLETE});
    const std::string open =
        "openCid=c1, openRfid=f1, openSid=ffffffffffff, openTid=01, openGNo=0, "
        "openAOE=0}";
    const std::string head = "{SmlMsgHeader={transactionId=01, groupNo=0, abortOnError=0, "
                             "smlMsgIdentifier=";
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
            head + row.pcIdentifier + ", " + open + ", " + row.pcBody + ", SmlCrc=";
        EXPECT_EQ(text.substr(0, begin.size()), begin);
        const std::string rest = std::string(", SmlStatus=") + row.pcStatus +
                                 ", SmltFlags=" + row.pcFlags + ", SmlMsgRawData=7602016200";
        EXPECT_NE(text.find(rest), std::string::npos) << text;
    }
}

TEST(ParserRecords, KindsOfServerIds)
{
    const struct {
        std::string strId;
        bool bBroadcast;
        bool bUnicast;
        bool bMulticast;
    } rows[] = {
        {"", true, false, false},
        {std::string(5, '\xFF'), false, false, false},
        {std::string(6, '\xFF'), true, false, false},
        {std::string(7, '\xFF'), true, false, false},
        {std::string("\x05\0\0\0\0\0\0", 7), false, true, false},
        {std::string(6, '\0'), false, true, false},
        {std::string("\x01\x00\x5E\x7F\x00\x01", 6), false, false, true},
        {std::string("\x01\x00\x5E\x80\x00\x01", 6), false, false, false},
        {std::string("\x05\x01\x00\x5E\x00\x00\x01", 7), false, false, true},
    };
    for (const auto& row : rows) {
        const auto len = static_cast<unsigned>(row.strId.size());
        EXPECT_EQ(cSMLP::IsMucBroadcast(row.strId.data(), len), row.bBroadcast) << len;
        EXPECT_EQ(cSMLP::IsMucUnicast(row.strId.data(), len), row.bUnicast) << len;
        EXPECT_EQ(cSMLP::IsMucMulticast(row.strId.data(), len), row.bMulticast) << len;
    }
}

} // namespace
