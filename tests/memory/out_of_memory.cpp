// Memory that runs out on the roads into the library: records, encoder, codec, parser. Each
// allocation of each step fails in turn, alone and with all that follow; the step then gives its
// documented result, what it was to change is as it was or whole, and nothing leaks or throws. The
// record classes have such tests of their own.
#include "tests/roundtrip/generator.h"
#include "tests/support/fail_in_turn.h"
#include "tests/support/message.h"
#include "tests/support/record_text.h"
#include "tests/support/trace_capture.h"

namespace
{

using namespace test;

const std::string kLongName(60, 'n');
const std::string kLongData(50, 'd');

// All trace lines are made, and dropped: one that finds no memory gets lost without a word.
class OutOfMemory : public ::testing::Test
{
protected:
    OutOfMemory()
    {
        LibSmle->iLevel = 16;
        vorn::SetTraceSink(
            [this](const vorn::cUnit&, vorn::eLEVEL, const std::string&) { ++lines; });
    }
    ~OutOfMemory() override
    {
        vorn::SetTraceSink({});
        LibSmle->iLevel = 2;
    }
    int lines = 0;
};

// ---- Records: a step may throw std::bad_alloc and then leaves its record as it was

// As many parameters as the node has room for, so that the next one needs a new node.
cRecord Sample()
{
    const std::string inner = '{' + kLongName + "=x" + ToHex(kLongData) + " key=u7} ";
    return Rec("inner=" + inner + "a=u1 " + kLongName + '=' + inner + "data=x" + ToHex(kLongData));
}

vorn::cRecordPath Path()
{
    vorn::cRecordPath path;
    path.AddLevel("inner", Rec("key=u7"));
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
    {
        const Sparing sparing;
        record = Sample();
        shared = record;
    }
    bool done = true;
    try {
        step(record);
    } catch (const std::bad_alloc&) {
        done = false;
    }
    const Sparing sparing;
    EXPECT_TRUE(done || record == Sample());
    EXPECT_TRUE(shared == Sample());
    return done;
}

TEST_F(OutOfMemory, Records)
{
    for (const auto& row : kRecordSteps) {
        SCOPED_TRACE(row.name);
        EXPECT_GE(FailInTurn([&] { return RecordStep(row.step); }), row.allocations);
    }
}

// ---- The roads; they throw nothing

// A message is encoded in full or not at all, and then the result record is as it was. Without a
// number in the header no message is written without making objects first.
TEST_F(OutOfMemory, EncodedMessages)
{
    const cRecord former = Rec("old=u1");
    for (const Kind& kind : Kinds()) {
        for (unsigned seed = 0; seed < 8; ++seed) {
            Sent sent = Make(kind, seed, Everything);
            const bool made = seed % 2 == 0;
            if (made)
                sent.header.DeletePar("abortOnError", 0, 0);
            ASSERT_EQ(kind.encode(sent.body, sent.header, sent.result), SML_ENCODE_OK);
            const int failures = FailInTurn([&] {
                cRecord result = former;
                const int rc = kind.encode(sent.body, sent.header, result);
                const Sparing sparing; // to compare
                EXPECT_TRUE(rc == SML_ENCODE_OK ? result == sent.result
                                                : rc == SML_ENCODE_NO_MEMORY && result == former)
                    << rc;
                return rc == SML_ENCODE_OK;
            });
            EXPECT_GT(failures, made ? 5 : 0) << kind.name << " seed " << seed;
        }
    }
}

// Objects without memory are absent or without slots, and say so; what has no result for it leaves
// nothing behind.
TEST_F(OutOfMemory, ObjectsOfTheEncoder)
{
    Sml_Unsigned8 one(1);
    FailInTurn([&] {
        Sml_ListOf list(3, false);
        EXPECT_EQ(list.SetElement(&one, 0), list.GetCount() == 3 ? 0 : 222);
        const int rc = list.Add(&one);
        EXPECT_TRUE(rc == 0 || rc == 220) << rc;
        Sml_TreePath path(1);
        const int set = path.SetTreePath(1LL, 0);
        EXPECT_TRUE(set == 0 || set == 222 || set == 230) << set;
        return list.GetCount() == 4 && set == 0;
    });
    const std::string bytes(100, 'x');
    FailInTurn([&] {
        Sml_OctetString made(bytes.data(), 100, 2000);
        Sml_OctetString set("short", 5, -1);
        set.SetValue(bytes.data(), 100, -1);
        EXPECT_EQ(made.GetToCode(), made.GetLength() == 100);
        EXPECT_EQ(set.GetToCode(), set.GetLength() == 100);
        return made.GetToCode() && set.GetToCode();
    });
    cRecord tree = Nested(Make(KindOf(0x0501), 3, Everything).body, "parTree");
    EXPECT_GT(FailInTurn([&] {
                  Sml_Tree object;
                  return Record_2_SmlTree(tree, &object) == 1;
              }),
              10);
    Sml_OctetString id("1", 1, -1);
    Sml_Signature absent;
    Sml_Close_Request body(&absent);
    Sml_Message message(&id, &one, &one, &body);
    const cRecord former = Rec("old=u1");
    FailInTurn([&] {
        cRecord result = former;
        SmlMessageToBin(message, result, 0, "x", 500);
        const int parameters = result.GetParCount(nullptr, 0, 0);
        EXPECT_TRUE(parameters == 0 || parameters == 2) << parameters;
        return parameters == 2;
    });
}

// A file with a long list and with a tree whose value takes several packets.
std::string File()
{
    std::string bytes;
    for (const unsigned identifier : {0x0101U, 0x0701U})
        bytes += Make(KindOf(identifier), 3, Everything).Bytes();
    bytes += Message("0501", "73 02 05 71 07 81 81 C7 82 0A FF 73 07 81 81 C7 82 0A FF 72 62 01" +
                                 ToHex(LongString(std::string(3000, 'v'))) + "01");
    return bytes + CloseRes();
}

// Records stored before memory ran out remain, and a reset makes the parser good as new.
bool ParserStep(const std::string& file, const Parser& whole)
{
    Parser parser;
    cRecord piece;
    {
        const Sparing sparing;
        piece = Piece(BUF_FLAG_FIRST, file);
    }
    const int result = parser.parser.SmlParser(piece, parser.records, parser.count);
    const Sparing sparing;
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

// A message that cannot be framed or unframed stays as it is, and the next one can.
bool CodecStep(const std::string& payload)
{
    cSMLTenc encoder(SMLT_MODE_TP);
    cSMLTdec decoder(SMLT_MODE_TP);
    vorn::cMsg msg;
    cRecord before, framed, ifRec, out;
    {
        const Sparing sparing;
        msg = Carrier(BUF_FLAG_SML | BUF_FLAG_FIRST | BUF_FLAG_LAST, payload);
        before = msg.GetRecord();
    }
    bool done = encoder.Encode(msg) == SMLT_ENCODE_DONE;
    {
        const Sparing sparing;
        if (!done) {
            EXPECT_TRUE(msg.GetRecord() == before);
            EXPECT_EQ(encoder.Encode(msg), SMLT_ENCODE_DONE);
        }
        framed = msg.GetRecord();
    }
    const int result = decoder.Decode(msg, ifRec, out);
    const Sparing sparing;
    EXPECT_TRUE(msg.GetRecord() == framed);
    if (result != SMLT_DECODE_FRAME) {
        done = false;
        EXPECT_EQ(result, SMLT_DECODE_ERROR);
        EXPECT_TRUE(out == cRecord());
        EXPECT_EQ(decoder.Decode(msg, ifRec, out), SMLT_DECODE_FRAME);
    }
    EXPECT_EQ(BytesAt(out, "SmlRawData"), payload);
    return done;
}

// The codec's steps taken alone.
bool CodecSteps(const std::string& payload)
{
    cSMLTenc encoder(SMLT_MODE_TP);
    cSMLTdec decoder(SMLT_MODE_TP);
    vorn::cMsg msg;
    cRecord before, ifRec, out;
    {
        const Sparing sparing;
        msg = Carrier(BUF_FLAG_SML | BUF_FLAG_FIRST | BUF_FLAG_LAST, payload);
        before = msg.GetRecord();
    }
    const bool taken = encoder.GetFlags(msg) == 1 && encoder.GetMsgRawData(msg) == 1 &&
                       decoder.GetMsgRawData(msg, ifRec) == 1;
    const bool replaced = encoder.ReplaceRecord(msg), appended = decoder.AppendRecords(out);
    const Sparing sparing;
    EXPECT_EQ(msg.GetRecord() == before, !replaced);
    EXPECT_EQ(out == cRecord(), !appended);
    return taken && replaced && appended;
}

TEST_F(OutOfMemory, ParserAndCodec)
{
    const std::string file = File();
    Parser whole;
    whole.FeedFile(file, {});
    ASSERT_EQ(whole.results[0], SMLP_FILE_COMPLETE);
    EXPECT_GT(FailInTurn([&] { return ParserStep(file, whole); }), 10);
    EXPECT_GT(FailInTurn([&] { return CodecStep(file); }), 5);
    EXPECT_GT(FailInTurn([&] { return CodecSteps(file); }), 5);
}

TEST_F(OutOfMemory, TraceLinesAreLostNotThrown)
{
    vorn::cUnit unit("T", vorn::LEVEL_ERROR, vorn::OUTPUT_DEFAULT);
    {
        const FailingNew failing(0);
        vorn::_Trace(&unit, vorn::LEVEL_ERROR, kLongData.c_str());
    }
    EXPECT_EQ(lines, 0);
    vorn::_Trace(&unit, vorn::LEVEL_ERROR, kLongData.c_str());
    EXPECT_EQ(lines, 1);
}

} // namespace
