#include "ArchiveFixtures.h"
#include "support/LoopbackServer.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"
#include "tools/DataDownloads.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using namespace vornhale;
using tools::DownloadRow;
namespace fs = std::filesystem;

namespace {

struct Shown
{
    std::string title, text;
};

class RecordingDialogs : public base::Dialogs
{
public:
    void message(std::string_view title, std::string_view text, Icon) override
    {
        shown.push_back({std::string(title), std::string(text)});
    }
    std::vector<Shown> shown;
};

const char* const kCtyPage = "<html><body><dl>\n"
                             "\t<dt><a href=\"download/cty-3412.zip\">cty.zip</a></dt>\n"
                             "\t<dd>Big CTY - 18 November 2026</dd>\n"
                             "</dl></body></html>\n";

std::string unlhaPage()
{
    return text::encodeSjis(
        "<html>\r\n<p>UNLHA32.DLL 解説</p>\r\n"
        "<li>UNLHA32.DLL Ver 3.20　・・・ダウンロード\tUNL320.EXE (560KB)</li>\r\n"
        "</html>\r\n");
}

/// The homes of the six rows on one loopback server, with a count of the requests it had.
class DownloadServer
{
public:
    DownloadServer()
    {
        auto& s = m_server.server();
        auto serve = [this](const std::string& path, std::string body) {
            m_server.server().Get(path,
                                  [this, body](const httplib::Request&, httplib::Response& res) {
                                      ++hits;
                                      res.set_content(body, "application/octet-stream");
                                  });
        };
        serve("/cty/", kCtyPage);
        serve("/archiver/lib/unlha32.html", unlhaPage());
        serve("/lib/UNL320.EXE", "MZ installer");
        serve("/archiver/lib/unzp542.exe", "MZ unzip installer");
        serve("/prog/Th505api.lzh", "an lzh");
        serve("/zlog/dx/ardx.dat", "ARDX list\r\n");
        serve("/zlog/dx/arrl10.dat", "ARRL10 list\r\n");
        s.Get("/slow/zlog/dx/ardx.dat", [this](const httplib::Request&, httplib::Response& res) {
            ++hits;
            std::this_thread::sleep_for(std::chrono::seconds(3));
            res.set_content("late", "text/plain");
        });
        s.Get("/nomarks/cty/", [this](const httplib::Request&, httplib::Response& res) {
            ++hits;
            res.set_content(
                "<html><a href=\"download/cty-3412.zip\" title=\"x\">the list</a></html>\n",
                "text/html");
        });
        s.Get("/cty/cty-3412.zip", [this](const httplib::Request&, httplib::Response& res) {
            ++hits;
            res.set_content(ctyZip, "application/zip");
        });
        m_server.start();
    }

    std::string base() const { return m_server.base(); }

    std::string ctyZip;
    std::atomic<int> hits{0};

private:
    test::LoopbackServer m_server;
};

class DataDownloadsTest : public ::testing::Test
{
protected:
    DataDownloadsTest() : web(net::WebConfig::load(m_dir.path()))
    {
        options.set("inet_flag", "OK");
        for (const char* key :
             {"hamlog_home", "archiver_home", "archiver_home2", "cty_home", "zlog_data_home"}) {
            web.setEndpoint(key, server.base());
        }
        web.setTimeouts({2, 1});
    }

    fs::path home() const { return m_dir.path(); }
    tools::DataDownloads window()
    {
        return tools::DataDownloads(home(), options, web, trace, dialogs);
    }

    test::TempDir m_dir;
    DownloadServer server;
    settings::Options options;
    net::WebConfig web;
    base::Trace trace;
    RecordingDialogs dialogs;
};

bool noFileBut(const fs::path& folder, const std::vector<std::string>& names)
{
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            ADD_FAILURE() << "unexpected file " << name;
            return false;
        }
    }
    return true;
}

} // namespace

TEST(DataDownloadsPages, FindTheCtyZipOnThePageWithBothMarks)
{
    EXPECT_EQ(tools::DataDownloads::ctyNameFromPage(kCtyPage), "cty-3412.zip");
    // The first line with both marks counts: the one before lacks ".zip>".
    EXPECT_EQ(tools::DataDownloads::ctyNameFromPage(
                  "<a href=\"download/cty-3412.zip\" title=\"old\">the list</a>\n"
                  "<dt><a href=download/cty-3413.zip>cty.zip</a></dt>\n"
                  "<dt><a href=download/cty-3414.zip>cty.zip</a></dt>\n"),
              "cty-3413.zip");
}

TEST(DataDownloadsPages, AnswerNothingWithoutBothMarksOrForANameThatIsNoPlainFileName)
{
    EXPECT_EQ(tools::DataDownloads::ctyNameFromPage("<a href=\"download/cty-3412.zip\" x>y</a>"),
              "");
    EXPECT_EQ(tools::DataDownloads::ctyNameFromPage("<a href=\"cty-3412.zip\">cty.zip</a>"), "");
    EXPECT_EQ(tools::DataDownloads::ctyNameFromPage("cty.zip>\n<a href=download/cty-1.zip\n"), "");
    EXPECT_EQ(tools::DataDownloads::ctyNameFromPage(
                  "<dt><a href=download/cty-1/../../evil.zip>cty.zip</a></dt>"),
              "");
    EXPECT_EQ(tools::DataDownloads::ctyNameFromPage(""), "");
}

TEST(DataDownloadsPages, FindTheInstallerOnTheLineWithTheDownloadMark)
{
    EXPECT_EQ(tools::DataDownloads::unlhaNameFromPage(unlhaPage()), "UNL320.EXE");
    // The same page in UTF-8.
    EXPECT_EQ(tools::DataDownloads::unlhaNameFromPage(text::decodeSjis(unlhaPage())), "UNL320.EXE");
    EXPECT_EQ(tools::DataDownloads::unlhaNameFromPage("<li>UNL320.EXE</li>"), "");
    EXPECT_EQ(tools::DataDownloads::unlhaNameFromPage(
                  text::encodeSjis("・・・ダウンロード ../../UNL.EXE")),
              "");
}

TEST(DataDownloadsRows, AreNamedAfterTheirFiles)
{
    std::vector<std::string> words;
    for (const auto& row : tools::downloadRows()) {
        words.emplace_back(row.word);
    }
    EXPECT_EQ(words, (std::vector<std::string>{"th505api", "unzip32", "unlha32", "cty", "ardx",
                                               "arrl10"}));
    ASSERT_NE(tools::downloadRowOf("CTY"), nullptr);
    EXPECT_EQ(tools::downloadRowOf("CTY")->tick, "Check5");
    EXPECT_EQ(tools::downloadRowOf("nothing"), nullptr);
}

TEST_F(DataDownloadsTest, FindsTheCurrentNamesAtLoadAndDeletesTheScratchFiles)
{
    tools::DataDownloads w = window();
    w.Form_Load(false);
    EXPECT_EQ(w.row(DownloadRow::Cty).source, server.base() + "/cty/cty-3412.zip");
    EXPECT_EQ(w.row(DownloadRow::Unlha32).source, server.base() + "/lib/UNL320.EXE");
    EXPECT_EQ(w.row(DownloadRow::Th505api).source, server.base() + "/prog/Th505api.lzh");
    EXPECT_EQ(w.label("Label3"), server.base() + "/prog/Th505api.lzh");
    EXPECT_EQ(w.label("Label2"), "cty-3412.zip  " + server.base() + "/cty/cty-3412.zip");
    EXPECT_EQ(w.label("Label6"), "UNL320.EXE  " + server.base() + "/lib/UNL320.EXE");
    for (const char* scratch : {"cty_dat.html", "cty_dat.txt", "unlha32.html", "unlha32.txt"}) {
        EXPECT_FALSE(fs::exists(home() / scratch)) << scratch;
    }
    for (const auto& row : tools::downloadRows()) {
        EXPECT_FALSE(w.row(row.row).tick);
    }
}

TEST_F(DataDownloadsTest, ACtyPageWithoutTheMarksLeavesTheNameEmptyAndTheAddressEndingInCty)
{
    web.setEndpoint("cty_home", server.base() + "/nomarks");
    tools::DataDownloads w = window();
    w.Form_Load(false);
    EXPECT_EQ(w.get_cty_dat_name(), "");
    EXPECT_EQ(w.row(DownloadRow::Cty).source, server.base() + "/nomarks/cty/");
    w.setTick(DownloadRow::Cty, true);
    EXPECT_FALSE(w.cmdStart());
    EXPECT_EQ(w.row(DownloadRow::Cty).label, "失 敗");
    EXPECT_EQ(w.label("Label11"), "失 敗");
    EXPECT_FALSE(fs::exists(home() / "cty_dat.html"));
}

TEST_F(DataDownloadsTest, WithoutWebAccessThePagesAreNotReadAndNoRowIsLabelled)
{
    options.set("inet_flag", "NO");
    tools::DataDownloads w = window();
    w.Form_Load(true);
    EXPECT_EQ(server.hits, 0);
    EXPECT_EQ(w.get_cty_dat_name(), "");
    EXPECT_EQ(w.get_unlha_name(), "");
    EXPECT_EQ(server.hits, 0);
    for (const auto& row : tools::downloadRows()) {
        EXPECT_EQ(w.label(row.label), "") << row.word;
        EXPECT_FALSE(w.row(row.row).tick) << row.word;
    }
    EXPECT_EQ(w.label("Label2"), "");
    EXPECT_EQ(w.label("Label6"), "");
}

TEST_F(DataDownloadsTest, DownloadsTheTickedRowsIntoTheProgramFolder)
{
    tools::DataDownloads w = window();
    w.Form_Load(false);
    w.setTick(DownloadRow::Ardx, true);
    w.setTick(DownloadRow::Arrl10, true);
    EXPECT_TRUE(w.cmdStart());
    EXPECT_EQ(test::readBytes(home() / "ARDX.DAT"), "ARDX list\r\n");
    EXPECT_EQ(test::readBytes(home() / "ARRL10.DAT"), "ARRL10 list\r\n");
    EXPECT_EQ(w.label("Label13"), "完 了");
    EXPECT_EQ(w.label("Label15"), "完 了");
    EXPECT_EQ(w.label("Label5"), "完 了");
    EXPECT_TRUE(dialogs.shown.empty());
    EXPECT_FALSE(w.row(DownloadRow::Ardx).tick);
    EXPECT_FALSE(w.row(DownloadRow::Arrl10).tick);
}

TEST_F(DataDownloadsTest, ReplacesAFileThatIsThereUnderAnotherCase)
{
    test::writeBytes(home() / "Ardx.dat", "old list");
    tools::DataDownloads w = window();
    w.setTick(DownloadRow::Ardx, true);
    EXPECT_TRUE(w.cmdStart());
    EXPECT_EQ(test::readBytes(home() / "Ardx.dat"), "ARDX list\r\n");
    EXPECT_FALSE(fs::exists(home() / "ARDX.DAT"));
}

TEST_F(DataDownloadsTest, TheFirstFourRowsSayTheyMayNeedUnpacking)
{
    tools::DataDownloads w = window();
    w.Form_Load(false);
    w.setTick(DownloadRow::Th505api, true);
    w.setTick(DownloadRow::Unzip32, true);
    w.setTick(DownloadRow::Unlha32, true);
    EXPECT_TRUE(w.cmdStart());
    EXPECT_EQ(w.label("Label5"), "解凍後コピー必要の時あり");
    EXPECT_EQ(test::readBytes(home() / "TH505API.LZH"), "an lzh");
    EXPECT_EQ(test::readBytes(home() / "unzp542.exe"), "MZ unzip installer");
    EXPECT_EQ(test::readBytes(home() / "UNL320.EXE"), "MZ installer");
}

TEST_F(DataDownloadsTest, AFailedRowDoesNotStopTheLaterRows)
{
    web.setEndpoint("hamlog_home", server.base() + "/missing");
    tools::DataDownloads w = window();
    w.setTick(DownloadRow::Th505api, true);
    w.setTick(DownloadRow::Ardx, true);
    EXPECT_FALSE(w.cmdStart());
    EXPECT_EQ(w.row(DownloadRow::Th505api).label, "失 敗");
    EXPECT_EQ(w.row(DownloadRow::Th505api).detail, "HTTP 404");
    EXPECT_EQ(w.row(DownloadRow::Ardx).label, "完 了");
    EXPECT_FALSE(fs::exists(home() / "TH505API.LZH"));
    EXPECT_EQ(test::readBytes(home() / "ARDX.DAT"), "ARDX list\r\n");
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].title, "　　エラーが発生しました！");
    EXPECT_EQ(dialogs.shown[0].text,
              "エラーが発生しました。\n接続先のアドレス、ファイル名に変更の\n"
              "可能性があります。確認してから別途、\n各自で入手して下さい。");
    EXPECT_EQ(w.label("Label5"), "失 敗");
}

TEST_F(DataDownloadsTest, A404LeavesAnOlderFileAsItWas)
{
    web.setEndpoint("zlog_data_home", server.base() + "/missing");
    test::writeBytes(home() / "ARDX.DAT", "the older list");
    tools::DataDownloads w = window();
    w.setTick(DownloadRow::Ardx, true);
    EXPECT_FALSE(w.cmdStart());
    EXPECT_EQ(test::readBytes(home() / "ARDX.DAT"), "the older list");
    EXPECT_TRUE(noFileBut(home(), {"ARDX.DAT"}));
}

TEST_F(DataDownloadsTest, AnEmptyHomeFailsItsRowWithoutARequest)
{
    web.setEndpoint("zlog_data_home", "");
    tools::DataDownloads w = window();
    w.setTick(DownloadRow::Arrl10, true);
    EXPECT_FALSE(w.cmdStart());
    EXPECT_EQ(server.hits, 0);
    EXPECT_EQ(w.row(DownloadRow::Arrl10).label, "失 敗");
    EXPECT_EQ(w.row(DownloadRow::Arrl10).detail,
              "zlog_data_home が Vornhale_web.ini の [web] に設定されていません");
    EXPECT_EQ(w.row(DownloadRow::Arrl10).source, "");
}

TEST_F(DataDownloadsTest, AServerThatIsDownFailsTheRowAndLeavesNoFile)
{
    web.setEndpoint("zlog_data_home", test::closedLoopbackBase());
    tools::DataDownloads w = window();
    w.setTick(DownloadRow::Ardx, true);
    EXPECT_FALSE(w.cmdStart());
    EXPECT_EQ(w.row(DownloadRow::Ardx).label, "失 敗");
    EXPECT_FALSE(w.row(DownloadRow::Ardx).detail.empty());
    EXPECT_TRUE(noFileBut(home(), {}));
}

TEST_F(DataDownloadsTest, ASlowServerRunsIntoTheTimeoutAndLeavesNoFile)
{
    web.setEndpoint("zlog_data_home", server.base() + "/slow");
    tools::DataDownloads w = window();
    w.setTick(DownloadRow::Ardx, true);
    const auto started = std::chrono::steady_clock::now();
    EXPECT_FALSE(w.cmdStart());
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(2900));
    EXPECT_EQ(w.row(DownloadRow::Ardx).label, "失 敗");
    EXPECT_TRUE(noFileBut(home(), {}));
}

TEST_F(DataDownloadsTest, TheStartCheckTicksTheRowsWhoseFilesAreMissing)
{
    test::writeBytes(home() / "ardx.dat", "there");
    tools::DataDownloads w = window();
    w.Form_Load(true);
    EXPECT_TRUE(w.row(DownloadRow::Th505api).tick);
    EXPECT_FALSE(w.row(DownloadRow::Unzip32).tick);
    EXPECT_TRUE(w.row(DownloadRow::Unlha32).tick);
    EXPECT_TRUE(w.row(DownloadRow::Cty).tick);
    EXPECT_FALSE(w.row(DownloadRow::Ardx).tick);
    EXPECT_TRUE(w.row(DownloadRow::Arrl10).tick);
    EXPECT_TRUE(w.row(DownloadRow::Ardx).exists);
}

TEST_F(DataDownloadsTest, TheCtyRowDownloadsUnpacksAndReplacesCtyDat)
{
    if (!test::haveTool("zip")) {
        GTEST_SKIP() << "zip makes the archive of this test";
    }
    const fs::path build = home() / "build";
    fs::create_directories(build);
    test::writeBytes(build / "cty.dat", "the new list\r\n");
    test::writeBytes(build / "cty.csv", "csv\r\n");
    ASSERT_TRUE(test::runIn(build, "zip -q cty.zip cty.dat cty.csv"));
    server.ctyZip = test::readBytes(build / "cty.zip");
    test::writeBytes(home() / "cty.dat", "the old list\r\n");

    tools::DataDownloads w = window();
    w.Form_Load(false);
    w.setTick(DownloadRow::Cty, true);
    ASSERT_TRUE(w.cmdStart());
    EXPECT_EQ(w.label("Label5"), "解凍後コピー必要の時あり");
    ASSERT_TRUE(fs::exists(home() / "cty-3412.zip"));

    const tools::UnpackOutcome out = w.Command4();
    EXPECT_TRUE(out.ok) << out.detail;
    EXPECT_EQ(out.title, "Succeeded!!");
    EXPECT_EQ(out.text, "cty.dat の解凍・コピーに成功しました。");
    EXPECT_EQ(test::readBytes(home() / "cty.dat"), "the new list\r\n");
    EXPECT_EQ(test::readBytes(home() / "cty-3412" / "cty.csv"), "csv\r\n");
    ASSERT_FALSE(dialogs.shown.empty());
    EXPECT_EQ(dialogs.shown.back().title, "Succeeded!!");
}

TEST_F(DataDownloadsTest, AHostileCtyZipIsRefusedAndCtyDatStays)
{
    if (!test::haveTool("zip")) {
        GTEST_SKIP() << "zip makes the archive of this test";
    }
    const fs::path inner = home() / "build" / "inner";
    fs::create_directories(inner);
    test::writeBytes(home() / "build" / "cty.dat", "planted\r\n");
    ASSERT_TRUE(test::runIn(inner, "zip -q ../cty.zip ../cty.dat"));
    test::writeBytes(home() / "cty-3412.zip", test::readBytes(home() / "build" / "cty.zip"));
    test::writeBytes(home() / "cty.dat", "the old list\r\n");

    tools::DataDownloads w = window();
    w.get_cty_dat_name();
    const tools::UnpackOutcome out = w.Command4();
    EXPECT_FALSE(out.ok);
    EXPECT_EQ(out.title, "Failed");
    EXPECT_EQ(out.text, "cty.dat の解凍・コピーに失敗しました。Error Code:0x2");
    EXPECT_EQ(test::readBytes(home() / "cty.dat"), "the old list\r\n");
}

TEST_F(DataDownloadsTest, ACtyUnpackWithoutTheArchiveFailsWithItsCode)
{
    tools::DataDownloads w = window();
    w.get_cty_dat_name();
    const tools::UnpackOutcome out = w.Command4();
    EXPECT_FALSE(out.ok);
    EXPECT_EQ(out.text, "cty.dat の解凍・コピーに失敗しました。Error Code:0x1");
}

TEST_F(DataDownloadsTest, UnpacksTheHamlogArchiveButCopiesNoLibraryIntoASystemFolder)
{
    tools::DataDownloads missing = window();
    const tools::UnpackOutcome none = missing.Command1();
    EXPECT_FALSE(none.ok);
    EXPECT_EQ(none.text,
              (home() / "TH503API.LZH").string() +
                  " は正しい書庫ファイルではありません。\n又は LZH ファイルがありません。");

    if (!test::haveTool("jlha")) {
        GTEST_SKIP() << "jlha (jlha-utils) makes the archive of this test";
    }
    const fs::path build = home() / "build";
    fs::create_directories(build / "TH503API");
    test::writeBytes(build / "TH503API" / "THDLL2VB.DLL", "MZ library");
    test::writeBytes(build / "TH503API" / "README.TXT", "read me");
    ASSERT_TRUE(test::runIn(build, "jlha a TH503API.LZH TH503API/THDLL2VB.DLL "
                                   "TH503API/README.TXT >/dev/null"));
    fs::copy_file(build / "TH503API.LZH", home() / "TH503API.LZH");
    tools::DataDownloads w = window();
    const tools::UnpackOutcome out = w.Command1();
    EXPECT_TRUE(out.ok) << out.detail;
    EXPECT_EQ(out.count, 2);
    EXPECT_EQ(out.text.rfind("2 個解凍しました。\n", 0), 0u);
    EXPECT_NE(out.text.find("このプラットフォームでは行いません"), std::string::npos);
    EXPECT_EQ(test::readBytes(home() / "TH503API" / "THDLL2VB.DLL"), "MZ library");
}

TEST_F(DataDownloadsTest, TheInstallersSayTheyDoNotApplyHere)
{
    tools::DataDownloads w = window();
    for (const DownloadRow row : {DownloadRow::Unzip32, DownloadRow::Unlha32}) {
        const tools::UnpackOutcome out = w.unpack(row);
        EXPECT_FALSE(out.applies);
        EXPECT_NE(out.text.find("このプラットフォームでは実行しません"), std::string::npos);
    }
    EXPECT_EQ(dialogs.shown.size(), 2u);
}
