#include "settings/ConfigModel.h"
#include "settings/ProfileFile.h"
#include "settings/SettingsFiles.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
using namespace vornhale::settings;
using base::Colour;
namespace fs = std::filesystem;

namespace {

/// A program folder whose environment file either exists with valid paths or is missing.
class EnvironmentDialog : public ::testing::Test
{
protected:
    test::TempDir dir;
    Options options;
    SettingsFiles files{dir.path(), options};

    EnvironmentDialog()
    {
        // Keep the defaults from finding a zLog or HAMLOG folder on this machine.
        files.setDriveRoot(dir / "root");
        fs::create_directories(dir / "root");
    }

    std::string folder() const { return (dir.path() / "").string(); }

    /// Valid paths for every row, written to `Vornhale_cfg.ini`.
    void validEnvironment()
    {
        test::writeBytes(dir / "MNG_Vornhale_full.txt", "x\r\n");
        test::writeBytes(dir / "Hamlog.hdb", "x");
        fs::create_directories(dir / "rtcl");
        options.set("zlog_dat_dir", folder());
        options.set("Prov_mas_dat_dir", folder());
        options.set("name_mas_dir", folder());
        options.set("qth_mas_dir", folder());
        options.set("mng_z_full_txt_dir", (dir / "MNG_Vornhale_full.txt").string());
        options.set("hamlog_hdb_dir", (dir / "Hamlog.hdb").string());
        options.set("hamlog_hdb_2_dir", (dir / "Hamlog.hdb").string());
        options.set("zlo_dir", folder());
        options.set("all_dir", folder());
        options.set("log_dir", (dir / "rtcl" / "").string());
        options.set("No_QSL_moji_set_flag", "1");
        options.set("No_QSL_moji", "_");
        files.ini_write_cfg();
    }

    std::size_t rowIndex(std::string_view box) const
    {
        return static_cast<std::size_t>(ConfigModel::rowOf(box) - ConfigModel::rows().data());
    }

    std::string cfgIni(std::string_view key) const
    {
        return ProfileFile(dir / "Vornhale_cfg.ini").read("Vornhale_cfg.ini", key);
    }
};

} // namespace

TEST_F(EnvironmentDialog, HasTenRowsInTheOrderItTestsThem)
{
    const auto rows = ConfigModel::rows();
    ASSERT_EQ(rows.size(), 10u);
    EXPECT_EQ(rows[0].textBox, "txtZlog_dat");
    EXPECT_EQ(rows[4].key, "mng_z_full_txt_dir");
    EXPECT_EQ(rows[9].button, "cmdGetLogDir");
    EXPECT_EQ(rows[5].filter, "Hamlog の *.hdb ﾌｧｲﾙ　常用( *.hdb )|*.hdb");
}

TEST_F(EnvironmentDialog, AFirstStartWithoutZlogAndHamlogKeepsTheSaveRefusedUntilTheRowsAreFilled)
{
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();

    EXPECT_EQ(model.caption(), "［ 環境設定 ］ Vornhale_ｃｆｇ.ini を新規作成します。");
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(model.labelColour(i), Colour::Red) << i;
    }
    EXPECT_TRUE(model.invalid(rowIndex("txtHamlog_hdb")));
    EXPECT_TRUE(model.invalid(rowIndex("txtHamlog_hdb_2")));
    EXPECT_FALSE(model.enabled("cmdSave"));
    EXPECT_FALSE(model.enabled("cmdOK"));
    EXPECT_EQ(model.lblMsg(), "作成必要");

    // The history database and the masters are given, the RTCL folder declared not used.
    test::writeBytes(dir / "Hamlog.hdb", "x");
    test::writeBytes(dir / "MNG_Vornhale_full.txt", "x");
    model.editText("txtHamlog_hdb", (dir / "Hamlog.hdb").string());
    EXPECT_EQ(model.labelColour(rowIndex("txtHamlog_hdb")), Colour::Black);
    EXPECT_FALSE(model.enabled("cmdSave"));
    model.editText("txtHamlog_hdb_2", (dir / "Hamlog.hdb").string());
    model.editText("txtMng_z_full_txt", (dir / "MNG_Vornhale_full.txt").string());
    if (model.invalid(rowIndex("txtName_mas"))) {
        model.clickTick("chkNo_name");
    }
    if (model.invalid(rowIndex("txtQth_mas"))) {
        model.clickTick("chkNo_qth");
    }
    if (model.invalid(rowIndex("txtLogDir"))) {
        model.clickTick("chkNo_rtcl");
    }
    EXPECT_TRUE(model.enabled("cmdSave"));
    EXPECT_EQ(model.lblMsg(), "作成可能");
    EXPECT_EQ(model.lblMsg2(), "「保存」を押して下さい。　「ＯＫ」でメイン画面に戻ります。");
    EXPECT_FALSE(fs::exists(dir / "Vornhale_cfg.ini"));

    model.cmdSave();
    EXPECT_TRUE(fs::exists(dir / "Vornhale_cfg.ini"));
    EXPECT_EQ(cfgIni("hamlog_hdb_dir"), (dir / "Hamlog.hdb").string());
    EXPECT_EQ(model.lblMsg(), "保存完了");
    EXPECT_EQ(model.lblMsg2(), "「ＯＫ」でメイン画面に戻ります。");
    EXPECT_TRUE(model.enabled("cmdOK"));
}

TEST_F(EnvironmentDialog, AnExistingFileIsEditedAndValidRowsShowBlack)
{
    validEnvironment();
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    EXPECT_EQ(model.caption(), "［ 環境設定 ］ Vornhale_ｃfg．ｉｎｉ を編集・作成します。");
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(model.labelColour(i), Colour::Black) << i;
    }
    EXPECT_TRUE(model.enabled("cmdSave"));
    EXPECT_EQ(model.lblMsg1(), "フォルダ　の場合には　グループのどれか一");

    model.editText("txtZlog_dat", "  ");
    EXPECT_EQ(model.labelColour(0), Colour::Red);
    EXPECT_FALSE(model.enabled("cmdSave"));
    EXPECT_FALSE(model.enabled("cmdOK"));
    EXPECT_EQ(model.lblMsg(), "空白あり");
    EXPECT_EQ(model.lblMsgColour(), Colour::Red);
    EXPECT_EQ(model.lblMsg2(), "空白項目がある場合には保存出来ません！");
}

TEST_F(EnvironmentDialog, RefusesAHamlogFileNamedWithoutItsFolderEvenWhenItExistsHere)
{
    validEnvironment();
    const fs::path before = fs::current_path();
    fs::current_path(dir.path());
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    model.editText("txtHamlog_hdb", "Hamlog.hdb");
    const bool invalid = model.invalid(rowIndex("txtHamlog_hdb"));
    fs::current_path(before);
    EXPECT_TRUE(fs::exists(dir / "Hamlog.hdb"));
    EXPECT_TRUE(invalid);
    EXPECT_FALSE(model.enabled("cmdSave"));
}

TEST_F(EnvironmentDialog, TickingNotUsedAndUntickingItRestoresTheEarlierText)
{
    validEnvironment();
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    model.editText("txtName_mas", "/data/names/");
    model.clickTick("chkNo_name");
    EXPECT_EQ(model.text("txtName_mas"), "使用しない");
    EXPECT_TRUE(model.greyed("txtName_mas"));
    EXPECT_FALSE(model.enabled("cmdName_mas"));
    EXPECT_FALSE(model.nameLookup());

    model.clickTick("chkNo_name");
    EXPECT_EQ(model.text("txtName_mas"), "/data/names/");
    EXPECT_FALSE(model.greyed("txtName_mas"));
    EXPECT_TRUE(model.enabled("cmdName_mas"));
    EXPECT_TRUE(model.nameLookup());
}

TEST_F(EnvironmentDialog, AFolderStoredAsNotUsedTicksItsBoxAtLoad)
{
    validEnvironment();
    options.set("qth_mas_dir", "使用しない");
    options.set("log_dir", "使用しない");
    files.ini_write_cfg();
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    EXPECT_TRUE(model.tick("chkNo_qth"));
    EXPECT_TRUE(model.tick("chkNo_rtcl"));
    EXPECT_FALSE(model.qthLookup());
    EXPECT_FALSE(model.rtclLookup());
    EXPECT_FALSE(model.invalid(rowIndex("txtLogDir")));
    // Unticked, the box is empty: the remembered text was the mark itself.
    model.clickTick("chkNo_qth");
    EXPECT_EQ(model.text("txtQth_mas"), "");
    EXPECT_TRUE(model.invalid(rowIndex("txtQth_mas")));
}

TEST_F(EnvironmentDialog, TheRtclFolderMustExistUnlessItIsDeclaredNotUsed)
{
    validEnvironment();
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    model.editText("txtLogDir", (dir / "nowhere" / "").string());
    EXPECT_TRUE(model.invalid(rowIndex("txtLogDir")));
    model.clickTick("chkNo_rtcl");
    EXPECT_FALSE(model.invalid(rowIndex("txtLogDir")));
    EXPECT_TRUE(model.enabled("cmdSave"));
}

TEST_F(EnvironmentDialog, TheMarkKeepsOneCharacterAndAnEmptyMarkIsStoredEmptyAfterTheTrim)
{
    validEnvironment();
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    model.editText("Text1", "NN");
    model.cmdSave();
    EXPECT_EQ(options.value("No_QSL_moji"), "N");
    EXPECT_EQ(cfgIni("No_QSL_moji"), "N");

    model.editText("Text1", "");
    model.cmdSave();
    EXPECT_EQ(options.value("No_QSL_moji"), " ");
    EXPECT_EQ(cfgIni("No_QSL_moji"), "");
    EXPECT_EQ(cfgIni("No_QSL_moji_set_flag"), "1");
}

TEST_F(EnvironmentDialog, LoadSetsTheDefaultsOfTheMarksAndTheInternetTick)
{
    validEnvironment();
    options.set("inet_flag", "");
    options.set("buro_QSL_moji", "");
    options.set("DXCC_mas_txt_55_use", "No");
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    EXPECT_EQ(options.value("inet_flag"), "NO");
    EXPECT_FALSE(model.tick("Chk_inet"));
    EXPECT_EQ(model.text("Text2"), "N");
    // "No" shows the box ticked, as "Yes" does.
    EXPECT_TRUE(model.tick("Check1"));

    model.clickTick("Chk_inet");
    model.clickTick("Check1");
    model.cmdSave();
    EXPECT_EQ(cfgIni("inet_flag"), "OK");
    EXPECT_EQ(cfgIni("DXCC_mas_txt_55_use"), "No");
}

TEST_F(EnvironmentDialog, AnEmptyAnswerOfTheFiftyFifthColumnShowsTheBoxOff)
{
    validEnvironment();
    options.set("DXCC_mas_txt_55_use", "");
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    EXPECT_FALSE(model.tick("Check1"));
    model.cmdSave();
    EXPECT_EQ(cfgIni("DXCC_mas_txt_55_use"), "No");
}

TEST_F(EnvironmentDialog, AMarkWithoutItsFlagBecomesN)
{
    validEnvironment();
    options.set("No_QSL_moji_set_flag", "0");
    options.set("No_QSL_moji", "_");
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    EXPECT_EQ(model.text("Text1"), "N");
}

TEST_F(EnvironmentDialog, AnUpgradeDropsTheOldFileOnlyWhenSaved)
{
    validEnvironment();
    options.set("old_key_of_before", "x");
    ProfileFile old(dir / "Vornhale_cfg.ini");
    old.write("Vornhale_cfg.ini", "old_key_of_before", "x");
    ASSERT_TRUE(old.save());
    {
        // Left through the forced end: nothing is deleted.
        ConfigModel model(files, nullptr, true);
        model.Form_Load_frmConfig();
        EXPECT_TRUE(model.upgradePending());
    }
    EXPECT_EQ(cfgIni("old_key_of_before"), "x");

    ConfigModel model(files, nullptr, true);
    model.Form_Load_frmConfig();
    model.cmdSave();
    EXPECT_FALSE(model.upgradePending());
    EXPECT_EQ(cfgIni("old_key_of_before"), "");
    EXPECT_EQ(cfgIni("zlog_dat_dir"), folder());
}

TEST_F(EnvironmentDialog, BrowsingAFolderRowKeepsTheFolderOfTheChosenFile)
{
    validEnvironment();
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    model.browseChosen("cmdGetAllDir", "/logs/2024/contest.all");
    EXPECT_EQ(model.text("txtAllDir"), "/logs/2024/");
    model.browseChosen("cmdHamlog_hdb", (dir / "Hamlog.hdb").string());
    EXPECT_EQ(model.text("txtHamlog_hdb"), (dir / "Hamlog.hdb").string());
    model.browseChosen("cmdGetAllDir", "");
    EXPECT_EQ(model.text("txtAllDir"), "/logs/2024/");
}

TEST_F(EnvironmentDialog, NothingReachesTheFileBeforeTheSave)
{
    validEnvironment();
    ConfigModel model(files, nullptr, false);
    model.Form_Load_frmConfig();
    model.editText("txtAllDir", "/elsewhere/");
    model.cmdOK();
    EXPECT_EQ(model.lblMsg2(), "　　　メイン画面に戻ります．．．．．．");
    EXPECT_EQ(cfgIni("all_dir"), folder());
    EXPECT_EQ(options.value("all_dir"), folder());
}
