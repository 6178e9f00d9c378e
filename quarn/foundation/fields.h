// Reading a field of a record, the same way everywhere in the library: a parameter counts only when
// it is found, not empty and of the expected kind; anything else is absent. No kind is converted
// into another.
#ifndef QUARN_FOUNDATION_FIELDS_H
#define QUARN_FOUNDATION_FIELDS_H

#include "quarn/foundation/framework.h"

namespace quarn::detail
{

// Kinds of parameters, as GetType(1) returns them.
enum eKIND : int {
    KIND_SINT = 2,
    KIND_UINT = 3,
    KIND_DATA = 5,
    KIND_RECORD = 6,
    KIND_SINT64 = 8,
    KIND_UINT64 = 9,
    KIND_BOOL = 10
};

inline bool IsOfKind(const vorn::cRecordPar& par, eKIND kind)
{
    return par.IsValid() && !par.IsEmpty() && par.GetType(1) == kind;
}

inline bool FindField(const vorn::cRecord& record, const char* label, eKIND kind,
                      vorn::cRecordPar& par)
{
    par = record.GetFirstPar(label, 0, 0);
    return IsOfKind(par, kind);
}

// The nested record under label; false, and out unchanged, when there is none.
inline bool FindRecord(const vorn::cRecord& record, const char* label, vorn::cRecord& out)
{
    vorn::cRecordPar par;
    return FindField(record, label, KIND_RECORD, par) && par.GetRecord(out);
}

} // namespace quarn::detail

#endif
