// The parameter tree: a node with its value and its children, and the value's five alternatives. A
// tree reads at most SML_MAX_TREE_DEPTH levels; a deeper one is refused as a whole.
#ifndef QUARN_RECORDS_TREE_H
#define QUARN_RECORDS_TREE_H

#include "quarn/records/lists.h"

namespace quarn::detail
{

class ProcParValueCore
{
public:
    // Each succeeds for its own alternative only.
    bool GetParValue(cSmlValue& v) const noexcept { return GetAlternative(content, v); }
    bool GetParValue(cSmlPeriodEntry& v) const noexcept { return GetAlternative(content, v); }
    bool GetParValue(cSmlTupelEntry& v) const noexcept { return GetAlternative(content, v); }
    bool GetParValue(cSmlTime& v) const noexcept { return GetAlternative(content, v); }
    bool GetParValue(cSmlListEntry& v) const noexcept { return GetAlternative(content, v); }

protected:
    // In the order of the types 1 to 5: the index is the type.
    std::variant<std::monostate, cSmlValue, cSmlPeriodEntry, cSmlTupelEntry, cSmlTime,
                 cSmlListEntry>
        content;

    template <typename T>
    void Take(const T& v) noexcept
    {
        decltype(content) taken(std::in_place_type<T>);
        const bool done = v.IsValid() && TryAssign(*std::get_if<T>(&taken), v);
        content = done ? std::move(taken) : decltype(content)();
    }

    friend class ProcParValueClass;
    template <class Core>
    friend class ChoiceClass;
};

using ProcParValue = Object<CLASS_PROC_PAR_VALUE, ProcParValueCore>;

} // namespace quarn::detail

// The value of a node: one of five alternatives, read from and written to the record "procParVal",
// whose "type" says which. operator= from an alternative makes it the value, if it is valid;
// otherwise, or when no memory is left, it clears this object.
class QUARN_API cSmlProcParValue : public quarn::detail::ProcParValue
{
public:
    using Object::Object;

    cSmlProcParValue& operator=(const cSmlValue& v) noexcept { return Take(v), *this; }
    cSmlProcParValue& operator=(const cSmlPeriodEntry& v) noexcept { return Take(v), *this; }
    cSmlProcParValue& operator=(const cSmlTupelEntry& v) noexcept { return Take(v), *this; }
    cSmlProcParValue& operator=(const cSmlTime& v) noexcept { return Take(v), *this; }
    cSmlProcParValue& operator=(const cSmlListEntry& v) noexcept { return Take(v), *this; }
};

class cSmlTree;

// The children of a node.
QUARN_LIST(cSmlChildList, CLASS_CHILD_LIST, cSmlTree, Tree, CountIfAny)

namespace quarn::detail::field
{

QUARN_FIELD(ParName, GetName, unsigned long long, parName)
QUARN_FIELD(ProcParVal, GetValue, cSmlProcParValue, procParVal)
QUARN_FIELD(ChildList, GetChildList, cSmlChildList, child_List)

} // namespace quarn::detail::field

// A node: its name, and its value or its children or both. The value and the children are present
// as soon as their records are, even if those are not valid. operator= takes over a valid tree; any
// other one clears the target.
QUARN_CLASS(cSmlTree,
            Structure<CLASS_TREE, Required<field::ParName>, OneOf<AsRecord<field::ProcParVal>>,
                      OneOf<AsRecord<field::ChildList>>>)

#endif
