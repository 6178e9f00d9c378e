// Every message, encoded and parsed: it comes back as it was sent, but for the one-way table; what
// the parser cannot do without, or will not take, it refuses.
#include "tests/roundtrip/generator.h"
#include "tests/support/record_text.h"

#include <gtest/gtest.h>

namespace
{

using namespace test;

// The generator takes the limits from the library: here they stand as they are documented.
static_assert(SML_MAX_TRANSACTION_ID == 64 && SML_MAX_CLIENT_ID == 32 &&
              SML_MAX_REQ_FILE_ID == 64 && SML_MAX_SERVER_ID == 32 && SML_MAX_CODEPAGE == 64 &&
              SML_MAX_USERNAME == 64 && SML_MAX_PASSWORD == 64 && SML_MAX_ATTRIBUTE == 512 &&
              SML_MAX_ATTENTION_MSG == 128 && SML_MAX_SIGNATURE == 256 && SML_NAME_SIZE == 6 &&
              SML_VALUE_CHUNK == 1200 && SML_MAX_ENCODED_ENVELOPE == 500 &&
              SML_MAX_ENCODED_REQUEST == 1000 && SML_MAX_ENCODED_LIST == 4000 &&
              SML_MAX_ENCODED_TREE == 10000);

// The last record of the message within a file; of no parameters when the parser refused it.
cRecord Parsed(const Sent& sent)
{
    std::string bytes = sent.Bytes();
    const bool opens = schema::IsOpen(sent.kind->identifier);
    if (!opens)
        bytes.insert(0, Make(KindOf(SML_OPEN_REQ), 1, OnlyNeeded).Bytes());
    if (!schema::IsClose(sent.kind->identifier))
        bytes += Make(KindOf(SML_CLOSE_REQ), 1, OnlyNeeded).Bytes();
    Parser parser;
    parser.FeedFile(bytes, {});
    cRecord found;
    for (const auto& [key, record] : parser.records) {
        if (record.GetFirstParByPath("SmlStatus.MsgNoInFile", ".", 0, 0).GetUInt() ==
                (opens ? 1U : 2U) &&
            record.GetFirstParByPath("SmlStatus.Error", ".", 0, 0).GetSInt() == 0)
            found = record;
    }
    return found;
}

TEST(RoundTrip, EachFieldPresentAndAbsent)
{
    unsigned seed = 0;
    for (const Kind& kind : Kinds()) {
        for (const Element& chosen : kind.body) {
            if (ChangeOf(kind.body, chosen) == Change::REFUSED)
                continue;
            for (int round = 0; round < 40; ++round) {
                const bool alone =
                    round % 2 == 0; // the only one beside those needed, else left out
                const auto has = [&](Generator&, const Element& element) {
                    return &element == &chosen ? alone : !alone || Needed(element);
                };
                const Sent sent = Make(kind, ++seed, has);
                const cRecord record = Parsed(sent);
                const std::string where = kind.name + std::string(" seed ") + std::to_string(seed) +
                                          (alone ? " only " : " without ") +
                                          std::string(chosen.label);
                if (Needed(chosen) && !alone)
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

// What the encoder writes and the parser refuses: what it does not support, and each string that is
// a byte too long.
TEST(RoundTrip, OneWayFieldsAreRefused)
{
    for (const Kind& kind : Kinds()) {
        for (const Element& element : kind.body) {
            const Change change = ChangeOf(kind.body, element);
            const char* const name = element.label.data();
            Sent sent = Make(kind, 1, [&](Generator&, const Element& other) {
                return Needed(other) && &other != &element;
            });
            Choices choices(2);
            if (change == Change::ONE_TEXT)
                AppendBytes(sent.body, name, "ISO 8859-1");
            else if (change == Change::BELOW_TWO)
                sent.body.AppendUIntPar(name, 2, 0);
            else if (change == Change::REFUSED)
                Generator(choices, 500).Append(sent.body, element);
            else if (schema::KindOf(element) == quarn::KIND_DATA &&
                     element.uiMost < SML_VALUE_CHUNK)
                AppendBytes(sent.body, name, std::string(element.uiMost + 1, 'x'));
            else
                continue;
            kind.encode(sent.body, sent.header, sent.result);
            EXPECT_EQ(Nested(Parsed(sent), kind.name).ToString(), "{}")
                << kind.name << ' ' << element.label;
        }
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
        Sent sent = Make(kind, 1, [](Generator&, const Element& element) {
            return element.label == label::serverId;
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
