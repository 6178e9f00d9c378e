// An invented meter: its registers advance as those of a household do that draws and gives power.
// Each reading becomes one SML file (open, get-list responses, close), made by the library's
// encoder, in one transport frame.
#ifndef TOOLS_SIMULATION_METER_H
#define TOOLS_SIMULATION_METER_H

#include "quarn/quarn.h"
#include "tools/simulation/random.h"

#include <cstdint>
#include <string>

namespace tool
{

class cMeter
{
public:
    static constexpr unsigned kMaxEntries = 1000;

    // The same seed makes the same meter. entries: of a reading, at most kMaxEntries.
    cMeter(std::uint64_t seed, unsigned entries);

    // Appends the frame of the next reading, taken so many seconds after the one before.
    void AppendFrame(double seconds, std::string& bytes);

private:
    struct Value;

    void Advance(double seconds);
    vorn::cRecord Entry(unsigned index) const;
    Value ValueOf(unsigned quantity) const;
    void AppendList(unsigned first, unsigned count);
    void AppendMessage(int (*encode)(vorn::cRecord&, vorn::cRecord&, vorn::cRecord&),
                       vorn::cRecord& body);

    cRandom random;
    unsigned uiEntries;
    std::string server;
    std::uint32_t uiTransaction;

    double dSeconds;          // index of the meter's clock
    double adPower[3] = {};   // W, negative when power is given
    double adVoltage[3] = {}; // V
    double dFrequency = 50;   // Hz
    double dImport = 0;       // Wh
    double dExport = 0;       // Wh
    std::string file;         // the SML file at hand
};

} // namespace tool

#endif
