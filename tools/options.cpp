// Options that several subcommands have. --trace UNIT=LEVEL shows trace lines of the library on
// stderr; without it the library is silent, since the program tells itself what is wrong with the
// input. The inputs, and how they are read. --input names what an input holds.
#include "quarn/quarn.h"
#include "tools/command.h"

#include <charconv>
#include <map>
#include <string>
#include <vector>

namespace tool
{
namespace
{

void SetLevel(const std::string& setting)
{
    const std::size_t equals = setting.find('=');
    int level = -1;
    if (equals != std::string::npos) {
        const char* end = setting.data() + setting.size();
        const std::from_chars_result parsed =
            std::from_chars(setting.data() + equals + 1, end, level);
        if (parsed.ec != std::errc() || parsed.ptr != end)
            level = -1;
    }
    if (level < 0)
        throw CLI::ValidationError("--trace", "'" + setting + "' is not UNIT=LEVEL");
    const std::string name = setting.substr(0, equals);
    vorn::cUnit* unit = vorn::FindUnit(name.c_str());
    if (unit == nullptr)
        throw CLI::ValidationError("--trace", "no unit is called '" + name +
                                                  "': there are LibSmle, LibSmlp, LibSmlt, "
                                                  "LibQuarn");
    unit->iLevel = level;
}

} // namespace

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
    command
        .add_option("--timeout", inputs.timeout,
                    "Milliseconds of silence after which an unfinished SML file is given up (500\n"
                    "on lines and connections; none, which is 0, in files and pipes)")
        ->check(CLI::Range(0L, 3600000L).description(""))
        ->type_name("MS");
}

void AddInputOption(CLI::App& command, eINPUT& kind)
{
    static const std::map<std::string, eINPUT> kInputs = {
        {"auto", INPUT_AUTO}, {"framed", INPUT_FRAMED}, {"raw", INPUT_RAW}, {"hex", INPUT_HEX}};
    command
        .add_option("--input", kind,
                    "What an input holds: transport frames, one raw SML file, or hex text of\n"
                    "either; auto tells by the first bytes")
        ->transform(CLI::CheckedTransformer(kInputs).description(""))
        ->type_name("auto|framed|raw|hex");
}

} // namespace tool
