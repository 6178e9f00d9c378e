// See unit.h. Volumes stand twice in the enumeration, as measured and as corrected to standard
// conditions; the symbol is the same.
#include "tools/reading/unit.h"

#include <array>

namespace tool
{
namespace
{

struct Unit {
    unsigned char ucCode;
    std::string_view symbol;
};

constexpr Unit kUnits[] = {
    // Time
    {1, "a"},
    {2, "mo"},
    {3, "wk"},
    {4, "d"},
    {5, "h"},
    {6, "min"},
    {7, "s"},
    // Angle, temperature, currency, length, speed
    {8, "°"},
    {9, "°C"},
    {10, "currency"},
    {11, "m"},
    {12, "m/s"},
    // Volume and flow
    {13, "m³"},
    {14, "m³"},
    {15, "m³/h"},
    {16, "m³/h"},
    {17, "m³/d"},
    {18, "m³/d"},
    {19, "l"},
    // Mass, force, pressure, heat
    {20, "kg"},
    {21, "N"},
    {22, "Nm"},
    {23, "Pa"},
    {24, "bar"},
    {25, "J"},
    {26, "J/h"},
    // Power and energy
    {27, "W"},
    {28, "VA"},
    {29, "var"},
    {30, "Wh"},
    {31, "VAh"},
    {32, "varh"},
    // Current, voltage, fields
    {33, "A"},
    {34, "C"},
    {35, "V"},
    {36, "V/m"},
    {37, "F"},
    {38, "Ω"},
    {39, "Ωm²/m"},
    {40, "Wb"},
    {41, "T"},
    {42, "A/m"},
    {43, "H"},
    {44, "Hz"},
    // Meter constants and squares
    {45, "1/(Wh)"},
    {46, "1/(varh)"},
    {47, "1/(VAh)"},
    {48, "V²h"},
    {49, "A²h"},
    {50, "kg/s"},
    {51, "S"},
    {52, "K"},
    {53, "1/(V²h)"},
    {54, "1/(A²h)"},
    {55, "1/m³"},
    {56, "%"},
    {57, "Ah"},
    // Gas
    {60, "Wh/m³"},
    {61, "J/m³"},
    {62, "mol%"},
    {63, "g/m³"},
    {64, "Pa·s"},
    {65, "J/kg"},
    {66, "g/cm²"},
    {67, "atm"},
    // Signal levels
    {70, "dBm"},
    {71, "dBµV"},
    {72, "dB"},
};

// The table by code, so that looking up is one access.
constexpr auto kSymbols = [] {
    std::array<std::string_view, 256> symbols{};
    for (std::string_view& symbol : symbols)
        symbol = "unit?";
    for (const Unit& unit : kUnits)
        symbols[unit.ucCode] = unit.symbol;
    symbols[0] = symbols[255] = {};
    return symbols;
}();

} // namespace

std::string_view UnitSymbol(unsigned code) noexcept
{
    return code < kSymbols.size() ? kSymbols[code] : std::string_view("unit?");
}

} // namespace tool
