// SML bytes in any pieces to one transport frame, printed as it grows: a file of any length needs
// no memory.
#ifndef TOOLS_ROAD_FRAMER_H
#define TOOLS_ROAD_FRAMER_H

#include "quarn/quarn.h"
#include "tools/output/output.h"

#include <string>
#include <string_view>

namespace tool
{

class cFramer
{
public:
    explicit cFramer(cOutput& output) : out(output), machine(SMLT_MODE_TP) {}

    // The first piece opens the frame.
    void Feed(std::string_view bytes);
    // Ends the frame, if one is open.
    void End();
    bool IsOpen() const noexcept { return bOpen; }

private:
    void Process(std::string_view bytes, int flags);

    cOutput& out;
    SmlTpTx machine;
    bool bOpen = false;
};

// Appends the frame of payload, a whole SML file, to bytes.
void AppendFramed(std::string_view payload, std::string& bytes);

} // namespace tool

#endif
