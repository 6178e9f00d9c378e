// A pseudo-terminal, which stands in for a serial line and for a person's screen.
#ifndef TESTS_TOOLS_PSEUDO_TERMINAL_H
#define TESTS_TOOLS_PSEUDO_TERMINAL_H

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace test
{

inline std::string TempPath(const char* name)
{
    const std::string path =
        testing::TempDir() + "quarn_live_" + std::to_string(::getpid()) + '_' + name;
    std::filesystem::remove(path);
    return path;
}

// Both ends of a pseudo-terminal; the near one is called path.
class Terminal
{
public:
    explicit Terminal(const std::string& path) : iFd(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        EXPECT_TRUE(::grantpt(iFd) == 0 && ::unlockpt(iFd) == 0);
        std::filesystem::remove(path);
        std::filesystem::create_symlink(::ptsname(iFd), path);
    }
    ~Terminal() { ::close(iFd); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void Write(const std::string& bytes) const
    {
        EXPECT_EQ(::write(iFd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    void Resize(unsigned short lines, unsigned short columns) const
    {
        const winsize size = {lines, columns, 0, 0};
        EXPECT_EQ(::ioctl(iFd, TIOCSWINSZ, &size), 0);
    }
    // Waits until the other side has set the line so, which it does one setting after the other.
    bool IsSet(speed_t speed, tcflag_t flags = CS8) const
    {
        termios is = {};
        for (int i = 0; i < 500; ++i) {
            ::tcgetattr(iFd, &is);
            if (::cfgetispeed(&is) == speed && (is.c_cflag & (CSIZE | PARENB | CSTOPB)) == flags)
                return true;
            ::usleep(20000);
        }
        return false;
    }

    // Waits at most ten seconds for text on the near end.
    bool Shows(const std::string& text)
    {
        for (int i = 0; i < 100 && shown.find(text) == std::string::npos; ++i)
            Look(100);
        return shown.find(text) != std::string::npos;
    }
    // Takes what has come to the near end within so many milliseconds.
    bool Look(int timeout)
    {
        pollfd any = {iFd, POLLIN, 0};
        char bytes[4096];
        const ssize_t count = ::poll(&any, 1, timeout) > 0 ? ::read(iFd, bytes, sizeof bytes) : 0;
        shown.append(bytes, count > 0 ? static_cast<std::size_t>(count) : 0);
        return count > 0;
    }

    std::string shown;

private:
    int iFd;
};

} // namespace test

#endif
