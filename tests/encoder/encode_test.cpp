// Whole messages: bytes, flags, traces and CRC of every encode function, buffers of every size, and
// trees nested beyond all bounds.
#include "tests/encoder/encoder_support.h"

#include <algorithm>
#include <sstream>

namespace
{

using namespace test;
using vorn::cRecord;
using Encoder = int (*)(cRecord& body, cRecord& header, cRecord& result);

template <int kChoice>
int Profile(cRecord& body, cRecord& header, cRecord& result)
{
    return Encode_GetProfile_Request(body, header, result, kChoice);
}

// The message as hex, without the CRC field and the end byte when these are right, else with.
std::string Encoded(Encoder encode, const cRecord& body,
                    cRecord header = Rec("transactionId=x01 groupNo=u0 abortOnError=u0x100"))
{
    cRecord fields = body;
    cRecord result = Rec("old=u1");
    EXPECT_EQ(encode(fields, header, result), SML_ENCODE_OK);
    EXPECT_EQ(result.GetParCount(nullptr, 0, 0), 2);
    const std::string bytes = Hex(DataHex(result, "SmlMsgRawData"));
    for (const std::size_t tail : {4U, 3U}) {
        const std::string message = bytes.substr(0, bytes.size() - tail);
        if (bytes == message + CrcField(message) + '\0')
            return ToHex(message);
    }
    return ToHex(bytes) + " without CRC";
}

const std::string kHeaderHex = "760201 6200 6200";
const std::string kHeader = Hexed(kHeaderHex);

const std::string kTime = "={type=u1 value=u0x5F5E1000} ";
const std::string kTimeHex = "726201655F5E1000 ";
const std::string kLocal = "={type=u3 value=u7 locOffset=i60 seaOffset=i-1} ";
const std::string kLocalHex = "726203736207523C52FF ";
const std::string kPath = "parTreePath={path_Entry=U0x0100010800FF path_Entry=U0x0100020800FF} ";
const std::string kPathHex = "72070100010800FF070100020800FF ";
const std::string kTree = "parTree={parName=U0x81 procParVal={type=u1 value=u5}} ";
const std::string kTreeHex = "7307000000000081726201620501 ";
const std::string kEntry = "valListEntry={objName=U1 value=b1} ";
const std::string kEntryHex = "7707000000000001010101014201 01 ";

struct MessageRow {
    const char* progress;
    Encoder encode;
    unsigned flags;
    std::size_t size; // of the longest message
    const char* head; // tag and list of fields
    std::string body; // with every field
    std::string fields;
    std::string empty;   // the fields of a body without any
    std::string missing; // and the lines for it
};

const std::string kNoPath = "2 Rec2TreePath: record <parTreePath> missing|";
const std::string kUser = "serverId=x41 username=x42 password=x43 ";
const std::string kProfile = kUser + "withRawdata=b1 beginTime" + kTime + "endTime" + kLocal +
                             kPath + kTree +
                             "object_List={object_List_Entry=U1 object_List_Entry=U2}";
const std::string kProfileHex = "024102420243 4201" + kTimeHex + kLocalHex + kPathHex +
                                "72 07000000000001 07000000000002" + kTreeHex;
const std::string kNoProfile =
    "2 GetProfileReq: beginTime is missing/wrong|2 GetProfileReq: endTime is missing/wrong|" +
    kNoPath + "16 GetProfileReq: object_List empty|";

const MessageRow kMessages[] = {
    {"OpenReq", Encode_Open_Request, 0x11, 500, "630100 77",
     "codepage=x40 clientId=x44 reqFileId=x45 smlVersion=u0x101 " + kUser,
     "0240 0244 0245 0241 0242 0243 6201", "01010101010101",
     "16 OpenReq: ClientId is missing!|16 OpenReq: ReqFileId is missing!|"},
    {"OpenResp", Encode_Open_Response, 0x11, 500, "630101 76",
     "codepage=x40 clientId=x44 reqFileId=x45 serverId=x41 smlVersion=u1 refTime" + kTime,
     "0240 0244 0245 0241" + kTimeHex + "6201", "010101010101",
     "2 OpenRes: ReqFileId is missing!|2 OpenRes: serverId is missing!|"},
    {"CloseReq", Encode_Close_Request, 0x12, 500, "630200 71", "globalSignature=xAABB", "03AABB",
     "01", ""},
    {"CloseResp", Encode_Close_Response, 0x12, 500, "630201 71", "globalSignature=xAABB", "03AABB",
     "01", ""},
    {"AttentionResp", Encode_Attention_Response, 0x10, 500, "63FF01 74",
     "serverId=x41 attentionNo=U0x8181C7C7FE00 attentionMsg=x42 " + kTree,
     "0241 078181C7C7FE00 0242" + kTreeHex, "01010101",
     "16 AttentionRes: serverId missing|16 AttentionRes: attentionNo missing|"},
    {"GetProcParReq", Encode_GetProcPar_Request, 0x10, 1000, "630500 75",
     kUser + kPath + "attribute=x44", "024102420243" + kPathHex + "0244", "0101017001", kNoPath},
    {"GetProcParResp", Encode_GetProcPar_Response, 0x10, 10000, "630501 73",
     "serverId=x41 " + kPath + kTree, "0241" + kPathHex + kTreeHex, "017001",
     "2 GetProcPar.Res: serverId missing|" + kNoPath},
    {"SetProcParReq", Encode_SetProcPar_Request, 0x10, 10000, "630600 75", kUser + kPath + kTree,
     "024102420243" + kPathHex + kTreeHex, "0101017001", kNoPath},
    {"GetProfilePackReq", Profile<0x300>, 0x10, 1000, "630300 79", kProfile, kProfileHex,
     "010101010101700101", kNoProfile},
    {"GetProfileListReq", Profile<0x400>, 0x10, 1000, "630400 79", kProfile, kProfileHex,
     "010101010101700101", kNoProfile},
    {"GetProfileListResp", Encode_GetProfileList_Response, 0x10, 4000, "630401 79",
     "serverId=x41 actTime" + kTime + "regPeriod=u900 valTime" + kLocal + kPath +
         "status=U0x100000000 RawData=x42 periodSignature=x43 "
         "period_List={SmlPeriodEntry={objName=U1 unit=u30 scaler=i-1 value=u0x1234}}",
     "0241" + kTimeHex + "630384" + kPathHex + kLocalHex +
         "690000000100000000 71 75 07000000000001 621E 52FF 631234 01 0242 0243",
     "010101700101010101",
     "2 GetProfileListResp: actTime is missing/wrong|" + kNoPath +
         "2 GetProfileListResp: valTime is missing/wrong|"
         "2 GetProfileListResp: status is missing/wrong|"
         "2 GetProfileListResp: periodList is missing/wrong|"},
    {"GetListReq", Encode_GetList_Request, 0x10, 1000, "630700 75",
     kUser + "clientId=x44 listName=U0x0100620AFFFF", "0244 0241 0242 0243 070100620AFFFF",
     "0101010101", ""},
    {"GetListRes", Encode_GetList_Response, 0x10, 4000, "630701 77",
     "clientId=x44 serverId=x41 listName=U0x0100620AFFFF actSensorTime" + kTime + "valList={" +
         kEntry + kEntry + kEntry + "} listSignature=x43 actGatewayTime" + kLocal,
     "0244 0241 070100620AFFFF" + kTimeHex + "73" + kEntryHex + kEntryHex + kEntryHex + "0243" +
         kLocalHex,
     "01010101010101",
     "2 GetListRes: ServerId is missing!|2 GetListRes: valList is missing/wrong|"},
};

TEST(Encode, EveryMessageWithAllFieldsAndWithNone)
{
    for (const MessageRow& row : kMessages) {
        const std::string progress = std::string("8 Encode ") + row.progress;
        {
            EncoderTrace trace(8);
            EXPECT_EQ(Encoded(row.encode, Rec(row.body)),
                      Hexed(kHeaderHex + "72" + row.head + row.fields));
            EXPECT_EQ(trace.Lines(), progress);
        }
        EncoderTrace trace(16);
        EXPECT_EQ(Encoded(row.encode, Rec(""), Rec("")),
                  Hexed("76010101 72" + std::string(row.head) + row.empty));
        EXPECT_EQ(trace.Lines(), progress + '|' + row.missing +
                                     "2 Rec2Hd: transactionId is missing/wrong!|"
                                     "2 Rec2Hd: groupNo is missing/wrong!|"
                                     "2 Rec2Hd: abortOnError is missing/wrong!");
        cRecord body;
        cRecord result;
        row.encode(body, body, result);
        EXPECT_EQ(result.begin()->ToString(), "SmltFlags=" + std::to_string(row.flags));
    }
}

// A header that lacks something is traced, and the message is then made of objects: the same bytes.
TEST(Encode, PlainMessagesAreWrittenAsObjectsWouldBe)
{
    EncoderTrace trace(2);
    const auto expectSame = [](Encoder encode, const cRecord& body) {
        const std::string plain = Encoded(encode, body);
        const std::string made = Encoded(encode, body, Rec("transactionId=x01 groupNo=u0"));
        EXPECT_EQ(plain.substr(0, 14), kHeader) << body.ToString();
        EXPECT_EQ(kHeader.substr(0, 10) + "01" + plain.substr(14), made) << body.ToString();
    };
    for (const MessageRow& row : kMessages)
        expectSame(row.encode, Rec(row.body));
    for (const int size : {0, 1, 13, 14, 15, 20, 21, 253, 254, 1200, 1201}) {
        const std::string data(2 * static_cast<std::size_t>(size), '5');
        expectSame(Encode_Close_Request, Rec("globalSignature=x" + data));
    }
    for (const char* bits :
         {"0x7F", "0x80", "0x7FFF", "0x8000", "0x7FFFFF", "0x800000", "0x7FFFFFFF", "0x80000000",
          "0xFFFFFFFF", "0x7FFFFFFFFFFF", "0x800000000000", "0xFFFFFFFFFFFF", "0x1000000000000",
          "0xFFFFFFFFFFFFFFFF"}) {
        std::string entries;
        for (const char* kind : {"u", "i", "U", "I", "b"})
            entries += "valListEntry={value=" + std::string(kind) + bits + " status=U" + bits +
                       " unit=u" + bits + " scaler=i" + bits + " objName=U" + bits + "} ";
        expectSame(Encode_GetList_Response, Rec("serverId=x41 valList={" + entries + "}"));
    }
}

// Whatever a field is replaced by, if it is not of the kind it should be, it counts as missing.
TEST(Encode, FieldsOfAWrongKindAreMissing)
{
    EncoderTrace trace(0);
    for (const MessageRow& row : kMessages) {
        for (const vorn::cRecordPar& par : Rec(row.body)) {
            cRecord without = Rec(row.body);
            without.DeletePar(par.GetName(), 0, 0);
            const std::string missing = Encoded(row.encode, without);
            EXPECT_NE(missing, Encoded(row.encode, Rec(row.body)));
            std::istringstream values("u5 i5 U5 I5 b1 x05 {x=u1}");
            for (std::string value; values >> value;) {
                value = std::string(par.GetName()) + '=' + value;
                std::string_view text = value;
                cRecord wrong = without;
                AppendPars(wrong, text);
                if ((wrong.end() - 1)->GetType(1) != par.GetType(1)) {
                    EXPECT_EQ(Encoded(row.encode, wrong), missing) << row.progress << value;
                }
            }
        }
    }
}

// For each message one that just fits its buffer, and one that is a byte too long and loses its
// longest field.
TEST(Encode, BufferSizes)
{
    EncoderTrace trace(0);
    for (const MessageRow& row : kMessages) {
        const bool isList = row.encode == Encode_GetList_Response;
        std::string ballast = isList ? "valList={" : "parTreePath={";
        for (std::size_t i = 0; row.size >= 4000 && i < row.size / (isList ? 10 : 8) + 10; ++i)
            ballast += isList ? "valListEntry={value=u1} " : "path_Entry=U1 ";
        const std::size_t others = Encoded(row.encode, Rec(ballast)).size() / 2;
        for (const std::size_t excess : {0U, 1U}) {
            const std::string field(row.size + excess - (others - 1 + 3 + 4), '\x55');
            cRecord body = Rec(ballast);
            for (const char* label : {"serverId", "globalSignature"})
                body.AppendDataPar(label, field.data(), static_cast<int>(field.size()), 0);
            EXPECT_EQ(Encoded(row.encode, body).size() / 2 + 4 == row.size, excess == 0)
                << row.progress;
        }
    }
}

struct DetailRow {
    const char* name;
    Encoder encode;
    std::string body;
    std::string end; // of the message
    const char* lines;
};

const std::string kTimes = "actTime" + kTime + "valTime" + kTime + "status=U0 parTreePath={} ";

const DetailRow kDetails[] = {
    {"empty value list", Encode_GetList_Response, "serverId=x41 valList={}",
     "77 01 0241 01 01 70 01 01", ""},
    {"empty period list", Encode_GetProfileList_Response, kTimes + "period_List={}",
     "6200 70 01 01", ""},
    {"raw data under the label of the parser", Encode_GetProfileList_Response,
     kTimes + "period_List={} rawdata=x42", "6200 70 01 01", ""},
    {"periods that are none", Encode_GetProfileList_Response,
     kTimes + "period_List={SmlPeriodEntry=u1}", "6200 70 01 01",
     "2 GetProfileListResp: Problem with PeriodEntry"},
    {"values that are none", Encode_GetList_Response,
     "serverId=x41 valList={valListEntry=u1 " + kEntry + "valListEntry={objName=U1} " + kEntry +
         "valListEntry={objName=U1 value={}}}",
     "01 72" + kEntryHex + kEntryHex + "01 01",
     "2 GetListRes: Problem with valList_Entry|2 Rec2ListEntry: <value> is missing/wrong!|"
     "2 Rec2ListType: RecParVal invalid/empty|2 RecParVal= {}\n"},
    {"a list between other things", Encode_GetList_Response,
     "serverId=x41 valList={other=u1 " + kEntry + "x={value=u1} " + kEntry + "}",
     "01 72" + kEntryHex + "7701010101016201 01" + "01 01",
     "2 Rec2ListEntry: <objName> is missing/wrong!"},
    {"a period without value", Encode_GetProfileList_Response,
     kTimes + "period_List={SmlPeriodEntry={objName=U1 unit=u1 scaler=i0}}", "6200 70 01 01",
     "2 Rec2PerEntry: <value> is missing/wrong!"},
    {"no objects, and a time without type", Profile<0x400>,
     kPath + "beginTime" + kTime + "endTime={value=u1} object_List={}",
     kTimeHex + "01" + kPathHex + "01 01", "2 GetProfileReq: object_List-count = 0"},
    {"a byte string too long", Encode_GetList_Request,
     "serverId=x41 clientId=x" + std::string(2402, '5'), "75 01 0241 01 01 01", ""},
};

TEST(Encode, Details)
{
    for (const DetailRow& row : kDetails) {
        EncoderTrace trace(2);
        const std::string end = Hexed(row.end);
        const std::string hex = Encoded(row.encode, Rec(row.body));
        EXPECT_EQ(hex.substr(hex.size() - std::min(end.size(), hex.size())), end) << row.name;
        EXPECT_EQ(trace.Lines(), row.lines) << row.name;
    }
    EncoderTrace trace(2);
    cRecord body;
    cRecord result = Rec("old=u1");
    EXPECT_EQ(Encode_GetProfile_Request(body, body, result, 0x500), SML_ENCODE_BAD_CHOICE);
    EXPECT_EQ(result, Rec("old=u1"));
    EXPECT_EQ(trace.Lines(), "2 Encode GetProfileReq: wrong parameter 'iChoice'");
}

// About one CRC in 256 has the low byte 00 and then a field of two bytes.
TEST(Encode, CrcOfEitherForm)
{
    int shortForms = 0;
    for (int id = 1000; id < 3000; ++id) {
        const std::string hex = "7603" + std::to_string(id) + "6200620072630200 7101";
        const std::string header =
            "transactionId=x" + std::to_string(id) + " groupNo=u0 abortOnError=u0";
        EXPECT_EQ(Encoded(Encode_Close_Request, Rec(""), Rec(header)), Hexed(hex));
        shortForms += CrcField(Hex(hex)).size() == 2 ? 1 : 0;
    }
    EXPECT_GT(shortForms, 0);
}

// A message in pieces, each written whole or not at all: how many free bytes a piece needs, if more
// than it has, and its bytes.
constexpr char kPieces[] = "76 0201 6200 6200 72 630101 76 01 070100620AFFFF 034142 034142 "
                           "726203 12:736207523C52FF 6200";

std::string Truncated(std::size_t size)
{
    std::string bytes;
    const auto put = [&](std::size_t needs, const std::string& piece) {
        if (size - bytes.size() >= needs)
            bytes += piece;
    };
    std::istringstream pieces(kPieces);
    for (std::string piece; pieces >> piece;) {
        const std::size_t colon = piece.find(':');
        const std::string hex = Hex(piece.substr(colon + 1));
        put(colon != std::string::npos ? std::stoul(piece) : hex.size(), hex);
    }
    const std::string crc = CrcField(bytes);
    put(crc.size(), crc);
    put(1, std::string(1, '\0'));
    return ToHex(bytes);
}

TEST(Encode, BuffersOfEverySize)
{
    EncoderTrace trace(0);
    Sml_OctetString transactionId("\1", 1, -1);
    Sml_OctetString absent;
    Sml_OctetString serverId("AB", 2, -1);
    Sml_OctetString name(0x0100620AFFFFLL);
    Sml_Unsigned8 zero(0);
    Sml_Time time(3, 7, 60, -1);
    Sml_Open_Response body(&absent, &name, &serverId, &serverId, &time, &zero);
    Sml_Message message(&transactionId, &zero, &zero, &body);
    const std::size_t whole = Truncated(1000).size() / 2;
    for (std::size_t size = 0; size <= whole + 1; ++size) {
        cRecord result = Rec("old=u1");
        SmlMessageToBin(message, result, 7, "x", static_cast<long>(size));
        EXPECT_EQ(DataHex(result, "SmlMsgRawData"), Truncated(size)) << size;
        EXPECT_EQ(result.begin()->ToString(), "SmltFlags=7");
    }
}

TEST(Encode, TreesOfAnyDepth)
{
    const int most = static_cast<int>(SML_MAX_TREE_DEPTH);
    for (const int levels : {1, 2, most, most + 1, 10000}) {
        EncoderTrace trace(2);
        std::string chain; // the innermost node has a name only
        cRecord tree = Rec("parName=U2");
        for (int i = 1; i < levels; ++i) {
            cRecord children;
            children.AppendRecordPar("parTree", tree, 0);
            tree = Rec("parName=U1");
            tree.AppendRecordPar("child_List", children, 0);
            if (i < most)
                chain += "73 07000000000001 01 71";
        }
        cRecord body = Rec(kPath + "serverId=x41");
        body.AppendRecordPar("parTree", tree, 0);
        chain += levels <= most ? "73 07000000000002 01 01" : "73 07000000000001 01 01";
        EXPECT_EQ(Encoded(Encode_GetProcPar_Response, body),
                  Hexed(kHeaderHex + "72 630501 73 0241" + kPathHex + chain))
            << levels;
        EXPECT_EQ(trace.Lines(),
                  levels <= most ? "" : "2 Rec2Tree: child_List: more than 64 levels");
    }
}

} // namespace
