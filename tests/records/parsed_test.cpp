// What the parser makes of encoded messages and of recordings, through the classes: the getters
// tell what the record holds, and ToRecord gives it back, but for the one-way table below.
#include "class_table.h"

#include "tests/roundtrip/generator.h"
#include "tests/support/captures.h"

#include <set>

namespace
{

using namespace test;

// What a record holds and its class does not give back, or gives back in another shape.
enum eCHANGE { DROPPED, DROPPED_IF_EMPTY, DROPPED_IF_LEAF, WRAPPED_AGAIN };
const struct {
    const char* label;
    eCHANGE change;
    const char* reason;
} kOneWayFields[] = {
    {"extMsgPart", DROPPED, "the number of a packet: no field of the message"},
    {"extFlag", DROPPED, "a long value in pieces: no field of a tree"},
    {"extLen", DROPPED, "a long value in pieces: no field of a tree"},
    {"refTime", DROPPED_IF_EMPTY, "told by the parser also when absent"},
    {"beginTime", DROPPED_IF_EMPTY, "told by the parser also when absent"},
    {"endTime", DROPPED_IF_EMPTY, "told by the parser also when absent"},
    {"valList", DROPPED_IF_EMPTY, "a list without elements is not valid"},
    {"period_List", DROPPED_IF_EMPTY, "a list without elements is not valid"},
    {"parTree", DROPPED_IF_LEAF, "a tree wants a value or children"},
    {"SmlPeriodEntry", WRAPPED_AGAIN, "period lists are written nested twice"},
};

vorn::cRecord GivenBack(const vorn::cRecord& record)
{
    const bool isPeriodValue = record.GetFirstPar("type", 0, 0).GetUInt() == 2;
    vorn::cRecord out;
    for (const vorn::cRecordPar& par : record) {
        const std::string label = par.GetName();
        const auto* row =
            std::find_if(std::begin(kOneWayFields), std::end(kOneWayFields),
                         [&](const auto& candidate) { return candidate.label == label; });
        const int change = row != std::end(kOneWayFields) ? row->change : -1;
        vorn::cRecord nested;
        if (change == DROPPED)
            continue;
        if (!par.GetRecord(nested)) {
            AppendCopy(out, par, label.c_str());
            continue;
        }
        if (change == DROPPED_IF_EMPTY && nested.GetParCount(nullptr, 0, 0) == 0)
            continue;
        if (change == DROPPED_IF_LEAF &&
            nested.GetParCount("procParVal", 0, 0) + nested.GetParCount("child_List", 0, 0) == 0)
            continue;
        vorn::cRecord shaped = GivenBack(nested);
        if (change == WRAPPED_AGAIN || (isPeriodValue && label == "value")) {
            vorn::cRecord wrapper;
            wrapper.AppendRecordPar("SmlPeriodEntry", shaped, 0);
            shaped = wrapper;
        }
        out.AppendRecordPar(label.c_str(), shaped, 0);
    }
    return out;
}

// Adds the names of the classes that took the record over.
void Check(const vorn::cRecord& message, std::set<std::string>& seen)
{
    for (const Row& row : Rows()) {
        if (!message.GetFirstPar(row.label, 0, 0).IsValid())
            continue;
        SCOPED_TRACE(row.name + (" from " + message.ToString()));
        const Outcome o = row.run(message, {});
        vorn::cRecord expected, body = GivenBack(Nested(message, row.label));
        expected.AppendRecordPar(row.label, body, 0);
        ASSERT_EQ(o.written, expected);
        vorn::cRecord fields = o.fields;
        if (fields.GetFirstPar("valid", 0, 0).IsValid())
            seen.insert(row.name);
        fields.DeletePar("valid", 0, 0);
        body.DeletePar("smlVersion", 0, 0); // without a getter
        ASSERT_EQ(fields, body);
        EXPECT_EQ(o.copied, o.fields);
        EXPECT_EQ(o.assigned, o.fields);
    }
}

TEST(Parsed, EncodedMessages)
{
    TraceCapture quiet;
    std::set<std::string> seen;
    for (const Kind& kind : Kinds()) {
        for (unsigned seed = 1; seed <= 100; ++seed) {
            Parser parser;
            const auto& kinds = Kinds();
            const auto needed = [](Generator&, const Rule& field) { return field.needed; };
            parser.FeedFile(
                Make(kind.identifier == 0x0101 ? kinds[1] : kinds[0], seed, AtRandom).Bytes() +
                    Make(kind, seed, AtRandom).Bytes() + Make(kinds[2], 1, needed).Bytes(),
                {});
            for (const auto& [key, record] : parser.records)
                Check(record, seen);
        }
    }
    EXPECT_EQ(seen,
              (std::set<std::string>{"cSmlOpenReq", "cSmlOpenResp", "cSmlGetProfileReq",
                                     "cSmlGetProfListRes", "cSmlGetProcParReq", "cSmlGetProcParRes",
                                     "cSmlSetProcParReq", "cSmlGetListReq", "cSmlGetListRes",
                                     "cSmlAttentionRes", "cSmlMsgHeader", "cSmlMsgStatus"}));
}

TEST(Parsed, Recordings)
{
    const auto files = Captures();
    if (files.empty())
        GTEST_SKIP() << "no recordings";
    const TraceCapture quiet(LibSmlp, 0);
    std::set<std::string> seen;
    for (const auto& file : files) {
        SCOPED_TRACE(file);
        std::string bytes = ReadFile(file);
        Parser parser;
        cSMLTdec decoder(SMLT_MODE_TP);
        for (int result = SMLT_DECODE_LEFT; result == SMLT_DECODE_LEFT;) {
            vorn::cRecord transport, unused, payload;
            AppendBytes(transport, "RawData", bytes);
            vorn::cMsg message;
            message.GetRecord().AppendRecordPar("IfRec", transport, 0);
            result = decoder.Decode(message, unused, payload);
            parser.parser.SmlParser(payload, parser.records, parser.count);
            bytes.erase(0, bytes.size() - static_cast<std::size_t>(decoder.GetRemaining()));
        }
        for (const auto& [key, record] : parser.records)
            Check(record, seen);
    }
    EXPECT_EQ(seen, (std::set<std::string>{"cSmlOpenResp", "cSmlGetListRes", "cSmlMsgHeader",
                                           "cSmlMsgStatus"}));
}

} // namespace
