// How the record classes read and write: the bodies of the templates of field.h, structure.h and
// list.h. Each source file of this wing includes it and instantiates the classes of its header; no
// host needs it.
#ifndef QUARN_RECORDS_ENGINE_H
#define QUARN_RECORDS_ENGINE_H

#include "quarn/foundation/fields.h"
#include "quarn/foundation/limits.h"
#include "quarn/records/list.h"
#include "quarn/records/structure.h"
#include "quarn/records/values.h"

namespace quarn::detail
{

struct TooDeep : std::exception {
    const char* what() const noexcept override { return "trees nested too deep"; }
};

// The parameter kinds: for each plain type its code, how it is got from a parameter and how it is
// appended. A signed value is cut off to fit a short.
template <typename T>
inline constexpr eKIND kKindOf = std::is_same_v<T, bool>                 ? KIND_BOOL
                                 : std::is_same_v<T, std::string>        ? KIND_DATA
                                 : std::is_same_v<T, unsigned>           ? KIND_UINT
                                 : std::is_same_v<T, unsigned long long> ? KIND_UINT64
                                 : std::is_same_v<T, long long>          ? KIND_SINT64
                                                                         : KIND_SINT;

template <typename T>
T PlainOf(const vorn::cRecordPar& par)
{
    if constexpr (kKindOf<T> == KIND_BOOL)
        return par.GetBool();
    else if constexpr (kKindOf<T> == KIND_UINT)
        return par.GetUInt();
    else if constexpr (kKindOf<T> == KIND_UINT64)
        return par.GetUInt64();
    else if constexpr (kKindOf<T> == KIND_SINT64)
        return par.GetSInt64();
    else if constexpr (kKindOf<T> == KIND_SINT)
        return static_cast<T>(par.GetSInt());
    else if (par.GetSize() < 1)
        return T();
    else
        return T(static_cast<const char*>(par.GetData()), static_cast<std::size_t>(par.GetSize()));
}

template <class Target, typename T> // a record or a builder
void AppendPlain(Target& target, const Label& label, const T& v)
{
    if constexpr (kKindOf<T> == KIND_BOOL)
        target.AppendBoolPar(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_UINT)
        target.AppendUIntPar(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_UINT64)
        target.AppendUInt64Par(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_SINT64)
        target.AppendSInt64Par(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_SINT)
        target.AppendSIntPar(label, v, 0);
    else
        target.AppendDataPar(label, v.data(), static_cast<int>(v.size()), 0);
}

template <typename T>
bool ReadValue(const vorn::cRecordPar* par, Source& around, T& value)
{
    if constexpr (kIsPlain<T>) {
        if (par == nullptr || !IsOfKind(*par, kKindOf<T>))
            return false;
        value = PlainOf<T>(*par);
        return true;
    } else {
        Access::ReadFrom(value, par, around);
        return value.IsValid();
    }
}

template <typename T>
void WriteValue(RecordBuilder& to, const Label& label, const T& value)
{
    if constexpr (kIsPlain<T>)
        AppendPlain(to, label, value);
    else if constexpr (std::is_same_v<T, cSmlTime>)
        Access::WriteAs(value, to, label);
    else
        Access::Write(value, to);
}

template <class Core>
Object<Core>::Object(const vorn::cRecord& record) noexcept
{
    if (!Guarded(Core::kClass, [&] {
            Source around(record, 0);
            Access::Read(*this, around);
        }))
        Core::Clear();
}

template <class Core>
Object<Core>::Object(const Object& other) noexcept : Core()
{
    if (!Guarded(Core::kClass, [&] { Core::CopyFrom(other); }))
        Core::Clear();
}

template <class Core>
Object<Core>& Object<Core>::operator=(const Object& other) noexcept
{
    if (this != &other && !Guarded(Core::kClass, [&] { Assign(other); }))
        Core::Clear();
    return *this;
}

template <class Core>
Object<Core>& Object<Core>::operator=(Object&& other) noexcept
{
    if (Core::kCopiedWhenValid && !other.IsValid())
        Core::Clear();
    else if (this != &other)
        Core::operator=(std::move(other));
    Core::DropUnassigned();
    return *this;
}

template <class Core>
void Object<Core>::Assign(const Object& other)
{
    if (Core::kCopiedWhenValid && !other.IsValid())
        Core::Clear();
    else
        Core::CopyFrom(other);
    Core::DropUnassigned();
}

template <class Core>
bool Object<Core>::ToRecord(vorn::cRecord& target) const noexcept
{
    bool written = false;
    Guarded(Core::kClass, [&] { written = Access::Write(*this, target); });
    return written;
}

template <class Fields>
void Structure<Fields>::ReadFrom(const vorn::cRecordPar* own, Source& around)
{
    constexpr const Shape& shape = Fields::kShape;
    Source inside(around.uiDepth);
    if (inside.Open(own)) {
        Fields::Read(inside);
    } else if (shape.where != eFIELDS::ENCLOSED) {
        Fields::Read(around);
    } else if (shape.missingLevel != kUntraced) {
        Trace(LibQuarn, shape.missingLevel, "%s::CTOR: record invalid/empty!", shape.pcClass);
    }
}

template <class Fields>
bool Structure<Fields>::WriteInto(RecordBuilder& own) const
{
    if (Fields::kShape.bWrittenWhenValid && !IsValid()) {
        Trace(LibQuarn, kError, "%s::ToRecord: class invalid", kClass);
        return false;
    }
    own.Expect(Fields::kCount);
    Fields::Write(own);
    return true;
}

template <class Traits>
void ListCore<Traits>::CopyFrom(const ListCore& other)
{
    if constexpr (kIsPlain<Element>) {
        entries = other.entries;
    } else {
        entries.clear();
        entries.resize(other.entries.size());
        for (std::size_t i = 0; i < entries.size(); ++i)
            Access::Copy(entries[i], other.entries[i]);
    }
}

template <class Traits>
void ListCore<Traits>::ReadFrom(const vorn::cRecordPar* own, Source& around)
{
    constexpr const ListShape& shape = Traits::kShape;
    entries.clear();
    RecordReader<> list;
    if (!list.Open(own)) {
        if (shape.missingLevel != kUntraced)
            Trace(LibQuarn, shape.missingLevel, "%s::CTOR: record invalid/empty!", shape.pcClass);
        return;
    }
    int left = list.Count(shape.element);
    if (left < 1) {
        Trace(LibQuarn, kError, "%s: Record %s is empty", shape.pcClass, shape.pcEmptyName);
        return;
    }
    const unsigned depth = around.uiDepth + 1;
    if (depth >= SML_MAX_TREE_DEPTH)
        throw TooDeep();
    entries.reserve(static_cast<std::size_t>(left));
    const char* const label = shape.element;
    const char* const next = shape.bStepsByLabel ? label : nullptr;
    list.VisitElements(label, next, [&](const vorn::cRecordPar& par) {
        if (ReadElement(par, depth))
            --left;
        else
            Trace(LibQuarn, kError, "%s: %s", shape.pcClass, shape.pcElementFault);
        return left > 0;
    });
}

template <class Traits>
bool ListCore<Traits>::ReadElement(const vorn::cRecordPar& par, unsigned depth)
{
    if constexpr (kIsPlain<Element>) {
        if (!IsOfKind(par, kKindOf<Element>))
            return false;
        entries.push_back(PlainOf<Element>(par));
    } else {
        Source inside(depth);
        if (!inside.Open(&par))
            return false;
        Element& element = entries.emplace_back();
        Access::Read(element, inside);
        if (!element.IsValid())
            element.Clear();
    }
    return true;
}

template <class Traits>
bool ListCore<Traits>::WriteInto(RecordBuilder& list) const
{
    constexpr const ListShape& shape = Traits::kShape;
    if (!IsValid()) {
        Trace(LibQuarn, shape.invalidLevel, "%s::ToRecord: %s", shape.pcClass, shape.pcInvalid);
        return false;
    }
    list.Expect(entries.size());
    for (const Element& element : entries) {
        if constexpr (kIsPlain<Element>) {
            AppendPlain(list, shape.element, element);
        } else if constexpr (shape.bWrapped) {
            list.Open();
            Access::Write(element, list);
            list.AppendRecordPar(shape.element, list.Close(), 0);
        } else {
            Access::Write(element, list);
        }
    }
    return true;
}

} // namespace quarn::detail

#endif
