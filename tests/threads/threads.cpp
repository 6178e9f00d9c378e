// Eight threads at once, each with its own codec, parser, encoder and trace unit. They share the
// library's trace units and the sink, which change all the while, and the records: what one has
// parsed, the next one encodes again, changes and drops.
#include "tests/roundtrip/generator.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <array>
#include <mutex>
#include <thread>

namespace
{

using namespace test;

constexpr unsigned kThreads = 8;
constexpr unsigned kRounds = 25;

struct Mailbox {
    std::mutex mutex;
    std::vector<cRecord> records;

    void Put(const cRecord& record)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        records.push_back(record);
    }
    std::vector<cRecord> Take()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return std::exchange(records, {});
    }
};

class Worker
{
public:
    Worker(unsigned n, Mailbox& mine, Mailbox& next) : number(n), inbox(mine), outbox(next) {}

    void Run()
    {
        for (unsigned round = 0; round < kRounds; ++round) {
            const vorn::cUnit own("own", vorn::LEVEL_ERROR, vorn::OUTPUT_DEFAULT);
            vorn::_Trace(vorn::FindUnit("LibSmlp"), vorn::LEVEL_ERROR, "round");
            Send(round);
            Receive();
        }
    }
    // Encodes what has come in and compares it with what was parsed.
    void Receive()
    {
        for (cRecord& record : inbox.Take()) {
            const cRecord kept = record;
            const std::string before = kept.ToString();
            record.DeletePar("SmlCrc", 0, 0);
            const Kind& kind = KindOf(
                record.GetFirstParByPath("SmlMsgHeader.smlMsgIdentifier", ".", 0, 0).GetUInt());
            Sent again{&kind, Nested(record, "SmlMsgHeader"), Nested(record, kind.name), {}};
            if (const auto raw = again.body.GetFirstPar("rawdata", 0, 0); raw.IsValid())
                AppendCopy(again.body, raw, "RawData");
            EXPECT_EQ(kind.encode(again.body, again.header, again.result), SML_ENCODE_OK);
            const std::string tail = BytesAt(kept, "SmlMsgRawData"); // of the last packet
            const std::string bytes = again.Bytes();
            EXPECT_TRUE(bytes.size() >= tail.size() && !tail.empty());
            EXPECT_EQ(bytes.substr(bytes.size() - std::min(bytes.size(), tail.size())), tail);
            EXPECT_EQ(kept.ToString(), before);
            ++uiReceived;
        }
    }
    unsigned uiSent = 0;
    unsigned uiReceived = 0;

private:
    // A file of three messages through codec and parser. The next thread gets the records, while
    // this one goes on with them.
    void Send(unsigned round)
    {
        std::string stream;
        Choices choices(1 + round * kThreads + number);
        for (const Sent& sent : MakeFile(choices, 1))
            stream += Framed(encoder, sent.Flags(), sent.Bytes());
        vorn::cMsg msg = Carrier(0, stream);
        cRecord ifRec, out;
        EXPECT_EQ(decoder.Decode(msg, ifRec, out), SMLT_DECODE_FRAME);
        std::map<int, cRecord> records;
        int count = 0;
        EXPECT_EQ(parser.SmlParser(out, records, count), SMLP_FILE_COMPLETE);
        for (auto& [key, record] : records) {
            const cSmlMsgStatus status(record);
            int cast = -1;
            if (!status.GetMsgCast(cast) || cast < 0)
                continue; // a packet
            outbox.Put(record);
            ++uiSent;
            record.AppendUIntPar("mine", number, 0);
        }
    }
    unsigned number;
    Mailbox& inbox;
    Mailbox& outbox;
    cSMLTenc encoder{SMLT_MODE_TP};
    cSMLTdec decoder{SMLT_MODE_TP};
    cSMLP parser{static_cast<int>(number)};
};

TEST(Threads, ShareTraceUnitsAndRecords)
{
    const auto rounds = std::make_shared<std::atomic<unsigned>>(0);
    const auto sink = [rounds](const vorn::cUnit&, vorn::eLEVEL, const std::string& text) {
        *rounds += text == "round" ? 1U : 0U;
    };
    vorn::SetTraceSink(sink);
    std::array<Mailbox, kThreads> mailboxes;
    std::vector<std::unique_ptr<Worker>> workers;
    for (unsigned i = 0; i < kThreads; ++i)
        workers.push_back(std::make_unique<Worker>(i, mailboxes[i], mailboxes[(i + 1) % kThreads]));
    std::atomic<unsigned> running{kThreads};
    std::vector<std::thread> threads;
    for (const auto& worker : workers)
        threads.emplace_back([&running, w = worker.get()] {
            w->Run();
            --running;
        });
    for (int level = 2; running != 0; level = 2 + (level + 1) % 16) {
        vorn::SetTraceSink(sink);
        for (vorn::cUnit* unit : {LibSmle, LibSmlp, LibSmlt, LibQuarn})
            unit->iLevel = level;
        std::this_thread::yield();
    }
    for (std::thread& thread : threads)
        thread.join();
    for (vorn::cUnit* unit : {LibSmle, LibSmlp, LibSmlt, LibQuarn})
        unit->iLevel = vorn::LEVEL_ERROR;
    unsigned sent = 0;
    unsigned received = 0;
    for (const auto& worker : workers) {
        worker->Receive(); // what came in behind its last round
        sent += worker->uiSent;
        received += worker->uiReceived;
    }
    vorn::SetTraceSink({});
    EXPECT_EQ(received, sent);
    EXPECT_GT(sent, 2 * kThreads * kRounds);
    EXPECT_EQ(*rounds, kThreads * kRounds);
    EXPECT_EQ(vorn::FindUnit("own"), nullptr);
}

} // namespace
