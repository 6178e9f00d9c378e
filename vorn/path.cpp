// Replacement along a path: walk down by handles, remembering the place taken at each level, then
// put the changed records back from the innermost level outwards. Only the nodes on the way are
// copied, and nothing recurses.
#include "vorn/path.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace vorn
{
namespace
{

bool Matches(const cRecord& record, const cRecord& key)
{
    return std::all_of(key.begin(), key.end(), [&](const cRecordPar& wanted) {
        return record.GetFirstPar(wanted.GetName(), 0, 0) == wanted;
    });
}

// The first record parameter of record with that name and key; out is set to its content.
const cRecordPar* FindLevel(const cRecord& record, const cRecordPar& level, cRecord& out)
{
    cRecord key;
    level.GetRecord(key);
    for (const cRecordPar& par : record) {
        cRecord nested;
        if (std::strcmp(par.GetName(), level.GetName()) == 0 && par.GetRecord(nested) &&
            Matches(nested, key)) {
            out = std::move(nested);
            return &par;
        }
    }
    return nullptr;
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface is given
cRecord ChangeRecord(cRecord root, cRecordPath path, cRecord newRec, std::string name, bool flag)
{
    std::vector<std::pair<cRecord, std::size_t>>
        way; // each record passed, and the place taken in it
    cRecord current = root;
    for (const cRecordPar& level : path.GetLevels()) {
        if (std::strcmp(level.GetName(), ".") == 0)
            continue;
        cRecord deeper;
        const cRecordPar* const par = FindLevel(current, level, deeper);
        if (par == nullptr)
            return root;
        const auto index = static_cast<std::size_t>(par - current.begin());
        way.emplace_back(std::move(current), index);
        current = std::move(deeper);
    }

    if (name.empty()) {
        current = std::move(newRec);
    } else if (const cRecordPar* const par = current.Find(name.c_str(), 0);
               par != nullptr && par->GetType(1) == TYPE_RECORD) {
        current.Replace(static_cast<std::size_t>(par - current.begin()), newRec);
    } else if (par == nullptr && flag) {
        current.AppendRecordPar(name.c_str(), newRec, 0);
    } else {
        return root;
    }

    for (; !way.empty(); way.pop_back()) {
        way.back().first.Replace(way.back().second, current);
        current = std::move(way.back().first);
    }
    return current;
}

} // namespace vorn
