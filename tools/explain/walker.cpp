// See walker.h. The type-length fields tell the structure by themselves, so that the walk goes on
// behind a field of a wrong type; it ends where a type-length field makes no sense or announces
// more than there is.
#include "tools/explain/walker.h"

#include "quarn/quarn.h"
#include "tools/explain/grammar.h"
#include "tools/explain/value.h"
#include "tools/reading/kind.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tool
{
namespace
{

constexpr unsigned kMaxDepth = 64;

struct TypeLength {
    unsigned uiType = 0;        // one of eTYPE
    std::size_t uiSize = 1;     // of the field itself
    std::uint64_t ullCount = 0; // elements of a list, bytes of all others
    bool bAbsent = false;
    const char* pcError = nullptr; // why it makes no sense
};

TypeLength ReadTypeLength(std::string_view rest)
{
    constexpr std::size_t kMaxSize = 7;
    TypeLength tl;
    const auto byte = [rest](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    tl.uiType = byte(0) & 0x70U;
    tl.ullCount = byte(0) & 0x0FU;
    while ((byte(tl.uiSize - 1) & 0x80U) != 0 && tl.uiSize < kMaxSize && tl.uiSize < rest.size()) {
        tl.ullCount = tl.ullCount << 4U | (byte(tl.uiSize) & 0x0FU);
        ++tl.uiSize;
    }
    const bool isList = tl.uiType == TYPE_SEQUENCE;
    const bool isLong = tl.uiSize > 1;
    if ((byte(tl.uiSize - 1) & 0x80U) != 0)
        tl.pcError = tl.uiSize < kMaxSize ? "the length is cut off" : "the length has no end";
    else if (tl.uiType > 0 && tl.uiType < TYPE_BOOLEAN)
        tl.pcError = "there is no such type";
    else if (isLong && !isList && tl.uiType != TYPE_OCTETS)
        tl.pcError = "a number has a length of one byte";
    else if (isLong && tl.ullCount <= (isList ? 0 : tl.uiSize))
        tl.pcError = "the length counts itself and leaves nothing";
    tl.bAbsent = !isLong && tl.uiType == TYPE_OCTETS && tl.ullCount <= 1;
    if (!isList && tl.pcError == nullptr)
        tl.ullCount -= std::min<std::uint64_t>(tl.ullCount, tl.uiSize);
    if (tl.pcError == nullptr && (tl.uiType == TYPE_SIGNED || tl.uiType == TYPE_UNSIGNED) &&
        tl.ullCount > 8)
        tl.pcError = "a number has eight bytes at most";
    if (tl.pcError == nullptr && tl.uiType == TYPE_BOOLEAN && tl.ullCount > 4)
        tl.pcError = "a boolean has four bytes at most";
    return tl;
}

// The type that a field must have; VALUE is left out.
unsigned TypeOf(eFIELD kind)
{
    if (kind <= eFIELD::ATTENTION)
        return TYPE_OCTETS;
    if (kind <= eFIELD::CRC)
        return TYPE_UNSIGNED;
    if (kind <= eFIELD::SCALER)
        return TYPE_SIGNED;
    return kind == eFIELD::BOOLEAN ? TYPE_BOOLEAN : TYPE_SEQUENCE;
}

class cWalker
{
public:
    cWalker(Layout& frame, const std::vector<Verdict>& judged, const WalkOptions& walkOptions)
        : layout(frame), payload(frame.payload), verdicts(judged), options(walkOptions),
          uiMessage(walkOptions.uiMessage)
    {
    }

    Walked Run()
    {
        Walked walked;
        while (uiAt < payload.size()) {
            const std::size_t start = uiAt;
            const std::size_t count = items.size();
            bCut = false;
            const bool whole = payload[uiAt] == '\x76' && Message();
            if (options.bMore && bCut) {
                items.resize(count);
                uiAt = start;
                break;
            }
            if (!whole)
                Junk(start);
        }
        if (!options.bMore)
            CatchUp(layout.ullOffset + layout.input.size());
        walked.items = std::move(items);
        walked.uiSize = uiAt;
        walked.uiMessage = uiMessage;
        return walked;
    }

private:
    // ---- Messages

    bool Message()
    {
        unsigned tag = 0;
        scale = Scale();
        bInMessage = PeekTag(uiAt, tag);
        uiTag = tag;
        const bool whole = Element(kMessage, 1, uiMessage);
        const bool closes = uiTag == SML_CLOSE_REQ || uiTag == SML_CLOSE_RES;
        uiMessage = closes && whole ? 1 : uiMessage + 1;
        return whole;
    }

    // Bytes that lead nowhere, up to what looks like a message; the last one began at message.
    void Junk(std::size_t message)
    {
        const std::size_t start = uiAt;
        unsigned tag = 0;
        while (uiAt < payload.size() && (uiAt == message || !PeekTag(uiAt, tag)))
            ++uiAt;
        if (uiAt == start)
            return;
        Annotation item;
        item.uiDepth = 1;
        item.name = "bytes that cannot be taken apart";
        if (items.empty() || items.back().damage.empty())
            item.damage = "no SML message begins here";
        Emit(item, start, uiAt);
    }

    // The tag of the message that begins at start, if one does.
    bool PeekTag(std::size_t start, unsigned& tag) const
    {
        constexpr unsigned kTypes[] = {TYPE_SEQUENCE, TYPE_OCTETS,   TYPE_UNSIGNED,
                                       TYPE_UNSIGNED, TYPE_SEQUENCE, TYPE_UNSIGNED};
        std::size_t at = start;
        for (const unsigned type : kTypes) {
            if (at >= payload.size())
                return false;
            const TypeLength tl = ReadTypeLength(payload.substr(at));
            if (tl.pcError != nullptr || tl.bAbsent || tl.uiType != type)
                return false;
            if (type == TYPE_SEQUENCE && tl.ullCount != (at == start ? 6U : 2U))
                return false;
            at += tl.uiSize;
            if (type == TYPE_SEQUENCE)
                continue;
            if (tl.ullCount > payload.size() - at)
                return false;
            tag = static_cast<unsigned>(
                UnsignedOf(payload.substr(at, static_cast<std::size_t>(tl.ullCount))));
            at += static_cast<std::size_t>(tl.ullCount);
        }
        return true;
    }

    // ---- Fields. Each returns false when the message cannot be followed any further.

    bool Element(const Field& field, unsigned depth, std::uint64_t index = 0)
    {
        std::string name = field.pcName;
        if (index != 0)
            name += " " + std::to_string(index);
        if (IsOver(name, depth))
            return false;
        if (field.eKind == eFIELD::END)
            return End(name, depth);
        const TypeLength tl = ReadTypeLength(payload.substr(uiAt));
        if (tl.pcError != nullptr || (tl.uiType != TYPE_SEQUENCE && tl.ullCount > Left(tl)))
            return Unreadable(name, depth, tl);
        if (tl.bAbsent)
            return Absent(name, depth, field.bOptional);
        const bool isList = tl.uiType == TYPE_SEQUENCE;
        const bool fits = field.eKind == eFIELD::VALUE || tl.uiType == TypeOf(field.eKind);
        if (isList && fits)
            return List(name, field.pShape != nullptr ? *field.pShape : kListType, depth, tl);
        const std::string damage = fits ? ""
                                        : std::string("it must be ") +
                                              TypeName(TypeOf(field.eKind)) + " and is " +
                                              TypeName(tl.uiType);
        if (isList)
            return Unnamed(name, depth, damage);
        return Leaf(name, fits ? field.eKind : eFIELD::VALUE, depth, tl, damage);
    }

    std::size_t Left(const TypeLength& tl) const { return payload.size() - uiAt - tl.uiSize; }

    bool Leaf(const std::string& name, eFIELD kind, unsigned depth, const TypeLength& tl,
              const std::string& damage)
    {
        const auto size = static_cast<std::size_t>(tl.ullCount);
        const std::string_view bytes = payload.substr(uiAt + tl.uiSize, size);
        Annotation item = Make(name, depth, tl, eWHAT::VALUE);
        item.value = ValueText(kind, tl.uiType, bytes, scale);
        item.damage = damage;
        if (kind == eFIELD::UNIT)
            scale.uiUnit = static_cast<unsigned>(UnsignedOf(bytes));
        else if (kind == eFIELD::SCALER)
            scale.iScaler = static_cast<int>(SignedOf(bytes));
        else if (kind == eFIELD::TAG)
            uiChosen = static_cast<unsigned>(UnsignedOf(bytes));
        else if (kind == eFIELD::VALUE && damage.empty() && !name.empty())
            item.note = SignNote(tl.uiType, bytes, scale);
        else if (kind == eFIELD::CRC)
            Checksum(item, uiAt + tl.uiSize + size + 1);
        const std::size_t start = uiAt;
        uiAt += tl.uiSize + size;
        Emit(item, start, uiAt);
        return true;
    }

    // The parser's word on the message that ends at end.
    void Checksum(Annotation& item, std::size_t end) const
    {
        item.eWhat = eWHAT::CHECKSUM;
        const auto verdict =
            std::find_if(verdicts.begin(), verdicts.end(), [this, end](const Verdict& v) {
                return v.ullEnd == options.ullBase + end && !v.IsRefusal();
            });
        if (verdict == verdicts.end()) {
            item.value += " not checked";
        } else if (verdict->IsCrc()) {
            item.value += " wrong";
            item.damage = "the checksum is wrong: some byte of the message is damaged";
        } else {
            item.value += " right";
        }
    }

    bool Absent(const std::string& name, unsigned depth, bool optional)
    {
        Annotation item;
        item.uiDepth = depth;
        item.uiTl = 1;
        item.eWhat = eWHAT::ABSENT;
        item.name = name;
        item.value = "not set";
        if (!optional)
            item.damage = "it must be set";
        Emit(item, uiAt, uiAt + 1);
        ++uiAt;
        return true;
    }

    bool End(const std::string& name, unsigned depth)
    {
        Annotation item;
        item.uiDepth = depth;
        item.eWhat = eWHAT::VALUE;
        item.name = name;
        const bool good = payload[uiAt] == '\0';
        if (!good)
            item.damage = "it must be 00";
        Emit(item, uiAt, uiAt + 1);
        ++uiAt;
        return good;
    }

    bool List(const std::string& name, const Shape& shape, unsigned depth, const TypeLength& tl)
    {
        const std::uint64_t expected = shape.eKind == eSHAPE::SEQUENCE ? shape.uiCount : 2;
        const bool fits = shape.eKind == eSHAPE::LIST || tl.ullCount == expected;
        Annotation item = Make(name, depth, tl, eWHAT::STRUCTURE);
        if (!fits)
            item.damage = "it must be a list of " + std::to_string(expected);
        else
            item.value = Heading(shape, tl);
        Emit(item, uiAt, uiAt + tl.uiSize);
        uiAt += tl.uiSize;
        if (!fits)
            return Elements(tl.ullCount, depth + 1);
        if (shape.eKind == eSHAPE::CHOICE)
            return Choice(shape, depth + 1);
        if (shape.eKind == eSHAPE::LIST) {
            for (std::uint64_t i = 1; i <= tl.ullCount; ++i) {
                if (!Element(*shape.pFields, depth + 1, i))
                    return false;
            }
            return true;
        }
        scale = Scale();
        return std::all_of(shape.pFields, shape.pFields + shape.uiCount,
                           [&](const Field& field) { return Element(field, depth + 1); });
    }

    // What a list is, told by what stands in it.
    std::string Heading(const Shape& shape, const TypeLength& tl) const
    {
        if (&shape == kMessage.pShape) {
            const MessageKind* kind = bInMessage ? FindKind(uiTag) : nullptr;
            std::string text = kind != nullptr ? kind->pcName : "";
            if (IsSkipped())
                text += text.empty() ? "not parsed" : ", not parsed";
            return text;
        }
        const std::size_t at = uiAt + tl.uiSize;
        if (shape.eKind != eSHAPE::SEQUENCE || shape.pFields->eKind != eFIELD::NAME ||
            at + 7 > payload.size() || payload[at] != '\x07')
            return {};
        return ValueText(eFIELD::NAME, TYPE_OCTETS, payload.substr(at + 1, 6), scale);
    }

    bool Choice(const Shape& shape, unsigned depth)
    {
        static constexpr Field kTag = {"type", eFIELD::TAG};
        const Field* const end = shape.pFields + shape.uiCount;
        uiChosen = 0;
        if (!Element(kTag, depth))
            return false;
        const Field* const chosen = std::find_if(
            shape.pFields, end, [this](const Field& field) { return field.uiTag == uiChosen; });
        if (chosen != end)
            return Element(*chosen, depth);
        AddDamage(items.back().damage, "there is no such choice here");
        return Elements(1, depth);
    }

    // Structure without names.
    bool Elements(std::uint64_t count, unsigned depth)
    {
        for (std::uint64_t i = 0; i < count; ++i) {
            if (!Unnamed("", depth, ""))
                return false;
        }
        return true;
    }

    bool Unnamed(const std::string& name, unsigned depth, const std::string& damage)
    {
        if (IsOver(name, depth))
            return false;
        const TypeLength tl = ReadTypeLength(payload.substr(uiAt));
        if (tl.pcError != nullptr || (tl.uiType != TYPE_SEQUENCE && tl.ullCount > Left(tl)))
            return Unreadable(name, depth, tl);
        if (tl.bAbsent)
            return Absent(name, depth, true);
        scale = Scale();
        if (tl.uiType != TYPE_SEQUENCE)
            return Leaf(name, eFIELD::VALUE, depth, tl, damage);
        Annotation item = Make(name, depth, tl, eWHAT::STRUCTURE);
        item.damage = damage;
        Emit(item, uiAt, uiAt + tl.uiSize);
        uiAt += tl.uiSize;
        return Elements(tl.ullCount, depth + 1);
    }

    // ---- Where it goes wrong

    bool Unreadable(const std::string& name, unsigned depth, const TypeLength& tl)
    {
        Annotation item = Make(name, depth, tl, eWHAT::UNKNOWN);
        item.type.clear();
        if (tl.pcError != nullptr) {
            item.damage = tl.pcError;
        } else {
            bCut = true;
            item.damage = "it announces " + std::to_string(tl.ullCount) + " bytes, and " +
                          std::to_string(Left(tl)) + " are left";
        }
        Emit(item, uiAt, uiAt + tl.uiSize);
        uiAt += tl.uiSize;
        return false;
    }

    // There is nothing more of the message: the data is at its end, or another message begins,
    // which is met where damage has shifted the fields.
    bool IsOver(const std::string& name, unsigned depth)
    {
        unsigned tag = 0;
        bCut = uiAt >= payload.size();
        const bool isDeep = depth > kMaxDepth;
        const bool isNext = !bCut && depth > 1 && payload[uiAt] == '\x76' && PeekTag(uiAt, tag);
        if (!bCut && !isDeep && !isNext)
            return false;
        const std::string before = name.empty() ? "" : ", before " + name;
        if (!items.empty())
            AddDamage(items.back().damage, bCut     ? "the data ends here" + before
                                           : isNext ? "the next message begins here" + before
                                                    : "nested too deeply");
        return true;
    }

    // ---- Annotations

    static Annotation Make(const std::string& name, unsigned depth, const TypeLength& tl,
                           eWHAT what)
    {
        Annotation item;
        item.uiDepth = depth;
        item.uiTl = static_cast<unsigned>(tl.uiSize);
        item.eWhat = what;
        item.name = name;
        item.type = TypeText(tl.uiType, tl.ullCount);
        return item;
    }

    // The parser has refused what stands before.
    bool IsSkipped() const
    {
        return std::any_of(verdicts.begin(), verdicts.end(), [this](const Verdict& verdict) {
            return verdict.IsRefusal() && verdict.ullEnd <= options.ullBase + uiAt;
        });
    }

    void AddVerdicts(Annotation& item, std::size_t begin, std::size_t end) const
    {
        for (const Verdict& verdict : verdicts) {
            const std::uint64_t at = std::max<std::uint64_t>(verdict.ullEnd, 1) - 1;
            if (verdict.IsRefusal() && at >= options.ullBase + begin && at < options.ullBase + end)
                AddDamage(item.damage, verdict.Text());
        }
    }

    // Adds what the payload's bytes begin to end are, in as many pieces as the transport makes of
    // them; other bytes of the input that stand before them go first.
    void Emit(Annotation& item, std::size_t begin, std::size_t end)
    {
        AddVerdicts(item, begin, end);
        const std::size_t value = begin + item.uiTl; // where it begins
        for (std::size_t at = begin; at < end;) {
            std::size_t next = at + 1;
            while (next < end && layout.positions[next] == layout.positions[next - 1] + 1)
                ++next;
            const std::uint64_t offset = layout.ullOffset + layout.positions[at];
            CatchUp(offset);
            item.ullOffset = offset;
            item.bytes = payload.substr(at, next - at);
            item.uiTl = static_cast<unsigned>(std::clamp(value, at, next) - at);
            items.push_back(item);
            if (at == begin) {
                item.damage.clear();
                item.note.clear();
                item.type.clear();
                item.value = "(goes on)";
            }
            at = next;
        }
    }

    void CatchUp(std::uint64_t offset)
    {
        std::vector<Annotation>& transport = layout.transport;
        for (; uiTransport < transport.size() && transport[uiTransport].ullOffset < offset;
             ++uiTransport)
            items.push_back(std::move(transport[uiTransport]));
    }

    Layout& layout;
    std::string_view payload;
    const std::vector<Verdict>& verdicts;
    const WalkOptions& options;
    std::vector<Annotation> items;
    std::size_t uiAt = 0;        // in the payload
    std::size_t uiTransport = 0; // of the layout's other bytes that have been added
    unsigned uiMessage;
    bool bCut = false;       // the walk ended where the data did
    bool bInMessage = false; // its tag is known
    unsigned uiTag = 0;      // of the message
    unsigned uiChosen = 0;   // the tag read last
    Scale scale;
};

} // namespace

Walked Walk(Layout& layout, const std::vector<Verdict>& verdicts, const WalkOptions& options)
{
    return cWalker(layout, verdicts, options).Run();
}

} // namespace tool
