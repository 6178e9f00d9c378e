// SML messages from hex, with their CRC: what a meter would send, built without the encoder.
#ifndef TESTS_SUPPORT_MESSAGE_H
#define TESTS_SUPPORT_MESSAGE_H

#include "tests/support/hex.h"

#include "quarn/quarn.h"

#include <string>
#include <vector>

namespace test
{

// The head of a message with the given tag (four digits), up to where its body begins.
inline std::string Head(const std::string& tag) { return Hex("76 02 01 62 00 62 00 72 63" + tag); }

// CRC field and end byte behind the message so far.
inline std::string Finish(const std::string& bytes)
{
    const unsigned crc =
        vorn::createCRC16(bytes.data(), static_cast<int>(bytes.size()), vorn::initCRC16());
    std::string message = bytes + '\x63';
    message += static_cast<char>(crc & 0xFFU);
    message += static_cast<char>(crc >> 8);
    return message + '\0';
}

inline std::string Message(const std::string& tag, const std::string& bodyHex)
{
    return Finish(Head(tag) + Hex(bodyHex));
}

inline std::string OpenRes() { return Message("0101", "76 01 01 03 11 22 04 AA BB CC 01 01"); }
// One as hardly a meter sends it: long TL fields, long numbers, and one byte of CRC, as it
// suffices.
inline std::string OddOpenRes()
{
    return Hex("F0 06 80 80 80 80 80 80 80 0A 00 45 62 00 62 00 F0 02 65 00 00 01 01"
               "76 01 01 03 11 22 04 AA BB CC 01 01 62 85 00");
}
inline std::string CloseRes() { return Message("0201", "71 01"); }

// An octet string of any length with its TL field of seven bytes.
inline std::string LongString(const std::string& data)
{
    const std::size_t length = data.size() + 7;
    std::string tl;
    for (int shift = 24; shift >= 0; shift -= 4)
        tl += static_cast<char>((shift != 0 ? 0x80U : 0U) | (length >> shift & 0x0FU));
    return tl + data;
}

} // namespace test

#endif
