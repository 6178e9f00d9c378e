// A file that is written whole or not at all: its text goes to a temporary file in the same folder,
// which takes the file's place when it is complete. Until then, and after a failure, what was there
// stays as it was.
#ifndef TOOLS_OUTPUT_WHOLE_FILE_H
#define TOOLS_OUTPUT_WHOLE_FILE_H

#include <string>
#include <string_view>

namespace tool
{

// Why nothing can be written there (a number of errno), or 0 when nothing speaks against it yet.
int WhyNotWritable(const std::string& path);

// Returns 0, or errno of what failed. The file gets the permissions of a new one. Where path is a
// symbolic link, the link stays and what it names is replaced; a device or a pipe is written to. No
// signal ends the program meanwhile, so that the temporary file never stays behind.
int WriteWhole(const std::string& path, std::string_view text);

} // namespace tool

#endif
