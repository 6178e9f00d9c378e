// The ways back: records to SML, SML to frames and out of them, and what check counts.
#include "tests/support/captures.h"
#include "tests/support/hex.h"
#include "tests/tools/program.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace
{

using test::Program;

const std::string kExample = QUARN_EXAMPLES "/household.bin";
constexpr std::size_t kFrame = 252; // of the example: five frames, the third one damaged

struct Ran {
    int iStatus;
    std::string out;
    std::string err;
};

Ran Quarn(std::vector<std::string> args, const std::string& input = "")
{
    Program quarn(std::move(args));
    quarn.Write(input);
    const int status = quarn.Finish();
    return {status, quarn.out, quarn.err};
}

// A message of kind id, with one body.
std::string Line(const std::string& id, const std::string& body)
{
    return R"({"SmlMsgHeader":{"transactionId":"01","groupNo":0,"abortOnError":0,)"
           R"("smlMsgIdentifier":)" +
           id + "}," + body + "}\n";
}

const std::string kOpen = Line("257", R"("SmlOpenRes":{"reqFileId":"02","serverId":"0a01"})");
const std::string kClose = Line("513", R"("SmlCloseRes":{})");
const std::string kTime = R"({"type":1,"value":1234567890})";
const std::string kLocal = R"({"type":3,"value":7,"locOffset":60,"seaOffset":-1})";
const std::string kPath = R"("parTreePath":[1099511628031,2])";
const std::string kUser = R"("serverId":"0a01","username":"61","password":"62",)";
const std::string kProfile = R"("SmlGetProfileReq":{)" + kUser + R"("beginTime":)" + kTime +
                             R"(,"endTime":)" + kLocal + "," + kPath +
                             R"(,"object_List":[1,281474976710655]})";
const std::string kTree =
    R"("parTree":{"parName":129,"child_List":[)"
    R"({"parName":1,"procParVal":{"type":1,"value":-5}},)"
    R"({"parName":2,"procParVal":{"type":2,"value":{"objName":3,"unit":30,"scaler":-1,"value":4}}},)"
    R"({"parName":5,"procParVal":{"type":4,"value":{"SmlTime":)" +
    kTime + R"(}}},{"parName":6,"procParVal":{"type":5,"value":{"objName":7,"value":true}}}]})";

// Lines of every kind that can be encoded, with values of every size and kind.
const std::string kAllKinds[] = {
    Line("256", R"("SmlOpenReq":{"clientId":"01","reqFileId":"02","smlVersion":1})"),
    kOpen,
    Line("768", kProfile),
    Line("1024", kProfile),
    Line("1025",
         R"("SmlGetProfListRes":{"serverId":"0a01","actTime":)" + kTime + R"(,"regPeriod":900,)" +
             kPath + R"(,"valTime":)" + kLocal +
             R"(,"status":18446744073709551615,"period_List":[{"objName":1,"unit":30,)"
             R"("scaler":-3,"value":4294967296}],"rawdata":"0102","periodSignature":"03"})"),
    Line("1280", R"("SmlGetProcParReq":{)" + kUser + kPath + "}"),
    Line("1281", R"("SmlGetProcParRes":{"serverId":"0a01",)" + kPath + "," + kTree + "}"),
    Line("1536", R"("SmlSetProcParReq":{)" + kUser + kPath + "," + kTree + "}"),
    Line("1792", R"("SmlGetListReq":{"clientId":"01","serverId":"0a01","listName":1099611})"),
    Line("1793", R"("SmlGetListRes":{"serverId":"0a01","actSensorTime":)" + kTime +
                     R"(,"valList":[{"objName":1,"status":386,"valTime":)" + kLocal +
                     R"(,"unit":30,"scaler":-1,"value":-9223372036854775808},)"
                     R"({"objName":2,"value":4294967295},{"objName":3,"value":-2147483648},)"
                     R"({"objName":4,"value":"ff00"},{"objName":5,"value":{"smlList":{"type":1,)"
                     R"("SmlTime":)" +
                     kTime + R"(}}}],"listSignature":"0b"})"),
    Line("65281", R"("SmlAttentionRes":{"serverId":"0a01","attentionNo":142394398735360,)"
                  R"("attentionMsg":"6e6f"})"),
    Line("512", R"("SmlCloseReq":{"globalSignature":"0c"})"),
    kClose,
};

// The body of a message, as decode prints it: fields without content and the envelope left out.
std::string BodyOf(const std::string& line)
{
    std::string body = line.substr(line.find("\"Sml", line.find("smlMsgIdentifier")));
    body.resize(std::min(body.find(",\"SmlCrc\""), body.rfind('}')));
    for (const char* nothing :
         {R"("codepage":"",)", R"(,"refTime":{})", R"(,"serverId":"","username":"","password":"")",
          R"(,"serverId":"")", R"(,"username":"")", R"(,"password":"")"}) {
        const std::size_t at = body.find(nothing);
        if (at != std::string::npos)
            body.erase(at, std::string(nothing).size());
    }
    return body;
}

TEST(Inverse, MessagesOfEveryKindSayWhatWasMeant)
{
    for (const std::string& line : kAllKinds) {
        const bool opens = line.find("SmlOpen") != std::string::npos;
        const Ran encoded = Quarn({"encode"}, opens ? line : kOpen + line);
        EXPECT_EQ(encoded.iStatus, 0) << line << encoded.err;
        const Ran decoded = Quarn({"decode", "--format=records", "--input=raw"}, encoded.out);
        std::istringstream lines(decoded.out);
        std::string told;
        for (int i = opens ? 1 : 2; i > 0; --i)
            std::getline(lines, told);
        EXPECT_EQ(BodyOf(told), BodyOf(line));
    }
}

TEST(Inverse, Refusals)
{
    const auto list = [](const std::string& entries) {
        return Line("1793", R"("SmlGetListRes":{"serverId":"0a01","valList":[)" + entries + "]}");
    };
    std::string longList = R"({"objName":1,"value":1})";
    for (int i = 1; i < 400; ++i)
        longList += R"(,{"objName":1,"value":1})";
    const std::string deep = R"({"value":)";
    std::string deepLine;
    for (int i = 0; i < 100000; ++i)
        deepLine += deep;
    const auto with = [](const std::string& status) {
        return Line("513", R"("SmlCloseRes":{},"SmlStatus":{)" + status + "}");
    };
    const struct {
        const char* pcName;
        std::string line;
        const char* pcErr; // behind "line 2: "
    } rows[] = {
        {"no JSON", "{\"event\"", "column 10: Missing a colon"},
        {"no object", "[1]", "is no JSON object"},
        {"a number alone", "5", "is no JSON object"},
        {"a zero byte", std::string("{}\0{", 4), "column 3: a zero byte"},
        {"something behind", "{} {}", "column 4: The document root must not be followed"},
        {"deep", deepLine, "nested deeper than 64 levels"},
        {"no header", "{}", "'smlMsgIdentifier' in 'SmlMsgHeader' is missing"},
        {"other event", R"({"event":"noise"})", "no event that is known"},
        {"unknown field", R"({"a\u001bb":1})", "no field is called 'a?b'"},
        {"unknown kind", Line("5", R"("SmlCloseRes":{})"), "no message is called 5"},
        {"kind without encoder", Line("769", R"("SmlGetProfPackRes":{})"),
         "a get-profile-pack response cannot be encoded"},
        {"body of another kind", Line("257", R"("SmlCloseRes":{})"), "'SmlOpenRes' is missing"},
        {"bad when read", with(R"("Error":-6,"Cast":2)"), "the message is wrong (status -6)"},
        {"a packet", with(R"("Error":0,"Cast":-1)"), "one packet of a longer message"},
        {"string for a number", list(R"({"objName":"01"})"), "'objName' cannot be a string"},
        {"no hex", list(R"({"objName":1,"value":"xy"})"), "'value' cannot be a string that is not"},
        {"half a byte", list(R"({"objName":1,"value":"012"})"), "'value' cannot be a string that"},
        {"number for an object", list("5"), "'valListEntry' cannot be a number"},
        {"fraction", list(R"({"objName":1,"value":1.5})"), "'value' cannot be a number that is no"},
        {"beyond 64 bits", list(R"({"objName":1,"value":18446744073709551616})"), "'value' cannot"},
        {"negative name", list(R"({"objName":-1,"value":1})"), "'objName' cannot be this negative"},
        {"null", list(R"({"objName":1,"value":null})"), "'value' cannot be null"},
        {"array for an object", R"({"record":[]})", "'record' cannot be an array"},
        {"unit of 9 bits", list(R"({"objName":1,"unit":256,"value":1})"), "'valList' cannot be"},
        {"name of 7 bytes", list(R"({"objName":281474976710656,"value":1})"), "'valList' cannot"},
        {"no value", list(R"({"objName":1})"), "'valList' cannot be"},
        {"too long", list(longList), "what it makes cannot be read"},
        {"a field twice",
         Line("513", R"("SmlCloseRes":{"globalSignature":"01",)"
                     R"("globalSignature":"01"})"),
         "a field stands there twice"},
        {"group of 9 bits",
         R"({"SmlMsgHeader":{"transactionId":"01","groupNo":256,"abortOnError":0,)"
         R"("smlMsgIdentifier":513},"SmlCloseRes":{}})",
         "'groupNo' cannot be encoded as it is"},
    };
    const Ran good = Quarn({"encode"}, kOpen + kClose);
    ASSERT_EQ(good.iStatus, 0);
    for (const auto& row : rows) {
        std::string line = row.line;
        line.erase(std::remove(line.begin(), line.end(), '\n'), line.end());
        const Ran ran = Quarn({"encode"}, kOpen + line + "\r\n\n" + kClose);
        EXPECT_EQ(ran.iStatus, 1) << row.pcName;
        EXPECT_EQ(ran.out, good.out) << row.pcName;
        EXPECT_NE(ran.err.find("standard input: line 2: "), std::string::npos) << row.pcName;
        EXPECT_NE(ran.err.find(row.pcErr), std::string::npos) << row.pcName << ": " << ran.err;
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << row.pcName << ran.err;
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

// A file of the test's own that holds bytes.
std::string FileOf(const char* name, const std::string& bytes)
{
    const std::string path = testing::TempDir() + "quarn_inverse_" + name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

TEST(Inverse, FramesThereAndBack)
{
    const std::string stream = test::ReadFile(kExample);
    const std::string frame = stream.substr(0, kFrame);
    const std::string payload = frame.substr(8, 236);
    std::string payloads;
    for (const std::size_t i : {0U, 1U, 3U, 4U})
        payloads += stream.substr(i * kFrame + 8, 236);
    const std::string third = stream.substr(2 * kFrame + 8, 236);
    const std::string escapes(9, '\x1B');
    const std::string escaped = Quarn({"frame"}, escapes).out;
    std::string large(1000000, '\x1B');
    large += 'x';
    const std::string framed = Quarn({"frame", FileOf("large", large)}).out;
    const struct {
        const char* pcName;
        std::vector<std::string> args;
        std::string input;
        int iStatus;
        std::string out;
        const char* pcErr;
    } rows[] = {
        {"a file", {"frame"}, payload, 0, frame, ""},
        {"no bytes, no frame", {"frame"}, "", 0, "", ""},
        {"each input", {"frame", "-", "-"}, payload, 0, frame, ""},
        {"no such file", {"frame", "/nonexistent", "-"}, payload, 2, frame, "cannot be opened"},
        {"escapes", {"unframe"}, escaped, 0, escapes, ""},
        {"many escapes", {"unframe", FileOf("framed", framed)}, "", 0, large, ""},
        {"bad checksum", {"unframe"}, stream, 1, payloads, "frame 3: the checksum is wrong"},
        {"kept",
         {"unframe", "--keep-bad"},
         stream.substr(2 * kFrame),
         1,
         third + stream.substr(3 * kFrame + 8, 236) + stream.substr(4 * kFrame + 8, 236),
         "frame 1: the checksum is wrong"},
        {"noise before", {"unframe"}, "noise" + frame, 0, payload, "5 bytes before the first"},
        {"noise between",
         {"unframe"},
         frame + "noise" + frame,
         1,
         payload + payload,
         "5 bytes between frames, from byte 253"},
        {"cut off", {"unframe"}, frame + frame.substr(0, 99), 0, payload, "frame 2: cut off"},
        {"broken off", {"unframe"}, frame.substr(0, 99) + frame, 1, payload, "broken off"},
    };
    for (const auto& row : rows) {
        const Ran ran = Quarn(row.args, row.input);
        EXPECT_EQ(ran.iStatus, row.iStatus) << row.pcName << ran.err;
        EXPECT_TRUE(ran.out == row.out) << row.pcName << ": " << ran.out.size() << " bytes";
        EXPECT_NE(ran.err.find(row.pcErr), std::string::npos) << row.pcName << ran.err;
    }
}

TEST(Inverse, CheckCounts)
{
    const std::string stream = test::ReadFile(kExample);
    const struct {
        std::vector<std::string> args;
        std::string input;
        int iStatus;
        const char* pcOut;
    } rows[] = {
        {{"check", "--json"},
         "noise" + stream + "x" + stream.substr(0, 100),
         1,
         R"({"bytes":1366,"bytesOutside":6,"framesGood":4,"framesDamaged":1,"framesBroken":0,)"
         R"("framesCut":1,"messages":{"close response":5,"get-list response":4,)"
         R"("open response":6},"errors":[{"status":-6,)"
         R"("meaning":"the checksum of the message is wrong","count":1}],)"
         R"("servers":["0a0158595a0000123456"]})"},
        {{"check"}, stream, 1, "status -6, the checksum of the message is wrong"},
        {{"check", "--json", "-"}, "", 0, R"("bytes":0)"},
    };
    for (const auto& row : rows) {
        const Ran ran = Quarn(row.args, row.input);
        EXPECT_EQ(ran.iStatus, row.iStatus) << row.pcOut << ran.err;
        EXPECT_NE(ran.out.find(row.pcOut), std::string::npos) << row.pcOut << ": " << ran.out;
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
