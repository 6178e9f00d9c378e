// See server.h. One thread runs all: the clock, the listening port, the clients and the interrupt.
#include "tools/simulation/server.h"

#include "tools/input/interrupt.h"

#include <algorithm>
#include <asio.hpp>
#include <chrono>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <vector>

namespace tool
{
namespace
{

using asio::ip::tcp;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kEnough = std::size_t{256} * 1024; // waits for a client: at full speed
constexpr std::size_t kTooMuch = std::size_t{4} * 1024 * 1024;
constexpr std::chrono::seconds kPatience(1); // with a client that reads nothing, or with accepting

struct Client {
    explicit Client(tcp::socket connected) : socket(std::move(connected)) {}

    tcp::socket socket;
    std::string sending;                    // by the write that is under way
    std::size_t uiSent = 0;                 // of it
    std::string pending;                    // behind it
    Clock::time_point moved = Clock::now(); // when it has last read something
    bool bGone = false;

    std::size_t Behind() const noexcept { return sending.size() - uiSent + pending.size(); }
    bool HasEnough() const noexcept { return Behind() > kEnough; }

    // Closes the connection without what is still to be sent.
    void Reset()
    {
        asio::error_code ignored;
        socket.set_option(asio::socket_base::linger(true, 0), ignored);
        socket.close(ignored);
    }
};

class cServer
{
public:
    cServer(double interval, const Producer& producer, cReport& reporter)
        : acceptor(context), timer(context), pause(context), interrupt(context), produce(producer),
          report(reporter),
          step(std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(interval)))
    {
    }

    bool Run(std::uint16_t port)
    {
        asio::error_code failed;
        const tcp::endpoint endpoint(asio::ip::address_v4::loopback(), port);
        acceptor.open(tcp::v4(), failed);
        if (!failed)
            acceptor.set_option(tcp::acceptor::reuse_address(true), failed);
        if (!failed)
            acceptor.bind(endpoint, failed);
        if (!failed)
            acceptor.listen(tcp::acceptor::max_listen_connections, failed);
        if (failed) {
            report.Say(EXIT_FAILED, "port %u cannot be listened on: %s", unsigned{port},
                       failed.message().c_str());
            return false;
        }
        report.Say(EXIT_GOOD, "listening on tcp:127.0.0.1:%u",
                   unsigned{acceptor.local_endpoint(failed).port()});
        interrupt.assign(::dup(InterruptFd()), failed);
        interrupt.async_wait(asio::posix::stream_descriptor::wait_read,
                             [this](const asio::error_code&) { context.stop(); });
        Accept();
        context.run();
        return true;
    }

private:
    void Accept()
    {
        acceptor.async_accept([this](const asio::error_code& failed, tcp::socket socket) {
            if (bEnded)
                return;
            if (failed) {
                TellOnce(std::string("no client can be accepted: ") +
                         std::strerror(failed.value()) + "; new ones wait until one leaves");
                pause.expires_after(kPatience);
                pause.async_wait([this](const asio::error_code&) { Accept(); });
                return;
            }
            if (clients.size() < kMaxClients)
                Join(std::move(socket));
            else
                TellOnce("there are " + std::to_string(kMaxClients) +
                         " clients; new ones are turned away until one leaves");
            Accept();
        });
    }
    void Join(tcp::socket socket)
    {
        clients.push_back(std::make_shared<Client>(std::move(socket)));
        if (!bTicking)
            Start();
        else if (bHeld)
            Tick();
    }
    void TellOnce(const std::string& text)
    {
        if (!bTold)
            report.Say(EXIT_GOOD, "%s", text.c_str());
        bTold = true;
    }

    // ---- The clock

    void Start()
    {
        bTicking = true;
        due = Clock::now();
        Tick();
    }
    void Tick()
    {
        if (clients.empty() || bEnded) {
            bTicking = false;
            return;
        }
        bHeld = step == Clock::duration::zero() && MustWait();
        if (bHeld) { // until a client has read something, or has not for too long
            TickAt(Clock::now() + kPatience);
            return;
        }
        piece.clear();
        bEnded = !produce(piece);
        for (const auto& client : clients) {
            client->pending += piece;
            if (client->Behind() > kTooMuch) {
                report.Say(EXIT_GOOD, "a client is 4 MiB behind and is dropped");
                client->bGone = true;
            }
            Write(client);
        }
        Drop();
        due += step;
        if (!bEnded)
            TickAt(due);
    }
    void TickAt(Clock::time_point time)
    {
        timer.expires_at(time);
        timer.async_wait([this](const asio::error_code& failed) {
            if (!failed)
                Tick();
        });
    }
    // A client that reads has enough, or all have.
    bool MustWait() const
    {
        const Clock::time_point now = Clock::now();
        return std::any_of(clients.begin(), clients.end(),
                           [now](const auto& client) {
                               return client->HasEnough() && now - client->moved < kPatience;
                           }) ||
               std::all_of(clients.begin(), clients.end(),
                           [](const auto& client) { return client->HasEnough(); });
    }

    // ---- The clients

    void Write(const std::shared_ptr<Client>& client)
    {
        if (!client->sending.empty() || client->pending.empty() || client->bGone)
            return;
        std::swap(client->sending, client->pending);
        Send(client);
    }
    void Send(const std::shared_ptr<Client>& client)
    {
        client->socket.async_write_some(
            asio::buffer(client->sending) + client->uiSent,
            [this, client](const asio::error_code& failed, std::size_t count) {
                Sent(client, bool{failed}, count);
            });
    }
    void Sent(const std::shared_ptr<Client>& client, bool failed, std::size_t count)
    {
        if (client->bGone)
            return;
        client->bGone = failed;
        client->uiSent += count;
        client->moved = Clock::now();
        if (!failed && client->uiSent < client->sending.size()) {
            Send(client);
        } else {
            client->sending.clear();
            client->uiSent = 0;
            Write(client);
        }
        Drop();
        if (bHeld && !MustWait())
            Tick();
    }
    // Closes the connections of those who are gone and, when the stream has ended, have it all.
    void Drop()
    {
        for (const auto& client : clients) {
            if (client->bGone)
                client->Reset();
            client->bGone = client->bGone || (bEnded && client->Behind() == 0);
        }
        clients.erase(std::remove_if(clients.begin(), clients.end(),
                                     [](const auto& client) { return client->bGone; }),
                      clients.end());
        if (bEnded && clients.empty())
            context.stop();
    }

    asio::io_context context;
    tcp::acceptor acceptor;
    asio::steady_timer timer;
    asio::steady_timer pause; // of accepting
    asio::posix::stream_descriptor interrupt;
    const Producer& produce;
    cReport& report;
    Clock::duration step;
    Clock::time_point due;
    std::vector<std::shared_ptr<Client>> clients;
    std::string piece;
    bool bTicking = false;
    bool bHeld = false; // until the clients have read what they were given
    bool bEnded = false;
    bool bTold = false; // why not all clients are served
};

} // namespace

bool Serve(std::uint16_t port, double interval, const Producer& produce, cReport& report)
{
    return cServer(interval, produce, report).Run(port);
}

} // namespace tool
