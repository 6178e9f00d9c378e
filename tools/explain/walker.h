// Takes a payload apart along the grammar. Where bytes deviate from it, they are shown by their
// structure alone; where even that is lost, as bytes up to what looks like the next message.
#ifndef TOOLS_EXPLAIN_WALKER_H
#define TOOLS_EXPLAIN_WALKER_H

#include "tools/explain/annotation.h"
#include "tools/explain/payload_map.h"
#include "tools/explain/verdict.h"

#include <cstddef>
#include <vector>

namespace tool
{

struct WalkOptions {
    std::uint64_t ullBase = 0; // where the payload begins in the one that has been judged
    std::size_t uiStart = 0;   // where in the payload the walk begins
    unsigned uiMessage = 1;    // number of the first message within its SML file
    bool bOneFile = false;     // it ends with the SML file
    bool bMore = false;        // the payload goes on: its last, unfinished message is left out
};

struct Walked {
    std::vector<Annotation> items; // of the payload and of the transport around it
    std::size_t uiEnd = 0;         // where in the payload the walk has ended
    unsigned uiMessage = 1;        // number of the message that follows
};

Walked Walk(PayloadMap& map, const std::vector<Verdict>& verdicts, const WalkOptions& options);

} // namespace tool

#endif
