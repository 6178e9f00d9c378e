// The transport over 64 KiB of frames with few escapes, unframed and framed by the state machines
// and by the codecs, beside memcpy and a CRC over the same bytes.
#include "bench/content.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

namespace
{

constexpr std::size_t kTotal = 64 * 1024;

// Frames of about kTotal bytes in all: many of the content's file, or a single one. What they are
// compared with goes over the same bytes frame by frame, as the CRC does.
struct Sample {
    std::vector<std::string> payloads;
    std::vector<std::string> frames;
    std::string strFrames;

    explicit Sample(std::size_t payload)
    {
        const std::string& file = bench::ContentOf(6).strFile;
        std::string bytes;
        while (bytes.size() < payload)
            bytes += file;
        SmlTpTx tx(SMLT_MODE_TP);
        std::string room(quarn::MaxFrameSize(bytes.size()), 0);
        while (strFrames.size() < kTotal) {
            const auto size = static_cast<long>(bytes.size());
            cBuffer in(bytes.data(), size, BUF_FLAG_FIRST | BUF_FLAG_LAST, 0);
            in.Commit(size);
            cBuffer out(room.data(), static_cast<long>(room.size()), 0, 0);
            tx.Process(&in, &out);
            payloads.push_back(bytes);
            frames.emplace_back(out.ReadPtr(), static_cast<std::size_t>(out.Left()));
            strFrames += frames.back();
        }
    }
};

// 0: many frames, 1: a single one.
Sample& SampleOf(std::int64_t single)
{
    static Sample samples[] = {Sample(1), Sample(kTotal)};
    return samples[single];
}

void Memcpy(benchmark::State& state)
{
    const Sample& sample = SampleOf(state.range(0));
    std::string copy(sample.strFrames.size(), 0);
    for (auto _ : state) {
        char* to = copy.data();
        for (const std::string& frame : sample.frames) {
            std::memcpy(to, frame.data(), frame.size());
            to += frame.size();
        }
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Memcpy)->Name("Memcpy64K")->Arg(0)->Arg(1);

void Crc(benchmark::State& state)
{
    for (auto _ : state) {
        for (const std::string& frame : SampleOf(state.range(0)).frames)
            benchmark::DoNotOptimize(
                vorn::createCRC16(frame.data(), static_cast<int>(frame.size()), vorn::initCRC16()));
    }
}
BENCHMARK(Crc)->Name("Crc64K")->Arg(0)->Arg(1);

void Unframe(benchmark::State& state)
{
    std::string& frames = SampleOf(state.range(0)).strFrames;
    const auto size = static_cast<long>(frames.size());
    std::string room(frames.size(), 0);
    SmlTpRx rx(SMLT_MODE_TP);
    for (auto _ : state) {
        cBuffer in(frames.data(), size, BUF_FLAG_TP, 0);
        in.Commit(size);
        cBuffer out(room.data(), size, 0, 0);
        while (rx.Process(&in, &out) == SMLTP_INPUT_LEFT)
            benchmark::DoNotOptimize(out.ReadPtr());
        if (out.TestFlagsAnd(BUF_FLAG_CRC_ERROR) || in.Left() != 0)
            state.SkipWithError("not unframed");
    }
}
BENCHMARK(Unframe)->Arg(0)->Arg(1);

void Frame(benchmark::State& state)
{
    Sample& sample = SampleOf(state.range(0));
    std::string room(quarn::MaxFrameSize(sample.payloads[0].size()), 0);
    SmlTpTx tx(SMLT_MODE_TP);
    for (auto _ : state) {
        for (std::string& payload : sample.payloads) {
            const auto size = static_cast<long>(payload.size());
            cBuffer in(payload.data(), size, BUF_FLAG_FIRST | BUF_FLAG_LAST, 0);
            in.Commit(size);
            cBuffer out(room.data(), static_cast<long>(room.size()), 0, 0);
            if (tx.Process(&in, &out) != SMLTP_FINISHED)
                state.SkipWithError("not framed");
            benchmark::DoNotOptimize(out.ReadPtr());
        }
    }
}
BENCHMARK(Frame)->Arg(0)->Arg(1);

vorn::cMsg MessageOf(const std::string& bytes)
{
    vorn::cRecord ifRec, record;
    ifRec.AppendDataPar("RawData", bytes.data(), static_cast<int>(bytes.size()), 0);
    record.AppendUIntPar("SmltFlags", BUF_FLAG_SML | BUF_FLAG_FIRST | BUF_FLAG_LAST, 0);
    record.AppendRecordPar("IfRec", ifRec, 0);
    return vorn::cMsg(record);
}

void CodecDecode(benchmark::State& state)
{
    std::vector<vorn::cMsg> messages;
    for (const std::string& frame : SampleOf(state.range(0)).frames)
        messages.push_back(MessageOf(frame));
    cSMLTdec decoder(SMLT_MODE_TP);
    vorn::cRecord ifRec, out;
    for (auto _ : state) {
        for (vorn::cMsg& msg : messages) {
            out.Create();
            if (decoder.Decode(msg, ifRec, out) >= SMLT_DECODE_ERROR)
                state.SkipWithError("not decoded");
        }
    }
}
BENCHMARK(CodecDecode)->Arg(0)->Arg(1);

void CodecEncode(benchmark::State& state)
{
    std::vector<vorn::cMsg> messages;
    for (const std::string& payload : SampleOf(state.range(0)).payloads)
        messages.push_back(MessageOf(payload));
    cSMLTenc encoder(SMLT_MODE_TP);
    for (auto _ : state) {
        for (const vorn::cMsg& original : messages) {
            vorn::cMsg msg = original;
            if (encoder.Encode(msg) != SMLT_ENCODE_DONE)
                state.SkipWithError("not encoded");
        }
    }
}
BENCHMARK(CodecEncode)->Arg(0)->Arg(1);

} // namespace
