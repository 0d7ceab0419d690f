#pragma once

// A real HTTP server on 127.0.0.1 for the tests of the web search and the downloads, on a
// port the system chooses. Header-only: only the test binaries that link cpp-httplib use it.

#include <chrono>
#include <httplib.h>
#include <string>
#include <thread>

namespace vornhale::test {

/// Serves the handlers registered on `server()` on loopback from its own thread, from
/// `start()` until `stop()` or destruction.
class LoopbackServer
{
public:
    LoopbackServer() = default;
    ~LoopbackServer() { stop(); }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// Register handlers here before `start()`.
    httplib::Server& server() { return m_server; }

    /// Binds a free port on 127.0.0.1 and serves in the background; returns when the server
    /// answers. False when no port could be bound.
    bool start()
    {
        m_port = m_server.bind_to_any_port("127.0.0.1");
        if (m_port <= 0) {
            return false;
        }
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
        for (int i = 0; i < 200 && !m_server.is_running(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return m_server.is_running();
    }

    /// Stops serving: the port is closed afterwards.
    void stop()
    {
        if (m_thread.joinable()) {
            m_server.stop();
            m_thread.join();
        }
    }

    int port() const { return m_port; }
    /// "http://127.0.0.1:<port>", the form of an endpoint value.
    std::string base() const { return "http://127.0.0.1:" + std::to_string(m_port); }

private:
    httplib::Server m_server;
    std::thread m_thread;
    int m_port = 0;
};

/// A loopback address where nothing listens any more: a server that served and stopped.
inline std::string closedLoopbackBase()
{
    LoopbackServer gone;
    gone.start();
    gone.stop();
    return gone.base();
}

} // namespace vornhale::test
