// The framing state machines, which work on runs of bytes, held call by call against the reference
// machines, which do one byte a step: any bytes, any pieces, any output buffers. What is framed and
// unframed comes back.
#include "fuzz/input.h"
#include "fuzz/reference.h"
#include "tests/support/hex.h"
#include "tests/support/over.h"

namespace
{

using test::Choices;
using test::Over;

// Rich in what the framing gives a meaning to, now and then long.
std::string Bytes(Choices& choices)
{
    const bool isLong = choices.Chance(2);
    std::string bytes(static_cast<std::size_t>(choices.Pick(0, isLong ? 40000 : 40)), 0);
    const int special = isLong ? 0 : choices.Pick(0, 90);
    for (char& c : bytes)
        c = static_cast<char>(choices.Chance(special)
                                  ? "\x1B\x1B\x1B\x1B\x1B\x01\x01\x1A"[choices.Below(8)]
                                  : choices.Pick(0, 255));
    return bytes;
}

std::string Stream(Choices& choices) // frames, whole and damaged, and what may stand between
{
    std::string stream;
    for (int parts = choices.Pick(1, 6); parts > 0; --parts) {
        std::string frame = Bytes(choices);
        std::string room(quarn::MaxFrameSize(frame.size()), 0);
        Over in(frame, frame.size(), BUF_FLAG_FIRST | BUF_FLAG_LAST);
        Over out(room, 0, 0);
        test::ReferenceTx(SMLT_MODE_TP).Process(&in, &out);
        frame = out.Content();
        char& hit = frame[choices.Below(static_cast<unsigned>(frame.size()))];
        switch (choices.Below(6)) {
        case 0:
            hit = static_cast<char>(hit + choices.Pick(1, 255));
            break;
        case 1: // another padding count
            frame[frame.size() - 3] = static_cast<char>(choices.Below(10));
            break;
        case 2:
            frame =
                Bytes(choices) +
                (choices.Chance(50) ? std::string(quarn::kFrameStartSequence)
                                    : std::string(quarn::kFrameEndSequence).append("\x02\0\0", 3));
            break;
        case 3:
            frame.resize(frame.size() / 2);
            break;
        default:
            break;
        }
        stream += frame;
    }
    return stream;
}

// All that a caller can see of a call.
std::string Seen(int result, const Over& in, const Over& out)
{
    return vorn::FormatString("result %d, in: %ld left, flags %02X, out: flags %02X, %ld free: ",
                              result, in.Left(), in.GetFlags(), out.GetFlags(), out.Free()) +
           test::ToHex(out.Content());
}

// Passes stream through machine and reference in the same pieces and output sizes, and returns the
// output. Untidy: with arbitrary flags, and output buffers that already hold something.
template <typename Reference, typename Machine>
std::string RunBoth(Choices& choices, int mode, const std::string& stream, int flags, bool untidy)
{
    Machine machine(mode);
    Reference reference(mode);
    std::string collected;
    const int most = choices.Chance(50) ? 9 : 20000;
    bool last = false;
    for (std::size_t at = 0; !last;) {
        std::string piece = stream.substr(at, static_cast<std::size_t>(choices.Pick(0, most)));
        last = (at += piece.size()) == stream.size();
        int pieceFlags = flags | (at == piece.size() ? int{BUF_FLAG_FIRST} : 0) |
                         (last ? int{BUF_FLAG_LAST} : 0);
        if (untidy && choices.Chance(10))
            pieceFlags = choices.Pick(0, 0x3F);
        std::string copy = piece;
        Over in(piece, piece.size(), pieceFlags);
        Over in2(copy, copy.size(), pieceFlags);
        for (int result = SMLTP_OUTPUT_FULL;
             result == SMLTP_OUTPUT_FULL || result == SMLTP_INPUT_LEFT;) {
            std::string room(static_cast<std::size_t>(choices.Pick(1, most)), 0);
            std::string room2 = room;
            const std::size_t held = untidy && choices.Chance(20) ? 1 : 0;
            Over out(room, held, 0);
            Over out2(room2, held, 0);
            result = machine.Process(&in, &out);
            const int expected = reference.Process(&in2, &out2);
            const bool same = result == expected && in.Left() == in2.Left() &&
                              in.GetFlags() == in2.GetFlags() &&
                              out.GetFlags() == out2.GetFlags() && out.Free() == out2.Free() &&
                              out.Content() == out2.Content();
            fuzz::Require(same, "the machine behaves like the reference",
                          same ? "" : Seen(result, in, out) + '\n' + Seen(expected, in2, out2));
            collected += out.Content();
        }
    }
    return collected;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    Choices choices = input.Seeded();
    const bool generated = choices.Chance(20);
    const std::string stream = generated ? Stream(choices) : input.Rest();
    const std::string payload = generated ? Bytes(choices) : stream;
    const int mode = choices.Chance(5) ? SMLT_MODE_RAW : SMLT_MODE_TP;
    const int flags = choices.Chance(90) ? BUF_FLAG_TP : 0;
    RunBoth<test::ReferenceTx, SmlTpTx>(choices, mode, payload, BUF_FLAG_SML, true);
    RunBoth<test::ReferenceRx, SmlTpRx>(choices, mode, stream, flags, true);

    const auto frame =
        RunBoth<test::ReferenceTx, SmlTpTx>(choices, SMLT_MODE_TP, payload, 0, false);
    const auto back =
        RunBoth<test::ReferenceRx, SmlTpRx>(choices, SMLT_MODE_TP, frame, BUF_FLAG_TP, false);
    fuzz::Require(back == payload, "a framed payload comes back", test::ToHex(payload));
    return 0;
}
