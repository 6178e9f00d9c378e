// Options that several subcommands have. --trace UNIT=LEVEL shows trace lines of the library on
// stderr; without it the library is silent, since the program tells itself what is wrong with the
// input. The inputs, and how they are read. --input names what an input holds.
#include "quarn/quarn.h"
#include "tools/command.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

namespace tool
{
namespace
{

void SetLevel(const std::string& setting)
{
    const std::size_t equals = setting.find('=');
    const std::string name = setting.substr(0, equals);
    vorn::cUnit* unit = vorn::FindUnit(name.c_str());
    if (equals != std::string::npos && unit == nullptr)
        throw CLI::ValidationError(
            "--trace", NoSuch("unit", name, {"LibSmle", "LibSmlp", "LibSmlt", "LibQuarn"}));
    int level = 0;
    if (equals == std::string::npos ||
        !ParseNumber(std::string_view(setting).substr(equals + 1), 2, 16, level))
        throw CLI::ValidationError("--trace",
                                   "'" + setting + "' is not UNIT=LEVEL with a level from 2 to 16");
    unit->iLevel = level;
}

// How many letters must be added, taken away or exchanged to make b of a, whatever their case.
std::size_t Distance(std::string_view a, std::string_view b)
{
    const auto same = [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    };
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t exchanged = diagonal + (same(a[i], b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string Nearest(std::string_view word, const std::vector<std::string>& names)
{
    std::string nearest;
    std::size_t least = std::min<std::size_t>(3, word.size()); // more than a slip of the fingers
    for (const std::string& name : names) {
        const std::size_t distance = Distance(word, name);
        if (distance < least) {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}

std::string NoSuch(const std::string& what, const std::string& word,
                   const std::vector<std::string>& names)
{
    const std::string nearest = Nearest(word, names);
    return "no " + what + " is called '" + word + "': there are " + CLI::detail::join(names, ", ") +
           (nearest.empty() ? "" : "; did you mean '" + nearest + "'?");
}

CLI::Validator OneOf(const std::string& what, const std::vector<std::string>& names)
{
    return {[=](const std::string& word) {
                const bool known = std::find(names.begin(), names.end(), word) != names.end();
                return known ? std::string() : NoSuch(what, word, names);
            },
            ""};
}

void AddTraceOption(CLI::App& app)
{
    for (vorn::cUnit* unit : {LibSmle, LibSmlp, LibSmlt, LibQuarn})
        unit->iLevel = 0;
    app.add_option_function<std::vector<std::string>>(
           "--trace",
           [](const std::vector<std::string>& settings) {
               for (const std::string& setting : settings)
                   SetLevel(setting);
           },
           "Show trace lines of a unit (LibSmle encoder, LibSmlp parser, LibSmlt transport,\n"
           "LibQuarn records) up to a level (2 errors, 4 anomalies, 8 progress, 16 details)")
        ->type_name("UNIT=LEVEL")
        ->allow_extra_args(false);
}

void AddInputs(CLI::App& command, InputOptions& inputs, const std::string& what)
{
    command.add_option("INPUT", inputs.names,
                       what + ":\n"
                              "files, - for standard input (the default), serial devices such as\n"
                              "/dev/ttyUSB0, connections as tcp:HOST:PORT");
    command
        .add_option_function<std::string>(
            "--serial",
            [&inputs](const std::string& text) {
                if (!ParseSerialSettings(text, inputs.serial))
                    throw CLI::ValidationError("--serial", "'" + text + "' is not like 9600,8N1");
            },
            "How serial lines are set: bits per second, then data bits, parity (N, E or O)\n"
            "and stop bits (9600,8N1)")
        ->type_name("BAUD,BITS+PARITY+STOP");
    command.add_flag("--reconnect", inputs.bReconnect,
                     "Open a serial line or connection again when it is lost or not there yet");
    command.add_flag("--follow", inputs.bFollow,
                     "Do not stop at the end of a file but wait for what is added to it");
    AddNumber(command, "--timeout", inputs.timeout, 0L, 3600000L,
              "Milliseconds of silence after which an unfinished SML file is given up (500\n"
              "on lines and connections; none, which is 0, in files and pipes)",
              "MS");
}

void AddInputOption(CLI::App& command, eINPUT& kind)
{
    static const std::vector<std::string> kInputs = {"auto", "framed", "raw", "hex"}; // as eINPUT
    command
        .add_option_function<std::string>(
            "--input",
            [&kind](const std::string& name) {
                const auto found = std::find(kInputs.begin(), kInputs.end(), name);
                kind = static_cast<eINPUT>(std::distance(kInputs.begin(), found));
            },
            "What an input holds: transport frames, one raw SML file, or hex text of\n"
            "either; auto tells by the first bytes")
        ->check(OneOf("kind of input", kInputs))
        ->type_name("auto|framed|raw|hex");
}

} // namespace tool
