// quarn check: what the inputs hold, in numbers, and what is wrong with them.
#include "tools/commands.h"
#include "tools/input/intake.h"
#include "tools/input/pump.h"
#include "tools/output/json.h"
#include "tools/reading/status.h"
#include "tools/road/counts.h"
#include "tools/road/teller.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace tool
{
namespace
{

// How many different servers are remembered: noise must not fill the memory.
constexpr std::size_t kMaxServers = 10000;

struct Summary : StreamCounts {
    std::map<std::string, std::uint64_t> messages; // good ones, by kind
    std::map<int, std::uint64_t> errors;           // messages by status
    std::set<std::string> servers;                 // ids in good messages
    bool bMoreServers = false;                     // than can be remembered
};

class cChecker : public cConsumer, public cTeller
{
public:
    cChecker(eINPUT kind, bool json, cOutput& output, cReport& reporter)
        : cTeller(reporter), eKind(kind), bJson(json), out(output)
    {
    }

    void Begin(bool live) override
    {
        pIntake = std::make_unique<cIntake>(eKind, live, *this, report);
    }
    void Feed(const unsigned char* data, std::size_t size) override
    {
        sum.ullBytes += size;
        pIntake->Feed(data, size);
    }
    void Timeout() override { pIntake->Timeout(); }
    void Restart() override { pIntake->Restart(); }
    void End() override { pIntake->End(); }
    void Finish() override
    {
        if (bJson)
            WriteJson();
        else
            WriteText();
    }

private:
    void OnMessage(const Frame& frame, const vorn::cRecord& record) override
    {
        cTeller::OnMessage(frame, record);
        const MessageInfo info = DescribeMessage(record);
        if (info.iError != SML_STATUS_OK) {
            ++sum.errors[info.iError];
            return;
        }
        const quarn::schema::Message* kind = quarn::schema::FindMessage(info.uiIdentifier);
        ++sum.messages[kind != nullptr ? kind->pcName : "unknown"];
        if (!info.server.empty())
            Remember(info.server);
    }
    void OnRefused(const Frame& frame, int result) override
    {
        cTeller::OnRefused(frame, result);
        ++sum.errors[SML_STATUS_IGNORE_FILE];
    }
    void OnFrameEnd(const Frame& frame) override
    {
        cTeller::OnFrameEnd(frame);
        ++(frame.bCrcOk ? sum.ullGood : sum.ullDamaged);
    }
    void OnFrameLost(const Frame& frame, eLOSS loss) override
    {
        cTeller::OnFrameLost(frame, loss);
        ++(loss == eLOSS::CUT_OFF ? sum.ullCut : sum.ullBroken);
    }
    void OnGap(std::uint64_t offset, std::uint64_t count, eGAP gap) override
    {
        cTeller::OnGap(offset, count, gap);
        sum.ullOutside += count;
    }

    void Remember(std::string_view server)
    {
        if (sum.servers.size() < kMaxServers)
            sum.servers.emplace(server);
        else
            sum.bMoreServers = sum.bMoreServers || sum.servers.count(std::string(server)) == 0;
    }

    void WriteText()
    {
        WriteCounts(out, sum);
        for (const auto& [name, count] : sum.messages)
            WriteCount(out, "messages, " + name, count);
        for (const auto& [error, count] : sum.errors)
            WriteCount(out, "status " + std::to_string(error) + ", " + StatusMeaning(error), count);
        for (const std::string& server : sum.servers) {
            out.Append("server ");
            out.AppendHex(server);
            out.Put('\n');
        }
        if (sum.bMoreServers)
            out.Append("and more servers, which are not listed\n");
    }

    void WriteJson()
    {
        cJson json(out);
        json.StartObject();
        for (const auto& row : kStreamCounts) {
            json.Key(row.pcKey);
            json.Uint(sum.*row.pullCount);
        }
        json.Key("messages");
        json.StartObject();
        for (const auto& [name, count] : sum.messages) {
            json.Key(name);
            json.Uint(count);
        }
        json.EndObject();
        json.Key("errors");
        json.StartArray();
        for (const auto& [error, count] : sum.errors) {
            json.StartObject();
            json.Key("status");
            json.Int(error);
            json.Key("meaning");
            json.String(StatusMeaning(error));
            json.Key("count");
            json.Uint(count);
            json.EndObject();
        }
        json.EndArray();
        json.Key("servers");
        json.StartArray();
        for (const std::string& server : sum.servers)
            json.Hex(server);
        json.EndArray();
        if (sum.bMoreServers) {
            json.Key("moreServers");
            json.Bool(true);
        }
        json.EndObject();
        json.EndLine();
    }

    eINPUT eKind;
    bool bJson;
    cOutput& out;
    std::unique_ptr<cIntake> pIntake;
    Summary sum;
};

} // namespace

int RunCheck(const CheckOptions& options)
{
    return PumpToStdout<cChecker>(options.inputs, options.eInput, options.bJson);
}

} // namespace tool
