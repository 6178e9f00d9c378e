// The root class, the scalars and the end byte. The destructors stand here so that each class has
// one table of virtual functions, in the library.
#include "quarn/encoder/scalars.h"

#include "quarn/foundation/tl.h"

Sml_Type::~Sml_Type() = default;

Sml_ListOf* Sml_Type::Parts() noexcept { return nullptr; }
Sml_Value::~Sml_Value() = default;
Sml_EndOfSmlMessage::~Sml_EndOfSmlMessage() = default;
Sml_Integer8::~Sml_Integer8() = default;
Sml_Integer16::~Sml_Integer16() = default;
Sml_Integer32::~Sml_Integer32() = default;
Sml_Integer64::~Sml_Integer64() = default;
Sml_Unsigned8::~Sml_Unsigned8() = default;
Sml_Unsigned16::~Sml_Unsigned16() = default;
Sml_Unsigned32::~Sml_Unsigned32() = default;
Sml_Unsigned64::~Sml_Unsigned64() = default;
Sml_Bool::~Sml_Bool() = default;

void Sml_EndOfSmlMessage::ToBin(cBuffer* buf)
{
    if (buf->Free() >= 1)
        buf->PutQuick(static_cast<char>(quarn::detail::kEndOfSmlMsg));
}

namespace quarn::detail
{

void WriteUnsigned64(unsigned long long value, cBuffer* buf)
{
    if (value >> 32 == 0)
        ToBin_as_Unsigned(value, buf);
    else
        ToBin_as_Unsigned64(value, buf);
}

void WriteBool(bool value, cBuffer* buf)
{
    if (buf->Free() < 2)
        return;
    buf->PutQuick(static_cast<char>(kTlBoolean | 2U));
    buf->PutQuick(value ? 1 : 0);
}

} // namespace quarn::detail
