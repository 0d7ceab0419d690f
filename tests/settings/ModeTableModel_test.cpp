#include "settings/ModeTableModel.h"
#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

using namespace vornhale;
using base::Colour;
using settings::ModeTableModel;
using settings::Options;
using settings::SettingsFiles;

namespace {

struct Folder
{
    test::TempDir dir;
    Options options;
    SettingsFiles files{dir.path(), options};
};

} // namespace

TEST(ModeTableModel, TheDialogTextsAreTheProgramsOwn)
{
    EXPECT_EQ(ModeTableModel::kLabel11, "この変換テーブルは最優先で変換する。");
    EXPECT_EQ(ModeTableModel::kLabelM, "--->");
    EXPECT_EQ(ModeTableModel::kCheckCaption, "変換する");
    EXPECT_EQ(ModeTableModel::kCommand2, "保　存");
    EXPECT_EQ(ModeTableModel::kCommand1, "戻　る");
    EXPECT_EQ(ModeTableModel::sourceKey(10), "mode_10_0_txt");
    EXPECT_EQ(ModeTableModel::targetKey(1), "mode_1_1_txt");
    EXPECT_EQ(ModeTableModel::tickKey(3), "mode_3_chk");
}

TEST(ModeTableModel, LoadReadsTheEnvironmentSectionOfTheCurrentFile)
{
    Folder f;
    f.files.ini_read_old(); // an earlier step selected the working copy
    test::writeSjisLines(f.dir / "Vornhale.ini",
                         {"[Vornhale.ini]", "mode_3_0_txt=FT8", "mode_3_chk=1",
                          "[Vornhale_cfg.ini]", "mode_1_0_txt=RTTY", "mode_1_1_txt=電信",
                          "mode_1_chk=1", "mode_2_0_txt=PSK", "mode_2_chk=0", "mode_4_chk=yes"});
    ModeTableModel m(f.files);
    m.Form_Load();
    EXPECT_EQ(m.row(1).source, "RTTY");
    EXPECT_EQ(m.row(1).target, "電信");
    EXPECT_TRUE(m.row(1).on);
    EXPECT_EQ(m.row(1).colour, Colour::Blue);
    EXPECT_EQ(m.row(2).source, "PSK");
    EXPECT_FALSE(m.row(2).on);
    EXPECT_EQ(m.row(2).colour, Colour::Black);
    // Written to the option section, but not read from there.
    EXPECT_EQ(m.row(3).source, "");
    EXPECT_FALSE(m.row(3).on);
    EXPECT_FALSE(m.row(4).on) << "only \"1\" is on";
    EXPECT_EQ(m.row(4).colour, Colour::Black);
    EXPECT_EQ(m.row(11).source, "");
    EXPECT_TRUE(m.isOpen());
}

TEST(ModeTableModel, EditsStoreAtOnce)
{
    Folder f;
    ModeTableModel m(f.files);
    m.Form_Load();
    m.setSource(5, "CW");
    m.setTarget(5, "A1A");
    m.setTick(5, true);
    EXPECT_EQ(f.options.value("mode_5_0_txt"), "CW");
    EXPECT_EQ(f.options.value("mode_5_1_txt"), "A1A");
    EXPECT_EQ(f.options.value("mode_5_chk"), "1");
    EXPECT_EQ(m.row(5).colour, Colour::Blue);
    m.setTick(5, false);
    EXPECT_EQ(f.options.value("mode_5_chk"), "0");
    EXPECT_EQ(m.row(5).colour, Colour::Black);
    m.setSource(0, "x");
    m.setTick(11, true);
    EXPECT_EQ(f.options.value("mode_0_0_txt"), "");
    EXPECT_EQ(f.options.value("mode_11_chk"), "");
}

TEST(ModeTableModel, SaveWritesTheTableToTheOptionSectionOfTheCurrentFileAndCloses)
{
    Folder f;
    f.files.ini_read_old();
    ModeTableModel m(f.files);
    m.Form_Load();
    m.setSource(1, "RTTY");
    m.setTarget(1, "電信");
    m.setTick(1, true);
    m.Command2_Click();
    EXPECT_FALSE(m.isOpen());

    EXPECT_FALSE(std::filesystem::exists(f.dir / "Vornhale_new.ini"));
    const std::string bytes = test::readBytes(f.dir / "Vornhale.ini");
    EXPECT_NE(bytes.find("\r\nmode_1_0_txt=RTTY\r\nmode_1_1_txt=" + text::encodeSjis("電信") +
                         "\r\nmode_1_chk=1\r\nmode_2_0_txt=\r\nmode_2_1_txt=\r\nmode_2_chk=0\r\n"),
              std::string::npos);
    const settings::ProfileFile written(f.dir / "Vornhale.ini");
    EXPECT_EQ(written.read("Vornhale.ini", "mode_1_0_txt"), "RTTY");
    EXPECT_EQ(written.read("Vornhale_cfg.ini", "mode_1_0_txt"), "");
}

TEST(ModeTableModel, ARowSavedHereComesBackEmptyAtTheNextLoad)
{
    Folder f;
    f.files.ini_read_new();
    {
        ModeTableModel m(f.files);
        m.Form_Load();
        m.setSource(2, "SSB");
        m.setTick(2, true);
        m.Command2_Click();
    }
    Options fresh;
    SettingsFiles again(f.dir.path(), fresh);
    again.ini_read_new();
    ModeTableModel m(again);
    m.Form_Load();
    EXPECT_EQ(m.row(2).source, "");
    EXPECT_FALSE(m.row(2).on);
}

TEST(ModeTableModel, ReturnClosesWithoutWriting)
{
    Folder f;
    f.files.ini_write_new();
    const std::string before = test::readBytes(f.dir / "Vornhale_new.ini");
    ModeTableModel m(f.files);
    m.Form_Load();
    m.setSource(7, "AM");
    m.Command1_Click();
    EXPECT_FALSE(m.isOpen());
    EXPECT_EQ(test::readBytes(f.dir / "Vornhale_new.ini"), before);
    // What was typed is in memory already and lasts until the program ends.
    EXPECT_EQ(f.options.value("mode_7_0_txt"), "AM");
}
