// The classes that are a list.
#ifndef QUARN_RECORDS_SEQUENCE_H
#define QUARN_RECORDS_SEQUENCE_H

#include "quarn/records/class.h"

namespace quarn::detail
{

struct ListTexts {
    Label element;              // of each element in the list's record
    const char* pcEmptyName;    // what the line on an empty list record names
    const char* pcElementFault; // the line on a parameter that is no element
    bool bWrapped = false;      // an element's own record is written inside another of that label
    bool bStepsByLabel = false; // parameters of other labels are passed over without a line
    const char* pcInvalid = "class invalid/no entries"; // the line on writing an empty list
    vorn::eLEVEL invalidLevel = kError;                 // and its level
};

// The elements of a list.
struct Elements {
    void* pFirst;
    std::size_t uiCount;
};
struct Storage {
    static constexpr std::size_t kSame = std::size_t(-1);

    bool bObjects;      // of a class; otherwise UINT64
    unsigned uiClass;   // its number
    std::size_t uiSize; // of an element
    Elements (*pResize)(void* list, std::size_t count);
};

struct TooDeep : std::exception {
    const char* what() const noexcept override { return "trees nested too deep"; }
};

class ListClass final : public Class
{
public:
    constexpr ListClass(const Shape& given, const ListTexts& list, const Storage& elements)
        : Class(given), texts(list), storage(elements)
    {
    }

    void Clear(void* list) const noexcept override { storage.pResize(list, 0); }
    bool IsValid(const void* list) const noexcept override { return Of(list).uiCount > 0; }
    bool ReadFrom(void* list, const vorn::cRecordPar* par, Source& around) const override
    {
        RecordReader<> record;
        if (!record.Open(par)) {
            TraceMissing();
            return false;
        }
        const char* const label = texts.element;
        const int count = record.Count(label);
        if (count < 1) {
            Trace(LibQuarn, kError, "%s: Record %s is empty", shape.pcClass, texts.pcEmptyName);
            return false;
        }
        const unsigned depth = around.uiDepth + 1;
        if (depth >= SML_MAX_TREE_DEPTH)
            throw TooDeep();
        const Elements room = storage.pResize(list, static_cast<std::size_t>(count));
        std::size_t taken = 0;
        const char* const next = texts.bStepsByLabel ? label : nullptr;
        record.VisitElements(label, next, [&](const vorn::cRecordPar& element) {
            if (ReadElement(At(room, taken), element, depth))
                ++taken;
            else
                Trace(LibQuarn, kError, "%s: %s", shape.pcClass, texts.pcElementFault);
            return taken < room.uiCount;
        });
        storage.pResize(list, taken);
        return taken > 0;
    }
    bool WriteInto(const void* list, RecordBuilder& to) const override
    {
        const Elements elements = Of(list);
        if (elements.uiCount == 0) {
            Trace(LibQuarn, texts.invalidLevel, "%s::ToRecord: %s", shape.pcClass, texts.pcInvalid);
            return false;
        }
        to.Expect(elements.uiCount);
        for (std::size_t i = 0; i < elements.uiCount; ++i) {
            if (!storage.bObjects)
                Append(to, texts.element, Number(At(elements, i)));
            else if (texts.bWrapped)
                Type().WriteNested(At(elements, i), to, texts.element);
            else
                Type().Write(At(elements, i), to, texts.element);
        }
        return true;
    }
    void Copy(void* to, const void* from) const override
    {
        const Elements source = Of(from), target = storage.pResize(to, source.uiCount);
        for (std::size_t i = 0; i < source.uiCount; ++i) {
            if (storage.bObjects)
                Type().Copy(At(target, i), At(source, i));
            else
                Number(At(target, i)) = Number(At(source, i));
        }
    }
    // Appends a copy.
    void Add(void* list, const void* element) const
    {
        const std::size_t count = Of(list).uiCount;
        void* const added = At(storage.pResize(list, count + 1), count);
        if (storage.bObjects)
            Type().Assign(added, element);
        else
            Number(added) = *static_cast<const unsigned long long*>(element);
    }
    // Forgets the elements behind the first count ones.
    void Shorten(void* list, std::size_t count) const noexcept
    {
        if (count < Of(list).uiCount)
            storage.pResize(list, count);
    }
    Elements Of(const void* list) const
    {
        return storage.pResize(const_cast<void*>(list), Storage::kSame);
    }

private:
    const Class& Type() const { return *kClasses[storage.uiClass]; }
    void* At(const Elements& elements, std::size_t i) const
    {
        return static_cast<char*>(elements.pFirst) + i * storage.uiSize;
    }
    static unsigned long long& Number(void* element)
    {
        return *static_cast<unsigned long long*>(element);
    }
    bool ReadElement(void* element, const vorn::cRecordPar& par, unsigned depth) const
    {
        if (!storage.bObjects) {
            const bool isElement = IsOfKind(par, KIND_UINT64);
            if (isElement)
                Get(par, Number(element));
            return isElement;
        }
        Source inside(depth);
        if (!inside.Open(&par))
            return false;
        if (!Type().Read(element, inside))
            Type().Clear(element);
        return true;
    }

    ListTexts texts;
    Storage storage;
};

} // namespace quarn::detail

#endif
