// The tables that the parser's engine walks. A structure is a Layout: what its list must look like,
// and its fields in wire order. A Field says how it is read, what is refused with which code and
// trace, and under which label it is kept; its state number is its index. Private to the wing.
#ifndef QUARN_PARSER_ENGINE_H
#define QUARN_PARSER_ENGINE_H

#include "quarn/foundation/fields.h"
#include "quarn/foundation/schema.h"
#include "quarn/foundation/trace.h"
#include "quarn/parser/parser.h"

#include <array>
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

// What the parser adds to an element of the schema. A row is written without what the schema tells;
// Over and Fields fill it in.
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

    static constexpr std::uint32_t kNoLimit = quarn::schema::kNoLimit;

    static constexpr Field Of(Reader reader, Shape shape = Shape::Special)
    {
        Field field;
        field.pfnRead = reader;
        field.eShape = shape;
        return field;
    }
    static constexpr Field Octets();
    static constexpr Field String();
    static constexpr Field Number();
    static constexpr Field Structure(const Layout& layout);

    constexpr Field ReadBy(Reader reader) const
    {
        Field field = *this;
        field.pfnRead = reader;
        field.eShape = Shape::Special;
        return field;
    }
    // Of a field over its element: it must be set all the same.
    constexpr Field Required() const
    {
        Field field = *this;
        field.bOptional = false;
        return field;
    }
    // Accepts more bytes than the schema allows.
    constexpr Field UpTo(std::uint32_t bytes) const
    {
        Field field = *this;
        field.uiMax = bytes;
        return field;
    }
    constexpr Field Kept(Keep keep) const
    {
        Field field = *this;
        field.bLabelled = true;
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

    constexpr Field Over(const quarn::schema::Element& element) const
    {
        Field field = *this;
        field.bOptional = element.bOptional;
        field.uiMin = element.Least();
        if (field.uiMax == 0)
            field.uiMax = element.uiMost;
        field.ucType = element.eType == quarn::schema::eTYPE::INTEGER ? quarn::detail::TLF_INTEGER
                                                                      : quarn::detail::TLF_UNSIGNED;
        field.ucKind = static_cast<std::uint8_t>(quarn::schema::KindOf(element));
        field.label = quarn::detail::Label(element.label);
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
    quarn::detail::Label label{};   // of a message's body

    constexpr Layout TakenBy(Taker taker) const
    {
        Layout layout = *this;
        layout.pfnTake = taker;
        return layout;
    }

    constexpr bool IsListOf() const { return uiCount == 0; }
};

constexpr cSMLP::Field cSMLP::Field::Octets()
{
    Field field = Of(&cSMLP::ReadOctets, Shape::Octets);
    field.length = {quarn::detail::RC_STRING_LENGTH, nullptr};
    return field;
}

constexpr cSMLP::Field cSMLP::Field::String()
{
    Field field = Octets();
    field.bString = true;
    field.type = {quarn::detail::RC_STRING_TYPE, nullptr};
    field.absent = {quarn::detail::RC_NOT_OPTIONAL, "String:Optional not supported!, smlp[%d]"};
    return field;
}

constexpr cSMLP::Field cSMLP::Field::Number() { return Of(&cSMLP::ReadNumber, Shape::Number); }

constexpr cSMLP::Field cSMLP::Field::Structure(const Layout& layout)
{
    Field field = Of(&cSMLP::ReadStructure, Shape::Structure);
    field.pLayout = &layout;
    return field;
}

// Every structure: its layout and, behind it, its fields. Defined in structures.cpp, trees.cpp,
// bodies.cpp and envelope.cpp.
struct cSMLP::Tables {
    // A row for each element of a structure, in its order.
    template <std::size_t N>
    static constexpr std::array<Field, N> Fields(const quarn::schema::Element (&elements)[N],
                                                 const Field (&rows)[N])
    {
        std::array<Field, N> fields{};
        for (std::size_t i = 0; i < N; ++i)
            fields[i] = rows[i].Over(elements[i]);
        return fields;
    }
    // The tag of a choice.
    static constexpr Field Tag() { return Field::Number().Over(quarn::schema::Tag()); }

    static const Layout kTime;
    static const std::array<Field, 2> aTime;
    static const Layout kLocalTimestamp;
    static const std::array<Field, 3> aLocalTimestamp;
    static const Layout kListType;
    static const std::array<Field, 2> aListType;
    static const Layout kListEntry;
    static const std::array<Field, 7> aListEntry;
    static const Layout kList;
    static const std::array<Field, 1> aList;
    static const Layout kObjReqList;
    static const std::array<Field, 1> aObjReqList;
    static const Layout kHeaderEntry;
    static const std::array<Field, 3> aHeaderEntry;
    static const Layout kHeaderList;
    static const std::array<Field, 1> aHeaderList;
    static const Layout kValueEntry;
    static const std::array<Field, 2> aValueEntry;
    static const Layout kValueList;
    static const std::array<Field, 1> aValueList;
    static const Layout kPeriodObjectEntry;
    static const std::array<Field, 4> aPeriodObjectEntry;
    static const Layout kPeriodObjectList;
    static const std::array<Field, 1> aPeriodObjectList;
    static const Layout kPeriodEntry;
    static const std::array<Field, 5> aPeriodEntry;
    static const Layout kPeriodList;
    static const std::array<Field, 1> aPeriodList;
    static const Layout kTupelEntry;
    static const std::array<Field, 23> aTupelEntry;
    static const Layout kTreePath;
    static const std::array<Field, 1> aTreePath;
    static const Layout kProcParValue;
    static const std::array<Field, 2> aProcParValue;
    static const Layout kChildList;
    static const std::array<Field, 1> aChildList;
    static const Layout kTree;
    static const std::array<Field, 3> aTree;
    static const Layout kMessage;
    static const std::array<Field, 6> aMessage;
    static const Layout kMessageBody;
    static const std::array<Field, 2> aMessageBody;

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
    if (len >= SML_NAME_SIZE)
        return (std::uint64_t{s[0]} << 24 | std::uint64_t{s[1]} << 16 | std::uint64_t{s[2]} << 8 |
                std::uint64_t{s[3]})
                   << 16 |
               std::uint64_t{s[4]} << 8 | std::uint64_t{s[5]};
    std::uint64_t number = 0;
    for (std::uint32_t i = 0; i < SML_NAME_SIZE; ++i)
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
