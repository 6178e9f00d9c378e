// The data that the program prints: one large buffer before a descriptor. It is an output stream of
// the JSON writer, and it can hold text back until it is known whether it is to be printed at all.
#ifndef TOOLS_OUTPUT_OUTPUT_H
#define TOOLS_OUTPUT_OUTPUT_H

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

namespace tool
{

// Writes bytes as lower-case hex to out, two characters each.
void WriteHex(std::string_view bytes, char* out) noexcept;

class cOutput
{
public:
    using Ch = char; // as the JSON writer asks

    // Above this size the buffer is worth a write.
    static constexpr std::size_t kDrainSize = std::size_t{256} * 1024;

    explicit cOutput(int fd) : iFd(fd), buffer(2 * kDrainSize) {}

    // ---- Adding text

    // Room for size characters at the end; Advance takes those that have been written there.
    char* Room(std::size_t size)
    {
        if (buffer.size() - uiSize < size)
            buffer.resize(2 * (buffer.size() + size));
        return buffer.data() + uiSize;
    }
    void Advance(std::size_t size) noexcept { uiSize += size; }
    void Put(char c)
    {
        *Room(1) = c;
        ++uiSize;
    }
    void Append(std::string_view text)
    {
        if (!text.empty())
            std::memcpy(Room(text.size()), text.data(), text.size());
        uiSize += text.size();
    }
    void Pad(std::size_t count, char c = ' ')
    {
        std::memset(Room(count), c, count);
        uiSize += count;
    }
    void AppendHex(std::string_view bytes)
    {
        WriteHex(bytes, Room(2 * bytes.size()));
        uiSize += 2 * bytes.size();
    }
    void Flush() noexcept {} // the JSON writer calls it after each document; see Drain

    // ---- Holding back

    // What is added from here on is not written before Release; Discard removes it.
    void Hold() noexcept
    {
        uiHeldFrom = uiSize;
        bHolds = true;
    }
    void Release() noexcept { bHolds = false; }
    void Discard() noexcept
    {
        uiSize = uiHeldFrom;
        bHolds = false;
    }
    bool Holds() const noexcept { return bHolds; }
    std::size_t HeldSize() const noexcept { return bHolds ? uiSize - uiHeldFrom : 0; }

    // ---- Writing

    // What has been added and not been written.
    std::string_view Text() const noexcept { return {buffer.data(), uiSize}; }

    // Writes all that is not held back. Once a write has failed, text is dropped.
    void Drain();
    void DrainIfLarge()
    {
        if (Printable() >= kDrainSize)
            Drain();
    }
    // errno of the write that failed, or 0.
    int Error() const noexcept { return iError; }

private:
    std::size_t Printable() const noexcept { return bHolds ? uiHeldFrom : uiSize; }

    int iFd;
    int iError = 0;
    std::vector<char> buffer;
    std::size_t uiSize = 0;
    std::size_t uiHeldFrom = 0;
    bool bHolds = false;
};

// How the JSON writer adds a character when it has asked for room before.
inline void PutReserve(cOutput& output, std::size_t count) { output.Room(count); }
inline void PutUnsafe(cOutput& output, char c)
{
    *output.Room(0) = c;
    output.Advance(1);
}

} // namespace tool

#endif
