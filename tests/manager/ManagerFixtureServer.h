#pragma once

// A loopback web server that serves the fixture pages of tests/data/manager/pages the way the
// QSL-manager search, the call directory and the probe are asked, and remembers every call
// it was asked for.

#include "support/LoopbackServer.h"
#include "support/TestSupport.h"

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vornhale::test {

class ManagerFixtureServer
{
public:
    /// The page each searched call gets; any other call gets the page without a result.
    ManagerFixtureServer()
    {
        m_qsl2 = {{"XX9TST", "qsl2_found_sjis.htm"},     {"XX9UTF", "qsl2_found_utf8.htm"},
                  {"XX9OTHER", "qsl2_without_call.htm"}, {"XX9EMP", "qsl2_empty_piece.htm"},
                  {"XX9BLK", "qsl2_many_blanks.htm"},    {"XX9TWO", "qsl2_two_results.htm"}};
        auto& s = m_server.server();
        s.Get("/vq4r/qsl2_2.asp", [this](const httplib::Request& req, httplib::Response& res) {
            const std::string call = req.get_param_value("call");
            remember("qsl2:" + call);
            if (call == "XX9SLOW") {
                std::this_thread::sleep_for(std::chrono::milliseconds(2500));
            }
            const auto it = m_qsl2.find(call);
            serve(res, it == m_qsl2.end() ? "qsl2_no_result.htm" : it->second);
        });
        s.Get("/call", [this](const httplib::Request& req, httplib::Response& res) {
            const std::string call = req.get_param_value("callsign");
            remember("call:" + call);
            serve(res, call == "XX9TST" ? "call_found.htm" : "call_no_manager.htm");
        });
        s.Get("/nfdxa/qsl/qsl.htm", [this](const httplib::Request&, httplib::Response& res) {
            remember("probe");
            res.set_content("<html>probe</html>", "text/html");
        });
        m_started = m_server.start();
    }

    bool started() const { return m_started; }
    std::string base() const { return m_server.base(); }
    void stop() { m_server.stop(); }

    /// Every request so far, as "qsl2:<call>", "call:<call>" or "probe".
    std::vector<std::string> requests()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_requests;
    }

private:
    void remember(std::string what)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_requests.push_back(std::move(what));
    }
    static void serve(httplib::Response& res, const std::string& page)
    {
        res.set_content(readBytes(testData("manager/pages/" + page)), "text/html");
    }

    std::map<std::string, std::string> m_qsl2;
    std::mutex m_mutex;
    std::vector<std::string> m_requests;
    bool m_started = false;
    // Last, so that it stops serving before the values its handlers read go away.
    LoopbackServer m_server;
};

} // namespace vornhale::test
