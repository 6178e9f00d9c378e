// Readings as aligned lines for people: code, name, value with unit, and what else there is to say.
#ifndef TOOLS_OUTPUT_READING_ROWS_H
#define TOOLS_OUTPUT_READING_ROWS_H

#include "tools/reading/reading.h"

#include <string>
#include <vector>

namespace tool
{

// A time of the meter: UTC, or seconds where the meter knows no more.
void AppendTime(std::string& line, const Time& time);
void AppendHexText(std::string& line, std::string_view bytes);
void AppendObis(std::string& line, std::uint64_t code);
// A leaf: number, boolean or byte string.
void AppendValue(std::string& line, const vorn::cRecordPar& value, int scaler);

struct ReadingRow {
    std::uint64_t ullObis = 0;
    std::string value;
    bool bNumber = false;
    std::string rest; // unit, correction, time

    // heading: the time that stands above the rows, which they do not repeat.
    void Set(const Reading& reading, const std::optional<Time>& heading);
};

// Appends a line for each of the count first rows to text, each indented by two blanks and ended by
// a line feed: codes and names left, numbers right, byte strings from where numbers begin.
void AppendRows(const std::vector<ReadingRow>& rows, std::size_t count, bool colour,
                std::string& text);

} // namespace tool

#endif
