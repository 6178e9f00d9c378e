// Octet strings: what they hold, and the four forms in which they are written.
#include "quarn/encoder/octet_string.h"

#include "quarn/encoder/tl_field.h"
#include "quarn/encoder/tl_writers.h"
#include "quarn/foundation/trace.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

using quarn::detail::kError;
using quarn::detail::Trace;

namespace
{

constexpr int kNameSize = SML_NAME_SIZE;

bool Storable(const char* data, int len)
{
    return data != nullptr && len >= 1 && len <= Sml_OctetString::kMaxPiece;
}

} // namespace

Sml_OctetString::Sml_OctetString() noexcept
{
    bToCode = false;
    iTypeId = SML_TYPE_OCTET_STRING;
}

Sml_OctetString::Sml_OctetString(const char* data, int len, int total) noexcept : Sml_OctetString()
{
    if (!Storable(data, len) || Store(data, len))
        Announce(len, total);
}

Sml_OctetString::Sml_OctetString(long long value) noexcept : Sml_OctetString()
{
    char bytes[kNameSize];
    for (int i = 0; i < kNameSize; ++i)
        bytes[i] = static_cast<char>(value >> (8 * i) & 0xFF);
    Store(bytes, kNameSize);
    bReverse = true;
}

Sml_OctetString::~Sml_OctetString() = default;
Sml_Signature::~Sml_Signature() = default;

void Sml_OctetString::SetValue(const char* data, int len, int total) noexcept
{
    Announce(len, total);
    if (!Storable(data, len))
        return;
    if (iLength > 0)
        bHeaderPending = false;
    Store(data, len);
}

void Sml_OctetString::Announce(int len, int total) noexcept
{
    if (total > len && total > kMaxPiece) {
        iTotalLength = total;
        bHeaderPending = true;
    }
}

// data may point into the value held so far.
bool Sml_OctetString::Store(const char* data, int len) noexcept
{
    const auto size = static_cast<std::size_t>(len);
    std::unique_ptr<char[]> heap;
    if (len <= kInPlace) {
        std::memmove(acInPlace, data, size);
    } else {
        heap.reset(new (std::nothrow) char[size]);
        if (heap)
            std::memcpy(heap.get(), data, size);
    }
    bToCode = heap || len <= kInPlace;
    iLength = bToCode ? len : 0;
    pcHeap = std::move(heap);
    return bToCode;
}

const char* Sml_OctetString::GetValue(int* len) const noexcept
{
    *len = iLength;
    return iLength > 0 ? Data() : nullptr;
}

char* Sml_OctetString::GetValue(int* len) noexcept
{
    *len = iLength;
    char* const bytes = pcHeap ? pcHeap.get() : acInPlace;
    return iLength > 0 ? bytes : nullptr;
}

long long Sml_OctetString::GetObisValue() const noexcept { return Number(false); }
long long Sml_OctetString::GetObisValueRevers() const noexcept { return Number(true); }

long long Sml_OctetString::Number(bool firstByteHigh) const noexcept
{
    unsigned long long value = 0;
    for (int i = 0; i < kNameSize && i < iLength; ++i) {
        const auto byte = static_cast<unsigned char>(Data()[i]);
        value |= static_cast<unsigned long long>(byte)
                 << 8 * (firstByteHigh ? kNameSize - 1 - i : i);
    }
    return static_cast<long long>(value);
}

void Sml_OctetString::ToBin(cBuffer* buf)
{
    const bool isLong = iTotalLength >= 1;
    if (!bToCode) {
        ToBin_As_Option(buf);
        return;
    }
    const bool hasHeader = !isLong || bHeaderPending; // else a piece that goes on
    const int announced = isLong ? iTotalLength : iLength;
    const int n = hasHeader ? Calculate_TLFCount_OctStr(announced) : 0;
    bHeaderPending = false; // whether or not there is room

    if (buf->Free() < iLength + n) {
        Trace(LibSmle, kError,
              isLong ? "Sml_OctetString:ToBin:Not enough buffer-memory! Free=%d"
                     : "Sml_OctetString:ToBin:Not enough buffer-memory! Free=%04x \n",
              static_cast<unsigned>(buf->Free()));
        return;
    }
    if (hasHeader)
        quarn::detail::encoder::PutTl(*buf, quarn::detail::kTlOctetString, n,
                                      static_cast<std::uint32_t>(announced) +
                                          static_cast<std::uint32_t>(n));
    if (bReverse && !isLong) {
        for (int i = iLength - 1; i >= 0; --i)
            buf->PutQuick(Data()[i]);
    } else {
        buf->Put(Data(), iLength);
    }
}
