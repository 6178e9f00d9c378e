// How the record classes read, write and copy, defined once. Each class is described by a constant:
// a structure by its table of rows, a list by its shape and its element's class, a choice by itself
// (engine.cpp). Objects are a void* to their core here. All but what is noexcept may throw; Engine,
// through which hosts come in, catches (engine.cpp). No host needs these files.
#ifndef QUARN_RECORDS_ENGINE_H
#define QUARN_RECORDS_ENGINE_H

#include "quarn/foundation/limits.h"
#include "quarn/foundation/trace.h"
#include "quarn/records/envelope.h"

#include <array>
#include <stdexcept>

// NOLINTBEGIN(cppcoreguidelines-virtual-class-destructor): the classes are constants
namespace quarn::detail
{

// What an object is read from: a record, and how many lists stand around it.
struct Source : RecordReader<> {
    explicit Source(unsigned depth) : uiDepth(depth) {}
    Source(const vorn::cRecord& rec, unsigned depth) : RecordReader(rec), uiDepth(depth) {}

    unsigned uiDepth;
};

// Where a structure looks for its fields in the record that it is given.
enum class eFIELDS {
    DIRECT,  // in that very record
    EITHER,  // in the record under the structure's label, or else in that very record
    ENCLOSED // in the record under the structure's label
};

inline constexpr vorn::eLEVEL kUntraced = vorn::eLEVEL(0);

struct Shape {
    const char* pcClass; // as trace lines name it
    eFIELDS where = eFIELDS::ENCLOSED;
    vorn::eLEVEL missingLevel = kError; // of the line on no record under the label; 0: no line
    bool bCopiedWhenValid = false;      // operator= takes over valid objects only, others clear
    bool bWrittenWhenValid = false;     // ToRecord writes a valid object only
    Label own{};                        // of its parameter in the record around it
    unsigned uiNumber = CLASS_COUNT;    // of the class
};

class Class
{
public:
    constexpr explicit Class(const Shape& given) : shape(given) {}

    virtual void Clear(void* object) const noexcept = 0;
    virtual bool IsValid(const void* object) const noexcept = 0;
    // Fills a cleared object from the parameter that stands under its label in the record around
    // it, or null; returns whether it is valid.
    virtual bool ReadFrom(void* object, const vorn::cRecordPar* par, Source& around) const = 0;
    // Fills the open record with what stands under the object's label; false when nothing is to.
    virtual bool WriteInto(const void* object, RecordBuilder& to) const = 0;
    // Appends the object under a label, as a whole or not at all.
    virtual bool Write(const void* object, RecordBuilder& to, const Label& label) const
    {
        to.Open();
        const bool written = WriteInto(object, to);
        if (written)
            to.AppendRecordPar(label, to.Close(), 0);
        else
            to.Drop();
        return written;
    }
    virtual bool WriteTo(vorn::cRecord& target, const void* object, const char* label) const
    {
        RecordBuilder to;
        to.Open();
        const bool written = WriteInto(object, to);
        if (written)
            target.AppendRecordPar(label, to.Get(to.Close()), 0);
        return written;
    }
    // The same inside a record of its own, which is empty if the object is not written.
    void WriteNested(const void* object, RecordBuilder& to, const Label& label) const
    {
        to.Open();
        if (shape.where == eFIELDS::DIRECT)
            WriteInto(object, to);
        else
            Write(object, to, shape.own);
        to.AppendRecordPar(label, to.Close(), 0);
    }
    // Makes the object what another one is; and takes from it what operator= does not take over.
    virtual void Copy(void* to, const void* from) const = 0;
    virtual void Settle(void*) const noexcept {}
    virtual void Add(void*, const void*) const {} // of a list: appends a copy of an element

    bool Read(void* object, Source& around) const
    {
        const bool direct = shape.where == eFIELDS::DIRECT;
        return ReadFrom(object, direct ? nullptr : around.Find(shape.own), around);
    }
    void Assign(void* to, const void* from) const
    {
        if (shape.bCopiedWhenValid && !IsValid(from))
            Clear(to);
        else
            Copy(to, from);
        Settle(to);
    }

    Shape shape;

protected:
    ~Class() = default;

    void TraceMissing() const noexcept
    {
        if (shape.missingLevel != kUntraced)
            Trace(LibQuarn, shape.missingLevel, "%s::CTOR: record invalid/empty!", shape.pcClass);
    }
    bool RefuseToWrite() const noexcept
    {
        Trace(LibQuarn, kError, "%s::ToRecord: class invalid", shape.pcClass);
        return false;
    }
};

// The classes by their numbers.
extern const std::array<const Class*, CLASS_COUNT> kClasses;

template <typename T>
const Class& ClassOf() noexcept
{
    return *kClasses[T::kNumber];
}

template <typename T>
T& ValueIn(Cell& cell)
{
    return static_cast<Holder<T>&>(cell).value;
}

// Does something with a plain value, as what it is.
template <typename... T, typename Do>
void WithOneOf(int kind, Cell& cell, Do run)
{
    static_cast<void>((... || (kind == kKindOf<T> && (run(ValueIn<T>(cell)), true))));
}
template <typename Do>
void WithPlain(int kind, Cell& cell, Do run)
{
    WithOneOf<unsigned long long, unsigned, int, std::string, long long, bool, short>(kind, cell,
                                                                                      run);
}

constexpr unsigned kRulesOfRecords = RULE_IF_RECORD | RULE_AS_RECORD;
constexpr unsigned kRulesOnMissing = RULE_OR_EMPTY | RULE_OR_FROM | RULE_TOGETHER;

// A row's field in an object.
struct Slot {
    Slot(const Row& of, const void* object)
        : row(of), cell(*static_cast<Cell*>(PlaceIn(object, of.uiCell)))
    {
    }
    static void* PlaceIn(const void* object, std::size_t place)
    {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): who reads writes to no cell
        return static_cast<char*>(const_cast<void*>(object)) + place;
    }

    void* Object() const { return PlaceIn(&cell, row.uiValue - row.uiCell); }
    const Class& Type() const { return *kClasses[row.uiClass]; }
    // Takes over what par, or null, holds of the field; whether it is present then.
    bool Read(const vorn::cRecordPar* par, Source& around) const
    {
        const bool isOfKind = par != nullptr && par->GetType(1) == row.iParKind && !par->IsEmpty();
        if (row.iKind == KIND_RECORD) {
            if ((row.uiRules & kRulesOfRecords) != 0 && !isOfKind)
                return false;
            return Type().ReadFrom(Object(), par, around) || (row.uiRules & RULE_AS_RECORD) != 0;
        }
        if (isOfKind)
            WithPlain(row.iKind, cell, [par](auto& v) { Get(*par, v); });
        return isOfKind;
    }
    void Write(RecordBuilder& to) const
    {
        if (row.iKind == KIND_RECORD)
            Type().Write(Object(), to, row.label);
        else
            WithPlain(row.iKind, cell,
                      [&to, &label = row.label](const auto& v) { Append(to, label, v); });
    }
    void Copy(const Slot& from) const
    {
        cell.bPresent = from.cell.bPresent;
        if (row.iKind == KIND_RECORD)
            Type().Copy(Object(), from.Object());
        else
            WithPlain(row.iKind, cell,
                      [&](auto& v) { v = ValueIn<std::decay_t<decltype(v)>>(from.cell); });
    }
    void Clear() const
    {
        cell.bPresent = false;
        if (row.iKind == KIND_RECORD)
            Type().Clear(Object());
        else
            WithPlain(row.iKind, cell, [](auto& v) { v = {}; });
    }

    const Row& row;
    Cell& cell;
};

// What the library gets at in the fields of a class: the table of their rows, made from the schema
// and the rules, and a field by its label.
struct Access {
    template <const auto& label, class F>
    static auto& Field(F& fields)
    {
        return F::template CellOf<label>(fields);
    }

    template <class F>
    static constexpr const schema::Structure& kStructure = F::PlanType::kStructure;

    template <class F>
    static constexpr auto Rows()
    {
        return Rows<F>(std::make_index_sequence<F::PlanType::kCount>());
    }

private:
    template <class F, std::size_t... I>
    static constexpr auto Rows(std::index_sequence<I...>)
    {
        unsigned end = 0;
        const std::array<Row, sizeof...(I)> rows{RowOf<F, I>(end)...};
        if (NextPlace(end, alignof(F)) != sizeof(F))
            throw "fields do not lie one behind the other";
        return rows;
    }
    // The row of a field, whose cell lies behind end.
    template <class F, std::size_t I>
    static constexpr Row RowOf(unsigned& end)
    {
        using Plan = typename F::PlanType;
        using T = typename Plan::template TypeAt<I>;
        constexpr std::string_view label = Plan::kStructure[I].label;
        static_assert(label.size() >= 4 && label.size() < kReadableName);
        const unsigned place = NextPlace(end, alignof(Holder<T>));
        end = place + unsigned{sizeof(Holder<T>)};
        unsigned rules = Plan::RulesFor(label);
        unsigned number = 0;
        if constexpr (kKindOf<T> == KIND_RECORD) {
            number = T::kNumber;
            if (number == CLASS_TIME) // which says nothing when its record is missing
                rules |= RULE_IF_RECORD;
        }
        const int parKind = kKindOf<T> == kShort ? KIND_SINT : kKindOf<T>;
        return {Label(label),
                unsigned{label.size()} + 1,
                kKindOf<T>,
                parKind,
                number,
                place,
                end - unsigned{sizeof(T)},
                rules,
                Plan::SecondFor(label)};
    }
    static constexpr unsigned NextPlace(unsigned end, unsigned unit)
    {
        return (end + unit - 1) / unit * unit;
    }
};

class StructureClass : public Class
{
public:
    static constexpr std::size_t kMaxRows = 32; // that the bits of a word stand for

    constexpr StructureClass(const Shape& given, const Row* rows, std::size_t count)
        : Class(given), pRows(rows), uiCount(count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            const unsigned rules = rows[i].uiRules;
            const bool isTold = rows[i].iKind == KIND_RECORD && (rules & kRulesOfRecords) == 0;
            uiRequired |= (rules & RULE_REQUIRED) != 0 ? 1U << i : 0;
            uiOneOf |= (rules & RULE_ONE_OF) != 0 ? 1U << i : 0;
            uiMissed |= isTold || (rules & kRulesOnMissing) != 0 ? 1U << i : 0;
        }
    }

    void Clear(void* object) const noexcept final
    {
        for (std::size_t i = 0; i < uiCount; ++i)
            Slot(pRows[i], object).Clear();
    }
    bool IsValid(const void* object) const noexcept override { return IsComplete(Present(object)); }
    bool ReadFrom(void* object, const vorn::cRecordPar* par, Source& around) const override
    {
        Source inside(around.uiDepth);
        if (inside.Open(par))
            return ReadRows(object, inside);
        if (shape.where != eFIELDS::ENCLOSED)
            return ReadRows(object, around);
        TraceMissing();
        return false;
    }
    bool ReadElement(void* element, Source& in) const // as Read, without a call
    {
        return shape.where == eFIELDS::DIRECT
                   ? ReadRows(element, in)
                   : StructureClass::ReadFrom(element, in.Find(shape.own), in);
    }
    [[gnu::flatten]] bool WriteInto(const void* object, RecordBuilder& to) const override
    {
        const std::uint32_t present = Present(object);
        if (shape.bWrittenWhenValid && !IsComplete(present))
            return RefuseToWrite();
        std::size_t count = 0;
        for (std::uint32_t left = present; left != 0; left &= left - 1)
            ++count;
        to.Expect(count);
        for (std::uint32_t left = present; left != 0; left &= left - 1)
            Slot(pRows[__builtin_ctz(left)], object).Write(to);
        return true;
    }
    void Copy(void* to, const void* from) const final
    {
        for (std::size_t i = 0; i < uiCount; ++i)
            Slot(pRows[i], to).Copy(Slot(pRows[i], from));
    }

private:
    bool IsComplete(std::uint32_t present) const noexcept
    {
        return (present & uiRequired) == uiRequired && (uiOneOf == 0 || (present & uiOneOf) != 0);
    }
    std::uint32_t Present(const void* object) const noexcept
    {
        std::uint32_t present = 0;
        for (std::size_t i = 0; i < uiCount; ++i)
            present |= Slot(pRows[i], object).cell.bPresent ? 1U << i : 0;
        return present;
    }
    [[gnu::flatten]] bool ReadRows(void* object, Source& from) const
    {
        const vorn::cRecordPar* pars[kMaxRows];
        const std::uint32_t isFound = from.FindRows(pRows, uiCount, pars);
        std::uint32_t present = 0;
        for (std::uint32_t left = isFound | uiMissed; left != 0; left &= left - 1) {
            const int i = __builtin_ctz(left);
            const Slot slot(pRows[i], object);
            const vorn::cRecordPar* const par = (isFound >> i & 1U) != 0 ? pars[i] : nullptr;
            if ((slot.row.uiRules & kRulesOnMissing) != 0) {
                ReadByRules(object, i, par, from, present);
            } else if (slot.Read(par, from)) {
                slot.cell.bPresent = true;
                present |= 1U << i;
            }
        }
        return IsComplete(present);
    }
    [[gnu::noinline]] void ReadByRules(void* object, int i, const vorn::cRecordPar* par,
                                       Source& from, std::uint32_t& present) const
    {
        const Slot slot(pRows[i], object);
        const Row& row = slot.row;
        if (row.pcSecond != nullptr && (par == nullptr || par->GetType(1) != row.iParKind))
            par = from.Find(row.pcSecond);
        const bool isRead = slot.Read(par, from) || (row.uiRules & RULE_OR_EMPTY) != 0;
        present |= isRead ? 1U << i : 0;
        const int first = (row.uiRules & RULE_TOGETHER) != 0 ? i - 2 : i;
        for (int j = first; j <= i && present >> first != 0; ++j) {
            Slot(pRows[j], object).cell.bPresent = true;
            present |= 1U << j;
        }
    }

    const Row* pRows;
    std::size_t uiCount;
    // A bit for each row: with the two rules, and to be looked at even without a parameter.
    std::uint32_t uiRequired = 0;
    std::uint32_t uiOneOf = 0;
    std::uint32_t uiMissed = 0;
};

// A time of another type than 3 is written and assigned without offsets.
class TimeClass final : public StructureClass
{
public:
    using StructureClass::StructureClass;

    bool IsValid(const void* time) const noexcept override
    {
        const auto& fields = *static_cast<const TimeFields*>(time);
        const unsigned type = Access::Field<label::type>(fields).value;
        return StructureClass::IsValid(time) &&
               (type <= 2 || (type == 3 && Access::Field<label::locOffset>(fields).bPresent &&
                              Access::Field<label::seaOffset>(fields).bPresent));
    }
    bool ReadFrom(void* time, const vorn::cRecordPar* par, Source& around) const override
    {
        return StructureClass::ReadFrom(time, par, around) && IsValid(time);
    }
    bool WriteInto(const void* time, RecordBuilder& to) const override
    {
        if (!IsValid(time))
            return RefuseToWrite();
        TimeFields written = *static_cast<const TimeFields*>(time);
        Settle(&written);
        return StructureClass::WriteInto(&written, to);
    }
    void Settle(void* time) const noexcept override
    {
        auto& fields = *static_cast<TimeFields*>(time);
        const auto& type = Access::Field<label::type>(fields);
        if (type.bPresent && type.value != 3) {
            Access::Field<label::locOffset>(fields).bPresent = false;
            Access::Field<label::seaOffset>(fields).bPresent = false;
        }
    }
};

// A list type of another type than 1 is assigned without its time.
class ListTypeClass final : public StructureClass
{
public:
    using StructureClass::StructureClass;

    void Settle(void* listType) const noexcept override
    {
        auto& fields = *static_cast<ListTypeFields*>(listType);
        const auto& type = Access::Field<label::type>(fields);
        if (type.bPresent && type.value != 1)
            Access::Field<label::SmlTime>(fields).bPresent = false;
    }
};

struct ListTexts {
    const char* pcEmptyName;    // what the line on an empty list record names
    const char* pcElementFault; // the line on a parameter that is no element
    bool bWrapped = false;      // an element's own record is written inside another of that label
    bool bStepsByLabel = false; // parameters of other labels are passed over without a line
    const char* pcInvalid = "class invalid/no entries"; // the line on writing an empty list
    vorn::eLEVEL invalidLevel = kError;                 // and its level
};

template <class Core>
class ListClass final : public Class
{
public:
    static constexpr const schema::Structure& kStructure = Core::kStructure;

    constexpr ListClass(const Shape& given, const ListTexts& list) : Class(given), texts(list) {}

    void Clear(void* list) const noexcept override { Of(list).clear(); }
    bool IsValid(const void* list) const noexcept override { return !Of(list).empty(); }
    bool ReadFrom(void* list, const vorn::cRecordPar* par, Source& around) const override
    {
        RecordReader<> record;
        if (!record.Open(par)) {
            TraceMissing();
            return false;
        }
        const char* const label = kElement;
        const int count = record.Count(label, kSize);
        if (count < 1) {
            Trace(LibQuarn, kError, "%s: Record %s is empty", shape.pcClass, texts.pcEmptyName);
            return false;
        }
        const unsigned depth = around.uiDepth + 1;
        if (depth >= SML_MAX_TREE_DEPTH)
            throw std::length_error("trees nested too deep");
        auto& elements = Of(list);
        elements.resize(static_cast<std::size_t>(count));
        std::size_t taken = 0;
        const char* const next = texts.bStepsByLabel ? label : nullptr;
        record.VisitElements(label, next, [&](const vorn::cRecordPar& element) {
            if (ReadElement(elements[taken], element, depth))
                ++taken;
            else
                Trace(LibQuarn, kError, "%s: %s", shape.pcClass, texts.pcElementFault);
            return taken < elements.size();
        });
        elements.resize(taken);
        return taken > 0;
    }
    bool WriteInto(const void* list, RecordBuilder& to) const override
    {
        const auto& elements = Of(list);
        if (elements.empty()) {
            Trace(LibQuarn, texts.invalidLevel, "%s::ToRecord: %s", shape.pcClass, texts.pcInvalid);
            return false;
        }
        to.Expect(elements.size());
        for (const Element& element : elements) {
            if constexpr (!kHoldsObjects)
                Append(to, kElement, element);
            else if (texts.bWrapped)
                Type().WriteNested(&element, to, kElement);
            else
                Type().Class::Write(&element, to, kElement);
        }
        return true;
    }
    void Copy(void* to, const void* from) const override
    {
        const auto& source = Of(from);
        Of(to).resize(source.size());
        for (std::size_t i = 0; i < source.size(); ++i) {
            if constexpr (kHoldsObjects)
                Type().Copy(&Of(to)[i], &source[i]);
            else
                Of(to)[i] = source[i];
        }
    }
    void Add(void* list, const void* element) const override
    {
        Element added{};
        if constexpr (kHoldsObjects)
            Type().Assign(&added, element);
        else
            added = *static_cast<const Element*>(element);
        Of(list).push_back(std::move(added));
    }

private:
    using Element = typename Core::Element;
    // The label of each element in the list's record, and its size with its end.
    static constexpr std::string_view kText = kStructure[0].label;
    static constexpr Label kElement{kText};
    static constexpr std::size_t kSize = kText.size() + 1;
    static constexpr bool kHoldsObjects = kKindOf<Element> == KIND_RECORD;

    static auto& Of(void* list) { return static_cast<Core*>(list)->content; }
    static const auto& Of(const void* list) { return static_cast<const Core*>(list)->content; }
    static const StructureClass& Type()
    {
        return static_cast<const StructureClass&>(ClassOf<Element>());
    }
    static bool ReadElement(Element& element, const vorn::cRecordPar& par, unsigned depth)
    {
        if constexpr (kHoldsObjects) {
            Source inside(depth);
            if (!inside.Open(&par))
                return false;
            if (!Type().ReadElement(&element, inside))
                Type().Clear(&element);
            return true;
        } else {
            const bool isElement = IsOfKind(par, KIND_UINT64);
            if (isElement)
                Get(par, element);
            return isElement;
        }
    }

    ListTexts texts;
};

} // namespace quarn::detail
// NOLINTEND(cppcoreguidelines-virtual-class-destructor)

#endif
