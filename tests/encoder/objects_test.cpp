// The object classes: what each writes, what lists own, and what is traced.
#include "tests/encoder/encoder_support.h"

#include <memory>

namespace
{

using namespace test;
using Made = std::unique_ptr<Sml_Type>;

template <typename T, typename... Args>
Made Make(Args... args)
{
    return std::make_unique<T>(args...);
}

Sml_Unsigned8* Num(unsigned char v) { return new Sml_Unsigned8(v); }

template <typename Structure>
Made DynamicList(std::initializer_list<Sml_Type*> elements, Structure* list)
{
    int i = 0;
    for (Sml_Type* e : elements)
        list->SetElement(e, i++);
    return Made(list);
}

Made Path()
{
    auto path = std::make_unique<Sml_TreePath>(2);
    path->SetTreePath(0x0100010800FFLL, 0);
    path->SetTreePath("\x01\x00\x02\x08\x00\xFF", 1);
    return path;
}

Made TreeOfName()
{
    auto tree = std::make_unique<Sml_Tree>();
    tree->Set_ParName(new Sml_OctetString(0x0100000000FFLL));
    return tree;
}

Made TimeBySetters(unsigned char choice)
{
    auto time = std::make_unique<Sml_Time>();
    time->SetValue(7);
    time->SetLocOffset(-1);
    time->SetSeaOffset(300);
    time->SetChoice(choice);
    return time;
}

Made Octets(std::size_t size)
{
    const std::string bytes(size, '\x55');
    return std::make_unique<Sml_OctetString>(bytes.data(), static_cast<int>(size), -1);
}

std::string Fives(std::size_t n)
{
    std::string hex;
    for (std::size_t i = 0; i < n; ++i)
        hex += "55";
    return hex;
}

struct ObjectRow {
    const char* name;
    Made object;
    int typeId;
    std::string hex;
};

TEST(Objects, WriteTheirBytes)
{
    const ObjectRow rows[] = {
        {"integer 8", Make<Sml_Integer8>(static_cast<signed char>(-3)), 3, "52 FD"},
        {"integer 16 is never shortened", Make<Sml_Integer16>(short{5}), 4, "53 00 05"},
        {"integer 32 is", Make<Sml_Integer32>(5), 5, "52 05"},
        {"integer 32, negative", Make<Sml_Integer32>(-200), 5, "53 FF 38"},
        {"integer 64 in 48 bits", Make<Sml_Integer64>(-0x80000001LL), 6, "57 FF FF 7F FF FF FF"},
        {"unsigned 8", Make<Sml_Unsigned8>(static_cast<unsigned char>(200)), 7, "62 C8"},
        {"unsigned 16, short", Make<Sml_Unsigned16>(static_cast<unsigned short>(255)), 8, "62 FF"},
        {"unsigned 16", Make<Sml_Unsigned16>(static_cast<unsigned short>(256)), 8, "63 01 00"},
        {"unsigned 32 in 24 bits", Make<Sml_Unsigned32>(0xFFFFFFU), 9, "64 FF FF FF"},
        {"unsigned 32", Make<Sml_Unsigned32>(0x1000000U), 9, "65 01 00 00 00"},
        {"unsigned 64, short", Make<Sml_Unsigned64>(U64{7}), 10, "62 07"},
        {"unsigned 64 in 32 bits", Make<Sml_Unsigned64>(U64{0xFFFFFFFF}), 10, "65 FF FF FF FF"},
        {"unsigned 64 skips 48 bits", Make<Sml_Unsigned64>(U64{0x100000000}), 10,
         "69 00 00 00 01 00 00 00 00"},
        {"bool", Make<Sml_Bool>(true), 1, "42 01"},
        {"absent bool", Make<Sml_Bool>(), 1, "01"},
        {"absent integer", Make<Sml_Integer64>(), 6, "01"},
        {"end of message", Make<Sml_EndOfSmlMessage>(), 999, "00"},
        {"absent octets", Make<Sml_OctetString>(), 2, "01"},
        {"octets", Make<Sml_OctetString>("ABC", 3, -1), 2, "04 41 42 43"},
        {"no octets", Make<Sml_OctetString>("", 0, -1), 2, "01"},
        {"no data", Make<Sml_OctetString>(static_cast<const char*>(nullptr), 3, -1), 2, "01"},
        {"14 octets", Octets(14), 2, "0F" + Fives(14)},
        {"15 octets", Octets(15), 2, "81 01" + Fives(15)},
        {"20 octets", Octets(20), 2, "81 06" + Fives(20)},
        {"21 octets", Octets(21), 2, "81 07" + Fives(21)},
        {"254 octets", Octets(254), 2, "81 80 01" + Fives(254)},
        {"1200 octets", Octets(1200), 2, "84 8B 03" + Fives(1200)},
        {"1201 octets", Octets(1201), 2, "01"},
        {"name", Make<Sml_OctetString>(0x0100010800FFLL), 2, "07 01 00 01 08 00 FF"},
        {"signature", Make<Sml_Signature>("\x11\x22", 2), 2, "03 11 22"},
        {"time", Make<Sml_Time>('\1', 0x12345678U, short{0}, short{0}), 999,
         "72 62 01 65 12 34 56 78"},
        {"local time", Make<Sml_Time>('\3', 100U, short{60}, short{0}), 999,
         "72 62 03 73 62 64 52 3C 52 00"},
        {"absent time", Make<Sml_Time>(), 999, "01"},
        {"time of unknown choice", Make<Sml_Time>('\4', 1U, short{0}, short{0}), 999, "01"},
        {"time by setters", TimeBySetters(3), 999, "72 62 03 73 62 07 52 FF 53 01 2C"},
        {"present time without choice", TimeBySetters(9), 999, "72 62 00 01"},
        {"list type", Make<Sml_ListType>('\1', new Sml_Time(2, 9, 0, 0)), 15,
         "72 62 01 72 62 02 62 09"},
        {"absent list type", Make<Sml_ListType>(), 999, "01"},
        {"choice of nothing", Make<Sml_ListType>('\1', static_cast<Sml_Type*>(nullptr)), 15, "01"},
        {"tree value", Make<Sml_ProcParValue>('\1', Num(5)), 12, "72 62 01 62 05"},
        {"tree value, period entry", Make<Sml_ProcParValue>('\2', new Sml_PeriodEntry), 13,
         "72 62 02 01"},
        {"tree value, tupel entry", Make<Sml_ProcParValue>('\3', new Sml_TupelEntry(true)), 14,
         "72 62 03 F1 07"},
        {"tree value, time", Make<Sml_ProcParValue>('\4', new Sml_Time), 15, "72 62 04 01"},
        {"tree value, list entry", Make<Sml_ProcParValue>('\5', new Sml_ListEntry), 16,
         "72 62 05 01"},
        {"empty list", Make<Sml_ListOf>(0, false), 17, "70"},
        {"list with an empty slot", DynamicList({Num(1), nullptr, Num(3)}, new Sml_ListOf(3, true)),
         17, "73 62 01 62 03"},
        {"tree path", Path(), 999, "72 07 01 00 01 08 00 FF 07 01 00 02 08 00 FF"},
        {"absent tree", Make<Sml_Tree>(), 999, "01"},
        {"tree of a name", TreeOfName(), 999, "73 07 01 00 00 00 00 FF 01 01"},
        {"period entry",
         Make<Sml_PeriodEntry>(new Sml_OctetString(1LL), Num(30), new Sml_Integer8(-1),
                               new Sml_Integer32(-5), new Sml_Signature, true),
         999, "75 07 00 00 00 00 00 01 62 1E 52 FF 52 FB 01"},
        {"list entry",
         Make<Sml_ListEntry>(new Sml_OctetString(1LL), new Sml_Unsigned64(8), new Sml_Time, Num(30),
                             new Sml_Integer8(-1), new Sml_Bool(false), new Sml_Signature("S", 1),
                             true),
         999, "77 07 00 00 00 00 00 01 62 08 01 62 1E 52 FF 42 00 02 53"},
        {"body without fields", Make<Sml_Message_Body>(0x0200U, 0U), 17, "72 63 02 00 70"},
        {"body without anything", Make<Sml_Message_Body>(), 17, "70"},
    };
    for (const ObjectRow& row : rows) {
        EXPECT_EQ(Written(*row.object), Hexed(row.hex)) << row.name;
        EXPECT_EQ(row.object->GetTypeId(), row.typeId) << row.name;
    }
}

TEST(Objects, LongOctetStringsGoInPieces)
{
    EncoderTrace trace(2);
    const std::string piece(1000, '\x55');
    Sml_OctetString s;
    s.SetValue(piece.data(), 1000, 5000);
    EXPECT_EQ(s.GetTotalLength(), 5000);
    EXPECT_EQ(Written(s), "8183880C" + Fives(1000));
    s.SetValue(piece.data(), 1000, 5000);
    EXPECT_EQ(Written(s, 1000), Fives(1000));
    EXPECT_EQ(Written(s, 999), "");
    s.SetValue(piece.data(), 1201, -1); // refused: the old value stays
    EXPECT_EQ(s.GetLength(), 1000);

    Sml_OctetString began(piece.data(), 1000, 1201);
    EXPECT_EQ(Written(began, 1002), ""); // the header counts as gone
    EXPECT_EQ(Written(began, 1002), Fives(1000));
    Sml_OctetString plain(piece.data(), 1000, 1200); // not above 1200: no announcement
    EXPECT_EQ(Written(plain, 1002), "");
    EXPECT_EQ(trace.Lines(), "2 Sml_OctetString:ToBin:Not enough buffer-memory! Free=999|"
                             "2 Sml_OctetString:ToBin:Not enough buffer-memory! Free=1002|"
                             "2 Sml_OctetString:ToBin:Not enough buffer-memory! Free=03ea \n");
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
        const Made taken(list.GetElement(2));
        list.SetElement(nullptr, 2); // c is taken out, not deleted
        EXPECT_EQ(deleted, "b");
        EXPECT_EQ(list.Remove(0), 0); // the head, in the first block
        EXPECT_EQ(list.GetCount(), 3);
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
    EXPECT_EQ(trace.Lines(), "2 Set_ListType: unknown choice: 2\n|"
                             "2 Set_ProcParValue: unknown choice: 6\n|"
                             "2 GetTreePath_OStr: List empty or index out of range! Index=0003\n|"
                             "2 GetTreePath_LL: List empty or index out of range! Index=00ff\n");
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

} // namespace
