// What every subcommand does with its inputs: opens them in turn, reads each to its end and gives
// the bytes to a consumer, and tells what cannot be opened, read or written.
#ifndef TOOLS_INPUT_PUMP_H
#define TOOLS_INPUT_PUMP_H

#include "tools/input/source.h"
#include "tools/output/output.h"
#include "tools/road/report.h"

#include <cstddef>
#include <unistd.h>

namespace tool
{

// Takes the bytes of one input after the other.
class cConsumer
{
public:
    virtual ~cConsumer() = default;

    // An input has been opened; live: what is read of it may begin anywhere.
    virtual void Begin(bool live) { (void)live; }
    virtual void Feed(const unsigned char* data, std::size_t size) = 0;
    virtual void Timeout() {} // no byte has come for longer than between two of one message
    virtual void Restart()    // what follows does not continue what came before
    {
        End();
        Begin(true);
    }
    virtual void Idle() {}   // bytes have to be waited for; what is printed now is written
    virtual void End() = 0;  // and has ended
    virtual void Failed() {} // an input could not be opened, or not read to its end
    virtual void Finish() {} // no input follows; what is printed now is written
};

// Returns the exit status. What the consumer prints to out is written whenever an input has to be
// waited for.
int PumpInputs(const InputOptions& inputs, cConsumer& consumer, cOutput& out, cReport& report);

// Writes what is left for standard output, and tells when that has failed. Returns the exit status.
int Finish(cOutput& out, cReport& report);

// The same as PumpInputs for a consumer that is made of the options given, standard output and a
// report.
template <class Consumer, class... Options>
int PumpToStdout(const InputOptions& inputs, Options... options)
{
    cOutput out(STDOUT_FILENO);
    cReport report;
    Consumer consumer(options..., out, report);
    return PumpInputs(inputs, consumer, out, report);
}

} // namespace tool

#endif
