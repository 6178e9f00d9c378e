// The plain values of records: the kind of parameter that each C++ type stands in, how it is got
// from such a parameter and how it is appended.
#ifndef QUARN_FOUNDATION_PLAIN_H
#define QUARN_FOUNDATION_PLAIN_H

#include "quarn/foundation/fields.h"
#include "quarn/foundation/record_builder.h"

#include <string>
#include <type_traits>

namespace quarn::detail
{

inline constexpr int kShort = 1; // a SINT cut off to fit

// The kind of parameter that holds a value; a record holds any other type.
template <typename T>
inline constexpr int kKindOf = std::is_same_v<T, bool>                 ? KIND_BOOL
                               : std::is_same_v<T, std::string>        ? KIND_DATA
                               : std::is_same_v<T, unsigned>           ? KIND_UINT
                               : std::is_same_v<T, unsigned long long> ? KIND_UINT64
                               : std::is_same_v<T, int>                ? KIND_SINT
                               : std::is_same_v<T, short>              ? kShort
                               : std::is_same_v<T, long long>          ? KIND_SINT64
                                                                       : KIND_RECORD;

// How each plain value is got from a parameter of its kind, and appended.
inline void Get(const vorn::cRecordPar& par, bool& v) { v = par.GetBool(); }
inline void Get(const vorn::cRecordPar& par, int& v) { v = par.GetSInt(); }
inline void Get(const vorn::cRecordPar& par, short& v) { v = static_cast<short>(par.GetSInt()); }
inline void Get(const vorn::cRecordPar& par, unsigned& v) { v = par.GetUInt(); }
inline void Get(const vorn::cRecordPar& par, long long& v) { v = par.GetSInt64(); }
inline void Get(const vorn::cRecordPar& par, unsigned long long& v) { v = par.GetUInt64(); }
inline void Get(const vorn::cRecordPar& par, std::string& v)
{
    const auto size = static_cast<std::size_t>(par.GetSize() > 0 ? par.GetSize() : 0);
    v = std::string(size > 0 ? static_cast<const char*>(par.GetData()) : "", size);
}
template <typename T>
T Got(const vorn::cRecordPar& par)
{
    T v{};
    Get(par, v);
    return v;
}

template <class Target, typename T> // a record or a builder
void Append(Target& to, const Label& label, const T& v)
{
    if constexpr (kKindOf<T> == KIND_BOOL)
        to.AppendBoolPar(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_UINT)
        to.AppendUIntPar(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_UINT64)
        to.AppendUInt64Par(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_SINT64)
        to.AppendSInt64Par(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_DATA)
        to.AppendDataPar(label, v.data(), static_cast<int>(v.size()), 0);
    else
        to.AppendSIntPar(label, v, 0);
}

} // namespace quarn::detail

#endif
