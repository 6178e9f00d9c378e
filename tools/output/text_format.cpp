// --format text: for people. Per SML file a heading, then an aligned line per reading; messages
// without readings (parameters, attention responses, requests) as an indented outline.
#include "tools/output/format.h"
#include "tools/reading/obis.h"
#include "tools/reading/status.h"
#include "tools/reading/unit.h"

#include <algorithm>
#include <ctime>
#include <string>

namespace tool
{
namespace
{

constexpr unsigned kMaxDepth = 64; // of an outline; what is deeper is left out

void AppendText(std::string& line, const Time& time)
{
    char text[48];
    const auto seconds = static_cast<std::time_t>(time.ullValue);
    std::tm utc{};
    std::size_t size = 0;
    if (time.uiType != 1 && ::gmtime_r(&seconds, &utc) != nullptr)
        size = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%SZ", &utc);
    if (size != 0)
        line.append(text, size);
    else
        line.append(std::to_string(time.ullValue)).append(" s");
}

void AppendHexText(std::string& line, std::string_view bytes)
{
    const std::size_t size = line.size();
    line.resize(size + 2 * bytes.size());
    WriteHex(bytes, &line[size]);
}

void AppendObis(std::string& line, std::uint64_t code)
{
    char text[kMaxObis];
    line.append(text, FormatObis(code, text));
}

// A leaf: number, boolean or byte string.
void AppendValue(std::string& line, const vorn::cRecordPar& value, int scaler)
{
    if (const std::optional<Integer> number = NumberOf(value)) {
        char text[kMaxDecimal];
        line.append(text, FormatDecimal(*number, scaler, text));
    } else if (value.GetType(1) == vorn::TYPE_BOOL) {
        line.append(value.GetBool() ? "true" : "false");
    } else if (const std::string_view bytes = BytesOf(value); IsPrintable(bytes)) {
        line.append(bytes);
    } else {
        AppendHexText(line, bytes);
    }
}

// Labels whose numbers are six octets that name something.
bool IsName(std::string_view label) noexcept
{
    return label == "objName" || label == "parName" || label == "path_Entry" ||
           label == "listName" || label == "object_List_Entry";
}

class cTextFormat : public cFormat
{
public:
    explicit cTextFormat(cOutput& output) : cFormat(output) {}

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
        line.assign("frame ").append(std::to_string(ullFrame));
        if (!info.server.empty())
            AppendHexText(line.append("  server "), info.server);
        if (info.time)
            AppendText(line.append("  time "), *info.time);
        EndLine();
    }

    // Codes and names left, numbers right, byte strings from where numbers begin.
    void Readings(const MessageInfo& info, const std::vector<Reading>& readings)
    {
        std::size_t nameWidth = 0;
        std::size_t numberWidth = 0;
        for (const Reading& reading : readings) {
            nameWidth = std::max(nameWidth, ObisName(reading.ullObis).size());
            if (NumberOf(*reading.pValue)) {
                ValueOf(reading);
                numberWidth = std::max(numberWidth, value.size());
            }
        }
        for (const Reading& reading : readings) {
            line.assign("  ");
            AppendObis(line, reading.ullObis);
            line.resize(std::max<std::size_t>(line.size(), kObisColumn) + 2, ' ');
            const std::string_view name = ObisName(reading.ullObis);
            line.append(name).append(nameWidth - name.size() + 2, ' ');
            ValueOf(reading);
            if (NumberOf(*reading.pValue))
                line.append(numberWidth - value.size(), ' ');
            line.append(value);
            const std::string_view unit = UnitSymbol(reading.unit.value_or(0));
            if (!unit.empty())
                line.append(" ").append(unit);
            if (reading.time && IsOtherTime(*reading.time, info.time))
                AppendText(line.append("  at "), *reading.time);
            EndLine();
        }
    }

    void ValueOf(const Reading& reading)
    {
        value.clear();
        AppendValue(value, *reading.pValue, reading.scaler.value_or(0));
    }

    // The heading does not tell it already; a seconds index of 0 is a time that is not set.
    static bool IsOtherTime(const Time& time, const std::optional<Time>& heading) noexcept
    {
        return time.ullValue != 0 && (!heading || heading->ullValue != time.ullValue);
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
            } else if (par.GetType(1) != vorn::TYPE_RECORD) {
                Leaf(label, par);
            } else if (const std::optional<Time> time = TimeIn(par)) {
                AppendText(line.append(label).append("  "), *time);
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
        char octets[6];
        for (unsigned i = 0; i < 6; ++i)
            octets[i] = static_cast<char>(number >> (40 - 8 * i) & 0xFFU);
        AppendHexText(line, {octets, 6});
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
        const bool plain = content != nullptr && content->GetType(1) != vorn::TYPE_RECORD;
        if (plain)
            AppendValue(line.append("  "), *content, 0);
        EndLine();
        if (content != nullptr && !plain)
            Outline(Nested(*content), depth + 1);
        if (const vorn::cRecordPar* children = FindIn(node, "child_List"))
            Outline(Nested(*children), depth + 1);
    }

    static constexpr std::size_t kObisColumn = 23; // two blanks and a code of usual length

    std::uint64_t ullFrame = 0;
    bool bHeading = true;
    bool bFirstHeading = true;
    std::string line;
    std::string value;
};

} // namespace

std::unique_ptr<cFormat> MakeTextFormat(cOutput& output)
{
    return std::make_unique<cTextFormat>(output);
}

} // namespace tool
