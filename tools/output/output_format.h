// How decoded messages are printed: one class per --format.
#ifndef TOOLS_OUTPUT_OUTPUT_FORMAT_H
#define TOOLS_OUTPUT_OUTPUT_FORMAT_H

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
    // The messages since the last call are good, or are none to be shown.
    virtual void Settled(bool good) { (void)good; }
    virtual void Idle() {}   // nothing has arrived for the moment
    virtual void Finish() {} // all has been read

    // True: what is not good is kept out by the format itself, and its text is written at any time.
    virtual bool KeepsBack() const noexcept { return false; }

protected:
    explicit cFormat(cOutput& output) : out(output) {}

    cOutput& out;
};

struct FormatOptions {
    bool bColour = false;
    bool bCorrections = false; // readings may be corrected: where it matters, there is a column
    bool bScreen = false;      // the output is a screen, which can be overwritten
};

std::unique_ptr<cFormat> MakeRecordsFormat(cOutput& output, const FormatOptions& options);
std::unique_ptr<cFormat> MakeReadingsFormat(cOutput& output, const FormatOptions& options);
std::unique_ptr<cFormat> MakeCsvFormat(cOutput& output, const FormatOptions& options);
std::unique_ptr<cFormat> MakeTextFormat(cOutput& output, const FormatOptions& options);
// The latest reading of each code and server, as a table: on a screen while they change, else once
// at the end.
std::unique_ptr<cFormat> MakeWatchFormat(cOutput& output, const FormatOptions& options);

} // namespace tool

#endif
