// Drives the receive road in the tests: payload pieces into the parser, framed pieces through the
// codec into the parser. Every record that comes out is kept in order.
#ifndef TESTS_SUPPORT_PARSE_H
#define TESTS_SUPPORT_PARSE_H

#include "quarn/quarn.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace test
{

inline vorn::cRecord Piece(unsigned flags, std::string_view bytes)
{
    vorn::cRecord piece;
    piece.AppendUIntPar("SmltFlags", flags, 0);
    piece.AppendDataPar("SmlRawData", bytes.data(), static_cast<int>(bytes.size()), 0);
    return piece;
}

// One parser, its records and the results of its calls.
class Parser
{
public:
    int Feed(unsigned flags, std::string_view bytes)
    {
        vorn::cRecord piece = Piece(flags, bytes);
        results.push_back(parser.SmlParser(piece, records, count));
        return results.back();
    }
    // The bytes as one file, cut behind each of the given positions, in ascending order.
    void FeedFile(std::string_view bytes, const std::vector<std::size_t>& cuts)
    {
        std::size_t from = 0;
        for (std::size_t i = 0; i <= cuts.size(); ++i) {
            const std::size_t to = i < cuts.size() ? cuts[i] : bytes.size();
            const unsigned first = i == 0 ? unsigned{BUF_FLAG_FIRST} : 0U;
            const unsigned last = i == cuts.size() ? unsigned{BUF_FLAG_LAST} : 0U;
            Feed(first | last, bytes.substr(from, to - from));
            from = to;
        }
    }
    // What a host does where a frame has ended: gives up the unfinished message, then the file.
    void Reset()
    {
        parser.TimeoutEvent();
        Feed(0, "");
        parser.Reset_FileAttributes();
    }
    std::string Text() const
    {
        std::string text;
        for (const auto& [key, record] : records)
            text += std::to_string(key) + ' ' + record.ToString() + '\n';
        return text;
    }

    cSMLP parser{7};
    std::map<int, vorn::cRecord> records;
    int count = 0;
    std::vector<int> results;
};

// The byte string at a path; empty where there is none.
inline std::string BytesAt(const vorn::cRecord& record, const char* path)
{
    const vorn::cRecordPar par = record.GetFirstParByPath(path, ".", 0, 0);
    return std::string(par.GetData(), static_cast<std::size_t>(par.GetSize()));
}

// A message as an interface hands it to the codec, or takes it from there.
inline vorn::cMsg Carrier(unsigned flags, std::string_view bytes)
{
    vorn::cRecord ifRec;
    vorn::cRecord record;
    ifRec.AppendDataPar("RawData", bytes.data(), static_cast<int>(bytes.size()), 0);
    record.AppendUIntPar("SmltFlags", flags, 0);
    record.AppendRecordPar("IfRec", ifRec, 0);
    return vorn::cMsg(record);
}

// What the encoder of frames makes of a piece with these flags: BUF_FLAG_FIRST opens a frame,
// BUF_FLAG_LAST ends it. Empty when it refuses.
inline std::string Framed(cSMLTenc& encoder, unsigned flags, std::string_view bytes)
{
    vorn::cMsg msg = Carrier(flags, bytes);
    return encoder.Encode(msg) == SMLT_ENCODE_DONE ? BytesAt(msg.GetRecord(), "IfRec.RawData") : "";
}

// What the decoder makes of bytes that begin with frames: their payloads, up to the last end.
inline std::vector<std::string> Payloads(std::string_view bytes)
{
    std::vector<std::string> payloads;
    cSMLTdec decoder(SMLT_MODE_TP);
    for (int result = SMLT_DECODE_LEFT; result == SMLT_DECODE_LEFT;) {
        vorn::cMsg msg = Carrier(0, bytes);
        vorn::cRecord ifRec;
        vorn::cRecord out;
        result = decoder.Decode(msg, ifRec, out);
        if (result == SMLT_DECODE_FRAME || result == SMLT_DECODE_LEFT)
            payloads.push_back(BytesAt(out, "SmlRawData"));
        bytes.remove_prefix(bytes.size() - static_cast<std::size_t>(decoder.GetRemaining()));
    }
    return payloads;
}

inline vorn::cRecord Nested(const vorn::cRecord& record, const char* path)
{
    vorn::cRecord nested;
    record.GetFirstParByPath(path, ".", 0, 0).GetRecord(nested);
    return nested;
}

} // namespace test

#endif
