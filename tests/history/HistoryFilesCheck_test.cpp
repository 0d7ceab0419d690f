#include "history/HistoryFilesCheck.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace vornhale;

TEST(HistoryFilesCheck, NoFilesInTempFilesGiveNoRows)
{
    test::TempDir dir;
    EXPECT_TRUE(history::checkHistoryFiles(dir.path()).empty());
}

TEST(HistoryFilesCheck, EachKindWithAFileGivesARowWithSizesAndLines)
{
    test::TempDir dir;
    test::writeBytes(dir / "bak_qso.mas1_p", "\"JA1ABC\",\"1C\"\r\n\"JA2XYZ\",\"2C\"\r\n");
    test::writeBytes(dir / "bak_qso_mas_name1_p", "a\r\nb\r\nc");
    test::writeBytes(dir / "bak_qso.mas3_p", "");
    const auto rows = history::checkHistoryFiles(dir.path());
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].kind, 1);
    EXPECT_EQ(rows[0].condition, "　Q S O   済みの局");
    EXPECT_EQ(rows[0].master.name, "bak_qso.mas1_p");
    EXPECT_EQ(rows[0].master.size, 30U);
    EXPECT_EQ(rows[0].master.lines, 2);
    EXPECT_EQ(rows[0].names.name, "bak_qso_mas_name1_p");
    EXPECT_EQ(rows[0].names.size, 7U);
    EXPECT_EQ(rows[0].names.lines, 3);
    EXPECT_EQ(rows[1].kind, 3);
    EXPECT_EQ(rows[1].condition, "　QSL 受領済みの局");
    EXPECT_TRUE(rows[1].master.exists);
    EXPECT_EQ(rows[1].master.size, 0U);
    EXPECT_EQ(rows[1].master.lines, 0);
    EXPECT_FALSE(rows[1].names.exists);
    EXPECT_EQ(rows[1].names.name, "bak_qso_mas_name3_p");
    EXPECT_EQ(rows[1].names.size, 0U);
}
