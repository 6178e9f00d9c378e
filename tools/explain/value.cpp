// See value.h.
#include "tools/explain/value.h"

#include "tools/output/reading_rows.h"
#include "tools/reading/decimal.h"
#include "tools/reading/obis.h"
#include "tools/reading/reading.h"
#include "tools/reading/status.h"
#include "tools/reading/unit.h"

#include <algorithm>

namespace tool
{
namespace
{

constexpr std::size_t kMaxOctets = 64; // of a byte string that is shown as a value

std::string HexText(std::string_view bytes)
{
    std::string text;
    AppendHexText(text, bytes);
    return text;
}

std::string OctetText(std::string_view bytes)
{
    const std::string_view shown = bytes.substr(0, kMaxOctets);
    const char* const rest = shown.size() == bytes.size() ? "" : "...";
    return (IsPrintable(shown) ? '"' + std::string(shown) + '"' : HexText(shown)) + rest;
}

// text, and behind it what it means, if anything.
std::string WithMeaning(std::string text, std::string_view meaning)
{
    return meaning.empty() ? text : text.append(" ").append(meaning);
}

std::string NameText(std::string_view bytes)
{
    if (bytes.size() != SML_NAME_SIZE)
        return OctetText(bytes);
    std::string text;
    AppendObis(text, UnsignedOf(bytes));
    return WithMeaning(text, ObisName(UnsignedOf(bytes)));
}

std::string AttentionText(std::string_view bytes)
{
    const char* const meaning =
        bytes.size() == SML_NAME_SIZE ? AttentionMeaning(UnsignedOf(bytes)) : nullptr;
    return WithMeaning(HexText(bytes), meaning != nullptr ? meaning : "");
}

// Of a message's body, or of another choice.
std::string TagText(std::string_view bytes)
{
    const auto tag = static_cast<unsigned>(UnsignedOf(bytes));
    const quarn::schema::Message* const message = quarn::schema::FindMessage(tag);
    return message != nullptr ? WithMeaning("0x" + HexText(bytes), message->pcName)
                              : std::to_string(tag);
}

std::string ScaledText(bool isSigned, std::string_view bytes, const Scale& scale)
{
    const Integer number =
        isSigned ? Integer::OfSigned(SignedOf(bytes)) : Integer::Of(UnsignedOf(bytes));
    char text[kMaxDecimal];
    const std::size_t size = FormatDecimal(number, scale.iScaler, text);
    return WithMeaning({text, size}, UnitSymbol(scale.uiUnit));
}

std::string NumberText(const Element* element, unsigned type, std::string_view bytes,
                       const Scale& scale)
{
    using quarn::schema::eTYPE;
    std::string number = ScaledText(type == kTlInteger, bytes, Scale());
    if (element == nullptr)
        return number;
    if (element->eType == eTYPE::VALUE)
        return ScaledText(type == kTlInteger, bytes, scale);
    if (element->eType == eTYPE::CRC)
        return "0x" + HexText(bytes);
    switch (element->eMeaning) {
    case eMEANING::SECONDS:
    case eMEANING::TIMESTAMP:
        number.clear();
        AppendTime(number, {element->eMeaning == eMEANING::SECONDS ? 1U : 2U, UnsignedOf(bytes)});
        return number;
    case eMEANING::UNIT:
        return number + " " + std::string(UnitSymbol(static_cast<unsigned>(UnsignedOf(bytes))));
    case eMEANING::STATUS:
        return "0x" + HexText(bytes) + " (" + number + ")";
    case eMEANING::TAG:
        return TagText(bytes);
    case eMEANING::OFFSET:
        return number + " min";
    case eMEANING::SCALER:
        return "10^" + number;
    default:
        return number;
    }
}

} // namespace

const char* TypeName(unsigned type) noexcept
{
    return type == kTlOctetString ? "an octet string"
           : type == kTlBoolean   ? "a boolean"
           : type == kTlInteger   ? "signed"
           : type == kTlUnsigned  ? "unsigned"
                                  : "a list";
}

std::string TypeText(unsigned type, std::uint64_t count)
{
    const std::string number = std::to_string(count);
    if (type == kTlList)
        return "list of " + number;
    const std::string_view name = TypeName(type);
    const std::size_t article = type == kTlOctetString ? 3 : type == kTlBoolean ? 2 : 0;
    return std::string(name.substr(article)) + ", " + number + (count == 1 ? " byte" : " bytes");
}

std::string ValueText(const Element* element, unsigned type, std::string_view bytes,
                      const Scale& scale)
{
    const eMEANING meaning = element != nullptr ? element->eMeaning : eMEANING::PLAIN;
    if (meaning == eMEANING::NAME)
        return NameText(bytes);
    if (meaning == eMEANING::ATTENTION)
        return AttentionText(bytes);
    if (type == kTlOctetString || type == kTlList)
        return OctetText(bytes);
    if (type == kTlBoolean)
        return UnsignedOf(bytes) != 0 ? "true" : "false";
    return NumberText(element, type, bytes, scale);
}

std::string SignNote(unsigned type, std::string_view bytes, const Scale& scale)
{
    const bool isSigned = type == kTlInteger;
    if (bytes.empty() || (!isSigned && type != kTlUnsigned))
        return {};
    const auto hasSign = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    if (hasSign(bytes.front()))
        return (isSigned ? "read as unsigned: " : "read as signed: ") +
               ScaledText(!isSigned, bytes, scale);
    const std::string_view last = bytes.substr(bytes.size() - 1);
    if (isSigned && hasSign(last.front()) && UnsignedOf(bytes) < 256)
        return "read with the sign in its last byte: " + ScaledText(true, last, scale);
    return {};
}

std::uint64_t UnsignedOf(std::string_view bytes) noexcept
{
    std::uint64_t number = 0;
    for (const char c : bytes)
        number = number << 8U | static_cast<unsigned char>(c);
    return number;
}

std::int64_t SignedOf(std::string_view bytes) noexcept
{
    if (bytes.empty())
        return 0;
    const std::uint64_t sign = std::uint64_t{1} << (8 * std::min<std::size_t>(bytes.size(), 8) - 1);
    return static_cast<std::int64_t>((UnsignedOf(bytes) ^ sign) - sign);
}

} // namespace tool
