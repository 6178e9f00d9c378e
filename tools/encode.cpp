// quarn encode: lines of --format records, or bare message records, to SML bytes.
//
// With --frame, what stands from an open to a close message becomes one frame. A file that is never
// closed is framed all the same, so that nothing is lost, and told. A message outside a file is
// refused then, since nobody could read it.
#include "tools/commands.h"
#include "tools/encoding/message_encoder.h"
#include "tools/encoding/record_reader.h"
#include "tools/input/hex_reader.h"
#include "tools/input/line_reader.h"
#include "tools/input/pump.h"
#include "tools/reading/reading.h"
#include "tools/road/framer.h"

#include <algorithm>

namespace tool
{
namespace
{

using ull = unsigned long long;

class cLineEncoder : public cConsumer
{
public:
    cLineEncoder(bool frame, cOutput& output, cReport& reporter)
        : bFrame(frame), out(output), report(reporter), framer(output)
    {
    }

    void Begin(bool) override
    {
        lines = cLineReader();
        ullLine = 0;
    }
    void Feed(const unsigned char* data, std::size_t size) override
    {
        lines.Feed({reinterpret_cast<const char*>(data), size},
                   [this](std::string_view line, bool whole) { Take(line, whole); });
    }
    void End() override
    {
        lines.End([this](std::string_view line, bool whole) { Take(line, whole); });
        LeaveFile();
    }

private:
    void Take(std::string_view line, bool whole)
    {
        ++ullLine;
        std::string error;
        if (!whole)
            error = "longer than 64 MiB";
        else if (!std::all_of(line.begin(), line.end(), IsBlank))
            EncodeLine(line, error);
        if (!error.empty())
            report.Say(EXIT_DAMAGED, "line %llu: %s", ullLine, error.c_str());
        out.DrainIfLarge();
    }

    void EncodeLine(std::string_view line, std::string& error)
    {
        vorn::cRecord record;
        if (!ReadRecord(line, record, error))
            return;
        if (const vorn::cRecordPar* event = FindIn(record, "event")) {
            if (BytesOf(*event) == "frame")
                return;
            const vorn::cRecordPar* inner = FindIn(record, "record");
            if (BytesOf(*event) != "message" || inner == nullptr) {
                error = "no event that is known";
                return;
            }
            record = Nested(*inner);
        }
        EncodedMessage message;
        if (encoder.Encode(record, message, error))
            Write(message, error);
    }

    void Write(const EncodedMessage& message, std::string& error)
    {
        if (!bFrame) {
            out.Append(message.bytes);
            return;
        }
        if (message.bFirst) {
            LeaveFile();
            ullFileLine = ullLine;
        } else if (!framer.IsOpen()) {
            error = "in no file: no open message stands before it";
            return;
        }
        framer.Feed(message.bytes);
        if (message.bLast)
            framer.End();
    }

    // A file that is still open has no close message.
    void LeaveFile()
    {
        if (framer.IsOpen())
            report.Say(EXIT_DAMAGED, "line %llu: the file that it opens is not closed",
                       ull{ullFileLine});
        framer.End();
    }

    bool bFrame;
    cOutput& out;
    cReport& report;
    cFramer framer;
    cMessageEncoder encoder;
    cLineReader lines;
    ull ullLine = 0;
    ull ullFileLine = 0;
};

} // namespace

int RunEncode(const EncodeOptions& options)
{
    return PumpToStdout<cLineEncoder>(options.inputs, options.bFrame);
}

} // namespace tool
