// The framing state machines in their plainest form: one byte a step, no runs, no cleverness. The
// library's machines have to behave like these in every call. A step returns 0 to go on.
#ifndef FUZZ_REFERENCE_H
#define FUZZ_REFERENCE_H

#include "quarn/quarn.h"

#include <algorithm>
#include <string>

namespace test
{

using quarn::kFrameAlignment, quarn::kFrameCrcAfterStart, quarn::kFrameCrcGood, quarn::kFrameEnd,
    quarn::kFrameEndSequence, quarn::kFrameEscape, quarn::kFrameEscapedRun, quarn::kFrameEscapeSize,
    quarn::kFrameStart, quarn::kFrameStartSequence, quarn::kFrameStartSize;

class ReferenceTx
{
public:
    explicit ReferenceTx(int m) : mode(m), state(m == 1 ? RAW : IDLE) {}

    int Process(cBuffer* in, cBuffer* out)
    {
        int result = 0;
        while (result == 0)
            result = state == IDLE ? Idle(*in) : todo.empty() ? Read(*in, *out) : Write(*out);
        out->SetFlags(state >= START ? 0x20 : 0);
        return result;
    }

private:
    enum { RAW, IDLE, START, DATA, ESC_COUNT, END };

    int Idle(cBuffer& in)
    {
        const bool raw = mode == 1 || in.TestFlagsAnd(0x20);
        const bool first = in.TestFlagsAnd(0x01);
        if (in.Left() == 0 && (raw || !first))
            return 1;
        state = raw ? RAW : first ? START : IDLE;
        if (state == IDLE)
            in.Clear();
        crc = vorn::initCRC16();
        length = 0;
        Add(std::string(state == START ? kFrameStartSequence : ""));
        return state == IDLE ? 9 : 0;
    }
    int Read(cBuffer& in, cBuffer& out)
    {
        if (in.Left() == 0)
            return Exhausted(in.TestFlagsAnd(0x02));
        const char c = static_cast<char>(in.GetQuick());
        if (c == kFrameEscape && state != RAW) {
            state = ++escapes < 4 ? ESC_COUNT : DATA;
            if (escapes == 4)
                Add(std::string(kFrameEscapedRun));
        } else if (state == ESC_COUNT || out.Free() == 0) {
            in.UnGet();
            if (state != ESC_COUNT)
                return 2;
            Add(std::string(static_cast<std::size_t>(escapes), kFrameEscape));
        } else {
            Add(std::string(1, c));
        }
        return 0;
    }
    int Exhausted(bool last)
    {
        if (!last)
            return 1;
        const bool raw = state == RAW;
        if (raw)
            state = mode == 1 ? RAW : IDLE;
        else if (state == ESC_COUNT)
            Add(std::string(static_cast<std::size_t>(escapes), kFrameEscape));
        else {
            const auto padding = (kFrameAlignment - length % kFrameAlignment) % kFrameAlignment;
            Add(std::string(padding, 0) + std::string(kFrameEndSequence) +
                static_cast<char>(padding));
            todo += {static_cast<char>(~crc), static_cast<char>(~crc >> 8)};
            state = END;
        }
        return raw ? 5 : 0;
    }
    int Write(cBuffer& out)
    {
        if (out.Free() == 0)
            return 2;
        out.SetFlags(state == START && todo.size() == kFrameStartSize ? 0x01 : 0);
        out.PutQuick(todo[0]);
        todo.erase(0, 1);
        if (!todo.empty() || state == RAW)
            return 0;
        const bool end = state == END;
        out.SetFlags(end ? 0x22 : 0);
        state = end ? IDLE : DATA;
        return end ? 5 : 0;
    }
    void Add(const std::string& bytes) // to what is to be written next
    {
        for (const char c : bytes)
            crc = vorn::addByte2CRC16(static_cast<unsigned char>(c), crc);
        length += bytes.size();
        todo += bytes;
        escapes = 0;
    }

    int mode, state, escapes = 0;
    std::size_t length = 0;
    unsigned short crc = 0;
    std::string todo;
};

class ReferenceRx
{
public:
    explicit ReferenceRx(int m) : mode(m), state(m == 1 ? RAW : IDLE) {}

    int Process(cBuffer* in, cBuffer* out)
    {
        int result = 0;
        while (result == 0) {
            result = state == START || state == FLUSH || state == TAIL_OUT ? Move(*out)
                                                                           : Read(*in, *out);
        }
        return result;
    }

private:
    enum { RAW, IDLE, HUNT, START, DATA, ESC, FLUSH, TAIL, PADCOUNT, TAIL_OUT, CRC_CHECK };
    static constexpr int kPutBack = -1;

    int Move(cBuffer& out)
    {
        const int former = state;
        if (former == START) {
            crc = kFrameCrcAfterStart;
            window.clear();
            out.Clear();
            out.SetFlags(0x01);
            state = DATA;
        } else if (count == 0) {
            state = former == FLUSH ? next : CRC_CHECK;
        } else if (former == FLUSH ? !ThroughWindow(kFrameEscape, out) : !FromWindow(out)) {
            return 2;
        } else {
            --count;
        }
        return 0;
    }
    int Read(cBuffer& in, cBuffer& out)
    {
        if (in.Left() == 0) {
            state = state == HUNT && index == 0 ? IDLE : state;
            return 1;
        }
        const unsigned char b = in.GetQuick();
        const unsigned short former = crc;
        crc = vorn::addByte2CRC16(b, crc);
        const int result = On(static_cast<char>(b), in.TestFlagsAnd(0x20), out);
        if (result == kPutBack || result == 2) {
            in.UnGet();
            crc = former;
        }
        return result == kPutBack ? 0 : result == 5 && in.Left() > 0 ? 4 : result;
    }
    int On(char c, bool framed, cBuffer& out)
    {
        switch (state) {
        case IDLE:
            index = 0;
            state = mode != 1 && framed ? HUNT : RAW;
            return kPutBack;
        case HUNT:
            if (c == kFrameEscape)
                index = index < 4 ? index + 1 : index == 4 ? 4 : 1;
            else
                index = c == kFrameStart && index >= 4 ? index + 1 : 0;
            state = index == 8 ? START : HUNT;
            return 0;
        case DATA:
            count = 1;
            state = c == kFrameEscape ? ESC : DATA;
            return c == kFrameEscape || ThroughWindow(c, out) ? 0 : 2;
        case ESC:
            if (c == kFrameEscape && ++count < 8)
                return 0;
            state = FLUSH;
            next = c == kFrameEscape || count < 4 ? DATA : c == kFrameEnd ? PADCOUNT : TAIL;
            tail = c;
            if (c != kFrameEscape && count < 4)
                return kPutBack;
            count -= 4;
            return 0;
        case TAIL:
            if (!window.empty() && !FromWindow(out))
                return 2;
            tail += c;
            if (tail.size() == 4)
                state = tail == kFrameStartSequence.substr(kFrameEscapeSize) ? START : DATA;
            return 0;
        case PADCOUNT:
            count = static_cast<int>(window.size()) - (static_cast<unsigned char>(c) < 4 ? c : 0);
            count = std::max(count, 0);
            index = 0;
            state = TAIL_OUT;
            return 0;
        case CRC_CHECK:
            if (++index < 2)
                return 0;
            out.SetFlags(crc == kFrameCrcGood ? 0x02 : 0x0A);
            state = IDLE;
            return 5;
        default: // RAW
            window = c;
            return FromWindow(out) ? 0 : 2;
        }
    }
    bool ThroughWindow(char c, cBuffer& out)
    {
        if (window.size() == 3 && !FromWindow(out))
            return false;
        window += c;
        return true;
    }
    bool FromWindow(cBuffer& out)
    {
        if (out.Free() == 0)
            return false;
        out.PutQuick(window[0]);
        window.erase(0, 1);
        return true;
    }

    int mode, state, next = DATA, index = 0, count = 0;
    unsigned short crc = 0;
    std::string tail, window;
};

} // namespace test

#endif
