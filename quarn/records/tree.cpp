// The value of a tree's node. Reading a tree recurses from tree to child list to tree; the lists
// bound it.
#include "quarn/records/engine.h"

using namespace quarn::detail;

namespace
{

const ProcParValueCore& Of(const void* value)
{
    return *static_cast<const ProcParValueCore*>(value);
}
ProcParValueCore& Of(void* value) { return *static_cast<ProcParValueCore*>(value); }

template <typename T, class Choice>
void ReadAlternative(Choice& to, Source& from)
{
    ClassOf<T>().Read(&to.template emplace<T>(), from);
}

} // namespace

void ProcParValueClass::Clear(void* value) const noexcept { Of(value).content = {}; }

bool ProcParValueClass::IsValid(const void* value) const noexcept
{
    return Of(value).content.index() > 0;
}

void ProcParValueClass::ReadFrom(void* value, const vorn::cRecordPar* par, Source& around) const
{
    auto& to = Of(value).content;
    Source inside(around.uiDepth);
    if (!inside.Open(par)) {
        Trace(LibQuarn, kDetail, "cSmlProcParValue::CTOR: record invalid/empty!");
        return;
    }
    const vorn::cRecordPar* const typePar = inside.Find(label::type);
    unsigned type = 0;
    if (typePar == nullptr || !ReadPlain(*typePar, type))
        return;
    if (type == 1) {
        ReadAlternative<cSmlValue>(to, inside);
        if (!std::get_if<cSmlValue>(&to)->IsValid())
            to = {};
        return;
    }
    // The others count even if they are not valid themselves.
    Source nested(around.uiDepth);
    if (!nested.Open(inside.Find(label::value)))
        return;
    if (type == 2)
        ReadAlternative<cSmlPeriodEntry>(to, nested);
    else if (type == 3)
        ReadAlternative<cSmlTupelEntry>(to, nested);
    else if (type == 4)
        ClassOf<cSmlTime>().ReadFrom(&to.emplace<cSmlTime>(), nested.Find(label::SmlTime), nested);
    else if (type == 5)
        ReadAlternative<cSmlListEntry>(to, nested);
}

bool ProcParValueClass::WriteInto(const void* value, RecordBuilder& to) const
{
    if (!IsValid(value)) {
        Trace(LibQuarn, kError, "cSmlProcParValue::ToRecord: class invalid");
        return false;
    }
    const auto& from = Of(value).content;
    to.AppendUIntPar(kLabel<label::type>, static_cast<unsigned>(from.index()), 0);
    if (const auto* v = std::get_if<cSmlValue>(&from))
        return ClassOf<cSmlValue>().Write(v, to, kLabel<label::value>);
    to.Open();
    if (const auto* period = std::get_if<cSmlPeriodEntry>(&from))
        ClassOf<cSmlPeriodEntry>().Write(period, to, ClassOf<cSmlPeriodEntry>().own);
    else if (const auto* tupel = std::get_if<cSmlTupelEntry>(&from))
        ClassOf<cSmlTupelEntry>().Write(tupel, to, ClassOf<cSmlTupelEntry>().own);
    else if (const auto* time = std::get_if<cSmlTime>(&from))
        ClassOf<cSmlTime>().Write(time, to, kLabel<label::SmlTime>);
    else if (const auto* entry = std::get_if<cSmlListEntry>(&from))
        ClassOf<cSmlListEntry>().WriteInto(entry, to);
    to.AppendRecordPar(kLabel<label::value>, to.Close(), 0);
    return true;
}

void ProcParValueClass::Copy(void* to, const void* from) const
{
    CopyChoice(Of(to).content, Of(from).content);
}
