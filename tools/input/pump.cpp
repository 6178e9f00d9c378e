// See pump.h.
#include "tools/input/pump.h"

#include "tools/input/interrupt.h"
#include "tools/input/source.h"

#include <cerrno>
#include <csignal>
#include <cstring>

namespace tool
{
namespace
{

constexpr std::size_t kBlockSize = std::size_t{128} * 1024;

void PumpInput(cSource& source, cConsumer& consumer, cOutput& out, cReport& report)
{
    std::vector<unsigned char> block(kBlockSize);
    long count = 0;
    consumer.Begin();
    do {
        if (!source.Ready())
            out.Drain();
        count = source.Read(block.data(), block.size());
        if (count > 0)
            consumer.Feed(block.data(), static_cast<std::size_t>(count));
        out.DrainIfLarge();
    } while (count > 0 && out.Error() == 0);
    if (count == cSource::FAILED)
        report.Say(EXIT_FAILED, "cannot be read: %s", source.Error().c_str());
    consumer.End();
    out.Drain();
}

} // namespace

int PumpInputs(const std::vector<std::string>& inputs, cConsumer& consumer, cOutput& out,
               cReport& report)
{
    CatchInterrupts();
    std::signal(SIGPIPE, SIG_IGN); // a write that fails tells it as well
    for (const std::string& input : inputs) {
        if (Interrupted() || out.Error() != 0)
            break;
        std::string error;
        const std::unique_ptr<cSource> source = OpenSource(input, error);
        report.SetSubject(source != nullptr ? source->Name() : input);
        if (source == nullptr)
            report.Say(EXIT_FAILED, "cannot be opened: %s", error.c_str());
        else
            PumpInput(*source, consumer, out, report);
    }
    consumer.Finish();
    out.Drain();
    report.SetSubject("standard output");
    if (out.Error() == EPIPE) // whoever read it has seen enough
        return EXIT_FAILED;
    if (out.Error() != 0)
        report.Say(EXIT_FAILED, "cannot be written: %s", std::strerror(out.Error()));
    return report.Status();
}

} // namespace tool
