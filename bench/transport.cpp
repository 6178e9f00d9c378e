// The transport over 64 KiB: frames of 512 bytes of payload, few of them escapes, unframed and
// framed by the state machines and by the codecs, beside memcpy and one CRC pass over the same
// bytes.
#include "quarn/quarn.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

namespace
{

constexpr std::size_t kPayload = 512;
constexpr std::size_t kTotal = 64 * 1024;

struct Sample {
    std::vector<std::string> payloads;
    std::string frames; // all of them, about kTotal bytes

    Sample()
    {
        std::mt19937 random(1);
        SmlTpTx tx(SMLT_MODE_TP);
        std::string room(2 * kPayload + 19, 0);
        while (frames.size() < kTotal) {
            std::string payload(kPayload, 0);
            for (char& c : payload)
                c = static_cast<char>(random());
            cBuffer in(payload.data(), kPayload, BUF_FLAG_FIRST | BUF_FLAG_LAST, 0);
            in.Commit(kPayload);
            cBuffer out(room.data(), static_cast<long>(room.size()), 0, 0);
            tx.Process(&in, &out);
            frames.append(out.ReadPtr(), static_cast<std::size_t>(out.Left()));
            payloads.push_back(payload);
        }
    }
};

Sample& TheSample()
{
    static Sample sample;
    return sample;
}

void Memcpy(benchmark::State& state)
{
    const std::string& frames = TheSample().frames;
    std::string copy(frames.size(), 0);
    for (auto _ : state) {
        std::memcpy(copy.data(), frames.data(), frames.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Memcpy)->Name("Memcpy64K");

void Crc(benchmark::State& state)
{
    const std::string& frames = TheSample().frames;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            vorn::createCRC16(frames.data(), static_cast<int>(frames.size()), vorn::initCRC16()));
    }
}
BENCHMARK(Crc)->Name("Crc64K");

void Unframe(benchmark::State& state)
{
    std::string& frames = TheSample().frames;
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
BENCHMARK(Unframe);

void Frame(benchmark::State& state)
{
    std::string room(2 * kPayload + 19, 0);
    SmlTpTx tx(SMLT_MODE_TP);
    for (auto _ : state) {
        for (std::string& payload : TheSample().payloads) {
            cBuffer in(payload.data(), kPayload, BUF_FLAG_FIRST | BUF_FLAG_LAST, 0);
            in.Commit(kPayload);
            cBuffer out(room.data(), static_cast<long>(room.size()), 0, 0);
            if (tx.Process(&in, &out) != SMLTP_FINISHED)
                state.SkipWithError("not framed");
            benchmark::DoNotOptimize(out.ReadPtr());
        }
    }
}
BENCHMARK(Frame);

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
    const std::string& frames = TheSample().frames;
    const std::size_t frame = frames.size() / TheSample().payloads.size();
    for (std::size_t at = 0; at < frames.size(); at += frame)
        messages.push_back(MessageOf(frames.substr(at, frame)));
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
BENCHMARK(CodecDecode);

void CodecEncode(benchmark::State& state)
{
    std::vector<vorn::cMsg> messages;
    for (const std::string& payload : TheSample().payloads)
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
BENCHMARK(CodecEncode);

} // namespace
