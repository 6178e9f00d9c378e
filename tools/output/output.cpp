// See output.h.
#include "tools/output/output.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace tool
{

void WriteHex(std::string_view bytes, char* out) noexcept
{
    struct Pair {
        char ac[2];
    };
    static constexpr auto kPairs = [] {
        std::array<Pair, 256> pairs{};
        for (unsigned i = 0; i < 256; ++i)
            pairs[i] = {{"0123456789abcdef"[i >> 4], "0123456789abcdef"[i & 0x0F]}};
        return pairs;
    }();
    for (const char c : bytes) {
        std::memcpy(out, kPairs[static_cast<unsigned char>(c)].ac, 2);
        out += 2;
    }
}

void cOutput::Drain()
{
    const std::size_t size = Printable();
    std::size_t written = 0;
    while (written < size && iError == 0) {
        const ssize_t count = ::write(iFd, buffer.data() + written, size - written);
        if (count >= 0)
            written += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            iError = errno;
    }
    std::memmove(buffer.data(), buffer.data() + size, uiSize - size);
    uiSize -= size;
    uiHeldFrom = 0;
}

} // namespace tool
