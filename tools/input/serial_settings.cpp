// See serial_settings.h.
#include "tools/input/serial_settings.h"

#include <charconv>

namespace tool
{

bool ParseSerialSettings(std::string_view text, SerialSettings& settings) noexcept
{
    const char* end = text.data() + text.size();
    const std::from_chars_result baud = std::from_chars(text.data(), end, settings.uiBaud);
    if (baud.ec != std::errc() || settings.uiBaud == 0 || end - baud.ptr < 4 || *baud.ptr != ',')
        return false;
    settings.uiBits = static_cast<unsigned>(baud.ptr[1] - '0');
    settings.cParity = static_cast<char>(baud.ptr[2] & ~0x20); // upper case
    const std::string_view stop(baud.ptr + 3, static_cast<std::size_t>(end - baud.ptr - 3));
    settings.uiHalfStopBits = stop == "1" ? 2 : stop == "1.5" ? 3 : stop == "2" ? 4 : 0;
    return settings.uiBits >= 5 && settings.uiBits <= 8 && settings.uiHalfStopBits != 0 &&
           std::string_view("NEO").find(settings.cParity) != std::string_view::npos;
}

} // namespace tool
