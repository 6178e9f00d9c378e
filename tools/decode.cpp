// quarn decode: bytes of any input to readings or records.
//
// Readings are held back until their frame has ended: those of a frame whose checksum is wrong, and
// those of a message whose status is an error, are withheld and counted, unless --keep-bad. A frame
// that never ends (given up for a new start sequence, or cut off by the end of the input) has no
// checksum to go by; its messages have each one of their own, so that those which are good are
// printed, under the number that the frame would have had. Of a frame with more readings than can
// be held (16 MiB of text), all are withheld. Raw input has no frame checksum: nothing is held
// back. Records are complete and therefore printed as they come, good or not.
#include "tools/commands.h"
#include "tools/explain/explain.h"
#include "tools/input/intake.h"
#include "tools/input/pump.h"
#include "tools/output/output_format.h"
#include "tools/output/terminal.h"
#include "tools/road/teller.h"

#include <algorithm>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace tool
{
namespace
{

constexpr std::size_t kMaxHeld = std::size_t{16} * 1024 * 1024;

using ull = unsigned long long;

// Takes the events of the receive road to the printed format and to the report.
class cDecoder : public cConsumer, public cTeller
{
public:
    cDecoder(const DecodeOptions& wanted, cFormat& printer, cOutput& output, cReport& reporter)
        : cTeller(reporter), options(wanted), format(printer), out(output)
    {
    }

    void Begin(bool live) override
    {
        pIntake = std::make_unique<cIntake>(options.eInput, live, *this, report);
    }
    void Feed(const unsigned char* data, std::size_t size) override { pIntake->Feed(data, size); }
    void Timeout() override { pIntake->Timeout(); }
    void Restart() override { pIntake->Restart(); }
    void Idle() override { format.Idle(); }
    void End() override { pIntake->End(); }
    void Finish() override { format.Finish(); }

private:
    void OnMessage(const Frame& frame, const vorn::cRecord& record) override
    {
        const MessageInfo info = DescribeMessage(record);
        if (format.IsComplete()) {
            format.Message(frame, info, record, readings);
            TellMessage(frame, info);
            out.DrainIfLarge();
            return;
        }
        Select(info);
        if (info.iError != SML_STATUS_OK && !options.bKeepBad) {
            TellMessage(frame, info, readings.size());
            return;
        }
        TellMessage(frame, info);
        if (!WantsServer(info.server) || (readings.empty() && !options.patterns.empty()))
            return;
        if (!frame.bRaw && !options.bKeepBad && !out.Holds() && !bTooMuch && !format.KeepsBack())
            out.Hold();
        uiHeld += readings.size();
        if (!bTooMuch)
            format.Message(frame, info, record, readings);
        if (out.HeldSize() > kMaxHeld) {
            bTooMuch = true;
            out.Discard();
        }
        out.DrainIfLarge();
    }

    void OnFrameEnd(const Frame& frame) override
    {
        const bool good = frame.bCrcOk || options.bKeepBad;
        TellEnd(frame, good ? 0 : uiHeld);
        TellInsideFile(frame);
        Settle(frame, good);
        format.FrameEnd(frame);
        out.DrainIfLarge();
    }

    void OnFrameLost(const Frame& frame, eLOSS loss) override
    {
        cTeller::OnFrameLost(frame, loss);
        Settle(frame, true);
    }

    bool WantsServer(std::string_view id) const
    {
        return options.server.empty() || options.server == id;
    }
    bool WantsCode(std::uint64_t code) const
    {
        return options.patterns.empty() ||
               std::any_of(options.patterns.begin(), options.patterns.end(),
                           [code](const ObisPattern& pattern) { return pattern.Matches(code); });
    }

    // Leaves in readings those of the message that pass the options.
    void Select(const MessageInfo& info)
    {
        if (!WantsServer(info.server)) {
            readings.clear();
            return;
        }
        CollectReadings(info, readings);
        if (!options.patterns.empty())
            readings.erase(std::remove_if(readings.begin(), readings.end(),
                                          [this](const Reading& reading) {
                                              return !WantsCode(reading.ullObis);
                                          }),
                           readings.end());
        if (!options.corrections.empty())
            Correct(options.corrections, info.server, readings);
    }

    // Decides about what has been held back of a frame that is over.
    void Settle(const Frame& frame, bool good)
    {
        if (bTooMuch)
            report.Say(EXIT_DAMAGED, "frame %llu: too long to be held until its end%s",
                       ull{frame.ullNumber}, Withheld(uiHeld).c_str());
        if (good)
            out.Release();
        else if (out.Holds())
            out.Discard();
        format.Settled(good);
        bTooMuch = false;
        uiHeld = 0;
    }

    const DecodeOptions& options;
    cFormat& format;
    cOutput& out;
    std::unique_ptr<cIntake> pIntake;
    std::vector<Reading> readings;
    std::size_t uiHeld = 0; // readings of this frame given to the format
    bool bTooMuch = false;  // the frame's readings were more than can be held
};

constexpr std::unique_ptr<cFormat> (*kMakers[])(cOutput&, const FormatOptions&) = {
    MakeTextFormat, MakeReadingsFormat, MakeCsvFormat, MakeRecordsFormat}; // as eFORMAT

std::unique_ptr<cFormat> MakeFormat(const DecodeOptions& options, cOutput& out)
{
    const FormatOptions look{WantsColour(STDOUT_FILENO), !options.corrections.empty(),
                             IsScreen(STDOUT_FILENO)};
    if (options.bWatch)
        return MakeWatchFormat(out, look);
    const eFORMAT usual = ::isatty(STDOUT_FILENO) != 0 ? eFORMAT::TEXT : eFORMAT::READINGS;
    return kMakers[static_cast<int>(options.format.value_or(usual))](out, look);
}

} // namespace

int RunDecode(const DecodeOptions& options)
{
    cReport report;
    if (options.bExplain && options.page == "-") {
        report.Say(EXIT_FAILED, "--explain and --html - would both write to standard output; give "
                                "--html a FILE");
        return report.Status();
    }
    if (options.bExplain || !options.page.empty())
        return Explain(options.inputs, options.eInput, options.page);
    cOutput out(STDOUT_FILENO);
    const std::unique_ptr<cFormat> format = MakeFormat(options, out);
    cDecoder decoder(options, *format, out, report);
    format->Start();
    return PumpInputs(options.inputs, decoder, out, report);
}

} // namespace tool
