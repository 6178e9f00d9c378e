// Decimals, OBIS codes, units, status texts, hex text and the detection of what an input holds.
#include "tests/support/hex.h"
#include "tests/support/record_text.h"
#include "tests/support/rows.h"
#include "tools/input/format.h"
#include "tools/input/hex_reader.h"
#include "tools/input/serial_settings.h"
#include "tools/reading/correction.h"
#include "tools/reading/decimal.h"
#include "tools/reading/obis.h"
#include "tools/reading/status.h"
#include "tools/reading/unit.h"

#include <gtest/gtest.h>
#include <map>

namespace
{

using tool::Integer;

std::string Decimal(const Integer& number, int scaler)
{
    char text[tool::kMaxDecimal];
    const std::size_t size = tool::FormatDecimal(number, scaler, text);
    EXPECT_LE(size, sizeof text);
    return {text, size};
}

std::string Exact(const std::string& number, const std::string& scaler)
{
    return Decimal(number[0] == '-' ? Integer::OfSigned(std::stoll(number))
                                    : Integer::Of(std::stoull(number)),
                   std::stoi(scaler));
}

std::uint64_t Code(const std::string& hex) { return std::stoull(hex, nullptr, 16); }

std::string Obis(const std::string& hex, const std::string&)
{
    char text[tool::kMaxObis];
    const std::string code(text, tool::FormatObis(Code(hex), text));
    return test::Trimmed(code + ' ' + std::string(tool::ObisName(Code(hex))));
}

std::string Pattern(const std::string& text, const std::string& hex)
{
    tool::ObisPattern pattern;
    if (!tool::ParseObisPattern(text, pattern))
        return "no pattern";
    return pattern.Matches(Code(hex)) ? "yes" : "no";
}

std::string Unit(const std::string& unit, const std::string&)
{
    return std::string(tool::UnitSymbol(static_cast<unsigned>(std::stoul(unit))));
}

std::string Status(const std::string& status, const std::string&)
{
    return tool::StatusMeaning(std::stoi(status));
}

std::string Attention(const std::string& hex, const std::string&)
{
    const char* const text = tool::AttentionMeaning(Code(hex));
    return text != nullptr ? text : "";
}

std::string Corrected(const std::string& option, const std::string& value)
{
    tool::Correction correction;
    if (!tool::ParseCorrection(option, correction))
        return "no correction";
    const vorn::cRecord record = test::Rec("value=" + value);
    std::vector<tool::Reading> readings(1);
    readings[0].ullObis = 0x0100100700FF;
    readings[0].pValue = &*record.begin();
    tool::Correct({correction}, "\x0A\x01", readings);
    EXPECT_EQ(*readings[0].pcCorrection != '\0', readings[0].corrected.has_value());
    return readings[0].corrected ? Decimal(*readings[0].corrected, 0) : "as it is";
}

std::string Serial(const std::string& text, const std::string&)
{
    tool::SerialSettings s;
    if (!tool::ParseSerialSettings(text, s))
        return "no settings";
    return vorn::FormatString("%u %u %c %u", s.uiBaud, s.uiBits, s.cParity, s.uiHalfStopBits);
}

// Text as it is, or any bytes as hex behind a #.
std::string Bytes(const std::string& text)
{
    return text[0] == '#' ? test::Hex(text.substr(1)) : text;
}

std::string HexText(const std::string& input, const std::string&)
{
    std::string outcome[2];
    for (const bool whole : {false, true}) {
        tool::cHexReader reader;
        std::string bytes;
        bool good = true;
        std::string rest = Bytes(input);
        for (std::size_t piece = whole ? rest.size() : 1; !rest.empty() && good;) {
            good = reader.Read(rest.substr(0, piece), bytes);
            rest.erase(0, piece);
        }
        outcome[whole] = test::ToHex(bytes) + ' ' + std::to_string(reader.Position()) +
                         (reader.HasHalfByte() ? " half" : "") + (good ? "" : " bad");
    }
    EXPECT_EQ(outcome[0], outcome[1]) << input;
    return test::Trimmed(outcome[0]);
}

// However short the head at which the question is settled, a longer one never changes the answer.
std::string Kind(const std::string& input, const std::string&)
{
    const std::string head = Bytes(input);
    const tool::eINPUT kind = tool::DetectInput(head, true);
    for (std::size_t n = 0; n <= head.size(); ++n) {
        const tool::eINPUT early = tool::DetectInput(head.substr(0, n), false);
        EXPECT_TRUE(early == tool::INPUT_AUTO || early == kind) << input << " after " << n;
    }
    return kind == tool::INPUT_FRAMED ? "framed" : kind == tool::INPUT_RAW ? "raw" : "hex";
}

TEST(Tables, OutcomeOfEveryInput)
{
    const std::map<std::string, std::string (*)(const std::string&, const std::string&)> rooms = {
        {"decimal", Exact}, {"obis", Obis},           {"pattern", Pattern},      {"unit", Unit},
        {"status", Status}, {"attention", Attention}, {"correction", Corrected}, {"serial", Serial},
        {"hex", HexText},   {"kind", Kind},
    };
    for (const test::Row& row : test::Rows("tools/tables.txt", 4))
        EXPECT_EQ(rooms.at(row[0])(row[1], row[2]), row[3]) << row[0] << ' ' << row[1];
}

} // namespace
