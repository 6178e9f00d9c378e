// Runs: stretches of bytes that both framing state machines move and checksum as one block, instead
// of byte by byte. Runs are short enough to stay in the first cache between the passes over them.
#ifndef QUARN_TRANSPORT_RUN_H
#define QUARN_TRANSPORT_RUN_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/frame_format.h"
#include "quarn/foundation/framework.h"
#include "quarn/transport/mode.h"

#include <algorithm>
#include <cstring>

namespace quarn::detail::transport
{

constexpr int kGoOn = 0; // of a state's function: the machine is not done with this call
constexpr long kMaxRun = 8192;

// The first escape byte from begin on, or end.
inline const char* FindEscape(const char* begin, const char* end) noexcept
{
    if (begin == end)
        return end;
    const void* const found =
        std::memchr(begin, kFrameEscape, static_cast<std::size_t>(end - begin));
    return found == nullptr ? end : static_cast<const char*>(found);
}

// How many of the next bytes are plain content, for which there is room: up to a run of four
// escapes, or to a shorter one whose end is not in sight.
inline long PlainRun(const cBuffer& in, long room) noexcept
{
    const char* const begin = in.ReadPtr();
    const char* const end = begin + std::min({in.Left(), room, kMaxRun});
    for (const char* at = begin;;) {
        const char* const escape = FindEscape(at, end);
        const char* const limit = escape + std::min<long>(end - escape, kFrameEscapeSize);
        at = std::find_if(escape, limit, [](char c) { return c != kFrameEscape; });
        if (at == limit)
            return escape - begin;
    }
}

inline bool IsEscapeNext(const cBuffer& in) noexcept { return *in.ReadPtr() == kFrameEscape; }

// The CRC register after length bytes, 0 to some more than kMaxRun.
inline unsigned short CrcOfRun(const char* bytes, long length, unsigned short crc) noexcept
{
    if (length == 0)
        return crc;
    return static_cast<unsigned short>(~vorn::createCRC16(bytes, static_cast<int>(length), crc));
}

// Copies what is left of in, as far as out has room.
inline void PassThrough(cBuffer& in, cBuffer& out) noexcept
{
    const long length = std::min(in.Left(), out.Free());
    out.Put(in.ReadPtr(), length);
    in.Skip(length);
}

} // namespace quarn::detail::transport

#endif
