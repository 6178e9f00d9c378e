// See receiver.h.
#include "tools/road/receiver.h"

#include <algorithm>
#include <cstring>

namespace tool
{

using quarn::kFrameEscape, quarn::kFrameStartSize;

cReceiver::cReceiver(bool raw, cReceiverEvents& receiver)
    : events(receiver), bRaw(raw), decoder(raw ? SMLT_MODE_RAW : SMLT_MODE_TP), parser(1)
{
}

void cReceiver::Feed(const unsigned char* data, std::size_t size)
{
    if (bRaw) {
        if (!bFrameOpen && size != 0)
            OpenFrame(0);
        Unframe(data, size);
        return;
    }
    while (size != 0) {
        const std::size_t count = FindCut(data, size);
        if (count != 0)
            Unframe(data, count);
        data += count;
        size -= count;
    }
}

// How many bytes can be given to the decoder at once: up to the last byte of a start sequence. Of a
// piece that begins with that byte, the next one counts.
std::size_t cReceiver::FindCut(const unsigned char* data, std::size_t size) noexcept
{
    std::size_t i = 0;
    while (i < size) {
        if (iStartSeen == 0) {
            const void* found = std::memchr(data + i, kFrameEscape, size - i);
            if (found == nullptr)
                return size;
            i = static_cast<std::size_t>(static_cast<const unsigned char*>(found) - data);
        }
        iStartSeen = quarn::MatchFrameStart(iStartSeen, static_cast<char>(data[i]));
        if (iStartSeen == kFrameStartSize) {
            if (i != 0) {
                iStartSeen = kFrameStartSize - 1; // the last byte is met again
                return i;
            }
            iStartSeen = 0;
        }
        ++i;
    }
    return size;
}

void cReceiver::Unframe(const unsigned char* data, std::size_t size)
{
    while (size != 0) {
        recIf.Create();
        recIf.AppendDataPar("RawData", data, static_cast<int>(size), 0);
        msg.GetRecord().Create();
        msg.GetRecord().AppendRecordPar("IfRec", recIf, 0);
        recPiece.Create();
        const int result = decoder.Decode(msg, recIf, recPiece);
        const auto left = static_cast<std::size_t>(decoder.GetRemaining());
        events.OnInput({reinterpret_cast<const char*>(data), size - left});
        Decoded(result, size - left);
        data += size - left;
        size = left;
    }
}

// Takes what the decoder made of size bytes.
void cReceiver::Decoded(int result, std::size_t size)
{
    ullPosition += size;
    if (result == SMLT_DECODE_ERROR || result == SMLT_DECODE_NO_DATA) {
        if (bFrameOpen)
            LoseFrame(eLOSS::ABANDONED);
        return;
    }
    const unsigned flags = recPiece.GetFirstPar("SmltFlags", 0, 0).GetUInt();
    if ((flags & BUF_FLAG_FIRST) != 0) {
        // The start sequence ends with the first byte of this piece.
        if (bFrameOpen)
            LoseFrame(eLOSS::ABANDONED);
        else
            Gap(ullPosition - size - (kFrameStartSize - 1),
                bAnyFrame ? eGAP::BETWEEN : eGAP::BEFORE_FIRST);
        OpenFrame(ullPosition - size - (kFrameStartSize - 1));
    }
    if (!bFrameOpen)
        return;
    const vorn::cRecordPar payload = recPiece.GetFirstPar("SmlRawData", 0, 0);
    frame.ullBytes += static_cast<unsigned>(payload.GetSize());
    if (payload.GetSize() != 0)
        events.OnPayload(frame, {payload.GetData(), static_cast<std::size_t>(payload.GetSize())});
    if (payload.GetSize() != 0 && !bRefused) {
        recPiece.DeletePar("SmltFlags", 0, 0);
        recPiece.AppendUIntPar("SmltFlags", BUF_FLAG_FIRST, 0);
        Parse(recPiece);
    }
    if ((flags & BUF_FLAG_LAST) != 0)
        CloseFrame((flags & BUF_FLAG_CRC_ERROR) == 0);
}

void cReceiver::OpenFrame(std::uint64_t offset)
{
    const std::uint64_t number = frame.ullNumber;
    frame = Frame();
    frame.ullNumber = number;
    frame.bRaw = bRaw;
    bFrameOpen = true;
    bAnyFrame = true;
    bRefused = false;
    events.OnFrameStart(frame, offset);
}

void cReceiver::CloseFrame(bool crcOk)
{
    LeaveFile();
    frame.bCrcOk = crcOk;
    events.OnFrameEnd(frame);
    ++frame.ullNumber;
    bFrameOpen = false;
    ullGapStart = ullPosition;
}

void cReceiver::LoseFrame(eLOSS loss)
{
    bCutOff = loss == eLOSS::CUT_OFF;
    LeaveFile();
    bCutOff = false;
    events.OnFrameLost(frame, loss);
    bFrameOpen = false;
    ullGapStart = ullPosition;
}

// Gives piece to the parser and tells what comes out.
void cReceiver::Parse(vorn::cRecord& piece)
{
    int count = 0;
    const int result = parser.SmlParser(piece, records, count);
    bool explained = false;
    if (bCutOff) {
        records.clear(); // they say no more than that something is missing
        return;
    }
    for (const auto& entry : records) {
        ++frame.ullMessages;
        events.OnMessage(frame, entry.second);
        // A refused message has a record that closes no file.
        const unsigned flags = entry.second.GetFirstPar("SmltFlags", 0, 0).GetUInt();
        const vorn::cRecordPar error = entry.second.GetFirstParByPath("SmlStatus.Error", ".", 0, 0);
        explained = error.GetSInt() != SML_STATUS_OK && (flags & BUF_FLAG_LAST) == 0;
    }
    records.clear();
    bWaiting = result == SMLP_OK;
    if (result < 0) {
        bRefused = true;
        if (!explained)
            events.OnRefused(frame, result);
    }
}

// The host's duty where a frame ends or the line is silent: a parser that waits inside a file gives
// up its unfinished message (or completes a close message that lacks only its last byte), then the
// file.
void cReceiver::LeaveFile()
{
    if (!bWaiting)
        return;
    frame.bInsideFile = true;
    vorn::cRecord nothing;
    nothing.AppendUIntPar("SmltFlags", 0, 0);
    nothing.AppendDataPar("SmlRawData", nullptr, 0, 0);
    parser.TimeoutEvent();
    Parse(nothing);
    parser.Reset_FileAttributes();
    bWaiting = false;
}

void cReceiver::Timeout()
{
    if (!bWaiting)
        return;
    events.OnTimeout(frame);
    LeaveFile();
}

void cReceiver::Restart()
{
    End();
    decoder = cSMLTdec(bRaw ? SMLT_MODE_RAW : SMLT_MODE_TP);
    ullGapStart = ullPosition;
    iStartSeen = 0;
    bAnyFrame = false;
}

void cReceiver::Gap(std::uint64_t end, eGAP gap)
{
    if (end > ullGapStart)
        events.OnGap(ullGapStart, end - ullGapStart, gap);
}

void cReceiver::End()
{
    if (bRaw) {
        if (bFrameOpen)
            CloseFrame(true);
    } else if (bFrameOpen) {
        LoseFrame(eLOSS::CUT_OFF);
    } else {
        // What may be the beginning of a start sequence is a frame that was cut off.
        const auto start =
            std::min(static_cast<std::uint64_t>(iStartSeen), ullPosition - ullGapStart);
        Gap(ullPosition - start, bAnyFrame    ? eGAP::AFTER_LAST
                                 : start != 0 ? eGAP::BEFORE_FIRST
                                              : eGAP::NO_FRAME);
        if (start != 0) {
            OpenFrame(ullPosition - start);
            LoseFrame(eLOSS::CUT_OFF);
        }
    }
}

} // namespace tool
