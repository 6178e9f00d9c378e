// The list: one template for every repeated structure. Elements are numbered from 0 in the order in
// which they were added, and held by value. A list is valid when it has an element; the elements'
// own validity does not count. An element that is not valid is held as a cleared one; a parameter
// of the list's record that is no element is passed over, with a trace at level 2.
#ifndef QUARN_RECORDS_LIST_H
#define QUARN_RECORDS_LIST_H

#include "quarn/records/object.h"

#include <vector>

namespace quarn::detail
{

struct ListShape {
    const char* pcClass;        // as trace lines name it
    Label own;                  // of the list's record
    Label element;              // of each element in it
    const char* pcEmptyName;    // what the line on an empty list record names
    const char* pcElementFault; // the line on a parameter that is no element
    bool bWrapped = false;      // an element's own record is written inside another of that label
    bool bStepsByLabel = false; // parameters of other labels are passed over without a line
    const char* pcInvalid = "class invalid/no entries"; // the line on writing an empty list
    vorn::eLEVEL invalidLevel = kError;                 // and its level
    vorn::eLEVEL missingLevel = kDetail; // of the line on a missing list record; 0: no line
};

// Traits declares Element and the ListShape kShape.
template <class Traits>
class ListCore
{
public:
    using Element = typename Traits::Element;

protected:
    // Adds a copy at the end. False, and nothing added, when no memory is left.
    bool Add(const Element& element) noexcept
    {
        return Engine::Add(kNumber<ListCore>, this, &element);
    }
    // Assigns the element of that index; false, and out unchanged, when there is none.
    bool At(Element& out, int index) const noexcept
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

    std::vector<Element> content;

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
