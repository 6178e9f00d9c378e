// The lists of entries and of names, and the one entry that holds a list. See list.h for what all
// lists have in common.
#ifndef QUARN_RECORDS_LISTS_H
#define QUARN_RECORDS_LISTS_H

#include "quarn/records/entries.h"
#include "quarn/records/list.h"

namespace quarn::detail
{

struct ListTraits {
    using Element = cSmlListEntry;
    static constexpr ListShape kShape = {"cSmlList", label::valList, label::valListEntry,
                                         "<valList>", "valListEntry invalid/empty/wrong type"};
};

struct PeriodListTraits {
    using Element = cSmlPeriodEntry;
    static constexpr ListShape kShape = {"cSmlPeriodList",
                                         label::period_List,
                                         label::SmlPeriodEntry,
                                         "<period_List>",
                                         "period_List_Entry invalid/empty/wrong type",
                                         true,
                                         true};
};

struct ValueListTraits {
    using Element = cSmlValueEntry;
    static constexpr ListShape kShape = {"cSmlValueList",
                                         label::value_List,
                                         label::value_List_Entry,
                                         "<valList>",
                                         "value_List_Entry invalid/empty/wrong type",
                                         true};
};

struct HeaderListTraits {
    using Element = cSmlHeaderEntry;
    static constexpr ListShape kShape = {"cSmlHeaderList",
                                         label::header_List,
                                         label::pObjHdEntry,
                                         "<valList>",
                                         "valListEntry invalid/empty/wrong type",
                                         true};
};

struct TreePathTraits {
    using Element = unsigned long long;
    static constexpr ListShape kShape = {"cSmlTreePath",
                                         label::parTreePath,
                                         label::path_Entry,
                                         "<parTreePath>",
                                         "path_Entry invalid/empty/wrong type",
                                         false,
                                         false,
                                         "class invalid"};
};

struct ObjListTraits {
    using Element = unsigned long long;
    static constexpr ListShape kShape = {"cSmlObjList",
                                         label::object_List,
                                         label::object_List_Entry,
                                         "<object_List>",
                                         "object_List_Entry invalid/empty/wrong type",
                                         false,
                                         false,
                                         "class invalid/empty",
                                         kProgress,
                                         kUntraced};
};

} // namespace quarn::detail

// List entries of a get-list response.
class QUARN_API cSmlList : public quarn::detail::EntryList<quarn::detail::ListTraits>
{
public:
    using EntryList::EntryList;
};

// Period entries of a profile-list response.
class QUARN_API cSmlPeriodList : public quarn::detail::EntryList<quarn::detail::PeriodListTraits>
{
public:
    using EntryList::EntryList;
};

// Value entries of one period of a profile.
class QUARN_API cSmlValueList : public quarn::detail::EntryList<quarn::detail::ValueListTraits>
{
public:
    using EntryList::EntryList;
};

// Header entries of a profile: its objects.
class QUARN_API cSmlHeaderList : public quarn::detail::EntryList<quarn::detail::HeaderListTraits>
{
public:
    using EntryList::EntryList;
};

// Names of objects, by value.
class QUARN_API cSmlObjList : public quarn::detail::EntryList<quarn::detail::ObjListTraits>
{
public:
    using EntryList::EntryList;
};

// The path to a node of a parameter tree: the names on the way, the root's first.
class QUARN_API cSmlTreePath : public quarn::detail::List<quarn::detail::TreePathTraits>
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

namespace quarn::detail::field
{

QUARN_FIELD(ValueList, GetValList, cSmlValueList, value_List)
QUARN_FIELD(PeriodSign, GetPeriodSign, std::string, periodSignature)

} // namespace quarn::detail::field

namespace quarn::detail
{

struct ProfObjPeriodEntryFields : FieldSet<Required<field::ValTime>, Required<field::Status>,
                                           Required<field::ValueList>, field::PeriodSign> {
    static constexpr Shape kShape = {
        "cSmlProfObjPeriodEntry", label::pObjPerEntry, eFIELDS::ENCLOSED, kError, true, false};
};

} // namespace quarn::detail

// A profile period entry: the values of one period of a profile. Unlike other entries, it writes
// the fields that it has even when it is not valid.
class QUARN_API cSmlProfObjPeriodEntry
    : public quarn::detail::Object<quarn::detail::ProfObjPeriodEntryFields>
{
public:
    using Object::Object;
};

namespace quarn::detail
{

struct ProfObjPeriodListTraits {
    using Element = cSmlProfObjPeriodEntry;
    static constexpr ListShape kShape = {"cSmlProfObjPeriodList",
                                         label::period_List,
                                         label::pObjPerEntry,
                                         "period_List",
                                         "pObjPerEntry invalid/empty/wrong type",
                                         true};
};

} // namespace quarn::detail

// The periods of a profile.
class QUARN_API cSmlProfObjPeriodList
    : public quarn::detail::EntryList<quarn::detail::ProfObjPeriodListTraits>
{
public:
    using EntryList::EntryList;
};

#endif
