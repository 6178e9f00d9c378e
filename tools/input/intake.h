// From the bytes of a source to the receive road: finds out what the input holds, takes hex text
// apart, and feeds the rest. The kind is decided once per input, by its first bytes only, however
// they arrive.
#ifndef TOOLS_INPUT_INTAKE_H
#define TOOLS_INPUT_INTAKE_H

#include "tools/input/format.h"
#include "tools/input/hex_reader.h"
#include "tools/road/receiver.h"
#include "tools/road/report.h"

#include <memory>
#include <string>

namespace tool
{

class cIntake
{
public:
    // live: reading may have begun anywhere, so that an input which looks like raw SML counts as
    // framed all the same, unless kind says otherwise.
    cIntake(eINPUT kind, bool live, cReceiverEvents& receiver, cReport& reporter)
        : eKind(kind), bLive(live), events(receiver), report(reporter)
    {
    }

    void Feed(const unsigned char* data, std::size_t size);
    // No byte has come for longer than between two of one message.
    void Timeout();
    // What is fed from here on does not continue what came before.
    void Restart();
    // The input has ended.
    void End();

private:
    void Decide(bool complete);
    void EndText();
    void FeedHex(const unsigned char* data, std::size_t size);

    eINPUT eKind;
    bool bLive;
    cReceiverEvents& events;
    cReport& report;
    std::string head;                     // first bytes, while they do not tell the kind
    std::unique_ptr<cReceiver> pReceiver; // framed and raw input
    std::unique_ptr<cIntake> pInner;      // what the hex text stands for
    cHexReader hex;
    std::string hexBytes;
    bool bBroken = false; // the hex text cannot be read on
};

} // namespace tool

#endif
