// See line.h. Lines are opened and set through Asio, and read as any other descriptor.
#include "tools/input/line.h"

#include "tools/input/descriptor.h"
#include "tools/input/interrupt.h"

#include <asio.hpp>
#include <chrono>
#include <netinet/tcp.h>
#include <unistd.h>

namespace tool
{
namespace
{

using asio::ip::tcp;

constexpr std::chrono::seconds kConnectTimeout(20);

// Never destroyed: that would wait for a name look-up which an interrupt has left behind.
asio::io_context& Context()
{
    static auto* const context = new asio::io_context;
    return *context;
}

// A descriptor that belongs to an Asio object.
template <typename Handle>
class cLine : public cDescriptorSource
{
public:
    cLine(const std::string& lineName, Handle opened, const char* atEnd)
        : cDescriptorSource(lineName, opened.native_handle(), false), handle(std::move(opened)),
          pcAtEnd(atEnd)
    {
    }

    bool IsLive() const noexcept override { return true; }
    long Read(unsigned char* data, std::size_t size, long timeout) override
    {
        const long count = cDescriptorSource::Read(data, size, timeout);
        if (count != END || pcAtEnd == nullptr || Interrupted())
            return count;
        error = pcAtEnd;
        return FAILED;
    }

private:
    Handle handle;
    const char* pcAtEnd; // why an end is a failure; null where it is none
};

// One attempt to connect, which ends with the first of: a connection, a failure, the time, an
// interrupt. The handlers share it, since they may be called after the attempt has been given up.
struct Attempt : std::enable_shared_from_this<Attempt> {
    tcp::resolver resolver{Context()};
    tcp::socket socket{Context()};
    asio::steady_timer timer{Context()};
    asio::posix::stream_descriptor interrupt{Context()};
    asio::error_code result = asio::error::operation_aborted;

    void Run(const std::string& host, const std::string& port)
    {
        const auto self = shared_from_this();
        interrupt.assign(::dup(InterruptFd()), ignored);
        interrupt.async_wait(asio::posix::stream_descriptor::wait_read,
                             [self](const asio::error_code& failed) {
                                 if (!failed)
                                     self->End(asio::error::interrupted);
                             });
        timer.expires_after(kConnectTimeout);
        timer.async_wait([self](const asio::error_code& failed) {
            if (!failed)
                self->End(asio::error::timed_out);
        });
        resolver.async_resolve(host, port, [self](const asio::error_code& failed, auto results) {
            if (failed) {
                self->End(failed);
                return;
            }
            asio::async_connect(self->socket, results,
                                [self](const asio::error_code& reason, const tcp::endpoint&) {
                                    self->End(reason);
                                });
        });
        Context().restart();
        Context().run();
    }

private:
    void End(const asio::error_code& reason)
    {
        if (bEnded)
            return;
        bEnded = true;
        result = reason;
        timer.cancel();
        interrupt.close(ignored);
        resolver.cancel();
        if (reason)
            socket.close(ignored);
        Context().stop(); // a name look-up is not waited for
    }

    bool bEnded = false;
    asio::error_code ignored;
};

bool Apply(asio::serial_port& port, const SerialSettings& settings, asio::error_code& failed)
{
    using Port = asio::serial_port;
    const auto parity = settings.cParity == 'E'   ? Port::parity::even
                        : settings.cParity == 'O' ? Port::parity::odd
                                                  : Port::parity::none;
    const auto stop = settings.uiHalfStopBits == 4   ? Port::stop_bits::two
                      : settings.uiHalfStopBits == 3 ? Port::stop_bits::onepointfive
                                                     : Port::stop_bits::one;
    port.set_option(Port::baud_rate(settings.uiBaud), failed);
    if (!failed)
        port.set_option(Port::character_size(settings.uiBits), failed);
    if (!failed)
        port.set_option(Port::parity(parity), failed);
    if (!failed)
        port.set_option(Port::stop_bits(stop), failed);
    if (!failed)
        port.set_option(Port::flow_control(Port::flow_control::none), failed);
    return !failed;
}

// A peer that vanishes without a word is noticed after a minute.
void KeepAlive(tcp::socket& socket)
{
    asio::error_code ignored;
    socket.set_option(asio::socket_base::keep_alive(true), ignored);
    const struct {
        int iOption;
        int iValue;
    } rows[] = {{TCP_KEEPIDLE, 30}, {TCP_KEEPINTVL, 10}, {TCP_KEEPCNT, 3}};
    for (const auto& row : rows)
        ::setsockopt(socket.native_handle(), IPPROTO_TCP, row.iOption, &row.iValue,
                     sizeof row.iValue);
}

} // namespace

std::unique_ptr<cSource> OpenSerial(const std::string& name, const SerialSettings& settings,
                                    std::string& error)
{
    asio::serial_port port(Context());
    asio::error_code failed;
    port.open(name, failed);
    if (failed) {
        error = failed.message();
        if (failed == asio::error::access_denied)
            error += " (add yourself to the device's group, which is mostly dialout)";
        return nullptr;
    }
    if (!Apply(port, settings, failed)) {
        error = "the line cannot be set so: " + failed.message() + " (see --serial)";
        return nullptr;
    }
    return std::make_unique<cLine<asio::serial_port>>(name, std::move(port),
                                                      "the line has hung up");
}

bool SplitTcp(const std::string& name, std::string& host, std::string& port)
{
    constexpr std::size_t kScheme = 4;
    const std::size_t colon = name.rfind(':');
    host = colon > kScheme ? name.substr(kScheme, colon - kScheme) : "";
    port = name.substr(colon + 1);
    if (host.size() > 2 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    return !host.empty() && !port.empty();
}

std::unique_ptr<cSource> OpenTcp(const std::string& host, const std::string& port,
                                 std::string& error)
{
    const auto attempt = std::make_shared<Attempt>();
    attempt->Run(host, port);
    if (attempt->result) {
        error = attempt->result.message();
        return nullptr;
    }
    KeepAlive(attempt->socket);
    return std::make_unique<cLine<tcp::socket>>("tcp:" + host + ':' + port,
                                                std::move(attempt->socket), nullptr);
}

} // namespace tool
