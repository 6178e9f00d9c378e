// The framing state machines: known frames byte by byte, then random streams held against the
// reference machines call by call.
#include "tests/support/hex.h"
#include "tests/support/trace_capture.h"
#include "tests/transport/reference.h"

#include <gtest/gtest.h>

#include <random>

using test::Hex;

namespace
{

// All that a caller can see of a call.
std::string Seen(int result, const cBuffer& in, const cBuffer& out)
{
    return vorn::FormatString("result %d, in: %ld left, flags %02X, out: flags %02X, %ld free: ",
                              result, in.Left(), in.GetFlags(), out.GetFlags(), out.Free()) +
           test::ToHex({out.ReadPtr(), static_cast<std::size_t>(out.Left())});
}

// A buffer over the bytes of storage, of which the first filled count as written.
struct Over : cBuffer {
    Over(std::string& storage, std::size_t filled, int flags)
        : cBuffer(storage.data(), static_cast<long>(storage.size()), flags, 0)
    {
        Commit(static_cast<long>(filled));
    }
};

template <typename Machine>
std::string CallOnce(Machine& machine, std::string bytes, int flags)
{
    Over in(bytes, bytes.size(), flags);
    std::string room(100, 0);
    Over out(room, 0, 0);
    const int result = machine.Process(&in, &out);
    return vorn::FormatString("%d %02X ", result, out.GetFlags()) +
           test::ToHex({out.ReadPtr(), static_cast<std::size_t>(out.Left())});
}

const std::string kBegin = "1B1B1B1B01010101";

TEST(Transport, FramesAndUnframes)
{
    const struct {
        const char* name;
        std::string payload, rest;
    } rows[] = {
        {"no payload", "", "1B1B1B1B1A00C6E5"},
        {"a run of four escapes", "011B1B1B1B02", "011B1B1B1B1B1B1B1B0200001B1B1B1B1A027A58"},
        {"nothing but escapes", "1B1B1B1B", "1B1B1B1B1B1B1B1B1B1B1B1B1A0094FC"},
        {"five escapes", "1B1B1B1B1B", "1B1B1B1B1B1B1B1B1B0000001B1B1B1B1A031622"},
        {"three escapes", "1B1B1B02", "1B1B1B021B1B1B1B1A009078"},
        {"escapes at the end", "021B1B", "021B1B001B1B1B1B1A01FEC9"},
    };
    for (const auto& row : rows) {
        SmlTpTx tx(SMLT_MODE_TP);
        EXPECT_EQ(CallOnce(tx, Hex(row.payload), 0x03), "5 23 " + kBegin + row.rest) << row.name;
        SmlTpRx rx(SMLT_MODE_TP);
        EXPECT_EQ(CallOnce(rx, Hex(kBegin + row.rest), 0x20), "5 03 " + row.payload) << row.name;
    }
}

TEST(Transport, UnframesDamagedStreams)
{
    const std::string frame = kBegin + "0A0B0C001B1B1B1B1A01";
    const struct {
        const char* name;
        std::string stream, seen;
        bool bad;
    } rows[] = {
        {"noise before", "001B1B0101" + frame + "3598", "5 03 0A0B0C", false},
        {"a fifth escape before", "1B" + frame + "3598", "5 03 0A0B0C", false},
        {"bytes behind", frame + "359800", "4 03 0A0B0C", false},
        {"wrong CRC", frame + "3498", "5 0B 0A0B0C", true},
        {"cut before its last byte", frame + "35", "1 01 0A0B0C", false},
        {"a second start", kBegin + "01020304" + frame + "3598", "5 03 0A0B0C", false},
        {"an unknown escape", kBegin + "0A1B1B1B1B020304050B1B1B1B1B1A000000", "5 0B 0A0B", true},
        {"padding count above three", kBegin + "0A0B0C001B1B1B1B1A040000", "5 0B 0A0B0C00", true},
        {"more padding than content", kBegin + "0A1B1B1B1B1A020000", "5 0B ", true},
        {"content shorter than the window", kBegin + "0A001B1B1B1B1A010000", "5 0B 0A", true},
    };
    for (const auto& row : rows) {
        const test::TraceCapture capture(LibSmlt);
        SmlTpRx rx(SMLT_MODE_TP);
        EXPECT_EQ(CallOnce(rx, Hex(row.stream), 0x20), row.seen) << row.name;
        EXPECT_EQ(capture.Text(), row.bad ? "LibSmlt[2]: CRC-ERROR\n" : "") << row.name;
    }
}

struct Random {
    std::mt19937 engine;

    int Pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(engine); }
    bool Chance(int percent) { return Pick(1, 100) <= percent; }
    std::string Bytes() // rich in what the framing gives a meaning to, now and then long
    {
        const bool isLong = Chance(2);
        std::string bytes(static_cast<std::size_t>(Pick(0, isLong ? 40000 : 40)), 0);
        const int special = isLong ? 0 : Pick(0, 90);
        for (char& c : bytes)
            c = static_cast<char>(Chance(special) ? "\x1B\x1B\x1B\x1B\x1B\x01\x01\x1A"[Pick(0, 7)]
                                                  : Pick(0, 255));
        return bytes;
    }
    std::string Stream() // frames, whole and damaged, and what may stand between and inside them
    {
        std::string stream;
        for (int parts = Pick(1, 6); parts > 0; --parts) {
            std::string frame = Bytes(), room(2 * frame.size() + 19, 0);
            Over in(frame, frame.size(), 0x03), out(room, 0, 0);
            test::ReferenceTx(SMLT_MODE_TP).Process(&in, &out);
            frame.assign(out.ReadPtr(), static_cast<std::size_t>(out.Left()));
            char& hit =
                frame[static_cast<std::size_t>(Pick(0, static_cast<int>(frame.size()) - 1))];
            switch (Pick(0, 5)) {
            case 0:
                hit = static_cast<char>(hit + Pick(1, 255));
                break;
            case 1: // another padding count
                frame[frame.size() - 3] = static_cast<char>(Pick(0, 9));
                break;
            case 2:
                frame = Bytes() + Hex(Chance(50) ? "1B1B1B1B01010101" : "1B1B1B1B1A020000");
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
};

// Passes stream through machine and reference in the same random pieces and output sizes, compares
// what each call shows, and returns the output. Untidy: with arbitrary flags, and output buffers
// that already hold something.
template <typename Reference, typename Machine>
std::string RunBoth(Random& random, int mode, const std::string& stream, int flags, bool untidy)
{
    Machine machine(mode);
    Reference reference(mode);
    std::string collected;
    const int most = random.Chance(50) ? 9 : 20000;
    bool last = false;
    for (std::size_t at = 0; !last;) {
        std::string piece = stream.substr(at, static_cast<std::size_t>(random.Pick(0, most)));
        last = (at += piece.size()) == stream.size();
        int pieceFlags = flags | (at == piece.size() ? 0x01 : 0) | (last ? 0x02 : 0);
        if (untidy && random.Chance(10))
            pieceFlags = random.Pick(0, 0x3F);
        std::string copy = piece;
        Over in(piece, piece.size(), pieceFlags), in2(copy, copy.size(), pieceFlags);
        for (int result = 2; result == 2 || result == 4;) {
            std::string room(static_cast<std::size_t>(random.Pick(1, most)), 0), room2 = room;
            const std::size_t held = untidy && random.Chance(20) ? 1 : 0;
            Over out(room, held, 0), out2(room2, held, 0);
            result = machine.Process(&in, &out);
            const std::string expected = Seen(reference.Process(&in2, &out2), in2, out2);
            EXPECT_EQ(Seen(result, in, out), expected);
            if (testing::Test::HasFailure())
                return {};
            collected.append(out.ReadPtr(), static_cast<std::size_t>(out.Left()));
        }
    }
    return collected;
}

TEST(Transport, BehavesLikeTheReference)
{
    const test::TraceCapture silence(LibSmlt, 0);
    for (unsigned seed = 0; seed < 1500; ++seed) {
        SCOPED_TRACE(seed);
        Random random{std::mt19937(seed)};
        const int mode = random.Chance(5) ? SMLT_MODE_RAW : SMLT_MODE_TP;
        const int flags = random.Chance(90) ? BUF_FLAG_TP : 0;
        RunBoth<test::ReferenceTx, SmlTpTx>(random, mode, random.Bytes(), BUF_FLAG_SML, true);
        RunBoth<test::ReferenceRx, SmlTpRx>(random, mode, random.Stream(), flags, true);

        const std::string payload = random.Bytes();
        const auto frame = RunBoth<test::ReferenceTx, SmlTpTx>(random, 2, payload, 0, false);
        const auto back = RunBoth<test::ReferenceRx, SmlTpRx>(random, 2, frame, BUF_FLAG_TP, false);
        ASSERT_EQ(test::ToHex(back), test::ToHex(payload));
    }
}

} // namespace
