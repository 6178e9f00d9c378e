// Whole messages: bytes, flags, traces and CRC of every encode function, buffers of every size, and
// trees nested beyond all bounds.
#include "tests/encoder/encoder_support.h"
#include "tests/roundtrip/generator.h"
#include "tests/support/rows.h"

#include <algorithm>
#include <sstream>

namespace
{

using namespace test;
using vorn::cRecord;

const std::string kPlainHeader = "transactionId=x01 groupNo=u0 abortOnError=u0x100";

// The message as hex, without the CRC field and the end byte when these are right, else with; and a
// word when it is not whole.
std::string Encoded(Encoder encode, const cRecord& body, const std::string& head = kPlainHeader)
{
    cRecord fields = body;
    cRecord header = Rec(head);
    cRecord result = Rec("old=u1");
    EXPECT_EQ(encode(fields, header, result), SML_ENCODE_OK);
    EXPECT_EQ(result.GetParCount(nullptr, 0, 0), 2);
    const std::string bytes = Hex(DataHex(result, "SmlMsgRawData"));
    const char* const whole = SmlMessageIsWhole(result) ? "" : " incomplete";
    for (const std::size_t tail : {4U, 3U}) {
        const std::string message = bytes.substr(0, bytes.size() - tail);
        if (bytes == message + CrcField(message) + '\0')
            return ToHex(message) + whole;
    }
    return ToHex(bytes) + " without CRC" + whole;
}

const std::string kHeaderHex = "760201 6200 6200";
const std::string kHeader = Hexed(kHeaderHex);

// A row of messages.txt.
struct Message {
    explicit Message(const Row& row)
        : progress("8 Encode " + row[0]),
          kind(KindOf(std::stoul(row[2].substr(2, 4), nullptr, 16))), flags(row[1]),
          head("72" + row[2]), body(Rec(row[3])), fields(row[4]), empty(row[5]), missing(row[6])
    {
    }
    std::string progress;
    const Kind& kind;
    std::string flags, head;
    cRecord body;
    std::string fields, empty, missing;
};

std::vector<Message> Messages()
{
    std::vector<Message> messages;
    for (const Row& row : Rows("encoder/messages.txt", 7))
        messages.emplace_back(row);
    EXPECT_EQ(messages.size(), Kinds().size());
    return messages;
}

TEST(Encode, EveryMessageWithAllFieldsAndWithNone)
{
    for (const Message& message : Messages()) {
        SCOPED_TRACE(message.progress);
        {
            EncoderTrace trace(8);
            EXPECT_EQ(Encoded(message.kind.encode, message.body),
                      Hexed(kHeaderHex + message.head + message.fields));
            EXPECT_EQ(trace.Lines(), message.progress);
        }
        EncoderTrace trace(16);
        EXPECT_EQ(Encoded(message.kind.encode, Rec(""), ""),
                  Hexed("76010101" + message.head + message.empty));
        EXPECT_EQ(trace.Lines(), message.progress + " + " + message.missing +
                                     (message.missing.empty() ? "" : " + ") +
                                     "2 Rec2Hd: transactionId is missing/wrong! + "
                                     "2 Rec2Hd: groupNo is missing/wrong! + "
                                     "2 Rec2Hd: abortOnError is missing/wrong!");
        cRecord body;
        cRecord result;
        message.kind.encode(body, body, result);
        EXPECT_EQ(result.begin()->ToString(), "SmltFlags=" + message.flags);
    }
}

// A header that lacks something is traced, and the message is then made of objects: the same bytes.
TEST(Encode, PlainMessagesAreWrittenAsObjectsWouldBe)
{
    EncoderTrace trace(2);
    const auto expectSame = [](Encoder encode, const cRecord& body) {
        const std::string plain = Encoded(encode, body);
        const std::string made = Encoded(encode, body, "transactionId=x01 groupNo=u0");
        EXPECT_EQ(plain.substr(0, 14), kHeader) << body.ToString();
        EXPECT_EQ(kHeader.substr(0, 10) + "01" + plain.substr(14), made) << body.ToString();
    };
    for (const Message& message : Messages())
        expectSame(message.kind.encode, message.body);
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
    for (const Message& message : Messages()) {
        for (const vorn::cRecordPar& par : message.body) {
            cRecord without = message.body;
            without.DeletePar(par.GetName(), 0, 0);
            const std::string missing = Encoded(message.kind.encode, without);
            EXPECT_NE(missing, Encoded(message.kind.encode, message.body));
            std::istringstream values("u5 i5 U5 I5 b1 x05 {x=u1}");
            for (std::string value; values >> value;) {
                value = std::string(par.GetName()) + '=' + value;
                std::string_view text = value;
                cRecord wrong = without;
                AppendPars(wrong, text);
                if ((wrong.end() - 1)->GetType(1) != par.GetType(1)) {
                    EXPECT_EQ(Encoded(message.kind.encode, wrong), missing)
                        << message.progress << value;
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
    for (const Kind& kind : Kinds()) {
        const std::size_t size = kind.size;
        const bool isList = kind.encode == Encode_GetList_Response;
        std::string ballast = isList ? "valList={" : "parTreePath={";
        for (std::size_t i = 0; size >= SML_MAX_ENCODED_LIST && i < size / (isList ? 10 : 8) + 10;
             ++i)
            ballast += isList ? "valListEntry={value=u1} " : "path_Entry=U1 ";
        const std::size_t others = Encoded(kind.encode, Rec(ballast)).size() / 2;
        for (const std::size_t excess : {0U, 1U}) {
            const std::string field(size + excess - (others - 1 + 3 + 4), '\x55');
            cRecord body = Rec(ballast);
            for (const char* label : {"serverId", "globalSignature"})
                AppendBytes(body, label, field);
            const std::string hex = Encoded(kind.encode, body);
            if (excess == 0)
                EXPECT_EQ(hex.size() / 2 + 4, size) << kind.name;
            else
                EXPECT_NE(hex.find("incomplete"), std::string::npos) << kind.name;
        }
    }
}

// Without a line to trace, what can be written is written at once; the bytes are the same.
TEST(Encode, Details)
{
    for (const Row& row : Rows("encoder/details.txt", 5)) {
        const Encoder encode = KindOf(std::stoul(row[1], nullptr, 16)).encode;
        const std::string silent = (EncoderTrace(0), Encoded(encode, Rec(row[2])));
        EncoderTrace trace(2);
        const std::string end = Hexed(row[3]);
        const std::string hex = Encoded(encode, Rec(row[2]));
        EXPECT_EQ(hex, silent) << row[0];
        EXPECT_EQ(hex.substr(hex.size() - std::min(end.size(), hex.size())), end) << row[0];
        EXPECT_EQ(trace.Lines(), row[4]) << row[0];
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
        EXPECT_EQ(Encoded(Encode_Close_Request, Rec(""), header), Hexed(hex));
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
        EXPECT_EQ(SmlMessageIsWhole(result), size >= whole) << size;
    }
}

TEST(Encode, WholeMessages)
{
    const struct {
        const char* name;
        const char* bytes;
        bool whole;
    } rows[] = {
        {"no data", "u1", false},
        {"no bytes", "x", false},
        {"all there", "x7602010101 72630200 7101 6200 00", true},
        {"a long list", "x7602010101 72630200 F10001010101010101010101010101010101 63AABB 00",
         true},
        {"another list", "x7502010101 72630200 7101 6200 00", false},
        {"an element too few", "x7602010101 72630200 7201 6200 00", false},
        {"a string that lacks its end", "x7602010101 72630200 71850F01", false},
        {"a head that lacks its end", "x7602010101 72630200 718181", false},
        {"a string shorter than its head", "x7602010101 72630200 718001 6200 00", false},
        {"no CRC", "x7602010101 72630200 7101 01 00", false},
        {"no end", "x7602010101 72630200 7101 6200", false},
        {"more than one", "x7602010101 72630200 7101 6200 00 00", false},
    };
    EXPECT_FALSE(SmlMessageIsWhole(Rec("")));
    for (const auto& row : rows) {
        std::string text = std::string("SmlMsgRawData=") + row.bytes;
        text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
        EXPECT_EQ(SmlMessageIsWhole(Rec(text)), row.whole) << row.name;
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
        cRecord body = Rec("serverId=x41 parTreePath={path_Entry=U1}");
        body.AppendRecordPar("parTree", tree, 0);
        chain += levels <= most ? "73 07000000000002 01 01" : "73 07000000000001 01 01";
        EXPECT_EQ(Encoded(Encode_GetProcPar_Response, body),
                  Hexed(kHeaderHex + "72 630501 73 0241 71 07000000000001" + chain))
            << levels;
        EXPECT_EQ(trace.Lines(),
                  levels <= most ? "" : "2 Rec2Tree: child_List: more than 64 levels");
    }
}

} // namespace
