// See walker.h. The type-length fields tell the structure by themselves, so that the walk goes on
// behind a field of a wrong type; it ends where a type-length field makes no sense or announces
// more than there is.
#include "tools/explain/walker.h"

#include "quarn/quarn.h"
#include "tools/explain/value.h"

#include <algorithm>
#include <string_view>

namespace tool
{
namespace
{

namespace schema = quarn::schema;
using schema::eFORM;
using schema::eTYPE;
using schema::Structure;

constexpr unsigned kMaxDepth = 64;

struct TypeLength {
    unsigned uiType = 0;           // type bits
    std::size_t uiSize = 1;        // of the field itself
    std::uint64_t ullCount = 0;    // elements of a list, bytes of all others
    bool bAbsent = false;          // it says that a field is not set
    bool bCut = false;             // its end is not there yet
    const char* pcError = nullptr; // why it makes no sense
};

const char* ErrorIn(const TypeLength& tl, bool ends)
{
    const bool isString = tl.uiType == kTlOctetString;
    if (!ends)
        return tl.bCut ? "the length is cut off" : "the length has no end";
    if (!isString && tl.uiType < kTlBoolean)
        return "there is no such type";
    if (tl.uiSize > 1 && !isString && tl.uiType != kTlList)
        return "a number has a length of one byte";
    if (tl.uiSize > 1 && tl.ullCount == 0)
        return "the length leaves nothing behind itself";
    if (!isString && tl.uiType != kTlList && tl.ullCount > (tl.uiType == kTlBoolean ? 4 : 8))
        return "a number has eight bytes at most, a boolean four";
    return nullptr;
}

TypeLength ReadTypeLength(std::string_view rest)
{
    using quarn::kTlLengthMask, quarn::kTlMore;
    constexpr std::size_t kMaxSize = quarn::kTlMaxSize;
    TypeLength tl;
    const auto byte = [rest](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    tl.uiType = byte(0) & quarn::kTlTypeMask;
    tl.ullCount = byte(0) & kTlLengthMask;
    while ((byte(tl.uiSize - 1) & kTlMore) != 0 && tl.uiSize < std::min(kMaxSize, rest.size()))
        tl.ullCount = tl.ullCount << 4U | (byte(tl.uiSize++) & kTlLengthMask);
    tl.bAbsent = tl.uiSize == 1 && tl.uiType == kTlOctetString && tl.ullCount <= 1;
    if (tl.uiType != kTlList)
        tl.ullCount -= std::min<std::uint64_t>(tl.ullCount, tl.uiSize);
    const bool ends = (byte(tl.uiSize - 1) & kTlMore) == 0;
    tl.bCut = !ends && tl.uiSize < kMaxSize;
    tl.pcError = ErrorIn(tl, ends);
    return tl;
}

// The type that an element must have; found where any will do.
unsigned TypeOf(const Element* element, unsigned found)
{
    switch (element != nullptr ? element->eType : eTYPE::ANY) {
    case eTYPE::OCTETS:
        return kTlOctetString;
    case eTYPE::BOOLEAN:
        return kTlBoolean;
    case eTYPE::INTEGER:
        return kTlInteger;
    case eTYPE::UNSIGNED:
    case eTYPE::CRC:
        return kTlUnsigned;
    case eTYPE::STRUCTURE:
        return kTlList;
    default:
        return found;
    }
}

// As people know it, where that is not as records call it.
std::string NameOf(const Element* element)
{
    if (element == nullptr)
        return {};
    if (element->eMeaning == eMEANING::SECONDS)
        return "seconds_index";
    if (element->eMeaning == eMEANING::TIMESTAMP)
        return "timestamp";
    return element->pStructure == &schema::kLocalTime ? "local" : std::string(element->label);
}

class cWalker
{
public:
    cWalker(PayloadMap& frame, const std::vector<Verdict>& judged, const WalkOptions& walkOptions)
        : map(frame), whole(frame.payload), verdicts(judged), options(walkOptions),
          uiAt(walkOptions.uiStart)
    {
        walked.uiMessage = options.uiMessage;
    }

    Walked Run()
    {
        for (bool more = true; more && uiAt < whole.size();) {
            TakeUpToSilence();
            while (more && uiAt < payload.size())
                more = Step();
            if (bSilent && uiAt == payload.size())
                Silence();
            more = more && !(options.bOneFile && walked.uiMessage == 1);
        }
        if (!options.bMore)
            CatchUp(map.ullOffset + map.input.size(), 0);
        walked.uiEnd = uiAt;
        return std::move(walked);
    }

private:
    // What stands before a silence is parsed as if nothing followed.
    void TakeUpToSilence()
    {
        const auto silence =
            std::find_if(verdicts.begin(), verdicts.end(), [this](const Verdict& v) {
                return v.bSilence && v.ullEnd > options.ullBase + uiAt;
            });
        bSilent = silence != verdicts.end();
        payload =
            whole.substr(0, bSilent ? static_cast<std::size_t>(silence->ullEnd - options.ullBase)
                                    : std::string_view::npos);
    }

    void Silence()
    {
        AddDamage(walked.items.back().damage, "the line fell silent here: the file is given up");
        walked.uiMessage = 1;
    }

    // A message or what stands in its place; false when the walk ends there.
    bool Step()
    {
        const std::size_t start = uiAt;
        const std::size_t count = walked.items.size();
        const bool isWhole = BeginsMessage() && Message();
        if (options.bMore && !bSilent && bCut) {
            walked.items.resize(count);
            uiAt = start;
            return false;
        }
        if (!isWhole)
            Junk(start);
        return !(isWhole && options.bOneFile && walked.uiMessage == 1);
    }

    // ---- Messages

    bool BeginsMessage()
    {
        const TypeLength tl = ReadTypeLength(payload.substr(uiAt));
        bCut = tl.bCut;
        return tl.pcError == nullptr && tl.uiType == kTlList &&
               tl.ullCount == schema::kMessage.uiCount;
    }

    bool Message()
    {
        static constexpr Element kWhole = schema::Of(schema::kMessage, "message");
        uiTag = 0;
        PeekTag(uiAt, uiTag);
        const bool isWhole = Next(&kWhole, 0, walked.uiMessage);
        walked.uiMessage = schema::IsClose(uiTag) && isWhole ? 1 : walked.uiMessage + 1;
        return isWhole;
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
        Annotation item = Make("bytes that cannot be taken apart", 0, eWHAT::UNKNOWN);
        if (walked.items.empty() || walked.items.back().damage.empty())
            item.damage = "no SML message begins here";
        Emit(item, start);
    }

    // The tag of the message that begins at start, if one does.
    bool PeekTag(std::size_t start, unsigned& tag) const
    {
        constexpr unsigned kTypes[] = {kTlList,     kTlOctetString, kTlUnsigned,
                                       kTlUnsigned, kTlList,        kTlUnsigned};
        std::size_t at = start;
        for (const unsigned type : kTypes) {
            if (at >= payload.size())
                return false;
            const TypeLength tl = ReadTypeLength(payload.substr(at));
            const bool isList = type == kTlList;
            if (tl.pcError != nullptr || tl.bAbsent || tl.uiType != type ||
                (isList ? tl.ullCount != (at == start ? schema::kMessage.uiCount : 2)
                        : tl.ullCount > payload.size() - at - tl.uiSize))
                return false;
            at += tl.uiSize;
            const auto size = static_cast<std::size_t>(isList ? 0 : tl.ullCount);
            tag = static_cast<unsigned>(UnsignedOf(payload.substr(at, size)));
            at += size;
        }
        return true;
    }

    // ---- Elements; null where the schema does not tell. Each returns false when the message
    // cannot be followed any further.

    bool Next(const Element* element, unsigned depth, std::uint64_t index = 0)
    {
        std::string name = NameOf(element);
        if (index != 0)
            name += " " + std::to_string(index);
        if (IsOver(name, depth))
            return false;
        const std::size_t start = uiAt;
        if (Is(element, eTYPE::END) ||
            static_cast<unsigned char>(payload[uiAt]) <= quarn::kOptionAbsent) {
            ++uiAt;
            return Single(element, name, depth, start);
        }
        const TypeLength tl = ReadTypeLength(payload.substr(uiAt));
        const std::size_t left = payload.size() - uiAt - tl.uiSize;
        const bool isList = tl.uiType == kTlList && !Is(element, eTYPE::ANY);
        Annotation item = Make(name, depth, eWHAT::UNKNOWN, tl.uiSize);
        uiAt += tl.uiSize;
        if (tl.pcError != nullptr || (!isList && tl.ullCount > left)) {
            bCut = tl.bCut || tl.pcError == nullptr;
            item.damage = tl.pcError != nullptr
                              ? tl.pcError
                              : "it announces " + std::to_string(tl.ullCount) + " bytes, and " +
                                    std::to_string(left) + " are left";
            Emit(item, start);
            return false;
        }
        item.type = TypeText(tl.uiType, tl.ullCount);
        const unsigned expected = TypeOf(element, tl.uiType);
        if (tl.uiType != expected)
            item.damage =
                std::string("it must be ") + TypeName(expected) + " and is " + TypeName(tl.uiType);
        if (!item.damage.empty())
            element = nullptr;
        if (isList)
            return List(item, element != nullptr ? element->pStructure : nullptr, tl.ullCount,
                        start);
        Leaf(item, element, tl, start);
        return true;
    }

    static bool Is(const Element* element, eTYPE type)
    {
        return element != nullptr && element->eType == type;
    }
    static bool Means(const Element* element, eMEANING meaning)
    {
        return element != nullptr && element->eMeaning == meaning;
    }

    // One byte: the end of a message, or what says that a field is not set.
    bool Single(const Element* element, const std::string& name, unsigned depth, std::size_t start)
    {
        const bool isEnd = Is(element, eTYPE::END);
        Annotation item = Make(name, depth, isEnd ? eWHAT::VALUE : eWHAT::ABSENT, isEnd ? 0 : 1);
        if (!isEnd)
            item.value = "not set";
        if (!isEnd && element != nullptr && !element->bOptional)
            item.damage = "it must be set";
        if (isEnd && payload[start] != '\0')
            item.damage = "it must be 00";
        Emit(item, start);
        return !isEnd || payload[start] == '\0';
    }

    void Leaf(Annotation& item, const Element* element, const TypeLength& tl, std::size_t start)
    {
        const std::string_view bytes = payload.substr(uiAt, static_cast<std::size_t>(tl.ullCount));
        uiAt += bytes.size();
        item.eWhat = eWHAT::VALUE;
        item.value = ValueText(element, tl.uiType, bytes, scale);
        if (Means(element, eMEANING::UNIT))
            scale.uiUnit = static_cast<unsigned>(UnsignedOf(bytes));
        else if (Means(element, eMEANING::SCALER))
            scale.iScaler = static_cast<int>(SignedOf(bytes));
        else if (Means(element, eMEANING::TAG))
            uiChosen = static_cast<unsigned>(UnsignedOf(bytes));
        else if (Is(element, eTYPE::VALUE))
            item.note = SignNote(tl.uiType, bytes, scale);
        else if (Is(element, eTYPE::CRC))
            Checksum(item);
        Emit(item, start);
    }

    // The parser's word on the message that ends with the byte behind its checksum.
    void Checksum(Annotation& item) const
    {
        item.eWhat = eWHAT::CHECKSUM;
        const auto verdict = std::find_if(verdicts.begin(), verdicts.end(), [this](const auto& v) {
            return v.ullEnd == options.ullBase + uiAt + 1 && !v.IsRefusal();
        });
        item.value += verdict == verdicts.end() ? " not checked"
                      : verdict->IsCrc()        ? " wrong"
                                                : " right";
        if (verdict != verdicts.end() && verdict->IsCrc())
            item.damage = "the checksum is wrong: some byte of the message is damaged";
    }

    // Without a structure, or against it, the elements have no names.
    bool List(Annotation& item, const Structure* structure, std::uint64_t count, std::size_t start)
    {
        item.eWhat = eWHAT::STRUCTURE;
        if (structure != nullptr && !structure->IsList()) {
            const bool isChoice = structure->eForm == eFORM::CHOICE;
            const std::uint64_t expected = isChoice ? 2 : structure->uiCount;
            if (count != expected) {
                item.damage = "it must be a list of " + std::to_string(expected);
                structure = nullptr;
            } else {
                item.value = Heading(*structure, start);
            }
        }
        const unsigned depth = item.uiDepth + 1;
        Emit(item, start);
        if (structure != nullptr && structure->eForm == eFORM::CHOICE)
            return Choice(*structure, depth);
        const bool isMany = structure != nullptr && structure->IsList();
        if (!isMany)
            scale = Scale();
        for (std::uint64_t i = 0; i < count; ++i) {
            const Element* const element = structure == nullptr ? nullptr
                                           : isMany             ? structure->pElements
                                                                : structure->pElements + i;
            if (!Next(element, depth, isMany ? i + 1 : 0))
                return false;
        }
        return true;
    }

    // What a list is, told by what stands in it.
    std::string Heading(const Structure& structure, std::size_t start) const
    {
        if (&structure == &schema::kMessage) {
            const schema::Message* message = schema::FindMessage(uiTag);
            const bool isSkipped =
                std::any_of(verdicts.begin(), verdicts.end(), [this, start](const Verdict& v) {
                    return v.IsRefusal() && v.ullEnd <= options.ullBase + start;
                });
            return std::string(message != nullptr ? message->pcName : "") +
                   (isSkipped ? ", not parsed" : "");
        }
        const Element& first = structure[0];
        if (first.eMeaning != eMEANING::NAME || payload.size() - uiAt < 1 + SML_NAME_SIZE ||
            payload[uiAt] != char{1 + SML_NAME_SIZE})
            return {};
        return ValueText(&first, kTlOctetString, payload.substr(uiAt + 1, SML_NAME_SIZE), scale);
    }

    bool Choice(const Structure& structure, unsigned depth)
    {
        static constexpr Element kTag = schema::Tag();
        uiChosen = 0;
        if (!Next(&kTag, depth))
            return false;
        for (const Element& element : structure) {
            if (element.uiTag == uiChosen)
                return Next(&element, depth);
        }
        AddDamage(walked.items.back().damage, "there is no such choice here");
        return Next(nullptr, depth);
    }

    // There is nothing more of the message: the data is at its end, or another message begins,
    // which is met where damage has shifted the fields.
    bool IsOver(const std::string& name, unsigned depth)
    {
        unsigned tag = 0;
        bCut = uiAt >= payload.size();
        const bool isNext = !bCut && depth > 0 && payload[uiAt] == '\x76' && PeekTag(uiAt, tag);
        if (!bCut && !isNext && depth <= kMaxDepth)
            return false;
        if (!walked.items.empty())
            AddDamage(walked.items.back().damage, (bCut     ? "the data ends here"
                                                   : isNext ? "the next message begins here"
                                                            : "nested too deeply") +
                                                      (name.empty() ? "" : ", before " + name));
        return true;
    }

    // ---- Annotations

    static Annotation Make(const std::string& name, unsigned depth, eWHAT what, std::size_t tl = 0)
    {
        Annotation item;
        item.uiDepth = depth;
        item.uiTl = static_cast<unsigned>(tl);
        item.eWhat = what;
        item.name = name;
        return item;
    }

    // Adds what the payload's bytes from begin up to here are, in as many pieces as the transport
    // makes of them; other bytes of the input that stand before them go first.
    void Emit(Annotation& item, std::size_t begin)
    {
        for (const Verdict& verdict : verdicts) {
            const std::uint64_t at = std::max<std::uint64_t>(verdict.ullEnd, 1) - 1;
            if (verdict.IsRefusal() && at >= options.ullBase + begin && at < options.ullBase + uiAt)
                AddDamage(item.damage, verdict.Text());
        }
        const std::size_t value = begin + item.uiTl; // where it begins
        for (std::size_t at = begin; at < uiAt;) {
            std::size_t next = at + 1;
            while (next < uiAt && map.positions[next] == map.positions[next - 1] + 1)
                ++next;
            item.ullOffset = map.ullOffset + map.positions[at];
            CatchUp(item.ullOffset, item.uiDepth);
            item.bytes = payload.substr(at, next - at);
            item.uiTl = static_cast<unsigned>(std::clamp(value, at, next) - at);
            walked.items.push_back(item);
            item.damage.clear();
            item.note.clear();
            item.type.clear();
            item.value = "(goes on)";
            at = next;
        }
    }

    void CatchUp(std::uint64_t offset, unsigned depth)
    {
        std::vector<Annotation>& transport = map.transport;
        for (; uiTransport < transport.size() && transport[uiTransport].ullOffset < offset;
             ++uiTransport) {
            walked.items.push_back(std::move(transport[uiTransport]));
            walked.items.back().uiDepth = depth;
        }
    }

    PayloadMap& map;
    std::string_view whole;   // payload
    std::string_view payload; // of it, what was there before the line fell silent
    const std::vector<Verdict>& verdicts;
    const WalkOptions& options;
    Walked walked;
    std::size_t uiAt;            // in the payload
    std::size_t uiTransport = 0; // of the map's other bytes that have been added
    bool bCut = false;           // the walk ended where the data did
    bool bSilent = false;        // the line fell silent where the payload ends
    unsigned uiTag = 0;          // of the message
    unsigned uiChosen = 0;       // the tag read last
    Scale scale;
};

} // namespace

Walked Walk(PayloadMap& map, const std::vector<Verdict>& verdicts, const WalkOptions& options)
{
    return cWalker(map, verdicts, options).Run();
}

} // namespace tool
