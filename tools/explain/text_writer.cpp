// Explanation as text:
//
//   frame 3: 252 bytes at 1f8: the checksum is wrong
//         1f8  1b 1b 1b 1b 01 01 01 01     start of a frame
//         200  76                          message 1  open response  [list of 6]
//
// Offsets count from 0, in hexadecimal. Damaged places begin with "!", and their reason stands
// below them.
#include "tools/explain/writers.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace tool
{
namespace
{

constexpr std::size_t kRow = 9;      // bytes of hex in a line: an eight-byte number fits
constexpr std::size_t kMaxRows = 16; // what is longer is cut short

// Colours of kinds of bytes, in the order of eWHAT.
constexpr const char* kColours[] = {"\x1B[36m", "\x1B[2m", "\x1B[35m", "\x1B[34m",
                                    "",         "\x1B[2m", "\x1B[33m"};
constexpr const char* kDim = "\x1B[2m";
constexpr const char* kBold = "\x1B[1m";
constexpr const char* kRed = "\x1B[1;31m";
constexpr const char* kPlain = "\x1B[0m";

class cTextWriter : public cExplanationWriter
{
public:
    cTextWriter(cOutput& output, bool colours) : out(output), bColours(colours) {}

    void Begin(const std::string& input) override { name = input; }

    void Write(const Section& section) override
    {
        if (bAny)
            out.Put('\n');
        bAny = true;
        if (!name.empty())
            Coloured(kDim, name + '\n');
        name.clear();
        Coloured(kBold, section.title);
        if (!section.damage.empty())
            Coloured(kRed, ": " + section.damage);
        out.Put('\n');
        for (const Annotation& item : section.items) {
            Item(item);
            out.DrainIfLarge();
        }
    }

    void Finish() override {}

private:
    void Coloured(const char* colour, std::string_view text)
    {
        const bool use = bColours && *colour != '\0' && !text.empty();
        if (use)
            out.Append(colour);
        out.Append(text);
        if (use)
            out.Append(kPlain);
    }

    void Item(const Annotation& item)
    {
        const std::size_t rows = std::min((item.bytes.size() + kRow - 1) / kRow, kMaxRows);
        for (std::size_t row = 0; row < rows; ++row) {
            Hex(item, row);
            if (row == 0)
                Description(item);
            out.Put('\n');
        }
        const std::string indent(kDescription + 2 * std::size_t{item.uiDepth}, ' ');
        if (item.bytes.size() > rows * kRow)
            out.Append("            ... " + std::to_string(item.bytes.size() - rows * kRow) +
                       " bytes more\n");
        if (!item.note.empty())
            Below(indent, kDim, item.note);
        if (!item.damage.empty())
            Below(indent, kRed, "^ " + item.damage);
    }

    void Below(const std::string& indent, const char* colour, const std::string& text)
    {
        out.Append(indent);
        Coloured(colour, text);
        out.Put('\n');
    }

    void Hex(const Annotation& item, std::size_t row)
    {
        const std::string_view bytes = std::string_view(item.bytes).substr(row * kRow, kRow);
        char offset[32];
        std::snprintf(offset, sizeof offset, "%8llx ",
                      static_cast<unsigned long long>(item.ullOffset + row * kRow));
        Coloured(kRed, item.damage.empty() ? "  " : "! ");
        Coloured(kDim, offset);
        const std::size_t tl = row == 0 ? item.uiTl : 0;
        const char* colour = kColours[static_cast<unsigned>(item.eWhat)];
        Coloured(item.eWhat == eWHAT::VALUE ? kDim : colour, Spaced(bytes.substr(0, tl)));
        Coloured(colour, Spaced(bytes.substr(std::min(tl, bytes.size()))));
        if (row == 0)
            out.Pad(3 * (kRow - bytes.size()) + 3);
    }

    static std::string Spaced(std::string_view bytes)
    {
        std::string text;
        for (const char& c : bytes) {
            char digits[2];
            WriteHex({&c, 1}, digits);
            text.append(1, ' ').append(digits, 2);
        }
        return text;
    }

    void Description(const Annotation& item)
    {
        out.Pad(2 * std::size_t{item.uiDepth});
        Coloured(kColours[static_cast<unsigned>(item.eWhat)], item.name);
        if (!item.name.empty() && !item.value.empty())
            out.Append("  ");
        Coloured(item.eWhat == eWHAT::ABSENT ? kDim : kBold, item.value);
        if (!item.type.empty())
            Coloured(kDim,
                     (item.name.empty() && item.value.empty() ? "[" : "  [") + item.type + "]");
    }

    static constexpr std::size_t kDescription = 2 + 10 + 3 * kRow + 2; // column of it

    cOutput& out;
    bool bColours;
    bool bAny = false;
    std::string name; // of the input whose first section is to come
};

} // namespace

std::unique_ptr<cExplanationWriter> MakeTextWriter(cOutput& output, bool colours)
{
    return std::make_unique<cTextWriter>(output, colours);
}

} // namespace tool
