// See server.h. One thread runs all: the clock, the listening port, the clients and the interrupt.
#include "tools/simulation/server.h"

#include "tools/input/interrupt.h"

#include <algorithm>
#include <asio.hpp>
#include <chrono>
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

struct Client {
    explicit Client(tcp::socket connected) : socket(std::move(connected)) {}

    tcp::socket socket;
    std::string sending; // by the write that is under way
    std::string pending; // behind it
    bool bGone = false;

    std::size_t Behind() const noexcept { return sending.size() + pending.size(); }
};

class cServer
{
public:
    cServer(double interval, const Producer& producer, cReport& reporter)
        : acceptor(context), timer(context), interrupt(context), produce(producer),
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
            if (!failed) {
                clients.push_back(std::make_shared<Client>(std::move(socket)));
                if (!bTicking)
                    Start();
            }
            Accept();
        });
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
        if (step == Clock::duration::zero() && MostBehind() > kEnough)
            return; // a write that is done goes on
        piece.clear();
        bEnded = !produce(piece);
        for (const auto& client : clients) {
            client->pending += piece;
            client->bGone = client->bGone || client->Behind() > kTooMuch;
            Write(client);
        }
        Drop();
        if (bEnded) {
            StopWhenWritten();
            return;
        }
        due += step;
        timer.expires_at(due);
        timer.async_wait([this](const asio::error_code&) { Tick(); });
    }

    // ---- The clients

    std::size_t MostBehind() const noexcept
    {
        std::size_t most = 0;
        for (const auto& client : clients)
            most = std::max(most, client->Behind());
        return most;
    }
    void Write(const std::shared_ptr<Client>& client)
    {
        if (!client->sending.empty() || client->pending.empty() || client->bGone)
            return;
        std::swap(client->sending, client->pending);
        asio::async_write(client->socket, asio::buffer(client->sending),
                          [this, client](const asio::error_code& failed, std::size_t) {
                              Written(client, bool{failed});
                          });
    }
    void Written(const std::shared_ptr<Client>& client, bool failed)
    {
        const bool held = step == Clock::duration::zero() && MostBehind() > kEnough;
        client->sending.clear();
        client->bGone = client->bGone || failed;
        Write(client);
        Drop();
        if (bEnded)
            StopWhenWritten();
        else if (held && MostBehind() <= kEnough)
            Tick();
    }
    void Drop()
    {
        clients.erase(std::remove_if(clients.begin(), clients.end(),
                                     [](const auto& client) { return client->bGone; }),
                      clients.end());
    }
    void StopWhenWritten()
    {
        if (MostBehind() == 0)
            context.stop();
    }

    asio::io_context context;
    tcp::acceptor acceptor;
    asio::steady_timer timer;
    asio::posix::stream_descriptor interrupt;
    const Producer& produce;
    cReport& report;
    Clock::duration step;
    Clock::time_point due;
    std::vector<std::shared_ptr<Client>> clients;
    std::string piece;
    bool bTicking = false;
    bool bEnded = false;
};

} // namespace

bool Serve(std::uint16_t port, double interval, const Producer& produce, cReport& report)
{
    return cServer(interval, produce, report).Run(port);
}

} // namespace tool
