// The program as its users run it: command line, exit statuses, what goes where, live streams.
#include "tests/support/captures.h"
#include "tests/support/hex.h"
#include "tests/tools/program.h"
#include "tests/tools/terminal.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

namespace
{

using test::Program;
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

TEST(Program, StatusAndOutput)
{
    const std::string good = Example(2);
    const std::string raw = good.substr(8, 236);
    std::string noisy = good;
    noisy.insert(kFrame, "noise");
    const struct {
        const char* pcName;
        std::vector<std::string> args;
        std::string input;
        int iStatus;
        std::size_t uiLines; // on stdout
        const char* pcOut;   // somewhere on stdout
        const char* pcErr;   // somewhere on stderr; empty: nothing there
    } rows[] = {
        {"good", {"decode"}, good, 0, 12, R"("value":14798113.4)", ""},
        {"damaged frame",
         {"decode", kExample},
         "",
         1,
         24,
         R"("frame":5)",
         "frame 3: the checksum is wrong"},
        {"damaged frame kept",
         {"decode", "--keep-bad", kExample},
         "",
         1,
         30,
         R"("frame":3)",
         "frame 3, message 2: the checksum of the message is wrong (status -6)"},
        {"withheld ones counted", {"decode", kExample}, "", 1, 24, "", "withheld: 6"},
        {"noise before",
         {"decode"},
         "noise" + good,
         0,
         12,
         "",
         "standard input: 5 bytes before the first frame"},
        {"noise between", {"decode"}, noisy, 1, 12, "", "5 bytes between frames, from byte 253"},
        {"cut off", {"decode"}, good.substr(0, 490), 0, 12, "", "frame 2: cut off"},
        {"no frame", {"decode"}, "nothing here", 1, 0, "", "12 bytes and no frame"},
        {"empty", {"decode"}, "", 0, 0, "", ""},
        {"raw", {"decode"}, raw, 0, 6, R"("frame":1)", ""},
        {"raw by order", {"decode", "--input", "raw"}, raw, 0, 6, "", ""},
        {"frames by order", {"decode", "--input", "framed"}, raw, 1, 0, "", "no frame"},
        {"hex", {"decode", "-"}, test::ToHex(good), 0, 12, "", ""},
        {"hex of raw, by order", {"decode", "--input=hex"}, test::ToHex(raw) + "\n", 0, 6, "", ""},
        {"hex with a slip", {"decode"}, test::ToHex(good) + "\nx", 1, 12, "", "byte 1010 of"},
        {"half a byte", {"decode"}, test::ToHex(good) + "1", 1, 12, "", "half a byte"},
        {"several inputs",
         {"decode", "-", "/nonexistent", kExample},
         good,
         2,
         36,
         "",
         "/nonexistent: cannot be opened: No such file"},
        {"a directory", {"decode", "/"}, "", 2, 0, "", "/: cannot be read"},
        {"one code",
         {"decode", "--obis", "1.8.0*255", kExample},
         "",
         1,
         4,
         "1-0:1.8.0*255",
         "withheld: 1"},
        {"two codes", {"decode", "--obis=1.8.0", "--obis", "16.*"}, good, 0, 4, "1-0:16.7.0", ""},
        {"another server", {"decode", "--server", "0a01"}, good, 0, 0, "", ""},
        {"this server", {"decode", "--server", "0A0158595A0000123456"}, good, 0, 12, "", ""},
        {"csv", {"decode", "--format", "csv"}, good, 0, 13, "frame,message,server,time,obis", ""},
        {"text", {"decode", "--format", "text"}, good, 0, 15, "14798112.9 Wh\n", ""},
        {"records",
         {"decode", "--format", "records", kExample},
         "",
         1,
         20,
         R"({"event":"frame","frame":3,"crc":"error","bytes":236,"messages":3})",
         "frame 3"},
        {"trace",
         {"decode", "--trace", "LibSmlp=8", "--trace", "LibSmlt=16"},
         good,
         0,
         12,
         "",
         "FILE Ok, Size=236 Bytes"},
        {"version", {"--version"}, "", 0, 2, " build by ", ""},
        {"latest", {"decode", "--watch", kExample}, "", 1, 7, "  2012439.5 Wh\n", "withheld: 6"},
        {"corrected",
         {"decode", "--obis", "16.7.0", "--correct", "0A0158595A0000123456/16.7.0=unsigned",
          kExample},
         "",
         1,
         4,
         R"("value":64881,"unit":"W","scaler":0,"raw":-655,"correction":"unsigned"})",
         "withheld: 1"},
        {"no command", {}, "", 2, 0, "", "command is required"},
        {"unknown command", {"decrypt"}, "", 2, 0, "", "'decrypt': there are decode, encode"},
        {"mistyped command",
         {"--trace", "LibSmlp=2", "simulat", "--count", "3"},
         "",
         2,
         0,
         "",
         "did you mean 'simulate'?"},
        {"two formats", {"decode", "--watch", "--format", "csv"}, "", 2, 0, "", "excludes"},
        {"bad correction", {"decode", "--correct", "1.8.0=off"}, "", 2, 0, "", "1.8.0=off"},
        {"bad line", {"check", "--serial", "8N1"}, "", 2, 0, "", "'8N1' is not like 9600,8N1"},
        {"unknown option", {"decode", "--fast"}, "", 2, 0, "", "--fast"},
        {"unknown format", {"decode", "--format", "xml"}, "", 2, 0, "", "xml"},
        {"unknown input", {"decode", "--input", "xml"}, "", 2, 0, "", "xml"},
        {"bad pattern", {"decode", "--obis", "1.8.x"}, "", 2, 0, "", "1.8.x"},
        {"bad server", {"decode", "--server", "0a0"}, "", 2, 0, "", "0a0"},
        {"bad trace", {"decode", "--trace", "LibSmlp"}, "", 2, 0, "", "UNIT=LEVEL"},
        {"unknown trace", {"decode", "--trace", "Lib=8"}, "", 2, 0, "", "LibSmlp"},
    };
    for (const auto& row : rows) {
        Program quarn(row.args);
        quarn.Write(row.input);
        EXPECT_EQ(quarn.Finish(), row.iStatus) << row.pcName << ": " << quarn.err;
        if (row.uiLines != 0 || *row.pcOut == '\0') {
            EXPECT_EQ(Lines(quarn.out), row.uiLines) << row.pcName << ": " << quarn.out;
        }
        EXPECT_NE(quarn.out.find(row.pcOut), std::string::npos) << row.pcName << quarn.out;
        EXPECT_NE(quarn.err.find(row.pcErr), std::string::npos) << row.pcName << quarn.err;
        if (*row.pcErr == '\0') {
            EXPECT_EQ(quarn.err, "") << row.pcName;
        }
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
        {"table", {"decode", "--watch", kExample}, "", false, "\x1B[H\x1B[1mserver 0a", "frame 3"},
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

TEST(Program, OutputThatFails)
{
    Program full({"decode", kExample}, "/dev/full");
    EXPECT_EQ(full.Finish(), 2);
    EXPECT_NE(full.err.find("standard output: cannot be written: No space"), std::string::npos);
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
    Program quarn({"decode"});
    quarn.Write(endless + Example(1));
    EXPECT_EQ(quarn.Finish(), 1);
    EXPECT_NE(quarn.err.find("too long to be held until its end; readings withheld: 120000"),
              std::string::npos)
        << quarn.err;
    EXPECT_EQ(Lines(quarn.out), 6U);

    Program raw({"decode"});
    raw.Write(endless.substr(8));
    EXPECT_EQ(raw.Finish(), 0) << raw.err;
    EXPECT_EQ(Lines(raw.out), 120000U);
}

TEST(Program, CapturesReadAlikeFromFileAndPipe)
{
    const std::vector<std::filesystem::path> captures = test::Captures();
    if (captures.empty())
        GTEST_SKIP() << "no captures in " << test::CapturesDir() << " (set QUARN_CAPTURES)";
    for (const std::filesystem::path& path : captures) {
        const std::string bytes = test::ReadFile(path);
        for (const char* format : {"readings", "records", "text"}) {
            Program file({"decode", "--format", format, path.string()});
            const int status = file.Finish();
            EXPECT_LE(status, 1) << path;
            for (const std::size_t piece : {1U, 7U, 64U}) {
                Program pipe({"decode", "--format", format});
                pipe.Write(bytes, piece);
                EXPECT_EQ(pipe.Finish(), status) << path << pipe.err;
                EXPECT_EQ(pipe.out, file.out) << path << " by " << piece;
            }
        }
    }
}

} // namespace
