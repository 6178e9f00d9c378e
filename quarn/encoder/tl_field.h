// The one place where a TL field of any size is put together, for lists and octet strings.
#ifndef QUARN_ENCODER_TL_FIELD_H
#define QUARN_ENCODER_TL_FIELD_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/tl.h"

#include <cstdint>

namespace quarn::detail::encoder
{

// REQUIRES: 1 <= bytes <= kTlMaxSize, length fits in bytes nibbles, buf.Free() >= bytes.
inline void PutTl(cBuffer& buf, unsigned type, int bytes, std::uint32_t length)
{
    char field[kTlMaxSize];
    unsigned more = 0;
    for (int i = bytes - 1; i >= 0; --i) {
        field[i] =
            static_cast<char>(more | (length & kTlLengthMask) | (i == 0 ? type : kTlOctetString));
        length >>= 4;
        more = kTlMore;
    }
    buf.Put(field, bytes);
}

// A field of one TL byte and the low bytes of value, most significant first. REQUIRES: bytes is 1
// to 8, buf.Free() > bytes.
inline void PutInteger(unsigned type, int bytes, unsigned long long value, cBuffer& buf)
{
    buf.PutQuick(static_cast<char>(type | static_cast<unsigned>(bytes + 1)));
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        buf.PutQuick(static_cast<char>(value >> shift & 0xFFU));
}

// An octet string's TL field for announced bytes, and size bytes of data. REQUIRES: room for both.
inline void PutOctets(cBuffer& buf, const char* data, int size, int announced)
{
    int n = 1;
    while (n < kTlMaxSize && announced > (1 << (4 * n)) - 1 - n)
        ++n;
    PutTl(buf, kTlOctetString, n, static_cast<std::uint32_t>(announced + n));
    buf.Put(data, size);
}

} // namespace quarn::detail::encoder

#endif
