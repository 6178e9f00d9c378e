// Tells a person what is wrong with an input, as the receive road meets it: damaged and broken
// frames, bytes between them, and messages that were refused.
#ifndef TOOLS_ROAD_TELLER_H
#define TOOLS_ROAD_TELLER_H

#include "tools/reading/reading.h"
#include "tools/road/receiver.h"
#include "tools/road/report.h"

#include <cstddef>
#include <string>

namespace tool
{

class cTeller : public cReceiverEvents
{
public:
    explicit cTeller(cReport& reporter) : report(reporter) {}

    void OnMessage(const Frame& frame, const vorn::cRecord& record) override;
    void OnRefused(const Frame& frame, int result) override;
    void OnFrameEnd(const Frame& frame) override;
    void OnFrameLost(const Frame& frame, eLOSS loss) override;
    void OnTimeout(const Frame& frame) override;
    void OnGap(std::uint64_t offset, std::uint64_t count, eGAP gap) override;

protected:
    // A message that was refused, a frame that has ended and may be damaged, and how many readings
    // of it are not printed. What is wrong in a frame counts when it has ended: one that is cut off
    // by the end of the input is no damage.
    void TellMessage(const Frame& frame, const MessageInfo& info, std::size_t withheld = 0);
    void TellEnd(const Frame& frame, std::size_t withheld = 0);
    void TellInsideFile(const Frame& frame);
    static std::string Withheld(std::size_t count);

    cReport& report;
};

} // namespace tool

#endif
