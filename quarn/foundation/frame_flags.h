// Frame flags: the bit set shared by cBuffer, by the unsigned record parameter "SmltFlags" and by
// the encoders' results.
//
//   bit   7 6 5 4 3 2 1 0
//             | | |   | +-- BUF_FLAG_FIRST
//             | | |   +---- BUF_FLAG_LAST
//             | | +-------- BUF_FLAG_CRC_ERROR
//             | +---------- BUF_FLAG_SML
//             +------------ BUF_FLAG_TP
#ifndef QUARN_FOUNDATION_FRAME_FLAGS_H
#define QUARN_FOUNDATION_FRAME_FLAGS_H

enum eBUF_FLAG : int {
    BUF_FLAG_FIRST = 0x01,     // this piece begins a frame or an SML file
    BUF_FLAG_LAST = 0x02,      // this piece ends it
    BUF_FLAG_CRC_ERROR = 0x08, // the frame that ends here is damaged
    BUF_FLAG_SML = 0x10,       // the bytes are one SML message
    BUF_FLAG_TP = 0x20         // the bytes are in transport framing
};

#endif
