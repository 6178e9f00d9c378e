// The command line: options, help texts and what is said of a mistake.
#ifndef TOOLS_COMMAND_LINE_H
#define TOOLS_COMMAND_LINE_H

namespace tool
{

// Parses the command line and runs the subcommand in it. Returns the exit status.
int RunCommandLine(int argc, char** argv);

} // namespace tool

#endif
