// The leaf structures: time, list type and value.
//
// An object is made from the record that holds it; when that record is missing or incomplete, the
// object is not valid. ToRecord appends a valid object only. Getters and failures: see object.h.
// Seconds are unsigned 32-bit, offsets signed 16-bit.
#ifndef QUARN_RECORDS_VALUES_H
#define QUARN_RECORDS_VALUES_H

#include "quarn/records/object.h"

#include <variant>

namespace quarn::detail
{

namespace field
{
QUARN_FIELD(TimeType, GetType, unsigned int, type)
QUARN_FIELD(TimeValue, GetValue, unsigned int, value)
using LocOffset = Field<short, label::locOffset>;
using SeaOffset = Field<short, label::seaOffset>;
} // namespace field

class TimeFields : public FieldSet<Required<field::TimeType>, Required<field::TimeValue>,
                                   field::LocOffset, field::SeaOffset>
{
public:
    bool GetTime(unsigned int& type, unsigned int& value) const noexcept
    {
        return TimeValue::IsPresent() && GetType(type) && GetValue(value);
    }
    bool GetTime(unsigned int& type, unsigned int& value, short& locOffset,
                 short& seaOffset) const noexcept
    {
        return HasOffsets() && GetTime(type, value) && GetOffsets(locOffset, seaOffset);
    }
    bool GetOffsets(short& locOffset, short& seaOffset) const noexcept
    {
        return HasOffsets() && field::LocOffset::Get(locOffset) && field::SeaOffset::Get(seaOffset);
    }

protected:
    bool HasOffsets() const noexcept
    {
        return field::LocOffset::IsPresent() && field::SeaOffset::IsPresent();
    }

    friend class TimeClass;
};

} // namespace quarn::detail

// A time. Types: 1 = seconds index, 2 = timestamp, 3 = local timestamp with two offsets. Valid with
// type and value and a type of at most 2, or with type 3 and both offsets as well. operator= takes
// over a valid time, without the offsets that its type does not have; any other one clears this.
class QUARN_API cSmlTime
    : public quarn::detail::Object<quarn::detail::CLASS_TIME, quarn::detail::TimeFields>
{
public:
    cSmlTime() noexcept = default;
    // The time that stands as a record under label in record.
    cSmlTime(const vorn::cRecord& record, const char* label) noexcept
    {
        if (label != nullptr)
            quarn::detail::Engine::Read(kNumber, This(), record, label);
    }

    // False, and no time, unless type is 1 or 2; with offsets, unless type is 3.
    bool SetTime(unsigned int type, unsigned int value) noexcept
    {
        Clear();
        return (type == 1 || type == 2) && TimeType::Set(type) && TimeValue::Set(value);
    }
    bool SetTime(unsigned int type, unsigned int value, short locOffset, short seaOffset) noexcept
    {
        Clear();
        namespace field = quarn::detail::field;
        return type == 3 && TimeType::Set(type) && TimeValue::Set(value) &&
               field::LocOffset::Set(locOffset) && field::SeaOffset::Set(seaOffset);
    }

    // Appends the time as a record under label. The offsets are written for type 3 only.
    bool ToRecord(vorn::cRecord& target, const char* label) const noexcept
    {
        const char* const name = label != nullptr ? label : "";
        return quarn::detail::Engine::Write(kNumber, This(), target, name);
    }
};

namespace quarn::detail
{

class ListTypeFields
    : public FieldSet<Required<field::TimeType>, Required<Field<cSmlTime, label::SmlTime>>>
{
public:
    bool Get(cSmlTime& time) const noexcept { return Time::Get(time); }
    // False, and nothing changed, unless type is 1 and time is valid.
    bool Set(unsigned int type, const cSmlTime& time) noexcept
    {
        return type == 1 && time.IsValid() && TimeType::Set(type) && Time::Set(time);
    }

private:
    using Time = Field<cSmlTime, label::SmlTime>;

    friend class ListTypeClass;
};

} // namespace quarn::detail

// The list type of a value: 1 = time is the only one. Another type is read, and written back, but
// cannot be set, and operator= does not take its time over.
QUARN_CLASS(cSmlListType, Object<CLASS_LIST_TYPE, ListTypeFields>)

namespace quarn::detail
{

// The alternative of type T of a choice.
template <typename T, class Variant>
bool GetAlternative(const Variant& choice, T& out) noexcept
{
    const T* v = std::get_if<T>(&choice);
    return v != nullptr && TryAssign(out, *v);
}

class ValueCore
{
public:
    // The alternative, also of a value that is not valid: 0 none, 1 boolean, 2 octet string,
    // 3 unsigned 32-bit, 4 unsigned 64-bit, 5 signed 32-bit, 6 signed 64-bit, 7 list type. Returns
    // true.
    bool GetType(unsigned int& kind) const noexcept
    {
        kind = static_cast<unsigned>(content.index());
        return true;
    }
    // Each succeeds for its own alternative only: none is converted into another.
    bool GetBool(bool& v) const noexcept { return Get(v); }
    bool GetString(std::string& v) const noexcept { return Get(v); }
    bool GetUInt(unsigned int& v) const noexcept { return Get(v); }
    bool GetUInt64(unsigned long long& v) const noexcept { return Get(v); }
    bool GetSInt(int& v) const noexcept { return Get(v); }
    bool GetSInt64(long long& v) const noexcept { return Get(v); }
    bool GetListType(cSmlListType& v) const noexcept { return Get(v); }

protected:
    template <typename T>
    bool Get(T& out) const noexcept
    {
        return bValid && GetAlternative(content, out);
    }

    // In the order of the kinds: the index is the kind.
    std::variant<std::monostate, bool, std::string, unsigned int, unsigned long long, int,
                 long long, cSmlListType>
        content;
    bool bValid = false;

    friend class ValueClass;
    template <class Core>
    friend class ChoiceClass;
};

} // namespace quarn::detail

// A value: one of seven alternatives, read from and written to the parameter "value", whose kind
// says which. operator= takes over a valid value; any other one clears the target. A list type of
// another type than 1 loses its time then: ToRecord writes it as an empty record and traces that.
QUARN_CLASS(cSmlValue, Object<CLASS_VALUE, ValueCore>)

#endif
