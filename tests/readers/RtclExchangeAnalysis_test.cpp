// The exchange analysis of RTCL text logs: the passes over the comma-separated records of
// both text generations, with their own four decisions.

#include "failure/Failure.h"
#include "readers/ExchangeAnalysis.h"
#include "readers/RtclWriter.h"
#include "settings/Options.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace vornhale;
using readers::ExchangeAnalysis;
using readers::RemarkCells;
using test::RtclNewSpec;
using test::RtclOldSpec;

namespace {

RemarkCells layoutOf(std::string rmks1, std::string rmks2 = "")
{
    settings::Options o;
    o.set("Rmks1_cfg", std::move(rmks1));
    o.set("Rmks2_cfg", std::move(rmks2));
    return RemarkCells::fromOptions(o);
}

struct RtclPass : ::testing::Test
{
    test::TempDir dir;
    ExchangeAnalysis a;
    RemarkCells layout = layoutOf("MNG,$DX,Calls,Rmks1,,");

    /// The old pass over records whose received fields are `rcvd`.
    void old(const std::vector<std::string>& rcvd, const char* name = "TEST.log",
             const std::string& call = "JA1ABC")
    {
        std::vector<std::string> lines;
        for (const auto& r : rcvd) {
            RtclOldSpec q;
            q.rcvd = r;
            q.call = call;
            lines.push_back(q.line());
        }
        const auto path = dir / name;
        test::writeSjisLines(path, lines);
        a.check_rcvd_log_old(path, layout);
    }

    void fresh(const std::vector<std::string>& rcvd)
    {
        std::vector<std::string> lines;
        for (const auto& r : rcvd) {
            RtclNewSpec q;
            q.rcvd = r;
            lines.push_back(q.line());
        }
        const auto path = dir / "NEW.log";
        test::writeSjisLines(path, lines);
        a.check_rcvd_log_new(path, layout);
    }
};

} // namespace

TEST_F(RtclPass, EveryRecordCountsForThereIsNoTitleLine)
{
    old({"599-25", "599-14", "599-03"});
    EXPECT_EQ(a.qso_lines, 3);
    EXPECT_EQ(a.counters[2], 3);
    EXPECT_EQ(a.counters[10], 3);
    EXPECT_EQ(a.counters[14], 3);
}

TEST_F(RtclPass, TheExchangeLoses599DashAndDashesAndIsCutToEight)
{
    old({"599-AB-CD-EF-GH-IJ"});
    // "ABCDEFGHIJ" cut to "ABCDEFGH": eight characters, not numeric.
    EXPECT_EQ(a.counters[8], 1);
    EXPECT_EQ(a.counters[13], 1);
    EXPECT_EQ(a.counters[11], 1);
    EXPECT_EQ(a.counters[12], 1);
}

TEST_F(RtclPass, ALogOfTwoDigitZonesSetsNoZoneForTheCountIsComparedWithOne)
{
    old({"599-25", "599-14", "599-03"});
    EXPECT_FALSE(a.rcvd_has_zone);
    EXPECT_FALSE(a.rcvd_has_state);
    EXPECT_FALSE(a.rcvd_has_iota);
}

TEST_F(RtclPass, ExactlyOneNumericExchangeOfThreeCharactersSetsTheZone)
{
    old({"599-025"});
    EXPECT_TRUE(a.rcvd_has_zone);
    // Two of them no longer do.
    old({"599-025", "599-014"});
    EXPECT_FALSE(a.rcvd_has_zone);
    // One numeric exchange of three among names: a state and a zone.
    old({"599-025", "599-NY", "599-CA"});
    EXPECT_TRUE(a.rcvd_has_zone);
    EXPECT_TRUE(a.rcvd_has_state);
}

TEST_F(RtclPass, ASerialNumberLogWithoutThreeDigitNumbersSetsNoZone)
{
    old({"599-1", "599-12", "599-1234", "599-7"});
    EXPECT_FALSE(a.rcvd_has_zone);
    EXPECT_EQ(a.counters[10], 4);
}

TEST_F(RtclPass, MixedPrefectureNumbersAndStateNamesSetTheState)
{
    old({"599-10", "599-ON", "599-13", "599-MA"});
    EXPECT_TRUE(a.rcvd_has_state);
    EXPECT_FALSE(a.rcvd_has_zone);
}

TEST_F(RtclPass, ExactlyOneDoubleZeroAmongNumbersIsTheAgeCase)
{
    old({"599-00", "599-45", "599-67"});
    EXPECT_EQ(a.lblCon_No, "RST + 年齢");
    EXPECT_FALSE(a.rcvd_has_zone || a.rcvd_has_state || a.rcvd_has_iota);

    old({"599-00", "599-00", "599-67"});
    EXPECT_EQ(a.lblCon_No, "");
}

TEST_F(RtclPass, IotaNumbersOfAtMostSevenCharactersSetNoIota)
{
    old({"599-OC-123", "599-AS-0123", "599-EU-005"});
    EXPECT_FALSE(a.rcvd_has_iota);
    EXPECT_TRUE(a.rcvd_has_state);
    // One of eight characters with a letter does.
    old({"599-OC-123", "599-001OC123"});
    EXPECT_TRUE(a.rcvd_has_iota);
}

TEST_F(RtclPass, AFileNamedIaruGetsNoZoneFromItsName)
{
    old({"599-25", "599-14"}, "IARU2024.log");
    EXPECT_FALSE(a.rcvd_has_zone);
}

TEST_F(RtclPass, TheNewPassReadsTheReceivedFieldAndCallOfItsOwnPlaces)
{
    fresh({"599-025"});
    EXPECT_EQ(a.qso_lines, 1);
    EXPECT_EQ(a.counters[3], 1);
    EXPECT_TRUE(a.rcvd_has_zone);
    fresh({"599-NY", "599-CA"});
    EXPECT_TRUE(a.rcvd_has_state);
    EXPECT_FALSE(a.rcvd_has_zone);
}

TEST_F(RtclPass, LongCallsAndTheLayoutTailAsForEveryTextLog)
{
    layout = layoutOf("MNG,Zone,,");
    old({"599-NY"}, "TEST.log", "ZZ9ZZZZ/ABCDEFG");
    EXPECT_EQ(a.long_call_count, 2);
    EXPECT_TRUE(a.dxLabelsRed); // neither "$DX" nor "Calls" in the layout
    EXPECT_EQ(a.missing_items, " zone 番号 , ");
    EXPECT_EQ(a.lblMsg1.text, " ｺﾝﾃｽﾄ・ﾅﾝﾊﾞｰ に下記は含まれません。");
}

TEST_F(RtclPass, AnEmptyLogDecidesNothingAndALastRecordShortOfFieldsFails)
{
    old({});
    EXPECT_EQ(a.qso_lines, 0);
    EXPECT_FALSE(a.rcvd_has_zone || a.rcvd_has_state || a.rcvd_has_iota);

    const auto path = dir / "SHORT.log";
    test::writeSjisLines(path, {R"("1","2023-03-15","12:34","JA1ABC")"});
    EXPECT_THROW(a.check_rcvd_log_old(path, layout), failure::Failure);
}

TEST_F(RtclPass, OldLogsOfFortyThousandRecordsAreCountedWithoutOverflow)
{
    old(std::vector<std::string>(40000, "599-25"));
    EXPECT_EQ(a.qso_lines, 40000);
    EXPECT_EQ(a.counters[2], 40000);
}

TEST_F(RtclPass, NewLogsOfFortyThousandRecordsAreCountedWithoutOverflow)
{
    fresh(std::vector<std::string>(40000, "599-25"));
    EXPECT_EQ(a.qso_lines, 40000);
    EXPECT_EQ(a.counters[2], 40000);
}
