// The one place where a TL field of any size is put together, for lists and octet strings.
#ifndef QUARN_ENCODER_TL_FIELD_H
#define QUARN_ENCODER_TL_FIELD_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/tl.h"

#include <cstdint>

namespace quarn::detail::encoder
{

constexpr int kMaxTlBytes = 8; // the nibbles of 32 bits

// REQUIRES: 1 <= bytes <= kMaxTlBytes, length fits in bytes nibbles, buf.Free() >= bytes.
inline void PutTl(cBuffer& buf, unsigned type, int bytes, std::uint32_t length)
{
    char field[kMaxTlBytes];
    unsigned more = 0;
    for (int i = bytes - 1; i >= 0; --i) {
        field[i] =
            static_cast<char>(more | (length & kTlLengthMask) | (i == 0 ? type : kTlOctetString));
        length >>= 4;
        more = kTlMore;
    }
    buf.Put(field, bytes);
}

} // namespace quarn::detail::encoder

#endif
