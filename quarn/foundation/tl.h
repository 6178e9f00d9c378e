// The SML type-length field, shared by encoder and parser. One or more bytes stand before every
// value:
//
//   bit     7      6 5 4    3 2 1 0
//         +------+-------+---------+
//         | more | type  | length  |   first byte; most significant nibble of the length
//         +------+-------+---------+
//         | more | 0 0 0 | length  |   each further byte adds a less significant nibble
//         +------+-------+---------+
//
// more is 1 when another byte of the field follows. The length of a list is its number of elements;
// every other length counts the bytes of the field itself as well as those of the value. Values
// follow in network byte order, signed ones in two's complement.
#ifndef QUARN_FOUNDATION_TL_H
#define QUARN_FOUNDATION_TL_H

namespace quarn
{

constexpr unsigned kTlMore = 0x80;
constexpr unsigned kTlTypeMask = 0x70;
constexpr unsigned kTlLengthMask = 0x0F;
constexpr int kTlMaxSize = 8; // bytes of the longest field: a length of 32 bits

// Type bits, as they stand in the first byte.
constexpr unsigned kTlOctetString = 0x00;
constexpr unsigned kTlBoolean = 0x40;
constexpr unsigned kTlInteger = 0x50;
constexpr unsigned kTlUnsigned = 0x60;
constexpr unsigned kTlList = 0x70;

// Two bytes with a meaning of their own.
constexpr unsigned char kEndOfSmlMsg = 0x00;
constexpr unsigned char kOptionAbsent = 0x01; // an optional field that is not set

namespace detail
{
using quarn::kEndOfSmlMsg, quarn::kOptionAbsent;
using quarn::kTlMore, quarn::kTlTypeMask, quarn::kTlLengthMask, quarn::kTlMaxSize;
using quarn::kTlOctetString, quarn::kTlBoolean, quarn::kTlInteger, quarn::kTlUnsigned,
    quarn::kTlList;
} // namespace detail

} // namespace quarn

#endif
