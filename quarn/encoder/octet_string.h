// Octet strings of up to SML_VALUE_CHUNK bytes, and longer ones in pieces.
//
//   Sml_OctetString abc("ABC", 3, -1);        // writes 04 41 42 43
//   Sml_OctetString name(0x0100010800FFLL);   // writes 07 01 00 01 08 00 FF
//
// A string longer than SML_VALUE_CHUNK bytes is written by one object over several buffers, piece
// by piece:
//
//   Sml_OctetString s;
//   s.SetValue(piece, 1000, 5000);   // ToBin writes the TL field for 5000 bytes and this piece
//   s.SetValue(next, 1000, 5000);    // ToBin writes this piece alone
//
// The caller sees to it that the pieces add up to the total.
//
// An object holds a copy of its bytes; up to 20 of them need no memory of their own. Bytes may be
// given as char or as unsigned char.
#ifndef QUARN_ENCODER_OCTET_STRING_H
#define QUARN_ENCODER_OCTET_STRING_H

#include "quarn/encoder/sml_type.h"
#include "quarn/foundation/limits.h"

#include <memory>
#include <type_traits>

namespace quarn::detail
{

template <typename Byte>
using IfUnsignedChar = std::enable_if_t<std::is_same_v<Byte, unsigned char>>;

inline const char* AsChars(const void* bytes) noexcept { return static_cast<const char*>(bytes); }

} // namespace quarn::detail

class QUARN_API Sml_OctetString : public Sml_Value
{
public:
    static constexpr int kMaxPiece = SML_VALUE_CHUNK; // bytes that one object can hold

    Sml_OctetString() noexcept; // absent
    // A copy of len bytes at data. Absent when len is not 1 to kMaxPiece, data is null or memory
    // runs out. total is -1 for a whole string; above kMaxPiece and above len it is the length of
    // the long string that begins with these bytes.
    Sml_OctetString(const char* data, int len, int total) noexcept;
    template <typename Byte, typename = quarn::detail::IfUnsignedChar<Byte>>
    Sml_OctetString(const Byte* data, int len, int total) noexcept
        : Sml_OctetString(quarn::detail::AsChars(data), len, total)
    {
    }
    // The six bytes of an object name: the low 48 bits of value, most significant byte first.
    explicit Sml_OctetString(long long value) noexcept;
    ~Sml_OctetString() override;

    // Writes a piece that does not fit as nothing, with a trace line of LibSmle at level 2.
    void ToBin(cBuffer* buf) override;

    // Replaces the bytes, with the meaning of the constructor's arguments. Bytes that cannot be
    // stored for their length leave the old value; when memory runs out the string is absent. For a
    // long string, the first call on an empty object announces the total, the next ones go on.
    void SetValue(const char* data, int len, int total) noexcept;
    template <typename Byte, typename = quarn::detail::IfUnsignedChar<Byte>>
    void SetValue(const Byte* data, int len, int total) noexcept
    {
        SetValue(quarn::detail::AsChars(data), len, total);
    }

    // The bytes as they are stored (of a name: least significant byte first), valid until the
    // object changes or dies; null when there are none. *len is set to their number. The bytes of
    // an object that is not const may be written to.
    const char* GetValue(int* len) const noexcept;
    char* GetValue(int* len) noexcept;
    int GetLength() const noexcept { return iLength; }
    // The announced length of a long string, else 0.
    int GetTotalLength() const noexcept { return iTotalLength >= 1 ? iTotalLength : 0; }

    // The first six stored bytes as a number of 48 bits, bytes that are missing counting as 0:
    // first byte least significant (what the constructor of names was given), and the reverse.
    long long GetObisValue() const noexcept;
    long long GetObisValueRevers() const noexcept;

private:
    static constexpr int kInPlace = 20;

    const char* Data() const noexcept { return pcHeap ? pcHeap.get() : acInPlace; }
    bool Store(const char* data, int len) noexcept;
    void Announce(int len, int total) noexcept;
    long long Number(bool firstByteHigh) const noexcept;

    std::unique_ptr<char[]> pcHeap; // a value of more than kInPlace bytes
    char acInPlace[kInPlace];
    int iLength = 0;
    int iTotalLength = -1; // unused
    bool bReverse = false; // write the bytes from the last to the first
    bool bHeaderPending = false;
};

class QUARN_API Sml_Signature : public Sml_OctetString
{
public:
    Sml_Signature() noexcept = default;
    Sml_Signature(const char* data, int len) noexcept : Sml_OctetString(data, len, -1) {}
    template <typename Byte, typename = quarn::detail::IfUnsignedChar<Byte>>
    Sml_Signature(const Byte* data, int len) noexcept : Sml_OctetString(data, len, -1)
    {
    }
    ~Sml_Signature() override;
};

#endif
