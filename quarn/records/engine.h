// How the record classes read, write and copy, told once. Each class is described by an object of a
// class derived from Class here: a structure by its table of rows, a list by its shape and its
// element's class, and the two choices by themselves. An object of the classes is a void* to its
// core. All but Clear, IsValid and Settle may throw; Engine, through which the classes come in, is
// what catches. No host needs this file.
#ifndef QUARN_RECORDS_ENGINE_H
#define QUARN_RECORDS_ENGINE_H

#include "quarn/foundation/fields.h"
#include "quarn/foundation/limits.h"
#include "quarn/records/tree.h"

#include <array>

namespace quarn::detail
{

// What an object is read from: a record, and how many lists stand around it.
struct Source : RecordReader<> {
    explicit Source(unsigned depth) : uiDepth(depth) {}
    Source(const vorn::cRecord& rec, unsigned depth) : RecordReader(rec), uiDepth(depth) {}

    unsigned uiDepth;
};

class Class
{
public:
    constexpr Class(const char* name, const Label& ownLabel, bool copiedWhenValid)
        : pcName(name), own(ownLabel), bCopiedWhenValid(copiedWhenValid)
    {
    }

    virtual void Clear(void* object) const noexcept = 0;
    virtual bool IsValid(const void* object) const noexcept = 0;
    // Fills a cleared object from the record around it, and from the parameter that stands in there
    // under the object's label, or null.
    virtual void Read(void* object, Source& around) const;
    virtual void ReadFrom(void* object, const vorn::cRecordPar* par, Source& around) const = 0;
    // Fills the open record with what stands under the object's label; false when nothing is to.
    virtual bool WriteInto(const void* object, RecordBuilder& to) const = 0;
    // Appends the object under a label, as a whole or not at all.
    virtual bool Write(const void* object, RecordBuilder& to, const Label& label) const;
    virtual bool WriteTo(vorn::cRecord& target, const void* object, const char* label) const;
    // Makes the object what another one is; and takes from it what operator= does not take over.
    virtual void Copy(void* to, const void* from) const = 0;
    virtual void Settle(void*) const noexcept {}

    const char* pcName;    // as trace lines name it
    Label own;             // of its parameter in the record around it
    bool bCopiedWhenValid; // operator= takes over valid objects only, others clear the target

protected:
    ~Class() = default;
};

class StructureClass : public Class
{
public:
    using Locator = void (*)(void* object, Cell** cells);

    constexpr StructureClass(const Shape& given, const Row* first, std::size_t count,
                             Locator locator)
        : Class(given.pcClass, given.own, given.bCopiedWhenValid), shape(given), pRows(first),
          uiRows(count), pLocate(locator)
    {
    }

    void Clear(void* object) const noexcept override;
    bool IsValid(const void* object) const noexcept override;
    void Read(void* object, Source& around) const final;
    void ReadFrom(void* object, const vorn::cRecordPar* par, Source& around) const final;
    bool WriteInto(const void* object, RecordBuilder& to) const override;
    void Copy(void* to, const void* from) const final;
    // Copies the fields that the other structure has under the same label.
    void CopyShared(void* to, const StructureClass& other, const void* from) const;

    static constexpr std::size_t kMaxRows = 23;

protected:
    bool RefuseWriting() const noexcept; // a line, and false

private:
    // The fields of an object.
    struct Cells {
        Cells(const StructureClass& type, const void* object)
        {
            type.pLocate(const_cast<void*>(object), ap);
        }
        Cell* ap[kMaxRows];
    };

    bool IsComplete(const Cells& cells) const noexcept;
    void ReadRows(void* object, Source& from) const;

    Shape shape;
    const Row* pRows;
    std::size_t uiRows;
    Locator pLocate;
};

class ListClass final : public Class
{
public:
    // The elements of a list, and these when there are to be so many of them.
    struct Elements {
        void* pFirst;
        std::size_t uiCount;
    };
    struct Storage {
        eVALUE value;       // an element is an object of a class, or the only plain one: UINT64
        unsigned uiElement; // the number of the class
        std::size_t uiSize; // of an element
        Elements (*pElements)(void* list);
        void* (*pResize)(void* list, std::size_t count);
    };

    constexpr ListClass(const ListShape& given, const Storage& elements)
        : Class(given.pcClass, given.own, false), shape(given), storage(elements)
    {
    }

    void Clear(void* list) const noexcept override { storage.pResize(list, 0); }
    bool IsValid(const void* list) const noexcept override { return Of(list).uiCount > 0; }
    void ReadFrom(void* list, const vorn::cRecordPar* par, Source& around) const override;
    bool WriteInto(const void* list, RecordBuilder& to) const override;
    void Copy(void* to, const void* from) const override;
    bool Add(void* list, const void* element) const noexcept; // see Engine

private:
    Elements Of(const void* list) const { return storage.pElements(const_cast<void*>(list)); }
    void* At(const Elements& elements, std::size_t i) const
    {
        return static_cast<char*>(elements.pFirst) + i * storage.uiSize;
    }
    bool ReadElement(void* element, const vorn::cRecordPar& par, unsigned depth) const;

    ListShape shape;
    Storage storage;
};

class TimeClass final : public StructureClass
{
public:
    using StructureClass::StructureClass;

    bool IsValid(const void* time) const noexcept override;
    bool WriteInto(const void* time, RecordBuilder& to) const override;
    void Settle(void* time) const noexcept override;
};

class ListTypeClass final : public StructureClass
{
public:
    using StructureClass::StructureClass;

    void Settle(void* listType) const noexcept override;
};

class ValueClass final : public Class
{
public:
    constexpr ValueClass() : Class("cSmlValue", label::value, true) {}

    void Clear(void* value) const noexcept override;
    bool IsValid(const void* value) const noexcept override;
    void ReadFrom(void* value, const vorn::cRecordPar* par, Source& around) const override;
    bool WriteInto(const void*, RecordBuilder&) const override { return false; }
    bool Write(const void* value, RecordBuilder& to, const Label& label) const override;
    bool WriteTo(vorn::cRecord& target, const void* value, const char* label) const override;
    void Copy(void* to, const void* from) const override;
    void Settle(void* value) const noexcept override;

private:
    template <class Target, typename WriteListType>
    bool WriteEither(Target& to, const void* value, const Label& label,
                     WriteListType writeListType) const;
};

class ProcParValueClass final : public Class
{
public:
    constexpr ProcParValueClass() : Class("cSmlProcParValue", label::procParVal, false) {}

    void Clear(void* value) const noexcept override;
    bool IsValid(const void* value) const noexcept override;
    void ReadFrom(void* value, const vorn::cRecordPar* par, Source& around) const override;
    bool WriteInto(const void* value, RecordBuilder& to) const override;
    void Copy(void* to, const void* from) const override;
};

// The classes by their numbers.
extern const std::array<const Class*, Classes::kCount> kClasses;

template <typename T>
const Class& ClassOf() noexcept
{
    return *kClasses[Access::kId<T>];
}

// The plain values: the kind of each one's parameter, how it is got and how it is appended.
template <typename T>
inline constexpr eKIND kKindOf = std::is_same_v<T, bool>                 ? KIND_BOOL
                                 : std::is_same_v<T, std::string>        ? KIND_DATA
                                 : std::is_same_v<T, unsigned>           ? KIND_UINT
                                 : std::is_same_v<T, unsigned long long> ? KIND_UINT64
                                 : std::is_same_v<T, long long>          ? KIND_SINT64
                                                                         : KIND_SINT;

template <typename T>
bool ReadPlain(const vorn::cRecordPar& par, T& value)
{
    if (!IsOfKind(par, kKindOf<T>))
        return false;
    if constexpr (kKindOf<T> == KIND_BOOL)
        value = par.GetBool();
    else if constexpr (kKindOf<T> == KIND_UINT)
        value = par.GetUInt();
    else if constexpr (kKindOf<T> == KIND_UINT64)
        value = par.GetUInt64();
    else if constexpr (kKindOf<T> == KIND_SINT64)
        value = par.GetSInt64();
    else if constexpr (kKindOf<T> == KIND_SINT)
        value = static_cast<T>(par.GetSInt());
    else if (par.GetSize() > 0)
        value.assign(static_cast<const char*>(par.GetData()),
                     static_cast<std::size_t>(par.GetSize()));
    else
        value.clear();
    return true;
}

template <class Target, typename T> // a record or a builder
void AppendPlain(Target& target, const Label& label, const T& v)
{
    if constexpr (kKindOf<T> == KIND_BOOL)
        target.AppendBoolPar(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_UINT)
        target.AppendUIntPar(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_UINT64)
        target.AppendUInt64Par(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_SINT64)
        target.AppendSInt64Par(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_SINT)
        target.AppendSIntPar(label, v, 0);
    else
        target.AppendDataPar(label, v.data(), static_cast<int>(v.size()), 0);
}

// Makes the choice to what the choice from is.
template <typename... T>
void CopyChoice(std::variant<std::monostate, T...>& to,
                const std::variant<std::monostate, T...>& from)
{
    const auto isCopied = [&](const auto* v) {
        using Held = std::decay_t<decltype(*v)>;
        if (v == nullptr)
            return false;
        if constexpr (kValueOf<Held> == eVALUE::OBJECT)
            ClassOf<Held>().Copy(&to.template emplace<Held>(), v);
        else
            to.template emplace<Held>() = *v;
        return true;
    };
    if (!(... || isCopied(std::get_if<T>(&from))))
        to.template emplace<std::monostate>();
}

// Runs a step that may throw; false, and a trace line, when it did.
template <typename Step>
bool Guarded(const char* who, Step step) noexcept
{
    try {
        step();
        return true;
    } catch (const std::exception& e) {
        Trace(LibQuarn, kError, "%s: %s", who, e.what());
    } catch (...) {
        Trace(LibQuarn, kError, "%s: failed", who);
    }
    return false;
}

} // namespace quarn::detail

#endif
