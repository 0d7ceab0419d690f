#include "manager/ManagerFixtureServer.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

class MngCommand : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_server.started());
        fs::create_directories(m_dir / "home");
    }

    void configure(const std::string& base)
    {
        test::writeSjisLines(m_dir / "home" / "Vornhale_web.ini",
                             {"[web]", "qsl2_search=" + base, "call_directory=" + base,
                              "connect_timeout_s=1", "total_timeout_s=1"});
    }

    // Runs `mng`; `output` gets what it printed on stdout, and on stderr too with `withErrors`
    // (a new program folder tells there of its first start).
    int mng(const std::string& args, std::string* output, bool withErrors = false)
    {
        const std::string command = test::shellWord(test::cliPath().string()) + " mng --home " +
                                    test::shellWord((m_dir / "home").string()) + " " + args;
        return test::runCommand(withErrors ? command : "{ " + command + " 2>/dev/null; }", output);
    }

    test::ManagerFixtureServer m_server;
    test::TempDir m_dir;
};

} // namespace

TEST_F(MngCommand, PrintsOneSearchAsTheSearchButtonRunsIt)
{
    configure(m_server.base());
    std::string output;
    ASSERT_EQ(mng("xx9tst", &output), 0) << output;
    // The bundled manager file of a new program folder knows XX9TST too.
    EXPECT_EQ(output, "Search_call\tXX9TST\n"
                      "mng_web\tXX9MGR\n"
                      "Web_date\t\n"
                      "Web_source\t\n"
                      "mng_file\tXX9MGR\n"
                      "Label45\t取 得 成 功\n");
    EXPECT_EQ(m_server.requests(), std::vector<std::string>{"qsl2:XX9TST"});
}

TEST_F(MngCommand, TellsNoManagerForAPageWithoutAResult)
{
    configure(m_server.base());
    std::string output;
    ASSERT_EQ(mng("XX9NONE", &output), 0) << output;
    EXPECT_NE(output.find("mng_web\t\n"), std::string::npos) << output;
    EXPECT_NE(output.find("Label45\tM N G 無 し\n"), std::string::npos) << output;
}

TEST_F(MngCommand, MakesNoRequestWithoutAConfiguredEndpoint)
{
    std::string output;
    ASSERT_EQ(mng("XX9TST", &output), 0) << output;
    EXPECT_NE(output.find("Label45\tM N G 無 し\n"), std::string::npos) << output;
    EXPECT_NE(output.find("mng_file\tXX9MGR\n"), std::string::npos) << output;
    EXPECT_TRUE(m_server.requests().empty());
}

TEST_F(MngCommand, ASlowServerIsASearchWithoutAManager)
{
    configure(m_server.base());
    std::string output;
    ASSERT_EQ(mng("XX9SLOW", &output, true), 0) << output;
    EXPECT_NE(output.find("Label45\tM N G 無 し\n"), std::string::npos) << output;
    EXPECT_NE(output.find("qsl2_search: "), std::string::npos) << output;
}

TEST_F(MngCommand, WalksTheCallsOfALogAndPrintsTheGrid)
{
    configure(m_server.base());
    test::writeSjisLines(m_dir / "WALK.ALL",
                         {"zLog for Windows", "2026/03/01 09:00 XX9TST       599 599 14 CW",
                          "2026/03/01 09:01 XX9ABC       599 599 14 CW",
                          "2026/03/01 09:02 JA1ZZZ       599 599 14 CW"});
    std::string output;
    ASSERT_EQ(mng("--walk " + test::shellWord((m_dir / "WALK.ALL").string()), &output), 0)
        << output;
    EXPECT_EQ(output, "   No\t Calls\t search call\t Mng_Vornhale_full\t Web Saerch\t 転記 MNG\n"
                      "     1\t XX9TST\t XX9TST\t XX9MGR\t XX9MGR\t XX9MGR\n"
                      "     2\t XX9ABC\t XX9ABC\t JX1AAA\t \t JX1AAA\n"
                      "     3\t JA1ZZZ\t JA1ZZZ\t \t \t \n");
    EXPECT_EQ(m_server.requests(),
              (std::vector<std::string>{"call:XX9TST", "call:XX9ABC", "call:JA1ZZZ"}));
    EXPECT_FALSE(fs::exists(m_dir / "home" / "Work" / "Dalmuir.htm_1"));
}

TEST_F(MngCommand, WalksWithoutTheWebWhenItsTickIsOff)
{
    configure(m_server.base());
    test::writeSjisLines(m_dir / "WALK.ALL",
                         {"zLog for Windows", "2026/03/01 09:00 XX9TST       599 599 14 CW"});
    std::string output;
    ASSERT_EQ(
        mng("--set Get_MNG_use_web=0 --walk " + test::shellWord((m_dir / "WALK.ALL").string()),
            &output),
        0)
        << output;
    EXPECT_NE(output.find("     1\t XX9TST\t XX9TST\t XX9MGR\t \t XX9MGR\n"), std::string::npos)
        << output;
    EXPECT_TRUE(m_server.requests().empty());
}

TEST_F(MngCommand, NeedsACallOrALog)
{
    std::string output;
    EXPECT_EQ(mng("", &output, true), 2) << output;
    EXPECT_NE(output.find("mng needs a CALL or --walk LOG"), std::string::npos) << output;
}
