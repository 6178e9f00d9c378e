// Live inputs: serial lines and TCP connections.
#ifndef TOOLS_INPUT_LINE_H
#define TOOLS_INPUT_LINE_H

#include "tools/input/source.h"

#include <memory>
#include <string>

namespace tool
{

// name is the device's path.
std::unique_ptr<cSource> OpenSerial(const std::string& name, const SerialSettings& settings,
                                    std::string& error);

// An interrupt ends the attempt.
std::unique_ptr<cSource> OpenTcp(const std::string& host, const std::string& port,
                                 std::string& error);

inline bool IsTcp(const std::string& name) { return name.compare(0, 4, "tcp:") == 0; }
// Takes tcp:HOST:PORT apart, of which HOST is an address (IPv6 in brackets) or a name. False when
// either is missing.
bool SplitTcp(const std::string& name, std::string& host, std::string& port);

} // namespace tool

#endif
