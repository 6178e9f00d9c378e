// The classes that are nothing but their declaration: entries, lists, header and status.
#include "quarn/records/engine.h"
#include "quarn/records/envelope.h"

namespace quarn::detail
{

template class Object<Structure<PeriodEntryFields>>;
template class Object<Structure<HeaderEntryFields>>;
template class Object<Structure<ValueEntryFields>>;
template class Object<Structure<ListEntryFields>>;
template class Object<Structure<tupel::Fields>>;
template class Object<Structure<ProfObjPeriodEntryFields>>;

template class Object<ListCore<ListTraits>>;
template class Object<ListCore<PeriodListTraits>>;
template class Object<ListCore<ValueListTraits>>;
template class Object<ListCore<HeaderListTraits>>;
template class Object<ListCore<TreePathTraits>>;
template class Object<ListCore<ObjListTraits>>;
template class Object<ListCore<ProfObjPeriodListTraits>>;

template class Object<Structure<MsgHeaderFields>>;
template class Object<Structure<MsgStatusFields>>;

} // namespace quarn::detail
