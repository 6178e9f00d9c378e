// quarn: a host of the library for people who have a meter, a capture or a byte stream in hand.
// This file holds the command line alone; each subcommand stands in a file of its own.
#include "tools/command.h"
#include "tools/input/pump.h"

#include <algorithm>
#include <exception>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace tool
{
namespace
{

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

// Parses the command line, which runs the command in it. Returns the exit status.
int Run(CLI::App& app, int argc, char** argv)
{
    int status = EXIT_GOOD;
    for (const auto add : {AddDecode, AddEncode, AddFrame, AddUnframe, AddCheck, AddSimulate})
        add(app, status);
    for (CLI::App* const command : app.get_subcommands([](CLI::App*) { return true; })) {
        for (CLI::Option* const option : command->get_options())
            option->disable_flag_override();
    }
    try {
        app.parse(argc, argv);
        if (CommandIn(app) == nullptr)
            throw CLI::RequiredError("A command");
    } catch (const CLI::Success& asked) { // --help or --version
        const std::string unknown = UnknownCommand(app);
        if (!unknown.empty())
            return Refuse(app, unknown);
        cOutput out(STDOUT_FILENO);
        cReport report;
        const bool version = asked.get_name() == "CallForVersion";
        out.Append(version ? asked.what() + std::string("\n") : app.help());
        return Finish(out, report);
    } catch (const CLI::ParseError& error) {
        return Refuse(app, Complaint(app, error));
    }
    return status;
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
        tool::AddTraceOption(app);
        return tool::Run(app, argc, argv);
    } catch (const std::exception& error) {
        tool::cReport().Say(tool::EXIT_FAILED, "%s", error.what());
        return tool::EXIT_FAILED;
    }
}
