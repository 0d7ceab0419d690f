#include "support/TestSupport.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const fs::path& p)
{
    return "'" + p.string() + "'";
}

struct Cli
{
    test::TempDir dir;
    fs::path home = dir / "home";
    std::string output;

    int convert(const fs::path& log, const std::string& args = "")
    {
        return test::runCommand(quote(test::cliPath()) + " convert --home " + quote(home) + " " +
                                    args + " " + quote(log),
                                &output);
    }
    fs::path sample(const char* name, const char* as)
    {
        const fs::path log = dir / as;
        fs::copy_file(test::sourceDir() / "data" / "sample" / name, log);
        return log;
    }
    std::vector<std::string> trace()
    {
        for (const auto& e : fs::directory_iterator(home / "Error_Log")) {
            return test::readSjisLines(e.path());
        }
        return {};
    }
    bool traceHas(const std::string& line)
    {
        const auto lines = trace();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    std::vector<std::string> workFiles()
    {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(home / "Work")) {
            names.push_back(e.path().filename());
        }
        return names;
    }
};

const char* kAllHeader = "zLog for Windows";

} // namespace

TEST(ConvertCommand, ConvertsAndLeavesOnlyTheTwoFinalFilesBesideTheLog)
{
    Cli cli;
    const auto log = cli.sample("SAMPLE2026.ALL", "TEST.ALL");
    ASSERT_EQ(cli.convert(log), 0) << cli.output;
    std::vector<std::string> beside;
    for (const auto& e : fs::directory_iterator(cli.dir.path())) {
        if (e.is_regular_file()) {
            beside.push_back(e.path().filename());
        }
    }
    std::sort(beside.begin(), beside.end());
    EXPECT_EQ(beside, (std::vector<std::string>{"TEST.ALL", "TEST_cn.csv", "TEST_hn.csv"}));
    EXPECT_TRUE(cli.workFiles().empty());
    EXPECT_NE(cli.output.find((cli.dir / "TEST_hn.csv").string()), std::string::npos);
    EXPECT_NE(cli.output.find(" 今回の処理数は\t64 件"), std::string::npos) << cli.output;
    EXPECT_NE(cli.output.find(" Name 取得の数\t0 件"), std::string::npos);
}

TEST(ConvertCommand, KeepWorkLeavesTheWorkingFiles)
{
    Cli cli;
    ASSERT_EQ(cli.convert(cli.sample("SAMPLE2026.ALL", "TEST.ALL"), "--keep-work"), 0);
    const auto files = cli.workFiles();
    for (const char* name : {"zlog_1.txt", "zlog_2.txt", "Sort-in.csv", "Sort-out.csv"}) {
        EXPECT_NE(std::find(files.begin(), files.end(), name), files.end()) << name;
    }
}

TEST(ConvertCommand, TheTraceHoldsEveryStageAndEndsNormally)
{
    Cli cli;
    ASSERT_EQ(cli.convert(cli.sample("SAMPLE2026.TXT", "TEST.TXT"), "--year 2026"), 0);
    for (const char* line :
         {"Private sub cmdStart_Click()", "Private sub cmd_henkan()", "Private sub t_2_t()",
          "Private sub bak_sep1()", "Private sub Henkan_txt()", "Public Sub sort_()",
          "Private sub cmdStart_Click()---Ｖ５用に変換"}) {
        EXPECT_TRUE(cli.traceHas(line)) << line;
    }
    // The run ends normally, then the program ends in order.
    const auto lines = cli.trace();
    const auto ended = std::find(lines.begin(), lines.end(), "正常終了");
    ASSERT_NE(ended, lines.end());
    EXPECT_NE(std::find(ended, lines.end(), "Public Sub End_Shori()"), lines.end());
    EXPECT_EQ(lines.back(), "Public Sub tmp_file_Del()  ini_write_new");
}

TEST(ConvertCommand, ANonZlogFileIsRejectedAndNothingIsWritten)
{
    Cli cli;
    test::writeSjisLines(cli.dir / "X.ALL", {"START-OF-LOG: 3.0", "QSO: 14000 CW"});
    EXPECT_EQ(cli.convert(cli.dir / "X.ALL"), 1);
    EXPECT_NE(cli.output.find("zlogのﾃｷｽﾄﾌｧｲﾙではありません！"), std::string::npos) << cli.output;
    EXPECT_TRUE(cli.workFiles().empty());
    EXPECT_FALSE(fs::exists(cli.dir / "X_hn.csv"));
}

TEST(ConvertCommand, BinaryGarbageIsRejectedWithoutACrash)
{
    Cli cli;
    std::string garbage;
    for (int i = 0; i < 4096; ++i) {
        garbage.push_back(static_cast<char>((i * 7919) & 0xFF));
    }
    test::writeBytes(cli.dir / "G.ALL", garbage);
    EXPECT_EQ(cli.convert(cli.dir / "G.ALL"), 1);
}

TEST(ConvertCommand, AnAllWithOnlyItsFirstLineTakesTheFailurePath)
{
    Cli cli;
    test::writeSjisLines(cli.dir / "ONLY.ALL", {kAllHeader});
    EXPECT_EQ(cli.convert(cli.dir / "ONLY.ALL"), 1);
    EXPECT_TRUE(cli.traceHas("エラー発生 ：　62"));
    const auto lines = cli.trace();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& l) {
        return l.rfind("エラー内容 ：　", 0) == 0;
    }));
    EXPECT_NE(cli.output.find("　　エラー発生の為、　終了します！"), std::string::npos);
    EXPECT_NE(cli.output.find("　　　　　　お手数をお掛けしています。"), std::string::npos);
    EXPECT_FALSE(fs::exists(cli.dir / "ONLY_hn.csv"));
}

TEST(ConvertCommand, ABlankLineInATxtFailsWithSubscriptOutOfRange)
{
    Cli cli;
    const auto log = cli.sample("SAMPLE2026.TXT", "B.TXT");
    std::string bytes = test::readBytes(log);
    bytes.insert(bytes.find("\r\n", bytes.find("\r\n") + 2) + 2, "   \r\n");
    test::writeBytes(log, bytes);
    EXPECT_EQ(cli.convert(log, "--year 2026"), 1);
    EXPECT_TRUE(cli.traceHas("エラー発生 ：　9"));
}

TEST(ConvertCommand, AnOperatorWhoIsNotInTheLogEndsInTheFailurePath)
{
    Cli cli;
    const auto log = cli.sample("SAMPLE2026.ALL", "OP.ALL");
    EXPECT_EQ(cli.convert(log, "--set Check02=1 --set txtOp_name=NOBODY"), 1);
    EXPECT_TRUE(cli.traceHas("エラー発生 ：　62"));
}

TEST(ConvertCommand, ThePreviousResultsStayWhenARunFails)
{
    Cli cli;
    const auto log = cli.sample("SAMPLE2026.ALL", "KEEP.ALL");
    ASSERT_EQ(cli.convert(log), 0);
    const std::string before = test::readBytes(cli.dir / "KEEP_hn.csv");
    EXPECT_EQ(cli.convert(log, "--set Check02=1 --set txtOp_name=NOBODY"), 1);
    EXPECT_EQ(test::readBytes(cli.dir / "KEEP_hn.csv"), before);
}

TEST(ConvertCommand, BadUsageExitsTwo)
{
    Cli cli;
    const auto log = cli.sample("SAMPLE2026.ALL", "U.ALL");
    EXPECT_EQ(cli.convert(log, "--type nonsense"), 2);
    EXPECT_EQ(cli.convert(log, "--set Check02"), 2);
    EXPECT_EQ(test::runCommand(quote(test::cliPath()) + " convert", &cli.output), 2);
    EXPECT_EQ(test::runCommand(quote(test::cliPath()), &cli.output), 2);
}

TEST(ConvertCommand, AMissingLogExitsTwoWithAMessage)
{
    Cli cli;
    EXPECT_EQ(cli.convert(cli.dir / "nothing.ALL"), 2);
    EXPECT_NE(cli.output.find("nothing.ALL"), std::string::npos);
}

TEST(ConvertCommand, AProgramFolderThatCannotBeMadeExitsOne)
{
    Cli cli;
    test::writeBytes(cli.dir / "file", "x");
    const auto log = cli.sample("SAMPLE2026.ALL", "H.ALL");
    const int status = test::runCommand(quote(test::cliPath()) + " convert --home " +
                                            quote(cli.dir / "file" / "home") + " " + quote(log),
                                        &cli.output);
    EXPECT_EQ(status, 1);
    EXPECT_FALSE(cli.output.empty());
}

TEST(ConvertCommand, TheReportIsWrittenWithCheck21)
{
    Cli cli;
    ASSERT_EQ(cli.convert(cli.sample("SAMPLE2026.ALL", "R.ALL"), "--set Check21=1"), 0);
    ASSERT_TRUE(fs::exists(cli.home / "Henkan_Result"));
    fs::path report;
    for (const auto& e : fs::directory_iterator(cli.home / "Henkan_Result")) {
        report = e.path();
    }
    EXPECT_EQ(report.filename().string().rfind("Henkan_", 0), 0u);
    const auto lines = test::readSjisLines(report);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "********  変換結果  ********");
    // The input count is the figure shown when the log was opened: its lines, title included,
    // as the count label holds it (the ideographic blank before "件" stays).
    EXPECT_NE(std::find(lines.begin(), lines.end(), "今回の処理数は　：　65　"), lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "複 ・単の合計数 ：　64"), lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "該当する局にはNo QSL 　： この機能は無視する"),
              lines.end());
    EXPECT_EQ(lines.back(), std::string(32, '='));
    EXPECT_NE(cli.output.find(report.string()), std::string::npos);
}
