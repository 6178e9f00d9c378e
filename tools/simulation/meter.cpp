// See meter.h. The quantities are a table; a meter of more entries than the table has rows tells
// them again for further channels (the second number of a code).
#include "tools/simulation/meter.h"

#include "tools/road/framer.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>

namespace tool
{
namespace
{

enum class eQUANTITY { MAKER, SERVER, IMPORT, EXPORT, POWER, VOLTAGE, CURRENT, PHASE, FREQUENCY };

struct QuantityRow {
    std::uint64_t ullObis;
    eQUANTITY what;
    unsigned uiPhase; // 0 to 2
    unsigned uiUnit;  // 0: none
    int iScaler;
};

constexpr unsigned kNone = 0;
constexpr unsigned kWh = 30;
constexpr unsigned kW = 27;
constexpr unsigned kV = 35;
constexpr unsigned kA = 33;
constexpr unsigned kHz = 44;

constexpr QuantityRow kQuantities[] = {
    {0x0100603201FF, eQUANTITY::MAKER, 0, kNone, 0},
    {0x0100600100FF, eQUANTITY::SERVER, 0, kNone, 0},
    {0x0100010800FF, eQUANTITY::IMPORT, 0, kWh, -1},
    {0x0100020800FF, eQUANTITY::EXPORT, 0, kWh, -1},
    {0x0100100700FF, eQUANTITY::POWER, 0, kW, 0},
    {0x0100200700FF, eQUANTITY::VOLTAGE, 0, kV, -1},
    {0x0100340700FF, eQUANTITY::VOLTAGE, 1, kV, -1},
    {0x0100480700FF, eQUANTITY::VOLTAGE, 2, kV, -1},
    {0x01001F0700FF, eQUANTITY::CURRENT, 0, kA, -2},
    {0x0100330700FF, eQUANTITY::CURRENT, 1, kA, -2},
    {0x0100470700FF, eQUANTITY::CURRENT, 2, kA, -2},
    {0x0100240700FF, eQUANTITY::PHASE, 0, kW, 0},
    {0x0100380700FF, eQUANTITY::PHASE, 1, kW, 0},
    {0x01004C0700FF, eQUANTITY::PHASE, 2, kW, 0},
    {0x01000E0700FF, eQUANTITY::FREQUENCY, 0, kHz, -1},
};
constexpr unsigned kRows = std::size(kQuantities);
static_assert(cMeter::kMaxEntries / kRows < 256, "a channel is a number of one octet");

constexpr unsigned kEntriesPerList = 80; // what surely fits into one response
constexpr const char* kMaker = "QRN";

void AppendBytes(vorn::cRecord& record, const char* label, const std::string& bytes)
{
    record.AppendDataPar(label, bytes.data(), static_cast<int>(bytes.size()), 0);
}

} // namespace

cMeter::cMeter(std::uint64_t seed, unsigned entries)
    : random(seed), uiEntries(entries), server(std::string("\x0A\x01") + kMaker)
{
    for (int i = 0; i < 5; ++i)
        server += static_cast<char>(random.Below(0x100));
    uiTransaction = static_cast<std::uint32_t>(random.Below(0x10000));
    dSeconds = static_cast<double>(10000000 + random.Below(50000000));
    dImport = static_cast<double>(1000000 + random.Below(20000000));
    dExport = static_cast<double>(random.Below(5000000));
    for (double& power : adPower)
        power = static_cast<double>(random.Around(800));
    for (double& voltage : adVoltage)
        voltage = 230;
}

// Powers wander between what a roof gives and a kitchen draws, voltages and the frequency within
// what a grid allows.
void cMeter::Advance(double seconds)
{
    const auto wander = [this](double& value, double step, double least, double most) {
        constexpr std::int64_t kSteps = 1000;
        value += step * static_cast<double>(random.Around(kSteps)) / kSteps;
        value = std::clamp(value, least, most);
    };
    double total = 0;
    for (unsigned phase = 0; phase < 3; ++phase) {
        wander(adPower[phase], 60, -2500, 3500);
        wander(adVoltage[phase], 0.8, 215, 245);
        total += adPower[phase];
    }
    wander(dFrequency, 0.05, 49.8, 50.2);
    constexpr double kHour = 3600;
    (total > 0 ? dImport : dExport) += std::abs(total) * seconds / kHour;
    dSeconds += seconds;
}

// A number in units of the scaler.
struct cMeter::Value {
    double dNumber = 0;
    bool bSigned = false;
};

cMeter::Value cMeter::ValueOf(unsigned quantity) const
{
    const QuantityRow& row = kQuantities[quantity];
    switch (row.what) {
    case eQUANTITY::IMPORT:
        return {dImport, false};
    case eQUANTITY::EXPORT:
        return {dExport, false};
    case eQUANTITY::POWER:
        return {adPower[0] + adPower[1] + adPower[2], true};
    case eQUANTITY::VOLTAGE:
        return {adVoltage[row.uiPhase], false};
    case eQUANTITY::CURRENT:
        return {std::abs(adPower[row.uiPhase]) / adVoltage[row.uiPhase], false};
    case eQUANTITY::PHASE:
        return {adPower[row.uiPhase], true};
    default:
        return {dFrequency, false};
    }
}

vorn::cRecord cMeter::Entry(unsigned index) const
{
    const QuantityRow& row = kQuantities[index % kRows];
    vorn::cRecord entry;
    entry.AppendUInt64Par("objName", row.ullObis + (std::uint64_t{index / kRows} << 32U), 0);
    if (row.what == eQUANTITY::IMPORT)
        entry.AppendUInt64Par("status", 0x0182, 0);
    if (row.uiUnit != kNone) {
        entry.AppendUIntPar("unit", row.uiUnit, 0);
        entry.AppendSIntPar("scaler", row.iScaler, 0);
    }
    if (row.what == eQUANTITY::MAKER || row.what == eQUANTITY::SERVER) {
        AppendBytes(entry, "value", row.what == eQUANTITY::MAKER ? kMaker : server);
        return entry;
    }
    const Value value = ValueOf(index % kRows);
    const double scaled = value.dNumber * std::pow(10, -row.iScaler);
    if (value.bSigned)
        entry.AppendSIntPar("value", static_cast<int>(std::lround(scaled)), 0);
    else
        entry.AppendUInt64Par("value", static_cast<std::uint64_t>(scaled), 0);
    return entry;
}

void cMeter::AppendMessage(int (*encode)(vorn::cRecord&, vorn::cRecord&, vorn::cRecord&),
                           vorn::cRecord& body)
{
    ++uiTransaction;
    std::string id;
    for (unsigned shift = 32; shift > 0; shift -= 8)
        id += static_cast<char>(uiTransaction >> (shift - 8) & 0xFFU);
    vorn::cRecord header;
    AppendBytes(header, "transactionId", id);
    header.AppendUIntPar("groupNo", 0, 0);
    header.AppendUIntPar("abortOnError", 0, 0);
    vorn::cRecord result;
    if (encode(body, header, result) != SML_ENCODE_OK || !SmlMessageIsWhole(result))
        throw std::length_error(
            "the meter's reading does not fit its message: give fewer --entries");
    const vorn::cRecordPar message = result.GetFirstPar("SmlMsgRawData", 0, 0);
    file.append(message.GetData(), static_cast<std::size_t>(message.GetSize()));
}

void cMeter::AppendList(unsigned first, unsigned count)
{
    vorn::cRecord list;
    for (unsigned i = first; i < first + count; ++i)
        list.AppendRecordPar("valListEntry", Entry(i), 0);
    vorn::cRecord time;
    time.AppendUIntPar("type", 1, 0);
    time.AppendUIntPar("value", static_cast<unsigned>(dSeconds), 0);
    vorn::cRecord body;
    AppendBytes(body, "serverId", server);
    body.AppendUInt64Par("listName", 0x0100620AFFFF, 0);
    body.AppendRecordPar("actSensorTime", time, 0);
    body.AppendRecordPar("valList", list, 0);
    AppendMessage(Encode_GetList_Response, body);
}

void cMeter::AppendFrame(double seconds, std::string& bytes)
{
    Advance(seconds);
    file.clear();
    vorn::cRecord open;
    AppendBytes(open, "reqFileId", std::to_string(uiTransaction));
    AppendBytes(open, "serverId", server);
    AppendMessage(Encode_Open_Response, open);
    for (unsigned first = 0; first < uiEntries; first += kEntriesPerList)
        AppendList(first, std::min(kEntriesPerList, uiEntries - first));
    vorn::cRecord close;
    AppendMessage(Encode_Close_Response, close);
    AppendFramed(file, bytes);
}

} // namespace tool
