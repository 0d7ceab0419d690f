#include "engine/RemarkComposer.h"
#include "engine/RemarkLayout.h"

#include <gtest/gtest.h>

using namespace vornhale;
using engine::RemarkLayout;

namespace {
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
const std::string kZeros = "0,0,0,0,0,0,0,0,0,0,0,0,";
} // namespace

TEST(RemarkLayout, FirstStartDefaultsGiveTheContestItemAndTheManagerRow)
{
    const auto l = RemarkLayout::fromOptions(settings::Options::defaults());
    EXPECT_EQ(l.row1(), (std::vector<std::string>{"cont_name_h"}));
    EXPECT_EQ(l.row2(), (std::vector<std::string>{"MNG", "$DX"}));
    EXPECT_EQ(l.total_width(), 0);
    EXPECT_FALSE(l.use().memo);
}

TEST(RemarkLayout, EmptyKeysResetToTheDefaultLayout)
{
    const auto l = layoutOf("", "x", "", "");
    EXPECT_EQ(l.row1(), (std::vector<std::string>{"MNG", "$DX", "rmk1", "ZONE", "IOTA"}));
    EXPECT_EQ(l.row2(), (std::vector<std::string>{"Rcvd", "memo="}));
    EXPECT_EQ(l.Rmks1_cfg(), "MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,");
    EXPECT_EQ(l.Rmks1_cfg_len(), kZeros);
    EXPECT_TRUE(l.use().zone);
    EXPECT_TRUE(l.use().iota);
    EXPECT_TRUE(l.use().memo_eq);
    EXPECT_FALSE(l.use().memo);
}

TEST(RemarkLayout, PackingRemovesGapsAndKeepsOrderAndWidths)
{
    const auto l = layoutOf(",MNG,,Rcvd,,,,,,,,,", "OP %,,memo,,,,,,,,,,", "0,6,0,4,0,0,0,0,0,0,0,0,",
                            "3,0,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.row1(), (std::vector<std::string>{"MNG", "Rcvd"}));
    EXPECT_EQ(l.Rmks1_cfg(), "MNG,Rcvd,,,,,,,,,,,");
    EXPECT_EQ(l.Rmks1_cfg_len(), "6,4,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.widthOf("MNG"), 6);
    EXPECT_EQ(l.widthOf("OP %"), 3);
    EXPECT_EQ(l.total_width(), 13);
    EXPECT_TRUE(l.use().op_pct);
    EXPECT_FALSE(l.use().op);
}

TEST(RemarkLayout, AnEmptyRowPacksToTwelveEmptyCells)
{
    // The commas of the empty cells keep the key from being blank.
    const auto l = layoutOf("MNG,,,,,,,,,,,,", ",,,,,,,,,,,,", kZeros, kZeros);
    EXPECT_EQ(l.Rmks2_cfg(), ",,,,,,,,,,,,");
    EXPECT_TRUE(l.row2().empty());
}

TEST(RemarkLayout, MemoEqualsHasNoWidthSlotAndWritesTheWidthLookedUpLast)
{
    const auto l = layoutOf("Rcvd,memo=,,,,,,,,,,,", "MNG,,,,,,,,,,,,", "5,9,0,0,0,0,0,0,0,0,0,0,",
                            kZeros);
    EXPECT_FALSE(l.slotWidth("memo=").has_value());
    EXPECT_EQ(l.Rmks1_cfg_len(), "5,5,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(l.total_width(), 5);
}

TEST(RemarkLayout, CountsCallsCellsPerRow)
{
    const auto l = layoutOf("Calls,MNG,,,,,,,,,,,", "Rcvd,,,,,,,,,,,,", kZeros, kZeros);
    EXPECT_EQ(l.callsInRow1(), 1);
    EXPECT_EQ(l.callsInRow2(), 0);
    EXPECT_TRUE(l.use().calls);
}

TEST(RemarkLayout, GarbageKeysNeverCrash)
{
    const auto l = layoutOf(",,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,xyz,MNG", "州名", "a,b", "-5");
    EXPECT_TRUE(l.row1().empty());
    EXPECT_EQ(l.row2(), (std::vector<std::string>{"s_name"}));
    EXPECT_EQ(l.widthOf("s_name"), -5);
}

namespace {
struct Composed
{
    RemarkLayout layout;
    engine::RemarkComposer composer;
    Composed(const std::string& r1, const std::string& l1, bool check1, bool check5 = false)
        : layout(layoutOf(r1, ",,,,,,,,,,,,", l1, kZeros)), composer(layout, check1, check5)
    {
    }
    std::string row1(const engine::RemarkValues& v) { return composer.compose_rmks(layout.row1(), v); }
};
} // namespace

TEST(RemarkComposer, AShortManagerIsPaddedAndTheFixedTextFollowsDirectly)
{
    Composed c("MNG,Rmks1,,,,,,,,,,,", "6,0,0,0,0,0,0,0,0,0,0,0,", false);
    engine::RemarkValues v;
    v.mng = "@K1XX";
    v.rmk1 = "TNX";
    EXPECT_EQ(c.row1(v), "@K1XX TNX");
}

TEST(RemarkComposer, AllWidthsZeroTrimsAtEachStepAndKeepsOneBlankBetweenItems)
{
    Composed c("Rcvd,memo,OP,Rmks1,,,,,,,,,", kZeros, true);
    engine::RemarkValues v;
    v.rcvd_text = "13";
    v.q_op = "JA1";
    v.rmk1 = "TNX";
    EXPECT_EQ(c.row1(v), "13 JA1 TNX");
    Composed d("Rcvd,memo,OP,,,,,,,,,,", kZeros, false);
    EXPECT_EQ(d.row1(v), "13JA1");
    v.q_op.clear();
    v.rmk1.clear();
    // Only the first item has a value: one blank follows it.
    EXPECT_EQ(c.row1(v), "13 ");
}

TEST(RemarkComposer, AWidthAboveZeroAddsBlanksForAnEmptyItem)
{
    Composed c("Rcvd,OP,Rmks1,,,,,,,,,,", "0,4,0,0,0,0,0,0,0,0,0,0,", false);
    engine::RemarkValues v;
    v.rcvd_text = "13";
    v.rmk1 = "TNX";
    EXPECT_EQ(c.row1(v), "13    TNX");
}

TEST(RemarkComposer, MemoEqualsGivesNothingForABlankMemo)
{
    engine::RemarkValues blank;
    blank.q_memo = "  ";
    Composed c("memo=,,,,,,,,,,,,", kZeros, false);
    EXPECT_EQ(c.row1(blank), "");
    engine::RemarkValues memo;
    memo.q_memo = "QSB";
    EXPECT_EQ(c.row1(memo), "memo=QSB");
    // With a width set and Check1 on: blanks of the width looked up last, and one separator.
    Composed d("Rcvd,memo=,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,", true);
    engine::RemarkValues r;
    r.rcvd_text = "13";
    EXPECT_EQ(d.row1(r), "13      ");
}

TEST(RemarkComposer, Check5EmptiesTheStateItemWhateverTheWidth)
{
    engine::RemarkValues v;
    v.dx_state = "CA";
    Composed off("州名,,,,,,,,,,,,", "4,0,0,0,0,0,0,0,0,0,0,0,", false, false);
    Composed on("州名,,,,,,,,,,,,", "4,0,0,0,0,0,0,0,0,0,0,0,", false, true);
    EXPECT_EQ(off.row1(v), "CA  ");
    EXPECT_EQ(on.row1(v), "    ");
}

TEST(RemarkComposer, CallsWithAWidthIsAlwaysBlank)
{
    engine::RemarkValues v;
    v.calls_text = "JA1ABC/1/P";
    Composed wide("Calls,,,,,,,,,,,,", "5,0,0,0,0,0,0,0,0,0,0,0,", false);
    Composed free("Calls,,,,,,,,,,,,", kZeros, false);
    EXPECT_EQ(wide.row1(v), "     ");
    EXPECT_EQ(free.row1(v), "JA1ABC/1/P");
}

TEST(RemarkComposer, WidthsCountCharactersNotBytes)
{
    engine::RemarkValues v;
    v.rmk1 = "東京都新宿区";
    Composed c("Rmks1,,,,,,,,,,,,", "4,0,0,0,0,0,0,0,0,0,0,0,", false);
    EXPECT_EQ(c.row1(v), "東京都新");
}

TEST(RemarkComposer, ItemsWithMarks)
{
    engine::RemarkValues v;
    v.q_op = "JA1";
    Composed c("OP %,ｺﾝﾃｽﾄ,Zone,IOTA,$DX,,,,,,,,", kZeros, true);
    v.cont_name = "ALLJA1";
    v.zone_text = "Z25";
    v.iota_text = "AS-007";
    v.dx_mark = "$DX";
    EXPECT_EQ(c.row1(v), "%JA1% ALLJA1 Z25 AS-007 $DX");
    engine::RemarkValues none;
    EXPECT_EQ(c.row1(none), " ");
}

TEST(iota_chk, FormsTheContinentAndThreeDigits)
{
    vornhale::app::Trace trace;
    std::string iota, rcvd = "untouched";
    engine::iota_chk("OC7", iota, rcvd, trace);
    EXPECT_EQ(iota, "OC-007");
    EXPECT_EQ(rcvd, "untouched");
    engine::iota_chk("as-123", iota, rcvd, trace);
    EXPECT_EQ(iota, "as-123");
}

TEST(iota_chk, ASerialFirstCutsTheReceivedTextToEightCharacters)
{
    vornhale::app::Trace trace;
    std::string iota, rcvd;
    engine::iota_chk("001EU005XYZ", iota, rcvd, trace);
    EXPECT_EQ(rcvd, "001EU005");
    EXPECT_EQ(iota, "EU-005");
}

TEST(iota_chk, NoContinentSetsNothing)
{
    vornhale::app::Trace trace;
    std::string iota = "keep", rcvd = "keep";
    engine::iota_chk("599013", iota, rcvd, trace);
    EXPECT_EQ(iota, "keep");
    EXPECT_EQ(rcvd, "keep");
}

TEST(iota_chk, TwoContinentWordsAddTheirPositionsIntoAWrongCut)
{
    vornhale::app::Trace trace;
    std::string iota, rcvd;
    // "NA" at 1 and "AS" at 2 add up to 3.
    engine::iota_chk("NAS12", iota, rcvd, trace);
    EXPECT_EQ(iota, "S1-002");
}
