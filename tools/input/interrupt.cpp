// See interrupt.h. The handler writes to a pipe, so that no signal is lost between a check and a
// wait.
#include "tools/input/interrupt.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tool
{
namespace
{

volatile std::sig_atomic_t bInterrupted = 0;
int aiPipe[2] = {-1, -1};

extern "C" void OnSignal(int)
{
    const int saved = errno;
    bInterrupted = 1;
    const char byte = 0;
    if (::write(aiPipe[1], &byte, 1) < 0) {
        // The pipe is full: whoever waits is awake already.
    }
    errno = saved;
}

} // namespace

void CatchInterrupts()
{
    if (::pipe2(aiPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // signals then end the program as they do by default
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

bool Interrupted() noexcept { return bInterrupted != 0; }

int InterruptFd() noexcept { return aiPipe[0]; }

bool Sleep(long milliseconds) noexcept
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (!Interrupted()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0)
            return true;
        pollfd interrupt = {InterruptFd(), POLLIN, 0};
        ::poll(&interrupt, 1, static_cast<int>(std::min<long long>(left, 1000000)));
    }
    return false;
}

} // namespace tool
