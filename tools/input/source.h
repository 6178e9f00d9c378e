// Where bytes come from. Every kind of input stands behind one interface; the rest of the program
// never asks which it is.
#ifndef TOOLS_INPUT_SOURCE_H
#define TOOLS_INPUT_SOURCE_H

#include "tools/input/serial_settings.h"
#include "tools/road/report.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tool
{

class cSource
{
public:
    enum eREAD : int {
        END = 0,
        FAILED = -1,
        TIMEOUT = -2,   // no byte in the given time
        RESTARTED = -3, // what follows does not continue what was read before
        DISTURBED = -4  // by a signal that does not end the reading
    };

    virtual ~cSource() = default;

    // Bytes (or the end) can be read without waiting.
    virtual bool Ready() = 0;

    // Waits for bytes, at most so many milliseconds (-1: for ever), and reads at most size of them.
    // Returns how many, or one of eREAD: END at the end of the input or after an interrupt; FAILED
    // when the input fails, which Error() then explains.
    virtual long Read(unsigned char* data, std::size_t size, long timeout) = 0;

    // A line or a connection, where a silence means something.
    virtual bool IsLive() const noexcept { return false; }
    // Bytes in all, where that is known beforehand, else 0.
    virtual std::uint64_t Size() const noexcept { return 0; }

    const std::string& Name() const noexcept { return name; } // as a message names it
    const std::string& Error() const noexcept { return error; }

protected:
    explicit cSource(std::string sourceName) : name(std::move(sourceName)) {}

    std::string name;
    std::string error;
};

// What to read, and how.
struct InputOptions {
    std::vector<std::string> names = {"-"};
    SerialSettings serial;
    bool bReconnect = false;     // a line or connection that is lost or not there yet is waited for
    bool bFollow = false;        // a file that has been read is waited on to grow
    std::optional<long> timeout; // milliseconds of silence that end a message; 0: none do
};

// Opens the input of that name: a file, "-" for standard input, a serial device or tcp:HOST:PORT.
// Null when it cannot be opened; error then tells why. What happens to a line that is waited for is
// told to report.
std::unique_ptr<cSource> OpenSource(const std::string& name, const InputOptions& options,
                                    cReport& report, std::string& error);

} // namespace tool

#endif
