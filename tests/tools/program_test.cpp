// The program as its users run it: command line, exit statuses, what goes where, live streams.
#include "tests/support/captures.h"
#include "tests/support/hex.h"
#include "tests/support/rows.h"
#include "tests/tools/program.h"
#include "tests/tools/pseudo_terminal.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace
{

using test::Program;
using test::Quarn;
using test::Ran;
using test::TempPath;
using test::Terminal;

const std::string kExample = QUARN_EXAMPLES "/household.bin";
constexpr std::size_t kFrame = 252; // of the example: five frames, the third one damaged

std::string Example(std::size_t frames)
{
    return test::ReadFile(kExample).substr(0, kFrame * frames);
}

std::size_t Lines(const std::string& text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

// The bytes that a table tells as a sum of these.
std::string Bytes(const std::string& sum)
{
    static const std::map<std::string, std::string> kBytes = [] {
        const std::string good = Example(2);
        const std::string escapes(9, '\x1B');
        const std::string large = std::string(1000000, '\x1B') + 'x';
        std::map<std::string, std::string> bytes = {
            {"head", good.substr(0, 99)},
            {"most", good.substr(kFrame, kFrame - 14)},
            {"most3", Example(3).substr(2 * kFrame, kFrame - 14)},
            {"unpadded", Quarn({"simulate", "--count", "1"}).out.substr(0, 235)},
            {"cuthex", test::ToHex(good).substr(0, 2 * kFrame + 101)},
            {"noise", "noise"},
            {"text", "nothing here"},
            {"hex", test::ToHex(good)},
            {"rawhex", test::ToHex(good.substr(8, 236))},
            {"newline", "\n"},
            {"x", "x"},
            {"one", "1"},
            {"escapes", escapes},
            {"escaped", Quarn({"frame"}, escapes).out},
            {"large", large},
            {"framed", Quarn({"frame"}, large).out},
        };
        for (std::size_t i = 0; i < 5; ++i) {
            const std::string frame = Example(5).substr(i * kFrame, kFrame);
            bytes['f' + std::to_string(i + 1)] = frame;
            bytes['p' + std::to_string(i + 1)] = frame.substr(8, 236);
        }
        return bytes;
    }();
    std::string bytes;
    std::istringstream names(sum);
    for (std::string name; std::getline(names, name, '+');)
        bytes += kBytes.at(name);
    return bytes;
}

TEST(Program, StatusAndOutput)
{
    for (const test::Row& row : test::Rows("tools/commands.txt", 7)) {
        SCOPED_TRACE(row[0]);
        std::vector<std::string> args;
        std::istringstream words(row[2]);
        for (std::string word; words >> word;)
            args.push_back(word == "EXAMPLE" ? kExample : word);
        const Ran ran = Quarn(args, Bytes(row[1]));
        EXPECT_EQ(std::to_string(ran.iStatus), row[3]) << ran.err;
        if (row[4] != "-") {
            EXPECT_EQ(std::to_string(Lines(ran.out)), row[4]) << ran.out;
        }
        if (row[5][0] == '=')
            EXPECT_TRUE(ran.out == Bytes(row[5].substr(1))) << ran.out.size() << " bytes";
        else
            EXPECT_NE(ran.out.find(row[5]), std::string::npos) << ran.out;
        EXPECT_NE(ran.err.find(row[6]), std::string::npos) << ran.err;
        EXPECT_EQ(ran.err.empty(), row[6].empty()) << ran.err;
    }
}

// Colours, a bar for a long file and a table that is drawn over itself: on a terminal alone.
TEST(Program, OnATerminal)
{
    const std::string path = TempPath("screen");
    std::string bytes;
    for (int i = 0; i < 40000; ++i)
        bytes += Example(2);
    const std::string large = TempPath("large");
    std::ofstream(large, std::ios::binary) << bytes;
    const struct {
        const char* pcName;
        std::vector<std::string> args;
        const char* pcNoColour;
        bool bErrors; // on the terminal, instead of the output
        const char* pcShown;
        const char* pcNotShown;
    } rows[] = {
        {"text", {"decode", kExample}, "", false, "\x1B[1mframe 5  server", "\x1B[H"},
        {"plain", {"decode", kExample}, "1", false, "\r\nframe 5  server", "\x1B["},
        {"error", {"check", kExample}, "", true, "\x1B[33mquarn:\x1B[0m ", "\x1B[K"},
        {"plain error", {"check", kExample}, "1", true, "\nquarn: ", "\x1B["},
        {"bar", {"decode", large}, "", true, " %  ", "frame 1\r"},
        {"table",
         {"decode", "--watch", kExample},
         "",
         false,
         "\x1B[H\x1B[K\x1B[1mserver 0a",
         "frame 3"},
        {"latest", {"decode", "--watch", kExample}, "", false, "2012439.5 Wh", "{"},
    };
    for (const auto& row : rows) {
        Terminal screen(path);
        ::setenv("NO_COLOR", row.pcNoColour, 1);
        Program quarn(row.args, row.bErrors ? "/dev/null" : path.c_str(),
                      row.bErrors ? path.c_str() : nullptr);
        ::unsetenv("NO_COLOR");
        EXPECT_TRUE(screen.Shows(row.pcShown)) << row.pcName << screen.shown.substr(0, 2000);
        while (screen.Look(300)) {
        }
        EXPECT_EQ(screen.shown.find(row.pcNotShown), std::string::npos)
            << row.pcName << screen.shown.substr(0, 2000);
        EXPECT_EQ(quarn.Finish(), row.args.back() == large ? 0 : 1) << row.pcName;
    }
    std::filesystem::remove(large);
}

// The longest line of the table that was drawn last, escape sequences left out.
std::size_t WidthOfTable(const std::string& shown)
{
    std::istringstream lines(shown.substr(shown.rfind("\x1B[H")));
    std::size_t width = 0;
    for (std::string line; std::getline(lines, line);) {
        for (std::size_t at = 0; (at = line.find('\x1B')) != std::string::npos;)
            line.erase(at, line.find_first_of("mKHJ", at) + 1 - at);
        width = std::max(width, line.find_last_not_of('\r') + 1);
    }
    return width;
}

TEST(Program, TableIsCutToTheScreen)
{
    const std::string path = TempPath("screen");
    Terminal screen(path);
    screen.Resize(50, 40);
    Program quarn({"decode", "--watch"}, path.c_str());
    quarn.Write(Example(1));
    EXPECT_TRUE(screen.Shows("\x1B[J"));
    EXPECT_EQ(WidthOfTable(screen.shown), 40U) << screen.shown;
    for (const auto columns : std::array<unsigned short, 2>{30, 70}) {
        screen.shown.clear();
        screen.Resize(50, columns);
        for (int i = 0; i < 100 && screen.shown.find("\x1B[J") == std::string::npos; ++i) {
            quarn.Send(SIGWINCH); // it may be busy with the former one
            screen.Look(100);
        }
        EXPECT_LE(WidthOfTable(screen.shown), columns) << screen.shown;
    }
    EXPECT_NE(screen.shown.find("14798112.9 Wh"), std::string::npos) << screen.shown;
}

// What a file, a host, an option or a field is called reaches no terminal as it is.
TEST(Program, HostileTextIsEscaped)
{
    const std::pair<const char*, const char*> pieces[] = {{"\x1B[31m", "\\x1b[31m"},
                                                          {"A\nB", "A\\x0aB"},
                                                          {"\x7F", "\\x7f"},
                                                          {"\xC2\x9B", "\\u009b"},
                                                          {"\xD8\x9C", "\\u061c"},
                                                          {"\xE2\x80\x8F", "\\u200f"},
                                                          {"\xE2\x80\xA8", "\\u2028"},
                                                          {"\xE2\x80\xAE", "\\u202e"},
                                                          {"\xE2\x81\xA6", "\\u2066"},
                                                          {"\xC0\x8A", "\\xc0\\x8a"},
                                                          {"\xED\xA0\x80", "\\xed\\xa0\\x80"},
                                                          {"\xFF", "\\xff"}};
    std::string name;
    std::string visible;
    for (const auto& [raw, shown] : pieces) {
        name += raw;
        visible += shown;
    }
    const std::string file = TempPath(name.c_str());
    std::ofstream(file, std::ios::binary) << Example(1);
    std::string key = name; // JSON forbids some of it as it is
    key.replace(key.find('\x1B'), 1, "\\u001b").replace(key.find('\n'), 1, "\\n");
    const std::vector<std::string> rows[] = {
        {name},
        {"--trace", name + "=2", "check"},
        {"check", "--" + name},
        {"check", name},
        {"unframe", "/dev/" + name},
        {"frame", "tcp:" + name + ":?"},
        {"decode", "--obis", name},
        {"decode", "--server", name},
        {"decode", "--format", name},
        {"decode", "--serial", name},
        {"decode", "--explain", file},
        {"decode", "--html", "-", file},
        {"decode", "--html", "/nonexistent/" + name},
        {"simulate", "--output", "/nonexistent/" + name},
        {"simulate", "--seed", name},
        {"encode"},
    };
    for (const auto& args : rows) {
        SCOPED_TRACE(testing::PrintToString(args));
        const Ran ran = Quarn(args, "{\"" + key + "\":1}\n");
        EXPECT_NE((ran.out + ran.err).find(visible), std::string::npos) << ran.out << ran.err;
        for (const auto& [raw, shown] : pieces)
            EXPECT_EQ((ran.out + ran.err).find(raw), std::string::npos) << shown;
    }
    std::filesystem::remove(file);
}

TEST(Program, OutputThatFails)
{
    const std::vector<std::string> rows[] = {{"decode", kExample}, {"--help"},
                                             {"--version"},        {"decode", "--help"},
                                             {"check", kExample},  {"simulate", "--count", "1"}};
    for (const std::vector<std::string>& args : rows) {
        Program full(args, "/dev/full");
        EXPECT_EQ(full.Finish(), 2) << testing::PrintToString(args);
        EXPECT_NE(full.err.find("standard output: cannot be written: No space"), std::string::npos)
            << testing::PrintToString(args) << full.err;
    }
}

// A frame is printed when it has ended, while the stream goes on; an interrupt ends it cleanly.
TEST(Program, LiveStreamIsPrintedAtOnce)
{
    for (const char* format : {"readings", "records", "text", "csv"}) {
        Program quarn({"decode", "--format", format});
        const std::string stream = Example(2);
        quarn.Write(stream.substr(0, kFrame));
        EXPECT_TRUE(quarn.Says("48211764")) << format;
        quarn.Write(stream.substr(kFrame, 249));
        quarn.Write(stream.substr(kFrame + 249), 1);
        EXPECT_TRUE(quarn.Says("48211768")) << format;
        quarn.Interrupt();
        EXPECT_EQ(quarn.Ended(), 0) << format << quarn.err;
    }
}

// Readings of a frame without end cannot be held for ever; raw input is not held at all.
TEST(Program, EndlessFrameIsGivenUp)
{
    const std::string payload = Example(1).substr(8, 236);
    std::string endless = Example(1).substr(0, 8);
    for (int i = 0; i < 20000; ++i)
        endless += payload;
    const Ran held = Quarn({"decode"}, endless + Example(1));
    EXPECT_EQ(held.iStatus, 1);
    EXPECT_NE(held.err.find("too long to be held until its end; readings withheld: 120000"),
              std::string::npos)
        << held.err;
    EXPECT_EQ(Lines(held.out), 6U);
    const Ran raw = Quarn({"decode"}, endless.substr(8));
    EXPECT_EQ(raw.iStatus, 0) << raw.err;
    EXPECT_EQ(Lines(raw.out), 120000U);
}

// The lines of a capture's finished frames.
std::string Finished(const std::string& records)
{
    const std::size_t last = records.rfind(R"({"event":"frame",)");
    return last == std::string::npos ? "" : records.substr(0, records.find('\n', last) + 1);
}

TEST(Program, CapturesGiveTheirRecordsFromFilesAndInAnyPieces)
{
    const std::vector<std::filesystem::path> captures = test::Captures();
    if (captures.empty())
        GTEST_SKIP() << "no captures in " << test::CapturesDir() << " (set QUARN_CAPTURES)";
    const struct {
        const char* pcFormat;
        std::vector<std::size_t> pieces;
    } rows[] = {{"records", {1, 7, 64}}, {"readings", {7}}, {"text", {7}}};
    for (std::filesystem::path path : captures) {
        const std::string bytes = test::ReadFile(path);
        for (const auto& [format, pieces] : rows) {
            const Ran file = Quarn({"decode", "--format", format, path.string()});
            EXPECT_LE(file.iStatus, 1) << path;
            for (const std::size_t piece : pieces) {
                Program pipe({"decode", "--format", format});
                pipe.Write(bytes, piece);
                EXPECT_EQ(pipe.Finish(), file.iStatus) << path << pipe.err;
                EXPECT_EQ(pipe.out, file.out) << path << " by " << piece;
            }
        }
        const std::string expected = test::ReadFile(path.replace_extension(".records.ndjson"));
        ASSERT_FALSE(expected.empty()) << path;
        for (const char* input : {"auto", "framed", "hex"}) {
            const Ran ran = Quarn({"decode", "--format", "records", "--input", input},
                                  input == std::string("hex") ? test::ToHex(bytes) : bytes);
            EXPECT_EQ(Finished(ran.out), expected) << path << " as " << input;
        }
    }
}

} // namespace
