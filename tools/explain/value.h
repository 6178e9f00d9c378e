// The bytes of a field as the text a person wants to read.
#ifndef TOOLS_EXPLAIN_VALUE_H
#define TOOLS_EXPLAIN_VALUE_H

#include "quarn/quarn.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tool
{

using quarn::kTlBoolean, quarn::kTlInteger, quarn::kTlList, quarn::kTlOctetString,
    quarn::kTlUnsigned;
using quarn::schema::Element;
using quarn::schema::eMEANING;

// What the fields read so far say about the value that follows them.
struct Scale {
    unsigned uiUnit = 0;
    int iScaler = 0;
};

// As "a list" or "unsigned".
const char* TypeName(unsigned type) noexcept;

// As "signed, 8 bytes"; count is that of elements for a list, of bytes for all others.
std::string TypeText(unsigned type, std::uint64_t count);

// The value of an element; null where the schema does not tell. A VALUE: as its type says, scaled.
std::string ValueText(const Element* element, unsigned type, std::string_view bytes,
                      const Scale& scale);

// What else the bytes of a value could mean if the meter has sent it with the wrong sign; empty
// when there is no doubt.
std::string SignNote(unsigned type, std::string_view bytes, const Scale& scale);

// Up to eight bytes, most significant first.
std::uint64_t UnsignedOf(std::string_view bytes) noexcept;
std::int64_t SignedOf(std::string_view bytes) noexcept;

} // namespace tool

#endif
