#include "session/ProgramStart.h"
#include "session/Session.h"
#include "settings/WorkingFolderCleanup.h"
#include "settings/ProfileFile.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"
#include "text/Chars.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

using namespace vornhale;
using settings::ProfileFile;
namespace fs = std::filesystem;

namespace {

// One start of the program in a program folder of its own, with no zLog or HAMLOG under the
// drive root and a fixed date.
struct Start
{
    test::TempDir dir;
    test::TempDir root;
    test::TempDir seed;
    base::ProgramFolder folder = base::ProgramFolder::at(dir / "home");
    base::Trace trace;
    test::RecordingDialogs dialogs;
    settings::Options options;
    std::unique_ptr<settings::SettingsFiles> files;
    std::unique_ptr<session::ProgramStart> start;

    Start()
    {
        // No prefix list of the system unless a test gives one.
        ::setenv("VORNHALE_CTY_DAT", "", 1);
        reset();
    }

    // A new run of the program: fresh memory, the same folder.
    void reset()
    {
        options = settings::Options();
        files = std::make_unique<settings::SettingsFiles>(folder.strPath, options);
        files->setToday("20261123");
        files->setDriveRoot(root.path());
        start = std::make_unique<session::ProgramStart>(folder, *files, trace, dialogs);
    }

    session::StartDecision main() { return start->Main(seed.path()); }

    fs::path file(const char* name) const { return folder.strPath / name; }

    // The file with the program folder written as "<home>/", for golden comparison.
    std::string portable(const char* name) const
    {
        return text::replaceAll(test::readBytes(file(name)), folder.strPath.string(), "<home>/");
    }
};

fs::path golden(const char* name)
{
    return test::sourceDir() / "tests" / "data" / "golden" / "settings" / name;
}

} // namespace

TEST(ProgramStart, AFirstStartWritesTheDefaultSettingsAndOpensTheEnvironmentFirst)
{
    Start s;
    const auto d = s.main();
    EXPECT_TRUE(d.environmentFirst);
    EXPECT_TRUE(d.upgradeFromOld);
    EXPECT_TRUE(fs::exists(s.file("Vornhale_new.ini")));
    // The environment defaults are written only when the environment settings are closed.
    EXPECT_FALSE(fs::exists(s.file("Vornhale_cfg.ini")));
    EXPECT_FALSE(fs::exists(s.file("Vornhale_fdt.ini")));
    EXPECT_TRUE(fs::is_directory(s.folder.Henkan_Result));
    EXPECT_EQ(
        test::compareGolden(golden("first_start/Vornhale_new.ini"), s.portable("Vornhale_new.ini")),
        "");
    EXPECT_EQ(test::compareGolden(golden("first_start/Vornhale_posi.ini"),
                                  s.portable("Vornhale_posi.ini")),
              "");
    s.files->ini_write_cfg();
    EXPECT_EQ(
        test::compareGolden(golden("first_start/Vornhale_cfg.ini"), s.portable("Vornhale_cfg.ini")),
        "");
}

TEST(ProgramStart, ALaterStartWithEveryFolderSetGoesStraightToTheMainWindow)
{
    Start s;
    s.main();
    for (const char* key : {"hamlog_hdb_dir", "hamlog_hdb_2_dir", "name_mas_dir"}) {
        s.options.set(key, "/somewhere/");
    }
    s.files->ini_write_cfg();

    s.reset();
    auto d = s.main();
    EXPECT_EQ(d.emptyFolderSettings, 0);
    EXPECT_FALSE(d.upgradeFromOld);
    EXPECT_EQ(d.versionNumber, 544);
    EXPECT_FALSE(d.environmentFirst);
    // The second start moved the stored dates into their own file.
    EXPECT_TRUE(fs::exists(s.file("Vornhale_fdt.ini")));
    EXPECT_EQ(ProfileFile(s.file("Vornhale_fdt.ini")).read("Vornhale_fdt.ini", "version"), "5.44");

    // One empty folder setting is enough to open the environment first.
    s.options.set("log_dir", "");
    s.files->ini_write_cfg();
    s.reset();
    d = s.main();
    EXPECT_EQ(d.emptyFolderSettings, 1);
    EXPECT_TRUE(d.environmentFirst);
}

TEST(ProgramStart, TheQthFolderDoesNotCountAmongTheEmptySettings)
{
    Start s;
    s.main();
    for (const char* key : {"hamlog_hdb_dir", "hamlog_hdb_2_dir", "name_mas_dir"}) {
        s.options.set(key, "/somewhere/");
    }
    s.options.set("qth_mas_dir", "");
    s.files->ini_write_cfg();
    s.reset();
    EXPECT_EQ(s.main().emptyFolderSettings, 0);
}

TEST(ProgramStart, SettingsOlderThan527CountAsAnUpgradeAndLoseTheirPositions)
{
    Start s;
    fs::create_directories(s.folder.strPath);
    test::writeBytes(s.file("Vornhale_cfg.ini"),
                     "[Vornhale_cfg.ini]\r\nversion=5.20\r\nzlog_dat_dir=/z/\r\n");
    test::writeBytes(s.file("Vornhale_new.ini"),
                     "[Vornhale_new.ini]\r\nversion=5.20\r\nrestart=restart\r\nCheck06=1\r\n");
    test::writeBytes(s.file("Vornhale_fdt.ini"), "[Vornhale_fdt.ini]\r\nversion=5.20\r\n");
    test::writeBytes(s.file("Vornhale_posi.ini"), "[Position_Vornhale]\r\nLeft=100\r\n");
    const auto d = s.main();
    EXPECT_TRUE(d.upgradeFromOld);
    EXPECT_TRUE(d.environmentFirst);
    EXPECT_EQ(test::readBytes(s.file("Vornhale_posi.ini")), "[Config]\r\nversion=5.44\r\n\r\n");
    // The options of the old version are kept.
    EXPECT_EQ(s.options.value("Check06"), "1");
}

TEST(ProgramStart, PositionsOfAVersionBelow530AreWrittenAnew)
{
    Start s;
    fs::create_directories(s.folder.strPath);
    test::writeBytes(s.file("Vornhale_cfg.ini"), "[Vornhale_cfg.ini]\r\nversion=5.44\r\n");
    test::writeBytes(s.file("Vornhale_fdt.ini"), "[Vornhale_fdt.ini]\r\nversion=5.44\r\n");
    test::writeBytes(s.file("Vornhale_new.ini"), "[Vornhale_new.ini]\r\nversion=5.28t\r\n");
    test::writeBytes(s.file("Vornhale_posi.ini"), "[Position_Vornhale]\r\nLeft=100\r\n");
    s.main();
    EXPECT_EQ(test::readBytes(s.file("Vornhale_posi.ini")), "[Config]\r\nversion=5.44\r\n\r\n");
}

TEST(ProgramStart, PositionsOfACurrentVersionStay)
{
    Start s;
    fs::create_directories(s.folder.strPath);
    test::writeBytes(s.file("Vornhale_cfg.ini"), "[Vornhale_cfg.ini]\r\nversion=5.44\r\n");
    test::writeBytes(s.file("Vornhale_fdt.ini"), "[Vornhale_fdt.ini]\r\nversion=5.44\r\n");
    test::writeBytes(s.file("Vornhale_new.ini"), "[Vornhale_new.ini]\r\nversion=5.44\r\n");
    test::writeBytes(s.file("Vornhale_posi.ini"), "[Position_Vornhale]\r\nLeft=100\r\n");
    s.main();
    EXPECT_EQ(test::readBytes(s.file("Vornhale_posi.ini")), "[Position_Vornhale]\r\nLeft=100\r\n");
}

TEST(ProgramStart, AVersionWithALetterBehindItComparesByItsNumber)
{
    EXPECT_DOUBLE_EQ(session::versionValue("5.44t"), 5.44);
    EXPECT_DOUBLE_EQ(session::versionValue("3.2k"), 3.2);
    EXPECT_DOUBLE_EQ(session::versionValue("t5.30"), 5.30);
    EXPECT_DOUBLE_EQ(session::versionValue(""), 0);
}

TEST(ProgramStart, DatesOfTheOldFormMoveIntoTheirOwnFile)
{
    Start s;
    fs::create_directories(s.folder.strPath);
    test::writeBytes(s.file("Vornhale_cfg.ini"), "[Vornhale_cfg.ini]\r\nversion=5.10\r\n");
    test::writeBytes(s.file("Vornhale_new.ini"),
                     "[Vornhale_new.ini]\r\nversion=5.10\r\nCheck06=1\r\n[Sansyou_files]\r\n"
                     "hamlog_hdb_dir_FileDateTime=2020/01/02 03:04:05\r\n"
                     "mng_z_full_txt_dir_FileDateTime=2021/02/03 04:05:06\r\n");
    s.main();
    const ProfileFile fdt(s.file("Vornhale_fdt.ini"));
    EXPECT_EQ(fdt.read("Sansyou_files QSO", "hamlog_hdb_dir_FileDateTime_QSO"),
              "2020/01/02 03:04:05");
    EXPECT_EQ(fdt.read("Sansyou_files_MNG", "mng_z_full_txt_dir_FileDateTime"),
              "2021/02/03 04:05:06");
    const std::string rewritten = test::readBytes(s.file("Vornhale_new.ini"));
    EXPECT_EQ(rewritten.find("Sansyou_files]"), std::string::npos);
    EXPECT_EQ(rewritten.find("FileDateTime="), std::string::npos);
    EXPECT_NE(rewritten.find("version=5.44\r\n"), std::string::npos);
    EXPECT_FALSE(fs::exists(s.file("Vornhale_new.ini_2")));
}

TEST(ProgramStart, SettingsBelow325LoseTheirOldDateLines)
{
    Start s;
    fs::create_directories(s.folder.strPath);
    test::writeBytes(s.file("Vornhale_cfg.ini"), "[Vornhale_cfg.ini]\r\nversion=3.10\r\n");
    test::writeBytes(s.file("Vornhale_fdt.ini"), "[Vornhale_fdt.ini]\r\nversion=3.10\r\n");
    const std::string old = "[Vornhale_new.ini]\r\nversion=3.10\r\nCheck06=1\r\n[Sansyou_files]\r\n"
                            "hamlog_hdb_dir_FileDateTime=x\r\nkeep=1\r\n";
    test::writeBytes(s.file("Vornhale_new.ini"), old);
    test::writeBytes(s.file("Vornhale.ini"),
                     "[Vornhale.ini]\r\nmng_z_full_txt_dir_FileDateTime=y\r\nCheck06=1\r\n");
    s.main();
    EXPECT_EQ(test::readBytes(s.file("Vornhale_new.ini")).find("FileDateTime="), std::string::npos);
    EXPECT_EQ(test::readBytes(s.file("Vornhale.ini")), "[Vornhale.ini]\r\nCheck06=1\r\n");
    EXPECT_EQ(s.options.value("Check06"), "1");
    EXPECT_FALSE(fs::exists(s.file("Vornhale_new.ini_2")));
    EXPECT_FALSE(fs::exists(s.file("Vornhale.ini_2")));
    EXPECT_EQ(ProfileFile(s.file("Vornhale_fdt.ini")).read("Vornhale_fdt.ini", "version"), "5.44");
}

TEST(ProgramStart, TheAbandonedFileIsDeletedAndTheZoneMarkIsRead)
{
    Start s;
    fs::create_directories(s.folder.strPath);
    test::writeBytes(s.file("Vornhale.ini2"), "old");
    test::writeSjisLines(s.file("Vornhale_Zone_moji.ini"),
                         {"[Zone_moji]", "Zone_moji_save=ゾーン"});
    s.main();
    EXPECT_FALSE(fs::exists(s.file("Vornhale.ini2")));
    EXPECT_EQ(s.options.value("Zone_moji_save"), "ゾーン");
}

TEST(ProgramStart, SeedingCopiesOnlyWhatIsMissingAndComesBeforeTheDefaults)
{
    Start s;
    fs::create_directories(s.seed / "Prov");
    test::writeBytes(s.seed / "name_mas.txt", "bundled");
    test::writeBytes(s.seed / "dxcc_mas.txt", "bundled");
    test::writeBytes(s.seed / "Prov" / "EA_prov.mas", "bundled");
    test::writeBytes(s.seed / "README.md", "about");
    fs::create_directories(s.folder.strPath);
    test::writeBytes(s.file("dxcc_mas.txt"), "mine");
    s.main();
    EXPECT_EQ(test::readBytes(s.file("dxcc_mas.txt")), "mine");
    EXPECT_EQ(test::readBytes(s.file("name_mas.txt")), "bundled");
    EXPECT_EQ(test::readBytes(s.folder.strPath / "Prov" / "EA_prov.mas"), "bundled");
    EXPECT_FALSE(fs::exists(s.file("README.md")));
    // The defaults saw the seeded master.
    EXPECT_EQ(s.options.value("name_mas_dir"), s.folder.strPath.string());
    EXPECT_EQ(s.files->provinceMasterFolder(), s.folder.strPath / "Prov" / "");
}

TEST(ProgramStart, EachMissingRequiredFileShowsItsDialogAndEndsTheStart)
{
    Start s;
    s.main();
    const std::string home = s.folder.strPath.string();
    s.options.set("name_mas_dir", home);
    s.options.set("qth_mas_dir", home);

    EXPECT_FALSE(s.start->Main2_bas_1());
    ASSERT_EQ(s.dialogs.shown.size(), 1u);
    EXPECT_EQ(s.dialogs.shown[0].title, "　　name_mas．txt がありません。");
    EXPECT_EQ(s.dialogs.shown[0].text,
              home + "\n[　name_mas．txt  ] がありません。\n"
                     "同梱されているサンプルファイルまたは自己作成ファイルを\n"
                     " フォルダにコピーして下さい。");

    const std::pair<const char*, const char*> order[] = {
        {"name_mas.txt", "　　qth_mas．txt がありません。"},
        {"qth_mas.txt", "　　Vornhale_Ｒｉｒｅｋｉ．ｃｆｇ　がありません。"},
        {"Vornhale_Rireki.cfg", "　　ｃｏｎｔ_ｎａｍｅ_ｚｌｏ．ｃｆｇ　がありません。"},
        {"cont_name_zlo.cfg", "　　ｄｘｃｃ_ｍａｓ．ｔｘｔ　がありません。"},
    };
    for (const auto& [create, nextTitle] : order) {
        test::writeBytes(s.file(create), "x");
        s.dialogs.shown.clear();
        EXPECT_FALSE(s.start->Main2_bas_1());
        ASSERT_EQ(s.dialogs.shown.size(), 1u);
        EXPECT_EQ(s.dialogs.shown[0].title, nextTitle);
    }
    EXPECT_EQ(s.dialogs.shown[0].text,
              "同梱されているサンプルファイルを\nVornhale．exe と同じフォルダにコピーして下さい。");
    test::writeBytes(s.file("dxcc_mas.txt"), "x");
    s.dialogs.shown.clear();
    EXPECT_TRUE(s.start->Main2_bas_1());
    EXPECT_TRUE(s.dialogs.shown.empty());
}

TEST(ProgramStart, AMasterSwitchedOffIsNotRequired)
{
    Start s;
    s.main();
    s.options.set("name_mas_dir", "使用しない");
    s.options.set("qth_mas_dir", "使用しない");
    for (const char* name : {"Vornhale_Rireki.cfg", "cont_name_zlo.cfg", "dxcc_mas.txt"}) {
        test::writeBytes(s.file(name), "x");
    }
    EXPECT_TRUE(s.start->Main2_bas_1());
}

TEST(ProgramStart, TheFilesOfAConversionAreFoundWithoutRegardToCase)
{
    Start s;
    s.main();
    test::writeBytes(s.file("dxcc_mas.txt"), "x");
    test::writeBytes(s.file("MNG_Vornhale_full.txt"), "x");
    test::writeBytes(s.file("Vornhale.rmk1"), "x");
    EXPECT_FALSE(s.start->file_Chk_con_name());
    ASSERT_EQ(s.dialogs.shown.size(), 1u);
    EXPECT_EQ(s.dialogs.shown[0].title, "　　エラー　：　必要ファイルがありません。");
    EXPECT_EQ(s.dialogs.shown[0].text, "[  Vornhale.rmk2  ]  がありません。\n" +
                                           s.folder.strPath.string() +
                                           "　に ｃｏｐｙ して下さい。\n"
                                           "必要なら所在を［ 環境設定 ］にて変更して下さい。");
    test::writeBytes(s.file("Vornhale.rmk2"), "x");
    EXPECT_TRUE(s.start->file_Chk_con_name());
}

TEST(ProgramStart, MissingZlogDataFilesAreListedInOneDialog)
{
    Start s;
    s.main();
    test::writeBytes(s.file("ARDX.DAT"), "x");
    const auto missing = s.start->get_need_files1();
    EXPECT_EQ(missing, (std::vector<std::string>{"cty.dat", "arrl10.dat"}));
    ASSERT_EQ(s.dialogs.shown.size(), 1u);
    EXPECT_EQ(s.dialogs.shown[0].title, "　　下記の必要なファイルがありません！");
    EXPECT_EQ(
        s.dialogs.shown[0].text.rfind("cty ．dat が有りません。\narrl10 ．dat が有りません。\n", 0),
        0u);
}

TEST(ProgramStart, TheEndDateFollowsTheClockOnlyWithTheSystemDateFlag)
{
    Start s;
    s.main();
    s.options.set("End_date", "20200101");
    s.options.set("use_system_date_flag", "0");
    s.start->start_Get_Date();
    EXPECT_EQ(s.options.value("End_date"), "20200101");
    s.options.set("use_system_date_flag", "1");
    s.start->start_Get_Date();
    EXPECT_EQ(s.options.value("End_date"), "20261123");
}

TEST(ProgramStart, EveryTmpFileDelCountsARunAndAsksForAReportEveryTenth)
{
    Start s;
    s.main();
    fs::create_directories(s.folder.drive_path);
    test::writeBytes(s.folder.drive_path / "zlog_1.txt", "x");
    test::writeBytes(s.folder.drive_path / "keep.txt", "x");
    for (int run = 1; run <= 10; ++run) {
        settings::tmp_file_Del(s.folder, s.trace, s.files.get(), s.dialogs);
    }
    EXPECT_FALSE(fs::exists(s.folder.drive_path / "zlog_1.txt"));
    EXPECT_TRUE(fs::exists(s.folder.drive_path / "keep.txt"));
    EXPECT_EQ(ProfileFile(s.file("Vornhale_new.ini")).read("Main", "exe_rec"), "10");
    ASSERT_EQ(s.dialogs.shown.size(), 1u);
    EXPECT_EQ(s.dialogs.shown[0].text, "たまには使用した感想などのレポート下さいね！");
}

TEST(ProgramStart, TheOrderlyEndStoresTheWorkingCopyAndClearsScratchFiles)
{
    Start s;
    s.main();
    s.options.set("Check06", "1");
    s.options.set("txtRmks1", "TNX QSO");
    test::writeSjisLines(s.file("Vornhale.rmk1"), {"Vornhale.rmk1  for Vornhale.exe  ver 5.44"});
    test::writeSjisLines(s.file("Vornhale.rmk2"), {"Vornhale.rmk2  for Vornhale.exe  ver 5.44"});
    test::writeBytes(s.file("Vornhale.001"), "x");
    fs::create_directories(s.folder.drive_path);
    test::writeBytes(s.folder.drive_path / "dxcc_1.txt", "x");
    s.start->End_Shori();
    EXPECT_EQ(ProfileFile(s.file("Vornhale.ini")).read("Vornhale.ini", "Check06"), "1");
    EXPECT_EQ(ProfileFile(s.file("Vornhale_new.ini")).read("Vornhale_new.ini", "Check06"), "1");
    EXPECT_FALSE(fs::exists(s.file("Vornhale.001")));
    EXPECT_FALSE(fs::exists(s.folder.drive_path / "dxcc_1.txt"));
    EXPECT_EQ(test::readSjisLines(s.file("Vornhale.rmk1")),
              (std::vector<std::string>{"Vornhale.rmk1  for Vornhale.exe  ver 5.44", "TNX QSO"}));
}

TEST(ProgramStart, AnOrderlyEndWithoutTheCommentHistoriesTellsTheOperatorAndStillStores)
{
    Start s;
    s.main();
    s.options.set("Check06", "1");
    s.start->End_Shori();
    ASSERT_EQ(s.dialogs.shown.size(), 1u);
    EXPECT_EQ(s.dialogs.shown[0].text.rfind("Vornhale.rmk1 がありません", 0), 0u);
    EXPECT_EQ(ProfileFile(s.file("Vornhale.ini")).read("Vornhale.ini", "Check06"), "1");
}

TEST(ProgramStart, AProgramFolderWhoseFilesCannotBeWrittenStillStarts)
{
    Start s;
    fs::create_directories(s.file("Vornhale_new.ini"));
    fs::create_directories(s.file("Vornhale_posi.ini"));
    const auto d = s.main();
    EXPECT_TRUE(d.environmentFirst);
    const auto failed = session::traceWriteFailures(*s.files, s.trace);
    EXPECT_FALSE(failed.empty());
}

TEST(ProgramStart, ANewProgramFolderGetsTheSystemPrefixListButKeepsItsOwn)
{
    test::TempDir system;
    test::writeBytes(system / "cty.dat", "system list");
    {
        Start s;
        ::setenv("VORNHALE_CTY_DAT", (system / "cty.dat").c_str(), 1);
        s.main();
        EXPECT_EQ(test::readBytes(s.file("cty.dat")), "system list");
    }
    {
        Start s;
        ::setenv("VORNHALE_CTY_DAT", (system / "cty.dat").c_str(), 1);
        fs::create_directories(s.folder.strPath);
        test::writeBytes(s.file("cty.dat"), "my own list");
        s.main();
        EXPECT_EQ(test::readBytes(s.file("cty.dat")), "my own list");
    }
    ::unsetenv("VORNHALE_CTY_DAT");
}

namespace {

// The sample log to convert, in a program folder that takes the system's prefix list (named
// by the environment until the end of the test); skipped where the system has no list.
struct ProgramStartWithSystemList : ::testing::Test
{
    static constexpr const char* kSystemCty = "/usr/share/hamradio-files/cty.dat";

    void SetUp() override
    {
        if (!fs::is_regular_file(kSystemCty)) {
            GTEST_SKIP() << "Debian's hamradio-files (cty.dat) is not installed";
        }
        ::setenv("VORNHALE_CTY_DAT", kSystemCty, 1);
        fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    }
    void TearDown() override { ::unsetenv("VORNHALE_CTY_DAT"); }

    /// Starts `s` as the window does and opens the log; false where a step did not succeed.
    bool startAndOpen(session::Session& s)
    {
        s.acceptEnvironment();
        const bool filesThere = s.checkRequiredFiles(true);
        s.loadMainWindow();
        return filesThere && s.open(log, "", observer) == readers::OpenResult::Opened;
    }

    test::TempDir dir;
    fs::path log = dir / "T.ALL";
    test::RecordingDialogs dialogs;
    test::RecordingObserver observer;
};

} // namespace

TEST_F(ProgramStartWithSystemList, ASecondConversionOfOneStartSkipsThePreparationOfTheMasters)
{
    auto startAndConvert = [&](session::Session& s) {
        EXPECT_TRUE(startAndOpen(s));
        return s.runConversion(observer);
    };
    auto preparations = [](session::Session& s) {
        const auto lines = test::readSjisLines(s.trace().path());
        return std::count(lines.begin(), lines.end(), "Private sub cmdStart_ardx_sep");
    };

    session::Session first(dir / "home", dialogs);
    ASSERT_EQ(startAndConvert(first).end, session::RunOutcome::End::Done);
    const fs::path shortMaster = first.folder().strPath / "cty_mastS.txt";
    ASSERT_TRUE(fs::exists(shortMaster));
    const std::string results = test::readBytes(dir / "T_hn.csv");
    EXPECT_EQ(preparations(first), 1);

    // The masters are made once a start: the second run works from memory, so the file the
    // first one made is not made again.
    fs::remove(shortMaster);
    EXPECT_EQ(first.runConversion(observer).end, session::RunOutcome::End::Done);
    EXPECT_FALSE(fs::exists(shortMaster));
    EXPECT_EQ(preparations(first), 1);
    EXPECT_EQ(test::readBytes(dir / "T_hn.csv"), results);
    first.end(true);

    // A new start of the program makes them again.
    session::Session second(dir / "home", dialogs);
    ASSERT_EQ(startAndConvert(second).end, session::RunOutcome::End::Done);
    EXPECT_TRUE(fs::exists(shortMaster));
}

// The masters are made beside the conversion's first steps, yet the trace tells them first,
// and a failure of theirs is the run's failure with nothing of those steps in the trace.
TEST_F(ProgramStartWithSystemList,
       TheMastersMadeBesideTheFirstStepsComeFirstInTheTraceAndInAFailure)
{
    auto linesFrom = [](session::Session& s, const std::string& first) {
        const auto lines = test::readSjisLines(s.trace().path());
        const auto start = std::find(lines.rbegin(), lines.rend(), first);
        return std::vector<std::string>(start == lines.rend() ? lines.end() : start.base() - 1,
                                        lines.end());
    };
    auto indexOf = [](const std::vector<std::string>& lines, const std::string& line) {
        return std::find(lines.begin(), lines.end(), line) - lines.begin();
    };

    session::Session s(dir / "home", dialogs);
    ASSERT_TRUE(startAndOpen(s));

    // A working file the masters write cannot be written: a folder stands in its place.
    const fs::path blocked = s.folder().drive_path / "cty_dat0.txt";
    fs::create_directories(blocked);
    const session::RunOutcome failed = s.runConversion(observer);
    EXPECT_EQ(failed.end, session::RunOutcome::End::Failed);
    EXPECT_EQ(failed.failureNumber, 75);
    const auto failedRun = linesFrom(s, "Private sub cmdStart_Click()");
    ASSERT_FALSE(failedRun.empty());
    EXPECT_LT(indexOf(failedRun, "Private sub cmdStart_cty_dat_sep"),
              static_cast<long>(failedRun.size()));
    // The steps beside the masters left no line; the failure follows the masters' own.
    EXPECT_EQ(indexOf(failedRun, "Public Sub tmp_file_Del()"), static_cast<long>(failedRun.size()));
    EXPECT_EQ(indexOf(failedRun, "Private sub cmd_henkan()"), static_cast<long>(failedRun.size()));
    EXPECT_FALSE(fs::exists(dir / "T_hn.csv"));

    // The next run of the same start makes the masters again, and their lines come before
    // those of the steps made beside them.
    fs::remove(blocked);
    ASSERT_EQ(s.runConversion(observer).end, session::RunOutcome::End::Done);
    const auto run = linesFrom(s, "Private sub cmdStart_Click()");
    const auto ardx = indexOf(run, "Private sub cmdStart_ardx_sep");
    const auto cleanup = indexOf(run, "Public Sub tmp_file_Del()");
    const auto reader = indexOf(run, "Private sub cmd_henkan()");
    EXPECT_LT(ardx, cleanup);
    EXPECT_LT(cleanup, reader);
    EXPECT_LT(reader, static_cast<long>(run.size()));
    EXPECT_TRUE(fs::exists(dir / "T_hn.csv"));
    s.end(true);
}
