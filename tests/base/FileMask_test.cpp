#include "base/FileMask.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace vornhale;

TEST(FileMask, QuestionMarkIsOneCharacterAndStarAnyRun)
{
    EXPECT_TRUE(base::matchesMask("zlog_1.txt", "zlog_?.txt"));
    EXPECT_FALSE(base::matchesMask("zlog_12.txt", "zlog_?.txt"));
    EXPECT_TRUE(base::matchesMask("bak_qso.HDX", "*.hdx"));
    EXPECT_TRUE(base::matchesMask("Sort-out1.csv", "sort-out?.csv"));
    EXPECT_FALSE(base::matchesMask("Sort-out.csv", "sort-out?.csv"));
}

TEST(FileMask, DeletesOnlyMatchingFiles)
{
    test::TempDir dir;
    for (const char* name : {"zlog_1.txt", "zlog_2.txt", "zlog_10.txt", "keep.txt"}) {
        test::writeBytes(dir / name, "x");
    }
    std::vector<std::string> seen;
    EXPECT_EQ(base::deleteByMask(dir.path(), "zlog_?.txt",
                                [&](const std::filesystem::path& p) { seen.push_back(p.filename()); }),
              2);
    EXPECT_EQ(seen.size(), 2u);
    EXPECT_TRUE(std::filesystem::exists(dir / "zlog_10.txt"));
    EXPECT_TRUE(std::filesystem::exists(dir / "keep.txt"));
    EXPECT_EQ(base::deleteByMask(dir / "missing", "*"), 0);
}
