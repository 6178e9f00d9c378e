// Live inputs: the simulated meter and its reader as two processes, serial lines (pseudo-terminals
// stand in), growing files, silence, and Ctrl-C in every state.
#include "tests/support/captures.h"
#include "tests/tools/program.h"
#include "tests/tools/pseudo_terminal.h"
#include "tools/simulation/meter.h"
#include "tools/simulation/server.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/socket.h>

namespace
{

using test::Program;
using test::TempPath;
using test::Terminal;

constexpr std::size_t kFrame = 252; // of the example

std::string Frame(std::size_t index)
{
    return test::ReadFile(QUARN_EXAMPLES "/household.bin").substr(index * kFrame, kFrame);
}

std::size_t Occurrences(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at)
        ++count;
    return count;
}

// The address that a simulator says it listens on.
std::string AddressOf(Program& simulator)
{
    if (!simulator.Tells("\n"))
        return "";
    const std::size_t at = simulator.err.find("tcp:");
    return simulator.err.substr(at, simulator.err.find('\n') - at);
}

TEST(Live, ReaderOutlivesTheMeter)
{
    auto meter = std::make_unique<Program>(
        std::vector<std::string>{"simulate", "--listen", "0", "--interval", "0.02"});
    const std::string address = AddressOf(*meter);
    Program reader({"decode", address, "--reconnect"});
    EXPECT_TRUE(reader.Says(R"("frame":3,)")) << reader.err;
    const std::string server = reader.out.substr(reader.out.find("\"server\""), 40);
    meter->Send(SIGKILL);
    meter = nullptr;
    EXPECT_TRUE(reader.Tells(address + ": lost: ")) << reader.err;
    const std::string port = address.substr(address.rfind(':') + 1);
    Program other({"simulate", "--listen", port, "--seed", "2", "--interval", "0.02"});
    EXPECT_TRUE(reader.Tells(address + ": opened")) << reader.err;
    const std::size_t before = reader.out.size();
    EXPECT_TRUE(reader.Says("0a0151524e4c5925339c")) << reader.err;
    EXPECT_LT(reader.out.rfind(server), before); // the second meter has another id
    reader.Interrupt();
    EXPECT_EQ(reader.Ended(), 0) << reader.err;
    other.Interrupt();
    EXPECT_EQ(other.Ended(), 0);
    EXPECT_NE(other.err.find("frames sent: "), std::string::npos) << other.err;
}

TEST(Live, ClientsGetTheWholeStream)
{
    Program meter({"simulate", "--listen", "0", "--interval", "0", "--count", "2000"});
    Program reader({"check", "--json", AddressOf(meter)});
    EXPECT_EQ(reader.Finish(), 0) << reader.err;
    EXPECT_NE(reader.out.find(R"("framesGood":2000,)"), std::string::npos) << reader.out;
    EXPECT_EQ(meter.Finish(), 0) << meter.err;
}

// A client of which one sees what a program hides: how much it reads, and how it is left.
class Client
{
public:
    explicit Client(const std::string& address)
    {
        sockaddr_in peer = {};
        peer.sin_family = AF_INET;
        peer.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        peer.sin_port =
            htons(static_cast<std::uint16_t>(std::stoul(address.substr(address.rfind(':') + 1))));
        EXPECT_EQ(::connect(iFd, reinterpret_cast<sockaddr*>(&peer), sizeof peer), 0);
    }
    ~Client() { ::close(iFd); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    // Waits for bytes, at most so many milliseconds: how many, 0 at the end, else -1 and errno.
    ssize_t Read(int timeout) const
    {
        pollfd fds = {iFd, POLLIN, 0};
        ::poll(&fds, 1, timeout);
        char bytes[65536];
        return ::recv(iFd, bytes, sizeof bytes, MSG_DONTWAIT);
    }

private:
    int iFd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

TEST(Live, ClientWhoReadsNothingHaltsNobody)
{
    Program meter({"simulate", "--listen", "0", "--interval", "0"});
    const Client silent(AddressOf(meter));
    Program reader({"unframe", AddressOf(meter)}, "/dev/null");
    ASSERT_TRUE(meter.Tells("a client is 4 MiB behind and is dropped")) << meter.err;
    ssize_t count = 1;
    while (count > 0)
        count = silent.Read(2000);
    EXPECT_EQ(count, -1);
    EXPECT_EQ(errno, ECONNRESET); // while the meter goes on
    meter.Interrupt();
    EXPECT_EQ(meter.Ended(), 0) << meter.err;
}

TEST(Live, ClientsAreLimited)
{
    Program meter({"simulate", "--listen", "0", "--interval", "0.02"});
    const std::string address = AddressOf(meter);
    std::vector<std::unique_ptr<Client>> clients;
    for (std::size_t i = 0; i < tool::kMaxClients; ++i)
        clients.push_back(std::make_unique<Client>(address));
    EXPECT_GT(clients.back()->Read(10000), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Client(address).Read(10000), 0);
    clients.pop_back();
    ssize_t count = 0;
    for (int i = 0; i < 100 && count <= 0; ++i) { // that one has left is seen by writing to it
        ::usleep(50000);
        count = Client(address).Read(1000);
    }
    EXPECT_GT(count, 0);
    meter.Interrupt();
    EXPECT_EQ(meter.Ended(), 0);
    EXPECT_EQ(Occurrences(meter.err, "there are 64 clients"), 1U) << meter.err;
}

// Where there are no descriptors, it waits for some without work.
TEST(Live, ClientsWaitForDescriptors)
{
    rlimit limit = {};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit low = {24, limit.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &low);
    Program meter({"simulate", "--listen", "0", "--interval", "0.1"});
    ::setrlimit(RLIMIT_NOFILE, &limit);
    const std::string address = AddressOf(meter);
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < 30; ++i)
        clients.push_back(std::make_unique<Client>(address));
    ASSERT_TRUE(meter.Tells("no client can be accepted: Too many open files")) << meter.err;
    const double before = meter.Seconds();
    ::usleep(1000000);
    EXPECT_LT(meter.Seconds() - before, 0.5);
    EXPECT_EQ(clients.back()->Read(0), -1); // in the queue
    clients.erase(clients.begin(), clients.end() - 1);
    EXPECT_GT(clients.back()->Read(10000), 0);
    meter.Interrupt();
    EXPECT_EQ(meter.Ended(), 0);
    EXPECT_EQ(Occurrences(meter.err, "Too many open files"), 1U) << meter.err;
}

TEST(Live, SerialLine)
{
    const std::string path = TempPath("tty");
    auto line = std::make_unique<Terminal>(path);
    Program reader({"decode", path, "--format=records", "--reconnect", "--serial", "300,8n2"});
    // A pseudo-terminal takes nothing but eight bits without parity.
    ASSERT_TRUE(line->IsSet(B300, CS8 | CSTOPB));
    line->Write(Frame(0));
    EXPECT_TRUE(reader.Says("48211764")) << reader.err;
    line->Write(Frame(1).substr(0, 100));
    EXPECT_TRUE(reader.Says(R"("message","frame":2)")) << reader.err;
    line = nullptr;
    EXPECT_TRUE(reader.Tells("lost: the line has hung up")) << reader.err;
    EXPECT_TRUE(reader.Tells("frame 2: cut off")) << reader.err;
    line = std::make_unique<Terminal>(path);
    ASSERT_TRUE(reader.Tells("opened")) << reader.err;
    line->Write(Frame(1).substr(100) + Frame(3)); // it is joined in the middle of a frame
    EXPECT_TRUE(reader.Says("48211776")) << reader.err;
    EXPECT_NE(reader.err.find("152 bytes before the first frame"), std::string::npos);
    reader.Interrupt();
    EXPECT_EQ(reader.Ended(), 0) << reader.err;

    Program once({"check", path});
    ASSERT_TRUE(line->IsSet(B9600));
    line = nullptr;
    EXPECT_EQ(once.Ended(), 2);
    EXPECT_NE(once.err.find("cannot be read: the line has hung up"), std::string::npos) << once.err;
}

// Silence within a message ends it on a line by default, in a pipe on demand.
TEST(Live, Silence)
{
    const std::string path = TempPath("silent");
    Terminal line(path);
    Program reader({"decode", path});
    ASSERT_TRUE(line.IsSet(B9600));
    Program piped({"decode", "--timeout", "50"});
    Program patient({"decode"});
    line.Write(Frame(0).substr(0, 100));
    for (Program* program : {&piped, &patient})
        program->Write(Frame(0).substr(0, 100));
    for (Program* program : {&reader, &piped})
        EXPECT_TRUE(program->Tells("frame 1: the line has fallen silent")) << program->err;
    EXPECT_EQ(patient.err, "");
    line.Write(Frame(1));
    piped.Write(Frame(1));
    patient.Write(Frame(0).substr(100));
    for (Program* program : {&reader, &piped})
        EXPECT_TRUE(program->Says("48211768")) << program->err;
    EXPECT_TRUE(patient.Says("48211764"));
    reader.Interrupt();
    EXPECT_EQ(reader.Ended(), 1) << reader.err; // the frame was broken off
}

TEST(Live, GrowingFile)
{
    const std::string path = TempPath("grows");
    const auto add = [&path](const std::string& bytes) {
        std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
    };
    add(Frame(0) + Frame(1).substr(0, 99));
    Program reader({"decode", "--follow", path});
    EXPECT_TRUE(reader.Says("48211764")) << reader.err;
    add(Frame(1).substr(99));
    EXPECT_TRUE(reader.Says("48211768")) << reader.err;
    std::filesystem::resize_file(path, 0);
    EXPECT_TRUE(reader.Tells("has been shortened")) << reader.err;
    add(Frame(3));
    EXPECT_TRUE(reader.Says("48211776")) << reader.err;
    std::filesystem::remove(path);
    add(Frame(4));
    EXPECT_TRUE(reader.Says("48211780")) << reader.err;
    reader.Interrupt();
    EXPECT_EQ(reader.Ended(), 0) << reader.err;
}

// A port on which connecting succeeds never, since nobody accepts and the queue is full.
class FullPort
{
public:
    FullPort()
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(aiFds[0], any, size), 0);
        EXPECT_EQ(::listen(aiFds[0], 0), 0);
        EXPECT_EQ(::getsockname(aiFds[0], any, &size), 0);
        name = "tcp:127.0.0.1:" + std::to_string(ntohs(address.sin_port));
        for (int i = 1; i < 4; ++i)
            ::connect(aiFds[i], any, size);
    }
    ~FullPort()
    {
        for (const int fd : aiFds)
            ::close(fd);
    }
    FullPort(const FullPort&) = delete;
    FullPort& operator=(const FullPort&) = delete;

    std::string name;

private:
    static int Socket() { return ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0); }
    int aiFds[4] = {Socket(), Socket(), Socket(), Socket()};
};

TEST(Live, InterruptEndsEveryWait)
{
    const FullPort full;
    Program silent({"simulate", "--listen", "0", "--interval", "1000"});
    const std::string file = TempPath("empty");
    std::ofstream{file};
    const struct {
        const char* pcName;
        std::vector<std::string> args;
        const char* pcReached; // on stderr, once the state is reached; empty: takes a moment
        int iStatus;
    } rows[] = {
        {"connecting", {"decode", full.name}, "", 0},
        {"connecting for ever", {"decode", "--reconnect", full.name}, "", 0},
        {"back-off", {"decode", "--reconnect", "tcp:127.0.0.1:1"}, "refused; trying on", 0},
        {"no device yet", {"decode", "--reconnect", "/dev/no-such-line"}, "trying on", 0},
        {"connected", {"decode", AddressOf(silent), "-"}, "", 0},
        {"following", {"decode", "--follow", file}, "", 0},
        {"standard input", {"decode"}, "", 0},
        {"no client", {"simulate", "--listen", "0"}, "listening", 0},
        {"between frames", {"simulate", "--interval", "1000"}, "", 0},
        {"refused", {"decode", "tcp:127.0.0.1:1"}, "refused (with --reconnect", 2},
        {"no port", {"decode", "--reconnect", "tcp:localhost"}, "named tcp:HOST:PORT", 2},
    };
    for (const auto& row : rows) {
        Program quarn(row.args);
        if (*row.pcReached != '\0')
            EXPECT_TRUE(quarn.Tells(row.pcReached)) << row.pcName << quarn.err;
        else
            ::usleep(400000);
        quarn.Interrupt();
        EXPECT_EQ(quarn.Ended(), row.iStatus) << row.pcName << ": " << quarn.err;
    }
}

// A reader that has seen enough is no error to be told of; a descriptor that is closed is one.
TEST(Live, PipesAndClosedDescriptors)
{
    const struct {
        const char* pcCommand; // of the shell; $quarn is the program
        const char* pcPrints;
    } rows[] = {
        {"{ $quarn simulate | { $quarn decode; echo $? >&2; } | head -1 >/dev/null; } 2>&1", "2\n"},
        {"$quarn decode 2>&1 <&-", "quarn: standard input: cannot be read: Bad file descriptor\n"},
        {"$quarn decode --format csv 2>&1 >&- </dev/null",
         "quarn: standard output: cannot be written: Bad file descriptor\n"},
    };
    ::setenv("quarn", QUARN_PROGRAM, 1);
    for (const auto& row : rows) {
        FILE* const shell = ::popen(row.pcCommand, "r");
        ASSERT_NE(shell, nullptr);
        char printed[1000] = {};
        std::fread(printed, 1, sizeof printed - 1, shell);
        ::pclose(shell);
        EXPECT_STREQ(printed, row.pcPrints) << row.pcCommand;
    }
    ::unsetenv("quarn");
}

// What check counts is what the simulator says.
TEST(Simulate, FaultsAreCountedAlike)
{
    const struct {
        std::vector<std::string> args;
        bool bFaults;
    } rows[] = {
        {{"--count", "20000", "--faults", "0.05"}, true},
        {{"--count", "2000", "--faults", "1", "--seed", "3"}, true},
        {{"--count", "2000", "--faults", "1", "--seed", "4", "--entries", "1"}, true},
        {{"--count", "40", "--faults", "1", "--entries", "1000"}, true},
        {{"--count", "300", "--interval", "0.001"}, false},
    };
    const std::string path = TempPath("simulated");
    for (const auto& row : rows) {
        std::vector<std::string> args = {"simulate", "--force", "--output", path};
        args.insert(args.end(), row.args.begin(), row.args.end());
        Program meter(args);
        EXPECT_EQ(meter.Finish(), 0) << meter.err;
        Program reader({"check", path});
        EXPECT_EQ(reader.Finish(), row.bFaults ? 1 : 0);
        const std::string told = meter.err.substr(meter.err.find("\nbytes") + 1);
        EXPECT_EQ(reader.out.substr(0, told.size()), told) << testing::PrintToString(row.args);
        EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 6);
    }
}

TEST(Simulate, FilesAreWrittenOverOnDemandOnly)
{
    const std::string path = TempPath("precious");
    std::ofstream(path) << "precious";
    const struct {
        std::vector<std::string> args;
        int iStatus;
        std::size_t uiSize; // of the file, afterwards
    } rows[] = {
        {{"--output", path}, 2, 8},
        {{"--force", "--output", path}, 0, 244},
        {{"--output", TempPath("fresh")}, 0, 244},
        {{"--output", "/dev/null"}, 0, 244},
    };
    for (const auto& row : rows) {
        std::vector<std::string> args = {"simulate", "--count", "1"};
        args.insert(args.end(), row.args.begin(), row.args.end());
        const test::Ran ran = test::Quarn(args);
        EXPECT_EQ(ran.iStatus, row.iStatus) << ran.err;
        EXPECT_EQ(test::ReadFile(path).size(), row.uiSize) << ran.err;
        EXPECT_EQ(ran.err.find("File exists (--force") != std::string::npos, row.iStatus != 0);
    }
}

// Noise must not fill the memory of what is listed, and what is left out is said.
TEST(Simulate, MoreServersThanAreListed)
{
    const struct {
        std::vector<std::string> args;
        const char* pcMore;
    } rows[] = {
        {{"check", "--json"}, R"("moreServers":true)"},
        {{"decode", "--watch"}, "there are more than 10000 readings"},
    };
    std::string frames;
    for (std::uint64_t seed = 0; seed < 10000; ++seed)
        tool::cMeter(seed, 1).AppendFrame(1, frames);
    for (const bool more : {false, true}) {
        for (const auto& row : rows) {
            Program reader(row.args);
            reader.Write(frames);
            EXPECT_EQ(reader.Finish(), 0);
            EXPECT_EQ(reader.out.find(row.pcMore) != std::string::npos, more) << row.pcMore;
            EXPECT_LE(Occurrences(reader.out, "server "), 10000U);
        }
        tool::cMeter(10000, 1).AppendFrame(1, frames);
    }
}

TEST(Simulate, SeedsAndSteps)
{
    const auto run = [](std::vector<std::string> args) {
        Program meter(std::move(args));
        EXPECT_EQ(meter.Finish(), 0) << meter.err;
        return meter.out;
    };
    const std::string once = run({"simulate", "--count", "9", "--faults", "0.5"});
    EXPECT_EQ(once, run({"simulate", "--count", "9", "--faults", "0.5", "--seed", "1"}));
    EXPECT_NE(once, run({"simulate", "--count", "9", "--faults", "0.5", "--seed", "2"}));
    Program reader({"decode", "--obis", "1-0:1.8.0", "--obis", "1-0:2.8.0", "--format", "csv"});
    reader.Write(run({"simulate", "--count", "500", "--seed", "7", "--entries", "100"}));
    EXPECT_EQ(reader.Finish(), 0) << reader.err;
    std::istringstream lines(reader.out);
    std::string line;
    std::getline(lines, line);
    double energy[2] = {};
    const double none[2] = {};
    unsigned advances = 0;
    for (int i = 0; std::getline(lines, line); ++i) {
        for (int comma = 0; comma < 6; ++comma)
            line.erase(0, line.find(',') + 1);
        const double now = std::stod(line);
        EXPECT_GE(now, energy[i % 2]);
        advances += energy[i % 2] != none[i % 2] && now > energy[i % 2] ? 1 : 0;
        energy[i % 2] = now;
    }
    EXPECT_GT(advances, 50U);
}

} // namespace
