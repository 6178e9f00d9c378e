// Decimals, OBIS codes, units, status texts, hex text and the detection of what an input holds.
#include "tests/support/hex.h"
#include "tools/input/format.h"
#include "tools/input/hex_reader.h"
#include "tools/input/serial_settings.h"
#include "tools/reading/correction.h"
#include "tools/reading/decimal.h"
#include "tools/reading/obis.h"
#include "tools/reading/status.h"
#include "tools/reading/unit.h"

#include <gtest/gtest.h>
#include <limits>

namespace
{

using tool::Integer;

TEST(Tables, DecimalsAreExact)
{
    const struct {
        Integer number;
        int iScaler;
        std::string text;
    } rows[] = {
        {Integer::Of(147981129), -1, "14798112.9"},
        {Integer::Of(100), -2, "1.00"},
        {Integer::OfSigned(-5), -2, "-0.05"},
        {Integer::OfSigned(-50), -2, "-0.50"},
        {Integer::Of(0), -3, "0.000"},
        {Integer::Of(0), 5, "0"},
        {Integer::OfSigned(-12), 3, "-12000"},
        {Integer::Of(std::numeric_limits<std::uint64_t>::max()), 0, "18446744073709551615"},
        {Integer::Of(std::numeric_limits<std::uint64_t>::max()), -20, "0.18446744073709551615"},
        {Integer::OfSigned(std::numeric_limits<std::int64_t>::min()), -18, "-9.223372036854775808"},
        {Integer::OfSigned(std::numeric_limits<std::int64_t>::min()), 127,
         "-9223372036854775808" + std::string(127, '0')},
        {Integer::OfSigned(-1), -128, "-0." + std::string(127, '0') + "1"},
        {Integer::Of(1), 1000, "1" + std::string(127, '0')},
    };
    for (const auto& row : rows) {
        char text[tool::kMaxDecimal];
        ASSERT_LE(row.text.size(), sizeof text);
        EXPECT_EQ(std::string(text, tool::FormatDecimal(row.number, row.iScaler, text)), row.text);
    }
}

TEST(Tables, ObisCodesAndPatterns)
{
    const std::uint64_t energy = 0x0100010800FF;
    char text[tool::kMaxObis];
    EXPECT_EQ(std::string(text, tool::FormatObis(energy, text)), "1-0:1.8.0*255");
    EXPECT_EQ(std::string(text, tool::FormatObis(0xFFFFFFFFFFFF, text)), "255-255:255.255.255*255");

    const struct {
        const char* pcPattern;
        int iMatches; // -1: no pattern
        std::uint64_t ullCode;
    } rows[] = {
        {"1-0:1.8.0*255", 1, energy},
        {"1.8.0", 1, energy},
        {"1.8", 1, energy},
        {"1", 1, energy},
        {"*", 1, energy},
        {"1-0:*.8.*", 1, energy},
        {"*-*:1.8.0**", 1, energy},
        {"1.8.**255", 1, energy},
        {"1.8.1*255", 0, 0x010001080AFF}, // E is 10, not 1
        {"2.8.0", 0, energy},
        {"1-1:1.8.0", 0, energy},
        {"1.8.0*254", 0, energy},
        {"", -1, energy},
        {"1-0:", -1, energy},
        {"1.8.", -1, energy},
        {"1.8.0*", -1, energy},
        {"1.8.0*255*", -1, energy},
        {"1.8.256", -1, energy},
        {"1.8*0", -1, energy},
        {"-0:1.8", -1, energy},
        {"1:1.8", -1, energy},
        {"99999999999999999999", -1, energy},
        {"1.8.x", -1, energy},
    };
    for (const auto& row : rows) {
        tool::ObisPattern pattern;
        const bool good = tool::ParseObisPattern(row.pcPattern, pattern);
        EXPECT_EQ(good, row.iMatches >= 0) << row.pcPattern;
        if (good) {
            EXPECT_EQ(pattern.Matches(row.ullCode), row.iMatches == 1) << row.pcPattern;
        }
    }
    EXPECT_EQ(tool::ObisName(energy), "Active energy import");
    EXPECT_EQ(tool::ObisName(0x010001080061), "Active energy import, last 7 days");
    EXPECT_EQ(tool::ObisName(0x8181C78203FF), "Manufacturer");
    EXPECT_EQ(tool::ObisName(0x0100630100FF), "");
}

TEST(Tables, UnitsAndStatusTexts)
{
    EXPECT_EQ(tool::UnitSymbol(30), "Wh");
    EXPECT_EQ(tool::UnitSymbol(9), "°C");
    EXPECT_EQ(tool::UnitSymbol(72), "dB");
    for (const unsigned none : {0U, 255U})
        EXPECT_EQ(tool::UnitSymbol(none), "");
    for (const unsigned unknown : {58U, 73U, 254U, 256U, 4000000000U})
        EXPECT_EQ(tool::UnitSymbol(unknown), "unit?");
    EXPECT_STREQ(tool::StatusMeaning(-6), "the checksum of the message is wrong");
    EXPECT_STREQ(tool::StatusMeaning(12345), "refused for a reason that is not known");
    EXPECT_STREQ(tool::AttentionMeaning(0x8181C7C7FE03), "unknown server id");
    EXPECT_EQ(tool::AttentionMeaning(0x8181C7C8FE03), nullptr);
}

TEST(Tables, HexTextInAnyPieces)
{
    const struct {
        const char* pcText;
        bool bGood;
        const char* pcBytes;
        unsigned long long ullPosition;
        bool bHalf;
    } rows[] = {
        {"1b1B", true, "1B1B", 4, false},      {" 1\tb\r\n0 \v\f1 ", true, "1B01", 12, false},
        {"1b 0", true, "1B", 4, true},         {"", true, "", 0, false},
        {"1b 0x01", false, "1B", 4, true},     {"1b,01", false, "1B", 2, false},
        {"12\xC3\xA9", false, "12", 2, false},
    };
    for (const auto& row : rows) {
        for (const std::size_t piece : {1U, 100U}) {
            tool::cHexReader reader;
            std::string bytes;
            bool good = true;
            std::string_view text = row.pcText;
            for (; !text.empty() && good; text.remove_prefix(std::min(piece, text.size())))
                good = reader.Read(text.substr(0, piece), bytes);
            EXPECT_EQ(good, row.bGood) << row.pcText;
            EXPECT_EQ(test::ToHex(bytes), row.pcBytes) << row.pcText;
            EXPECT_EQ(reader.Position(), row.ullPosition) << row.pcText;
            EXPECT_EQ(reader.HasHalfByte(), row.bHalf) << row.pcText;
        }
    }
}

TEST(Tables, CorrectionsOfReadings)
{
    const struct {
        const char* pcCorrection;
        std::int64_t llRaw;
        int iType;        // kind of parameter that holds it
        std::string text; // corrected; empty: as it is
    } rows[] = {
        {"16.7.0=unsigned", -536, vorn::TYPE_SINT, "65000"},
        {"*=unsigned", -32768, vorn::TYPE_SINT, "32768"},
        {"*=unsigned", -1, vorn::TYPE_SINT, "65535"},
        {"*=unsigned", -32769, vorn::TYPE_SINT, "4294934527"},
        {"*=unsigned", -536, vorn::TYPE_SINT64, "18446744073709551080"},
        {"*=unsigned", 536, vorn::TYPE_SINT, ""},
        {"*=sign8", 251, vorn::TYPE_UINT, "-5"},
        {"*=sign8", 128, vorn::TYPE_SINT, "-128"},
        {"*=sign8", 255, vorn::TYPE_UINT64, "-1"},
        {"*=sign8", 127, vorn::TYPE_UINT, ""},
        {"*=sign8", 256, vorn::TYPE_UINT, ""},
        {"*=sign8", -5, vorn::TYPE_SINT, ""},
        {"1.8.0=sign8", 251, vorn::TYPE_UINT, ""},
        {"0A01/*=sign8", 251, vorn::TYPE_UINT, "-5"},
        {"0a02/*=sign8", 251, vorn::TYPE_UINT, ""},
    };
    for (const auto& row : rows) {
        tool::Correction correction;
        ASSERT_TRUE(tool::ParseCorrection(row.pcCorrection, correction)) << row.pcCorrection;
        vorn::cRecord record;
        if (row.iType == vorn::TYPE_SINT)
            record.AppendSIntPar("value", static_cast<int>(row.llRaw), 0);
        else if (row.iType == vorn::TYPE_SINT64)
            record.AppendSInt64Par("value", row.llRaw, 0);
        else if (row.iType == vorn::TYPE_UINT)
            record.AppendUIntPar("value", static_cast<unsigned>(row.llRaw), 0);
        else
            record.AppendUInt64Par("value", static_cast<std::uint64_t>(row.llRaw), 0);
        std::vector<tool::Reading> readings(1);
        readings[0].ullObis = 0x0100100700FF;
        readings[0].pValue = &*record.begin();
        tool::Correct({correction}, "\x0A\x01", readings);
        char text[tool::kMaxDecimal];
        const std::optional<Integer>& corrected = readings[0].corrected;
        EXPECT_EQ(corrected ? std::string(text, tool::FormatDecimal(*corrected, 0, text)) : "",
                  row.text)
            << row.pcCorrection << ' ' << row.llRaw;
        EXPECT_EQ(*readings[0].pcCorrection != '\0', corrected.has_value());
    }
    for (const char* bad : {"", "1.8.0", "=sign8", "1.8.0=", "1.8.x=sign8", "1.8.0=sign16",
                            "/1.8.0=sign8", "0a0/1.8.0=sign8", "0x/1.8.0=sign8", "0a01/=sign8"}) {
        tool::Correction correction;
        EXPECT_FALSE(tool::ParseCorrection(bad, correction)) << bad;
    }
}

TEST(Tables, SerialSettings)
{
    const struct {
        const char* pcText;
        bool bGood;
        tool::SerialSettings settings;
    } rows[] = {
        {"9600,8N1", true, {9600, 8, 'N', 2}},
        {"300,7e1.5", true, {300, 7, 'E', 3}},
        {"115200,5O2", true, {115200, 5, 'O', 4}},
        {"", false, {}},
        {"9600", false, {}},
        {"9600,", false, {}},
        {"9600,8N", false, {}},
        {"9600;8N1", false, {}},
        {"0,8N1", false, {}},
        {"-1,8N1", false, {}},
        {"9600,9N1", false, {}},
        {"9600,4N1", false, {}},
        {"9600,8X1", false, {}},
        {"9600,8N3", false, {}},
        {"9600,8N11", false, {}},
        {"99999999999,8N1", false, {}},
    };
    for (const auto& row : rows) {
        tool::SerialSettings settings;
        EXPECT_EQ(tool::ParseSerialSettings(row.pcText, settings), row.bGood) << row.pcText;
        if (row.bGood) {
            EXPECT_EQ(settings.uiBaud, row.settings.uiBaud) << row.pcText;
            EXPECT_EQ(settings.uiBits, row.settings.uiBits) << row.pcText;
            EXPECT_EQ(settings.cParity, row.settings.cParity) << row.pcText;
            EXPECT_EQ(settings.uiHalfStopBits, row.settings.uiHalfStopBits) << row.pcText;
        }
    }
}

// However short the head at which the question is settled, a longer one never changes the answer.
TEST(Tables, InputKindByFirstBytes)
{
    const std::string id64(128, '5');
    const struct {
        const char* pcName;
        std::string head;
        tool::eINPUT eKind;
    } rows[] = {
        {"frame", test::Hex("1B1B1B1B01010101 76"), tool::INPUT_FRAMED},
        {"inside a frame", test::Hex("0062006200726301"), tool::INPUT_FRAMED},
        {"a letter like a hex digit first", "a\x01\x02", tool::INPUT_FRAMED},
        {"nothing", "", tool::INPUT_FRAMED},
        {"open response", test::Hex("76 05 00000BBB 6200 6200 72 63 0101 76"), tool::INPUT_RAW},
        {"open request, tag in four bytes", test::Hex("7602016200620272650000010076"),
         tool::INPUT_RAW},
        {"longest transaction id", test::Hex("768402" + id64 + "6200620072630100"),
         tool::INPUT_RAW},
        {"message of another kind", test::Hex("760500000BBB 6200 6200 72 63 0701"),
         tool::INPUT_FRAMED},
        {"list of six, no id", test::Hex("7662 01 6200"), tool::INPUT_FRAMED},
        {"cut short", test::Hex("76050000"), tool::INPUT_RAW},
        {"hex", " 1b1b1b1b 01010101\n760700160452ca7e 62006200", tool::INPUT_HEX},
        {"short hex", "1b1b1b1b", tool::INPUT_HEX},
        {"hex digits, then none", "1b1b1b1b0101010176070016045\x02", tool::INPUT_FRAMED},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(tool::DetectInput(row.head, true), row.eKind) << row.pcName;
        for (std::size_t n = 0; n <= row.head.size(); ++n) {
            const tool::eINPUT early = tool::DetectInput(row.head.substr(0, n), false);
            if (early != tool::INPUT_AUTO) {
                EXPECT_EQ(early, row.eKind) << row.pcName << " after " << n;
            }
        }
    }
}

} // namespace
