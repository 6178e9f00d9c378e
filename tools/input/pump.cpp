// See pump.h.
#include "tools/input/pump.h"

#include "tools/input/interrupt.h"
#include "tools/input/progress.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace tool
{
namespace
{

constexpr std::size_t kBlockSize = std::size_t{128} * 1024;

constexpr long kLiveTimeout = 500; // milliseconds, where the user gives no other

void Feed(cConsumer& consumer, cProgress& progress, const unsigned char* data, std::size_t size)
{
    consumer.Feed(data, size);
    progress.Add(size);
}

// Returns false when the input has not been read to its end. A live one has its end where it is
// lost, or where the user ends it.
bool PumpInput(cSource& source, const InputOptions& options, cConsumer& consumer, cOutput& out,
               cReport& report)
{
    const long timeout = options.timeout.value_or(source.IsLive() ? kLiveTimeout : 0);
    bool running = false; // the timer, since the last byte
    std::vector<unsigned char> block(kBlockSize);
    long count = 0;
    cProgress progress(source.Size(), report);
    consumer.Begin(source.IsLive());
    do {
        if (!source.Ready()) {
            consumer.Idle();
            out.Drain();
        }
        count = source.Read(block.data(), block.size(), running ? timeout : -1);
        if (count > 0)
            Feed(consumer, progress, block.data(), static_cast<std::size_t>(count));
        else if (count == cSource::TIMEOUT)
            consumer.Timeout();
        else if (count == cSource::RESTARTED)
            consumer.Restart();
        if (count != cSource::DISTURBED)
            running = count > 0 && timeout > 0;
        out.DrainIfLarge();
    } while (count != cSource::END && count != cSource::FAILED && out.Error() == 0);
    if (count == cSource::FAILED)
        report.Say(EXIT_FAILED, "cannot be read: %s", source.Error().c_str());
    if (out.Error() != 0)
        return true; // what the rest holds is of no concern to anybody
    consumer.End();
    out.Drain();
    const bool isCut = Interrupted() && source.Size() != 0;
    return source.IsLive() || (count == cSource::END && !isCut);
}

} // namespace

int PumpInputs(const InputOptions& inputs, cConsumer& consumer, cOutput& out, cReport& report)
{
    CatchInterrupts();
    std::signal(SIGPIPE, SIG_IGN); // a write that fails tells it as well
    for (const std::string& input : inputs.names) {
        if (Interrupted() || out.Error() != 0) {
            consumer.Failed();
            break;
        }
        std::string error;
        const std::unique_ptr<cSource> source = OpenSource(input, inputs, report, error);
        report.SetSubject(source != nullptr ? source->Name() : input);
        if (input == "-" && ::isatty(STDIN_FILENO) != 0)
            report.Say(EXIT_GOOD,
                       "is a terminal; name a file or a line to read, or end with Ctrl-D");
        if (source == nullptr && !Interrupted())
            report.Say(EXIT_FAILED, "cannot be opened: %s", error.c_str());
        if (source == nullptr || !PumpInput(*source, inputs, consumer, out, report))
            consumer.Failed();
    }
    consumer.Finish();
    return Finish(out, report);
}

int Finish(cOutput& out, cReport& report)
{
    out.Drain();
    report.SetSubject("standard output");
    if (out.Error() == EPIPE) // whoever read it has seen enough
        return EXIT_FAILED;
    if (out.Error() != 0)
        report.Say(EXIT_FAILED, "cannot be written: %s", std::strerror(out.Error()));
    return report.Status();
}

} // namespace tool
