// --watch: a table of the latest reading of each code, per server. On a screen it is drawn over
// itself, at most ten times a second, and cut to the height of the screen.
#include "tools/output/output_format.h"
#include "tools/output/reading_rows.h"
#include "tools/output/terminal.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <string>
#include <unistd.h>

namespace tool
{
namespace
{

// How many readings are remembered, and how many of a frame that has not ended: noise must not fill
// the memory.
constexpr std::size_t kMaxRows = 10000;

class cWatchFormat : public cFormat
{
public:
    cWatchFormat(cOutput& output, const FormatOptions& formatOptions)
        : cFormat(output), options(formatOptions)
    {
        if (options.bScreen)
            CatchResizes();
    }

    bool IsComplete() const noexcept override { return false; }
    bool KeepsBack() const noexcept override { return true; }

    void Message(const Frame& frame, const MessageInfo& info, const vorn::cRecord&,
                 const std::vector<Reading>& readings) override
    {
        if (readings.empty() || pending.size() >= kMaxRows)
            return;
        for (const Reading& reading : readings) {
            Pending& row = pending.emplace_back();
            row.server = info.server;
            row.row.Set(reading, info.time);
        }
        Pending& last = pending.back();
        last.heading = "  frame " + std::to_string(frame.ullNumber);
        if (info.time)
            AppendTime(last.heading.append("  time "), *info.time);
        if (frame.bRaw) // it has no end to wait for
            Settled(true);
    }

    void Settled(bool good) override
    {
        for (Pending& row : pending) {
            if (good)
                Take(row);
        }
        bChanged = bChanged || (good && !pending.empty());
        pending.clear();
        if (Clock::now() - drawn >= std::chrono::milliseconds(100))
            Draw();
    }
    void Idle() override { Draw(); }
    void Finish() override
    {
        if (!options.bScreen)
            out.Append(Table());
        Draw();
    }

private:
    using Clock = std::chrono::steady_clock;

    struct Pending {
        std::string server;
        std::string heading; // of the last row of a message
        ReadingRow row;
    };
    struct Server {
        std::string heading;
        std::vector<ReadingRow> rows; // in the order in which the codes came first
    };

    void Take(Pending& pend)
    {
        if (uiRows == kMaxRows && servers.count(pend.server) == 0) {
            bCut = true;
            return;
        }
        Server& server = servers[pend.server];
        if (!pend.heading.empty())
            server.heading = pend.heading;
        const auto found =
            std::find_if(server.rows.begin(), server.rows.end(), [&pend](const ReadingRow& row) {
                return row.ullObis == pend.row.ullObis;
            });
        if (found != server.rows.end()) {
            *found = std::move(pend.row);
        } else if (uiRows < kMaxRows) {
            ++uiRows;
            server.rows.push_back(std::move(pend.row));
        } else {
            bCut = true;
        }
    }

    std::string Table() const
    {
        std::string text;
        for (const auto& [id, server] : servers) {
            text.append(text.empty() ? "" : "\n").append(options.bColour ? escape::kBold : "");
            AppendHexText(text.append("server "), id);
            text.append(server.heading).append(options.bColour ? escape::kPlain : "").append("\n");
            AppendRows(server.rows, server.rows.size(), options.bColour, text);
        }
        if (bCut)
            text.append("\nthere are more than ")
                .append(std::to_string(kMaxRows))
                .append(" readings: what came later is not shown\n");
        return text;
    }

    void Draw()
    {
        const ScreenSize screen = SizeOf(STDOUT_FILENO);
        const bool resized = bDrawn && screen != drawnOn;
        if (!options.bScreen || !(bChanged || resized))
            return;
        out.Append(bDrawn && !resized ? "" : escape::kClearScreen);
        out.Append(escape::kHome);
        const std::string table = Table();
        std::string_view rest = table;
        for (unsigned lines = screen.uiLines - 1; !rest.empty() && lines > 0; --lines) {
            const std::size_t end = rest.find('\n');
            out.Append(escape::kClearLine); // first: a full line leaves the cursor on its end
            out.Append(CutToWidth(rest.substr(0, end), screen.uiColumns));
            out.Put('\n');
            rest.remove_prefix(end + 1);
        }
        out.Append(escape::kClearBelow);
        drawn = Clock::now();
        drawnOn = screen;
        bDrawn = true;
        bChanged = false;
    }

    FormatOptions options;
    std::vector<Pending> pending; // of the frame at hand
    std::map<std::string, Server> servers;
    std::size_t uiRows = 0;
    bool bCut = false; // there was no room for a reading
    Clock::time_point drawn;
    ScreenSize drawnOn{};
    bool bDrawn = false;
    bool bChanged = false; // since it was drawn
};

} // namespace

std::unique_ptr<cFormat> MakeWatchFormat(cOutput& output, const FormatOptions& options)
{
    return std::make_unique<cWatchFormat>(output, options);
}

} // namespace tool
