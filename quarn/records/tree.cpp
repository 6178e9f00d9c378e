// The parameter tree and the value of its nodes. Reading recurses from tree to child list to tree;
// the child list bounds it.
#include "quarn/records/tree.h"

#include "quarn/records/engine.h"

using namespace quarn::detail;

template class quarn::detail::Object<ProcParValueCore>;
template class quarn::detail::Object<Structure<TreeFields>>;
template class quarn::detail::Object<ListCore<ChildListTraits>>;

void ProcParValueCore::CopyFrom(const ProcParValueCore& other)
{
    Clear();
    std::visit(
        [&](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (!std::is_same_v<T, std::monostate>)
                Access::Copy(alternatives.emplace<T>(), v);
        },
        other.alternatives);
}

void ProcParValueCore::ReadFrom(const vorn::cRecordPar* own, Source& around)
{
    Source inside(around.uiDepth);
    if (!inside.Open(own)) {
        Trace(LibQuarn, kDetail, "cSmlProcParValue::CTOR: record invalid/empty!");
        return;
    }
    unsigned type = 0;
    if (!ReadValue(inside.Find<label::type>(), inside, type))
        return;
    const vorn::cRecordPar* const value = inside.Find<label::value>();
    Source alternative(around.uiDepth);
    if (type == 1) {
        if (!ReadValue(value, inside, alternatives.emplace<cSmlValue>()))
            Clear();
    } else if (alternative.Open(value)) {
        ReadAlternative(type, alternative);
    }
}

// The alternative counts even if it is not valid itself.
void ProcParValueCore::ReadAlternative(unsigned type, Source& value)
{
    if (type == 2)
        Access::Read(alternatives.emplace<cSmlPeriodEntry>(), value);
    else if (type == 3)
        Access::Read(alternatives.emplace<cSmlTupelEntry>(), value);
    else if (type == 4)
        ReadValue(value.Find<label::SmlTime>(), value, alternatives.emplace<cSmlTime>());
    else if (type == 5)
        Access::Read(alternatives.emplace<cSmlListEntry>(), value);
}

bool ProcParValueCore::WriteInto(RecordBuilder& own) const
{
    if (!IsValid()) {
        Trace(LibQuarn, kError, "cSmlProcParValue::ToRecord: class invalid");
        return false;
    }
    own.AppendUIntPar(kLabel<label::type>, static_cast<unsigned>(alternatives.index()), 0);
    if (const auto* v = std::get_if<cSmlValue>(&alternatives)) {
        Access::Write(*v, own);
        return true;
    }
    own.Open();
    if (const auto* period = std::get_if<cSmlPeriodEntry>(&alternatives))
        Access::Write(*period, own);
    else if (const auto* tupel = std::get_if<cSmlTupelEntry>(&alternatives))
        Access::Write(*tupel, own);
    else if (const auto* time = std::get_if<cSmlTime>(&alternatives))
        WriteValue(own, kLabel<label::SmlTime>, *time);
    else if (const auto* entry = std::get_if<cSmlListEntry>(&alternatives))
        Access::WriteInto(*entry, own);
    own.AppendRecordPar(kLabel<label::value>, own.Close(), 0);
    return true;
}
