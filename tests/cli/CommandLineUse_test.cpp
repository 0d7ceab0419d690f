// The command line as a user meets it: mistakes told plainly with exit status 2 before
// anything starts, the version, the notes, the trace.

#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

struct Use : ::testing::Test
{
    test::TempDir dir;
    fs::path home = dir / "home";
    std::string output;

    fs::path sample(const char* name, const std::string& as)
    {
        const fs::path log = dir / as;
        fs::copy_file(test::sourceDir() / "data" / "sample" / name, log);
        return log;
    }
    int cli(std::vector<std::string> args)
    {
        output.clear();
        return test::runCli(args, &output);
    }
    int convert(const std::vector<std::string>& flags, const fs::path& log)
    {
        std::vector<std::string> args{"convert", "--home", home.string()};
        args.insert(args.end(), flags.begin(), flags.end());
        args.push_back(log.string());
        return cli(args);
    }
    bool says(const std::string& text) const { return output.find(text) != std::string::npos; }
};

} // namespace

TEST_F(Use, SetRefusesAnUnknownKeyWithExitTwoAndTheReason)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    EXPECT_EQ(convert({"--set", "Chek06=1"}, log), 2);
    EXPECT_TRUE(says("unknown key: Chek06")) << output;
    // Refused before the program starts: no program folder was made.
    EXPECT_FALSE(fs::exists(home));
}

TEST_F(Use, SetRefusesATickOtherThanZeroOrOne)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    for (const char* value : {"2", "yes", "", "01"}) {
        EXPECT_EQ(convert({"--set", std::string("Check06=") + value}, log), 2) << value;
        EXPECT_TRUE(says("Check06 is a tick: it takes 0 or 1")) << output;
    }
    EXPECT_FALSE(fs::exists(home));
}

TEST_F(Use, SetRefusesAGroupMemberOutOfRange)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    EXPECT_EQ(convert({"--set", "Option04=4"}, log), 2);
    EXPECT_TRUE(says("Option04 is a group of 4: it takes 0 to 3, not \"4\"")) << output;
    EXPECT_EQ(convert({"--set", "Option2=-1"}, log), 2);
    EXPECT_TRUE(says("Option2 is a group of 2: it takes 0 to 1")) << output;
}

TEST_F(Use, SetRefusesAValueTheProgramWritesItself)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    EXPECT_EQ(convert({"--set", "version=9.99"}, log), 2);
    EXPECT_TRUE(says("version is written by the program itself")) << output;
}

TEST_F(Use, SetTakesTicksGroupMembersTextsAndOptionsThatLiveInMemory)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    EXPECT_EQ(convert({"--set", "Check06=1", "--set", "option04=0", "--set", "txtOp_name=", "--set",
                       "Get_MNG_use_web=0", "--set", "No_QSL_moji=N"},
                      log),
              0)
        << output;
}

TEST_F(Use, YearTakesFourDigitsOnly)
{
    const auto log = sample("SAMPLE2026.TXT", "A.TXT");
    for (const char* year : {"26", "20266", "2O26", "-2026", " 2026"}) {
        EXPECT_EQ(convert({"--year", year}, log), 2) << year;
        EXPECT_TRUE(says("--year takes four digits")) << output;
    }
    EXPECT_FALSE(fs::exists(home));
    EXPECT_EQ(convert({"--year", "2025"}, log), 0) << output;
    EXPECT_FALSE(says("carries no year")) << output;
}

TEST_F(Use, ATxtLogWithoutYearSaysWhichYearItTakes)
{
    const auto log = sample("SAMPLE2026.TXT", "A.TXT");
    ASSERT_EQ(cli({"settings", "--home", home.string(), "set", "YYYY=2024"}), 0) << output;
    EXPECT_EQ(convert({}, log), 0) << output;
    EXPECT_TRUE(says("a .TXT log carries no year: its contacts are taken as of 2024 (give --year "
                     "YYYY for another)"))
        << output;
}

TEST_F(Use, TypeIsCaseBlindAndItsErrorListsTheWords)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    EXPECT_EQ(convert({"--type", "ALL"}, log), 0) << output;
    EXPECT_EQ(convert({"--type", "Zlogall"}, log), 2);
    EXPECT_TRUE(says("unknown --type: Zlogall (zlo, zlox, all, txt, log_old, log_new, log_v4, "
                     "log_v430, cbr, adi, mdb, lg8)"))
        << output;
}

TEST_F(Use, ALogThatDoesNotExistIsToldPlainlyBeforeAnythingStarts)
{
    EXPECT_EQ(convert({}, dir / "NOPE.ALL"), 2);
    EXPECT_TRUE(says("no such log: " + (dir / "NOPE.ALL").string())) << output;
    EXPECT_FALSE(fs::exists(home));
    for (const char* command : {"open", "qsobank", "z2a"}) {
        EXPECT_EQ(cli({command, "--home", home.string(), (dir / "NOPE.ALL").string()}), 2)
            << command;
        EXPECT_TRUE(says("no such log")) << command << output;
    }
    EXPECT_FALSE(fs::exists(home));
}

TEST_F(Use, AFolderGivenAsTheLogIsToldPlainly)
{
    fs::create_directories(dir / "LOGS.ALL");
    EXPECT_EQ(convert({}, dir / "LOGS.ALL"), 2);
    EXPECT_TRUE(says("the log is a folder, not a file: " + (dir / "LOGS.ALL").string())) << output;
    EXPECT_FALSE(fs::exists(home));
}

TEST_F(Use, VersionPrintsTheProgramsVersion)
{
    EXPECT_EQ(cli({"--version"}), 0);
    EXPECT_TRUE(says("vornhale-cli 5.")) << output;
}

TEST_F(Use, TheEnvironmentNoteNamesTheUnsetFoldersAndFiles)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    ASSERT_EQ(convert({}, log), 0) << output;
    EXPECT_TRUE(says("未設定のフォルダ・ファイル 2 件: hamlog_hdb_dir, hamlog_hdb_2_dir"))
        << output;
}

TEST_F(Use, AFailureGivesTheFullPathOfItsTrace)
{
    const fs::path log = dir / "SHORT.cbr";
    test::writeBytes(log, "START-OF-LOG: 3.0\r\nQSO: 7000 CW 2026-11-22 0905 JA1ZZZ\r\n");
    EXPECT_EQ(convert({"--type", "cbr"}, log), 1) << output;
    ASSERT_TRUE(fs::is_directory(home / "Error_Log"));
    bool named = false;
    for (const auto& e : fs::directory_iterator(home / "Error_Log")) {
        named = named || says("トレース     ：" + e.path().string());
    }
    EXPECT_TRUE(named) << output;
}

TEST_F(Use, TraceLastPrintsTheNewestTraceInUtf8)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    ASSERT_EQ(convert({}, log), 0) << output;
    ASSERT_EQ(cli({"trace", "--home", home.string(), "--last"}), 0) << output;
    EXPECT_TRUE(says("入力ファイル ：" + log.string())) << output;
    EXPECT_TRUE(says("Public Sub Main()")) << output;
    // The listing names each trace with its whole path.
    ASSERT_EQ(cli({"trace", "--home", home.string()}), 0) << output;
    EXPECT_TRUE(says((home / "Error_Log" / "").string())) << output;
}

TEST_F(Use, TraceOfAProgramFolderWithoutTracesSaysSo)
{
    EXPECT_EQ(cli({"trace", "--home", home.string(), "--last"}), 1);
    EXPECT_TRUE(says("no trace in")) << output;
    EXPECT_EQ(cli({"trace", "--home", home.string(), "NOPE.txt"}), 2);
    EXPECT_TRUE(says("no such trace: NOPE.txt")) << output;
}

TEST_F(Use, ALogPathOfJapaneseCharactersConverts)
{
    const auto log = sample("SAMPLE2026.ALL", "コンテスト.ALL");
    EXPECT_EQ(convert({}, log), 0) << output;
    EXPECT_TRUE(fs::exists(dir / "コンテスト_hn.csv"));
}

TEST_F(Use, ALogPathShiftJisCannotHoldIsRefusedNamingTheCharacter)
{
    const auto log = sample("SAMPLE2026.ALL", "Contest🙂.ALL");
    EXPECT_EQ(convert({}, log), 2);
    EXPECT_TRUE(says("the log's path holds a character that Shift-JIS cannot hold (U+1F642)"))
        << output;
    EXPECT_FALSE(fs::exists(home));
}

TEST_F(Use, AProgramFolderShiftJisCannotHoldIsRefusedAtTheStart)
{
    const auto log = sample("SAMPLE2026.ALL", "A.ALL");
    const fs::path odd = dir / "héllo€ü";
    // é and ü have no Shift-JIS form; the refusal names the first.
    EXPECT_EQ(cli({"convert", "--home", odd.string(), log.string()}), 2);
    EXPECT_TRUE(says("the program folder holds a character that Shift-JIS cannot hold (U+00E9)"))
        << output;
    EXPECT_EQ(cli({"settings", "--home", odd.string(), "init"}), 1);
    EXPECT_TRUE(says("U+00E9")) << output;
    EXPECT_FALSE(fs::exists(odd));
}

TEST_F(Use, SettingsSetRefusesAValueItsOptionCannotHold)
{
    EXPECT_EQ(cli({"settings", "--home", home.string(), "set", "Check06=2"}), 2);
    EXPECT_TRUE(says("Check06 is a tick: it takes 0 or 1")) << output;
    EXPECT_EQ(cli({"settings", "--home", home.string(), "set", "Option05=4"}), 2);
    EXPECT_TRUE(says("Option05 is a group of 4: it takes 0 to 3")) << output;
    EXPECT_EQ(cli({"settings", "--home", home.string(), "set", "Option05=3"}), 0) << output;
    EXPECT_EQ(cli({"settings", "--home", home.string(), "get", "Option05"}), 0);
    EXPECT_TRUE(says("3")) << output;
}
