// Text of unknown origin (names of files and hosts, words of the command line, values of a meter)
// made harmless for the place where it is shown. Replaced by numbers are control characters of all
// kinds, line and paragraph separators, marks that turn the direction of writing, and bytes that
// are no UTF-8.
#ifndef TOOLS_OUTPUT_ESCAPE_H
#define TOOLS_OUTPUT_ESCAPE_H

#include <string>
#include <string_view>

namespace tool
{

struct Character {
    static constexpr char32_t kInvalid = 0xFFFFFFFF;

    std::string_view bytes; // one of them where it is invalid
    char32_t code;
};

// The character that a text begins with. REQUIRES: the text is not empty.
Character First(std::string_view text) noexcept;

std::string ForTerminal(std::string_view text); // \x1b \u202e \xff
std::string ForHtml(std::string_view text);     // the same, and markup as character references
std::string ForJson(std::string_view text);     // what stands between the quotes of a string
// A cell of a table: quoted where needed; an apostrophe before what a spreadsheet would compute.
std::string ForCsv(std::string_view text);

// True: none of these would replace anything. False: that has to be tried.
bool IsPlain(std::string_view text) noexcept;

// Appends text as one of them makes it.
template <class Output>
void AppendEscaped(Output& out, std::string_view text, std::string (*escape)(std::string_view))
{
    if (IsPlain(text))
        out.Append(text);
    else
        out.Append(escape(text));
}

} // namespace tool

#endif
