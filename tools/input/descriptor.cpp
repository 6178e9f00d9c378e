// See descriptor.h.
#include "tools/input/descriptor.h"

#include "tools/input/interrupt.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool
{
namespace
{

enum class eWAIT { READY, SILENT, DISTURBED };

// Disturbed: by an interrupt, or by another signal.
eWAIT Wait(int fd, long timeout) noexcept
{
    pollfd fds[2] = {{fd, POLLIN, 0}, {InterruptFd(), POLLIN, 0}};
    const int count = ::poll(fds, 2, static_cast<int>(timeout));
    if (count == 0)
        return eWAIT::SILENT;
    return count > 0 && fds[0].revents != 0 ? eWAIT::READY : eWAIT::DISTURBED;
}

} // namespace

cDescriptorSource::cDescriptorSource(std::string sourceName, int fd, bool own)
    : cSource(std::move(sourceName)), iFd(fd), bOwn(own)
{
}

cDescriptorSource::~cDescriptorSource()
{
    if (bOwn)
        ::close(iFd);
}

bool cDescriptorSource::Ready() { return Interrupted() || Wait(iFd, 0) == eWAIT::READY; }

long cDescriptorSource::Read(unsigned char* data, std::size_t size, long timeout)
{
    while (!Interrupted()) {
        const eWAIT wait = Wait(iFd, timeout);
        if (wait == eWAIT::SILENT)
            return TIMEOUT;
        if (wait == eWAIT::DISTURBED)
            return Interrupted() ? END : DISTURBED;
        const ssize_t count = ::read(iFd, data, size);
        if (count >= 0)
            return count;
        if (errno != EINTR && errno != EAGAIN) {
            error = std::strerror(errno);
            return FAILED;
        }
    }
    return END;
}

std::uint64_t cDescriptorSource::Size() const noexcept
{
    struct stat status = {};
    return ::fstat(iFd, &status) == 0 && S_ISREG(status.st_mode)
               ? static_cast<std::uint64_t>(status.st_size)
               : 0;
}

} // namespace tool
