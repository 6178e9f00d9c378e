// See teller.h.
#include "tools/road/teller.h"

#include "tools/reading/status.h"

namespace tool
{
namespace
{

using ull = unsigned long long;

} // namespace

void cTeller::OnMessage(const Frame& frame, const vorn::cRecord& record)
{
    TellMessage(frame, DescribeMessage(record));
}

void cTeller::OnRefused(const Frame& frame, int result)
{
    if (result == SMLP_OUT_OF_MEMORY)
        report.Say(EXIT_FAILED, "frame %llu: out of memory", ull{frame.ullNumber});
    else
        report.Say(EXIT_UNSETTLED, "frame %llu, message 1 of a file: %s (status %d)",
                   ull{frame.ullNumber}, StatusMeaning(SML_STATUS_IGNORE_FILE),
                   SML_STATUS_IGNORE_FILE);
}

void cTeller::OnFrameEnd(const Frame& frame)
{
    TellEnd(frame);
    TellInsideFile(frame);
}

void cTeller::TellInsideFile(const Frame& frame)
{
    if (frame.bInsideFile)
        report.Say(EXIT_DAMAGED, "frame %llu: ends inside an SML file", ull{frame.ullNumber});
}

void cTeller::OnFrameLost(const Frame& frame, eLOSS loss)
{
    report.Settle(loss != eLOSS::CUT_OFF);
    if (loss == eLOSS::CUT_OFF)
        report.Say(EXIT_GOOD, "frame %llu: cut off by the end of the input", ull{frame.ullNumber});
    else
        report.Say(EXIT_DAMAGED, "frame %llu: broken off, a new frame begins inside it",
                   ull{frame.ullNumber});
}

void cTeller::OnTimeout(const Frame& frame)
{
    report.Say(EXIT_GOOD,
               "frame %llu: the line has fallen silent inside it; the SML file in it is given up",
               ull{frame.ullNumber});
}

void cTeller::OnGap(std::uint64_t offset, std::uint64_t count, eGAP gap)
{
    static constexpr const char* kWhere[] = {"before the first frame", "between frames",
                                             "after the last frame", "and no frame"};
    report.Say(
        gap == eGAP::BEFORE_FIRST ? EXIT_GOOD : EXIT_DAMAGED, "%llu byte%s %s, from byte %llu on%s",
        ull{count}, count == 1 ? "" : "s", kWhere[static_cast<int>(gap)], ull{offset} + 1,
        gap == eGAP::NO_FRAME ? " (raw SML or hex? See --input. A serial line? See --serial)" : "");
}

void cTeller::TellMessage(const Frame& frame, const MessageInfo& info, std::size_t withheld)
{
    if (info.iError != SML_STATUS_OK)
        report.Say(EXIT_UNSETTLED, "frame %llu, message %u: %s (status %d)%s", ull{frame.ullNumber},
                   info.uiNumber, StatusMeaning(info.iError), info.iError,
                   Withheld(withheld).c_str());
}

void cTeller::TellEnd(const Frame& frame, std::size_t withheld)
{
    report.Settle(true);
    if (!frame.bCrcOk)
        report.Say(EXIT_DAMAGED, "frame %llu: the checksum is wrong%s", ull{frame.ullNumber},
                   Withheld(withheld).c_str());
}

std::string cTeller::Withheld(std::size_t count)
{
    return count == 0 ? std::string() : "; readings withheld: " + std::to_string(count);
}

} // namespace tool
