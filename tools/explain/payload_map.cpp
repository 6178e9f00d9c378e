// See payload_map.h. Within a frame, four escape bytes are the beginning of something, and only
// eight in a row are content: four of it.
#include "tools/explain/payload_map.h"

#include "quarn/quarn.h"

#include <algorithm>

namespace tool
{
namespace
{

constexpr std::size_t kEscape = quarn::kFrameEscapeSize;

Annotation& Note(PayloadMap& map, std::size_t at, std::size_t size, eWHAT what, const char* name)
{
    Annotation& item = map.transport.emplace_back();
    item.ullOffset = map.ullOffset + at;
    item.bytes = map.input.substr(at, size);
    item.eWhat = what;
    item.name = name;
    return item;
}

void Take(PayloadMap& map, std::size_t at, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        map.positions.push_back(static_cast<std::uint32_t>(at + i));
}

// Takes one byte, or a run of escapes with what it introduces; returns where to go on.
std::size_t TakeContent(PayloadMap& map, std::size_t at, std::size_t end)
{
    const std::string_view rest = map.input.substr(at, end - at);
    const std::size_t run = std::min(rest.find_first_not_of(quarn::kFrameEscape), rest.size());
    if (run >= 2 * kEscape) {
        Note(map, at, kEscape, eWHAT::TRANSPORT, "escape of the four bytes behind it");
        Take(map, at + kEscape, kEscape);
        return at + 2 * kEscape;
    }
    const std::size_t content = run < kEscape ? std::max<std::size_t>(run, 1) : run - kEscape;
    Take(map, at, content);
    if (run < kEscape)
        return at + content;
    Annotation& item = Note(map, at + content, std::min(2 * kEscape, rest.size() - content),
                            eWHAT::TRANSPORT, "escape, cut off");
    if (item.bytes.size() == 2 * kEscape) {
        item.name = "escape";
        item.damage = "it introduces nothing known; it is dropped with the four bytes behind it";
    }
    return at + content + item.bytes.size();
}

// What the road did not deliver is padding, or was held back since it might have been.
void Settle(PayloadMap& map, std::uint64_t payload, const char* name)
{
    std::vector<std::uint32_t>& positions = map.positions;
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(positions.size(), payload));
    for (std::size_t i = size; i < positions.size(); ++i) {
        if (i != size && positions[i] == positions[i - 1] + 1)
            map.transport.back().bytes += map.input[positions[i]];
        else
            Note(map, positions[i], 1, eWHAT::PADDING, name);
    }
    positions.resize(size);
    for (const std::uint32_t position : positions)
        map.payload += map.input[position];
}

} // namespace

PayloadMap MapFrame(std::uint64_t offset, std::string_view input, std::uint64_t size,
                    eCHECKSUM checksum)
{
    PayloadMap map;
    map.ullOffset = offset;
    map.input = input;
    const bool ends = checksum != eCHECKSUM::NONE;
    const std::size_t end = ends ? input.size() - quarn::kFrameEndSize : input.size();
    Note(map, 0, quarn::kFrameStartSize, eWHAT::TRANSPORT, "start of a frame");
    for (std::size_t at = quarn::kFrameStartSize; at < end;)
        at = TakeContent(map, at, end);
    Settle(map, size, ends ? "padding" : "not delivered: it may have been padding");
    std::sort(map.transport.begin(), map.transport.end(),
              [](const Annotation& a, const Annotation& b) { return a.ullOffset < b.ullOffset; });
    if (!ends)
        return map;
    const std::size_t count = end + quarn::kFrameEndSequence.size();
    Note(map, end, count - end, eWHAT::TRANSPORT, "end of a frame");
    Annotation& padding = Note(map, count, 1, eWHAT::TRANSPORT, "number of padding bytes");
    padding.value = std::to_string(static_cast<unsigned char>(padding.bytes[0]));
    Annotation& crc =
        Note(map, count + 1, quarn::kFrameCrcSize, eWHAT::CHECKSUM, "checksum of the frame");
    crc.value = checksum == eCHECKSUM::RIGHT ? "right" : "wrong";
    if (checksum == eCHECKSUM::WRONG)
        crc.damage = "the checksum is wrong: some byte of the frame is damaged";
    return map;
}

PayloadMap MapRaw(std::uint64_t offset, std::string_view input)
{
    PayloadMap map;
    map.ullOffset = offset;
    map.input = input;
    map.payload = input;
    Take(map, 0, input.size());
    return map;
}

} // namespace tool
