// Runs the quarn program as a user does, without a shell, and talks to it while it runs.
#ifndef TESTS_TOOLS_PROGRAM_H
#define TESTS_TOOLS_PROGRAM_H

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace test
{

class Program
{
public:
    // stdoutPath, stderrPath: where its outputs go instead of to this object.
    explicit Program(std::vector<std::string> args, const char* stdoutPath = nullptr,
                     const char* stderrPath = nullptr)
    {
        std::signal(SIGPIPE, SIG_IGN);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        const char* const paths[] = {nullptr, stdoutPath, stderrPath};
        int theirs[3];
        for (int i = 0; i < 3; ++i) {
            int ends[2];
            if (::pipe2(ends, O_CLOEXEC) != 0)
                throw std::runtime_error("pipe");
            theirs[i] = ends[i == 0 ? 0 : 1];
            aiFds[i] = ends[i == 0 ? 1 : 0];
            if (paths[i] != nullptr)
                posix_spawn_file_actions_addopen(&actions, i, paths[i], O_WRONLY | O_NOCTTY, 0);
            else
                posix_spawn_file_actions_adddup2(&actions, theirs[i], i);
        }
        ::fcntl(aiFds[0], F_SETFL, O_NONBLOCK); // for Talk
        args.insert(args.begin(), QUARN_PROGRAM);
        std::vector<char*> argv;
        for (std::string& arg : args)
            argv.push_back(arg.data());
        argv.push_back(nullptr);
        if (posix_spawn(&pid, QUARN_PROGRAM, &actions, nullptr, argv.data(), environ) != 0)
            throw std::runtime_error("cannot run " QUARN_PROGRAM);
        posix_spawn_file_actions_destroy(&actions);
        for (const int fd : theirs)
            ::close(fd);
    }
    ~Program()
    {
        if (iStatus < 0)
            ::kill(pid, SIGKILL);
        Finish();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Writes bytes to its standard input, piece by piece, reading meanwhile what it says. What it
    // does not read any more is dropped.
    void Write(std::string_view bytes, std::size_t piece = std::string_view::npos)
    {
        while (!bytes.empty()) {
            std::string_view part = bytes.substr(0, piece);
            bytes.remove_prefix(part.size());
            while (!part.empty())
                Talk(-1, &part);
        }
    }
    // Waits at most ten seconds for text on its standard output, or on its standard error.
    bool Says(std::string_view text) { return Waits(out, text); }
    bool Tells(std::string_view text) { return Waits(err, text); }
    // Once it is up: waits at most ten seconds until it catches the signal and has read its input
    // (an emulator catches signals before the program does).
    void Interrupt() const
    {
        for (int i = 0; i < 500 && (!Catches(SIGINT) || HasUnread()); ++i)
            ::usleep(20000);
        ::kill(pid, SIGINT);
    }
    void Send(int signal) const { ::kill(pid, signal); }
    // How long the processor has worked for it, in seconds.
    double Seconds() const
    {
        std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
        std::string word;
        double ticks = 0;
        for (int i = 1; i <= 15 && stat >> word; ++i)
            ticks += i >= 14 ? std::stod(word) : 0; // utime, stime
        return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
    }

    // Ends its input, waits for its end and returns its exit status (128 and more: a signal).
    int Finish()
    {
        Close(0);
        return Ended();
    }
    // The same while its input stays open.
    int Ended()
    {
        while (aiFds[1] >= 0 || aiFds[2] >= 0)
            Talk(-1);
        if (iStatus < 0) {
            int status = 0;
            ::waitpid(pid, &status, 0);
            iStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        return iStatus;
    }

    std::string out;
    std::string err;

private:
    bool Catches(int signal) const
    {
        std::ifstream status("/proc/" + std::to_string(pid) + "/status");
        for (std::string line; std::getline(status, line);)
            if (line.compare(0, 7, "SigCgt:") == 0)
                return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1) & 1U) != 0;
        return false;
    }
    bool HasUnread() const
    {
        int bytes = 0;
        return ::ioctl(aiFds[0], FIONREAD, &bytes) == 0 && bytes != 0;
    }
    bool Waits(const std::string& said, std::string_view text)
    {
        for (int i = 0; i < 100 && said.find(text) == std::string::npos; ++i)
            Talk(100);
        return said.find(text) != std::string::npos;
    }
    // Waits until it has said something or, if there is something to say to it, takes a part of
    // that; never for the one alone, since it may wait for the other.
    void Talk(int timeout, std::string_view* say = nullptr)
    {
        pollfd fds[] = {{say != nullptr ? aiFds[0] : -1, POLLOUT, 0},
                        {aiFds[1], POLLIN, 0},
                        {aiFds[2], POLLIN, 0}};
        ::poll(fds, 3, timeout);
        for (int i = 1; i < 3; ++i) {
            char text[65536];
            const ssize_t count = fds[i].revents != 0 ? ::read(aiFds[i], text, sizeof text) : -1;
            if (count > 0)
                (i == 1 ? out : err).append(text, static_cast<std::size_t>(count));
            else if (fds[i].revents != 0)
                Close(i);
        }
        if (fds[0].revents != 0) {
            const ssize_t count = ::write(aiFds[0], say->data(), say->size());
            if (count >= 0 || errno != EAGAIN)
                say->remove_prefix(count >= 0 ? static_cast<std::size_t>(count) : say->size());
        }
    }
    void Close(int i)
    {
        if (aiFds[i] >= 0)
            ::close(aiFds[i]);
        aiFds[i] = -1;
    }

    pid_t pid = -1;
    int aiFds[3] = {-1, -1, -1}; // our ends of its input, output and errors
    int iStatus = -1;
};

// A run from its begin to its end.
struct Ran {
    int iStatus;
    std::string out;
    std::string err;
};

inline Ran Quarn(std::vector<std::string> args, std::string_view input = "")
{
    Program quarn(std::move(args));
    quarn.Write(input);
    const int status = quarn.Finish();
    return {status, quarn.out, quarn.err};
}

} // namespace test

#endif
