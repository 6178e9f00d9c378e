// The framing state machines: known frames byte by byte. Random streams are held against the
// reference machines by the fuzz target of the transport.
#include "tests/support/hex.h"
#include "tests/support/over.h"
#include "tests/support/rows.h"
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

TEST(Transport, FramesAndUnframes)
{
    for (const test::Row& row : test::Rows("transport/frames.txt", 3)) {
        const std::string frame = Hex("1B1B1B1B01010101" + row[2]);
        SmlTpTx tx(SMLT_MODE_TP);
        EXPECT_EQ(CallOnce(tx, Hex(row[1]), 0x03), "5 23 " + test::ToHex(frame)) << row[0];
        SmlTpRx rx(SMLT_MODE_TP);
        EXPECT_EQ(CallOnce(rx, frame, 0x20), "5 03 " + test::ToHex(Hex(row[1]))) << row[0];
    }
}

TEST(Transport, UnframesDamagedStreams)
{
    for (const test::Row& row : test::Rows("transport/damaged.txt", 3)) {
        const test::TraceCapture capture(LibSmlt);
        SmlTpRx rx(SMLT_MODE_TP);
        EXPECT_EQ(test::Trimmed(CallOnce(rx, Hex(row[1]), 0x20)), row[2]) << row[0];
        const bool bad = row[2].find(" 0B") != std::string::npos;
        EXPECT_EQ(capture.Text(), bad ? "LibSmlt[2]: CRC-ERROR\n" : "") << row[0];
    }
}

} // namespace
