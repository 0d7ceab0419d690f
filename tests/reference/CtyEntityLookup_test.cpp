#include "failure/Failure.h"
#include "reference/CtyEntityLookup.h"
#include "reference/CtyFixture.h"
#include "reference/LiteralEntityLookup.h"
#include "support/TestSupport.h"
#include "text/Chars.h"

#include <gtest/gtest.h>

using namespace vornhale;
using test::ctyHeader;

namespace {

// A DXCC master line in its byte columns.
std::string dxccLine(std::string_view prefix, std::string_view code, std::string_view name,
                     std::string_view buro)
{
    return " " + text::padRight(prefix, 7) + std::string(11, ' ') + text::padRight(code, 6) +
           text::padRight(name, 28) + " " + std::string(buro);
}

std::string sampleCty()
{
    const std::vector<std::string> lines = {
        ctyHeader("Test Land", "EU", "XX"),
        "    XX,XX9LONGA5;",
        ctyHeader("Exact Land", "AF", "ZZ"),
        "    ZZ,=XX9ABC/5,=XX9ZZZ;",
        ctyHeader("Long Land", "NA", "LL"),
        "    XX9LONG;",
        ctyHeader("Pee Five", "AS", "P5"),
        "    P5;",
        ctyHeader("Sixer", "AS", "SX"),
        "    P5ABCD;",
        ctyHeader("Hawaii", "OC", "KH6"),
        "    KH6;",
        ctyHeader("United States", "NA", "K"),
        "    K,AB;",
        ctyHeader("Fiji", "OC", "3D2"),
        "    3D2;",
        ctyHeader("Kerguelen", "AF", "FT/x"),
        "    FT5X,=FT4XX;",
        ctyHeader("First", "EU", "Q1"),
        "    QQ;",
        ctyHeader("Second", "EU", "Q2"),
        "    QQ;",
    };
    return test::joinLines(lines, "\r\n");
}

class CtyEntityLookupTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        cty.run(sampleCty(), {"FT/X,FT/x", "ZZ,WRONG", "\"ZZ       \",\"ZZP\"", "ZZ,LATER"},
                {dxccLine("XX", "D001", "Test Land", ""), dxccLine("XX", "D999", "Other", "X"),
                 dxccLine("ZZ", "D002", "Exact Land", "-"), dxccLine("3D2/r", "D460", "Rotuma", ""),
                 dxccLine("FT/x", "D131", "Kerguelen", "X"), dxccLine("K", "784A", "USA", "")});
        literal = std::make_unique<test::LiteralEntityLookup>(cty.import.tables(), cty.mastL(),
                                                             /*rereadEachCall=*/true);
    }

    // The indexed lookup and the plain walk give the same entity, and it is `expected`.
    void expectEntity(std::string_view call, std::string_view expected)
    {
        EXPECT_EQ(cty.lookup.get_entity(call), expected) << call;
        EXPECT_EQ(literal->get_entity(call), expected) << call << " (plain walk)";
    }

    test::ImportedCty cty;
    std::unique_ptr<test::LiteralEntityLookup> literal;
};

} // namespace

TEST_F(CtyEntityLookupTest, CallWithoutSlashTakesItsLongestShortPrefix)
{
    expectEntity("XX9TST", "XX");
    expectEntity("  XX9TST  ", "XX");
    expectEntity("KH6ABC", "KH6");
    expectEntity("K1ABC", "K");
    expectEntity("AB1CD", "K");
    expectEntity("P5ABCDE", "SX");
    expectEntity("Y1ABC", "");
}

TEST_F(CtyEntityLookupTest, AmongEqualShortPrefixesTheFirstInTheMasterWins)
{
    expectEntity("QQ1A", "Q1");
}

TEST_F(CtyEntityLookupTest, ComparisonsAreExact)
{
    expectEntity("xx9tst", "");
    expectEntity("kh6/ab1cd", "");
}

TEST_F(CtyEntityLookupTest, LongMasterHitIsPaddedToNineAndNeverReachesThePrefixSearch)
{
    // As prefixes these would give XX; the long master has them as a whole.
    expectEntity("XX9ZZZ", "ZZ       ");
    expectEntity("XX9ABC/5", "ZZ       ");
    expectEntity("XX9ABC / 5", "ZZ       ");
    expectEntity("XX9LONG", "LL       ");
    expectEntity("FT4XX", "FT/x     ");
}

TEST_F(CtyEntityLookupTest, LongPrefixesMatchOnlyAsAWhole)
{
    expectEntity("XX9LONGA", "XX");
    // A prefix of 7 characters or more is a key of the long master of its own.
    expectEntity("XX9LONGA5", "XX       ");
}

TEST_F(CtyEntityLookupTest, MaritimeMobileHasNoEntityAndPortableKeepsTheLeftOne)
{
    expectEntity("XX9TST/MM", "");
    expectEntity("XX9TST/mm", "");
    expectEntity("XX9TST/M", "");
    expectEntity("XX9TST/m", "");
    expectEntity("XX9TST/P", "XX");
    expectEntity("XX9TST/p", "XX");
    expectEntity("XX9TST/R", "XX");
    expectEntity("XX9TST/7", "XX");
    expectEntity("XX9TST/1A", "XX");
}

TEST_F(CtyEntityLookupTest, DecisionTableRows)
{
    // Row 3: the right part is a whole key.
    expectEntity("XX9TST/P5", "P5");
    expectEntity("AB1CD/KH6", "KH6");
    // Row 4: a whole left key beats a whole right key.
    expectEntity("XX/P5", "XX");
    expectEntity("KH6/AB1CD", "KH6");
    // Row 1: only partial hits, the right part is shorter.
    expectEntity("XX9TST/P5A", "P5");
    // Row 2: only partial hits, the left part is shorter.
    expectEntity("XX9/P5AB", "XX");
    // Neither side hits.
    expectEntity("Y1/Y2", "");
}

TEST_F(CtyEntityLookupTest, RightOnlyHitLongerThanTheLeftPartStaysEmpty)
{
    expectEntity("Y9/P5ABC", "");
    expectEntity("Y9TEST/P5A", "P5");
}

TEST_F(CtyEntityLookupTest, RightPartOver6CharactersIsMeasuredAgainst6)
{
    // "P5ABCD" is a whole key against the capped length.
    expectEntity("XX9TST/P5ABCDE", "SX");
    // Left 6 is not above the capped 6, nor below it: no row holds.
    expectEntity("XX9TST/P5ABCZ", "");
    expectEntity("XX9TSTA/P5ABCZ", "P5");
}

TEST_F(CtyEntityLookupTest, EmptyRightPartLeavesNoEntity)
{
    expectEntity("XX9TST/", "");
    // An empty left part is not longer than the right one: row 1 does not hold.
    expectEntity("/XX9TST", "");
}

TEST_F(CtyEntityLookupTest, RotumaIsToldByItsCapitalR)
{
    expectEntity("3D2AG/R", "3D2/r");
    expectEntity("3D2AG/r", "3D2");
    expectEntity("3D2AG/P", "3D2");
}

TEST_F(CtyEntityLookupTest, ShortPrefixResultsAreInUpperCaseAndTheAliasTurnsThemBack)
{
    expectEntity("FT5XO", "FT/X");
    EXPECT_EQ(cty.lookup.entityOf("FT5XO"), "FT/x");
    EXPECT_EQ(cty.lookup.dxcc_lookup(cty.lookup.entityOf("FT5XO")).dx_code, "D131");
}

TEST_F(CtyEntityLookupTest, AliasRowsCompareExactlySoPaddingIsKept)
{
    EXPECT_EQ(cty.lookup.cty_conv_apply("ZZ"), "WRONG");
    EXPECT_EQ(cty.lookup.cty_conv_apply("ZZ       "), "ZZP");
    EXPECT_EQ(cty.lookup.cty_conv_apply("zz"), "zz");
    EXPECT_EQ(cty.lookup.entityOf("ZZ1A"), "WRONG");
    EXPECT_EQ(cty.lookup.entityOf("XX9ZZZ"), "ZZP");
    EXPECT_EQ(literal->cty_conv_apply("ZZ"), "WRONG");
    EXPECT_EQ(cty.lookup.entityOf("XX9LONG"), "LL       ");
}

TEST_F(CtyEntityLookupTest, DxccLookupTrimsAndTakesTheFirstEqualRecord)
{
    const auto xx = cty.lookup.dxcc_lookup("  XX ");
    EXPECT_EQ(xx.dx_code, "D001");
    EXPECT_EQ(xx.dx_name, "Test Land");
    EXPECT_EQ(xx.dx_buro, "");
    const auto zz = cty.lookup.dxcc_lookup("ZZ       ");
    EXPECT_EQ(zz.dx_code, "D002");
    EXPECT_EQ(zz.dx_buro, "-");
    EXPECT_EQ(cty.lookup.dxcc_lookup("3D2/r").dx_code, "D460");
    const auto none = cty.lookup.dxcc_lookup("xx");
    EXPECT_EQ(none.dx_code, "");
    EXPECT_EQ(none.dx_name, "");
    EXPECT_EQ(none.dx_buro, "");
    EXPECT_EQ(cty.lookup.dxcc_lookup("").dx_code, "");
    for (const char* p : {"XX", "ZZ", "3D2/r", "xx", "", "FT/x", "K"}) {
        const auto a = cty.lookup.dxcc_lookup(p);
        const auto b = literal->dxcc_lookup(p);
        EXPECT_EQ(a.dx_code, b.dx_code) << p;
        EXPECT_EQ(a.dx_name, b.dx_name) << p;
        EXPECT_EQ(a.dx_buro, b.dx_buro) << p;
    }
}

TEST_F(CtyEntityLookupTest, BureauFlagByCode)
{
    EXPECT_EQ(cty.lookup.dxcc_buro_by_code(" D131 "), "X");
    EXPECT_EQ(cty.lookup.dxcc_buro_by_code("D002"), "-");
    EXPECT_EQ(cty.lookup.dxcc_buro_by_code("D999"), "X");
    EXPECT_EQ(cty.lookup.dxcc_buro_by_code("784A"), "");
    EXPECT_EQ(cty.lookup.dxcc_buro_by_code("D777"), "");
    EXPECT_EQ(literal->dxcc_buro_by_code("D999"), "X");
}

TEST_F(CtyEntityLookupTest, NameCheckCountsValidNamesAndReturnsUnknownOnes)
{
    EXPECT_EQ(cty.lookup.dxcc_name_check(" ft/X "), "");
    EXPECT_EQ(cty.lookup.dxcc_name_check("xx"), "");
    EXPECT_EQ(cty.lookup.validNameCount(), 2);
    EXPECT_EQ(cty.lookup.dxcc_name_check(" nowhere "), "NOWHERE");
    EXPECT_EQ(cty.lookup.validNameCount(), 2);
    cty.lookup.resetValidNameCount();
    EXPECT_EQ(cty.lookup.validNameCount(), 0);
    int valid = 0;
    EXPECT_EQ(literal->dxcc_name_check(" nowhere ", valid), "NOWHERE");
    EXPECT_EQ(literal->dxcc_name_check("3d2/R", valid), "");
    EXPECT_EQ(valid, 1);
}

TEST(CtyEntityLookup, MissingLongMasterFailsEachLookup)
{
    reference::CtyEntityLookup unloaded;
    try {
        unloaded.get_entity("XX9TST");
        FAIL() << "no failure";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), failure::FileNotFound);
    }
    test::TempDir dir;
    reference::CtyEntityLookup lookup;
    lookup.load(reference::CtyTables{}, dir / "cty_mastL.txt");
    EXPECT_THROW(lookup.entityOf("XX9TST"), failure::Failure);
}

TEST(CtyEntityLookup, BrokenEndOfTheLongMasterFailsOnlyCallsThatReachIt)
{
    test::TempDir dir;
    test::writeBytes(dir / "cty_mastL.txt",
                     "\"=XX9AAA   \",\"Land                      \",\"XX     \",\"EU 3\"\r\n"
                     "\"=XX9BBB   \",\"Land\"\r\n");
    reference::CtyTables tables;
    reference::CtyEntityLookup lookup;
    lookup.load(tables, dir / "cty_mastL.txt");
    test::LiteralEntityLookup literal(tables, dir / "cty_mastL.txt", true);
    EXPECT_EQ(lookup.get_entity("XX9AAA"), "XX       ");
    EXPECT_EQ(literal.get_entity("XX9AAA"), "XX       ");
    for (const char* call : {"XX9BBB", "XX9CCC"}) {
        try {
            lookup.get_entity(call);
            FAIL() << "no failure";
        } catch (const failure::Failure& e) {
            EXPECT_EQ(e.number(), failure::InputPastEnd);
        }
        EXPECT_THROW(literal.get_entity(call), failure::Failure);
    }
}

TEST(CtyEntityLookup, EmptyKeysFindTheEmptySlotAfterTheLastShortPrefix)
{
    // A right part beginning with a blank gives keys that trim to nothing; they meet the
    // empty slot that the line count leaves after the last line.
    test::ImportedCty cty;
    cty.run(test::joinLines(
        {ctyHeader("Test Land", "EU", "XX"), "XX;", ctyHeader("Pee", "EU", "PE"), "P;"}, "\n"));
    test::LiteralEntityLookup literal(cty.import.tables(), cty.mastL(), true);
    for (const char* call : {"XX9TST/ P", "XX9TST/  ", "XX9TST/ 5", "XX9 TST/ X", "XX9/ P5ABCDE"}) {
        EXPECT_EQ(cty.lookup.get_entity(call), literal.get_entity(call)) << call;
    }
    // " P" is no portable mark: its key "P" hits with a shorter length, and row 1 takes it.
    EXPECT_EQ(cty.lookup.get_entity("XX9TST/ P"), "PE");
    // " 5" finds nothing for "5", then the empty slot, whose primary prefix is empty.
    EXPECT_EQ(cty.lookup.get_entity("XX9TST/ 5"), "");
}

TEST(CtyEntityLookup, VeryLongCallsCostOnePass)
{
    test::ImportedCty cty;
    cty.run(test::joinLines({ctyHeader("Test Land", "EU", "XX"), "XX;"}, "\n"));
    EXPECT_EQ(cty.lookup.get_entity("XX" + std::string(200000, '9') + "/P"), "XX");
    // The right part's six blanks meet the empty slot with a shorter key; the left part is
    // shorter still, so row 2 gives it.
    EXPECT_EQ(cty.lookup.get_entity("XX9/" + std::string(100000, ' ') + "P5"), "XX");
    EXPECT_EQ(cty.lookup.get_entity("XX" + std::string(300000, ' ') + "9"), "XX");
}
