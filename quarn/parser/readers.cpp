// The readers: how one field of a structure is taken from the wire, checked, and kept in the record
// under way. A reader that stops for lack of input is called again for the same field; usFieldState
// tells it whether the TL field has been read. Most fields are plain and come whole: for them there
// is a short way, at the end.
#include "quarn/parser/engine.h"

#include "quarn/foundation/tl.h"

#include <algorithm>
#include <string>

using namespace quarn::detail;

// ---- Octet strings

int cSMLP::ReadOctets(const Field& field)
{
    if (usFieldState == 0) {
        int rc = Decode_TLField();
        if (rc == RC_DONE)
            rc = CheckOctets(field);
        if (rc != RC_DONE)
            return rc;
        pucString = nullptr;
        uiStringLen = 0;
        if (uiTLF_Type == TLF_ABSENT)
            return KeepOctets(aFrames[uiDepth], field);
        usFieldState = 1;
    }
    const bool keep = field.eKeep != Keep::Nothing;
    const int rc =
        Parse_OctetString(uiTLF_Count, keep ? field.uiMax : std::uint32_t{Field::kNoLimit}, keep);
    if (rc != RC_DONE)
        return rc;
    usFieldState = 0;
    return KeepOctets(aFrames[uiDepth], field);
}

int cSMLP::CheckOctets(const Field& field) const noexcept
{
    if (uiTLF_Type == TLF_OCTET_STRING) {
        if (uiTLF_Count <= field.uiMax)
            return RC_DONE;
        if (field.bString || field.length.rc == RC_STRING_LENGTH)
            Say(kError, "String:Length=%d, Limit=%d, smlp[%d]", uiTLF_Count, field.uiMax);
        return Refuse(field.length);
    }
    if (uiTLF_Type == TLF_ABSENT) {
        if (field.bOptional)
            return RC_DONE;
        if (field.absent.rc != 0)
            return Refuse(field.absent);
    }
    if (field.bString)
        Say(kError, "String:Type!=OctetString, smlp[%d]");
    return Refuse(field.type);
}

int cSMLP::KeepOctets(Frame& frame, const Field& field)
{
    if (field.pfnHook != nullptr) {
        const int rc = (this->*field.pfnHook)();
        if (rc != RC_DONE)
            return rc;
    }
    if (!field.bLabelled || !frame.bKept || (uiStringLen == 0 && field.eKeep == Keep::IfSet))
        return RC_DONE;
    frame.bFilled = true;
    if (field.ucKind == KIND_UINT64)
        builder.AppendUInt64Par(field.label, NameNumber(), 0);
    else
        builder.AppendDataPar(field.label, pucString, static_cast<int>(uiStringLen), 0);
    return RC_DONE;
}

// A name of six octets as a number, the first octet in bits 47 to 40; missing octets count as 0.
std::uint64_t cSMLP::NameNumber() const noexcept
{
    const auto octet = [this](std::uint32_t i) {
        return std::uint64_t{i < uiStringLen ? pucString[i] : 0U};
    };
    if (uiStringLen >= 6) {
        const unsigned char* const s = pucString;
        return (std::uint64_t{s[0]} << 24 | std::uint64_t{s[1]} << 16 | std::uint64_t{s[2]} << 8 |
                s[3]) << 16 | (std::uint64_t{s[4]} << 8 | s[5]);
    }
    return octet(0) << 40 | octet(1) << 32 | octet(2) << 24 | octet(3) << 16 | octet(4) << 8;
}

// ---- Numbers

int cSMLP::ReadNumber(const Field& field)
{
    if (usFieldState == 0) {
        const int rc = Decode_TLField();
        if (rc != RC_DONE)
            return rc;
        if (uiTLF_Type != field.ucType) {
            if (uiTLF_Type == TLF_ABSENT && field.bOptional)
                return RC_DONE;
            const bool absent = uiTLF_Type == TLF_ABSENT && field.absent.rc != 0;
            return Refuse(absent ? field.absent : field.type, uiTLF_Type);
        }
        if (uiTLF_Count < field.uiMin || uiTLF_Count > field.uiMax)
            return Refuse(field.length, uiTLF_Count);
        usFieldState = 1;
    }
    const int rc = Parse_IntegerTypes(uiTLF_Count);
    if (rc != RC_DONE)
        return rc;
    usFieldState = 0;
    return KeepNumber(aFrames[uiDepth], field);
}

int cSMLP::KeepNumber(Frame& frame, const Field& field)
{
    if (field.pfnHook != nullptr) {
        const int rc = (this->*field.pfnHook)();
        if (rc != RC_DONE)
            return rc;
    }
    if (!field.bLabelled || !frame.bKept)
        return RC_DONE;
    frame.bFilled = true;
    switch (field.ucKind) {
    case KIND_SINT:
        builder.AppendSIntPar(field.label, static_cast<int>(SignedInteger()), 0);
        break;
    case KIND_UINT64:
        builder.AppendUInt64Par(field.label, ullInteger, 0);
        break;
    default:
        builder.AppendUIntPar(field.label, static_cast<unsigned>(ullInteger), 0);
        break;
    }
    return RC_DONE;
}

// The integer just read, sign-extended from its encoded length.
std::int64_t cSMLP::SignedInteger() const noexcept
{
    if (uiTLF_Count == 0)
        return 0;
    const std::uint64_t sign = std::uint64_t{1} << (8 * uiTLF_Count - 1);
    return static_cast<std::int64_t>((ullInteger ^ sign) - sign);
}

// ---- Structures and values

int cSMLP::ReadStructure(const Field& field) { return EnterKept(*field.pLayout, field); }

int cSMLP::ReadValue(const Field& field)
{
    const int rc = Parse_SML_Value(IsKept(field));
    if (rc == RC_ENTERED)
        bProcParValSet = true;
    else if (rc == RC_DONE && IsKept(field))
        bProcParValSet = AppendValue();
    return rc;
}

// A boolean, an integer, an octet string, or a list type: then its structure has been entered.
int cSMLP::Parse_SML_Value(bool keep)
{
    if (usFieldState == 0) {
        const int rc = Decode_TLField();
        if (rc != RC_DONE)
            return rc;
        pucString = nullptr;
        uiStringLen = 0;
        switch (uiTLF_Type) {
        case TLF_ABSENT:
            return RC_DONE;
        case TLF_LIST: {
            if (uiTLF_Count != Tables::kListType.uiCount)
                return RC_LIST_TYPE_COUNT;
            const int entered = EnterKept(Tables::kListType, CurrentField(aFrames[uiDepth]),
                                          &kLabel<label::smlList>);
            if (entered == RC_ENTERED)
                aFrames[uiDepth].uiIndex = 1; // its TL field has just been read
            return entered;
        }
        case TLF_BOOLEAN:
        case TLF_INTEGER:
        case TLF_UNSIGNED:
        case TLF_OCTET_STRING:
            usFieldState = 1;
            break;
        default:
            return Refuse({RC_VALUE_TYPE, "SML_Value:Seq-Type, smlp[%d]"});
        }
    }
    int rc = RC_DONE;
    if (uiTLF_Type == TLF_OCTET_STRING) {
        rc = Parse_OctetString(uiTLF_Count, keep ? SML_VALUE_CHUNK : Field::kNoLimit, keep);
        Say(kDetail, "SML_Value:OctStr:Len=%d, rc=%d, smlp[%d]", uiTLF_Count, rc);
    } else {
        rc = Parse_IntegerTypes(uiTLF_Count);
    }
    if (rc == RC_DONE)
        usFieldState = 0;
    return rc;
}

// Appends the value just read as "value"; false when it has no bytes that make one.
bool cSMLP::AppendValue()
{
    const std::uint32_t bytes = uiTLF_Count;
    if (uiTLF_Type == TLF_OCTET_STRING || uiTLF_Type == TLF_ABSENT) {
        Target().AppendDataPar(kLabel<label::value>, pucString, static_cast<int>(uiStringLen), 0);
        return true;
    }
    if (bytes == 0)
        return false;
    RecordBuilder& to = Target();
    switch (uiTLF_Type) {
    case TLF_BOOLEAN:
        to.AppendBoolPar(kLabel<label::value>, (ullInteger & 0xFFU) != 0, 0);
        break;
    case TLF_INTEGER:
        if (bytes <= 4)
            to.AppendSIntPar(kLabel<label::value>, static_cast<int>(SignedInteger()), 0);
        else
            to.AppendSInt64Par(kLabel<label::value>, SignedInteger(), 0);
        break;
    default:
        if (bytes <= 4)
            to.AppendUIntPar(kLabel<label::value>, static_cast<unsigned>(ullInteger), 0);
        else
            to.AppendUInt64Par(kLabel<label::value>, ullInteger, 0);
        break;
    }
    return true;
}

// The value of a time: a number, or for choice 3 the fields of a local timestamp beside the type.
int cSMLP::ReadTimeValue(const Field& field)
{
    if (ucChoice == 3)
        return Enter(Tables::kLocalTimestamp, false, aFrames[uiDepth].bKept, false);
    return ReadNumber(field);
}

// The status of a period object, passed over whatever its type.
int cSMLP::ReadUntypedStatus(const Field& field)
{
    if (usFieldState == 0) {
        const int rc = Decode_TLField();
        if (rc == RC_INPUT_EMPTY || rc == RC_STORE_FULL)
            return rc;
        if (rc != RC_DONE) {
            Say(kError, "ProfObjPerEntry:TL-Field(status), smlp[%d]");
            return rc;
        }
        if (uiTLF_Count > field.uiMax)
            return Refuse(field.length);
        usFieldState = 1;
    }
    const int rc = Parse_IntegerTypes(uiTLF_Count);
    if (rc == RC_DONE)
        usFieldState = 0;
    return rc;
}

// The flag is not supported: it must be absent.
int cSMLP::ReadWithRawdata(const Field& field)
{
    const int rc = Decode_TLField();
    if (rc != RC_DONE || uiTLF_Type == TLF_ABSENT)
        return rc;
    return uiTLF_Type == TLF_BOOLEAN ? int{RC_NOT_OPTIONAL} : Refuse(field.type);
}

// ---- The short way
//
// Plain fields that lie whole in the input, in the usual form, are taken without asking what else
// could be. Whatever is unusual about a field (it may be refused, runs over the end of the input or
// of the message store, has a TL field of several bytes) is left, untouched, to its reader, which
// knows every case; so nothing is decided here that a reader would decide otherwise.

namespace
{

// The longest integer and its TL field. Less input than that is left to the readers.
constexpr std::ptrdiff_t kLongestInteger = 9;

// len bytes, most significant first. REQUIRES: len in 1 to 8, and 8 bytes can be read.
std::uint64_t BigEndian(const unsigned char* bytes, unsigned len)
{
    const std::uint64_t all = std::uint64_t{bytes[0]} << 56 | std::uint64_t{bytes[1]} << 48 |
                              std::uint64_t{bytes[2]} << 40 | std::uint64_t{bytes[3]} << 32 |
                              std::uint64_t{bytes[4]} << 24 | std::uint64_t{bytes[5]} << 16 |
                              std::uint64_t{bytes[6]} << 8 | std::uint64_t{bytes[7]};
    return all >> (64 - 8 * len);
}

// The length that the single byte of a TL field gives; of a list, one less than its elements. Very
// large for 0.
constexpr unsigned ShortLength(unsigned tl) { return (tl & kTlLengthMask) - 1; }

constexpr unsigned ShortType(unsigned tl) { return tl & ~kTlLengthMask; }

} // namespace

// Takes the fields of the innermost structure, as far as they are plain: RC_DONE at its end,
// RC_LEFT before a field that is not, RC_ENTERED in a structure inside it, or what a hook answers.
int cSMLP::TakeFields()
{
    Frame& frame = aFrames[uiDepth];
    const unsigned char* p = pucInData;
    const unsigned char* const end = p + std::min(InputLeft(), StoreFree()); // of input and store
    const Field* field = &CurrentField(frame);
    const std::ptrdiff_t step = frame.pLayout->IsListOf() ? 0 : 1;
    int rc = RC_DONE;
    for (; frame.uiIndex <= frame.uiCount; ++frame.uiIndex, field += step) {
        const std::ptrdiff_t left = end - p;
        if (left < kLongestInteger)
            return RC_LEFT;
        switch (field->eShape) {
        case Shape::Octets:
            rc = TakeOctets(frame, *field, p, left);
            break;
        case Shape::Number:
            rc = TakeNumber(frame, *field, p);
            break;
        case Shape::Value:
            rc = TakeValue(frame, *field, p, left);
            break;
        case Shape::Structure:
            rc = TakeStructure(*field, p);
            break;
        default:
            return RC_LEFT;
        }
        if (rc != RC_DONE)
            return rc;
    }
    return RC_DONE;
}

inline int cSMLP::TakeNumber(Frame& frame, const Field& field, const unsigned char*& p)
{
    const unsigned tl = *p;
    if (tl == kOptionAbsent && field.bOptional)
        return TakeAbsent(p);
    const unsigned len = ShortLength(tl);
    if (ShortType(tl) != field.ucType || len - 1 > 7 || len < field.uiMin || len > field.uiMax)
        return RC_LEFT;
    TakeInteger(p, tl, len);
    return KeepNumber(frame, field);
}

inline int cSMLP::TakeAbsent(const unsigned char*& p) noexcept
{
    uiTLF_Type = TLF_ABSENT;
    pucInData = ++p;
    return RC_DONE;
}

inline void cSMLP::TakeInteger(const unsigned char*& p, unsigned tl, unsigned len) noexcept
{
    uiTLF_Type = tl & kTlTypeMask;
    uiTLF_Count = len;
    ullInteger = BigEndian(p + 1, len);
    pucInData = p += 1 + len;
}

inline int cSMLP::TakeOctets(Frame& frame, const Field& field, const unsigned char*& p,
                             std::ptrdiff_t left)
{
    const unsigned tl = *p;
    const unsigned len = ShortLength(tl);
    if (ShortType(tl) != kTlOctetString || len >= left || len > field.uiMax ||
        (len == 0 && !field.bOptional))
        return RC_LEFT;
    TakeString(p, len);
    return KeepOctets(frame, field);
}

inline void cSMLP::TakeString(const unsigned char*& p, unsigned len) noexcept
{
    uiTLF_Type = len != 0 ? TLF_OCTET_STRING : TLF_ABSENT;
    uiTLF_Count = len;
    pucString = len != 0 ? p + 1 : nullptr;
    uiStringLen = len;
    pucInData = p += 1 + len;
}

inline int cSMLP::TakeValue(Frame& frame, const Field& field, const unsigned char*& p,
                            std::ptrdiff_t left)
{
    const unsigned tl = *p;
    const unsigned len = ShortLength(tl);
    switch (ShortType(tl)) {
    case kTlBoolean:
    case kTlInteger:
    case kTlUnsigned:
        if (len - 1 > (ShortType(tl) == kTlBoolean ? 3U : 7U))
            return RC_LEFT;
        TakeInteger(p, tl, len);
        break;
    case kTlOctetString:
        if (len >= left)
            return RC_LEFT;
        TakeString(p, len);
        break;
    default:
        return RC_LEFT;
    }
    if (frame.bKept && field.eKeep != Keep::Nothing)
        bProcParValSet = AppendValue();
    return RC_DONE;
}

// A list with the right number of elements, in one byte; or nothing, where that is all there is to
// it.
inline int cSMLP::TakeStructure(const Field& field, const unsigned char*& p)
{
    const unsigned tl = *p;
    const Layout& layout = *field.pLayout;
    if (tl == kOptionAbsent && field.bOptional && field.eKeep != Keep::Always &&
        field.pfnHook == nullptr)
        return TakeAbsent(p);
    const unsigned count = tl & kTlLengthMask;
    if (ShortType(tl) != kTlList || (count != layout.uiCount && !layout.IsListOf()))
        return RC_LEFT;
    const int rc = EnterKept(layout, field);
    if (rc == RC_ENTERED) {
        uiTLF_Type = TLF_LIST;
        uiTLF_Count = count;
        aFrames[uiDepth].uiCount = count;
        aFrames[uiDepth].uiIndex = 1;
        pucInData = ++p;
    }
    return rc;
}
