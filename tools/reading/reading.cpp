// See reading.h. Fields are read in one pass over a record's parameters, by reference: a nested
// record handle shares its node with the message, so that pointers into it outlive the handle.
#include "tools/reading/reading.h"

#include <algorithm>

namespace tool
{
namespace
{

// A value that is itself a record holds a time: its number is taken.
const vorn::cRecordPar* LeafOf(const vorn::cRecordPar& value) noexcept
{
    if (value.GetType(1) != quarn::KIND_RECORD)
        return &value;
    const vorn::cRecord outer = Nested(value);
    const vorn::cRecordPar* list = FindIn(outer, "smlList");
    if (list == nullptr)
        return nullptr;
    const vorn::cRecord choice = Nested(*list);
    const vorn::cRecordPar* time = FindIn(choice, "SmlTime");
    if (time == nullptr)
        return nullptr;
    return FindIn(Nested(*time), "value");
}

void AddEntry(const vorn::cRecordPar& entry, const Reading& shared, std::vector<Reading>& readings)
{
    Reading reading = shared;
    for (const vorn::cRecordPar& par : Nested(entry)) {
        const std::string_view name = par.GetName();
        if (name == "objName")
            reading.ullObis = par.GetUInt64();
        else if (name == "status")
            reading.status = par.GetUInt64();
        else if (name == "valTime") {
            if (const auto time = TimeIn(par))
                reading.time = time;
        } else if (name == "unit")
            reading.unit = par.GetUInt();
        else if (name == "scaler")
            reading.scaler = par.GetSInt();
        else if (name == "value")
            reading.pValue = LeafOf(par);
    }
    if (reading.pValue != nullptr)
        readings.push_back(reading);
}

void DescribeBody(const vorn::cRecord& body, MessageInfo& info)
{
    for (const vorn::cRecordPar& par : body) {
        const std::string_view name = par.GetName();
        if (name == "serverId")
            info.server = BytesOf(par);
        else if (name == "actSensorTime" || name == "actTime")
            info.time = TimeIn(par);
    }
}

struct ListBody {
    unsigned uiIdentifier;
    const char* pcList;   // label of the list of entries
    const char* pcTime;   // label of the time that entries share
    const char* pcStatus; // label of the status that entries share, if any
};

constexpr ListBody kListBodies[] = {
    {SML_GET_LIST_RES, "valList", "actSensorTime", nullptr},
    {SML_GET_PROFILE_LIST_RES, "period_List", "valTime", "status"},
};

} // namespace

const vorn::cRecordPar* FindIn(const vorn::cRecord& record, std::string_view name) noexcept
{
    const auto* found =
        std::find_if(record.begin(), record.end(),
                     [name](const vorn::cRecordPar& par) { return name == par.GetName(); });
    return found != record.end() ? found : nullptr;
}

std::optional<Time> TimeIn(const vorn::cRecordPar& par) noexcept
{
    const vorn::cRecord time = Nested(par);
    const vorn::cRecordPar* type = FindIn(time, "type");
    const vorn::cRecordPar* value = FindIn(time, "value");
    if (type == nullptr || value == nullptr)
        return std::nullopt;
    return Time{type->GetUInt(), value->GetUInt64()};
}

MessageInfo DescribeMessage(const vorn::cRecord& record)
{
    MessageInfo info;
    for (const vorn::cRecordPar& par : record) {
        const std::string_view name = par.GetName();
        if (name == "SmlMsgHeader") {
            if (const auto* id = FindIn(Nested(par), "smlMsgIdentifier"))
                info.uiIdentifier = id->GetUInt();
        } else if (name == "SmlStatus") {
            const vorn::cRecord status = Nested(par);
            if (const auto* error = FindIn(status, "Error"))
                info.iError = error->GetSInt();
            if (const auto* number = FindIn(status, "MsgNoInFile"))
                info.uiNumber = number->GetUInt();
        } else if (name == "SmltFlags") {
            info.bFirst = (par.GetUInt() & BUF_FLAG_FIRST) != 0;
            info.bLast = (par.GetUInt() & BUF_FLAG_LAST) != 0;
        } else if (par.GetType(1) == quarn::KIND_RECORD) {
            info.pBody = &par;
            DescribeBody(Nested(par), info);
        }
    }
    return info;
}

void CollectReadings(const MessageInfo& message, std::vector<Reading>& readings)
{
    readings.clear();
    const auto* kind =
        std::find_if(std::begin(kListBodies), std::end(kListBodies), [&](const ListBody& body) {
            return body.uiIdentifier == message.uiIdentifier;
        });
    if (kind == std::end(kListBodies) || message.pBody == nullptr)
        return;
    const vorn::cRecord body = Nested(*message.pBody);
    Reading shared;
    if (const auto* time = FindIn(body, kind->pcTime))
        shared.time = TimeIn(*time);
    if (kind->pcStatus != nullptr) {
        if (const auto* status = FindIn(body, kind->pcStatus))
            shared.status = status->GetUInt64();
    }
    if (const auto* list = FindIn(body, kind->pcList)) {
        for (const vorn::cRecordPar& entry : Nested(*list))
            AddEntry(entry, shared, readings);
    }
}

std::optional<Integer> NumberOf(const vorn::cRecordPar& par) noexcept
{
    switch (par.GetType(1)) {
    case quarn::KIND_UINT:
    case quarn::KIND_UINT64:
        return Integer::Of(par.GetUInt64());
    case quarn::KIND_SINT:
    case quarn::KIND_SINT64:
        return Integer::OfSigned(par.GetSInt64());
    default:
        return std::nullopt;
    }
}

bool IsPrintable(std::string_view bytes) noexcept
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
}

} // namespace tool
