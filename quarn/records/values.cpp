// Time, list type and value. These few differ from the other classes in how they are validated and
// copied, so they say here what those take from their templates.
#include "quarn/records/values.h"

#include "quarn/records/engine.h"

using namespace quarn::detail;

template class quarn::detail::Object<Structure<ListTypeFields>>;
template class quarn::detail::Object<ValueCore>;

cSmlTime::cSmlTime(const vorn::cRecord& record, const char* label) noexcept
{
    const auto read = [&] {
        Source around(record, 0);
        ReadFrom(label != nullptr ? around.Find(label) : nullptr, around);
    };
    if (!Guarded("cSmlTime", read))
        Clear();
}

cSmlTime& cSmlTime::operator=(const cSmlTime& other) noexcept
{
    if (this == &other)
        return *this;
    Clear();
    unsigned type = 0;
    if (!other.IsValid() || !other.GetType(type))
        return *this;
    FieldSet::CopyFrom(other);
    if (type != 3) {
        LocOffset::Clear();
        SeaOffset::Clear();
    }
    return *this;
}

bool cSmlTime::IsValid() const noexcept
{
    unsigned type = 0;
    if (!GetType(type) || !Value::IsPresent())
        return false;
    return type <= 2 || (type == 3 && LocOffset::IsPresent() && SeaOffset::IsPresent());
}

bool cSmlTime::SetTime(unsigned int type, unsigned int value) noexcept
{
    Clear();
    return (type == 1 || type == 2) && Type::Set(type) && Value::Set(value);
}

bool cSmlTime::SetTime(unsigned int type, unsigned int value, short locOffset,
                       short seaOffset) noexcept
{
    Clear();
    return type == 3 && Type::Set(type) && Value::Set(value) && LocOffset::Set(locOffset) &&
           SeaOffset::Set(seaOffset);
}

bool cSmlTime::GetTime(unsigned int& type, unsigned int& value) const noexcept
{
    return Value::IsPresent() && Type::Get(type) && Value::Get(value);
}

bool cSmlTime::GetTime(unsigned int& type, unsigned int& value, short& locOffset,
                       short& seaOffset) const noexcept
{
    return LocOffset::IsPresent() && SeaOffset::IsPresent() && GetTime(type, value) &&
           GetOffsets(locOffset, seaOffset);
}

bool cSmlTime::GetOffsets(short& locOffset, short& seaOffset) const noexcept
{
    return SeaOffset::IsPresent() && LocOffset::Get(locOffset) && SeaOffset::Get(seaOffset);
}

void cSmlTime::ReadFrom(const vorn::cRecordPar* own, Source& around)
{
    Source inside(around.uiDepth);
    if (inside.Open(own))
        FieldSet::Read(inside);
}

bool cSmlTime::WriteInto(RecordBuilder& own) const
{
    if (!IsValid()) {
        Trace(LibQuarn, kError, "cSmlTime::ToRecord: class invalid");
        return false;
    }
    cSmlTime written;
    written = *this; // drops the offsets that the type does not have
    written.FieldSet::Write(own);
    return true;
}

bool cSmlTime::ToRecord(vorn::cRecord& target, const char* label) const noexcept
{
    bool written = false;
    Guarded("cSmlTime", [&] { written = Access::WriteAs(*this, target, label); });
    return written;
}

void ListTypeFields::DropUnassigned() noexcept
{
    unsigned type = 0;
    if (GetType(type) && type != 1)
        Time::Clear();
}

namespace
{

// Takes the parameter as the alternative whose kind it has.
template <typename... T, typename Alternatives>
bool TakeOneOf(const vorn::cRecordPar& par, Alternatives& to)
{
    return (... || (IsOfKind(par, kKindOf<T>) && (to.template emplace<T>(PlainOf<T>(par)), true)));
}

// A list type in the record that stands around it, empty if it is not valid.
struct ListTypeAround {
    const cSmlListType& listType;

    bool WriteInto(RecordBuilder& around) const
    {
        Access::Write(listType, around);
        return true;
    }
};

} // namespace

void ValueCore::Clear() noexcept
{
    alternatives = {};
    bValid = false;
}

bool ValueCore::GetType(unsigned int& kind) const noexcept
{
    kind = static_cast<unsigned>(alternatives.index());
    return true;
}

void ValueCore::ReadFrom(const vorn::cRecordPar* own, Source& around)
{
    if (own == nullptr || !own->IsValid() || own->IsEmpty()) {
        Trace(LibQuarn, kDetail, "cSmlValue::CTOR: record invalid/empty!");
        return;
    }
    Source inside(around.uiDepth);
    if (inside.Open(own)) {
        auto& listType = alternatives.emplace<cSmlListType>();
        Access::Read(listType, inside);
        bValid = listType.IsValid();
    } else {
        bValid = TakeOneOf<bool, std::string, unsigned, unsigned long long, int, long long>(
            *own, alternatives);
    }
}

void ValueCore::CopyFrom(const ValueCore& other)
{
    if (const auto* listType = std::get_if<cSmlListType>(&other.alternatives))
        Access::Copy(alternatives.emplace<cSmlListType>(), *listType);
    else
        alternatives = other.alternatives;
    bValid = other.bValid;
}

void ValueCore::DropUnassigned() noexcept
{
    if (auto* listType = std::get_if<cSmlListType>(&alternatives))
        Access::DropUnassigned(*listType);
}

template <class Target>
bool ValueCore::WriteInto(Target& around) const
{
    if (!bValid) {
        Trace(LibQuarn, kError, "cSmlValue::ToRecord: class invalid");
        return false;
    }
    std::visit(
        [&](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, cSmlListType>)
                Access::WriteAs(ListTypeAround{v}, around, kOwnLabel);
            else if constexpr (!std::is_same_v<T, std::monostate>)
                AppendPlain(around, kOwnLabel, v);
        },
        alternatives);
    return true;
}

template bool ValueCore::WriteInto(vorn::cRecord&) const;
template bool ValueCore::WriteInto(RecordBuilder&) const;
