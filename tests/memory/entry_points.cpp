// Memory that runs out on the roads into the library: records, parser, codec. Each allocation of
// each step fails in turn, alone and with all that follow; the step then gives its documented
// result, what it was to change is as it was or whole, and nothing leaks. The encoder and the
// record classes have such tests of their own.
#include "tests/roundtrip/generator.h"
#include "tests/support/failing_new.h"
#include "tests/support/message.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <utility>

namespace
{

using namespace test;

const std::string kLongName(60, 'n');
const std::string kLongData(50, 'd');

// ---- Steps of a record; each may throw std::bad_alloc and then leaves the record as it was

// As many parameters as the node has room for, so that the next one needs a new node.
cRecord Sample()
{
    cRecord inner;
    AppendBytes(inner, kLongName.c_str(), kLongData);
    inner.AppendUIntPar("key", 7, 0);
    cRecord record;
    record.AppendRecordPar("inner", inner, 0);
    record.AppendUIntPar("a", 1, 0);
    record.AppendRecordPar(kLongName.c_str(), inner, 0);
    AppendBytes(record, "data", kLongData);
    return record;
}

vorn::cRecordPath Path()
{
    cRecord key;
    key.AppendUIntPar("key", 7, 0);
    vorn::cRecordPath path;
    path.AddLevel("inner", key);
    return path;
}

const struct {
    const char* name;
    void (*step)(cRecord& record);
    int allocations; // at least, when all goes well
} kRecordSteps[] = {
    {"append", [](cRecord& r) { r.AppendUIntPar("b", 2, 0); }, 1},
    {"append much", [](cRecord& r) { AppendBytes(r, kLongName.c_str(), kLongData); }, 3},
    {"append itself", [](cRecord& r) { r.AppendRecordPar(kLongName.c_str(), r, 0); }, 2},
    {"delete from a shared node", [](cRecord& r) { r.DeletePar("a", 0, 0); }, 1},
    {"look up by a long path",
     [](cRecord& r) { r.GetFirstParByPath((kLongName + '.' + kLongName).c_str(), ".", 0, 0); }, 1},
    {"compare", [](cRecord& r) { (void)(r == Sample()); }, 3},
    {"dump", [](cRecord& r) { (void)r.ToString2(2, 0); }, 2},
    {"change", [](cRecord& r) { r = ChangeRecord(r, Path(), r, kLongName, true); }, 3},
    {"build",
     [](cRecord& r) {
         vorn::cRecordBuilder builder;
         builder.Open();
         builder.AppendDataPar("data", kLongData.data(), 50, 0);
         r = builder.Get(builder.Close());
     },
     2},
};

bool RecordStep(void (*step)(cRecord& record))
{
    cRecord record;
    cRecord shared;
    const long left = std::exchange(lAllocationsLeft, kAll);
    record = Sample();
    shared = record;
    lAllocationsLeft = left;
    bool done = true;
    try {
        step(record);
    } catch (const std::bad_alloc&) {
        done = false;
    }
    lAllocationsLeft = kAll;
    EXPECT_TRUE(done || record == Sample());
    EXPECT_TRUE(shared == Sample());
    return done;
}

// ---- Steps of the receiving and the sending road; they throw nothing

// A file with a long list and with a tree whose value takes several packets.
std::string File()
{
    const auto all = [](Generator&, const Rule&) { return true; };
    const auto& kinds = Kinds();
    std::string bytes;
    for (const std::size_t kind : {1U, 11U})
        bytes += Make(kinds[kind], 3, all).Bytes();
    bytes += Message("0501", "73 02 05 71 07 81 81 C7 82 0A FF 73 07 81 81 C7 82 0A FF 72 62 01" +
                                 ToHex(LongString(std::string(3000, 'v'))) + "01");
    return bytes + Make(kinds[3], 3, all).Bytes();
}

// Records stored before memory ran out remain, and a reset makes the parser good as new.
bool ParserStep(const std::string& file, const test::Parser& whole)
{
    const long left = std::exchange(lAllocationsLeft, kAll);
    test::Parser parser;
    cRecord piece = Piece(BUF_FLAG_FIRST, file);
    lAllocationsLeft = left;
    const int result = parser.parser.SmlParser(piece, parser.records, parser.count);
    lAllocationsLeft = kAll;
    const bool done = result == SMLP_FILE_COMPLETE;
    EXPECT_TRUE(done || result == SMLP_OUT_OF_MEMORY) << result;
    for (int i = 0; i < parser.count; ++i)
        EXPECT_EQ(parser.records.at(i), whole.records.at(i));
    parser.Reset();
    parser.records.clear();
    parser.count = 0;
    parser.FeedFile(file, {});
    EXPECT_EQ(parser.records, whole.records);
    return done;
}

vorn::cMsg Carrier(unsigned flags, const std::string& bytes)
{
    cRecord ifRec, record;
    AppendBytes(ifRec, "RawData", bytes);
    record.AppendUIntPar("SmltFlags", flags, 0);
    record.AppendRecordPar("IfRec", ifRec, 0);
    return vorn::cMsg(record);
}

// A message that cannot be framed or unframed stays as it is, and the next one can.
bool CodecStep(const std::string& payload)
{
    const long left = std::exchange(lAllocationsLeft, kAll);
    cSMLTenc encoder(SMLT_MODE_TP);
    cSMLTdec decoder(SMLT_MODE_TP);
    const unsigned flags = BUF_FLAG_SML | BUF_FLAG_FIRST | BUF_FLAG_LAST;
    vorn::cMsg msg = Carrier(flags, payload);
    const cRecord before = msg.GetRecord();
    cRecord ifRec;
    cRecord out;
    lAllocationsLeft = left;
    bool done = encoder.Encode(msg) == SMLT_ENCODE_DONE;
    const long behind = std::exchange(lAllocationsLeft, kAll);
    if (!done) {
        EXPECT_TRUE(msg.GetRecord() == before);
        EXPECT_EQ(encoder.Encode(msg), SMLT_ENCODE_DONE);
    }
    const cRecord framed = msg.GetRecord();
    lAllocationsLeft = behind;
    const int result = decoder.Decode(msg, ifRec, out);
    lAllocationsLeft = kAll;
    EXPECT_TRUE(msg.GetRecord() == framed);
    if (result != SMLT_DECODE_FRAME) {
        done = false;
        EXPECT_EQ(result, SMLT_DECODE_ERROR);
        EXPECT_TRUE(out == cRecord());
        EXPECT_EQ(decoder.Decode(msg, ifRec, out), SMLT_DECODE_FRAME);
    }
    const vorn::cRecordPar raw = out.GetFirstPar("SmlRawData", 0, 0);
    EXPECT_EQ(std::string(raw.GetData(), static_cast<std::size_t>(raw.GetSize())), payload);
    return done;
}

// Runs step with each allocation failing in turn, until none does, and returns how many could.
template <typename Step>
int FailInTurn(Step step)
{
    for (int n = 0;; ++n) {
        bool done = true;
        for (const long failures : {1L, kAll}) {
            const long before = lBlocksInUse;
            {
                const FailingNew failing(n, failures);
                done = step() && done;
            }
            EXPECT_EQ(lBlocksInUse, before) << "leaked when allocation " << n << " failed";
        }
        if (done || ::testing::Test::HasFailure())
            return n;
    }
}

TEST(OutOfMemory, EveryStepEveryAllocation)
{
    vorn::SetTraceSink([](const vorn::cUnit&, vorn::eLEVEL, const std::string&) {});
    for (const auto& row : kRecordSteps) {
        SCOPED_TRACE(row.name);
        EXPECT_GE(FailInTurn([&] { return RecordStep(row.step); }), row.allocations);
    }
    const std::string file = File();
    Parser whole;
    whole.FeedFile(file, {});
    ASSERT_EQ(whole.results[0], SMLP_FILE_COMPLETE);
    EXPECT_GT(FailInTurn([&] { return ParserStep(file, whole); }), 10);
    EXPECT_GT(FailInTurn([&] { return CodecStep(file); }), 5);
    vorn::SetTraceSink({});
}

TEST(OutOfMemory, TraceLinesAreLostNotThrown)
{
    vorn::cUnit unit("T", vorn::LEVEL_ERROR, vorn::OUTPUT_DEFAULT);
    int lines = 0;
    vorn::SetTraceSink([&](const vorn::cUnit&, vorn::eLEVEL, const std::string&) { ++lines; });
    {
        const FailingNew failing(0);
        vorn::_Trace(&unit, vorn::LEVEL_ERROR, kLongData.c_str());
    }
    EXPECT_EQ(lines, 0);
    vorn::_Trace(&unit, vorn::LEVEL_ERROR, kLongData.c_str());
    EXPECT_EQ(lines, 1);
    vorn::SetTraceSink({});
}

} // namespace
