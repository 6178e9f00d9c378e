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
// finds none throws std::bad_alloc; then Create() is all that may follow. Of small trees that were
// dropped since, a builder takes the memory again for the next ones: it holds on to the last three,
// at most 10 KiB each, until it is destroyed.
#ifndef VORN_BUILDER_H
#define VORN_BUILDER_H

#include "vorn/record.h"

#include <array>
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
    void Open() { aLevels.emplace_back(); }
    // The innermost record, still empty, is going to have about that many parameters: room for
    // them is taken with the first.
    void Expect(std::size_t count) noexcept { aLevels.back().uiExpected = count; }
    // How many records are open; the innermost has the level Levels() - 1.
    std::size_t Levels() const noexcept { return aLevels.size(); }

    // Append to the innermost open record. REQUIRES: there is one.
    void AppendUIntPar(const cParName& name, unsigned int v, int)
    {
        Append(name, TYPE_UINT, std::uint64_t{v});
    }
    void AppendSIntPar(const cParName& name, int v, int)
    {
        Append(name, TYPE_SINT, static_cast<std::uint64_t>(v));
    }
    void AppendUInt64Par(const cParName& name, unsigned long long v, int)
    {
        Append(name, TYPE_UINT64, std::uint64_t{v});
    }
    void AppendSInt64Par(const cParName& name, long long v, int)
    {
        Append(name, TYPE_SINT64, static_cast<std::uint64_t>(v));
    }
    void AppendBoolPar(const cParName& name, bool v, int)
    {
        Append(name, TYPE_BOOL, std::uint64_t{v ? 1U : 0U});
    }
    void AppendDataPar(const cParName& name, const void* p, int size, int)
    {
        const std::size_t bytes = p != nullptr && size > 0 ? static_cast<std::size_t>(size) : 0;
        if (bytes <= cMemBuffer::kInPlace)
            Append(name, p, bytes);
        else
            AppendBlock(name, p, bytes);
    }
    void AppendRecordPar(const cParName& name, cPart part, int)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &part.pNode, sizeof part.pNode);
        Append(name, TYPE_RECORD, bits);
    }

    // How many parameters an open record has so far.
    std::size_t Count(std::size_t level) const noexcept
    {
        return static_cast<std::size_t>(aLevels[level].pNext - aLevels[level].pFirst);
    }

    // Ends the innermost record. REQUIRES: there is one.
    cPart Close() noexcept;
    // The same, and forgets it.
    void Drop() noexcept;
    // Empties the open record of that level; those inside it stay as they are.
    void Clear(std::size_t level) noexcept;

    // A copy of an open record as it stands, without what is still open inside it. It has room for
    // a few parameters more.
    cRecord Copy(std::size_t level) const;
    // A closed record with all that is in it.
    cRecord Get(cPart part) const noexcept;
    // Begins anew: nothing is open, no part is left. What Get has handed out is not touched.
    void Create() noexcept;

private:
    // An open record: its node, and the room behind the parameters that it has so far.
    struct Level {
        detail::Node* pNode = nullptr;
        cRecordPar* pFirst = nullptr;
        cRecordPar* pNext = nullptr;
        cRecordPar* pEnd = nullptr;
        std::size_t uiExpected = 0;
    };

    template <typename... Value>
    void Append(const cParName& name, Value... value)
    {
        Level& level = aLevels.back();
        if (level.pNext == level.pEnd)
            Grow(level);
        const auto position = static_cast<std::uint32_t>(level.pNext - level.pFirst);
        new (level.pNext) cRecordPar(name, value..., position);
        ++level.pNext;
    }
    void AppendBlock(const cParName& name, const void* p, std::size_t bytes);
    void Grow(Level& level);
    detail::Arena& TheArena();

    static constexpr std::size_t kKeptArenas = 3;

    // All parameters lie in the arena, and count no references to what lies there.
    std::vector<Level> aLevels;
    detail::Arena* pArena = nullptr;
    // The arenas of the last trees, in turn: to be used again when only the builder refers to them.
    std::array<detail::Arena*, kKeptArenas> apKept{};
    std::size_t uiOldest = 0;
};

} // namespace vorn

#endif
