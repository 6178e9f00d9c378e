// See whole_file.h.
#include "tools/output/whole_file.h"

#include "tools/output/output.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tool
{
namespace
{

namespace fs = std::filesystem;

constexpr int kMaxLinks = 40; // as the kernel follows

// What is no ordinary file cannot be replaced.
bool IsSpecial(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

// The file that a symbolic link leads to, whether or not it is there.
fs::path Target(fs::path path)
{
    std::error_code none;
    for (int i = 0; i < kMaxLinks && fs::is_symlink(path, none); ++i)
        path = path.parent_path() / fs::read_symlink(path, none);
    return path;
}

std::string FolderOf(const fs::path& path)
{
    return path.has_parent_path() ? path.parent_path().string() : ".";
}

class cSignalsBlocked
{
public:
    cSignalsBlocked() noexcept
    {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &former);
    }
    ~cSignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &former, nullptr); }
    cSignalsBlocked(const cSignalsBlocked&) = delete;
    cSignalsBlocked& operator=(const cSignalsBlocked&) = delete;

private:
    sigset_t former = {};
};

// Writes text to fd and closes it.
int WriteAll(int fd, std::string_view text)
{
    cOutput out(fd);
    out.Append(text);
    out.Drain();
    const bool closed = ::close(fd) == 0;
    return out.Error() != 0 ? out.Error() : closed ? 0 : errno;
}

int Replace(const fs::path& path, std::string_view text)
{
    const cSignalsBlocked blocked;
    std::string temporary = FolderOf(path) + "/.quarn-XXXXXX";
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        return errno;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    int error = ::fchmod(fd, 0666 & ~mask) == 0 ? 0 : errno;
    const int failed = WriteAll(fd, text);
    error = error != 0 ? error : failed;
    if (error == 0 && ::rename(temporary.c_str(), path.c_str()) == 0)
        return 0;
    error = error != 0 ? error : errno;
    ::unlink(temporary.c_str());
    return error;
}

} // namespace

int WhyNotWritable(const std::string& path)
{
    const std::string asked = IsSpecial(path) ? path : FolderOf(Target(path));
    return ::access(asked.c_str(), W_OK) == 0 ? 0 : errno;
}

int WriteWhole(const std::string& path, std::string_view text)
{
    if (!IsSpecial(path))
        return Replace(Target(path), text);
    const int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    return fd < 0 ? errno : WriteAll(fd, text);
}

} // namespace tool
