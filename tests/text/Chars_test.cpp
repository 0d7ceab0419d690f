#include "text/Chars.h"

#include <gtest/gtest.h>

using namespace vornhale::text;

TEST(Chars, TrimRemovesBlanksOnly)
{
    EXPECT_EQ(trim("  a b  "), "a b");
    EXPECT_EQ(trim("\ta\t"), "\ta\t");
    EXPECT_EQ(trim("   "), "");
}

TEST(Chars, LeftRightAndMidCountCharacters)
{
    EXPECT_EQ(left("州名ABC", 3), "州名A");
    EXPECT_EQ(right("州名ABC", 4), "名ABC");
    EXPECT_EQ(mid("州名ABC", 2, 2), "名A");
    EXPECT_EQ(mid("abc", 5), "");
    EXPECT_EQ(right("ab", 5), "ab");
}

TEST(Chars, InstrGivesCharacterPositionsFromOne)
{
    EXPECT_EQ(instr("州名%%OP%%", "%"), 3u);
    EXPECT_EQ(instr("abc", "x"), 0u);
    EXPECT_EQ(instrRev("a%%b%%c", "%%"), 5u);
    EXPECT_EQ(instr("a%b%c", "%", 3), 4u);
}

TEST(Chars, PadRightPadsAndCuts)
{
    EXPECT_EQ(padRight("AB", 4), "AB  ");
    EXPECT_EQ(padRight("ABCDEFG", 6), "ABCDEF");
    EXPECT_EQ(padRight("州", 2), "州 ");
}

TEST(Chars, UpperTouchesLatinLettersOnly)
{
    EXPECT_EQ(upper("ja1abc/p 州ａ"), "JA1ABC/P 州Ａ");
}

TEST(Chars, SplitKeepsEmptyPieces)
{
    EXPECT_EQ(split("a,,b,", ","), (std::vector<std::string>{"a", "", "b", ""}));
    EXPECT_EQ(split("", ","), (std::vector<std::string>{""}));
}

TEST(Chars, ValReadsTheLeadingNumber)
{
    EXPECT_EQ(val("12abc"), 12);
    EXPECT_EQ(val(" 6"), 6);
    EXPECT_EQ(val("x"), 0);
    EXPECT_DOUBLE_EQ(val("14.025"), 14.025);
}

TEST(Chars, CaseBlindReplacementKeepsTheRestAsItIs)
{
    EXPECT_EQ(replaceAllNoCase("/logs/Test.ALL.all", ".all", "_hn.csv"), "/logs/Test_hn.csv_hn.csv");
    EXPECT_EQ(replaceAllNoCase("\xE3x.ALL", ".all", "_x"), "\xE3x_x");
    EXPECT_EQ(upper("\xE3" "a"), "\xE3" "A");
}

TEST(Chars, EqualsNoCaseComparesLettersWithoutRegardToCaseAndNothingElse)
{
    EXPECT_TRUE(equalsNoCase("Check06", "CHECK06"));
    EXPECT_TRUE(equalsNoCase("", ""));
    EXPECT_FALSE(equalsNoCase("Check06", "Check6"));
    EXPECT_FALSE(equalsNoCase("Check06", "Check07"));
    EXPECT_FALSE(equalsNoCase("a", "a "));
    // Only letters fold: "@" and "`" sit 0x20 below and above the capitals and stay apart.
    EXPECT_FALSE(equalsNoCase("@", "`"));
    EXPECT_FALSE(equalsNoCase("[", "{"));
    // Full-width letters fold too, and text beyond ASCII compares as it stands.
    EXPECT_TRUE(equalsNoCase("ja1ａ", "JA1Ａ"));
    EXPECT_FALSE(equalsNoCase("州a", "州b"));
    EXPECT_FALSE(equalsNoCase("a", "ａ"));
}
