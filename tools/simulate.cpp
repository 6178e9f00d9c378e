// quarn simulate: a meter that never tires, for whoever has none on the desk.
//
// What it has damaged stands at the end on stderr, in the counts that 'quarn check' prints of the
// same stream.
#include "tools/commands.h"
#include "tools/input/interrupt.h"
#include "tools/simulation/faults.h"
#include "tools/simulation/meter.h"
#include "tools/simulation/server.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace tool
{
namespace
{

using ull = unsigned long long;

// The frames of the meter, as the line delivers them.
class cStream
{
public:
    explicit cStream(const SimulateOptions& simulate)
        : options(simulate), meter(options.ullSeed, options.uiEntries),
          faults(~options.ullSeed, options.dFaults),
          dStep(options.interval.value_or(0) > 0 ? *options.interval : 1)
    {
    }

    // Appends the next frame; false when it was the last.
    bool Next(std::string& bytes)
    {
        frame.clear();
        meter.AppendFrame(dStep, frame);
        faults.Pass(frame);
        bytes += frame;
        ++ullFrames;
        return options.ullCount == 0 || ullFrames < options.ullCount;
    }

    void Tell(cReport& report)
    {
        faults.End();
        report.Say(EXIT_GOOD, "frames sent: %llu", ullFrames);
        const cFaults::Done& done = faults.Faults();
        report.Say(EXIT_GOOD,
                   "damaged: %llu by flipped bits, %llu lost their end, %llu their begin, "
                   "%llu have noise before them",
                   ull{done.ullFlipped}, ull{done.ullNoEnd}, ull{done.ullNoBegin},
                   ull{done.ullNoise});
        cOutput out(STDERR_FILENO);
        WriteCounts(out, faults.Counts());
        out.Drain();
    }

private:
    const SimulateOptions& options;
    cMeter meter;
    cFaults faults;
    double dStep; // of the meter's clock, in seconds
    ull ullFrames = 0;
    std::string frame;
};

// Writes the stream to fd; false when that fails.
bool Write(cStream& stream, const SimulateOptions& options, int fd)
{
    using Clock = std::chrono::steady_clock;
    cOutput out(fd);
    std::string bytes;
    const Clock::time_point start = Clock::now();
    const std::chrono::duration<double> step(options.interval.value_or(0));
    bool more = true;
    for (ull i = 1; more && !Interrupted() && out.Error() == 0; ++i) {
        bytes.clear();
        more = stream.Next(bytes);
        out.Append(bytes);
        out.DrainIfLarge();
        if (!more || step.count() <= 0)
            continue;
        out.Drain();
        const auto due = start + step * static_cast<double>(i) - Clock::now();
        Sleep(static_cast<long>(std::chrono::ceil<std::chrono::milliseconds>(due).count()));
    }
    out.Drain();
    errno = out.Error();
    return errno == 0;
}

// Opens the file to write, which is none that holds something already. Devices and pipes are
// written to as they are.
int OpenOutput(const SimulateOptions& options)
{
    const char* const name = options.output.c_str();
    constexpr int kWrite = O_WRONLY | O_CREAT | O_CLOEXEC;
    const int fd = ::open(name, kWrite | (options.bForce ? O_TRUNC : O_EXCL), 0666);
    struct stat status = {};
    if (fd >= 0 || errno != EEXIST || ::stat(name, &status) != 0 || S_ISREG(status.st_mode))
        return fd;
    return ::open(name, kWrite, 0666);
}

int ToFile(cStream& stream, const SimulateOptions& options, cReport& report)
{
    const bool standard = options.output == "-";
    if (standard && ::isatty(STDOUT_FILENO) != 0) {
        report.Say(EXIT_FAILED, "frames are no text for a terminal: give --output FILE or --listen "
                                "PORT, or pipe them into 'quarn decode'");
        return report.Status();
    }
    report.SetSubject(standard ? "standard output" : options.output);
    const int fd = standard ? STDOUT_FILENO : OpenOutput(options);
    int error = errno;
    if (fd < 0) {
        report.Say(EXIT_FAILED, "cannot be opened: %s%s", std::strerror(error),
                   error == EEXIST ? " (--force writes over it)" : "");
        return report.Status();
    }
    bool written = Write(stream, options, fd);
    error = errno;
    if (!standard && ::close(fd) != 0 && written) {
        written = false;
        error = errno;
    }
    if (!written && error == EPIPE) // whoever read it has seen enough
        return EXIT_FAILED;
    if (!written)
        report.Say(EXIT_FAILED, "cannot be written: %s", std::strerror(error));
    report.SetSubject("");
    stream.Tell(report);
    return report.Status();
}

} // namespace

int RunSimulate(const SimulateOptions& options)
{
    CatchInterrupts();
    std::signal(SIGPIPE, SIG_IGN);
    cReport report;
    cStream stream(options);
    if (!options.port)
        return ToFile(stream, options, report);
    const Producer produce = [&stream](std::string& bytes) { return stream.Next(bytes); };
    if (Serve(*options.port, options.interval.value_or(1), produce, report))
        stream.Tell(report);
    return report.Status();
}

} // namespace tool
