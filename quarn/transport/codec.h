// cSMLTenc and cSMLTdec: the transport framing applied to the host's framework messages. Each is a
// framing state machine plus two buffers that live for one call.
//
// Both take the bytes from the message record's interface record and leave other parameters alone:
//
//   "SmltFlags"  unsigned  frame flags (encoding: read and rewritten; decoding: not read)
//   "IfRec"      record    holds the data parameter "RawData": the bytes
//
// A parameter that is missing or of another type is refused with a trace line of LibSmlt at level
// 2, and the message stays as it is.
//
// Memory: a call allocates a copy of the bytes and an output buffer, and frees both before it
// returns. When memory runs out the call fails with its error result and a level-2 trace line; the
// message and the output record stay as they were. No exception leaves the classes.
//
// Threads: one codec serves one stream and one thread at a time.
#ifndef QUARN_TRANSPORT_CODEC_H
#define QUARN_TRANSPORT_CODEC_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/export.h"
#include "quarn/foundation/framework.h"
#include "quarn/transport/tp_rx.h"
#include "quarn/transport/tp_tx.h"

#include <memory>

namespace quarn::detail::transport
{

// The buffers of one call, both null between calls.
class CodecBuffers
{
public:
    // Copies the bytes of raw into the input buffer, flagged with flags, beside an output buffer
    // for outSize bytes. Throws std::bad_alloc.
    void Create(const vorn::cRecordPar& raw, int flags, long long outSize);
    void Release() noexcept;

    HeapBuffer* In() const noexcept { return pInput.get(); }
    HeapBuffer* Out() const noexcept { return pOutput.get(); }

private:
    struct Dispose {
        void operator()(HeapBuffer* buffer) const noexcept
        {
            buffer->Release();
            delete buffer;
        }
    };
    std::unique_ptr<HeapBuffer, Dispose> pInput;
    std::unique_ptr<HeapBuffer, Dispose> pOutput;
};

enum eCODEC_STATE : int {
    CODEC_IDLE = 0,      // no frame is open
    CODEC_FRAME_OPEN = 1 // a frame is open and goes on with the next message
};

} // namespace quarn::detail::transport

// Results of cSMLTenc::Encode.
enum eSMLT_ENCODE : int {
    SMLT_ENCODE_REFUSED = 0, // the message stays as it is
    SMLT_ENCODE_DONE = 1     // the message holds framed bytes
};

// Frames the messages of one SML file as they come: the message flagged BUF_FLAG_FIRST opens the
// frame, the one flagged BUF_FLAG_LAST ends it, and the framed bytes of all calls, joined, are the
// frame. What the Encode_* functions return as "SmltFlags" and "SmlMsgRawData" goes into a message
// as "SmltFlags" and "IfRec"."RawData".
//
// The framed bytes of one call may be at most twice the message's bytes. What needs more is
// refused; with few or no escape bytes that is a file of one message of less than 16 bytes, or of
// 17, a first message of less than 8, or a last message of less than 8 to 11.
class QUARN_API cSMLTenc : public SmlTpTx
{
public:
    explicit cSMLTenc(int mode) noexcept : SmlTpTx(mode) {} // one of eSMLT_MODE

    // Replaces the bytes of msg by framed ones and its flags by those of the framed piece
    // (BUF_FLAG_TP, with BUF_FLAG_FIRST and BUF_FLAG_LAST where the frame begins and ends; 0 when
    // bytes pass through). "IfRec", in which "RawData" moves to the end, and "SmltFlags" move to
    // the end of the message record, in this order. The result is one of eSMLT_ENCODE. It is
    // SMLT_ENCODE_REFUSED
    //   without a trace line, when "SmltFlags" lacks BUF_FLAG_SML;
    //   when "SmltFlags" or "RawData" is missing or mistyped. A frame in progress stays open;
    //   when no frame is open and BUF_FLAG_FIRST is missing, when the framed bytes do not fit or
    //   when memory runs out. The frame in progress is lost: the next message must begin one.
    int Encode(vorn::cMsg& msg) noexcept;

    // What Encode does before and after framing, for hosts that go step by step. A step that fails
    // leaves the message and the frame in progress as they were.
    // Takes "SmltFlags" over: 1 when BUF_FLAG_SML is among them; 0 when not, and, with a trace
    // line, when they are missing or mistyped.
    int GetFlags(const vorn::cMsg& msg) noexcept;
    // Makes the buffers, with the bytes of "RawData" and these flags in the one for the input: 1;
    // 0, with a trace line, when "RawData" is missing or mistyped or no memory is left.
    int GetMsgRawData(const vorn::cMsg& msg) noexcept;
    // Puts the bytes and the flags of the output buffer into msg, as Encode does. False when there
    // are no buffers and, with a trace line, when no memory is left.
    bool ReplaceRecord(vorn::cMsg& msg) const noexcept;
    void ReleaseBuffers() noexcept; // Encode and the destructor do that too

private:
    bool TakeFlags(const vorn::cMsg& msg);
    bool TakeRawData(const vorn::cMsg& msg);
    bool Frame() noexcept;
    void PutBack(vorn::cMsg& msg) const;
    bool Fail(const char* text) noexcept;

    int iCodecState = quarn::detail::transport::CODEC_IDLE;
    unsigned int uiFlags = 0; // of the message at hand
    quarn::detail::transport::CodecBuffers buffers;
};

// Results of cSMLTdec::Decode.
enum eSMLT_DECODE : int {
    SMLT_DECODE_FRAME = 0,  // a frame has ended and all input is used
    SMLT_DECODE_MORE = 1,   // all input is used, and no frame has ended (always so in RAW mode)
    SMLT_DECODE_LEFT = 2,   // a frame has ended and input is left; GetRemaining tells how much
    SMLT_DECODE_ERROR = 3,  // internal error or out of memory; the frame in progress is lost
    SMLT_DECODE_NO_DATA = 4 // no usable "IfRec" or "RawData"; the frame in progress is lost
};

// Decodes the framed bytes of messages into what cSMLP::SmlParser reads. Whatever pieces the bytes
// arrive in, the payload pieces appended are those of the frames, in order.
//
// A call ends at the end of a frame. What is behind it in the same message is not kept: the host
// passes the last GetRemaining() bytes again, as the next message:
//
//   int result = decoder.Decode(msg, ifRec, out);
//   while (result == SMLT_DECODE_LEFT) {
//       // give out to the parser, then put the last decoder.GetRemaining() bytes into msg
//       out.Create();
//       result = decoder.Decode(msg, ifRec, out);
//   }
class QUARN_API cSMLTdec : public SmlTpRx
{
public:
    explicit cSMLTdec(int mode) noexcept : SmlTpRx(mode) {} // one of eSMLT_MODE

    // Decodes the bytes of msg. ifRec receives a copy of the message's interface record. With
    // SMLT_DECODE_FRAME, _MORE and _LEFT, out gains "SmltFlags" (unsigned: BUF_FLAG_FIRST when a
    // frame begins in this piece, BUF_FLAG_LAST when it ends, BUF_FLAG_CRC_ERROR when it is
    // damaged) and "SmlRawData" (data: the payload, possibly of no bytes); otherwise out stays as
    // it is. A piece flagged BUF_FLAG_FIRST begins anew, whether or not the frame before ended.
    // The result is one of eSMLT_DECODE.
    int Decode(vorn::cMsg& msg, vorn::cRecord& ifRec, vorn::cRecord& out) noexcept;

    // After SMLT_DECODE_LEFT: how many bytes at the end of the message's "RawData" are unread;
    // after any other result 0.
    int GetRemaining() const noexcept { return iRemaining; }

    // What Decode does before and after unframing, step by step, as cSMLTenc has it.
    // Makes the buffers, with the bytes of "RawData" in the one for the input, and copies "IfRec"
    // to ifRec: 1; 0, with a trace line, when one of them is missing or mistyped or no memory is
    // left.
    int GetMsgRawData(const vorn::cMsg& msg, vorn::cRecord& ifRec) noexcept;
    // Appends "SmltFlags" and "SmlRawData" of the output buffer. False, and out as it was, when
    // there are no buffers and, with a trace line, when no memory is left.
    bool AppendRecords(vorn::cRecord& out) const noexcept;
    void ReleaseBuffers() noexcept;

private:
    bool TakeRawData(const vorn::cMsg& msg, vorn::cRecord& ifRec);
    int Unframe() noexcept;
    void PutOut(vorn::cRecord& out) const;
    int Fail(int result, const char* text) noexcept;

    int iCodecState = quarn::detail::transport::CODEC_IDLE;
    quarn::detail::transport::CodecBuffers buffers;
    int iRemaining = 0;
};

#endif
