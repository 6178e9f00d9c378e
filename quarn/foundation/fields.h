// Reading a field of a record, the same way everywhere in the library: a parameter counts only when
// it is found, not empty and of the expected kind; anything else is absent. No kind is converted
// into another. And reading a whole record: its fields in the order in which they are written, its
// elements one after another, without a copy of any parameter where the framework shows them in
// place.
#ifndef QUARN_FOUNDATION_FIELDS_H
#define QUARN_FOUNDATION_FIELDS_H

#include "quarn/foundation/framework.h"
#include "quarn/foundation/schema.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace quarn::detail
{

inline bool IsOfKind(const vorn::cRecordPar& par, eKIND kind)
{
    return par.IsValid() && !par.IsEmpty() && par.GetType(1) == kind;
}

inline bool FindField(const vorn::cRecord& record, const char* label, eKIND kind,
                      vorn::cRecordPar& par)
{
    par = record.GetFirstPar(label, 0, 0);
    return IsOfKind(par, kind);
}

// The nested record under label; false, and out unchanged, when there is none.
inline bool FindRecord(const vorn::cRecord& record, const char* label, vorn::cRecord& out)
{
    vorn::cRecordPar par;
    return FindField(record, label, KIND_RECORD, par) && par.GetRecord(out);
}

// For records that show their parameters in place only.
template <class Par>
const char* NameOf(const Par& par)
{
    return par.GetName();
}

template <class Par>
bool HasName(const Par& par, const char* label)
{
    const char* const name = NameOf(par);
    return *name == *label && std::strcmp(name, label) == 0;
}

// The same for a label that is known when compiling: a comparison of a few words.
template <const auto& Label, class Par>
bool HasName(const Par& par)
{
    static_assert(sizeof(Label) <= kReadableName);
    return std::memcmp(par.GetName(), Label, sizeof(Label)) == 0;
}

// The same for a name and a label of that many bytes, its end included, and more than 4.
inline bool IsName(const char* name, const char* label, std::size_t size)
{
    const auto equal = [=](auto word, std::size_t at) {
        auto other = word;
        std::memcpy(&word, name + at, sizeof word);
        std::memcpy(&other, label + at, sizeof other);
        return word == other;
    };
    constexpr std::size_t half = sizeof(std::uint32_t);
    constexpr std::size_t whole = sizeof(std::uint64_t);
    if (!equal(std::uint32_t(), 0))
        return false;
    if (size <= whole)
        return equal(std::uint32_t(), size - half);
    for (std::size_t at = 0; at + whole < size; at += whole) {
        if (!equal(std::uint64_t(), at))
            return false;
    }
    return equal(std::uint64_t(), size - whole);
}

// Reads one record: finds its fields, and visits the elements of a list. A field that is asked for
// when those in front of it have been is found without a search. What Find returns is valid until
// the next call and as long as the record lives unchanged.
template <class Record = vorn::cRecord, bool kInPlace = kShowsParameters>
class RecordReader
{
public:
    RecordReader() = default;
    explicit RecordReader(const Record& rec)
    {
        if constexpr (kInPlace) {
            next = rec.begin();
            end = rec.end();
        } else {
            held.record = rec;
        }
    }

    // Goes over to the record that par holds; false, and nothing to be found, when it holds none.
    template <class Par>
    bool Open(const Par* par)
    {
        if (par == nullptr || !IsOfKind(*par, KIND_RECORD))
            return false;
        if constexpr (kInPlace) {
            next = par->begin();
            end = par->end();
            return true;
        } else {
            return par->GetRecord(held.record);
        }
    }

    // The first parameter of that name; null when there is none. REQUIRES: no name is asked for a
    // second time.
    template <const auto& Label>
    const vorn::cRecordPar* Find()
    {
        return Find([](const auto& par) { return HasName<Label>(par); }, Label);
    }
    const vorn::cRecordPar* Find(const char* label)
    {
        return Find([label](const auto& par) { return HasName(par, label); }, label);
    }

    // Gives each row the first parameter of its name, and returns a bit for each row that has one:
    // the places of the others stay as they are. What is given is valid until the next call. In one
    // walk over the record, if its parameters are in the order of the rows. REQUIRES: at most 32
    // rows, each with a label of its own, of uiSize bytes with its end, from 5 to kReadableName.
    template <typename Row>
    std::uint32_t FindRows(const Row* rows, std::size_t count, const vorn::cRecordPar** found)
    {
        std::uint32_t isFound = 0;
        if constexpr (kInPlace) {
            const Row* row = rows; // behind the one that was found last
            for (const vorn::cRecordPar* par = next; par != end; ++par) {
                const char* const name = NameOf(*par);
                for (std::size_t left = count; left > 0; --left) {
                    const Row& tried = *row;
                    row = &tried + 1 != rows + count ? &tried + 1 : rows;
                    if (!IsName(name, tried.label, tried.uiSize))
                        continue;
                    const auto i = static_cast<std::size_t>(&tried - rows);
                    if ((isFound >> i & 1U) == 0)
                        found[i] = par;
                    isFound |= 1U << i;
                    break;
                }
            }
        } else {
            held.rows.resize(count);
            for (std::size_t i = 0; i < count; ++i) {
                held.rows[i] = held.record.GetFirstPar(rows[i].label, 0, 0);
                found[i] = &held.rows[i];
                isFound |= held.rows[i].IsValid() ? 1U << i : 0;
            }
        }
        return isFound;
    }

    // How many parameters of that name there are, which has size bytes with its end, from 5 to
    // kReadableName. REQUIRES: Find has not been called.
    int Count(const char* label, std::size_t size) const
    {
        if constexpr (kInPlace)
            return static_cast<int>(std::count_if(
                next, end, [=](const auto& par) { return IsName(par.GetName(), label, size); }));
        else
            return held.record.GetParCount(label, 0, 0);
    }

    // Visits the first parameter of the name first and those behind it, or only those of the name
    // following if one is given, until visit returns false. REQUIRES: Find has not been called; the
    // framework makes a handle invalid that is moved on behind the last parameter.
    template <typename Visit>
    void VisitElements(const char* first, const char* following, Visit visit) const
    {
        if constexpr (kInPlace) {
            const char* wanted = first;
            for (const vorn::cRecordPar* par = next; par != end; ++par) {
                if (wanted != nullptr && !HasName(*par, wanted))
                    continue;
                if (!visit(*par))
                    return;
                wanted = following;
            }
        } else {
            vorn::cRecordPar par = held.record.GetFirstPar(first, 0, 0);
            while (par.IsValid() && visit(par))
                held.record.SeekNextPar(par, following, 0, 0);
        }
    }

private:
    template <typename Is>
    const vorn::cRecordPar* Find(Is is, const char* label)
    {
        if constexpr (kInPlace) {
            static_cast<void>(label);
            for (const vorn::cRecordPar* par = next; par != end; ++par) {
                if (is(*par)) {
                    next += par == next ? 1 : 0; // so all before next have been asked for
                    return par;
                }
            }
            return nullptr;
        } else {
            held.par = held.record.GetFirstPar(label, 0, 0);
            return held.par.IsValid() ? &held.par : nullptr;
        }
    }

    // Where parameters are not shown in place: the record, and those that were found.
    struct Held {
        Record record;
        vorn::cRecordPar par;
        std::vector<vorn::cRecordPar> rows;
    };

    std::conditional_t<kInPlace, std::nullptr_t, Held> held{};
    const vorn::cRecordPar* next = nullptr;
    const vorn::cRecordPar* end = nullptr;
};

} // namespace quarn::detail

#endif
