// quarn decode: bytes of any input to readings or records.
//
// Readings are held back until their frame has ended: those of a frame whose checksum is wrong, and
// those of a message whose status is an error, are withheld and counted, unless --keep-bad. A frame
// that never ends (given up for a new start sequence, or cut off by the end of the input) has no
// checksum to go by; its messages have each one of their own, so that those which are good are
// printed, under the number that the frame would have had. Of a frame with more readings than can
// be held (16 MiB of text), all are withheld. Raw input has no frame checksum: nothing is held
// back. Records are complete and therefore printed as they come, good or not.
#include "tools/command.h"
#include "tools/input/intake.h"
#include "tools/input/interrupt.h"
#include "tools/input/source.h"
#include "tools/output/format.h"
#include "tools/reading/obis.h"
#include "tools/reading/status.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tool
{
namespace
{

constexpr std::size_t kBlockSize = std::size_t{128} * 1024;
constexpr std::size_t kMaxHeld = std::size_t{16} * 1024 * 1024;

using ull = unsigned long long;

struct DecodeOptions {
    std::vector<std::string> inputs;
    eINPUT eInput = INPUT_AUTO;
    std::string format;
    std::vector<std::string> obis;
    std::string server;
    bool bKeepBad = false;
};

// What the user wants to see.
struct Filter {
    std::vector<ObisPattern> patterns;
    std::string server; // bytes
    bool bKeepBad = false;

    bool WantsServer(std::string_view id) const { return server.empty() || server == id; }
    bool WantsCode(std::uint64_t code) const
    {
        return patterns.empty() ||
               std::any_of(patterns.begin(), patterns.end(),
                           [code](const ObisPattern& pattern) { return pattern.Matches(code); });
    }
};

// Takes the events of the receive road to the printed format and to the report.
class cDecoder : public cReceiverEvents
{
public:
    cDecoder(const Filter& wanted, cFormat& printer, cOutput& output, cReport& reporter)
        : filter(wanted), format(printer), out(output), report(reporter)
    {
    }

    void OnMessage(const Frame& frame, const vorn::cRecord& record) override
    {
        const MessageInfo info = DescribeMessage(record);
        if (format.IsComplete()) {
            format.Message(frame, info, record, readings);
            ReportMessage(frame, info, 0);
            out.DrainIfLarge();
            return;
        }
        Select(info);
        if (info.iError != SML_STATUS_OK && !filter.bKeepBad) {
            ReportMessage(frame, info, readings.size());
            return;
        }
        ReportMessage(frame, info, 0);
        if (!filter.WantsServer(info.server) || (readings.empty() && !filter.patterns.empty()))
            return;
        if (!frame.bRaw && !filter.bKeepBad && !out.Holds() && !bTooMuch)
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

    void OnRefused(const Frame& frame, int result) override
    {
        if (result == SMLP_OUT_OF_MEMORY)
            report.Say(EXIT_FAILED, "frame %llu: out of memory", ull{frame.ullNumber});
        else
            report.Say(EXIT_DAMAGED, "frame %llu, message 1 of a file: %s (status %d)",
                       ull{frame.ullNumber}, StatusMeaning(SML_STATUS_IGNORE_FILE),
                       SML_STATUS_IGNORE_FILE);
    }

    void OnFrameEnd(const Frame& frame) override
    {
        const bool good = frame.bCrcOk || filter.bKeepBad;
        if (!frame.bCrcOk)
            report.Say(EXIT_DAMAGED, "frame %llu: the checksum is wrong%s", ull{frame.ullNumber},
                       Withheld(good ? 0 : uiHeld).c_str());
        if (frame.bInsideFile)
            report.Say(EXIT_DAMAGED, "frame %llu: ends inside an SML file", ull{frame.ullNumber});
        Settle(frame, good);
        format.FrameEnd(frame);
        out.DrainIfLarge();
    }

    void OnFrameLost(const Frame& frame, eLOSS loss) override
    {
        if (loss == eLOSS::CUT_OFF)
            report.Say(EXIT_GOOD, "frame %llu: cut off by the end of the input",
                       ull{frame.ullNumber});
        else
            report.Say(EXIT_DAMAGED, "frame %llu: broken off, a new frame begins inside it",
                       ull{frame.ullNumber});
        Settle(frame, true);
    }

    void OnGap(std::uint64_t offset, std::uint64_t count, eGAP gap) override
    {
        static constexpr const char* kWhere[] = {"before the first frame", "between frames",
                                                 "after the last frame", "and no frame"};
        report.Say(gap == eGAP::BEFORE_FIRST ? EXIT_GOOD : EXIT_DAMAGED,
                   "%llu bytes %s, from byte %llu on", ull{count}, kWhere[static_cast<int>(gap)],
                   ull{offset} + 1);
    }

private:
    // Leaves in readings those of the message that pass the filter.
    void Select(const MessageInfo& info)
    {
        if (!filter.WantsServer(info.server)) {
            readings.clear();
            return;
        }
        CollectReadings(info, readings);
        if (!filter.patterns.empty())
            readings.erase(std::remove_if(readings.begin(), readings.end(),
                                          [this](const Reading& reading) {
                                              return !filter.WantsCode(reading.ullObis);
                                          }),
                           readings.end());
    }

    void ReportMessage(const Frame& frame, const MessageInfo& info, std::size_t withheld)
    {
        if (info.iError != SML_STATUS_OK)
            report.Say(EXIT_DAMAGED, "frame %llu, message %u: %s (status %d)%s",
                       ull{frame.ullNumber}, info.uiNumber, StatusMeaning(info.iError), info.iError,
                       Withheld(withheld).c_str());
    }

    static std::string Withheld(std::size_t count)
    {
        return count == 0 ? std::string() : "; readings withheld: " + std::to_string(count);
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
        bTooMuch = false;
        uiHeld = 0;
    }

    const Filter& filter;
    cFormat& format;
    cOutput& out;
    cReport& report;
    std::vector<Reading> readings;
    std::size_t uiHeld = 0; // readings of this frame given to the format
    bool bTooMuch = false;  // the frame's readings were more than can be held
};

struct FormatName {
    const char* pcName;
    std::unique_ptr<cFormat> (*Make)(cOutput&);
};

constexpr FormatName kFormats[] = {{"text", MakeTextFormat},
                                   {"readings", MakeReadingsFormat},
                                   {"csv", MakeCsvFormat},
                                   {"records", MakeRecordsFormat}};

// Reads one input to its end. What is printed is written whenever the input has to be waited for.
void DecodeInput(cSource& source, eINPUT kind, cReceiverEvents& events, cOutput& out,
                 cReport& report)
{
    cIntake intake(kind, events, report);
    std::vector<unsigned char> block(kBlockSize);
    long count = 0;
    do {
        if (!source.Ready())
            out.Drain();
        count = source.Read(block.data(), block.size());
        if (count > 0)
            intake.Feed(block.data(), static_cast<std::size_t>(count));
    } while (count > 0 && out.Error() == 0);
    if (count == cSource::FAILED)
        report.Say(EXIT_FAILED, "cannot be read: %s", source.Error().c_str());
    intake.End();
    out.Drain();
}

Filter MakeFilter(const DecodeOptions& options)
{
    Filter filter;
    filter.bKeepBad = options.bKeepBad;
    for (const std::string& text : options.obis)
        ParseObisPattern(text, filter.patterns.emplace_back());
    cHexReader().Read(options.server, filter.server);
    return filter;
}

int RunDecode(const DecodeOptions& options)
{
    CatchInterrupts();
    std::signal(SIGPIPE, SIG_IGN); // a write that fails tells it as well
    cOutput out(STDOUT_FILENO);
    cReport report;
    const auto* name =
        std::find_if(std::begin(kFormats), std::end(kFormats),
                     [&](const FormatName& row) { return options.format == row.pcName; });
    const std::unique_ptr<cFormat> format = name->Make(out);
    const Filter filter = MakeFilter(options);
    cDecoder decoder(filter, *format, out, report);
    format->Start();
    for (const std::string& input : options.inputs) {
        if (Interrupted() || out.Error() != 0)
            break;
        std::string error;
        const std::unique_ptr<cSource> source = OpenSource(input, error);
        report.SetSubject(source != nullptr ? source->Name() : input);
        if (source == nullptr)
            report.Say(EXIT_FAILED, "cannot be opened: %s", error.c_str());
        else
            DecodeInput(*source, options.eInput, decoder, out, report);
    }
    out.Drain();
    report.SetSubject("standard output");
    if (out.Error() == EPIPE) // whoever read it has seen enough
        return EXIT_FAILED;
    if (out.Error() != 0)
        report.Say(EXIT_FAILED, "cannot be written: %s", std::strerror(out.Error()));
    return report.Status();
}

std::string CheckObis(const std::string& text)
{
    ObisPattern pattern;
    return ParseObisPattern(text, pattern) ? "" : "'" + text + "' is no pattern like 1-0:1.8.*";
}

std::string CheckHex(const std::string& text)
{
    cHexReader hex;
    std::string bytes;
    return hex.Read(text, bytes) && !hex.HasHalfByte() && !bytes.empty()
               ? ""
               : "'" + text + "' is no hex text like 0a01";
}

} // namespace

void AddDecode(CLI::App& app, int& status)
{
    const auto options = std::make_shared<DecodeOptions>();
    options->inputs = {"-"};
    options->format = ::isatty(STDOUT_FILENO) != 0 ? "text" : "readings";
    static const std::map<std::string, eINPUT> kInputs = {
        {"auto", INPUT_AUTO}, {"framed", INPUT_FRAMED}, {"raw", INPUT_RAW}, {"hex", INPUT_HEX}};

    CLI::App* decode = app.add_subcommand("decode", "Print what meters say: readings or records");
    decode->add_option("INPUT", options->inputs,
                       "Files to read, one after the other; - is standard input (the default)");
    decode
        ->add_option("--input", options->eInput,
                     "What an input holds: transport frames, one raw SML file, or hex text of\n"
                     "either; auto tells by the first bytes")
        ->transform(CLI::CheckedTransformer(kInputs).description(""))
        ->type_name("auto|framed|raw|hex");
    std::vector<std::string> names;
    for (const FormatName& row : kFormats)
        names.emplace_back(row.pcName);
    decode
        ->add_option("--format", options->format,
                     "text for people (the default on a terminal); readings, one JSON object per\n"
                     "line (the default otherwise); csv; records, every message complete as JSON")
        ->check(CLI::IsMember(names).description(""))
        ->type_name("text|readings|csv|records");
    decode
        ->add_option("--obis", options->obis,
                     "Only readings of these codes, such as 1-0:1.8.0 or '*:*.8.*'; what is left\n"
                     "out at either end is free")
        ->check(CLI::Validator(CheckObis, ""))
        ->type_name("PATTERN")
        ->allow_extra_args(false);
    decode->add_option("--server", options->server, "Only readings of this server id")
        ->check(CLI::Validator(CheckHex, ""))
        ->type_name("HEX");
    decode->add_flag("--keep-bad", options->bKeepBad,
                     "Print also readings of damaged frames and refused messages");
    decode->footer("Examples:\n"
                   "  quarn decode --format text examples/household.bin\n"
                   "  quarn decode --obis 1.8.0 --obis 16.7.0 < examples/household.bin");
    decode->callback([options, &status] { status = RunDecode(*options); });
}

} // namespace tool
