// What the record classes are made of: a field with its presence flag, the rules that a field may
// have, and the set of fields that a class declares. A class of this wing is the list of its
// fields; it becomes a table of rows, by which the library reads, writes and copies (engine.h).
//
// The members that hosts use are the getters and setters of the named fields (Codepage has
// GetCodepage, and so on). They never throw:
//   - a getter returns true and copies the field when it is present; it returns false, and leaves
//     its argument as it was, when the field is absent or no memory is left for the copy;
//   - a setter returns true; or false, with nothing changed, when no memory is left.
// An object belongs to one thread at a time; distinct objects are independent of each other.
#ifndef QUARN_RECORDS_FIELD_H
#define QUARN_RECORDS_FIELD_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/labels.h"
#include "quarn/foundation/plain.h"
#include "quarn/foundation/record_builder.h"

#include <string>
#include <type_traits>
#include <utility>

namespace quarn::detail
{

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
};

struct Access; // the library's, to what is protected

// Assigns; false, and to as it was, when no memory is left.
template <typename T>
bool TryAssign(T& to, const T& from) noexcept;

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
    static constexpr void Describe(Description& to, unsigned rules);

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
        (F::Describe(to, rules), ...);
    }

    friend struct Access;
};

} // namespace quarn::detail

#endif
