#include "manager/ManagerResultLog.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

using namespace vornhale;

TEST(ManagerResultLog, WritesTheHeadAndOneRecordPerSearchInShiftJis)
{
    test::TempDir dir;
    manager::ManagerResultLog log;
    log.open(dir / "LOG.mng_rslt", "/logs/LOG.ALL", "2026/03/01 12:34:56");
    EXPECT_TRUE(log.isOpen());
    manager::WebSearchResult r;
    r.Search_call = "XX9TST";
    r.mng_web = "XX9MGR";
    r.mng_file = "XX9FILE";
    r.Set_mng = "XX9FILE";
    log.add(r, "MNG ﾌｧｲﾙ 優先、WEB補完");
    log.close();
    EXPECT_FALSE(log.isOpen());
    const std::string expected = "/logs/LOG.ALL\r\n"
                                 "2026/03/01 12:34:56\r\n"
                                 "\r\n"
                                 "Searching for : XX9TST\r\n"
                                 "MNG           : XX9MGR\r\n"
                                 "Date          : \r\n"
                                 "Source        : \r\n"
                                 "Mng ﾃ ｷ ｽ ﾄ   : XX9FILE\r\n"
                                 "MNG ﾌｧｲﾙ 優先、WEB補完\r\n"
                                 "Set MNG       : XX9FILE\r\n"
                                 "\r\n";
    EXPECT_EQ(test::readBytes(dir / "LOG.mng_rslt"), text::encodeSjis(expected));
}

TEST(ManagerResultLog, ReplacesTheListOfAFormerRun)
{
    test::TempDir dir;
    test::writeBytes(dir / "LOG.mng_rslt", "old content\r\nmore\r\n");
    manager::ManagerResultLog log;
    log.open(dir / "LOG.mng_rslt", "/logs/LOG.ALL", "2026/03/01 12:34:56");
    log.close();
    EXPECT_EQ(test::readBytes(dir / "LOG.mng_rslt"),
              "/logs/LOG.ALL\r\n2026/03/01 12:34:56\r\n\r\n");
}

TEST(ManagerResultLog, AddsNothingWhenItIsNotOpen)
{
    manager::ManagerResultLog log;
    log.add(manager::WebSearchResult{}, "x");
    log.close();
    EXPECT_FALSE(log.isOpen());
}

TEST(ManagerResultLog, BelongsToTheInputWhoseNameStandsOnItsFirstLine)
{
    test::TempDir dir;
    const auto path = dir / "LOG.mng_rslt";
    EXPECT_FALSE(manager::ManagerResultLog::belongsTo(path, "/logs/LOG.ALL"));
    test::writeBytes(path, "");
    EXPECT_FALSE(manager::ManagerResultLog::belongsTo(path, "/logs/LOG.ALL"));
    test::writeBytes(path, "/other/LOG.ALL\r\n2026/03/01 12:34:56\r\n\r\n");
    EXPECT_FALSE(manager::ManagerResultLog::belongsTo(path, "/logs/LOG.ALL"));
    test::writeSjisLines(path, {"/logs/ログ.ALL", "2026/03/01 12:34:56", ""});
    EXPECT_TRUE(manager::ManagerResultLog::belongsTo(path, "/logs/ログ.ALL"));
}

TEST(ManagerResultLog, WritesTheDateAndTimeWithSlashesAndColons)
{
    std::tm t{};
    t.tm_year = 2026 - 1900;
    t.tm_mon = 2;
    t.tm_mday = 1;
    t.tm_hour = 9;
    t.tm_min = 5;
    t.tm_sec = 3;
    t.tm_isdst = -1;
    EXPECT_EQ(manager::ManagerResultLog::dateTimeText(std::mktime(&t)), "2026/03/01 09:05:03");
}
