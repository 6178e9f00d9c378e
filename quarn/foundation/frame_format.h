// The transport frame, version 1, shared by all that writes, reads, explains or damages frames.
//
// A frame carries one SML file over a byte stream. In hexadecimal, n bytes of content:
//
//   offset      bytes
//   0           1B 1B 1B 1B    escape
//   4           01 01 01 01    start of a frame, version 1
//   8           ...            content: the payload, each run of four 1B written as eight 1B
//   8 + n       00 ...         p bytes of padding, 0 to 3, up to a multiple of four bytes
//   8 + n + p   1B 1B 1B 1B    escape
//   12 + n + p  1A             end of the frame
//   13 + n + p  p              the number of padding bytes
//   14 + n + p  low high       complemented CRC-16 (X.25) of all bytes before, low byte first
//
// The payload 01 1B 1B 1B 1B 02 travels as these 28 bytes:
//
//   1B 1B 1B 1B 01 01 01 01  01 1B 1B 1B 1B 1B 1B 1B 1B 02  00 00  1B 1B 1B 1B 1A 02 7A 58
//
// Sizes are in bytes.
#ifndef QUARN_FOUNDATION_FRAME_FORMAT_H
#define QUARN_FOUNDATION_FRAME_FORMAT_H

#include <cstddef>
#include <string_view>

namespace quarn
{

constexpr char kFrameEscape = 0x1B;
constexpr char kFrameStart = 0x01;
constexpr char kFrameEnd = 0x1A;

// What a frame begins with, and what follows its padding; the latter is followed by the padding
// count and the CRC. Both begin with an escape.
constexpr std::string_view kFrameStartSequence = "\x1B\x1B\x1B\x1B\x01\x01\x01\x01";
constexpr std::string_view kFrameEndSequence = "\x1B\x1B\x1B\x1B\x1A";

// A run of four escape bytes in the content, as it is written.
constexpr std::string_view kFrameEscapedRun = "\x1B\x1B\x1B\x1B\x1B\x1B\x1B\x1B";

constexpr int kFrameEscapeSize = 4; // a run of four escape bytes
constexpr int kFrameStartSize = 8;
constexpr int kFrameEndSize = 8;   // from the escape to the CRC
constexpr int kFrameCrcSize = 2;   // the last of them
constexpr int kFrameAlignment = 4; // the size of a frame is a multiple of it
constexpr int kFrameMaxPadding = kFrameAlignment - 1;

// The CRC register, not complemented, after the start sequence and after a good frame's last byte.
constexpr unsigned short kFrameCrcAfterStart = 0x91DC;
constexpr unsigned short kFrameCrcGood = 0xF0B8;

// The most that the frame of a payload takes: a payload of escapes is written twice.
constexpr std::size_t MaxFrameSize(std::size_t payload) noexcept
{
    return kFrameStartSize + 2 * payload + kFrameMaxPadding + kFrameEndSize;
}

// How much of a start sequence a stream ends with when b follows bytes that end with the first
// matched bytes of one. Of a longer run of escape bytes the last four count.
constexpr int MatchFrameStart(int matched, char b) noexcept
{
    if (b == kFrameEscape && matched <= kFrameEscapeSize)
        return matched < kFrameEscapeSize ? matched + 1 : matched;
    if (b == kFrameEscape)
        return 1;
    return b == kFrameStart && matched >= kFrameEscapeSize ? matched + 1 : 0;
}

namespace detail
{
using quarn::kFrameAlignment, quarn::kFrameCrcAfterStart, quarn::kFrameCrcGood,
    quarn::kFrameCrcSize, quarn::kFrameEnd, quarn::kFrameEndSequence, quarn::kFrameEndSize,
    quarn::kFrameEscape, quarn::kFrameEscapedRun, quarn::kFrameEscapeSize, quarn::kFrameMaxPadding,
    quarn::kFrameStart, quarn::kFrameStartSequence, quarn::kFrameStartSize, quarn::MatchFrameStart;
} // namespace detail

} // namespace quarn

#endif
