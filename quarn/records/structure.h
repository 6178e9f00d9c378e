// What every class of this wing is wrapped in, and what most of them wrap: Object makes a public,
// non-throwing class of a core that reads, writes and copies itself; Structure is the core that is
// given by a set of fields and a Shape. Their bodies are in engine.h and compiled into the library.
//
// A record that cannot be taken over whole (no memory is left, or trees are nested more than
// SML_MAX_TREE_DEPTH levels deep) gives an object without any field, and so does a copy for which
// no memory is left; LibQuarn traces why at level 2.
#ifndef QUARN_RECORDS_STRUCTURE_H
#define QUARN_RECORDS_STRUCTURE_H

#include "quarn/records/field.h"

namespace quarn::detail
{

// A core has kClass (its name in trace lines), kOwnLabel (of its parameter in the record around
// it), kIsAround (whether it is read from that very record), kIsParameter (whether it writes that
// parameter itself, and not a record under the label), kCopiedWhenValid (whether operator= takes
// over valid objects only, others clearing the target), IsValid, Clear, DropUnassigned (what
// operator= does not take over), and Access's ReadFrom, WriteInto and CopyFrom.
template <class Core>
class QUARN_API Object : public Core
{
public:
    Object() noexcept = default;
    explicit Object(const vorn::cRecord& record) noexcept;
    Object(const Object& other) noexcept; // equals its source, valid or not
    Object(Object&& other) noexcept = default;
    Object& operator=(const Object& other) noexcept;
    Object& operator=(Object&& other) noexcept;
    ~Object() = default;

    // Appends the object to target under its own label. False, and target unchanged, when the class
    // writes itself only when valid and is not, or when no memory is left; both are traced.
    bool ToRecord(vorn::cRecord& target) const noexcept;

protected:
    void Assign(const Object& other);

    friend struct Access;
};

// Where a structure looks for its fields in the record that it is given.
enum class eFIELDS {
    DIRECT,  // in that very record
    EITHER,  // in the record under the structure's label, or else in that very record
    ENCLOSED // in the record under the structure's label
};

struct Shape {
    const char* pcClass;       // as trace lines name it
    Label own;                 // of the record that holds the fields
    eFIELDS where;             // the fields are read from
    vorn::eLEVEL missingLevel; // of the line that says that there is no such record; 0: no line
    bool bCopiedWhenValid;     // see kCopiedWhenValid above
    bool bWrittenWhenValid;    // ToRecord writes a valid object only
};

inline constexpr vorn::eLEVEL kUntraced = vorn::eLEVEL(0);

template <class Fields>
class QUARN_API Structure : public Fields
{
public:
    bool IsValid() const noexcept { return Fields::IsComplete(); } // all required fields present

protected:
    static constexpr const char* kClass = Fields::kShape.pcClass;
    static constexpr const Label& kOwnLabel = Fields::kShape.own;
    static constexpr bool kIsAround = Fields::kShape.where == eFIELDS::DIRECT;
    static constexpr bool kIsParameter = false;
    static constexpr bool kCopiedWhenValid = Fields::kShape.bCopiedWhenValid;

    void ReadFrom(const vorn::cRecordPar* own, Source& around);
    bool WriteInto(RecordBuilder& own) const;

    friend struct Access;
};

// A message, its header or its status.
template <class Fields>
using Body = Object<Structure<Fields>>;

// An entry, which can be cleared.
template <class Fields>
class Entry : public Object<Structure<Fields>>
{
public:
    using Object<Structure<Fields>>::Object;
    void Clear() noexcept { Fields::Clear(); }
};

} // namespace quarn::detail

#endif
