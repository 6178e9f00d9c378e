// See verdict.h.
#include "tools/explain/verdict.h"

#include "tools/reading/reading.h"
#include "tools/reading/status.h"

#include <algorithm>

namespace tool
{

std::string Verdict::Text() const
{
    std::string text = "the parser stops here: ";
    text.append(StatusMeaning(iError)).append(" (status ").append(std::to_string(iError));
    return text.append(trace.empty() ? "" : "; trace: ").append(trace).append(")");
}

// Runs work while the parser's error lines come here instead of to stderr.
template <typename Work>
void cJudge::Listening(Work work)
{
    const int level = LibSmlp->iLevel;
    vorn::SetTraceSink([this](const vorn::cUnit& unit, vorn::eLEVEL, const std::string& text) {
        if (&unit == LibSmlp && trace.empty())
            trace = text.substr(0, text.rfind(", smlp["));
    });
    LibSmlp->iLevel = vorn::LEVEL_ERROR;
    work();
    LibSmlp->iLevel = level;
    vorn::SetTraceSink({});
}

void cJudge::Feed(std::string_view payload)
{
    Listening([&] {
        for (const char& c : payload) {
            ++ullFed;
            road.Feed(reinterpret_cast<const unsigned char*>(&c), 1);
        }
    });
}

void cJudge::Timeout()
{
    Listening([&] { road.Timeout(); });
}

void cJudge::End()
{
    Listening([&] { road.End(); });
}

void cJudge::Forget(std::uint64_t bytes)
{
    verdicts.erase(std::remove_if(verdicts.begin(), verdicts.end(),
                                  [bytes](const Verdict& v) { return v.ullEnd <= bytes; }),
                   verdicts.end());
}

void cJudge::OnMessage(const Frame&, const vorn::cRecord& record)
{
    Add(DescribeMessage(record).iError);
}

void cJudge::OnRefused(const Frame&, int result)
{
    Add(result == SMLP_OUT_OF_MEMORY ? SML_STATUS_NULL_POINTER : SML_STATUS_IGNORE_FILE);
}

void cJudge::OnTimeout(const Frame&) { Add(SML_STATUS_OK, true); }

void cJudge::Add(int error, bool silence)
{
    verdicts.push_back({ullFed, error, silence, trace});
    trace.clear();
}

} // namespace tool
