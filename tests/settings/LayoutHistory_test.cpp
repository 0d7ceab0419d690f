#include "base/Trace.h"
#include "settings/LayoutHistory.h"
#include "settings/LayoutModel.h"
#include "settings/RirekiSelModel.h"
#include "settings/SettingsFiles.h"
#include "settings/WidthsModel.h"
#include "support/TestSupport.h"
#include "text/Chars.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace vornhale;
using settings::LayoutHistory;
using settings::LayoutModel;
using settings::Options;
using settings::RirekiSelModel;
using settings::WidthsModel;
using Lines = std::vector<std::string>;

namespace {

const std::string kZeros = "0,0,0,0,0,0,0,0,0,0,0,0,";

// A history line of a name, two rows and two widths lists, each given as twelve entries.
std::string layoutLine(const std::string& name, const std::string& r1, const std::string& r2,
                       const std::string& w1, const std::string& w2)
{
    std::string w2cut = w2;
    w2cut.pop_back();
    return name + "," + r1 + r2 + w1 + w2cut;
}

const std::string kLineA = layoutLine("標準", "MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,",
                                      "Rcvd,memo=,,,,,,,,,,,", "6,0,0,0,0,0,0,0,0,0,0,0,", kZeros);
const std::string kLineB = layoutLine("DX", "ｺﾝﾃｽﾄ,,,,,,,,,,,,", "MNG,OP %,,,,,,,,,,,",
                                      "9,0,0,0,0,0,0,0,0,0,0,0,", "4,3,0,0,0,0,0,0,0,0,0,0,");

} // namespace

TEST(LayoutHistory, HeadersDifferByTheWordVer)
{
    EXPECT_EQ(LayoutHistory::header(), "Vornhale_Rireki.cfg  ver 5.44");
    EXPECT_EQ(LayoutHistory::appendHeader(), "Vornhale_Rireki.cfg  5.44");
}

TEST(LayoutHistory, ReadingSkipsTheHeaderAndTakesFortyNineFields)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "Vornhale_Rireki.cfg",
                         {"any header", kLineA, kLineB + ",extra,more"});
    const auto t = LayoutHistory::read(dir / "Vornhale_Rireki.cfg");
    EXPECT_EQ(t.error, "");
    ASSERT_EQ(t.rows.size(), 2u);
    EXPECT_EQ(t.rows[0][0], "標準");
    EXPECT_EQ(t.rows[0][1], "MNG");
    EXPECT_EQ(t.rows[0][13], "Rcvd");
    EXPECT_EQ(t.rows[0][25], "6");
    EXPECT_EQ(t.rows[0][48], "0");
    EXPECT_EQ(t.rows[1][14], "OP %");
    EXPECT_EQ(t.rows[1][38], "3");
    EXPECT_EQ(LayoutHistory::lineOf(t.rows[1]), kLineB);
}

TEST(LayoutHistory, AShortLineStopsTheReadingAndKeepsTheRowsBefore)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "Vornhale_Rireki.cfg", {"h", kLineA, "short,MNG,,,", kLineB});
    base::Trace trace(dir / "log");
    const auto t = LayoutHistory::read(dir / "Vornhale_Rireki.cfg", &trace);
    ASSERT_EQ(t.rows.size(), 1u);
    EXPECT_EQ(t.rows[0][0], "標準");
    EXPECT_NE(t.error, "");
    const auto traced = test::readSjisLines(trace.path());
    ASSERT_FALSE(traced.empty());
    EXPECT_EQ(traced[0], "エラー発生 ：　9");
}

TEST(LayoutHistory, AMissingFileGivesNoRows)
{
    test::TempDir dir;
    const auto t = LayoutHistory::read(dir / "Vornhale_Rireki.cfg");
    EXPECT_TRUE(t.rows.empty());
}

TEST(LayoutHistory, AtMostTwoHundredLayoutsAreHeld)
{
    test::TempDir dir;
    Lines lines = {"h"};
    for (int i = 0; i < 205; ++i) {
        lines.push_back(
            layoutLine("L" + std::to_string(i), ",,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, kZeros));
    }
    test::writeSjisLines(dir / "Vornhale_Rireki.cfg", lines);
    const auto t = LayoutHistory::read(dir / "Vornhale_Rireki.cfg");
    ASSERT_EQ(t.rows.size(), 200u);
    EXPECT_EQ(t.rows.back()[0], "L199");
}

TEST(LayoutHistory, SaveRireki_SkipsBlankNames)
{
    test::TempDir dir;
    test::writeSjisLines(
        dir / "Vornhale_Rireki.cfg",
        {"h", kLineA, layoutLine("  ", ",,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, kZeros), kLineB});
    const auto t = LayoutHistory::read(dir / "Vornhale_Rireki.cfg");
    ASSERT_EQ(t.rows.size(), 3u);
    LayoutHistory::save_rireki(dir / "Vornhale_Rireki.cfg", t.rows);
    EXPECT_EQ(test::readBytes(dir / "Vornhale_Rireki.cfg"),
              "Vornhale_Rireki.cfg  ver 5.44\r\n"
              "\x95\x57\x8f\x80,MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,Rcvd,memo=,,,,,,,,,,,"
              "6,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n"
              "DX,\xba\xdd\xc3\xbd\xc4,,,,,,,,,,,,MNG,OP %,,,,,,,,,,,"
              "9,0,0,0,0,0,0,0,0,0,0,0,4,3,0,0,0,0,0,0,0,0,0,0\r\n");
}

TEST(LayoutHistory, AddingToAnExistingFileRenewsTheHeaderAndKeepsTheLines)
{
    test::TempDir dir;
    test::writeBytes(dir / "Vornhale_Rireki.cfg",
                     "Vornhale_Rireki.cfg  ver 5.10\r\nkept \xff bytes\r\n");
    LayoutHistory::addLayout(dir / "Vornhale_Rireki.cfg", kLineB);
    EXPECT_EQ(test::readBytes(dir / "Vornhale_Rireki.cfg"),
              "Vornhale_Rireki.cfg  5.44\r\nkept \xff bytes\r\n" + text::encodeSjis(kLineB) +
                  "\r\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale_rireki.001"));

    // A last line without its line end does not swallow the new one.
    test::writeBytes(dir / "Vornhale_Rireki.cfg", "h\r\nlast");
    LayoutHistory::addLayout(dir / "Vornhale_Rireki.cfg", "new");
    EXPECT_EQ(test::readBytes(dir / "Vornhale_Rireki.cfg"),
              "Vornhale_Rireki.cfg  5.44\r\nlast\r\nnew\r\n");
}

TEST(LayoutHistory, AddingToAMissingOrEmptyFileCreatesIt)
{
    test::TempDir dir;
    LayoutHistory::addLayout(dir / "Vornhale_Rireki.cfg", "x");
    EXPECT_EQ(test::readBytes(dir / "Vornhale_Rireki.cfg"), "Vornhale_Rireki.cfg  5.44\r\nx\r\n");
    test::writeBytes(dir / "Vornhale_Rireki.cfg", "");
    LayoutHistory::addLayout(dir / "Vornhale_Rireki.cfg", "y");
    EXPECT_EQ(test::readBytes(dir / "Vornhale_Rireki.cfg"), "Vornhale_Rireki.cfg  5.44\r\ny\r\n");
}

TEST(LayoutHistory, BundledHistoryReadsThreeLayoutsWithoutError)
{
    const auto t = LayoutHistory::read(test::sourceDir() / "data/seed/Vornhale_Rireki.cfg");
    EXPECT_EQ(t.error, "");
    ASSERT_EQ(t.rows.size(), 3u);
    EXPECT_EQ(test::readSjisLines(test::sourceDir() / "data/seed/Vornhale_Rireki.cfg").at(0),
              "Vornhale_Rireki.cfg  ver 5.44");
    for (const auto& row : t.rows) {
        EXPECT_FALSE(row[0].empty());
    }
}

// --- frmRmk_Rireki_sel ---------------------------------------------------------------------

namespace {

struct RirekiSel : ::testing::Test
{
    void SetUp() override
    {
        test::writeSjisLines(dir / "Vornhale_Rireki.cfg",
                             {LayoutHistory::header(), kLineA, kLineB});
        options.set("Rmks1_cfg", "Calls,,,,,,,,,,,,");
        options.set("Rmks2_cfg", ",,,,,,,,,,,,");
        options.set("Rmks1_cfg_len", kZeros);
        options.set("Rmks2_cfg_len", kZeros);
        layout.Disp_Rmks_cfg_bas();
        model.Form_Load();
    }
    test::TempDir dir;
    Options options;
    LayoutModel layout{options};
    RirekiSelModel model{dir.path(), layout};
};

} // namespace

TEST_F(RirekiSel, LoadFillsThreeParallelLists)
{
    EXPECT_TRUE(std::filesystem::exists(dir / "Vornhale.001"));
    EXPECT_EQ(model.list1(), (Lines{"標準", "DX"}));
    ASSERT_EQ(model.list2().size(), 2u);
    EXPECT_EQ(text::left(model.list2()[1], 12), "ｺﾝﾃｽﾄ       ");
    EXPECT_EQ(text::left(model.list3()[1], 12), "MNG   OP %  ");
    EXPECT_EQ(model.list3()[0].size(), 72u);
}

TEST_F(RirekiSel, AClickSelectsTheRowInAllListsAndDrawsIt)
{
    model.click(1);
    EXPECT_EQ(model.selected(), 1u);
    EXPECT_EQ(model.lblHozon_Rmks(), "DX");
    EXPECT_EQ(model.labels()[0], "ｺﾝﾃｽﾄ,,,,,,,,,,,,");
    EXPECT_EQ(model.labels()[1], "MNG,OP %,,,,,,,,,,,");
    EXPECT_EQ(model.labels()[3], "4,3,0,0,0,0,0,0,0,0,0,0,");
    model.click(7);
    EXPECT_EQ(model.selected(), 1u);
    model.cmdCan();
    EXPECT_FALSE(model.selected().has_value());
    EXPECT_EQ(model.lblHozon_Rmks(), "");
}

TEST_F(RirekiSel, OkRebuildsTheKeysAndSlotsAndDrawsTheLayout)
{
    EXPECT_FALSE(model.cmdOK());
    model.click(1);
    ASSERT_TRUE(model.cmdOK());
    EXPECT_EQ(options.value("Rmks1_cfg"), "ｺﾝﾃｽﾄ,,,,,,,,,,,,");
    EXPECT_EQ(options.value("Rmks2_cfg"), "MNG,OP %,,,,,,,,,,,");
    EXPECT_EQ(options.value("Rmks1_cfg_len"), "9,0,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(options.value("Rmks2_cfg_len"), "4,3,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(layout.cell(1, 0), "ｺﾝﾃｽﾄ");
    EXPECT_EQ(layout.cell(2, 1), "OP %");
    EXPECT_EQ(layout.slot(3), "9");
    EXPECT_EQ(layout.slot(0), "4");
    EXPECT_EQ(layout.slot(7), "3");
    EXPECT_FALSE(layout.use(1).used[2]);
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.001"));
    EXPECT_FALSE(model.open());
}

TEST_F(RirekiSel, DeleteRewritesTheFileWithTheVerHeader)
{
    model.click(0);
    model.cmdDel();
    EXPECT_EQ(model.list1(), (Lines{"DX"}));
    EXPECT_FALSE(model.selected().has_value());
    EXPECT_EQ(test::readBytes(dir / "Vornhale_Rireki.cfg"),
              "Vornhale_Rireki.cfg  ver 5.44\r\n" + text::encodeSjis(kLineB) + "\r\n");
    EXPECT_EQ(test::readSjisLines(dir / "Vornhale_Rireki.cfg"),
              (Lines{"Vornhale_Rireki.cfg  ver 5.44", kLineB}));
    model.cmdBack();
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.001"));
}

TEST(RirekiSelLoad, AFailedReadLeavesEmptyListsAndAShortLineKeepsTheRowsBefore)
{
    test::TempDir dir;
    Options options;
    LayoutModel layout(options);
    RirekiSelModel none(dir.path(), layout);
    none.Form_Load();
    EXPECT_TRUE(none.list1().empty());
    EXPECT_TRUE(none.list2().empty());

    test::writeSjisLines(dir / "Vornhale_Rireki.cfg", {"h", kLineB, "too,short", kLineA});
    RirekiSelModel some(dir.path(), layout);
    some.Form_Load();
    EXPECT_EQ(some.list1(), (Lines{"DX"}));
    EXPECT_NE(some.loadError(), "");
}

// --- frmKetasu -----------------------------------------------------------------------------

namespace {

struct Ketasu : ::testing::Test
{
    void SetUp() override
    {
        options.set("Rmks1_cfg", "MNG,memo=,,,,,,,,,,,");
        options.set("Rmks2_cfg", "Rcvd,,,,,,,,,,,,");
        options.set("Rmks1_cfg_len", "6,9,0,0,0,0,0,0,0,0,0,0,");
        options.set("Rmks2_cfg_len", "3,0,0,0,0,0,0,0,0,0,0,0,");
    }
    test::TempDir dir;
    Options options;
    LayoutModel layout{options};
};

} // namespace

TEST_F(Ketasu, LabelsOfTheFourteenLists)
{
    const Lines labels = {"MNG",    "$DX",   "Calls", "ｺﾝﾃｽﾄ", "memo", "mome=", "o p",
                          "o p % ", "I OTA", "Zone",  "州名",  "Rcvd", "Rmks1", "Rmks2"};
    for (std::size_t i = 0; i < labels.size(); ++i) {
        EXPECT_EQ(WidthsModel::label(i), labels[i]);
    }
    EXPECT_EQ(WidthsModel::valueAt(0), 60);
    EXPECT_EQ(WidthsModel::valueAt(60), 0);
}

TEST_F(Ketasu, LoadDrawsTheLayoutAndSelectsSixtyMinusEachSlot)
{
    WidthsModel w(layout);
    w.Form_Load("ALL JA コンテスト");
    EXPECT_EQ(w.lblCont_name_h(), "ALL JA コンテスト");
    EXPECT_EQ(w.listIndex(0), 54u);
    EXPECT_EQ(w.lblLen(0), "6");
    EXPECT_EQ(w.listIndex(11), 57u);
    // An empty slot reads as 0.
    EXPECT_EQ(w.listIndex(1), 60u);
    EXPECT_EQ(w.lblLen(1), "0");
    // "memo=" never gets its slot.
    EXPECT_EQ(w.lblLen(5), "0");
    w.cmdSet_name();
    EXPECT_EQ(w.txtName(), "ALL JA コンテスト");
}

TEST_F(Ketasu, ASlotAboveSixtyHasNoListPositionAndIsRefused)
{
    base::Trace trace(dir / "log");
    options.set("Rmks1_cfg_len", "61,9,0,0,0,0,0,0,0,0,0,0,");
    options.set("Rmks2_cfg_len", "-1,0,0,0,0,0,0,0,0,0,0,0,");
    WidthsModel w(layout, nullptr, &trace);
    w.Form_Load("");
    EXPECT_FALSE(w.listIndex(0).has_value());
    EXPECT_EQ(w.lblLen(0), "");
    EXPECT_FALSE(w.listIndex(11).has_value());
    // The other lists went on.
    EXPECT_EQ(w.listIndex(2), 60u);
    EXPECT_EQ(test::readSjisLines(trace.path()).at(0), "エラー発生 ：　380");

    // Sixty itself is the top of the list.
    layout.setSlot(0, "60");
    w.Set_len();
    EXPECT_EQ(w.listIndex(0), 0u);
}

TEST_F(Ketasu, AClickStoresTheValueInTheSlot)
{
    WidthsModel w(layout);
    w.Form_Load("");
    EXPECT_TRUE(w.clickList(9, 58));
    EXPECT_EQ(layout.slot(9), "2");
    EXPECT_EQ(w.lblLen(9), "2");
    EXPECT_FALSE(w.clickList(9, 61));
    EXPECT_FALSE(w.clickList(14, 0));
    EXPECT_EQ(layout.slot(9), "2");
}

TEST_F(Ketasu, SetLenMainRebuildsBothWidthsKeysAndWritesTheOldOptionFile)
{
    settings::SettingsFiles files(dir.path().string() + "/", options);
    // The main window writes the old option file before a sub-window opens; the dialog
    // reads it back.
    files.ini_write_old();
    options.set("Rmks1_cfg", "");
    WidthsModel w(layout, &files);
    w.Form_Load("");
    EXPECT_EQ(options.value("Rmks1_cfg"), "MNG,memo=,,,,,,,,,,,");
    w.clickList(0, 50);
    w.cmdSet_Len_Main();
    // "memo=" writes the width looked up just before it.
    EXPECT_EQ(options.value("Rmks1_cfg_len"), "10,10,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(options.value("Rmks2_cfg_len"), "3,0,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(layout.slot(0), "10");
    EXPECT_EQ(layout.slot(5), "");
    EXPECT_TRUE(std::filesystem::exists(dir / "Vornhale.ini"));
    EXPECT_FALSE(w.open());
}

TEST_F(Ketasu, AllZeroZeroesEverySlotAndTransfers)
{
    WidthsModel w(layout);
    w.Form_Load("");
    w.cmdAll_Zero();
    for (std::size_t i = 0; i < LayoutModel::kItems; ++i) {
        EXPECT_EQ(layout.slot(i), "0");
        EXPECT_EQ(w.listIndex(i), 60u);
        EXPECT_EQ(w.lblLen(i), "0");
    }
    EXPECT_EQ(options.value("Rmks1_cfg_len"), kZeros);
    EXPECT_EQ(options.value("Rmks2_cfg_len"), kZeros);
}

TEST_F(Ketasu, SaveTwoAppendsALayoutLineOfFortyNineFields)
{
    test::writeSjisLines(dir / "Vornhale_Rireki.cfg", {LayoutHistory::header(), kLineA});
    WidthsModel w(layout);
    w.Form_Load("");
    w.setTxtName("履歴");
    const std::string line = w.cmdSave2(dir.path());
    EXPECT_EQ(line, "履歴,MNG,memo=,,,,,,,,,,,Rcvd,,,,,,,,,,,,6,6,0,0,0,0,0,0,0,0,0,0,"
                    "3,0,0,0,0,0,0,0,0,0,0,0");
    EXPECT_EQ(options.value("Rmks2_cfg_len"), "3,0,0,0,0,0,0,0,0,0,0,0");
    EXPECT_EQ(test::readBytes(dir / "Vornhale_Rireki.cfg"),
              "Vornhale_Rireki.cfg  5.44\r\n" + text::encodeSjis(kLineA) + "\r\n" +
                  "\x97\x9a\x97\xf0,MNG,memo=,,,,,,,,,,,Rcvd,,,,,,,,,,,,6,6,0,0,0,0,0,0,0,0,0,0,"
                  "3,0,0,0,0,0,0,0,0,0,0,0\r\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale_rireki.001"));
    const auto t = LayoutHistory::read(dir / "Vornhale_Rireki.cfg");
    EXPECT_EQ(t.error, "");
    ASSERT_EQ(t.rows.size(), 2u);
    EXPECT_EQ(t.rows[1][26], "6");
}

TEST_F(Ketasu, SaveTwoTwiceWithTheSameNameMakesTwoRows)
{
    WidthsModel w(layout);
    w.Form_Load("");
    w.setTxtName("同じ");
    w.cmdSave2(dir.path());
    w.cmdSave2(dir.path());
    const auto lines = test::readSjisLines(dir / "Vornhale_Rireki.cfg");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Vornhale_Rireki.cfg  5.44");
    EXPECT_EQ(lines[1], lines[2]);
    const auto t = LayoutHistory::read(dir / "Vornhale_Rireki.cfg");
    ASSERT_EQ(t.rows.size(), 2u);
    EXPECT_EQ(t.rows[0][0], "同じ");
}

TEST_F(Ketasu, SaveTwoWithABlankNameStoresAnEmptyName)
{
    WidthsModel w(layout);
    w.Form_Load("");
    w.setTxtName("   ");
    const std::string line = w.cmdSave2(dir.path());
    EXPECT_EQ(line.substr(0, 5), ",MNG,");
    // The rewrite of the history drops such a row.
    const auto t = LayoutHistory::read(dir / "Vornhale_Rireki.cfg");
    ASSERT_EQ(t.rows.size(), 1u);
    LayoutHistory::save_rireki(dir / "Vornhale_Rireki.cfg", t.rows);
    EXPECT_EQ(test::readSjisLines(dir / "Vornhale_Rireki.cfg"),
              (Lines{"Vornhale_Rireki.cfg  ver 5.44"}));
}
