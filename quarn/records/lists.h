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

template <eCLASS Number, const schema::Structure& structure>
class ListCore
{
public:
    using Element = ElementType<structure, 0>;

protected:
    // Adds a copy at the end. False, and nothing added, when no memory is left.
    bool Add(const Element& element) noexcept { return Engine::Add(Number, this, &element); }
    // Assigns the element of that index; false, and out unchanged, when there is none.
    bool At(Element& out, int index) const noexcept
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

    static constexpr const schema::Structure& kStructure = structure;

    std::vector<Element> content;

    template <class Core>
    friend class ListClass;
};

template <eCLASS Number, const schema::Structure& structure>
using ListOf = Object<Number, ListCore<Number, structure>>;

} // namespace quarn::detail

// List entries of a get-list response.
class QUARN_API cSmlList
    : public quarn::detail::ListOf<quarn::detail::CLASS_LIST, quarn::schema::kList>
{
public:
    using Object::Object;

    bool SetListEntry(const cSmlListEntry& v) noexcept { return Add(v); }
    bool GetListEntry(cSmlListEntry& out, int index) const noexcept { return At(out, index); }
    bool GetListCount(int& count) const noexcept { return Count(count); }
};

// Period entries of a profile-list response.
class QUARN_API cSmlPeriodList
    : public quarn::detail::ListOf<quarn::detail::CLASS_PERIOD_LIST, quarn::schema::kPeriodList>
{
public:
    using Object::Object;

    bool SetListEntry(const cSmlPeriodEntry& v) noexcept { return Add(v); }
    bool GetListEntry(cSmlPeriodEntry& out, int index) const noexcept { return At(out, index); }
    bool GetListCount(int& count) const noexcept { return Count(count); }
};

// Value entries of one period of a profile.
class QUARN_API cSmlValueList
    : public quarn::detail::ListOf<quarn::detail::CLASS_VALUE_LIST, quarn::schema::kValueList>
{
public:
    using Object::Object;

    bool SetListEntry(const cSmlValueEntry& v) noexcept { return Add(v); }
    bool GetListEntry(cSmlValueEntry& out, int index) const noexcept { return At(out, index); }
    bool GetListCount(int& count) const noexcept { return Count(count); }
};

// Header entries of a profile: its objects.
class QUARN_API cSmlHeaderList
    : public quarn::detail::ListOf<quarn::detail::CLASS_HEADER_LIST, quarn::schema::kHeaderList>
{
public:
    using Object::Object;

    bool SetListEntry(const cSmlHeaderEntry& v) noexcept { return Add(v); }
    bool GetListEntry(cSmlHeaderEntry& out, int index) const noexcept { return At(out, index); }
    bool GetListCount(int& count) const noexcept { return Count(count); }
};

// Names of objects, by value.
class QUARN_API cSmlObjList
    : public quarn::detail::ListOf<quarn::detail::CLASS_OBJ_LIST, quarn::schema::kObjectList>
{
public:
    using Object::Object;

    bool SetListEntry(const unsigned long long& v) noexcept { return Add(v); }
    bool GetListEntry(unsigned long long& out, int index) const noexcept { return At(out, index); }
    bool GetListCount(int& count) const noexcept { return Count(count); }
};

// The path to a node of a parameter tree: the names on the way, the root's first.
class QUARN_API cSmlTreePath
    : public quarn::detail::ListOf<quarn::detail::CLASS_TREE_PATH, quarn::schema::kTreePath>
{
public:
    using Object::Object;

    bool SetPathEntry(const unsigned long long& v) noexcept { return Add(v); }
    bool GetPathEntry(unsigned long long& out, int index) const noexcept { return At(out, index); }
    bool GetPathCount(int& count) const noexcept { return CountIfAny(count); }
};

namespace quarn::detail
{

using ProfObjPeriodEntry = ObjectOf<CLASS_PROF_OBJ_PERIOD_ENTRY, schema::kPackPeriod,
                                    Required<label::valTime, label::status, label::value_List>>;

} // namespace quarn::detail

// A profile period entry: the values of one period of a profile. Unlike other entries, it writes
// the fields that it has even when it is not valid.
class QUARN_API cSmlProfObjPeriodEntry : public quarn::detail::ProfObjPeriodEntry
{
public:
    using Object::Object;

    bool GetValTime(cSmlTime& v) const noexcept { return Get<quarn::label::valTime>(v); }
    bool GetStatus(unsigned long long& v) const noexcept { return Get<quarn::label::status>(v); }
    bool GetValList(cSmlValueList& v) const noexcept { return Get<quarn::label::value_List>(v); }
    bool GetPeriodSign(std::string& v) const noexcept
    {
        return Get<quarn::label::periodSignature>(v);
    }
};

// The periods of a profile.
class QUARN_API cSmlProfObjPeriodList
    : public quarn::detail::ListOf<quarn::detail::CLASS_PROF_OBJ_PERIOD_LIST,
                                   quarn::schema::kPackPeriodList>
{
public:
    using Object::Object;

    bool SetListEntry(const cSmlProfObjPeriodEntry& v) noexcept { return Add(v); }
    bool GetListEntry(cSmlProfObjPeriodEntry& out, int index) const noexcept
    {
        return At(out, index);
    }
    bool GetListCount(int& count) const noexcept { return Count(count); }
};

#endif
