#include "failure/Failure.h"
#include "text/SjisText.h"

#include <gtest/gtest.h>

using namespace vornhale::text;

TEST(Len_sjis, CountsAsciiAndHalfWidthKanaOneAndOthersTwo)
{
    EXPECT_EQ(Len_sjis(""), 0u);
    EXPECT_EQ(Len_sjis("JA1ZZZ"), 6u);
    EXPECT_EQ(Len_sjis("ｺﾝﾃｽﾄ"), 5u);
    EXPECT_EQ(Len_sjis("州名"), 4u);
    EXPECT_EQ(Len_sjis("A州ｺ"), 4u);
}

TEST(Mid_sjis, CutsByBytesOnAsciiText)
{
    EXPECT_EQ(Mid_sjis("2017/06/04 09:00", 6, 2), "06");
    EXPECT_EQ(Mid_sjis("abc", 2), "bc");
    EXPECT_EQ(Mid_sjis("abc", 3, 5), "c");
}

TEST(Mid_sjis, StartInsideADoubleByteCharacterBeginsAtTheNextCharacter)
{
    // "あいう": bytes 1-2, 3-4, 5-6. Byte 2 is inside "あ".
    EXPECT_EQ(Mid_sjis("あいう", 2, 2), "い");
    EXPECT_EQ(Mid_sjis("あいう", 3, 2), "い");
    EXPECT_EQ(Mid_sjis("aあb", 3, 1), "b");
}

TEST(Mid_sjis, LengthOfOneByteOnADoubleByteCharacterReturnsNothing)
{
    EXPECT_EQ(Mid_sjis("あいう", 1, 1), "");
}

TEST(Mid_sjis, LeavesOutADoubleByteCharacterThatWouldCrossTheEnd)
{
    EXPECT_EQ(Mid_sjis("aあい", 1, 4), "aあ");
    EXPECT_EQ(Mid_sjis("aあい", 1, 2), "a");
}

TEST(Mid_sjis, MissingLengthRunsToTheEndAndZeroLengthIsEmpty)
{
    EXPECT_EQ(Mid_sjis("aあい", 2), "あい");
    EXPECT_EQ(Mid_sjis("abc", 1, 0), "");
}

TEST(Mid_sjis, StartPastTheEndIsEmpty)
{
    EXPECT_EQ(Mid_sjis("abc", 10, 3), "");
    EXPECT_EQ(Mid_sjis("abc", 10), "");
    EXPECT_EQ(Mid_sjis("あ", 3, 1), "");
}

TEST(Mid_sjis, ByteCutTakesTheBytesAsTheyFall)
{
    EXPECT_EQ(Mid_sjis("aあb", 2, 2, true), "あ");
    EXPECT_EQ(Mid_sjis("ab", 1, 1, true), "a");
}

TEST(Mid_sjis, StartBelowOneIsAnInvalidCall)
{
    try {
        Mid_sjis("abc", 0, 1);
        FAIL() << "no failure";
    } catch (const vornhale::failure::Failure& f) {
        EXPECT_EQ(f.number(), 5);
    }
}

TEST(Cut_nul, CutsAtTheFirstNul)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(Cut_nul("ab\0cd"sv), "ab");
    EXPECT_EQ(Cut_nul("abcd"sv), "abcd");
    EXPECT_EQ(Cut_nul("\0"sv), "");
}

TEST(appendSjisColumn, AppendsWhatSjisColumnGivesForAnyText)
{
    EXPECT_EQ(sjisColumn("JA1", 5), "JA1  ");
    EXPECT_EQ(sjisColumn("JA1ZZZ/1", 6), "JA1ZZZ");
    EXPECT_EQ(sjisColumn("州名", 3), "州 ");
    for (const char* text : {"", "JA1", "JA1ZZZ", "JA1ZZZ/1", "州名", "ABC州", "ｺﾝﾃ", "A州ｺB"}) {
        for (const long width : {0L, 1L, 3L, 4L, 6L, 9L}) {
            std::string out = "before ";
            appendSjisColumn(out, text, width);
            EXPECT_EQ(out, "before " + sjisColumn(text, width)) << text << " in " << width;
        }
    }
}
