#include "engine/DateTimeConv.h"

#include <gtest/gtest.h>

using namespace vornhale::engine;

namespace {
std::pair<std::string, std::string> shifted(void (*fn)(std::string&, std::string&), std::string d,
                                            std::string t)
{
    fn(d, t);
    return {d, t};
}
} // namespace

TEST(DateTimeConv, JapanTimeCrossesIntoTheNewYear)
{
    EXPECT_EQ(shifted(to_jst, "001231", "2000U"), (std::pair<std::string, std::string>{"010101", "0500J"}));
}

TEST(DateTimeConv, JapanTimeDropsTheColon)
{
    EXPECT_EQ(shifted(to_jst, "261122", "02:18U"), (std::pair<std::string, std::string>{"261122", "1118J"}));
}

TEST(DateTimeConv, UtcGoesBackAcrossTheYear)
{
    EXPECT_EQ(shifted(to_utc, "010101", "0300J"), (std::pair<std::string, std::string>{"001231", "1800U"}));
}

TEST(DateTimeConv, LeapDaysAndCenturies)
{
    EXPECT_EQ(shifted(to_jst, "000228", "2000U").first, "000229");
    EXPECT_EQ(shifted(to_jst, "480228", "2000U").first, "480229");
    EXPECT_EQ(shifted(to_jst, "270228", "2000U").first, "270301");
    // 50 is 2050 (not a leap year), 51 is 1951.
    EXPECT_EQ(shifted(to_jst, "500228", "2000U").first, "500301");
    EXPECT_EQ(shifted(to_utc, "510301", "0100J").first, "510228");
}

TEST(DateTimeConv, TheShiftDoesNotLookAtTheIncomingLetter)
{
    EXPECT_EQ(shifted(to_jst, "261122", "1000J").second, "1900J");
}

TEST(DateTimeConv, NonDigitsCountAsZeroAndNeverCrash)
{
    EXPECT_EQ(shifted(to_jst, "", "").second, "0900J");
    EXPECT_EQ(shifted(to_jst, "ab", "x").first.size(), 6u);
}

TEST(DateTimeConv, OptionMembersChooseTheShift)
{
    std::string d = "261122", t = "0218U";
    DateTimeConversion(0).date_time_conv(d, t, "JA1ABC");
    EXPECT_EQ(t, "0218U");
    DateTimeConversion(1).date_time_conv(d, t, "K1ABC");
    EXPECT_EQ(t, "1118J");
    DateTimeConversion(2).date_time_conv(d, t, "K1ABC");
    EXPECT_EQ(t, "0218U");
    DateTimeConversion(3).date_time_conv(d, t, "K1ABC");
    EXPECT_EQ(t, "0218U");
    DateTimeConversion(3).date_time_conv(d, t, "JA1ABC/QRP");
    EXPECT_EQ(t, "1118J");
}

TEST(DateTimeConv, CallTestKnowsJapanesePrefixes)
{
    for (const char* call : {"7K1ABC", "8J1ABC", "JS1ABC", "JA1ABC", "7N4XYZ"}) {
        EXPECT_TRUE(DateTimeConversion(3).isJapaneseStation(call)) << call;
    }
    for (const char* call : {"JT1ABC", "7O1ABC", "K1ABC", "JAAABC", "8I1ABC"}) {
        EXPECT_FALSE(DateTimeConversion(3).isJapaneseStation(call)) << call;
    }
}

TEST(DateTimeConv, CallTestStripsOperatingSuffixes)
{
    DateTimeConversion c(3);
    EXPECT_TRUE(c.isJapaneseStation("ja1abc/qrp"));
    EXPECT_EQ(c.call_core(), "JA1ABC");
    EXPECT_TRUE(c.isJapaneseStation("JA1ABC/P"));
    EXPECT_EQ(c.call_core(), "JA1ABC");
    // "/M" goes before "/MM", so one "M" stays behind.
    c.isJapaneseStation("JA1ABC/MM");
    EXPECT_EQ(c.call_core(), "JA1ABCM");
}

TEST(DateTimeConv, InnerMarksAreRemoved)
{
    DateTimeConversion c(3);
    EXPECT_TRUE(c.isJapaneseStation("JA1ABC/QRP/3"));
    EXPECT_EQ(c.call_core(), "JA1ABC");
}

TEST(DateTimeConv, PortableCallsAreTestedByTheLongerOrFirstPart)
{
    DateTimeConversion c(3);
    EXPECT_TRUE(c.isJapaneseStation("JA1ABC/1"));
    EXPECT_EQ(c.call_core(), "JA1ABC");
    EXPECT_FALSE(c.isJapaneseStation("KH6/JA1ABC"));
    EXPECT_EQ(c.call_core(), "KH6");
    EXPECT_FALSE(c.isJapaneseStation("JA1ABC/KH0"));
    EXPECT_EQ(c.call_core(), "KH0");
}

TEST(DateTimeConv, PartsOfEqualLengthKeepThePreviousCallCore)
{
    DateTimeConversion c(3);
    EXPECT_TRUE(c.isJapaneseStation("JA1ABC"));
    EXPECT_TRUE(c.isJapaneseStation("AB/CD"));
    EXPECT_EQ(c.call_core(), "JA1ABC");
}

TEST(DateTimeConv, ACallWithoutASlashIsItsOwnCoreAsLogged)
{
    DateTimeConversion c(3);
    EXPECT_TRUE(c.isJapaneseStation("JA1ABC"));
    EXPECT_EQ(c.call_core(), "JA1ABC");
    // No upper-casing without a suffix: the pattern wants capitals.
    EXPECT_FALSE(c.isJapaneseStation("ja1abc"));
    EXPECT_EQ(c.call_core(), "ja1abc");
    EXPECT_FALSE(c.isJapaneseStation("東京1ABC"));
    EXPECT_EQ(c.call_core(), "東京1ABC");
    EXPECT_FALSE(c.isJapaneseStation(""));
    EXPECT_EQ(c.call_core(), "");
    // With a slash the parts are weighed in characters: two against six keeps the first.
    EXPECT_FALSE(c.isJapaneseStation("東京/JA1ABC"));
    EXPECT_EQ(c.call_core(), "東京");
    EXPECT_TRUE(c.isJapaneseStation("JA1ABC/東"));
    EXPECT_EQ(c.call_core(), "JA1ABC");
}

TEST(DateTimeConv, KanjiInTheDateOrTimeCountsAsOneCharacterPerPlace)
{
    // "26年1122": the month is "年1" (no number, so 0: the December before) and the day the
    // fifth and sixth characters, "12".
    EXPECT_EQ(shifted(to_jst, "26年1122", "0218U"),
              (std::pair<std::string, std::string>{"251212", "1118J"}));
    // The minutes stand after the colon, counted in characters.
    EXPECT_EQ(shifted(to_jst, "261122", "02:18東").second, "1118J");
    EXPECT_EQ(shifted(to_jst, "261122", "東2:18U").second, "0918J");
    // Short ASCII parts read as empty, which is 0.
    EXPECT_EQ(shifted(to_jst, "26", "1").first, "251130");
    EXPECT_EQ(shifted(to_utc, "2611", "02:1").second, "1701U");
}
