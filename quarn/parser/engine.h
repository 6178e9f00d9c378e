// The tables that the parser's engine walks. A structure is a Layout: what its list must look like,
// and its fields in wire order. A Field says how it is read, what is refused with which code and
// trace, and under which label it is kept; its state number is its index. Private to the wing.
#ifndef QUARN_PARSER_ENGINE_H
#define QUARN_PARSER_ENGINE_H

#include "quarn/foundation/fields.h"
#include "quarn/foundation/labels.h"
#include "quarn/foundation/trace.h"
#include "quarn/parser/parser.h"

#include <cstdint>

// A code and its trace. The text may take one number (a type, length or value) or the last four
// bytes of the message store before the instance number that ends every text.
struct cSMLP::Refusal {
    int rc = 0;
    const char* pcText = nullptr;
};

enum class cSMLP::Keep : std::uint8_t {
    Nothing, // read and checked only
    IfSet,   // present and not empty
    Always,  // when present; octet strings and structures also when absent, then empty
    ByHook   // built for the hook, which decides
};

// What the short way knows of a field.
enum class cSMLP::Shape : std::uint8_t {
    Special, // its reader alone reads it
    Octets,
    Number,
    Value,
    Structure
};

struct cSMLP::Field {
    using Reader = int (cSMLP::*)(const Field&);
    using Hook = int (cSMLP::*)();

    Shape eShape = Shape::Special;
    Keep eKeep = Keep::Nothing;
    std::uint8_t ucType = 0; // TLF_INTEGER or TLF_UNSIGNED, of numbers
    std::uint8_t ucKind = 0; // of the parameter
    bool bOptional = false;
    bool bLabelled = false;
    bool bString = false;    // the traces of strings come before the field's own
    std::uint32_t uiMin = 0; // bytes
    std::uint32_t uiMax = 0;
    quarn::detail::Label label;
    Hook pfnHook = nullptr; // octets and numbers: before the value is kept; structures: after it
    Reader pfnRead = nullptr;
    const Layout* pLayout = nullptr;
    Refusal absent; // rc 0: as type
    Refusal type;
    Refusal length;

    static constexpr std::uint32_t kNoLimit = 0xFFFFFFFF;

    static constexpr Field Of(Reader reader, Shape shape = Shape::Special)
    {
        Field field;
        field.pfnRead = reader;
        field.eShape = shape;
        return field;
    }
    static constexpr Field Octets(std::uint32_t max);
    static constexpr Field String(std::uint32_t max);
    static constexpr Field Number(quarn::detail::eTLF type, std::uint32_t min, std::uint32_t max);
    static constexpr Field Structure(const Layout& layout);

    constexpr Field ReadBy(Reader reader) const
    {
        Field field = *this;
        field.pfnRead = reader;
        field.eShape = Shape::Special;
        return field;
    }
    constexpr Field Optional() const
    {
        Field field = *this;
        field.bOptional = true;
        return field;
    }
    constexpr Field Kept(quarn::detail::Label name, quarn::detail::eKIND kind, Keep keep) const
    {
        Field field = *this;
        field.label = name;
        field.bLabelled = true;
        field.ucKind = static_cast<std::uint8_t>(kind);
        field.eKeep = keep;
        return field;
    }
    constexpr Field Refused(Refusal forType, Refusal forLength, Refusal forAbsence = {}) const
    {
        Field field = *this;
        field.type = forType;
        field.length = forLength;
        if (forAbsence.rc != 0)
            field.absent = forAbsence;
        return field;
    }
    constexpr Field Then(Hook hook) const
    {
        Field field = *this;
        field.pfnHook = hook;
        if (field.eKeep == Keep::Nothing)
            field.eKeep = Keep::ByHook;
        return field;
    }
};

struct cSMLP::Layout {
    using Stopped = void (cSMLP::*)(const Frame& frame, int rc);
    using Taker = int (cSMLP::*)(Frame&);

    const Field* pFields;
    std::uint32_t uiCount; // elements; 0: a list of any number, each read as the one field
    Refusal type;
    Refusal count;
    Refusal absent;                 // rc 0: as type
    const char* pcPrefix = nullptr; // begins the texts of type and count
    const char* pcOpened = nullptr; // told at the lowest level, with the number of elements
    Stopped pfnStopped = nullptr;   // told of every code with which a read inside it stops
    Taker pfnTake = nullptr;        // the short way for its fields, where it has one

    constexpr Layout TakenBy(Taker taker) const
    {
        Layout layout = *this;
        layout.pfnTake = taker;
        return layout;
    }

    constexpr bool IsListOf() const { return uiCount == 0; }
};

constexpr cSMLP::Field cSMLP::Field::Octets(std::uint32_t max)
{
    Field field = Of(&cSMLP::ReadOctets, Shape::Octets);
    field.uiMax = max;
    field.length = {quarn::detail::RC_STRING_LENGTH, nullptr};
    return field;
}

constexpr cSMLP::Field cSMLP::Field::String(std::uint32_t max)
{
    Field field = Octets(max);
    field.bString = true;
    field.type = {quarn::detail::RC_STRING_TYPE, nullptr};
    field.absent = {quarn::detail::RC_NOT_OPTIONAL, "String:Optional not supported!, smlp[%d]"};
    return field;
}

constexpr cSMLP::Field cSMLP::Field::Number(quarn::detail::eTLF type, std::uint32_t min,
                                            std::uint32_t max)
{
    Field field = Of(&cSMLP::ReadNumber, Shape::Number);
    field.ucType = static_cast<std::uint8_t>(type);
    field.uiMin = min;
    field.uiMax = max;
    return field;
}

constexpr cSMLP::Field cSMLP::Field::Structure(const Layout& layout)
{
    Field field = Of(&cSMLP::ReadStructure, Shape::Structure);
    field.pLayout = &layout;
    return field;
}

// Every structure: its layout and, behind it, its fields. Told in structures.cpp, trees.cpp,
// bodies.cpp and envelope.cpp.
struct cSMLP::Tables {
    static const Layout kTime;
    static const Field aTime[2];
    static const Layout kLocalTimestamp;
    static const Field aLocalTimestamp[];
    static const Layout kListType;
    static const Field aListType[2];
    static const Layout kListEntry;
    static const Field aListEntry[7];
    static const Layout kList;
    static const Field aList[1];
    static const Layout kObjReqList;
    static const Field aObjReqList[];
    static const Layout kHeaderEntry;
    static const Field aHeaderEntry[3];
    static const Layout kHeaderList;
    static const Field aHeaderList[1];
    static const Layout kValueEntry;
    static const Field aValueEntry[2];
    static const Layout kValueList;
    static const Field aValueList[1];
    static const Layout kPeriodObjectEntry;
    static const Field aPeriodObjectEntry[4];
    static const Layout kPeriodObjectList;
    static const Field aPeriodObjectList[1];
    static const Layout kPeriodEntry;
    static const Field aPeriodEntry[5];
    static const Layout kPeriodList;
    static const Field aPeriodList[1];
    static const Layout kTupelEntry;
    static const Field aTupelEntry[23];
    static const Layout kTreePath;
    static const Field aTreePath[];
    static const Layout kProcParValue;
    static const Field aProcParValue[];
    static const Layout kChildList;
    static const Field aChildList[];
    static const Layout kTree;
    static const Field aTree[3];
    static const Layout kMessage;
    static const Field aMessage[6];
    static const Layout kMessageBody;
    static const Field aMessageBody[2];

    static const Layout* FindBody(std::uint32_t identifier) noexcept;
};

// Field 0 of a structure is its list's TL field.
inline const cSMLP::Field& cSMLP::CurrentField(const Frame& frame) const noexcept
{
    return frame.pLayout->pFields[frame.pLayout->IsListOf() ? 0 : frame.uiIndex - 1];
}

// The builder, whose innermost record is about to be filled by the innermost structure. REQUIRES:
// it is kept.
inline quarn::detail::RecordBuilder& cSMLP::Target() noexcept
{
    aFrames[uiDepth].bFilled = true;
    return builder;
}

inline bool cSMLP::IsKept(const Field& field) const noexcept
{
    return field.eKeep != Keep::Nothing && aFrames[uiDepth].bKept;
}

// The integer of len bytes in bits, sign-extended.
inline std::int64_t cSMLP::SignedInteger(std::uint64_t bits, std::uint32_t len) noexcept
{
    if (len == 0)
        return 0;
    const std::uint64_t sign = std::uint64_t{1} << (8 * len - 1);
    return static_cast<std::int64_t>((bits ^ sign) - sign);
}

// A name of six octets as a number, the first octet in bits 47 to 40; missing octets count as 0.
inline std::uint64_t cSMLP::NameNumber(const unsigned char* s, std::uint32_t len) noexcept
{
    if (len >= 6)
        return (std::uint64_t{s[0]} << 24 | std::uint64_t{s[1]} << 16 | std::uint64_t{s[2]} << 8 |
                std::uint64_t{s[3]})
                   << 16 |
               std::uint64_t{s[4]} << 8 | std::uint64_t{s[5]};
    std::uint64_t number = 0;
    for (std::uint32_t i = 0; i < 6; ++i)
        number = number << 8 | (i < len ? s[i] : 0U);
    return number;
}

// Append a number, and the octet string just read, as the parameter that field asks for.
inline void cSMLP::AppendNumber(const Field& field, std::uint64_t value, std::uint32_t len)
{
    if (field.ucKind == quarn::detail::KIND_SINT)
        builder.AppendSIntPar(field.label, static_cast<int>(SignedInteger(value, len)), 0);
    else if (field.ucKind == quarn::detail::KIND_UINT64)
        builder.AppendUInt64Par(field.label, value, 0);
    else
        builder.AppendUIntPar(field.label, static_cast<unsigned>(value), 0);
}

inline void cSMLP::AppendOctets(Frame& frame, const Field& field)
{
    frame.bFilled = true;
    if (field.ucKind == quarn::detail::KIND_UINT64)
        builder.AppendUInt64Par(field.label, NameNumber(pucString, uiStringLen), 0);
    else
        builder.AppendDataPar(field.label, pucString, static_cast<int>(uiStringLen), 0);
}

template <typename... Args>
void cSMLP::Say(vorn::eLEVEL level, const char* text, Args... args) const noexcept
{
    quarn::detail::Trace(LibSmlp, level, text, args..., iId);
}

#endif
