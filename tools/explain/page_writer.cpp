// Explanation as one HTML page; see page.h for what its script expects. Everything that comes from
// an input is escaped, names of files as well.
#include "tools/explain/page.h"
#include "tools/explain/writers.h"
#include "tools/output/escape.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

namespace tool
{
namespace
{

constexpr std::size_t kRow = 16; // bytes in a line of the dump; the style's width fits it

// Classes of kinds of bytes, in the order of eWHAT.
constexpr char kClasses[] = {'t', 'p', 'c', 's', 'v', 'a', 'u'};

std::string HexNumber(std::uint64_t number)
{
    char text[24];
    std::snprintf(text, sizeof text, "%llx", static_cast<unsigned long long>(number));
    return text;
}

// Within an element of that tag; nothing when there is no text.
std::string Within(const char* tag, std::string_view text)
{
    return text.empty() ? std::string()
                        : '<' + std::string(tag) + '>' + ForHtml(text) + "</" + tag + '>';
}

class cPageWriter : public cExplanationWriter
{
public:
    explicit cPageWriter(cOutput& output) : out(output) {}

    std::uint64_t Limit() const noexcept override { return kMaxPageInput; }

    void Begin(const std::string& input) override
    {
        if (!names.empty())
            body += "<h2 class=file>" + ForHtml(input) + "</h2>\n";
        names += (names.empty() ? "" : ", ") + input;
    }

    void Write(const Section& section) override
    {
        const std::string name = section.title.substr(0, section.title.find(':'));
        const std::string id = "s" + std::to_string(++uiSections);
        body += "<section id=" + id + " data-name=\"" + ForHtml(name) + "\"><h2>" +
                ForHtml(section.title) + ' ' + Within("strong", section.damage) + "</h2>\n";
        body += "<div class=pair><div class=dump aria-hidden=true><pre class=at>";
        Offsets(section);
        body += "</pre><pre class=hex>";
        for (const Annotation& item : section.items)
            Hex(item);
        body += "</pre></div>\n<div class=tree role=tree aria-label=\"" + ForHtml(name) + "\">\n";
        Rows(section, name);
        body += "</div></div></section>\n";
    }

    void Finish() override
    {
        const std::string title = ForHtml(names);
        out.Append("<!DOCTYPE html>\n<html lang=en><head><meta charset=utf-8>\n"
                   "<meta name=viewport content=\"width=device-width, initial-scale=1\">\n<title>");
        out.Append(title + " explained</title>\n<style>" + kPageStyle + "</style></head>\n<body>");
        out.Append(
            "<header><h1>" + title + "</h1>\n<p>" + std::to_string(ullBytes) +
            " bytes, offsets in hexadecimal. Point at bytes or at their meaning to see both; "
            "a click on bytes goes to their meaning.</p>\n<p><kbd>Tab</kbd> to a tree, "
            "<kbd>↑</kbd> <kbd>↓</kbd> <kbd>←</kbd> <kbd>→</kbd> within it, <kbd>n</kbd> "
            "<kbd>p</kbd> next and previous damaged place.</p>\n");
        if (uiDamages != 0)
            out.Append("<nav aria-label=\"damaged places\"><strong>Damaged places: " +
                       std::to_string(uiDamages) + "</strong><ol>\n" + damages + "</ol></nav>\n");
        out.Append("</header>\n<main>\n");
        out.Append(body);
        out.Append("</main>\n<footer id=place aria-live=polite></footer>\n<script>");
        out.Append(kPageScript);
        out.Append("</script>\n</body></html>\n");
    }

private:
    void Offsets(const Section& section)
    {
        std::size_t size = 0;
        for (const Annotation& item : section.items)
            size += item.bytes.size();
        for (std::size_t at = 0; at < size; at += kRow)
            body += HexNumber(section.ullOffset + at) + '\n';
        ullBytes += size;
    }

    void Hex(const Annotation& item)
    {
        body += std::string("<i class=") + Classes(item) + '>';
        for (std::size_t i = 0; i < item.bytes.size(); ++i) {
            if (i == 0 && item.uiTl != 0)
                body += "<s>";
            char digits[2];
            WriteHex(std::string_view(item.bytes).substr(i, 1), digits);
            body.append(digits, 2);
            if (i + 1 == item.uiTl)
                body += "</s>";
            if (i + 1 != item.bytes.size())
                body += ' ';
        }
        body += "</i> ";
    }

    static std::string Classes(const Annotation& item)
    {
        const std::string what(1, kClasses[static_cast<unsigned>(item.eWhat)]);
        return item.damage.empty() ? what : '"' + what + " x\"";
    }

    // Each damaged place has a row to go to: the first one where no row tells the damage.
    void Rows(const Section& section, const std::string& name)
    {
        const bool isTold =
            std::any_of(section.items.begin(), section.items.end(),
                        [](const Annotation& item) { return !item.damage.empty(); });
        bool first = true;
        for (const Annotation& item : section.items) {
            std::string id;
            if (!item.damage.empty())
                id = Damage(item.ullOffset, name + ", " +
                                                (item.name.empty() ? "unnamed" : item.name) + ": " +
                                                item.damage);
            else if (first && !isTold && !section.damage.empty())
                id = Damage(item.ullOffset, name + ": " + section.damage);
            Row(item, id, first);
            first = false;
        }
    }

    void Row(const Annotation& item, const std::string& id, bool first)
    {
        const std::string depth = std::to_string(item.uiDepth + 1);
        body += "<div role=treeitem class=" + Classes(item) + " aria-level=" + depth +
                " style=--l:" + std::to_string(item.uiDepth);
        if (first)
            body += " tabindex=0";
        if (!id.empty())
            body += " id=" + id;
        body += '>' + Within("span", item.name) + Within("b", item.value) +
                Within("small", item.type) + Within("em", item.note) +
                Within("strong", item.damage) + "</div>\n";
    }

    // Lists a damaged place; returns its id.
    std::string Damage(std::uint64_t offset, const std::string& text)
    {
        std::string id = "d" + std::to_string(++uiDamages);
        damages += "<li><a href=\"#" + id + "\"><code>" + HexNumber(offset) + "</code>" +
                   ForHtml(text) + "</a></li>\n";
        return id;
    }

    cOutput& out;
    std::string names;
    std::string body;
    std::string damages;
    unsigned uiSections = 0;
    unsigned uiDamages = 0;
    std::uint64_t ullBytes = 0;
};

} // namespace

std::unique_ptr<cExplanationWriter> MakePageWriter(cOutput& output)
{
    return std::make_unique<cPageWriter>(output);
}

} // namespace tool
