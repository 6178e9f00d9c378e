// The one source that knows the library of the command line: it is large and is compiled once.
#include "tools/command_line.h"

#include "quarn/quarn.h"
#include "tools/commands.h"
#include "tools/input/hex_reader.h"
#include "tools/input/pump.h"
#include "tools/simulation/meter.h"
#include "tools/simulation/server.h"
#include "tools/spelling.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <climits>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace tool
{
namespace
{

// What to say of a word that is none of names: "no format is called 'cvs': there are text, csv; did
// you mean 'csv'?".
std::string NoSuch(const std::string& what, const std::string& word,
                   const std::vector<std::string>& names)
{
    const std::string nearest = Nearest(word, names);
    return "no " + what + " is called '" + word + "': there are " + CLI::detail::join(names, ", ") +
           (nearest.empty() ? "" : "; did you mean '" + nearest + "'?");
}

// Takes the text of an option's value. Returns what is wrong with it; nothing when it is taken.
using Take = std::function<std::string(const std::string&)>;

// Adds an option that has such a value.
CLI::Option* AddValue(CLI::App& command, const std::string& name, const std::string& type,
                      const std::string& help, const Take& take)
{
    const auto checked = [=](const std::string& text) {
        const std::string wrong = take(text);
        if (!wrong.empty())
            throw CLI::ValidationError(name, wrong);
    };
    return command.add_option_function<std::string>(name, checked, help)->type_name(type);
}

// The same for one that may be given several times.
CLI::Option* AddValues(CLI::App& command, const std::string& name, const std::string& type,
                       const std::string& help, const Take& take)
{
    const auto checked = [=](const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            const std::string wrong = take(text);
            if (!wrong.empty())
                throw CLI::ValidationError(name, wrong);
        }
    };
    return command.add_option_function<std::vector<std::string>>(name, checked, help)
        ->type_name(type)
        ->allow_extra_args(false);
}

// The same for one that is given by its name in names, which are in the order of Choice.
template <typename Choice, typename Target>
CLI::Option* AddChoice(CLI::App& command, const std::string& name, const std::string& what,
                       const std::vector<std::string>& names, Target& target,
                       const std::string& help)
{
    return AddValue(command, name, CLI::detail::join(names, "|"), help,
                    [=, &target](const std::string& word) {
                        const auto found = std::find(names.begin(), names.end(), word);
                        if (found == names.end())
                            return NoSuch(what, word, names);
                        target = static_cast<Choice>(std::distance(names.begin(), found));
                        return std::string();
                    });
}

// Reads a number that the whole text is, in decimal and from least to most (which infinity and what
// is no number are not). False on anything else.
template <typename Number>
bool ParseNumber(std::string_view text, Number least, Number most, Number& number)
{
    const char* const end = text.data() + text.size();
    const std::from_chars_result parsed = std::from_chars(text.data(), end, number);
    return parsed.ec == std::errc() && parsed.ptr == end && number >= least && number <= most;
}

// The same for one that is such a number.
template <typename Number, typename Target>
CLI::Option* AddNumber(CLI::App& command, const std::string& name, const std::string& type,
                       Target& target, Number least, Number most, const std::string& help)
{
    return AddValue(command, name, type, help, [=, &target](const std::string& text) {
        Number number{};
        std::ostringstream wrong;
        wrong.precision(std::numeric_limits<double>::digits10);
        if (ParseNumber(text, least, most, number))
            target = number;
        else
            wrong << "'" << text << "' is no number from " << least << " to " << most;
        return wrong.str();
    });
}

std::string SetLevel(const std::string& setting)
{
    const std::size_t equals = setting.find('=');
    const std::string name = setting.substr(0, equals);
    vorn::cUnit* unit = vorn::FindUnit(name.c_str());
    if (equals != std::string::npos && unit == nullptr)
        return NoSuch("unit", name, {"LibSmle", "LibSmlp", "LibSmlt", "LibQuarn"});
    int level = 0;
    if (equals == std::string::npos ||
        !ParseNumber(std::string_view(setting).substr(equals + 1), 2, 16, level))
        return "'" + setting + "' is not UNIT=LEVEL with a level from 2 to 16";
    unit->iLevel = level;
    return "";
}

// Shows trace lines of the library on stderr. Without it the library is silent, since the program
// tells itself what is wrong with the input.
void AddTrace(CLI::App& app)
{
    for (vorn::cUnit* unit : {LibSmle, LibSmlp, LibSmlt, LibQuarn})
        unit->iLevel = 0;
    AddValues(app, "--trace", "UNIT=LEVEL",
              "Show trace lines of a unit (LibSmle encoder, LibSmlp parser, LibSmlt transport,\n"
              "LibQuarn records) up to a level (2 errors, 4 anomalies, 8 progress, 16 details)",
              SetLevel);
}

// The inputs, of which what tells the meaning, and how live ones are read.
void AddInputs(CLI::App& command, InputOptions& inputs, const std::string& what)
{
    command.add_option("INPUT", inputs.names,
                       what + ":\n"
                              "files, - for standard input (the default), serial devices such as\n"
                              "/dev/ttyUSB0, connections as tcp:HOST:PORT");
    AddValue(command, "--serial", "BAUD,BITS+PARITY+STOP",
             "How serial lines are set: bits per second, then data bits, parity (N, E or O)\n"
             "and stop bits (9600,8N1)",
             [&inputs](const std::string& text) {
                 return ParseSerialSettings(text, inputs.serial)
                            ? ""
                            : "'" + text + "' is not like 9600,8N1";
             });
    command.add_flag("--reconnect", inputs.bReconnect,
                     "Open a serial line or connection again when it is lost or not there yet");
    command.add_flag("--follow", inputs.bFollow,
                     "Do not stop at the end of a file but wait for what is added to it");
    AddNumber(command, "--timeout", "MS", inputs.timeout, 0L, 3600000L,
              "Milliseconds of silence after which an unfinished SML file is given up (500\n"
              "on lines and connections; none, which is 0, in files and pipes)");
}

void AddInputKind(CLI::App& command, eINPUT& kind)
{
    AddChoice<eINPUT>(command, "--input", "kind of input", {"auto", "framed", "raw", "hex"}, kind,
                      "What an input holds: transport frames, one raw SML file, or hex text of\n"
                      "either; auto tells by the first bytes");
}

// What selects and shapes readings.
void AddReadings(CLI::App& decode, DecodeOptions& options)
{
    CLI::Option* const format = AddChoice<eFORMAT>(
        decode, "--format", "format", {"text", "readings", "csv", "records"}, options.format,
        "text for people (the default on a terminal); readings, one JSON object per\n"
        "line (the default otherwise); csv; records, every message complete as JSON");
    AddValues(decode, "--obis", "PATTERN",
              "Only readings of these codes, such as 1-0:1.8.0 or '*:*.8.*'; what is left\n"
              "out at either end is free",
              [&options](const std::string& text) {
                  return ParseObisPattern(text, options.patterns.emplace_back())
                             ? ""
                             : "'" + text + "' is no pattern like 1-0:1.8.*";
              });
    AddValue(decode, "--server", "HEX", "Only readings of this server id",
             [&options](const std::string& text) {
                 cHexReader hex;
                 return hex.Read(text, options.server) && !hex.HasHalfByte() &&
                                !options.server.empty()
                            ? ""
                            : "'" + text + "' is no hex text like 0a01";
             });
    AddValues(decode, "--correct", "[SERVERHEX/]OBIS=unsigned|sign8",
              "Correct readings that a meter encodes wrongly, which then say so beside the\n"
              "raw number: unsigned, where large numbers arrive negative (-536 of two bytes\n"
              "is 65000); sign8, where small negative ones lack their sign (251 is -5)",
              [&options](const std::string& text) {
                  return ParseCorrection(text, options.corrections.emplace_back())
                             ? ""
                             : "'" + text + "' is not like 1-0:16.7.0=unsigned, 0a01/*=sign8";
              });
    decode
        .add_flag("--watch", options.bWatch,
                  "Show a table of the latest readings, live on a terminal, else at the end")
        ->excludes(format);
    decode.add_flag("--keep-bad", options.bKeepBad,
                    "Print also readings of damaged frames and refused messages");
}

// An explanation shows everything: what selects and shapes readings is no part of it.
void AddExplanation(CLI::App& decode, DecodeOptions& options)
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

void AddDecode(CLI::App& decode, DecodeOptions& options)
{
    AddInputs(decode, options.inputs, "Inputs to read, one after the other");
    AddInputKind(decode, options.eInput);
    AddReadings(decode, options);
    AddExplanation(decode, options);
    decode.footer("Examples:\n"
                  "  quarn decode --format text examples/household.bin\n"
                  "  quarn decode --obis 1.8.0 --obis 16.7.0 < examples/household.bin\n"
                  "  quarn decode --correct 16.7.0=unsigned examples/household.bin\n"
                  "  quarn simulate --count 20 --interval 0.1 | quarn decode --watch\n"
                  "  quarn decode --explain examples/household.bin");
}

void AddEncode(CLI::App& encode, EncodeOptions& options)
{
    AddInputs(encode, options.inputs,
              "Inputs of one JSON object per line, one after the other: lines of 'decode\n"
              "--format records', or bare message records");
    encode.add_flag("--frame", options.bFrame,
                    "Wrap each file, from its open to its close message, in a transport frame");
    encode.footer("A line that cannot be encoded is told on stderr and left out.\n"
                  "\n"
                  "Example:\n"
                  "  quarn decode --format records examples/household.bin |\n"
                  "  quarn encode --frame > again.bin");
}

void AddFrame(CLI::App& frame, FrameOptions& options)
{
    AddInputs(frame, options.inputs,
              "Raw SML files, of which each becomes one frame (none, when it has no bytes)");
    frame.footer("Example:\n"
                 "  quarn unframe examples/household.bin | quarn frame > one.bin");
}

void AddUnframe(CLI::App& unframe, UnframeOptions& options)
{
    AddInputs(unframe, options.inputs, "Inputs of transport frames, one after the other");
    unframe.add_flag("--keep-bad", options.bKeepBad,
                     "Write also what damaged and unfinished frames hold");
    unframe.footer("Frames with a wrong checksum, unfinished ones and bytes outside frames are\n"
                   "told on stderr and left out.\n"
                   "\n"
                   "Example:\n"
                   "  quarn unframe examples/household.bin > household.sml");
}

void AddCheck(CLI::App& check, CheckOptions& options)
{
    AddInputs(check, options.inputs, "Inputs to read, counted together");
    AddInputKind(check, options.eInput);
    check.add_flag("--json", options.bJson, "Print the summary as one JSON object");
    check.footer("Of the servers, the first 10000 are listed, and that there are more.\n"
                 "\n"
                 "Example:\n"
                 "  quarn check --json examples/household.bin");
}

// What the meter sends.
void AddMeter(CLI::App& simulate, SimulateOptions& options)
{
    AddNumber(simulate, "--entries", "N", options.uiEntries, 1U, cMeter::kMaxEntries,
              "Entries of a reading (6)");
    AddNumber(simulate, "--interval", "SEC", options.interval, 0.0, 1e6,
              "Seconds from one frame to the next, such as 0.5. Without it the\n"
              "meter's clock steps by 1 and files and pipes get their frames as fast\n"
              "as they take them, clients of --listen one a second (with 0, theirs\n"
              "come without a pause, too)");
    AddNumber(simulate, "--count", "N", options.ullCount, 1ULL, ULLONG_MAX,
              "Frames to send; without it, no end");
    AddNumber(simulate, "--seed", "N", options.ullSeed, 0ULL, ULLONG_MAX,
              "The same seed makes the same bytes (1)");
    AddNumber(simulate, "--faults", "P", options.dFaults, 0.0, 1.0,
              "Fraction of the frames to damage, from 0 to 1: flipped bits, a lost\n"
              "begin or end, noise between frames");
}

void AddSimulate(CLI::App& simulate, SimulateOptions& options)
{
    AddMeter(simulate, options);
    CLI::Option* const output =
        simulate
            .add_option("-o,--output", options.output,
                        "File to write, which must not exist; - is standard output (the default)")
            ->type_name("FILE");
    simulate.add_flag("--force", options.bForce, "Write over the FILE of --output if it exists")
        ->needs(output);
    AddNumber(simulate, "--listen", "PORT", options.port, std::uint16_t{0},
              std::numeric_limits<std::uint16_t>::max(),
              "Serve TCP clients on this port of the loopback interface (0: any that\n"
              "is free), at most " +
                  std::to_string(kMaxClients) +
                  " at a time; frames are sent while there is a client")
        ->excludes(output);
    simulate.footer("The counts at the end, on stderr, are those that 'quarn check' finds.\n"
                    "\n"
                    "Examples:\n"
                    "  quarn simulate --count 1000 --faults 0.05 | quarn check\n"
                    "  quarn simulate --listen 4059 --count 3 & sleep 1; quarn decode "
                    "tcp:127.0.0.1:4059");
}

// Adds a subcommand, whose exit status is left in status when it is run.
template <class Options>
void AddCommand(CLI::App& app, int& status, const char* name, const char* help,
                void (*add)(CLI::App&, Options&), int (*run)(const Options&))
{
    const auto options = std::make_shared<Options>();
    CLI::App& command = *app.add_subcommand(name, help);
    add(command, *options);
    command.callback([options, run, &status] { status = run(*options); });
}

void AddCommands(CLI::App& app, int& status)
{
    AddCommand(app, status, "decode", "Print what meters say: readings or records", AddDecode,
               RunDecode);
    AddCommand(app, status, "encode", "Make SML of records, as decode prints them", AddEncode,
               RunEncode);
    AddCommand(app, status, "frame", "Wrap raw SML files in transport frames", AddFrame, RunFrame);
    AddCommand(app, status, "unframe", "Take raw SML out of transport frames", AddUnframe,
               RunUnframe);
    AddCommand(app, status, "check", "Count what inputs hold and what is wrong there", AddCheck,
               RunCheck);
    AddCommand(app, status, "simulate", "Be a meter: write frames of readings", AddSimulate,
               RunSimulate);
    for (CLI::App* const command : app.get_subcommands([](CLI::App*) { return true; })) {
        for (CLI::Option* const option : command->get_options())
            option->disable_flag_override();
    }
}

constexpr auto kIsOption = [](const std::string& word) { return word.compare(0, 1, "-") == 0; };

// The subcommand that was given; null when there is none.
CLI::App* CommandIn(CLI::App& app)
{
    return app.get_subcommands().empty() ? nullptr : app.get_subcommands().front();
}

std::vector<std::string> CommandNames(CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return names;
}

// What to say when the first word is no command; empty when it is one, or when there is none.
std::string UnknownCommand(CLI::App& app)
{
    const std::vector<std::string> left = app.remaining();
    const auto word = std::find_if_not(left.begin(), left.end(), kIsOption);
    return word == left.end() || CommandIn(app) != nullptr
               ? ""
               : NoSuch("command", *word, CommandNames(app));
}

// What to say of the first word that nothing takes.
std::string Unexpected(CLI::App& app)
{
    const std::string word = app.remaining(true).front();
    CLI::App* const command = CommandIn(app);
    if (!kIsOption(word))
        return command == nullptr ? UnknownCommand(app) : "'" + word + "' is not expected here";
    const std::string name = word.substr(0, word.find('='));
    if (command != nullptr && command->get_option_no_throw(name) != nullptr)
        return name + ": belongs behind '" + command->get_name() + "'";
    std::vector<std::string> names;
    for (CLI::App* const part : {&app, command}) {
        for (const CLI::Option* option :
             part != nullptr ? part->get_options() : std::vector<CLI::Option*>())
            for (const std::string& known : option->get_lnames())
                names.push_back("--" + known);
    }
    const std::string nearest = Nearest(name, names);
    return "no option is called '" + name + "'" +
           (nearest.empty() ? "" : ": did you mean '" + nearest + "'?");
}

// What to say of an option that has no value, too many of them, or one that is a mere flag.
std::string WrongCount(CLI::App& app, const std::string& what)
{
    const std::string name = what.substr(0, what.find_first_of(": "));
    const CLI::App* const command = CommandIn(app);
    const CLI::Option* option = command != nullptr ? command->get_option_no_throw(name) : nullptr;
    if (option == nullptr)
        option = app.get_option_no_throw(name);
    if (option == nullptr || option->get_items_expected_max() == 0)
        return "--" + name.substr(std::min(name.find_first_not_of('-'), name.size())) +
               ": takes no value";
    return name + (option->count() > 1 ? ": is given more than once"
                                       : ": lacks its value, " + option->get_type_name());
}

// What is wrong with the command line, in the words of this program instead of the library's.
std::string Complaint(CLI::App& app, const CLI::ParseError& error)
{
    const auto is = [&error](CLI::ExitCodes code) {
        return error.get_exit_code() == static_cast<int>(code);
    };
    std::string what = error.what();
    if (is(CLI::ExitCodes::ExtrasError))
        return Unexpected(app);
    if (is(CLI::ExitCodes::ArgumentMismatch))
        return WrongCount(app, what);
    if (is(CLI::ExitCodes::ExcludesError))
        return what.replace(what.find(" excludes "), 10, " cannot be given together with ");
    return what;
}

int Refuse(CLI::App& app, const std::string& complaint)
{
    const CLI::App* const command = CommandIn(app);
    cReport().Say(EXIT_FAILED, "%s (see: quarn %s--help)", complaint.c_str(),
                  command == nullptr ? "" : (command->get_name() + ' ').c_str());
    return EXIT_FAILED;
}

// Writes what --help or --version asks for.
int Answer(CLI::App& app, const CLI::Success& asked)
{
    const std::string unknown = UnknownCommand(app);
    if (!unknown.empty())
        return Refuse(app, unknown);
    cOutput out(STDOUT_FILENO);
    cReport report;
    const bool version = asked.get_name() == "CallForVersion";
    out.Append(version ? asked.what() + std::string("\n") : app.help());
    return Finish(out, report);
}

} // namespace

int RunCommandLine(int argc, char** argv)
{
    CLI::App app("Reads Smart Message Language (SML), the language of meters.", "quarn");
    app.set_version_flag("--version", "quarn " QUARN_VERSION "\n" QUARN_BUILD_TYPE
                                      " build by " QUARN_COMPILER " for " QUARN_SYSTEM);
    app.require_subcommand(0, 1); // none at all is refused below, after a mistyped one
    app.fallthrough();
    app.footer("Example:\n"
               "  quarn decode --format text examples/household.bin\n"
               "\n"
               "Exit status: 0 all input was good; 1 some input was damaged or refused, which\n"
               "stderr tells, and all that was good has been printed; 2 usage, or an input or\n"
               "output that cannot be opened or fails. 'quarn COMMAND --help' tells more.");
    AddTrace(app);
    int status = EXIT_GOOD;
    AddCommands(app, status);
    try {
        app.parse(argc, argv);
        if (CommandIn(app) == nullptr)
            throw CLI::RequiredError("A command");
    } catch (const CLI::Success& asked) {
        return Answer(app, asked);
    } catch (const CLI::ParseError& error) {
        return Refuse(app, Complaint(app, error));
    }
    return status;
}

} // namespace tool
