// Corrections of readings that some meters encode wrongly. The user switches them on, for codes
// and, where wanted, for one server; the number that came stays beside the corrected one.
#ifndef TOOLS_READING_CORRECTION_H
#define TOOLS_READING_CORRECTION_H

#include "tools/reading/obis.h"
#include "tools/reading/reading.h"

#include <string>
#include <string_view>
#include <vector>

namespace tool
{

enum class eCORRECTION {
    // A number without sign was sent as a signed one, so that a large one arrives negative: 65000
    // in two bytes as -536. A negative number counts as one of two bytes when it fits there, as one
    // of eight when it came in more than four, else as one of four.
    UNSIGNED,
    // A negative number of one byte was sent in a wider field without its sign: -5 arrives as 251.
    // 128 to 255 become -128 to -1.
    SIGN8
};

struct Correction {
    eCORRECTION what = eCORRECTION::UNSIGNED;
    ObisPattern pattern;
    std::string server; // bytes of its id; empty: any
};

// Reads [SERVERHEX/]OBIS=unsigned|sign8, OBIS being a pattern. False on anything else.
bool ParseCorrection(std::string_view text, Correction& correction);

// Applies to each reading of server the first correction that is meant for its code. A number that
// needs no correction stays without one.
void Correct(const std::vector<Correction>& corrections, std::string_view server,
             std::vector<Reading>& readings);

} // namespace tool

#endif
