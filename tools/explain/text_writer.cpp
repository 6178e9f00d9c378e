// Explanation as text:
//
//   frame 3: 252 bytes at 0x1f8: the checksum is wrong
//         1f8  1b 1b 1b 1b 01 01 01 01     start of a frame
//         200  76                          message 1  open response  [list of 6]
//
// Offsets count from 0, in hexadecimal. Damaged places begin with "!", and their reason stands
// below them.
#include "tools/explain/writers.h"
#include "tools/output/escape.h"
#include "tools/output/terminal.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace tool
{
namespace
{

constexpr std::size_t kRow = 9;      // bytes of hex in a line: an eight-byte number fits
constexpr std::size_t kMaxRows = 16; // what is longer is cut short
constexpr std::size_t kText = 2 + 8 + 1 + 3 * kRow + 3; // column of the description

// Of kinds of bytes, in the order of eWHAT.
constexpr std::string_view kColours[] = {escape::kCyan,  escape::kDim, escape::kMagenta,
                                         escape::kBlue,  "",           escape::kDim,
                                         escape::kYellow};

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
            Put(escape::kDim, name);
        out.Append(name.empty() ? "" : "\n");
        name.clear();
        Put(escape::kBold, section.title);
        if (!section.damage.empty())
            Put(escape::kRed, ": " + section.damage);
        out.Put('\n');
        for (const Annotation& item : section.items) {
            Write(item);
            out.DrainIfLarge();
        }
    }

    void Finish() override {}

private:
    void Put(std::string_view colour, std::string_view text)
    {
        const bool isPlain = !bColours || colour.empty() || text.empty();
        out.Append(isPlain ? std::string_view() : colour);
        AppendEscaped(out, text, ForTerminal);
        out.Append(isPlain ? std::string_view() : escape::kPlain);
    }

    void Write(const Annotation& item)
    {
        const std::size_t size = item.bytes.size();
        for (std::size_t at = 0; at < std::min(size, kRow * kMaxRows); at += kRow) {
            Hex(item, at);
            if (at == 0)
                Description(item);
            out.Put('\n');
        }
        if (size > kRow * kMaxRows)
            Below(0, escape::kDim, "and " + std::to_string(size - kRow * kMaxRows) + " bytes more");
        if (!item.note.empty())
            Below(item.uiDepth, escape::kDim, item.note);
        if (!item.damage.empty())
            Below(item.uiDepth, escape::kRed, "^ " + item.damage);
    }

    void Below(unsigned depth, std::string_view colour, const std::string& text)
    {
        out.Pad(kText + 2 * std::size_t{depth});
        Put(colour, text);
        out.Put('\n');
    }

    void Hex(const Annotation& item, std::size_t at)
    {
        const std::string_view bytes = std::string_view(item.bytes).substr(at, kRow);
        char offset[24];
        std::snprintf(offset, sizeof offset, "%8llx ",
                      static_cast<unsigned long long>(item.ullOffset) + at);
        Put(escape::kRed, item.damage.empty() ? "" : "! ");
        out.Pad(item.damage.empty() ? 2 : 0);
        Put(escape::kDim, offset);
        const std::string_view colour = kColours[static_cast<unsigned>(item.eWhat)];
        const std::size_t tl = at == 0 && item.eWhat == eWHAT::VALUE ? item.uiTl : 0;
        Put(escape::kDim, Spaced(bytes.substr(0, tl)));
        Put(colour, Spaced(bytes.substr(std::min(tl, bytes.size()))));
        if (at == 0)
            out.Pad(3 * (kRow - bytes.size()) + 3);
    }

    static std::string Spaced(std::string_view bytes)
    {
        std::string text(3 * bytes.size(), ' ');
        for (std::size_t i = 0; i < bytes.size(); ++i)
            WriteHex(bytes.substr(i, 1), &text[3 * i + 1]);
        return text;
    }

    void Description(const Annotation& item)
    {
        out.Pad(2 * std::size_t{item.uiDepth});
        const char* gap = "";
        const auto put = [&](std::string_view colour, const std::string& text) {
            out.Append(text.empty() ? "" : gap);
            Put(colour, text);
            gap = text.empty() ? gap : "  ";
        };
        put(kColours[static_cast<unsigned>(item.eWhat)], item.name);
        put(item.eWhat == eWHAT::ABSENT ? escape::kDim : escape::kBold, item.value);
        put(escape::kDim, item.type.empty() ? "" : '[' + item.type + ']');
    }

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
