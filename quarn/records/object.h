// What every class of this wing is wrapped in: Object makes a public, non-throwing class of a core
// that says only what it holds. The work is done by the library, once for all classes; see
// engine.h.
//
// A record that cannot be taken over whole (no memory is left, or trees are nested more than
// SML_MAX_TREE_DEPTH levels deep) gives an object without any field, and so does a copy for which
// no memory is left; LibQuarn traces why at level 2.
#ifndef QUARN_RECORDS_OBJECT_H
#define QUARN_RECORDS_OBJECT_H

#include "quarn/foundation/trace.h"
#include "quarn/records/field.h"

namespace quarn::detail
{

template <class Traits>
class ListCore;

template <class... Core>
struct ClassList {
    static constexpr std::size_t kCount = sizeof...(Core);
    // The place of a core in the list.
    template <class Of>
    static constexpr unsigned Find()
    {
        unsigned place = 0;
        static_cast<void>((... || (std::is_same_v<Core, Of> || (++place, false))));
        return place;
    }
};

namespace tupel
{
struct Fields;
}

// The cores of all classes. A class is known to the library by its place in this list: what is
// added comes last.
using Classes =
    ClassList<struct TimeFields, struct ListTypeFields, class ValueCore, struct PeriodEntryFields,
              tupel::Fields, struct HeaderEntryFields, struct ValueEntryFields,
              struct ListEntryFields, struct ProfObjPeriodEntryFields, ListCore<struct ListTraits>,
              ListCore<struct PeriodListTraits>, ListCore<struct ValueListTraits>,
              ListCore<struct HeaderListTraits>, ListCore<struct ProfObjPeriodListTraits>,
              ListCore<struct TreePathTraits>, ListCore<struct ObjListTraits>,
              ListCore<struct ChildListTraits>, class ProcParValueCore, struct TreeFields,
              struct OpenReqFields, struct OpenRespFields, struct GetProfileReqFields,
              struct GetProfListResFields, struct GetProfPackResFields, struct GetProcParReqFields,
              struct GetProcParResFields, struct SetProcParReqFields, struct AttentionResFields,
              struct GetListReqFields, struct GetListResFields, struct MsgHeaderFields,
              struct MsgStatusFields>;

template <class Core>
inline constexpr unsigned kNumber = Classes::Find<Core>();

// What the library does with an object of the class of that number. An operation that fails returns
// false and traces why; the object it was to fill is cleared.
struct QUARN_API Engine {
    // From the record under label, or its own label; to target likewise.
    static bool Read(unsigned number, void* object, const vorn::cRecord& record,
                     const char* label = nullptr) noexcept;
    static bool Write(unsigned number, const void* object, vorn::cRecord& target,
                      const char* label = nullptr) noexcept;
    static bool Copy(unsigned number, void* to, const void* from) noexcept;
    static bool Assign(unsigned number, void* to, const void* from) noexcept; // does operator='s
    static bool Assign(std::string& to, const std::string& from) noexcept;
    static void Settle(unsigned number, void* object) noexcept; // ends a move by operator=
    static void Clear(unsigned number, void* object) noexcept;
    static bool IsValid(unsigned number, const void* object) noexcept;
    // Appends a copy of element to a list; false, and the list as it was, without memory.
    static bool Add(unsigned number, void* list, const void* element) noexcept;
};

// Where a structure looks for its fields in the record that it is given.
enum class eFIELDS {
    DIRECT,  // in that very record
    EITHER,  // in the record under the structure's label, or else in that very record
    ENCLOSED // in the record under the structure's label
};

inline constexpr vorn::eLEVEL kUntraced = vorn::eLEVEL(0);

struct Shape {
    const char* pcClass;       // as trace lines name it
    Label own;                 // of the record that holds the fields
    eFIELDS where;             // the fields are read from
    vorn::eLEVEL missingLevel; // of the line that says that there is no such record; 0: no line
    bool bCopiedWhenValid;     // operator= takes over valid objects only, others clear the target
    bool bWrittenWhenValid;    // ToRecord writes a valid object only
};

// Core is a set of fields with a kShape, a list, or one of the two choices.
template <class Core>
class Object : public Core
{
public:
    Object() noexcept = default;
    explicit Object(const vorn::cRecord& record) noexcept { Engine::Read(kId, This(), record); }
    Object(const Object& other) noexcept : Core() // equals its source, valid or not
    {
        Engine::Copy(kId, This(), other.This());
    }
    Object(Object&& other) noexcept = default;
    Object& operator=(const Object& other) noexcept
    {
        if (this != &other)
            Engine::Assign(kId, This(), other.This());
        return *this;
    }
    Object& operator=(Object&& other) noexcept
    {
        if (this != &other)
            Core::operator=(std::move(other));
        Engine::Settle(kId, This());
        return *this;
    }
    ~Object() = default;

    void Clear() noexcept { Engine::Clear(kId, This()); }
    // All required fields are present; other classes say what makes them valid.
    bool IsValid() const noexcept { return Engine::IsValid(kId, This()); }

    // Appends the object to target under its own label. False, and target unchanged, when the class
    // writes itself only when valid and is not, or when no memory is left; both are traced.
    bool ToRecord(vorn::cRecord& target) const noexcept
    {
        return Engine::Write(kId, This(), target);
    }

protected:
    static constexpr unsigned kId = kNumber<Core>;

    Core* This() noexcept { return this; }
    const Core* This() const noexcept { return this; }

    friend struct Access;
};

struct Access {
    template <class T>
    static constexpr unsigned kId = T::kId;

    // A field of a set, or a cell.
    template <class Cell>
    static auto& Value(Cell& cell)
    {
        return cell.value;
    }
    template <class Cell>
    static auto& IsPresent(Cell& cell)
    {
        return cell.bPresent;
    }
    // What a list or a choice holds.
    template <class Core>
    static auto& Content(Core& core)
    {
        return core.content;
    }
    template <class Fields>
    static void Settle(Fields& fields)
    {
        fields.Settle();
    }
    template <class Fields>
    static constexpr std::size_t kRows = Fields::kRows;
    template <class Fields>
    static constexpr void Describe(Row* row)
    {
        Fields::Describe(row, 0);
    }
    template <class Fields>
    static void Locate(void* object, Cell** cell)
    {
        static_cast<Fields*>(object)->Locate(cell);
    }
};

template <typename T>
bool TryAssign(T& to, const T& from) noexcept
{
    if constexpr (std::is_arithmetic_v<T>) {
        to = from;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return Engine::Assign(to, from);
    } else {
        T copy;
        if (!Engine::Assign(Access::kId<T>, &copy, &from))
            return false;
        to = std::move(copy);
    }
    return true;
}

template <typename T, const auto& Text>
constexpr void Field<T, Text>::Describe(Row*& row, unsigned rules)
{
    row->label = Text;
    row->ucSize = sizeof Text;
    row->value = kValueOf<T>;
    if constexpr (kValueOf<T> == eVALUE::OBJECT) {
        static_assert(sizeof(Holder<T>) == alignof(T) + sizeof(T),
                      "nothing between cell and value");
        row->ucClass = static_cast<unsigned char>(Access::kId<T>);
        row->ucBehind = static_cast<unsigned char>(alignof(T));
    }
    row++->ucRules = static_cast<unsigned char>(rules);
}

} // namespace quarn::detail

#endif
