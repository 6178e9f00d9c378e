// How a serial line is set: "9600,8N1".
#ifndef TOOLS_INPUT_SERIAL_SETTINGS_H
#define TOOLS_INPUT_SERIAL_SETTINGS_H

#include <string_view>

namespace tool
{

struct SerialSettings {
    unsigned uiBaud = 9600;
    unsigned uiBits = 8;         // of a character, 5 to 8
    char cParity = 'N';          // N none, E even, O odd
    unsigned uiHalfStopBits = 2; // 2, 3 or 4: 1, 1.5 or 2 stop bits
};

// Reads BAUD,BITS+PARITY+STOP, such as "9600,8N1" or "300,7e1". False on anything else.
bool ParseSerialSettings(std::string_view text, SerialSettings& settings) noexcept;

} // namespace tool

#endif
