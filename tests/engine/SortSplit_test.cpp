#include "engine/SortSplit.h"
#include "base/WorkingFiles.h"
#include "support/RunFixture.h"

#include <gtest/gtest.h>

using namespace vornhale;
using engine::SortRecord;

namespace {

SortRecord rec(const std::string& call, const std::string& band = "14", const std::string& date = "261122",
               const std::string& time = "0905U", const std::string& route = "J")
{
    SortRecord r;
    r.call_key = call;
    r.band_or_freq = band;
    r.mode = "CW";
    r.route = route;
    r.q_date6 = date;
    r.q_time5 = time;
    r.q_rst_sent = "599";
    r.q_rst_rcvd = "599";
    r.mng_pad = " ";
    r.q_call = call;
    return r;
}

struct SplitRun : test::RunFixture
{
    engine::RunContext* c = nullptr;

    explicit SplitRun(int sort_wake = 1, int sort_kind = 1)
    {
        c = &context();
        c->run.sort_wake = static_cast<std::int16_t>(sort_wake);
        c->run.sort_kind = static_cast<std::int16_t>(sort_kind);
        c->run.QSL_Q = "J";
        c->run.QSL_S = "*";
        c->run.names.out_name_con0 = (dir / "LOG_c0.csv").string();
    }
    void sortOut(const std::vector<SortRecord>& records)
    {
        text::LineWriter w(work(base::working::sort_in));
        for (const auto& r : records) {
            w.write(text::formatRecord(r.fields()));
        }
        w.close();
        engine::sort_(*c, 1, 8, false, work(base::working::sort_in), work(base::working::sort_out));
    }
    std::vector<std::string> calls(const std::filesystem::path& path, std::size_t width, std::size_t at)
    {
        std::vector<std::string> out;
        for (const auto& r : records(path, width)) {
            out.push_back(r[at]);
        }
        return out;
    }
    std::vector<std::string> resultCalls() { return calls(c->run.names.out_name_con0, 20, 0); }
};

} // namespace

TEST(SortSplit, OneContactGoesToTheSinglesAndTheSentinelStaysOutOfTheResult)
{
    SplitRun s;
    s.sortOut({rec("JA1ABC")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.calls(s.work("semp_s.csv"), 23, 0), (std::vector<std::string>{"JA1ABC", "AAAAAA"}));
    EXPECT_EQ(s.calls(s.work("semp_d.csv"), 23, 0), (std::vector<std::string>{"AAAAAA"}));
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"JA1ABC"}));
    EXPECT_EQ(s.c->run.counters.qso_kazu, 1);
    EXPECT_EQ(s.c->run.counters.tan_kazu, 1);
    EXPECT_EQ(s.c->run.counters.fuku_kazu, 0);
}

TEST(SortSplit, EveryStationWorkedTwiceLeavesOnlyTheSentinelInTheSingles)
{
    SplitRun s;
    s.sortOut({rec("JA1ABC", "14"), rec("K1XX", "7"), rec("JA1ABC", "21"), rec("K1XX", "14")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.calls(s.work("semp_s.csv"), 23, 0), (std::vector<std::string>{"AAAAAA"}));
    EXPECT_EQ(s.c->run.counters.tan_kazu, 0);
    EXPECT_EQ(s.c->run.counters.fuku_kazu, 4);
    EXPECT_EQ(s.c->run.counters.qso_kazu, 4);
    // Inside a station by band: 000000007 before 000000014.
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"JA1ABC", "JA1ABC", "K1XX", "K1XX"}));
    EXPECT_EQ(s.calls(s.c->run.names.out_name_con0, 20, 6),
              (std::vector<std::string>{"14", "21", "7", "14"}));
}

TEST(SortSplit, AStationCalledAaaaaaIsDroppedFromTheResult)
{
    SplitRun s;
    s.sortOut({rec("AAAAAA"), rec("JA1ABC")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"JA1ABC"}));
}

TEST(SortSplit, SinglesComeFirstWhenSplit)
{
    SplitRun s(1);
    s.sortOut({rec("AA1AA"), rec("ZZ1ZZ"), rec("AA1AA", "21")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"ZZ1ZZ", "AA1AA", "AA1AA"}));
}

TEST(SortSplit, WithoutTheSplitStationsAreMixedByTheKeyAlone)
{
    SplitRun s(0);
    s.sortOut({rec("AA1AA"), rec("ZZ1ZZ"), rec("AA1AA", "21")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"AA1AA", "AA1AA", "ZZ1ZZ"}));
}

TEST(SortSplit, TheJRouteTakesTheBureauMarkOnlyAmongSingles)
{
    SplitRun s(1);
    s.c->run.QSL_Q = "B";
    s.sortOut({rec("AA1AA"), rec("ZZ1ZZ", "14", "261122", "0905U", "J"),
               rec("AA1AA", "21", "261122", "0906U", "J")});
    engine::temp_sep(*s.c);
    const auto qsl = s.calls(s.c->run.names.out_name_con0, 20, 10);
    // Route "J" becomes the bureau mark first; a single whose mark still starts with "J"
    // would take it for that letter, multiples never do.
    EXPECT_EQ(qsl, (std::vector<std::string>{"B  ", "B  ", "B  "}));
}

TEST(SortSplit, AMarkBeginningWithJIsReplacedInSinglesButNotInMultiples)
{
    SplitRun s(1);
    s.c->run.QSL_Q = "B";
    s.sortOut({rec("AA1AA", "14", "261122", "0905U", "JX"), rec("ZZ1ZZ", "14", "261122", "0905U", "JX"),
               rec("AA1AA", "21", "261122", "0906U", "JX")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.calls(s.c->run.names.out_name_con0, 20, 10),
              (std::vector<std::string>{"BX  ", "JX  ", "JX  "}));
}

TEST(SortSplit, ResultRecordsCarryDateWithSlashesAndTimeWithColon)
{
    SplitRun s;
    s.sortOut({rec("JA1ABC", "14", "261122", "0905U")});
    engine::temp_sep(*s.c);
    const auto r = s.records(s.c->run.names.out_name_con0, 20)[0];
    EXPECT_EQ(r[2], "26/11/22");
    EXPECT_EQ(r[3], "09:05U");
}

TEST(SortSplit, TheFirstSortSeesOnlySevenCharactersOfTheCall)
{
    SplitRun s;
    // Same first seven characters: the sort keeps their log order, so the runs interleave.
    s.sortOut({rec("JA1ABCDE"), rec("JA1ABCDF"), rec("JA1ABCDE", "21")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.c->run.counters.tan_kazu, 3);
    EXPECT_EQ(s.c->run.counters.fuku_kazu, 0);
}

TEST(SortSplit, KeyFormsByKind)
{
    SortRecord r = rec("JA1ABC", "144", "261122", "0905U");
    EXPECT_EQ(engine::sortKey(r, 1, false), "JA1ABC        000000144CW 2611220905U");
    EXPECT_EQ(engine::sortKey(r, 1, false).size(), 37u);
    EXPECT_EQ(engine::sortKey(r, 2, false), "JA1ABC        2611220905U000000144CW ");
    r.mng_pad = "@K1XX  ";
    EXPECT_EQ(engine::sortKey(r, 3, false), "K1XX   JA1ABC000000144CW 2611220905U");
    EXPECT_EQ(engine::sortKey(r, 4, false), "K1XX   JA1ABC2611220905U000000144CW ");
    r.mng_pad = "";
    EXPECT_EQ(engine::sortKey(r, 3, false).substr(0, 13), "JA1ABC JA1ABC");
}

TEST(SortSplit, BandKeys)
{
    SortRecord r = rec("JA1ABC", "14.025");
    EXPECT_EQ(engine::sortKey(r, 1, true).substr(14, 9), "00014.025");
    EXPECT_EQ(engine::sortKey(r, 1, false).substr(14, 9), "000000001");
    r.band_or_freq = "3.5";
    EXPECT_EQ(engine::sortKey(r, 1, false).substr(14, 9), "000000003");
    r.band_or_freq = "144";
    EXPECT_EQ(engine::sortKey(r, 1, true).substr(14, 9), "000000144");
}

TEST(SortSplit, LogOrderCountsAndWritesTheContestFileUnsorted)
{
    SplitRun s(1, 0);
    std::vector<SortRecord> in = {rec("ZZ1ZZ"), rec("AA1AA"), rec("ZZ1ZZ", "21", "261122", "0906U", "N")};
    in[2].rmks1 = "@K1XX  QSL";
    in[2].mng_pad = "@K1XX  ";
    {
        text::LineWriter w(s.work(base::working::sort_in));
        for (const auto& r : in) {
            w.write(text::formatRecord(r.fields()));
        }
        w.close();
    }
    engine::Henkan_out_name_con(*s.c);
    const auto out = s.records(s.c->run.names.out_name_con0, 20);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0][0], "ZZ1ZZ");
    EXPECT_EQ(out[1][0], "AA1AA");
    EXPECT_EQ(out[0][10], "J* ");
    EXPECT_EQ(out[2][10], "N* ");
    EXPECT_EQ(out[2][13], "QSL");
    engine::sort_(*s.c, 1, 8, false, s.work(base::working::sort_in), s.work(base::working::sort_out));
    engine::count_tan_fuku(*s.c);
    EXPECT_EQ(s.c->run.counters.qso_kazu, 3);
    EXPECT_EQ(s.c->run.counters.tan_kazu, 1);
    EXPECT_EQ(s.c->run.counters.fuku_kazu, 2);
}

TEST(SortSplit, AFailedSortLeavesNoOutput)
{
    SplitRun s;
    engine::sort_(*s.c, 1, 8, false, s.work("missing.csv"), s.work("out.csv"));
    EXPECT_FALSE(std::filesystem::exists(s.work("out.csv")));
}
