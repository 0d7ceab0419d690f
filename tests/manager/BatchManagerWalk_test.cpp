#include "failure/Failure.h"
#include "manager/BatchManagerWalk.h"
#include "manager/ManagerFixtureServer.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

class RecordingObserver : public base::RunObserver
{
public:
    void label(std::string_view name, std::string_view text) override
    {
        labels[std::string(name)] = std::string(text);
        if (name == "Label2") {
            counters.emplace_back(text);
        }
    }
    std::map<std::string, std::string> labels;
    std::vector<std::string> counters;
};

class ManagerWalk : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_server.started());
        test::writeSjisLines(
            m_home / "MNG_Vornhale_full.txt",
            {" MNG", " heading", " XX9TST              XX9FILE", " XX9ABC              JX1AAA"});
        base::Trace trace;
        m_master.read_MNG_z_full_mp(m_home / "MNG_Vornhale_full.txt", trace);
        net::WebConfig config;
        config.setEndpoint("call_directory", m_server.base());
        config.setTimeouts(net::Timeouts{1, 1});
        m_web = std::make_unique<manager::WebManagerSearch>(config, m_home.path(), m_work.path());
    }

    manager::BatchManagerWalk walk(manager::WalkOptions options)
    {
        return manager::BatchManagerWalk(m_master, m_web.get(), m_shared, options, m_observer);
    }

    fs::path allLog(const std::vector<std::string>& calls)
    {
        std::vector<std::string> lines{"zLog for Windows"};
        for (const std::string& call : calls) {
            lines.push_back("2026/03/01 09:00 " + call +
                            "       599         599 26      -     "
                            "-     14   CW   1  %%OP5%%");
        }
        const fs::path path = m_work / "TEST.ALL";
        test::writeSjisLines(path, lines);
        return path;
    }

    test::ManagerFixtureServer m_server;
    test::TempDir m_home, m_work;
    manager::ManagerMaster m_master;
    std::unique_ptr<manager::WebManagerSearch> m_web;
    manager::SharedManagerValues m_shared;
    RecordingObserver m_observer;
};

} // namespace

TEST(ManagerWalkGrid, HasItsHeadsAndWidthsWithTheWebHeadAsSpelled)
{
    const auto& c = manager::BatchManagerWalk::columns();
    EXPECT_STREQ(c[0].head, "   No");
    EXPECT_STREQ(c[1].head, " Calls");
    EXPECT_STREQ(c[2].head, " search call");
    EXPECT_STREQ(c[3].head, " Mng_Vornhale_full");
    EXPECT_STREQ(c[4].head, " Web Saerch");
    EXPECT_STREQ(c[5].head, " 転記 MNG");
    EXPECT_EQ(c[0].width, 600);
    EXPECT_EQ(c[1].width, 2050);
    EXPECT_EQ(c[2].width, 2050);
    EXPECT_EQ(c[3].width, 2500);
    EXPECT_EQ(c[4].width, 1650);
    EXPECT_EQ(c[5].width, 1650);
}

TEST_F(ManagerWalk, FillsARowPerCallWithTheFileTheWebAndTheTransfer)
{
    auto w = walk({true, false, 0});
    w.read_zlog_all(allLog({"XX9TST", "XX9ABC", "XX9ZZZ"}), "all");
    ASSERT_EQ(w.rows().size(), 3U);
    const auto& r = w.rows();
    EXPECT_EQ(r[0].cells(), (std::array<std::string, 6>{"     1", " XX9TST", " XX9TST", " XX9FILE",
                                                        " XX9MGR", " XX9MGR"}));
    // No web manager: the file's goes over.
    EXPECT_EQ(r[1].cells(), (std::array<std::string, 6>{"     2", " XX9ABC", " XX9ABC", " JX1AAA",
                                                        " ", " JX1AAA"}));
    EXPECT_EQ(r[2].cells(),
              (std::array<std::string, 6>{"     3", " XX9ZZZ", " XX9ZZZ", " ", " ", " "}));
    EXPECT_EQ(m_server.requests(),
              (std::vector<std::string>{"call:XX9TST", "call:XX9ABC", "call:XX9ZZZ"}));
    EXPECT_EQ(m_observer.counters,
              (std::vector<std::string>{"   1 /    3", "   2 /    3", "   3 /    3"}));
    EXPECT_EQ(m_observer.labels["Label45"], "M N G 無 し");
}

TEST_F(ManagerWalk, MakesNoRequestWithCheck1OffAndLeavesTheWebColumnBlank)
{
    auto w = walk({false, false, 0});
    w.read_zlog_all(allLog({"XX9TST", "XX9ABC"}), "all");
    EXPECT_TRUE(m_server.requests().empty());
    ASSERT_EQ(w.rows().size(), 2U);
    EXPECT_EQ(w.rows()[0].mng_web, " ");
    EXPECT_EQ(w.rows()[0].transfer, " XX9FILE");
    EXPECT_EQ(w.rows()[1].mng_web, " ");
    EXPECT_FALSE(fs::exists(m_work / "Dalmuir.htm"));
}

TEST_F(ManagerWalk, GrowsTheGridRowByRowPastTwentyNineCalls)
{
    auto w = walk({false, false, 0});
    w.start(31);
    std::vector<long> rows;
    for (int i = 1; i <= 31; ++i) {
        w.walkCall("XX9A" + std::to_string(i));
        rows.push_back(w.gridRows());
    }
    EXPECT_EQ(rows[0], 30);
    EXPECT_EQ(rows[28], 30);
    EXPECT_EQ(rows[29], 31);
    EXPECT_EQ(rows[30], 32);
    EXPECT_EQ(w.rows().size(), 31U);
    EXPECT_EQ(w.rows()[30].No, "    31");
}

TEST_F(ManagerWalk, TellsEachRowAsItJoinsTheGridBeforeTheNextCallIsLookedUp)
{
    auto w = walk({true, false, 0});
    struct Told
    {
        std::array<std::string, 6> cells;
        long number, gridRows;
        std::size_t requestsSoFar;
    };
    std::vector<Told> told;
    w.setRowWalked([&](const manager::WalkRow& row, long number, long gridRows) {
        told.push_back({row.cells(), number, gridRows, m_server.requests().size()});
    });
    w.read_zlog_all(allLog({"XX9TST", "XX9ABC"}), "all");
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].cells, w.rows()[0].cells());
    EXPECT_EQ(told[1].cells, w.rows()[1].cells());
    EXPECT_EQ(told[0].number, 1);
    EXPECT_EQ(told[1].number, 2);
    EXPECT_EQ(told[1].gridRows, 30);
    // The first row was told before the second call went to the web.
    EXPECT_EQ(told[0].requestsSoFar, 1U);
    EXPECT_EQ(told[1].requestsSoFar, 2U);
}

TEST_F(ManagerWalk, SqueezesBlanksElevenTimesAndTakesTheThirdWordOfAnAllLine)
{
    test::writeSjisLines(m_work / "W.ALL",
                         {"zLog for Windows",
                          "2026/03/01" + std::string(40, ' ') + "09:00 XX9TST 599",
                          "2026/03/01 09:01    xx9abc   599"});
    auto w = walk({false, false, 0});
    w.read_zlog_all(m_work / "W.ALL", "all");
    ASSERT_EQ(w.rows().size(), 2U);
    EXPECT_EQ(w.rows()[0].Calls, " XX9TST");
    EXPECT_EQ(w.rows()[1].Calls, " xx9abc");
    EXPECT_EQ(w.rows()[1].mng_file, " JX1AAA");
}

TEST_F(ManagerWalk, ATxtLogTakesNoWordAndKeepsTheCallOfTheLineBefore)
{
    auto w = walk({false, false, 0});
    w.read_zlog_all(allLog({"XX9TST"}), "all");
    test::writeSjisLines(m_work / "T.TXT", {"mon day time  callsign      sent         rcvd",
                                            "  3   1 0900 XX9ABC     599          59926",
                                            "  3   1 0901 XX9ZZZ     599          59926"});
    w.read_zlog_all(m_work / "T.TXT", "txt");
    ASSERT_EQ(w.rows().size(), 2U);
    EXPECT_EQ(w.rows()[0].Calls, " XX9TST");
    EXPECT_EQ(w.rows()[1].Calls, " XX9TST");
    EXPECT_EQ(w.rows()[1].mng_file, " XX9FILE");
}

TEST_F(ManagerWalk, AnAllLineWithFewerThanThreeWordsTakesTheFailurePath)
{
    test::writeSjisLines(m_work / "B.ALL", {"zLog for Windows", "2026/03/01 09:00"});
    auto w = walk({false, false, 0});
    try {
        w.read_zlog_all(m_work / "B.ALL", "all");
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::SubscriptOutOfRange);
    }
}

TEST_F(ManagerWalk, WithTheConversionsWebSearchOnTheOrderOfOption10Decides)
{
    // The conversion left its last file answer in the shared values.
    m_shared.mng_file = "XX9CONV";
    auto only = walk({true, true, 0});
    only.read_zlog_all(allLog({"XX9TST", "XX9ABC"}), "all");
    EXPECT_EQ(only.rows()[0].transfer, " XX9MGR");
    EXPECT_EQ(only.rows()[1].transfer, " ");

    auto filePreferred = walk({true, true, 1});
    filePreferred.read_zlog_all(allLog({"XX9TST"}), "all");
    EXPECT_EQ(filePreferred.rows()[0].transfer, " XX9CONV");

    auto webPreferred = walk({true, true, 2});
    webPreferred.read_zlog_all(allLog({"XX9TST", "XX9ABC"}), "all");
    EXPECT_EQ(webPreferred.rows()[0].transfer, " XX9MGR");
    EXPECT_EQ(webPreferred.rows()[1].transfer, " XX9CONV");

    m_shared.mng_file.clear();
    auto fileEmpty = walk({true, true, 1});
    fileEmpty.read_zlog_all(allLog({"XX9TST", "XX9ABC"}), "all");
    EXPECT_EQ(fileEmpty.rows()[0].transfer, " XX9MGR");
    EXPECT_EQ(fileEmpty.rows()[1].transfer, " ");
}

TEST_F(ManagerWalk, FillsTheSharedWebAnswerThatTheConversionSees)
{
    auto w = walk({true, false, 0});
    w.start(1);
    w.walkCall("XX9TST");
    EXPECT_EQ(m_shared.mng_web, "XX9MGR");
}

TEST_F(ManagerWalk, StopEndsTheWholeProgramNotJustTheWalk)
{
    auto w = walk({false, false, 0});
    int yields = 0;
    w.setStopRequest([&] { return ++yields > 2; });
    EXPECT_THROW(w.read_zlog_all(allLog({"XX9TST", "XX9ABC", "XX9ZZZ"}), "all"),
                 failure::ProgramEnd);
    EXPECT_EQ(w.rows().size(), 2U);
}

TEST(ManagerWalkCounter, AlignsTheNumberAndTheTotalToFourColumns)
{
    EXPECT_EQ(manager::BatchManagerWalk::counterText(7, 120), "   7 /  120");
    EXPECT_EQ(manager::BatchManagerWalk::counterText(12345, 12345), "12345 / 12345");
}
