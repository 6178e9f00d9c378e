// quarn frame: each input, a raw SML file, to one transport frame.
#include "tools/commands.h"
#include "tools/input/pump.h"
#include "tools/road/framer.h"

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

int RunFrame(const FrameOptions& options) { return PumpToStdout<cFrameEach>(options.inputs); }

} // namespace tool
