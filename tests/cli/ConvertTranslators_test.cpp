// The zLog text translators at the end of a conversion, through the command line.

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s) { return "'" + s + "'"; }

int convert(const test::TempDir& dir, const fs::path& log, const std::string& args,
            std::string& output)
{
    return test::runCommand(quote(test::cliPath()) + " convert --home " +
                                quote((dir / "home").string()) + " " + args + " " +
                                quote(log.string()),
                            &output);
}

} // namespace

TEST(ConvertTranslators, ATxtRunWritesTheAllFormWhenAskedFor)
{
    test::TempDir dir;
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.TXT", dir / "S.TXT");
    std::string output;
    ASSERT_EQ(convert(dir, dir / "S.TXT", "--year 2026", output), 0) << output;
    EXPECT_FALSE(fs::exists(dir / "S_zt2a.all"));
    ASSERT_EQ(convert(dir, dir / "S.TXT", "--year 2026 --set Make_t2a=1", output), 0) << output;
    const auto lines = test::readSjisLines(dir / "S_zt2a.all");
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "zLog for Windows       by Vornhale 5.44");
    EXPECT_EQ(lines[1].rfind("2026/", 0), 0u) << lines[1];
}

TEST(ConvertTranslators, AnAllRunWritesTheTxtFormWhenAskedFor)
{
    const auto real = test::realData("zlog/allja1_qxsl_fixture.ALL");
    if (!real) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    test::TempDir dir;
    fs::copy_file(*real, dir / "AJ.ALL");
    std::string output;
    ASSERT_EQ(convert(dir, dir / "AJ.ALL", "--set Make_a2t=1", output), 0) << output;
    const auto lines = test::readSjisLines(dir / "AJ_za2t.txt");
    ASSERT_GT(lines.size(), 700u);
    EXPECT_EQ(lines[0].rfind("mon day time  callsign", 0), 0u);
}

TEST(ConvertTranslators, AnAllLineTooShortForTheTokensTakesTheFailurePath)
{
    // The sample's lines without a memo have too few tokens for the translator.
    test::TempDir dir;
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", dir / "S.ALL");
    std::string output;
    EXPECT_EQ(convert(dir, dir / "S.ALL", "--set Make_a2t=1", output), 1);
    EXPECT_NE(output.find("エラー内容 ：　9 "), std::string::npos) << output;
    EXPECT_FALSE(fs::exists(dir / "S_za2t.txt"));
}
