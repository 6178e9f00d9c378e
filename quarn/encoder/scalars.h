// Integers and booleans: one template, named by width and sign.
//
//   Sml_Unsigned8 present(5);   // writes 62 05
//   Sml_Unsigned8 absent;       // writes 01
//
// Sml_Integer8, Sml_Integer16 and Sml_Unsigned8 always write their full width. Sml_Integer32,
// Sml_Integer64, Sml_Unsigned16 and Sml_Unsigned32 write the shortest form that holds the value.
// Sml_Unsigned64 writes 8, 16, 24 or 32 bits while the value fits, else all 64. Sml_Bool writes 42
// and 00 or 01.
#ifndef QUARN_ENCODER_SCALARS_H
#define QUARN_ENCODER_SCALARS_H

#include "quarn/encoder/sml_type.h"
#include "quarn/encoder/tl_writers.h"

namespace quarn::detail
{

QUARN_API void WriteUnsigned64(unsigned long long value, cBuffer* buf);
QUARN_API void WriteBool(bool value, cBuffer* buf);

template <typename T, int kTypeId, auto kWrite>
class QUARN_API Scalar : public Sml_Value
{
public:
    using Value = T;

    Scalar() noexcept { Init(false); } // absent
    explicit Scalar(T v) noexcept : value(v) { Init(true); }

    void ToBin(cBuffer* buf) override
    {
        if (bToCode)
            kWrite(value, buf);
        else
            ToBin_As_Option(buf);
    }

    void SetValue(T v) noexcept // present from now on
    {
        value = v;
        bToCode = true;
    }
    T GetValue() const noexcept { return value; } // 0 until a value was set

private:
    void Init(bool present) noexcept
    {
        bToCode = present;
        iTypeId = kTypeId;
    }

    T value{};
};

} // namespace quarn::detail

class QUARN_API Sml_Integer8
    : public quarn::detail::Scalar<signed char, SML_TYPE_INTEGER8, ToBin_as_Integer8>
{
public:
    using Scalar::Scalar;
    ~Sml_Integer8() override;
};

class QUARN_API Sml_Integer16
    : public quarn::detail::Scalar<short, SML_TYPE_INTEGER16, ToBin_as_Integer16>
{
public:
    using Scalar::Scalar;
    ~Sml_Integer16() override;
};

class QUARN_API Sml_Integer32
    : public quarn::detail::Scalar<int, SML_TYPE_INTEGER32, ToBin_as_Integer>
{
public:
    using Scalar::Scalar;
    ~Sml_Integer32() override;
};

class QUARN_API Sml_Integer64
    : public quarn::detail::Scalar<long long, SML_TYPE_INTEGER64, ToBin_as_Integer>
{
public:
    using Scalar::Scalar;
    ~Sml_Integer64() override;
};

class QUARN_API Sml_Unsigned8
    : public quarn::detail::Scalar<unsigned char, SML_TYPE_UNSIGNED8, ToBin_as_Unsigned8>
{
public:
    using Scalar::Scalar;
    ~Sml_Unsigned8() override;
};

class QUARN_API Sml_Unsigned16
    : public quarn::detail::Scalar<unsigned short, SML_TYPE_UNSIGNED16, ToBin_as_Unsigned>
{
public:
    using Scalar::Scalar;
    ~Sml_Unsigned16() override;
};

class QUARN_API Sml_Unsigned32
    : public quarn::detail::Scalar<unsigned int, SML_TYPE_UNSIGNED32, ToBin_as_Unsigned>
{
public:
    using Scalar::Scalar;
    ~Sml_Unsigned32() override;
};

class QUARN_API Sml_Unsigned64
    : public quarn::detail::Scalar<unsigned long long, SML_TYPE_UNSIGNED64,
                                   quarn::detail::WriteUnsigned64>
{
public:
    using Scalar::Scalar;
    ~Sml_Unsigned64() override;
};

class QUARN_API Sml_Bool
    : public quarn::detail::Scalar<bool, SML_TYPE_BOOL, quarn::detail::WriteBool>
{
public:
    using Scalar::Scalar;
    ~Sml_Bool() override;
};

#endif
