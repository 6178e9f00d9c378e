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

TEST(Tables, OutcomeOfEveryInput)
{
    const std::map<std::string, std::string (*)(const std::string&, const std::string&)> rooms = {
        {"decimal", Exact}, {"obis", Obis},           {"pattern", Pattern},      {"unit", Unit},
        {"status", Status}, {"attention", Attention}, {"correction", Corrected}, {"serial", Serial},
    };
    for (const test::Row& row : test::Rows("tools/tables.txt", 4))
        EXPECT_EQ(rooms.at(row[0])(row[1], row[2]), row[3]) << row[0] << ' ' << row[1];
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
