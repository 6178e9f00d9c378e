// The whole road: messages encoded, framed, carried in random pieces with noise between the frames,
// unframed and parsed. A damaged frame is told and costs no other frame.
#include "tests/roundtrip/generator.h"

#include <gtest/gtest.h>

namespace
{

using namespace test;

vorn::cMsg Carrier(unsigned flags, const std::string& bytes)
{
    cRecord ifRec, record;
    AppendBytes(ifRec, "RawData", bytes);
    record.AppendUIntPar("SmltFlags", flags, 0);
    record.AppendRecordPar("IfRec", ifRec, 0);
    return vorn::cMsg(record);
}

struct File {
    std::vector<Sent> messages;
    std::string frame;
    bool damaged = false;
};

File MakeFile(Generator& gen, cSMLTenc& encoder, unsigned seed)
{
    File file;
    const auto& kinds = Kinds();
    const unsigned within = 1 + gen.Below(4);
    for (unsigned i = 0; i <= within + 1; ++i) {
        const unsigned kind =
            i == 0 ? gen.Below(2) : (i > within ? 2 + gen.Below(2) : 4 + gen.Below(9));
        file.messages.push_back(Make(kinds[kind], seed + i, AtRandom));
        const Sent& sent = file.messages.back();
        vorn::cMsg msg =
            Carrier(sent.result.GetFirstPar("SmltFlags", 0, 0).GetUInt(), sent.Bytes());
        EXPECT_EQ(encoder.Encode(msg), SMLT_ENCODE_DONE) << "seed " << seed;
        const vorn::cRecordPar raw = msg.GetRecord().GetFirstParByPath("IfRec.RawData", ".", 0, 0);
        file.frame.append(raw.GetData(), static_cast<std::size_t>(raw.GetSize()));
    }
    return file;
}

// What arrived of each frame, told apart by where a frame begins.
struct Arrival {
    std::map<int, cRecord> records;
    bool crcError = false;
};

class Receiver
{
public:
    void Take(std::string bytes)
    {
        for (int result = SMLT_DECODE_LEFT; result == SMLT_DECODE_LEFT;) {
            cRecord ifRec, out;
            vorn::cMsg msg = Carrier(0, bytes);
            result = decoder.Decode(msg, ifRec, out);
            ASSERT_LE(result, SMLT_DECODE_LEFT);
            const unsigned flags = out.GetFirstPar("SmltFlags", 0, 0).GetUInt();
            if ((flags & BUF_FLAG_FIRST) != 0 || arrivals.empty())
                arrivals.emplace_back();
            Arrival& arrival = arrivals.back();
            arrival.crcError = arrival.crcError || (flags & BUF_FLAG_CRC_ERROR) != 0;
            parser.SmlParser(out, arrival.records, count);
            if ((flags & BUF_FLAG_LAST) != 0)
                Settle(arrival);
            bytes.erase(0, bytes.size() - static_cast<std::size_t>(decoder.GetRemaining()));
        }
    }
    std::vector<Arrival> arrivals{};

private:
    // At the end of a frame: damage may have left the parser waiting inside a file, where it would
    // take the next one for the rest of it.
    void Settle(Arrival& arrival)
    {
        parser.TimeoutEvent();
        for (const unsigned flags : {0U, unsigned{BUF_FLAG_LAST}}) {
            cRecord piece = Piece(flags, "");
            parser.SmlParser(piece, arrival.records, count);
        }
    }

    cSMLTdec decoder{SMLT_MODE_TP};
    cSMLP parser{7};
    int count = 0;
};

std::string Differences(const File& file, const Arrival& arrival)
{
    std::map<unsigned, cRecord> last; // of each message: packets go before
    for (const auto& [key, record] : arrival.records)
        last[record.GetFirstParByPath("SmlStatus.MsgNoInFile", ".", 0, 0).GetUInt()] = record;
    if (last.size() != file.messages.size())
        return "messages: " + std::to_string(last.size());
    std::string text;
    for (std::size_t i = 0; i < file.messages.size(); ++i)
        text += Difference(file.messages[i], last[static_cast<unsigned>(i + 1)]);
    return text;
}

TEST(RoundTrip, TheWholeRoadAndDamagedFrames)
{
    constexpr unsigned kFiles = 300;
    Generator gen(4711, 0);
    cSMLTenc encoder(SMLT_MODE_TP);
    std::vector<File> files;
    std::string stream;
    for (unsigned i = 0; i < kFiles; ++i) {
        File file = MakeFile(gen, encoder, 1000 + 10 * i);
        if (i % 10 == 7) { // one bit, anywhere behind the start sequence and before the end's
            const unsigned place = 8 + gen.Below(static_cast<unsigned>(file.frame.size()) - 16);
            file.frame[place] = static_cast<char>(file.frame[place] ^ (1 << gen.Below(8)));
            file.damaged = true;
        }
        stream += file.frame;
        for (unsigned noise = gen.Below(40); noise > 0; --noise)
            stream += static_cast<char>(gen.Below(0x100) & 0xEFU); // never an escape byte
        files.push_back(file);
    }
    Receiver receiver;
    for (std::size_t from = 0; from < stream.size();) {
        const std::size_t size = 1 + gen.Below(gen.Below(4) == 0 ? 9000 : 300);
        receiver.Take(stream.substr(from, size));
        from += size;
    }
    ASSERT_EQ(receiver.arrivals.size(), files.size());
    for (unsigned i = 0; i < kFiles; ++i) {
        const Arrival& arrival = receiver.arrivals[i];
        const std::string differences = Differences(files[i], arrival);
        if (!files[i].damaged) {
            EXPECT_FALSE(arrival.crcError) << "file " << i;
            EXPECT_EQ(differences, "") << "file " << i;
            continue;
        }
        EXPECT_TRUE(arrival.crcError || differences.find("Error=") != std::string::npos)
            << "file " << i << ": " << differences;
    }
}

} // namespace
