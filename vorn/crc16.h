// CRC-16 of ITU-T X.25 (also known as CRC-16/IBM-SDLC), as SML uses it for messages and for
// transport frames: polynomial x^16 + x^12 + x^5 + 1, least significant bit first (reflected form
// 0x8408), preset 0xFFFF, final complement.
//
// All functions are pure and may be called from any thread. None of them fails or allocates.
#ifndef VORN_CRC16_H
#define VORN_CRC16_H

#include "vorn/export.h"

namespace vorn
{

// The preset register, 0xFFFF.
VORN_API unsigned short initCRC16() noexcept;

// The register after shifting in one byte. No final complement: the caller complements at the end.
VORN_API unsigned short addByte2CRC16(unsigned char b, unsigned short crc) noexcept;

// Runs the register from crc over len bytes and returns the finished, complemented value. The
// complement of the result is the register from which the same CRC goes on over the bytes that
// follow. len <= 0 shifts in nothing.
//
//   createCRC16("123456789", 9, initCRC16()) == 0x906E
VORN_API unsigned short createCRC16(const char* data, int len, unsigned short crc) noexcept;

} // namespace vorn

#endif
