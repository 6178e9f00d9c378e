// The structures of fixed shape: entries of lists, tree paths and parameter trees. Each is a list
// whose slots are its fields.
//
// A field is given to its setter as a pointer to an object, or stays an empty slot. Optional fields
// that are not set want an absent object (default-constructed) in their slot: an empty slot writes
// nothing in an entry or a path, which then announces more elements than it carries. A tree writes
// 01 for its empty slots.
//
// Who deletes the fields: a dynamic structure does, when it dies or when another object takes the
// slot. One that is not dynamic leaves them to whoever made them. Setters return SML_LIST_OK or
// SML_LIST_BAD_INDEX (the slots could not be allocated; the object stays the caller's).
//
// Trees nest by their child lists. Deleting them takes no stack for it; writing stops at
// SML_MAX_TREE_DEPTH levels, see Sml_ListOf::ToBin.
#ifndef QUARN_ENCODER_STRUCTURES_H
#define QUARN_ENCODER_STRUCTURES_H

#include "quarn/encoder/choices.h"
#include "quarn/encoder/list.h"
#include "quarn/encoder/octet_string.h"
#include "quarn/encoder/scalars.h"
#include "quarn/encoder/typed_slots.h"

namespace quarn::detail
{

class QUARN_API ListStructure : public Sml_Value
{
public:
    ~ListStructure() override;

    void ToBin(cBuffer* buf) override;

    void SetDynamicFlag(bool dynamic) noexcept { list.SetDynamicFlag(dynamic); }
    bool GetDynamicFlag() const noexcept { return list.GetDynamicFlag(); }

    // What the typed setters and getters stand on: the slot of a number, and the structure present
    // as soon as one was set. REQUIRES: e is of the field's type.
    int SetListElement(Sml_Type* e, unsigned i) noexcept;
    Sml_Type* GetListElement(unsigned i) const noexcept;

protected:
    // n empty slots; absent and not dynamic.
    ListStructure(unsigned typeId, unsigned n) noexcept;

    Sml_ListOf list;

private:
    Sml_ListOf* Parts() noexcept override { return &list; }
};

} // namespace quarn::detail

class QUARN_API Sml_PeriodEntry
    : public quarn::detail::TypedSlots<quarn::detail::ListStructure, Sml_OctetString, Sml_Unsigned8,
                                       Sml_Integer8, Sml_Type, Sml_Signature>
{
public:
    Sml_PeriodEntry() noexcept : TypedSlots(SML_TYPE_PERIOD_ENTRY) {}
    Sml_PeriodEntry(Sml_OctetString* objName, Sml_Unsigned8* unit, Sml_Integer8* scaler,
                    Sml_Type* value, Sml_Signature* valSignature, bool dynamic) noexcept
        : TypedSlots(SML_TYPE_PERIOD_ENTRY, objName, unit, scaler, value, valSignature)
    {
        SetDynamicFlag(dynamic);
    }
    ~Sml_PeriodEntry() override;

    int Set_ObjName(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_Unit(Sml_Unsigned8* e) noexcept { return Set<1>(e); }
    int Set_Scaler(Sml_Integer8* e) noexcept { return Set<2>(e); }
    int Set_Value(Sml_Type* e) noexcept { return Set<3>(e); }
    int Set_ValSignature(Sml_Signature* e) noexcept { return Set<4>(e); }
    Sml_OctetString* Get_ObjName() const noexcept { return Get<0>(); }
    Sml_Unsigned8* Get_Unit() const noexcept { return Get<1>(); }
    Sml_Integer8* Get_Scaler() const noexcept { return Get<2>(); }
    Sml_Type* Get_Value() const noexcept { return Get<3>(); }
    Sml_Signature* Get_ValSignature() const noexcept { return Get<4>(); }
};

class QUARN_API Sml_ListEntry
    : public quarn::detail::TypedSlots<quarn::detail::ListStructure, Sml_OctetString,
                                       Sml_Unsigned64, Sml_Time, Sml_Unsigned8, Sml_Integer8,
                                       Sml_Type, Sml_Signature>
{
public:
    Sml_ListEntry() noexcept : TypedSlots(SML_TYPE_LIST_ENTRY) {}
    Sml_ListEntry(Sml_OctetString* objName, Sml_Unsigned64* status, Sml_Time* valTime,
                  Sml_Unsigned8* unit, Sml_Integer8* scaler, Sml_Type* value,
                  Sml_Signature* valSignature, bool dynamic) noexcept
        : TypedSlots(SML_TYPE_LIST_ENTRY, objName, status, valTime, unit, scaler, value,
                     valSignature)
    {
        SetDynamicFlag(dynamic);
    }
    ~Sml_ListEntry() override;

    int Set_ObjName(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_Status(Sml_Unsigned64* e) noexcept { return Set<1>(e); }
    int Set_ValTime(Sml_Time* e) noexcept { return Set<2>(e); }
    int Set_Unit(Sml_Unsigned8* e) noexcept { return Set<3>(e); }
    int Set_Scaler(Sml_Integer8* e) noexcept { return Set<4>(e); }
    int Set_Value(Sml_Type* e) noexcept { return Set<5>(e); }
    int Set_ValSignature(Sml_Signature* e) noexcept { return Set<6>(e); }
    Sml_OctetString* Get_ObjName() const noexcept { return Get<0>(); }
    Sml_Unsigned64* Get_Status() const noexcept { return Get<1>(); }
    Sml_Time* Get_ValTime() const noexcept { return Get<2>(); }
    Sml_Unsigned8* Get_Unit() const noexcept { return Get<3>(); }
    Sml_Integer8* Get_Scaler() const noexcept { return Get<4>(); }
    Sml_Type* Get_Value() const noexcept { return Get<5>(); }
    Sml_Signature* Get_ValSignature() const noexcept { return Get<6>(); }
};

// One slot for each element, all empty: the library does not encode tupel entries any further.
class QUARN_API Sml_TupelEntry : public quarn::detail::ListStructure
{
public:
    explicit Sml_TupelEntry(bool dynamic) noexcept;
    ~Sml_TupelEntry() override;
};

// The way to a node of a parameter tree, root first: names of six bytes.
class QUARN_API Sml_TreePath : public quarn::detail::ListStructure
{
public:
    explicit Sml_TreePath(int n) noexcept : Sml_TreePath(n, true) {} // dynamic
    Sml_TreePath(int n, bool dynamic) noexcept;
    ~Sml_TreePath() override;

    // Set entry i, from six bytes, from a number (its low 48 bits, most significant byte first in
    // the encoding), or as it is. SML_LIST_OK; SML_LIST_BAD_INDEX; SML_LIST_NO_ELEMENT when the
    // entry is null or could not be created. Entries that the first two create belong to a dynamic
    // path; of a path that is not dynamic, the caller deletes them through GetTreePath_OStr.
    int SetTreePath(const char* name, int i) noexcept;
    template <typename Byte, typename = quarn::detail::IfUnsignedChar<Byte>>
    int SetTreePath(const Byte* name, int i) noexcept
    {
        return SetTreePath(quarn::detail::AsChars(name), i);
    }
    int SetTreePath(long long name, int i) noexcept;
    int SetTreePath(Sml_OctetString* entry, int i) noexcept;

    int GetCount() const noexcept { return list.GetCount(); }
    // Entry i, or null with a trace line at level 2.
    Sml_OctetString* GetTreePath_OStr(int i) const noexcept;
    // Its first six bytes, first byte least significant, or 0 with a trace line at level 2.
    long long GetTreePath_LL(int i) const noexcept;

private:
    int SetNewEntry(Sml_OctetString* entry, int i) noexcept;
    Sml_OctetString* Entry(const char* caller, int i) const noexcept;
};

// A node of a parameter tree: its name, its value, and the list of its children (Sml_Tree).
class QUARN_API Sml_Tree
    : public quarn::detail::TypedSlots<quarn::detail::ListStructure, Sml_OctetString,
                                       Sml_ProcParValue, Sml_ListOf>
{
public:
    Sml_Tree() noexcept : TypedSlots(SML_TYPE_TREE) {} // absent
    Sml_Tree(Sml_OctetString* name, Sml_ProcParValue* value, Sml_ListOf* children,
             bool dynamic) noexcept
        : TypedSlots(SML_TYPE_TREE, name, value, children)
    {
        SetDynamicFlag(dynamic);
    }
    ~Sml_Tree() override;

    // From the first call of a setter on the tree is dynamic: it owns its parts.
    int Set_ParName(Sml_OctetString* e) noexcept { return SetOwned<0>(e); }
    int Set_ParValue(Sml_ProcParValue* e) noexcept { return SetOwned<1>(e); }
    int Set_ChildList(Sml_ListOf* e) noexcept { return SetOwned<2>(e); }
    Sml_OctetString* Get_ParName() const noexcept { return Get<0>(); }
    Sml_ProcParValue* Get_ParValue() const noexcept { return Get<1>(); }
    Sml_ListOf* Get_ChildList() const noexcept { return Get<2>(); }

private:
    template <std::size_t I>
    int SetOwned(Field<I>* e) noexcept
    {
        const int rc = Set<I>(e);
        SetDynamicFlag(true);
        return rc;
    }
};

#endif
