#include "session/OptionModel.h"
#include "settings/ProfileFile.h"
#include "settings/SettingsFiles.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

using namespace vornhale;
using namespace vornhale::settings;
using namespace vornhale::session;
using base::Colour;

namespace {

struct RecordingLayout : LayoutHooks
{
    void Disp_Rmks_cfg_bas() override { calls.push_back("Disp_Rmks_cfg_bas"); }
    void Set_Rmks_Len() override { calls.push_back("Set_Rmks_Len"); }
    void refreshCellColours() override { calls.push_back("refresh"); }
    void markCellRed(int row, int index) override
    {
        calls.push_back("red " + std::to_string(row) + "," + std::to_string(index));
    }
    bool rowSorted(int row) const override { return row == 1 ? sorted1 : false; }
    std::vector<std::string> calls;
    bool sorted1 = false;
};

/// A program folder with its settings, and the main window's model over them.
class OptionModelTest : public ::testing::Test
{
protected:
    test::TempDir dir;
    Options options = Options::defaults();
    SettingsFiles files{dir.path(), options};
    OptionFacts facts;
    RecordingLayout layout;
    test::RecordingDialogs dialogs;
    std::unique_ptr<OptionModel> model;

    OptionModelTest()
    {
        std::filesystem::create_directories(dir / "Work");
        std::filesystem::create_directories(dir / "Prov");
        facts.strPath = dir.path();
        facts.drive_path = dir / "Work";
        facts.today = "20240503";
        facts.historyFileName = "Hamlog.hdb";
        facts.historyFileExists = true;
        facts.dialogs = &dialogs;
        options.set("No_QSL_moji_set_flag", "1");
        options.set("name_mas_dir", (dir.path() / "").string());
    }

    /// Writes the settings as they stand in memory, changed by `set`, to the files.
    void seed(std::initializer_list<std::pair<const char*, const char*>> set = {})
    {
        for (const auto& [k, v] : set) {
            options.set(k, v);
        }
        files.ini_write_new();
        files.ini_write_cfg();
    }

    OptionModel& make()
    {
        model = std::make_unique<OptionModel>(options, &files, facts, &layout);
        return *model;
    }

    OptionModel& load(std::initializer_list<std::pair<const char*, const char*>> set = {})
    {
        seed(set);
        make().Form_Load();
        model->clearFileCalls();
        return *model;
    }

    std::string newIni(std::string_view key) const
    {
        return ProfileFile(dir / "Vornhale_new.ini").read("Vornhale_new.ini", key);
    }
    std::string oldIni(std::string_view key) const
    {
        return ProfileFile(dir / "Vornhale.ini").read("Vornhale.ini", key);
    }
    std::string cfgIni(std::string_view key) const
    {
        return ProfileFile(dir / "Vornhale_cfg.ini").read("Vornhale_cfg.ini", key);
    }
    const std::vector<std::string>& calls() const { return model->fileCalls(); }
    void withInput(const std::string& name, const std::string& type)
    {
        test::writeBytes(dir / name, "x\r\n");
        facts.in_name = (dir / name).string();
        facts.f_type = type;
    }
};

using Calls = std::vector<std::string>;

} // namespace

// ---- Load order ------------------------------------------------------------------------------

TEST_F(OptionModelTest, FirstLoadReadsTheNewAndEnvironmentFilesAndEndsWritingTheWorkingCopy)
{
    seed();
    make().Form_Load();
    const Calls c = calls();
    ASSERT_GE(c.size(), 3u);
    EXPECT_EQ(c[0], "ini_read_new");
    EXPECT_EQ(c[1], "ini_read_cfg");
    EXPECT_EQ(std::count(c.begin(), c.end(), "ini_read_old"), 0);
    EXPECT_EQ(c.back(), "ini_write_old");
    EXPECT_TRUE(model->loadedOnce());
    EXPECT_TRUE(std::filesystem::exists(dir / "Vornhale.ini"));
}

TEST_F(OptionModelTest, ALaterLoadReadsTheWorkingCopyInstead)
{
    load();
    options.set("Check06", "1");
    files.ini_write_old();
    options.set("Check06", "0");
    model->Form_Load();
    const Calls c = calls();
    EXPECT_EQ(c[0], "ini_read_old");
    EXPECT_EQ(std::count(c.begin(), c.end(), "ini_read_new"), 0);
    EXPECT_TRUE(model->tick("Check06"));
    EXPECT_EQ(model->colour("Check06"), Colour::Blue);
}

TEST_F(OptionModelTest, AnEmptyOrZeroNoQslFlagIsRepairedAndTheEnvironmentWritten)
{
    for (const char* flag : {"0", ""}) {
        test::TempDir other;
        Options o = Options::defaults();
        SettingsFiles f(other.path(), o);
        o.set("No_QSL_moji", "X");
        o.set("No_QSL_moji_set_flag", flag);
        f.ini_write_cfg();
        OptionModel m(o, &f, facts);
        m.Form_Load();
        EXPECT_EQ(m.fileCalls().front(), "ini_write_cfg") << flag;
        EXPECT_EQ(ProfileFile(other / "Vornhale_cfg.ini").read("Vornhale_cfg.ini", "No_QSL_moji"),
                  "N");
        EXPECT_EQ(ProfileFile(other / "Vornhale_cfg.ini")
                      .read("Vornhale_cfg.ini", "No_QSL_moji_set_flag"),
                  "1");
    }
}

TEST_F(OptionModelTest, AFlagOfTwoIsLeftAlone)
{
    options.set("No_QSL_moji_set_flag", "2");
    seed();
    make().Form_Load();
    EXPECT_EQ(std::count(calls().begin(), calls().end(), "ini_write_cfg"), 0);
    EXPECT_EQ(options.value("No_QSL_moji_set_flag"), "2");
}

TEST_F(OptionModelTest, AnEmptyBandTickKeyShowsTheTickOnInBlack)
{
    auto& m = load({{"Check16", ""}});
    EXPECT_TRUE(m.tick("Check16"));
    EXPECT_EQ(m.colour("Check16"), Colour::Black);
    EXPECT_EQ(options.value("Check16"), "1");
    EXPECT_EQ(oldIni("Check16"), "1");
}

TEST_F(OptionModelTest, BandTickFromItsKey)
{
    EXPECT_FALSE(load({{"Check16", "0"}}).tick("Check16"));
    EXPECT_EQ(model->colour("Check16"), Colour::Black);
    load({{"Check16", "1"}});
    EXPECT_TRUE(model->tick("Check16"));
    EXPECT_EQ(model->colour("Check16"), Colour::Blue);
}

TEST_F(OptionModelTest, ConversionToJstStaysOnAlthoughDisabledWhenTheLogIsInJst)
{
    auto& m = load({{"Option2", "1"}, {"Option05", "3"}});
    EXPECT_TRUE(m.tick("Option2(1)"));
    EXPECT_EQ(m.member("Option05"), 3);
    EXPECT_TRUE(m.tick("Option05(3)"));
    EXPECT_FALSE(m.enabled("Option05(3)"));
    EXPECT_FALSE(m.enabled("Option05(1)"));
    EXPECT_TRUE(m.enabled("Option05(2)"));
    EXPECT_EQ(m.colour("Option05(3)"), Colour::Blue);
    EXPECT_EQ(m.colour("Option05(0)"), Colour::Black);
    EXPECT_EQ(options.value("Option05"), "3");
}

TEST_F(OptionModelTest, WithoutWebAccessAStoredWebTickReadsOffAndIsWrittenBackAsZero)
{
    auto& m = load({{"inet_flag", "NO"}, {"Check18", "1"}});
    EXPECT_FALSE(m.tick("Check18"));
    EXPECT_FALSE(m.enabled("Check18"));
    EXPECT_EQ(m.colour("Check18"), Colour::Black);
    EXPECT_FALSE(m.enabled("mnuGet_MNG"));
    EXPECT_FALSE(m.enabled("mnuDownload"));
    EXPECT_EQ(options.value("Check18"), "0");
    m.clickButton("makeIni");
    EXPECT_EQ(newIni("Check18"), "0");
}

TEST_F(OptionModelTest, WithWebAccessTheWebControlsAreEnabledAndTheSearchIsSetUp)
{
    int setups = 0;
    facts.Form_Load_GetMng = [&] { ++setups; };
    auto& m = load({{"inet_flag", "OK"}, {"Check18", "1"}});
    EXPECT_TRUE(m.tick("Check18"));
    EXPECT_TRUE(m.enabled("Check18"));
    EXPECT_TRUE(m.enabled("mnuGet_MNG"));
    EXPECT_TRUE(m.enabled("mnuDownload"));
    EXPECT_EQ(setups, 1);
}

TEST_F(OptionModelTest, DatesIntervalAndTitleAreSetAtLoad)
{
    auto& m = load({{"Start_date", ""}, {"End_date", ""}, {"GetMng_Interval", ""}});
    EXPECT_EQ(options.value("Start_date"), "19600101");
    EXPECT_EQ(options.value("End_date"), "2024/05/03");
    EXPECT_EQ(m.text("Combo1"), "2");
    EXPECT_EQ(options.value("GetMng_Interval"), "2");
    EXPECT_EQ(m.control("cmdDate").toolTip, "Start Date : 19600101 ，End Date : 2024/05/03");
    const std::string period = "1960 年 01 月 01 日　～  2024 年 05 月 03 日";
    EXPECT_EQ(m.caption("periodText"), period);
    EXPECT_EQ(m.windowTitle(), "  Vornhale  5.44" + period + "     @Tolmer");
    EXPECT_EQ(oldIni("End_date"), "2024/05/03");
}

TEST_F(OptionModelTest, HyphensInTheEndDateBecomeSlashes)
{
    load({{"End_date", "2023-12-31"}, {"GetMng_Interval", "7"}});
    EXPECT_EQ(options.value("End_date"), "2023/12/31");
    EXPECT_EQ(model->text("Combo1"), "7");
}

TEST_F(OptionModelTest, NameMasterCountGivesTheFrameCaption)
{
    load();
    EXPECT_EQ(model->caption("Frame10"), "");
    test::writeBytes(dir / "name_mas.txt", "");
    load();
    EXPECT_EQ(model->caption("Frame10"), "name_mas ．txt のみ");
    test::writeBytes(dir / "name_mas1.txt", "");
    test::writeBytes(dir / "name_mas4.txt", "");
    load();
    EXPECT_EQ(model->caption("Frame10"), "name_mas 2 ．txt　まであり");
}

TEST_F(OptionModelTest, NameLookupSwitchedOffDisablesItsControls)
{
    auto& m = load({{"name_mas_dir", "使用しない"}});
    EXPECT_FALSE(m.enabled("Frame10"));
    EXPECT_FALSE(m.enabled("Check15"));
    EXPECT_FALSE(m.enabled("cmdCount"));
    load({{"name_mas_dir", (dir.path() / "").string().c_str()}});
    EXPECT_TRUE(model->enabled("Check15"));
}

TEST_F(OptionModelTest, WithoutInputTheStartIsDisabledAndTheInputLabelAsks)
{
    auto& m = load();
    EXPECT_EQ(m.caption("lblIn_name"), "ﾒﾆｭｰより入力ﾌｧｲﾙを指定して下さい。");
    EXPECT_EQ(m.colour("lblIn_name"), Colour::Red);
    EXPECT_FALSE(m.enabled("cmdStart"));
    EXPECT_FALSE(m.enabled("変換"));
    EXPECT_FALSE(m.enabled("mnuDisp_in"));
}

TEST_F(OptionModelTest, WithAnInputTheStartIsEnabledAndExistingResultsCanBeShown)
{
    withInput("test.all", "all");
    test::writeBytes(dir / "test_cn.csv", "");
    auto& m = load();
    EXPECT_TRUE(m.enabled("cmdStart"));
    EXPECT_TRUE(m.enabled("変換"));
    EXPECT_TRUE(m.enabled("mnuDisp_con_n_new"));
    EXPECT_FALSE(m.enabled("mnuDisp_ham_n_new"));
    EXPECT_FALSE(m.enabled("mnuDisp_dup"));
    EXPECT_TRUE(m.enabled("txtYYYY"));
}

TEST_F(OptionModelTest, AZloInputDisablesTheYear)
{
    withInput("test.zlo", "zlo");
    EXPECT_FALSE(load().enabled("txtYYYY"));
}

TEST_F(OptionModelTest, ABlankHistoryNameIsReportedAndShownAsHamlogHdb)
{
    facts.historyFileName = " ";
    facts.historyFileExists = false;
    facts.historyFilePath = "/x/Hamlog.hdb";
    auto& m = load();
    EXPECT_EQ(m.caption("Option01(0)"), "Hamlog.hdb");
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text, "/x/Hamlog.hdb が有りません！ 環境設定を確認して下さい。");
    facts.historyFileName = "BAK.hdb";
    EXPECT_EQ(load().caption("Option01(0)"), "BAK.hdb");
}

TEST_F(OptionModelTest, LoadEndsWithTheFixedStates)
{
    test::writeBytes(dir / "Work" / "zlog_1.txt", "");
    auto& m = load({{"Check14", "0"}, {"mng_search_url", ""}});
    EXPECT_TRUE(m.tick("Option01(0)"));
    EXPECT_TRUE(m.tick("Check14"));
    EXPECT_FALSE(m.enabled("Command1(1)"));
    EXPECT_FALSE(m.enabled("cmdDisp_Henkan_Result"));
    EXPECT_FALSE(m.enabled("mnuDisp_log2a"));
    EXPECT_TRUE(m.enabled("mnuQSOBank"));
    EXPECT_EQ(options.value("mng_search_url"), "Dalmuir");
    std::filesystem::remove(dir / "Work" / "zlog_1.txt");
    EXPECT_FALSE(load().enabled("mnuQSOBank"));
}

TEST_F(OptionModelTest, TheSavedZoneMarkFillsTheBoxAtLoad)
{
    options.set("Zone_moji_save", "ZN");
    files.ini_write_zone_moji();
    auto& m = load({{"Option6", "3"}});
    EXPECT_EQ(m.text("txtZone_moji"), "ZN");
    EXPECT_EQ(options.value("Zone_moji"), "ZN");
    EXPECT_EQ(m.control("Frame15").toolTip, options.value("qth_mas_dir"));
}

TEST_F(OptionModelTest, StartTabsFollowTheirKeys)
{
    auto& m = load({{"disp_top_SSTab", "2"}, {"Option5", "3"}});
    EXPECT_EQ(m.startTabSecond(), 2);
    EXPECT_EQ(m.startTabFirst(), 3);
    EXPECT_TRUE(m.tick("Check11"));
    EXPECT_FALSE(m.tick("Check7"));
    EXPECT_FALSE(m.tick("Check8"));
}

TEST_F(OptionModelTest, MenuTicksFollowTheirKeys)
{
    auto& m = load({{"Make_a2t", "1"}, {"Make_t2a", "0"}});
    EXPECT_TRUE(m.tick("mnuMake_a2t"));
    EXPECT_FALSE(m.tick("mnuMake_t2a"));
}

TEST_F(OptionModelTest, TheZoneDigitTickPutsTheRightDigitsOnAtEveryLoad)
{
    // On or off, the load leaves Option7(1) on.
    EXPECT_EQ(load({{"Check6", "1"}, {"Option7", "0"}}).member("Option7"), 1);
    EXPECT_EQ(options.value("Option7"), "1");
    EXPECT_EQ(load({{"Check6", "0"}, {"Option7", "0"}}).member("Option7"), 1);
}

TEST_F(OptionModelTest, LayoutIsDrawnOnceOrTwiceAndTheWidthsBuilt)
{
    load();
    // The province tick's rule runs when the keys are set and again in Form_Load_3.
    EXPECT_EQ(layout.calls, (Calls{"refresh", "refresh", "Disp_Rmks_cfg_bas", "Set_Rmks_Len"}));
    layout.calls.clear();
    layout.sorted1 = true;
    load();
    EXPECT_EQ(std::count(layout.calls.begin(), layout.calls.end(), "Disp_Rmks_cfg_bas"), 2);
    layout.calls.clear();
    load({{"Rmks2_cfg", ""}});
    EXPECT_EQ(std::count(layout.calls.begin(), layout.calls.end(), "Disp_Rmks_cfg_bas"), 0);
    EXPECT_EQ(std::count(layout.calls.begin(), layout.calls.end(), "Set_Rmks_Len"), 1);
}

TEST_F(OptionModelTest, TicksAndGroupsTakeTheirKeysWithBlueForOn)
{
    auto& m = load({{"Check06", "1"},
                    {"Check10", "1"},
                    {"Check2", "0"},
                    {"Option02", "3"},
                    {"Option6", "2"},
                    {"Check29", "1"}});
    EXPECT_TRUE(m.tick("Check06"));
    EXPECT_EQ(m.colour("Check06"), Colour::Blue);
    EXPECT_TRUE(m.tick("Check10"));
    EXPECT_FALSE(m.tick("Check2"));
    EXPECT_EQ(m.colour("Check2"), Colour::Black);
    EXPECT_EQ(m.member("Option02"), 3);
    EXPECT_EQ(m.colour("Option02(3)"), Colour::Blue);
    EXPECT_EQ(m.colour("Option02(0)"), Colour::Black);
    EXPECT_EQ(m.member("Option6"), 2);
    EXPECT_EQ(m.colour("Check29"), Colour::Blue);
    EXPECT_EQ(m.text("txtQSL_Q"), "J");
    EXPECT_EQ(m.text("txtYYYY"), options.value("YYYY"));
}

// ---- Change rules ----------------------------------------------------------------------------

TEST_F(OptionModelTest, EveryChangeClearsTheStatusLine)
{
    auto& m = load();
    m.makeIni_Click();
    ASSERT_EQ(m.caption("lblShori"), "ini 作成完了");
    m.clickTick("Check06");
    EXPECT_EQ(m.caption("lblShori"), "");
    m.makeIni_Click();
    m.chooseMember("Option02", 1);
    EXPECT_EQ(m.caption("lblShori"), "");
    m.makeIni_Click();
    m.editText("txtOp_name", "JA1ABC");
    EXPECT_EQ(m.caption("lblShori"), "");
}

TEST_F(OptionModelTest, MakeIniWritesTheNewFileAndSaysSo)
{
    auto& m = load();
    options.set("Check06", "1");
    m.clickButton("makeIni");
    EXPECT_EQ(calls(), Calls{"ini_write_new"});
    EXPECT_EQ(newIni("Check06"), "1");
    EXPECT_EQ(m.caption("lblShori"), "ini 作成完了");
    m.clickButton("ini 作成");
    EXPECT_EQ(m.caption("lblShori"), "　ini 作成完了");
}

TEST_F(OptionModelTest, Rule1_ReturnMarkReplacementsAreExclusiveAndStoredAtOnce)
{
    auto& m = load({{"Option04", "1"}});
    m.clickTick("Check3");
    m.clickTick("Check4");
    EXPECT_TRUE(m.tick("Check4"));
    EXPECT_FALSE(m.tick("Check3"));
    EXPECT_EQ(m.colour("Check3"), Colour::Black);
    EXPECT_EQ(newIni("Check3"), "0");
    EXPECT_EQ(newIni("Check4"), "1");
    m.clickTick("Check4");
    EXPECT_FALSE(m.tick("Check3"));
    EXPECT_FALSE(m.tick("Check4"));
    EXPECT_EQ(newIni("Check4"), "0");
    EXPECT_EQ(calls(), (Calls{"ini_write_new", "ini_write_new", "ini_write_new"}));
    load({{"Option04", "0"}});
    EXPECT_FALSE(model->enabled("Check3"));
}

TEST_F(OptionModelTest, Rule2_StartTabTicksAreExclusiveAndTheResultTabClearsTheManagerTick)
{
    auto& m = load();
    m.clickTick("Check9");
    m.clickTick("Check8");
    EXPECT_EQ(options.value("disp_top_SSTab"), "1");
    m.clickTick("Check8");
    EXPECT_EQ(options.value("disp_top_SSTab"), "1");
    m.clickTick("Check7");
    m.clickTick("Check11");
    EXPECT_FALSE(m.tick("Check7"));
    EXPECT_FALSE(m.tick("Check8"));
    EXPECT_EQ(options.value("disp_top_SSTab"), "2");
    EXPECT_FALSE(m.tick("Check9"));
    EXPECT_EQ(m.colour("Check9"), Colour::Black);
}

TEST_F(OptionModelTest, Rule3_TheFullCallTickCannotBeTurnedOff)
{
    auto& m = load();
    m.clickTick("Check14");
    EXPECT_TRUE(m.tick("Check14"));
    EXPECT_EQ(options.value("Check14"), "1");
    EXPECT_EQ(m.colour("Check14"), Colour::Blue);
}

TEST_F(OptionModelTest, Rule4_ZoneDigitsOffPutsTheRightDigitsOn)
{
    auto& m = load({{"Check6", "1"}});
    m.chooseMember("Option7", 0);
    m.clickTick("Check6");
    EXPECT_EQ(m.member("Option7"), 1);
    EXPECT_EQ(options.value("Option7"), "1");
}

TEST_F(OptionModelTest, Rules5And6_EntityCheckNamesTheUnknownAndUpperCasesTheList)
{
    facts.knownEntity = [](std::string_view n) { return n == "JAPAN" || n == "HAWAII"; };
    auto& m = load();
    m.editText("txtNo_qsl_cty", "japan, atlantis,hawaii");
    EXPECT_EQ(options.value("No_qsl_cty"), "JAPAN, ATLANTIS,HAWAII");
    EXPECT_FALSE(m.enabled("cmdNG"));
    model->clearFileCalls();
    m.clickTick("Check09");
    EXPECT_TRUE(m.enabled("cmdNG"));
    EXPECT_EQ(m.caption("Label3"), "無 : ATLANTIS , ");
    EXPECT_EQ(m.text("txtNo_qsl_cty"), "JAPAN, ATLANTIS,HAWAII");
    EXPECT_EQ(calls(), Calls{"ini_write_old"});
    EXPECT_EQ(oldIni("No_qsl_cty"), "JAPAN, ATLANTIS,HAWAII");
    m.editText("txtNo_qsl_cty", "  ");
    EXPECT_EQ(m.caption("Label3"), "");
    m.editText("txtNo_qsl_cty", "atlantis");
    m.clickButton("cmdNG");
    EXPECT_EQ(m.caption("Label3"), "無 : ATLANTIS , ");
    m.clickTick("Check09");
    EXPECT_FALSE(m.enabled("cmdNG"));
    EXPECT_EQ(m.caption("Label3"), "");
}

TEST_F(OptionModelTest, Rule6_WithoutTheTickTheCheckOnlyUpperCases)
{
    facts.knownEntity = [](std::string_view) { return false; };
    auto& m = load();
    m.editText("txtNo_qsl_cty", "atlantis");
    m.cmdNG_();
    EXPECT_EQ(m.caption("Label3"), "");
    EXPECT_EQ(m.text("txtNo_qsl_cty"), "ATLANTIS");
}

TEST_F(OptionModelTest, Rules7And8And20_WebSearchTickAndItsOrder)
{
    struct Case
    {
        int member;
        const char* label;
    };
    const Case cases[] = {
        {0, "WEB検索のみを使用する"}, {1, "MNG ﾌｧｲﾙ 優先、WEB補完"}, {2, "WEB優先、MNG ﾌｧｲﾙ 補完"}};
    auto& m = load({{"inet_flag", "OK"}});
    EXPECT_FALSE(m.enabled("Option10(0)"));
    EXPECT_EQ(m.caption("Label29"), "MNG ファイルのみ有効");
    m.clickTick("Check18");
    EXPECT_TRUE(m.enabled("Option10(1)"));
    EXPECT_TRUE(m.enabled("Check22"));
    EXPECT_EQ(m.caption("Label26"), "Web サーチして下記条件");
    for (const Case& c : cases) {
        m.chooseMember("Option10", c.member);
        EXPECT_EQ(m.caption("Label29"), c.label) << c.member;
        EXPECT_EQ(m.colour("Label29"), Colour::DarkRed);
    }
    m.clickTick("Check23");
    EXPECT_TRUE(m.tick("Check22"));
    EXPECT_EQ(options.value("Check22"), "1");
    m.clickTick("Check18");
    EXPECT_FALSE(m.tick("Check22"));
    EXPECT_FALSE(m.enabled("Check22"));
    EXPECT_FALSE(m.enabled("Option10(2)"));
    EXPECT_EQ(m.caption("Label26"), "MNG ファイルのみ有効");
    EXPECT_EQ(m.caption("Label29"), "MNG ファイルのみ有効");
    m.clickTick("Check18");
    EXPECT_TRUE(m.tick("Check22")); // Check23 still on
}

TEST_F(OptionModelTest, Rule8_CopyEvenForNDoesNothingWithoutWebSearch)
{
    auto& m = load({{"inet_flag", "OK"}});
    m.clickTick("Check23");
    EXPECT_FALSE(m.tick("Check22"));
}

TEST_F(OptionModelTest, Rule9_ChangingTheInputZoneResetsTheConversion)
{
    auto& m = load();
    m.chooseMember("Option05", 1);
    model->clearFileCalls();
    m.chooseMember("Option2", 1);
    EXPECT_EQ(m.member("Option05"), 0);
    EXPECT_EQ(m.caption("Option05(0)"), "無変換");
    EXPECT_EQ(options.value("Option05"), "0");
    EXPECT_EQ(newIni("Option05"), "0");
    EXPECT_EQ(oldIni("Option05"), "0");
    EXPECT_EQ(calls(), (Calls{"ini_write_old", "ini_write_new"}));

    struct Case
    {
        int zone;
        bool one, two, three;
    };
    for (const Case& c : {Case{1, false, true, false}, Case{0, true, false, true}}) {
        m.chooseMember("Option2", c.zone);
        EXPECT_TRUE(m.enabled("Option05(0)"));
        EXPECT_EQ(m.enabled("Option05(1)"), c.one) << c.zone;
        EXPECT_EQ(m.enabled("Option05(2)"), c.two) << c.zone;
        EXPECT_EQ(m.enabled("Option05(3)"), c.three) << c.zone;
    }
}

TEST_F(OptionModelTest, Rule10_NoSplitMovesTheUnsortedOrderBackToTheFirstSort)
{
    auto& m = load({{"Option08", "1"}});
    m.chooseMember("Option02", 4);
    ASSERT_EQ(options.value("Option02"), "4");
    m.chooseMember("Option08", 0);
    EXPECT_EQ(m.member("Option02"), 0);
    EXPECT_EQ(options.value("Option02"), "0");
    EXPECT_FALSE(m.enabled("Option02(4)"));
    m.chooseMember("Option08", 1);
    EXPECT_TRUE(m.enabled("Option02(4)"));
}

TEST_F(OptionModelTest, Rule11_HistoryMatchingControlsFollowTheNoQslChoice)
{
    int retests = 0;
    facts.disp_err_op04 = [&] { ++retests; };
    facts.historyFileExists = false;
    facts.lblH_r = "無し";
    auto& m = load({{"Option04", "0"}});
    for (const char* name : {"Option01(0)", "Check04", "Check05", "Check3", "Check4"}) {
        EXPECT_FALSE(m.enabled(name)) << name;
    }
    retests = 0;
    model->clearFileCalls();
    m.chooseMember("Option04", 2);
    for (const char* name : {"Check04", "Check05", "Check3", "Check4", "Label27"}) {
        EXPECT_TRUE(m.enabled(name)) << name;
    }
    EXPECT_FALSE(m.enabled("Option01(0)"));
    EXPECT_EQ(retests, 1);
    EXPECT_EQ(calls(), Calls{"ini_write_new"});
    EXPECT_EQ(newIni("Option04"), "2");
}

TEST_F(OptionModelTest, Rule11_TheHistoryLabelIsComparedWithItsOwnWord)
{
    int retests = 0;
    facts.disp_err_op04 = [&] { ++retests; };
    facts.historyFileExists = false;
    facts.lblH_r = "なし";
    auto& m = load();
    retests = 0;
    m.chooseMember("Option04", 1);
    EXPECT_EQ(retests, 0);
    // Neither branch touches the history source then: it stays as member 0 left it.
    EXPECT_FALSE(m.enabled("Option01(0)"));
    m.facts().historyFileExists = true;
    m.chooseMember("Option04", 0);
    m.chooseMember("Option04", 3);
    EXPECT_TRUE(m.enabled("Option01(0)"));
}

TEST_F(OptionModelTest, Rules13And14_ProvinceOffDisablesItsControls)
{
    withInput("test.all", "all");
    auto& m = load();
    for (const char* name : {"cmdSetMas_mas", "cmdSetMas_dat", "Frame13", "Frame14", "Option3(0)",
                             "Option4(3)", "txtProv_moji", "cmdDisp_mas_dat"}) {
        EXPECT_FALSE(m.enabled(name)) << name;
    }
    EXPECT_EQ(m.colour("Check5"), Colour::Black);
    EXPECT_TRUE(m.enabled("cmdStart"));
}

TEST_F(OptionModelTest, Rule14_ProvinceWithoutAMasterAsksForOneAndBlocksTheStart)
{
    withInput("test.all", "all");
    auto& m = load();
    m.clickTick("Check5");
    EXPECT_EQ(options.value("Check5"), "1");
    EXPECT_EQ(m.colour("Check5"), Colour::Blue);
    EXPECT_EQ(m.caption("lblMas_dat"), "Master File の指定をして下さい。");
    EXPECT_EQ(m.caption("lblMas_dat_zlo"), "＊．ｚｌｏ なら自動選択可能です。");
    EXPECT_EQ(m.caption("lblShori"), "Province の Master File の指定をして下さい。");
    EXPECT_EQ(m.colour("lblShori"), Colour::Red);
    EXPECT_FALSE(m.enabled("cmdStart"));
    EXPECT_FALSE(m.enabled("変換"));
    for (const char* name : {"cmdSetMas_mas", "Frame13", "Frame14", "Option3(1)", "Option4(4)"}) {
        EXPECT_TRUE(m.enabled(name)) << name;
    }
    EXPECT_FALSE(m.enabled("txtProv_moji"));
    EXPECT_EQ(layout.calls.back(), "refresh");
}

TEST_F(OptionModelTest, Rule14_MasterButtonCaptionFollowsTheProvinceFolder)
{
    withInput("test.all", "all");
    const std::string master = (dir / "Prov" / "x.mas").string();
    test::writeBytes(master, "A,B\r\n");
    facts.mas_dat_name = master;
    auto& m = load({{"Prov_mas_dat_dir", (dir.path() / "Prov/").string().c_str()}});
    m.clickTick("Check5");
    EXPECT_EQ(m.caption("cmdSetMas_mas"), "Master ファイルの指定");
    EXPECT_EQ(m.control("cmdSetMas_mas").toolTip,
              "Master ファイル *.mas 及び *.dat の指定をします。");
    EXPECT_TRUE(m.enabled("cmdStart"));
    m.clickTick("Check5");
    options.set("Prov_mas_dat_dir", "/zlog/");
    m.clickTick("Check5");
    EXPECT_EQ(m.caption("cmdSetMas_mas"), "Master ＊．ｍａｓ の指定");
    EXPECT_EQ(m.control("cmdSetMas_mas").toolTip, "Master ファイル *.mas の指定をします。");
    EXPECT_TRUE(m.enabled("cmdSetMas_dat"));
    m.facts().contestMismatch = true;
    m.chk_go();
    EXPECT_FALSE(m.enabled("cmdStart"));
}

TEST_F(OptionModelTest, Rule14_WithoutInputTheClosingCheckEnablesTheMasterButtonsAgain)
{
    // The click disables both master buttons for want of an input, then ends with
    // Check5_Chk, which enables them with the tick: the start stays disabled.
    auto& m = load();
    m.clickTick("Check5");
    EXPECT_TRUE(m.enabled("cmdSetMas_mas"));
    EXPECT_TRUE(m.enabled("cmdSetMas_dat"));
    EXPECT_FALSE(m.enabled("cmdStart"));
    EXPECT_NE(m.caption("lblMas_dat"), "Master File の指定をして下さい。");
    m.clickTick("Check5");
    EXPECT_FALSE(m.enabled("cmdSetMas_mas"));
    EXPECT_FALSE(m.enabled("cmdSetMas_dat"));
}

TEST_F(OptionModelTest, Rule14_AStateCellClashesWithTheProvince)
{
    withInput("test.all", "all");
    test::writeBytes(dir / "m.mas", "A,B\r\n");
    facts.mas_dat_name = (dir / "m.mas").string();
    auto& m = load({{"Rmks1_cfg", "ｺﾝﾃｽﾄ,,,,,,,,,,,,"}, {"Rmks2_cfg", "MNG,Zone,,州名,,,,,,,,,"}});
    EXPECT_EQ(m.stateCell().row, 2);
    EXPECT_EQ(m.stateCell().index, 3);
    EXPECT_TRUE(m.enabled("cmdStart"));
    m.clickTick("Check5");
    EXPECT_EQ(m.caption("lblShori"), "州名 又は Province のどちらかにして下さい。");
    EXPECT_EQ(m.colour("lblShori"), Colour::Red);
    EXPECT_FALSE(m.enabled("cmdStart"));
    EXPECT_NE(std::find(layout.calls.begin(), layout.calls.end(), "red 2,3"), layout.calls.end());
}

TEST_F(OptionModelTest, Rule14_TagsOfTheFileNameNameTheContestFirstHitWins)
{
    const std::pair<const char*, const char*> cases[] = {
        {"ref2024.all", "REFコンテスト(DX)"},
        {"japan.all", "PACC (DX)"},
        {"spdx.all", "ＳＰＤＸコンテスト"},
        {"rsgb.all", "RSGB 7MHz (DX)"},
        {"ur.all", "URDXコンテスト(DX)"},
        {"yo.all", "YO DX"},
        {"rac.all", "RAC"},
        {"ha.all", "HADXコンテスト(DX)"},
        {"ard.all", "ARRL 10m Contest"},
        {"ct.all", "CT DAY"},
        {"ok.all", "ＯＫ／ＯＭＤＸコンテスト（ＤＸ）"},
        {"rus.all", "RussianDXコンテスト"},
        {"hb.all", "Helvetia DXコンテスト"},
        {"ari.all", "ARI Int DXコンテスト"},
        {"uba.all", "UBA Contest"},
        {"uk.all", "Ukrainian DX DIGI Contest"},
        {"ea.all", "EA Contest"},
        {"xe.all", "XE Contest"},
        {"iota.all", "IOTA Contest"},
        {"zzz.all", "kept"},
    };
    for (const auto& [file, contest] : cases) {
        std::string asked;
        withInput(file, "all");
        facts.cont_name = "kept";
        facts.read_cont_name_zlo = [&](std::string_view name) {
            asked = name;
            return std::string();
        };
        auto& m = load();
        m.clickTick("Check5");
        EXPECT_EQ(asked, contest) << file;
    }
}

TEST_F(OptionModelTest, Rule14_IotaCannotGiveProvincesAndAGuessedMasterIsShownGreen)
{
    withInput("iota.all", "all");
    auto& m = load();
    m.clickTick("Check5");
    EXPECT_EQ(m.caption("lblMas_dat_zlo"), "Prov , Oblast 取得は不可能です｡");
    EXPECT_EQ(m.colour("lblMas_dat_zlo"), Colour::Red);

    const std::string master = (dir / "Prov" / "RSGB.mas").string();
    test::writeBytes(master, "A,B\r\n");
    withInput("rsgb.all", "all");
    facts.read_cont_name_zlo = [&](std::string_view name) {
        return name == "RSGB 7MHz (DX)" ? master : std::string();
    };
    auto& g = load({{"Check5", "0"}});
    g.clickTick("Check5");
    EXPECT_EQ(g.caption("lblMas_dat_zlo"),
              "入力ﾌｧｲﾙ名より推測して指定しました。不適切なら再選択のこと");
    EXPECT_EQ(g.colour("lblMas_dat_zlo"), Colour::Green);
    EXPECT_TRUE(g.enabled("cmdDisp_mas_dat"));
    EXPECT_EQ(g.caption("lblMas_dat"), "RSGB.mas");
    EXPECT_TRUE(g.enabled("cmdStart"));
}

TEST_F(OptionModelTest, Rule14_AZloInputChoosesItsMasterFromTheContestName)
{
    const std::string master = (dir / "Prov" / "cq.mas").string();
    test::writeBytes(master, "A,B\r\n");
    withInput("test.zlo", "zlo");
    facts.cont_name = "CQ Test";
    facts.read_cont_name_zlo = [&](std::string_view name) {
        return name == "CQ Test" ? master : std::string();
    };
    auto& m = load();
    m.clickTick("Check5");
    EXPECT_NE(m.caption("lblShori"), "Province の Master File の指定をして下さい。");
    EXPECT_TRUE(m.enabled("cmdStart"));
}

TEST_F(OptionModelTest, Rule15And16_ProvincePlaceAndPrefix)
{
    withInput("test.all", "all");
    auto& m = load({{"Check5", "1"}});
    m.chooseMember("Option3", 1);
    EXPECT_EQ(m.colour("Option3(1)"), Colour::Blue);
    EXPECT_EQ(m.colour("Option3(0)"), Colour::Black);
    EXPECT_FALSE(m.tick("Option3(0)"));
    const std::pair<int, bool> cases[] = {{0, false}, {1, false}, {2, false}, {3, true}, {4, true}};
    for (const auto& [member, free] : cases) {
        m.chooseMember("Option4", member);
        EXPECT_EQ(options.value("Option4"), std::to_string(member));
        EXPECT_EQ(m.enabled("cmdDelProv"), free) << member;
        EXPECT_EQ(m.enabled("txtProv_moji"), free) << member;
        EXPECT_EQ(m.colour("Option4(" + std::to_string(member) + ")"), Colour::Blue);
    }
    m.editText("txtProv_moji", "Pref = ");
    EXPECT_EQ(options.value("Prov_moji"), "Pref = ");
    m.clickButton("cmdDelProv");
    EXPECT_EQ(m.text("txtProv_moji"), "");
    EXPECT_EQ(options.value("Prov_moji"), "");
}

TEST_F(OptionModelTest, Rule17_ZonePrefixLabelAndFreeText)
{
    auto& m = load();
    const std::pair<int, const char*> cases[] = {{1, "'CQ = '"}, {2, "'ITU = '"}, {0, "'Z'"}};
    for (const auto& [member, label] : cases) {
        m.chooseMember("Option6", member);
        EXPECT_EQ(m.caption("Label10"), label);
        EXPECT_FALSE(m.enabled("txtZone_moji"));
        EXPECT_FALSE(m.enabled("cmdDisp"));
        EXPECT_FALSE(m.enabled("cmdDel"));
    }
    m.chooseMember("Option6", 3);
    EXPECT_EQ(m.caption("Label10"), "");
    EXPECT_TRUE(m.enabled("cmdDel"));
    model->clearFileCalls();
    m.editText("txtZone_moji", "Zn");
    EXPECT_EQ(options.value("Zone_moji"), "Zn");
    EXPECT_EQ(calls(), Calls{"ini_write_old"});
    m.clickButton("cmdDisp");
    EXPECT_EQ(m.caption("Label10"), "'Zn'");
    m.clickButton("cmdZone_moji_save");
    EXPECT_EQ(ProfileFile(dir / "Vornhale_Zone_moji.ini").read("Zone_moji", "Zone_moji_save"),
              "Zn");
    m.clickButton("cmdDel");
    EXPECT_EQ(m.caption("Label10"), "");
    EXPECT_EQ(m.text("txtZone_moji"), "");
    EXPECT_EQ(options.value("Zone_moji_save"), "");
    EXPECT_EQ(ProfileFile(dir / "Vornhale_Zone_moji.ini").read("Zone_moji", "Zone_moji_save"), "");
}

TEST_F(OptionModelTest, Rule19_ConversionChoiceIsColouredAndStoredInBothFiles)
{
    auto& m = load();
    m.chooseMember("Option05", 3);
    EXPECT_EQ(calls(), (Calls{"ini_write_old", "ini_write_new"}));
    EXPECT_EQ(newIni("Option05"), "3");
    EXPECT_EQ(oldIni("Option05"), "3");
    EXPECT_EQ(m.colour("Option05(3)"), Colour::Blue);
    EXPECT_EQ(m.colour("Option05(0)"), Colour::Black);
}

TEST_F(OptionModelTest, Rules21And22_StartTabAndReportFlag)
{
    auto& m = load();
    m.chooseMember("Option5", 2);
    EXPECT_EQ(m.startTabFirst(), 2);
    EXPECT_EQ(options.value("Option5"), "2");
    EXPECT_FALSE(m.reportFlag());
    m.clickTick("Check21");
    EXPECT_TRUE(m.reportFlag());
    EXPECT_EQ(options.value("Check21"), "1");
}

TEST_F(OptionModelTest, Rule23_OnlyTheFirstCharacterOfAMarkIsKeptAndABlankIsLostOnWrite)
{
    auto& m = load();
    m.editText("txtQSL_Q", "＃X");
    EXPECT_EQ(options.value("QSL_Q"), "＃");
    EXPECT_EQ(m.text("txtQSL_Q"), "＃");
    EXPECT_EQ(calls(), (Calls{"ini_write_old", "ini_write_new"}));
    EXPECT_EQ(newIni("QSL_Q"), "＃");
    m.editText("txtQSL_S", " ");
    EXPECT_EQ(options.value("QSL_S"), " ");
    EXPECT_EQ(newIni("QSL_S"), "");
    EXPECT_EQ(oldIni("QSL_S"), "");
}

TEST_F(OptionModelTest, Rule24_TextsStoreInMemoryAndWriteTheWorkingCopy)
{
    struct Case
    {
        const char* control;
        const char* typed;
        const char* key;
        const char* kept;
    };
    const Case cases[] = {
        {"Combo1", "5", "GetMng_Interval", "5"},
        {"txtYYYY", "202345", "YYYY", "2023"},
        {"txtRmks1", "hello", "txtRmks1", "hello"},
        {"txtRmks2", "world", "txtRmks2", "world"},
    };
    auto& m = load();
    for (const Case& c : cases) {
        model->clearFileCalls();
        m.editText(c.control, c.typed);
        EXPECT_EQ(options.value(c.key), c.kept) << c.control;
        EXPECT_EQ(calls(), Calls{"ini_write_old"}) << c.control;
    }
    EXPECT_EQ(oldIni("YYYY"), "2023");
    model->clearFileCalls();
    m.clickButton("cmdNow");
    EXPECT_EQ(m.text("txtYYYY"), "2024");
    EXPECT_EQ(options.value("YYYY"), "2024");
    EXPECT_EQ(calls(), Calls{"ini_write_old"});
}

TEST_F(OptionModelTest, MenuTicksInvertAndWriteTheWorkingCopy)
{
    auto& m = load();
    m.clickButton("mnuMake_a2t");
    EXPECT_TRUE(m.tick("mnuMake_a2t"));
    EXPECT_EQ(oldIni("Make_a2t"), "1");
    m.clickTick("mnuMake_a2t");
    EXPECT_EQ(options.value("Make_a2t"), "0");
    m.clickButton("mnuMake_t2a");
    EXPECT_EQ(options.value("Make_t2a"), "1");
    EXPECT_EQ(calls(), (Calls{"ini_write_old", "ini_write_old", "ini_write_old"}));
}

TEST_F(OptionModelTest, BandTickChangeWritesBothFiles)
{
    auto& m = load();
    m.clickTick("Check16");
    EXPECT_EQ(calls(), (Calls{"ini_write_new", "ini_write_old"}));
    EXPECT_EQ(newIni("Check16"), "0");
    EXPECT_EQ(oldIni("Check16"), "0");
}

TEST_F(OptionModelTest, OtherTicksChangeOnlyTheirKeyAndColour)
{
    const char* ticks[] = {"Check06", "Check1",  "Check10", "Check12", "Check13",
                           "Check15", "Check17", "Check19", "Check2",  "Check20",
                           "Check22", "Check9",  "Check04", "Check05", "Check25",
                           "Check26", "Check27", "Check28", "Check29"};
    auto& m = load({{"inet_flag", "OK"}, {"Check18", "1"}, {"Option04", "1"}});
    for (const char* name : ticks) {
        const bool before = m.tick(name);
        model->clearFileCalls();
        m.clickTick(name);
        EXPECT_EQ(m.tick(name), !before) << name;
        EXPECT_EQ(options.value(name), before ? "0" : "1") << name;
        EXPECT_EQ(m.colour(name), before ? Colour::Black : Colour::Blue) << name;
        EXPECT_TRUE(calls().empty()) << name;
    }
}

TEST_F(OptionModelTest, ADisabledControlIgnoresTheUser)
{
    auto& m = load({{"Option2", "1"}});
    m.chooseMember("Option05", 1);
    EXPECT_EQ(m.member("Option05"), 0);
    m.clickTick("Check18"); // no web access
    EXPECT_FALSE(m.tick("Check18"));
    EXPECT_FALSE(m.clickButton("cmdUnknown"));
}

TEST_F(OptionModelTest, ListenersHearEveryChangeUntilTheyLeave)
{
    auto& m = load({{"Option04", "1"}});
    std::vector<std::string> heard;
    const int id = m.subscribe([&](std::string_view name) { heard.emplace_back(name); });
    m.clickTick("Check3");
    EXPECT_NE(std::find(heard.begin(), heard.end(), "Check3"), heard.end());
    heard.clear();
    m.chooseMember("Option6", 3);
    EXPECT_NE(std::find(heard.begin(), heard.end(), "Option6(3)"), heard.end());
    EXPECT_NE(std::find(heard.begin(), heard.end(), "txtZone_moji"), heard.end());
    m.unsubscribe(id);
    heard.clear();
    m.clickTick("Check06");
    EXPECT_TRUE(heard.empty());
}

TEST_F(OptionModelTest, TheModelWorksWithoutSettingsFiles)
{
    OptionModel m(options, nullptr, facts);
    m.Form_Load();
    m.clickTick("Check06");
    EXPECT_TRUE(m.tick("Check06"));
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale_new.ini"));
    EXPECT_EQ(m.fileCalls().front(), "ini_read_new");
}

TEST_F(OptionModelTest, ATickWithoutAKeyStartsFromItsDefaultAtTheFirstLoad)
{
    options.set("Check13", "");
    load();
    EXPECT_TRUE(model->tick("Check13"));
    EXPECT_EQ(options.value("Check13"), "1");
    // The manager tick has no default: it stays off.
    EXPECT_FALSE(model->tick("Check9"));
}

TEST_F(OptionModelTest, ATickWithoutAKeyChangedInTheStoreIsShownAtOnce)
{
    load();
    model->clickTick("Check13");
    ASSERT_FALSE(model->tick("Check13"));
    std::vector<std::string> told;
    model->subscribe([&told](std::string_view name) { told.emplace_back(name); });
    // As the open does for a path holding "REF".
    options.set("Check13", "1");
    EXPECT_TRUE(model->tick("Check13"));
    EXPECT_EQ(model->colour("Check13"), Colour::Blue);
    EXPECT_NE(std::find(told.begin(), told.end(), "Check13"), told.end());
}

TEST_F(OptionModelTest, TheCountButtonShowsTheNameMasterLinesLessTheHeadingLines)
{
    // Two heading lines and three names; the last line ends in CR LF.
    test::writeBytes(dir / "name_mas.txt",
                     "CALL  NAME\r\n----------\r\nJA1AAA TARO\r\nJA1BBB JIRO\r\nJA1CCC SABU\r\n");
    auto& m = load();
    ASSERT_TRUE(m.enabled("cmdCount"));
    m.clickButton("cmdCount");
    // The line number of the end counts one beyond the last line end.
    EXPECT_EQ(m.caption("lblShori"), "4　件");
}

TEST_F(OptionModelTest, TheCountButtonSaysSoWhenTheNameMasterIsMissing)
{
    auto& m = load();
    m.clickButton("cmdCount");
    EXPECT_NE(m.caption("lblShori").find("name_mas.txt が有りません。"), std::string::npos);
}

TEST_F(OptionModelTest, TheMasterDialogsOpenInTheirFoldersAndMergeWhenTheFoldersAreOne)
{
    options.set("Prov_mas_dat_dir", (dir.path() / "zLog" / "").string());
    auto& m = load();
    const std::string prov = (dir.path() / "Prov" / "").string();
    const auto mas = m.provinceMasterDialog("cmdSetMas_mas");
    EXPECT_EQ(mas.folder, prov);
    EXPECT_EQ(mas.title, prov + "の ＊．ｍａｓ ファイルを  開く ....");
    EXPECT_EQ(mas.filter, "　Provinces_マスターファイル ( *.mas )|*.mas|");
    const auto dat = m.provinceMasterDialog("cmdSetMas_dat");
    EXPECT_EQ(dat.folder, (dir.path() / "zLog" / "").string());
    EXPECT_EQ(dat.filter, "　Provinces_マスターファイル ( *.dat )|*.dat|");

    options.set("Prov_mas_dat_dir", prov);
    const auto merged = m.provinceMasterDialog("cmdSetMas_dat");
    EXPECT_EQ(merged.folder, prov);
    EXPECT_EQ(merged.title, prov + "の マスターファイルを  開く ....");
    EXPECT_EQ(merged.filter, "　Provinces_マスターファイル ( *.mas , *.dat )|*.mas;*.dat|");
}

TEST_F(OptionModelTest, AMasterPickedByHandLetsTheProvinceRunStart)
{
    withInput("contest.ALL", "all");
    auto& m = load({{"Check5", "1"}});
    EXPECT_FALSE(m.enabled("cmdStart"));
    m.provinceMasterChosen("");
    EXPECT_EQ(m.caption("lblShori"), "マスターは未選択です。");
    EXPECT_FALSE(m.enabled("cmdStart"));

    test::writeBytes(dir / "Prov" / "EA_prov.mas", "x\r\n");
    m.provinceMasterChosen((dir / "Prov" / "EA_prov.mas").string());
    EXPECT_EQ(m.caption("lblMas_dat"), "EA_prov.mas");
    EXPECT_EQ(m.facts().mas_dat_name, (dir / "Prov" / "EA_prov.mas").string());
    EXPECT_TRUE(m.enabled("cmdDisp_mas_dat"));
    EXPECT_TRUE(m.enabled("cmdStart"));
}
