// The lists of entries and of names, and the one entry that holds a list.
//
// Elements are numbered from 0 in the order in which they were added, and held by value. A list is
// valid when it has an element; the elements' own validity does not count. An element that is not
// valid is held as a cleared one; a parameter of the list's record that is no element is passed
// over, with a trace at level 2.
#ifndef QUARN_RECORDS_LISTS_H
#define QUARN_RECORDS_LISTS_H

#include "quarn/records/entries.h"

#include <vector>

namespace quarn::detail
{

template <eCLASS Number, class T>
class ListCore
{
public:
    using Element = T;

protected:
    // Adds a copy at the end. False, and nothing added, when no memory is left.
    bool Add(const T& element) noexcept { return Engine::Add(Number, this, &element); }
    // Assigns the element of that index; false, and out unchanged, when there is none.
    bool At(T& out, int index) const noexcept
    {
        const auto i = static_cast<std::size_t>(index);
        return index >= 0 && i < content.size() && TryAssign(out, content[i]);
    }
    // False, and a count of 0, when the list is empty.
    bool Count(int& count) const noexcept
    {
        count = static_cast<int>(content.size());
        return count > 0;
    }
    // False, and count untouched, when the list is empty.
    bool CountIfAny(int& count) const noexcept { return !content.empty() && Count(count); }

    std::vector<T> content;

    template <class Core>
    friend class ListClass;
};

} // namespace quarn::detail

// A list that hosts use: its elements, and what its operations and its way to count are called.
#define QUARN_LIST(Name, Number, Type, What, CountAs)                                              \
    class QUARN_API Name                                                                           \
        : public quarn::detail::Object<quarn::detail::Number,                                      \
                                       quarn::detail::ListCore<quarn::detail::Number, Type>>       \
    {                                                                                              \
    public:                                                                                        \
        using Object::Object;                                                                      \
        bool Set##What##Entry(const Type& v) noexcept { return Add(v); }                           \
        bool Get##What##Entry(Type& out, int index) const noexcept { return At(out, index); }      \
        bool Get##What##Count(int& count) const noexcept { return CountAs(count); }                \
    };

// List entries of a get-list response.
QUARN_LIST(cSmlList, CLASS_LIST, cSmlListEntry, List, Count)

// Period entries of a profile-list response.
QUARN_LIST(cSmlPeriodList, CLASS_PERIOD_LIST, cSmlPeriodEntry, List, Count)

// Value entries of one period of a profile.
QUARN_LIST(cSmlValueList, CLASS_VALUE_LIST, cSmlValueEntry, List, Count)

// Header entries of a profile: its objects.
QUARN_LIST(cSmlHeaderList, CLASS_HEADER_LIST, cSmlHeaderEntry, List, Count)

// Names of objects, by value.
QUARN_LIST(cSmlObjList, CLASS_OBJ_LIST, unsigned long long, List, Count)

// The path to a node of a parameter tree: the names on the way, the root's first.
QUARN_LIST(cSmlTreePath, CLASS_TREE_PATH, unsigned long long, Path, CountIfAny)

namespace quarn::detail::field
{

QUARN_FIELD(ValueList, GetValList, cSmlValueList, value_List)
QUARN_FIELD(PeriodSign, GetPeriodSign, std::string, periodSignature)

} // namespace quarn::detail::field

// A profile period entry: the values of one period of a profile. Unlike other entries, it writes
// the fields that it has even when it is not valid.
QUARN_CLASS(cSmlProfObjPeriodEntry,
            Structure<CLASS_PROF_OBJ_PERIOD_ENTRY, Required<field::ValTime>,
                      Required<field::Status>, Required<field::ValueList>, field::PeriodSign>)

// The periods of a profile.
QUARN_LIST(cSmlProfObjPeriodList, CLASS_PROF_OBJ_PERIOD_LIST, cSmlProfObjPeriodEntry, List, Count)

#endif
