// The codecs: what they take from messages and put back, what they refuse and how they say so.
#include "tests/support/parse.h"
#include "tests/support/record_text.h"
#include "tests/support/rows.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using test::BytesAt;
using test::Carrier;
using test::Hex;
using test::Rec;

namespace
{

std::string Line(const std::string& text)
{
    return text.empty() ? "" : "LibSmlt[2]: " + text + '\n';
}

TEST(TransportCodec, FramesTheMessagesOfAFile)
{
    cSMLTenc encoder(SMLT_MODE_TP);
    std::string stream, payload;
    const struct {
        unsigned flags, framed;
        std::size_t size;
    } rows[] = {{0x11, 0x21, 9}, {0x10, 0x20, 1000}, {0x12, 0x22, 13}, {0x13, 0x23, 40}};
    for (const auto& row : rows) {
        const std::string bytes(row.size, static_cast<char>(row.size));
        vorn::cMsg msg(Rec("SmltFlags=u" + std::to_string(row.flags) + " IfRec={RawData=x" +
                           test::ToHex(bytes) + " Channel=u7} Time=u1"));
        ASSERT_EQ(encoder.Encode(msg), SMLT_ENCODE_DONE) << row.flags;
        const std::string framed = BytesAt(msg.GetRecord(), "IfRec.RawData");
        EXPECT_EQ(msg.GetRecord(), Rec("Time=u1 IfRec={Channel=u7 RawData=x" + test::ToHex(framed) +
                                       "} SmltFlags=u" + std::to_string(row.framed)));
        stream += framed;
        payload += bytes;
    }
    std::string back;
    for (const std::string& unframed : test::Payloads(stream))
        back += unframed;
    EXPECT_EQ(test::ToHex(back), test::ToHex(payload));
}

TEST(TransportCodec, RefusesToEncode)
{
    const std::string bytes(40, 'x');
    for (const test::Row& row : test::Rows("transport/refused.txt", 5)) {
        SCOPED_TRACE(row[0]);
        const bool stays = row[4] == "yes";
        cSMLTenc encoder(SMLT_MODE_TP);
        vorn::cMsg first = Carrier(0x11, bytes), msg(Rec(row[2])),
                   next = Carrier(stays ? 0x10 : 0x11, bytes);
        if (row[1] == "yes")
            encoder.Encode(first);
        const test::TraceCapture capture(LibSmlt);
        EXPECT_EQ(encoder.Encode(msg), SMLT_ENCODE_REFUSED);
        EXPECT_EQ(capture.Text(), Line(row[3]));
        EXPECT_EQ(msg.GetRecord(), Rec(row[2]));
        EXPECT_EQ(encoder.Encode(next), SMLT_ENCODE_DONE);
        EXPECT_EQ(next.GetRecord().GetFirstPar("SmltFlags", 0, 0).GetUInt(), stays ? 0x20U : 0x21U);
    }
}

TEST(TransportCodec, Decodes)
{
    for (const test::Row& row : test::Rows("transport/unframed.txt", 5)) {
        const test::TraceCapture capture(LibSmlt);
        cSMLTdec decoder(std::stoi(row[1]));
        vorn::cRecord ifRec, out;
        vorn::cMsg msg(Rec(row[2]));
        const int result = decoder.Decode(msg, ifRec, out);
        std::string seen = vorn::FormatString("%d %d ", result, decoder.GetRemaining());
        seen += out == vorn::cRecord() ? "none"
                                       : std::to_string(out.begin()->GetUInt()) + ' ' +
                                             test::ToHex(BytesAt(out, "SmlRawData"));
        EXPECT_EQ(test::Trimmed(seen), row[3]) << row[0];
        EXPECT_EQ(capture.Text(), Line(row[4])) << row[0];
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
        payload += BytesAt(out, "SmlRawData");
        return result;
    };
    const std::string frame = Hex("1B1B1B1B01010101 1B1B1B02 1B1B1B1B1A009078");
    EXPECT_EQ(decode(Carrier(0, frame + frame)), SMLT_DECODE_LEFT);
    EXPECT_EQ(decode(Carrier(0, frame.substr(0, 11))), SMLT_DECODE_MORE);
    EXPECT_EQ(decoder.GetRemaining(), 0);
    EXPECT_EQ(decode(vorn::cMsg()), SMLT_DECODE_NO_DATA);
    EXPECT_EQ(decode(Carrier(0, frame.substr(11))), SMLT_DECODE_MORE);
    payload.clear();
    for (std::size_t i = 0; i < frame.size(); ++i)
        EXPECT_EQ(decode(Carrier(0, frame.substr(i, 1))),
                  i + 1 < frame.size() ? SMLT_DECODE_MORE : SMLT_DECODE_FRAME);
    EXPECT_EQ(payload, Hex("1B1B1B02"));
}

// The steps taken alone, nothing framed between them: the output buffer holds no byte and no flag.
TEST(TransportCodec, StepByStep)
{
    const std::string none = "GetFlags():-0- SMLTFLAGS invalid/missing/wrong type",
                      noData = "GetMsgRawData():-0- MSGRAWDATA invalid/missing/wrong type",
                      noRecord = "GetMsgRawData():-0- IF_RECORD_LABEL invalid/missing/wrong type",
                      noRaw = "GetMsgRawData():-0- RAWDATA_LABEL invalid/missing/wrong type";
    const struct {
        std::string message;
        int flags, data;
        std::string replaced, trace, decoderTrace;
    } rows[] = {
        {"SmltFlags=u19 IfRec={RawData=x01 Channel=u7} Time=u1", 1, 1,
         "Time=u1 IfRec={Channel=u7 RawData=x} SmltFlags=u0", "", ""},
        {"SmltFlags=u3 IfRec={RawData=x}", 0, 1, "IfRec={RawData=x} SmltFlags=u0", "", ""},
        {"SmltFlags=i16 IfRec={RawData=u1}", 0, 0, "=", Line(none) + Line(noData), Line(noRaw)},
        {"IfRec=b1", 0, 0, "=", Line(none) + Line(noData), Line(noRecord)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        cSMLTenc encoder(SMLT_MODE_TP);
        cSMLTdec decoder(SMLT_MODE_TP);
        const test::TraceCapture capture(LibSmlt);
        const vorn::cRecord before = Rec(row.message), old = Rec("old=u1");
        vorn::cMsg msg(before);
        EXPECT_EQ(encoder.GetFlags(msg), row.flags);
        EXPECT_EQ(encoder.GetMsgRawData(msg), row.data);
        EXPECT_EQ(capture.Text(), row.trace);
        EXPECT_EQ(encoder.ReplaceRecord(msg), row.data == 1);
        EXPECT_EQ(msg.GetRecord(), row.data == 1 ? Rec(row.replaced) : before);
        encoder.ReleaseBuffers();
        EXPECT_FALSE(encoder.ReplaceRecord(msg));

        vorn::cRecord ifRec, out = old;
        EXPECT_EQ(decoder.GetMsgRawData(vorn::cMsg(before), ifRec), row.data);
        EXPECT_EQ(ifRec, test::Nested(before, "IfRec"));
        EXPECT_EQ(capture.Text(), row.trace + row.decoderTrace);
        EXPECT_EQ(decoder.AppendRecords(out), row.data == 1);
        EXPECT_EQ(out, row.data == 1 ? Rec("old=u1 SmltFlags=u0 SmlRawData=x") : old);
        decoder.ReleaseBuffers();
        EXPECT_FALSE(decoder.AppendRecords(out));
    }
}

TEST(TransportCodec, PassesRawBytesThrough)
{
    cSMLTenc encoder(SMLT_MODE_RAW);
    for (const std::string& bytes : {std::string(), Hex("1B1B1B1B1B")}) {
        vorn::cMsg msg = Carrier(0x13, bytes);
        EXPECT_EQ(encoder.Encode(msg), SMLT_ENCODE_DONE);
        EXPECT_EQ(BytesAt(msg.GetRecord(), "IfRec.RawData"), bytes);
        EXPECT_EQ(msg.GetRecord().GetFirstPar("SmltFlags", 0, 0).GetUInt(), 0U);
    }
}

} // namespace
