// What the record classes are made of: a field with its presence flag, the ways a field may differ
// from the plain case, and the set of fields that a class declares. A class of this wing is the
// list of its fields; reading, writing, copying and validity follow from that list.
//
// The members that hosts use are the getters and setters of the named fields (Codepage has
// GetCodepage, and so on). They never throw:
//   - a getter returns true and copies the field when it is present; it returns false, and leaves
//     its argument as it was, when the field is absent or no memory is left for the copy;
//   - a setter returns true; or false, with nothing changed, when no memory is left.
// An object belongs to one thread at a time; distinct objects are independent of each other.
#ifndef QUARN_RECORDS_FIELD_H
#define QUARN_RECORDS_FIELD_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/fields.h"
#include "quarn/foundation/labels.h"
#include "quarn/foundation/record_builder.h"
#include "quarn/foundation/trace.h"

#include <exception>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace quarn::detail
{

template <typename T>
inline constexpr bool kIsPlain = std::is_arithmetic_v<T> || std::is_same_v<T, std::string>;

// What an object is read from: a record, and how many lists stand around it.
struct Source : RecordReader<> {
    explicit Source(unsigned depth) : uiDepth(depth) {}
    Source(const vorn::cRecord& rec, unsigned depth) : RecordReader(rec), uiDepth(depth) {}

    unsigned uiDepth;
};

// The members of the record classes that the library keeps to itself. All of them may throw; the
// public ones are built from them and do not.
//   Read      fills a cleared object from the record around it, and
//   ReadFrom  from the parameter that stands in that record under the object's label, or null
//   Write     appends the object to a record, as a whole or not at all, or
//   WriteAs   under another label than its own
//   WriteInto fills the open record with what stands under the object's label
//   CopyFrom  makes the object what another one is
//   Assign    does what operator= does
struct Access {
    template <typename T>
    static void Read(T& object, Source& around)
    {
        object.ReadFrom(T::kIsAround ? nullptr : around.Find(T::kOwnLabel), around);
    }
    template <typename T>
    static void ReadFrom(T& object, const vorn::cRecordPar* own, Source& around)
    {
        object.ReadFrom(own, around);
    }
    template <typename T, class Target> // a record or a builder
    static bool Write(const T& object, Target& to)
    {
        if constexpr (T::kIsParameter)
            return object.WriteInto(to);
        else
            return WriteAs(object, to, T::kOwnLabel);
    }
    template <typename T>
    static bool WriteAs(const T& object, vorn::cRecord& target, const char* label)
    {
        RecordBuilder to;
        to.Open();
        if (!object.WriteInto(to))
            return false;
        target.AppendRecordPar(label, to.Get(to.Close()), 0);
        return true;
    }
    template <typename T>
    static bool WriteAs(const T& object, RecordBuilder& to, const Label& label)
    {
        to.Open();
        const bool written = object.WriteInto(to);
        if (written)
            to.AppendRecordPar(label, to.Close(), 0);
        else
            to.Drop();
        return written;
    }
    template <typename T>
    static bool WriteInto(const T& object, RecordBuilder& own)
    {
        return object.WriteInto(own);
    }
    template <typename T>
    static void Copy(T& to, const T& from)
    {
        if constexpr (kIsPlain<T>)
            to = from;
        else
            to.CopyFrom(from);
    }
    template <typename T>
    static void Assign(T& to, const T& from)
    {
        if constexpr (kIsPlain<T>)
            to = from;
        else
            to.Assign(from);
    }
    template <typename T>
    static void DropUnassigned(T& object) noexcept
    {
        object.DropUnassigned();
    }
    // The named fields of one object, taken over from another that has them too.
    template <class... F, class To, class From>
    static void CopyFields(To& to, const From& from)
    {
        (static_cast<F&>(to).CopyFrom(static_cast<const F&>(from)), ...);
    }
    template <class F, class Object>
    static const auto& Value(const Object& object)
    {
        return static_cast<const F&>(object).value;
    }
    template <class F, class Object>
    static void Put(Object& object, decltype(F::value)&& v)
    {
        static_cast<F&>(object).value = std::move(v);
        static_cast<F&>(object).bPresent = true;
    }
    template <class List>
    static auto& Entries(List& list)
    {
        return list.entries;
    }
};

// Runs a step that may throw; false, and a trace line, when it did.
template <typename Step>
bool Guarded(const char* who, Step step) noexcept
{
    try {
        step();
        return true;
    } catch (const std::exception& e) {
        Trace(LibQuarn, kError, "%s: %s", who, e.what());
    } catch (...) {
        Trace(LibQuarn, kError, "%s: failed", who);
    }
    return false;
}

// Assigns; false, and to as it was, when no memory is left.
template <typename T>
bool TryAssign(T& to, const T& from) noexcept
{
    if constexpr (std::is_arithmetic_v<T>) {
        to = from;
        return true;
    } else {
        return Guarded("copy", [&] {
            T copy;
            Access::Assign(copy, from);
            to = std::move(copy);
        });
    }
}

// The alternative of type T of a variant, for a class that is a choice.
template <typename T, class Variant>
bool GetAlternative(const Variant& alternatives, T& out) noexcept
{
    const T* v = std::get_if<T>(&alternatives);
    return v != nullptr && TryAssign(out, *v);
}

// Reading from the parameter par of a record, or null, and writing under a label, for every type
// that a field may have.
template <typename T>
bool ReadValue(const vorn::cRecordPar* par, Source& around, T& value);
template <typename T>
void WriteValue(RecordBuilder& to, const Label& label, const T& value);

inline bool IsRecord(const vorn::cRecordPar* par)
{
    return par != nullptr && IsOfKind(*par, KIND_RECORD);
}

template <typename T, const auto& Text>
class Field
{
protected:
    static constexpr bool kRequired = false;

    bool Get(T& out) const noexcept { return bPresent && TryAssign(out, value); }
    bool Set(const T& v) noexcept
    {
        if (!TryAssign(value, v))
            return false;
        bPresent = true;
        return true;
    }
    bool IsPresent() const noexcept { return bPresent; }
    void Clear() noexcept
    {
        value = T();
        bPresent = false;
    }
    static const vorn::cRecordPar* Find(Source& from) { return from.Find<Text>(); }
    void Read(Source& from) { ReadFrom(Find(from), from); }
    void ReadFrom(const vorn::cRecordPar* par, Source& around)
    {
        bPresent = ReadValue(par, around, value);
    }
    void Write(RecordBuilder& to) const
    {
        if (bPresent)
            WriteValue(to, kLabel<Text>, value);
    }
    void CopyFrom(const Field& other)
    {
        Access::Copy(value, other.value);
        bPresent = other.bPresent;
    }

    T value{};
    bool bPresent = false;

    friend struct Access;
};

// One row of a table of fields: the field, its getter, its type, its label.
#define QUARN_FIELD(Name, Getter, Type, Label)                                                     \
    struct Name : Field<Type, label::Label> {                                                      \
        bool Getter(Type& v) const noexcept { return Get(v); }                                     \
    };

// The same for a field with a setter beside its getter: SettableName is Name with it.
#define QUARN_SETTER(Name, Setter)                                                                 \
    struct Settable##Name : Name {                                                                 \
        bool Setter(const decltype(value)& v) noexcept { return Set(v); }                          \
    };

// A field without which its class is not valid.
template <class F>
struct Required : F {
protected:
    static constexpr bool kRequired = true;
};

// A field that, when it is missing, is present and empty.
template <class F>
struct OrEmpty : F {
protected:
    void Read(Source& from)
    {
        F::Read(from);
        F::bPresent = true;
    }
};

// A field that may also stand under a second label. It is written under the first.
template <class F, const auto& Second>
struct OrFrom : F {
protected:
    void Read(Source& from)
    {
        F::Read(from);
        if (!F::bPresent)
            F::ReadFrom(from.Find<Second>(), from);
    }
};

// A structure whose record may be missing without a word.
template <class F>
struct IfRecord : F {
protected:
    void Read(Source& from)
    {
        const vorn::cRecordPar* const own = F::Find(from);
        if (IsRecord(own))
            F::ReadFrom(own, from);
    }
};

// A structure that is present as soon as its record is, valid or not.
template <class F>
struct AsRecord : F {
protected:
    void Read(Source& from)
    {
        const vorn::cRecordPar* const own = F::Find(from);
        if (!IsRecord(own))
            return;
        F::ReadFrom(own, from);
        F::bPresent = true;
    }
};

// The fields of a class, in the order in which they are written.
template <class... F>
struct FieldSet : F... {
protected:
    bool IsComplete() const noexcept { return (... && (!F::kRequired || F::IsPresent())); }
    void Clear() noexcept { (F::Clear(), ...); }
    void Read(Source& from) { (F::Read(from), ...); }
    static constexpr std::size_t kCount = sizeof...(F);
    void Write(RecordBuilder& to) const { (F::Write(to), ...); }
    void CopyFrom(const FieldSet& other) { (F::CopyFrom(other), ...); }
    void DropUnassigned() noexcept {} // what operator= does not take over
};

} // namespace quarn::detail

#endif
