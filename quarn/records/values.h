// The leaf structures: time, list type and value.
//
// An object is made from the record that holds it; when that record is missing or incomplete, the
// object is not valid. Getters return true only for what is present, and leave their arguments
// alone otherwise. ToRecord appends a valid object to a record and returns true; it returns false,
// with the record unchanged and a trace at level 2, when the object is not valid or no memory is
// left. Nothing here throws. Seconds are unsigned 32-bit, offsets signed 16-bit.
#ifndef QUARN_RECORDS_VALUES_H
#define QUARN_RECORDS_VALUES_H

#include "quarn/records/structure.h"

// A time. Types: 1 = seconds index, 2 = timestamp, 3 = local timestamp with two offsets.
class QUARN_API cSmlTime : private quarn::detail::FieldSet<
                               quarn::detail::Field<unsigned int, quarn::detail::label::type>,
                               quarn::detail::Field<unsigned int, quarn::detail::label::value>,
                               quarn::detail::Field<short, quarn::detail::label::locOffset>,
                               quarn::detail::Field<short, quarn::detail::label::seaOffset>>
{
public:
    cSmlTime() noexcept = default;
    // The time that stands as a record under label in record.
    cSmlTime(const vorn::cRecord& record, const char* label) noexcept;
    cSmlTime(const cSmlTime&) noexcept = default;
    // Takes over a valid time, without the offsets that its type does not have; any other time
    // clears this one.
    cSmlTime& operator=(const cSmlTime& other) noexcept;
    ~cSmlTime() = default;

    void Clear() noexcept { FieldSet::Clear(); }
    // Type and value present and type at most 2, or type 3 and both offsets present as well.
    bool IsValid() const noexcept;

    // False, and no time, unless type is 1 or 2; with offsets, unless type is 3.
    bool SetTime(unsigned int type, unsigned int value) noexcept;
    bool SetTime(unsigned int type, unsigned int value, short locOffset, short seaOffset) noexcept;

    bool GetTime(unsigned int& type, unsigned int& value) const noexcept;
    bool GetTime(unsigned int& type, unsigned int& value, short& locOffset,
                 short& seaOffset) const noexcept;
    bool GetType(unsigned int& type) const noexcept { return Type::Get(type); }
    bool GetValue(unsigned int& value) const noexcept { return Value::Get(value); }
    bool GetOffsets(short& locOffset, short& seaOffset) const noexcept;

    // Appends the time as a record under label. The offsets are written for type 3 only.
    bool ToRecord(vorn::cRecord& target, const char* label) const noexcept;

private:
    using Type = quarn::detail::Field<unsigned int, quarn::detail::label::type>;
    using Value = quarn::detail::Field<unsigned int, quarn::detail::label::value>;
    using LocOffset = quarn::detail::Field<short, quarn::detail::label::locOffset>;
    using SeaOffset = quarn::detail::Field<short, quarn::detail::label::seaOffset>;

    void ReadFrom(const vorn::cRecordPar* own, quarn::detail::Source& around);
    bool WriteInto(quarn::detail::RecordBuilder& own) const;
    void CopyFrom(const cSmlTime& other) noexcept { *this = other; }
    void Assign(const cSmlTime& other) noexcept { *this = other; }

    friend struct quarn::detail::Access;
};

namespace quarn::detail
{

struct QUARN_API ListTypeFields : FieldSet<Required<Field<unsigned int, label::type>>,
                                           Required<Field<cSmlTime, label::SmlTime>>> {
    static constexpr Shape kShape = {"cSmlListType", label::smlList, eFIELDS::ENCLOSED,
                                     kUntraced,      true,           true};

    bool GetType(unsigned int& type) const noexcept { return Type::Get(type); }
    bool Get(cSmlTime& time) const noexcept { return Time::Get(time); }
    // False, and nothing changed, unless type is 1 and time is valid.
    bool Set(unsigned int type, const cSmlTime& time) noexcept
    {
        return type == 1 && time.IsValid() && Type::Set(type) && Time::Set(time);
    }

protected:
    using Type = Field<unsigned int, label::type>;
    using Time = Field<cSmlTime, label::SmlTime>;

    void DropUnassigned() noexcept;
};

} // namespace quarn::detail

// The list type of a value: 1 = time is the only one. Another type is read, and written back, but
// cannot be set, and operator= does not take its time over.
class QUARN_API cSmlListType : public quarn::detail::Entry<quarn::detail::ListTypeFields>
{
public:
    using Entry::Entry;
};

namespace quarn::detail
{

class QUARN_API ValueCore
{
public:
    void Clear() noexcept;
    bool IsValid() const noexcept { return bValid; }

    // The alternative, also of a value that is not valid: 0 none, 1 boolean, 2 octet string,
    // 3 unsigned 32-bit, 4 unsigned 64-bit, 5 signed 32-bit, 6 signed 64-bit, 7 list type. Returns
    // true.
    bool GetType(unsigned int& kind) const noexcept;
    // Each succeeds for its own alternative only: none is converted into another.
    bool GetBool(bool& v) const noexcept { return Get(v); }
    bool GetString(std::string& v) const noexcept { return Get(v); }
    bool GetUInt(unsigned int& v) const noexcept { return Get(v); }
    bool GetUInt64(unsigned long long& v) const noexcept { return Get(v); }
    bool GetSInt(int& v) const noexcept { return Get(v); }
    bool GetSInt64(long long& v) const noexcept { return Get(v); }
    bool GetListType(cSmlListType& v) const noexcept { return Get(v); }

protected:
    static constexpr const char* kClass = "cSmlValue";
    static constexpr const Label& kOwnLabel = kLabel<label::value>;
    static constexpr bool kIsAround = false;
    static constexpr bool kIsParameter = true;
    static constexpr bool kCopiedWhenValid = true;

    template <typename T>
    bool Get(T& out) const noexcept
    {
        return bValid && GetAlternative(alternatives, out);
    }
    void ReadFrom(const vorn::cRecordPar* own, Source& around);
    template <class Target>
    bool WriteInto(Target& around) const;
    void CopyFrom(const ValueCore& other);
    void DropUnassigned() noexcept;

    // In the order of the kinds: the index is the kind.
    std::variant<std::monostate, bool, std::string, unsigned int, unsigned long long, int,
                 long long, cSmlListType>
        alternatives;
    bool bValid = false;

    friend struct Access;
};

} // namespace quarn::detail

// A value: one of seven alternatives, read from and written to the parameter "value", whose kind
// says which. operator= takes over a valid value; any other one clears the target.
class QUARN_API cSmlValue : public quarn::detail::Object<quarn::detail::ValueCore>
{
public:
    using Object::Object;
};

#endif
