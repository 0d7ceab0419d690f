#include "settings/PeriodModel.h"

#include <gtest/gtest.h>

using namespace vornhale;
using settings::CalendarDate;
using settings::Options;
using settings::PeriodModel;

namespace {

constexpr CalendarDate kToday{2019, 7, 4};

PeriodModel loaded(Options& options)
{
    PeriodModel m(options, "5.44", [] { return kToday; });
    m.Form_Load();
    return m;
}

Options withPeriod(const std::string& start, const std::string& end, const std::string& flag)
{
    Options o;
    o.set("Start_date", start);
    o.set("End_date", end);
    o.set("use_system_date_flag", flag);
    return o;
}

} // namespace

TEST(PeriodModel, ListsCountDownFromTheirFirstEntry)
{
    Options o = withPeriod("20000101", "20000101", "0");
    const PeriodModel m = loaded(o);
    for (int list : {1, 4}) {
        ASSERT_EQ(m.items(list).size(), 91u);
        EXPECT_EQ(m.items(list).front(), "2020");
        EXPECT_EQ(m.items(list).back(), "1930");
    }
    for (int list : {2, 5}) {
        ASSERT_EQ(m.items(list).size(), 12u);
        EXPECT_EQ(m.items(list).front(), "12");
        EXPECT_EQ(m.items(list).back(), "1");
    }
    for (int list : {3, 6}) {
        ASSERT_EQ(m.items(list).size(), 31u);
        EXPECT_EQ(m.items(list).front(), "31");
        EXPECT_EQ(m.items(list).back(), "1");
    }
    EXPECT_TRUE(m.items(7).empty());
}

TEST(PeriodModel, AnEmptyStartBecomes1960AndAnEmptyEndToday)
{
    Options o = withPeriod("", "", "0");
    const PeriodModel m = loaded(o);
    EXPECT_EQ(o.value("Start_date"), "19600101");
    EXPECT_EQ(o.value("End_date"), "20190704");
    EXPECT_EQ(m.part(1), "1960");
    EXPECT_EQ(m.part(2), "01");
    EXPECT_EQ(m.part(3), "01");
    EXPECT_EQ(m.listIndex(1), 60);
    EXPECT_EQ(m.listIndex(2), 11);
    EXPECT_EQ(m.listIndex(3), 30);
    EXPECT_EQ(m.part(4), "2019");
    EXPECT_EQ(m.part(5), "07");
    EXPECT_EQ(m.part(6), "04");
    EXPECT_EQ(m.listIndex(4), 1);
    EXPECT_EQ(m.listIndex(5), 5);
    EXPECT_EQ(m.listIndex(6), 27);
    EXPECT_FALSE(m.Check1());
    EXPECT_TRUE(m.getDateEnabled());
}

TEST(PeriodModel, TheEndDateLosesItsSeparatorsButTheStartIsCutAsItStands)
{
    Options o = withPeriod("1999/12/31", "2001-02/03", "0");
    const PeriodModel m = loaded(o);
    EXPECT_EQ(o.value("End_date"), "20010203");
    EXPECT_EQ(m.part(4), "2001");
    EXPECT_EQ(m.part(5), "02");
    EXPECT_EQ(m.part(6), "03");
    EXPECT_EQ(m.part(1), "1999");
    EXPECT_EQ(m.part(2), "/1");
    EXPECT_EQ(m.part(3), "2/");
}

TEST(PeriodModel, TheSystemDateFlagTicksCheck1AndTakesToday)
{
    Options o = withPeriod("20100101", "20150505", "1");
    PeriodModel m = loaded(o);
    EXPECT_TRUE(m.Check1());
    EXPECT_FALSE(m.getDateEnabled());
    EXPECT_EQ(m.part(4), "2019");
    EXPECT_EQ(m.part(5), "7");
    EXPECT_EQ(m.part(6), "4");
    EXPECT_EQ(m.listIndex(5), 5);
    EXPECT_TRUE(m.cmdOK_Click());
    EXPECT_EQ(o.value("End_date"), "20190704");
    EXPECT_EQ(o.value("use_system_date_flag"), "1");
}

TEST(PeriodModel, Check1OffAndOnSetsTheFlagAndTheButton)
{
    Options o = withPeriod("20100101", "20150505", "0");
    PeriodModel m = loaded(o);
    m.setCheck1(true);
    EXPECT_EQ(o.value("use_system_date_flag"), "1");
    EXPECT_FALSE(m.getDateEnabled());
    EXPECT_EQ(m.part(4), "2019");
    m.setCheck1(false);
    EXPECT_EQ(o.value("use_system_date_flag"), "0");
    EXPECT_TRUE(m.getDateEnabled());
    EXPECT_EQ(m.part(4), "2019") << "turning the tick off keeps the end";
}

TEST(PeriodModel, ClicksStoreTheEntryAndOkPadsMonthAndDay)
{
    Options o = withPeriod("20100101", "20150505", "0");
    PeriodModel m = loaded(o);
    m.List_Click(1, 20); // 2000
    m.List_Click(2, 9);  // 3
    m.List_Click(3, 22); // 9
    m.List_Click(6, 0);  // 31
    m.List_Click(5, 12); // outside: nothing
    m.List_Click(7, 0);  // no such list
    EXPECT_EQ(m.part(1), "2000");
    EXPECT_EQ(m.part(2), "3");
    EXPECT_EQ(m.part(3), "9");
    EXPECT_EQ(m.listIndex(2), 9);
    EXPECT_EQ(m.part(5), "05");
    ASSERT_TRUE(m.cmdOK_Click());
    EXPECT_EQ(o.value("Start_date"), "20000309");
    EXPECT_EQ(o.value("End_date"), "20150531");
    EXPECT_FALSE(m.isOpen());
}

TEST(PeriodModel, GetDateSetsTheEndFromToday)
{
    Options o = withPeriod("20100101", "20150505", "0");
    PeriodModel m = loaded(o);
    m.cmdGet_date_Click();
    EXPECT_EQ(m.listIndex(4), 1);
    EXPECT_EQ(m.listIndex(5), 5);
    EXPECT_EQ(m.listIndex(6), 27);
    ASSERT_TRUE(m.cmdOK_Click());
    EXPECT_EQ(o.value("End_date"), "20190704");
    EXPECT_EQ(o.value("use_system_date_flag"), "0");
}

TEST(PeriodModel, YearsOutsideTheListsSelectNothingAndAreKept)
{
    Options o = withPeriod("19290101", "20211231", "0");
    PeriodModel m = loaded(o);
    EXPECT_EQ(m.listIndex(1), -1);
    EXPECT_EQ(m.listIndex(4), -1);
    EXPECT_EQ(m.listIndex(2), 11);
    EXPECT_EQ(m.listIndex(6), 0);
    ASSERT_TRUE(m.cmdOK_Click());
    EXPECT_EQ(o.value("Start_date"), "19290101");
    EXPECT_EQ(o.value("End_date"), "20211231");
}

TEST(PeriodModel, AStartEqualToTheEndIsAcceptedAndRebuildsTheTitle)
{
    Options o = withPeriod("20150505", "20150505", "0");
    PeriodModel m = loaded(o);
    EXPECT_TRUE(m.cmdOK_Click());
    EXPECT_FALSE(m.isOpen());
    EXPECT_EQ(m.Label7(), "");
    EXPECT_EQ(m.mainTitle(),
              "  Vornhale  5.442015 年 05 月 05 日　～  2015 年 05 月 05 日     @Tolmer");
}

TEST(PeriodModel, AStartLaterThanTheEndStaysOpenWithTheError)
{
    Options o = withPeriod("20150506", "20150505", "0");
    PeriodModel m = loaded(o);
    EXPECT_FALSE(m.cmdOK_Click());
    EXPECT_TRUE(m.isOpen());
    EXPECT_EQ(m.Label7(), "日付けの設定エラーです。 抽出開始 ＞ 抽出終了");
    EXPECT_EQ(m.mainTitle(), "");
    // The joins are stored before the comparison.
    EXPECT_EQ(o.value("Start_date"), "20150506");
    m.List_Click(3, 31 - 4); // start day 4
    EXPECT_TRUE(m.cmdOK_Click());
    EXPECT_EQ(o.value("Start_date"), "20150504");
}

TEST(PeriodModel, StartGetDateReplacesTheEndByTodayOnlyWithTheFlag)
{
    Options o = withPeriod("19600101", "20150505", "1");
    const auto p = settings::start_Get_Date(o, kToday, "5.44");
    EXPECT_EQ(o.value("End_date"), "20190704");
    EXPECT_EQ(p.period, "1960 年 01 月 01 日　～  2019 年 07 月 04 日");
    EXPECT_EQ(p.title, "  Vornhale  5.441960 年 01 月 01 日　～  2019 年 07 月 04 日     @Tolmer");

    Options kept = withPeriod("19600101", "2015/05/05", "0");
    const auto q = settings::start_Get_Date(kept, kToday, "5.44");
    EXPECT_EQ(kept.value("End_date"), "2015/05/05");
    EXPECT_EQ(q.period, "1960 年 01 月 01 日　～  2015 年 05 月 05 日");
}

TEST(PeriodModel, TheToolTipShowsTheDatesAsStored)
{
    EXPECT_EQ(settings::periodToolTip("19600101", "2019/07/04"),
              "Start Date : 19600101 ，End Date : 2019/07/04");
}

TEST(PeriodModel, DateDigitsAreEightWithLeadingZeros)
{
    EXPECT_EQ(settings::dateDigits({2001, 2, 3}), "20010203");
    const CalendarDate today = settings::systemToday();
    EXPECT_GE(today.year, 2020);
    EXPECT_GE(today.month, 1);
    EXPECT_LE(today.day, 31);
}
