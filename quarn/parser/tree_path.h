// Finding, in the tree of a packet, the node whose value is being delivered in pieces.
#ifndef QUARN_PARSER_TREE_PATH_H
#define QUARN_PARSER_TREE_PATH_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/framework.h"

// tree is a node's record, or a record that holds one as "parTree". Appends to path the levels that
// lead to the "procParVal" that carries "extFlag", in the form that vorn::ChangeRecord takes, and
// returns 1; returns 0 when there is none within three child lists. Throws std::bad_alloc when
// memory runs out. Any thread.
QUARN_API int GetPath2Tree_withExtValue(vorn::cRecord& tree, vorn::cRecordPath& path);

#endif
