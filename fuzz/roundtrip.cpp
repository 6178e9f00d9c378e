// The whole road for one file: messages made of the input, encoded, framed one by one, carried in
// any pieces, unframed and parsed. They come back as they were sent.
#include "fuzz/input.h"
#include "tests/roundtrip/generator.h"

namespace
{

using namespace test;

// Room for the longest message and what its framing adds.
vorn::cRecord Framed(cSMLTenc& encoder, const Sent& sent)
{
    cRecord ifRec, record;
    AppendBytes(ifRec, "RawData", sent.Bytes());
    record.AppendUIntPar("SmltFlags", sent.result.GetFirstPar("SmltFlags", 0, 0).GetUInt(), 0);
    record.AppendRecordPar("IfRec", ifRec, 0);
    vorn::cMsg msg(record);
    fuzz::Require(encoder.Encode(msg) == SMLT_ENCODE_DONE, "a message can be framed");
    return msg.GetRecord();
}

// The parser's last record of each message; packets go before.
std::map<unsigned, cRecord> Carried(const std::string& stream, Choices& choices)
{
    cSMLTdec decoder(SMLT_MODE_TP);
    Parser parser;
    for (std::size_t from = 0; from < stream.size();) {
        const std::string piece =
            stream.substr(from, 1 + choices.Below(choices.Chance(50) ? 12000 : 100));
        cRecord ifRec, record, out;
        AppendBytes(ifRec, "RawData", piece);
        record.AppendRecordPar("IfRec", ifRec, 0);
        vorn::cMsg msg(record);
        const int result = decoder.Decode(msg, ifRec, out);
        from += piece.size();
        fuzz::Require(result == (from < stream.size() ? SMLT_DECODE_MORE : SMLT_DECODE_FRAME),
                      "a frame ends with its last byte", std::to_string(result));
        fuzz::Require(
            (out.GetFirstPar("SmltFlags", 0, 0).GetUInt() & unsigned{BUF_FLAG_CRC_ERROR}) == 0,
            "the frame is good");
        parser.parser.SmlParser(out, parser.records, parser.count);
    }
    std::map<unsigned, cRecord> last;
    for (const auto& [key, record] : parser.records)
        last[record.GetFirstParByPath("SmlStatus.MsgNoInFile", ".", 0, 0).GetUInt()] = record;
    return last;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    for (vorn::cUnit* unit : {LibSmle, LibSmlp, LibSmlt})
        unit->iLevel = 0;
    fuzz::Input input(data, size);
    Choices pieces = input.Seeded();
    Choices choices = input.Front();
    cSMLTenc encoder(SMLT_MODE_TP);
    std::vector<Sent> file;
    std::string stream;
    const unsigned within = choices.Below(4);
    for (unsigned i = 0; i <= within + 1; ++i) {
        const unsigned kind = i == 0        ? choices.Below(2)
                              : i <= within ? 4 + choices.Below(9)
                                            : 2 + choices.Below(2);
        file.push_back(Make(Kinds()[kind], choices, AtRandom));
        const cRecord framed = Framed(encoder, file.back());
        const vorn::cRecordPar raw = framed.GetFirstParByPath("IfRec.RawData", ".", 0, 0);
        stream.append(raw.GetData(), static_cast<std::size_t>(raw.GetSize()));
    }
    const std::map<unsigned, cRecord> records = Carried(stream, pieces);
    fuzz::Require(records.size() == file.size(), "every message arrives");
    for (std::size_t i = 0; i < file.size(); ++i) {
        const std::string difference =
            Difference(file[i], records.at(static_cast<unsigned>(i + 1)));
        fuzz::Require(difference.empty(), "a message comes back as it was sent", difference);
    }
    return 0;
}
