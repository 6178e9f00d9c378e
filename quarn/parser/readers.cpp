// The readers: how one field of a structure is taken from the wire, checked, and kept in the record
// under way. A reader that stops for lack of input is called again for the same field; usFieldState
// tells it whether the TL field has been read. Plain fields that come whole
// seldom get here (take.h).
#include "quarn/parser/engine.h"

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
    AppendOctets(frame, field);
    return RC_DONE;
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
    AppendNumber(field, ullInteger, uiTLF_Count);
    return RC_DONE;
}

// ---- Structures and values

int cSMLP::ReadStructure(const Field& field) { return EnterKept(*field.pLayout, field); }

int cSMLP::ReadValue(const Field& field)
{
    const int rc = Parse_SML_Value(IsKept(field));
    if (rc == RC_ENTERED)
        bProcParValSet = true;
    else if (rc == RC_DONE && IsKept(field))
        bProcParValSet = KeepValue(aFrames[uiDepth]);
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

bool cSMLP::KeepValue(Frame& frame)
{
    const bool kept = AppendValue();
    if (kept)
        frame.bFilled = true;
    return kept;
}

// Appends the value just read as "value"; false when it has no bytes that make one.
bool cSMLP::AppendValue()
{
    if (uiTLF_Type == TLF_OCTET_STRING || uiTLF_Type == TLF_ABSENT) {
        builder.AppendDataPar(kLabel<label::value>, pucString, static_cast<int>(uiStringLen), 0);
        return true;
    }
    const std::uint32_t len = uiTLF_Count;
    if (len == 0)
        return false;
    switch (uiTLF_Type) {
    case TLF_BOOLEAN:
        builder.AppendBoolPar(kLabel<label::value>, (ullInteger & 0xFFU) != 0, 0);
        break;
    case TLF_INTEGER: {
        const std::int64_t value = SignedInteger(ullInteger, len);
        if (len <= 4)
            builder.AppendSIntPar(kLabel<label::value>, static_cast<int>(value), 0);
        else
            builder.AppendSInt64Par(kLabel<label::value>, value, 0);
        break;
    }
    default:
        if (len <= 4)
            builder.AppendUIntPar(kLabel<label::value>, static_cast<unsigned>(ullInteger), 0);
        else
            builder.AppendUInt64Par(kLabel<label::value>, ullInteger, 0);
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
