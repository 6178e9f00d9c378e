// quarn frame: each input, a raw SML file, to one transport frame.
#include "tools/command.h"
#include "tools/input/pump.h"
#include "tools/road/framer.h"

#include <memory>

namespace tool
{
namespace
{

class cFrameEach : public cConsumer
{
public:
    cFrameEach(cOutput& output, cReport&) : framer(output) {}

    void Feed(const unsigned char* data, std::size_t size) override
    {
        framer.Feed({reinterpret_cast<const char*>(data), size});
    }
    void End() override { framer.End(); }

private:
    cFramer framer;
};

} // namespace

void AddFrame(CLI::App& app, int& status)
{
    const auto inputs = std::make_shared<InputOptions>();
    CLI::App* frame = app.add_subcommand("frame", "Wrap raw SML files in transport frames");
    AddInputs(*frame, *inputs,
              "Raw SML files, of which each becomes one frame (none, when it has no bytes)");
    frame->footer("Example:\n"
                  "  quarn unframe examples/household.bin | quarn frame > one.bin");
    frame->callback([inputs, &status] { status = PumpToStdout<cFrameEach>(*inputs); });
}

} // namespace tool
