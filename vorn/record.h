// The record: an ordered container of named, typed parameters, some of which are records
// themselves.
//
// A record behaves as a deep value and costs as a handle. It points to a node that holds the
// parameters and is shared, with an atomic count, by all copies; the first change to a shared node
// copies that node alone, never the tree below it. So:
//   - copying, appending a record to another, storing it and GetRecord take constant time, whatever
//     the size of the tree; whoever drops the last copy pays for the destruction;
//   - appending takes amortised constant time; looking a name up takes one pass over the parameters
//     of that one level;
//   - scalars, data up to 20 bytes and names up to 25 bytes need no memory of their own.
// Destroying a record never recurses: any depth of nesting is safe.
//
// Threads: copies of a record may be read, changed and destroyed in different threads at once. One
// and the same cRecord object needs the caller's care, like any value.
//
// Memory: an operation that needs memory and finds none throws std::bad_alloc and leaves the record
// as it was. Nothing else is ever thrown.
//
// The int arguments behind a name, and the argument of GetType, are reserved: pass 0 (GetType: 1).
// A null name stands for "any name" when looking up and counting.
#ifndef VORN_RECORD_H
#define VORN_RECORD_H

#include "vorn/membuffer.h"
#include "vorn/object.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Tells the users of this framework that begin, end and GetName show parameters in place, and that
// the 26 bytes from GetName on can be read even if a name is shorter.
#define VORN_PARAMETERS_IN_PLACE

namespace vorn
{

class cRecord;

namespace detail
{
struct Node;  // node.h
struct Block; // arena.h
class Arena;

// What a parameter holds of its name: up to 25 bytes and the 0 behind them, or a cMemBuffer.
struct NameText {
    char acText[26];
};
} // namespace detail

// What GetType(1) returns. Codes 4 and 7 are not used.
enum eTYPE : int {
    TYPE_NONE = 0, // an invalid handle
    TYPE_SINT = 2,
    TYPE_UINT = 3,
    TYPE_DATA = 5,
    TYPE_RECORD = 6,
    TYPE_SINT64 = 8,
    TYPE_UINT64 = 9,
    TYPE_BOOL = 10
};

// A name made ready once, for a builder that uses it again and again: a text of at most 25 bytes.
class cParName final
{
public:
    constexpr cParName() noexcept = default; // ""
    template <std::size_t Size>
    constexpr cParName(const char (&text)[Size]) noexcept // NOLINT: stands for its text
    {
        static_assert(Size <= sizeof(name), "a name that a parameter holds in place");
        while (text[ucSize] != '\0') {
            name.acText[ucSize] = text[ucSize];
            ++ucSize;
        }
    }
    // REQUIRES: at most 25 bytes.
    constexpr explicit cParName(std::string_view text) noexcept
    {
        for (const char c : text)
            name.acText[ucSize++] = c;
    }
    constexpr operator const char*() const noexcept
    {
        return name.acText;
    } // NOLINT: stands for its text
    constexpr bool IsEmpty() const noexcept { return ucSize == 0; }

private:
    friend class cRecordPar;

    detail::NameText name{};
    std::uint8_t ucSize = 0;
};

// One parameter. What a lookup returns is a copy: it stays usable when its record changes or dies.
class VORN_API cRecordPar final : public cObject
{
public:
    static constexpr std::size_t kMaxName = 127; // bytes; what is beyond is cut off

    cRecordPar() noexcept = default; // invalid
    cRecordPar(const cRecordPar& other) noexcept;
    cRecordPar(cRecordPar&& other) noexcept;
    cRecordPar& operator=(const cRecordPar& other) noexcept;
    cRecordPar& operator=(cRecordPar&& other) noexcept;
    ~cRecordPar() override;

    // The handle refers to a parameter that was found.
    bool IsValid() const noexcept { return ucType != TYPE_NONE; }
    // Holds no value. Data of no bytes and a record without parameters are values: they are not
    // empty in this sense.
    bool IsEmpty() const noexcept { return !IsValid(); }
    int GetType(int reserved) const noexcept
    {
        (void)reserved;
        return ucType;
    }
    const char* GetName() const noexcept
    {
        return HasLongName() ? LongName().GetData() : name.acText;
    }

    // The value, as it was appended. On another integer kind or a boolean: the same value converted
    // as C converts it. On data, a record or an invalid handle: 0.
    unsigned int GetUInt() const noexcept { return static_cast<unsigned int>(Scalar()); }
    int GetSInt() const noexcept { return static_cast<int>(Scalar()); }
    unsigned long long GetUInt64() const noexcept { return Scalar(); }
    long long GetSInt64() const noexcept { return static_cast<long long>(Scalar()); }
    bool GetBool() const noexcept { return Scalar() != 0; }

    // The bytes of a data parameter, valid while this handle lives and is not assigned to; they may
    // hold zero bytes and end without one. On another kind: null and 0.
    const char* GetData() const noexcept { return ucType == TYPE_DATA ? buf.GetData() : nullptr; }
    int GetSize() const noexcept
    {
        return ucType == TYPE_DATA ? static_cast<int>(buf.GetSize()) : 0;
    }

    // Copies the nested record into out; false, and out unchanged, when this is not a record.
    bool GetRecord(cRecord& out) const noexcept;

    // The parameters of the nested record in order, by reference, none when this is not a record:
    // valid while this handle lives and is not assigned to.
    const cRecordPar* begin() const noexcept;
    const cRecordPar* end() const noexcept;

    // "name=value", as in cRecord::ToString.
    std::string ToString() const override;

    // Same name, type and value. May throw std::bad_alloc.
    friend bool operator==(const cRecordPar& a, const cRecordPar& b) { return a.Equals(b); }
    friend bool operator!=(const cRecordPar& a, const cRecordPar& b) { return !(a == b); }

private:
    friend class cRecord;
    friend class cRecordBuilder;
    friend struct detail::Node;

    static constexpr std::size_t kNameInPlace = sizeof(detail::NameText::acText) - 1;

    struct Uncounted {
    };

    cRecordPar(const char* text, std::size_t nameSize, eTYPE type, cMemBuffer value);
    // Of a builder: a scalar or a node's address, data in place, and data in an arena.
    cRecordPar(const cParName& par, eTYPE type, std::uint64_t bits, std::uint32_t position) noexcept
        : buf(bits), name(par.name), ucNameSize(par.ucSize),
          ucType(static_cast<std::uint8_t>(type)), uiPosition(position)
    {
    }
    cRecordPar(const cParName& par, const void* data, std::size_t size,
               std::uint32_t position) noexcept
        : buf(data, size), name(par.name), ucNameSize(par.ucSize), ucType(TYPE_DATA),
          uiPosition(position)
    {
    }
    cRecordPar(const cParName& par, detail::Block* block, std::size_t size,
               std::uint32_t position) noexcept
        : buf(block, size), name(par.name), ucNameSize(par.ucSize), ucType(TYPE_DATA),
          uiPosition(position)
    {
    }
    // A copy that counts no reference, within an arena. It is never destroyed.
    cRecordPar(const cRecordPar& other, Uncounted) noexcept
        : cObject(other), buf(other.buf, cMemBuffer::Uncounted()), name(other.name),
          ucNameSize(other.ucNameSize), ucType(other.ucType), uiPosition(other.uiPosition)
    {
    }
    std::uint64_t Scalar() const noexcept;
    detail::Node* Nested() const noexcept; // null unless a record with parameters
    bool HasLongName() const noexcept { return ucNameSize > kNameInPlace; }
    const cMemBuffer& LongName() const noexcept;
    bool HasName(const char* text, std::size_t size) const noexcept;
    bool Equals(const cRecordPar& other) const;
    bool SameLeaf(const cRecordPar& other) const noexcept; // but for what is nested
    void CopyFrom(const cRecordPar& other) noexcept;       // REQUIRES: this holds no references
    void TakeRest(cRecordPar& other) noexcept; // the same, but for buf; other becomes invalid
    void DropRefs() noexcept;

    cMemBuffer buf; // the bytes, the scalar's 8 bytes, or the nested node's address
    alignas(cMemBuffer) detail::NameText name{};
    std::uint8_t ucNameSize = 0;
    std::uint8_t ucType = TYPE_NONE;
    std::uint32_t uiPosition = 0; // its place in its record, kept by copies
};

class VORN_API cRecord final
{
public:
    cRecord() noexcept = default;
    cRecord(const cRecord& other) noexcept;
    cRecord(cRecord&& other) noexcept;
    cRecord& operator=(const cRecord& other) noexcept;
    cRecord& operator=(cRecord&& other) noexcept;
    ~cRecord();

    // Makes the record empty again.
    void Create() noexcept;

    // Append a parameter at the end. A null name counts as "". AppendDataPar copies size bytes;
    // size <= 0 or null p give data of no bytes.
    void AppendUIntPar(const char* name, unsigned int v, int);
    void AppendSIntPar(const char* name, int v, int);
    void AppendUInt64Par(const char* name, unsigned long long v, int);
    void AppendSInt64Par(const char* name, long long v, int);
    void AppendBoolPar(const char* name, bool v, int);
    void AppendDataPar(const char* name, const void* p, int size, int);
    void AppendRecordPar(const char* name, const cRecord& r, int);

    // Removes the first parameter of that name, if there is one.
    void DeletePar(const char* name, int, int);

    // The first parameter of that name; an invalid handle when there is none.
    cRecordPar GetFirstPar(const char* name, int, int) const;
    // The same at the end of a chain of names joined by separator, all but the last of which name
    // record parameters. A null or empty separator takes path as one name.
    cRecordPar GetFirstParByPath(const char* path, const char* separator, int, int) const;
    // How many parameters of that name there are at this level.
    int GetParCount(const char* name, int, int) const noexcept;
    // Replaces par, a parameter of this record, by the next one of that name; false, and par
    // invalid, when none follows. An invalid par stays invalid. What follows is counted from the
    // place that par had when it was taken from the record.
    bool SeekNextPar(cRecordPar& par, const char* name, int, int) const;

    // The parameters in order, by reference: valid until this record changes or dies.
    const cRecordPar* begin() const noexcept;
    const cRecordPar* end() const noexcept;

    // A printable dump: {name=value, name={...}}, numbers in decimal, data as hex. Nesting deeper
    // than kMaxDumpDepth is printed as "...".
    static constexpr unsigned int kMaxDumpDepth = 64;
    std::string ToString() const;
    // The same; indent > 0 puts each parameter on a line of its own, indented by that many blanks a
    // level; maxDepth > 0 prints fewer levels than kMaxDumpDepth.
    std::string ToString2(unsigned int indent, unsigned int maxDepth) const;

    // Same names, types and values in the same order, at every depth. May throw std::bad_alloc.
    friend bool operator==(const cRecord& a, const cRecord& b) { return a.Equals(b); }
    friend bool operator!=(const cRecord& a, const cRecord& b) { return !(a == b); }

private:
    friend class cRecordPar;
    friend class cRecordBuilder;
    friend VORN_API cRecord ChangeRecord(cRecord, class cRecordPath, cRecord, std::string, bool);

    bool Equals(const cRecord& other) const;
    const cRecordPar* Find(const char* name, std::size_t from) const noexcept;
    void Append(const char* name, eTYPE type, cMemBuffer value);
    bool HasRoom(std::size_t capacity) const noexcept;
    void MakeRoom(std::size_t capacity); // an unshared node with room for that many parameters
    void Replace(std::size_t index, const cRecord& r);

    detail::Node* pNode = nullptr; // null: no parameters
};

} // namespace vorn

#include "vorn/node.h"

#endif
