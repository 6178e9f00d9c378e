// The subcommands of the program: each is one file with one function, which adds the subcommand to
// the command line and leaves its exit status in status when it is run.
#ifndef TOOLS_COMMAND_H
#define TOOLS_COMMAND_H

#include <CLI/CLI.hpp>

namespace tool
{

void AddDecode(CLI::App& app, int& status);

// --trace UNIT=LEVEL, for every subcommand.
void AddTraceOption(CLI::App& app);

} // namespace tool

#endif
