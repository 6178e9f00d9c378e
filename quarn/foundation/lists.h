// The records that are lists: all parameters of such a record are elements, which share one label.
// A host that prints or reads records needs to know them; what is no list is a structure, in which
// each label stands once.
#ifndef QUARN_FOUNDATION_LISTS_H
#define QUARN_FOUNDATION_LISTS_H

#include "quarn/foundation/labels.h"

#include <string_view>

struct SmlListLabels {
    const char* pcList;    // of the list
    const char* pcElement; // of each of its elements
};

inline constexpr SmlListLabels SML_LISTS[] = {
    {quarn::detail::label::parTreePath, quarn::detail::label::path_Entry},
    {quarn::detail::label::object_List, quarn::detail::label::object_List_Entry},
    {quarn::detail::label::valList, quarn::detail::label::valListEntry},
    {quarn::detail::label::child_List, quarn::detail::label::parTree},
    {quarn::detail::label::period_List, quarn::detail::label::SmlPeriodEntry},
    {quarn::detail::label::header_List, quarn::detail::label::pObjHdEntry},
    {quarn::detail::label::value_List, quarn::detail::label::value_List_Entry},
};

// The label of the elements of the list under that label; null for a label that stands for no list.
constexpr const char* SmlElementLabel(std::string_view label) noexcept
{
    for (const SmlListLabels& list : SML_LISTS) {
        if (label == list.pcList)
            return list.pcElement;
    }
    return nullptr;
}

#endif
