// The codecs: what they take from messages and put back, what they refuse and how they say so.
#include "tests/support/hex.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using test::Hex;

namespace
{

const std::string kFrame = "1B1B1B1B01010101 0A0B0C00 1B1B1B1B1A013598";

// A message with "SmltFlags" (unless negative) and, in "IfRec" beside another field, "RawData". The
// parameter named by mistyped is a boolean.
vorn::cMsg Message(int flags, const std::string& bytes, const std::string& mistyped = "")
{
    vorn::cRecord ifRec, record;
    if (mistyped == "RawData")
        ifRec.AppendBoolPar("RawData", true, 0);
    else
        ifRec.AppendDataPar("RawData", bytes.data(), static_cast<int>(bytes.size()), 0);
    ifRec.AppendUIntPar("Channel", 7, 0);
    if (mistyped == "SmltFlags")
        record.AppendBoolPar("SmltFlags", true, 0);
    else if (flags >= 0)
        record.AppendUIntPar("SmltFlags", static_cast<unsigned>(flags), 0);
    if (mistyped == "IfRec")
        record.AppendBoolPar("IfRec", true, 0);
    else
        record.AppendRecordPar("IfRec", ifRec, 0);
    record.AppendUIntPar("Time", 1, 0);
    return vorn::cMsg(record);
}

std::string Refusal(const std::string& text)
{
    return text.empty() ? "" : "LibSmlt[2]: " + text + '\n';
}

std::string Bytes(const vorn::cRecord& record, const char* path)
{
    const vorn::cRecordPar par = record.GetFirstParByPath(path, ".", 0, 0);
    return std::string(par.GetData(), static_cast<std::size_t>(par.GetSize()));
}

TEST(TransportCodec, FramesTheMessagesOfAFile)
{
    cSMLTenc encoder(SMLT_MODE_TP);
    std::string stream, payload;
    const struct {
        int flags;
        unsigned framed;
        std::size_t size;
    } rows[] = {{0x11, 0x21, 9}, {0x10, 0x20, 1000}, {0x12, 0x22, 13}, {0x13, 0x23, 40}};
    for (const auto& row : rows) {
        const std::string bytes(row.size, static_cast<char>(row.size));
        vorn::cMsg msg = Message(row.flags, bytes);
        ASSERT_EQ(encoder.Encode(msg), SMLT_ENCODE_DONE) << row.flags;
        const std::string framed = Bytes(msg.GetRecord(), "IfRec.RawData");
        vorn::cRecord ifRec, expected;
        ifRec.AppendUIntPar("Channel", 7, 0);
        ifRec.AppendDataPar("RawData", framed.data(), static_cast<int>(framed.size()), 0);
        expected.AppendUIntPar("Time", 1, 0);
        expected.AppendRecordPar("IfRec", ifRec, 0);
        expected.AppendUIntPar("SmltFlags", row.framed, 0);
        EXPECT_EQ(msg.GetRecord().ToString(), expected.ToString());
        stream += framed;
        payload += bytes;
    }
    cSMLTdec decoder(SMLT_MODE_TP);
    std::string back;
    int result = SMLT_DECODE_LEFT;
    for (std::string rest = stream; result == SMLT_DECODE_LEFT;) {
        vorn::cRecord ifRec, out;
        vorn::cMsg msg = Message(-1, rest);
        result = decoder.Decode(msg, ifRec, out);
        EXPECT_EQ(out.GetFirstPar("SmltFlags", 0, 0).GetUInt(), 0x03U);
        back += Bytes(out, "SmlRawData");
        rest.erase(0, rest.size() - static_cast<std::size_t>(decoder.GetRemaining()));
    }
    EXPECT_EQ(result, SMLT_DECODE_FRAME);
    EXPECT_EQ(test::ToHex(back), test::ToHex(payload));
}

TEST(TransportCodec, RefusesToEncode)
{
    const std::string noFlags = "GetFlags():-1- SMLTFLAGS invalid/missing/wrong type";
    const std::string noData = "GetMsgRawData():-1- MSGRAWDATA invalid/missing/wrong type";
    const std::string noFirst = "Encode(): BUF_FLAG_FIRST not set in state IDLE";
    const std::string overflow = "Encode(): Output-Buffer-Overflow or unexpected rc!";
    const std::string bytes(40, 'x');
    const struct {
        const char* name;
        bool open; // a frame is open before
        vorn::cMsg msg;
        std::string line;
        bool stays; // the frame stays open
    } rows[] = {
        {"not SML", true, Message(0x03, bytes), "", true},
        {"no flags", true, Message(-1, bytes), noFlags, true},
        {"flags mistyped", true, Message(0x10, bytes, "SmltFlags"), noFlags, true},
        {"data mistyped", true, Message(0x10, bytes, "RawData"), noData, true},
        {"interface record mistyped", true, Message(0x10, bytes, "IfRec"), noData, true},
        {"no frame open", false, Message(0x10, bytes), noFirst, false},
        {"file too short", false, Message(0x13, bytes.substr(0, 17)), overflow, false},
        {"first message too short", false, Message(0x11, bytes.substr(0, 7)), overflow, false},
        {"last message too short", true, Message(0x12, bytes.substr(0, 7)), overflow, false},
    };
    for (const auto& row : rows) {
        cSMLTenc encoder(SMLT_MODE_TP);
        vorn::cMsg first = Message(0x11, bytes), msg = row.msg,
                   next = Message(row.stays ? 0x10 : 0x11, bytes);
        if (row.open)
            encoder.Encode(first);
        const test::TraceCapture capture(LibSmlt);
        EXPECT_EQ(encoder.Encode(msg), SMLT_ENCODE_REFUSED) << row.name;
        EXPECT_EQ(capture.Text(), Refusal(row.line)) << row.name;
        EXPECT_TRUE(msg.GetRecord() == row.msg.GetRecord()) << row.name;
        EXPECT_EQ(encoder.Encode(next), SMLT_ENCODE_DONE) << row.name;
        EXPECT_EQ(next.GetRecord().GetFirstPar("SmltFlags", 0, 0).GetUInt(),
                  row.stays ? 0x20U : 0x21U)
            << row.name;
    }
}

TEST(TransportCodec, Decodes)
{
    const std::string frame = Hex(kFrame);
    const struct {
        const char* name;
        int mode;
        vorn::cMsg msg;
        std::string seen, line;
    } rows[] = {
        {"a frame", 2, Message(-1, frame), "0 0 3 0A0B0C", ""},
        {"bytes behind", 2, Message(-1, frame + frame), "2 20 3 0A0B0C", ""},
        {"a piece", 2, Message(-1, frame.substr(0, 12)), "1 0 1 0A", ""},
        {"noise", 2, Message(-1, Hex("0102")), "1 0 0 ", ""},
        {"raw", 1, Message(-1, frame), "1 0 0 " + test::ToHex(frame), ""},
        {"damaged", 2, Message(-1, Hex("1B1B1B1B010101011B1B1B1B1A000000")), "0 0 11 ",
         "CRC-ERROR"},
        {"no interface record", 2, Message(-1, frame, "IfRec"), "4 0 none",
         "GetMsgRawData():-0- IF_RECORD_LABEL invalid/missing/wrong type"},
        {"no data", 2, Message(-1, frame, "RawData"), "4 0 none",
         "GetMsgRawData():-0- RAWDATA_LABEL invalid/missing/wrong type"},
    };
    for (const auto& row : rows) {
        const test::TraceCapture capture(LibSmlt);
        cSMLTdec decoder(row.mode);
        vorn::cRecord ifRec, out;
        vorn::cMsg msg = row.msg;
        const int result = decoder.Decode(msg, ifRec, out);
        std::string seen = vorn::FormatString("%d %d ", result, decoder.GetRemaining());
        seen += out == vorn::cRecord() ? "none"
                                       : std::to_string(out.begin()->GetUInt()) + ' ' +
                                             test::ToHex(Bytes(out, "SmlRawData"));
        EXPECT_EQ(seen, row.seen) << row.name;
        EXPECT_EQ(capture.Text(), Refusal(row.line)) << row.name;
    }
}

TEST(TransportCodec, DecodesPieceByPieceAndForgetsALostFrame)
{
    const test::TraceCapture silence(LibSmlt, 0);
    cSMLTdec decoder(SMLT_MODE_TP);
    std::string payload;
    const auto decode = [&](vorn::cMsg msg) {
        vorn::cRecord ifRec, out;
        const int result = decoder.Decode(msg, ifRec, out);
        payload += Bytes(out, "SmlRawData");
        return result;
    };
    const std::string frame = Hex("1B1B1B1B01010101 1B1B1B02 1B1B1B1B1A009078");
    EXPECT_EQ(decode(Message(-1, frame + frame)), SMLT_DECODE_LEFT);
    EXPECT_EQ(decode(Message(-1, frame.substr(0, 11))), SMLT_DECODE_MORE);
    EXPECT_EQ(decoder.GetRemaining(), 0);
    EXPECT_EQ(decode(Message(-1, "", "RawData")), SMLT_DECODE_NO_DATA);
    EXPECT_EQ(decode(Message(-1, frame.substr(11))), SMLT_DECODE_MORE);
    payload.clear();
    for (std::size_t i = 0; i < frame.size(); ++i)
        EXPECT_EQ(decode(Message(-1, frame.substr(i, 1))),
                  i + 1 < frame.size() ? SMLT_DECODE_MORE : SMLT_DECODE_FRAME);
    EXPECT_EQ(payload, Hex("1B1B1B02"));
}

TEST(TransportCodec, PassesRawBytesThrough)
{
    cSMLTenc encoder(SMLT_MODE_RAW);
    for (const std::string& bytes : {std::string(), Hex("1B1B1B1B1B")}) {
        vorn::cMsg msg = Message(0x13, bytes);
        EXPECT_EQ(encoder.Encode(msg), SMLT_ENCODE_DONE);
        EXPECT_EQ(Bytes(msg.GetRecord(), "IfRec.RawData"), bytes);
        EXPECT_EQ(msg.GetRecord().GetFirstPar("SmltFlags", 0, 0).GetUInt(), 0U);
    }
}

} // namespace
