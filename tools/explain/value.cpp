// See value.h.
#include "tools/explain/value.h"

#include "tools/output/output.h"
#include "tools/reading/decimal.h"
#include "tools/reading/kind.h"
#include "tools/reading/obis.h"
#include "tools/reading/reading.h"
#include "tools/reading/status.h"
#include "tools/reading/unit.h"

#include <algorithm>
#include <ctime>

namespace tool
{
namespace
{

constexpr std::size_t kMaxOctets = 64; // of a byte string that is shown as a value

std::string HexText(std::string_view bytes)
{
    std::string text(2 * bytes.size(), ' ');
    WriteHex(bytes, text.data());
    return text;
}

std::string OctetText(std::string_view bytes)
{
    const std::string_view shown = bytes.substr(0, kMaxOctets);
    const std::string rest = shown.size() == bytes.size() ? "" : "...";
    return IsPrintable(shown) ? '"' + std::string(shown) + rest + '"' : HexText(shown) + rest;
}

std::string NameText(std::string_view bytes)
{
    if (bytes.size() != 6)
        return OctetText(bytes);
    const std::uint64_t code = UnsignedOf(bytes);
    char text[kMaxObis];
    std::string name(text, FormatObis(code, text));
    const std::string_view meaning = ObisName(code);
    return name.append(meaning.empty() ? "" : " ").append(meaning);
}

std::string AttentionText(std::string_view bytes)
{
    const char* meaning = bytes.size() == 6 ? AttentionMeaning(UnsignedOf(bytes)) : nullptr;
    return HexText(bytes)
        .append(meaning != nullptr ? " " : "")
        .append(meaning != nullptr ? meaning : "");
}

std::string TimestampText(std::uint64_t seconds)
{
    const auto time = static_cast<std::time_t>(seconds);
    std::tm utc{};
    char text[48];
    if (::gmtime_r(&time, &utc) == nullptr)
        return std::to_string(seconds);
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%SZ", &utc)};
}

std::string UnitText(unsigned unit)
{
    return std::string(UnitSymbol(unit)) + " (unit " + std::to_string(unit) + ")";
}

// Of a message's body, or of another choice.
std::string TagText(std::string_view bytes)
{
    const std::uint64_t tag = UnsignedOf(bytes);
    const MessageKind* kind = FindKind(static_cast<unsigned>(tag));
    return kind != nullptr ? "0x" + HexText(bytes) + " " + kind->pcName : std::to_string(tag);
}

Integer IntegerOf(bool isSigned, std::string_view bytes)
{
    return isSigned ? Integer::OfSigned(SignedOf(bytes)) : Integer::Of(UnsignedOf(bytes));
}

std::string ScaledText(Integer number, const Scale& scale)
{
    char text[kMaxDecimal];
    std::string scaled(text, FormatDecimal(number, scale.iScaler, text));
    const std::string_view unit = UnitSymbol(scale.uiUnit);
    return scaled.append(unit.empty() ? "" : " ").append(unit);
}

std::string NumberText(eFIELD kind, std::string_view bytes)
{
    const std::uint64_t number = UnsignedOf(bytes);
    switch (kind) {
    case eFIELD::SECONDS:
        return std::to_string(number) + " s";
    case eFIELD::TIMESTAMP:
        return TimestampText(number);
    case eFIELD::UNIT:
        return UnitText(static_cast<unsigned>(number));
    case eFIELD::STATUS:
        return "0x" + HexText(bytes) + " (" + std::to_string(number) + ")";
    case eFIELD::TAG:
        return TagText(bytes);
    case eFIELD::CRC:
        return "0x" + HexText(bytes);
    case eFIELD::MINUTES:
        return std::to_string(SignedOf(bytes)) + " min";
    case eFIELD::SCALER:
        return "10^" + std::to_string(SignedOf(bytes));
    default:
        return std::to_string(number);
    }
}

} // namespace

const char* TypeName(unsigned type) noexcept
{
    switch (type) {
    case TYPE_OCTETS:
        return "an octet string";
    case TYPE_BOOLEAN:
        return "a boolean";
    case TYPE_SIGNED:
        return "signed";
    case TYPE_UNSIGNED:
        return "unsigned";
    default:
        return "a list";
    }
}

std::string TypeText(unsigned type, std::uint64_t count)
{
    const std::string number = std::to_string(count);
    if (type == TYPE_SEQUENCE)
        return "list of " + number;
    const std::string_view name = TypeName(type);
    const std::size_t article = type == TYPE_OCTETS ? 3 : type == TYPE_BOOLEAN ? 2 : 0;
    return std::string(name.substr(article)) + ", " + number + (count == 1 ? " byte" : " bytes");
}

std::string ValueText(eFIELD kind, unsigned type, std::string_view bytes, const Scale& scale)
{
    if (kind == eFIELD::NAME)
        return NameText(bytes);
    if (kind == eFIELD::ATTENTION)
        return AttentionText(bytes);
    if (type == TYPE_OCTETS)
        return OctetText(bytes);
    if (type == TYPE_BOOLEAN)
        return UnsignedOf(bytes) != 0 ? "true" : "false";
    if (kind == eFIELD::VALUE)
        return ScaledText(IntegerOf(type == TYPE_SIGNED, bytes), scale);
    return NumberText(kind, bytes);
}

std::string SignNote(unsigned type, std::string_view bytes, const Scale& scale)
{
    if (bytes.empty() || (type != TYPE_SIGNED && type != TYPE_UNSIGNED))
        return {};
    const auto isNegative = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    if (isNegative(bytes.front()))
        return type == TYPE_SIGNED
                   ? "unsigned it were " + ScaledText(IntegerOf(false, bytes), scale)
                   : "signed it were " + ScaledText(IntegerOf(true, bytes), scale);
    const std::string_view last = bytes.substr(bytes.size() - 1);
    const bool fits = bytes.find_first_not_of('\0') == bytes.size() - 1;
    if (type == TYPE_SIGNED && fits && isNegative(last.front()))
        return "with the sign in its last byte it were " + ScaledText(IntegerOf(true, last), scale);
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
    const auto unused = static_cast<unsigned>(8 * (8 - std::min<std::size_t>(bytes.size(), 8)));
    const std::uint64_t number = UnsignedOf(bytes);
    const std::uint64_t sign = std::uint64_t{1} << (63 - unused);
    return static_cast<std::int64_t>((number ^ sign) - sign);
}

} // namespace tool
