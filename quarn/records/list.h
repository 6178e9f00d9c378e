// The list: one template for every repeated structure. Elements are numbered from 0 in the order in
// which they were added, and held by value. A list is valid when it has an element; the elements'
// own validity does not count. An element that is not valid is held as a cleared one; a parameter
// of the list's record that is no element is passed over, with a trace at level 2.
#ifndef QUARN_RECORDS_LIST_H
#define QUARN_RECORDS_LIST_H

#include "quarn/records/structure.h"

#include <vector>

namespace quarn::detail
{

struct ListShape {
    const char* pcClass;        // as trace lines name it
    Label own;                  // of the list's record
    Label element;              // of each element in it
    const char* pcEmptyName;    // what the line on an empty list record names
    const char* pcElementFault; // the line on a parameter that is no element
    bool bWrapped;              // an element's own record is written inside another of that label
    bool bStepsByLabel;         // parameters of other labels are passed over without a line
    const char* pcInvalid;      // the line on writing an empty list
    vorn::eLEVEL invalidLevel;  // and its level
    vorn::eLEVEL missingLevel;  // of the line on a missing list record; 0: no line
};

// A list whose elements are written directly into its record.
constexpr ListShape Direct(const char* name, const Label& listLabel, const Label& elementLabel,
                           const char* emptyName, const char* elementFault,
                           const char* invalid = "class invalid/no entries",
                           vorn::eLEVEL invalidLevel = kError, vorn::eLEVEL missingLevel = kDetail)
{
    return {name,  listLabel, elementLabel, emptyName,    elementFault,
            false, false,     invalid,      invalidLevel, missingLevel};
}
// One whose elements' records are wrapped once more.
constexpr ListShape Wrapped(const char* name, const Label& listLabel, const Label& elementLabel,
                            const char* emptyName, const char* elementFault,
                            bool stepsByLabel = false)
{
    ListShape shape = Direct(name, listLabel, elementLabel, emptyName, elementFault);
    shape.bWrapped = true;
    shape.bStepsByLabel = stepsByLabel;
    return shape;
}

// Traits declares Element and the ListShape kShape.
template <class Traits>
class QUARN_API ListCore
{
public:
    using Element = typename Traits::Element;

    void Clear() noexcept { entries.clear(); }
    bool IsValid() const noexcept { return !entries.empty(); }

protected:
    static constexpr const char* kClass = Traits::kShape.pcClass;
    static constexpr const Label& kOwnLabel = Traits::kShape.own;
    static constexpr bool kIsAround = false;
    static constexpr bool kIsParameter = false;
    static constexpr bool kCopiedWhenValid = false;

    // Adds a copy at the end. False, and nothing added, when no memory is left.
    bool Add(const Element& element) noexcept
    {
        return Guarded(kClass, [&] {
            Element copy{};
            Access::Assign(copy, element);
            entries.push_back(std::move(copy));
        });
    }
    // Assigns the element of that index; false, and out unchanged, when there is none.
    bool At(Element& out, int index) const noexcept
    {
        return index >= 0 && index < Count() &&
               TryAssign(out, entries[static_cast<std::size_t>(index)]);
    }
    int Count() const noexcept { return static_cast<int>(entries.size()); }
    // False, and count untouched, when the list is empty.
    bool CountIfAny(int& count) const noexcept
    {
        if (IsValid())
            count = Count();
        return IsValid();
    }

    void ReadFrom(const vorn::cRecordPar* own, Source& around);
    bool ReadElement(const vorn::cRecordPar& par, unsigned depth);
    bool WriteInto(RecordBuilder& list) const;
    void CopyFrom(const ListCore& other);
    void DropUnassigned() noexcept {}

    std::vector<Element> entries;

    friend struct Access;
};

template <class Traits>
using List = Object<ListCore<Traits>>;

// The operations' names of most lists.
template <class Traits>
class EntryList : public List<Traits>
{
public:
    using Base = List<Traits>;
    using Base::Base;
    using Element = typename Traits::Element;

    bool SetListEntry(const Element& element) noexcept { return this->Add(element); }
    bool GetListEntry(Element& out, int index) const noexcept { return this->At(out, index); }
    // False, and a count of 0, when the list is empty.
    bool GetListCount(int& count) const noexcept
    {
        count = this->Count();
        return count > 0;
    }
};

} // namespace quarn::detail

#endif
