// The transport frame, version 1, and what both framing state machines share with their users: the
// modes and the results of Process.
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
#ifndef QUARN_TRANSPORT_FRAME_H
#define QUARN_TRANSPORT_FRAME_H

// Modes of the state machines and of the codecs. Any value other than SMLT_MODE_RAW counts as TP.
enum eSMLT_MODE : int {
    SMLT_MODE_RAW = 1, // bytes pass through untouched
    SMLT_MODE_TP = 2   // bytes are framed and unframed
};

// Results of SmlTpTx::Process and SmlTpRx::Process; each class tells which it returns and when.
enum eSMLTP_RESULT : int {
    SMLTP_INPUT_EMPTY = 1, // all input is used and no frame has ended: go on with the next input
    SMLTP_OUTPUT_FULL = 2, // go on with an emptied output buffer and the same input
    SMLTP_INPUT_LEFT = 4,  // a frame has ended and the input holds bytes behind it
    SMLTP_FINISHED = 5,    // a frame has ended and all input is used
    SMLTP_NO_FIRST = 9     // the input that would begin a frame is not flagged BUF_FLAG_FIRST
};

namespace quarn::detail::transport
{

constexpr unsigned char kEscape = 0x1B;
constexpr unsigned char kStart = 0x01;
constexpr unsigned char kEnd = 0x1A;
constexpr int kEscapeRun = 4;      // escapes in a row that introduce a start or an end
constexpr int kStartLength = 8;    // escape and start
constexpr unsigned kAlignment = 4; // a frame's length is a multiple of it

constexpr int kGoOn = 0; // of a state's function: the machine is not done with this call

} // namespace quarn::detail::transport

#endif
