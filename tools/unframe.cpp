// quarn unframe: transport frames to the raw SML that they hold.
//
// A payload is held back until its frame has ended, and only written when the checksum is right,
// unless --keep-bad. A payload that cannot be held (16 MiB) is withheld like a damaged one.
#include "tools/commands.h"
#include "tools/input/pump.h"
#include "tools/road/teller.h"

#include <memory>

namespace tool
{
namespace
{

constexpr std::size_t kMaxHeld = std::size_t{16} * 1024 * 1024;

class cUnframer : public cConsumer, public cTeller
{
public:
    cUnframer(bool keepBad, cOutput& output, cReport& reporter)
        : cTeller(reporter), bKeepBad(keepBad), out(output)
    {
    }

    void Begin(bool) override { pReceiver = std::make_unique<cReceiver>(false, *this); }
    void Feed(const unsigned char* data, std::size_t size) override { pReceiver->Feed(data, size); }
    void Timeout() override { pReceiver->Timeout(); }
    void Restart() override { pReceiver->Restart(); }
    void End() override { pReceiver->End(); }

private:
    // What a payload says is of no concern here.
    void OnMessage(const Frame&, const vorn::cRecord&) override {}
    void OnRefused(const Frame&, int) override {}

    void OnPayload(const Frame&, std::string_view bytes) override
    {
        if (!bKeepBad && !out.Holds())
            out.Hold();
        if (bTooLong)
            return;
        out.Append(bytes);
        if (out.HeldSize() > kMaxHeld) {
            bTooLong = true;
            out.Discard();
        }
        out.DrainIfLarge();
    }
    void OnFrameEnd(const Frame& frame) override
    {
        TellEnd(frame);
        if (bTooLong)
            report.Say(EXIT_DAMAGED, "frame %llu: too long to be held until its end",
                       static_cast<unsigned long long>(frame.ullNumber));
        Settle(frame.bCrcOk);
    }
    void OnFrameLost(const Frame& frame, eLOSS loss) override
    {
        cTeller::OnFrameLost(frame, loss);
        Settle(false);
    }
    void Settle(bool good)
    {
        if (out.Holds() && !good)
            out.Discard();
        out.Release();
        bTooLong = false;
    }

    bool bKeepBad;
    cOutput& out;
    std::unique_ptr<cReceiver> pReceiver;
    bool bTooLong = false; // this frame
};

} // namespace

int RunUnframe(const UnframeOptions& options)
{
    return PumpToStdout<cUnframer>(options.inputs, options.bKeepBad);
}

} // namespace tool
