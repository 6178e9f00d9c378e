// Inside the converter layer: how a field of a record becomes an object, and the conversions as the
// encode functions use them. Everything here throws std::bad_alloc when memory runs out and leaks
// nothing.
#ifndef QUARN_ENCODER_CONVERT_H
#define QUARN_ENCODER_CONVERT_H

#include "quarn/encoder/structures.h"
#include "quarn/foundation/fields.h"
#include "quarn/foundation/tl.h"
#include "quarn/foundation/trace.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>

namespace quarn::detail::encoder
{

using Object = std::unique_ptr<Sml_Type>;

struct Field;

// What becomes of a field, in two ways that yield the same bytes. The long way makes an object,
// absent when the field is, unless the slot is to stay empty; it goes along with everything. The
// short way writes the field at once and makes no object that outlives it; it gives up, with false,
// where the long way would trace a line or leave something out, and then nothing of what it has
// written is used.
struct Conversion {
    Object (*pRead)(const vorn::cRecord& rec, const Field& field) = nullptr;
    bool (*pWrite)(const vorn::cRecordPar& par, cBuffer& buf) = nullptr; // null: gives up
    int iKind = 0;          // of par; 0: any that is there
    bool bRequired = false; // the short way gives up without par
};

// A field: its label, what reads it, and the trace line for a record without it.
struct Field {
    const char* pcLabel = nullptr;
    Conversion how{};
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
Sml_Time MakeTime(const vorn::cRecordPar& par);
// A time of that type and value, with the offsets of the record time when it is a local timestamp.
Sml_Time TimeOf(const vorn::cRecord& time, unsigned type, unsigned value);

inline Sml_OctetString MakeName(const vorn::cRecordPar& par)
{
    return Sml_OctetString(static_cast<long long>(par.GetUInt64()));
}

template <typename ScalarClass, auto kGet>
ScalarClass MakeScalar(const vorn::cRecordPar& par)
{
    return ScalarClass(static_cast<typename ScalarClass::Value>((par.*kGet)())); // low bits
}

// The same object on the heap.
template <typename Made>
std::unique_ptr<Made> OnHeap(Made (*make)(const vorn::cRecordPar&), const vorn::cRecordPar& par)
{
    return std::unique_ptr<Made>(new Made(make(par)));
}
template <typename Made>
std::unique_ptr<Made> OnHeap(std::unique_ptr<Made> (*make)(const vorn::cRecordPar&),
                             const vorn::cRecordPar& par)
{
    return make(par);
}

template <eKIND kKind, auto kMake>
Object Read(const vorn::cRecord& rec, const Field& field)
{
    using Made = typename decltype(OnHeap(kMake, std::declval<vorn::cRecordPar>()))::element_type;
    const vorn::cRecordPar par = rec.GetFirstPar(field.pcLabel, 0, 0);
    if (IsOfKind(par, kKind))
        return OnHeap(kMake, par);
    TraceMissing(field);
    return std::make_unique<Made>();
}

template <auto kMake>
bool Write(const vorn::cRecordPar& par, cBuffer& buf)
{
    kMake(par).ToBin(&buf);
    return true;
}
bool WriteOctets(const vorn::cRecordPar& par, cBuffer& buf);
bool WriteName(const vorn::cRecordPar& par, cBuffer& buf);

template <eKIND kKind, auto kMake>
constexpr Conversion kPlain = {Read<kKind, kMake>, Write<kMake>, kKind};
template <eKIND kKind, typename ScalarClass, auto kGet>
constexpr Conversion kScalar = kPlain<kKind, MakeScalar<ScalarClass, kGet>>;

using Par = vorn::cRecordPar;
constexpr Conversion kOctets = {Read<KIND_DATA, MakeOctets>, WriteOctets, KIND_DATA};
constexpr Conversion kSignature = {Read<KIND_DATA, MakeSignature>, WriteOctets, KIND_DATA};
constexpr Conversion kName = {Read<KIND_UINT64, MakeName>, WriteName, KIND_UINT64};
constexpr Conversion kTime = kPlain<KIND_RECORD, MakeTime>;
constexpr Conversion kBool = kScalar<KIND_BOOL, Sml_Bool, &Par::GetBool>;
constexpr Conversion kInteger8 = kScalar<KIND_SINT, Sml_Integer8, &Par::GetSInt>;
constexpr Conversion kUnsigned8 = kScalar<KIND_UINT, Sml_Unsigned8, &Par::GetUInt>;
constexpr Conversion kUnsigned32 = kScalar<KIND_UINT, Sml_Unsigned32, &Par::GetUInt>;
constexpr Conversion kUnsigned64 = kScalar<KIND_UINT64, Sml_Unsigned64, &Par::GetUInt64>;

// How an element of the schema becomes an object, but for structures that only bodies have.
constexpr Conversion ConversionOf(const schema::Element& element)
{
    switch (element.eType) {
    case schema::eTYPE::OCTETS:
        return element.IsName()                                  ? kName
               : element.eMeaning == schema::eMEANING::SIGNATURE ? kSignature
                                                                 : kOctets;
    case schema::eTYPE::BOOLEAN:
        return kBool;
    case schema::eTYPE::INTEGER:
        return kInteger8;
    case schema::eTYPE::UNSIGNED:
        return element.uiMost == 1 ? kUnsigned8 : element.uiMost <= 4 ? kUnsigned32 : kUnsigned64;
    default:
        return element.pStructure == &schema::kTime ? kTime : Conversion{};
    }
}

// What the encoder adds to the element of that label.
struct Missing {
    std::string_view label;
    const char* pcText = nullptr; // of the trace line for a record without it
    vorn::eLEVEL eLevel = kError;
    const char* pcReadAs = nullptr; // the label under which it is read, where it is another
};

// The fields of a structure; of finds the conversions of its elements. Neither an addition without
// an element nor an element without a conversion compiles.
template <std::size_t N, typename Of>
constexpr std::array<Field, N> FieldsOf(const schema::Element (&elements)[N], const Missing* added,
                                        std::size_t count, Of of)
{
    std::array<Field, N> fields{};
    std::size_t used = 0;
    for (std::size_t i = 0; i < N; ++i) {
        fields[i] = {elements[i].label.data(), of(elements[i])};
        if (fields[i].how.pRead == nullptr)
            throw "an element without a conversion";
        for (const Missing* row = added; row != added + count; ++row) {
            if (row->label != elements[i].label)
                continue;
            fields[i].pcMissing = row->pcText;
            fields[i].eMissing = row->eLevel;
            if (row->pcReadAs != nullptr)
                fields[i].pcLabel = row->pcReadAs;
            ++used;
        }
    }
    if (used != count)
        throw "an addition to no element, or to several";
    return fields;
}

// The fields of a record the short way, in the order of the table.
struct FieldTable {
    template <std::size_t N>
    constexpr FieldTable(const std::array<Field, N>& fields) : pFirst(fields.data()), uiCount(N)
    {
    }
    const Field* begin() const noexcept { return pFirst; }
    const Field* end() const noexcept { return pFirst + uiCount; }

    const Field* pFirst;
    unsigned uiCount;
};

// Room for any field but a byte string: nine bytes of an integer, fifteen of a time.
constexpr long kRoomForField = 16;

inline bool WriteField(const vorn::cRecordPar* par, const Field& field, cBuffer& buf)
{
    if (buf.Free() < kRoomForField)
        return false;
    const bool isThere = par != nullptr && !par->IsEmpty() &&
                         (field.how.iKind == 0 || par->GetType(1) == field.how.iKind);
    if (isThere)
        return field.how.pWrite != nullptr && field.how.pWrite(*par, buf);
    if (field.how.bRequired || (field.pcMissing != nullptr && Traces(LibSmle, field.eMissing)))
        return false;
    buf.PutQuick(static_cast<char>(kOptionAbsent));
    return true;
}

bool WriteFields(const vorn::cRecord& rec, const FieldTable& fields, cBuffer& buf);

// The same, compiled for one table: for what a message has many of.
template <const auto& kFields, std::size_t... I>
bool WriteEach(const vorn::cRecord& rec, cBuffer& buf, std::index_sequence<I...>)
{
    RecordReader<> reader(rec);
    return (WriteField(reader.Find(kFields[I].pcLabel), kFields[I], buf) && ...);
}
template <const auto& kFields>
bool WriteEach(const vorn::cRecord& rec, cBuffer& buf)
{
    return WriteEach<kFields>(rec, buf, std::make_index_sequence<std::size(kFields)>());
}

// A value of any kind that SML has; null for another kind, traced as unknown, and for a list type
// that is refused. With dump, the record of a list type is first traced at level 8.
Object MakeValue(const vorn::cRecordPar& par, const char* unknown, const char* dump = nullptr);
bool WriteValue(const vorn::cRecordPar& par, cBuffer& buf); // gives up for a list type

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

// What becomes of an entry without a usable value: its slot stays empty, or the entry is whole,
// with an absent value.
enum class eENTRIES { AS_FOUND, WHOLE };

extern const std::array<Field, 3> kMsgHeader;
int ConvertMsgHeader(const vorn::cRecord& rec, Sml_OctetString& transactionId,
                     Sml_Unsigned8& groupNo, Sml_Unsigned8& abortOnError);
int CountPathEntries(const vorn::cRecord& rec);
int ConvertTreePath(const vorn::cRecord& rec, Sml_TreePath& path);
int ConvertTree(const vorn::cRecord& rec, Sml_Tree& tree, eENTRIES entries, unsigned level = 0);
int ConvertChildList(const vorn::cRecord& rec, Sml_ListOf& list, int n, eENTRIES entries,
                     unsigned level = 1);
int ConvertProcParValue(const vorn::cRecord& rec, Sml_ProcParValue& ppv, eENTRIES entries);
int ConvertListType(const vorn::cRecord& rec, Sml_ListType& lt);
int ConvertPeriodEntry(const vorn::cRecord& rec, Sml_PeriodEntry& pe, eENTRIES entries);
bool WritePeriodEntry(const vorn::cRecord& rec, cBuffer& buf);
int ConvertListEntry(const vorn::cRecord& rec, Sml_ListEntry& le, eENTRIES entries);
bool WriteListEntry(const vorn::cRecord& rec, cBuffer& buf);
int ConvertObjectList(const vorn::cRecord& rec, Sml_ListOf& list, int n);

} // namespace quarn::detail::encoder

#endif
