// SmlTpTx, the framing state machine: puts the bytes of an SML file into transport framing. A file
// may arrive in any number of input buffers; the one that begins it is flagged BUF_FLAG_FIRST, the
// one that ends it BUF_FLAG_LAST (one that holds it all carries both). It stops at any byte when
// the input is used up or the output is full, and resumes there on the next call.
//
//   SmlTpTx tx(SMLT_MODE_TP);
//   cBuffer in(file, size, BUF_FLAG_FIRST | BUF_FLAG_LAST, 0);
//   in.Commit(size);
//   cBuffer out(room, sizeof room, 0, 0);
//   for (int result = SMLTP_OUTPUT_FULL; result == SMLTP_OUTPUT_FULL; out.Clear()) {
//       result = tx.Process(&in, &out);
//       send(out.ReadPtr(), out.Left());
//   }
//
// The flags of out tell what the written piece is:
//
//   BUF_FLAG_FIRST  it begins with the frame's first byte
//   BUF_FLAG_LAST   it ends with the frame's last byte
//   BUF_FLAG_TP     it is in transport framing
//
// A frame of n bytes of payload takes at most quarn::MaxFrameSize(n) bytes. In SMLT_MODE_TP, input
// that is flagged BUF_FLAG_TP where a frame would begin is framed already: it, and all input up to
// the one flagged BUF_FLAG_LAST, passes through untouched and without flags, like all input in
// SMLT_MODE_RAW.
//
// The machine allocates nothing and keeps neither buffer. One instance serves one stream and one
// thread at a time.
#ifndef QUARN_TRANSPORT_TP_TX_H
#define QUARN_TRANSPORT_TP_TX_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/export.h"
#include "quarn/transport/mode.h"

class QUARN_API SmlTpTx
{
public:
    explicit SmlTpTx(int mode) noexcept; // one of eSMLT_MODE

    // Abandons the frame in progress: the next input begins one.
    void Reset() noexcept;

    // Consumes bytes of in and writes framed bytes to out. REQUIRES: neither is null, and they are
    // not one buffer. The result is
    //   SMLTP_INPUT_EMPTY  in is used up; the frame goes on with the next input. Also when no frame
    //                      is open and in, of no bytes, does not begin one
    //   SMLTP_OUTPUT_FULL  a byte is due and out has no room: clear out, call again with the same
    //                      in
    //   SMLTP_FINISHED     the frame's last byte is written; when passing through: an input flagged
    //                      BUF_FLAG_LAST is copied
    //   SMLTP_NO_FIRST     no frame is open, and in, which would begin one, is not flagged
    //                      BUF_FLAG_FIRST: in is cleared
    int Process(cBuffer* in, cBuffer* out) noexcept;

private:
    enum eSTATE : int {
        STATE_RAW = 0,
        STATE_IDLE = 1,
        STATE_START = 2, // this and what follows is framing: output is flagged BUF_FLAG_TP
        STATE_DATA = 3,
        STATE_ESC_COUNT = 4,
        STATE_ESC_WRITE = 5,
        STATE_PAD = 6,
        STATE_END = 7
    };

    int Step(cBuffer& in, cBuffer& out) noexcept;
    int Raw(cBuffer& in, cBuffer& out) noexcept;
    int Idle(cBuffer& in) noexcept;
    int Start(cBuffer& out) noexcept;
    int Data(cBuffer& in, cBuffer& out) noexcept;
    int EscCount(cBuffer& in) noexcept;
    int EscWrite(cBuffer& out) noexcept;
    int Pad(cBuffer& out) noexcept;
    int End(cBuffer& out) noexcept;

    void Enter(eSTATE state) noexcept;
    bool WriteSequence(const char* sequence, int length, cBuffer& out) noexcept;
    void Write(const char* bytes, long length, cBuffer& out) noexcept;
    void CountIn(const cBuffer& out) noexcept;

    int iMode;
    eSTATE eState = STATE_IDLE;
    int iIndex = 0;            // place in the sequence being written
    int iCount = 0;            // escape bytes of the run being counted or written; then padding
    unsigned int uiLength = 0; // bytes of the frame written; only its last two bits matter
    unsigned short usCrc = 0;  // running register
    long lUncounted = 0;       // bytes at the end of the output that are not yet in it
};

#endif
