// Builds records fast, from the first parameter to the last, without changing any on the way.
//
// A program that makes many records of the same shape, as a parser does, opens a record, appends
// its parameters in order, opens and closes the records inside it, and in the end takes the whole
// tree. All of it lies in one arena: a few allocations, given back together when the last reference
// to any part of the tree is dropped (a small part that is kept keeps it all). What comes out is a
// cRecord like any other.
//
//   static constexpr vorn::cParName kName("name"), kSize("size"), kFile("file");
//   vorn::cRecordBuilder builder;
//   builder.Open();
//   builder.Open();
//   builder.AppendDataPar(kName, "a.bin", 5, 0);
//   builder.AppendUIntPar(kSize, 17, 0);
//   builder.AppendRecordPar(kFile, builder.Close(), 0);
//   vorn::cRecord record = builder.Get(builder.Close());
//   builder.Create();
//
// Threads: one builder, one thread at a time; its records go anywhere. Memory: an operation that
// finds none throws std::bad_alloc; then Create() is all that may follow.
#ifndef VORN_BUILDER_H
#define VORN_BUILDER_H

#include "vorn/record.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// Tells the users of this framework that it has a builder.
#define VORN_RECORD_BUILDER

namespace vorn
{

class VORN_API cRecordBuilder final
{
public:
    // A closed record that is not yet part of another; belongs to the builder that closed it, until
    // Create.
    class cPart
    {
        friend class cRecordBuilder;
        detail::Node* pNode = nullptr;
    };

    cRecordBuilder() noexcept = default;
    ~cRecordBuilder();
    cRecordBuilder(const cRecordBuilder&) = delete;
    cRecordBuilder& operator=(const cRecordBuilder&) = delete;

    // Begins a record inside the innermost open one, which rests until the new one is closed.
    void Open()
    {
        aStarts.push_back(uiCount);
        uiStart = uiCount;
    }
    // How many records are open; the innermost has the level Levels() - 1.
    std::size_t Levels() const noexcept { return aStarts.size(); }

    // Append to the innermost open record. REQUIRES: there is one.
    void AppendUIntPar(const cParName& name, unsigned int v, int) { Append(name, TYPE_UINT, v); }
    void AppendSIntPar(const cParName& name, int v, int)
    {
        Append(name, TYPE_SINT, static_cast<std::uint64_t>(v));
    }
    void AppendUInt64Par(const cParName& name, unsigned long long v, int)
    {
        Append(name, TYPE_UINT64, v);
    }
    void AppendSInt64Par(const cParName& name, long long v, int)
    {
        Append(name, TYPE_SINT64, static_cast<std::uint64_t>(v));
    }
    void AppendBoolPar(const cParName& name, bool v, int) { Append(name, TYPE_BOOL, v ? 1U : 0U); }
    void AppendDataPar(const cParName& name, const void* p, int size, int);
    void AppendRecordPar(const cParName& name, cPart part, int);

    // Ends the innermost record. REQUIRES: there is one.
    cPart Close();
    // The same, and forgets it.
    void Drop() noexcept;
    // Empties the records from level on, which stay open.
    void Clear(std::size_t level) noexcept;

    // A copy of an open record as it stands, without what is still open inside it.
    cRecord Copy(std::size_t level) const;
    // A closed record with all that is in it.
    cRecord Get(cPart part) const noexcept;
    // Begins anew: nothing is open, no part is left. What Get has handed out is not touched.
    void Create() noexcept;

private:
    static constexpr std::size_t kFirstCapacity = 64;
    static constexpr std::size_t kMostKept = 1024; // parameters; more room is given back

    void Append(const cParName& name, eTYPE type, std::uint64_t bits)
    {
        new (Next()) cRecordPar(name, type, bits, uiCount - 1 - uiStart);
    }
    cRecordPar* Next()
    {
        if (uiCount == uiCapacity)
            Grow();
        return pPars + uiCount++;
    }
    void Grow();
    detail::Arena& TheArena();

    // The parameters of all open records, one record behind the other. They count no references.
    cRecordPar* pPars = nullptr;
    std::uint32_t uiCount = 0;
    std::uint32_t uiCapacity = 0;
    std::uint32_t uiStart = 0;          // of the innermost record
    std::vector<std::uint32_t> aStarts; // of each
    detail::Arena* pArena = nullptr;
};

} // namespace vorn

#endif
