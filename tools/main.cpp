// quarn: a host of the library for people who have a meter, a capture or a byte stream in hand.
// This file holds the command line alone; each subcommand stands in a file of its own.
#include "tools/command.h"
#include "tools/road/report.h"

#include <exception>
#include <string>

int main(int argc, char** argv)
{
    try {
        int status = tool::EXIT_GOOD;
        CLI::App app("Reads Smart Message Language (SML), the language of meters.", "quarn");
        app.set_version_flag("--version", "quarn " QUARN_VERSION);
        app.require_subcommand(0, 1); // none at all is told below, behind a mistyped one
        app.fallthrough();
        app.footer("Example:\n"
                   "  quarn decode --format text examples/household.bin\n"
                   "\n"
                   "Exit status: 0 all input was good; 1 some input was damaged or refused, which\n"
                   "stderr tells, and all that was good has been printed; 2 usage, or an input or\n"
                   "output that cannot be opened or fails. 'quarn COMMAND --help' tells more.");
        app.failure_message([](const CLI::App*, const CLI::Error& error) {
            return std::string("quarn: ") + error.what() +
                   "\nRun with --help for more information.\n";
        });
        tool::AddTraceOption(app);
        for (const auto add : {tool::AddDecode, tool::AddEncode, tool::AddFrame, tool::AddUnframe,
                               tool::AddCheck, tool::AddSimulate})
            add(app, status);
        try {
            app.parse(argc, argv);
            if (app.get_subcommands().empty())
                throw CLI::RequiredError("A command");
        } catch (const CLI::ParseError& error) {
            return app.exit(error) == 0 ? tool::EXIT_GOOD : tool::EXIT_FAILED;
        }
        return status;
    } catch (const std::exception& error) {
        tool::cReport().Say(tool::EXIT_FAILED, "%s", error.what());
        return tool::EXIT_FAILED;
    }
}
