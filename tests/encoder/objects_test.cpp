// The object classes: what each writes, what lists own, and what is traced.
#include "tests/encoder/encoder_support.h"

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>

namespace
{

using namespace test;

std::string Fives(std::size_t n)
{
    std::string hex;
    for (std::size_t i = 0; i < n; ++i)
        hex += "55";
    return hex;
}

const std::string kFives(1201, '\x55');
const char kObis[] = "\x01\x00\x02\x08\x00\xFF";

Sml_OctetString* Octets(int n) { return new Sml_OctetString(kFives.data(), n, -1); }
Sml_OctetString* Name() { return new Sml_OctetString(0x0100010800FFLL); }
Sml_Unsigned8* Num(unsigned char v) { return new Sml_Unsigned8(v); }
Sml_Integer8* Minus() { return new Sml_Integer8(-1); }

template <typename Object, typename Change>
Object* With(Object* object, Change change)
{
    change(*object);
    return object;
}

Sml_Time* TimeBySetters(unsigned char choice)
{
    return With(new Sml_Time, [=](Sml_Time& time) {
        time.SetValue(7);
        time.SetLocOffset(-1);
        time.SetSeaOffset(300);
        time.SetChoice(choice);
    });
}

TEST(Objects, WriteTheirBytes)
{
    const struct {
        const char* name;
        Sml_Type* object;
        int typeId;
        std::string hex;
    } rows[] = {
        {"integer 8", new Sml_Integer8(-3), 3, "52FD"},
        {"integer 16 is never shortened", new Sml_Integer16(5), 4, "530005"},
        {"integer 32 is", new Sml_Integer32(5), 5, "5205"},
        {"integer 32, negative", new Sml_Integer32(-200), 5, "53FF38"},
        {"integer 64 in 48 bits", new Sml_Integer64(-0x80000001LL), 6, "57FFFF7FFFFFFF"},
        {"unsigned 8", Num(200), 7, "62C8"},
        {"unsigned 16, short", new Sml_Unsigned16(255), 8, "62FF"},
        {"unsigned 16", new Sml_Unsigned16(256), 8, "630100"},
        {"unsigned 32 in 24 bits", new Sml_Unsigned32(0xFFFFFF), 9, "64FFFFFF"},
        {"unsigned 32", new Sml_Unsigned32(0x1000000), 9, "6501000000"},
        {"unsigned 64, short", new Sml_Unsigned64(7), 10, "6207"},
        {"unsigned 64 in 32 bits", new Sml_Unsigned64(0xFFFFFFFF), 10, "65FFFFFFFF"},
        {"unsigned 64 skips 48 bits", new Sml_Unsigned64(1ULL << 32), 10, "690000000100000000"},
        {"bool", new Sml_Bool(true), 1, "4201"},
        {"absent bool", new Sml_Bool, 1, "01"},
        {"end of message", new Sml_EndOfSmlMessage, 999, "00"},
        {"absent octets", new Sml_OctetString, 2, "01"},
        {"no octets", Octets(0), 2, "01"},
        {"no data", new Sml_OctetString(nullptr, 3, -1), 2, "01"},
        {"3 octets", new Sml_OctetString("ABC", 3, -1), 2, "04414243"},
        {"14 octets", Octets(14), 2, "0F" + Fives(14)},
        {"15 octets", Octets(15), 2, "8101" + Fives(15)},
        {"20 octets", Octets(20), 2, "8106" + Fives(20)},
        {"21 octets", Octets(21), 2, "8107" + Fives(21)},
        {"254 octets", Octets(254), 2, "818001" + Fives(254)},
        {"1200 octets", Octets(1200), 2, "848B03" + Fives(1200)},
        {"1201 octets", Octets(1201), 2, "01"},
        {"name", Name(), 2, "070100010800FF"},
        {"signature", new Sml_Signature("AB", 2), 2, "034142"},
        {"time", new Sml_Time(1, 0x12345678, 5, 5), 999, "7262016512345678"},
        {"local time", new Sml_Time(3, 100, 60, 0), 999, "7262037362 64 523C 5200"},
        {"absent time", new Sml_Time, 999, "01"},
        {"time of unknown choice", new Sml_Time(4, 1, 0, 0), 999, "01"},
        {"time by setters", TimeBySetters(3), 999, "7262037362 07 52FF 53012C"},
        {"present time without choice", TimeBySetters(9), 999, "72620001"},
        {"list type", new Sml_ListType(1, new Sml_Time(2, 9, 0, 0)), 15, "726201 7262026209"},
        {"absent list type", new Sml_ListType, 999, "01"},
        {"choice of nothing", new Sml_ListType(1, nullptr), 15, "01"},
        {"tree value", new Sml_ProcParValue(1, Num(5)), 12, "726201 6205"},
        {"period entry value", new Sml_ProcParValue(2, new Sml_PeriodEntry), 13, "726202 01"},
        {"tupel value", new Sml_ProcParValue(3, new Sml_TupelEntry(true)), 14, "726203 F107"},
        {"time value", new Sml_ProcParValue(4, new Sml_Time), 15, "726204 01"},
        {"list entry value", new Sml_ProcParValue(5, new Sml_ListEntry), 16, "726205 01"},
        {"empty list", new Sml_ListOf(0, false), 17, "70"},
        {"absent list", With(new Sml_ListOf, [](auto& l) { l.SetToCode(false); }), 17, "01"},
        {"list with an empty slot",
         With(new Sml_ListOf(3, true),
              [](auto& l) { l.SetElement(Num(1), 0), l.SetElement(Num(3), 2); }),
         17, "73 6201 6203"},
        {"tree path",
         With(new Sml_TreePath(2),
              [](auto& p) { p.SetTreePath(0x0100010800FFLL, 0), p.SetTreePath(kObis, 1); }),
         999, "72 070100010800FF 070100020800FF"},
        {"absent tree", new Sml_Tree, 999, "01"},
        {"tree of a name", With(new Sml_Tree, [](auto& t) { t.Set_ParName(Name()); }), 999,
         "73 070100010800FF 01 01"},
        {"period entry",
         new Sml_PeriodEntry(Name(), Num(30), Minus(), Num(5), new Sml_Signature, true), 999,
         "75 070100010800FF 621E 52FF 6205 01"},
        {"list entry",
         new Sml_ListEntry(Name(), new Sml_Unsigned64(8), new Sml_Time, Num(30), Minus(),
                           new Sml_Bool(false), new Sml_Signature("S", 1), true),
         999, "77 070100010800FF 6208 01 621E 52FF 4200 0253"},
        {"body without fields", new Sml_Message_Body(0x0200, 0), 17, "72 630200 70"},
        {"body without anything", new Sml_Message_Body, 17, "70"},
    };
    for (const auto& row : rows) {
        const std::unique_ptr<Sml_Type> owner(row.object);
        EXPECT_EQ(Written(*row.object), Hexed(row.hex)) << row.name;
        EXPECT_EQ(row.object->GetTypeId(), row.typeId) << row.name;
    }
}

TEST(Objects, LongOctetStringsGoInPieces)
{
    EncoderTrace trace(2);
    Sml_OctetString s;
    s.SetValue(kFives.data(), 1000, 5000);
    EXPECT_EQ(s.GetTotalLength(), 5000);
    EXPECT_EQ(Written(s), "8183880C" + Fives(1000));
    s.SetValue(kFives.data(), 1000, 5000);
    EXPECT_EQ(Written(s, 1000), Fives(1000));
    EXPECT_EQ(Written(s, 999), "");
    s.SetValue(kFives.data(), 1201, -1); // refused: the old value stays
    EXPECT_EQ(s.GetLength(), 1000);

    Sml_OctetString began(kFives.data(), 1000, 1201);
    EXPECT_EQ(Written(began, 1002), ""); // the header counts as gone
    EXPECT_EQ(Written(began, 1002), Fives(1000));
    Sml_OctetString plain(kFives.data(), 1000, 1200); // not above 1200: no announcement
    EXPECT_EQ(Written(plain, 1002), "");
    Sml_OctetString name(1LL); // the order of a name is no matter of pieces
    name.SetValue("AB", 2, 5000);
    EXPECT_EQ(Written(name), "4142");
    EXPECT_EQ(trace.Lines(), "2 Sml_OctetString:ToBin:Not enough buffer-memory! Free=999 + "
                             "2 Sml_OctetString:ToBin:Not enough buffer-memory! Free=1002 + "
                             "2 Sml_OctetString:ToBin:Not enough buffer-memory! Free=03ea \\n");
}

TEST(Objects, OctetStringsAsNumbers)
{
    const Sml_OctetString name(0x0100010800FFLL);
    EXPECT_EQ(name.GetObisValue(), 0x0100010800FF);
    EXPECT_EQ(name.GetObisValueRevers(), 0xFF0008010001);
    const Sml_OctetString two("\x12\x34", 2, -1); // missing bytes count as 0
    EXPECT_EQ(two.GetObisValue(), 0x3412);
    EXPECT_EQ(two.GetObisValueRevers(), 0x123400000000);
    Sml_OctetString own("0123456789abcdefghijklmnopqrstuvwxyz", 36, -1);
    int len = 0;
    own.SetValue(own.GetValue(&len) + 10, 26, -1); // out of its own bytes
    EXPECT_EQ(std::string(own.GetValue(&len), 26), "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(Sml_OctetString().GetValue(&len), nullptr);
    EXPECT_EQ(len, 0);
}

// Bytes as a host has them: of either sign, to be written to or not.
template <typename Byte>
void ExpectTaken()
{
    Byte name[] = {1, 0, 2, 8, 0, 7};
    Byte* const bytes = name;
    Sml_OctetString string(bytes, 6, -1);
    EXPECT_EQ(Written(string), "07010002080007");
    string.SetValue(bytes, 2, -1);
    EXPECT_EQ(Written(string), "030100");
    Sml_Signature signature(bytes, 6);
    EXPECT_EQ(Written(signature), "07010002080007");
    Sml_TreePath path(1);
    EXPECT_EQ(path.SetTreePath(bytes, 0), 0);
    EXPECT_EQ(Written(path), "7107010002080007");
}

TEST(Objects, TakeAndGiveBytesOfEveryKind)
{
    ExpectTaken<char>();
    ExpectTaken<const char>();
    ExpectTaken<unsigned char>();
    ExpectTaken<const unsigned char>();
    Sml_OctetString string("AB", 2, -1);
    int len = 0;
    char* const own = string.GetValue(&len);
    own[1] = 'C';
    const char* const seen = std::as_const(string).GetValue(&len);
    EXPECT_EQ(std::string(seen, 2), "AC");
    EXPECT_FALSE(Sml_OctetString(nullptr, 0, -1).GetToCode());
    static_assert(std::is_same_v<decltype(std::as_const(string).GetValue(&len)), const char*>);
    static_assert(std::is_invocable_v<decltype(SmlMessageToBin), Sml_Message&, vorn::cRecord&,
                                      unsigned, char*, long>);
}

// Counts how often it was deleted.
struct Counted : Sml_Type {
    explicit Counted(std::string* l, char n) : log(l), name(n) {}
    ~Counted() override { *log += name; }
    void ToBin(cBuffer* buf) override { ToBin_as_Unsigned8(static_cast<unsigned char>(name), buf); }
    std::string* log;
    char name;
};

TEST(Objects, DynamicListsOwnTheirElements)
{
    std::string deleted;
    const auto make = [&](char name) { return new Counted(&deleted, name); };
    {
        Sml_ListOf list(2, true);
        list.SetElement(make('a'), 0);
        list.SetElement(make('b'), 1);
        EXPECT_EQ(list.Add(make('c')), 0);
        EXPECT_EQ(list.Add(make('d')), 0);
        list.SetElement(make('B'), 1); // b goes
        list.SetElement(list.GetElement(1), 1);
        const std::unique_ptr<Sml_Type> taken(list.GetElement(2));
        list.SetElement(nullptr, 2); // c is taken out, not deleted
        EXPECT_EQ(deleted, "b");
        EXPECT_EQ(list.Remove(0), 0); // the head, in the first block
        EXPECT_EQ(list.GetCount(), 3);
        EXPECT_EQ(Written(*list.GetElement(2)), "6264");
        EXPECT_EQ(Written(list), "7362426264");
        EXPECT_EQ(list.Remove(2), 0); // the tail: Add goes on behind B and the empty slot
        EXPECT_EQ(list.Add(make('e')), 0);
        EXPECT_EQ(Written(list), "7362426265");
        EXPECT_EQ(deleted, "bad");
        for (const int bad : {-1, 3, 1000}) {
            EXPECT_EQ(list.SetElement(list.GetElement(0), bad), 222);
            EXPECT_EQ(list.Remove(bad), 222);
            EXPECT_EQ(list.GetElement(bad), nullptr);
        }
    }
    EXPECT_EQ(deleted, "badceB"); // what was taken out, then from the last slot to the first
    Sml_ListOf empty;
    EXPECT_EQ(empty.Remove(0), 222);
    EXPECT_EQ(empty.SetElement(&empty, 0), 222);
}

TEST(Objects, RefusalsAreTraced)
{
    EncoderTrace trace(2);
    Sml_Time time(1, 1, 0, 0);
    Sml_ListType listType;
    listType.Set(2, &time); // stays ours
    EXPECT_EQ(Written(listType), "01");
    Sml_ProcParValue value(1, new Sml_Unsigned8(5));
    value.Set_ProcParValue(1, value.GetType());
    EXPECT_EQ(Written(value), "7262016205");
    value.Set_ProcParValue(6, &time);
    EXPECT_EQ(Written(value), "01");
    EXPECT_EQ(value.GetChoice(), 0);

    Sml_TreePath path(2);
    EXPECT_EQ(path.SetTreePath(0x0100010800FFLL, 2), 222);
    EXPECT_EQ(path.SetTreePath(static_cast<Sml_OctetString*>(nullptr), 0), 230);
    EXPECT_EQ(path.SetTreePath(0x0100010800FFLL, 1), 0);
    EXPECT_EQ(path.GetTreePath_LL(1), 0x0100010800FF);
    EXPECT_EQ(path.GetTreePath_OStr(3), nullptr);
    EXPECT_EQ(path.GetTreePath_LL(255), 0);
    Sml_Close_Request body;
    EXPECT_EQ(body.SetListElement(&time, 1), 222);
    EXPECT_EQ(trace.Lines(),
              "2 Set_ListType: unknown choice: 2\\n + 2 Set_ProcParValue: unknown choice: 6\\n + "
              "2 GetTreePath_OStr: List empty or index out of range! Index=0003\\n + "
              "2 GetTreePath_LL: List empty or index out of range! Index=00ff\\n");
}

// 200,000 elements: were any step quadratic, this would not end in a day.
TEST(Objects, LongListsTakeLinearTime)
{
    constexpr int kCount = 200000;
    Sml_Unsigned8 one(1);
    Sml_ListOf filled(kCount, false);
    Sml_ListOf added;
    for (int i = 0; i < kCount; ++i) {
        filled.SetElement(&one, i);
        added.Add(&one);
    }
    const std::string bytes = Written(filled, 2 * kCount + 5);
    EXPECT_EQ(bytes.substr(0, 14), "F3808D84006201");
    EXPECT_EQ(bytes.size(), 2 * (5 + 2 * std::size_t{kCount}));
    EXPECT_EQ(Written(added, 2 * kCount + 5), bytes);
}

// Trees nested by hand: written down to the bound, deleted from any depth.
TEST(Objects, TreesOfAnyDepth)
{
    const std::string node = Hexed("73 070100010800FF 01 71");
    for (const unsigned levels : {1U, SML_MAX_TREE_DEPTH, SML_MAX_TREE_DEPTH + 16, 1000000U}) {
        EncoderTrace trace(2);
        auto* tree = new Sml_Tree(Name(), nullptr, nullptr, true);
        for (unsigned i = 1; i < levels; ++i) {
            auto* children = new Sml_ListOf(1, true);
            children->SetElement(tree, 0);
            tree = new Sml_Tree(Name(), nullptr, children, true);
        }
        const std::unique_ptr<Sml_Tree> owner(tree);
        const std::string bytes = Written(*tree);
        std::string expected;
        for (unsigned i = 1; i < std::min(levels, SML_MAX_TREE_DEPTH); ++i)
            expected += node;
        EXPECT_EQ(bytes.substr(0, expected.size()), expected);
        if (levels <= SML_MAX_TREE_DEPTH) {
            EXPECT_EQ(bytes.substr(expected.size()), Hexed("73 070100010800FF 01 01"));
        }
        EXPECT_LT(bytes.size(), 2 * (SML_MAX_TREE_DEPTH + 8) * node.size());
        EXPECT_EQ(trace.Lines(),
                  levels <= SML_MAX_TREE_DEPTH ? "" : "2 Sml_ListOf::ToBin: nested too deep");
    }
}

} // namespace
