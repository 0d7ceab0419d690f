// Cabrillo and ADIF logs through the command line: the open with its recognition and
// rejection texts, the message for a name that the open actions cannot place, and the
// outcomes of a conversion that the golden cases do not show.

#include "support/TestSupport.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s)
{
    return "'" + s + "'";
}

struct Cli
{
    test::TempDir dir;
    fs::path home = dir / "home";
    std::string output;

    int run(const std::string& command, const fs::path& log, const std::string& args = "")
    {
        return test::runCommand(quote(test::cliPath().string()) + " " + command + " --home " +
                                    quote(home.string()) + " " + args + " " + quote(log.string()),
                                &output);
    }
    fs::path copy(const char* data, const std::string& as)
    {
        fs::copy_file(test::testData(data), dir / as);
        return dir / as;
    }
    fs::path write(const std::string& name, const std::vector<std::string>& lines)
    {
        test::writeSjisLines(dir / name, lines);
        return dir / name;
    }
    bool says(const std::string& text) const { return output.find(text) != std::string::npos; }
    bool traceHas(const std::string& line)
    {
        for (const auto& e : fs::directory_iterator(home / "Error_Log")) {
            const auto lines = test::readSjisLines(e.path());
            if (std::find(lines.begin(), lines.end(), line) != lines.end()) {
                return true;
            }
        }
        return false;
    }
};

constexpr const char* kTypeWords = "--type は次のどれかです: ";

} // namespace

TEST(CabrilloAdifCommand, OpenRecognisesACabrilloLogAndCountsItsQsoLines)
{
    Cli cli;
    const fs::path log = cli.copy("cabrillo/SAMPLE.CBR", "TEST.CBR");
    ASSERT_EQ(cli.run("open", log, "--type cbr"), 0) << cli.output;
    EXPECT_TRUE(cli.says("f_type\tcbr\n")) << cli.output;
    EXPECT_TRUE(cli.says("Label39\t16 件\n")) << cli.output;
    EXPECT_TRUE(cli.says("out_name_ham_n\t" + (cli.dir / "TEST_hn.csv").string())) << cli.output;
    EXPECT_TRUE(cli.says("cmdStart\tenabled")) << cli.output;
}

TEST(CabrilloAdifCommand, OpenRecognisesAnAdifLogAndCountsItsCallLines)
{
    Cli cli;
    const fs::path log = cli.copy("adif/SAMPLE.ADI", "TEST.ADI");
    ASSERT_EQ(cli.run("open", log, "--type ADI"), 0) << cli.output;
    EXPECT_TRUE(cli.says("f_type\tadi\n")) << cli.output;
    // 13 lines hold "<CALL:" and one "<call:".
    EXPECT_TRUE(cli.says("Label39\t14 件\n")) << cli.output;
}

TEST(CabrilloAdifCommand, OpenAndConvertReportTheRejectionTexts)
{
    Cli cli;
    const fs::path notCabrillo = cli.write("NOT.CBR", {"CALLSIGN: JA1ZZZ", "START-OF-LOG: 3.0"});
    EXPECT_EQ(cli.run("open", notCabrillo, "--type cbr"), 1);
    EXPECT_TRUE(cli.says("Cabrillo ﾌｧｲﾙではありません！")) << cli.output;
    EXPECT_EQ(cli.run("convert", notCabrillo, "--type cbr"), 1);
    EXPECT_TRUE(cli.says("Cabrillo ﾌｧｲﾙではありません！")) << cli.output;
    EXPECT_FALSE(fs::exists(cli.dir / "NOT_hn.csv"));

    const fs::path notAdif = cli.write("NOT.ADI", {"<EOH>", "<CALL:6>JA1ABC <MODE:2>CW <EOR>"});
    EXPECT_EQ(cli.run("open", notAdif, "--type adi"), 1);
    EXPECT_TRUE(cli.says("ADIF ﾌｧｲﾙではありません！")) << cli.output;
    EXPECT_EQ(cli.run("convert", notAdif, "--type adi"), 1);
    EXPECT_TRUE(cli.says("ADIF ﾌｧｲﾙではありません！")) << cli.output;
}

TEST(CabrilloAdifCommand, ANameTheOpenCannotPlaceListsTheTypeWordsAndOffersItsKind)
{
    Cli cli;
    const fs::path cbr = cli.copy("cabrillo/SAMPLE.CBR", "TEST.cbr");
    for (const char* command : {"open", "convert"}) {
        EXPECT_EQ(cli.run(command, cbr), 1) << command;
        EXPECT_TRUE(
            cli.says("入力ファイルの種類が判りません。--type で指定して下さい: " + cbr.string()))
            << cli.output;
        EXPECT_TRUE(cli.says(std::string(kTypeWords) + "zlo, ")) << cli.output;
        EXPECT_TRUE(cli.says(".cbr のファイルは次の --type で開けます: cbr (Cabrillo)\n"))
            << cli.output;
    }
    EXPECT_FALSE(fs::exists(cli.dir / "TEST_hn.csv"));

    const fs::path adif = cli.copy("adif/SAMPLE.ADI", "TEST.adif");
    EXPECT_EQ(cli.run("convert", adif), 1);
    EXPECT_TRUE(cli.says(".adif のファイルは次の --type で開けます: adi (ADIF)\n")) << cli.output;
}

TEST(CabrilloAdifCommand, AnAdiNameIsTestedAsAZlogAllLogAndOfferedItsKind)
{
    // Its third-last letter is an "a": the open tests it as a zLog .ALL log, which rejects it.
    Cli cli;
    const fs::path adi = cli.copy("adif/SAMPLE.ADI", "TEST.adi");
    EXPECT_EQ(cli.run("convert", adi), 1);
    EXPECT_TRUE(cli.says("zlogのﾃｷｽﾄﾌｧｲﾙではありません！")) << cli.output;
    EXPECT_TRUE(cli.says(".adi のファイルは次の --type で開けます: adi (ADIF)\n")) << cli.output;

    ASSERT_EQ(cli.run("convert", adi, "--type adi"), 0) << cli.output;
    EXPECT_TRUE(fs::exists(cli.dir / "TEST_hn.csv"));
}

TEST(CabrilloAdifCommand, ConvertingACabrilloLogLeavesItsTxtFormBesideTheResults)
{
    Cli cli;
    const fs::path log = cli.copy("cabrillo/SAMPLE.CBR", "TEST.CBR");
    ASSERT_EQ(cli.run("convert", log, "--type cbr"), 0) << cli.output;
    std::vector<std::string> beside;
    for (const auto& e : fs::directory_iterator(cli.dir.path())) {
        if (e.is_regular_file()) {
            beside.push_back(e.path().filename().string());
        }
    }
    std::sort(beside.begin(), beside.end());
    EXPECT_EQ(beside, (std::vector<std::string>{"TEST.CBR", "TEST_cbr2zlogt.txt", "TEST_cn.csv",
                                                "TEST_hn.csv"}));
    EXPECT_TRUE(cli.traceHas("Private sub henkan_cbr_2_t()"));
    EXPECT_TRUE(cli.traceHas("Private sub cabrillo_2_zlog_txt()"));
    EXPECT_TRUE(cli.traceHas("正常終了"));

    // An ADIF log has no such form.
    const fs::path adi = cli.copy("adif/SAMPLE.ADI", "LOG.ADI");
    ASSERT_EQ(cli.run("convert", adi, "--type adi"), 0) << cli.output;
    EXPECT_FALSE(fs::exists(cli.dir / "LOG_cbr2zlogt.txt"));
}

TEST(CabrilloAdifCommand, AnOperatorNameDropsEveryCabrilloLineAndTheRunFailsAtTheEmptyWork)
{
    Cli cli;
    const fs::path log = cli.copy("cabrillo/SAMPLE.CBR", "TEST.CBR");
    EXPECT_EQ(cli.run("convert", log, "--type cbr --set Check02=1 --set txtOp_name=JA1ZZZ"), 1);
    EXPECT_TRUE(cli.traceHas("エラー発生 ：　62")) << cli.output;
    EXPECT_FALSE(fs::exists(cli.dir / "TEST_hn.csv"));
    EXPECT_FALSE(fs::exists(cli.dir / "TEST_cbr2zlogt.txt"));
}

TEST(CabrilloAdifCommand, AShortQsoLineFailsWithNumber9AndTheTraceNamesTheLine)
{
    Cli cli;
    const fs::path log = cli.write(
        "SHORT.CBR", {"START-OF-LOG: 3.0", "CALLSIGN: JA1ZZZ",
                      "QSO: 14025 CW 2026-11-28 0001 JA1ZZZ 599 25 K1ZZ 599 05 0",
                      "QSO:    50 PH 2026-11-28 1804 JA1ZZZ FN12fr K1ZZ FN12", "END-OF-LOG:"});
    EXPECT_EQ(cli.run("convert", log, "--type cbr"), 1);
    EXPECT_TRUE(cli.traceHas("エラー発生 ：　9")) << cli.output;
    EXPECT_TRUE(cli.traceHas("エラー内容 ：　インデックスが有効範囲にありません。 (4 行目: QSO:    "
                             "50 PH 2026-11-28 1804 JA1ZZZ FN12fr K1ZZ FN12)"))
        << cli.output;
}
