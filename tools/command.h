// The subcommands of the program: each is one file with one function, which adds the subcommand to
// the command line and leaves its exit status in status when it is run.
#ifndef TOOLS_COMMAND_H
#define TOOLS_COMMAND_H

#include "tools/input/format.h"
#include "tools/input/source.h"

#include <CLI/CLI.hpp>
#include <string>

namespace tool
{

void AddDecode(CLI::App& app, int& status);
void AddEncode(CLI::App& app, int& status);
void AddFrame(CLI::App& app, int& status);
void AddUnframe(CLI::App& app, int& status);
void AddCheck(CLI::App& app, int& status);
void AddSimulate(CLI::App& app, int& status);

// Options that several subcommands have: --trace UNIT=LEVEL, and --input for those that take
// framed, raw and hex input. AddInputs takes INPUT, of which what tells the meaning, and how live
// inputs are read.
void AddTraceOption(CLI::App& app);
void AddInputs(CLI::App& command, InputOptions& inputs, const std::string& what);
void AddInputOption(CLI::App& command, eINPUT& kind);

} // namespace tool

#endif
