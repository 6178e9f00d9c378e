// Lists of elements. A list has slots, numbered from 0; a slot holds a pointer to an element, or
// none yet. SML structures are lists too: their fields are the slots.
//
// Who deletes an element: a dynamic list deletes it when it is removed, when another element takes
// its slot and when the list dies. A list that is not dynamic only points to its elements. Whoever
// gives an element to a call that returns an error keeps it.
//
// Adding an element, walking the slots in order and writing the list take time linear in the number
// of slots.
#ifndef QUARN_ENCODER_LIST_H
#define QUARN_ENCODER_LIST_H

#include "quarn/encoder/sml_type.h"

#include <memory>

// Results of the operations on lists.
enum eSML_LIST : int {
    SML_LIST_OK = 0,
    SML_LIST_NO_MEMORY = 220,
    SML_LIST_BAD_INDEX = 222, // no such slot; nothing was changed
    SML_LIST_NO_ELEMENT = 230 // a tree path was given no entry, or could not create it
};

// One slot in the chain of a list. It never deletes its element.
class QUARN_API Sml_ListObject
{
public:
    Sml_ListObject() noexcept = default;
    explicit Sml_ListObject(Sml_Type* e) noexcept : pElement(e) {}
    virtual ~Sml_ListObject();

    Sml_ListObject* GetNext() const noexcept { return pNext; } // null: the last one
    Sml_Type* GetElement() const noexcept { return pElement; } // may be null

private:
    friend class Sml_ListOf;

    Sml_ListObject* pNext = nullptr;
    Sml_Type* pElement = nullptr;
};

class QUARN_API Sml_ListOf : public Sml_Type
{
public:
    Sml_ListOf() noexcept; // present, no slots, not dynamic
    // n empty slots, made in one piece; none when memory runs out.
    Sml_ListOf(int n, bool dynamic) noexcept;
    // Deletes the elements of a dynamic list, last slot first. However deep lists are nested, that
    // takes no more stack.
    ~Sml_ListOf() override;

    // Writes the number of slots and then the elements. Where a slot is empty, a list of the type
    // SML_TYPE_TREE writes 01 and any other list nothing, so that it then announces more elements
    // than it carries. A list nested deeper than a tree of SML_MAX_TREE_DEPTH levels has lists is
    // written as 01, with a trace line at level 2.
    void ToBin(cBuffer* buf) override;

    // A new last slot with e, which may be null. SML_LIST_OK or SML_LIST_NO_MEMORY.
    int Add(Sml_Type* e) noexcept;
    // Null when the slot is empty or does not exist.
    Sml_Type* GetElement(int i) const noexcept;
    // SML_LIST_OK or SML_LIST_BAD_INDEX. A null e takes the element out without deleting it.
    int SetElement(Sml_Type* e, int i) noexcept;
    // Removes the slot and closes the gap. SML_LIST_OK or SML_LIST_BAD_INDEX.
    int Remove(int i) noexcept;

    int GetCount() const noexcept { return iCount; } // slots, empty ones included
    void SetDynamicFlag(bool dynamic) noexcept { bDynamic = dynamic; }
    bool GetDynamicFlag() const noexcept { return bDynamic; }

private:
    Sml_ListOf* Parts() noexcept override { return this; }
    void WriteElements(cBuffer* buf);
    Sml_ListObject* TakeReversed() noexcept;      // the chain, last slot first; none is left
    Sml_ListObject* NodeAt(int i) const noexcept; // REQUIRES: 0 <= i < iCount
    void Append(Sml_ListObject* node) noexcept;
    void DeleteNode(Sml_ListObject* node) noexcept;
    bool HasSlot(int i) const noexcept { return i >= 0 && i < iCount; }

    std::unique_ptr<Sml_ListObject[]> pBlock; // the slots that the constructor made
    int iBlockSize = 0;
    Sml_ListObject* pHead = nullptr;
    Sml_ListObject* pTail = nullptr;
    int iCount = 0;
    bool bDynamic = false;
    Sml_ListOf* pOuter = nullptr; // of a list that dies with the one around it
    // Where NodeAt found its last slot: the next walk starts there when it can.
    mutable Sml_ListObject* pCursor = nullptr;
    mutable int iCursor = 0;
};

#endif
