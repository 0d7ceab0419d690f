// The settings command and the settings a conversion reads and writes, through the program.

#include "settings/ProfileFile.h"
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

    int settings(const std::string& args)
    {
        return test::runCommand(quote(test::cliPath()) + " settings --home " +
                                    quote(home.string()) + " " + args,
                                &output);
    }
    int convert(const std::string& args)
    {
        const fs::path log = dir / "TEST.ALL";
        if (!fs::exists(log)) {
            fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
        }
        return test::runCommand(quote(test::cliPath()) + " convert --home " + quote(home.string()) +
                                    " " + args + " " + quote(log.string()),
                                &output);
    }
    std::string stored(const char* file, const char* section, const char* key) const
    {
        return settings::ProfileFile(home / file).read(section, key);
    }
};

} // namespace

TEST(SettingsCommand, InitSeedsTheProgramFolderAndWritesTheDefaults)
{
    Cli cli;
    ASSERT_EQ(cli.settings("init"), 0) << cli.output;
    EXPECT_NE(cli.output.find("環境設定を先に開く ：はい"), std::string::npos);
    for (const char* name : {"Vornhale_cfg.ini", "Vornhale_new.ini", "Vornhale_posi.ini",
                             "dxcc_mas.txt", "cont_name_zlo.cfg", "Vornhale_Rireki.cfg"}) {
        EXPECT_TRUE(fs::exists(cli.home / name)) << name;
    }
    EXPECT_EQ(cli.stored("Vornhale_cfg.ini", "Vornhale_cfg.ini", "name_mas_dir"),
              (cli.home / "").string());
}

TEST(SettingsCommand, SetStoresAKeyInItsOwnFileAndGetReadsItBack)
{
    Cli cli;
    ASSERT_EQ(cli.settings("set Check06=1"), 0) << cli.output;
    ASSERT_EQ(cli.settings("set inet_flag=OK"), 0) << cli.output;
    ASSERT_EQ(cli.settings("set 'Zone_moji_save=CQ ゾーン '"), 0) << cli.output;
    EXPECT_EQ(cli.stored("Vornhale_new.ini", "Vornhale_new.ini", "Check06"), "1");
    EXPECT_EQ(cli.stored("Vornhale_cfg.ini", "Vornhale_cfg.ini", "inet_flag"), "OK");
    EXPECT_EQ(cli.stored("Vornhale_Zone_moji.ini", "Zone_moji", "Zone_moji_save"), "CQ ゾーン");
    ASSERT_EQ(cli.settings("get check06"), 0);
    EXPECT_EQ(cli.output.substr(cli.output.rfind("\n", cli.output.size() - 2) + 1), "1\n");
}

TEST(SettingsCommand, AnUnknownKeyIsRefusedWithoutTouchingTheFolder)
{
    Cli cli;
    EXPECT_EQ(cli.settings("set Nonsense=1"), 2);
    EXPECT_NE(cli.output.find("Nonsense"), std::string::npos);
    EXPECT_EQ(cli.settings("set Check06"), 2);
    EXPECT_FALSE(fs::exists(cli.home));
}

TEST(SettingsCommand, ShowPrintsEverySettingsFile)
{
    Cli cli;
    ASSERT_EQ(cli.settings("show"), 0);
    EXPECT_NE(cli.output.find("[Vornhale_new.ini]"), std::string::npos);
    EXPECT_NE(cli.output.find("exe_rec=0"), std::string::npos);
    EXPECT_NE(cli.output.find("[Config]"), std::string::npos);
}

TEST(SettingsCommand, AFolderWhoseSettingsCannotBeWrittenIsReported)
{
    Cli cli;
    ASSERT_EQ(cli.settings("init"), 0);
    fs::remove(cli.home / "Vornhale_new.ini");
    fs::create_directory(cli.home / "Vornhale_new.ini");
    EXPECT_EQ(cli.settings("set Check06=1"), 1);
    EXPECT_NE(cli.output.find("設定ファイルに書き込みできません"), std::string::npos);
}

TEST(ConvertSettings, AConversionReadsItsOptionsFromTheSettingsFiles)
{
    Cli cli;
    ASSERT_EQ(cli.settings("set Option02=4"), 0);
    ASSERT_EQ(cli.settings("set Option08=1"), 0);
    ASSERT_EQ(cli.convert(""), 0) << cli.output;
    const auto inLogOrder = test::readBytes(cli.dir / "TEST_cn.csv");
    ASSERT_EQ(cli.settings("set Option02=0"), 0);
    ASSERT_EQ(cli.convert(""), 0) << cli.output;
    EXPECT_NE(test::readBytes(cli.dir / "TEST_cn.csv"), inLogOrder);
}

TEST(ConvertSettings, ASetValueHoldsForOneRunAndIsNeverStored)
{
    Cli cli;
    ASSERT_EQ(cli.convert("--set Check06=1 --set Option02=3"), 0) << cli.output;
    EXPECT_EQ(cli.stored("Vornhale_new.ini", "Vornhale_new.ini", "Check06"), "0");
    EXPECT_EQ(cli.stored("Vornhale.ini", "Vornhale.ini", "Option02"), "0");
}

TEST(ConvertSettings, EachConversionWritesTheWorkingCopyAndCountsTheRun)
{
    Cli cli;
    ASSERT_EQ(cli.convert(""), 0) << cli.output;
    EXPECT_TRUE(fs::exists(cli.home / "Vornhale.ini"));
    // The run's own clean-up and the end of the program each count once.
    EXPECT_EQ(cli.stored("Vornhale_new.ini", "Main", "exe_rec"), "2");
    ASSERT_EQ(cli.convert(""), 0) << cli.output;
    EXPECT_EQ(cli.stored("Vornhale_new.ini", "Main", "exe_rec"), "4");
}

TEST(ConvertSettings, AMissingRequiredFileEndsTheProgramWithItsDialog)
{
    Cli cli;
    ASSERT_EQ(cli.settings("init"), 0);
    fs::remove(cli.home / "dxcc_mas.txt");
    EXPECT_EQ(cli.convert(""), 1);
    EXPECT_NE(cli.output.find("ｄｘｃｃ_ｍａｓ．ｔｘｔ　がありません。"), std::string::npos);
    EXPECT_FALSE(fs::exists(cli.dir / "TEST_hn.csv"));
}

TEST(ConvertSettings, AConversionGoesOnWhenTheSettingsCannotBeWritten)
{
    Cli cli;
    ASSERT_EQ(cli.settings("init"), 0);
    fs::create_directory(cli.home / "Vornhale.ini");
    EXPECT_EQ(cli.convert(""), 0) << cli.output;
    EXPECT_NE(cli.output.find("設定ファイルに書き込みできません"), std::string::npos);
    EXPECT_TRUE(fs::exists(cli.dir / "TEST_hn.csv"));
}

TEST(ConvertSettings, TheCommentsOfARunJoinTheirHistories)
{
    Cli cli;
    ASSERT_EQ(cli.convert("--set 'txtRmks1=TNX FB QSO' --set txtRmks2=CQ"), 0) << cli.output;
    const auto rmk1 = test::readSjisLines(cli.home / "Vornhale.rmk1");
    const auto rmk2 = test::readSjisLines(cli.home / "Vornhale.rmk2");
    EXPECT_NE(std::find(rmk1.begin(), rmk1.end(), "TNX FB QSO"), rmk1.end());
    EXPECT_NE(std::find(rmk2.begin(), rmk2.end(), "CQ"), rmk2.end());
    // Each comment stands once, whatever the bundled history held.
    EXPECT_EQ(std::count(rmk1.begin(), rmk1.end(), "TNX FB QSO"), 1);
}
