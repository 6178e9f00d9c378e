// What the record classes are made of. A class holds the fields of a structure of the schema, or a
// list or a choice (values.h, lists.h, tree.h): labels, types and order follow from the schema, and
// the class adds the rules of its fields and the names of its getters and setters. Object makes of
// it what hosts use, and the library does the work once for all classes, by tables that it makes at
// compile time (engine.h).
//
// A field is a parameter of the label that its getter names. Its type tells the kind: std::string
// is Data, unsigned int UInt, unsigned long long UInt64, int and short SInt, long long SInt64, bool
// Bool, a class Record; of a cSmlValue the kind says what it is. Getters and setters never throw:
//   - a getter returns true and copies the field when it is present; it returns false, and leaves
//     its argument as it was, when the field is absent or no memory is left for the copy;
//   - a setter returns true; or false, with nothing changed, when no memory is left.
// A record that cannot be taken over whole (no memory is left, or trees are nested more than
// SML_MAX_TREE_DEPTH levels deep) gives an object without any field, and so does a copy for which
// no memory is left; LibQuarn traces why at level 2. An object belongs to one thread at a time;
// distinct objects are independent of each other.
#ifndef QUARN_RECORDS_OBJECT_H
#define QUARN_RECORDS_OBJECT_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/plain.h"
#include "quarn/foundation/record_builder.h"
#include "quarn/foundation/schema.h"

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

class cSmlTime;
class cSmlListType;
class cSmlValue;
class cSmlPeriodEntry;
class cSmlTupelEntry;
class cSmlHeaderEntry;
class cSmlValueEntry;
class cSmlListEntry;
class cSmlProfObjPeriodEntry;
class cSmlList;
class cSmlPeriodList;
class cSmlValueList;
class cSmlHeaderList;
class cSmlProfObjPeriodList;
class cSmlTreePath;
class cSmlObjList;
class cSmlProcParValue;
class cSmlChildList;
class cSmlTree;

namespace quarn::detail
{

// The numbers by which the library knows the classes: what is added comes last.
// clang-format off
enum eCLASS : unsigned {
    CLASS_TIME, CLASS_LIST_TYPE, CLASS_VALUE,
    CLASS_PERIOD_ENTRY, CLASS_TUPEL_ENTRY, CLASS_HEADER_ENTRY, CLASS_VALUE_ENTRY, CLASS_LIST_ENTRY,
    CLASS_PROF_OBJ_PERIOD_ENTRY,
    CLASS_LIST, CLASS_PERIOD_LIST, CLASS_VALUE_LIST, CLASS_HEADER_LIST, CLASS_PROF_OBJ_PERIOD_LIST,
    CLASS_TREE_PATH, CLASS_OBJ_LIST,
    CLASS_PROC_PAR_VALUE, CLASS_CHILD_LIST, CLASS_TREE,
    CLASS_OPEN_REQ, CLASS_OPEN_RESP, CLASS_GET_PROFILE_REQ, CLASS_GET_PROF_LIST_RES,
    CLASS_GET_PROF_PACK_RES, CLASS_GET_PROC_PAR_REQ, CLASS_GET_PROC_PAR_RES, CLASS_SET_PROC_PAR_REQ,
    CLASS_ATTENTION_RES, CLASS_GET_LIST_REQ, CLASS_GET_LIST_RES,
    CLASS_MSG_HEADER, CLASS_MSG_STATUS,
    CLASS_COUNT
};
// clang-format on

// What the library does with an object of a class. An operation that fails returns false and traces
// why; the object it was to fill is cleared.
struct QUARN_API Engine {
    // From the record under label, or under the class's own one; to target likewise.
    static bool Read(unsigned number, void* object, const vorn::cRecord& record,
                     const char* label = nullptr) noexcept;
    static bool Write(unsigned number, const void* object, vorn::cRecord& target,
                      const char* label = nullptr) noexcept;
    static bool Copy(unsigned number, void* to, const void* from) noexcept;
    // As operator= does; a text that cannot be assigned stays as it was.
    static bool Assign(unsigned number, void* to, const void* from) noexcept;
    static bool Assign(std::string& to, const std::string& from) noexcept;
    static void Settle(unsigned number, void* object) noexcept; // ends a move by operator=
    static void Clear(unsigned number, void* object) noexcept;
    static bool IsValid(unsigned number, const void* object) noexcept;
    // Appends a copy of element to a list; false, and the list as it was, when no memory is left.
    static bool Add(unsigned number, void* list, const void* element) noexcept;
};

// Assigns; false, and to as it was, when no memory is left.
template <typename T>
bool TryAssign(T& to, const T& from) noexcept
{
    if constexpr (std::is_arithmetic_v<T>) {
        to = from;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return Engine::Assign(to, from);
    } else {
        T copy;
        if (!Engine::Assign(T::kNumber, &copy, &from))
            return false;
        to = std::move(copy);
    }
    return true;
}

// The class for each structure that a field or an element of a list can be.
template <const schema::Structure* structure>
struct StructureTag {
};
cSmlTime ClassFor(StructureTag<&schema::kTime>);
cSmlPeriodEntry ClassFor(StructureTag<&schema::kPeriodEntry>);
cSmlTupelEntry ClassFor(StructureTag<&schema::kTupelEntry>);
cSmlHeaderEntry ClassFor(StructureTag<&schema::kHeaderEntry>);
cSmlValueEntry ClassFor(StructureTag<&schema::kValueEntry>);
cSmlListEntry ClassFor(StructureTag<&schema::kListEntry>);
cSmlProfObjPeriodEntry ClassFor(StructureTag<&schema::kPackPeriod>);
cSmlList ClassFor(StructureTag<&schema::kList>);
cSmlPeriodList ClassFor(StructureTag<&schema::kPeriodList>);
cSmlValueList ClassFor(StructureTag<&schema::kValueList>);
cSmlHeaderList ClassFor(StructureTag<&schema::kHeaderList>);
cSmlProfObjPeriodList ClassFor(StructureTag<&schema::kPackPeriodList>);
cSmlTreePath ClassFor(StructureTag<&schema::kTreePath>);
cSmlObjList ClassFor(StructureTag<&schema::kObjectList>);
cSmlProcParValue ClassFor(StructureTag<&schema::kProcParValue>);
cSmlChildList ClassFor(StructureTag<&schema::Tree::kChildren>);
cSmlTree ClassFor(StructureTag<&schema::Tree::kNode>);

template <typename T>
struct Type {
    using type = T;
};

// The type in which a class holds an element: a plain one, or the element's class.
template <const schema::Structure& structure, std::size_t i>
constexpr auto TypeOfElement()
{
    constexpr eKIND kind = schema::KindOf(structure[i]);
    if constexpr (structure[i].eType == schema::eTYPE::VALUE)
        return Type<cSmlValue>();
    else if constexpr (kind == KIND_RECORD)
        return Type<decltype(ClassFor(StructureTag<structure[i].pStructure>()))>();
    else if constexpr (kind == KIND_DATA)
        return Type<std::string>();
    else if constexpr (kind == KIND_BOOL)
        return Type<bool>();
    else if constexpr (kind == KIND_UINT)
        return Type<unsigned>();
    else if constexpr (kind == KIND_UINT64)
        return Type<unsigned long long>();
    else
        return Type<std::conditional_t<structure[i].uiMost == sizeof(short), short, int>>();
}
template <const schema::Structure& structure, std::size_t i>
using ElementType = typename decltype(TypeOfElement<structure, i>())::type;

// How a field differs from the plain case, any of them together.
enum eRULE : unsigned {
    RULE_REQUIRED = 1,   // its class is not valid without it
    RULE_ONE_OF = 2,     // nor without at least one of those that have this rule
    RULE_OR_EMPTY = 4,   // when it is missing, it is present and empty
    RULE_IF_RECORD = 8,  // a structure whose record may be missing without a trace line
    RULE_AS_RECORD = 16, // a structure that is present as soon as its record is, valid or not
    RULE_TOGETHER = 32,  // an SInt64, and with the two in front present as soon as one of them is
    RULE_OR_FROM = 64    // it may stand under a second label, and is written under the first
};

// The labels that a rule is for.
template <eRULE Rule, const auto&... Labels>
struct RuleFor {
    static constexpr unsigned For(std::string_view label)
    {
        return (... || (label == Labels)) ? unsigned{Rule} : 0U;
    }
    static constexpr const char* SecondFor(std::string_view) { return nullptr; }
    static constexpr std::size_t CountIn(const schema::Structure& structure)
    {
        std::size_t count = 0;
        for (const schema::Element& element : structure)
            count += For(element.label) != 0 ? 1 : 0;
        return count;
    }
    static constexpr std::size_t kCount = sizeof...(Labels);
};
template <const auto&... Labels>
using Required = RuleFor<RULE_REQUIRED, Labels...>;
template <const auto&... Labels>
using OneOf = RuleFor<RULE_ONE_OF, Labels...>;
template <const auto&... Labels>
using OrEmpty = RuleFor<RULE_OR_EMPTY, Labels...>;
template <const auto&... Labels>
using IfRecord = RuleFor<RULE_IF_RECORD, Labels...>;
template <const auto&... Labels>
using AsRecord = RuleFor<RULE_AS_RECORD, Labels...>;
template <const auto&... Labels>
using Together = RuleFor<RULE_TOGETHER, Labels...>;
template <const auto& Label, const auto& Second>
struct OrFrom : RuleFor<RULE_OR_FROM, Label> {
    static constexpr const char* SecondFor(std::string_view label)
    {
        return label == Label ? Second : nullptr;
    }
};
struct AllRequired : RuleFor<RULE_REQUIRED> {
    static constexpr unsigned For(std::string_view) { return RULE_REQUIRED; }
    static constexpr std::size_t CountIn(const schema::Structure&) { return 0; }
};

// A field in the table of its class.
struct Row {
    Label label;
    unsigned uiSize = 0; // of the label, with its end
    int iKind = 0;
    int iParKind = 0;     // of the parameter
    unsigned uiClass = 0; // of an object, the number
    unsigned uiCell = 0;  // the places of its cell and its value in an object of the class
    unsigned uiValue = 0;
    unsigned uiRules = 0;
    const char* pcSecond = nullptr; // the label that it is not written under
};

// Where the library finds a field: its presence, and the value behind it.
struct Cell {
    bool bPresent = false;
};
template <typename T>
struct Holder : Cell {
    T value{};
};

// The cells of a structure's elements, in their order.
template <std::size_t I, typename T>
struct CellAt : Holder<T> {
};
template <class Fields, class Numbers>
struct Cells;
template <class Fields, std::size_t... I>
struct Cells<Fields, std::index_sequence<I...>>
    : CellAt<I, typename Fields::template TypeAt<I>>... {
};

struct Access; // the library's, to what is protected

// What a class knows of its structure: the type and the rules of each element.
template <const schema::Structure& structure, class... Rules>
struct Plan {
    static_assert((... && (Rules::CountIn(structure) == Rules::kCount)), "a rule for no element");

    static constexpr const schema::Structure& kStructure = structure;
    static constexpr std::size_t kCount = structure.uiCount;

    static constexpr unsigned RulesFor(std::string_view label)
    {
        return (0U | ... | Rules::For(label));
    }
    static constexpr const char* SecondFor(std::string_view label)
    {
        const char* second = nullptr;
        ((second = second != nullptr ? second : Rules::SecondFor(label)), ...);
        return second;
    }
    static constexpr std::size_t IndexOf(std::string_view label)
    {
        std::size_t i = 0;
        while (i < kCount && structure[i].label != label)
            ++i;
        return i;
    }
    template <std::size_t I>
    using TypeAt = std::conditional_t<(RulesFor(structure[I].label) & RULE_TOGETHER) != 0,
                                      long long, ElementType<structure, I>>;
};

// The fields of a class: all elements of its structure, with or without a getter.
template <const schema::Structure& structure, class... Rules>
class Fields : Cells<Plan<structure, Rules...>, std::make_index_sequence<structure.uiCount>>
{
protected:
    using PlanType = Plan<structure, Rules...>;

    template <const auto& label, typename T>
    bool Get(T& out) const noexcept
    {
        return Has<label>() && TryAssign(out, CellOf<label>(*this).value);
    }
    template <const auto& label, typename T>
    bool Set(const T& v) noexcept
    {
        auto& cell = CellOf<label>(*this);
        if (!TryAssign(cell.value, v))
            return false;
        cell.bPresent = true;
        return true;
    }
    template <const auto& label>
    bool Has() const noexcept
    {
        return CellOf<label>(*this).bPresent;
    }

private:
    template <const auto& label, class F>
    static auto& CellOf(F& fields) noexcept
    {
        constexpr std::size_t i = PlanType::IndexOf(label);
        static_assert(i < PlanType::kCount, "the structure has no element of that label");
        using Held = CellAt<i, typename PlanType::template TypeAt<i>>;
        return static_cast<std::conditional_t<std::is_const_v<F>, const Held, Held>&>(fields);
    }

    friend struct Access;
};

template <eCLASS Number, class Core>
class Object : public Core
{
public:
    using CoreType = Core;
    static constexpr eCLASS kNumber = Number;

    Object() noexcept = default;
    explicit Object(const vorn::cRecord& record) noexcept { Engine::Read(Number, This(), record); }
    Object(const Object& other) noexcept : Core() // equals its source, valid or not
    {
        Engine::Copy(Number, This(), other.This());
    }
    Object(Object&& other) noexcept = default;
    Object& operator=(const Object& other) noexcept
    {
        if (this != &other)
            Engine::Assign(Number, This(), other.This());
        return *this;
    }
    Object& operator=(Object&& other) noexcept
    {
        if (this != &other)
            Core::operator=(std::move(other));
        Engine::Settle(Number, This());
        return *this;
    }
    ~Object() = default;

    void Clear() noexcept { Engine::Clear(Number, This()); }
    // All required fields are present; other classes say what makes them valid.
    bool IsValid() const noexcept { return Engine::IsValid(Number, This()); }

    // Appends the object to target under its own label. False, and target unchanged, when the class
    // writes itself only when valid and is not, or when no memory is left; both are traced.
    bool ToRecord(vorn::cRecord& target) const noexcept
    {
        return Engine::Write(Number, This(), target);
    }

protected:
    Core* This() noexcept { return this; }
    const Core* This() const noexcept { return this; }
};

template <eCLASS Number, const schema::Structure& structure, class... Rules>
using ObjectOf = Object<Number, Fields<structure, Rules...>>;

} // namespace quarn::detail

#endif
