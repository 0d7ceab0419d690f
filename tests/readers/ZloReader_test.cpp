#include "failure/Failure.h"
#include "base/WorkingFiles.h"
#include "readers/ZloReader.h"
#include "readers/ZloWriter.h"
#include "readers/ZlogTextReader.h"
#include "support/RunFixture.h"
#include "text/SjisText.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace vornhale;
using readers::ZloHead;
using test::ZloQsoSpec;
using test::ZloWriter;

namespace {

/// Dialogs that record each question and give a chosen answer.
class AskingDialogs : public test::RecordingDialogs
{
public:
    struct Asked
    {
        std::string title, text;
        Buttons buttons;
        Icon icon;
    };
    Answer question(std::string_view title, std::string_view text, Buttons buttons,
                    Icon icon) override
    {
        asked.push_back({std::string(title), std::string(text), buttons, icon});
        return answer;
    }
    Answer answer = Answer::Retry;
    std::vector<Asked> asked;
};

struct ZloRun : ::testing::Test, test::RunFixture
{
    settings::Options options = settings::Options::defaults();
    engine::LayoutUse use;
    AskingDialogs asking;
    std::unique_ptr<engine::RunContext> zctx;
    readers::ZloOpenState zlo;
    readers::ExchangeAnalysis analysis;

    engine::RunContext& make(const std::filesystem::path& path, const char* f_type = "zlo")
    {
        zctx = std::make_unique<engine::RunContext>(
            engine::RunContext{options, folder, trace, observer, asking, program, *entities, {}});
        zctx->run.in_name = path.string();
        zctx->run.chosen_name = path.string();
        zctx->run.f_type = f_type;
        zctx->run.use = use;
        return *zctx;
    }

    std::filesystem::path file(const std::string& bytes, const char* name = "TEST.ZLO")
    {
        const auto path = dir / name;
        test::writeBytes(path, bytes);
        return path;
    }

    /// read_zlo over these bytes; the common lines written.
    std::vector<std::vector<std::string>> convert(const std::string& bytes)
    {
        engine::RunContext& c = make(file(bytes));
        readers::read_zlo(c);
        return records(work(base::working::zlog_1), 13);
    }

    std::vector<std::vector<std::string>> convert(const std::vector<ZloQsoSpec>& qsos)
    {
        ZloWriter w;
        w.header("CQ WPX Contest");
        for (const auto& q : qsos) {
            w.qso(q);
        }
        return convert(w.bytes());
    }
};

enum Field { Year, Month, Day, Time, Call, RstSent, RstRcvd, Band, Mode, Op, Memo, Freq, Rcvd };

/// A long log (over 1 MB) in blocks of four records, behind `lead` plain records: the first of
/// a block gives mode, band and frequency, the other three take all of them from the record
/// before.
std::vector<ZloQsoSpec> carryingLog(int lead, int blocks)
{
    std::vector<ZloQsoSpec> qsos(static_cast<std::size_t>(lead));
    for (int b = 0; b < blocks; ++b) {
        ZloQsoSpec first;
        first.mode = static_cast<std::uint8_t>(b % 5);
        first.band = static_cast<std::uint8_t>(b % 12);
        first.memo = "(" + std::to_string(7000 + b % 3000) + ")";
        first.call = "JA" + std::to_string(b);
        qsos.push_back(first);
        ZloQsoSpec carrying = first;
        carrying.mode = 6;              // outside the table
        carrying.band = 16;             // the same
        carrying.memo = "(14025) note"; // no frequency
        for (int i = 0; i < 3; ++i) {
            qsos.push_back(carrying);
        }
    }
    return qsos;
}

// A long log is read in two parts side by side, the second taking over the mode, band and
// frequency that the records just before it leave: wherever the parts meet, the lines are
// those of one pass, and two halves cut at a block give them one after the other.
TEST_F(ZloRun, ALongLogGivesWhatOnePassGivesWhereverItsPartsMeet)
{
    options.set("Check17", "1");
    constexpr int kBlocks = 1100;
    for (int lead = 0; lead < 4; ++lead) {
        const std::vector<ZloQsoSpec> qsos = carryingLog(lead, kBlocks);
        ASSERT_GT((qsos.size() + 1) * ZloWriter::kSize, 1u << 20);
        const auto whole = convert(qsos);
        const long written = zctx->run.written_count;
        const auto cut = qsos.begin() + lead + 4 * (kBlocks / 2);
        auto first = convert(std::vector<ZloQsoSpec>(qsos.begin(), cut));
        const auto second = convert(std::vector<ZloQsoSpec>(cut, qsos.end()));
        first.insert(first.end(), second.begin(), second.end());
        EXPECT_EQ(whole, first) << lead;
        EXPECT_EQ(written, static_cast<long>(qsos.size())) << lead;
        // Each block carries what its first record gave.
        ASSERT_EQ(whole.size(), qsos.size());
        for (std::size_t i = lead; i < whole.size(); ++i) {
            const auto& blockStart = whole[i - (i - lead) % 4];
            for (const Field f : {Mode, Band, Freq}) {
                ASSERT_EQ(whole[i][f], blockStart[f]) << lead << " " << i;
            }
        }
    }
}

// --- Record count ---------------------------------------------------------------------------

TEST(ZloRecordCount, RoundsTheLengthIn256ByteRecordsHalfToEven)
{
    struct Case
    {
        std::uintmax_t bytes;
        long count;
    };
    for (const Case c : {Case{0, 0},
                         {127, 0},
                         {128, 0},
                         {129, 1},
                         {256, 1},
                         {384, 2},
                         {512, 2},
                         {640, 2},
                         {641, 3},
                         {896, 4},
                         {1000, 4},
                         {1152, 4},
                         {1408, 6}}) {
        EXPECT_EQ(readers::zloRecordCount(c.bytes), c.count) << c.bytes;
    }
}

TEST_F(ZloRun, AThousandByteFileHasFourRecordsTheLastOneShortAndZeroFilled)
{
    ZloQsoSpec a, b, c;
    a.call = "JA1AAA";
    b.call = "JA2BBB";
    c.call = "JA3CCC";
    c.memo = "cut off";
    use.memo = true;
    const std::string bytes = ZloWriter().header("X").qso(a).qso(b).qso(c).bytes(1000);
    ASSERT_EQ(bytes.size(), 1000u);
    const auto lines = convert(bytes);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[2][Call], "JA3CCC");
    // The memo field runs past byte 232; what is missing reads as NUL and is cut away.
    EXPECT_EQ(lines[2][Memo], "cut off");
}

TEST_F(ZloRun, ATruncatedMemoOfTheShortLastRecordIsCutAtTheMissingBytes)
{
    ZloQsoSpec a;
    a.memo = std::string(60, 'm');
    use.memo = true;
    const auto lines = convert(ZloWriter().header("X").qso(a).qso(a).qso(a).bytes(1000));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1][Memo], std::string(60, 'm'));
    EXPECT_EQ(lines[2][Memo], std::string(1000 - 768 - 176, 'm'));
}

TEST_F(ZloRun, A640ByteFileHasTwoRecordsAndTheHalfRecordIsNotRead)
{
    ZloQsoSpec a, b;
    a.call = "JA1AAA";
    b.call = "JA2BBB";
    const auto lines = convert(ZloWriter().header("X").qso(a).qso(b).bytes(640));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0][Call], "JA1AAA");
}

TEST_F(ZloRun, AFileOfOneRecordGivesAnEmptyWorkingFile)
{
    const auto lines = convert(ZloWriter().header("X").bytes());
    EXPECT_TRUE(lines.empty());
    EXPECT_TRUE(std::filesystem::exists(work(base::working::zlog_1)));
    EXPECT_EQ(zctx->run.written_count, 0);
}

// --- The common line ------------------------------------------------------------------------

TEST_F(ZloRun, WritesTheCommonLineOfARecord)
{
    ZloQsoSpec q;
    q.when = 45000.5 + 5.0 / 1440 + 30.0 / 86400; // 12:05:30
    q.call = "JA1ABC";
    q.rcvd = "25";
    q.rstSent = 599;
    q.rstRcvd = 57;
    q.mode = 1;
    q.band = 6;
    const auto lines = convert({q});
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], (std::vector<std::string>{"2023", "03", "15", "12:05", "JA1ABC", "599",
                                                  "57", "21", "SSB", "", "", "21", "25"}));
    EXPECT_EQ(zctx->run.written_count, 1);
}

TEST_F(ZloRun, DecodesEveryModeAndBandOfTheTables)
{
    const char* modes[] = {"CW", "SSB", "FM", "AM", "RTY", "Other"};
    const char* bands[] = {"1.9", "3.5", "7",   "10",  "14",   "18",   "21",   "24",
                           "28",  "50",  "144", "430", "1200", "2400", "5600", "10G"};
    std::vector<ZloQsoSpec> qsos;
    for (std::uint8_t i = 0; i < 16; ++i) {
        ZloQsoSpec q;
        q.band = i;
        q.mode = static_cast<std::uint8_t>(i % 6);
        qsos.push_back(q);
    }
    const auto lines = convert(qsos);
    ASSERT_EQ(lines.size(), 16u);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(lines[i][Band], bands[i]);
        EXPECT_EQ(lines[i][Mode], modes[i % 6]);
    }
}

TEST_F(ZloRun, ABandIndexOf16WritesTheBandOfTheRecordBeforeAndEmptyOnTheFirstRecord)
{
    ZloQsoSpec odd, good;
    odd.band = 16;
    good.band = 9;
    const auto lines = convert({odd, good, odd});
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0][Band], "");
    EXPECT_EQ(lines[1][Band], "50");
    EXPECT_EQ(lines[2][Band], "50");
    // The frequency follows the band, carried over as well.
    EXPECT_EQ(lines[2][Freq], "50");
}

TEST_F(ZloRun, AModeIndexOutsideItsTableKeepsTheModeOfTheRecordBefore)
{
    ZloQsoSpec odd, good;
    odd.mode = 6;
    good.mode = 2;
    const auto lines = convert({odd, good, odd});
    EXPECT_EQ(lines[0][Mode], "");
    EXPECT_EQ(lines[1][Mode], "FM");
    EXPECT_EQ(lines[2][Mode], "FM");
}

TEST_F(ZloRun, TheDateIsSplitAndTheTimeKeepsItsColonWithoutSeconds)
{
    struct Case
    {
        double when;
        const char *year, *month, *day, *time;
    };
    for (const Case c : {Case{0.0, "1899", "12", "30", "00:00"},
                         {25569.0 + 0.75, "1970", "01", "01", "18:00"},
                         {-1.25, "1899", "12", "29", "06:00"},
                         {45000.0 + 59.0 / 86400 + 59.0 / 1440, "2023", "03", "15", "00:59"},
                         {45000.999999, "2023", "03", "16", "00:00"},
                         {2958465.5, "9999", "12", "31", "12:00"}}) {
        ZloQsoSpec q;
        q.when = c.when;
        const auto lines = convert({q});
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0][Year], c.year) << c.when;
        EXPECT_EQ(lines[0][Month], c.month) << c.when;
        EXPECT_EQ(lines[0][Day], c.day) << c.when;
        EXPECT_EQ(lines[0][Time], c.time) << c.when;
    }
}

TEST(ZloDateTime, TheFirstDayOfTheRangeAndALastMomentRoundedIntoTheYear10000)
{
    std::string date, time;
    readers::zloDateTime(-657434.0, date, time);
    EXPECT_EQ(date, "0100/01/01");
    EXPECT_EQ(time, "00:00");
    // Before 1899-12-30 the whole days count back and the fraction still runs forward.
    readers::zloDateTime(-657433.75, date, time);
    EXPECT_EQ(date, "0100/01/02");
    EXPECT_EQ(time, "18:00");
    readers::zloDateTime(2958465.9999999, date, time);
    EXPECT_EQ(date, "10000/01/01");
    EXPECT_EQ(time, "00:00");
}

TEST_F(ZloRun, TheDateFieldsOfTheFirstAndTheLastDayOfTheRange)
{
    ZloQsoSpec first;
    first.when = -657434.0;
    ZloQsoSpec last;
    last.when = 2958465.9999999;
    const auto lines = convert({first, last});
    ASSERT_EQ(lines.size(), 2U);
    using Date = std::vector<std::string>;
    EXPECT_EQ(Date(lines[0].begin(), lines[0].begin() + 3), (Date{"0100", "01", "01"}));
    // "10000/01/01": the first four characters, the two from the sixth, the last two.
    EXPECT_EQ(Date(lines[1].begin(), lines[1].begin() + 3), (Date{"1000", "/0", "01"}));
}

TEST_F(ZloRun, ATimeStampThatIsNoDateIsARunTimeFailure)
{
    for (const double when : {std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity(), 2958466.0, -657435.0}) {
        ZloQsoSpec q;
        q.when = when;
        try {
            convert({q});
            ADD_FAILURE() << "no failure for " << when;
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), failure::Overflow);
        }
    }
}

TEST_F(ZloRun, AReportWithAHighByteOf128OrAboveIsARunTimeFailure)
{
    for (const bool sent : {true, false}) {
        ZloQsoSpec good, bad;
        (sent ? bad.rstSent : bad.rstRcvd) = 0x8000 | 59;
        try {
            convert({good, bad});
            ADD_FAILURE() << "no failure";
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), failure::Overflow);
        }
    }
    ZloQsoSpec high;
    high.rstSent = 0x7FFF;
    EXPECT_EQ(convert({high})[0][RstSent], "32767");
}

TEST_F(ZloRun, TheReceivedExchangeIsCutBeforeItsFirstBlank)
{
    struct Case
    {
        const char *rcvd, *expected;
    };
    for (const Case c : {Case{"25", "25"},
                         {"13M 599", "13M"},
                         {" 25", ""},
                         {"100121", "100121"},
                         {"123456789AB", "123456789"}}) {
        ZloQsoSpec q;
        q.rcvd = c.rcvd;
        EXPECT_EQ(convert({q})[0][Rcvd], c.expected) << c.rcvd;
    }
}

TEST_F(ZloRun, TheCallTakesAsManyCharactersAsItsLengthByteSays)
{
    ZloQsoSpec q;
    q.callRaw = std::string("JA1ABCXYZ");
    q.callLen = 6;
    EXPECT_EQ(convert({q})[0][Call], "JA1ABC");
}

TEST_F(ZloRun, AMemoOfFiveDoubleByteCharactersHasLengthTenAndIsReadExactly)
{
    use.memo = true;
    ZloQsoSpec q;
    // Five double-byte characters, then bytes that are not NUL: ten characters are taken,
    // then ten bytes, which leaves the five characters.
    q.memoRaw = text::encodeSjis("日本語メモ") + "abcdefgh";
    q.memoLen = 10;
    EXPECT_EQ(text::encodeSjis("日本語メモ").size(), 10u);
    EXPECT_EQ(convert({q})[0][Memo], "日本語メモ");
}

TEST_F(ZloRun, ANulInTheOperatorOrTheMemoEndsIt)
{
    use.memo = true;
    use.op = true;
    ZloQsoSpec q;
    q.opRaw = std::string("AB\0CD", 5);
    q.memoRaw = std::string("good\0bad", 8);
    const auto lines = convert({q});
    EXPECT_EQ(lines[0][Op], "AB");
    EXPECT_EQ(lines[0][Memo], "good");
}

TEST_F(ZloRun, TheOperatorIsEmptyUnlessCheck02OrTheOpItemAsksForIt)
{
    ZloQsoSpec q;
    q.op = "OP5";
    EXPECT_EQ(convert({q})[0][Op], "");
    use.op = true;
    EXPECT_EQ(convert({q})[0][Op], "OP5");
    use.op = false;
    use.opPercent = true; // "OP %" does not count for this reader
    EXPECT_EQ(convert({q})[0][Op], "");
    use.opPercent = false;
    options.set("Check02", "1");
    EXPECT_EQ(convert({q})[0][Op], "OP5");
}

TEST_F(ZloRun, WithCheck02TheOperatorFieldIsWhatTheFilterCompares)
{
    options.set("Check02", "1");
    ZloQsoSpec mine, other, marked;
    mine.op = "JA1";
    other.op = "ja1";
    marked.op = "";
    marked.memo = "%%JA1%%";
    use.memo = true;
    engine::RunContext& c =
        make(file(ZloWriter().header("X").qso(mine).qso(other).qso(marked).bytes()));
    c.run.op_filter_name = "JA1";
    readers::read_zlo(c);
    const auto lines = records(work(base::working::zlog_1), 13);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0][Op], "JA1");
    EXPECT_EQ(c.run.written_count, 1);
}

TEST_F(ZloRun, WithCheck02AndNoNameNoRecordIsDropped)
{
    options.set("Check02", "1");
    ZloQsoSpec a, b;
    a.op = "A";
    EXPECT_EQ(convert({a, b}).size(), 2u);
}

// --- Frequency and memo ---------------------------------------------------------------------

TEST_F(ZloRun, WithoutCheck17TheFrequencyIsTheBandAndTheMemoStays)
{
    ZloQsoSpec q;
    q.memo = "(14025)";
    q.band = 4;
    const auto lines = convert({q});
    EXPECT_EQ(lines[0][Freq], "14");
    EXPECT_EQ(lines[0][Memo], "(14025)");
}

TEST_F(ZloRun, AMemoOf14025AloneGivesTheFrequencyAndAnEmptyMemo)
{
    options.set("Check17", "1");
    ZloQsoSpec q;
    q.memo = "(14025)";
    const auto lines = convert({q});
    EXPECT_EQ(lines[0][Freq], "14.025");
    EXPECT_EQ(lines[0][Memo], "");
}

TEST_F(ZloRun, ABracketTextOfNineCharactersKeepsTheFrequencyOfTheRecordBefore)
{
    options.set("Check17", "1");
    ZloQsoSpec first, second, third;
    first.memo = "(14025) abc";
    second.memo = "(7012)";
    third.memo = "(14025) abc";
    const auto lines = convert({first, second, third});
    // The first record has no frequency before it.
    EXPECT_EQ(lines[0][Freq], "");
    EXPECT_EQ(lines[0][Memo], " abc");
    EXPECT_EQ(lines[1][Freq], "7.012");
    EXPECT_EQ(lines[2][Freq], "7.012");
}

TEST_F(ZloRun, FrequenciesOfEveryReadableLength)
{
    options.set("Check17", "1");
    struct Case
    {
        const char *memo, *freq;
    };
    for (const Case c : {Case{"(1825)", "1.825"},
                         {"(14025)", "14.025"},
                         {"(144100)", "144.100"},
                         {"(1296100)", "1296.100"},
                         {"(14.025)", "14.025"},
                         {"(7123.0)", "712.3.0"}}) {
        ZloQsoSpec q;
        q.memo = c.memo;
        EXPECT_EQ(convert({q})[0][Freq], c.freq) << c.memo;
    }
}

TEST_F(ZloRun, AMemoOfZeroInBracketsGivesTheBandAndStaysUnlessTheMemoItemsAreUsed)
{
    options.set("Check17", "1");
    ZloQsoSpec q;
    q.memo = "(0)";
    q.band = 2;
    auto lines = convert({q});
    EXPECT_EQ(lines[0][Freq], "7");
    EXPECT_EQ(lines[0][Memo], "(0)");
    use.memo = true;
    lines = convert({q});
    EXPECT_EQ(lines[0][Memo], "");
    use.memo = false;
    use.memoEquals = true;
    lines = convert({q});
    EXPECT_EQ(lines[0][Memo], "");
}

TEST_F(ZloRun, TheMemoItemsTakeTheBracketOutAndAnEmptyPairBecomesABlank)
{
    use.memo = true;
    ZloQsoSpec q;
    q.memo = "ab(14025)cd";
    EXPECT_EQ(convert({q})[0][Memo], "abcd");
    q.memo = "x() y";
    EXPECT_EQ(convert({q})[0][Memo], "x y");
    q.memo = "(7)a()b";
    EXPECT_EQ(convert({q})[0][Memo], "a b");
    q.memo = "no bracket";
    EXPECT_EQ(convert({q})[0][Memo], "no bracket");
}

TEST_F(ZloRun, ABracketWithoutItsCloseRunsToTheEndOfTheMemo)
{
    use.memo = true;
    options.set("Check17", "1");
    ZloQsoSpec q;
    q.memo = "ab(14025";
    const auto lines = convert({q});
    EXPECT_EQ(lines[0][Freq], "14.025");
    EXPECT_EQ(lines[0][Memo], "ab");
    q.memo = "x) y(7012";
    EXPECT_EQ(convert({q})[0][Memo], "x) y");
}

// --- Header ---------------------------------------------------------------------------------

struct ZloHeadRun : ZloRun
{
    ZloHead head(const std::string& bytes, const char* f_type = "zlo")
    {
        engine::RunContext& c = make(file(bytes), f_type);
        return readers::read_zlo_head(c, zlo, analysis);
    }
};

TEST_F(ZloHeadRun, TakesTheContestNameUpToItsFirstNulAndShowsItInGreen)
{
    EXPECT_EQ(head(ZloWriter().rawHeader(std::string("CQ WPX Contest\0junk", 19), 3).bytes()),
              ZloHead::Read);
    EXPECT_EQ(zctx->run.cont_name, "CQ WPX Contest");
    ASSERT_FALSE(observer.statuses.empty());
    EXPECT_EQ(observer.statuses.back(),
              (std::pair<std::string, base::Colour>{"CQ WPX Contest", base::Colour::Green}));
    EXPECT_TRUE(asking.asked.empty());
}

TEST_F(ZloHeadRun, ShowsTheNameOnlyForAZloInput)
{
    EXPECT_EQ(head(ZloWriter().header("CQ WPX Contest").bytes(), "all"), ZloHead::Read);
    EXPECT_EQ(zctx->run.cont_name, "CQ WPX Contest");
    EXPECT_TRUE(observer.statuses.empty());
}

TEST_F(ZloHeadRun, ANameHoldingCqww160BecomesTheCqww160Contest)
{
    EXPECT_EQ(head(ZloWriter().header("2024 CQWW160 CW").bytes()), ZloHead::Read);
    EXPECT_EQ(zctx->run.cont_name, "CQWW160 Contest");
    EXPECT_EQ(head(ZloWriter().header("cqww160").bytes()), ZloHead::Read);
    EXPECT_EQ(zctx->run.cont_name, "cqww160");
}

TEST_F(ZloHeadRun, KeepsTheStationNameAndTheRecordCount)
{
    ZloQsoSpec q;
    EXPECT_EQ(head(ZloWriter().header("X", {}, "JA1ZZZ").qso(q).qso(q).bytes(1000)), ZloHead::Read);
    EXPECT_EQ(zlo.station_name, "JA1ZZZ");
    EXPECT_EQ(zlo.record_count, 4);
    EXPECT_EQ(zctx->run.Label37, "   3　件");
}

TEST_F(ZloHeadRun, AnEmptyInputNameAsksForAFile)
{
    engine::RunContext& c = make("");
    c.run.in_name.clear();
    EXPECT_EQ(readers::read_zlo_head(c, zlo, analysis), ZloHead::NoInput);
    EXPECT_EQ(c.run.lblIn_name, "入力ﾌｧｲﾙをﾒﾆｭｰより指定して下さい。");
}

TEST_F(ZloHeadRun, AMissingFileIsARunTimeFailure)
{
    engine::RunContext& c = make(dir / "NONE.ZLO");
    try {
        (void)readers::read_zlo_head(c, zlo, analysis);
        ADD_FAILURE() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::FileNotFound);
    }
}

TEST_F(ZloHeadRun, AnEmptyContestNameAsksAndRetryGoesOnWithAnEmptyName)
{
    asking.answer = base::Dialogs::Answer::Retry;
    EXPECT_EQ(head(ZloWriter().header("").bytes()), ZloHead::Read);
    ASSERT_EQ(asking.asked.size(), 1u);
    const auto& a = asking.asked[0];
    EXPECT_EQ(a.title, "　　DAT ﾌｧｲﾙ よりcode、QTHの取得は不可能！");
    EXPECT_EQ(a.buttons, base::Dialogs::Buttons::RetryCancel);
    EXPECT_EQ(a.icon, base::Dialogs::Icon::Stop);
    EXPECT_EQ(a.text, readers::noNameDialogText(zctx->run.in_name));
    EXPECT_NE(a.text.find("または　zLog for windows にて　[ " + zctx->run.in_name + " ]"),
              std::string::npos);
    EXPECT_TRUE(zlo.zlo_name_missing);
    EXPECT_EQ(zctx->run.cont_name, "");
    EXPECT_NE(
        std::find(observer.statuses.begin(), observer.statuses.end(),
                  std::pair<std::string, base::Colour>{"　ｺﾝﾃｽﾄ名　取得不可能", base::Colour::Red}),
        observer.statuses.end());

    // The run's second reading of the header does not ask again.
    EXPECT_EQ(readers::read_zlo_head(*zctx, zlo, analysis), ZloHead::Read);
    EXPECT_EQ(asking.asked.size(), 1u);
}

TEST_F(ZloHeadRun, CancelEndsTheProgram)
{
    asking.answer = base::Dialogs::Answer::Cancel;
    EXPECT_EQ(head(ZloWriter().header("").bytes()), ZloHead::ProgramEnds);
    EXPECT_FALSE(zlo.zlo_name_missing);
}

TEST_F(ZloHeadRun, TheDefaultAnswerOfAFrontEndThatCannotAskIsRetry)
{
    test::RecordingDialogs plain;
    readers::ZloOpenState state;
    EXPECT_TRUE(readers::no_name_in_header(plain, "X.ZLO", state));
    EXPECT_TRUE(state.zlo_name_missing);
}

TEST_F(ZloHeadRun, OnlyALengthByteOfZeroAsks)
{
    // A name whose length byte is set but whose text is empty does not ask; a text whose
    // length byte is 0 asks and keeps the text.
    EXPECT_EQ(head(ZloWriter().rawHeader("", 5).bytes()), ZloHead::Read);
    EXPECT_TRUE(asking.asked.empty());
    EXPECT_EQ(head(ZloWriter().rawHeader("IOTA Contest", 0).bytes()), ZloHead::Read);
    EXPECT_EQ(asking.asked.size(), 1u);
    EXPECT_EQ(zctx->run.cont_name, "IOTA Contest");
}

TEST(ZloNoNameDialog, HasABlankLineBetweenLinesAndTwoAheadOfRetry)
{
    const std::string t = readers::noNameDialogText("C:\\LOG\\A.ZLO");
    EXPECT_EQ(t.rfind("ＴＸＴ形式のファイルを zListw に読み込みしてから\n\nZLO に変換した", 0), 0u);
    EXPECT_NE(
        t.find(
            "* ．ZLO を作成し直して下さい。\n\n\n［ 再 試 行 "
            "］　再度入力ファイルの指定を行います。\n\n［キャンセル］　プログラムを終了します。 "),
        std::string::npos);
    EXPECT_TRUE(text::endsWith(t, "プログラムを終了します。 "));
    EXPECT_NE(t.find("にて　[ C:\\LOG\\A.ZLO ]\n\n起動画面の"), std::string::npos);
}

TEST_F(ZloHeadRun, TheContestFlagsReachTheRun)
{
    options.set("Rmks1_cfg", "Zone,IOTA,,");
    options.set("Rmks2_cfg", "");
    EXPECT_EQ(head(ZloWriter().header("CQWW DX Contest").bytes()), ZloHead::Read);
    EXPECT_TRUE(analysis.rcvd_has_zone);
    EXPECT_TRUE(zctx->run.use_log_zone);
    EXPECT_FALSE(zctx->run.logIotaFlag);
    EXPECT_EQ(analysis.lblCon_No, "RST + CQ zone");
    EXPECT_EQ(analysis.missing_items, " IOTA 番号 , ");
    EXPECT_TRUE(analysis.cellHighlighted[0][0]);

    EXPECT_EQ(head(ZloWriter().header("IOTA Contest").bytes()), ZloHead::Read);
    EXPECT_FALSE(zctx->run.use_log_zone);
    EXPECT_TRUE(zctx->run.logIotaFlag);
}

TEST_F(ZloHeadRun, TheHeaderPassCountsPortableAndLongCalls)
{
    options.set("Rmks1_cfg", "MNG,,");
    options.set("Rmks2_cfg", "");
    ZloQsoSpec portable, longCall;
    portable.call = "5B4/JA1ABC";
    longCall.call = "JA1ABCD";
    EXPECT_EQ(head(ZloWriter().header("X").qso(portable).qso(longCall).bytes()), ZloHead::Read);
    EXPECT_EQ(analysis.portable_count, 1);
    EXPECT_EQ(analysis.long_call_count, 1);
    EXPECT_TRUE(analysis.dxLabelsRed);
}

// --- The open -------------------------------------------------------------------------------

TEST_F(ZloHeadRun, EachOpenAsksAgainAboutAnEmptyName)
{
    const auto path = file(ZloWriter().header("").bytes());
    engine::RunContext& c = make(path, "");
    EXPECT_EQ(readers::openZloFile(c, zlo, analysis, false), ZloHead::Read);
    EXPECT_EQ(c.run.f_type, "zlo");
    EXPECT_EQ(c.run.file_letter, "Z");
    EXPECT_EQ(readers::openZloFile(c, zlo, analysis, false), ZloHead::Read);
    EXPECT_EQ(asking.asked.size(), 2u);
    EXPECT_EQ(zlo.last_in_name, path.string());
    EXPECT_EQ(zlo.prev_in_name, path.string());
}

TEST_F(ZloHeadRun, TheRefContestTicksCheck13)
{
    options.set("Check13", "0");
    engine::RunContext& c = make(file(ZloWriter().header("REFコンテスト(DX)").bytes()), "");
    EXPECT_EQ(readers::openZloFile(c, zlo, analysis, false), ZloHead::Read);
    EXPECT_TRUE(c.options.tick("Check13"));
}

TEST_F(ZloHeadRun, TheFolderOpenReadsTheHeaderAgainForAnotherFileWithOption02Member2)
{
    options.set("Option02", "2");
    engine::RunContext& c = make(file(ZloWriter().header("X").bytes(), "A.ZLO"), "");
    EXPECT_EQ(readers::openZloFile(c, zlo, analysis, true), ZloHead::Read);
    const auto count = [&] {
        return std::count(observer.statuses.begin(), observer.statuses.end(),
                          std::pair<std::string, base::Colour>{"X", base::Colour::Green});
    };
    EXPECT_EQ(count(), 2);
    // The same file again: read once.
    EXPECT_EQ(readers::openZloFile(c, zlo, analysis, true), ZloHead::Read);
    EXPECT_EQ(count(), 3);
    options.set("Option02", "0");
    engine::RunContext& d = make(file(ZloWriter().header("X").bytes(), "B.ZLO"), "");
    EXPECT_EQ(readers::openZloFile(d, zlo, analysis, true), ZloHead::Read);
    EXPECT_EQ(count(), 4);
}

// --- z2a ------------------------------------------------------------------------------------

TEST(ZloZ2aName, CutsBeforeTheFirstPointWhereverItStands)
{
    EXPECT_EQ(readers::z2aName("/logs/A.ZLO"), "/logs/A_z2a.all");
    EXPECT_EQ(readers::z2aName("/logs/a.zlo.zlo"), "/logs/a_z2a.all");
    EXPECT_EQ(readers::z2aName("/my.logs/A.ZLO"), "/my_z2a.all");
    EXPECT_EQ(readers::z2aName(" /logs/A.ZLO "), "/logs/A_z2a.all");
    EXPECT_EQ(readers::z2aName("/logs/NOEXT"), "/logs/NOEXT_z2a.all");
    const std::string longPath = "/" + std::string(125, 'd') + "/A.ZLO";
    EXPECT_EQ(readers::z2aName(longPath), text::left(longPath, 120) + "_z2a.all");
}

struct Z2aRun : ZloRun
{
    std::vector<std::string> make_z2a(const std::string& bytes, const char* f_type = "zlo")
    {
        engine::RunContext& c = make(file(bytes, "LOG.ZLO"), f_type);
        const readers::Z2aResult r = readers::mnuMake_z2a_Click(c);
        EXPECT_EQ(r.path, (dir / "LOG_z2a.all").string());
        result = r;
        return test::readSjisLines(r.path);
    }
    readers::Z2aResult result;
};

TEST_F(Z2aRun, WritesTheAllTextInItsColumns)
{
    ZloQsoSpec q;
    q.when = 45000.5 + 5.0 / 1440;
    q.call = "JA1ABC";
    q.sent = "13M";
    q.rcvd = "25H";
    q.rstSent = 599;
    q.rstRcvd = 59;
    q.multi1 = "25";
    q.multi1New = 1;
    q.multi2 = "XX";
    q.band = 4;
    q.mode = 0;
    q.points = 3;
    q.op = "OP5";
    q.memo = "(14025) hi";
    options.set("Check17", "1"); // no option is looked at
    const auto lines = make_z2a(ZloWriter().header("X").qso(q).bytes());
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "zLog for Windows       by Vornhale 5.44");
    EXPECT_EQ(lines[1],
              "2023/03/15 12:05 JA1ABC       599 13M     59  25H     25    -     14   CW   3  "
              "%%OP5%%(14025) hi");
    EXPECT_TRUE(result.showZ2a);
    EXPECT_EQ(observer.statuses.back().first, "　z2a ﾌｧｲﾙ  作 成 終 了");
}

TEST_F(Z2aRun, ANineCharacterReceivedNumberStandsInFullAndMovesTheRest)
{
    ZloQsoSpec q;
    q.rcvd = "123456789";
    q.band = 9;
    const auto lines = make_z2a(ZloWriter().header("X").qso(q).bytes());
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(text::mid(lines[1], 47, 9), "123456789");
    EXPECT_EQ(text::mid(lines[1], 56, 6), "-     ");
    EXPECT_EQ(text::mid(lines[1], 68, 5), "50   ");
}

TEST_F(Z2aRun, LongFieldsAreCutToTheirWidthInBytes)
{
    ZloQsoSpec q;
    q.call = "ＡＢＣＤＥＦ"; // 12 bytes in a 13-byte column
    q.sent = "日本語メモ";   // 9 of its 10 bytes would cross the column of 8
    const auto lines = make_z2a(ZloWriter().header("X").qso(q).bytes());
    EXPECT_EQ(text::Mid_sjis(lines[1], 18, 13), "ＡＢＣＤＥＦ ");
    // The sent number is read from nine bytes: four characters, cut to eight bytes.
    EXPECT_EQ(text::Mid_sjis(lines[1], 35, 8), "日本語メ");
}

TEST_F(Z2aRun, KeepsTheOperatorAndMemoWithoutNulOrByteCut)
{
    ZloQsoSpec q;
    q.opRaw = std::string("AB\0C", 4);
    q.memo = "";
    const auto lines = make_z2a(ZloWriter().header("X").qso(q).bytes());
    EXPECT_EQ(text::mid(lines[1], 80), std::string("%%AB\0C%%", 8));
}

TEST_F(Z2aRun, NoOperatorWritesOnlyTheMemo)
{
    ZloQsoSpec q;
    q.memo = "memo";
    const auto lines = make_z2a(ZloWriter().header("X").qso(q).bytes());
    EXPECT_EQ(text::mid(lines[1], 80), "memo");
}

TEST_F(Z2aRun, ForAnotherInputKindTheViewerStaysOff)
{
    make_z2a(ZloWriter().header("X").bytes(), "all");
    EXPECT_FALSE(result.showZ2a);
}

TEST_F(Z2aRun, TheReportFailureStopsTheText)
{
    ZloQsoSpec bad;
    bad.rstRcvd = 0x8100;
    engine::RunContext& c = make(file(ZloWriter().header("X").qso(bad).bytes(), "LOG.ZLO"));
    EXPECT_THROW(readers::mnuMake_z2a_Click(c), failure::Failure);
    EXPECT_FALSE(std::filesystem::exists(dir / "LOG_z2a.all"));
}

// --- Bad input ------------------------------------------------------------------------------

TEST_F(ZloRun, AnyFileOfAnyLengthIsReadOrFailsCleanly)
{
    std::mt19937 rng(7);
    for (std::size_t size :
         {0u, 1u, 100u, 255u, 256u, 257u, 383u, 384u, 511u, 700u, 1000u, 1400u, 4096u}) {
        std::string bytes(size, '\0');
        for (char& b : bytes) {
            b = static_cast<char>(rng());
        }
        for (const bool zeroTimes : {false, true}) {
            if (zeroTimes) {
                for (std::size_t r = 256; r + 8 <= size; r += 256) {
                    std::fill_n(bytes.begin() + static_cast<long>(r), 8, '\0');
                    bytes[r + 85] = 0;
                    bytes[r + 87] = 0;
                }
            }
            const auto path = file(bytes);
            try {
                engine::RunContext& c = make(path);
                (void)readers::read_zlo_head(c, zlo, analysis);
                readers::read_zlo(c);
                readers::mnuMake_z2a_Click(c);
            } catch (const failure::Failure&) {
            }
        }
    }
    SUCCEED();
}

TEST_F(ZloRun, ARandomFileWithValidStampsAndReportsConvertsEveryRecord)
{
    std::mt19937 rng(11);
    std::string bytes(256 * 6, '\0');
    for (char& b : bytes) {
        b = static_cast<char>(rng());
    }
    for (std::size_t r = 256; r < bytes.size(); r += 256) {
        const double when = 45000.25;
        std::memcpy(bytes.data() + r, &when, 8);
        bytes[r + 85] = 0;
        bytes[r + 87] = 0;
    }
    EXPECT_EQ(convert(bytes).size(), 5u);
}

// --- Real files -----------------------------------------------------------------------------

TEST_F(ZloRun, TheQxslFixtureMatchesItsAllTextForTheContactsTheTextHolds)
{
    const auto zloPath = test::realData("zlog/allja1_qxsl_fixture.ZLO");
    const auto allPath = test::realData("zlog/allja1_qxsl_fixture.ALL");
    if (!zloPath || !allPath) {
        GTEST_SKIP() << "real data not present";
    }
    use.op = true;
    engine::RunContext& c = make(*zloPath);
    EXPECT_EQ(readers::read_zlo_head(c, zlo, analysis), ZloHead::Read);
    EXPECT_EQ(c.run.cont_name, "ALL JA コンテスト");
    EXPECT_EQ(zlo.station_name, "Your call si");
    EXPECT_EQ(zlo.record_count, 1001);
    readers::read_zlo(c);
    const auto fromZlo = records(work(base::working::zlog_1), 13);
    ASSERT_EQ(fromZlo.size(), 1000u);
    EXPECT_EQ(c.run.written_count, 1000);

    engine::RunContext& t = make(*allPath, "all");
    t.run.file_letter = "A";
    readers::a_2_t(t);
    const auto fromAll = records(work(base::working::zlog_1), 13);
    ASSERT_EQ(fromAll.size(), 776u);

    // The text holds the contacts of every mode but "Other", in the same order.
    std::size_t z = 0;
    for (const auto& a : fromAll) {
        while (z < fromZlo.size() && fromZlo[z][Mode] == "Other") {
            ++z;
        }
        ASSERT_LT(z, fromZlo.size());
        const auto& b = fromZlo[z++];
        EXPECT_EQ(b[Year], a[Year]);
        EXPECT_EQ(b[Month], a[Month]);
        EXPECT_EQ(b[Day], a[Day]);
        // The binary reader keeps the colon of the time; the text reader gives four digits.
        EXPECT_EQ(text::replaceAll(b[Time], ":", ""), a[Time]);
        // The text reader keeps the blanks of the call's column.
        EXPECT_EQ(b[Call], std::string(text::trim(a[Call])));
        // The text reader keeps the three bytes of a report's column as they stand.
        EXPECT_EQ(b[RstSent], std::string(text::trim(a[RstSent])));
        EXPECT_EQ(b[RstRcvd], std::string(text::trim(a[RstRcvd])));
        EXPECT_EQ(b[Band], a[Band]);
        EXPECT_EQ(b[Mode], a[Mode]);
        EXPECT_EQ(b[Op], a[Op]);
        EXPECT_EQ(b[Rcvd], a[Rcvd]);
        // Without Check17 the binary reader writes the band as frequency, the text one nothing.
        EXPECT_EQ(b[Freq], b[Band]);
        EXPECT_EQ(a[Freq], "");
    }
    EXPECT_EQ(std::count_if(fromZlo.begin(), fromZlo.end(),
                            [](const auto& r) { return r[Mode] == "Other"; }),
              224);
}

TEST_F(ZloRun, TheQxslFixturesZ2aTextReadsBackAsTheSameContacts)
{
    const auto zloPath = test::realData("zlog/allja1_qxsl_fixture.ZLO");
    if (!zloPath) {
        GTEST_SKIP() << "real data not present";
    }
    const auto copy = dir / "FIX.ZLO";
    std::filesystem::copy_file(*zloPath, copy);
    use.op = true;
    engine::RunContext& c = make(copy);
    readers::read_zlo(c);
    const auto fromZlo = records(work(base::working::zlog_1), 13);
    const auto z2a = readers::mnuMake_z2a_Click(c);

    engine::RunContext& t = make(z2a.path, "all");
    t.run.file_letter = "A";
    readers::a_2_t(t);
    const auto back = records(work(base::working::zlog_1), 13);
    ASSERT_EQ(back.size(), fromZlo.size());
    for (std::size_t i = 0; i < back.size(); ++i) {
        EXPECT_EQ(text::replaceAll(fromZlo[i][Time], ":", ""), back[i][Time]);
        EXPECT_EQ(fromZlo[i][Call], std::string(text::trim(back[i][Call])));
        EXPECT_EQ(fromZlo[i][Band], back[i][Band]);
        EXPECT_EQ(fromZlo[i][Rcvd], back[i][Rcvd]);
        EXPECT_EQ(fromZlo[i][Op], back[i][Op]);
        // "RTY" and "Other" come back cut to the text's three columns.
        EXPECT_EQ(text::left(fromZlo[i][Mode], 3), back[i][Mode]);
    }
}

TEST_F(ZloRun, ZLogsOwnZloxFilesReadAsZloDoNotCrash)
{
    const auto folderPath = test::realData("zlog/samples_zlog_repo");
    if (!folderPath) {
        GTEST_SKIP() << "real data not present";
    }
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(*folderPath)) {
        const std::string ext = text::upper(entry.path().extension().string());
        if (ext != ".ZLOX") {
            continue;
        }
        ++files;
        const auto copy = dir / "X.ZLO";
        std::filesystem::copy_file(entry.path(), copy,
                                   std::filesystem::copy_options::overwrite_existing);
        try {
            engine::RunContext& c = make(copy);
            (void)readers::read_zlo_head(c, zlo, analysis);
            readers::read_zlo(c);
        } catch (const failure::Failure&) {
        }
    }
    EXPECT_GT(files, 0);
}

} // namespace
