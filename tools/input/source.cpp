// See source.h. Tells by its name what an input is.
#include "tools/input/source.h"

#include "tools/input/descriptor.h"
#include "tools/input/lasting.h"
#include "tools/input/line.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool
{
namespace
{

// A terminal device: /dev/null and the like are read as files.
bool IsSerial(const std::string& name)
{
    struct stat status = {};
    if (::stat(name.c_str(), &status) != 0 || !S_ISCHR(status.st_mode))
        return false;
    const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    const bool serial = fd >= 0 ? ::isatty(fd) != 0 : errno != ENXIO;
    if (fd >= 0)
        ::close(fd);
    return serial;
}

// A device that is unplugged has no name at all until it comes back.
bool MayBecomeSerial(const std::string& name)
{
    return name.compare(0, 5, "/dev/") == 0 && ::access(name.c_str(), F_OK) != 0;
}

std::unique_ptr<cSource> OpenFile(const std::string& name, std::string& error)
{
    const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        error = std::strerror(errno);
        return nullptr;
    }
    return std::make_unique<cDescriptorSource>(name, fd, true);
}

bool IsRegular(const std::string& name)
{
    struct stat status = {};
    return ::stat(name.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

std::unique_ptr<cSource> OpenSource(const std::string& name, const InputOptions& options,
                                    cReport& report, std::string& error)
{
    if (name == "-")
        return std::make_unique<cDescriptorSource>("standard input", STDIN_FILENO, false);
    const bool tcp = IsTcp(name);
    std::string host;
    std::string port;
    if (tcp && !SplitTcp(name, host, port)) {
        error = "a connection is named tcp:HOST:PORT";
        return nullptr;
    }
    if (tcp || IsSerial(name) || (options.bReconnect && MayBecomeSerial(name))) {
        const Opener open = [=, settings = options.serial](std::string& why) {
            return tcp ? OpenTcp(host, port, why) : OpenSerial(name, settings, why);
        };
        if (options.bReconnect)
            return MakeReconnecting(name, open, report);
        std::unique_ptr<cSource> source = open(error);
        if (source == nullptr && tcp)
            error += " (with --reconnect, it is tried on)";
        return source;
    }
    if (options.bFollow && IsRegular(name))
        return MakeFollowing(name, report, error);
    return OpenFile(name, error);
}

} // namespace tool
