// zLog binary logs through the command line: open, convert, z2a, and logs of any shape.

#include "readers/ZloWriter.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s) { return "'" + s + "'"; }

struct Cli
{
    test::TempDir dir;
    fs::path home = dir / "home";
    std::string output;

    int run(const std::string& command, const fs::path& log, const std::string& args = "")
    {
        return test::runCommand(quote(test::cliPath()) + " " + command + " --home " +
                                    quote(home.string()) + " " + args + " " + quote(log.string()),
                                &output);
    }
    fs::path write(const std::string& name, const std::string& bytes)
    {
        test::writeBytes(dir / name, bytes);
        return dir / name;
    }
};

std::string smallLog(std::string_view contest)
{
    test::ZloWriter w;
    w.header(contest);
    test::ZloQsoSpec q;
    w.qso(q);
    q.call = "K1XX";
    q.rcvd = "05";
    q.band = 6;
    w.qso(q);
    q.call = "DL1ABC";
    q.memo = "(14025)";
    w.qso(q);
    return w.bytes();
}

} // namespace

TEST(ZloCommand, OpenTellsTheKindTheNamesAndTheCount)
{
    Cli cli;
    const fs::path log = cli.write("TEST.ZLO", smallLog("ALL JA コンテスト"));
    ASSERT_EQ(cli.run("open", log), 0) << cli.output;
    EXPECT_NE(cli.output.find("f_type\tzlo\n"), std::string::npos) << cli.output;
    EXPECT_NE(cli.output.find("Label37\t   3　件\n"), std::string::npos) << cli.output;
    EXPECT_NE(cli.output.find("cont_name\tALL JA コンテスト\n"), std::string::npos);
    EXPECT_NE(cli.output.find("z2a_name\t" + (cli.dir / "TEST_z2a.all").string()), std::string::npos);
    EXPECT_NE(cli.output.find("cmdStart\tenabled"), std::string::npos);
}

TEST(ZloCommand, ConvertWritesTheTwoFilesWithTheContestInTheRemarks)
{
    Cli cli;
    const fs::path log = cli.write("TEST.ZLO", smallLog("ALL JA コンテスト"));
    ASSERT_EQ(cli.run("convert", log), 0) << cli.output;
    const std::string hn = text::decodeSjis(test::readBytes(cli.dir / "TEST_hn.csv"));
    EXPECT_NE(hn.find("\"JA1ABC\""), std::string::npos) << hn;
    EXPECT_NE(hn.find("ALL JA コンテスト"), std::string::npos) << hn;
    EXPECT_NE(hn.find("\"K1XX\""), std::string::npos);
    EXPECT_NE(hn.find("784A"), std::string::npos) << hn;
    EXPECT_TRUE(fs::exists(cli.dir / "TEST_cn.csv"));
}

TEST(ZloCommand, AnEmptyContestNameIsAskedAndTheCommandLineGoesOn)
{
    Cli cli;
    const fs::path log = cli.write("TEST.ZLO", smallLog(""));
    ASSERT_EQ(cli.run("convert", log), 0) << cli.output;
    EXPECT_NE(cli.output.find("DAT ﾌｧｲﾙ よりcode、QTHの取得は不可能"), std::string::npos)
        << cli.output;
    EXPECT_TRUE(fs::exists(cli.dir / "TEST_hn.csv"));
}

TEST(ZloCommand, Z2aWritesTheTextFormBesideTheLog)
{
    Cli cli;
    const fs::path log = cli.write("TEST.ZLO", smallLog("ALL JA コンテスト"));
    ASSERT_EQ(cli.run("z2a", log), 0) << cli.output;
    const auto lines = test::readSjisLines(cli.dir / "TEST_z2a.all");
    ASSERT_GE(lines.size(), 4u);
    EXPECT_NE(lines[1].find("JA1ABC"), std::string::npos) << lines[1];
    EXPECT_NE(lines[3].find("DL1ABC"), std::string::npos) << lines[3];
}

TEST(ZloCommand, FilesOfAnyLengthNeverCrashTheProgram)
{
    Cli cli;
    std::string bytes;
    for (std::size_t size : {0u, 1u, 255u, 256u, 257u, 640u, 1000u, 4096u}) {
        bytes.assign(size, '\0');
        for (std::size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<char>((i * 131 + size) & 0xff);
        }
        const fs::path log = cli.write("ANY" + std::to_string(size) + ".ZLO", bytes);
        const int status = cli.run("convert", log);
        EXPECT_TRUE(status == 0 || status == 1) << size << ": " << status << cli.output;
    }
}

TEST(ZloCommand, CancellingTheQuestionEndsTheProgramWithoutResults)
{
    Cli cli;
    const fs::path log = cli.write("TEST.ZLO", smallLog(""));
    EXPECT_EQ(cli.run("convert", log, "--cancel-questions"), 1) << cli.output;
    EXPECT_NE(cli.output.find("キャンセル"), std::string::npos) << cli.output;
    EXPECT_FALSE(fs::exists(cli.dir / "TEST_hn.csv"));
}
