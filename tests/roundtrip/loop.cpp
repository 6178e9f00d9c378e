// The whole road: messages encoded, framed, carried in random pieces with noise between the frames,
// unframed and parsed. A damaged frame is told and costs no other frame.
#include "tests/roundtrip/generator.h"

#include <gtest/gtest.h>

namespace
{

using namespace test;

struct File {
    std::vector<Sent> messages;
    std::string frame;
    bool damaged = false;
};

File FramedFile(Choices& choices, cSMLTenc& encoder)
{
    File file{MakeFile(choices, 1 + choices.Below(4)), ""};
    for (const Sent& sent : file.messages)
        file.frame += Framed(encoder, sent.Flags(), sent.Bytes());
    return file;
}

// What arrived of a frame: the records from first on, up to those of the next.
struct Arrival {
    int first;
    bool crcError = false;
};

void Receive(cSMLTdec& decoder, Parser& parser, std::string bytes, std::vector<Arrival>& arrivals)
{
    for (int result = SMLT_DECODE_LEFT; result == SMLT_DECODE_LEFT;) {
        cRecord ifRec, out;
        vorn::cMsg msg = Carrier(0, bytes);
        result = decoder.Decode(msg, ifRec, out);
        ASSERT_LE(result, SMLT_DECODE_LEFT);
        const unsigned flags = out.GetFirstPar("SmltFlags", 0, 0).GetUInt();
        if ((flags & BUF_FLAG_FIRST) != 0 || arrivals.empty())
            arrivals.push_back({parser.count});
        if ((flags & BUF_FLAG_CRC_ERROR) != 0)
            arrivals.back().crcError = true;
        parser.Feed(flags, BytesAt(out, "SmlRawData"));
        if ((flags & BUF_FLAG_LAST) != 0)
            parser.Reset(); // damage may have left it inside a file
        bytes.erase(0, bytes.size() - static_cast<std::size_t>(decoder.GetRemaining()));
    }
}

std::string Differences(const File& file, const Parser& parser, int from, int to)
{
    std::map<unsigned, cRecord> last; // of each message: packets go before
    for (int key = from; key < to; ++key) {
        const cRecord& record = parser.records.at(key);
        last[record.GetFirstParByPath("SmlStatus.MsgNoInFile", ".", 0, 0).GetUInt()] = record;
    }
    if (last.size() != file.messages.size())
        return "messages: " + std::to_string(last.size());
    std::string text;
    for (std::size_t i = 0; i < file.messages.size(); ++i)
        text += Difference(file.messages[i], last[static_cast<unsigned>(i + 1)]);
    return text;
}

TEST(RoundTrip, TheWholeRoadAndDamagedFrames)
{
    Choices choices(4711);
    cSMLTenc encoder(SMLT_MODE_TP);
    std::vector<File> files;
    std::string stream;
    for (unsigned i = 0; i < 300; ++i) {
        File file = FramedFile(choices, encoder);
        if (i % 10 == 7) { // one bit, anywhere behind the start sequence and before the end's
            const unsigned place = 8 + choices.Below(static_cast<unsigned>(file.frame.size()) - 16);
            file.frame[place] = static_cast<char>(file.frame[place] ^ (1 << choices.Below(8)));
            file.damaged = true;
        }
        stream += file.frame;
        for (unsigned noise = choices.Below(40); noise > 0; --noise)
            stream += static_cast<char>(choices.Below(0x100) & 0xEFU); // never an escape byte
        files.push_back(file);
    }
    cSMLTdec decoder(SMLT_MODE_TP);
    Parser parser;
    std::vector<Arrival> arrivals;
    for (std::size_t from = 0; from < stream.size();) {
        const std::size_t size = 1 + choices.Below(choices.Below(4) == 0 ? 9000 : 300);
        Receive(decoder, parser, stream.substr(from, size), arrivals);
        from += size;
    }
    ASSERT_EQ(arrivals.size(), files.size());
    arrivals.push_back({parser.count});
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::string differences =
            Differences(files[i], parser, arrivals[i].first, arrivals[i + 1].first);
        const bool told = arrivals[i].crcError || differences.find("Error=") != std::string::npos;
        EXPECT_EQ(told, files[i].damaged) << "file " << i << ": " << differences;
        EXPECT_TRUE(differences.empty() || told) << "file " << i << ": " << differences;
    }
}

} // namespace
