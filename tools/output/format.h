// How decoded messages are printed: one class per --format.
#ifndef TOOLS_OUTPUT_FORMAT_H
#define TOOLS_OUTPUT_FORMAT_H

#include "tools/output/output.h"
#include "tools/reading/reading.h"
#include "tools/road/receiver.h"

#include <memory>
#include <vector>

namespace tool
{

class cFormat
{
public:
    virtual ~cFormat() = default;

    // True: every message is printed as it comes, good or not, and ends of frames, too. False: only
    // what is good, and so not before the frame has ended.
    virtual bool IsComplete() const noexcept = 0;

    // Before the first input.
    virtual void Start() {}
    // readings are those of the message which the user wants to see.
    virtual void Message(const Frame& frame, const MessageInfo& info, const vorn::cRecord& record,
                         const std::vector<Reading>& readings) = 0;
    virtual void FrameEnd(const Frame&) {}

protected:
    explicit cFormat(cOutput& output) : out(output) {}

    cOutput& out;
};

std::unique_ptr<cFormat> MakeRecordsFormat(cOutput& output);
std::unique_ptr<cFormat> MakeReadingsFormat(cOutput& output);
std::unique_ptr<cFormat> MakeCsvFormat(cOutput& output);
std::unique_ptr<cFormat> MakeTextFormat(cOutput& output);

} // namespace tool

#endif
