// See lasting.h.
#include "tools/input/lasting.h"

#include "tools/input/interrupt.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool
{
namespace
{

constexpr long kFirstPause = 200; // milliseconds
constexpr long kLastPause = 10000;
constexpr long kLook = 100; // how often a file is looked at

class cReconnecting : public cSource
{
public:
    cReconnecting(const std::string& lineName, Opener opener, cReport& reporter)
        : cSource(lineName), open(std::move(opener)), report(reporter)
    {
    }

    bool IsLive() const noexcept override { return true; }
    bool Ready() override { return pSource != nullptr && pSource->Ready(); }

    long Read(unsigned char* data, std::size_t size, long timeout) override
    {
        while (!Interrupted()) {
            if (pSource == nullptr && !Open())
                continue;
            const long count = pSource->Read(data, size, timeout);
            if (count > 0)
                lPause = kFirstPause;
            if (count > 0 || count == TIMEOUT || count == DISTURBED)
                return count;
            if (Interrupted())
                break;
            Lose(count);
            return RESTARTED;
        }
        return END;
    }

private:
    bool Open()
    {
        if (bPause && !Sleep(lPause))
            return false;
        if (bPause)
            lPause = std::min(2 * lPause, kLastPause);
        bPause = true;
        std::string why;
        pSource = open(why);
        if (Interrupted())
            return false;
        if (pSource == nullptr && !bTold)
            report.Say(EXIT_GOOD, "cannot be opened: %s; trying on", why.c_str());
        if (pSource != nullptr && bTold)
            report.Say(EXIT_GOOD, "opened");
        bTold = pSource == nullptr;
        return pSource != nullptr;
    }
    void Lose(long count)
    {
        report.Say(EXIT_GOOD, "lost: %s; trying again",
                   count == END ? "the other side has ended it" : pSource->Error().c_str());
        pSource.reset();
        bTold = true;
    }

    Opener open;
    cReport& report;
    std::unique_ptr<cSource> pSource;
    long lPause = kFirstPause;
    bool bPause = false; // before the next attempt
    bool bTold = false;  // that it is not open
};

class cFollowing : public cSource
{
public:
    cFollowing(const std::string& path, int fd, cReport& reporter)
        : cSource(path), iFd(fd), report(reporter)
    {
    }
    ~cFollowing() override { ::close(iFd); }
    cFollowing(const cFollowing&) = delete;
    cFollowing& operator=(const cFollowing&) = delete;

    bool Ready() override
    {
        struct stat here = {};
        return Interrupted() || (::fstat(iFd, &here) == 0 && here.st_size > offset);
    }

    long Read(unsigned char* data, std::size_t size, long timeout) override
    {
        for (long waited = 0; !Interrupted(); waited += kLook) {
            const ssize_t count = ::read(iFd, data, size);
            if (count > 0) {
                offset += count;
                return count;
            }
            if (count < 0 && errno != EINTR) {
                error = std::strerror(errno);
                return FAILED;
            }
            if (BeginsAnew())
                return RESTARTED;
            if (timeout >= 0 && waited >= timeout)
                return TIMEOUT;
            Sleep(kLook);
        }
        return END;
    }

private:
    bool BeginsAnew()
    {
        struct stat here = {};
        struct stat named = {};
        if (::fstat(iFd, &here) != 0 || ::stat(name.c_str(), &named) != 0)
            return false; // it may come back
        const bool other = here.st_ino != named.st_ino || here.st_dev != named.st_dev;
        if (!other && here.st_size >= offset)
            return false;
        const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            return false;
        report.Say(EXIT_GOOD, "%s; read from its begin",
                   other ? "has been replaced" : "has been shortened");
        ::close(iFd);
        iFd = fd;
        offset = 0;
        return true;
    }

    int iFd;
    cReport& report;
    off_t offset = 0;
};

} // namespace

std::unique_ptr<cSource> MakeReconnecting(const std::string& name, Opener open, cReport& report)
{
    return std::make_unique<cReconnecting>(name, std::move(open), report);
}

std::unique_ptr<cSource> MakeFollowing(const std::string& name, cReport& report, std::string& error)
{
    const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = std::strerror(errno);
        return nullptr;
    }
    return std::make_unique<cFollowing>(name, fd, report);
}

} // namespace tool
