// See explainer.h.
#include "tools/explain/explainer.h"

#include "tools/explain/walker.h"

#include <algorithm>
#include <cstdio>

namespace tool
{
namespace
{

constexpr std::size_t kMaxGap = std::size_t{64} * 1024; // bytes outside of frames that are kept

std::string Where(std::uint64_t offset, std::uint64_t size)
{
    char text[80];
    std::snprintf(text, sizeof text, "%llu byte%s at 0x%llx", static_cast<unsigned long long>(size),
                  size == 1 ? "" : "s", static_cast<unsigned long long>(offset));
    return text;
}

} // namespace

void cExplainer::Begin(bool live)
{
    pIntake = std::make_unique<cIntake>(eKind, live, *this, report);
    eState = OUTSIDE;
    bytes.clear();
    ullAt = 0;
    bLost = bAnyFrame = false;
    writer.Begin(report.Subject());
}

void cExplainer::Feed(const unsigned char* data, std::size_t size)
{
    const auto room = static_cast<std::size_t>(
        std::min<std::uint64_t>(size, writer.Limit() - std::min(writer.Limit(), ullTaken)));
    if (room < size && !bFull) {
        bFull = true;
        report.Say(EXIT_FAILED,
                   "too long for a page, which holds %llu bytes of input: what follows is left "
                   "out; --explain without --html has no such limit",
                   static_cast<unsigned long long>(writer.Limit()));
    }
    ullTaken += room;
    if (room != 0)
        pIntake->Feed(data, room);
}

void cExplainer::End()
{
    pIntake->End();
    if (eState == RAW)
        ExplainRaw(false);
    if (!bytes.empty())
        ShowBytes(bytes.size(), "outside of frames", "no frame begins here");
}

// ---- What the road tells

void cExplainer::OnInput(std::string_view piece)
{
    Relieve();
    bytes.append(piece);
    if (eState == RAW)
        pJudge->Feed(piece);
}

void cExplainer::OnFrameStart(const Frame& frame, std::uint64_t offset)
{
    const auto before = static_cast<std::size_t>(std::max(offset, ullAt) - ullAt);
    if (before != 0 && bLost)
        ExplainFrame(current, before, eCHECKSUM::NONE, "broken off: a new frame begins inside it");
    else if (before != 0)
        ShowBytes(before, "outside of frames", bAnyFrame ? "no frame begins here" : "");
    bLost = false;
    bAnyFrame = true;
    silences.clear();
    current = frame;
    eState = frame.bRaw ? RAW : INSIDE;
    if (eState == RAW) {
        pJudge = std::make_unique<cJudge>();
        uiMessage = 1;
    }
}

void cExplainer::OnFrameEnd(const Frame& frame)
{
    cTeller::OnFrameEnd(frame);
    if (frame.bRaw)
        return;
    ExplainFrame(frame, bytes.size(), frame.bCrcOk ? eCHECKSUM::RIGHT : eCHECKSUM::WRONG,
                 frame.bCrcOk ? "" : "the checksum is wrong");
    eState = OUTSIDE;
}

void cExplainer::OnFrameLost(const Frame& frame, eLOSS loss)
{
    cTeller::OnFrameLost(frame, loss);
    if (loss == eLOSS::CUT_OFF) {
        ExplainFrame(frame, bytes.size(), eCHECKSUM::NONE, "cut off by the end of the input");
        eState = OUTSIDE;
    } else {
        current = frame;
        bLost = true;
    }
}

void cExplainer::OnTimeout(const Frame& frame)
{
    cTeller::OnTimeout(frame);
    if (frame.bRaw)
        pJudge->Timeout();
    else
        silences.push_back(frame.ullBytes);
}

// ---- Explanations

void cExplainer::ExplainFrame(const Frame& frame, std::size_t size, eCHECKSUM checksum,
                              const char* damage)
{
    const std::string title = "frame " + std::to_string(frame.ullNumber);
    if (eState == REST) {
        ShowBytes(size, title + ", its end", damage);
        return;
    }
    PayloadMap map =
        MapFrame(ullAt, std::string_view(bytes).substr(0, size), frame.ullBytes, checksum);
    cJudge judge;
    std::string_view payload = map.payload;
    for (const std::uint64_t silence : silences) {
        const std::string_view before =
            payload.substr(0, static_cast<std::size_t>(silence - judge.Fed()));
        judge.Feed(before);
        judge.Timeout();
        payload.remove_prefix(before.size());
    }
    judge.Feed(payload);
    judge.End();
    Section section;
    section.ullOffset = ullAt;
    section.title = title + ": " + Where(ullAt, size);
    section.damage = damage;
    if (frame.bInsideFile && checksum != eCHECKSUM::NONE)
        AddDamage(section.damage, "it ends inside an SML file");
    section.items = Walk(map, judge.Verdicts(), WalkOptions()).items;
    writer.Write(section);
    Drop(size);
}

// One section for each SML file. With more, what may be an unfinished message stays.
void cExplainer::ExplainRaw(bool more)
{
    if (!more)
        pJudge->End();
    PayloadMap map = MapRaw(ullAt, bytes);
    WalkOptions options;
    options.ullBase = ullAt;
    options.bOneFile = true;
    options.bMore = more;
    while (options.uiStart < bytes.size()) {
        options.uiMessage = uiMessage;
        Walked walked = Walk(map, pJudge->Verdicts(), options);
        if (walked.items.empty() && options.uiStart != 0)
            break;
        options.bMore = more && !walked.items.empty(); // else the message is larger than all
        uiMessage = walked.uiMessage;
        Section section;
        section.ullOffset = ullAt + options.uiStart;
        section.title = "SML file: " + Where(section.ullOffset, walked.uiEnd - options.uiStart);
        section.items = std::move(walked.items);
        if (!section.items.empty())
            writer.Write(section);
        options.uiStart = walked.uiEnd;
    }
    pJudge->Forget(ullAt + options.uiStart);
    Drop(options.uiStart);
}

void cExplainer::ShowBytes(std::size_t size, const std::string& title, const char* damage)
{
    Section section;
    section.ullOffset = ullAt;
    section.title = title + ": " + Where(ullAt, size);
    section.damage = damage;
    Annotation& item = section.items.emplace_back();
    item.ullOffset = ullAt;
    item.bytes = bytes.substr(0, size);
    item.name =
        eState == REST ? "bytes of a frame too long to be taken apart" : "no part of a frame";
    writer.Write(section);
    Drop(size);
}

// Explains what can be of too much.
void cExplainer::Relieve()
{
    if (eState == RAW && bytes.size() > kMaxFrame) {
        ExplainRaw(true);
    } else if (eState == OUTSIDE && bytes.size() > kMaxGap) {
        ShowBytes(bytes.size() - (quarn::kFrameStartSize - 1), "outside of frames",
                  bAnyFrame ? "no frame begins here" : "");
    } else if (eState == INSIDE && bytes.size() > kMaxFrame) {
        ExplainFrame(current, bytes.size() - (quarn::kFrameStartSize - 1), eCHECKSUM::NONE,
                     "too long: only its beginning is taken apart");
        eState = REST;
    } else if (eState == REST && bytes.size() > kMaxFrame) {
        ShowBytes(bytes.size() - (quarn::kFrameStartSize - 1),
                  "frame " + std::to_string(current.ullNumber), "");
    }
}

void cExplainer::Drop(std::size_t size)
{
    bytes.erase(0, size);
    ullAt += size;
}

} // namespace tool
