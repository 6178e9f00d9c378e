// The engine: structures and lists by their tables, and Engine's operations, which are the door of
// the library for all classes.
#include "quarn/records/engine.h"

using namespace quarn::detail;

namespace
{

struct TooDeep : std::exception {
    const char* what() const noexcept override { return "trees nested too deep"; }
};

template <typename T>
T& ValueOf(Cell& cell)
{
    return Access::Value(static_cast<Holder<T>&>(cell));
}

void* ObjectOf(const Row& row, Cell& cell) { return reinterpret_cast<char*>(&cell) + row.ucBehind; }

// Does something with a plain value, as what it is.
template <typename Do>
bool WithPlain(eVALUE value, Cell& cell, Do run)
{
    switch (value) {
    case eVALUE::BOOL:
        return run(ValueOf<bool>(cell));
    case eVALUE::SINT:
        return run(ValueOf<int>(cell));
    case eVALUE::SHORT:
        return run(ValueOf<short>(cell));
    case eVALUE::UINT:
        return run(ValueOf<unsigned>(cell));
    case eVALUE::SINT64:
        return run(ValueOf<long long>(cell));
    case eVALUE::UINT64:
        return run(ValueOf<unsigned long long>(cell));
    case eVALUE::TEXT:
        return run(ValueOf<std::string>(cell));
    case eVALUE::OBJECT:
        break;
    }
    return false;
}

// Whether the field is present, once what par, or null, holds of it has been taken over.
bool ReadObject(const Row& row, Cell& cell, const vorn::cRecordPar* par, Source& around)
{
    const bool isRecord = par != nullptr && IsOfKind(*par, KIND_RECORD);
    if (!isRecord && (row.ucRules & (RULE_IF_RECORD | RULE_AS_RECORD)) != 0)
        return false;
    const Class& type = *kClasses[row.ucClass];
    type.ReadFrom(ObjectOf(row, cell), par, around);
    return (row.ucRules & RULE_AS_RECORD) != 0 || type.IsValid(ObjectOf(row, cell));
}

bool ReadCell(const Row& row, Cell& cell, const vorn::cRecordPar* par, Source& around)
{
    if (row.value == eVALUE::OBJECT)
        return ReadObject(row, cell, par, around);
    return par != nullptr &&
           WithPlain(row.value, cell, [par](auto& v) { return ReadPlain(*par, v); });
}

void WriteCell(const Row& row, Cell& cell, RecordBuilder& to)
{
    if (row.value == eVALUE::OBJECT)
        kClasses[row.ucClass]->Write(ObjectOf(row, cell), to, row.label);
    else
        WithPlain(row.value, cell, [&](const auto& v) {
            AppendPlain(to, row.label, v);
            return true;
        });
}

void CopyCell(const Row& row, Cell& to, Cell& from)
{
    Access::IsPresent(to) = Access::IsPresent(from);
    if (row.value == eVALUE::OBJECT)
        kClasses[row.ucClass]->Copy(ObjectOf(row, to), ObjectOf(row, from));
    else
        WithPlain(row.value, to, [&](auto& v) {
            v = ValueOf<std::decay_t<decltype(v)>>(from);
            return true;
        });
}

void ClearCell(const Row& row, Cell& cell) noexcept
{
    Access::IsPresent(cell) = false;
    if (row.value == eVALUE::OBJECT)
        kClasses[row.ucClass]->Clear(ObjectOf(row, cell));
    else
        WithPlain(row.value, cell, [](auto& v) {
            v = {};
            return true;
        });
}

void Assign(const Class& type, void* to, const void* from)
{
    if (type.bCopiedWhenValid && !type.IsValid(from))
        type.Clear(to);
    else
        type.Copy(to, from);
    type.Settle(to);
}

} // namespace

void Class::Read(void* object, Source& around) const { ReadFrom(object, around.Find(own), around); }

bool Class::Write(const void* object, RecordBuilder& to, const Label& label) const
{
    to.Open();
    const bool written = WriteInto(object, to);
    if (written)
        to.AppendRecordPar(label, to.Close(), 0);
    else
        to.Drop();
    return written;
}

bool Class::WriteTo(vorn::cRecord& target, const void* object, const char* label) const
{
    RecordBuilder to;
    to.Open();
    if (!WriteInto(object, to))
        return false;
    target.AppendRecordPar(label, to.Get(to.Close()), 0);
    return true;
}

void StructureClass::Clear(void* object) const noexcept
{
    const Cells cells(*this, object);
    for (std::size_t i = 0; i < uiRows; ++i)
        ClearCell(pRows[i], *cells.ap[i]);
}

bool StructureClass::IsValid(const void* object) const noexcept
{
    return IsComplete(Cells(*this, object));
}

bool StructureClass::IsComplete(const Cells& cells) const noexcept
{
    bool oneIsWanted = false, oneIsThere = false;
    for (std::size_t i = 0; i < uiRows; ++i) {
        const bool isPresent = Access::IsPresent(*cells.ap[i]);
        if ((pRows[i].ucRules & RULE_REQUIRED) != 0 && !isPresent)
            return false;
        const bool isOne = (pRows[i].ucRules & RULE_ONE_OF) != 0;
        oneIsWanted = oneIsWanted || isOne;
        oneIsThere = oneIsThere || (isOne && isPresent);
    }
    return oneIsThere || !oneIsWanted;
}

void StructureClass::Read(void* object, Source& around) const
{
    if (shape.where == eFIELDS::DIRECT)
        ReadRows(object, around);
    else
        Class::Read(object, around);
}

void StructureClass::ReadFrom(void* object, const vorn::cRecordPar* par, Source& around) const
{
    Source inside(around.uiDepth);
    if (inside.Open(par))
        ReadRows(object, inside);
    else if (shape.where != eFIELDS::ENCLOSED)
        ReadRows(object, around);
    else if (shape.missingLevel != kUntraced)
        Trace(LibQuarn, shape.missingLevel, "%s::CTOR: record invalid/empty!", pcName);
}

void StructureClass::ReadRows(void* object, Source& from) const
{
    const Cells cells(*this, object);
    for (std::size_t i = 0; i < uiRows; ++i) {
        const Row& row = pRows[i];
        bool& isPresent = Access::IsPresent(*cells.ap[i]);
        if (!isPresent) // but under the label before
            isPresent = ReadCell(row, *cells.ap[i], from.Find(row.label, row.ucSize), from);
        if ((row.ucRules & RULE_OR_EMPTY) != 0)
            isPresent = true;
        if ((row.ucRules & RULE_TOGETHER) != 0) {
            bool &first = Access::IsPresent(*cells.ap[i - 2]),
                 &second = Access::IsPresent(*cells.ap[i - 1]);
            first = second = isPresent = first || second || isPresent;
        }
    }
}

bool StructureClass::WriteInto(const void* object, RecordBuilder& to) const
{
    const Cells cells(*this, object);
    if (shape.bWrittenWhenValid && !IsComplete(cells))
        return RefuseWriting();
    to.Expect(uiRows);
    for (std::size_t i = 0; i < uiRows; ++i) {
        if (Access::IsPresent(*cells.ap[i]) && (pRows[i].ucRules & RULE_SECOND) == 0)
            WriteCell(pRows[i], *cells.ap[i], to);
    }
    return true;
}

bool StructureClass::RefuseWriting() const noexcept
{
    Trace(LibQuarn, kError, "%s::ToRecord: class invalid", pcName);
    return false;
}

void StructureClass::Copy(void* to, const void* from) const
{
    const Cells target(*this, to), source(*this, from);
    for (std::size_t i = 0; i < uiRows; ++i)
        CopyCell(pRows[i], *target.ap[i], *source.ap[i]);
}

void StructureClass::CopyShared(void* to, const StructureClass& other, const void* from) const
{
    const Cells target(*this, to), source(other, from);
    for (std::size_t i = 0; i < uiRows; ++i) {
        for (std::size_t j = 0; j < other.uiRows; ++j) {
            if (std::strcmp(pRows[i].label, other.pRows[j].label) == 0)
                CopyCell(pRows[i], *target.ap[i], *source.ap[j]);
        }
    }
}

void ListClass::ReadFrom(void* list, const vorn::cRecordPar* par, Source& around) const
{
    RecordReader<> record;
    if (!record.Open(par)) {
        if (shape.missingLevel != kUntraced)
            Trace(LibQuarn, shape.missingLevel, "%s::CTOR: record invalid/empty!", pcName);
        return;
    }
    const int count = record.Count(shape.element);
    if (count < 1) {
        Trace(LibQuarn, kError, "%s: Record %s is empty", pcName, shape.pcEmptyName);
        return;
    }
    const unsigned depth = around.uiDepth + 1;
    if (depth >= SML_MAX_TREE_DEPTH)
        throw TooDeep();
    const auto wanted = static_cast<std::size_t>(count);
    const Elements room{storage.pResize(list, wanted), wanted};
    std::size_t taken = 0;
    const char* const label = shape.element;
    record.VisitElements(label, shape.bStepsByLabel ? label : nullptr,
                         [&](const vorn::cRecordPar& element) {
                             if (ReadElement(At(room, taken), element, depth))
                                 ++taken;
                             else
                                 Trace(LibQuarn, kError, "%s: %s", pcName, shape.pcElementFault);
                             return taken < wanted;
                         });
    storage.pResize(list, taken);
}

bool ListClass::ReadElement(void* element, const vorn::cRecordPar& par, unsigned depth) const
{
    if (storage.value != eVALUE::OBJECT)
        return ReadPlain(par, *static_cast<unsigned long long*>(element));
    Source inside(depth);
    if (!inside.Open(&par))
        return false;
    const Class& type = *kClasses[storage.uiElement];
    type.Read(element, inside);
    if (!type.IsValid(element))
        type.Clear(element);
    return true;
}

bool ListClass::WriteInto(const void* list, RecordBuilder& to) const
{
    const Elements elements = Of(list);
    if (elements.uiCount == 0) {
        Trace(LibQuarn, shape.invalidLevel, "%s::ToRecord: %s", pcName, shape.pcInvalid);
        return false;
    }
    to.Expect(elements.uiCount);
    for (std::size_t i = 0; i < elements.uiCount; ++i) {
        const void* const element = At(elements, i);
        if (storage.value != eVALUE::OBJECT) {
            AppendPlain(to, shape.element, *static_cast<const unsigned long long*>(element));
            continue;
        }
        const Class& type = *kClasses[storage.uiElement];
        if (shape.bWrapped)
            to.Open();
        type.Write(element, to, type.own);
        if (shape.bWrapped)
            to.AppendRecordPar(shape.element, to.Close(), 0);
    }
    return true;
}

void ListClass::Copy(void* to, const void* from) const
{
    const Elements source = Of(from);
    const Elements target{storage.pResize(to, source.uiCount), source.uiCount};
    for (std::size_t i = 0; i < source.uiCount; ++i) {
        if (storage.value == eVALUE::OBJECT)
            kClasses[storage.uiElement]->Copy(At(target, i), At(source, i));
        else
            std::memcpy(At(target, i), At(source, i), storage.uiSize);
    }
}

bool ListClass::Add(void* list, const void* element) const noexcept
{
    const std::size_t count = Of(list).uiCount;
    const bool done = Guarded(pcName, [&] {
        void* const added = At({storage.pResize(list, count + 1), count + 1}, count);
        if (storage.value == eVALUE::OBJECT)
            Assign(*kClasses[storage.uiElement], added, element);
        else
            std::memcpy(added, element, storage.uiSize);
    });
    if (!done)
        storage.pResize(list, count);
    return done;
}

bool Engine::Read(unsigned number, void* object, const vorn::cRecord& record,
                  const char* label) noexcept
{
    const Class& type = *kClasses[number];
    const bool done = Guarded(type.pcName, [&] {
        Source around(record, 0);
        if (label != nullptr)
            type.ReadFrom(object, around.Find(label), around);
        else
            type.Read(object, around);
    });
    if (!done)
        type.Clear(object);
    return done;
}

bool Engine::Write(unsigned number, const void* object, vorn::cRecord& target,
                   const char* label) noexcept
{
    const Class& type = *kClasses[number];
    bool written = false;
    Guarded(type.pcName,
            [&] { written = type.WriteTo(target, object, label != nullptr ? label : type.own); });
    return written;
}

bool Engine::Copy(unsigned number, void* to, const void* from) noexcept
{
    const Class& type = *kClasses[number];
    const bool done = Guarded(type.pcName, [&] { type.Copy(to, from); });
    if (!done)
        type.Clear(to);
    return done;
}

bool Engine::Assign(unsigned number, void* to, const void* from) noexcept
{
    const Class& type = *kClasses[number];
    const bool done = Guarded(type.pcName, [&] { ::Assign(type, to, from); });
    if (!done)
        type.Clear(to);
    return done;
}

bool Engine::Assign(std::string& to, const std::string& from) noexcept
{
    return Guarded("copy", [&] {
        std::string copy = from;
        to = std::move(copy);
    });
}

void Engine::Settle(unsigned number, void* object) noexcept
{
    const Class& type = *kClasses[number];
    if (type.bCopiedWhenValid && !type.IsValid(object))
        type.Clear(object);
    type.Settle(object);
}

void Engine::Clear(unsigned number, void* object) noexcept { kClasses[number]->Clear(object); }

bool Engine::IsValid(unsigned number, const void* object) noexcept
{
    return kClasses[number]->IsValid(object);
}

bool Engine::Add(unsigned number, void* list, const void* element) noexcept
{
    return static_cast<const ListClass*>(kClasses[number])->Add(list, element);
}
