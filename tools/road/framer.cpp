// See framer.h.
#include "tools/road/framer.h"

namespace tool
{
namespace
{

// A buffer over bytes that the machine only reads.
struct Input : cBuffer {
    Input(std::string_view bytes, int flags)
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it does not write to its input
        : cBuffer(const_cast<char*>(bytes.data()), static_cast<long>(bytes.size()),
                  BUF_FLAG_SML | flags, 0)
    {
        Commit(static_cast<long>(bytes.size()));
    }
};

} // namespace

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
    Input in(bytes, flags);
    int result = SMLTP_OUTPUT_FULL;
    while (result == SMLTP_OUTPUT_FULL) {
        const std::size_t room = quarn::MaxFrameSize(bytes.size()); // mostly enough for all at once
        cBuffer framed(out.Room(room), static_cast<long>(room), 0, 0);
        result = machine.Process(&in, &framed);
        out.Advance(static_cast<std::size_t>(framed.Left()));
    }
}

void AppendFramed(std::string_view payload, std::string& bytes)
{
    const std::size_t size = bytes.size();
    bytes.resize(size + quarn::MaxFrameSize(payload.size()));
    Input in(payload, BUF_FLAG_FIRST | BUF_FLAG_LAST);
    cBuffer framed(&bytes[size], static_cast<long>(bytes.size() - size), 0, 0);
    SmlTpTx(SMLT_MODE_TP).Process(&in, &framed);
    bytes.resize(size + static_cast<std::size_t>(framed.Left()));
}

} // namespace tool
