// The subcommands of the program: each is one file with one function, which adds the subcommand to
// the command line and leaves its exit status in status when it is run.
#ifndef TOOLS_COMMAND_H
#define TOOLS_COMMAND_H

#include "tools/input/format.h"
#include "tools/input/source.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace tool
{

void AddDecode(CLI::App& app, int& status);
void AddEncode(CLI::App& app, int& status);
void AddFrame(CLI::App& app, int& status);
void AddUnframe(CLI::App& app, int& status);
void AddCheck(CLI::App& app, int& status);
void AddSimulate(CLI::App& app, int& status);

// What to say of a word that is none of names: "no format is called 'cvs': there are text, csv; did
// you mean 'csv'?".
std::string NoSuch(const std::string& what, const std::string& word,
                   const std::vector<std::string>& names);
// The name that was probably meant; empty when none is like word.
std::string Nearest(std::string_view word, const std::vector<std::string>& names);

// Reads a number that the whole text is, in decimal and from least to most (which infinity and what
// is no number are not). False on anything else.
template <typename Number>
bool ParseNumber(std::string_view text, Number least, Number most, Number& number)
{
    const char* const end = text.data() + text.size();
    const std::from_chars_result parsed = std::from_chars(text.data(), end, number);
    return parsed.ec == std::errc() && parsed.ptr == end && number >= least && number <= most;
}

// Adds an option whose value is such a number, which goes into target.
template <typename Number, typename Target>
CLI::Option* AddNumber(CLI::App& command, const std::string& name, Target& target, Number least,
                       Number most, const std::string& help, const std::string& type)
{
    const auto read = [=, &target](const std::string& text) {
        Number number{};
        if (!ParseNumber(text, least, most, number)) {
            std::ostringstream why;
            why.precision(std::numeric_limits<double>::digits10);
            why << "'" << text << "' is no number from " << least << " to " << most;
            throw CLI::ValidationError(name, why.str());
        }
        target = number;
    };
    return command.add_option_function<std::string>(name, read, help)->type_name(type);
}

// Allows an option these words alone; what tells what they are.
CLI::Validator OneOf(const std::string& what, const std::vector<std::string>& names);

// Options that several subcommands have: --trace UNIT=LEVEL, and --input for those that take
// framed, raw and hex input. AddInputs takes INPUT, of which what tells the meaning, and how live
// inputs are read.
void AddTraceOption(CLI::App& app);
void AddInputs(CLI::App& command, InputOptions& inputs, const std::string& what);
void AddInputOption(CLI::App& command, eINPUT& kind);

} // namespace tool

#endif
