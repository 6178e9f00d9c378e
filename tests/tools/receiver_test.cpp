// The receive road tells the same whatever pieces the bytes arrive in: hand-made streams against a
// transcript.
#include "tests/support/captures.h"
#include "tests/support/hex.h"
#include "tests/support/parse.h"
#include "tests/support/rows.h"
#include "tools/reading/reading.h"
#include "tools/road/receiver.h"
#include "tools/road/teller.h"
#include "tools/simulation/meter.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
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

// The bytes that the table tells as a sum.
std::string Bytes(const std::string& sum)
{
    static const std::map<std::string, std::string> kBytes = [] {
        std::map<std::string, std::string> bytes = {
            {"file", ExampleFile()},
            {"frame", Framed(ExampleFile())},
            {"start", std::string(quarn::kFrameStartSequence)},
            {"escape", std::string(quarn::kFrameEscapeSize, quarn::kFrameEscape)},
            {"noise", test::Hex("00 1B 1B 01 01 FF 1B 1B 1B 1B 01 01 01 1B 55")},
            {"text", "hello meter, hello world"},
            {"x", "x"},
        };
        (bytes["badcrc"] = bytes["frame"]).back() ^= 1;
        (bytes["badfirst"] = bytes["file"])[0] = '\x75';
        (bytes["badfield"] = bytes["file"])[bytes["file"].find("\x04XYZ")] = '\x42';
        return bytes;
    }();
    std::string bytes;
    for (std::size_t at = 0; at < sum.size();) {
        if (sum[at] == '[') {
            const std::size_t end = sum.find(']', at);
            bytes += Framed(Bytes(sum.substr(at + 1, end - at - 1)));
            at = end + 2;
            continue;
        }
        const std::string term = sum.substr(at, sum.find('+', at) - at);
        const std::size_t sign = std::min(term.find_first_of("<>"), term.size());
        const std::string& whole = kBytes.at(term.substr(0, sign));
        if (sign == term.size())
            bytes += whole;
        else if (term[sign] == '<')
            bytes += whole.substr(0, std::stoul(term.substr(sign + 1)));
        else
            bytes += whole.substr(std::stoul(term.substr(sign + 1)));
        at += term.size() + 1;
    }
    return bytes;
}

TEST(Receiver, TellsTheSameInAnyPieces)
{
    for (const test::Row& row : test::Rows("tools/receiver.txt", 5)) {
        const std::string bytes = Bytes(row[1]);
        for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
            Transcript transcript;
            tool::cReceiver receiver(false, transcript);
            Feed(receiver, bytes.substr(0, cut));
            Feed(receiver, bytes.substr(cut));
            if (row[2] == "silence")
                receiver.Timeout();
            else if (row[2] == "restart")
                receiver.Restart();
            Feed(receiver, Bytes(row[3]));
            receiver.End();
            ASSERT_EQ(test::Trimmed(transcript.text.str()), row[4]) << row[0] << " cut at " << cut;
        }
        for (const std::size_t piece : {1U, 2U, 7U, 64U}) {
            if (row[2].empty()) {
                EXPECT_EQ(test::Trimmed(Tell(false, bytes, piece)), row[4])
                    << row[0] << " by " << piece;
            }
        }
    }
}

// What a person reads about a stream, and the words of its messages and frames.
struct Told : public tool::cTeller {
    explicit Told(const std::string& bytes) : cTeller(report)
    {
        testing::internal::CaptureStderr();
        tool::cReceiver receiver(false, *this);
        Feed(receiver, bytes);
        receiver.End();
        err = testing::internal::GetCapturedStderr();
    }
    void OnMessage(const tool::Frame& frame, const vorn::cRecord& record) override
    {
        cTeller::OnMessage(frame, record);
        transcript.OnMessage(frame, record);
    }
    void OnFrameEnd(const tool::Frame& frame) override
    {
        cTeller::OnFrameEnd(frame);
        transcript.OnFrameEnd(frame);
    }

    tool::cReport report;
    Transcript transcript;
    std::string err;
};

// Wherever the cut is, what came before it is reported as it is of the whole stream,
// and nothing counts as damage.
TEST(Receiver, CutsAreNoDamage)
{
    std::map<std::string, std::string> streams;
    for (unsigned seed = 1; seed <= 8; ++seed) { // the paddings differ
        std::string& frames = streams["simulated " + std::to_string(seed)];
        tool::cMeter meter(seed, seed);
        for (int i = 0; i < 2; ++i)
            meter.AppendFrame(1, frames);
    }
    for (const auto& path : test::Captures()) {
        const std::string bytes = test::ReadFile(path);
        const std::string stream = bytes.substr(bytes.find(quarn::kFrameStartSequence), 700);
        if (Told(stream).err.find("message") == std::string::npos)
            streams[path] = stream;
    }
    for (const auto& [name, stream] : streams) {
        const std::string whole = Told(stream).transcript.text.str();
        std::string before;
        for (std::size_t cut = 1; cut <= stream.size(); ++cut) {
            const Told told(stream.substr(0, cut));
            const std::string text = told.transcript.text.str();
            const bool ended = text.find("end", before.size()) != std::string::npos;
            ASSERT_EQ(told.report.Status(), tool::EXIT_GOOD) << name << " cut at " << cut;
            ASSERT_EQ(whole.substr(0, text.size()), text) << name << " cut at " << cut;
            ASSERT_EQ(std::count(told.err.begin(), told.err.end(), '\n'), ended ? 0 : 1)
                << name << " cut at " << cut << told.err;
            ASSERT_NE(ended, told.err.find("cut off by the end of the input\n") < told.err.size());
            before = text;
        }
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
