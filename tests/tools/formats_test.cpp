// Hand-built records in every format.
#include "tests/support/hex.h"
#include "tools/output/format.h"
#include "tools/reading/correction.h"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>

namespace
{

// Builds records: Rec({{"type", 1U}, {"value", 5U}}).
struct Par {
    using Record = vorn::cRecord;
    Par(const char* n, int v) : add([=](Record& r) { r.AppendSIntPar(n, v, 0); }) {}
    Par(const char* n, unsigned v) : add([=](Record& r) { r.AppendUIntPar(n, v, 0); }) {}
    Par(const char* n, std::uint64_t v) : add([=](Record& r) { r.AppendUInt64Par(n, v, 0); }) {}
    Par(const char* n, std::int64_t v) : add([=](Record& r) { r.AppendSInt64Par(n, v, 0); }) {}
    Par(const char* n, bool v) : add([=](Record& r) { r.AppendBoolPar(n, v, 0); }) {}
    Par(const char* n, const std::string& v)
        : add([=](Record& r) { r.AppendDataPar(n, v.data(), static_cast<int>(v.size()), 0); })
    {
    }
    Par(const char* n, const char* v) : Par(n, std::string(v)) {}
    Par(const char* n, const Record& v) : add([=](Record& r) { r.AppendRecordPar(n, v, 0); }) {}

    std::function<void(Record&)> add;
};

vorn::cRecord Rec(std::initializer_list<Par> pars = {})
{
    vorn::cRecord record;
    for (const Par& par : pars)
        par.add(record);
    return record;
}

vorn::cRecord Message(unsigned identifier, const char* label, const vorn::cRecord& body)
{
    return Rec({{"SmlMsgHeader", Rec({{"smlMsgIdentifier", identifier}})},
                {label, body},
                {"SmlStatus", Rec({{"Error", 0}, {"MsgNoInFile", 2U}})},
                {"SmltFlags", 16U}});
}

std::string
Print(std::unique_ptr<tool::cFormat> (*make)(tool::cOutput&, const tool::FormatOptions&),
      const vorn::cRecord& record, const std::vector<tool::Correction>& corrections = {})
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
    tool::cOutput out(::fileno(file.get()));
    const std::unique_ptr<tool::cFormat> format = make(out, {false, !corrections.empty(), false});
    tool::Frame frame;
    frame.ullNumber = 7;
    const tool::MessageInfo info = tool::DescribeMessage(record);
    std::vector<tool::Reading> readings;
    tool::CollectReadings(info, readings);
    tool::Correct(corrections, info.server, readings);
    format->Message(frame, info, record, readings);
    out.Drain();
    std::rewind(file.get());
    std::string text(1 << 16, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    return text;
}

constexpr std::uint64_t kEnergy = 0x0100010800FF;

vorn::cRecord ListResponse()
{
    const auto entry = [](std::initializer_list<Par> pars) {
        return Par("valListEntry", Rec(pars));
    };
    const vorn::cRecord time = Rec({{"type", 1U}, {"value", 90U}});
    return Message(
        SML_GET_LIST_RES, "SmlGetListRes",
        Rec({{"serverId", test::Hex("0A01")},
             {"actSensorTime", Rec({{"type", 1U}, {"value", 80U}})},
             {"valList",
              Rec({entry({{"objName", kEnergy},
                          {"status", std::uint64_t{386}},
                          {"unit", 30U},
                          {"scaler", -1},
                          {"value", std::int64_t{-147}}}),
                   entry({{"objName", std::uint64_t{0x0100630100FF}},
                          {"unit", 58U},
                          {"scaler", 3},
                          {"value", std::numeric_limits<std::uint64_t>::max()}}),
                   entry({{"objName", kEnergy}, {"valTime", time}, {"value", 5U}}),
                   entry({{"objName", kEnergy}, {"value", std::string("a\"b,c\\")}}),
                   entry({{"objName", kEnergy}, {"value", std::string("\xC3\xA9\0\x1B", 4)}}),
                   entry({{"objName", kEnergy}, {"value", true}, {"unit", 255U}}),
                   entry({{"objName", kEnergy},
                          {"value", Rec({{"smlList", Rec({{"type", 1U}, {"SmlTime", time}})}})}}),
                   entry({{"objName", kEnergy}, {"unit", 30U}}), // no value: no reading
                   entry({{"objName", kEnergy}, {"value", std::string()}})})}}));
}

vorn::cRecord ProfileResponse()
{
    return Message(SML_GET_PROFILE_LIST_RES, "SmlGetProfListRes",
                   Rec({{"serverId", test::Hex("0A01")},
                        {"actTime", Rec({{"type", 2U}, {"value", 1700000900U}})},
                        {"valTime", Rec({{"type", 2U}, {"value", 1700000000U}})},
                        {"status", std::uint64_t{4}},
                        {"period_List", Rec({{"SmlPeriodEntry", Rec({{"objName", kEnergy},
                                                                     {"unit", 30U},
                                                                     {"scaler", 0},
                                                                     {"value", 12U}})}})}}));
}

TEST(Formats, RecordsAreCompleteAndLossless)
{
    const vorn::cRecord record = Rec(
        {{"u", 4294967295U},
         {"s", -2147483647 - 1},
         {"u64", std::numeric_limits<std::uint64_t>::max()},
         {"s64", std::numeric_limits<std::int64_t>::min()},
         {"yes", true},
         {"no", false},
         {"data", std::string("\0\xFF\"a", 4)},
         {"none", std::string()},
         {"empty", Rec()},
         {"value", Rec({{"valListEntry", 1U}})},
         {"valList", Rec({{"valListEntry", Rec({{"unit", 1U}})}, {"valListEntry", Rec()}})},
         {"parTreePath", Rec({{"path_Entry", std::uint64_t{1}}, {"path_Entry", std::uint64_t{2}}})},
         {"header_List", Rec({{"pObjHdEntry", Rec({{"pObjHdEntry", Rec({{"unit", 30U}})}})}})},
         {"child_List", Rec()}});
    EXPECT_EQ(Print(tool::MakeRecordsFormat, record),
              R"({"event":"message","frame":7,"record":{"u":4294967295,"s":-2147483648,)"
              R"("u64":18446744073709551615,"s64":-9223372036854775808,"yes":true,"no":false,)"
              R"("data":"00ff2261","none":"","empty":{},"value":{"valListEntry":1},)"
              R"("valList":[{"unit":1},{}],"parTreePath":[1,2],)"
              R"("header_List":[{"pObjHdEntry":{"unit":30}}],"child_List":[]}})"
              "\n");
}

TEST(Formats, ReadingsAsJson)
{
    const std::string head = R"({"frame":7,"message":2,"server":"0a01","time":)";
    const std::string energy = R"("obis":"1-0:1.8.0*255","name":"Active energy import",)";
    EXPECT_EQ(Print(tool::MakeReadingsFormat, ListResponse()),
              head + "80," + energy +
                  R"("value":-14.7,"unit":"Wh","scaler":-1,"raw":-147,"status":386})"
                  "\n" +
                  head +
                  R"(80,"obis":"1-0:99.1.0*255","value":18446744073709551615000,)"
                  R"("unit":"unit?","scaler":3,"raw":18446744073709551615})"
                  "\n" +
                  head + "90," + energy +
                  R"("value":5,"raw":5})"
                  "\n" +
                  head + "80," + energy +
                  R"("value":"a\"b,c\\"})"
                  "\n" +
                  head + "80," + energy +
                  R"("value":"c3a9001b"})"
                  "\n" +
                  head + "80," + energy +
                  R"("value":true})"
                  "\n" +
                  head + "80," + energy +
                  R"("value":90,"raw":90})"
                  "\n" +
                  head + "80," + energy +
                  R"("value":""})"
                  "\n");
    EXPECT_EQ(Print(tool::MakeReadingsFormat, ProfileResponse()),
              head + "1700000000," + energy +
                  R"("value":12,"unit":"Wh","scaler":0,"raw":12,"status":4})"
                  "\n");
}

TEST(Formats, ReadingsAsCsv)
{
    const std::string energy = ",1-0:1.8.0*255,Active energy import,";
    EXPECT_EQ(Print(tool::MakeCsvFormat, ListResponse()),
              "7,2,0a01,80" + energy + "-14.7,Wh,-1,-147,386\n" +
                  "7,2,0a01,80,1-0:99.1.0*255,,18446744073709551615000,unit?,3,"
                  "18446744073709551615,\n" +
                  "7,2,0a01,90" + energy + "5,,,5,\n" + "7,2,0a01,80" + energy +
                  "\"a\"\"b,c\\\",,,,\n" + "7,2,0a01,80" + energy + "c3a9001b,,,,\n" +
                  "7,2,0a01,80" + energy + "true,,,,\n" + "7,2,0a01,80" + energy + "90,,,90,\n" +
                  "7,2,0a01,80" + energy + ",,,,\n");
}

// The number that came stays, and the correction is named.
TEST(Formats, CorrectedReadings)
{
    const auto entry = [](int value) {
        return Par("valListEntry", Rec({{"objName", std::uint64_t{0x0100100700FF}},
                                        {"unit", 27U},
                                        {"scaler", -1},
                                        {"value", value}}));
    };
    const vorn::cRecord record = Message(SML_GET_LIST_RES, "SmlGetListRes",
                                         Rec({{"valList", Rec({entry(-536), entry(7)})}}));
    tool::Correction correction;
    ASSERT_TRUE(tool::ParseCorrection("16.7.0=unsigned", correction));
    const std::string head =
        R"({"frame":7,"message":2,"server":"","obis":"1-0:16.7.0*255","name":"Active power",)";
    EXPECT_EQ(Print(tool::MakeReadingsFormat, record, {correction}),
              head +
                  R"("value":6500.0,"unit":"W","scaler":-1,"raw":-536,"correction":"unsigned"})"
                  "\n" +
                  head +
                  R"("value":0.7,"unit":"W","scaler":-1,"raw":7})"
                  "\n");
    EXPECT_EQ(Print(tool::MakeCsvFormat, record, {correction}),
              "7,2,,,1-0:16.7.0*255,Active power,6500.0,W,-1,-536,,unsigned\n"
              "7,2,,,1-0:16.7.0*255,Active power,0.7,W,-1,7,,\n");
    EXPECT_EQ(Print(tool::MakeTextFormat, record, {correction}),
              "frame 7\n"
              "  1-0:16.7.0*255         Active power  6500.0 W  (unsigned of -536)\n"
              "  1-0:16.7.0*255         Active power     0.7 W\n");
}

TEST(Formats, TextAlignsReadingsAndOutlinesTheRest)
{
    EXPECT_EQ(Print(tool::MakeTextFormat, ProfileResponse()),
              "frame 7  server 0a01  time 2023-11-14 22:28:20Z\n"
              "  1-0:1.8.0*255          Active energy import  12 Wh  at 2023-11-14 22:13:20Z\n");

    const vorn::cRecord leaf = Rec({{"parName", std::uint64_t{0x8181C7880101}},
                                    {"procParVal", Rec({{"type", 1U}, {"value", "ok"}})}});
    const vorn::cRecord timed = Rec(
        {{"parName", std::uint64_t{0x8181C7880102}},
         {"procParVal",
          Rec({{"type", 4U}, {"value", Rec({{"SmlTime", Rec({{"type", 1U}, {"value", 9U}})}})}})}});
    const vorn::cRecord tree = Rec({{"parName", std::uint64_t{0x8181C78801FF}},
                                    {"child_List", Rec({{"parTree", leaf}, {"parTree", timed}})}});
    EXPECT_EQ(
        Print(tool::MakeTextFormat,
              Message(SML_GET_PROC_PAR_RES, "SmlGetProcParRes",
                      Rec({{"serverId", test::Hex("0A01")},
                           {"parTreePath", Rec({{"path_Entry", std::uint64_t{0x8181C78801FF}}})},
                           {"parTree", tree}}))),
        "frame 7  server 0a01\n"
        "  SmlGetProcParRes\n"
        "    serverId  0a01\n"
        "    parTreePath\n"
        "      path_Entry  129-129:199.136.1*255\n"
        "    129-129:199.136.1*255\n"
        "      129-129:199.136.1*1  ok\n"
        "      129-129:199.136.1*2\n"
        "        SmlTime  9 s\n");
    EXPECT_EQ(
        Print(tool::MakeTextFormat, Message(SML_ATTENTION_RES, "SmlAttentionRes",
                                            Rec({{"attentionNo", std::uint64_t{0x8181C7C7FE01}},
                                                 {"attentionMsg", "no such message"}}))),
        "frame 7\n"
        "  SmlAttentionRes\n"
        "    attentionNo  8181c7c7fe01  unknown message\n"
        "    attentionMsg  no such message\n");
}

} // namespace
