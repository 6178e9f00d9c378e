// Message records at random: each body is a table of fields, and one generator fills them all. The
// numbers gather round the borders of their widths; byte strings are rich in escape bytes. A budget
// keeps a message within the buffer that it is encoded in.
#ifndef TESTS_ROUNDTRIP_GENERATOR_H
#define TESTS_ROUNDTRIP_GENERATOR_H

#include "tests/support/choices.h"
#include "tests/support/parse.h"

#include <algorithm>
#include <stdexcept>

namespace test
{

using vorn::cRecord;
using U64 = unsigned long long;

struct Rule;
class Generator;
using Maker = void (*)(Generator& gen, cRecord& rec, const Rule& rule);

struct Rule {
    const char* label;
    Maker make;
    unsigned most = 0;             // bytes of a string, bits or value of a number
    bool needed = false;           // the parser refuses a message without it
    const char* element = nullptr; // of a list: the label of its elements
};

class Generator
{
public:
    Generator(Choices c, int bytes) : choices(std::move(c)), budget(bytes) {}

    unsigned Below(unsigned n) { return choices.Below(n); }
    bool Afford(int bytes) { return budget >= bytes; }
    void Spend(int bytes) { budget -= bytes; }

    // Of at most so many bits: a border between two widths or a neighbour of one, or anything.
    U64 Number(unsigned bits)
    {
        static constexpr unsigned kWidths[] = {7, 8, 15, 16, 23, 24, 31, 32, 47, 48, 63, 64};
        const unsigned width = kWidths[Below(12)];
        const U64 border = width < 64 ? U64{1} << width : 0;
        const U64 number = Below(4) == 0 ? choices.Number() >> Below(64) : border + Below(3) - 1;
        Spend(9);
        return bits < 64 ? number & ((U64{1} << bits) - 1) : number;
    }
    long long Signed(unsigned bits)
    {
        const auto magnitude = static_cast<long long>(Number(bits - 1));
        return Below(2) == 0 ? magnitude : -magnitude - 1;
    }
    std::string Bytes(unsigned least, unsigned most)
    {
        const unsigned room = static_cast<unsigned>(std::max(budget, 1));
        const unsigned limit = std::max(least, std::min(most, room));
        std::string bytes(Below(4) == 0 ? limit : least + Below(limit - least + 1), '\x1B');
        if (Below(8) != 0) // else nothing but escape bytes
            for (char& c : bytes)
                c = static_cast<char>(Below(3) == 0 ? 0x1B : Below(256));
        Spend(static_cast<int>(bytes.size()) + 3);
        return bytes;
    }

    unsigned level = 0; // of the tree under way

private:
    Choices choices;
    int budget;
};

inline void AppendBytes(cRecord& rec, const char* label, const std::string& bytes)
{
    rec.AppendDataPar(label, bytes.data(), static_cast<int>(bytes.size()), 0);
}

inline void Octets(Generator& gen, cRecord& rec, const Rule& rule)
{
    AppendBytes(rec, rule.label, gen.Bytes(1, rule.most));
}

inline void Codepage(Generator&, cRecord& rec, const Rule& rule)
{
    AppendBytes(rec, rule.label, "ISO 8859-15");
}

inline void UInt(Generator& gen, cRecord& rec, const Rule& rule)
{
    rec.AppendUIntPar(rule.label, static_cast<unsigned>(gen.Number(rule.most)), 0);
}

inline void UInt64(Generator& gen, cRecord& rec, const Rule& rule)
{
    rec.AppendUInt64Par(rule.label, gen.Number(rule.most), 0);
}

inline void SInt(Generator& gen, cRecord& rec, const Rule& rule)
{
    rec.AppendSIntPar(rule.label, static_cast<int>(gen.Signed(rule.most)), 0);
}

inline void Flag(Generator& gen, cRecord& rec, const Rule& rule)
{
    rec.AppendBoolPar(rule.label, gen.Below(2) != 0, 0);
}

inline void Time(Generator& gen, cRecord& rec, const Rule& rule)
{
    cRecord time;
    const unsigned type = 1 + gen.Below(3);
    time.AppendUIntPar("type", type, 0);
    time.AppendUIntPar("value", static_cast<unsigned>(gen.Number(32)), 0);
    if (type == 3) {
        SInt(gen, time, {"locOffset", nullptr, 16});
        SInt(gen, time, {"seaOffset", nullptr, 16});
    }
    rec.AppendRecordPar(rule.label, time, 0);
}

// A record of one field under rule's label.
inline void Wrapped(Generator& gen, cRecord& rec, const char* label, const Rule& inner)
{
    cRecord nested;
    inner.make(gen, nested, inner);
    rec.AppendRecordPar(label, nested, 0);
}

inline void ListType(Generator& gen, cRecord& rec, const Rule& rule)
{
    cRecord list;
    list.AppendUIntPar("type", 1, 0);
    Time(gen, list, {"SmlTime", nullptr});
    cRecord value;
    value.AppendRecordPar("smlList", list, 0);
    rec.AppendRecordPar(rule.label, value, 0);
}

inline void Value(Generator& gen, cRecord& rec, const Rule& rule)
{
    switch (gen.Below(7)) {
    case 0:
        return Flag(gen, rec, rule);
    case 1:
        return UInt(gen, rec, {rule.label, nullptr, 32});
    case 2:
        return UInt64(gen, rec, {rule.label, nullptr, 64});
    case 3:
        return SInt(gen, rec, {rule.label, nullptr, 32});
    case 4:
        return rec.AppendSInt64Par(rule.label, gen.Signed(64), 0);
    case 5:
        return ListType(gen, rec, rule);
    default:
        return AppendBytes(rec, rule.label, gen.Bytes(0, 1200));
    }
}

// Fields that the parser can do without are there three times in four.
template <std::size_t N>
cRecord Filled(Generator& gen, const Rule (&fields)[N])
{
    cRecord rec;
    for (const Rule& field : fields) {
        if (field.needed || gen.Below(4) != 0)
            field.make(gen, rec, field);
    }
    return rec;
}

inline constexpr Rule kListEntry[] = {
    {"objName", UInt64, 48, true},
    {"status", UInt64, 64},
    {"valTime", Time},
    {"unit", UInt, 8},
    {"scaler", SInt, 8},
    {"value", Value, 0, true},
    {"valueSignature", Octets, 256},
};

inline constexpr Rule kPeriodEntry[] = {
    {"objName", UInt64, 48, true}, {"unit", UInt, 8, true},         {"scaler", SInt, 8, true},
    {"value", Value, 0, true},     {"valueSignature", Octets, 256},
};

template <const auto& kFields>
void Entry(Generator& gen, cRecord& rec, const Rule& rule)
{
    rec.AppendRecordPar(rule.label, Filled(gen, kFields), 0);
}

// A list of up to 20 elements (so also of more than 15, with its longer head), none if least is 0.
inline void Elements(Generator& gen, cRecord& rec, const Rule& rule, Maker make, unsigned least)
{
    cRecord list;
    const unsigned count = least + (gen.Below(4) == 0 ? gen.Below(20) : gen.Below(4));
    for (unsigned i = 0; i < count && (i < least || gen.Afford(100)); ++i)
        make(gen, list, {rule.element, nullptr, 48});
    rec.AppendRecordPar(rule.label, list, 0);
}

template <const auto& kFields>
void Entries(Generator& gen, cRecord& rec, const Rule& rule)
{
    Elements(gen, rec, rule, Entry<kFields>, 0);
}

inline void Names(Generator& gen, cRecord& rec, const Rule& rule)
{
    Elements(gen, rec, rule, UInt64, 1);
}

inline void ParValue(Generator& gen, cRecord& rec, const Rule& rule)
{
    cRecord value;
    static constexpr unsigned kTypes[] = {1, 2, 4, 5};
    const unsigned type = kTypes[gen.Below(gen.Afford(200) ? 4 : 1)];
    value.AppendUIntPar("type", type, 0);
    if (type == 1)
        Value(gen, value, {"value", nullptr});
    else if (type == 4)
        Wrapped(gen, value, "value", {"SmlTime", Time});
    else
        value.AppendRecordPar("value",
                              type == 2 ? Filled(gen, kPeriodEntry) : Filled(gen, kListEntry), 0);
    rec.AppendRecordPar(rule.label, value, 0);
}

inline void Tree(Generator& gen, cRecord& rec, const Rule& rule)
{
    constexpr unsigned kLevels = 11; // the most that the parser follows
    cRecord tree;
    gen.Spend(6);
    UInt64(gen, tree, {"parName", nullptr, 48});
    if (gen.Below(4) != 0)
        ParValue(gen, tree, {"procParVal", nullptr});
    if (++gen.level < kLevels && gen.Afford(100) && gen.Below(4) != 0)
        Elements(gen, tree, {"child_List", nullptr, 0, false, "parTree"}, Tree, 1);
    --gen.level;
    rec.AppendRecordPar(rule.label, tree, 0);
}

// ---- The messages

using Encoder = int (*)(cRecord& body, cRecord& header, cRecord& result);

template <int kChoice>
int EncodeProfile(cRecord& body, cRecord& header, cRecord& result)
{
    return Encode_GetProfile_Request(body, header, result, kChoice);
}

struct Kind {
    const char* name;
    unsigned identifier;
    Encoder encode;
    int size; // of the encoder's buffer
    std::vector<Rule> fields;
};

// clang-format off
inline const std::vector<Kind>& Kinds()
{
    static const Rule kServer{"serverId", Octets, 32, true};
    static const Rule kAnyServer{"serverId", Octets, 32};
    static const Rule kClient{"clientId", Octets, 32, true};
    static const Rule kAnyClient{"clientId", Octets, 32};
    static const Rule kUser{"username", Octets, 64};
    static const Rule kPassword{"password", Octets, 64};
    static const Rule kFile{"reqFileId", Octets, 64, true};
    static const Rule kCodepage{"codepage", Codepage};
    static const Rule kPath{"parTreePath", Names, 0, false, "path_Entry"};
    static const Rule kObjects{"object_List", Names, 0, false, "object_List_Entry"};
    static const Rule kTree{"parTree", Tree, 0, true};
    static const Rule kAnyTree{"parTree", Tree};
    static const Rule kPeriods{"period_List", Entries<kPeriodEntry>, 0, true, "SmlPeriodEntry"};
    static const Rule kEntries{"valList", Entries<kListEntry>, 0, true, "valListEntry"};
    static const std::vector<Rule> kProfile = {
        kAnyServer, kUser, kPassword, {"beginTime", Time}, {"endTime", Time}, kPath, kObjects,
        kAnyTree};
    static const std::vector<Rule> kClose = {{"globalSignature", Octets, 256}};
    static const std::vector<Kind> kinds = {
        {"SmlOpenReq", 0x0100, Encode_Open_Request, 500,
         {kCodepage, kClient, kFile, kAnyServer, kUser, kPassword, {"smlVersion", UInt, 1}}},
        {"SmlOpenRes", 0x0101, Encode_Open_Response, 500,
         {{"codepage", Octets, 64}, kAnyClient, kFile, kServer, {"refTime", Time},
          {"smlVersion", UInt, 8}}},
        {"SmlCloseReq", 0x0200, Encode_Close_Request, 500, kClose},
        {"SmlCloseRes", 0x0201, Encode_Close_Response, 500, kClose},
        {"SmlGetProfileReq", 0x0300, EncodeProfile<0x300>, 1000, kProfile},
        {"SmlGetProfileReq", 0x0400, EncodeProfile<0x400>, 1000, kProfile},
        {"SmlGetProfListRes", 0x0401, Encode_GetProfileList_Response, 4000,
         {kServer, {"actTime", Time}, {"regPeriod", UInt, 32}, kPath, {"valTime", Time},
          {"status", UInt64, 64, true}, kPeriods, {"RawData", Octets, 1200},
          {"periodSignature", Octets, 256}}},
        {"SmlGetProcParReq", 0x0500, Encode_GetProcPar_Request, 1000,
         {kAnyServer, kUser, kPassword, kPath}},
        {"SmlGetProcParRes", 0x0501, Encode_GetProcPar_Response, 10000, {kServer, kPath, kTree}},
        {"SmlSetProcParReq", 0x0600, Encode_SetProcPar_Request, 10000,
         {kAnyServer, kUser, kPassword, kPath, kTree}},
        {"SmlGetListReq", 0x0700, Encode_GetList_Request, 1000,
         {kClient, kAnyServer, kUser, kPassword, {"listName", UInt64, 48}}},
        {"SmlGetListRes", 0x0701, Encode_GetList_Response, 4000,
         {kAnyClient, kServer, {"listName", UInt64, 48}, {"actSensorTime", Time}, kEntries,
          {"listSignature", Octets, 256}, {"actGatewayTime", Time}}},
        {"SmlAttentionRes", 0xFF01, Encode_Attention_Response, 500,
         {kServer, {"attentionNo", UInt64, 48, true}, {"attentionMsg", Octets, 128}, kAnyTree}},
    };
    return kinds;
}
// clang-format on

inline const Kind& KindOf(unsigned long identifier)
{
    for (const Kind& kind : Kinds()) {
        if (kind.identifier == identifier)
            return kind;
    }
    throw std::logic_error("no message has the identifier " + std::to_string(identifier));
}

struct Sent {
    const Kind* kind;
    cRecord header, body, result;
    std::string Bytes() const
    {
        const vorn::cRecordPar raw = result.GetFirstPar("SmlMsgRawData", 0, 0);
        return {raw.GetData(), static_cast<std::size_t>(raw.GetSize())};
    }
};

// A message with the fields that has says, not encoded yet.
template <typename Has>
Sent Fill(const Kind& kind, const Choices& choices, Has has)
{
    Generator gen(choices, kind.size - 200);
    Sent sent{&kind, {}, {}, {}};
    AppendBytes(sent.header, "transactionId", gen.Bytes(1, 64));
    sent.header.AppendUIntPar("groupNo", gen.Below(256), 0);
    static constexpr unsigned kAbort[] = {0, 1, 2, 0xFF};
    sent.header.AppendUIntPar("abortOnError", kAbort[gen.Below(4)], 0);
    for (const Rule& field : kind.fields) {
        const bool wanted = has(gen, field);
        if (wanted)
            field.make(gen, sent.body, field);
    }
    return sent;
}

// The same, encoded.
template <typename Has>
Sent Make(const Kind& kind, const Choices& choices, Has has)
{
    Sent sent = Fill(kind, choices, has);
    if (kind.encode(sent.body, sent.header, sent.result) != SML_ENCODE_OK ||
        !SmlMessageIsWhole(sent.result))
        throw std::logic_error(kind.name + (" cannot be encoded: " + sent.body.ToString()));
    return sent;
}

inline bool AtRandom(Generator& gen, const Rule& field)
{
    return field.needed || gen.Below(4) != 0;
}

// ---- What differs on the way, and why

enum class Change { Renamed, Emptied, EmptyRecord };

struct OneWay {
    const char* message; // null: any
    const char* label;
    Change change;
    const char* reason;
};

inline constexpr OneWay kOneWay[] = {
    {"SmlGetProfListRes", "RawData", Change::Renamed, "rawdata when received"},
    {"SmlOpenReq", "serverId", Change::Emptied, "requests tell an absent server"},
    {"SmlGetProfileReq", "serverId", Change::Emptied, "requests tell an absent server"},
    {"SmlGetProcParReq", "serverId", Change::Emptied, "requests tell an absent server"},
    {"SmlSetProcParReq", "serverId", Change::Emptied, "requests tell an absent server"},
    {"SmlGetListReq", "serverId", Change::Emptied, "requests tell an absent server"},
    {"SmlOpenRes", "codepage", Change::Emptied, "told also when absent"},
    {"SmlOpenRes", "refTime", Change::EmptyRecord, "told also when absent"},
    {"SmlGetProfileReq", "beginTime", Change::EmptyRecord, "told also when absent"},
    {"SmlGetProfileReq", "endTime", Change::EmptyRecord, "told also when absent"},
};

inline void AppendCopy(cRecord& out, const vorn::cRecordPar& par, const char* label)
{
    cRecord nested;
    switch (par.GetType(1)) {
    case vorn::TYPE_UINT:
        return out.AppendUIntPar(label, par.GetUInt(), 0);
    case vorn::TYPE_SINT:
        return out.AppendSIntPar(label, par.GetSInt(), 0);
    case vorn::TYPE_BOOL:
        return out.AppendBoolPar(label, par.GetBool(), 0);
    case vorn::TYPE_UINT64:
        return out.AppendUInt64Par(label, par.GetUInt64(), 0);
    case vorn::TYPE_SINT64:
        return out.AppendSInt64Par(label, par.GetSInt64(), 0);
    case vorn::TYPE_RECORD:
        par.GetRecord(nested);
        return out.AppendRecordPar(label, nested, 0);
    default:
        return out.AppendDataPar(label, par.GetData(), par.GetSize(), 0);
    }
}

// A value that fits 32 bits comes back as such a number.
inline void AppendReceived(cRecord& out, const vorn::cRecordPar& par, const char* label)
{
    const bool value = std::string_view(par.GetName()) == "value";
    cRecord nested;
    cRecord received;
    if (par.GetRecord(nested)) {
        for (const vorn::cRecordPar& inner : nested)
            AppendReceived(received, inner, inner.GetName());
        out.AppendRecordPar(label, received, 0);
    } else if (value && par.GetType(1) == vorn::TYPE_UINT64 && par.GetUInt64() == par.GetUInt()) {
        out.AppendUIntPar(label, par.GetUInt(), 0);
    } else if (value && par.GetType(1) == vorn::TYPE_SINT64 && par.GetSInt64() == par.GetSInt()) {
        out.AppendSIntPar(label, par.GetSInt(), 0);
    } else {
        AppendCopy(out, par, label);
    }
}

// What the parser makes of a message.
inline cRecord Received(const Sent& sent)
{
    cRecord out;
    for (const Rule& field : sent.kind->fields) {
        const auto* row =
            std::find_if(std::begin(kOneWay), std::end(kOneWay), [&](const OneWay& r) {
                return r.message == std::string_view(sent.kind->name) &&
                       r.label == std::string_view(field.label);
            });
        const bool oneWay = row != std::end(kOneWay);
        const vorn::cRecordPar par = sent.body.GetFirstPar(field.label, 0, 0);
        if (par.IsValid())
            AppendReceived(out, par,
                           oneWay && row->change == Change::Renamed ? "rawdata" : field.label);
        else if (oneWay && row->change == Change::Emptied)
            AppendBytes(out, field.label, "");
        else if (oneWay && row->change == Change::EmptyRecord)
            out.AppendRecordPar(field.label, {}, 0);
    }
    return out;
}

// Empty when the parser's record tells the message as it was sent, else both.
inline std::string Difference(const Sent& sent, const cRecord& record)
{
    cRecord header = sent.header;
    cRecord got;
    header.AppendUIntPar("smlMsgIdentifier", sent.kind->identifier, 0);
    const cRecord gotHeader = Nested(record, "SmlMsgHeader");
    for (const vorn::cRecordPar& par : header)
        AppendReceived(got, gotHeader.GetFirstPar(par.GetName(), 0, 0), par.GetName());
    cRecord body = Nested(record, sent.kind->name);
    body.DeletePar("extMsgPart", 0, 0); // of a message beyond the parser's store
    const vorn::cRecordPar error = record.GetFirstParByPath("SmlStatus.Error", ".", 0, 0);
    const cRecord expected = Received(sent);
    if (error.IsValid() && error.GetSInt() == 0 && header == got && body == expected)
        return "";
    return "sent " + header.ToString() + expected.ToString() + "\ngot  " + record.ToString();
}

} // namespace test

#endif
