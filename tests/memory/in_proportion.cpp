// Memory that the parser takes for what it is given: it follows the bytes that came, and nothing
// that they announce makes it grow. Inputs made to cost most are measured with all records kept,
// also those of refused messages, whole and byte by byte.
#include "tests/support/failing_new.h"
#include "tests/support/message.h"
#include "tests/support/parse.h"

#include <gtest/gtest.h>

namespace
{

using namespace test;

// What README.md, parser.h and SECURITY.md promise.
constexpr long kBytesForEach = 200;

std::string Times(int count, const std::string& bytes)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += bytes;
    return all;
}

// A list's TL field of four bytes, and the elements.
std::string List(unsigned announced, const std::string& elements)
{
    std::string tl;
    for (int shift = 12; shift >= 0; shift -= 4)
        tl += static_cast<char>((shift != 0 ? 0xF0U : 0x70U) | (announced >> shift & 0x0FU));
    return tl + elements;
}

const std::string kNode = Hex("73 02 61 01 01");                    // without value or children
const std::string kLeaf = Hex("73 02 61 72 62 01 02 78 01");        // with a value
const std::string kEntry = Hex("77 02 61 01 01 01 01 01 01");       // of a value list
const std::string kPeriodEntry = Hex("75 02 61 62 00 52 00 01 01"); // of a period list

// The body of a response with a tree: node around children, still without an end.
std::string TreeBody(const std::string& children)
{
    return Head("0501") + Hex("73 02 61 70 73 02 61 01") + children;
}

// n elements of a tree's list.
std::string Tree(int n, const std::string& element)
{
    return TreeBody(List(static_cast<unsigned>(n), Times(n, element)));
}

// Single bytes, with a node that takes memory of its own before the list outgrows its place each
// time.
std::string Interrupted(int n)
{
    std::string elements;
    for (int i = 0, next = 4; i < n; ++i) {
        elements += i + 1 == next ? kNode : "\1";
        next = i + 1 != next ? next : next < 64 ? 2 * next : next + next / 2;
    }
    return elements;
}

// A long value of n packets behind count single bytes.
std::string LongValue(int n, int count)
{
    return TreeBody(
        List(static_cast<unsigned>(count) + 1,
             Times(count, "\1") + Hex("73 02 61 72 62 01") +
                 LongString(std::string(SML_VALUE_CHUNK * static_cast<std::size_t>(n), 'v'))));
}

const struct {
    const char* name;
    std::string (*make)(int n); // what comes behind an open response
    int most = 6000;
} kCostly[] = {
    {"lists in lists that announce much",
     [](int n) {
         return TreeBody(Times(n, Hex("F1 80 80 00 73 02 61 01 01 73 02 61 01")) + "\x44");
     },
     11},
    {"a list that announces much",
     [](int n) { return Head("0701") + Hex("77 01 02 61 01 01 F1 80 80 00") + Times(n, kEntry); }},
    {"absent elements", [](int n) { return Tree(n, "\1"); }, 100000},
    {"absent elements, interrupted",
     [](int n) { return TreeBody(List(static_cast<unsigned>(n), Interrupted(n))); }},
    {"short lists", [](int n) { return Tree(n, Hex("73 02 61 01 75 01 01") + kNode + "\1\1"); }},
    {"lists of five", [](int n) { return Tree(n, Hex("73 02 61 01 75 01 01 01 01 01")); }},
    {"nodes", [](int n) { return Tree(n, kNode); }},
    {"leaves", [](int n) { return Tree(n, kLeaf); }},
    {"names",
     [](int n) {
         return Head("0501") + Hex("73 02 61") +
                List(static_cast<unsigned>(n), Times(n, Hex("02 61")));
     }},
    {"entries",
     [](int n) {
         return Head("0701") + Hex("77 01 02 61 01 01") +
                List(static_cast<unsigned>(n), Times(n, kEntry));
     }},
    {"period entries",
     [](int n) {
         return Head("0401") + Hex("79 02 61 01 01 70 01 62 00") +
                List(static_cast<unsigned>(n), Times(n, kPeriodEntry));
     }},
    {"messages", [](int n) { return Times(n, Message("0201", "71 01") + OpenRes()); }, 300},
    {"refused messages", [](int n) { return Times(n, std::string(1, '\0') + OpenRes()); }, 300},
    {"a long value behind nodes", [](int n) { return LongValue(n, 1000); }, 60},
    {"a long value behind many nodes", [](int n) { return LongValue(n, 8000); }, 60},
    {"long values",
     [](int n) {
         return Tree(n, Hex("73 02 61 72 62 01") + LongString(std::string(2500, 'v')) + '\1');
     },
     60},
};

// Bytes held once all has been fed, in pieces of that size; what is refused ends a piece.
long Held(const std::string& bytes, std::size_t piece)
{
    Parser parser;
    const long before = lBytesInUse;
    for (std::size_t from = 0; from < bytes.size(); from += piece)
        parser.Feed(BUF_FLAG_FIRST, std::string_view(bytes).substr(from, piece));
    std::vector<int>().swap(parser.results);
    return lBytesInUse - before;
}

// Up to 140 every number, then half as many again each time.
TEST(Memory, FollowsTheBytesThatCame)
{
    LibSmlp->iLevel = 0;
    for (const auto& row : kCostly) {
        for (int n = 1; n <= row.most; n += n < 140 ? 1 : n / 2) {
            const std::string bytes = OpenRes() + row.make(n);
            for (const std::size_t piece : {bytes.size(), std::size_t{700}, std::size_t{1}})
                EXPECT_LE(Held(bytes, piece), kBytesForEach * static_cast<long>(bytes.size()))
                    << n << ' ' << row.name << ", in pieces of " << piece;
        }
    }
    LibSmlp->iLevel = 2;
}

} // namespace
