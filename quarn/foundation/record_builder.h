// How the parser makes records: through the framework's builder where it has one, else through the
// same interface over plain records, which costs more and yields the same.
#ifndef QUARN_FOUNDATION_RECORD_BUILDER_H
#define QUARN_FOUNDATION_RECORD_BUILDER_H

#include "quarn/foundation/framework.h"

#ifndef VORN_RECORD_BUILDER
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>
#endif

namespace quarn::detail
{

#ifdef VORN_RECORD_BUILDER

using Label = vorn::cParName; // a label made ready for the builder
using RecordBuilder = vorn::cRecordBuilder;

#else

class Label
{
public:
    constexpr Label() noexcept = default;
    template <std::size_t Size>
    constexpr Label(const char (&text)[Size]) noexcept : pcText(text) // NOLINT: stands for its text
    {
    }
    // REQUIRES: a 0 follows text.
    constexpr explicit Label(std::string_view text) noexcept : pcText(text.data()) {}
    constexpr operator const char*() const noexcept
    {
        return pcText;
    } // NOLINT: stands for its text
    constexpr bool IsEmpty() const noexcept { return *pcText == '\0'; }

private:
    const char* pcText = "";
};

// The framework's own builder documents the operations.
class RecordBuilder
{
public:
    using cPart = vorn::cRecord;

    void Open() { aLevels.emplace_back(); }
    void Expect(std::size_t) noexcept {}
    std::size_t Levels() const noexcept { return aLevels.size(); }
    std::size_t Count(std::size_t level) const
    {
        return static_cast<std::size_t>(aLevels[level].GetParCount(nullptr, 0, 0));
    }

    void AppendUIntPar(const Label& name, unsigned v, int)
    {
        aLevels.back().AppendUIntPar(name, v, 0);
    }
    void AppendSIntPar(const Label& name, int v, int) { aLevels.back().AppendSIntPar(name, v, 0); }
    void AppendUInt64Par(const Label& name, unsigned long long v, int)
    {
        aLevels.back().AppendUInt64Par(name, v, 0);
    }
    void AppendSInt64Par(const Label& name, long long v, int)
    {
        aLevels.back().AppendSInt64Par(name, v, 0);
    }
    void AppendBoolPar(const Label& name, bool v, int) { aLevels.back().AppendBoolPar(name, v, 0); }
    void AppendDataPar(const Label& name, const void* p, int size, int)
    {
        aLevels.back().AppendDataPar(name, p, size, 0);
    }
    void AppendRecordPar(const Label& name, const cPart& part, int)
    {
        aLevels.back().AppendRecordPar(name, part, 0);
    }

    cPart Close()
    {
        cPart part = std::move(aLevels.back());
        aLevels.pop_back();
        return part;
    }
    void Drop() noexcept { aLevels.pop_back(); }
    void Clear(std::size_t level) noexcept { aLevels[level].Create(); }
    vorn::cRecord Copy(std::size_t level) const { return aLevels[level]; }
    vorn::cRecord Get(const cPart& part) const { return part; }
    void Create() noexcept { aLevels.clear(); }

private:
    std::vector<vorn::cRecord> aLevels;
};

#endif

// The label called text.
template <const auto& text>
inline constexpr Label kLabel{text};

} // namespace quarn::detail

#endif
