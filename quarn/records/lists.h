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
        return index >= 0 && index < Count() &&
               TryAssign(out, content[static_cast<std::size_t>(index)]);
    }
    int Count() const noexcept { return static_cast<int>(content.size()); }
    // False, and count untouched, when the list is empty.
    bool CountIfAny(int& count) const noexcept
    {
        if (!content.empty())
            count = Count();
        return !content.empty();
    }

    std::vector<T> content;

    template <class Core>
    friend class ListClass;
};

template <eCLASS Number, class T>
using List = Object<Number, ListCore<Number, T>>;

// The operations' names of most lists.
template <eCLASS Number, class T>
struct EntryListCore : ListCore<Number, T> {
    bool SetListEntry(const T& element) noexcept { return this->Add(element); }
    bool GetListEntry(T& out, int index) const noexcept { return this->At(out, index); }
    // False, and a count of 0, when the list is empty.
    bool GetListCount(int& count) const noexcept
    {
        count = this->Count();
        return count > 0;
    }
};

template <eCLASS Number, class T>
using EntryList = Object<Number, EntryListCore<Number, T>>;

} // namespace quarn::detail

// List entries of a get-list response.
QUARN_CLASS(cSmlList, EntryList<CLASS_LIST, cSmlListEntry>)

// Period entries of a profile-list response.
QUARN_CLASS(cSmlPeriodList, EntryList<CLASS_PERIOD_LIST, cSmlPeriodEntry>)

// Value entries of one period of a profile.
QUARN_CLASS(cSmlValueList, EntryList<CLASS_VALUE_LIST, cSmlValueEntry>)

// Header entries of a profile: its objects.
QUARN_CLASS(cSmlHeaderList, EntryList<CLASS_HEADER_LIST, cSmlHeaderEntry>)

// Names of objects, by value.
QUARN_CLASS(cSmlObjList, EntryList<CLASS_OBJ_LIST, unsigned long long>)

// The path to a node of a parameter tree: the names on the way, the root's first.
class QUARN_API cSmlTreePath
    : public quarn::detail::List<quarn::detail::CLASS_TREE_PATH, unsigned long long>
{
public:
    using Object::Object;

    bool SetPathEntry(unsigned long long name) noexcept { return Add(name); }
    bool GetPathEntry(unsigned long long& name, int index) const noexcept
    {
        return At(name, index);
    }
    // False, and count untouched, when the path is empty.
    bool GetPathCount(int& count) const noexcept { return CountIfAny(count); }
};

namespace quarn::detail
{

namespace field
{
QUARN_FIELD(ValueList, GetValList, cSmlValueList, value_List)
QUARN_FIELD(PeriodSign, GetPeriodSign, std::string, periodSignature)
} // namespace field

} // namespace quarn::detail

// A profile period entry: the values of one period of a profile. Unlike other entries, it writes
// the fields that it has even when it is not valid.
QUARN_CLASS(cSmlProfObjPeriodEntry,
            Structure<CLASS_PROF_OBJ_PERIOD_ENTRY, Required<field::ValTime>,
                      Required<field::Status>, Required<field::ValueList>, field::PeriodSign>)

// The periods of a profile.
QUARN_CLASS(cSmlProfObjPeriodList, EntryList<CLASS_PROF_OBJ_PERIOD_LIST, cSmlProfObjPeriodEntry>)

#endif
