// SmlTpRx, the unframing state machine: recovers payloads from a byte stream in transport framing.
// It hunts for a start sequence in arbitrary bytes, undoes the doubling of escape runs, drops the
// padding and checks the CRC. It stops at any byte when the input is used up or the output is full,
// and resumes there on the next call.
//
//   SmlTpRx rx(SMLT_MODE_TP);
//   cBuffer in(bytes, size, BUF_FLAG_TP, 0);
//   in.Commit(size);
//   cBuffer out(room, sizeof room, 0, 0);
//   int result = rx.Process(&in, &out);
//
// The flags of out tell where the written piece stands in its frame:
//
//   BUF_FLAG_FIRST      a frame begins in this piece. A frame begun before that did not end is
//                       abandoned: what earlier pieces held of it is to be discarded
//   BUF_FLAG_LAST       the frame ends with this piece
//   BUF_FLAG_CRC_ERROR  with BUF_FLAG_LAST: the frame is damaged (its payload is delivered all the
//                       same)
//
// A start sequence clears out, bytes and flags, before the frame's first byte is written: an output
// buffer serves one frame at a time. In SMLT_MODE_TP, input without BUF_FLAG_TP that arrives
// between frames switches the machine to passing bytes through, until Reset.
//
// Damaged input: bytes outside of frames are skipped; an escape that introduces neither a start,
// an end nor escaped content is dropped together with the four bytes behind it; a padding count
// above 3 counts as 0, and no more padding is removed than the frame has content. None of this is
// reported but by the frame's CRC, with the trace line "CRC-ERROR" (level 2).
//
// The machine allocates nothing and keeps neither buffer. One instance serves one stream and one
// thread at a time.
#ifndef QUARN_TRANSPORT_TP_RX_H
#define QUARN_TRANSPORT_TP_RX_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/export.h"
#include "quarn/foundation/fifo3.h"
#include "quarn/transport/mode.h"

class QUARN_API SmlTpRx
{
public:
    explicit SmlTpRx(int mode) noexcept; // one of eSMLT_MODE

    // Forgets the frame in progress: the next input is hunted for a start sequence.
    void Reset() noexcept;

    // Consumes bytes of in and writes payload to out. REQUIRES: neither is null, and they are not
    // one buffer. The result is
    //   SMLTP_INPUT_EMPTY  in is used up; the frame, or the hunt for one, goes on with the next
    //                      input
    //   SMLTP_OUTPUT_FULL  a byte is due and out has no room: clear out, call again with the same
    //                      in
    //   SMLTP_INPUT_LEFT   a frame has ended and in holds bytes behind it
    //   SMLTP_FINISHED     a frame has ended and in is used up
    int Process(cBuffer* in, cBuffer* out) noexcept;

private:
    enum eSTATE : int {
        STATE_RAW = 0,
        STATE_IDLE = 1,
        STATE_HUNT = 2,
        STATE_START = 3,
        STATE_DATA = 4,
        STATE_ESC = 5,
        STATE_FLUSH = 6,
        STATE_TAIL = 7,
        STATE_PADCOUNT = 8,
        STATE_TAIL_OUT = 9,
        STATE_CRC_CHECK = 10
    };

    int Step(cBuffer& in, cBuffer& out) noexcept;
    int Raw(cBuffer& in, cBuffer& out) noexcept;
    int Idle(cBuffer& in) noexcept;
    int Hunt(cBuffer& in) noexcept;
    int Start(cBuffer& out) noexcept;
    int Data(cBuffer& in, cBuffer& out) noexcept;
    int Esc(cBuffer& in) noexcept;
    int Flush(cBuffer& out) noexcept;
    int Tail(cBuffer& in, cBuffer& out) noexcept;
    int PadCount(cBuffer& in) noexcept;
    int TailOut(cBuffer& out) noexcept;
    int CrcCheck(cBuffer& in, cBuffer& out) noexcept;

    int Finish(cBuffer& in, long run, cBuffer& out) noexcept;
    int EndFrame(const cBuffer& in, cBuffer& out) noexcept;
    int FlushThen(eSTATE next, int escapes) noexcept;
    unsigned char Take(cBuffer& in) noexcept;
    bool ThroughWindow(unsigned char b, cBuffer& out) noexcept;
    void MoveRun(const char* run, long length, cBuffer& out) noexcept;

    int iMode;
    eSTATE eState = STATE_IDLE;
    eSTATE eNextState = STATE_DATA;      // to enter after FLUSH
    int iIndex = 0;                      // place in the sequence being recognised or written
    int iEscapeCount = 0;                // escape bytes seen and not yet passed on
    unsigned char aucEscapeTail[4] = {}; // what followed an escape, while its meaning is open
    unsigned short usCrc = 0;            // running register
    Fifo3 window;                        // the last content bytes, which may be padding
};

#endif
