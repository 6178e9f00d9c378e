// The encoder's lowest layer: TL fields and scalar values, written into a buffer. foundation/tl.h
// draws the TL field; values follow it most significant byte first, signed ones in two's
// complement.
//
// A writer first asks the buffer for room and then writes its whole field or, when the room is too
// small, nothing at all, without a word. The functions keep no state: different threads may write
// to different buffers at once. They neither allocate nor throw. REQUIRES: buf is not null.
#ifndef QUARN_ENCODER_TL_WRITERS_H
#define QUARN_ENCODER_TL_WRITERS_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/export.h"

// Fixed widths. The 24 and 48 bit forms write the low 3 and 6 bytes of value.
QUARN_API void ToBin_as_Unsigned8(unsigned char value, cBuffer* buf);       // 62, 2 bytes in all
QUARN_API void ToBin_as_Unsigned16(unsigned short value, cBuffer* buf);     // 63, 3 bytes
QUARN_API void ToBin_as_Unsigned24(unsigned int value, cBuffer* buf);       // 64, 4 bytes
QUARN_API void ToBin_as_Unsigned32(unsigned int value, cBuffer* buf);       // 65, 5 bytes
QUARN_API void ToBin_as_Unsigned48(unsigned long long value, cBuffer* buf); // 67, 7 bytes
QUARN_API void ToBin_as_Unsigned64(unsigned long long value, cBuffer* buf); // 69, 9 bytes
QUARN_API void ToBin_as_Integer8(signed char value, cBuffer* buf);          // 52, 2 bytes
QUARN_API void ToBin_as_Integer16(short value, cBuffer* buf);               // 53, 3 bytes
QUARN_API void ToBin_as_Integer24(int value, cBuffer* buf);                 // 54, 4 bytes
QUARN_API void ToBin_as_Integer32(int value, cBuffer* buf);                 // 55, 5 bytes
QUARN_API void ToBin_as_Integer48(long long value, cBuffer* buf);           // 57, 7 bytes
QUARN_API void ToBin_as_Integer64(long long value, cBuffer* buf);           // 59, 9 bytes

// The shortest of the forms above that holds the value.
QUARN_API void ToBin_as_Unsigned(unsigned long long value, cBuffer* buf);
QUARN_API void ToBin_as_Integer(long long value, cBuffer* buf);

// An optional field that is not set: 01.
QUARN_API void ToBin_As_Option(cBuffer* buf);

// The head of a choice, after which the chosen value stands: 72 62 tag, 3 bytes.
QUARN_API void ToBin_as_Choice(unsigned char tag, cBuffer* buf);
// The same with a tag in its shortest form. Writes nothing when fewer than 5 bytes are free; a tag
// of 32 bits needs 6, and is left out after the 72 when there are just 5.
QUARN_API void ToBin_as_Choice32(unsigned int tag, cBuffer* buf);

// The TL field of a list of count elements.
QUARN_API void ToBin_as_ListCount(unsigned short count, cBuffer* buf);

// How many TL bytes, 1 to 8, stand before an octet string of len data bytes and before a list of
// count elements. An octet string's length counts the TL bytes too.
QUARN_API int Calculate_TLFCount_OctStr(int len);
QUARN_API int Calculate_TLFCount_ListOf(int count);

#endif
