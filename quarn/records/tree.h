// The parameter tree: a node with its value and its children, and the value's five alternatives. A
// tree reads at most SML_MAX_TREE_DEPTH levels; a deeper one is refused as a whole.
#ifndef QUARN_RECORDS_TREE_H
#define QUARN_RECORDS_TREE_H

#include "quarn/records/lists.h"

namespace quarn::detail
{

template <std::size_t i>
using ParValueType = ElementType<schema::kProcParValue, i>;
static_assert(schema::kProcParValue.uiCount == 5);

// The index of an alternative is its tag.
using ProcParValueCore =
    ChoiceCore<ParValueType<0>, ParValueType<1>, ParValueType<2>, ParValueType<3>, ParValueType<4>>;
using ProcParValueObject = Object<CLASS_PROC_PAR_VALUE, ProcParValueCore>;

} // namespace quarn::detail

// The value of a node: one of five alternatives, read from and written to the record "procParVal",
// whose "type" says which. operator= from an alternative makes it the value, if it is valid;
// otherwise, or when no memory is left, it clears this object.
class QUARN_API cSmlProcParValue : public quarn::detail::ProcParValueObject
{
public:
    using Object::Object;

    cSmlProcParValue& operator=(const cSmlValue& v) noexcept { return Take(v), *this; }
    cSmlProcParValue& operator=(const cSmlPeriodEntry& v) noexcept { return Take(v), *this; }
    cSmlProcParValue& operator=(const cSmlTupelEntry& v) noexcept { return Take(v), *this; }
    cSmlProcParValue& operator=(const cSmlTime& v) noexcept { return Take(v), *this; }
    cSmlProcParValue& operator=(const cSmlListEntry& v) noexcept { return Take(v), *this; }

    // Each succeeds for its own alternative only.
    bool GetParValue(cSmlValue& v) const noexcept { return Get(v); }
    bool GetParValue(cSmlPeriodEntry& v) const noexcept { return Get(v); }
    bool GetParValue(cSmlTupelEntry& v) const noexcept { return Get(v); }
    bool GetParValue(cSmlTime& v) const noexcept { return Get(v); }
    bool GetParValue(cSmlListEntry& v) const noexcept { return Get(v); }

private:
    template <typename T>
    void Take(const T& v) noexcept
    {
        decltype(content) taken(std::in_place_type<T>);
        const bool done = v.IsValid() && quarn::detail::TryAssign(*std::get_if<T>(&taken), v);
        content = done ? std::move(taken) : decltype(content)();
    }
};

// The children of a node.
class QUARN_API cSmlChildList
    : public quarn::detail::ListOf<quarn::detail::CLASS_CHILD_LIST, quarn::schema::Tree::kChildren>
{
public:
    using Object::Object;

    bool SetTreeEntry(const cSmlTree& v) noexcept { return Add(v); }
    bool GetTreeEntry(cSmlTree& out, int index) const noexcept { return At(out, index); }
    bool GetTreeCount(int& count) const noexcept { return CountIfAny(count); }
};

namespace quarn::detail
{

using TreeNode = ObjectOf<CLASS_TREE, schema::Tree::kNode, Required<label::parName>,
                          OneOf<label::procParVal, label::child_List>,
                          AsRecord<label::procParVal, label::child_List>>;

} // namespace quarn::detail

// A node: its name, and its value or its children or both. The value and the children are present
// as soon as their records are, even if those are not valid. operator= takes over a valid tree; any
// other one clears the target.
class QUARN_API cSmlTree : public quarn::detail::TreeNode
{
public:
    using Object::Object;

    bool GetName(unsigned long long& v) const noexcept { return Get<quarn::label::parName>(v); }
    bool GetValue(cSmlProcParValue& v) const noexcept { return Get<quarn::label::procParVal>(v); }
    bool GetChildList(cSmlChildList& v) const noexcept { return Get<quarn::label::child_List>(v); }
};

#endif
