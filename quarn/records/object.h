// What the record classes are made of. A class is a list of fields, or holds a list or a choice
// (values.h, lists.h, tree.h); Object makes of it what hosts use, and the library does the work,
// once for all classes, by a table that follows from the declaration (engine.h).
//
// The getters and setters of the named fields (Codepage has GetCodepage, and so on) never throw:
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
#include "quarn/foundation/labels.h"
#include "quarn/foundation/plain.h"
#include "quarn/foundation/record_builder.h"

#include <string>
#include <type_traits>
#include <utility>

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

// How a field differs from the plain case, any of them together.
enum eRULE : unsigned {
    RULE_REQUIRED = 1,   // its class is not valid without it
    RULE_ONE_OF = 2,     // nor without at least one of those that have this rule
    RULE_OR_EMPTY = 4,   // when it is missing, it is present and empty
    RULE_IF_RECORD = 8,  // a structure whose record may be missing without a word
    RULE_AS_RECORD = 16, // a structure that is present as soon as its record is, valid or not
    RULE_TOGETHER = 32,  // with the two in front, present as soon as one of the three is
    RULE_OR_FROM = 64    // it may stand under a second label
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

// Where the description of a class has come to: the next row, and the place behind the last field.
struct Description {
    Row* pNext;
    unsigned uiEnd = 0;

    template <typename T>
    constexpr unsigned NextPlaceOf() const
    {
        constexpr unsigned unit = alignof(T);
        return (uiEnd + unit - 1) / unit * unit;
    }
};

struct Access; // the library's, to what is protected

template <typename T, const auto& Text>
class Field : protected Holder<T>
{
protected:
    static constexpr std::size_t kRows = 1;

    bool Get(T& out) const noexcept { return IsPresent() && TryAssign(out, this->value); }
    bool Set(const T& v) noexcept
    {
        if (!TryAssign(this->value, v))
            return false;
        this->bPresent = true;
        return true;
    }
    bool IsPresent() const noexcept { return this->bPresent; }
    // Appends its rows.
    static constexpr void Describe(Description& to, unsigned rules)
    {
        static_assert(sizeof Text > 4 && sizeof Text <= kReadableName);
        const auto place = to.NextPlaceOf<Holder<T>>();
        to.uiEnd = place + unsigned{sizeof(Holder<T>)};
        unsigned number = 0;
        if constexpr (kKindOf<T> == KIND_RECORD) {
            number = T::kNumber;
            if (number == CLASS_TIME) // which says nothing when its record is missing
                rules |= RULE_IF_RECORD;
        }
        const int parKind = kKindOf<T> == kShort ? KIND_SINT : kKindOf<T>;
        const unsigned value = to.uiEnd - unsigned{sizeof(T)};
        *to.pNext++ = {Text, sizeof Text, kKindOf<T>, parKind, number, place, value, rules};
    }

    friend struct Access;
};

// One row of a table of fields: the field, its getter, its type, its label.
#define QUARN_FIELD(Name, Getter, Type, Label)                                                     \
    struct Name : Field<Type, label::Label> {                                                      \
        bool Getter(Type& v) const noexcept { return Get(v); }                                     \
    };

// The same for a field with a setter beside its getter: SettableName is Name with it.
#define QUARN_SETTER(Name, Setter)                                                                 \
    struct Settable##Name : Name {                                                                 \
        bool Setter(const decltype(value)& v) noexcept { return Set(v); }                          \
    };

template <class F, eRULE Rule>
struct Ruled : F {
protected:
    static constexpr void Describe(Description& to, unsigned rules)
    {
        F::Describe(to, rules | Rule);
    }
};
template <class F>
using Required = Ruled<F, RULE_REQUIRED>;
template <class F>
using OneOf = Ruled<F, RULE_ONE_OF>;
template <class F>
using OrEmpty = Ruled<F, RULE_OR_EMPTY>;
template <class F>
using IfRecord = Ruled<F, RULE_IF_RECORD>;
template <class F>
using AsRecord = Ruled<F, RULE_AS_RECORD>;

// A field that may also stand under a second label. It is written under the first.
template <class F, const auto& Second>
struct OrFrom : F {
protected:
    static constexpr void Describe(Description& to, unsigned rules)
    {
        F::Describe(to, rules | RULE_OR_FROM);
        to.pNext[-1].pcSecond = Second;
    }
};

// The fields of a class, in the order in which they are written.
template <class... F>
struct FieldSet : F... {
protected:
    static constexpr std::size_t kRows = (0 + ... + F::kRows);

    static constexpr void Describe(Description& to, unsigned rules)
    {
        to.uiEnd = to.NextPlaceOf<FieldSet>(); // that of its widest field, wherever this one stands
        (F::Describe(to, rules), ...);
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

// A class that hosts use, and what it is: an object as quarn::detail knows it.
#define QUARN_CLASS(Name, ...)                                                                     \
    namespace quarn::detail                                                                        \
    {                                                                                              \
    using Name##_ = __VA_ARGS__;                                                                   \
    }                                                                                              \
    class QUARN_API Name : public quarn::detail::Name##_                                           \
    {                                                                                              \
    public:                                                                                        \
        using Object::Object;                                                                      \
    };

template <eCLASS Number, class... F>
using Structure = Object<Number, FieldSet<F...>>;

} // namespace quarn::detail

#endif
