// The leaf structures: time, list type and value.
//
// An object is made from the record that holds it; when that record is missing or incomplete, the
// object is not valid. ToRecord appends a valid object only. Getters and failures: see object.h.
// Seconds are unsigned 32-bit, offsets signed 16-bit.
#ifndef QUARN_RECORDS_VALUES_H
#define QUARN_RECORDS_VALUES_H

#include "quarn/records/object.h"

#include <iterator>
#include <variant>

namespace quarn::detail
{

// Choices as they stand in a record: the tag, and beside it what it selects.
inline constexpr schema::Element aTimeFields[] = {schema::Tag(), schema::aLocalTime[0],
                                                  schema::aLocalTime[1], schema::aLocalTime[2]};
inline constexpr schema::Element aListTypeFields[] = {schema::Tag(), schema::aListType[0]};
static_assert(std::size(schema::aTime) == 3 && std::size(schema::aLocalTime) == 3 &&
              std::size(schema::aListType) == 1);
inline constexpr schema::Structure kTimeFields = schema::Sequence(aTimeFields);
inline constexpr schema::Structure kListTypeFields = schema::Sequence(aListTypeFields);

using TimeFields = Fields<kTimeFields, Required<label::type, label::value>>;
using ListTypeFields = Fields<kListTypeFields, AllRequired>;
using TimeObject = Object<CLASS_TIME, TimeFields>;
using ListTypeObject = Object<CLASS_LIST_TYPE, ListTypeFields>;

} // namespace quarn::detail

// A time. Types: 1 = seconds index, 2 = timestamp, 3 = local timestamp with two offsets. Valid with
// type and value and a type of at most 2, or with type 3 and both offsets as well. operator= takes
// over a valid time, without the offsets that its type does not have; any other one clears this.
class QUARN_API cSmlTime : public quarn::detail::TimeObject
{
public:
    cSmlTime() noexcept = default;
    // The time that stands as a record under label in record.
    cSmlTime(const vorn::cRecord& record, const char* label) noexcept
    {
        if (label != nullptr)
            quarn::detail::Engine::Read(kNumber, This(), record, label);
    }

    bool GetType(unsigned int& v) const noexcept { return Get<quarn::label::type>(v); }
    bool GetValue(unsigned int& v) const noexcept { return Get<quarn::label::value>(v); }
    bool GetTime(unsigned int& type, unsigned int& value) const noexcept
    {
        return Has<quarn::label::value>() && GetType(type) && GetValue(value);
    }
    bool GetTime(unsigned int& type, unsigned int& value, short& locOffset,
                 short& seaOffset) const noexcept
    {
        return HasOffsets() && GetTime(type, value) && GetOffsets(locOffset, seaOffset);
    }
    bool GetOffsets(short& locOffset, short& seaOffset) const noexcept
    {
        return HasOffsets() && Get<quarn::label::locOffset>(locOffset) &&
               Get<quarn::label::seaOffset>(seaOffset);
    }

    // False, and no time, unless type is 1 or 2; with offsets, unless type is 3.
    bool SetTime(unsigned int type, unsigned int value) noexcept
    {
        Clear();
        return (type == 1 || type == 2) && Set<quarn::label::type>(type) &&
               Set<quarn::label::value>(value);
    }
    bool SetTime(unsigned int type, unsigned int value, short locOffset, short seaOffset) noexcept
    {
        Clear();
        return type == 3 && Set<quarn::label::type>(type) && Set<quarn::label::value>(value) &&
               Set<quarn::label::locOffset>(locOffset) && Set<quarn::label::seaOffset>(seaOffset);
    }

    // Appends the time as a record under label. The offsets are written for type 3 only.
    bool ToRecord(vorn::cRecord& target, const char* label) const noexcept
    {
        const char* const name = label != nullptr ? label : "";
        return quarn::detail::Engine::Write(kNumber, This(), target, name);
    }

private:
    bool HasOffsets() const noexcept
    {
        return Has<quarn::label::locOffset>() && Has<quarn::label::seaOffset>();
    }
};

// The list type of a value: 1 = time is the only one. Another type is read, and written back, but
// cannot be set, and operator= does not take its time over.
class QUARN_API cSmlListType : public quarn::detail::ListTypeObject
{
public:
    using Object::Object;

    bool GetType(unsigned int& v) const noexcept { return Object::Get<quarn::label::type>(v); }
    bool Get(cSmlTime& time) const noexcept { return Object::Get<quarn::label::SmlTime>(time); }
    // False, and nothing changed, unless type is 1 and time is valid.
    bool Set(unsigned int type, const cSmlTime& time) noexcept
    {
        return type == 1 && time.IsValid() && Object::Set<quarn::label::type>(type) &&
               Object::Set<quarn::label::SmlTime>(time);
    }
};

namespace quarn::detail
{

// A choice that a class holds: one alternative of a variant, by its type.
template <typename... T>
class ChoiceCore
{
protected:
    template <typename Alternative>
    bool Get(Alternative& out) const noexcept
    {
        const auto* v = std::get_if<Alternative>(&content);
        return v != nullptr && TryAssign(out, *v);
    }

    std::variant<std::monostate, T...> content;

    friend class ProcParValueClass;
    template <class Core>
    friend class ChoiceClass;
};

// In the order of the kinds that GetType tells: the index is the kind.
class ValueCore : protected ChoiceCore<bool, std::string, unsigned int, unsigned long long, int,
                                       long long, cSmlListType>
{
protected:
    template <typename T>
    bool Get(T& out) const noexcept
    {
        return bValid && ChoiceCore::Get(out);
    }

    bool bValid = false;

    friend class ValueClass;
    template <class Core>
    friend class ChoiceClass;
};
using ValueObject = Object<CLASS_VALUE, ValueCore>;

} // namespace quarn::detail

// A value: one of seven alternatives, read from and written to the parameter "value", whose kind
// says which. operator= takes over a valid value; any other one clears the target. A list type of
// another type than 1 loses its time then: ToRecord writes it as an empty record and traces that.
class QUARN_API cSmlValue : public quarn::detail::ValueObject
{
public:
    using Object::Object;

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
};

#endif
