// What time, list type and value have of their own: how they are validated, written and copied.
#include "quarn/records/engine.h"

using namespace quarn::detail;

namespace
{

const TimeFields& TimeOf(const void* time) { return *static_cast<const TimeFields*>(time); }
TimeFields& TimeOf(void* time) { return *static_cast<TimeFields*>(time); }
const ValueCore& ValueOf(const void* value) { return *static_cast<const ValueCore*>(value); }
ValueCore& ValueOf(void* value) { return *static_cast<ValueCore*>(value); }

// Takes the parameter as the alternative whose kind it has.
template <typename... T, typename Choice>
bool TakeOneOf(const vorn::cRecordPar& par, Choice& to)
{
    return (... || (IsOfKind(par, kKindOf<T>) && ReadPlain(par, to.template emplace<T>())));
}

} // namespace

bool TimeClass::IsValid(const void* time) const noexcept
{
    unsigned type = 0;
    return StructureClass::IsValid(time) && TimeOf(time).Type::Get(type) &&
           (type <= 2 || (type == 3 && TimeOf(time).HasOffsets()));
}

bool TimeClass::WriteInto(const void* time, RecordBuilder& to) const
{
    if (!IsValid(time))
        return RefuseWriting();
    TimeFields written = TimeOf(time);
    Settle(&written);
    return StructureClass::WriteInto(&written, to);
}

void TimeClass::Settle(void* time) const noexcept
{
    unsigned type = 0;
    if (!TimeOf(time).Type::Get(type) || type == 3)
        return;
    TimeOf(time).LocOffset::Clear();
    TimeOf(time).SeaOffset::Clear();
}

void ListTypeClass::Settle(void* listType) const noexcept
{
    auto& fields = *static_cast<ListTypeFields*>(listType);
    unsigned type = 0;
    if (fields.GetType(type) && type != 1)
        fields.Time::Clear();
}

void ValueClass::Clear(void* value) const noexcept
{
    ValueOf(value).content = {};
    ValueOf(value).bValid = false;
}

bool ValueClass::IsValid(const void* value) const noexcept { return ValueOf(value).bValid; }

void ValueClass::ReadFrom(void* value, const vorn::cRecordPar* par, Source& around) const
{
    ValueCore& to = ValueOf(value);
    if (par == nullptr || !par->IsValid() || par->IsEmpty()) {
        Trace(LibQuarn, kDetail, "cSmlValue::CTOR: record invalid/empty!");
        return;
    }
    Source inside(around.uiDepth);
    if (inside.Open(par)) {
        auto& listType = to.content.emplace<cSmlListType>();
        ClassOf<cSmlListType>().Read(&listType, inside);
        to.bValid = listType.IsValid();
    } else {
        to.bValid = TakeOneOf<bool, std::string, unsigned, unsigned long long, int, long long>(
            *par, to.content);
    }
}

void ValueClass::Copy(void* to, const void* from) const
{
    CopyChoice(ValueOf(to).content, ValueOf(from).content);
    ValueOf(to).bValid = ValueOf(from).bValid;
}

void ValueClass::Settle(void* value) const noexcept
{
    if (auto* listType = std::get_if<cSmlListType>(&ValueOf(value).content))
        ClassOf<cSmlListType>().Settle(listType);
}

bool ValueClass::Write(const void* value, RecordBuilder& to, const Label& label) const
{
    return WriteEither(to, value, label, [&](const cSmlListType& listType) {
        to.Open();
        ClassOf<cSmlListType>().Write(&listType, to, ClassOf<cSmlListType>().own);
        to.AppendRecordPar(label, to.Close(), 0);
    });
}

bool ValueClass::WriteTo(vorn::cRecord& target, const void* value, const char* label) const
{
    return WriteEither(target, value, own, [&](const cSmlListType& listType) {
        vorn::cRecord nested;
        ClassOf<cSmlListType>().WriteTo(nested, &listType, ClassOf<cSmlListType>().own);
        target.AppendRecordPar(label, nested, 0);
    });
}

template <class Target, typename WriteListType>
bool ValueClass::WriteEither(Target& to, const void* value, const Label& label,
                             WriteListType writeListType) const
{
    if (!IsValid(value)) {
        Trace(LibQuarn, kError, "cSmlValue::ToRecord: class invalid");
        return false;
    }
    std::visit(
        [&](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, cSmlListType>)
                writeListType(v);
            else if constexpr (!std::is_same_v<T, std::monostate>)
                AppendPlain(to, label, v);
        },
        ValueOf(value).content);
    return true;
}
