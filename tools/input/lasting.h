// Sources that outlast their ends: a line or connection that is opened again when it is lost, and a
// file that is waited on to grow.
#ifndef TOOLS_INPUT_LASTING_H
#define TOOLS_INPUT_LASTING_H

#include "tools/input/source.h"

#include <functional>
#include <memory>
#include <string>

namespace tool
{

// Opens what it reads; null when that fails, and error then tells why.
using Opener = std::function<std::unique_ptr<cSource>(std::string& error)>;

// Calls open until it succeeds and whenever the source is lost, after a pause that doubles from
// 0.2 s to 10 s while nothing is received.
std::unique_ptr<cSource> MakeReconnecting(const std::string& name, Opener open, cReport& report);

// Reads the file of that name and what is added to it. When it has been replaced or shortened, it
// is read from its begin. Null when it cannot be opened.
std::unique_ptr<cSource> MakeFollowing(const std::string& name, cReport& report,
                                       std::string& error);

} // namespace tool

#endif
