#include "support/TestSupport.h"
#include "text/ViewerLines.h"

#include <gtest/gtest.h>

using namespace vornhale;

TEST(ViewerLines, ATabReachesTheNextStopOfEightColumns)
{
    EXPECT_EQ(text::expandTabs("a\tb"), "a       b");
    EXPECT_EQ(text::expandTabs("\tx"), "        x");
    EXPECT_EQ(text::expandTabs("abcdefgh\tx"), "abcdefgh        x");
    EXPECT_EQ(text::expandTabs("a\t\tb"), "a               b");
    EXPECT_EQ(text::expandTabs("ab\t"), "ab      ");
    EXPECT_EQ(text::expandTabs("no tab"), "no tab");
}

TEST(ViewerLines, AFullWidthCharacterTakesTwoColumns)
{
    EXPECT_EQ(text::expandTabs("東京\tx"), "東京    x");
    EXPECT_EQ(text::expandTabs("ﾃｽﾄ\tx"), "ﾃｽﾄ     x");
}

TEST(ViewerLines, TheLinesOfAFileAreDecodedWithTabsExpanded)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "a.txt", {"1\t東京", "", "x"});
    const auto lines = text::viewerLines(dir / "a.txt");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "1       東京");
    EXPECT_EQ(lines[1], "");
    EXPECT_EQ(lines[2], "x");
}

TEST(ViewerLines, AnEmptyOrMissingFileGivesNoLines)
{
    test::TempDir dir;
    test::writeBytes(dir / "e.txt", "");
    EXPECT_TRUE(text::viewerLines(dir / "e.txt").empty());
    EXPECT_TRUE(text::viewerLines(dir / "missing.txt").empty());
}
