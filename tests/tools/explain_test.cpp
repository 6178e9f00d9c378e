// Explanations: every byte is told once, whatever the bytes; what is told is right; nothing is
// called damaged that the receive road calls good, and the other way round.
#include "tests/support/captures.h"
#include "tests/support/hex.h"
#include "tests/support/message.h"
#include "tests/support/refusals.h"
#include "tests/support/rows.h"
#include "tests/tools/program.h"
#include "tests/tools/pseudo_terminal.h"
#include "tools/explain/explainer.h"
#include "tools/explain/value.h"
#include "tools/explain/writers.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using test::Hex;
using test::Program;

const std::string kExample = QUARN_EXAMPLES "/household.bin";

// What has been told, and whether it covers the input.
class Listener : public tool::cExplanationWriter
{
public:
    void Begin(const std::string&) override {}
    void Write(const tool::Section& section) override
    {
        text += section.title + '|' + section.damage + '\n';
        EXPECT_EQ(section.ullOffset, covered.size());
        bDamaged = bDamaged || !section.damage.empty();
        for (const tool::Annotation& item : section.items) {
            EXPECT_EQ(item.ullOffset, covered.size()) << item.name;
            EXPECT_FALSE(item.bytes.empty()) << item.name;
            EXPECT_LE(item.uiTl, item.bytes.size()) << item.name;
            covered += item.bytes;
            const bool isTransport =
                item.eWhat == tool::eWHAT::TRANSPORT || item.eWhat == tool::eWHAT::PADDING ||
                item.name == "checksum of the frame" || item.name == "no part of a frame";
            payload += isTransport ? "" : item.bytes;
            text += std::to_string(item.uiDepth) + ' ' + item.name + '|' + item.value + '|' +
                    item.note + '|' + item.damage + '\n';
            bDamaged = bDamaged || !item.damage.empty();
        }
    }
    void Finish() override {}

    std::string covered;
    std::string payload;
    std::string text;
    bool bDamaged = false;
};

// Hears what the library has made of the frames.
class Explainer : public tool::cExplainer
{
public:
    using cExplainer::cExplainer;
    std::string payload;

protected:
    void OnPayload(const tool::Frame& frame, std::string_view piece) override
    {
        payload += piece;
        cExplainer::OnPayload(frame, piece);
    }
};

struct Told {
    std::string text;
    std::string stderrText;
    bool bDamaged;
};

// silences: behind so many pieces the line is silent.
Told Explain(const std::string& input, std::size_t piece = std::string::npos,
             tool::eINPUT kind = tool::INPUT_AUTO, unsigned silences = 0)
{
    Listener listener;
    tool::cReport report;
    LibSmlp->iLevel = LibSmlt->iLevel = 0; // the damage is meant
    testing::internal::CaptureStderr();
    Explainer explainer(kind, listener, report);
    explainer.Begin(false);
    for (std::size_t at = 0; at < input.size();) {
        const std::size_t size = std::min(piece, input.size() - at);
        explainer.Feed(reinterpret_cast<const unsigned char*>(input.data()) + at, size);
        at += size;
        if (at <= silences * piece)
            explainer.Timeout();
    }
    explainer.End();
    explainer.Finish();
    EXPECT_TRUE(listener.covered == input)
        << "covers " << listener.covered.size() << " of " << input.size();
    if (input.size() <= tool::cExplainer::kMaxFrame) {
        EXPECT_TRUE(listener.payload == explainer.payload) << listener.text.substr(0, 5000);
    }
    const std::string said = testing::internal::GetCapturedStderr();
    const bool noted = said.find("before the first") < said.find('\n'); // which is no damage
    EXPECT_EQ(listener.bDamaged, said.find('\n', noted ? said.find('\n') + 1 : 0) != said.npos)
        << said << listener.text.substr(0, 5000);
    return {listener.text, said, listener.bDamaged};
}

std::vector<std::string> Inputs()
{
    std::vector<std::string> inputs = {test::ReadFile(kExample)};
    for (const auto& path : test::Captures())
        inputs.push_back(test::ReadFile(path));
    return inputs;
}

TEST(Explain, CoversWhateverPiecesItComesIn)
{
    for (const std::string& input : Inputs()) {
        const std::string whole = Explain(input).text;
        for (const std::size_t piece : {1U, 7U, 1000U})
            EXPECT_EQ(Explain(input, piece).text, whole);
    }
}

// Bytes are flipped, removed, repeated, and replaced by such as mean something.
TEST(Explain, CoversAnyBytes)
{
    std::mt19937 random(20);
    const auto below = [&random](std::size_t n) { return random() % n; };
    const std::string special = Hex("1B1B1B1B1A0101010100FF7677728F81F1");
    for (const std::string& input : Inputs()) {
        for (int round = 0; round < 40; ++round) {
            std::string bytes = input.substr(0, 700 + below(800));
            if (round % 3 == 0) // the same without frames, mostly
                bytes.erase(0, std::min(bytes.size() - 1, bytes.find('v') % bytes.size()));
            for (std::size_t i = below(8); i != 0; --i) {
                const std::size_t at = below(bytes.size());
                switch (below(4)) {
                case 0:
                    bytes[at] = static_cast<char>(bytes[at] ^ 1 << below(8));
                    break;
                case 1:
                    bytes.erase(at, std::min(bytes.size() - 1, 1 + below(40)));
                    break;
                case 2:
                    bytes.insert(at, bytes.substr(below(bytes.size()), below(300)));
                    break;
                default:
                    bytes[at] = special[below(special.size())];
                    break;
                }
            }
            Explain(bytes, 1 + below(2000), tool::INPUT_AUTO, static_cast<unsigned>(round % 4));
        }
    }
}

TEST(Explain, CoversMoreThanCanBeKept)
{
    const std::string frame = test::ReadFile(kExample).substr(0, 252);
    std::string endless = frame.substr(0, 8);
    std::string raw;
    while (raw.size() < 3 * tool::cExplainer::kMaxFrame)
        raw += frame.substr(8, 236);
    endless += raw;
    EXPECT_NE(Explain(endless + frame, 1000).text.find("too long: only"), std::string::npos);
    const std::string text = Explain(raw, 1000).text;
    EXPECT_EQ(text.find("cannot be taken apart"), std::string::npos);
    EXPECT_NE(Explain(std::string(300000, 'x') + frame).text.find("no part of a frame"),
              std::string::npos);
    // What has come is explained where a length of several bytes has not come whole.
    const std::string large =
        test::OpenRes() +
        test::Finish(test::Head("0301") + Hex("7802AA7262016201620F707070") +
                     test::LongString(std::string(tool::cExplainer::kMaxFrame, 'x')) + '\1') +
        test::CloseRes();
    for (const std::size_t cut : {1U, 5U}) {
        const std::string input = large + test::OddOpenRes() + test::CloseRes();
        EXPECT_FALSE(Explain(input, large.size() + cut, tool::INPUT_RAW).bDamaged);
    }
}

// A message without frame, its checksum wrong unless it stands alone in the parser's mind.
std::string Message(const char* tag, const char* body)
{
    return Hex(std::string("7602016200620072") + tag + body + "63000000");
}

TEST(Explain, TellsFieldsAndDamage)
{
    const std::string open = Message("630101", "760101020102010101");
    const char* const list = "7701020101"
                             "01";
    const auto entry = [&](const std::string& fields) {
        return Message("630701", (list + ("71" + fields) + "0101").c_str());
    };
    const std::string power = "77070100100700FF0101621B52FE";
    const struct {
        const char* pcName;
        std::string input;
        std::vector<const char*> told;
    } rows[] = {
        {"positive", entry(power + "5304D201"), {"value|12.34 W||\n", "unit|27 W", "10^-2"}},
        {"unsigned sent as signed",
         entry(power + "538AD001"),
         {"value|-300.00 W|read as unsigned: 355.36 W|\n"}},
        {"signed sent as unsigned",
         entry(power + "638AD001"),
         {"value|355.36 W|read as signed: -300.00 W|\n"}},
        {"sign not extended",
         entry(power + "53009C01"),
         {"value|1.56 W|read with the sign in its last byte: -1.00 W|\n"}},
        {"two bytes, no doubt", entry(power + "53019C01"), {"value|4.12 W||\n"}},
        {"times",
         Message("630101", "7601010201020172620265386D438001"),
         {"timestamp|2000-01-01 00:00:00Z"}},
        {"local time",
         Message("630101", "760101020102017262037365386D4380533C0053003C"),
         {"local||", "locOffset|15360 min", "seaOffset|60 min"}},
        {"status",
         entry("77070100010800FF6301820101015201"
               "01"),
         {"status|0x0182 (386)"}},
        {"attention",
         Message("63FF01", "7402FF078181C7C7FE010101"),
         {"attentionNo|8181c7c7fe01 unknown message"}},
        {"a tree",
         Message("630501", "7302FF7107010203040506730701020304050672620163010A710173"),
         {"path_Entry 1|1-2:3.4.5*6", "procParVal", "value|266", "child_List"}},
        {"wrong type",
         entry(power + "5304D263"),
         {"valueSignature|", "it must be an octet string"}},
        {"required", entry("77010101010152FF01"), {"objName|not set||it must be set"}},
        {"wrong count",
         Message("630101", "7501010201020101"),
         {"SmlOpenRes|||it must be a list of 6; the parser stops here: ", "OpenResp:Seq-Cnt!"}},
        {"unknown message", Message("630909", "7101"), {"there is no such choice here"}},
        {"reserved type", entry("2101"), {"valListEntry 1|||there is no such type"}},
        {"longer than the rest", entry("8F0F01"), {"it announces 253 bytes, and 7 are left"}},
        {"number too long", entry("6A01"), {"a number has eight bytes"}},
        {"endless length", entry("FFFFFFFFFFFFFFFF01"), {"the length has no end"}},
        {"cut off", open.substr(0, 12), {"the data ends here, before"}},
        {"then the next",
         open.substr(0, 14) + open,
         {"the next message begins here, before",
          "message 2|open response||the parser stops here: "}},
        {"end missing",
         open.substr(0, open.size() - 1) + "\x01" + open,
         {"endOfSmlMsg|||it must be 00", "message 2|open response"}},
    };
    for (const auto& row : rows) {
        const std::string text = Explain(row.input, 1000, tool::INPUT_RAW).text;
        for (const char* told : row.told)
            EXPECT_NE(text.find(told), std::string::npos) << row.pcName << told << '\n' << text;
    }
}

// Of each message that the tests of the parser know, in a file of its own.
TEST(Explain, AgreesWithTheParser)
{
    const auto explain = [](const std::string& message) {
        return Explain(test::OddOpenRes() + message, std::string::npos, tool::INPUT_RAW);
    };
    for (const test::Row& row : test::Rows("parser/bodies.txt", 4)) {
        SCOPED_TRACE(row[0]);
        const std::string close = row[1] == "0200" ? "" : test::CloseRes();
        const Told told = explain(test::Message(row[1], row[2]) + close);
        EXPECT_FALSE(told.bDamaged) << told.text;
    }
    for (const test::Row& row : test::Refusals()) {
        SCOPED_TRACE(row[0]);
        const std::string text = explain(test::Refused(row)).text;
        EXPECT_NE(text.find("the parser stops here"), std::string::npos) << text;
    }
}

// A message that a silence cuts off is damaged, what is late of it as well; a message that begins
// then is read.
TEST(Explain, GoesOnBehindASilence)
{
    const std::string frame = test::ReadFile(kExample).substr(0, 252);
    const std::string file = frame.substr(8, 236);
    const struct {
        const char* pcName;
        std::string input;
        std::size_t uiPiece;
        std::vector<const char*> told;
    } rows[] = {
        {"in a frame",
         frame + frame,
         103, // of which three are held back
         {"unit|not set||the data ends here, before scaler; the line fell silent here: the "
          "file",
          "cannot be taken apart|||the parser stops here", "frame 2: 252 bytes at 0xfc|\n"}},
        {"in a frame that is lost",
         frame.substr(0, 103) + frame,
         103,
         {"the line fell silent", "broken off", "message 3|close response||\n"}},
        {"raw",
         file.substr(0, 100) + file,
         100,
         {"it announces 6 bytes, and 0 are left; the line fell silent",
          "SML file: 236 bytes at 0x64|\n0 message 1|open response||\n"}},
        {"raw, between messages",
         file,
         38,
         {"endOfSmlMsg|||the line fell silent", "0 message 1|get-list response||\n"}},
    };
    for (const auto& row : rows) {
        const std::string text = Explain(row.input, row.uiPiece, tool::INPUT_AUTO, 1).text;
        for (const char* told : row.told)
            EXPECT_NE(text.find(told), std::string::npos) << row.pcName << told << '\n' << text;
    }
}

TEST(Explain, TellsTheTransport)
{
    const std::string frame = Hex("1B1B1B1B01010101 01 1B1B1B1B1B1B1B1B 02 0000 1B1B1B1B1A02 7A58");
    for (const char* told :
         {"start of a frame|||\n0 bytes", "escape of the four bytes behind it|||", "|(goes on)|",
          "padding|||\n0 end of a frame|||\n0 number of padding bytes|2||\n", "frame|right||\n"})
        EXPECT_NE(Explain(frame).text.find(told), std::string::npos) << told;
    std::string damaged = frame;
    damaged[13] = 'x';
    EXPECT_NE(Explain(damaged).text.find("escape|||it introduces nothing known"),
              std::string::npos);
}

TEST(Explain, OnTheCommandLine)
{
    const std::string page = testing::TempDir() + "explain_test.html";
    const std::string good = test::ReadFile(kExample).substr(0, 252);
    std::string much;
    while (much.size() <= tool::kMaxPageInput)
        much += good;
    const struct {
        std::vector<std::string> args;
        std::string input;
        int iStatus;
        const char* pcOut; // on stdout
        const char* pcErr;
        const char* pcPage; // in the page, if one is made
    } rows[] = {
        {{"--explain"}, good, 0, "standard input\nframe 1: 252 bytes at 0x0\n", "", ""},
        {{"--explain"}, test::ToHex(good), 0, "checksum of the frame  right\n", "", ""},
        {{"--explain"}, good + good.substr(0, 250) + "..", 1, "\n!      1f6  2e 2e", "frame 2", ""},
        {{"--explain"}, std::string(500, 'x'), 1, "and 356 bytes more\n", "no frame", ""},
        {{"--explain", "--format", "text"}, good, 2, "", "--format", ""},
        {{"--explain", "--keep-bad"}, good, 2, "", "--keep-bad", ""},
        {{"--html", page}, good, 0, "", "", "14798112.9 Wh</b>"},
        {{"--html", page}, much, 2, "", "too long for a page", "frame 1000:"},
        {{"--html", page}, good, 0, "", "", "14798112.9 Wh</b>"}, // in the place of another
        {{"--html", kExample}, good, 2, "", "household.bin: is no page", ""},
        {{"--html", "/nonexistent/page"}, good, 2, "", "/nonexistent/page: cannot be written", ""},
        {{"--html", "/dev/full"}, good, 2, "", "/dev/full: cannot be written: No space", ""},
    };
    for (const auto& row : rows) {
        std::vector<std::string> args = row.args;
        args.insert(args.begin(), "decode");
        Program quarn(args);
        quarn.Write(row.input);
        EXPECT_EQ(quarn.Finish(), row.iStatus) << args[1] << quarn.err;
        EXPECT_NE(quarn.out.find(row.pcOut), std::string::npos) << quarn.out;
        EXPECT_EQ(quarn.out.empty(), *row.pcOut == '\0');
        EXPECT_NE(quarn.err.find(row.pcErr), std::string::npos) << quarn.err;
        EXPECT_NE(test::ReadFile(page).find(row.pcPage), std::string::npos);
    }
}

// The page is written whole or not at all, and nothing is left beside it.
TEST(Explain, PageIsWrittenWholeOrNotAtAll)
{
    namespace fs = std::filesystem;
    const fs::path folder = test::TempPath("pages");
    const std::string page = folder / "page.html";
    const std::string link = folder / "link.html";
    fs::create_directory(folder);
    fs::create_symlink("page.html", link);
    const std::string old = "<!DOCTYPE html>old";
    const struct {
        const char* pcName;
        std::vector<std::string> args;
        bool bFull; // as a disk is
        bool bInterrupted;
        int iStatus;
        bool bWritten;
    } rows[] = {
        {"whole", {page, "-"}, false, false, 0, true},
        {"through a link", {link, "-"}, false, false, 0, true},
        {"interrupted", {page, "-"}, false, true, 0, true},
        {"interrupted before another", {page, "-", kExample}, false, true, 2, false},
        {"missing", {page, "/nonexistent"}, false, false, 2, false},
        {"one missing", {page, "-", "/nonexistent"}, false, false, 2, false},
        {"cannot be read", {page, "/"}, false, false, 2, false},
        {"full disk", {page, "-"}, true, false, 2, false},
        {"two to standard output", {"-", "--explain", "-"}, false, false, 2, false},
    };
    const mode_t mask = ::umask(027);
    std::signal(SIGXFSZ, SIG_IGN);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pcName);
        fs::remove(page);
        std::ofstream(page) << old;
        rlimit limit = {};
        ::getrlimit(RLIMIT_FSIZE, &limit);
        const rlimit full = {row.bFull ? 4096 : limit.rlim_cur, limit.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
        std::vector<std::string> args = {"decode", "--html"};
        args.insert(args.end(), row.args.begin(), row.args.end());
        Program quarn(args);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        quarn.Write(test::ReadFile(kExample).substr(0, 252));
        if (row.bInterrupted)
            quarn.Interrupt();
        EXPECT_EQ(row.bInterrupted ? quarn.Ended() : quarn.Finish(), row.iStatus) << quarn.err;
        EXPECT_EQ(quarn.err.empty(), row.bWritten);
        EXPECT_EQ(test::ReadFile(page) != old, row.bWritten);
        EXPECT_EQ(fs::status(page).permissions(), fs::perms{0640});
        EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 2);
        EXPECT_TRUE(fs::is_symlink(link));
    }
    ::umask(mask);
    fs::remove_all(folder);
}

// Colours are escape sequences around the same text.
TEST(Explain, ColoursChangeNoText)
{
    std::string text[2];
    for (const bool colours : {false, true}) {
        int fds[2];
        ASSERT_EQ(::pipe(fds), 0);
        {
            tool::cOutput out(fds[1]);
            const auto writer = tool::MakeTextWriter(out, colours);
            tool::Section section;
            section.title = "frame 1";
            section.damage = "the checksum is wrong";
            tool::Annotation item;
            item.bytes = Hex("63000000000000000000000001");
            item.uiTl = 1;
            item.eWhat = tool::eWHAT::VALUE;
            item.name = "value";
            item.value = "1";
            item.type = "unsigned";
            item.damage = item.note = "why";
            section.items.push_back(item);
            writer->Write(section);
            out.Drain();
        }
        ::close(fds[1]);
        char buffer[4096];
        text[colours].assign(buffer, static_cast<std::size_t>(::read(fds[0], buffer, 4096)));
        ::close(fds[0]);
    }
    EXPECT_NE(text[0], text[1]);
    for (std::size_t at = 0; (at = text[1].find('\x1B')) != std::string::npos;)
        text[1].erase(at, text[1].find('m', at) + 1 - at);
    EXPECT_EQ(text[0], text[1]);
}

} // namespace
