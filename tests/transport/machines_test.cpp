// The framing state machines: known frames byte by byte. Random streams are held against the
// reference machines by the fuzz target of the transport.
#include "tests/support/hex.h"
#include "tests/support/over.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

using test::Hex;

namespace
{

template <typename Machine>
std::string CallOnce(Machine& machine, std::string bytes, int flags)
{
    test::Over in(bytes, bytes.size(), flags);
    std::string room(100, 0);
    test::Over out(room, 0, 0);
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

} // namespace
