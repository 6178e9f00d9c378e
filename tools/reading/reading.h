// Readings: what a user wants from a message, one per measured quantity. They are found in get-list
// responses (each list entry is one) and in get-profile-list responses (each period entry is one).
#ifndef TOOLS_READING_READING_H
#define TOOLS_READING_READING_H

#include "quarn/quarn.h"
#include "tools/reading/decimal.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tool
{

// A time as the meter sent it.
struct Time {
    unsigned uiType = 0; // 1 seconds index; 2 and 3 seconds since 1970
    std::uint64_t ullValue = 0;
};

// What every reading of one message shares. The views point into the message's record.
struct MessageInfo {
    unsigned uiNumber = 0;                   // within its SML file, from 1
    unsigned uiIdentifier = 0;               // one of eSML_MSG
    int iError = 0;                          // one of eSML_STATUS
    bool bFirst = false;                     // it opens its file
    bool bLast = false;                      // it closes its file
    std::string_view server;                 // bytes of the server id; empty when there is none
    std::optional<Time> time;                // of the response
    const vorn::cRecordPar* pBody = nullptr; // null when the message kind is not known
};

// One reading. pValue points into the message's record, as do the views.
struct Reading {
    std::uint64_t ullObis = 0;
    std::optional<Time> time;
    std::optional<std::uint64_t> status;
    std::optional<unsigned> unit;
    std::optional<int> scaler;
    const vorn::cRecordPar* pValue = nullptr; // a leaf: never a record
    std::optional<Integer> corrected;         // what it should have been
    const char* pcCorrection = "";            // and what was done for that
};

// The fields of a parser's record that concern the message as a whole. Valid as long as record
// lives unchanged.
MessageInfo DescribeMessage(const vorn::cRecord& record);

// Replaces the content of readings by those of the message, which may be none. An entry without a
// value is no reading. Valid as long as record lives unchanged.
void CollectReadings(const MessageInfo& message, std::vector<Reading>& readings);

// The number in par, when it holds one.
std::optional<Integer> NumberOf(const vorn::cRecordPar& par) noexcept;

// The time in a time record; nothing when par holds none.
std::optional<Time> TimeIn(const vorn::cRecordPar& par) noexcept;

// The record in a record parameter; an empty one when par holds none.
inline vorn::cRecord Nested(const vorn::cRecordPar& par) noexcept
{
    vorn::cRecord record;
    par.GetRecord(record);
    return record;
}

// The bytes of a data parameter.
inline std::string_view BytesOf(const vorn::cRecordPar& par) noexcept
{
    return {par.GetData(), static_cast<std::size_t>(par.GetSize())};
}

// All bytes are printable ASCII: such a byte string is shown as text. Bytes that are none are not.
bool IsPrintable(std::string_view bytes) noexcept;

// The first parameter of that name, in place; null when there is none. Valid as long as the record
// lives unchanged (another handle of the same record keeps it alive, too).
const vorn::cRecordPar* FindIn(const vorn::cRecord& record, std::string_view name) noexcept;

} // namespace tool

#endif
