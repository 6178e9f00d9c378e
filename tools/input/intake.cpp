// See intake.h. Bytes behind hex text go through an intake of their own, which tells frames from
// raw SML.
#include "tools/input/intake.h"

namespace tool
{

void cIntake::Feed(const unsigned char* data, std::size_t size)
{
    if (eKind == INPUT_AUTO) {
        head.append(reinterpret_cast<const char*>(data), size);
        Decide(false);
        return;
    }
    if (eKind == INPUT_HEX) {
        FeedHex(data, size);
        return;
    }
    if (pReceiver == nullptr)
        pReceiver = std::make_unique<cReceiver>(eKind == INPUT_RAW, events);
    pReceiver->Feed(data, size);
}

// Passes on what has been kept back once the kind is known.
void cIntake::Decide(bool complete)
{
    eKind = DetectInput(std::string_view(head).substr(0, kDetectHead), complete);
    if (eKind == INPUT_AUTO && head.size() >= kDetectHead)
        eKind = INPUT_HEX; // nothing but white space and digits so far
    if (eKind == INPUT_RAW && bLive)
        eKind = INPUT_FRAMED;
    if (eKind == INPUT_AUTO)
        return;
    const std::string kept = std::move(head);
    head.clear();
    Feed(reinterpret_cast<const unsigned char*>(kept.data()), kept.size());
}

void cIntake::FeedHex(const unsigned char* data, std::size_t size)
{
    if (bBroken)
        return;
    if (pInner == nullptr)
        pInner = std::make_unique<cIntake>(INPUT_AUTO, bLive, events, report);
    hexBytes.clear();
    if (!hex.Read({reinterpret_cast<const char*>(data), size}, hexBytes)) {
        bBroken = true;
        report.Say(EXIT_DAMAGED,
                   "byte %llu of the text is no hex digit; what follows it is not read",
                   hex.Position() + 1);
    }
    pInner->Feed(reinterpret_cast<const unsigned char*>(hexBytes.data()), hexBytes.size());
}

void cIntake::Timeout()
{
    if (pInner != nullptr)
        pInner->Timeout();
    if (pReceiver != nullptr)
        pReceiver->Timeout();
}

void cIntake::Restart()
{
    EndText();
    hex = cHexReader();
    bBroken = false;
    if (pInner != nullptr)
        pInner->Restart();
    if (pReceiver != nullptr)
        pReceiver->Restart();
    report.Settle(true);
}

void cIntake::End()
{
    EndText();
    if (pInner != nullptr)
        pInner->End();
    if (pReceiver != nullptr)
        pReceiver->End();
    report.Settle(true);
}

void cIntake::EndText()
{
    if (eKind == INPUT_AUTO && !head.empty())
        Decide(true);
    if (pInner != nullptr && !bBroken && hex.HasHalfByte())
        report.Say(EXIT_UNSETTLED, "the hex text ends with half a byte");
}

} // namespace tool
