// How the record classes read, write and copy, told once. Each class is described by a constant: a
// structure by its table of rows (structure.h), a list by its shape and its element's class
// (sequence.h), a choice by itself (choices.h). Objects are a void* to their core here. All but
// what is noexcept may throw; Engine, through which hosts come in, catches (engine.cpp). No host
// needs these files.
#ifndef QUARN_RECORDS_CLASS_H
#define QUARN_RECORDS_CLASS_H

#include "quarn/foundation/limits.h"
#include "quarn/foundation/trace.h"
#include "quarn/records/envelope.h"

#include <array>

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
    Label own;           // of its parameter in the record around it
    eFIELDS where = eFIELDS::ENCLOSED;
    vorn::eLEVEL missingLevel = kError; // of the line on no record under the label; 0: no line
    bool bCopiedWhenValid = false;      // operator= takes over valid objects only, others clear
    bool bWrittenWhenValid = false;     // ToRecord writes a valid object only
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
        Write(object, to, shape.own);
        to.AppendRecordPar(label, to.Close(), 0);
    }
    void WriteNested(const void* object, vorn::cRecord& target, const Label& label) const
    {
        vorn::cRecord nested;
        WriteTo(nested, object, shape.own);
        target.AppendRecordPar(label, nested, 0);
    }
    // Makes the object what another one is; and takes from it what operator= does not take over.
    virtual void Copy(void* to, const void* from) const = 0;
    virtual void Settle(void*) const noexcept {}

    bool Read(void* object, Source& around) const
    {
        const bool isDirect = shape.where == eFIELDS::DIRECT;
        return ReadFrom(object, isDirect ? nullptr : around.Find(shape.own), around);
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

// How each plain value is got from a parameter of its kind, and appended.
inline void Get(const vorn::cRecordPar& par, bool& v) { v = par.GetBool(); }
inline void Get(const vorn::cRecordPar& par, int& v) { v = par.GetSInt(); }
inline void Get(const vorn::cRecordPar& par, short& v) { v = static_cast<short>(par.GetSInt()); }
inline void Get(const vorn::cRecordPar& par, unsigned& v) { v = par.GetUInt(); }
inline void Get(const vorn::cRecordPar& par, long long& v) { v = par.GetSInt64(); }
inline void Get(const vorn::cRecordPar& par, unsigned long long& v) { v = par.GetUInt64(); }
inline void Get(const vorn::cRecordPar& par, std::string& v)
{
    const auto size = static_cast<std::size_t>(par.GetSize() > 0 ? par.GetSize() : 0);
    v.assign(size > 0 ? static_cast<const char*>(par.GetData()) : "", size);
}

template <class Target, typename T> // a record or a builder
void Append(Target& to, const Label& label, const T& v)
{
    if constexpr (kKindOf<T> == KIND_BOOL)
        to.AppendBoolPar(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_UINT)
        to.AppendUIntPar(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_UINT64)
        to.AppendUInt64Par(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_SINT64)
        to.AppendSInt64Par(label, v, 0);
    else if constexpr (kKindOf<T> == KIND_DATA)
        to.AppendDataPar(label, v.data(), static_cast<int>(v.size()), 0);
    else
        to.AppendSIntPar(label, v, 0);
}

} // namespace quarn::detail

#endif
