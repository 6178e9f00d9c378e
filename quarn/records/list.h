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

    friend struct Access;
};

template <eCLASS Number, class T>
using List = Object<Number, ListCore<Number, T>>;

// The operations' names of most lists.
template <eCLASS Number, class T>
class EntryList : public List<Number, T>
{
public:
    using List<Number, T>::Object::Object;

    bool SetListEntry(const T& element) noexcept { return this->Add(element); }
    bool GetListEntry(T& out, int index) const noexcept { return this->At(out, index); }
    // False, and a count of 0, when the list is empty.
    bool GetListCount(int& count) const noexcept
    {
        count = this->Count();
        return count > 0;
    }
};

} // namespace quarn::detail

#endif
