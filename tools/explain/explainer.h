// The receive road with a record of where everything stood: the bytes of a frame are kept until it
// has ended, then laid out, judged and walked, and the result goes to a writer. Memory does not
// grow with the input: of a frame longer than kMaxFrame the beginning is taken apart and the rest
// shown as bytes; raw SML is explained message by message.
#ifndef TOOLS_EXPLAIN_EXPLAINER_H
#define TOOLS_EXPLAIN_EXPLAINER_H

#include "tools/explain/annotation.h"
#include "tools/explain/payload_map.h"
#include "tools/explain/verdict.h"
#include "tools/input/intake.h"
#include "tools/input/pump.h"
#include "tools/road/teller.h"

#include <memory>
#include <string>
#include <vector>

namespace tool
{

class cExplainer : public cConsumer, public cTeller
{
public:
    static constexpr std::size_t kMaxFrame = std::size_t{128} * 1024;

    cExplainer(eINPUT kind, cExplanationWriter& explanationWriter, cReport& reporter)
        : cTeller(reporter), eKind(kind), writer(explanationWriter)
    {
    }

    void Begin(bool live) override;
    void Feed(const unsigned char* data, std::size_t size) override;
    void Timeout() override { pIntake->Timeout(); }
    void End() override;
    void Failed() override { bFailed = true; }
    void Finish() override
    {
        if (!bFailed)
            writer.Finish();
    }

protected:
    void OnInput(std::string_view piece) override;
    void OnFrameStart(const Frame& frame, std::uint64_t offset) override;
    void OnPayload(const Frame& frame, std::string_view) override { current = frame; }
    void OnFrameEnd(const Frame& frame) override;
    void OnFrameLost(const Frame& frame, eLOSS loss) override;
    void OnTimeout(const Frame& frame) override;

private:
    enum eSTATE { OUTSIDE, INSIDE, RAW, REST }; // of frames; REST: of one that is too long

    void ExplainFrame(const Frame& frame, std::size_t size, eCHECKSUM checksum, const char* damage);
    void ExplainRaw(bool more);
    void ShowBytes(std::size_t size, const std::string& title, const char* damage);
    void Relieve();
    void Drop(std::size_t size);

    eINPUT eKind;
    cExplanationWriter& writer;
    std::unique_ptr<cIntake> pIntake;
    std::uint64_t ullTaken = 0; // bytes of all inputs
    bool bFull = false;         // the writer takes no more
    bool bFailed = false;       // an input is missing

    eSTATE eState = OUTSIDE;
    std::string bytes;                   // of the input, not explained yet
    std::uint64_t ullAt = 0;             // where they begin in it
    Frame current;                       // the frame they belong to, as last told
    std::vector<std::uint64_t> silences; // how much of its payload stood before each
    bool bLost = false;                  // it is lost; where it ends is told by the next one
    bool bAnyFrame = false;
    std::unique_ptr<cJudge> pJudge; // of raw SML
    unsigned uiMessage = 1;         // of raw SML, the next one's number in its file
};

} // namespace tool

#endif
