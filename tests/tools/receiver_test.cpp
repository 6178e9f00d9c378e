// The receive road tells the same whatever pieces the bytes arrive in: hand-made streams against a
// transcript.
#include "tests/support/captures.h"
#include "tests/support/hex.h"
#include "tests/support/parse.h"
#include "tools/reading/reading.h"
#include "tools/road/receiver.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace
{

// One word per event: "m1.2" message 2 in frame 1, "m1.2(-6)" with an error, "x1" refused without
// a record, "end1:ok,236,3" (+ when inside a file), "cut2", "broken2", "gap10@5:0".
class Transcript : public tool::cReceiverEvents
{
public:
    Transcript()
    {
        for (vorn::cUnit* unit : {LibSmlp, LibSmlt})
            unit->iLevel = 0; // the damage is meant
    }
    void OnMessage(const tool::Frame& frame, const vorn::cRecord& record) override
    {
        const tool::MessageInfo info = tool::DescribeMessage(record);
        text << 'm' << frame.ullNumber << '.' << info.uiNumber;
        if (info.iError != 0)
            text << '(' << info.iError << ')';
        text << ' ';
    }
    void OnRefused(const tool::Frame& frame, int) override
    {
        text << 'x' << frame.ullNumber << ' ';
    }
    void OnFrameEnd(const tool::Frame& frame) override
    {
        text << "end" << frame.ullNumber << (frame.bCrcOk ? ":ok," : ":bad,") << frame.ullBytes
             << ',' << frame.ullMessages << (frame.bInsideFile ? "+ " : " ");
    }
    void OnFrameLost(const tool::Frame& frame, tool::eLOSS loss) override
    {
        text << (loss == tool::eLOSS::CUT_OFF ? "cut" : "broken") << frame.ullNumber << ' ';
    }
    void OnTimeout(const tool::Frame& frame) override
    {
        text << "silent" << frame.ullNumber << ' ';
    }
    void OnGap(std::uint64_t offset, std::uint64_t count, tool::eGAP gap) override
    {
        text << "gap" << count << '@' << offset << ':' << static_cast<int>(gap) << ' ';
    }

    std::ostringstream text;
};

template <typename Sink>
void Feed(Sink& sink, std::string_view bytes)
{
    sink.Feed(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

template <typename Sink>
void FeedPieces(Sink& sink, std::string_view bytes, std::size_t piece)
{
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size())))
        Feed(sink, bytes.substr(0, piece));
    sink.End();
}

std::string Tell(bool raw, const std::string& bytes, std::size_t piece)
{
    Transcript transcript;
    tool::cReceiver receiver(raw, transcript);
    FeedPieces(receiver, bytes, piece);
    return transcript.text.str();
}

std::string Framed(const std::string& payload)
{
    vorn::cMsg msg = test::Carrier(BUF_FLAG_SML | BUF_FLAG_FIRST | BUF_FLAG_LAST, payload);
    EXPECT_EQ(cSMLTenc(SMLT_MODE_TP).Encode(msg), SMLT_ENCODE_DONE);
    return test::BytesAt(msg.GetRecord(), "IfRec.RawData");
}

// The file in the first frame of the example: messages of which the last has 20 bytes.
std::string ExampleFile() { return test::ReadFile(QUARN_EXAMPLES "/household.bin").substr(8, 236); }

TEST(Receiver, TellsTheSameInAnyPieces)
{
    const std::string file = ExampleFile();
    const std::string frame = Framed(file);
    const std::string escape(4, '\x1B');
    const std::string start = escape + std::string(4, '\x01');
    const std::string noise = test::Hex("00 1B 1B 01 01 FF 1B 1B 1B 1B 01 01 01 1B 55");
    const std::string good1 = "m1.1 m1.2 m1.3 end1:ok,236,3 ";
    const std::string good2 = "m2.1 m2.2 m2.3 end2:ok,236,3 ";
    std::string badCrc = frame;
    badCrc.back() ^= 1;
    std::string badField = file;
    badField[file.find("\x04XYZ")] = '\x42';
    std::string badFirst = file;
    badFirst[0] = '\x75';

    const struct {
        const char* pcName;
        std::string bytes;
        std::string told;
    } rows[] = {
        {"nothing", "", ""},
        {"frames back to back", frame + frame, good1 + good2},
        {"two files in a frame", Framed(file + file),
         "m1.1 m1.2 m1.3 m1.1 m1.2 m1.3 end1:ok,472,6 "},
        {"noise all around", noise + frame + noise + frame + noise,
         "gap15@0:0 " + good1 + "gap15@267:1 " + good2 + "gap15@534:2 "},
        {"noise alone", noise, "gap15@0:3 "},
        {"cut off", frame + frame.substr(0, 150), good1 + "m2.1 cut2 "},
        {"cut off in the start sequence", frame + start.substr(0, 6), good1 + "cut2 "},
        {"cut off at an escape inside", frame.substr(0, 150) + escape, "m1.1 cut1 "},
        {"a new frame inside one", frame.substr(0, 230) + frame + frame,
         "m1.1 m1.2 broken1 " + good1 + good2},
        {"a new frame at once", start + frame, "broken1 " + good1},
        {"a new frame behind an escaped run", frame.substr(0, 60) + escape + escape + frame,
         "m1.1 m1.2(-11) broken1 " + good1},
        {"a start sequence escaped in the payload", Framed(file + start),
         "m1.1 m1.2 m1.3 x1 end1:ok,244,3 "},
        {"wrong checksum", badCrc + frame, "m1.1 m1.2 m1.3 end1:bad,236,3 " + good2},
        {"field of a wrong type", Framed(badField) + frame,
         "m1.1 m1.2(-11) end1:ok,236,2 " + good2},
        {"first message damaged", Framed(badFirst) + frame, "x1 end1:ok,236,0 " + good2},
        {"no SML", Framed("hello meter, hello world") + frame, "x1 end1:ok,24,0 " + good2},
        {"file without its close", Framed(file.substr(0, 216)) + frame,
         "m1.1 m1.2 end1:ok,216,2+ " + good2},
        {"message cut short", Framed(file.substr(0, 100)) + frame, "m1.1 end1:ok,100,1+ " + good2},
        {"close without its last byte", Framed(file.substr(0, 235)) + frame,
         "m1.1 m1.2 m1.3(-11) end1:ok,235,3+ " + good2},
        {"close that loses its last byte to a new frame", start + file + frame,
         "m1.1 m1.2 m1.3(-11) broken1 " + good1},
    };
    for (const auto& row : rows) {
        for (const std::size_t piece : {1U, 2U, 7U, 64U, 1000000U})
            EXPECT_EQ(Tell(false, row.bytes, piece), row.told) << row.pcName << " by " << piece;
        for (std::size_t cut = 1; cut < row.bytes.size(); ++cut) {
            Transcript transcript;
            tool::cReceiver receiver(false, transcript);
            Feed(receiver, row.bytes.substr(0, cut));
            Feed(receiver, row.bytes.substr(cut));
            receiver.End();
            ASSERT_EQ(transcript.text.str(), row.told) << row.pcName << " cut at " << cut;
        }
    }
}

// Silence ends a message that is unfinished, a restart the frame. What arrives of the message later
// is refused, behind the record (without a number) of a message whose kind nobody knows.
TEST(Receiver, SilenceAndRestart)
{
    const std::string file = ExampleFile();
    const std::string frame = Framed(file);
    const std::size_t close = frame.size() - 8; // what has arrived: all but end and window
    const struct {
        const char* pcName;
        std::size_t uiBefore; // of the frame, then silence or a restart
        bool bRestart;
        std::string rest;
        std::string told;
    } rows[] = {
        {"inside a message", 100, false, frame,
         "m1.1 silent1 m1.0 x1 broken1 m1.1 m1.2 m1.3 end1:ok,236,3 "},
        {"what is late is refused", 100, false, frame.substr(100),
         "m1.1 silent1 m1.0 x1 end1:ok,236,2 "},
        {"before a frame", 0, false, frame, "m1.1 m1.2 m1.3 end1:ok,236,3 "},
        {"behind a frame", 252, false, frame,
         "m1.1 m1.2 m1.3 end1:ok,236,3 m2.1 m2.2 m2.3 end2:ok,236,3 "},
        {"before its end", close, false, frame.substr(close),
         "m1.1 m1.2 silent1 m1.0 x1 end1:ok,236,3 "},
        {"restart in a frame", 100, true, frame.substr(200) + frame,
         "m1.1 cut1 gap52@100:0 m1.1 m1.2 m1.3 end1:ok,236,3 "},
        {"restart behind one", 252, true, "x" + frame,
         "m1.1 m1.2 m1.3 end1:ok,236,3 gap1@252:0 m2.1 m2.2 m2.3 end2:ok,236,3 "},
        {"restart in a start sequence", 5, true, frame.substr(5) + frame,
         "cut1 gap247@5:0 m1.1 m1.2 m1.3 end1:ok,236,3 "},
    };
    for (const auto& row : rows) {
        Transcript transcript;
        tool::cReceiver receiver(false, transcript);
        Feed(receiver, frame.substr(0, row.uiBefore));
        if (row.bRestart)
            receiver.Restart();
        else
            receiver.Timeout();
        Feed(receiver, row.rest);
        receiver.End();
        EXPECT_EQ(transcript.text.str(), row.told) << row.pcName;
    }
}

TEST(Receiver, RawFilesAreOneGoodFrame)
{
    const std::string file = ExampleFile();
    for (const std::size_t piece : {1U, 7U, 64U, 1000U}) {
        EXPECT_EQ(Tell(true, file + file, piece), "m1.1 m1.2 m1.3 m1.1 m1.2 m1.3 end1:ok,472,6 ");
        EXPECT_EQ(Tell(true, file.substr(0, 230), piece), "m1.1 m1.2 end1:ok,230,2+ ");
        EXPECT_EQ(Tell(true, file + "no SML", piece), "m1.1 m1.2 m1.3 x1 end1:ok,242,3 ");
    }
    EXPECT_EQ(Tell(true, "", 1), "");
}

} // namespace
