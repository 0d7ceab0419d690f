#include "settings/ProfileFile.h"
#include "settings/SettingsFiles.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
using settings::Options;
using settings::ProfileFile;
using settings::SettingsFiles;
namespace fs = std::filesystem;

namespace {

struct Folder
{
    test::TempDir dir;
    Options options;
    SettingsFiles files{dir.path(), options};
};

} // namespace

TEST(SettingsFiles, WidthsListsAreNormalisedInOnePass)
{
    EXPECT_EQ(SettingsFiles::normaliseWidths("6,,0,"), "6,0,0,");
    EXPECT_EQ(SettingsFiles::normaliseWidths(",4,"), "0,4,");
    // A longer run of commas keeps every second gap open.
    EXPECT_EQ(SettingsFiles::normaliseWidths(",,,0,"), "0,0,,0,");
    EXPECT_EQ(SettingsFiles::normaliseWidths("1,,,,2"), "1,0,,0,2");
    EXPECT_EQ(SettingsFiles::normaliseWidths(""), "");
}

TEST(SettingsFiles, AWidthsListThatBeginsWithTwoCommasKeepsAGapUntilTheNextWrite)
{
    Folder f;
    test::writeBytes(f.dir / "Vornhale_new.ini",
                     "[Vornhale_new.ini]\r\nRmks1_cfg_len=,,,5,0,0,0,0,0,0,0,0,\r\n");
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("Rmks1_cfg_len"), "0,0,,5,0,0,0,0,0,0,0,0,");
    f.files.ini_write_new();
    EXPECT_EQ(f.options.value("Rmks1_cfg_len"), "0,0,0,5,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(ProfileFile(f.dir / "Vornhale_new.ini").read("Vornhale_new.ini", "Rmks1_cfg_len"),
              "0,0,0,5,0,0,0,0,0,0,0,0,");
}

TEST(SettingsFiles, AMissingFileReadsAsAllEmptyKeys)
{
    Folder f;
    f.options.set("Check06", "1");
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("Check06"), "");
    EXPECT_FALSE(f.files.restartMarker());
    EXPECT_EQ(f.files.lastVersion(), "");
    EXPECT_FALSE(fs::exists(f.dir / "Vornhale_new.ini"));
}

TEST(SettingsFiles, TheRestartMarkerIsSetOnlyByTheExactWord)
{
    Folder f;
    test::writeBytes(f.dir / "Vornhale_new.ini", "[Vornhale_new.ini]\r\nrestart=Restart\r\n");
    f.files.ini_read_new();
    EXPECT_FALSE(f.files.restartMarker());
    f.files.ini_write_new();
    f.files.ini_read_new();
    EXPECT_TRUE(f.files.restartMarker());
    EXPECT_EQ(f.files.lastVersion(), "5.44");
}

TEST(SettingsFiles, TheSearchLabelIsWrittenToItsSectionButReadFromTheOptionSection)
{
    Folder f;
    f.options.set("mng_search_url", "Dalmuir");
    f.files.ini_write_new();
    EXPECT_EQ(ProfileFile(f.dir / "Vornhale_new.ini").read("sSetKnName", "mng_search_url"),
              "Dalmuir");
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("mng_search_url"), "");
}

TEST(SettingsFiles, GridTicksAreReadUnderNamesThatNoWriterProduces)
{
    Folder f;
    f.options.set("Grid1_Check1", "1");
    f.options.set("get_ColWidth_Grid1", "1,2,3");
    f.files.ini_write_new();
    EXPECT_EQ(ProfileFile(f.dir / "Vornhale_new.ini").read("ColWidth_Grid", "Grid1_Check1"), "1");
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("Grid1_Check1"), "");
    EXPECT_EQ(f.options.value("get_ColWidth_Grid1"), "1,2,3");
}

TEST(SettingsFiles, TheModeTableIsReadFromTheEnvironmentSection)
{
    Folder f;
    f.options.set("mode_1_0_txt", "PSK31");
    f.options.set("mode_1_chk", "1");
    f.files.ini_write_new();
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("mode_1_0_txt"), "");

    // A file that carries the keys in the environment section gives them back.
    test::writeBytes(f.dir / "Vornhale_cfg.ini", "[Vornhale_cfg.ini]\r\nversion=5.44\r\n");
    f.files.ini_read_cfg();
    test::writeBytes(
        f.dir / "Vornhale_new.ini",
        "[Vornhale_new.ini]\r\nmode_1_0_txt=A\r\n[Vornhale_cfg.ini]\r\nmode_1_0_txt=RTTY\r\n");
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("mode_1_0_txt"), "RTTY");
}

TEST(SettingsFiles, KeysWrittenInOneCaseAreReadInAnother)
{
    Folder f;
    f.options.set("No_qsl_cty", "VK9X");
    f.options.set("Zone_moji", "Z=");
    f.options.set("End_date", "20260101");
    f.files.ini_write_new();
    const std::string bytes = test::readBytes(f.dir / "Vornhale_new.ini");
    EXPECT_NE(bytes.find("No_qsl_cty=VK9X\r\n"), std::string::npos);
    Options fresh;
    SettingsFiles reader(f.dir.path(), fresh);
    reader.ini_read_new();
    EXPECT_EQ(fresh.value("no_qsl_cty"), "VK9X");
    EXPECT_EQ(fresh.value("End_Date"), "20260101");
    EXPECT_EQ(fresh.value("zone_moji"), "Z=");
}

TEST(SettingsFiles, ABlankMarkIsStoredAsAnEmptyValue)
{
    Folder f;
    f.options.set("QSL_S", " ");
    f.files.ini_write_new();
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("QSL_S"), "");
}

TEST(SettingsFiles, ALongLayoutComesBackCutAfter127Bytes)
{
    Folder f;
    std::string layout;
    while (layout.size() < 200) {
        layout += "MNG,$DX,";
    }
    f.options.set("Rmks1_cfg", layout);
    f.files.ini_write_new();
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("Rmks1_cfg"), layout.substr(0, 127));
}

TEST(SettingsFiles, SmallIntegersReadAsNumbers)
{
    Folder f;
    test::writeBytes(f.dir / "Vornhale_new.ini",
                     "[Vornhale_new.ini]\r\nuse_system_date_flag=abc\r\ndisp_top_SSTab=2\r\n");
    f.files.ini_read_new();
    EXPECT_EQ(f.options.value("use_system_date_flag"), "0");
    EXPECT_EQ(f.options.value("disp_top_SSTab"), "2");
}

TEST(SettingsFiles, GarbageAndOtherEncodingsNeverStopARead)
{
    Folder f;
    std::string garbage =
        std::string(1, '\0') + "\xff\xfe[Vornhale_new.ini\r\n=\r\n==\r\nCheck06=1\r\n\x81\r\n";
    garbage += std::string(100000, '\x82');
    test::writeBytes(f.dir / "Vornhale_new.ini", garbage);
    f.files.ini_read_new();
    f.files.ini_write_new();
    f.files.ini_read_new();
    EXPECT_TRUE(f.files.restartMarker());
}

TEST(SettingsFiles, AFailedWriteIsRecordedAndNothingThrows)
{
    Folder f;
    fs::create_directory(f.dir / "Vornhale_new.ini");
    f.files.ini_write_new();
    f.files.ini_write_old();
    const auto failed = f.files.takeWriteFailures();
    ASSERT_EQ(failed.size(), 1u);
    EXPECT_EQ(failed[0], f.dir / "Vornhale_new.ini");
    EXPECT_TRUE(f.files.takeWriteFailures().empty());
    EXPECT_TRUE(fs::exists(f.dir / "Vornhale.ini"));
}

TEST(SettingsFiles, EachEntryPointSelectsItsFileAndSections)
{
    Folder f;
    f.files.ini_write_old();
    EXPECT_EQ(f.files.currentFile(), "Vornhale.ini");
    EXPECT_EQ(f.files.currentOptionSection(), "Vornhale.ini");
    f.files.ini_read_cfg(); // no file: only the file is selected
    EXPECT_EQ(f.files.currentFile(), "Vornhale_cfg.ini");
    EXPECT_EQ(f.files.currentOptionSection(), "Vornhale.ini");
    f.files.ini_write_zone_moji();
    EXPECT_EQ(f.files.currentEnvironmentSection(), "Vornhale_Zone_moji.ini");
    f.files.ini_write_cfg();
    EXPECT_EQ(f.files.currentEnvironmentSection(), "Vornhale_cfg.ini");
    // The inner write goes to whichever file was selected last.
    f.files.writeOptionKeys();
    EXPECT_EQ(ProfileFile(f.dir / "Vornhale_cfg.ini").read("Vornhale.ini", "restart"), "restart");
}

TEST(SettingsFiles, TheEnvironmentReadSetsTheLookupSwitchesAndSkipsTheSearchLabel)
{
    Folder f;
    test::writeSjisLines(f.dir / "Vornhale_cfg.ini",
                         {"[Vornhale_cfg.ini]", "version=5.40", "name_mas_dir=使用しない",
                          "qth_mas_dir=/x/", "mng_search_url=Other", "inet_flag=OK"});
    f.options.set("mng_search_url", "Dalmuir");
    f.files.ini_read_cfg();
    EXPECT_FALSE(f.files.nameLookupOn());
    EXPECT_TRUE(f.files.qthLookupOn());
    EXPECT_EQ(f.options.value("mng_search_url"), "Dalmuir");
    EXPECT_EQ(f.options.value("inet_flag"), "OK");
    EXPECT_EQ(f.files.lastVersion(), "5.40");
}

TEST(SettingsFiles, TheEnvironmentDefaultsFindZlogAndHamlogUnderTheDriveRoot)
{
    Folder f;
    test::TempDir root;
    f.files.setDriveRoot(root.path());
    f.files.make_Vornhale_cfg_ini();
    // No zLog: the data files of the program's own folder.
    EXPECT_EQ(f.options.value("zlog_dat_dir"), (f.dir / "").string());
    EXPECT_EQ(f.options.value("hamlog_hdb_dir"), "");
    EXPECT_EQ(f.options.value("name_mas_dir"), "");

    fs::create_directories(root / "zLog");
    fs::create_directories(root / "Program Files" / "zLog");
    fs::create_directories(root / "Program Files" / "Hamlog");
    test::writeBytes(root / "zLog" / "acag.dat", "x");
    test::writeBytes(root / "Program Files" / "zLog" / "acag.dat", "x");
    test::writeBytes(root / "Program Files" / "Hamlog" / "Hamlog.hdb", "x");
    test::writeBytes(f.dir / "name_mas.txt", "x");
    f.files.make_Vornhale_cfg_ini();
    EXPECT_EQ(f.options.value("zlog_dat_dir"), (root / "zLog" / "").string());
    EXPECT_EQ(f.options.value("Prov_mas_dat_dir"), (root / "zLog" / "").string());
    EXPECT_EQ(f.options.value("hamlog_hdb_dir"),
              (root / "Program Files" / "Hamlog" / "Hamlog.hdb").string());
    EXPECT_EQ(f.options.value("hamlog_hdb_2_dir"), f.options.value("hamlog_hdb_dir"));
    EXPECT_EQ(f.options.value("name_mas_dir"), (f.dir / "").string());
    EXPECT_EQ(f.options.value("log_dir"), "使用しない");
    EXPECT_EQ(f.options.value("No_QSL_moji"), "_");
}

TEST(SettingsFiles, EveryStoredKeyBelongsToOneFile)
{
    EXPECT_EQ(SettingsFiles::fileOfKey("check06"), "Vornhale_new.ini");
    EXPECT_EQ(SettingsFiles::fileOfKey("exe_rec"), "Vornhale_new.ini");
    EXPECT_EQ(SettingsFiles::fileOfKey("mode_10_chk"), "Vornhale_new.ini");
    EXPECT_EQ(SettingsFiles::fileOfKey("inet_flag"), "Vornhale_cfg.ini");
    EXPECT_EQ(SettingsFiles::fileOfKey("mng_z_full_txt_dir_FileDateTime"), "Vornhale_fdt.ini");
    EXPECT_EQ(SettingsFiles::fileOfKey("Zone_moji_save"), "Vornhale_Zone_moji.ini");
    EXPECT_EQ(SettingsFiles::fileOfKey("Check13"), "");
    EXPECT_EQ(SettingsFiles::fileOfKey("txtOp_name"), "");
    EXPECT_EQ(SettingsFiles::fileOfKey("restart"), "");
}
