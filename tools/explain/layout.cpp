// See layout.h. Within a frame, four escape bytes are the beginning of something, and only eight in
// a row are content: four of it.
#include "tools/explain/layout.h"

#include <algorithm>
#include <numeric>

namespace tool
{
namespace
{

constexpr std::size_t kStart = 8;  // 1B 1B 1B 1B 01 01 01 01
constexpr std::size_t kEscape = 4; // 1B 1B 1B 1B
constexpr std::size_t kEnd = 8;    // 1B 1B 1B 1B 1A, padding count, CRC

class cLayOut
{
public:
    cLayOut(std::uint64_t offset, std::string_view bytes)
    {
        layout.ullOffset = offset;
        layout.input = bytes;
    }

    Layout Frame(std::uint64_t payload, eFRAME frame)
    {
        const std::string_view input = layout.input;
        const bool ends = frame != eFRAME::UNENDED && input.size() >= kStart + kEnd;
        const std::size_t end = ends ? input.size() - kEnd : input.size();
        Note(0, std::min(kStart, end), eWHAT::TRANSPORT, "start of a frame");
        std::size_t at = std::min(kStart, end);
        while (at < end)
            at = Content(at, end);
        Settle(payload, ends);
        if (ends)
            End(end, frame);
        std::stable_sort(
            layout.transport.begin(), layout.transport.end(),
            [](const Annotation& a, const Annotation& b) { return a.ullOffset < b.ullOffset; });
        return std::move(layout);
    }

private:
    Annotation& Note(std::size_t at, std::size_t end, eWHAT what, const char* name)
    {
        Annotation& item = layout.transport.emplace_back();
        item.ullOffset = layout.ullOffset + at;
        item.bytes = layout.input.substr(at, end - at);
        item.eWhat = what;
        item.name = name;
        return item;
    }
    void Take(std::size_t at, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
            layout.positions.push_back(static_cast<std::uint32_t>(at + i));
    }

    // Takes one byte, or escapes with what they introduce; returns where to go on.
    std::size_t Content(std::size_t at, std::size_t end)
    {
        const std::string_view rest = layout.input.substr(at, end - at);
        const std::size_t run = std::min(rest.find_first_not_of('\x1B'), rest.size());
        if (run >= 2 * kEscape) {
            Note(at, at + kEscape, eWHAT::TRANSPORT, "escape of the four bytes behind it");
            Take(at + kEscape, kEscape);
            return at + 2 * kEscape;
        }
        if (run < kEscape) {
            Take(at, std::max<std::size_t>(run, 1));
            return at + std::max<std::size_t>(run, 1);
        }
        Take(at, run - kEscape); // the last four of the run escape
        const std::size_t escape = at + run - kEscape;
        const std::size_t stop = std::min(escape + 2 * kEscape, end);
        Annotation& item = Note(escape, stop, eWHAT::TRANSPORT, "escape");
        if (stop == escape + 2 * kEscape)
            item.damage =
                "it introduces nothing known; it is dropped with the four bytes behind it";
        else
            item.name = "escape, cut off";
        return stop;
    }

    // What the road did not deliver is padding, or was held back as it might have been.
    void Settle(std::uint64_t payload, bool ends)
    {
        std::vector<std::uint32_t>& positions = layout.positions;
        const std::size_t size =
            std::min<std::size_t>(positions.size(), static_cast<std::size_t>(payload));
        for (std::size_t i = size; i < positions.size(); ++i) {
            if (i != size && positions[i] == positions[i - 1] + 1)
                layout.transport.back().bytes += layout.input[positions[i]];
            else
                Note(positions[i], positions[i] + 1, eWHAT::PADDING,
                     ends ? "padding" : "not delivered: it may have been padding");
        }
        positions.resize(size);
        for (const std::uint32_t position : positions)
            layout.payload += layout.input[position];
    }

    void End(std::size_t at, eFRAME frame)
    {
        Note(at, at + kEscape + 1, eWHAT::TRANSPORT, "end of a frame");
        Annotation& padding =
            Note(at + kEscape + 1, at + kEscape + 2, eWHAT::TRANSPORT, "number of padding bytes");
        padding.value = std::to_string(static_cast<unsigned char>(padding.bytes[0]));
        Annotation& crc =
            Note(at + kEscape + 2, at + kEnd, eWHAT::CHECKSUM, "checksum of the frame");
        crc.value = frame == eFRAME::WHOLE ? "right" : "wrong";
        if (frame == eFRAME::DAMAGED)
            crc.damage = "the checksum is wrong: some byte of the frame is damaged";
    }

    Layout layout;
};

} // namespace

Layout LayOutFrame(std::uint64_t offset, std::string_view input, std::uint64_t size, eFRAME frame)
{
    return cLayOut(offset, input).Frame(size, frame);
}

Layout LayOutRaw(std::uint64_t offset, std::string_view input)
{
    Layout layout;
    layout.ullOffset = offset;
    layout.input = input;
    layout.payload = input;
    layout.positions.resize(input.size());
    std::iota(layout.positions.begin(), layout.positions.end(), 0U);
    return layout;
}

} // namespace tool
