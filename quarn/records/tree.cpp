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

void ProcParValueCore::Read(const vorn::cRecord& record, unsigned depth)
{
    vorn::cRecord own;
    if (!FindRecord(record, label::procParVal, own)) {
        Trace(LibQuarn, kDetail, "cSmlProcParValue::CTOR: record invalid/empty!");
        return;
    }
    unsigned type = 0;
    if (!ReadValue(own, label::type, depth, type))
        return;
    if (type == 1) {
        Access::Read(alternatives.emplace<cSmlValue>(), own, depth);
        if (!std::get<cSmlValue>(alternatives).IsValid())
            Clear();
        return;
    }
    vorn::cRecord value;
    if (type < 2 || type > 5 || !FindRecord(own, label::value, value))
        return;
    if (type == 2)
        Access::Read(alternatives.emplace<cSmlPeriodEntry>(), value, depth);
    else if (type == 3)
        Access::Read(alternatives.emplace<cSmlTupelEntry>(), value, depth);
    else if (type == 4)
        ReadValue(value, label::SmlTime, depth, alternatives.emplace<cSmlTime>());
    else
        Access::Read(alternatives.emplace<cSmlListEntry>(), value, depth);
}

bool ProcParValueCore::Write(vorn::cRecord& target) const
{
    if (!IsValid()) {
        Trace(LibQuarn, kError, "cSmlProcParValue::ToRecord: class invalid");
        return false;
    }
    vorn::cRecord own;
    own.AppendUIntPar(label::type, static_cast<unsigned>(alternatives.index()), 0);
    vorn::cRecord value;
    if (const auto* v = std::get_if<cSmlValue>(&alternatives)) {
        Access::Write(*v, own);
    } else {
        if (const auto* period = std::get_if<cSmlPeriodEntry>(&alternatives))
            Access::Write(*period, value);
        else if (const auto* tupel = std::get_if<cSmlTupelEntry>(&alternatives))
            Access::Write(*tupel, value);
        else if (const auto* time = std::get_if<cSmlTime>(&alternatives))
            WriteValue(value, label::SmlTime, *time);
        else if (const auto* entry = std::get_if<cSmlListEntry>(&alternatives))
            Access::WriteFields(*entry, value);
        own.AppendRecordPar(label::value, value, 0);
    }
    target.AppendRecordPar(label::procParVal, own, 0);
    return true;
}
