// Gives a stream to TCP clients on the loopback interface: each gets it from where it joins.
#ifndef TOOLS_SIMULATION_SERVER_H
#define TOOLS_SIMULATION_SERVER_H

#include "tools/road/report.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace tool
{

// Appends the next piece of the stream to bytes; false when there is none.
using Producer = std::function<bool(std::string& bytes)>;

// Clients at a time. One more is turned away.
constexpr std::size_t kMaxClients = 64;

// Listens on the port (0: any that is free) and says so, then gives each piece of the stream to all
// clients, one every interval seconds; with an interval of 0, as fast as the slowest client reads
// that has read anything in the last second. While there is no client, nothing is produced. A
// client that falls 4 MiB behind is dropped, and told so by a reset. Where the process may not open
// more descriptors, new clients wait.
// Returns when the stream has ended and the clients have it all, or after an interrupt; false when
// the port cannot be had, which report then tells.
bool Serve(std::uint16_t port, double interval, const Producer& produce, cReport& report);

} // namespace tool

#endif
