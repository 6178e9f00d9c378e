// See reading_rows.h.
#include "tools/output/reading_rows.h"

#include "tools/output/output.h"
#include "tools/output/terminal.h"
#include "tools/reading/obis.h"
#include "tools/reading/unit.h"

#include <algorithm>
#include <ctime>

namespace tool
{

void AppendTime(std::string& line, const Time& time)
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

namespace
{

void AppendNumber(std::string& line, Integer number, int scaler)
{
    char text[kMaxDecimal];
    line.append(text, FormatDecimal(number, scaler, text));
}

// The heading does not tell it already; a seconds index of 0 is a time that is not set.
bool IsOtherTime(const Time& time, const std::optional<Time>& heading) noexcept
{
    return time.ullValue != 0 && (!heading || heading->ullValue != time.ullValue);
}

} // namespace

void AppendValue(std::string& line, const vorn::cRecordPar& value, int scaler)
{
    if (const std::optional<Integer> number = NumberOf(value)) {
        AppendNumber(line, *number, scaler);
    } else if (value.GetType(1) == quarn::KIND_BOOL) {
        line.append(value.GetBool() ? "true" : "false");
    } else if (const std::string_view bytes = BytesOf(value); IsPrintable(bytes)) {
        line.append(bytes);
    } else {
        AppendHexText(line, bytes);
    }
}

void ReadingRow::Set(const Reading& reading, const std::optional<Time>& heading)
{
    ullObis = reading.ullObis;
    value.clear();
    rest.clear();
    const std::optional<Integer> number = NumberOf(*reading.pValue);
    bNumber = number.has_value();
    if (reading.corrected)
        AppendNumber(value, *reading.corrected, reading.scaler.value_or(0));
    else
        AppendValue(value, *reading.pValue, reading.scaler.value_or(0));
    const std::string_view unit = UnitSymbol(reading.unit.value_or(0));
    if (!unit.empty())
        rest.append(" ").append(unit);
    if (reading.corrected) {
        rest.append("  (").append(reading.pcCorrection).append(" of ");
        AppendNumber(rest, *number, 0);
        rest.append(")");
    }
    if (reading.time && IsOtherTime(*reading.time, heading))
        AppendTime(rest.append("  at "), *reading.time);
}

void AppendRows(const std::vector<ReadingRow>& rows, std::size_t count, bool colour,
                std::string& text)
{
    constexpr std::size_t kCodeWidth = 21; // of a code of usual length
    std::size_t nameWidth = 0;
    std::size_t numberWidth = 0;
    for (std::size_t i = 0; i < count; ++i) {
        nameWidth = std::max(nameWidth, ObisName(rows[i].ullObis).size());
        if (rows[i].bNumber)
            numberWidth = std::max(numberWidth, rows[i].value.size());
    }
    for (std::size_t i = 0; i < count; ++i) {
        const ReadingRow& row = rows[i];
        text.append("  ");
        if (colour)
            text.append(escape::kCyan);
        const std::size_t before = text.size();
        AppendObis(text, row.ullObis);
        const std::size_t size = text.size() - before;
        if (colour)
            text.append(escape::kPlain);
        text.append(std::max(size, kCodeWidth) - size + 2, ' ');
        const std::string_view name = ObisName(row.ullObis);
        text.append(name).append(nameWidth - name.size() + 2, ' ');
        if (row.bNumber)
            text.append(numberWidth - row.value.size(), ' ');
        text.append(row.value).append(row.rest).append("\n");
    }
}

} // namespace tool
