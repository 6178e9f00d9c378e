// The classes that are a set of fields, by one walk over the table of their rows; and the two of
// them that have rules of their own.
#ifndef QUARN_RECORDS_STRUCTURE_H
#define QUARN_RECORDS_STRUCTURE_H

#include "quarn/records/class.h"

namespace quarn::detail
{

// A row's field in an object, whose place the cell is.
struct Slot {
    const Row& row;
    Cell& cell;

    void* Object() const { return reinterpret_cast<char*>(&cell) + row.uiBehind; }
    const Class& Type() const { return *kClasses[row.uiClass]; }
    template <typename T>
    T& Value() const
    {
        return static_cast<Holder<T>&>(cell).value;
    }
    // Does something with a plain value, as what it is.
    template <typename Do>
    void WithPlain(Do run) const
    {
        switch (row.iKind) {
        case KIND_BOOL:
            return run(Value<bool>());
        case KIND_SINT:
            return run(Value<int>());
        case kShort:
            return run(Value<short>());
        case KIND_UINT:
            return run(Value<unsigned>());
        case KIND_SINT64:
            return run(Value<long long>());
        case KIND_UINT64:
            return run(Value<unsigned long long>());
        case KIND_DATA:
            return run(Value<std::string>());
        default:
            return;
        }
    }

    // Takes over what par, or null, holds of the field; whether it is present then.
    bool Read(const vorn::cRecordPar* par, Source& around) const
    {
        const bool isOfKind = par != nullptr && par->GetType(1) == row.iParKind && !par->IsEmpty();
        if (row.iKind != KIND_RECORD) {
            if (isOfKind)
                WithPlain([par](auto& v) { Get(*par, v); });
            return isOfKind;
        }
        if ((row.uiRules & (RULE_IF_RECORD | RULE_AS_RECORD)) != 0 && !isOfKind)
            return false;
        return Type().ReadFrom(Object(), par, around) || (row.uiRules & RULE_AS_RECORD) != 0;
    }
    void Write(RecordBuilder& to) const
    {
        if (row.iKind == KIND_RECORD)
            Type().Write(Object(), to, row.label);
        else
            WithPlain([&](const auto& v) { Append(to, row.label, v); });
    }
    void Copy(const Slot& from) const
    {
        cell.bPresent = from.cell.bPresent;
        if (row.iKind == KIND_RECORD)
            Type().Copy(Object(), from.Object());
        else
            WithPlain([&](auto& v) { v = from.Value<std::decay_t<decltype(v)>>(); });
    }
    void Clear() const
    {
        cell.bPresent = false;
        if (row.iKind == KIND_RECORD)
            Type().Clear(Object());
        else
            WithPlain([](auto& v) { v = {}; });
    }
};

struct Table {
    const Row* pRows;
    std::size_t uiCount;
    void (*pLocate)(void* object, Cell** cells);
};

class StructureClass : public Class
{
public:
    static constexpr std::size_t kMaxRows = 23;

    constexpr StructureClass(const Shape& given, const Table& rows) : Class(given), table(rows)
    {
        for (std::size_t i = 0; i < rows.uiCount; ++i) {
            uiRequired |= (rows.pRows[i].uiRules & RULE_REQUIRED) != 0 ? 1U << i : 0;
            uiOneOf |= (rows.pRows[i].uiRules & RULE_ONE_OF) != 0 ? 1U << i : 0;
        }
    }

    void Clear(void* object) const noexcept final
    {
        const Slots slots(table, object);
        for (std::size_t i = 0; i < table.uiCount; ++i)
            slots[i].Clear();
    }
    bool IsValid(const void* object) const noexcept override
    {
        return IsComplete(Present(Slots(table, object)));
    }
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
    bool WriteInto(const void* object, RecordBuilder& to) const override
    {
        const Slots slots(table, object);
        std::uint32_t present = Present(slots);
        if (shape.bWrittenWhenValid && !IsComplete(present))
            return RefuseToWrite();
        to.Expect(table.uiCount);
        for (std::size_t i = 0; present != 0; ++i, present >>= 1U) {
            if ((present & 1U) != 0)
                slots[i].Write(to);
        }
        return true;
    }
    void Copy(void* to, const void* from) const final
    {
        const Slots target(table, to), source(table, from);
        for (std::size_t i = 0; i < table.uiCount; ++i)
            target[i].Copy(source[i]);
    }
    // Copies the fields that the other structure has under the same label.
    void CopyShared(void* to, const StructureClass& other, const void* from) const
    {
        const Slots target(table, to), source(other.table, from);
        for (std::size_t i = 0; i < table.uiCount; ++i) {
            for (std::size_t j = 0; j < other.table.uiCount; ++j) {
                if (std::strcmp(target[i].row.label, source[j].row.label) == 0)
                    target[i].Copy(source[j]);
            }
        }
    }

private:
    // The fields of an object.
    struct Slots {
        Slots(const Table& rows, const void* object) : pRows(rows.pRows)
        {
            rows.pLocate(const_cast<void*>(object), apCells);
        }
        Slot operator[](std::size_t i) const { return {pRows[i], *apCells[i]}; }

        const Row* pRows;
        Cell* apCells[kMaxRows];
    };

    // Of the rows, a bit for each, that are present.
    std::uint32_t Present(const Slots& slots) const noexcept
    {
        std::uint32_t present = 0;
        for (std::size_t i = 0; i < table.uiCount; ++i)
            present |= std::uint32_t{slots.apCells[i]->bPresent} << i;
        return present;
    }
    bool IsComplete(std::uint32_t present) const noexcept
    {
        return (present & uiRequired) == uiRequired && (uiOneOf == 0 || (present & uiOneOf) != 0);
    }
    bool ReadRows(void* object, Source& from) const
    {
        const Slots slots(table, object);
        std::uint32_t present = 0;
        for (std::size_t i = 0; i < table.uiCount; ++i) {
            const Row& row = table.pRows[i];
            const vorn::cRecordPar* par = from.Find(row.label, row.uiSize);
            if (row.pcSecond != nullptr && (par == nullptr || par->GetType(1) != row.iParKind))
                par = from.Find(row.pcSecond);
            bool isPresent = slots[i].Read(par, from) || (row.uiRules & RULE_OR_EMPTY) != 0;
            present |= std::uint32_t{isPresent} << i;
            if ((row.uiRules & RULE_TOGETHER) != 0 && (present >> (i - 2)) != 0) {
                present |= 7U << (i - 2);
                slots.apCells[i - 2]->bPresent = slots.apCells[i - 1]->bPresent = isPresent = true;
            }
            slots.apCells[i]->bPresent = isPresent;
        }
        return IsComplete(present);
    }

    Table table;
    std::uint32_t uiRequired = 0; // a bit for each row
    std::uint32_t uiOneOf = 0;
};

// A time of another type than 3 is written and assigned without offsets.
class TimeClass final : public StructureClass
{
public:
    using StructureClass::StructureClass;

    bool IsValid(const void* time) const noexcept override
    {
        const auto& fields = *static_cast<const TimeFields*>(time);
        unsigned type = 0;
        return StructureClass::IsValid(time) && fields.Type::Get(type) &&
               (type <= 2 || (type == 3 && fields.HasOffsets()));
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
        unsigned type = 0;
        if (fields.Type::Get(type) && type != 3)
            fields.LocOffset::bPresent = fields.SeaOffset::bPresent = false;
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
        unsigned type = 0;
        if (fields.GetType(type) && type != 1)
            fields.Time::bPresent = false;
    }
};

} // namespace quarn::detail

#endif
