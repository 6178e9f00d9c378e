// The receive road: the bytes of one input, in whatever pieces they come, through the transport
// decoder and the parser to events.
//
//   bytes -> cut at start sequences -> cSMLTdec -> cSMLP -> events
//
// The events do not depend on the pieces. Three rules make it so:
//
//   1. The input is cut before the last byte of every start sequence. A decoder that meets a new
//      start inside a frame drops the payload it has found in the same piece; with this cut that is
//      never more than the one byte which one-byte pieces would drop as well, and each piece starts
//      one frame and ends one at most.
//   2. Within a frame a new SML file may begin at any byte: each piece is given to the parser as
//      one that may begin a file. When the parser has refused something, the rest of that frame is
//      not given to it.
//   3. What a frame held is told message by message, as it is parsed, under the number the frame
//      has or would have had. A frame given up for a new start, or cut off by the end of the input,
//      is told as lost; the next one takes its number. Whoever prints and wants to know first
//      whether the frame is good holds its output back until then. The message that a cut through
//      the input leaves unfinished is not told.
//
// At the end of a frame, however it ends, a parser that still waits inside a file is reset, so that
// no frame harms the next. The same is done when a live line falls silent: what the events tell
// then does depend on the time. What comes late of the frame is refused, unless a file begins with
// it. Memory does not grow with the input.
#ifndef TOOLS_ROAD_RECEIVER_H
#define TOOLS_ROAD_RECEIVER_H

#include "quarn/quarn.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>

namespace tool
{

struct Frame {
    std::uint64_t ullNumber = 1;   // of the frames that finish, from 1
    std::uint64_t ullBytes = 0;    // payload so far
    std::uint64_t ullMessages = 0; // records so far
    bool bRaw = false;             // a raw input, which stands for a frame
    bool bCrcOk = true;            // known when it has ended
    bool bInsideFile = false;      // it ended, or fell silent, before the SML file in it did
};

enum class eLOSS { CUT_OFF, ABANDONED }; // by the end of the input, by a new start sequence
enum class eGAP { BEFORE_FIRST, BETWEEN, AFTER_LAST, NO_FRAME };

class cReceiverEvents
{
public:
    virtual ~cReceiverEvents() = default;

    // The next bytes of the input; what they bring is told behind them.
    virtual void OnInput(std::string_view bytes) { (void)bytes; }
    // A frame begins with the byte at offset in the input; it has been told by OnInput.
    virtual void OnFrameStart(const Frame& frame, std::uint64_t offset)
    {
        (void)frame;
        (void)offset;
    }
    // A record of the parser, good or not.
    virtual void OnMessage(const Frame& frame, const vorn::cRecord& record) = 0;
    // The parser has refused the rest of the frame and gives no record that tells why; result is
    // one of eSMLP_RESULT.
    virtual void OnRefused(const Frame& frame, int result) = 0;
    // The next bytes of the frame's payload; what they hold is told behind them.
    virtual void OnPayload(const Frame& frame, std::string_view bytes)
    {
        (void)frame;
        (void)bytes;
    }
    virtual void OnFrameEnd(const Frame& frame) = 0;
    virtual void OnFrameLost(const Frame& frame, eLOSS loss) = 0;
    // Within the frame no byte has come for too long: the SML file at hand is given up.
    virtual void OnTimeout(const Frame& frame) { (void)frame; }
    // count bytes from offset on belong to no frame.
    virtual void OnGap(std::uint64_t offset, std::uint64_t count, eGAP gap) = 0;
};

class cReceiver
{
public:
    // raw: the input is SML without framing and counts as one good frame.
    cReceiver(bool raw, cReceiverEvents& receiver);

    void Feed(const unsigned char* data, std::size_t size);
    // No byte has come for longer than between two of one message: an SML file that is unfinished
    // is given up. The frame goes on.
    void Timeout();
    // What is fed from here on does not continue what came before: a frame that is open has been
    // cut off.
    void Restart();
    // The input has ended. Nothing may be fed afterwards.
    void End();

private:
    std::size_t FindCut(const unsigned char* data, std::size_t size) noexcept;
    void Unframe(const unsigned char* data, std::size_t size);
    void Decoded(int result, std::size_t size);
    void OpenFrame(std::uint64_t offset);
    void CloseFrame(bool crcOk);
    void LoseFrame(eLOSS loss);
    void Parse(vorn::cRecord& piece);
    void LeaveFile();
    void Gap(std::uint64_t end, eGAP gap);

    cReceiverEvents& events;
    bool bRaw;
    cSMLTdec decoder;
    cSMLP parser;
    vorn::cMsg msg;
    vorn::cRecord recIf;
    vorn::cRecord recPiece;
    std::map<int, vorn::cRecord> records;

    std::uint64_t ullPosition = 0; // bytes given to the decoder
    std::uint64_t ullGapStart = 0; // REQUIRES: no frame is open
    int iStartSeen = 0;            // how much of a start sequence the input ends with
    Frame frame;
    bool bFrameOpen = false;
    bool bAnyFrame = false; // a start sequence has been found
    bool bWaiting = false;  // the parser is inside a file
    bool bRefused = false;  // the rest of the frame is not parsed
    bool bCutOff = false;   // the file is left because the input has ended inside its frame
};

} // namespace tool

#endif
