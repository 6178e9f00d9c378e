// Runs the quarn program as a user does, without a shell, and talks to it while it runs.
#ifndef TESTS_TOOLS_PROGRAM_H
#define TESTS_TOOLS_PROGRAM_H

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <string_view>
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
        int in[2];
        int outPipe[2];
        int errPipe[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(outPipe, O_CLOEXEC) != 0 ||
            ::pipe2(errPipe, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], 0);
        const struct {
            int iFd;
            int iPipe;
            const char* pcPath;
        } outputs[] = {{1, outPipe[1], stdoutPath}, {2, errPipe[1], stderrPath}};
        for (const auto& output : outputs) {
            if (output.pcPath != nullptr)
                posix_spawn_file_actions_addopen(&actions, output.iFd, output.pcPath,
                                                 O_WRONLY | O_NOCTTY, 0);
            else
                posix_spawn_file_actions_adddup2(&actions, output.iPipe, output.iFd);
        }
        args.insert(args.begin(), QUARN_PROGRAM);
        std::vector<char*> argv;
        for (std::string& arg : args)
            argv.push_back(arg.data());
        argv.push_back(nullptr);
        if (posix_spawn(&pid, QUARN_PROGRAM, &actions, nullptr, argv.data(), environ) != 0)
            throw std::runtime_error("cannot run " QUARN_PROGRAM);
        posix_spawn_file_actions_destroy(&actions);
        for (const int fd : {in[0], outPipe[1], errPipe[1]})
            ::close(fd);
        iIn = in[1];
        aiOut = {outPipe[0], errPipe[0]};
    }
    ~Program()
    {
        if (iStatus < 0)
            ::kill(pid, SIGKILL);
        Finish();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Writes bytes to its standard input, piece by piece, reading meanwhile what it says.
    void Write(std::string_view bytes, std::size_t piece = std::string_view::npos)
    {
        while (!bytes.empty()) {
            const std::string_view part = bytes.substr(0, piece);
            pollfd room = {iIn, POLLOUT, 0};
            while (::poll(&room, 1, 0) == 0)
                Listen(10); // it waits for its output to be read
            const ssize_t count =
                ::write(iIn, part.data(), std::min<std::size_t>(part.size(), 512));
            if (count < 0)
                return; // it does not read any more
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }
    // Waits at most ten seconds for text on its standard output, or on its standard error.
    bool Says(std::string_view text) { return Waits(out, text); }
    bool Tells(std::string_view text) { return Waits(err, text); }
    void Interrupt() const { ::kill(pid, SIGINT); }
    void Kill() const { ::kill(pid, SIGKILL); }

    // Ends its input, waits for its end and returns its exit status (128 and more: a signal).
    int Finish()
    {
        if (iIn >= 0)
            ::close(iIn);
        iIn = -1;
        return Ended();
    }
    // The same while its input stays open.
    int Ended()
    {
        while (Listen(-1)) {
        }
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
    bool Waits(const std::string& said, std::string_view text)
    {
        for (int i = 0; i < 100 && said.find(text) == std::string::npos; ++i)
            Listen(100);
        return said.find(text) != std::string::npos;
    }
    // Takes what has been said; false when both of its outputs are closed.
    bool Listen(int timeout)
    {
        pollfd fds[2] = {{aiOut[0], POLLIN, 0}, {aiOut[1], POLLIN, 0}};
        if (aiOut[0] < 0 && aiOut[1] < 0)
            return false;
        ::poll(fds, 2, timeout);
        for (std::size_t i = 0; i < 2; ++i) {
            if (fds[i].revents == 0)
                continue;
            char text[65536];
            const ssize_t count = ::read(aiOut[i], text, sizeof text);
            if (count > 0) {
                (i == 0 ? out : err).append(text, static_cast<std::size_t>(count));
            } else {
                ::close(aiOut[i]);
                aiOut[i] = -1;
            }
        }
        return true;
    }

    pid_t pid = -1;
    int iIn = -1;
    std::array<int, 2> aiOut{};
    int iStatus = -1;
};

} // namespace test

#endif
