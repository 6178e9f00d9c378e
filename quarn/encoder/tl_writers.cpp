// The writers: every integer goes through one function of type and width.
#include "quarn/encoder/tl_writers.h"

#include "quarn/encoder/tl_field.h"

#include <initializer_list>

namespace
{

using namespace quarn::detail;

void PutUnsigned(int bytes, unsigned long long value, cBuffer* buf)
{
    if (buf->Free() > bytes)
        encoder::PutInteger(kTlUnsigned, bytes, value, *buf);
}

void PutSigned(int bytes, long long value, cBuffer* buf)
{
    if (buf->Free() > bytes)
        encoder::PutInteger(kTlInteger, bytes, static_cast<unsigned long long>(value), *buf);
}

// The fewest bytes of 1, 2, 3, 4, 6 and 8 that hold a magnitude and leave spareBits unused.
int ShortestWidth(unsigned long long magnitude, int spareBits)
{
    for (const int bytes : {1, 2, 3, 4, 6}) {
        if (magnitude >> (8 * bytes - spareBits) == 0)
            return bytes;
    }
    return 8;
}

void PutByte(unsigned byte, cBuffer* buf) { buf->PutQuick(static_cast<char>(byte)); }

// The fewest TL bytes n for which length, and own further bytes for each TL byte, fit n nibbles.
int TlBytes(int length, int own)
{
    int n = 1;
    while (n < kTlMaxSize && length > (1 << (4 * n)) - 1 - own * n)
        ++n;
    return n;
}

} // namespace

void ToBin_as_Unsigned8(unsigned char value, cBuffer* buf) { PutUnsigned(1, value, buf); }
void ToBin_as_Unsigned16(unsigned short value, cBuffer* buf) { PutUnsigned(2, value, buf); }
void ToBin_as_Unsigned24(unsigned int value, cBuffer* buf) { PutUnsigned(3, value, buf); }
void ToBin_as_Unsigned32(unsigned int value, cBuffer* buf) { PutUnsigned(4, value, buf); }
void ToBin_as_Unsigned48(unsigned long long value, cBuffer* buf) { PutUnsigned(6, value, buf); }
void ToBin_as_Unsigned64(unsigned long long value, cBuffer* buf) { PutUnsigned(8, value, buf); }
void ToBin_as_Integer8(signed char value, cBuffer* buf) { PutSigned(1, value, buf); }
void ToBin_as_Integer16(short value, cBuffer* buf) { PutSigned(2, value, buf); }
void ToBin_as_Integer24(int value, cBuffer* buf) { PutSigned(3, value, buf); }
void ToBin_as_Integer32(int value, cBuffer* buf) { PutSigned(4, value, buf); }
void ToBin_as_Integer48(long long value, cBuffer* buf) { PutSigned(6, value, buf); }
void ToBin_as_Integer64(long long value, cBuffer* buf) { PutSigned(8, value, buf); }

void ToBin_as_Unsigned(unsigned long long value, cBuffer* buf)
{
    PutUnsigned(ShortestWidth(value, 0), value, buf);
}

void ToBin_as_Integer(long long value, cBuffer* buf)
{
    // -1 and 0, -128 and 127 and so on need the same width: one bit is the sign.
    const auto bits = static_cast<unsigned long long>(value);
    PutSigned(ShortestWidth(value < 0 ? ~bits : bits, 1), value, buf);
}

void ToBin_As_Option(cBuffer* buf)
{
    if (buf->Free() >= 1)
        PutByte(kOptionAbsent, buf);
}

void ToBin_as_Choice(unsigned char tag, cBuffer* buf)
{
    if (buf->Free() < 3)
        return;
    PutByte(kTlList | 2U, buf);
    ToBin_as_Unsigned8(tag, buf);
}

void ToBin_as_Choice32(unsigned int tag, cBuffer* buf)
{
    if (buf->Free() < 5)
        return;
    PutByte(kTlList | 2U, buf);
    ToBin_as_Unsigned(tag, buf);
}

void ToBin_as_ListCount(unsigned short count, cBuffer* buf)
{
    const int n = Calculate_TLFCount_ListOf(count);
    if (buf->Free() >= n)
        encoder::PutTl(*buf, kTlList, n, count);
}

int Calculate_TLFCount_OctStr(int len) { return TlBytes(len, 1); }

int Calculate_TLFCount_ListOf(int count) { return TlBytes(count, 0); }
