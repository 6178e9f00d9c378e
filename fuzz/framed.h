// Bytes of SML, a message or a whole file, through the library's encoder of frames.
#ifndef FUZZ_FRAMED_H
#define FUZZ_FRAMED_H

#include "fuzz/input.h"
#include "tests/roundtrip/generator.h"

#include <string>

namespace fuzz
{

// What the encoder makes of a piece with these flags: BUF_FLAG_FIRST opens a frame, BUF_FLAG_LAST
// ends it.
inline std::string Framed(cSMLTenc& encoder, unsigned flags, const std::string& bytes)
{
    vorn::cRecord ifRec;
    vorn::cRecord record;
    test::AppendBytes(ifRec, "RawData", bytes);
    record.AppendUIntPar("SmltFlags", flags, 0);
    record.AppendRecordPar("IfRec", ifRec, 0);
    vorn::cMsg msg(record);
    Require(encoder.Encode(msg) == SMLT_ENCODE_DONE, "a piece can be framed");
    const vorn::cRecordPar raw = msg.GetRecord().GetFirstParByPath("IfRec.RawData", ".", 0, 0);
    return {raw.GetData(), static_cast<std::size_t>(raw.GetSize())};
}

} // namespace fuzz

#endif
