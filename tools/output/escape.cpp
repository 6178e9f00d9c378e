// See escape.h.
#include "tools/output/escape.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tool
{
namespace
{

bool IsHarmless(char32_t code) noexcept
{
    static constexpr struct {
        char32_t from;
        char32_t to;
    } kHarmful[] = {{0, 0x1F},
                    {0x7F, 0x9F},
                    {0x061C, 0x061C},
                    {0x200E, 0x200F},
                    {0x2028, 0x202E},
                    {0x2066, 0x2069},
                    {Character::kInvalid, Character::kInvalid}};
    return std::none_of(std::begin(kHarmful), std::end(kHarmful), [code](const auto& range) {
        return code >= range.from && code <= range.to;
    });
}

std::string Number(const char* format, unsigned long number)
{
    char digits[16];
    return {digits, static_cast<std::size_t>(std::snprintf(digits, sizeof digits, format, number))};
}

std::string Visible(const Character& c)
{
    return c.bytes.size() == 1 ? Number("\\x%02lx", static_cast<unsigned char>(c.bytes[0]))
                               : Number("\\u%04lx", c.code);
}

// replace(c) gives the text in the place of a character, or an empty one where it stays.
template <typename Replace>
std::string Replaced(std::string_view text, Replace replace)
{
    std::string safe;
    safe.reserve(text.size());
    while (!text.empty()) {
        const Character c = First(text);
        const std::string other = replace(c);
        safe.append(other.empty() ? c.bytes : std::string_view(other));
        text.remove_prefix(c.bytes.size());
    }
    return safe;
}

bool IsOneOf(const Character& c, std::string_view set) noexcept
{
    return set.find(c.bytes[0]) != std::string_view::npos;
}

} // namespace

Character First(std::string_view text) noexcept
{
    static constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000}; // by size
    const auto byte = [text](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[i]));
    };
    const char32_t lead = byte(0);
    if (lead < 0x80)
        return {text.substr(0, 1), lead};
    const std::size_t size = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = lead & 0x7FU >> size;
    std::size_t have = 1;
    for (; have < std::min(size, text.size()) && byte(have) >> 6U == 2; ++have)
        code = code << 6U | (byte(have) & 0x3FU);
    const bool isSurrogate = code >> 11U == 0x1B;
    if (size == 1 || lead > 0xF4 || have < size || code < kLeast[size] || code > 0x10FFFF ||
        isSurrogate)
        return {text.substr(0, 1), Character::kInvalid};
    return {text.substr(0, size), code};
}

bool IsPlain(std::string_view text) noexcept
{
    static constexpr auto kPlain = [] {
        std::array<bool, 256> plain{};
        for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                             "0123456789 .:;-*/?()"))
            plain[static_cast<unsigned char>(c)] = true;
        return plain;
    }();
    return (text.empty() || text[0] != '-') && std::all_of(text.begin(), text.end(), [](char c) {
               return kPlain[static_cast<unsigned char>(c)];
           });
}

std::string ForTerminal(std::string_view text)
{
    return Replaced(
        text, [](const Character& c) { return IsHarmless(c.code) ? std::string() : Visible(c); });
}

std::string ForHtml(std::string_view text)
{
    return Replaced(text, [](const Character& c) {
        return IsOneOf(c, "&<>\"'") ? Number("&#%lu;", c.code)
               : IsHarmless(c.code) ? std::string()
                                    : Visible(c);
    });
}

std::string ForJson(std::string_view text)
{
    return Replaced(text, [](const Character& c) {
        if (IsOneOf(c, "\"\\"))
            return '\\' + std::string(c.bytes);
        return IsHarmless(c.code)
                   ? std::string()
                   : Number("\\u%04lx", c.code == Character::kInvalid ? 0xFFFD : c.code);
    });
}

std::string ForCsv(std::string_view text)
{
    std::string cell = ForTerminal(text);
    const bool isFormula = !cell.empty() && IsOneOf(First(cell), "=+-@");
    const bool isNumber = cell.find_first_of("0123456789") == 1 &&
                          cell.find_first_not_of("0123456789.", 1) == std::string::npos &&
                          !IsOneOf(First(cell), "=@");
    if (isFormula && !isNumber)
        cell.insert(0, 1, '\'');
    if (cell.find_first_of("\",") == std::string::npos)
        return cell;
    std::string quoted = "\"";
    for (const char c : cell)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

} // namespace tool
