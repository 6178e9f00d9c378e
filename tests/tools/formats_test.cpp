// Hand-built records in every format.
#include "tests/support/record_text.h"
#include "tools/output/escape.h"
#include "tools/output/output_format.h"
#include "tools/output/terminal.h"
#include "tools/reading/correction.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace
{

using test::Rec;

// The second message of a file, with that body.
vorn::cRecord Message(unsigned identifier, const std::string& body)
{
    return Rec("SmlMsgHeader={smlMsgIdentifier=u" + std::to_string(identifier) + "} " + body +
               " SmlStatus={Error=i0 MsgNoInFile=u2} SmltFlags=u16");
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

const std::string kEnergy = "objName=U0x0100010800FF ";

// Values of every kind, and the last entry but one without any, which makes no reading.
vorn::cRecord ListResponse()
{
    const std::string time = "{type=u1 value=u90} ";
    std::string entries;
    for (const std::string& entry :
         {kEnergy + "status=U386 unit=u30 scaler=i-1 value=I-147",
          std::string("objName=U0x0100630100FF unit=u58 scaler=i3 value=U18446744073709551615"),
          kEnergy + "valTime=" + time + "value=u5",
          kEnergy + "value=x6122622C635C", // a"b,c and a backslash
          kEnergy + "value=xC3A9001B", kEnergy + "value=b1 unit=u255",
          kEnergy + "value={smlList={type=u1 SmlTime=" + time + "}}", kEnergy + "unit=u30",
          kEnergy + "value=x"})
        entries += "valListEntry={" + entry + "} ";
    return Message(SML_GET_LIST_RES,
                   "SmlGetListRes={serverId=x0A01 actSensorTime={type=u1 value=u80} valList={" +
                       entries + "}}");
}

vorn::cRecord ProfileResponse()
{
    return Message(SML_GET_PROFILE_LIST_RES,
                   "SmlGetProfListRes={serverId=x0A01 actTime={type=u2 value=u1700000900} "
                   "valTime={type=u2 value=u1700000000} status=U4 period_List={SmlPeriodEntry={" +
                       kEnergy + "unit=u30 scaler=i0 value=u12}}}");
}

// A text that begins on the line below.
std::string Lines(const char* text) { return text + 1; }

TEST(Formats, RecordsAreCompleteAndLossless)
{
    EXPECT_EQ(Print(tool::MakeRecordsFormat,
                    Rec("u=u4294967295 s=i-2147483648 u64=U18446744073709551615 "
                        "s64=I-9223372036854775808 yes=b1 no=b0 data=x00FF2261 none=x empty={} "
                        "value={valListEntry=u1} valList={valListEntry={unit=u1} valListEntry={}} "
                        "parTreePath={path_Entry=U1 path_Entry=U2} "
                        "header_List={pObjHdEntry={pObjHdEntry={unit=u30}}} child_List={}")),
              R"({"event":"message","frame":7,"record":{"u":4294967295,"s":-2147483648,)"
              R"("u64":18446744073709551615,"s64":-9223372036854775808,"yes":true,"no":false,)"
              R"("data":"00ff2261","none":"","empty":{},"value":{"valListEntry":1},)"
              R"("valList":[{"unit":1},{}],"parTreePath":[1,2],)"
              R"("header_List":[{"pObjHdEntry":{"unit":30}}],"child_List":[]}})"
              "\n");
}

TEST(Formats, ReadingsAsJson)
{
    const std::string energy = R"("obis":"1-0:1.8.0*255","name":"Active energy import",)";
    const auto lines = [](const std::vector<std::string>& readings) {
        std::string text;
        for (const std::string& reading : readings)
            text += R"({"frame":7,"message":2,"server":"0a01","time":)" + reading + "}\n";
        return text;
    };
    EXPECT_EQ(
        Print(tool::MakeReadingsFormat, ListResponse()),
        lines({"80," + energy + R"("value":-14.7,"unit":"Wh","scaler":-1,"raw":-147,"status":386)",
               R"(80,"obis":"1-0:99.1.0*255","value":18446744073709551615000,)"
               R"("unit":"unit?","scaler":3,"raw":18446744073709551615)",
               "90," + energy + R"("value":5,"raw":5)", "80," + energy + R"("value":"a\"b,c\\")",
               "80," + energy + R"("value":"c3a9001b")", "80," + energy + R"("value":true)",
               "80," + energy + R"("value":90,"raw":90)", "80," + energy + R"("value":"")"}));
    EXPECT_EQ(Print(tool::MakeReadingsFormat, ProfileResponse()),
              lines({"1700000000," + energy +
                     R"("value":12,"unit":"Wh","scaler":0,"raw":12,"status":4)"}));
}

TEST(Formats, ReadingsAsCsv)
{
    EXPECT_EQ(Print(tool::MakeCsvFormat, ListResponse()), Lines(R"(
7,2,0a01,80,1-0:1.8.0*255,Active energy import,-14.7,Wh,-1,-147,386
7,2,0a01,80,1-0:99.1.0*255,,18446744073709551615000,unit?,3,18446744073709551615,
7,2,0a01,90,1-0:1.8.0*255,Active energy import,5,,,5,
7,2,0a01,80,1-0:1.8.0*255,Active energy import,"a""b,c\",,,,
7,2,0a01,80,1-0:1.8.0*255,Active energy import,c3a9001b,,,,
7,2,0a01,80,1-0:1.8.0*255,Active energy import,true,,,,
7,2,0a01,80,1-0:1.8.0*255,Active energy import,90,,,90,
7,2,0a01,80,1-0:1.8.0*255,Active energy import,,,,,
)"));
}

TEST(Formats, WhatIsEscapedWhere)
{
    const struct {
        const char* pcText;
        const char* pcTerminal;
        const char* pcHtml;
        const char* pcJson;
        const char* pcCsv;
        bool bPlain = false;
    } rows[] = {
        {"a\\b", "a\\b", "a\\b", "a\\\\b", "a\\b"},
        {"<\"&'>", "<\"&'>", "&#60;&#34;&#38;&#39;&#62;", "<\\\"&'>", "\"<\"\"&'>\""},
        {"m\xC2\xB3 \xF0\x9F\x98\x80", "m\xC2\xB3 \xF0\x9F\x98\x80", "m\xC2\xB3 \xF0\x9F\x98\x80",
         "m\xC2\xB3 \xF0\x9F\x98\x80", "m\xC2\xB3 \xF0\x9F\x98\x80"},
        {"\xC2\x9B", "\\u009b", "\\u009b", "\\u009b", "\\u009b"},
        {"\xE2\x80\xAE", "\\u202e", "\\u202e", "\\u202e", "\\u202e"},
        {"\xE2\x80", "\\xe2\\x80", "\\xe2\\x80", "\\ufffd\\ufffd", "\\xe2\\x80"},
        {"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80", "\\xf4\\x90\\x80\\x80",
         "\\ufffd\\ufffd\\ufffd\\ufffd", "\\xf4\\x90\\x80\\x80"},
        {"=1+1", "=1+1", "=1+1", "=1+1", "'=1+1"},
        {"-2,A1", "-2,A1", "-2,A1", "-2,A1", "\"'-2,A1\""},
        {"+49.5", "+49.5", "+49.5", "+49.5", "+49.5"},
        {"-1-1", "-1-1", "-1-1", "-1-1", "'-1-1"},
        {"@A1", "@A1", "@A1", "@A1", "'@A1"},
        {"\t=1", "\\x09=1", "\\x09=1", "\\u0009=1", "\\x09=1"},
        {"", "", "", "", "", true},
        {"1-0:1.8.0*255", "1-0:1.8.0*255", "1-0:1.8.0*255", "1-0:1.8.0*255", "1-0:1.8.0*255", true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(tool::ForTerminal(row.pcText), row.pcTerminal);
        EXPECT_EQ(tool::ForHtml(row.pcText), row.pcHtml);
        EXPECT_EQ(tool::ForJson(row.pcText), row.pcJson);
        EXPECT_EQ(tool::ForCsv(row.pcText), row.pcCsv);
        EXPECT_EQ(tool::IsPlain(row.pcText), row.bPlain) << row.pcText;
    }
}

TEST(Formats, LinesCutToAWidth)
{
    const struct {
        const char* pcLine;
        unsigned uiColumns;
        const char* pcCut;
    } rows[] = {
        {"abc", 3, "abc"},
        {"abcd", 3, "abc"},
        {"\x1B[1mabcd\x1B[0m", 3, "\x1B[1mabc\x1B[0m"},
        {"m\xC2\xB3/h", 3, "m\xC2\xB3/"},
        {"\xE6\xB0\xB4\xE6\xB0\xB4x", 4, "\xE6\xB0\xB4\xE6\xB0\xB4"},
        {"a\xE6\xB0\xB4\xE6\xB0\xB4x", 4, "a\xE6\xB0\xB4"}, // half of one is none
        {"ab\x1B", 1, "a\x1B"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(tool::CutToWidth(row.pcLine, row.uiColumns), row.pcCut);
}

// The number that came stays, and the correction is named.
TEST(Formats, CorrectedReadings)
{
    const std::string entry = "valListEntry={objName=U0x0100100700FF unit=u27 scaler=i-1 value=";
    const vorn::cRecord record =
        Message(SML_GET_LIST_RES, "SmlGetListRes={valList={" + entry + "i-536} " + entry + "i7}}}");
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
    EXPECT_EQ(Print(tool::MakeTextFormat, ProfileResponse()), Lines(R"(
frame 7  server 0a01  time 2023-11-14 22:28:20Z
  1-0:1.8.0*255          Active energy import  12 Wh  at 2023-11-14 22:13:20Z
)"));
    EXPECT_EQ(Print(tool::MakeTextFormat,
                    Message(SML_GET_PROC_PAR_RES,
                            "SmlGetProcParRes={serverId=x0A01 "
                            "parTreePath={path_Entry=U0x8181C78801FF} "
                            "parTree={parName=U0x8181C78801FF child_List={"
                            "parTree={parName=U0x8181C7880101 procParVal={type=u1 value=x6F6B}} "
                            "parTree={parName=U0x8181C7880102 procParVal={type=u4 "
                            "value={SmlTime={type=u1 value=u9}}}}}}}")),
              Lines(R"(
frame 7  server 0a01
  SmlGetProcParRes
    serverId  0a01
    parTreePath
      path_Entry  129-129:199.136.1*255
    129-129:199.136.1*255
      129-129:199.136.1*1  ok
      129-129:199.136.1*2
        SmlTime  9 s
)"));
    EXPECT_EQ(Print(tool::MakeTextFormat,
                    Message(SML_ATTENTION_RES, "SmlAttentionRes={attentionNo=U0x8181C7C7FE01 "
                                               "attentionMsg=x6E6F2073756368206D657373616765}")),
              Lines(R"(
frame 7
  SmlAttentionRes
    attentionNo  8181c7c7fe01  unknown message
    attentionMsg  no such message
)"));
}

} // namespace
