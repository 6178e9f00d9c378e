// What the encoder's tests share: bytes of objects and messages as hex, and the lines that LibSmle
// wrote.
#ifndef TESTS_ENCODER_ENCODER_SUPPORT_H
#define TESTS_ENCODER_ENCODER_SUPPORT_H

#include "tests/support/hex.h"
#include "tests/support/record_text.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace test
{

inline std::string DataHex(const vorn::cRecord& rec, const char* name)
{
    const vorn::cRecordPar par = rec.GetFirstPar(name, 0, 0);
    return ToHex(std::string_view(par.GetData(), static_cast<std::size_t>(par.GetSize())));
}

// What write puts into a buffer of size bytes, as hex without blanks.
inline std::string Written(const std::function<void(cBuffer*)>& write, std::size_t size = 8192)
{
    std::vector<char> storage(size); // exactly as large: an overrun is seen by the sanitizer
    cBuffer buf(storage.data(), static_cast<long>(size), 0, 0);
    write(&buf);
    return ToHex(std::string_view(buf.ReadPtr(), static_cast<std::size_t>(buf.Left())));
}

inline std::string Written(Sml_Type& object, std::size_t size = 8192)
{
    return Written([&](cBuffer* buf) { object.ToBin(buf); }, size);
}

inline std::string Hexed(std::string_view hex) { return ToHex(Hex(hex)); }

// The CRC field of a message that so far has these bytes.
inline std::string CrcField(const std::string& bytes)
{
    const unsigned crc =
        vorn::createCRC16(bytes.data(), static_cast<int>(bytes.size()), vorn::initCRC16());
    const std::string low(1, static_cast<char>(crc & 0xFFU));
    const std::string high(1, static_cast<char>(crc >> 8));
    return low[0] != 0 ? '\x63' + low + high : '\x62' + high;
}

// Collects what LibSmle writes up to a level; Lines: "2 text + 16 text",
// a line feed as \n.
class EncoderTrace
{
public:
    explicit EncoderTrace(int level) : capture(LibSmle, level) {}
    std::string Lines() const
    {
        std::string all;
        for (const std::string& line : capture.Lines()) {
            const std::size_t end = line.find("]: ");
            all +=
                (all.empty() ? "" : " + ") + line.substr(8, end - 8) + ' ' + line.substr(end + 3);
            if (all.back() == '\n')
                all.replace(all.size() - 1, 1, "\\n");
        }
        return all;
    }

private:
    TraceCapture capture;
};

} // namespace test

#endif
