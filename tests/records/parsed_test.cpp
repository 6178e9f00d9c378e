// What the parser makes of encoded messages and of recordings, through the classes: the getters
// tell what the record holds, and ToRecord gives it back, but for what GivenBack names.
#include "case.h"

#include "tests/roundtrip/generator.h"
#include "tests/support/captures.h"

#include <set>

namespace
{

using namespace test;

// What the class of such a record gives back. Not told are an empty record (the parser's sign of
// something absent), a leaf without a value, and what the parser says of packets; period entries
// are written in a record of their own.
vorn::cRecord GivenBack(const vorn::cRecord& record)
{
    const bool isPeriod = record.GetFirstPar("type", 0, 0).GetUInt() == 2;
    vorn::cRecord out;
    for (const vorn::cRecordPar& par : record) {
        const std::string label = par.GetName();
        vorn::cRecord nested, wrapper;
        if (!par.GetRecord(nested)) {
            if (label != "extMsgPart" && label != "extFlag" && label != "extLen")
                AppendCopy(out, par, label.c_str());
            continue;
        }
        const bool isLeaf = label == "parTree" &&
                            !nested.GetFirstPar("procParVal", 0, 0).IsValid() &&
                            !nested.GetFirstPar("child_List", 0, 0).IsValid();
        if (isLeaf || nested == vorn::cRecord())
            continue;
        nested = GivenBack(nested);
        wrapper.AppendRecordPar("SmlPeriodEntry", nested, 0);
        const bool isWrapped = label == "SmlPeriodEntry" || (isPeriod && label == "value");
        out.AppendRecordPar(label.c_str(), isWrapped ? wrapper : nested, 0);
    }
    return out;
}

// Adds the names of the classes that took the record over.
void Check(const vorn::cRecord& message, std::set<std::string>& seen)
{
    for (const Row* row : Cases()) {
        const char* const label = row->label.c_str();
        if (!message.GetFirstPar(label, 0, 0).IsValid())
            continue;
        SCOPED_TRACE(row->name + " from " + message.ToString());
        const Outcome o = row->Run(message, {});
        vorn::cRecord expected, fields = o.fields, body = GivenBack(Nested(message, label));
        expected.AppendRecordPar(label, body, 0);
        ASSERT_EQ(o.written, expected);
        if (fields.GetFirstPar("valid", 0, 0).IsValid())
            seen.insert(row->name);
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
    Choices choices(1);
    for (int round = 0; round < 400; ++round) {
        Parser parser;
        parser.FeedFile(BytesOf(MakeFile(choices, 3)), {});
        for (const auto& [key, record] : parser.records)
            Check(record, seen);
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
        Parser parser;
        for (const std::string& payload : Payloads(ReadFile(file)))
            parser.FeedFile(payload, {});
        for (const auto& [key, record] : parser.records)
            Check(record, seen);
    }
    EXPECT_EQ(seen, (std::set<std::string>{"cSmlOpenResp", "cSmlGetListRes", "cSmlMsgHeader",
                                           "cSmlMsgStatus"}));
}

} // namespace
