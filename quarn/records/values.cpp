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
    vorn::cRecord record;
    if (!IsRecord(own) || !own->GetRecord(record))
        return;
    Source inside(record, around.uiDepth);
    FieldSet::Read(inside);
}

bool cSmlTime::Write(vorn::cRecord& target, const char* label) const
{
    if (!IsValid()) {
        Trace(LibQuarn, kError, "cSmlTime::ToRecord: class invalid");
        return false;
    }
    cSmlTime written;
    written = *this; // drops the offsets that the type does not have
    vorn::cRecord own;
    written.FieldSet::Write(own);
    target.AppendRecordPar(label, own, 0);
    return true;
}

bool cSmlTime::ToRecord(vorn::cRecord& target, const char* label) const noexcept
{
    bool written = false;
    Guarded("cSmlTime", [&] { written = Write(target, label); });
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
    vorn::cRecord nested;
    if (IsRecord(own) && own->GetRecord(nested)) {
        Source inside(nested, around.uiDepth);
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

bool ValueCore::Write(vorn::cRecord& target) const
{
    if (!bValid) {
        Trace(LibQuarn, kError, "cSmlValue::ToRecord: class invalid");
        return false;
    }
    std::visit(
        [&](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, cSmlListType>) {
                vorn::cRecord own;
                Access::Write(v, own);
                target.AppendRecordPar(label::value, own, 0);
            } else if constexpr (!std::is_same_v<T, std::monostate>) {
                AppendPlain(target, label::value, v);
            }
        },
        alternatives);
    return true;
}
