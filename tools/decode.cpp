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
#include "tools/explain/explain.h"
#include "tools/input/intake.h"
#include "tools/input/pump.h"
#include "tools/output/output_format.h"
#include "tools/output/terminal.h"
#include "tools/reading/correction.h"
#include "tools/reading/obis.h"
#include "tools/road/teller.h"

#include <algorithm>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tool
{
namespace
{

constexpr std::size_t kMaxHeld = std::size_t{16} * 1024 * 1024;

using ull = unsigned long long;

struct DecodeOptions {
    InputOptions inputs;
    eINPUT eInput = INPUT_AUTO;
    std::string format;
    std::vector<std::string> obis;
    std::string server;
    std::vector<std::string> corrections;
    bool bKeepBad = false;
    bool bWatch = false;
    bool bExplain = false;
    std::string page;
};

// What the user wants to see.
struct Filter {
    std::vector<ObisPattern> patterns;
    std::string server; // bytes
    std::vector<Correction> corrections;
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
class cDecoder : public cConsumer, public cTeller
{
public:
    cDecoder(eINPUT kind, const Filter& wanted, cFormat& printer, cOutput& output,
             cReport& reporter)
        : cTeller(reporter), eKind(kind), filter(wanted), format(printer), out(output)
    {
    }

    void Begin(bool live) override
    {
        pIntake = std::make_unique<cIntake>(eKind, live, *this, report);
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
        if (info.iError != SML_STATUS_OK && !filter.bKeepBad) {
            TellMessage(frame, info, readings.size());
            return;
        }
        TellMessage(frame, info);
        if (!filter.WantsServer(info.server) || (readings.empty() && !filter.patterns.empty()))
            return;
        if (!frame.bRaw && !filter.bKeepBad && !out.Holds() && !bTooMuch && !format.KeepsBack())
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
        const bool good = frame.bCrcOk || filter.bKeepBad;
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
        if (!filter.corrections.empty())
            Correct(filter.corrections, info.server, readings);
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

    eINPUT eKind;
    const Filter& filter;
    cFormat& format;
    cOutput& out;
    std::unique_ptr<cIntake> pIntake;
    std::vector<Reading> readings;
    std::size_t uiHeld = 0; // readings of this frame given to the format
    bool bTooMuch = false;  // the frame's readings were more than can be held
};

struct FormatName {
    const char* pcName;
    std::unique_ptr<cFormat> (*Make)(cOutput&, const FormatOptions&);
};

constexpr FormatName kFormats[] = {{"text", MakeTextFormat},
                                   {"readings", MakeReadingsFormat},
                                   {"csv", MakeCsvFormat},
                                   {"records", MakeRecordsFormat}};

Filter MakeFilter(const DecodeOptions& options)
{
    Filter filter;
    filter.bKeepBad = options.bKeepBad;
    for (const std::string& text : options.obis)
        ParseObisPattern(text, filter.patterns.emplace_back());
    cHexReader().Read(options.server, filter.server);
    for (const std::string& text : options.corrections)
        ParseCorrection(text, filter.corrections.emplace_back());
    return filter;
}

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
    const auto* name =
        std::find_if(std::begin(kFormats), std::end(kFormats),
                     [&](const FormatName& row) { return options.format == row.pcName; });
    const Filter filter = MakeFilter(options);
    const FormatOptions look{WantsColour(STDOUT_FILENO), !filter.corrections.empty(),
                             IsScreen(STDOUT_FILENO)};
    const std::unique_ptr<cFormat> format =
        options.bWatch ? MakeWatchFormat(out, look) : name->Make(out, look);
    cDecoder decoder(options.eInput, filter, *format, out, report);
    format->Start();
    return PumpInputs(options.inputs, decoder, out, report);
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

std::string CheckCorrection(const std::string& text)
{
    Correction correction;
    return ParseCorrection(text, correction)
               ? ""
               : "'" + text + "' is not like 1-0:16.7.0=unsigned, 0a01/*=sign8";
}

// An explanation shows everything: what selects and shapes readings is no part of it.
void AddExplainOptions(CLI::App& decode, DecodeOptions& options)
{
    CLI::Option* const explain =
        decode.add_flag("--explain", options.bExplain,
                        "Print what every byte of the input is, and where and why it is damaged");
    CLI::Option* const html =
        decode
            .add_option("--html", options.page,
                        "Explain on a page, bytes and meaning side by side; it is written to FILE\n"
                        "when all has been read, or to standard output (-)")
            ->type_name("FILE");
    for (const char* other :
         {"--format", "--obis", "--server", "--correct", "--watch", "--keep-bad"}) {
        explain->excludes(decode.get_option(other));
        html->excludes(decode.get_option(other));
    }
}

} // namespace

void AddDecode(CLI::App& app, int& status)
{
    const auto options = std::make_shared<DecodeOptions>();
    options->format = ::isatty(STDOUT_FILENO) != 0 ? "text" : "readings";
    CLI::App* decode = app.add_subcommand("decode", "Print what meters say: readings or records");
    AddInputs(*decode, options->inputs, "Inputs to read, one after the other");
    AddInputOption(*decode, options->eInput);
    std::vector<std::string> names;
    for (const FormatName& row : kFormats)
        names.emplace_back(row.pcName);
    CLI::Option* format =
        decode
            ->add_option(
                "--format", options->format,
                "text for people (the default on a terminal); readings, one JSON object per\n"
                "line (the default otherwise); csv; records, every message complete as JSON")
            ->check(OneOf("format", names))
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
    decode
        ->add_option(
            "--correct", options->corrections,
            "Correct readings that a meter encodes wrongly, which then say so beside the\n"
            "raw number: unsigned, where large numbers arrive negative (-536 of two bytes\n"
            "is 65000); sign8, where small negative ones lack their sign (251 is -5)")
        ->check(CLI::Validator(CheckCorrection, ""))
        ->type_name("[SERVERHEX/]OBIS=unsigned|sign8")
        ->allow_extra_args(false);
    decode
        ->add_flag("--watch", options->bWatch,
                   "Show a table of the latest readings, live on a terminal, else at the end")
        ->excludes(format);
    decode->add_flag("--keep-bad", options->bKeepBad,
                     "Print also readings of damaged frames and refused messages");
    AddExplainOptions(*decode, *options);
    decode->footer("Examples:\n"
                   "  quarn decode --format text examples/household.bin\n"
                   "  quarn decode --obis 1.8.0 --obis 16.7.0 < examples/household.bin\n"
                   "  quarn decode --correct 16.7.0=unsigned examples/household.bin\n"
                   "  quarn simulate --count 20 --interval 0.1 | quarn decode --watch\n"
                   "  quarn decode --explain examples/household.bin");
    decode->callback([options, &status] { status = RunDecode(*options); });
}

} // namespace tool
