// What every subcommand does with its inputs: opens them in turn, reads each to its end and gives
// the bytes to a consumer, and tells what cannot be opened, read or written.
#ifndef TOOLS_INPUT_PUMP_H
#define TOOLS_INPUT_PUMP_H

#include "tools/output/output.h"
#include "tools/road/report.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tool
{

// Takes the bytes of one input after the other.
class cConsumer
{
public:
    virtual ~cConsumer() = default;

    virtual void Begin() {} // an input has been opened
    virtual void Feed(const unsigned char* data, std::size_t size) = 0;
    virtual void End() = 0;  // and has ended
    virtual void Finish() {} // no input follows; what is printed now is written
};

// Returns the exit status. What the consumer prints to out is written whenever an input has to be
// waited for.
int PumpInputs(const std::vector<std::string>& inputs, cConsumer& consumer, cOutput& out,
               cReport& report);

} // namespace tool

#endif
