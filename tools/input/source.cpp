// See source.h. Files, pipes and standard input are all a descriptor that is waited for together
// with the interrupt.
#include "tools/input/source.h"

#include "tools/input/interrupt.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tool
{
namespace
{

class cDescriptorSource : public cSource
{
public:
    cDescriptorSource(std::string sourceName, int fd, bool own)
        : cSource(std::move(sourceName)), iFd(fd), bOwn(own)
    {
    }
    ~cDescriptorSource() override
    {
        if (bOwn)
            ::close(iFd);
    }
    cDescriptorSource(const cDescriptorSource&) = delete;
    cDescriptorSource& operator=(const cDescriptorSource&) = delete;

    bool Ready() override { return Interrupted() || Wait(0); }

    long Read(unsigned char* data, std::size_t size) override
    {
        while (!Interrupted()) {
            if (!Wait(-1))
                continue; // an interrupt, or a signal that concerns us not
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

private:
    bool Wait(int timeout) const noexcept
    {
        pollfd fds[2] = {{iFd, POLLIN, 0}, {InterruptFd(), POLLIN, 0}};
        return ::poll(fds, 2, timeout) > 0 && fds[0].revents != 0;
    }

    int iFd;
    bool bOwn;
};

} // namespace

std::unique_ptr<cSource> OpenSource(const std::string& name, std::string& error)
{
    if (name == "-")
        return std::make_unique<cDescriptorSource>("standard input", STDIN_FILENO, false);
    const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        error = std::strerror(errno);
        return nullptr;
    }
    return std::make_unique<cDescriptorSource>(name, fd, true);
}

} // namespace tool
