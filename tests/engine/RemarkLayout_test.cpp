#include "engine/RemarkLayout.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using namespace vornhale;
using engine::RemarkLayout;
using Words = std::vector<std::string>;
using Widths = std::vector<int>;

namespace {

const std::string kZeros = "0,0,0,0,0,0,0,0,0,0,0,0,";
const std::string kEmptyRow = ",,,,,,,,,,,,";

RemarkLayout layoutOf(const std::string& r1, const std::string& r2, const std::string& l1,
                      const std::string& l2)
{
    auto o = settings::Options::defaults();
    o.set("Rmks1_cfg", r1);
    o.set("Rmks2_cfg", r2);
    o.set("Rmks1_cfg_len", l1);
    o.set("Rmks2_cfg_len", l2);
    return RemarkLayout::fromOptions(o);
}

} // namespace

TEST(RemarkLayout, FirstStartDefaultsGiveTheContestItemAndTheManagerRow)
{
    const auto l = RemarkLayout::fromOptions(settings::Options::defaults());
    EXPECT_EQ(l.row1(), (Words{"cont_name_h"}));
    EXPECT_EQ(l.row2(), (Words{"MNG", "$DX"}));
    EXPECT_EQ(l.cellWidths1(), (Widths{0}));
    EXPECT_EQ(l.cellWidths2(), (Widths{0, 0}));
    EXPECT_EQ(l.total_width(), 0);
    EXPECT_FALSE(l.anyWidth());
    const auto u = l.use();
    EXPECT_FALSE(u.memo || u.memoEquals || u.op || u.opPercent || u.iota || u.zone || u.state ||
                 u.calls);
    EXPECT_EQ(l.callsInRow1(), 0);
    EXPECT_EQ(l.callsInRow2(), 0);
}

TEST(RemarkLayout, MapsEachDisplayWordToItsWorkingWord)
{
    const std::vector<std::pair<std::string, std::string>> table = {
        {"MNG", "MNG"},        {"$DX", "$DX"},   {"Calls", "Calls"}, {"ｺﾝﾃｽﾄ", "cont_name_h"},
        {"memo", "memo"},      {"memo=", "memo="}, {"OP", "OP"},     {"OP %", "OP %"},
        {"IOTA", "IOTA"},      {"Zone", "ZONE"}, {"州名", "s_name"},  {"Rcvd", "Rcvd"},
        {"Rmks1", "rmk1"},     {"Rmks2", "rmk2"}, {"zone", "zone"},  {"xyz", "xyz"},
        {"", ""},
    };
    for (const auto& [display, working] : table) {
        EXPECT_EQ(RemarkLayout::workingWord(display), working) << display;
    }
}

TEST(RemarkLayout, AnyEmptyLayoutKeyButTheSecondWidthsResetsToTheDefaultLayout)
{
    const std::vector<std::array<std::string, 4>> emptied = {
        {"", "Rcvd,,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,", kZeros},
        {"OP,,,,,,,,,,,,", "", "3,0,0,0,0,0,0,0,0,0,0,0,", kZeros},
        {"OP,,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", "", "3,0,0,0,0,0,0,0,0,0,0,0,"},
    };
    for (const auto& keys : emptied) {
        const auto l = layoutOf(keys[0], keys[1], keys[2], keys[3]);
        EXPECT_EQ(l.row1(), (Words{"MNG", "$DX", "rmk1", "ZONE", "IOTA"}));
        EXPECT_EQ(l.row2(), (Words{"Rcvd", "memo="}));
        EXPECT_EQ(l.Rmks1_cfg(), "MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,");
        EXPECT_EQ(l.Rmks2_cfg(), "Rcvd,memo=,,,,,,,,,,,");
        EXPECT_EQ(l.Rmks1_cfg_len(), kZeros);
        EXPECT_EQ(l.Rmks2_cfg_len(), kZeros);
        EXPECT_EQ(l.total_width(), 0);
        EXPECT_TRUE(l.use().zone);
        EXPECT_TRUE(l.use().iota);
        EXPECT_TRUE(l.use().memoEquals);
        EXPECT_FALSE(l.use().memo);
    }

    // An empty second widths list alone keeps the layout; its items read width 0.
    const auto kept =
        layoutOf("OP,,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,", "");
    EXPECT_EQ(kept.row1(), (Words{"OP"}));
    EXPECT_EQ(kept.row2(), (Words{"Rcvd"}));
    EXPECT_EQ(kept.widthOf("OP"), 3);
    EXPECT_EQ(kept.widthOf("Rcvd"), 0);
    EXPECT_EQ(kept.total_width(), 3);
}

TEST(RemarkLayout, PackingRemovesEmptyPlacesAndKeepsTheOrder)
{
    const auto l = layoutOf(",MNG,,Rcvd,,Zone,,,,,,,", ",,,,,,,,,,,州名,",
                            "0,6,0,4,0,2,0,0,0,0,0,0,", "0,0,0,0,0,0,0,0,0,0,0,5,");
    EXPECT_EQ(l.row1(), (Words{"MNG", "Rcvd", "ZONE"}));
    EXPECT_EQ(l.row2(), (Words{"s_name"}));
    EXPECT_EQ(l.Rmks1_cfg(), "MNG,Rcvd,Zone,,,,,,,,,,");
    EXPECT_EQ(l.Rmks2_cfg(), "州名,,,,,,,,,,,,");
    EXPECT_EQ(l.Rmks1_cfg_len(), "6,4,2,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.Rmks2_cfg_len(), "5,0,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.cellWidths1(), (Widths{6, 4, 2}));
    EXPECT_EQ(l.cellWidths2(), (Widths{5}));
}

TEST(RemarkLayout, TheWidthFollowsTheItemNotThePlace)
{
    const auto l = layoutOf(",,,MNG,,,,,,,,,", "OP,,,,,,,,,,,,", "9,9,9,6,9,9,9,9,9,9,9,9,",
                            "3,7,7,7,7,7,7,7,7,7,7,7,");
    EXPECT_EQ(l.widthOf("MNG"), 6);
    EXPECT_EQ(l.widthOf("OP"), 3);
    EXPECT_EQ(l.slotWidth("MNG"), 6);
    // Widths of empty cells belong to no item.
    EXPECT_EQ(l.total_width(), 9);
    EXPECT_EQ(l.Rmks1_cfg_len(), "6,0,0,0,0,0,0,0,0,0,0,0,");
}

TEST(RemarkLayout, CaptionsAndWidthsAreTrimmed)
{
    const auto l = layoutOf(" MNG ,  OP % ,,,,,,,,,,,", kEmptyRow, " 4 , 2,0,0,0,0,0,0,0,0,0,0,",
                            kZeros);
    EXPECT_EQ(l.row1(), (Words{"MNG", "OP %"}));
    EXPECT_EQ(l.widthOf("MNG"), 4);
    EXPECT_EQ(l.widthOf("OP %"), 2);
    EXPECT_EQ(l.Rmks1_cfg(), "MNG,OP %,,,,,,,,,,,");
}

TEST(RemarkLayout, AnEmptyRowPacksToTwelveEmptyCells)
{
    // The commas of the empty cells keep the name key from being blank.
    const auto l = layoutOf("MNG,,,,,,,,,,,,", kEmptyRow, kZeros, kZeros);
    EXPECT_EQ(l.Rmks2_cfg(), ",,,,,,,,,,,,");
    EXPECT_EQ(l.Rmks2_cfg_len(), kZeros);
    EXPECT_TRUE(l.row2().empty());
}

TEST(RemarkLayout, MemoEqualsGetsNoWidthSlotWhenDrawn)
{
    const auto l = layoutOf("memo=,,,,,,,,,,,,", kEmptyRow, "9,0,0,0,0,0,0,0,0,0,0,0,", kZeros);
    EXPECT_FALSE(l.slotWidth("memo=").has_value());
    // Its own width is dropped; as the first item looked up it takes the starting width.
    EXPECT_EQ(l.total_width(), 0);
    EXPECT_EQ(l.widthOf("memo="), 0);
    EXPECT_EQ(l.cellWidths1(), (Widths{0}));
    EXPECT_EQ(l.Rmks1_cfg_len(), kZeros);
}

TEST(RemarkLayout, MemoEqualsTakesTheWidthLookedUpLast)
{
    const auto l = layoutOf("Rcvd,memo=,OP,,,,,,,,,,", kEmptyRow, "5,9,2,0,0,0,0,0,0,0,0,0,",
                            kZeros);
    EXPECT_EQ(l.Rmks1_cfg_len(), "5,5,2,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.cellWidths1(), (Widths{5, 5, 2}));
    // The slot lookup has nothing for it: only its cell carries the width.
    EXPECT_EQ(l.widthOf("memo="), 0);
    // The sum counts the slots only: Rcvd and OP.
    EXPECT_EQ(l.total_width(), 7);
}

TEST(RemarkLayout, MemoEqualsFirstInTheSecondRowTakesTheLastWidthOfTheFirstRow)
{
    const auto l = layoutOf("MNG,Zone,,,,,,,,,,,", "memo=,Rcvd,,,,,,,,,,,",
                            "6,3,0,0,0,0,0,0,0,0,0,0,", "8,1,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.Rmks2_cfg_len(), "3,1,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.cellWidths2(), (Widths{3, 1}));
    EXPECT_EQ(l.total_width(), 10);
}

TEST(RemarkLayout, MemoEqualsTakesTheWidthLookedUpJustBeforeItInItsOwnRow)
{
    // Row 1 packs first, then row 2; each "memo=" cell takes the width of the item looked
    // up just before it, so the one in row 2 follows "ｺﾝﾃｽﾄ", not what row 1 found.
    const auto l = layoutOf(",Rcvd,,,,,,memo=,,,,,", ",Calls,Rcvd,,,,,ｺﾝﾃｽﾄ,,,,memo=,",
                            "0,4,0,0,0,0,0,9,0,0,0,0,", "0,2,4,0,0,0,0,7,0,0,0,5,");
    EXPECT_EQ(l.row1(), (Words{"Rcvd", "memo="}));
    EXPECT_EQ(l.row2(), (Words{"Calls", "Rcvd", "cont_name_h", "memo="}));
    EXPECT_EQ(l.cellWidths1(), (Widths{4, 4}));
    EXPECT_EQ(l.cellWidths2(), (Widths{2, 4, 7, 7}));
    EXPECT_EQ(l.Rmks1_cfg_len(), "4,4,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.Rmks2_cfg_len(), "2,4,7,7,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.cellWidths(2), l.cellWidths2());
    EXPECT_EQ(l.row(1), l.row1());
    EXPECT_THROW(l.row(3), std::out_of_range);
}

TEST(RemarkLayout, TotalWidthSumsTheSlotsOnce)
{
    // An item standing in both rows has one slot, which its last cell sets.
    const auto l = layoutOf("MNG,OP,,,,,,,,,,,", "MNG,,,,,,,,,,,,", "6,2,0,0,0,0,0,0,0,0,0,0,",
                            "4,0,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.widthOf("MNG"), 4);
    EXPECT_EQ(l.total_width(), 6);
    EXPECT_TRUE(l.anyWidth());
    EXPECT_EQ(l.Rmks1_cfg_len(), "4,2,0,0,0,0,0,0,0,0,0,0,");
}

TEST(RemarkLayout, AnItemIsUsedWhenItsCaptionStandsInEitherRow)
{
    struct Case
    {
        std::string caption;
        bool engine::LayoutUse::*flag;
    };
    const std::vector<Case> cases = {
        {"memo", &engine::LayoutUse::memo},  {"memo=", &engine::LayoutUse::memoEquals},
        {"OP", &engine::LayoutUse::op},      {"OP %", &engine::LayoutUse::opPercent},
        {"IOTA", &engine::LayoutUse::iota},  {"Zone", &engine::LayoutUse::zone},
        {"州名", &engine::LayoutUse::state}, {"Calls", &engine::LayoutUse::calls},
    };
    const std::vector<bool engine::LayoutUse::*> all = {
        &engine::LayoutUse::memo,      &engine::LayoutUse::memoEquals, &engine::LayoutUse::op,
        &engine::LayoutUse::opPercent, &engine::LayoutUse::iota,       &engine::LayoutUse::zone,
        &engine::LayoutUse::state,     &engine::LayoutUse::calls};
    for (const Case& c : cases) {
        for (int row = 0; row < 2; ++row) {
            const std::string cells = "MNG,,," + c.caption + ",,,,,,,,,";
            const auto l = row == 0 ? layoutOf(cells, "Rcvd,,,,,,,,,,,,", kZeros, kZeros)
                                    : layoutOf("Rcvd,,,,,,,,,,,,", cells, kZeros, kZeros);
            const auto u = l.use();
            for (const auto flag : all) {
                EXPECT_EQ(u.*flag, flag == c.flag) << c.caption << " in row " << row + 1;
            }
        }
    }
}

TEST(RemarkLayout, OpPercentDoesNotTurnOnOpNorMemoEqualsMemo)
{
    const auto l = layoutOf("OP %,memo=,,,,,,,,,,,", kEmptyRow, kZeros, kZeros);
    EXPECT_TRUE(l.use().opPercent);
    EXPECT_FALSE(l.use().op);
    EXPECT_TRUE(l.use().memoEquals);
    EXPECT_FALSE(l.use().memo);
}

TEST(RemarkLayout, CaptionsCompareExactlyAndOnlyTwelveCellsCount)
{
    const auto l = layoutOf("zone,iota,,,,,,,,,,,IOTA", "ZONE,,,,,,,,,,,,", kZeros, kZeros);
    EXPECT_FALSE(l.use().zone);
    EXPECT_FALSE(l.use().iota);
    EXPECT_EQ(l.row1(), (Words{"zone", "iota"}));
    // "ZONE" is a working word, not a caption: it stays an unknown word.
    EXPECT_EQ(l.row2(), (Words{"ZONE"}));
}

TEST(RemarkLayout, CountsCallsCellsPerRow)
{
    const auto l = layoutOf("Calls,MNG,Calls,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", kZeros, kZeros);
    EXPECT_EQ(l.callsInRow1(), 2);
    EXPECT_EQ(l.callsInRow2(), 0);
    EXPECT_TRUE(l.use().calls);
    const auto second = layoutOf("Rcvd,,,,,,,,,,,,", ",,Calls,,,,,,,,,,", kZeros, kZeros);
    EXPECT_EQ(second.callsInRow1(), 0);
    EXPECT_EQ(second.callsInRow2(), 1);
}

TEST(RemarkLayout, AnUnknownCaptionStaysAndWritesTheWidthLookedUpLast)
{
    const auto l = layoutOf("OP,xyz,,,,,,,,,,,", kEmptyRow, "4,9,0,0,0,0,0,0,0,0,0,0,", kZeros);
    EXPECT_EQ(l.row1(), (Words{"OP", "xyz"}));
    EXPECT_FALSE(l.slotWidth("xyz").has_value());
    EXPECT_EQ(l.cellWidths1(), (Widths{4, 4}));
    EXPECT_EQ(l.widthOf("xyz"), 0);
    EXPECT_EQ(l.widthOf("absent"), 0);
    EXPECT_EQ(l.total_width(), 4);
}

TEST(RemarkLayout, GarbageKeysNeverCrash)
{
    const auto l = layoutOf(",,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,xyz,MNG", "州名", "a,b", "-5");
    EXPECT_TRUE(l.row1().empty());
    EXPECT_EQ(l.row2(), (Words{"s_name"}));
    EXPECT_EQ(l.widthOf("s_name"), -5);
    EXPECT_EQ(l.total_width(), -5);
    EXPECT_EQ(l.Rmks1_cfg(), kEmptyRow);

    // Fewer widths than items: the items without one read 0.
    const auto shortWidths = layoutOf("MNG,OP,Rcvd,IOTA,Zone,$DX,memo,Calls,Rmks1,Rmks2,州名,ｺﾝﾃｽﾄ",
                                      "OP %", "3", "");
    EXPECT_EQ(shortWidths.row1().size(), 12u);
    EXPECT_EQ(shortWidths.widthOf("MNG"), 3);
    EXPECT_EQ(shortWidths.widthOf("OP"), 0);
    EXPECT_EQ(shortWidths.total_width(), 3);

    // Widths beyond a 16-bit integer are held at its limit; fractions round half to even.
    const auto huge = layoutOf("MNG,OP,Rcvd,,,,,,,,,,", kEmptyRow,
                               "99999999999999999999999,2.5,3.5,0,0,0,0,0,0,0,0,0,", kZeros);
    EXPECT_EQ(huge.widthOf("MNG"), 32767);
    EXPECT_EQ(huge.widthOf("OP"), 2);
    EXPECT_EQ(huge.widthOf("Rcvd"), 4);
    EXPECT_EQ(huge.total_width(), 32767);

    const auto commas = layoutOf(",", ",", ",", ",");
    EXPECT_TRUE(commas.row1().empty());
    EXPECT_TRUE(commas.row2().empty());
    EXPECT_EQ(commas.total_width(), 0);
}
