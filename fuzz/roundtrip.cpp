// The whole road for one file: messages made of the input, encoded, framed one by one, carried in
// any pieces, unframed and parsed. They come back as they were sent.
#include "fuzz/input.h"
#include "tests/roundtrip/generator.h"

namespace
{

using namespace test;

// The parser's last record of each message; packets go before.
std::map<unsigned, cRecord> Carried(const std::string& stream, Choices& choices)
{
    cSMLTdec decoder(SMLT_MODE_TP);
    Parser parser;
    fuzz::InPieces(stream, choices, 100, 12000, [&](std::string_view piece, bool last) {
        cRecord ifRec;
        cRecord out;
        vorn::cMsg msg = Carrier(0, piece);
        const int result = decoder.Decode(msg, ifRec, out);
        fuzz::Require(result == (last ? SMLT_DECODE_FRAME : SMLT_DECODE_MORE),
                      "a frame ends with its last byte", std::to_string(result));
        fuzz::Require(
            (out.GetFirstPar("SmltFlags", 0, 0).GetUInt() & unsigned{BUF_FLAG_CRC_ERROR}) == 0,
            "the frame is good");
        parser.parser.SmlParser(out, parser.records, parser.count);
        return true;
    });
    std::map<unsigned, cRecord> last;
    for (const auto& [key, record] : parser.records)
        last[record.GetFirstParByPath("SmlStatus.MsgNoInFile", ".", 0, 0).GetUInt()] = record;
    return last;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    Choices pieces = input.Seeded();
    Choices choices = input.Front();
    cSMLTenc encoder(SMLT_MODE_TP);
    const std::vector<Sent> file = MakeFile(choices, choices.Below(4));
    std::string stream;
    for (const Sent& sent : file)
        stream += Framed(encoder, sent.Flags(), sent.Bytes());
    const std::map<unsigned, cRecord> records = Carried(stream, pieces);
    fuzz::Require(records.size() == file.size(), "every message arrives");
    for (std::size_t i = 0; i < file.size(); ++i) {
        const std::string difference =
            Difference(file[i], records.at(static_cast<unsigned>(i + 1)));
        fuzz::Require(difference.empty(), "a message comes back as it was sent", difference);
    }
    return 0;
}
