// Runs: stretches of bytes that both framing state machines move and checksum as one block, instead
// of byte by byte. Runs are short enough to stay in the first cache between the passes over them.
#ifndef QUARN_TRANSPORT_RUN_H
#define QUARN_TRANSPORT_RUN_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/framework.h"
#include "quarn/transport/frame.h"

#include <algorithm>
#include <cstring>

namespace quarn::detail::transport
{

constexpr long kMaxRun = 8192;

// How many of the next length bytes come before an escape byte.
inline long BytesBeforeEscape(const cBuffer& in, long length) noexcept
{
    const char* const begin = in.ReadPtr();
    if (length <= 0)
        return 0;
    const void* const found = std::memchr(begin, kEscape, static_cast<std::size_t>(length));
    return found == nullptr ? length : static_cast<const char*>(found) - begin;
}

// The CRC register after length bytes, 0 to kMaxRun.
inline unsigned short CrcOfRun(const char* bytes, long length, unsigned short crc) noexcept
{
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
