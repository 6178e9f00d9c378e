// Values and messages too large for one record: delivered in packets that lose nothing, the same
// ones however the input is cut.
#include "tests/support/message.h"
#include "tests/support/parse.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using test::CloseRes;
using test::Finish;
using test::Head;
using test::Hex;
using test::LongString;
using test::Nested;
using test::OpenRes;
using test::Parser;

namespace
{

std::string Noise(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 31 + i / 251 + i / 65521);
    return bytes;
}

std::string DataOf(const vorn::cRecord& record, const char* name)
{
    const vorn::cRecordPar par = record.GetFirstPar(name, 0, 0);
    return par.IsValid() ? std::string(par.GetData(), static_cast<std::size_t>(par.GetSize())) : "";
}

// The raw bytes of the records from the second to the one before the last, joined.
std::string RawBytes(const Parser& parser)
{
    std::string bytes;
    for (const auto& [key, record] : parser.records) {
        if (key > 0 && key + 1 < parser.count)
            bytes += DataOf(record, "SmlMsgRawData");
    }
    return bytes;
}

// Parses a file with the message between open and close; checks that every cut gives the same.
void ParseInAnyPieces(const std::string& message, Parser& whole)
{
    const std::string file = OpenRes() + message + CloseRes();
    whole.FeedFile(file, {});
    ASSERT_EQ(whole.results, std::vector<int>{SMLP_FILE_COMPLETE});
    EXPECT_EQ(RawBytes(whole), message);
    std::mt19937 random(5);
    for (int round = 0; round < 12; ++round) {
        std::vector<std::size_t> cuts;
        const std::size_t piece = round < 2 ? 1 : 1 + random() % 9000;
        for (std::size_t at = piece; at < file.size();
             at += round < 7 ? piece : 1 + random() % piece)
            cuts.push_back(at);
        Parser parts;
        parts.FeedFile(file, cuts);
        ASSERT_EQ(parts.records, whole.records) << "round " << round << ", pieces of " << piece;
    }
}

// Every "procParVal" with a piece of a long value, in the order of the records.
void CollectPieces(const vorn::cRecord& node, std::string& value, std::vector<bool>& flags)
{
    const vorn::cRecord procParVal = Nested(node, "procParVal");
    const vorn::cRecordPar flag = procParVal.GetFirstPar("extFlag", 0, 0);
    if (flag.IsValid()) {
        value += DataOf(procParVal, "value");
        flags.push_back(flag.GetBool());
    }
    for (const vorn::cRecordPar& par : Nested(node, "child_List")) {
        vorn::cRecord child;
        if (par.GetRecord(child))
            CollectPieces(child, value, flags);
    }
}

TEST(ParserPackets, ALongParameterValueIsDeliveredInPieces)
{
    const test::TraceCapture quiet;
    const std::string value = Noise(100 * 1024);
    const std::string leaf = Hex("73 02 42 72 62 01") + LongString(value) + Hex("01");
    const struct {
        const char* pcName;
        std::string strTree;
        const char* pcRemainder; // the last record's second tree
    } rows[] = {
        {"root", Hex("73 02 41 72 62 01") + LongString(value) + Hex("01"), ""},
        {"child between others",
         Hex("73 02 41 01 73 73 02 31 72 62 01 62 05 01") + leaf +
             Hex("73 02 32 72 62 01 62 06 01"),
         "{child_List={parTree={parName=54975581388800, procParVal={type=1, value=6}}}}"},
        {"four levels down",
         Hex("73 02 41 01 71 73 02 43 01 71 73 02 44 01 71 73 02 45 01 71") + leaf, ""},
    };
    for (const char* tag : {"0600", "0501"}) {
        const std::string head =
            Hex(tag == std::string("0600") ? "75 02 AA 01 01 70" : "73 02 AA 70");
        const char* const label =
            tag == std::string("0600") ? "SmlSetProcParReq" : "SmlGetProcParRes";
        for (const auto& row : rows) {
            SCOPED_TRACE(std::string(tag) + ", " + row.pcName);
            Parser parser;
            ParseInAnyPieces(Finish(Head(tag) + head + row.strTree), parser);
            std::string joined;
            std::vector<bool> flags;
            std::string remainder;
            for (const auto& [key, record] : parser.records) {
                const vorn::cRecord body = Nested(record, label);
                if (body.begin() != body.end())
                    remainder.clear();
                for (const vorn::cRecordPar& par : body) {
                    vorn::cRecord tree;
                    if (std::string(par.GetName()) != "parTree" || !par.GetRecord(tree))
                        continue;
                    const std::size_t before = flags.size();
                    CollectPieces(tree, joined, flags);
                    if (flags.size() == before)
                        remainder = tree.ToString();
                    else
                        EXPECT_EQ(body.GetFirstPar("extMsgPart", 0, 0).GetUInt(),
                                  static_cast<unsigned>(key));
                }
            }
            EXPECT_EQ(joined, value);
            EXPECT_EQ(remainder, row.pcRemainder);
            EXPECT_EQ(flags.size(), value.size() / SML_VALUE_CHUNK + 1);
            EXPECT_EQ(std::count(flags.begin(), flags.end(), false), 1);
            EXPECT_FALSE(flags.back());
        }
    }
}

TEST(ParserPackets, TwoLongValuesInOneTree)
{
    const test::TraceCapture quiet;
    const std::string leaf = Hex("73 02 42 72 62 01") + LongString(Noise(3000)) + Hex("01");
    Parser parser;
    ParseInAnyPieces(Finish(Head("0600") + Hex("75 01 01 01 70 73 02 41 01 72") + leaf + leaf),
                     parser);
    std::string joined;
    std::vector<bool> flags;
    for (const auto& [key, record] : parser.records) {
        for (const vorn::cRecordPar& par : Nested(record, "SmlSetProcParReq")) {
            vorn::cRecord tree;
            if (par.GetRecord(tree))
                CollectPieces(tree, joined, flags);
        }
    }
    EXPECT_EQ(joined, Noise(3000) + Noise(3000));
    EXPECT_EQ(flags, (std::vector<bool>{true, true, false, true, true, false}));
}

TEST(ParserPackets, AListLongerThanTheStoreArrivesWhole)
{
    const test::TraceCapture quiet;
    std::string list = Hex("77 01 02 AA 01 01 F2 8D 80 00"); // 0x2D00 entries
    std::string entry = Hex("77 07 01 00 01 08 00 FF 01 01 62 1E 52 FF 69");
    for (unsigned i = 0; i < 0x2D00; ++i) {
        list += entry + std::string(4, '\0');
        for (int shift = 24; shift >= 0; shift -= 8)
            list += static_cast<char>(i >> shift);
        list += "\x04"
                "abc";
    }
    list += Hex("01 01");
    const std::string message = Finish(Head("0701") + list);
    ASSERT_GT(message.size(), 300U * 1024);
    Parser parser;
    ParseInAnyPieces(message, parser);
    const vorn::cRecord& last = parser.records[parser.count - 2];
    const vorn::cRecord entries = Nested(last, "SmlGetListRes.valList");
    ASSERT_EQ(entries.GetParCount("valListEntry", 0, 0), 0x2D00);
    unsigned i = 0;
    for (const vorn::cRecordPar& par : entries) {
        vorn::cRecord fields;
        ASSERT_TRUE(par.GetRecord(fields));
        ASSERT_EQ(fields.GetFirstPar("value", 0, 0).GetUInt64(), i++);
    }
    // Every record has the full header; packets are not classified, and carry the running CRC.
    unsigned short crc = vorn::initCRC16();
    for (int key = 1; key + 2 < parser.count; ++key) {
        const vorn::cRecord& packet = parser.records[key];
        const std::string raw = DataOf(packet, "SmlMsgRawData");
        for (const char c : raw)
            crc = vorn::addByte2CRC16(static_cast<unsigned char>(c), crc);
        EXPECT_EQ(packet.GetFirstPar("SmlCrc", 0, 0).GetUInt(), crc);
        EXPECT_EQ(Nested(packet, "SmlMsgHeader"), Nested(last, "SmlMsgHeader"));
        EXPECT_EQ(Nested(packet, "SmlStatus").GetFirstPar("Cast", 0, 0).GetSInt(), -1);
    }
    EXPECT_EQ(Nested(last, "SmlMsgHeader").GetParCount("transactionId", 0, 0), 1);
}

void CutNear(const std::string& file, std::size_t at, std::size_t width)
{
    Parser whole;
    whole.FeedFile(file, {});
    ASSERT_EQ(whole.results, std::vector<int>{SMLP_FILE_COMPLETE});
    for (std::size_t cut = at - width; cut < at + width && cut < file.size(); ++cut) {
        Parser parts;
        parts.FeedFile(file, {cut});
        ASSERT_EQ(parts.records, whole.records) << "cut at " << cut;
    }
}

// The store may fill up at any field, the CRC and the end byte too.
TEST(ParserPackets, TheStoreFillsUpAtEveryField)
{
    const test::TraceCapture quiet;
    for (std::size_t size = 5860; size < 5990; ++size) {
        SCOPED_TRACE(size);
        const std::string body = Hex("78 02 AA 72 62 01 62 01 62 0F 70 70 70") +
                                 LongString(Noise(size)) + Hex("82 03") + std::string(33, 's');
        const std::string file = OpenRes() + Finish(Head("0301") + body) + CloseRes();
        CutNear(file, OpenRes().size() + SML_MESSAGE_STORE, 12);
    }
}

// A chunk may end where the store does.
TEST(ParserPackets, AChunkEndsNearTheEndOfTheStore)
{
    const test::TraceCapture quiet;
    const std::string head = Hex("77 02 41 01 01 01 01");
    for (std::size_t filler = 600; filler < 700; ++filler) {
        SCOPED_TRACE(filler);
        std::string list = Hex("77 01 02 AA 01 01 76");
        for (int i = 0; i < 4; ++i)
            list += head + LongString(Noise(1000)) + '\x01';
        list += head + LongString(Noise(filler)) + '\x01';
        list += head + LongString(Noise(3000)) + '\x01';
        const std::string message = Finish(Head("0701") + list + Hex("01 01"));
        CutNear(OpenRes() + message + CloseRes(), OpenRes().size() + SML_MESSAGE_STORE, 4);
        Parser whole;
        whole.FeedFile(OpenRes() + message + CloseRes(), {});
        EXPECT_EQ(RawBytes(whole), message);
    }
}

TEST(ParserPackets, AMessageDoesNotGrowWithoutBound)
{
    const test::TraceCapture trace(LibSmlp);
    Parser parser;
    parser.Feed(BUF_FLAG_FIRST, OpenRes() + Head("0301") + Hex("78 02 AA 72 62 01 62 01 62 0F 70"));
    parser.Feed(0, Hex("70 70 87 8F 8F 8F 8F 8F 0F")); // raw data of 2 GiB, passed over
    const std::string noise = Noise(1 << 20);
    int fed = 0;
    while (parser.results.back() == SMLP_OK && fed < 32) {
        parser.Feed(0, noise);
        parser.records.clear();
        ++fed;
    }
    EXPECT_EQ(fed, 17);
    EXPECT_EQ(parser.results.back(), SMLP_DECODING_ERROR);
    EXPECT_TRUE(trace.Has("LibSmlp[2]: Decoding-Error: rc=203, smlp[7]"));
}

TEST(ParserTrees, ElevenLevelsAtEveryCut)
{
    std::string tree = "73 02 45 72 62 01 62 05 01";
    for (int level = 0; level < 10; ++level)
        tree = "73 02 41 01 71 " + tree;
    const std::string file =
        OpenRes() + Finish(Head("0501") + Hex("73 02 AA 70" + tree)) + CloseRes();
    Parser whole;
    whole.FeedFile(file, {});
    ASSERT_EQ(whole.results, std::vector<int>{SMLP_FILE_COMPLETE});
    for (std::size_t cut = 1; cut < file.size(); ++cut) {
        Parser parts;
        parts.FeedFile(file, {cut});
        ASSERT_EQ(parts.records, whole.records) << cut;
    }
    vorn::cRecord node = Nested(whole.records[1], "SmlGetProcParRes.parTree");
    for (int level = 0; level < 10; ++level)
        node = Nested(node, "child_List.parTree");
    EXPECT_EQ(node.ToString(), "{parName=75866302316544, procParVal={type=1, value=5}}");
}

TEST(ParserTrees, ThePathToAValueInPieces)
{
    const test::TraceCapture quiet;
    const std::string leaf = Hex("73 02 42 72 62 01") + LongString(Noise(3000)) + Hex("01");
    Parser parser;
    parser.FeedFile(OpenRes() + Finish(Head("0600") +
                                       Hex("75 01 01 01 70 73 02 41 01 72 73 02 31"
                                           "01 01 73 02 43 01 71") +
                                       leaf),
                    {});
    vorn::cRecord body = Nested(parser.records[1], "SmlSetProcParReq");
    vorn::cRecordPath path;
    ASSERT_EQ(GetPath2Tree_withExtValue(body, path), 1);
    vorn::cRecord other;
    other.AppendUIntPar("type", 1, 0);
    const vorn::cRecord changed = vorn::ChangeRecord(body, path, other, "", true);
    vorn::cRecordPath none;
    vorn::cRecord tree = Nested(changed, "parTree");
    EXPECT_EQ(GetPath2Tree_withExtValue(tree, none), 0);
    const std::string text = changed.ToString();
    EXPECT_NE(text.find("parName=72567767433216, procParVal={type=1}"), std::string::npos) << text;
}

} // namespace
