// See obis.h. The names are a table of patterns, more special ones first.
#include "tools/reading/obis.h"

#include "quarn/quarn.h"

#include <charconv>
#include <iterator>

namespace tool
{
namespace
{

struct NameRow {
    std::string_view pattern;
    std::string_view name;
};

constexpr NameRow kNames[] = {
    // Identification
    {"129-129:199.130.3", "Manufacturer"},
    {"129-129:199.130.5", "Public key"},
    {"1-0:96.50.1", "Manufacturer"},
    {"*-0:0.0.0", "Device address"},
    {"*-0:0.0.9", "Device identification"},
    {"1-0:0.2.0", "Firmware version"},
    {"*-0:96.1.0", "Device identification"},
    {"*-0:96.1.255", "Serial number"},
    {"*-0:96.5.0", "Operating status"},
    {"*-0:96.8.0", "Operating time"},
    {"*-0:97.97.0", "Error register"},
    {"0-0:1.0.0", "Clock"},
    // Energy
    {"1-0:1.8.0*96", "Active energy import, last day"},
    {"1-0:1.8.0*97", "Active energy import, last 7 days"},
    {"1-0:1.8.0*98", "Active energy import, last 30 days"},
    {"1-0:1.8.0*99", "Active energy import, last 365 days"},
    {"1-0:1.8.0*100", "Active energy import, since reset"},
    {"1-*:1.8.0", "Active energy import"},
    {"1-*:1.8.1", "Active energy import, tariff 1"},
    {"1-*:1.8.2", "Active energy import, tariff 2"},
    {"1-*:1.8.3", "Active energy import, tariff 3"},
    {"1-*:1.8.4", "Active energy import, tariff 4"},
    {"1-*:2.8.0", "Active energy export"},
    {"1-*:2.8.1", "Active energy export, tariff 1"},
    {"1-*:2.8.2", "Active energy export, tariff 2"},
    {"1-*:2.8.3", "Active energy export, tariff 3"},
    {"1-*:2.8.4", "Active energy export, tariff 4"},
    {"1-*:3.8.0", "Reactive energy import"},
    {"1-*:4.8.0", "Reactive energy export"},
    {"1-*:5.8.0", "Reactive energy, quadrant 1"},
    {"1-*:6.8.0", "Reactive energy, quadrant 2"},
    {"1-*:7.8.0", "Reactive energy, quadrant 3"},
    {"1-*:8.8.0", "Reactive energy, quadrant 4"},
    {"1-*:9.8.0", "Apparent energy import"},
    {"1-*:10.8.0", "Apparent energy export"},
    {"1-*:15.8.0", "Active energy, sum of import and export"},
    {"1-*:16.8.0", "Active energy, import less export"},
    // Power
    {"1-*:1.7.0", "Active power import"},
    {"1-*:2.7.0", "Active power export"},
    {"1-*:3.7.0", "Reactive power import"},
    {"1-*:4.7.0", "Reactive power export"},
    {"1-*:9.7.0", "Apparent power import"},
    {"1-*:10.7.0", "Apparent power export"},
    {"1-*:15.7.0", "Active power, sum of import and export"},
    {"1-*:16.7.0", "Active power"},
    {"1-*:21.7.0", "Active power import L1"},
    {"1-*:41.7.0", "Active power import L2"},
    {"1-*:61.7.0", "Active power import L3"},
    {"1-*:22.7.0", "Active power export L1"},
    {"1-*:42.7.0", "Active power export L2"},
    {"1-*:62.7.0", "Active power export L3"},
    {"1-*:36.7.0", "Active power L1"},
    {"1-*:56.7.0", "Active power L2"},
    {"1-*:76.7.0", "Active power L3"},
    // Current, voltage, frequency, angles
    {"1-*:11.7.0", "Current"},
    {"1-*:31.7.0", "Current L1"},
    {"1-*:51.7.0", "Current L2"},
    {"1-*:71.7.0", "Current L3"},
    {"1-*:91.7.0", "Current in neutral"},
    {"1-*:12.7.0", "Voltage"},
    {"1-*:32.7.0", "Voltage L1"},
    {"1-*:52.7.0", "Voltage L2"},
    {"1-*:72.7.0", "Voltage L3"},
    {"1-*:13.7.0", "Power factor"},
    {"1-*:33.7.0", "Power factor L1"},
    {"1-*:53.7.0", "Power factor L2"},
    {"1-*:73.7.0", "Power factor L3"},
    {"1-*:14.7.0", "Frequency"},
    {"1-*:81.7.1", "Angle of voltages L2, L1"},
    {"1-*:81.7.2", "Angle of voltages L3, L1"},
    {"1-*:81.7.4", "Angle of current and voltage L1"},
    {"1-*:81.7.15", "Angle of current and voltage L2"},
    {"1-*:81.7.26", "Angle of current and voltage L3"},
    // Other media
    {"6-*:1.0.0", "Heat energy"},
    {"7-*:3.0.0", "Gas volume"},
    {"8-*:1.0.0", "Cold water volume"},
    {"9-*:1.0.0", "Hot water volume"},
};

struct PatternTable {
    ObisPattern aPatterns[std::size(kNames)];
    bool bGood = true;
};

constexpr PatternTable kTable = [] {
    PatternTable table;
    for (std::size_t i = 0; i < std::size(kNames); ++i)
        table.bGood = ParseObisPattern(kNames[i].pattern, table.aPatterns[i]) && table.bGood;
    return table;
}();
static_assert(kTable.bGood, "every row of the table is a pattern");

} // namespace

std::size_t FormatObis(std::uint64_t code, char* out) noexcept
{
    constexpr char kSeparators[] = {'-', ':', '.', '.', '*'};
    char* p = out;
    for (unsigned i = 0; i < SML_NAME_SIZE; ++i) {
        const auto number = static_cast<unsigned>(code >> (40 - 8 * i)) & 0xFFU;
        p = std::to_chars(p, p + 3, number).ptr;
        if (i < sizeof kSeparators)
            *p++ = kSeparators[i];
    }
    return static_cast<std::size_t>(p - out);
}

std::string_view ObisName(std::uint64_t code) noexcept
{
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
        if (kTable.aPatterns[i].Matches(code))
            return kNames[i].name;
    }
    return {};
}

} // namespace tool
