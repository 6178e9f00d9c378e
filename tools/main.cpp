// quarn: a host of the library for people who have a meter, a capture or a byte stream in hand.
// This file holds the command line alone; each subcommand stands in a file of its own.
#include "tools/command.h"
#include "tools/output/escape.h"
#include "tools/road/report.h"

#include <algorithm>
#include <exception>
#include <fcntl.h>
#include <numeric>
#include <string>
#include <unistd.h>
#include <vector>

namespace tool
{
namespace
{

// How many letters must be added, taken away or exchanged to make b of a.
std::size_t Distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t exchanged = diagonal + (a[i] != b[j] ? 1 : 0);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

// What to say when the first word is no command; empty when it is one.
std::string Suggestion(const CLI::App& app)
{
    const std::vector<std::string> left = app.remaining();
    const auto word = std::find_if(left.begin(), left.end(), [](const std::string& arg) {
        return arg.compare(0, 1, "-") != 0;
    });
    if (word == left.end() || !app.get_subcommands().empty())
        return {};
    std::string nearest;
    std::size_t least = 3; // more than a slip of the fingers
    std::string all;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        const std::size_t distance = Distance(*word, command->get_name());
        if (distance < least) {
            least = distance;
            nearest = command->get_name();
        }
        all += (all.empty() ? "" : ", ") + command->get_name();
    }
    return "no command is called '" + *word +
           "': " + (nearest.empty() ? "there are " + all : "did you mean '" + nearest + "'?");
}

// The next file opened would take the place of a standard descriptor that is closed: reading it, or
// writing there, fails instead.
void HoldStandardDescriptors()
{
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(fd, F_GETFD) < 0)
            ::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace
} // namespace tool

int main(int argc, char** argv)
{
    tool::HoldStandardDescriptors();
    try {
        int status = tool::EXIT_GOOD;
        CLI::App app("Reads Smart Message Language (SML), the language of meters.", "quarn");
        app.set_version_flag("--version", "quarn " QUARN_VERSION "\n" QUARN_BUILD_TYPE
                                          " build by " QUARN_COMPILER " for " QUARN_SYSTEM);
        app.require_subcommand(0, 1); // none at all is told below, behind a mistyped one
        app.fallthrough();
        app.footer("Example:\n"
                   "  quarn decode --format text examples/household.bin\n"
                   "\n"
                   "Exit status: 0 all input was good; 1 some input was damaged or refused, which\n"
                   "stderr tells, and all that was good has been printed; 2 usage, or an input or\n"
                   "output that cannot be opened or fails. 'quarn COMMAND --help' tells more.");
        app.failure_message([](const CLI::App*, const CLI::Error& error) {
            return "quarn: " + tool::ForTerminal(error.what()) +
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
        } catch (const CLI::ExtrasError& error) {
            const std::string suggestion = tool::Suggestion(app);
            if (suggestion.empty())
                return app.exit(error) == 0 ? tool::EXIT_GOOD : tool::EXIT_FAILED;
            tool::cReport().Say(tool::EXIT_FAILED, "%s", suggestion.c_str());
            return tool::EXIT_FAILED;
        } catch (const CLI::ParseError& error) {
            return app.exit(error) == 0 ? tool::EXIT_GOOD : tool::EXIT_FAILED;
        }
        return status;
    } catch (const std::exception& error) {
        tool::cReport().Say(tool::EXIT_FAILED, "%s", error.what());
        return tool::EXIT_FAILED;
    }
}
