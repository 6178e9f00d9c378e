// quarn: a host of the library for people who have a meter, a capture or a byte stream in hand.
#include "tools/command_line.h"
#include "tools/road/report.h"

#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace
{

// The next file opened would take the place of a standard descriptor that is closed: reading it, or
// writing there, fails instead.
void HoldStandardDescriptors()
{
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(fd, F_GETFD) < 0)
            ::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace

int main(int argc, char** argv)
{
    HoldStandardDescriptors();
    try {
        return tool::RunCommandLine(argc, argv);
    } catch (const std::exception& error) {
        tool::cReport().Say(tool::EXIT_FAILED, "%s", error.what());
        return tool::EXIT_FAILED;
    }
}
