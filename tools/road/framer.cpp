// See framer.h.
#include "tools/road/framer.h"

namespace tool
{

void cFramer::Feed(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, std::size_t{64} * 1024);
        Process(piece, bOpen ? 0 : BUF_FLAG_FIRST);
        bOpen = true;
        bytes.remove_prefix(piece.size());
    }
}

void cFramer::End()
{
    if (bOpen)
        Process({}, BUF_FLAG_LAST);
    bOpen = false;
}

void cFramer::Process(std::string_view bytes, int flags)
{
    // Read only, since the machine does not write to its input.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    cBuffer in(const_cast<char*>(bytes.data()), static_cast<long>(bytes.size()),
               BUF_FLAG_SML | flags, 0);
    in.Commit(static_cast<long>(bytes.size()));
    int result = SMLTP_OUTPUT_FULL;
    while (result == SMLTP_OUTPUT_FULL) {
        const std::size_t room = 2 * bytes.size() + 32; // mostly enough for all at once
        cBuffer framed(out.Room(room), static_cast<long>(room), 0, 0);
        result = machine.Process(&in, &framed);
        out.Advance(static_cast<std::size_t>(framed.Left()));
    }
}

} // namespace tool
