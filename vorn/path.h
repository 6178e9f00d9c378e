// Paths into nested records, and the replacement of what a path leads to.
#ifndef VORN_PATH_H
#define VORN_PATH_H

#include "vorn/record.h"

#include <string>

namespace vorn
{

// A list of levels, outermost first; each is the name of a record parameter and a key record that
// picks one among several of that name: the level is the first record parameter of that name in
// which, for every parameter of the key, the first parameter of that name is equal. An empty key
// picks the first. The name "." stands for the record that the level above designates (in a first
// level: the root).
class VORN_API cRecordPath
{
public:
    // Appends one level. Throws std::bad_alloc when memory runs out.
    void AddLevel(const char* name, const cRecord& key) { recLevels.AppendRecordPar(name, key, 0); }

    // The levels in order, each a record parameter that holds the key.
    const cRecord& GetLevels() const noexcept { return recLevels; }

private:
    cRecord recLevels;
};

// A copy of root in which, in the record that path designates, the first parameter called name is
// replaced by newRec (a record parameter of that name); when there is none and flag is true, newRec
// is appended under that name. With an empty name the designated record is itself replaced. When
// path designates nothing, the result equals root. Only the nodes along the path are copied. Throws
// std::bad_alloc when memory runs out.
VORN_API cRecord ChangeRecord(cRecord root, cRecordPath path, cRecord newRec, std::string name,
                              bool flag);

} // namespace vorn

#endif
