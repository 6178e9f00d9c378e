// Every message, encoded and parsed: it comes back as it was sent, but for the one-way table; what
// the parser cannot do without, or will not take, it refuses.
#include "tests/roundtrip/generator.h"
#include "tests/support/record_text.h"

#include <gtest/gtest.h>

namespace
{

using namespace test;

// The last record of the message within a file; of no parameters when the parser refused it.
cRecord Parsed(const Sent& sent)
{
    const auto always = [](Generator&, const Rule& field) { return field.needed; };
    std::string bytes = sent.Bytes();
    const unsigned group = sent.kind->identifier >> 8;
    if (group != 1)
        bytes.insert(0, Make(Kinds()[0], 1, always).Bytes());
    if (group != 2)
        bytes += Make(Kinds()[2], 1, always).Bytes();
    Parser parser;
    parser.FeedFile(bytes, {});
    cRecord found;
    for (const auto& [key, record] : parser.records) {
        if (record.GetFirstParByPath("SmlStatus.MsgNoInFile", ".", 0, 0).GetUInt() ==
                (group == 1 ? 1U : 2U) &&
            record.GetFirstParByPath("SmlStatus.Error", ".", 0, 0).GetSInt() == 0)
            found = record;
    }
    return found;
}

TEST(RoundTrip, EachFieldPresentAndAbsent)
{
    unsigned seed = 0;
    for (const Kind& kind : Kinds()) {
        for (const Rule& chosen : kind.fields) {
            for (int round = 0; round < 40; ++round) {
                const bool alone =
                    round % 2 == 0; // the only one beside those needed, else left out
                const auto has = [&](Generator&, const Rule& field) {
                    return &field == &chosen ? alone : !alone || field.needed;
                };
                const Sent sent = Make(kind, ++seed, has);
                const cRecord record = Parsed(sent);
                const std::string where = kind.name + std::string(" seed ") + std::to_string(seed) +
                                          (alone ? " only " : " without ") + chosen.label;
                if (chosen.needed && !alone)
                    EXPECT_EQ(Nested(record, kind.name).ToString(), "{}") << where;
                else
                    EXPECT_EQ(Difference(sent, record), "") << where;
            }
        }
    }
}

TEST(RoundTrip, RandomMessages)
{
    std::size_t longest = 0;
    for (const Kind& kind : Kinds()) {
        for (unsigned seed = 10000; seed < 10500; ++seed) {
            const Sent sent = Make(kind, seed, AtRandom);
            ASSERT_EQ(Difference(sent, Parsed(sent)), "") << kind.name << " seed " << seed;
            longest = std::max(longest, sent.Bytes().size());
        }
    }
    EXPECT_GT(longest, std::size_t{SML_MESSAGE_STORE}); // packets were among them
}

void Second(Generator&, cRecord& rec, const Rule& rule) { rec.AppendUIntPar(rule.label, 2, 0); }

void Latin(Generator&, cRecord& rec, const Rule& rule)
{
    AppendBytes(rec, rule.label, "ISO 8859-1");
}

void TooLong(Generator&, cRecord& rec, const Rule& rule)
{
    AppendBytes(rec, rule.label, std::string(rule.most, 'x'));
}

// What the encoder writes and the parser refuses.
TEST(RoundTrip, OneWayFieldsAreRefused)
{
    const struct {
        unsigned identifier;
        Rule field;
        const char* reason;
    } rows[] = {
        {0x0100, {"codepage", Latin}, "one codepage is known"},
        {0x0100, {"smlVersion", Second}, "version 1 is the last known"},
        {0x0100, {"clientId", TooLong, 33}, "longer than ids are"},
        {0x0101, {"serverId", TooLong, 33}, "longer than ids are"},
        {0x0200, {"globalSignature", TooLong, 257}, "longer than signatures are"},
        {0x0300, {"withRawdata", Flag}, "not supported"},
        {0x0400, {"withRawdata", Flag}, "not supported"},
        {0x0500, {"attribute", Octets, 512}, "not supported"},
        {0x0700, {"username", TooLong, 65}, "longer than names are"},
        {0xFF01, {"attentionMsg", TooLong, 129}, "longer than texts are"},
    };
    for (const auto& row : rows) {
        const Kind& kind = KindOf(row.identifier);
        Sent sent = Make(kind, 1, [&](Generator&, const Rule& field) {
            return field.needed && std::string_view(field.label) != row.field.label;
        });
        Generator gen(2, 500);
        row.field.make(gen, sent.body, row.field);
        kind.encode(sent.body, sent.header, sent.result);
        EXPECT_EQ(Nested(Parsed(sent), kind.name).ToString(), "{}")
            << kind.name << ' ' << row.field.label << ": " << row.reason;
    }
}

// Inside of what a message needs: the header's fields, and fields of entries and trees. A value may
// be missing.
TEST(RoundTrip, IncompleteStructures)
{
    const std::string list = "serverId=x01 valList={valListEntry={";
    const std::string period = "serverId=x01 status=U1 period_List={SmlPeriodEntry={";
    const std::string tree = "serverId=x01 parTree={";
    const struct {
        unsigned identifier;
        const char* header;
        std::string body;
        bool read;
    } rows[] = {
        {0x0200, "groupNo=u0 abortOnError=u0", "", false},
        {0x0200, "transactionId=x01 abortOnError=u0", "", false},
        {0x0200, "transactionId=x01 groupNo=u0", "", false},
        {0x0701, nullptr, list + "value=u1}}", false},
        {0x0701, nullptr, list + "objName=U1}}", true},
        {0x0401, nullptr, period + "unit=u1 scaler=i0 value=u1}}", false},
        {0x0401, nullptr, period + "objName=U1 scaler=i0 value=u1}}", false},
        {0x0401, nullptr, period + "objName=U1 unit=u1 value=u1}}", false},
        {0x0401, nullptr, period + "objName=U1 unit=u1 scaler=i0}}", true},
        {0x0501, nullptr, tree + "procParVal={type=u1 value=u1}}", false},
        {0x0501, nullptr, tree + "parName=U1 procParVal={type=u5 value={objName=U1}}}", true},
        {0x0501, nullptr, tree + "parName=U1 procParVal={type=u4 value={SmlTime={value=u1}}}}",
         false},
    };
    for (const auto& row : rows) {
        const char* const whole = "transactionId=x01 groupNo=u0 abortOnError=u0";
        const Kind& kind = KindOf(row.identifier);
        Sent sent{&kind, Rec(row.header != nullptr ? row.header : whole), Rec(row.body), {}};
        kind.encode(sent.body, sent.header, sent.result);
        EXPECT_EQ(Parsed(sent) != cRecord(), row.read) << kind.name << ' ' << row.body;
    }
}

// Tupel entries are not written, tree values that the encoder does not know neither.
TEST(RoundTrip, TreeValuesThatAreNotWritten)
{
    const Kind& kind = KindOf(0x0501);
    for (const char* type : {"0", "3", "6"}) {
        Sent sent = Make(kind, 1, [](Generator&, const Rule& field) {
            return field.label == std::string_view("serverId");
        });
        const std::string value = std::string("={type=u") + type;
        sent.body.AppendRecordPar(
            "parTree", Rec("parName=U5 procParVal" + value + " value={SmlTupelEntry={status=U1}}}"),
            0);
        kind.encode(sent.body, sent.header, sent.result);
        EXPECT_EQ(Nested(Nested(Parsed(sent), kind.name), "parTree"), Rec("parName=U5")) << type;
    }
}

} // namespace
