// --format text: for people. Per SML file a heading, then an aligned line per reading; messages
// without readings (parameters, attention responses, requests) as an indented outline.
#include "tools/output/output_format.h"
#include "tools/output/reading_rows.h"
#include "tools/output/terminal.h"
#include "tools/reading/status.h"

#include <string>

namespace tool
{
namespace
{

constexpr unsigned kMaxDepth = 64; // of an outline; what is deeper is left out

// Labels whose numbers are six octets that name something.
bool IsName(std::string_view label) noexcept
{
    return label == "objName" || label == "parName" || label == "path_Entry" ||
           label == "listName" || label == "object_List_Entry";
}

class cTextFormat : public cFormat
{
public:
    cTextFormat(cOutput& output, const FormatOptions& options)
        : cFormat(output), bColour(options.bColour)
    {
    }

    bool IsComplete() const noexcept override { return false; }

    void Message(const Frame& frame, const MessageInfo& info, const vorn::cRecord&,
                 const std::vector<Reading>& readings) override
    {
        // A heading stands before the first line of each file.
        if (info.bFirst || frame.ullNumber != ullFrame)
            bHeading = true;
        ullFrame = frame.ullNumber;
        if (!readings.empty()) {
            Heading(info);
            Readings(info, readings);
        } else if (HasOutline(info)) {
            Heading(info);
            line.assign("  ").append(info.pBody->GetName());
            EndLine();
            Outline(Nested(*info.pBody), 2);
        }
    }

private:
    // Open and close messages say nothing of their own.
    static bool HasOutline(const MessageInfo& info) noexcept
    {
        return info.pBody != nullptr && !IsOpenOrClose(info.uiIdentifier) &&
               info.uiIdentifier != SML_GET_LIST_RES &&
               info.uiIdentifier != SML_GET_PROFILE_LIST_RES;
    }
    static bool IsOpenOrClose(unsigned identifier) noexcept
    {
        return identifier == SML_OPEN_REQ || identifier == SML_OPEN_RES ||
               identifier == SML_CLOSE_REQ || identifier == SML_CLOSE_RES;
    }

    void EndLine()
    {
        line += '\n';
        out.Append(line);
    }

    void Heading(const MessageInfo& info)
    {
        if (!bHeading)
            return;
        bHeading = false;
        if (!bFirstHeading)
            out.Put('\n');
        bFirstHeading = false;
        line.assign(bColour ? escape::kBold : "");
        line.append("frame ").append(std::to_string(ullFrame));
        if (!info.server.empty())
            AppendHexText(line.append("  server "), info.server);
        if (info.time)
            AppendTime(line.append("  time "), *info.time);
        if (bColour)
            line.append(escape::kPlain);
        EndLine();
    }

    void Readings(const MessageInfo& info, const std::vector<Reading>& readings)
    {
        if (rows.size() < readings.size())
            rows.resize(readings.size());
        for (std::size_t i = 0; i < readings.size(); ++i)
            rows[i].Set(readings[i], info.time);
        line.clear();
        AppendRows(rows, readings.size(), bColour, line);
        out.Append(line);
    }

    void Outline(const vorn::cRecord& record, unsigned depth)
    {
        if (depth > kMaxDepth)
            return;
        for (const vorn::cRecordPar& par : record) {
            const std::string_view label = par.GetName();
            line.assign(2 * std::size_t{depth}, ' ');
            if (label == "parTree") {
                TreeNode(Nested(par), depth);
            } else if (par.GetType(1) != quarn::KIND_RECORD) {
                Leaf(label, par);
            } else if (const std::optional<Time> time = TimeIn(par)) {
                AppendTime(line.append(label).append("  "), *time);
                EndLine();
            } else {
                line.append(label);
                EndLine();
                Outline(Nested(par), depth + 1);
            }
        }
    }

    void Leaf(std::string_view label, const vorn::cRecordPar& par)
    {
        line.append(label).append("  ");
        if (label == "attentionNo") {
            Attention(par.GetUInt64());
        } else if (IsName(label)) {
            AppendObis(line, par.GetUInt64());
        } else {
            AppendValue(line, par, 0);
        }
        EndLine();
    }

    void Attention(std::uint64_t number)
    {
        char octets[SML_NAME_SIZE];
        for (unsigned i = 0; i < SML_NAME_SIZE; ++i)
            octets[i] = static_cast<char>(number >> (40 - 8 * i) & 0xFFU);
        AppendHexText(line, {octets, SML_NAME_SIZE});
        if (const char* meaning = AttentionMeaning(number))
            line.append("  ").append(meaning);
    }

    // A node is one line: its name and, when it is a plain value, that. Children stand below.
    void TreeNode(const vorn::cRecord& node, unsigned depth)
    {
        const vorn::cRecordPar* name = FindIn(node, "parName");
        AppendObis(line, name != nullptr ? name->GetUInt64() : 0);
        const vorn::cRecordPar* wrapped = FindIn(node, "procParVal");
        const vorn::cRecord held = wrapped != nullptr ? Nested(*wrapped) : vorn::cRecord();
        const vorn::cRecordPar* content = FindIn(held, "value");
        const bool plain = content != nullptr && content->GetType(1) != quarn::KIND_RECORD;
        if (plain)
            AppendValue(line.append("  "), *content, 0);
        EndLine();
        if (content != nullptr && !plain)
            Outline(Nested(*content), depth + 1);
        if (const vorn::cRecordPar* children = FindIn(node, "child_List"))
            Outline(Nested(*children), depth + 1);
    }

    bool bColour;
    std::uint64_t ullFrame = 0;
    bool bHeading = true;
    bool bFirstHeading = true;
    std::string line;
    std::vector<ReadingRow> rows; // kept for their memory
};

} // namespace

std::unique_ptr<cFormat> MakeTextFormat(cOutput& output, const FormatOptions& options)
{
    return std::make_unique<cTextFormat>(output, options);
}

} // namespace tool
