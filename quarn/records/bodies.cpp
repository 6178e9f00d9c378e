// The bodies of messages; see bodies.h.
#include "quarn/records/bodies.h"

#include "quarn/records/engine.h"

using namespace quarn::detail;

template class quarn::detail::Object<Structure<OpenReqFields>>;
template class quarn::detail::Object<Structure<OpenRespFields>>;
template class quarn::detail::Object<Structure<GetProfileReqFields>>;
template class quarn::detail::Object<Structure<GetProfListResFields>>;
template class quarn::detail::Object<Structure<GetProfPackResFields>>;
template class quarn::detail::Object<Structure<GetProcParReqFields>>;
template class quarn::detail::Object<Structure<GetProcParResFields>>;
template class quarn::detail::Object<Structure<SetProcParReqFields>>;
template class quarn::detail::Object<Structure<AttentionResFields>>;
template class quarn::detail::Object<Structure<GetListReqFields>>;
template class quarn::detail::Object<Structure<GetListResFields>>;

namespace
{

cSmlList ToList(const cSmlGetProfListRes& source)
{
    const auto& periods = Access::Entries(Access::Value<field::PerList>(source));
    cSmlList list;
    auto& entries = Access::Entries(list);
    entries.reserve(periods.size());
    for (const cSmlPeriodEntry& period : periods) {
        cSmlListEntry& entry = entries.emplace_back();
        Access::CopyFields<field::Status, field::ValTime>(entry, source);
        Access::CopyFields<field::ObjName, field::Unit, field::Scaler, field::Value,
                           field::ValueSign>(entry, period);
        if (!entry.IsValid())
            entry.Clear();
    }
    return list;
}

} // namespace

cSmlGetListRes& cSmlGetListRes::operator=(const cSmlGetProfListRes& source) noexcept
{
    Clear();
    if (!source.IsValid()) {
        Trace(LibQuarn, kError, "cSmlGetListRes::operator= : class cSmlGetProfListRes invalid!");
        return *this;
    }
    const bool done = Guarded("cSmlGetListRes", [&] {
        Access::CopyFields<field::ServerId>(*this, source);
        Access::Put<field::ValList>(*this, ToList(source));
    });
    if (!done)
        Clear();
    return *this;
}
