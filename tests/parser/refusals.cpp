// Every code with which a message is refused, from real message bytes, with its trace, as the first
// and as a later message of its file; and the status that it gives the host.
#include "tests/support/message.h"
#include "tests/support/parse.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using test::Head;
using test::Hex;
using test::Parser;

namespace
{

constexpr int kIgnored = SML_STATUS_IGNORE_FILE;
constexpr int kFe00 = SML_STATUS_FE00;
constexpr int kFe01 = SML_STATUS_FE01;
constexpr int kFe10 = SML_STATUS_FE10;

struct Case {
    const char* pcName;
    std::string strBytes;
    int iCode;
    const char* pcTrace; // without the instance; null: none of its own
    int iFirst = kIgnored;
    int iLater = kFe01;
};

std::string In(const char* tag, const std::string& hex) { return Head(tag) + Hex(hex); }

// A list with one entry that holds the given fields.
std::string Entry(const std::string& hex) { return In("0701", "77 01 02 AA 01 01 71" + hex); }

std::string Time(const std::string& hex) { return In("0701", "77 01 02 AA 01" + hex); }

// A profile list response up to its first period entry.
std::string Period(const std::string& hex)
{
    return In("0401", "79 02 AA 01 01 70 01 62 00 71" + hex);
}

// A profile pack response up to its header list.
std::string Pack(const std::string& hex)
{
    return In("0301", "78 02 AA 72 62 01 62 01 62 0F 70" + hex);
}

// A process parameter response up to its tree.
std::string Tree(const std::string& hex) { return In("0501", "73 02 AA 70" + hex); }

std::string Tupel(const std::string& hex) { return Tree("73 02 41 72 62 03" + hex); }

void Check(const Case& row)
{
    SCOPED_TRACE(row.pcName);
    for (const bool first : {true, false}) {
        SCOPED_TRACE(first ? "first message" : "later message");
        Parser parser;
        if (!first)
            parser.Feed(BUF_FLAG_FIRST, test::OpenRes());
        const test::TraceCapture trace(LibSmlp, 4);
        EXPECT_EQ(parser.Feed(first ? unsigned{BUF_FLAG_FIRST} : 0U, row.strBytes),
                  SMLP_DECODING_ERROR);
        const std::string text = trace.Text();
        const std::string code = "LibSmlp[2]: Decoding-Error: rc=" + std::to_string(row.iCode);
        EXPECT_NE(text.find(code + ", smlp[7]\n"), std::string::npos) << text;
        if (row.pcTrace != nullptr) {
            const std::string line = "LibSmlp[2]: " + std::string(row.pcTrace) + ", smlp[7]\n";
            EXPECT_NE(text.find(line), std::string::npos) << text;
        } else {
            EXPECT_EQ(text.rfind("LibSmlp[2]: Decoding-Error", 0), 0U) << text;
        }
        const int status = first ? row.iFirst : row.iLater;
        const auto key = first ? 0 : 1;
        if (status == kIgnored) {
            EXPECT_EQ(parser.count, key);
            continue;
        }
        ASSERT_EQ(parser.count, key + 1);
        const vorn::cRecord header = test::Nested(parser.records[key], "SmlMsgHeader");
        EXPECT_EQ(header.GetParCount("openSid", 0, 0), 1);
        const vorn::cRecord told = test::Nested(parser.records[key], "SmlStatus");
        if (told.GetParCount("Error", 0, 0) != 0) {
            EXPECT_EQ(told.GetFirstPar("Error", 0, 0).GetSInt(), status);
        }
    }
}

void CheckAll(const std::vector<Case>& rows)
{
    for (const Case& row : rows)
        Check(row);
}

TEST(ParserRefusals, TlFields)
{
    CheckAll({
        {"reserved", Hex("11"), 3, "TL-Decoder:reserved type (0x11)!"},
        {"reserved, long", Hex("91"), 3, "TL-Decoder:reserved type (0x91)!"},
        {"long integer", Hex("76 C1"), 3, "TL-Decoder:reserved type (0xc1)!"},
        {"nine-byte integer", Hex("76 5A"), 4, nullptr},
        {"five-byte boolean", Hex("76 46"), 4, nullptr},
        {"eight bytes", Hex("76 81 82 83 84 85 86 87 88"), 5,
         "TL-Decoder:Length>Max:0x8182838485868788"},
        {"itself only", Hex("76 80 02"), 6, "TL-Decoder:uiTLF_Count <= 0"},
        {"less than itself", Hex("76 80 01"), 6, "TL-Decoder:uiTLF_Count <= 0"},
        {"empty long list", Hex("F0 00"), 6, "TL-Decoder:uiTLF_Count <= 0"},
    });
}

TEST(ParserRefusals, Envelope)
{
    const std::string id65 = "76 84 03" + std::string(130, '1');
    CheckAll({
        {"no list", Hex("62"), 20, "SmlMsg: ERROR: Seq-Type"},
        {"five elements", Hex("75"), 21, "SmlMsg: ERROR: Seq-Len"},
        {"transaction id absent", Hex("76 01"), 81, "tId: ERROR: Type"},
        {"transaction id of 65", Hex(id65), 111, "tId: ERROR: Len"},
        {"group number", Hex("76 02 01 52"), 82, "grpNo: ERROR: Type"},
        {"group number of 2", Hex("76 02 01 63"), 112, "grpNo: ERROR: Len"},
        {"abort on error", Hex("76 02 01 62 00 01"), 83, "abortOnError: ERROR: Type"},
        {"abort on error of 2", Hex("76 02 01 62 00 63"), 113, "abortOnError: ERROR: Len"},
        {"abort on error 3", Hex("76 02 01 62 00 62 03"), 130, "abortOnError: ERROR: Value", kFe01},
        {"abort on error FE", Hex("76 02 01 62 00 62 FE"), 130, "abortOnError: ERROR: Value",
         kFe01},
        {"body", Hex("76 02 01 62 00 62 00 62"), 27, "SmlMsgBody:Seq-Type!"},
        {"body of 3", Hex("76 02 01 62 00 62 00 73"), 28, "SmlMsgBody:Seq-Cnt!"},
        {"tag", Hex("76 02 01 62 00 62 00 72 52"), 29, "MsgBody:Choice-Type"},
        {"tag of 5", Hex("76 02 01 62 00 62 00 72 66"), 31, "MsgBody:Choice-Len"},
        {"unknown tag", Head("0800"), 30, "SmlMsgBody:Choice-Value!", kFe01},
        {"crc", In("0201", "71 01 64"), 84, "SmlMsg: CRC: Type-Error: Byte=0x64"},
        {"end", In("0201", "71 01 63 00 00 01"), 35, "EndOfSmlMsg:Char=0x01!"},
    });
}

TEST(ParserRefusals, BodyLists)
{
    const struct {
        const char* pcTag;
        const char* pcPrefix;
    } bodies[] = {
        {"0100", "OpenReq"},        {"0101", "OpenResp"},        {"0200", "CloseReq"},
        {"0201", "CloseResp"},      {"0300", "GetProfileReq"},   {"0301", "GetProfPackResp"},
        {"0400", "GetProfileReq"},  {"0401", "GetProfListResp"}, {"0500", "GetProcParReq"},
        {"0501", "GetProcParResp"}, {"0600", "SetProcParReq"},   {"0700", "GetListReq"},
        {"0701", "GetListResp"},    {"FF01", "AttentionResp"},
    };
    for (const auto& body : bodies) {
        const std::string type = std::string(body.pcPrefix) + ":Seq-Type!";
        const std::string count = std::string(body.pcPrefix) + ":Seq-Cnt!";
        Check({body.pcPrefix, In(body.pcTag, "62"), 27, type.c_str()});
        Check({body.pcPrefix, In(body.pcTag, "7E"), 28, count.c_str()});
    }
}

TEST(ParserRefusals, RequestFields)
{
    const std::string x33 = "82 03" + std::string(66, '1');
    const std::string x65 = "84 03" + std::string(130, '1');
    const std::string x7 = "08 11 22 33 44 55 66 77";
    const std::string rest = "02 41 02 41 01 01 01";
    CheckAll({
        {"codepage", In("0100", "77 62"), 85, "codepage:Type!", kFe01},
        {"codepage of 65", In("0100", "77" + x65), 114, "codepage:Len!"},
        {"other codepage", In("0100", "77 0C 49 53 4F 20 38 38 35 39 2D 31 36"), 63, nullptr, kFe00,
         kFe00},
        {"short codepage", In("0100", "77 04 49 53 4F"), 63, nullptr, kFe00, kFe00},
        {"clientId", In("0100", "77 01 62"), 86, "String:Type!=OctetString", kFe01},
        {"clientId absent", In("0100", "77 01 01"), 10, "String:Optional not supported!", kFe10,
         kFe10},
        {"clientId of 33", In("0100", "77 01" + x33), 115, "String:Length=33, Limit=32", kFe00,
         kFe00},
        {"reqFileId", In("0100", "77 01 02 41 62"), 87, "reqFileId:Type!", kFe01},
        {"reqFileId of 65", In("0100", "77 01 02 41" + x65), 116, "reqFileId:Len!"},
        {"serverId", In("0100", "77 01 02 41 02 41 62"), 88, "String:Type!=OctetString", kFe01},
        {"serverId of 33", In("0100", "77 01 02 41 02 41" + x33), 117,
         "String:Length=33, Limit=32"},
        {"username", In("0100", "77 01 02 41 02 41 01 62"), 89, "String:Type!=OctetString", kFe01},
        {"username of 65", In("0100", "77 01 02 41 02 41 01" + x65), 118,
         "ErrorHandler: Unknown ErrorCode!", kFe00, kFe00},
        {"password", In("0100", "77 01 02 41 02 41 01 01 62"), 90, "String:Type!=OctetString",
         kFe01},
        {"password of 65", In("0100", "77 01 02 41 02 41 01 01" + x65), 119,
         "String:Length=65, Limit=64", kFe00, kFe00},
        {"version", In("0100", "77 01" + rest + "52"), 91, nullptr, kFe01},
        {"version of 2", In("0100", "77 01" + rest + "63"), 91, nullptr, kFe01},
        {"version 2", In("0100", "77 01" + rest + "62 02"), 37, "OpenReq:Sml-Version=2!", kFe00,
         kFe00},
        {"response codepage", In("0101", "76 62"), 80, "String:Type!=OctetString"},
        {"response reqFileId of 65", In("0101", "76 01 01" + x65), 110,
         "String:Length=65, Limit=64"},
        {"response version", In("0101", "76 01 01 02 41 02 41 01 52"), 7, nullptr},
        {"listName", In("0700", "75 02 41 01 01 01 62"), 96, "listName:Type!"},
        {"listName of 7", In("0700", "75 02 41 01 01 01" + x7), 121, "listName:Len!"},
        {"raw data wanted", In("0400", "79 01 01 01 42"), 10, nullptr, kFe10, kFe10},
        {"raw data flag", In("0400", "79 01 01 01 62"), 93, nullptr},
        {"attribute present", In("0500", "75 01 01 01 70 02 41"), 10, nullptr, kFe10, kFe10},
        {"attribute", In("0500", "75 01 01 01 70 62"), 94, "String:Type!=OctetString", kFe01},
        {"attentionNo absent", In("FF01", "74 02 41 01"), 10, "String:Optional not supported!",
         kFe10, kFe10},
        {"object list", In("0400", "79 01 01 01 01 01 01 70 62"), 55,
         "ListOf_ObjReqEntry:Wrong Type"},
        {"object", In("0400", "79 01 01 01 01 01 01 70 71 01"), 56, "ObjReqEntry:Seq-Type"},
    });
}

TEST(ParserRefusals, TimesAndListEntries)
{
    const std::string name257 = "81 80 04" + std::string(514, '1');
    CheckAll({
        {"time", Time("73"), 7, "Time:Seq-Type"},
        {"time tag", Time("72 52"), 22, "Time:Choice-Type"},
        {"time tag of 2", Time("72 63"), 24, "Time:Choice-Len"},
        {"time tag 4", Time("72 62 04"), 23, "Time:Choice-Value=4"},
        {"time value", Time("72 62 01 52"), 25, "Time:Type=80"},
        {"time value of 5", Time("72 62 01 66"), 26, "Time:Len=5"},
        {"local time", Time("72 62 03 62"), 67, "LocalTimestamp:Seq-Type", kFe00, kFe00},
        {"local time of 2", Time("72 62 03 72"), 68, "LocalTimestamp:Seq-Len", kFe00, kFe00},
        {"local timestamp", Time("72 62 03 73 52"), 25, "LocTimestamp:Type=80"},
        {"local timestamp of 5", Time("72 62 03 73 66"), 26, "LocTimestamp:Len=5"},
        {"offset", Time("72 62 03 73 62 01 62"), 69, "LocOffset:Type=96", kFe00, kFe00},
        {"offset of 3", Time("72 62 03 73 62 01 54"), 70, "LocOffset:Len=3", kFe00, kFe00},
        {"season", Time("72 62 03 73 62 01 52 00 62"), 71, "LocSumTimeOffset:Type=96", kFe00,
         kFe00},
        {"season of 3", Time("72 62 03 73 62 01 52 00 54"), 72, "LocSumTimeOffset:Len=3", kFe00,
         kFe00},
        {"time required", Pack("").substr(0, Head("0301").size() + 3) + Hex("01"), 10,
         "Time:Optional not supported!", kFe10, kFe10},
        {"list", In("0701", "77 01 02 AA 01 01 62"), 64, "SML_List:Seq-Type", kFe00, kFe00},
        {"entry", Entry("62"), 65, "SML_ListEntry:Seq-Type:0x01017162", kFe00, kFe00},
        {"entry of 6", Entry("76"), 66, "SML_ListEntry:Seq-Len", kFe00, kFe00},
        {"name absent", Entry("77 01"), 7, nullptr},
        {"name of 257", Entry("77" + name257), 110, "String:Length=257, Limit=256"},
        {"status", Entry("77 02 01 52"), 95, nullptr},
        {"unit", Entry("77 02 01 01 01 52"), 61, "SML_ListEntry:Unit-Type"},
        {"unit of 2", Entry("77 02 01 01 01 63"), 62, "SML_ListEntry:Unit-Len"},
        {"scaler", Entry("77 02 01 01 01 01 62"), 61, "SML_ListEntry:Scaler-Type"},
        {"scaler of 2", Entry("77 02 01 01 01 01 53"), 62, "SML_ListEntry:Scaler-Len"},
        {"value reserved", Entry("77 02 01 01 01 01 01 33"), 3, "TL-Decoder:reserved type (0x33)!"},
        {"list type of 3", Entry("77 02 01 01 01 01 01 73"), 74, nullptr, kFe00, kFe00},
        {"list type tag", Entry("77 02 01 01 01 01 01 72 52"), 75, "SML_ListType:Choice-Type",
         kFe00, kFe00},
        {"list type tag of 2", Entry("77 02 01 01 01 01 01 72 63"), 76, "SML_ListType:Choice-Len",
         kFe00, kFe00},
        {"list type tag 2", Entry("77 02 01 01 01 01 01 72 62 02"), 77,
         "SML_ListType:Choice-Value!", kFe00, kFe00},
        {"signature", Entry("77 02 01 01 01 01 01 62 01 62"), 80, "String:Type!=OctetString"},
    });
}

TEST(ParserRefusals, Profiles)
{
    CheckAll({
        {"regPeriod of 5", In("0401", "79 02 AA 01 66"), 7, nullptr},
        {"profile status absent", In("0401", "79 02 AA 01 01 70 01 01"), 7, nullptr},
        {"period list", In("0401", "79 02 AA 01 01 70 01 62 00 62"), 45,
         "ListOf:PeriodEntry:Seq-Type"},
        {"period entry", Period("62"), 46, "PeriodEntry:Seq-Type"},
        {"period entry of 4", Period("74"), 47, "PeriodEntry:Seq-Len"},
        {"period unit absent", Period("75 02 01 01"), 10, "Unit:Optional not supported!", kFe10,
         kFe10},
        {"period unit", Period("75 02 01 52"), 40, "Unit:Type"},
        {"period unit of 2", Period("75 02 01 63"), 41, "Unit:Len"},
        {"period scaler", Period("75 02 01 62 1E 62"), 61, "PeriodEntry:Scaler-Type"},
        {"period scaler of 2", Period("75 02 01 62 1E 53"), 62, "PeriodEntry:Scaler-Len"},
        {"rawdata of 1201", In("0401", "79 02 AA 01 01 70 01 62 00 70 84 8B 04"), 110,
         "String:Length=1201, Limit=1200"},
        {"header list", Pack("62"), 51, "ListOf:ProfObjHdEntry:Wrong Type"},
        {"header", Pack("71 62"), 52, "ProfObjHdEntry:Seq-Type"},
        {"header of 2", Pack("71 72"), 53, "ProfObjHdEntry:Seq-Len"},
        {"header name", Pack("71 73 62"), 54, "ProfObjHdEntry:TL-Field(objName)"},
        {"header scaler", Pack("71 73 02 01 62 1E 62"), 7, "ProfObjHdEntry:TL-Field(scaler)"},
        {"periods", Pack("70 62"), 48, "ListOf:ProfObjPeriodEntry:Seq-Type"},
        {"period", Pack("70 71 62"), 49, "ProfObjPerEntry:Seq-Type"},
        {"period of 3", Pack("70 71 73"), 50, "ProfObjPerEntry:Seq-Len"},
        {"period status", Pack("70 71 74 72 62 01 62 01 33"), 3,
         "ProfObjPerEntry:TL-Field(status)"},
        {"period status of 9", Pack("70 71 74 72 62 01 62 01 0A"), 120, nullptr},
        {"values", Pack("70 71 74 72 62 01 62 01 01 62"), 42, "ListOf:ValueEntry:Seq-Type"},
        {"value", Pack("70 71 74 72 62 01 62 01 01 71 62"), 43, "ValueEntry:Seq-Type"},
        {"value of 1", Pack("70 71 74 72 62 01 62 01 01 71 71"), 44, "ValueEntry:Seq-Len"},
        {"signature", Pack("70 70 01 62"), 92, "Signature:Seq-Type"},
    });
}

TEST(ParserRefusals, Trees)
{
    std::string deep;
    for (int level = 0; level < 12; ++level)
        deep += "73 02 41 01 71";
    CheckAll({
        {"path", In("0501", "73 02 AA 62"), 58, "TreePath:Seq-Type"},
        {"path entry of 7", In("0501", "73 02 AA 71 08"), 110, "String:Length=7, Limit=6"},
        {"tree", Tree("62"), 59, "Tree:Seq-Type"},
        {"tree of 2", Tree("72"), 60, "Tree:Seq-Cnt"},
        {"tree absent", Tree("01"), 10, "Tree:Optional not supported!", kFe10, kFe10},
        {"value", Tree("73 02 41 62"), 12, "ProcParValue:Seq-Type"},
        {"value of 3", Tree("73 02 41 73"), 13, "Tree:Wrong ProcParValue"},
        {"value tag", Tree("73 02 41 72 52"), 32, "ProcParValue:Choice-Type"},
        {"value tag of 2", Tree("73 02 41 72 63"), 34, "ProcParValue:Choice-Cnt"},
        {"value tag 6", Tree("73 02 41 72 62 06"), 33, "Tree:Val-Choice!"},
        {"value tag 0", Tree("73 02 41 72 62 00"), 33, "Tree:Val-Choice!"},
        {"tupel", Tupel("62"), 12, "TupelEntry:Seq-Type"},
        {"tupel of 22", Tupel("F1 06"), 13, "TupelEntry:Seq-Len"},
        {"tupel status", Tupel("F1 07 01 72 62 01 62 01 52"), 38, "TupelEntry:Status-Type"},
        {"tupel scaler", Tupel("F1 07 01 72 62 01 62 01 62 00 62 1E 62"), 61, "Scaler:Type"},
        {"tupel scaler of 2", Tupel("F1 07 01 72 62 01 62 01 62 00 62 1E 53"), 62, "Scaler:Len"},
        {"children", Tree("73 02 41 01 62"), 57, "ListOfTree:Seq-Type"},
        {"level 12", Tree(deep), 202, "Tree:RecLevel=MAX_TREE_LEVEL", kFe00, kFe00},
    });
}

} // namespace
