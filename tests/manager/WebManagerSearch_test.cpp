#include "manager/ManagerFixtureServer.h"
#include "manager/WebManagerSearch.h"
#include "support/TestSupport.h"

#include <chrono>
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
    }
    std::map<std::string, std::string> labels;
};

class WebSearch : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_server.started()); }

    manager::WebManagerSearch search(const std::string& base) const
    {
        net::WebConfig config;
        for (const char* key : {"qsl2_search", "call_directory", "nfdxa_page", "nfdxa_probe"}) {
            config.setEndpoint(key, base);
        }
        config.setTimeouts(net::Timeouts{1, 1});
        return manager::WebManagerSearch(config, m_home.path(), m_work.path());
    }
    manager::WebManagerSearch search() const { return search(m_server.base()); }

    test::ManagerFixtureServer m_server;
    test::TempDir m_home;
    test::TempDir m_work;
};

} // namespace

TEST_F(WebSearch, FindsTheManagerInTheThirdPieceOfAResultLine)
{
    const manager::WebSearchResult r = search().Get_MNG_web("XX9TST", "XX9FILE");
    EXPECT_TRUE(r.fetch.ok) << r.fetch.error;
    EXPECT_TRUE(r.Web_ok);
    EXPECT_TRUE(r.found);
    EXPECT_EQ(r.Search_call, "XX9TST");
    EXPECT_EQ(r.mng_web, "XX9MGR");
    EXPECT_EQ(r.mng_file, "XX9FILE");
    EXPECT_EQ(r.outcome(), "取 得 成 功");
    EXPECT_EQ(r.outcomeColour(), base::Colour::Blue);
}

TEST_F(WebSearch, SavesThePageAsDxCallHtmInTheProgramFolder)
{
    search().Get_MNG_web("XX9TST");
    EXPECT_EQ(test::readBytes(m_home / "DX_call.htm"),
              test::readBytes(test::testData("manager/pages/qsl2_found_sjis.htm")));
}

TEST_F(WebSearch, AsksForTheCallInUpperCaseAndUrlEncoded)
{
    search().Get_MNG_web(" xx9tst ");
    search().Get_MNG_web("XX9ABC/P");
    const std::vector<std::string> asked = m_server.requests();
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_EQ(asked[0], "qsl2:XX9TST");
    EXPECT_EQ(asked[1], "qsl2:XX9ABC/P");
}

TEST_F(WebSearch, ReadsAPageInUtf8AndMatchesTheResultLineIgnoringCase)
{
    const manager::WebSearchResult r = search().Get_MNG_web("XX9UTF");
    EXPECT_TRUE(r.found);
    EXPECT_EQ(r.mng_web, "JX1AAA");
}

TEST_F(WebSearch, ReadsBothShiftJisAndUtf8PagesAsText)
{
    search().Get_MNG_web("XX9TST");
    const auto sjis = manager::WebManagerSearch::readPage(m_home / "DX_call.htm");
    ASSERT_TRUE(sjis.has_value());
    EXPECT_EQ((*sjis)[1], "<head><title>QSL マネージャー検索</title></head>");
    search().Get_MNG_web("XX9UTF");
    const auto utf8 = manager::WebManagerSearch::readPage(m_home / "DX_call.htm");
    ASSERT_TRUE(utf8.has_value());
    EXPECT_EQ((*utf8)[3], "<h2>ＱＳＬ情報</h2>");
}

TEST_F(WebSearch, APageWithoutAResultLineGivesNoManager)
{
    const manager::WebSearchResult r = search().Get_MNG_web("XX9NONE", "XX9FILE");
    EXPECT_TRUE(r.fetch.ok);
    EXPECT_FALSE(r.Web_ok);
    EXPECT_EQ(r.mng_web, "");
    EXPECT_EQ(r.outcome(), "M N G 無 し");
    EXPECT_EQ(r.outcomeColour(), base::Colour::Red);
}

TEST_F(WebSearch, AResultLineWithoutTheCallIsNoResult)
{
    const manager::WebSearchResult r = search().Get_MNG_web("XX9OTHER");
    EXPECT_FALSE(r.Web_ok);
    EXPECT_EQ(r.mng_web, "");
    EXPECT_EQ(r.outcome(), "M N G 無 し");
}

TEST_F(WebSearch, AnEmptyThirdPieceGivesAnEmptyManagerAndNoManagerShown)
{
    const manager::WebSearchResult r = search().Get_MNG_web("XX9EMP");
    EXPECT_TRUE(r.Web_ok);
    EXPECT_EQ(r.mng_web, "");
    EXPECT_FALSE(r.found);
    EXPECT_EQ(r.outcome(), "M N G 無 し");
}

TEST_F(WebSearch, ManyBlanksInARowStillGiveTheFirstWordOfTheTrimmedPiece)
{
    const manager::WebSearchResult r = search().Get_MNG_web("XX9BLK");
    EXPECT_TRUE(r.found);
    EXPECT_EQ(r.mng_web, "XX9QSL");
}

TEST_F(WebSearch, ALaterResultLineOverwritesAnEarlierOne)
{
    EXPECT_EQ(search().Get_MNG_web("XX9TWO").mng_web, "XX9NEW");
}

TEST_F(WebSearch, ASlowServerEndsInTheTimeoutAsAFailedDownload)
{
    test::writeBytes(m_home / "DX_call.htm", "Search Results: <BR>XX9SLOW<BR>XX9STALE<BR>");
    const auto start = std::chrono::steady_clock::now();
    const manager::WebSearchResult r = search().Get_MNG_web("XX9SLOW");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2000));
    EXPECT_FALSE(r.fetch.ok);
    EXPECT_FALSE(r.Web_ok);
    EXPECT_EQ(r.mng_web, "");
    EXPECT_EQ(r.outcome(), "M N G 無 し");
    // The page of an earlier search is never read as this call's page.
    EXPECT_FALSE(fs::exists(m_home / "DX_call.htm"));
}

TEST_F(WebSearch, AServerThatIsDownGivesNoManager)
{
    const manager::WebSearchResult r = search(test::closedLoopbackBase()).Get_MNG_web("XX9TST");
    EXPECT_FALSE(r.fetch.ok);
    EXPECT_EQ(r.fetch.httpStatus, 0);
    EXPECT_FALSE(r.Web_ok);
    EXPECT_EQ(r.outcome(), "M N G 無 し");
}

TEST_F(WebSearch, AnEndpointThatIsNotConfiguredMakesNoRequest)
{
    test::writeBytes(m_home / "DX_call.htm", "Search Results: <BR>XX9TST<BR>XX9STALE<BR>");
    net::WebConfig config;
    const manager::WebManagerSearch unconfigured(config, m_home.path(), m_work.path());
    const manager::WebSearchResult r = unconfigured.Get_MNG_web("XX9TST");
    EXPECT_FALSE(r.fetch.ok);
    EXPECT_FALSE(r.Web_ok);
    EXPECT_EQ(r.mng_web, "");
    EXPECT_TRUE(m_server.requests().empty());
    EXPECT_FALSE(fs::exists(m_home / "DX_call.htm"));
    EXPECT_FALSE(unconfigured.probe());
    EXPECT_EQ(unconfigured.callDirectory("XX9TST").mng_web, "");
    EXPECT_EQ(unconfigured.nfdxaPageUrl(), "");
}

TEST_F(WebSearch, TheCallDirectoryTakesTheLineAfterQslManager)
{
    const manager::WebSearchResult r = search().callDirectory("XX9TST", "XX9FILE");
    EXPECT_TRUE(r.Web_ok);
    EXPECT_TRUE(r.found);
    EXPECT_EQ(r.mng_web, "XX9MGR");
    EXPECT_EQ(test::readBytes(m_work / "Dalmuir.htm"),
              test::readBytes(test::testData("manager/pages/call_found.htm")));
    EXPECT_EQ(m_server.requests(), std::vector<std::string>{"call:XX9TST"});
}

TEST_F(WebSearch, TheCallDirectoryWithoutAManagerLineGivesNoManager)
{
    const manager::WebSearchResult r = search().callDirectory("XX9ABC");
    EXPECT_FALSE(r.Web_ok);
    EXPECT_EQ(r.mng_web, "");
    EXPECT_EQ(r.outcome(), "M N G 無 し");
}

TEST_F(WebSearch, TheProbeTellsWhetherTheServiceAnswers)
{
    EXPECT_TRUE(search().probe());
    EXPECT_EQ(m_server.requests(), std::vector<std::string>{"probe"});
    EXPECT_FALSE(search(test::closedLoopbackBase()).probe());
    EXPECT_EQ(manager::WebManagerSearch::probeText(true), "Web 検索 可能");
    EXPECT_EQ(manager::WebManagerSearch::probeText(false), "Web 検索 不可能");
}

TEST_F(WebSearch, TheBrowserPageCarriesTheSampleCall)
{
    EXPECT_EQ(search().nfdxaPageUrl(), m_server.base() + "/nfdxa/qsl/index.asp?dx=XX9TST");
}

TEST_F(WebSearch, ShowsTheResultInTheLabelsOfTheWindow)
{
    manager::WebSearchResult r = search().Get_MNG_web("XX9TST", "XX9FILE");
    r.Set_mng = "XX9MGR";
    RecordingObserver observer;
    manager::WebManagerSearch::show(r, observer);
    EXPECT_EQ(observer.labels["Label33"], "XX9TST");
    EXPECT_EQ(observer.labels["Label28"], "Mngテキスト ： XX9FILE");
    EXPECT_EQ(observer.labels["Label34"], "XX9MGR");
    EXPECT_EQ(observer.labels["Label45"], "取 得 成 功");
    EXPECT_EQ(observer.labels["Label30"], "Set MNG : XX9MGR");
}

TEST_F(WebSearch, LeavesTheFoundLabelsAloneWhenNothingWasFound)
{
    const manager::WebSearchResult r = search().Get_MNG_web("XX9NONE");
    RecordingObserver observer;
    manager::WebManagerSearch::show(r, observer);
    EXPECT_EQ(observer.labels.count("Label34"), 0U);
    EXPECT_EQ(observer.labels["Label45"], "M N G 無 し");
}

TEST(WebSearchPause, SleepsTheIntervalInMilliseconds)
{
    std::vector<long long> slept;
    const manager::WebManagerSearch s(
        net::WebConfig(), "/nowhere", "/nowhere",
        [&](std::chrono::milliseconds ms) { slept.push_back(ms.count()); });
    for (const char* interval : {"2", "10", "1.5", "", "x", "-3"}) {
        s.pause(interval);
    }
    EXPECT_EQ(slept, (std::vector<long long>{2000, 10000, 1500, 0, 0, 0}));
}

TEST(WebSearchScan, AResultLineNeedsTheCallAndTheResultWordsIgnoringCase)
{
    using S = manager::WebManagerSearch;
    EXPECT_EQ(S::scanQslSearchPage({"SEARCH RESULTS:<BR>xx9tst<BR>XX9MGR<BR>"}, "XX9TST").mng_web,
              "XX9MGR");
    EXPECT_FALSE(S::scanQslSearchPage({"Results:<BR>XX9TST<BR>XX9MGR<BR>"}, "XX9TST").Web_ok);
    EXPECT_FALSE(S::scanQslSearchPage({"Search Results:<BR>XX9ABC<BR>XX9MGR"}, "XX9TST").Web_ok);
}

TEST(WebSearchScan, SplitsAtTheUpperCaseBreakOnly)
{
    using S = manager::WebManagerSearch;
    // "<br>" is no piece boundary: the line has one piece, which leaves the manager empty.
    const manager::PageScan scan =
        S::scanQslSearchPage({"Search Results:<br>XX9TST<br>XX9MGR<br>"}, "XX9TST");
    EXPECT_TRUE(scan.Web_ok);
    EXPECT_EQ(scan.mng_web, "");
}

TEST(WebSearchScan, AResultLineWithoutAThirdPieceKeepsTheManagerOfTheLineBefore)
{
    using S = manager::WebManagerSearch;
    const manager::PageScan scan = S::scanQslSearchPage(
        {"Search Results:<BR>XX9TST<BR>XX9MGR<BR>", "Search Results: XX9TST"}, "XX9TST");
    EXPECT_TRUE(scan.Web_ok);
    EXPECT_EQ(scan.mng_web, "XX9MGR");
}

TEST(WebSearchScan, ReducesTwoBlanksToOneThreeTimesOnly)
{
    using S = manager::WebManagerSearch;
    EXPECT_EQ(S::squeezeBlanks("A  B"), "A B");
    EXPECT_EQ(S::squeezeBlanks(std::string("A") + std::string(8, ' ') + "B"), "A B");
    // Nine blanks become five, three, two: a run of blanks stays.
    EXPECT_EQ(S::squeezeBlanks(std::string("A") + std::string(9, ' ') + "B"), "A  B");
    // At the very start such a run would give an empty first word, but the piece is trimmed
    // before, so the manager is still the first word.
    EXPECT_EQ(S::scanQslSearchPage({"Search Results:<BR>XX9TST<BR>" + std::string(12, ' ') +
                                    "XX9MGR" + std::string(12, ' ') + "03/01/2025<BR>"},
                                   "XX9TST")
                  .mng_web,
              "XX9MGR");
}

TEST(WebSearchScan, TheCallDirectoryScanRemovesBreaksAndLinkEnds)
{
    using S = manager::WebManagerSearch;
    EXPECT_EQ(S::scanCallDirectoryPage(
                  {"<td>QSL Manager:</td>", "<a href=\"/call?callsign=XX9MGR\">XX9MGR</a><BR>"})
                  .mng_web,
              "XX9MGR");
    // Compared exactly: another spelling is no manager line.
    EXPECT_FALSE(S::scanCallDirectoryPage({"<td>QSL MANAGER:</td>", "<a>XX9MGR</a>"}).Web_ok);
    // A manager line at the very end of the page has nothing after it.
    EXPECT_FALSE(S::scanCallDirectoryPage({"<td>QSL Manager:</td>"}).Web_ok);
}

TEST(WebSearchScan, WritesAMonthDayYearDateAsYearMonthDay)
{
    using S = manager::WebManagerSearch;
    EXPECT_EQ(S::webDateText("3/7/2024"), "2024/03/07");
    EXPECT_EQ(S::webDateText("12/25/2023"), "2023/12/25");
    EXPECT_EQ(S::webDateText(""), "");
    EXPECT_EQ(S::webDateText("2024"), "2024");
}

TEST(ManagerByOption10, ChoosesBetweenFileAndWebByTheMember)
{
    using manager::managerByOption10;
    EXPECT_EQ(managerByOption10(0, "FILE", "WEB"), "WEB");
    EXPECT_EQ(managerByOption10(0, "FILE", ""), "");
    EXPECT_EQ(managerByOption10(1, "FILE", "WEB"), "FILE");
    EXPECT_EQ(managerByOption10(1, "  ", "WEB"), "WEB");
    EXPECT_EQ(managerByOption10(2, "FILE", "WEB"), "WEB");
    EXPECT_EQ(managerByOption10(2, "FILE", " "), "FILE");
    EXPECT_FALSE(managerByOption10(3, "FILE", "WEB").has_value());
    EXPECT_FALSE(managerByOption10(-1, "FILE", "WEB").has_value());
}

TEST(ManagerByOption10, NamesTheModeOfTheSearch)
{
    EXPECT_EQ(manager::webSearchModeText(0), "WEB検索のみを使用する");
    EXPECT_EQ(manager::webSearchModeText(1), "MNG ﾌｧｲﾙ 優先、WEB補完");
    EXPECT_EQ(manager::webSearchModeText(2), "WEB優先、MNG ﾌｧｲﾙ 補完");
    EXPECT_EQ(manager::webSearchModeText(3), "");
}
