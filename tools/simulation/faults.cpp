// See faults.h.
#include "tools/simulation/faults.h"

#include "quarn/quarn.h"

namespace tool
{

using quarn::kFrameEndSequence, quarn::kFrameEndSize, quarn::kFrameEscape, quarn::kFrameStartSize;

namespace
{

// Of the end sequence, the padding count and the checksum.
constexpr std::size_t kTail = kFrameEndSize - kFrameEndSequence.size();

} // namespace

void cFaults::Pass(std::string& frame)
{
    if (!random.Chance(dFraction)) {
        Begin();
        ++counts.ullGood;
    } else {
        switch (random.Below(4)) {
        case 0:
            AddNoise(frame);
            break;
        case 1:
            LoseEnd(frame);
            break;
        case 2:
            // Inside an open frame its end would count; and an escape at its end could begin a
            // start sequence.
            if (!bOpen && frame.back() != kFrameEscape) {
                LoseBegin(frame);
                break;
            }
            [[fallthrough]];
        default:
            Flip(frame);
            break;
        }
    }
    counts.ullBytes += frame.size();
}

void cFaults::End()
{
    if (bOpen)
        ++counts.ullCut;
    bOpen = false;
}

// A start sequence comes.
void cFaults::Begin()
{
    if (bOpen)
        ++counts.ullBroken;
    bOpen = false;
}

void cFaults::Flip(std::string& frame)
{
    Begin();
    ++counts.ullDamaged;
    ++done.ullFlipped;
    const std::size_t content = frame.size() - kFrameStartSize - kFrameEndSize;
    const std::string sent = frame;
    for (int bits = 1 + 2 * random.Below(2); bits > 0;) { // an odd number shows surely
        std::size_t at = kFrameStartSize + random.Below(content + kTail);
        if (at >= kFrameStartSize + content)
            at += kFrameEndSize - kTail;
        const char flipped = static_cast<char>(sent[at] ^ (1 << random.Below(8)));
        if (frame[at] != sent[at] || sent[at] == kFrameEscape || flipped == kFrameEscape)
            continue; // another place
        frame[at] = flipped;
        --bits;
    }
}

void cFaults::LoseEnd(std::string& frame)
{
    Begin();
    bOpen = true;
    ++done.ullNoEnd;
    std::size_t size =
        kFrameStartSize + random.Below(frame.size() - kFrameStartSize - kFrameEndSize);
    while (size > kFrameStartSize && frame[size - 1] == kFrameEscape)
        --size; // a run of escapes would swallow those of the next start
    frame.resize(size);
}

void cFaults::LoseBegin(std::string& frame)
{
    ++done.ullNoBegin;
    frame.erase(0, kFrameStartSize + random.Below(frame.size() - kFrameStartSize));
    counts.ullOutside += frame.size();
}

void cFaults::AddNoise(std::string& frame)
{
    ++done.ullNoise;
    std::string noise(1 + random.Below(std::size_t{40}), '\0');
    for (char& c : noise) {
        c = static_cast<char>(random.Below(0x100));
        if (c == kFrameEscape)
            c = 0;
    }
    if (!bOpen) // else it is taken for content
        counts.ullOutside += noise.size();
    Begin();
    ++counts.ullGood;
    frame.insert(0, noise);
}

} // namespace tool
