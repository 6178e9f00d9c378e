// The lists of entries and of names, and the one entry that holds a list. See list.h for what all
// lists have in common.
#ifndef QUARN_RECORDS_LISTS_H
#define QUARN_RECORDS_LISTS_H

#include "quarn/records/entries.h"
#include "quarn/records/list.h"

namespace quarn::detail
{

using EntriesOfList = EntryList<CLASS_LIST, cSmlListEntry>;
using EntriesOfPeriodList = EntryList<CLASS_PERIOD_LIST, cSmlPeriodEntry>;
using EntriesOfValueList = EntryList<CLASS_VALUE_LIST, cSmlValueEntry>;
using EntriesOfHeaderList = EntryList<CLASS_HEADER_LIST, cSmlHeaderEntry>;
using EntriesOfObjList = EntryList<CLASS_OBJ_LIST, unsigned long long>;
using EntriesOfTreePath = List<CLASS_TREE_PATH, unsigned long long>;

} // namespace quarn::detail

// List entries of a get-list response.
struct QUARN_API cSmlList : quarn::detail::EntriesOfList {
    using EntryList::EntryList;
};

// Period entries of a profile-list response.
struct QUARN_API cSmlPeriodList : quarn::detail::EntriesOfPeriodList {
    using EntryList::EntryList;
};

// Value entries of one period of a profile.
struct QUARN_API cSmlValueList : quarn::detail::EntriesOfValueList {
    using EntryList::EntryList;
};

// Header entries of a profile: its objects.
struct QUARN_API cSmlHeaderList : quarn::detail::EntriesOfHeaderList {
    using EntryList::EntryList;
};

// Names of objects, by value.
struct QUARN_API cSmlObjList : quarn::detail::EntriesOfObjList {
    using EntryList::EntryList;
};

// The path to a node of a parameter tree: the names on the way, the root's first.
class QUARN_API cSmlTreePath : public quarn::detail::EntriesOfTreePath
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

using ProfObjPeriodEntry =
    Structure<CLASS_PROF_OBJ_PERIOD_ENTRY, Required<field::ValTime>, Required<field::Status>,
              Required<field::ValueList>, field::PeriodSign>;

} // namespace quarn::detail

// A profile period entry: the values of one period of a profile. Unlike other entries, it writes
// the fields that it has even when it is not valid.
struct QUARN_API cSmlProfObjPeriodEntry : quarn::detail::ProfObjPeriodEntry {
    using Object::Object;
};

// The periods of a profile.
struct QUARN_API cSmlProfObjPeriodList
    : quarn::detail::EntryList<quarn::detail::CLASS_PROF_OBJ_PERIOD_LIST, cSmlProfObjPeriodEntry> {
    using EntryList::EntryList;
};

#endif
