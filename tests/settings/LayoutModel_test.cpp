#include "settings/LayoutModel.h"
#include "settings/SettingsFiles.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace vornhale;
using settings::LayoutModel;
using settings::Options;

namespace {

const std::string kZeros = "0,0,0,0,0,0,0,0,0,0,0,0,";

Options keys(const std::string& r1, const std::string& r2, const std::string& l1,
             const std::string& l2)
{
    Options o;
    o.set("Rmks1_cfg", r1);
    o.set("Rmks2_cfg", r2);
    o.set("Rmks1_cfg_len", l1);
    o.set("Rmks2_cfg_len", l2);
    return o;
}

std::string row(const LayoutModel& m, int r)
{
    std::string s;
    for (const auto& c : m.cells(r)) {
        s += c + ",";
    }
    return s;
}

} // namespace

TEST(LayoutModel, PaletteHasFourteenItemsWithTheirInternalNames)
{
    const std::vector<std::pair<std::string, std::string>> palette = {
        {"MNG", "MNG"},    {"$DX", "$DX"},     {"Calls", "Calls"}, {"ｺﾝﾃｽﾄ", "cont_name_h"},
        {"memo", "memo"},  {"memo=", "memo="}, {"OP", "OP"},       {"OP %", "OP %"},
        {"IOTA", "IOTA"},  {"Zone", "ZONE"},   {"州名", "s_name"}, {"Rcvd", "Rcvd"},
        {"Rmks1", "rmk1"}, {"Rmks2", "rmk2"}};
    ASSERT_EQ(palette.size(), LayoutModel::kItems);
    for (std::size_t i = 0; i < palette.size(); ++i) {
        EXPECT_EQ(LayoutModel::caption(i), palette[i].first);
        EXPECT_EQ(LayoutModel::internalName(i), palette[i].second);
        EXPECT_EQ(LayoutModel::itemOfCaption(palette[i].first), static_cast<int>(i));
        EXPECT_EQ(LayoutModel::internalNameOf(palette[i].first), palette[i].second);
        // Every item has its slot except "memo=", whose slot is looked up as "momo=".
        EXPECT_EQ(LayoutModel::slotOfCaption(palette[i].first), i == 5 ? -1 : static_cast<int>(i));
    }
    EXPECT_EQ(LayoutModel::slotOfCaption("momo="), 5);
    EXPECT_EQ(LayoutModel::itemOfCaption("zone"), -1);
    EXPECT_EQ(LayoutModel::slotOfCaption(""), -1);
}

TEST(LayoutModel, DrawingFillsCellsAndSlotsFromTheKeys)
{
    Options o = keys(" MNG ,$DX,,Zone,,,,,,,,,", "Rcvd,, OP % ,,,,,,,,,,",
                     " 6 ,0,9,2,0,0,0,0,0,0,0,0,", "3,7,4,0,0,0,0,0,0,0,0,0,");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    EXPECT_EQ(row(m, 1), "MNG,$DX,,Zone,,,,,,,,,");
    EXPECT_EQ(row(m, 2), "Rcvd,,OP %,,,,,,,,,,");
    EXPECT_EQ(m.slot(0), "6");
    EXPECT_EQ(m.slot(9), "2");
    EXPECT_EQ(m.slot(11), "3");
    EXPECT_EQ(m.slot(7), "4");
    // A width of an empty cell belongs to no item.
    EXPECT_EQ(m.slot(2), "");
    // Drawing leaves the keys as they were.
    EXPECT_EQ(o.value("Rmks1_cfg"), " MNG ,$DX,,Zone,,,,,,,,,");
}

TEST(LayoutModel, DrawingTurnsAnEmptyFirstWidthsKeyIntoTwelveZeros)
{
    Options o = keys("MNG,,,,,,,,,,,,", "OP,,,,,,,,,,,,", "", "");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    EXPECT_EQ(o.value("Rmks1_cfg_len"), kZeros);
    EXPECT_EQ(m.slot(0), "0");
    // Only the first list gets zeros; the second stays empty.
    EXPECT_EQ(o.value("Rmks2_cfg_len"), "");
    EXPECT_EQ(m.slot(6), "");
}

TEST(LayoutModel, DrawingIgnoresEntriesBeyondTheTwelfthAndFillsMissingOnesEmpty)
{
    Options o = keys("MNG,,,,,,,,,,,,OP,Rcvd", "IOTA", "1,2", "5");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    EXPECT_EQ(row(m, 1), "MNG,,,,,,,,,,,,");
    EXPECT_EQ(row(m, 2), "IOTA,,,,,,,,,,,,");
    EXPECT_EQ(m.slot(8), "5");
    EXPECT_FALSE(m.use(1).used[6]);
}

TEST(LayoutModel, UseChecksRecordItemsNamesAndIndexesPerRow)
{
    Options o = keys("ｺﾝﾃｽﾄ,,Zone,,,,,,,,,,", "州名,,,,,,,,,,,Rmks2,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    const auto& u1 = m.use(1);
    EXPECT_TRUE(u1.used[3]);
    EXPECT_TRUE(u1.used[9]);
    EXPECT_FALSE(u1.used[10]);
    EXPECT_EQ(u1.name[0], "cont_name_h");
    EXPECT_EQ(u1.name[2], "ZONE");
    EXPECT_EQ(u1.name[1], "");
    EXPECT_EQ(u1.index[9], 9);
    EXPECT_EQ(u1.index[10], 0);
    const auto& u2 = m.use(2);
    EXPECT_TRUE(u2.used[10]);
    EXPECT_EQ(u2.name[0], "s_name");
    EXPECT_EQ(u2.name[11], "rmk2");
    EXPECT_EQ(u2.index[13], 13);

    m.lblRmks1_flag_Clear();
    EXPECT_FALSE(m.use(1).used[3]);
    EXPECT_EQ(m.use(1).name[0], "");
    EXPECT_TRUE(m.use(2).used[10]);
    m.lblRmks2_flag_Clear();
    EXPECT_FALSE(m.use(2).used[10]);
    m.lblRmks1_use_name_Check();
    EXPECT_TRUE(m.use(1).used[3]);
}

TEST(LayoutModel, PaletteHighlightsItemsOfEitherRowButNeverTheLastItem)
{
    Options o = keys("MNG,,,,,,,,,,,,", "Rcvd,Rmks2,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    EXPECT_TRUE(m.highlighted(0));
    EXPECT_TRUE(m.highlighted(11));
    EXPECT_FALSE(m.highlighted(1));
    EXPECT_TRUE(m.use(2).used[13]);
    EXPECT_FALSE(m.highlighted(13));
}

TEST(LayoutModel, DroppingMemoEmptiesMemoEqualsInBothRows)
{
    Options o = keys("memo=,MNG,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.dropFromPalette(4, 2, 3);
    EXPECT_EQ(row(m, 1), ",MNG,,,,,,,,,,,");
    EXPECT_EQ(row(m, 2), "Rcvd,,,memo,,,,,,,,,");
    EXPECT_FALSE(m.use(1).used[5]);
    EXPECT_TRUE(m.use(2).used[4]);

    // And the other way round, within the same row.
    m.dropFromPalette(5, 2, 0);
    EXPECT_EQ(row(m, 2), "memo=,,,,,,,,,,,,");
}

TEST(LayoutModel, OpAndOpPercentExcludeEachOther)
{
    Options o = keys("OP,,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.dropFromPalette(7, 2, 5);
    EXPECT_EQ(row(m, 1), ",,,,,,,,,,,,");
    EXPECT_EQ(row(m, 2), ",,,,,OP %,,,,,,,");
    m.dropFromPalette(6, 1, 11);
    EXPECT_EQ(row(m, 1), ",,,,,,,,,,,OP,");
    EXPECT_EQ(row(m, 2), ",,,,,,,,,,,,");
}

TEST(LayoutModel, AnItemStandsOnceInTheWholeLayout)
{
    Options o = keys("MNG,Zone,,,,,,,,,,,", "Zone,,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.dropFromPalette(9, 1, 6);
    EXPECT_EQ(row(m, 1), "MNG,,,,,,Zone,,,,,,");
    EXPECT_EQ(row(m, 2), ",,,,,,,,,,,,");
}

TEST(LayoutModel, DroppingOnAFilledCellReplacesItsItemWhichLeavesTheLayout)
{
    Options o = keys("MNG,$DX,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.dropFromPalette(8, 1, 1);
    EXPECT_EQ(row(m, 1), "MNG,IOTA,,,,,,,,,,,");
    EXPECT_FALSE(m.use(1).used[1]);
    EXPECT_FALSE(m.use(2).used[1]);
    EXPECT_FALSE(m.highlighted(1));
    EXPECT_TRUE(m.highlighted(8));
}

TEST(LayoutModel, MovingACellEmptiesItsSourceInEitherRow)
{
    Options o = keys("MNG,$DX,,,,,,,,,,,", "Rcvd,OP,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.dropFromCell(1, 0, 2, 4);
    EXPECT_EQ(row(m, 1), ",$DX,,,,,,,,,,,");
    EXPECT_EQ(row(m, 2), "Rcvd,OP,,,MNG,,,,,,,,");
    m.dropFromCell(2, 1, 1, 0);
    EXPECT_EQ(row(m, 1), "OP,$DX,,,,,,,,,,,");
    EXPECT_EQ(row(m, 2), "Rcvd,,,,MNG,,,,,,,,");
    // A cell moved onto another cell of its own row replaces that cell's item.
    m.dropFromCell(2, 0, 2, 4);
    EXPECT_EQ(row(m, 2), ",,,,Rcvd,,,,,,,,");
    EXPECT_FALSE(m.use(2).used[0]);
}

TEST(LayoutModel, ACellDroppedOnItselfIsEmptied)
{
    Options o = keys("MNG,$DX,,,,,,,,,,,", kZeros, kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.dropFromCell(1, 1, 1, 1);
    EXPECT_EQ(row(m, 1), "MNG,,,,,,,,,,,,");
}

TEST(LayoutModel, DropsOutsideThePaletteOrTheRowsDoNothing)
{
    Options o = keys("MNG,,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.dropFromPalette(14, 1, 0);
    m.dropFromPalette(0, 1, 12);
    m.dropFromPalette(0, 3, 0);
    m.dropFromCell(1, 12, 1, 0);
    m.dropFromCell(0, 0, 1, 1);
    EXPECT_EQ(row(m, 1), "MNG,,,,,,,,,,,,");
    EXPECT_EQ(row(m, 2), ",,,,,,,,,,,,");
}

TEST(LayoutModel, StateNameWithProvinceLookupOnTurnsTheCellRedAndSaysSo)
{
    Options o = keys("MNG,,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, kZeros);
    o.set("Check5", "1");
    test::RecordingObserver observer;
    LayoutModel m(o, nullptr, &observer);
    m.Disp_Rmks_cfg_bas();
    m.dropFromPalette(10, 2, 3);
    EXPECT_TRUE(m.red(2, 3));
    EXPECT_FALSE(m.red(1, 0));
    EXPECT_EQ(m.lblShori(), "州名 又は Province のどちらかにして下さい。");
    ASSERT_EQ(observer.statuses.size(), 1u);
    EXPECT_EQ(observer.statuses[0].first, "州名 又は Province のどちらかにして下さい。");
    EXPECT_EQ(observer.statuses[0].second, base::Colour::Red);

    // Another item in that cell takes the red away; the status stays until cleared.
    m.dropFromPalette(0, 2, 3);
    EXPECT_FALSE(m.red(2, 3));
    EXPECT_EQ(m.lblShori(), std::string(LayoutModel::kStateOrProvince));
    m.clearStatus();
    EXPECT_EQ(m.lblShori(), "");
}

TEST(LayoutModel, StateNameWithProvinceLookupOffIsNotReported)
{
    Options o = keys("MNG,,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, kZeros);
    o.set("Check5", "0");
    test::RecordingObserver observer;
    LayoutModel m(o, nullptr, &observer);
    m.dropFromPalette(10, 1, 2);
    EXPECT_FALSE(m.red(1, 2));
    EXPECT_EQ(m.lblShori(), "");
    EXPECT_TRUE(observer.statuses.empty());
}

TEST(LayoutModel, EveryDropRebuildsTablesAndWritesTheOldOptionFile)
{
    test::TempDir dir;
    Options o = keys("MNG,,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", "6,0,0,0,0,0,0,0,0,0,0,0,", kZeros);
    settings::SettingsFiles files(dir.path().string() + "/", o);
    LayoutModel m(o, &files);
    m.Disp_Rmks_cfg_bas();
    ASSERT_FALSE(std::filesystem::exists(dir / "Vornhale.ini"));
    m.dropFromPalette(1, 1, 1);
    EXPECT_TRUE(std::filesystem::exists(dir / "Vornhale.ini"));
    EXPECT_EQ(files.currentFile(), "Vornhale.ini");
    EXPECT_NE(test::readBytes(dir / "Vornhale.ini").find("Rmks1_cfg=MNG,,,,,,,,,,,,"),
              std::string::npos);
    // The tables follow the keys, which a drop does not rewrite.
    EXPECT_EQ(m.tableNames(1)[0], "MNG");
    EXPECT_EQ(m.tableNames(1)[1], "");
    EXPECT_EQ(m.tableWidths(1)[0], "6");
    EXPECT_EQ(row(m, 1), "MNG,$DX,,,,,,,,,,,");
}

TEST(LayoutModel, EmptyKeysResetToTheDefaultLayoutWithZeroWidths)
{
    const std::vector<Options> emptied = {
        keys("", "OP,,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,", "4,0,0,0,0,0,0,0,0,0,0,0,"),
        keys("OP,,,,,,,,,,,,", "", "3,0,0,0,0,0,0,0,0,0,0,0,", "4,0,0,0,0,0,0,0,0,0,0,0,"),
        keys("OP,,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", "", "4,0,0,0,0,0,0,0,0,0,0,0,"),
    };
    for (Options o : emptied) {
        LayoutModel m(o);
        m.Set_Rmks_Len();
        EXPECT_EQ(o.value("Rmks1_cfg"), "MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,");
        EXPECT_EQ(o.value("Rmks2_cfg"), "Rcvd,memo=,,,,,,,,,,,");
        EXPECT_EQ(o.value("Rmks1_cfg_len"), kZeros);
        EXPECT_EQ(o.value("Rmks2_cfg_len"), kZeros);
        EXPECT_EQ(m.tableNames(1)[2], "Rmks1");
        EXPECT_EQ(m.tableNames(2)[1], "memo=");
        EXPECT_EQ(m.tableNames(2)[2], "");
        EXPECT_EQ(m.tableWidths(1)[0], "0");
    }

    // An empty second widths key alone does not reset.
    Options kept = keys("OP,,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,", "");
    LayoutModel m(kept);
    m.Set_Rmks_Len();
    EXPECT_EQ(kept.value("Rmks1_cfg"), "OP,,,,,,,,,,,,");
    EXPECT_EQ(m.tableWidths(1)[0], "3");
    EXPECT_EQ(m.tableWidths(2)[0], "");
}

TEST(LayoutModel, TablesTakeTheTrimmedEntriesOfTheKeys)
{
    Options o =
        keys(" MNG , OP % ,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", " 6 ,2,0,0,0,0,0,0,0,0,0,0,", kZeros);
    LayoutModel m(o);
    m.Set_Rmks_Len();
    EXPECT_EQ(m.tableNames(1)[0], "MNG");
    EXPECT_EQ(m.tableNames(1)[1], "OP %");
    EXPECT_EQ(m.tableWidths(1)[0], "6");
}

TEST(LayoutModel, DragWidthResetsWithASixAndLooksUpTheCellPosition)
{
    Options empty = keys("", "", "", "");
    LayoutModel reset(empty);
    reset.Disp_Rmks_cfg_bas();
    EXPECT_EQ(reset.dragWidth("MNG"), "");
    EXPECT_EQ(empty.value("Rmks1_cfg"), "MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,");
    EXPECT_EQ(empty.value("Rmks1_cfg_len"), "6,0,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(empty.value("Rmks2_cfg_len"), kZeros);

    Options o = keys("MNG,,Zone,,,,,,,,,,", "Rcvd,memo=,,,,,,,,,,,", "6,0,3,0,0,0,0,0,0,0,0,0,",
                     "1,8,0,0,0,0,0,0,0,0,0,0,");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    EXPECT_EQ(m.dragWidth("Zone"), "3");
    EXPECT_EQ(m.lastWidth(), "3");
    // "memo=" has no slot, but the drag lookup goes by cell position.
    EXPECT_EQ(m.dragWidth("memo="), "8");
    EXPECT_EQ(m.lastWidth(), "8");
    EXPECT_EQ(m.dragWidth("OP"), "");
    EXPECT_EQ(m.lastWidth(), "8");
}

TEST(LayoutModel, SortingPacksARowAndRebuildsItsKeysFromTheSlots)
{
    Options o = keys(",MNG,,Rcvd,,Zone,,,,,,,", ",,,,,,,,,,,州名,", "0,6,0,4,0,2,0,0,0,0,0,0,",
                     "0,0,0,0,0,0,0,0,0,0,0,5,");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.Sort_2();
    EXPECT_EQ(row(m, 1), "MNG,Rcvd,Zone,,,,,,,,,,");
    EXPECT_EQ(o.value("Rmks1_cfg"), "MNG,Rcvd,Zone,,,,,,,,,,");
    EXPECT_EQ(o.value("Rmks1_cfg_len"), "6,4,2,0,0,0,0,0,0,0,0,0,");
    EXPECT_TRUE(m.sorted(1));
    EXPECT_FALSE(m.sorted(2));
    // Row 2 is untouched until its own sort.
    EXPECT_EQ(o.value("Rmks2_cfg"), ",,,,,,,,,,,州名,");
    m.Sort_3();
    EXPECT_EQ(o.value("Rmks2_cfg"), "州名,,,,,,,,,,,,");
    EXPECT_EQ(o.value("Rmks2_cfg_len"), "5,0,0,0,0,0,0,0,0,0,0,0,");
    // Set_Rmks_Len followed: the tables hold the packed keys.
    EXPECT_EQ(m.tableNames(1)[2], "Zone");
    EXPECT_EQ(m.tableWidths(2)[0], "5");
}

TEST(LayoutModel, AnEmptyRowSortsToTwelveEmptyEntries)
{
    Options o = keys("MNG,,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, "9,9,9,9,9,9,9,9,9,9,9,9,");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.Sort_3();
    EXPECT_EQ(o.value("Rmks2_cfg"), ",,,,,,,,,,,,");
    EXPECT_EQ(o.value("Rmks2_cfg_len"), kZeros);
}

TEST(LayoutModel, SortingTwiceChangesNothingAndRedoRestoresTheFirstArrangement)
{
    Options o = keys(",MNG,,Rcvd,,,,,,,,,", ",,OP,,,IOTA,,,,,,,", "0,6,0,4,0,0,0,0,0,0,0,0,",
                     "0,0,2,0,0,1,0,0,0,0,0,0,");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.Sort_2();
    m.Sort_3();
    const std::string r1 = row(m, 1), r2 = row(m, 2);
    const std::string k1 = o.value("Rmks1_cfg"), w1 = o.value("Rmks1_cfg_len");
    const std::string k2 = o.value("Rmks2_cfg"), w2 = o.value("Rmks2_cfg_len");
    m.Sort_2();
    m.Sort_3();
    m.Rmks_Sort();
    EXPECT_EQ(row(m, 1), r1);
    EXPECT_EQ(row(m, 2), r2);
    EXPECT_EQ(o.value("Rmks1_cfg"), k1);
    EXPECT_EQ(o.value("Rmks1_cfg_len"), w1);
    EXPECT_EQ(o.value("Rmks2_cfg"), k2);
    EXPECT_EQ(o.value("Rmks2_cfg_len"), w2);

    m.ReDo_2();
    m.ReDo_3();
    EXPECT_EQ(row(m, 1), ",MNG,,Rcvd,,,,,,,,,");
    EXPECT_EQ(row(m, 2), ",,OP,,,IOTA,,,,,,,");
    EXPECT_FALSE(m.sorted(1));
    EXPECT_FALSE(m.sorted(2));
    EXPECT_TRUE(m.use(2).used[8]);
}

TEST(LayoutModel, RmksSortSortsOnlyRowsWhoseFlagIsClear)
{
    Options o = keys(",MNG,,,,,,,,,,,", ",OP,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.Sort_2();
    // A later edit of the sorted row is left alone by Rmks_Sort.
    m.dropFromPalette(1, 1, 4);
    m.Rmks_Sort();
    EXPECT_EQ(row(m, 1), "MNG,,,,$DX,,,,,,,,");
    EXPECT_EQ(row(m, 2), "OP,,,,,,,,,,,,");
    EXPECT_TRUE(m.sorted(2));
}

TEST(LayoutModel, RedoOfARowNeverSortedLeavesItAlone)
{
    Options o = keys(",MNG,,,,,,,,,,,", ",OP,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.ReDo_2();
    EXPECT_EQ(row(m, 1), ",MNG,,,,,,,,,,,");
}

TEST(LayoutModel, MemoEqualsGetsTheWidthLookedUpLast)
{
    Options o =
        keys("Rcvd,memo=,OP,,,,,,,,,,", "memo,,,,,,,,,,,,", "5,9,2,0,0,0,0,0,0,0,0,0,", kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    // Its own width never reaches a slot.
    EXPECT_EQ(m.slot(5), "");
    m.Sort_2();
    EXPECT_EQ(o.value("Rmks1_cfg_len"), "5,5,2,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(m.lastWidth(), "2");

    // First in a row, it takes what the lookup before left behind.
    Options first = keys("memo=,Rcvd,,,,,,,,,,,", "Zone,,,,,,,,,,,,", "9,4,0,0,0,0,0,0,0,0,0,0,",
                         "3,0,0,0,0,0,0,0,0,0,0,0,");
    LayoutModel f(first);
    f.Disp_Rmks_cfg_bas();
    f.Sort_3();
    f.Sort_2();
    EXPECT_EQ(first.value("Rmks1_cfg_len"), "3,4,0,0,0,0,0,0,0,0,0,0,");

    // The same holds for the keys written by the widths routines.
    EXPECT_EQ(f.widthsFromCells(1, 3), "4,4,0,");
}

TEST(LayoutModel, MemoEqualsTakesTheWidthLookedUpJustBeforeItRowOneThenRowTwo)
{
    Options o = keys(",Rcvd,,,,,,memo=,,,,,", ",Calls,Rcvd,,,,,ｺﾝﾃｽﾄ,,,,memo=,",
                     "0,4,0,0,0,0,0,9,0,0,0,0,", "0,2,4,0,0,0,0,7,0,0,0,5,");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    m.Sort_2();
    EXPECT_EQ(o.value("Rmks1_cfg_len"), "4,4,0,0,0,0,0,0,0,0,0,0,");
    m.Sort_3();
    EXPECT_EQ(o.value("Rmks2_cfg"), "Calls,Rcvd,ｺﾝﾃｽﾄ,memo=,,,,,,,,,");
    EXPECT_EQ(o.value("Rmks2_cfg_len"), "2,4,7,7,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(m.tableWidths(1)[1], "4");
    EXPECT_EQ(m.tableWidths(2)[3], "7");
}

TEST(LayoutModel, WidthsAndNamesFromCells)
{
    Options o = keys("MNG,,memo=,ｺﾝﾃｽﾄ,,,,,,,,,", kZeros, "6,0,0,12,0,0,0,0,0,0,0,0,", kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    EXPECT_EQ(m.namesFromCells(1, 12), "MNG,,memo=,ｺﾝﾃｽﾄ,,,,,,,,,");
    EXPECT_EQ(m.namesFromCells(1, 4), "MNG,,memo=,ｺﾝﾃｽﾄ,");
    EXPECT_EQ(m.widthsFromCells(1, 12), "6,0,6,12,0,0,0,0,0,0,0,0,");
}

// --- Vornhale.cfg ----------------------------------------------------------------------------

namespace {

std::vector<std::string> ownLines()
{
    std::vector<std::string> lines;
    for (int i = 1; i <= 21; ++i) {
        lines.push_back("' 説明 " + std::to_string(i));
    }
    return lines;
}

} // namespace

TEST(LayoutModel, SetLenOkWritesNineCellsOfEachRowBehindTheOwnLines)
{
    test::TempDir dir;
    // Own lines are kept byte for byte, an undecodable byte included.
    std::string own;
    for (int i = 1; i <= 20; ++i) {
        own += "' line " + std::to_string(i) + "\r\n";
    }
    own += "' \x8f\x42\x96\xbc \xff\r\n";
    test::writeBytes(dir / "Vornhale.cfg",
                     own + "'old1\r\n'old2\r\n'old3\r\n'old4\r\nend of file\r\n");

    Options o = keys("MNG,$DX,,,,,,,,,Rmks1,Zone,", "州名,,,,,,,,ｺﾝﾃｽﾄ,Rcvd,,,",
                     "6,0,0,0,0,0,0,0,0,0,4,2,", "3,0,0,0,0,0,0,0,7,1,0,0,");
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    test::RecordingDialogs dialogs;
    ASSERT_TRUE(m.cmdSet_Len_OK_Click(dir.path(), dialogs));
    EXPECT_TRUE(dialogs.shown.empty());

    EXPECT_EQ(o.value("Rmks1_cfg"), "MNG,$DX,,,,,,,,");
    EXPECT_EQ(o.value("Rmks1_cfg_len"), "6,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(o.value("Rmks2_cfg"), "州名,,,,,,,,ｺﾝﾃｽﾄ,");
    EXPECT_EQ(o.value("Rmks2_cfg_len"), "3,0,0,0,0,0,0,0,7,");
    EXPECT_EQ(test::readBytes(dir / "Vornhale.cfg"),
              own + "'MNG,$DX,,,,,,,,\r\n"
                    "'\x8f\x42\x96\xbc,,,,,,,,\xba\xdd\xc3\xbd\xc4,\r\n"
                    "'6,0,0,0,0,0,0,0,0,\r\n"
                    "'3,0,0,0,0,0,0,0,7,\r\n"
                    "end of file\r\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.100"));
}

TEST(LayoutModel, SetLenOkCopiesOnlyTheFirstTwentyOneLines)
{
    test::TempDir dir;
    auto lines = ownLines();
    lines.push_back("extra line that goes");
    test::writeSjisLines(dir / "Vornhale.cfg", lines);
    Options o = keys(",,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    test::RecordingDialogs dialogs;
    ASSERT_TRUE(m.cmdSet_Len_OK_Click(dir.path(), dialogs));
    auto expected = ownLines();
    expected.insert(expected.end(), {"',,,,,,,,,", "',,,,,,,,,", "'0,0,0,0,0,0,0,0,0,",
                                     "'0,0,0,0,0,0,0,0,0,", "end of file"});
    EXPECT_EQ(test::readSjisLines(dir / "Vornhale.cfg"), expected);
}

TEST(LayoutModel, SetLenOkReportsAMissingOrShortFileAndLeavesItAlone)
{
    test::TempDir dir;
    Options o = keys("MNG,,,,,,,,,,,,", "OP,,,,,,,,,,,,", kZeros, kZeros);
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();

    test::RecordingDialogs dialogs;
    EXPECT_FALSE(m.cmdSet_Len_OK_Click(dir.path(), dialogs));
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text, "Vornhale.ｃｆｇ が不良です。\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.cfg"));
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.100"));
    // The keys were rebuilt before the file was touched.
    EXPECT_EQ(o.value("Rmks1_cfg"), "MNG,,,,,,,,,");

    auto shortLines = ownLines();
    shortLines.pop_back();
    test::writeSjisLines(dir / "Vornhale.cfg", shortLines);
    const std::string before = test::readBytes(dir / "Vornhale.cfg");
    EXPECT_FALSE(m.cmdSet_Len_OK_Click(dir.path(), dialogs));
    EXPECT_EQ(dialogs.shown.size(), 2u);
    EXPECT_EQ(test::readBytes(dir / "Vornhale.cfg"), before);
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.100"));
}

TEST(LayoutModel, BundledLayoutFileTakesTheWrite)
{
    test::TempDir dir;
    std::filesystem::copy_file(test::sourceDir() / "data/seed/Vornhale.cfg", dir / "Vornhale.cfg");
    const auto seed = test::readSjisLines(dir / "Vornhale.cfg");
    ASSERT_EQ(seed.size(), 26u);
    EXPECT_EQ(seed[21], "'MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,");
    EXPECT_EQ(seed[25], "end of file");
    Options o = Options::defaults();
    LayoutModel m(o);
    m.Disp_Rmks_cfg_bas();
    test::RecordingDialogs dialogs;
    ASSERT_TRUE(m.cmdSet_Len_OK_Click(dir.path(), dialogs));
    const auto after = test::readSjisLines(dir / "Vornhale.cfg");
    ASSERT_EQ(after.size(), 26u);
    EXPECT_EQ(std::vector<std::string>(after.begin(), after.begin() + 21),
              std::vector<std::string>(seed.begin(), seed.begin() + 21));
    EXPECT_EQ(after[21], "'ｺﾝﾃｽﾄ,,,,,,,,,");
    EXPECT_EQ(after[22], "'MNG,$DX,,,,,,,,");
}
