// The download command and the start's offer for missing data files, against a loopback
// server that plays the download homes; the cty row end to end: the page, the archive, the
// unpack, cty.dat replaced, and the next conversion's masters made from it.

#include "reference/CtyFixture.h"
#include "support/LoopbackServer.h"
#include "support/TestSupport.h"
#include "tools/ArchiveFixtures.h"

#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s)
{
    return "'" + s + "'";
}

std::string cli(const fs::path& home, const std::string& args)
{
    return quote(test::cliPath().string()) + " " + args.substr(0, args.find(' ')) + " --home " +
           quote(home.string()) + args.substr(args.find(' '));
}

// A prefix list with Japan only; `extra` adds prefixes to it.
std::string ctyDat(const std::string& prefixes)
{
    return test::ctyHeader("Japan", "AS", "JA") + "\r\n    " + prefixes + ";\r\n";
}

class Homes
{
public:
    Homes()
    {
        auto serve = [this](const std::string& path, const std::string& body) {
            m_server.server().Get(path,
                                  [this, body](const httplib::Request&, httplib::Response& res) {
                                      ++hits;
                                      res.set_content(body, "application/octet-stream");
                                  });
        };
        serve("/cty/", "<html>\n<dt><a href=\"download/cty-3412.zip\">cty.zip</a></dt>\n</html>\n");
        serve("/zlog/dx/ardx.dat", "ardx from the web\r\n");
        serve("/zlog/dx/arrl10.dat", "arrl10 from the web\r\n");
        m_server.server().Get("/cty/cty-3412.zip",
                              [this](const httplib::Request&, httplib::Response& res) {
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

class DownloadCommand : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!test::haveTool("zip")) {
            GTEST_SKIP() << "zip makes the archive of these tests";
        }
        fs::create_directories(home());
        fs::create_directories(build());
        test::writeBytes(build() / "cty.dat", ctyDat("JA,QQ1"));
        ASSERT_TRUE(test::runIn(build(), "zip -q cty.zip cty.dat"));
        homes.ctyZip = test::readBytes(build() / "cty.zip");
        // The program's own list before the download, and the web homes.
        test::writeBytes(home() / "cty.dat", ctyDat("JA"));
        std::string ini = "[web]\r\n";
        for (const char* key :
             {"hamlog_home", "archiver_home", "archiver_home2", "cty_home", "zlog_data_home"}) {
            ini += std::string(key) + "=" + homes.base() + "\r\n";
        }
        ini += "connect_timeout_s=2\r\ntotal_timeout_s=5\r\n";
        test::writeBytes(home() / "Vornhale_web.ini", ini);
    }

    fs::path home() const { return m_dir / "home"; }
    fs::path build() const { return m_dir / "build"; }
    int run(const std::string& args, std::string* output)
    {
        return test::runCommand(cli(home(), args), output);
    }
    void allowWeb()
    {
        std::string output;
        ASSERT_EQ(run("settings set inet_flag=OK", &output), 0) << output;
    }

    test::TempDir m_dir;
    Homes homes;
};

} // namespace

TEST_F(DownloadCommand, NeedsWebAccessToBeAllowed)
{
    std::string output;
    EXPECT_EQ(run("download cty", &output), 1);
    EXPECT_NE(output.find("inet_flag=OK"), std::string::npos) << output;
    EXPECT_EQ(homes.hits, 0);
}

TEST_F(DownloadCommand, RefusesUnknownRowsAndAnEmptyChoice)
{
    std::string output;
    EXPECT_EQ(run("download nothing", &output), 2) << output;
    EXPECT_EQ(run("download --unpack", &output), 2) << output;
}

TEST_F(DownloadCommand, TheCtyRowReplacesCtyDatAndTheNextConversionsMastersComeFromIt)
{
    allowWeb();
    std::string output;
    ASSERT_EQ(run("entity QQ1ABC JA1ABC 2>/dev/null", &output), 0) << output;
    EXPECT_NE(output.find("QQ1ABC\t\t\t\t"), std::string::npos) << output;

    ASSERT_EQ(run("download --unpack cty 2>/dev/null", &output), 0) << output;
    EXPECT_NE(output.find("cty\t完 了\t" + homes.base() + "/cty/cty-3412.zip\t" +
                          (home() / "cty-3412.zip").string() + "\n"),
              std::string::npos)
        << output;
    EXPECT_NE(output.find("cty\t解凍 完了\tcty.dat の解凍・コピーに成功しました。"),
              std::string::npos)
        << output;
    EXPECT_EQ(test::readBytes(home() / "cty.dat"), ctyDat("JA,QQ1"));

    ASSERT_EQ(run("entity QQ1ABC JA1ABC 2>/dev/null", &output), 0) << output;
    EXPECT_NE(output.find("QQ1ABC\tJA\tD339\tJapan\t"), std::string::npos) << output;
    EXPECT_NE(test::readBytes(home() / "cty_mastS.txt").find("QQ1"), std::string::npos);
}

TEST_F(DownloadCommand, PrintsEachRowsStatusAndFailsWhenARowFails)
{
    allowWeb();
    std::string output;
    EXPECT_EQ(run("download ardx th505api arrl10 2>/dev/null", &output), 1) << output;
    std::istringstream lines(output);
    std::string line;
    std::vector<std::string> words;
    while (std::getline(lines, line)) {
        const auto tab = line.find('\t');
        if (tab == std::string::npos) {
            continue; // a note of the start
        }
        words.push_back(line.substr(0, tab) + " " +
                        line.substr(tab + 1, line.find('\t', tab + 1) - tab - 1));
    }
    // In the order of the window's rows, whatever the order asked.
    EXPECT_EQ(words, (std::vector<std::string>{"th505api 失 敗", "ardx 完 了", "arrl10 完 了"}));
    EXPECT_NE(output.find("HTTP 404"), std::string::npos);
    EXPECT_EQ(test::readBytes(home() / "ARDX.DAT"), "ardx from the web\r\n");
}

TEST_F(DownloadCommand, TheWindowsOnlyStepsSayTheyDoNotApply)
{
    allowWeb();
    std::string output;
    run("download --unpack unzip32 2>&1", &output);
    EXPECT_NE(output.find("unzip32\t解凍 対象外"), std::string::npos) << output;
}

TEST_F(DownloadCommand, AConversionAnswersTheOfferNoUnlessAskedToDownload)
{
    allowWeb();
    const fs::path log = m_dir / "CONTEST.ALL";
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    fs::remove(home() / "ARRL10.DAT");
    std::string output;
    run("convert " + quote(log.string()) + " 2>&1", &output);
    EXPECT_NE(output.find("arrl10 ．dat が有りません。"), std::string::npos) << output;
    EXPECT_NE(output.find("→ 「いいえ」"), std::string::npos) << output;
    EXPECT_EQ(homes.hits, 0);
    EXPECT_FALSE(fs::exists(home() / "ARRL10.DAT"));
}

TEST_F(DownloadCommand, AConversionWithDownloadMissingFetchesTheFilesAndGoesOn)
{
    allowWeb();
    const fs::path log = m_dir / "CONTEST.ALL";
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    fs::remove(home() / "cty.dat");
    fs::remove(home() / "ARRL10.DAT");
    std::string output;
    ASSERT_EQ(run("convert --download-missing " + quote(log.string()) + " 2>&1", &output), 0)
        << output;
    EXPECT_NE(output.find("「は　い」　：　今直ぐにここからダウンロードする。"), std::string::npos)
        << output;
    EXPECT_NE(output.find("cty\t完 了"), std::string::npos) << output;
    EXPECT_NE(output.find("arrl10\t完 了"), std::string::npos) << output;
    EXPECT_EQ(test::readBytes(home() / "cty.dat"), ctyDat("JA,QQ1"));
    EXPECT_EQ(test::readBytes(home() / "ARRL10.DAT"), "arrl10 from the web\r\n");
    EXPECT_TRUE(fs::exists(m_dir / "CONTEST_hn.csv"));
}
