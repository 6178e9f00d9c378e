// The search for a node with a value in pieces: depth first, at most three child lists deep.
#include "quarn/parser/tree_path.h"

#include "quarn/foundation/fields.h"
#include "quarn/foundation/labels.h"
#include "quarn/foundation/trace.h"

using namespace quarn::detail;

namespace
{

constexpr int kMaxChildLists = 3;

bool HasExtValue(const vorn::cRecord& node)
{
    vorn::cRecord value;
    if (!FindRecord(node, label::procParVal, value))
        return false;
    const vorn::cRecordPar flag = value.GetFirstPar(label::extFlag, 0, 0);
    const vorn::cRecordPar piece = value.GetFirstPar(label::value, 0, 0);
    return flag.IsValid() && !flag.IsEmpty() && piece.IsValid() && !piece.IsEmpty();
}

vorn::cRecord KeyOf(const vorn::cRecord& node)
{
    vorn::cRecord key;
    vorn::cRecordPar name;
    if (FindField(node, label::parName, KIND_UINT64, name))
        key.AppendUInt64Par(label::parName, name.GetUInt64(), 0);
    return key;
}

// Appends the levels from node down; false, and path unchanged, when nothing is found below it.
bool Search(const vorn::cRecord& node, int depth, vorn::cRecordPath& path)
{
    vorn::cRecord list;
    if (depth > kMaxChildLists || !FindRecord(node, label::child_List, list))
        return false;
    vorn::cRecordPar par = list.GetFirstPar(label::parTree, 0, 0);
    for (int left = list.GetParCount(label::parTree, 0, 0); left > 0; --left) {
        vorn::cRecord child;
        if (!IsOfKind(par, KIND_RECORD) || !par.GetRecord(child)) {
            Trace(LibQuarn, kAnomaly, "ChList%d:Tree invalid/empty!", depth);
        } else {
            vorn::cRecordPath below = path;
            below.AddLevel(label::child_List, vorn::cRecord());
            below.AddLevel(label::parTree, KeyOf(child));
            const bool here = HasExtValue(child);
            if (here)
                below.AddLevel(label::procParVal, vorn::cRecord());
            if (here || Search(child, depth + 1, below)) {
                path = below;
                return true;
            }
        }
        list.SeekNextPar(par, label::parTree, 0, 0);
    }
    return false;
}

} // namespace

int GetPath2Tree_withExtValue(vorn::cRecord& tree, vorn::cRecordPath& path)
{
    path.AddLevel(".", vorn::cRecord());
    vorn::cRecord node = tree;
    if (FindRecord(tree, label::parTree, node))
        path.AddLevel(label::parTree, vorn::cRecord());
    if (HasExtValue(node)) {
        path.AddLevel(label::procParVal, vorn::cRecord());
        return 1;
    }
    return Search(node, 1, path) ? 1 : 0;
}
