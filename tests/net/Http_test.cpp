#include "net/Http.h"
#include "support/LoopbackServer.h"
#include "support/TestSupport.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

class HttpFetch : public ::testing::Test
{
protected:
    void SetUp() override
    {
        auto& s = m_server.server();
        s.Get("/page", [](const httplib::Request&, httplib::Response& res) {
            res.set_content("first line\r\nsecond line\r\n", "text/html");
        });
        s.Get("/echo", [](const httplib::Request& req, httplib::Response& res) {
            res.set_content(req.target, "text/plain");
        });
        s.Get("/moved",
              [](const httplib::Request&, httplib::Response& res) { res.set_redirect("/page"); });
        s.Get("/slow", [](const httplib::Request&, httplib::Response& res) {
            std::this_thread::sleep_for(std::chrono::seconds(2));
            res.set_content("late", "text/plain");
        });
        ASSERT_TRUE(m_server.start());
    }

    net::Timeouts quick() const { return net::Timeouts{1, 1}; }

    test::LoopbackServer m_server;
    test::TempDir m_dir;
};

} // namespace

TEST_F(HttpFetch, SavesTheBodyOfASuccessfulAnswerUnderTheTargetName)
{
    const fs::path target = m_dir / "page.htm";
    const net::FetchResult r = net::fetchToFile(m_server.base() + "/page", target, quick());
    EXPECT_TRUE(r.ok) << r.error;
    EXPECT_EQ(r.httpStatus, 200);
    EXPECT_EQ(test::readBytes(target), "first line\r\nsecond line\r\n");
    EXPECT_FALSE(fs::exists(m_dir / "page.htm_~"));
}

TEST_F(HttpFetch, FollowsARedirect)
{
    const fs::path target = m_dir / "page.htm";
    EXPECT_TRUE(net::fetchToFile(m_server.base() + "/moved", target, quick()).ok);
    EXPECT_EQ(test::readBytes(target), "first line\r\nsecond line\r\n");
}

TEST_F(HttpFetch, ReplacesAnOlderFileWhenTheNewOneIsComplete)
{
    const fs::path target = m_dir / "page.htm";
    test::writeBytes(target, "old");
    EXPECT_TRUE(net::fetchToFile(m_server.base() + "/page", target, quick()).ok);
    EXPECT_EQ(test::readBytes(target), "first line\r\nsecond line\r\n");
}

TEST_F(HttpFetch, ReportsANotFoundAnswerAndKeepsTheOldFile)
{
    const fs::path target = m_dir / "page.htm";
    test::writeBytes(target, "old");
    const net::FetchResult r = net::fetchToFile(m_server.base() + "/nothing", target, quick());
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.httpStatus, 404);
    EXPECT_FALSE(r.error.empty());
    EXPECT_EQ(test::readBytes(target), "old");
    EXPECT_FALSE(fs::exists(m_dir / "page.htm_~"));
}

TEST_F(HttpFetch, GivesUpOnASlowServerAfterTheTotalTimeout)
{
    const fs::path target = m_dir / "page.htm";
    test::writeBytes(target, "old");
    const auto start = std::chrono::steady_clock::now();
    const net::FetchResult r = net::fetchToFile(m_server.base() + "/slow", target, quick());
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.httpStatus, 0);
    EXPECT_LT(took, std::chrono::milliseconds(1800));
    EXPECT_EQ(test::readBytes(target), "old");
    EXPECT_FALSE(fs::exists(m_dir / "page.htm_~"));
}

TEST_F(HttpFetch, ReportsAServerThatIsDownWithoutAnAnswer)
{
    const fs::path target = m_dir / "page.htm";
    const net::FetchResult r =
        net::fetchToFile(test::closedLoopbackBase() + "/page", target, quick());
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.httpStatus, 0);
    EXPECT_FALSE(r.error.empty());
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(HttpFetch, MakesNoRequestForAnEmptyAddress)
{
    const fs::path target = m_dir / "page.htm";
    const net::FetchResult r = net::fetchToFile("", target, quick());
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.httpStatus, 0);
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(HttpFetch, RefusesAddressesThatAreNotOnTheWeb)
{
    const fs::path source = m_dir / "secret.txt";
    test::writeBytes(source, "local");
    const fs::path target = m_dir / "page.htm";
    const net::FetchResult r = net::fetchToFile("file://" + source.string(), target, quick());
    EXPECT_FALSE(r.ok);
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(HttpFetch, FailsWhenTheTargetFolderIsMissing)
{
    const fs::path target = m_dir / "no-such-folder" / "page.htm";
    const net::FetchResult r = net::fetchToFile(m_server.base() + "/page", target, quick());
    EXPECT_FALSE(r.ok);
    EXPECT_FALSE(r.error.empty());
}

TEST_F(HttpFetch, SendsAnEncodedQueryAsItIs)
{
    const fs::path target = m_dir / "echo.txt";
    const std::string query = "/echo?call=" + net::urlEncode("JA1ABC/3");
    ASSERT_TRUE(net::fetchToFile(m_server.base() + query, target, quick()).ok);
    EXPECT_EQ(test::readBytes(target), "/echo?call=JA1ABC%2F3");
}

TEST(UrlEncode, KeepsUnreservedBytesAndEncodesEveryOtherByte)
{
    EXPECT_EQ(net::urlEncode("AZaz09-_.~"), "AZaz09-_.~");
    EXPECT_EQ(net::urlEncode("XX9TST/P"), "XX9TST%2FP");
    EXPECT_EQ(net::urlEncode("a b&c=d"), "a%20b%26c%3Dd");
    EXPECT_EQ(net::urlEncode("\xE3\x81\x82"), "%E3%81%82");
    EXPECT_EQ(net::urlEncode(""), "");
}

TEST(WebConfig, LeavesEveryEndpointEmptyWithoutTheFile)
{
    test::TempDir home;
    const net::WebConfig config = net::WebConfig::load(home.path());
    for (const char* key :
         {"qsl2_search", "call_directory", "nfdxa_page", "nfdxa_probe", "hamlog_home",
          "archiver_home", "archiver_home2", "cty_home", "zlog_data_home"}) {
        EXPECT_EQ(config.endpoint(key), "") << key;
    }
    EXPECT_EQ(config.timeouts().connectSeconds, 5);
    EXPECT_EQ(config.timeouts().totalSeconds, 20);
}

TEST(WebConfig, ReadsTheEndpointsOfItsSectionCaseBlindWithoutATrailingSlash)
{
    test::TempDir home;
    test::writeSjisLines(home / "Vornhale_web.ini",
                         {"[other]", "qsl2_search=http://wrong:1", "[WEB]",
                          "QSL2_search = http://127.0.0.1:8080/ ",
                          "call_directory=", "cty_home=https://example.invalid:8443",
                          "connect_timeout_s=3", "total_timeout_s=7"});
    const net::WebConfig config = net::WebConfig::load(home.path());
    EXPECT_EQ(config.endpoint("qsl2_search"), "http://127.0.0.1:8080");
    EXPECT_EQ(config.endpoint("call_directory"), "");
    EXPECT_EQ(config.endpoint("cty_home"), "https://example.invalid:8443");
    EXPECT_EQ(config.endpoint("nfdxa_probe"), "");
    EXPECT_EQ(config.timeouts().connectSeconds, 3);
    EXPECT_EQ(config.timeouts().totalSeconds, 7);
}

TEST(WebConfig, KeepsTheDefaultTimeoutsForValuesThatAreNoPositiveNumber)
{
    test::TempDir home;
    test::writeSjisLines(home / "Vornhale_web.ini",
                         {"[web]", "connect_timeout_s=abc", "total_timeout_s=0"});
    const net::WebConfig config = net::WebConfig::load(home.path());
    EXPECT_EQ(config.timeouts().connectSeconds, 5);
    EXPECT_EQ(config.timeouts().totalSeconds, 20);
}
