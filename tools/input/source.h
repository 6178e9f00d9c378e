// Where bytes come from. Every kind of input stands behind one interface; the rest of the program
// never asks which it is.
#ifndef TOOLS_INPUT_SOURCE_H
#define TOOLS_INPUT_SOURCE_H

#include <cstddef>
#include <memory>
#include <string>

namespace tool
{

class cSource
{
public:
    enum eREAD : int { END = 0, FAILED = -1 };

    virtual ~cSource() = default;

    // Bytes (or the end) can be read without waiting.
    virtual bool Ready() = 0;

    // Waits for bytes and reads at most size of them. Returns how many; END at the end of the input
    // or after an interrupt; FAILED when the input fails, which Error() then explains.
    virtual long Read(unsigned char* data, std::size_t size) = 0;

    const std::string& Name() const noexcept { return name; } // as a message names it
    const std::string& Error() const noexcept { return error; }

protected:
    explicit cSource(std::string sourceName) : name(std::move(sourceName)) {}

    std::string name;
    std::string error;
};

// Opens the input of that name: a file, or "-" for standard input. Null when it cannot be opened;
// error then tells why.
std::unique_ptr<cSource> OpenSource(const std::string& name, std::string& error);

} // namespace tool

#endif
