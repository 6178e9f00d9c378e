// Values and messages too large for one record: delivered in packets that lose nothing, the same
// ones however the input is cut.
#include "tests/parser/in_pieces.h"
#include "tests/support/message.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using test::BytesAt;
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

// Parses a file with the message between open and close: its packets together hold all its bytes.
void ParseWhole(const std::string& message, Parser& whole)
{
    whole.FeedFile(OpenRes() + message + CloseRes(), {});
    ASSERT_EQ(whole.results, std::vector<int>{SMLP_FILE_COMPLETE});
    std::string bytes;
    for (const auto& [key, record] : whole.records) {
        if (key > 0 && key + 1 < whole.count)
            bytes += BytesAt(record, "SmlMsgRawData");
    }
    EXPECT_EQ(bytes, message);
}

void ParseInAnyPieces(const std::string& message, Parser& whole)
{
    ParseWhole(message, whole);
    std::mt19937 random(5);
    for (int round = 0; round < 12; ++round) {
        std::vector<std::size_t> cuts;
        const std::size_t piece = round < 2 ? 1 : 1 + random() % 9000;
        for (std::size_t at = piece; at < message.size();
             at += round < 7 ? piece : 1 + random() % piece)
            cuts.push_back(at);
        test::ExpectSameWhenCut(OpenRes() + message + CloseRes(), cuts, whole);
    }
}

// The pieces of long values in a tree, and "1" for each that is followed by another, else "0".
void CollectPieces(const vorn::cRecord& tree, std::string& value, std::string& flags)
{
    const vorn::cRecord procParVal = Nested(tree, "procParVal");
    const vorn::cRecordPar flag = procParVal.GetFirstPar("extFlag", 0, 0);
    if (flag.IsValid()) {
        value += BytesAt(procParVal, "value");
        flags += flag.GetBool() ? '1' : '0';
    }
    for (const vorn::cRecordPar& par : Nested(tree, "child_List")) {
        vorn::cRecord child;
        if (par.GetRecord(child))
            CollectPieces(child, value, flags);
    }
}

TEST(ParserPackets, LongParameterValuesAreDeliveredInPieces)
{
    const test::TraceCapture quiet;
    const std::string large = Noise(100 * 1024);
    const std::string small = Noise(3000);
    const auto leaf = [](const std::string& value) {
        return Hex("73 02 42 72 62 01") + LongString(value) + Hex("01");
    };
    const std::string largeFlags = std::string(large.size() / SML_VALUE_CHUNK, '1') + '0';
    const struct {
        const char* pcName;
        std::string strTree;
        std::string strValues;
        std::string strFlags;
        const char* pcRemainder; // the last record's second tree
    } rows[] = {
        {"root", leaf(large), large, largeFlags, ""},
        {"child between others",
         Hex("73 02 41 01 73 73 02 31 72 62 01 62 05 01") + leaf(large) +
             Hex("73 02 32 72 62 01 62 06 01"),
         large, largeFlags,
         "{child_List={parTree={parName=54975581388800, procParVal={type=1, value=6}}}}"},
        {"four levels down",
         Hex("73 02 41 01 71 73 02 43 01 71 73 02 44 01 71 73 02 45 01 71") + leaf(large), large,
         largeFlags, ""},
        {"two in one tree", Hex("73 02 41 01 72") + leaf(small) + leaf(small), small + small,
         "110110", ""},
    };
    const struct {
        const char* pcTag;
        const char* pcHead;
        const char* pcLabel;
    } messages[] = {{"0600", "75 02 AA 01 01 70", "SmlSetProcParReq"},
                    {"0501", "73 02 AA 70", "SmlGetProcParRes"}};
    for (const auto& message : messages) {
        for (const auto& row : rows) {
            SCOPED_TRACE(message.pcLabel + std::string(", ") + row.pcName);
            Parser parser;
            ParseInAnyPieces(Finish(Head(message.pcTag) + Hex(message.pcHead) + row.strTree),
                             parser);
            std::string values;
            std::string flags;
            std::string remainder;
            for (const auto& [key, record] : parser.records) {
                const vorn::cRecord body = Nested(record, message.pcLabel);
                if (body.begin() != body.end())
                    remainder.clear();
                for (const vorn::cRecordPar& par : body) {
                    vorn::cRecord tree;
                    if (std::string(par.GetName()) != "parTree" || !par.GetRecord(tree))
                        continue;
                    const std::size_t before = flags.size();
                    CollectPieces(tree, values, flags);
                    if (flags.size() == before)
                        remainder = tree.ToString();
                    else
                        EXPECT_EQ(body.GetFirstPar("extMsgPart", 0, 0).GetUInt(),
                                  static_cast<unsigned>(key));
                }
            }
            EXPECT_TRUE(values == row.strValues);
            EXPECT_EQ(flags, row.strFlags);
            EXPECT_EQ(remainder, row.pcRemainder);
        }
    }
}

TEST(ParserPackets, AListLongerThanTheStoreArrivesWhole)
{
    const test::TraceCapture quiet;
    std::string list = Hex("77 01 02 AA 01 01 F2 8D 80 00"); // 0x2D00 entries
    const std::string entry = Hex("77 07 01 00 01 08 00 FF 01 01 62 1E 52 FF 69 00 00 00 00");
    for (unsigned i = 0; i < 0x2D00; ++i) {
        list += entry;
        for (int shift = 24; shift >= 0; shift -= 8)
            list += static_cast<char>(i >> shift);
        list += Hex("04 61 62 63");
    }
    const std::string message = Finish(Head("0701") + list + Hex("01 01"));
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
        for (const char c : BytesAt(packet, "SmlMsgRawData"))
            crc = vorn::addByte2CRC16(static_cast<unsigned char>(c), crc);
        EXPECT_EQ(packet.GetFirstPar("SmlCrc", 0, 0).GetUInt(), crc);
        EXPECT_EQ(Nested(packet, "SmlMsgHeader"), Nested(last, "SmlMsgHeader"));
        EXPECT_EQ(packet.GetFirstParByPath("SmlStatus.Cast", ".", 0, 0).GetSInt(), -1);
    }
    EXPECT_EQ(Nested(last, "SmlMsgHeader").GetParCount("transactionId", 0, 0), 1);
}

// The bytes of the store that the first packet leaves empty, for each number of bytes that are free
// where the last entry begins: a TL field of one byte wants one, a longer one eight, an integer all
// of its own, a CRC field two, a string what there is; a packet ends with a chunk in any case.
TEST(ParserPackets, TheStoreFillsUpAtEveryField)
{
    const test::TraceCapture quiet;
    const struct {
        std::string strEntry; // and the rest of the list's body
        std::size_t uiFrom;   // bytes free
        std::string strLeft;  // '-': no packet
    } rows[] = {
        {Hex("77 80 80 0B 01 00 01 08 00 FF AA BB 69 00 00 00 00 00 00 00 01 01 01 01 62 05 01 01"
             "01"),
         0,
         "001234567"
         "00000"
         "1234567"
         "000000000"
         "110-"},
        {Hex("77 02 41 01 01 01 01") + LongString(Noise(3000)) + Hex("01 01 01"), 1208,
         "000000012345"},
    };
    for (const auto& row : rows) {
        std::string left;
        for (std::size_t i = 0; i < row.strLeft.size(); ++i) {
            std::string message = Head("0701") + Hex("77 01 02 AA 01 01 76");
            std::size_t filler = SML_MESSAGE_STORE - row.uiFrom - i - message.size();
            for (std::size_t n = 5; n > 0; filler -= filler / n, --n)
                message += Hex("77 02 41 01 01 01 01") + LongString(Noise(filler / n - 15)) + '\1';
            message = Finish(message + row.strEntry);
            SCOPED_TRACE(message.size());
            Parser whole;
            ParseWhole(message, whole);
            const std::size_t size = BytesAt(whole.records[1], "SmlMsgRawData").size();
            left += whole.count == 3 ? '-' : static_cast<char>('0' + SML_MESSAGE_STORE - size);
            const std::size_t full = OpenRes().size() + SML_MESSAGE_STORE;
            const std::string file = OpenRes() + message + CloseRes();
            test::ExpectSameInPieces(file, full - 12, std::min(full + 12, file.size()), whole);
        }
        EXPECT_EQ(left, row.strLeft);
    }
}

// Raw data of 2 GiB, passed over, up to the limit that is set: here, how many pieces of 64 KiB fit.
TEST(ParserPackets, AMessageDoesNotGrowWithoutBound)
{
    const struct {
        unsigned limit; // 0: the library's
        int pieces;
    } rows[] = {{0, 257}, {1, 1}, {SML_MESSAGE_STORE, 1}, {1 << 17, 3}, {0xFFFFFFFF, 300}};
    const std::string noise = Noise(1 << 16);
    for (const auto& row : rows) {
        const test::TraceCapture trace(LibSmlp);
        Parser parser;
        if (row.limit != 0)
            parser.parser.SetMaxMessage(row.limit);
        parser.Feed(BUF_FLAG_FIRST,
                    OpenRes() + Head("0301") + Hex("78 02 AA 72 62 01 62 01 62 0F 70"));
        parser.Feed(0, Hex("70 70 87 8F 8F 8F 8F 8F 0F"));
        int fed = 0;
        for (; parser.results.back() == SMLP_OK && fed < 300; ++fed) {
            parser.Feed(0, noise);
            parser.records.clear();
        }
        EXPECT_EQ(fed, row.pieces) << row.limit;
        EXPECT_EQ(trace.Has("LibSmlp[2]: Decoding-Error: rc=203, smlp[7]"), fed < 300);
    }
}

// Packets repeat the nodes beside the way to a long value: a message of too many is refused.
TEST(ParserPackets, AMessageRepeatsAsManyNodesAsItHasBytes)
{
    const auto tree = [](std::size_t nodes) { // the list's TL field has four bytes
        std::string list = "\xF0\x80\x80\x70";
        for (std::size_t i = 0, shift = 12; i < 4; ++i, shift -= 4)
            list[i] = static_cast<char>(list[i] | static_cast<char>((nodes + 1) >> shift & 0x0FU));
        return Finish(Head("0600") + Hex("75 01 01 01 70 73 02 41 01") + list +
                      std::string(nodes, '\1') + Hex("73 02 42 72 62 01") +
                      LongString(Noise(30000)) + Hex("01"));
    };
    for (const std::size_t nodes : {SML_VALUE_CHUNK, 2 * SML_VALUE_CHUNK}) {
        const test::TraceCapture trace(LibSmlp);
        Parser parser;
        parser.FeedFile(OpenRes() + tree(nodes) + CloseRes(), {});
        const bool good = nodes == SML_VALUE_CHUNK;
        EXPECT_EQ(parser.results.back(), good ? SMLP_FILE_COMPLETE : SMLP_DECODING_ERROR);
        EXPECT_EQ(trace.Has("LibSmlp[2]: Decoding-Error: rc=203, smlp[7]"), !good);
    }
}

TEST(ParserTrees, ThePathToAValueInPieces)
{
    const test::TraceCapture quiet;
    Parser parser;
    ParseWhole(Finish(Head("0600") +
                      Hex("75 01 01 01 70 73 02 41 01 72 73 02 31 01 01 73 02 43 01 71"
                          "73 02 42 72 62 01") +
                      LongString(Noise(3000)) + '\x01'),
               parser);
    vorn::cRecord body = Nested(parser.records[1], "SmlSetProcParReq");
    vorn::cRecordPath path;
    ASSERT_EQ(GetPath2Tree_withExtValue(body, path), 1);
    vorn::cRecord other;
    other.AppendUIntPar("type", 1, 0);
    const vorn::cRecord changed = vorn::ChangeRecord(body, path, other, "", true);
    const std::string text = changed.ToString();
    EXPECT_NE(text.find("parName=72567767433216, procParVal={type=1}"), std::string::npos) << text;
    vorn::cRecord tree = Nested(changed, "parTree");
    vorn::cRecordPath none;
    EXPECT_EQ(GetPath2Tree_withExtValue(tree, none), 0);
}

} // namespace
