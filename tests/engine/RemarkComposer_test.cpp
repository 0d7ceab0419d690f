#include "engine/RemarkComposer.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace vornhale;
using engine::RemarkLayout;
using engine::RemarkValues;

namespace {

const std::string kZeros = "0,0,0,0,0,0,0,0,0,0,0,0,";
const std::string kEmptyRow = ",,,,,,,,,,,,";

RemarkLayout layoutOf(const std::string& r1, const std::string& l1, const std::string& r2 = "",
                      const std::string& l2 = "")
{
    auto o = settings::Options::defaults();
    o.set("Rmks1_cfg", r1);
    o.set("Rmks2_cfg", r2.empty() ? kEmptyRow : r2);
    o.set("Rmks1_cfg_len", l1);
    o.set("Rmks2_cfg_len", l2.empty() ? kZeros : l2);
    return RemarkLayout::fromOptions(o);
}

// Remark 1 of a layout whose second row is empty.
std::string row1(const std::string& cells, const std::string& widths, const RemarkValues& v,
                 bool check1, bool check5 = false)
{
    const RemarkLayout l = layoutOf(cells, widths);
    return engine::compose_rmks(l.row1(), l.cellWidths1(), v, l, check1, check5);
}

} // namespace

TEST(compose_rmks, PadsAShortManagerAndPutsTheFixedTextDirectlyBehindIt)
{
    RemarkValues v;
    v.mng = "@K1XX";
    v.rmk1 = "TNX";
    const std::string widths = "6,0,0,0,0,0,0,0,0,0,0,0,";
    EXPECT_EQ(row1("MNG,Rmks1,,,,,,,,,,,", widths, v, false), "@K1XX TNX");
    // With Check1 on each part is followed by one blank, and nothing is trimmed.
    EXPECT_EQ(row1("MNG,Rmks1,,,,,,,,,,,", widths, v, true), "@K1XX  TNX ");
    // A longer manager is cut to the width.
    v.mng = "@VERYLONG";
    EXPECT_EQ(row1("MNG,Rmks1,,,,,,,,,,,", widths, v, false), "@VERYLTNX");
}

TEST(compose_rmks, WithAllWidthsZeroAndCheck1OnEmptyItemsAddNothingVisible)
{
    RemarkValues v;
    v.rcvd_text = "13";
    v.q_op = "JA1";
    v.rmk1 = "TNX";
    // "memo" is empty: one blank stays between the items that are not.
    EXPECT_EQ(row1("Rcvd,memo,OP,Rmks1,,,,,,,,,", kZeros, v, true), "13 JA1 TNX");
    // The text is trimmed before each part, never after the last one.
    v.q_op.clear();
    v.rmk1.clear();
    EXPECT_EQ(row1("Rcvd,memo,OP,Rmks1,,,,,,,,,", kZeros, v, true), "13 ");
    v.rcvd_text.clear();
    v.q_op = "JA1";
    EXPECT_EQ(row1("memo,OP,,,,,,,,,,,", kZeros, v, true), " JA1");
}

TEST(compose_rmks, WithAllWidthsZeroAndCheck1OffPartsAreJoinedAfterTrimming)
{
    RemarkValues v;
    v.rcvd_text = "13 ";
    v.q_op = " JA1";
    EXPECT_EQ(row1("Rcvd,memo,OP,,,,,,,,,,", kZeros, v, false), "13 JA1");
    v.q_op = "JA1 ";
    EXPECT_EQ(row1("Rcvd,OP,,,,,,,,,,,", kZeros, v, false), "13JA1 ");
}

TEST(compose_rmks, AWidthAboveZeroAddsItsWidthInBlanksForAnEmptyItem)
{
    RemarkValues v;
    v.rcvd_text = "13";
    v.rmk1 = "TNX";
    EXPECT_EQ(row1("Rcvd,OP,Rmks1,,,,,,,,,,", "0,4,0,0,0,0,0,0,0,0,0,0,", v, false), "13    TNX");
    EXPECT_EQ(row1("Rcvd,OP,Rmks1,,,,,,,,,,", "0,4,0,0,0,0,0,0,0,0,0,0,", v, true),
              "13      TNX ");
}

TEST(compose_rmks, AFixedLayoutTrimsNothing)
{
    RemarkValues v;
    v.rcvd_text = " 13 ";
    v.q_op = "  ";
    EXPECT_EQ(row1("Rcvd,OP,MNG,,,,,,,,,,", "0,0,2,0,0,0,0,0,0,0,0,0,", v, false), " 13     ");
}

TEST(compose_rmks, MemoEqualsGivesNothingForABlankMemo)
{
    RemarkValues blank;
    blank.q_memo = "  ";
    EXPECT_EQ(row1("memo=,,,,,,,,,,,,", kZeros, blank, false), "");
    EXPECT_EQ(row1("memo=,,,,,,,,,,,,", kZeros, blank, true), " ");

    RemarkValues memo;
    memo.q_memo = "QSB";
    EXPECT_EQ(row1("memo=,,,,,,,,,,,,", kZeros, memo, false), "memo=QSB");
    EXPECT_EQ(row1("memo,,,,,,,,,,,,", kZeros, memo, false), "QSB");
}

TEST(compose_rmks, MemoEqualsWithAWidthAndCheck1GivesBlanksAndOneSeparator)
{
    // "memo=" takes the width looked up before it, that of "Rcvd".
    RemarkValues v;
    v.rcvd_text = "13";
    v.q_memo = " ";
    EXPECT_EQ(row1("Rcvd,memo=,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,", v, true),
              "13 " + std::string(" ") + "   " + " ");
    v.q_memo = "QSB599";
    EXPECT_EQ(row1("Rcvd,memo=,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,", v, true), "13  mem ");
    // As the first item it has no width, yet another item's width keeps the columns.
    v.q_memo.clear();
    EXPECT_EQ(row1("memo=,Rcvd,,,,,,,,,,,", "0,3,0,0,0,0,0,0,0,0,0,0,", v, true), " 13  ");
}

TEST(compose_rmks, MemoEqualsInEachRowTakesTheWidthOfTheItemBeforeItInThatRow)
{
    const RemarkLayout l = layoutOf(",Rcvd,,,,,,memo=,,,,,", "0,4,0,0,0,0,0,9,0,0,0,0,",
                                    ",Calls,Rcvd,,,,,ｺﾝﾃｽﾄ,,,,memo=,", "0,2,4,0,0,0,0,7,0,0,0,5,");
    RemarkValues v;
    v.rcvd_text = "13";
    v.cont_name = "CN";
    v.q_memo = "QSB599";
    const engine::RemarkComposer composer(l, false, false);
    // Row 1: the width of "Rcvd"; row 2: the width of "ｺﾝﾃｽﾄ", seven characters.
    EXPECT_EQ(composer.compose_rmks(1, v), "13  memo");
    EXPECT_EQ(composer.compose_rmks(2, v), "  13  CN     memo=QS");
}

TEST(compose_rmks, OpPercentWrapsTheOperatorOrGivesNothing)
{
    RemarkValues v;
    v.q_op = "JA1ABC";
    EXPECT_EQ(row1("OP %,,,,,,,,,,,,", kZeros, v, false), "%JA1ABC%");
    v.q_op = " ";
    EXPECT_EQ(row1("OP %,,,,,,,,,,,,", kZeros, v, false), "");
    EXPECT_EQ(row1("OP,,,,,,,,,,,,", "2,0,0,0,0,0,0,0,0,0,0,0,", v, false), "  ");
}

TEST(compose_rmks, Check5EmptiesTheStateItemWhateverTheWidth)
{
    RemarkValues v;
    v.dx_state = "CA";
    const std::string width4 = "4,0,0,0,0,0,0,0,0,0,0,0,";
    EXPECT_EQ(row1("州名,,,,,,,,,,,,", width4, v, false, false), "CA  ");
    EXPECT_EQ(row1("州名,,,,,,,,,,,,", width4, v, false, true), "    ");
    EXPECT_EQ(row1("州名,,,,,,,,,,,,", kZeros, v, false, false), "CA");
    EXPECT_EQ(row1("州名,,,,,,,,,,,,", kZeros, v, false, true), "");
}

TEST(compose_rmks, CallsWithAWidthIsAlwaysBlank)
{
    RemarkValues v;
    v.calls_text = "XX9TST/1/P";
    EXPECT_EQ(row1("Calls,,,,,,,,,,,,", "5,0,0,0,0,0,0,0,0,0,0,0,", v, false), "     ");
    EXPECT_EQ(row1("Calls,,,,,,,,,,,,", "12,0,0,0,0,0,0,0,0,0,0,0,", v, false),
              std::string(12, ' '));
    EXPECT_EQ(row1("Calls,,,,,,,,,,,,", kZeros, v, false), "XX9TST/1/P");
}

TEST(compose_rmks, WidthsCountCharactersNotBytes)
{
    RemarkValues v;
    v.rmk1 = "東京都新宿区";
    EXPECT_EQ(row1("Rmks1,,,,,,,,,,,,", "4,0,0,0,0,0,0,0,0,0,0,0,", v, false), "東京都新");
    v.rmk1 = "ｶﾅ";
    EXPECT_EQ(row1("Rmks1,,,,,,,,,,,,", "4,0,0,0,0,0,0,0,0,0,0,0,", v, false), "ｶﾅ  ");
}

TEST(compose_rmks, EachWorkingWordShowsItsValue)
{
    RemarkValues v;
    v.mng = "@M";
    v.dx_mark = "$DX";
    v.calls_text = "C/A/L";
    v.cont_name = "CN";
    v.q_memo = "ME";
    v.q_op = "OP1";
    v.iota_text = "AS-007";
    v.zone_text = "Z25";
    v.dx_state = "ST";
    v.rcvd_text = "RC";
    v.rmk1 = "R1";
    v.rmk2 = "R2";
    const std::vector<std::pair<std::string, std::string>> table = {
        {"MNG", "@M"},        {"$DX", "$DX"},      {"Calls", "C/A/L"}, {"ｺﾝﾃｽﾄ", "CN"},
        {"memo", "ME"},       {"memo=", "memo=ME"}, {"OP", "OP1"},     {"OP %", "%OP1%"},
        {"IOTA", "AS-007"},   {"Zone", "Z25"},     {"州名", "ST"},      {"Rcvd", "RC"},
        {"Rmks1", "R1"},      {"Rmks2", "R2"},
    };
    for (const auto& [caption, shown] : table) {
        EXPECT_EQ(row1(caption + ",,,,,,,,,,,,", kZeros, v, false), shown) << caption;
    }
}

TEST(compose_rmks, ComposesBothRowsWithTheSharedWidths)
{
    const RemarkLayout l = layoutOf("MNG,Rmks1,,,,,,,,,,,", "6,0,0,0,0,0,0,0,0,0,0,0,",
                                    "Rcvd,MNG,,,,,,,,,,,", "2,0,0,0,0,0,0,0,0,0,0,0,");
    RemarkValues v;
    v.mng = "@A";
    v.rmk1 = "R";
    v.rcvd_text = "5";
    // The second row's cell set the manager's width last: both rows use 0 for it.
    EXPECT_EQ(engine::compose_rmks(l.row1(), l.cellWidths1(), v, l, false, false), "@AR");
    EXPECT_EQ(engine::compose_rmks(l.row2(), l.cellWidths2(), v, l, false, false), "5 @A");
    const engine::RemarkComposer bound(l, false, false);
    EXPECT_EQ(bound.compose_rmks(2, v), "5 @A");
}

TEST(compose_rmks, AnUnknownWordAddsAnEmptyPart)
{
    RemarkValues v;
    v.rcvd_text = "13";
    v.q_op = "JA1";
    // Display words are not working words: "Zone" is unknown here.
    const RemarkLayout fixed = layoutOf("Rcvd,OP,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,");
    EXPECT_EQ(engine::compose_rmks({"Rcvd", "Zone", "OP"}, {3, 0, 0}, v, fixed, true, false),
              "13   JA1 ");
    EXPECT_EQ(engine::compose_rmks({"Rcvd", "Zone", "OP"}, {3, 0, 0}, v, fixed, false, false),
              "13 JA1");
    const RemarkLayout free = layoutOf("Rcvd,OP,,,,,,,,,,,", kZeros);
    EXPECT_EQ(engine::compose_rmks({"OP", "xyz"}, {0, 0}, v, free, true, false), "JA1 ");
    EXPECT_EQ(engine::compose_rmks({"OP", "xyz"}, {0, 0}, v, free, false, false), "JA1");
    // An unknown word from the keys takes no width either.
    v.q_op.clear();
    EXPECT_EQ(row1("Rcvd,xyz,,,,,,,,,,,", "3,0,0,0,0,0,0,0,0,0,0,0,", v, false), "13 ");
}

TEST(compose_rmks, OddWidthsNeverCrash)
{
    RemarkValues v;
    v.mng = "@M";
    v.rcvd_text = "13";
    // A negative width cuts to nothing; a width past a 16-bit integer is held at its limit.
    EXPECT_EQ(row1("MNG,Rcvd,,,,,,,,,,,", "-3,0,0,0,0,0,0,0,0,0,0,0,", v, false), "13");
    EXPECT_EQ(row1("MNG,,,,,,,,,,,,", "99999999,0,0,0,0,0,0,0,0,0,0,0,", v, false).size(),
              32767u);
    EXPECT_EQ(engine::compose_rmks({}, {}, v, layoutOf(kEmptyRow, kZeros), true, false), "");
}

TEST(iota_chk, PadsTheNumberToThreeDigitsBehindTheContinent)
{
    base::Trace trace;
    std::string iota, rcvd = "untouched";
    engine::iota_chk("OC7", iota, rcvd, trace);
    EXPECT_EQ(iota, "OC-007");
    EXPECT_EQ(rcvd, "untouched");
    engine::iota_chk("AS12", iota, rcvd, trace);
    EXPECT_EQ(iota, "AS-012");
    engine::iota_chk("EU1234", iota, rcvd, trace);
    EXPECT_EQ(iota, "EU-234");
    engine::iota_chk("AF", iota, rcvd, trace);
    EXPECT_EQ(iota, "AF-00");
    EXPECT_EQ(rcvd, "untouched");
}

TEST(iota_chk, FindsTheContinentWithoutRegardToCaseAndKeepsTheText)
{
    base::Trace trace;
    std::string iota, rcvd;
    engine::iota_chk("oc-7", iota, rcvd, trace);
    // The "-" is part of the rest, which keeps its last three characters.
    EXPECT_EQ(iota, "oc-0-7");
    engine::iota_chk("sa 8 ", iota, rcvd, trace);
    EXPECT_EQ(iota, "sa-0 8");
}

TEST(iota_chk, ASerialFirstCutsTheReceivedTextToEightCharacters)
{
    base::Trace trace;
    std::string iota, rcvd;
    engine::iota_chk("001EU005XYZ", iota, rcvd, trace);
    EXPECT_EQ(rcvd, "001EU005");
    EXPECT_EQ(iota, "EU-005");
    engine::iota_chk("123AN16", iota, rcvd, trace);
    EXPECT_EQ(rcvd, "123AN16");
    EXPECT_EQ(iota, "AN-016");
    // Leading blanks count as the serial's places.
    engine::iota_chk("   EU", iota, rcvd, trace);
    EXPECT_EQ(rcvd, "   EU");
    EXPECT_EQ(iota, "EU-00");
}

TEST(iota_chk, SetsNothingWhenNoContinentAppears)
{
    base::Trace trace;
    std::string iota = "keep", rcvd = "keep";
    for (const char* q : {"599013", "", "   ", "東京", "A S"}) {
        engine::iota_chk(q, iota, rcvd, trace);
        EXPECT_EQ(iota, "keep") << q;
        EXPECT_EQ(rcvd, "keep") << q;
    }
}

TEST(iota_chk, TwoContinentWordsAddTheirPositionsIntoAWrongCut)
{
    base::Trace trace;
    std::string iota, rcvd;
    // "NA" at 1 and "AS" at 2 add up to 3.
    engine::iota_chk("NAS12", iota, rcvd, trace);
    EXPECT_EQ(iota, "S1-002");
    // "EU" at 1 and "OC" at 4 add up to 5.
    engine::iota_chk("EU OC", iota, rcvd, trace);
    EXPECT_EQ(iota, "C-00");
    // "EU" at 1 and "OC" at 3 add up to 4, which reads as a serial first.
    rcvd = "untouched";
    engine::iota_chk("EUOC", iota, rcvd, trace);
    EXPECT_EQ(iota, "C-00");
    EXPECT_EQ(rcvd, "EUOC");
}

TEST(iota_chk, PositionsPastTheTextGiveAnEmptyReference)
{
    base::Trace trace;
    std::string iota, rcvd;
    // "EU" at 5 and "OC" at 9 add up to 14, beyond the ten characters.
    engine::iota_chk("1234EU78OC", iota, rcvd, trace);
    EXPECT_EQ(iota, "-00");
}

TEST(iota_chk, CutsByShiftJisBytes)
{
    base::Trace trace;
    std::string iota, rcvd;
    // "EU" stands at character 2 but byte 3: the cut from byte 2 starts at the next whole
    // character and takes four bytes from there.
    engine::iota_chk("東EU12", iota, rcvd, trace);
    EXPECT_EQ(iota, "EU-012");
    // Counted in bytes, the double-byte character before the word shifts the cut by one.
    engine::iota_chk("東京EU12", iota, rcvd, trace);
    EXPECT_EQ(iota, "京E-00U");
}

TEST(iota_chk, WritesItsNameToTheTrace)
{
    test::TempDir dir;
    {
        base::Trace trace(dir / "Error_Log");
        std::string iota, rcvd;
        engine::iota_chk("599013", iota, rcvd, trace);
        EXPECT_EQ(test::readBytes(trace.path()), "Private sub iota_chk()\r\n");
    }
}

TEST(compose_rmks, TheBoundComposerWritesWhatTheFreeOneReturnsForAsciiAndKanjiValues)
{
    const RemarkLayout fixed =
        layoutOf("MNG,memo=,OP %,Rcvd,Rmks1,,,,,,,,", "5,0,0,4,3,0,0,0,0,0,0,0,",
                 "Rmks2,Zone,州名,$DX,,,,,,,,,", "2,0,0,0,0,0,0,0,0,0,0,0,");
    const RemarkLayout free = layoutOf("MNG,memo=,OP %,Rcvd,Rmks1,,,,,,,,", kZeros,
                                       "Rmks2,Zone,州名,$DX,,,,,,,,,", kZeros);
    RemarkValues ascii;
    ascii.mng = "@JA1ZZZ";
    ascii.q_memo = " QSL VIA ";
    ascii.q_op = "OP1";
    ascii.rcvd_text = "59913";
    ascii.rmk1 = "RMK";
    ascii.rmk2 = "R2 ";
    ascii.zone_text = "Z25";
    ascii.dx_state = "CA";
    ascii.dx_mark = "$DX";
    RemarkValues kanji = ascii;
    kanji.mng = "@東京都";
    kanji.q_memo = "ﾒﾓ 東京";
    kanji.q_op = "山田";
    kanji.rcvd_text = "１３東";
    kanji.rmk1 = "新宿区西";
    kanji.rmk2 = "大阪府";
    for (const RemarkLayout* l : {&fixed, &free}) {
        for (const bool check1 : {false, true}) {
            for (const bool check5 : {false, true}) {
                const engine::RemarkComposer bound(*l, check1, check5);
                std::string out = "left over from the contact before";
                for (const RemarkValues* v : {&ascii, &kanji}) {
                    for (int row = 1; row <= 2; ++row) {
                        const std::string expected = engine::compose_rmks(
                            l->row(row), l->cellWidths(row), *v, *l, check1, check5);
                        bound.composeInto(row, engine::RemarkViews(*v), out);
                        EXPECT_EQ(out, expected) << row << check1 << check5;
                        EXPECT_EQ(bound.compose_rmks(row, *v), expected);
                    }
                }
            }
        }
    }
    // The widths count characters: the kanji manager is padded to five of them, not bytes.
    const engine::RemarkComposer bound(fixed, false, false);
    std::string out;
    bound.composeInto(1, engine::RemarkViews(kanji), out);
    EXPECT_EQ(out.substr(0, std::string("@東京都 memo=").size()), "@東京都 memo=");
}

TEST(compose_rmks, TheBoundComposerRefusesARowOtherThanOneOrTwo)
{
    const RemarkLayout l = layoutOf("MNG,,,,,,,,,,,,", kZeros);
    const engine::RemarkComposer bound(l, false, false);
    std::string out;
    EXPECT_THROW(bound.composeInto(3, engine::RemarkViews(), out), std::out_of_range);
    EXPECT_THROW(bound.compose_rmks(0, RemarkValues()), std::out_of_range);
}
