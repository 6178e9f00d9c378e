// The way back: records to SML and to frames, which then say the same; and what check counts.
#include "tests/roundtrip/generator.h"
#include "tests/support/captures.h"
#include "tests/support/rows.h"
#include "tests/tools/program.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

namespace
{

using test::Quarn;
using test::Ran;

const std::string kExample = QUARN_EXAMPLES "/household.bin";

// A message of kind id, with one body.
std::string Line(const std::string& id, const std::string& body)
{
    return R"({"SmlMsgHeader":{"transactionId":"01","groupNo":0,"abortOnError":0,)"
           R"("smlMsgIdentifier":)" +
           id + "}," + body + "}\n";
}

const std::string kOpen = Line("257", R"("SmlOpenRes":{"reqFileId":"02","serverId":"0a01"})");
const std::string kClose = Line("513", R"("SmlCloseRes":{})");

std::string Decoded(const std::string& sml)
{
    return Quarn({"decode", "--format=records", "--input=raw"}, sml).out;
}

// The lines of records without what depends on the form of numbers: checksums and bytes.
std::string Bodies(const std::string& records)
{
    std::string bodies;
    std::istringstream lines(records);
    for (std::string line; std::getline(lines, line);)
        bodies +=
            line.substr(0, std::min(line.find(R"(,"SmlCrc")"), line.find(R"(,"crc")"))) + '\n';
    return bodies;
}

TEST(Inverse, MessagesOfEveryKindSayWhatWasMeant)
{
    test::Choices choices(1);
    std::string sml;
    std::set<std::string> labels;
    for (int round = 0; round < 60; ++round) {
        for (const test::Sent& sent : test::MakeFile(choices, 3)) {
            const std::string bytes = sent.Bytes();
            sml += bytes.size() <= SML_MESSAGE_STORE ? bytes : ""; // else it comes in packets
            for (const test::Element& element : sent.kind->body)
                labels.emplace(element.label);
        }
    }
    for (const char* refused : {"withRawdata", "attribute"})
        labels.erase(refused);
    const std::string records = Decoded(sml);
    const Ran encoded = Quarn({"encode"}, records);
    EXPECT_EQ(encoded.iStatus, 0) << encoded.err;
    EXPECT_EQ(Bodies(Decoded(encoded.out)), Bodies(records));
    for (const std::string& label : labels)
        EXPECT_NE(records.find('"' + label + "\":"), std::string::npos) << label;
}

std::string Repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

TEST(Inverse, Refusals)
{
    std::vector<test::Row> rows = test::Rows("tools/encode_refusals.txt", 3);
    rows.push_back({"a zero byte", "column 3: a zero byte", std::string("{}\0{", 4)});
    rows.push_back({"deep", "nested deeper than 64 levels", Repeated(R"({"value":)", 100000)});
    rows.push_back(
        {"too long", "a get-list response of more than 4000 bytes cannot be encoded: put less",
         R"(@1793 "SmlGetListRes":{"serverId":"0a01","valList":[{"objName":1,"value":1})" +
             Repeated(R"(,{"objName":1,"value":1})", 399) + "]}"});
    const Ran good = Quarn({"encode"}, kOpen + kClose);
    ASSERT_EQ(good.iStatus, 0);
    for (const test::Row& row : rows) {
        SCOPED_TRACE(row[0]);
        std::string line = row[2];
        if (line[0] == '@') {
            const std::size_t blank = line.find(' ');
            line = Line(line.substr(1, blank - 1), line.substr(blank + 1));
            line.pop_back();
        }
        const Ran ran = Quarn({"encode"}, kOpen + line + "\r\n\n" + kClose);
        EXPECT_EQ(ran.iStatus, 1);
        EXPECT_EQ(ran.out, good.out);
        EXPECT_NE(ran.err.find("standard input: line 2: "), std::string::npos) << ran.err;
        EXPECT_NE(ran.err.find(row[1]), std::string::npos) << ran.err;
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    }
}

TEST(Inverse, FilesBecomeFrames)
{
    const struct {
        const char* pcName;
        std::string lines;
        int iStatus;
        const char* pcErr;
        const char* pcFrames; // what check counts: good frames
    } rows[] = {
        {"two files", kOpen + kClose + kOpen + kClose, 0, "", R"("framesGood":2)"},
        {"not closed, another follows", kOpen + kOpen + kClose, 1,
         "line 1: the file that it opens is not closed", R"("framesGood":2)"},
        {"not closed at the end", kOpen + kClose + kOpen, 1, "line 3: the file",
         R"("framesGood":2)"},
        {"in no file", kClose + kOpen + kClose, 1, "line 1: in no file", R"("framesGood":1)"},
    };
    for (const auto& row : rows) {
        const Ran ran = Quarn({"encode", "--frame"}, row.lines);
        EXPECT_EQ(ran.iStatus, row.iStatus) << row.pcName;
        EXPECT_NE(ran.err.find(row.pcErr), std::string::npos) << row.pcName << ran.err;
        const std::string counts = Quarn({"check", "--json"}, ran.out).out;
        EXPECT_NE(counts.find(row.pcFrames), std::string::npos) << row.pcName << counts;
    }
}

// Readings of the first frames, without their places, which change when frames are left out.
std::string Values(const std::string& readings, std::size_t frames)
{
    constexpr std::size_t kNumber = 9; // behind {"frame":
    std::string values;
    std::istringstream lines(readings);
    for (std::string line; std::getline(lines, line);) {
        if (std::stoul(line.substr(kNumber)) <= frames)
            values += line.substr(line.find("\"server\"")) + '\n';
    }
    return values;
}

// The lines of frames that are good, and so are all their messages.
std::string GoodFrames(const std::string& records)
{
    std::string good;
    std::string frame;
    std::istringstream lines(records);
    for (std::string line; std::getline(lines, line);) {
        frame += line + '\n';
        if (line.find(R"({"event":"frame")") == std::string::npos)
            continue;
        if (line.find(R"("crc":"ok")") != std::string::npos)
            good += frame;
        frame.clear();
    }
    return good;
}

std::vector<std::filesystem::path> Inputs()
{
    std::vector<std::filesystem::path> inputs = test::Captures();
    inputs.emplace_back(kExample);
    return inputs;
}

TEST(Inverse, ReadingsSurviveTheWayThereAndBack)
{
    for (const std::filesystem::path& path : Inputs()) {
        const std::string all = Quarn({"decode", "--format=records", path.string()}).out;
        const std::string last = all.substr(all.rfind(R"({"event":"frame","frame":)") + 25);
        const std::string records = GoodFrames(all);
        const Ran encoded = Quarn({"encode", "--frame"}, records);
        const bool bad = records.find("\"Error\":-") != std::string::npos;
        EXPECT_EQ(encoded.iStatus, bad ? 1 : 0) << path << encoded.err;
        const std::string again = Quarn({"decode"}, encoded.out).out;
        const std::string once = Quarn({"decode", path.string()}).out;
        // Of a frame that is cut off, decode prints what it can; its records have no end.
        EXPECT_EQ(Values(again, std::string::npos), Values(once, std::stoul(last))) << path;
        EXPECT_EQ(again.empty(), once.empty()) << path;
    }
}

// The table beside the recordings: "| meter-01 | bytes | finished frames | CRC errors | ...".
TEST(Inverse, CheckCountsTheFramesOfCaptures)
{
    std::ifstream table(test::CapturesDir() / "README.md");
    int found = 0;
    for (std::string line; std::getline(table, line);) {
        std::replace(line.begin(), line.end(), '|', ' ');
        std::istringstream words(line);
        std::string name;
        std::uint64_t bytes = 0;
        std::uint64_t frames = 0;
        std::uint64_t damaged = 0;
        if (line.find("meter-") == std::string::npos ||
            !(words >> name >> bytes >> frames >> damaged))
            continue;
        ++found;
        const Ran ran =
            Quarn({"check", "--json", (test::CapturesDir() / (name + ".bin")).string()});
        for (const auto& [key, count] : std::map<std::string, std::uint64_t>{
                 {"bytes", bytes}, {"framesGood", frames - damaged}, {"framesDamaged", damaged}}) {
            const std::string told = '"' + key + "\":" + std::to_string(count) + ',';
            EXPECT_NE(ran.out.find(told), std::string::npos) << name << told << ran.out;
        }
    }
    if (found == 0)
        GTEST_SKIP() << "no captures in " << test::CapturesDir() << " (set QUARN_CAPTURES)";
}

} // namespace
