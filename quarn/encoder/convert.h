// Inside the converter layer: how a field of a record becomes an object, and the conversions as the
// encode functions use them. Everything here throws std::bad_alloc when memory runs out and leaks
// nothing.
#ifndef QUARN_ENCODER_CONVERT_H
#define QUARN_ENCODER_CONVERT_H

#include "quarn/encoder/structures.h"
#include "quarn/foundation/fields.h"
#include "quarn/foundation/trace.h"

#include <cstddef>
#include <memory>
#include <utility>

namespace quarn::detail::encoder
{

using Object = std::unique_ptr<Sml_Type>;

// A field: its label, what reads it, and the trace line for a record without it. A reader always
// gives an object, absent when the field is, unless the slot is to stay empty.
struct Field {
    using Reader = Object (*)(const vorn::cRecord& rec, const Field& field);

    const char* pcLabel;
    Reader pRead;
    const char* pcMissing = nullptr; // none: absent without a word
    vorn::eLEVEL eMissing = kError;
};

inline void TraceMissing(const Field& field)
{
    if (field.pcMissing != nullptr)
        Trace(LibSmle, field.eMissing, field.pcMissing);
}

// Objects of parameters that are of the right kind. A time counts members that it lacks as 0.
std::unique_ptr<Sml_OctetString> MakeOctets(const vorn::cRecordPar& par);
std::unique_ptr<Sml_Signature> MakeSignature(const vorn::cRecordPar& par);
std::unique_ptr<Sml_OctetString> MakeName(const vorn::cRecordPar& par);
std::unique_ptr<Sml_Time> MakeTime(const vorn::cRecordPar& par);
// A time of that type and value, with the offsets of the record time when it is a local timestamp.
std::unique_ptr<Sml_Time> TimeOf(const vorn::cRecord& time, unsigned type, unsigned value);

template <typename ScalarClass, auto kGet>
std::unique_ptr<ScalarClass> MakeScalar(const vorn::cRecordPar& par)
{
    return std::make_unique<ScalarClass>(
        static_cast<typename ScalarClass::Value>((par.*kGet)())); // low bits
}

template <eKIND kKind, auto kMake>
Object Read(const vorn::cRecord& rec, const Field& field)
{
    using Made = typename decltype(kMake(std::declval<const vorn::cRecordPar&>()))::element_type;
    const vorn::cRecordPar par = rec.GetFirstPar(field.pcLabel, 0, 0);
    if (IsOfKind(par, kKind))
        return kMake(par);
    TraceMissing(field);
    return std::make_unique<Made>();
}

constexpr Field::Reader kOctets = Read<KIND_DATA, MakeOctets>;
constexpr Field::Reader kSignature = Read<KIND_DATA, MakeSignature>;
constexpr Field::Reader kName = Read<KIND_UINT64, MakeName>;
constexpr Field::Reader kTime = Read<KIND_RECORD, MakeTime>;
constexpr Field::Reader kBool = Read<KIND_BOOL, MakeScalar<Sml_Bool, &vorn::cRecordPar::GetBool>>;
constexpr Field::Reader kInteger8 =
    Read<KIND_SINT, MakeScalar<Sml_Integer8, &vorn::cRecordPar::GetSInt>>;
constexpr Field::Reader kUnsigned8 =
    Read<KIND_UINT, MakeScalar<Sml_Unsigned8, &vorn::cRecordPar::GetUInt>>;
constexpr Field::Reader kUnsigned32 =
    Read<KIND_UINT, MakeScalar<Sml_Unsigned32, &vorn::cRecordPar::GetUInt>>;
constexpr Field::Reader kUnsigned64 =
    Read<KIND_UINT64, MakeScalar<Sml_Unsigned64, &vorn::cRecordPar::GetUInt64>>;

// A value of any kind that SML has; null for another kind, traced as unknown, and for a list type
// that is refused. With dump, the record of a list type is first traced at level 8.
Object MakeValue(const vorn::cRecordPar& par, const char* unknown, const char* dump = nullptr);

// Visits n parameters: the first of that label and then whatever follows.
template <typename Visit>
void Walk(const vorn::cRecord& list, const char* label, int n, Visit visit)
{
    vorn::cRecordPar par = list.GetFirstPar(label, 0, 0);
    for (int i = 0; i < n; ++i) {
        visit(par);
        list.SeekNextPar(par, nullptr, 0, 0);
    }
}

// A line with the text of a record, which is made only when the line is written.
void TraceRecord(vorn::eLEVEL level, const char* format, const vorn::cRecord& rec) noexcept;

inline bool RecordOf(const vorn::cRecordPar& par, vorn::cRecord& out)
{
    return IsOfKind(par, KIND_RECORD) && par.GetRecord(out);
}

std::unique_ptr<Sml_ListOf> MakeList(int n); // dynamic, of n empty slots
// The list owns the element, or it dies here when the list has no such slot.
void Place(Sml_ListOf& list, Object element, int slot);

int ConvertMsgHeader(const vorn::cRecord& rec, Sml_OctetString& transactionId,
                     Sml_Unsigned8& groupNo, Sml_Unsigned8& abortOnError);
int CountPathEntries(const vorn::cRecord& rec);
int ConvertTreePath(const vorn::cRecord& rec, Sml_TreePath& path);
int ConvertTree(const vorn::cRecord& rec, Sml_Tree& tree, unsigned level = 0);
int ConvertChildList(const vorn::cRecord& rec, Sml_ListOf& list, int n, unsigned level = 1);
int ConvertProcParValue(const vorn::cRecord& rec, Sml_ProcParValue& ppv);
int ConvertListType(const vorn::cRecord& rec, Sml_ListType& lt);
int ConvertPeriodEntry(const vorn::cRecord& rec, Sml_PeriodEntry& pe);
int ConvertListEntry(const vorn::cRecord& rec, Sml_ListEntry& le);
int ConvertObjectList(const vorn::cRecord& rec, Sml_ListOf& list, int n);

} // namespace quarn::detail::encoder

#endif
