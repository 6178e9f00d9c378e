// Message records at random: the schema says what a body holds, and every element is filled by its
// type. The numbers gather round the borders of their widths; byte strings are rich in escape
// bytes. A budget keeps a message within the buffer that it is encoded in.
#ifndef TESTS_ROUNDTRIP_GENERATOR_H
#define TESTS_ROUNDTRIP_GENERATOR_H

#include "tests/support/choices.h"
#include "tests/support/parse.h"

#include <algorithm>
#include <stdexcept>

namespace test
{

namespace label = quarn::label;
namespace schema = quarn::schema;
using schema::Element;
using schema::Structure;
using vorn::cRecord;
using U64 = unsigned long long;

// ---- What the schema does not say of the way there and back

enum class Change { NONE, ONE_TEXT, BELOW_TWO, REFUSED, RENAMED, TOLD_WHEN_ABSENT };

struct OneWay {
    const Structure* body; // null: any
    std::string_view label;
    Change change;
    const char* reason;
};

inline constexpr OneWay kOneWay[] = {
    {&schema::kOpenReq, label::codepage, Change::ONE_TEXT, "the parser knows one"},
    {&schema::kOpenReq, label::smlVersion, Change::BELOW_TWO, "version 1 is the last known"},
    {nullptr, label::withRawdata, Change::REFUSED, "not supported by the parser"},
    {nullptr, label::attribute, Change::REFUSED, "not supported by the parser"},
    {nullptr, label::rawdata, Change::RENAMED, "RawData when encoded"},
    {nullptr, label::serverId, Change::TOLD_WHEN_ABSENT, "requests tell an absent server"},
    {&schema::kOpenRes, label::codepage, Change::TOLD_WHEN_ABSENT, ""},
    {nullptr, label::refTime, Change::TOLD_WHEN_ABSENT, ""},
    {nullptr, label::beginTime, Change::TOLD_WHEN_ABSENT, ""},
    {nullptr, label::endTime, Change::TOLD_WHEN_ABSENT, ""},
};

inline Change ChangeOf(const Structure& body, const Element& element)
{
    for (const OneWay& row : kOneWay) {
        if ((row.body == nullptr || row.body == &body) && row.label == element.label)
            return row.change;
    }
    return Change::NONE;
}

// The parser refuses a message without it, or reads something else: a path that is missing is
// written as an empty one, a value as an empty string.
inline bool Needed(const Element& element)
{
    return (!element.bOptional || element.eType == schema::eTYPE::VALUE) &&
           element.pStructure != &schema::kTreePath;
}

inline void AppendBytes(cRecord& rec, const char* label, const std::string& bytes)
{
    rec.AppendDataPar(label, bytes.data(), static_cast<int>(bytes.size()), 0);
}

// ---- The generator

class Generator
{
public:
    Generator(Choices& c, unsigned bytes) : choices(c), budget(static_cast<int>(bytes)) {}

    unsigned Below(unsigned n) { return choices.Below(n); }
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
    // A record of the elements that has says; those that are refused are left out.
    template <typename Has>
    cRecord Sequence(const Structure& structure, Has has)
    {
        cRecord rec;
        for (const Element& element : structure) {
            const Change change = ChangeOf(structure, element);
            if (change != Change::REFUSED && has(*this, element))
                Append(rec, element, change);
        }
        return rec;
    }
    void Append(cRecord& rec, const Element& element, Change change = Change::NONE)
    {
        const char* const name = change == Change::RENAMED ? label::RawData : element.label.data();
        const unsigned bits = change == Change::BELOW_TWO ? 1
                              : element.IsName()          ? 8 * SML_NAME_SIZE
                                                          : 8 * element.uiMost;
        switch (schema::KindOf(element)) {
        case quarn::KIND_DATA:
            return AppendBytes(
                rec, name, change == Change::ONE_TEXT ? "ISO 8859-15" : Bytes(1, element.uiMost));
        case quarn::KIND_BOOL:
            return rec.AppendBoolPar(name, Below(2) != 0, 0);
        case quarn::KIND_UINT:
            return rec.AppendUIntPar(name, static_cast<unsigned>(Number(bits)), 0);
        case quarn::KIND_UINT64:
            return rec.AppendUInt64Par(name, Number(bits), 0);
        case quarn::KIND_SINT:
            return rec.AppendSIntPar(name, static_cast<int>(Signed(bits)), 0);
        default:
            return element.eType == schema::eTYPE::VALUE
                       ? AppendValue(rec, element)
                       : rec.AppendRecordPar(name, Made(element), 0);
        }
    }
    // What the parser can do without is there three times in four; children of a node as far down
    // as the parser follows.
    bool Wants(const Element& element)
    {
        const bool fits = element.pStructure != &schema::Tree::kChildren ||
                          (level < MAX_TREE_LEVEL - 1 && Affords(100));
        return Needed(element) || (fits && Below(4) != 0);
    }

private:
    bool Affords(int bytes) const { return budget >= bytes; }
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
    void AppendValue(cRecord& rec, const Element& element)
    {
        cRecord list;
        switch (Below(7)) {
        case 0:
            return Append(rec, schema::Boolean(element.label));
        case 1:
            return Append(rec, schema::Unsigned(element.label, 4));
        case 2:
            return Append(rec, schema::Unsigned(element.label, 8));
        case 3:
            return Append(rec, schema::Integer(element.label, 4));
        case 4:
            return rec.AppendSInt64Par(element.label.data(), Signed(64), 0);
        case 5:
            Append(list, schema::Of(*element.pStructure, label::smlList));
            return rec.AppendRecordPar(element.label.data(), list, 0);
        default:
            return AppendBytes(rec, element.label.data(), Bytes(0, element.uiMost));
        }
    }
    cRecord Made(const Element& element)
    {
        const Structure& structure = *element.pStructure;
        if (structure.IsList())
            return List(structure, Needed(element) ? 0 : 1);
        if (structure.eForm == schema::eFORM::CHOICE)
            return Choice(structure);
        Spend(&structure == &schema::Tree::kNode ? 6 : 0); // else its first number does
        return Sequence(structure,
                        [](Generator& gen, const Element& inner) { return gen.Wants(inner); });
    }
    // Of up to 20 elements (so also of more than 15, with its longer head).
    cRecord List(const Structure& structure, unsigned least)
    {
        cRecord list;
        const unsigned count = least + (Below(4) == 0 ? Below(20) : Below(4));
        const unsigned deeper = &structure == &schema::Tree::kChildren ? 1 : 0;
        level += deeper;
        for (unsigned i = 0; i < count && (i < least || Affords(100)); ++i)
            Append(list, structure[0]);
        level -= deeper;
        return list;
    }
    // What is chosen stands beside its tag; of a node, structures stand in a record of their own.
    cRecord Choice(const Structure& structure)
    {
        const bool isNode = &structure == &schema::kProcParValue;
        std::vector<const Element*> known;
        for (const Element& element : structure) {
            if (element.pStructure != &schema::kTupelEntry) // not written by the encoder
                known.push_back(&element);
        }
        const auto count = static_cast<unsigned>(isNode && !Affords(200) ? 1 : known.size());
        const Element& chosen = *known[known.size() == 1 ? 0 : Below(count)];
        cRecord rec;
        cRecord inner;
        rec.AppendUIntPar(label::type, chosen.uiTag, 0);
        if (chosen.pStructure == &schema::kLocalTime) {
            for (const Element& element : schema::kLocalTime)
                Append(rec, element);
        } else if (!isNode || chosen.eType == schema::eTYPE::VALUE) {
            Append(rec, chosen);
        } else {
            if (chosen.pStructure == &schema::kTime)
                Append(inner, chosen);
            else
                inner = Made(chosen);
            rec.AppendRecordPar(label::value, inner, 0);
        }
        return rec;
    }

    Choices& choices;
    int budget;
    unsigned level = 1; // of the tree in progress
};

// ---- The messages that the encoder writes

using Encoder = int (*)(cRecord& body, cRecord& header, cRecord& result);

template <int kChoice>
int EncodeProfile(cRecord& body, cRecord& header, cRecord& result)
{
    return Encode_GetProfile_Request(body, header, result, kChoice);
}

struct Kind {
    Kind(unsigned tag, Encoder encoder, unsigned longest)
        : identifier(tag), encode(encoder), size(longest),
          name(schema::FindMessage(tag)->label.data()), body(schema::FindMessage(tag)->body)
    {
    }
    unsigned identifier;
    Encoder encode;
    unsigned size; // of the encoder's buffer
    const char* name;
    const Structure& body;
};

// Those that open a file, those that close it, and the others.
inline const std::vector<Kind>& Kinds()
{
    static const std::vector<Kind> kinds = {
        {SML_OPEN_REQ, Encode_Open_Request, SML_MAX_ENCODED_ENVELOPE},
        {SML_OPEN_RES, Encode_Open_Response, SML_MAX_ENCODED_ENVELOPE},
        {SML_CLOSE_REQ, Encode_Close_Request, SML_MAX_ENCODED_ENVELOPE},
        {SML_CLOSE_RES, Encode_Close_Response, SML_MAX_ENCODED_ENVELOPE},
        {SML_GET_PROFILE_PACK_REQ, EncodeProfile<SML_GET_PROFILE_PACK_REQ>,
         SML_MAX_ENCODED_REQUEST},
        {SML_GET_PROFILE_LIST_REQ, EncodeProfile<SML_GET_PROFILE_LIST_REQ>,
         SML_MAX_ENCODED_REQUEST},
        {SML_GET_PROFILE_LIST_RES, Encode_GetProfileList_Response, SML_MAX_ENCODED_LIST},
        {SML_GET_PROC_PAR_REQ, Encode_GetProcPar_Request, SML_MAX_ENCODED_REQUEST},
        {SML_GET_PROC_PAR_RES, Encode_GetProcPar_Response, SML_MAX_ENCODED_TREE},
        {SML_SET_PROC_PAR_REQ, Encode_SetProcPar_Request, SML_MAX_ENCODED_TREE},
        {SML_GET_LIST_REQ, Encode_GetList_Request, SML_MAX_ENCODED_REQUEST},
        {SML_GET_LIST_RES, Encode_GetList_Response, SML_MAX_ENCODED_LIST},
        {SML_ATTENTION_RES, Encode_Attention_Response, SML_MAX_ENCODED_ENVELOPE},
    };
    return kinds;
}

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
    unsigned Flags() const { return result.GetFirstPar(label::SmltFlags, 0, 0).GetUInt(); }
    std::string Bytes() const { return BytesAt(result, label::SmlMsgRawData); }
};

// Which elements a message has: those that it needs, with most others, or with all.
inline bool OnlyNeeded(Generator&, const Element& element) { return Needed(element); }
inline bool AtRandom(Generator& gen, const Element& element) { return gen.Wants(element); }
inline bool Everything(Generator&, const Element&) { return true; }

// A message with the elements that has says, not encoded yet.
template <typename Has>
Sent Fill(const Kind& kind, Choices& choices, Has has)
{
    Generator gen(choices, kind.size - 200);
    Sent sent{&kind, {}, {}, {}};
    AppendBytes(sent.header, label::transactionId, gen.Bytes(1, SML_MAX_TRANSACTION_ID));
    sent.header.AppendUIntPar(label::groupNo, gen.Below(256), 0);
    static constexpr unsigned kAbort[] = {0, 1, 2, 0xFF};
    sent.header.AppendUIntPar(label::abortOnError, kAbort[gen.Below(4)], 0);
    sent.body = gen.Sequence(kind.body, has);
    return sent;
}

// The same, encoded.
template <typename Has>
Sent Make(const Kind& kind, Choices& choices, Has has)
{
    Sent sent = Fill(kind, choices, has);
    if (kind.encode(sent.body, sent.header, sent.result) != SML_ENCODE_OK ||
        !SmlMessageIsWhole(sent.result))
        throw std::logic_error(kind.name + (" cannot be encoded: " + sent.body.ToString()));
    return sent;
}
template <typename Has>
Sent Make(const Kind& kind, unsigned seed, Has has)
{
    Choices choices(seed);
    return Make(kind, choices, has);
}

// A file: so many messages between one that opens it and one that closes it.
inline std::vector<Sent> MakeFile(Choices& choices, unsigned within)
{
    constexpr unsigned kOthers = 4;
    const auto others = static_cast<unsigned>(Kinds().size()) - kOthers;
    std::vector<Sent> file;
    for (unsigned i = 0; i <= within + 1; ++i) {
        const unsigned kind = i == 0        ? choices.Below(2)
                              : i <= within ? kOthers + choices.Below(others)
                                            : 2 + choices.Below(2);
        file.push_back(Make(Kinds()[kind], choices, AtRandom));
    }
    return file;
}
inline std::string BytesOf(const std::vector<Sent>& file)
{
    std::string bytes;
    for (const Sent& sent : file)
        bytes += sent.Bytes();
    return bytes;
}

// ---- What comes back

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
    const bool value = std::string_view(par.GetName()) == label::value;
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
    for (const Element& element : sent.kind->body) {
        const char* const name = element.label.data();
        const Change change = ChangeOf(sent.kind->body, element);
        const vorn::cRecordPar par =
            sent.body.GetFirstPar(change == Change::RENAMED ? label::RawData : name, 0, 0);
        if (par.IsValid())
            AppendReceived(out, par, name);
        else if (change == Change::TOLD_WHEN_ABSENT && schema::KindOf(element) == quarn::KIND_DATA)
            AppendBytes(out, name, "");
        else if (change == Change::TOLD_WHEN_ABSENT)
            out.AppendRecordPar(name, {}, 0);
    }
    return out;
}

// Empty when the parser's record tells the message as it was sent, else both.
inline std::string Difference(const Sent& sent, const cRecord& record)
{
    cRecord header = sent.header;
    cRecord got;
    header.AppendUIntPar(label::smlMsgIdentifier, sent.kind->identifier, 0);
    const cRecord gotHeader = Nested(record, label::SmlMsgHeader);
    for (const vorn::cRecordPar& par : header)
        AppendReceived(got, gotHeader.GetFirstPar(par.GetName(), 0, 0), par.GetName());
    cRecord body = Nested(record, sent.kind->name);
    body.DeletePar(label::extMsgPart, 0, 0); // of a message beyond the parser's store
    const vorn::cRecordPar error = record.GetFirstParByPath("SmlStatus.Error", ".", 0, 0);
    const cRecord expected = Received(sent);
    if (error.IsValid() && error.GetSInt() == 0 && header == got && body == expected)
        return "";
    return "sent " + header.ToString() + expected.ToString() + "\ngot  " + record.ToString();
}

} // namespace test

#endif
