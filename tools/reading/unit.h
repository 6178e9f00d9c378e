// Unit codes of the metering standard (the enumeration that DLMS/COSEM registers use).
#ifndef TOOLS_READING_UNIT_H
#define TOOLS_READING_UNIT_H

#include <string_view>

namespace tool
{

// The symbol in UTF-8: "Wh" for 30. Empty for 0 (not set) and 255 (a plain count); "unit?" for a
// code without a known symbol, so that a value never looks like a plain count by mistake.
std::string_view UnitSymbol(unsigned code) noexcept;

} // namespace tool

#endif
