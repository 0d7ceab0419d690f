#include "failure/Failure.h"
#include "readers/CabrilloReader.h"
#include "readers/CabrilloTxtForm.h"
#include "readers/InputSelection.h"
#include "support/RunFixture.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

constexpr const char* kStart = "START-OF-LOG: 3.0";
constexpr const char* kEnd = "END-OF-LOG:";

// A QSO line in the columns of the Cabrillo template.
std::string qso(const std::string& khz = "14025", const std::string& mode = "CW",
                const std::string& date = "2026-11-22", const std::string& time = "0905",
                const std::string& call = "JA1ABC", const std::string& rst = "599",
                const std::string& exch = "25")
{
    const auto right = [](const std::string& s, std::size_t w) {
        return s.size() < w ? std::string(w - s.size(), ' ') + s : s;
    };
    return "QSO: " + right(khz, 5) + " " + mode + " " + date + " " + time +
           " ZZ9ZZZ        599 13     " + text::padRight(call, 13) + " " + right(rst, 3) + " " +
           text::padRight(exch, 6) + " 0";
}

enum Field { Year, Month, Day, Time, Call, Sent, Rcvd, Band, Mode, Op, Memo, Freq, Exch };

struct CabrilloRun : test::RunFixture
{
    settings::Options options = settings::Options::defaults();

    fs::path write(const std::vector<std::string>& lines, const char* name = "TEST.CBR")
    {
        const fs::path path = dir / name;
        test::writeSjisLines(path, lines);
        return path;
    }

    std::vector<std::vector<std::string>> run(const std::vector<std::string>& lines)
    {
        const fs::path path = write(lines);
        engine::RunContext& c = context(options);
        c.run.in_name = path.string();
        c.run.setKind(readers::InputKind::Cbr);
        c.run.op_filter_name = options.value("txtOp_name");
        readers::henkan_cbr_2_t(c);
        return records(work("zlog_1.txt"), 13);
    }

    int failureOf(const std::vector<std::string>& lines)
    {
        try {
            run(lines);
        } catch (const failure::Failure& f) {
            return f.number();
        }
        return 0;
    }
};

} // namespace

TEST(CabrilloRecognition, AFirstLineHoldingStartOfLogAnywhereOpensTheFile)
{
    test::RunFixture f;
    for (const char* first : {"START-OF-LOG: 3.0", "START-OF-LOG:", "   START-OF-LOG:  2.0"}) {
        readers::InputState run;
        const fs::path p = f.dir / "a.cbr";
        test::writeSjisLines(p, {first, qso(), kEnd});
        EXPECT_TRUE(readers::FileOpen_cbr(run, p)) << first;
        EXPECT_EQ(run.f_type, "cbr");
        EXPECT_TRUE(run.opened_as_cbr);
    }
}

TEST(CabrilloRecognition, AnyOtherFirstLineRejectsTheFileWithItsMessage)
{
    test::RunFixture f;
    for (const std::vector<std::string>& lines : {std::vector<std::string>{"", kStart, qso()},
                                                  {"QSO: 14025 CW", kStart},
                                                  {"start-of-log: 3.0", qso()},
                                                  {}}) {
        readers::InputState run;
        const fs::path p = f.dir / "a.log";
        test::writeSjisLines(p, lines);
        EXPECT_FALSE(readers::FileOpen_cbr(run, p));
        EXPECT_EQ(run.in_name, "Cabrillo ﾌｧｲﾙではありません！");
        EXPECT_EQ(run.lblIn_name, "Cabrillo ﾌｧｲﾙではありません！");
        EXPECT_EQ(run.f_type, "");
        EXPECT_FALSE(run.opened_as_cbr);
    }
}

TEST(CabrilloRecognition, IotaReferencesInToken8SetTheFlagAndSouthAmericaIsNsNotSa)
{
    test::RunFixture f;
    struct Case
    {
        const char* token8;
        bool iota;
    };
    for (const Case& c : {Case{"EU-005", true},
                          {"NS-001", true},
                          {"AN-016", true},
                          {"OC-123", true},
                          {"SA-001", false},
                          {"JA1ABC", false}}) {
        readers::InputState run;
        const fs::path p = f.dir / "iota.cbr";
        const std::string line = "QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 EU-001 " +
                                 std::string(c.token8) + " 599 001 0";
        test::writeSjisLines(p, {kStart, "CONTEST: RSGB-IOTA", line, kEnd});
        ASSERT_TRUE(readers::FileOpen_cbr(run, p));
        EXPECT_EQ(run.cbr_has_iota, c.iota) << c.token8;
    }
}

TEST(CabrilloRecognition, TheIotaLookPassesOverShortQsoLinesAndTheFirstLine)
{
    test::RunFixture f;
    readers::InputState run;
    const fs::path p = f.dir / "short.cbr";
    test::writeSjisLines(
        p, {"START-OF-LOG: 3.0 QSO: 1 2 3 4 5 6 7 EU-005", "SOAPBOX: QSO: EU-", qso(), kEnd});
    ASSERT_TRUE(readers::FileOpen_cbr(run, p));
    EXPECT_FALSE(run.cbr_has_iota);
}

TEST(CabrilloRecognition, OpeningCountsTheQsoLinesIntoLabel39)
{
    test::RunFixture f;
    auto& ctx = f.context();
    const fs::path p = f.dir / "CONTEST.CBR";
    test::writeSjisLines(p,
                         {kStart, "CALLSIGN: ZZ9ZZZ", qso(), qso("7025"),
                          "X-QSO:  7026 CW 2026-11-22 0906 ZZ9ZZZ 599 25 JA1XYZ 599 13 0", kEnd});
    ASSERT_EQ(readers::openInput(ctx, p, "cbr"), readers::OpenResult::Opened);
    EXPECT_EQ(ctx.run.f_type, "cbr");
    EXPECT_EQ(ctx.run.Label39, "3 件");
    EXPECT_EQ(ctx.run.line_count, 3);
    // The window's other label counts the lines (one more behind the last line end), less
    // the first.
    EXPECT_EQ(ctx.run.Label37, "   6　件");
    EXPECT_EQ(ctx.run.names.out_name_ham_n, (f.dir / "CONTEST_hn.csv").string());
}

TEST(CabrilloRecognition, AnotherOpenClearsTheCabrilloMark)
{
    test::RunFixture f;
    auto& ctx = f.context();
    const fs::path cbr = f.dir / "CONTEST.CBR";
    test::writeSjisLines(cbr, {kStart, qso(), kEnd});
    ASSERT_EQ(readers::openInput(ctx, cbr, "cbr"), readers::OpenResult::Opened);
    ASSERT_TRUE(ctx.run.opened_as_cbr);
    const fs::path all = f.dir / "CONTEST.ALL";
    test::writeSjisLines(all, {"zLog for Windows", "2026/11/21 23:19 JA1ZZZ       599         "
                                                   "599 13      -     -     3.5  CW   1"});
    ASSERT_EQ(readers::openInput(ctx, all, ""), readers::OpenResult::Opened);
    EXPECT_FALSE(ctx.run.opened_as_cbr);
    EXPECT_EQ(ctx.run.Label39, "");
}

TEST(CabrilloReader, TakesTheTokensOfAQsoLine)
{
    CabrilloRun r;
    const auto recs = r.run({kStart, qso("14025", "CW", "2026-11-22", "0905", "JA1ABC", "579")});
    ASSERT_EQ(recs.size(), 1u);
    const auto& f = recs[0];
    EXPECT_EQ(f[Year], "2026");
    EXPECT_EQ(f[Month], "11");
    EXPECT_EQ(f[Day], "22");
    EXPECT_EQ(f[Time], "0905");
    EXPECT_EQ(f[Call], "JA1ABC");
    EXPECT_EQ(f[Sent], "599");
    EXPECT_EQ(f[Rcvd], "579");
    EXPECT_EQ(f[Band], "14");
    EXPECT_EQ(f[Mode], "CW");
    EXPECT_EQ(f[Op], "");
    EXPECT_EQ(f[Memo], "");
    EXPECT_EQ(f[Freq], "");
    EXPECT_EQ(f[Exch], "");
    EXPECT_EQ(r.ctx->run.written_count, 1);
}

TEST(CabrilloReader, TabsAndFullWidthBlanksBetweenColumnsReadTheSameAsBlanks)
{
    CabrilloRun r;
    const std::string tabs =
        "QSO:\t14025\tCW\t2026-11-22\t0905\tZZ9ZZZ\t599\t25\tJA1ABC\t599\t13\t0";
    const std::string wide =
        "QSO:　14025　　CW 　2026-11-22\t 0905  ZZ9ZZZ　599 25 JA1ABC 599 13 0";
    const std::string plain = "QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 25 JA1ABC 599 13 0";
    const auto recs = r.run({kStart, tabs, wide, plain});
    ASSERT_EQ(recs.size(), 3u);
    EXPECT_EQ(recs[0], recs[2]);
    EXPECT_EQ(recs[1], recs[2]);
    EXPECT_EQ(recs[2][Call], "JA1ABC");
}

TEST(CabrilloReader, SixPassesFoldRunsOfUpTo64BlanksAndALongerRunShiftsTheTokens)
{
    EXPECT_EQ(readers::normaliseCabrilloBlanks("a" + std::string(64, ' ') + "b", 6), "a b");
    EXPECT_EQ(readers::normaliseCabrilloBlanks("a" + std::string(65, ' ') + "b", 6), "a  b");
    EXPECT_EQ(readers::normaliseCabrilloBlanks("a" + std::string(65, ' ') + "b", 10), "a b");
    // A tab is replaced after the blanks of its pass, so it folds in the next pass.
    EXPECT_EQ(readers::normaliseCabrilloBlanks("a \t b", 1), "a   b");
    EXPECT_EQ(readers::normaliseCabrilloBlanks("a \t b", 2), "a  b");

    // A longer run leaves an empty token 1, which moves every column one place: the date is
    // then the mode.
    CabrilloRun r;
    const std::string wide =
        "QSO:" + std::string(65, ' ') + "14025 CW 2026-11-22 0905 ZZ9ZZZ 599 25 JA1ABC 599 13 0";
    EXPECT_EQ(r.failureOf({kStart, wide}), 9);
}

TEST(CabrilloReader, OneWalkFoldsBlanksAsTheReplacementPassesWould)
{
    // The passes as they are told: double blanks, ideographic blanks, tabs, each by one blank.
    const auto passes = [](std::string s, int n) {
        for (int pass = 0; pass < n; ++pass) {
            s = text::replaceAll(s, "  ", " ");
            s = text::replaceAll(s, "　", " ");
            s = text::replaceAll(s, "\t", " ");
        }
        return s;
    };
    const char* pieces[] = {" ", " ", " ", "\t", "　", "A", "1", "ア", "QSO:"};
    unsigned seed = 12345;
    for (int trial = 0; trial < 3000; ++trial) {
        std::string s;
        seed = seed * 1103515245u + 12345u;
        const int length = static_cast<int>(seed >> 16) % 90;
        for (int k = 0; k < length; ++k) {
            seed = seed * 1103515245u + 12345u;
            s += pieces[(seed >> 16) % std::size(pieces)];
        }
        for (int n : {0, 1, 2, 6, 10}) {
            ASSERT_EQ(readers::normaliseCabrilloBlanks(s, n), passes(s, n)) << s << " " << n;
        }
    }
}

TEST(CabrilloReader, TokenViewsAreTheTokensOfTheFoldedLineSplitAtEveryBlank)
{
    const char* pieces[] = {" ", " ", " ", "\t", "　", "A", "1", "ア", "QSO:"};
    unsigned seed = 54321;
    std::vector<std::string_view> views;
    for (int trial = 0; trial < 3000; ++trial) {
        std::string s;
        seed = seed * 1103515245u + 12345u;
        const int length = static_cast<int>(seed >> 16) % 90;
        for (int k = 0; k < length; ++k) {
            seed = seed * 1103515245u + 12345u;
            s += pieces[(seed >> 16) % std::size(pieces)];
        }
        // A run long enough to stay several blanks after every pass now and then.
        if (trial % 50 == 0) {
            s.insert(s.size() / 2, std::string(2100, ' '));
        }
        for (int n : {0, 1, 2, 6, 10}) {
            const std::string folded = readers::normaliseCabrilloBlanks(s, n);
            const std::vector<std::string> expected =
                folded.empty() ? std::vector<std::string>{} : text::split(folded, " ");
            readers::cabrilloTokenViews(s, n, views);
            ASSERT_EQ(std::vector<std::string>(views.begin(), views.end()), expected)
                << s << " " << n;
            ASSERT_EQ(readers::cabrilloTokens(s, n), expected) << s << " " << n;
        }
    }
}

TEST(CabrilloReader, TheDateIsTheFirstThreePiecesBetweenDashes)
{
    CabrilloRun r;
    const auto recs = r.run({kStart, qso("14025", "CW", "2026-11-22-7"), qso("7025", "CW", "--")});
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(recs[0][Year], "2026");
    EXPECT_EQ(recs[0][Month], "11");
    EXPECT_EQ(recs[0][Day], "22");
    EXPECT_EQ(recs[1][Year], "");
    EXPECT_EQ(recs[1][Month], "");
    EXPECT_EQ(recs[1][Day], "");
}

TEST(CabrilloReader, ALineWithKanjiIsDecodedBeforeItIsRead)
{
    CabrilloRun r;
    const auto recs = r.run({kStart, qso("14025", "CW", "2026-11-22", "0905", "JA1アイ")});
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0][Call], "JA1アイ");
}

TEST(CabrilloReader, AHeaderBlockBeforeTheFirstQsoIsSkippedWithoutAnyOtherTest)
{
    CabrilloRun r;
    const auto recs =
        r.run({kStart, "CALLSIGN: ZZ9ZZZ", "CONTEST: CQ-WW-CW", "CATEGORY-OPERATOR: SINGLE-OP",
               "NAME: 1 2 3 4 5 6 7 8 9 10 11 12", "SOAPBOX:", "", qso(), kEnd});
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0][Call], "JA1ABC");
}

TEST(CabrilloReader, TheClosingLineHoldsNoQsoAndIsSkipped)
{
    CabrilloRun r;
    const auto recs = r.run({kStart, qso(), qso("7025"), kEnd});
    EXPECT_EQ(recs.size(), 2u);
    EXPECT_EQ(r.ctx->run.written_count, 2);
}

TEST(CabrilloReader, AnyLineHoldingQsoIsRead)
{
    // An ignored contact (X-QSO:) holds "QSO:" too, and is converted like the others.
    CabrilloRun r;
    const auto recs =
        r.run({kStart, "X-QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 25 JA9XYZ 599 13 0"});
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0][Call], "JA9XYZ");
}

TEST(CabrilloReader, BandByTheTableAndAFrequencyBetweenTheRangesKeepsTheBandBefore)
{
    CabrilloRun r;
    const auto recs = r.run({kStart, qso("12000"), qso("14025"), qso("12000"), qso("1000"),
                             qso("2000"), qso("5850000"), qso("30000"), qso("30001")});
    ASSERT_EQ(recs.size(), 8u);
    EXPECT_EQ(recs[0][Band], ""); // nothing before it
    EXPECT_EQ(recs[1][Band], "14");
    EXPECT_EQ(recs[2][Band], "14");
    EXPECT_EQ(recs[3][Band], "1.9");
    EXPECT_EQ(recs[4][Band], "1.9");
    EXPECT_EQ(recs[5][Band], "5600");
    EXPECT_EQ(recs[6][Band], "28");
    EXPECT_EQ(recs[7][Band], "28");
}

// The QSO lines of a long log from block `from` to `to`, behind `lead` plain lines, in blocks of
// four: the first of a block names its band, the three others a frequency between the ranges,
// which keeps the band before; with `japanese`, every seventh call is written in kanji.
std::vector<std::string> longCabrilloLog(int from, int to, int lead, bool japanese)
{
    std::vector<std::string> lines{kStart, "CALLSIGN: ZZ9ZZZ"};
    for (int i = 0; i < lead; ++i) {
        lines.push_back(qso());
    }
    const char* khz[] = {"1820", "3525", "7025", "14025", "21025", "28025"};
    for (int b = from; b < to; ++b) {
        for (int i = 0; i < 4; ++i) {
            const int n = b * 4 + i;
            const std::string call =
                japanese && n % 7 == 0 ? "ＪＡ" + std::to_string(n) : "JA" + std::to_string(n);
            lines.push_back(qso(i == 0 ? khz[b % 6] : "12000", b % 2 == 0 ? "CW" : "PH",
                                "2026-11-" + std::to_string(10 + b % 19), "0905", call));
        }
    }
    lines.push_back(kEnd);
    return lines;
}

// A long log is read in two parts side by side, the second taking over the band that the lines
// just before it leave: wherever the parts meet, the lines and the log's .TXT form are those of
// one pass, and two halves cut at a block give them one after the other.
TEST(CabrilloReader, ALongLogGivesWhatOnePassGivesWhereverItsPartsMeet)
{
    constexpr int kBlocks = 2000;
    for (const bool japanese : {false, true}) {
        for (int lead = 0; lead < 4; ++lead) {
            CabrilloRun r;
            auto read = [&r](const std::vector<std::string>& lines) {
                auto recs = r.run(lines);
                const std::string txt = readers::cabrillo_2_zlog_txt(*r.ctx);
                std::vector<std::string> txtLines = test::readSjisLines(txt);
                txtLines.erase(txtLines.begin());
                return std::pair{recs, txtLines};
            };
            const auto [whole, wholeTxt] = read(longCabrilloLog(0, kBlocks, lead, japanese));
            EXPECT_EQ(r.ctx->run.written_count, lead + 4 * kBlocks);
            auto [halves, halvesTxt] = read(longCabrilloLog(0, kBlocks / 2, lead, japanese));
            const auto [second, secondTxt] =
                read(longCabrilloLog(kBlocks / 2, kBlocks, 0, japanese));
            halves.insert(halves.end(), second.begin(), second.end());
            halvesTxt.insert(halvesTxt.end(), secondTxt.begin(), secondTxt.end());
            EXPECT_EQ(whole, halves) << japanese << " " << lead;
            EXPECT_EQ(wholeTxt, halvesTxt) << japanese << " " << lead;
            ASSERT_EQ(whole.size(), static_cast<std::size_t>(lead + 4 * kBlocks));
            for (std::size_t i = lead; i < whole.size(); ++i) {
                ASSERT_EQ(whole[i][Band], whole[i - (i - lead) % 4][Band]) << lead << " " << i;
            }
        }
    }
}

TEST(CabrilloReader, ABandInCabrilloLettersIsBelow1000AndAssignsNothing)
{
    CabrilloRun r;
    const auto recs = r.run({kStart, qso("50"), qso("7025"), qso("50"), qso("144"), qso("1.2G")});
    EXPECT_EQ(recs[0][Band], "");
    EXPECT_EQ(recs[1][Band], "7");
    EXPECT_EQ(recs[2][Band], "7");
    EXPECT_EQ(recs[3][Band], "7");
    EXPECT_EQ(recs[4][Band], "7");
}

TEST(CabrilloReader, WithCheck17TheBandIsTheFrequencyInMhzRightAlignedInSixColumns)
{
    EXPECT_EQ(readers::cabrilloFrequencyMhz("14025"), "14.025");
    EXPECT_EQ(readers::cabrilloFrequencyMhz("7025"), " 7.025");
    EXPECT_EQ(readers::cabrilloFrequencyMhz("1830"), " 1.830");
    // Longer texts stand whole; three characters or fewer get the point in front.
    EXPECT_EQ(readers::cabrilloFrequencyMhz("144100"), "144.100");
    EXPECT_EQ(readers::cabrilloFrequencyMhz("50"), "   .50");

    CabrilloRun r;
    r.options.set("Check17", "1");
    const auto recs = r.run({kStart, qso("14025"), qso("7025"), qso("12000")});
    EXPECT_EQ(recs[0][Band], "14.025");
    EXPECT_EQ(recs[1][Band], " 7.025");
    EXPECT_EQ(recs[2][Band], "12.000");
    EXPECT_EQ(recs[0][Freq], "");
}

TEST(CabrilloReader, PhoneIsSsbAndRyIsRtyOtherModesStandAsTheyAre)
{
    CabrilloRun r;
    const auto recs = r.run({kStart, qso("14200", "PH"), qso("14080", "RY"), qso("14074", "DG"),
                             qso("14025", "CW/Digital")});
    EXPECT_EQ(recs[0][Mode], "SSB");
    EXPECT_EQ(recs[1][Mode], "RTY");
    EXPECT_EQ(recs[2][Mode], "DG");
    EXPECT_EQ(recs[3][Mode], "CW/Digital");
}

TEST(CabrilloReader, Check02WithAnOperatorNameDropsEveryLine)
{
    CabrilloRun r;
    r.options.set("Check02", "1");
    r.options.set("txtOp_name", "JA1ZZZ");
    const auto recs = r.run({kStart, qso(), qso("7025")});
    EXPECT_TRUE(recs.empty());
    EXPECT_EQ(r.ctx->run.written_count, 0);
}

TEST(CabrilloReader, Check02WithoutANameAndTheOpItemKeepEveryLineWithAnEmptyOperator)
{
    CabrilloRun r;
    r.options.set("Check02", "1");
    r.options.set("Rmks1_cfg", "OP,memo");
    const auto recs = r.run({kStart, qso() + " %%JA1ZZZ%%", qso("7025")});
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(recs[0][Op], "");
    EXPECT_EQ(recs[0][Memo], "");
}

TEST(CabrilloReader, AQsoLineOfFewerThanElevenTokensFailsWithNumber9)
{
    CabrilloRun r;
    EXPECT_EQ(r.failureOf({kStart, "QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 25 JA1ABC 599"}), 9);
    EXPECT_EQ(r.failureOf({kStart, "SOAPBOX: 100 QSO: in one night"}), 9);
}

TEST(CabrilloReader, TheFailureOfALineNamesTheLine)
{
    CabrilloRun r;
    try {
        r.run({kStart, "CALLSIGN: ZZ9ZZZ", qso(), "QSO: 14025 CW 2026-11-22"});
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.description(),
                  "インデックスが有効範囲にありません。 (4 行目: QSO: 14025 CW 2026-11-22)");
    }
}

TEST(CabrilloReader, ADateWithoutTwoDashesFailsWithNumber9)
{
    CabrilloRun r;
    EXPECT_EQ(r.failureOf({kStart, qso("14025", "CW", "2026/11/22")}), 9);
    EXPECT_EQ(r.failureOf({kStart, qso("14025", "CW", "2026-1122")}), 9);
}

TEST(CabrilloReader, AFileWithoutLinesFailsPastItsEnd)
{
    CabrilloRun r;
    EXPECT_EQ(r.failureOf({}), 62);
}

TEST(CabrilloReader, ALeadingBlankShiftsTheTokensSoTheDateFails)
{
    // The line is not trimmed: its first token is empty and the mode stands where the date
    // is looked for.
    CabrilloRun r;
    EXPECT_EQ(r.failureOf({kStart, " " + qso()}), 9);
}

TEST(CabrilloTxtForm, WritesTheColumnsOfTheZlogTxtForm)
{
    readers::CabrilloTxtForm form;
    const std::string line =
        "QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ        599 25     JA1ABC        579 13     0";
    EXPECT_EQ(form.line(line), " 11  22 0905 JA1ABC     59925        579      13  "
                               "    14CW      ");
}

TEST(CabrilloTxtForm, PhoneAndRttyModesAndTheBandText)
{
    readers::CabrilloTxtForm form;
    const std::string ph =
        "QSO:  3799 PH 2026-03-06 0711 ZZ9ZZZ         59 700    JA1ABC         59 CT     0";
    EXPECT_EQ(form.line(ph), " 03  06 0711 JA1ABC      59700        59      CT     3.5SSB     ");
    const std::string ry =
        "QSO: 21080 RY 2026-03-06 0711 ZZ9ZZZ        599 05     JA1ABC        599 25     0";
    EXPECT_EQ(form.line(ry), " 03  06 0711 JA1ABC     59905        599      25     1.9RTY     ");
}

TEST(CabrilloTxtForm, BandTextFromTheFrequency)
{
    EXPECT_EQ(readers::cabrilloTxtBand("14025"), "14");
    EXPECT_EQ(readers::cabrilloTxtBand("14000"), "14");
    EXPECT_EQ(readers::cabrilloTxtBand("3512"), "3.5");
    EXPECT_EQ(readers::cabrilloTxtBand("1830"), "1.9");
    EXPECT_EQ(readers::cabrilloTxtBand("7123"), "7");
    EXPECT_EQ(readers::cabrilloTxtBand("28000"), "28");
    EXPECT_EQ(readers::cabrilloTxtBand("21000"), "21");
    // "21.0" holds "1.": a 21 MHz frequency off the round figure reads as 1.9.
    EXPECT_EQ(readers::cabrilloTxtBand("21025"), "1.9");
    EXPECT_EQ(readers::cabrilloTxtBand("1296100"), "1296");
    // Bands in Cabrillo letters have nothing before their last three characters.
    EXPECT_EQ(readers::cabrilloTxtBand("50"), "");
    EXPECT_EQ(readers::cabrilloTxtBand("144"), "");
    EXPECT_EQ(readers::cabrilloTxtBand("1.2G"), "1.9");
}

TEST(CabrilloTxtForm, TheExtraColumnsGoByTheHighestTokenIndexOfTheThirdRange)
{
    readers::CabrilloTxtForm form;
    const std::string head = "QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ        599 25     ";
    // Index 4: token 2 once more; index 5: tokens 3 and 4.
    EXPECT_EQ(form.line(head + "JA1ABC 599 13 MA 0"),
              " 11  22 0905 JA1ABC     59925        599      1313  "
              "    14CW      ");
    EXPECT_EQ(form.line(head + "JA1ABC 599 13 MA X 0"),
              " 11  22 0905 JA1ABC     59925        599      13MAX  "
              "    14CW      ");
    // Index 2 (no transmitter column) and index 6 leave them as the line before did.
    EXPECT_EQ(form.line(head + "JA1ABC 599 13"),
              " 11  22 0905 JA1ABC     59925        599      13MAX  "
              "    14CW      ");
    EXPECT_EQ(form.line(head + "JA1ABC 599 13 0"),
              " 11  22 0905 JA1ABC     59925        599      13  "
              "    14CW      ");
    EXPECT_EQ(form.line(head + "JA1ABC 599 13 A B C 0"),
              " 11  22 0905 JA1ABC     59925        599      13  "
              "    14CW      ");
}

TEST(CabrilloTxtForm, ALineThatDoesNotReachTheThirdRangeFailsWithNumber9)
{
    readers::CabrilloTxtForm form;
    try {
        form.line("QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 25 JA1ABC 599 13 0");
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 9);
    }
}

TEST(CabrilloTxtForm, TheSideOutputIsWrittenBesideTheLogOnlyWhenComplete)
{
    CabrilloRun r;
    const std::string good =
        "QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ        599 25     JA1ABC        579 13     0";
    const fs::path log = r.write({kStart, "CALLSIGN: ZZ9ZZZ", good, good, kEnd}, "LOG.cbr");
    auto& c = r.context();
    c.run.in_name = log.string();
    const std::string written = readers::cabrillo_2_zlog_txt(c);
    EXPECT_EQ(written, (r.dir / "LOG_cbr2zlogt.txt").string());
    const auto lines = test::readSjisLines(written);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0],
              "mon day time  callsign      sent         rcvd      multi   MHz mode pts memo");
    EXPECT_EQ(lines[1], lines[2]);
    EXPECT_EQ(test::readBytes(written).find("\r\n"), lines[0].size());

    const fs::path bad = r.write({kStart, good, "QSO: 14025 CW 2026-11-22 0905"}, "BAD.cbr");
    c.run.in_name = bad.string();
    EXPECT_THROW(readers::cabrillo_2_zlog_txt(c), failure::Failure);
    EXPECT_FALSE(fs::exists(r.dir / "BAD_cbr2zlogt.txt"));
}

TEST(CabrilloTxtForm, KanjiAndHalfWidthKanaAreCutAndPaddedByShiftJisBytes)
{
    readers::CabrilloTxtForm form;
    const std::string head = "QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ        599 25     ";
    // The ranges count characters, the columns Shift-JIS bytes: a kanji takes two of them,
    // so a call of six kanji is cut before the sixth, which would cross the eleventh byte.
    EXPECT_EQ(form.line(head + "山田太郎花子 579 13 0"),
              " 11  22 0905 山田太郎花 59925        579      13      14CW      ");
    // Half-width katakana take one byte each.
    EXPECT_EQ(form.line(head + "ｱｲｳｴｵｶｷｸｹｺｻｼ 579 13 0"),
              " 11  22 0905 ｱｲｳｴｵｶｷｸｹｺｻ59925        579      13      14CW      ");
    // A full-width exchange right-aligned by its bytes, and one longer than its column.
    EXPECT_EQ(form.line(head + "JA1ABC 579 東京都 0"),
              " 11  22 0905 JA1ABC     59925        579  東京都      14CW      ");
    EXPECT_EQ(form.line(head + "JA1ABC 579 東京都千代田区 0"),
              " 11  22 0905 JA1ABC     59925        579東京都千代田区      14CW      ");
}

TEST(CabrilloTxtForm, KanjiInTheFirstRangesMoveTheRangesByCharacters)
{
    readers::CabrilloTxtForm form;
    // A full-width sent exchange: the second range still starts at the 31st character.
    EXPECT_EQ(form.line("QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ        599 ２５     JA1ABC        "
                        "579 13     0"),
              " 11  22 0905 JA1ABC     599２５      579      13      14CW      ");
    // Ideographic blanks and tabs between the columns of the first range.
    EXPECT_EQ(form.line("QSO:　14025\tCW 2026-11-22 0905 ZZ9ZZZ        599 25     JA1ABC        "
                        "579 13     0"),
              " 11  22 0905 JA1ABC     59925        579      13      14CW      ");
}

TEST(CabrilloTxtForm, AsciiTextLongerThanItsColumnsIsCutOrStandsWhole)
{
    readers::CabrilloTxtForm form;
    // The first range ends inside the time, and the long fields push the call sign into the
    // second range.
    const std::string head = "QSO: 1296100 PH 2026-11-22 0905 ZZ9ZZZ    59 1234567890123 ";
    EXPECT_EQ(form.line(head + "JA1ABCDEFGHIJ/P 5999 123456789 X Y 0"),
              " 11  22 090 123        ZZ9ZZZ59        JA1ABCDEFGHIJ/P    5999    1296SSB     ");
    // Columns off the template's places are read where the three ranges cut them.
    EXPECT_EQ(form.line("QSO: 7025 PH 2026-1-2 0905 ZZ9ZZZ                   59 1      "
                        "JA1ABC  59  2   0"),
              " 1  2 0905 1           59          JA1ABC      5959       7SSB     ");
}

TEST(CabrilloReader, LimitedTokenViewsAreTheFirstOfAllTheTokens)
{
    const char* pieces[] = {" ", " ", "\t", "　", "A", "1", "ア", "-"};
    unsigned seed = 12345;
    std::vector<std::string_view> all;
    std::vector<std::string_view> first;
    for (int trial = 0; trial < 2000; ++trial) {
        std::string s;
        seed = seed * 1103515245u + 12345u;
        const int length = static_cast<int>(seed >> 16) % 60;
        for (int k = 0; k < length; ++k) {
            seed = seed * 1103515245u + 12345u;
            s += pieces[(seed >> 16) % std::size(pieces)];
        }
        if (trial % 40 == 0) {
            s.insert(s.size() / 2, std::string(300, ' '));
        }
        for (int n : {0, 6, 10}) {
            readers::cabrilloTokenViews(s, n, all);
            for (std::size_t limit : {0u, 1u, 9u, 11u}) {
                readers::cabrilloTokenViews(s, n, first, limit);
                const std::size_t expected = std::min(limit, all.size());
                ASSERT_EQ(first.size(), expected) << s << " " << n << " " << limit;
                ASSERT_TRUE(std::equal(first.begin(), first.end(), all.begin()))
                    << s << " " << n << " " << limit;
            }
        }
    }
}

TEST(CabrilloRecognition, AContinentCodeOutsideToken8SetsNothingWhereverItStands)
{
    test::RunFixture f;
    struct Case
    {
        std::string line;
        bool iota;
    };
    for (const Case& c :
         {Case{"QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 001 JA1ABC 599 AS-007 0", false},
          {"QSO: 14025 CW 2026-11-22 0905 EU-ZZZ 599 001 JA1ABC 599 001 0", false},
          {"QSO:　14025\tCW 2026-11-22 0905 ZZ9ZZZ 599 001 ＪＡ-AF-1 599 001 0", true},
          {"QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 001 X-NA- 599 001 0", true},
          {"QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 001 NA 599 001 0", false}}) {
        readers::InputState run;
        const fs::path p = f.dir / "iota.cbr";
        test::writeSjisLines(p, {kStart, c.line, kEnd});
        ASSERT_TRUE(readers::FileOpen_cbr(run, p));
        EXPECT_EQ(run.cbr_has_iota, c.iota) << c.line;
    }
}

TEST(CabrilloTxtForm, LettersOfTwoUtf8BytesAreCutAsWholeCharacters)
{
    readers::CabrilloTxtForm form;
    const std::string head = "QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ        599 25     ";
    // Greek and accented letters take two bytes in UTF-8 as a kanji takes three: the call
    // column still cuts between characters, never inside one, by their Shift-JIS widths.
    EXPECT_EQ(form.line(head + "ΑΒΓΔΕΖ 579 éé 0"),
              " 11  22 0905 ΑΒΓΔΕ 59925        579      éé      14CW      ");
}

TEST(CabrilloReader, TokenViewsOfLinesWithoutIdeographicBlanksAreTheFoldedTokensAtAnyLength)
{
    // Lines on both sides of the length up to which no run can fold to two blanks.
    const char* pieces[] = {" ", " ", " ", "\t", "A", "1", "大", "ｱ"};
    unsigned seed = 777;
    std::vector<std::string_view> views;
    for (int trial = 0; trial < 3000; ++trial) {
        std::string s;
        seed = seed * 1103515245u + 12345u;
        const int length = static_cast<int>(seed >> 16) % 700;
        for (int k = 0; k < length; ++k) {
            seed = seed * 1103515245u + 12345u;
            s += pieces[(seed >> 16) % std::size(pieces)];
        }
        if (trial % 30 == 0) {
            s.insert(s.size() / 2, std::string(trial % 60 == 0 ? 40 : 600, ' '));
        }
        for (int n : {1, 2, 6, 10}) {
            const std::string folded = readers::normaliseCabrilloBlanks(s, n);
            const std::vector<std::string> expected =
                folded.empty() ? std::vector<std::string>{} : text::split(folded, " ");
            readers::cabrilloTokenViews(s, n, views);
            ASSERT_EQ(std::vector<std::string>(views.begin(), views.end()), expected)
                << s << " " << n;
        }
    }
}

// The lines of a file as a line reader gives them, decoded.
std::vector<std::string> linesByReader(const fs::path& path)
{
    std::vector<std::string> lines;
    text::LineReader in(path);
    while (!in.atEnd()) {
        lines.push_back(in.next());
    }
    return lines;
}

TEST(CabrilloSharedRead, HoldsTheLinesALineReaderGivesWhateverTheLineEnds)
{
    test::RunFixture f;
    const std::string kanji =
        text::encodeSjis("QSO: 14025 PH 2026-11-22 0905 ZZ9ZZZ 59 東京 JA1ABC 59 大阪 0");
    for (const std::string& bytes :
         {std::string("START-OF-LOG: 3.0\r\nQSO: a\r\nCALLSIGN: X\r\nQSO: b\r\n"),
          std::string("START-OF-LOG: 3.0\nQSO: a\nQSO: b"),
          std::string("START-OF-LOG: 3.0\rQSO: a\r\rQSO: b\r"),
          std::string("START-OF-LOG: 3.0\r\n") + kanji + "\r\nQSO: b\n\r" + kanji,
          std::string("\r\n\n"), std::string()}) {
        const fs::path p = f.dir / "SHARED.CBR";
        test::writeBytes(p, bytes);
        const auto log = readers::cabrilloLines(p, true);
        const std::vector<std::string> expected = linesByReader(p);
        ASSERT_EQ(log->lines.size(), expected.size()) << bytes;
        std::vector<std::uint32_t> qso;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(log->lines[i], expected[i]) << bytes;
            if (text::contains(expected[i], "QSO:")) {
                qso.push_back(static_cast<std::uint32_t>(i));
            }
        }
        EXPECT_EQ(log->qsoLines, qso) << bytes;
    }
}

TEST(CabrilloSharedRead, IsSharedWhileTheFileStaysAndReadAnewWhenItChangesOrIsAskedFresh)
{
    test::RunFixture f;
    const fs::path p = f.dir / "SHARED.CBR";
    test::writeSjisLines(p, {kStart, qso(), kEnd});
    const auto first = readers::cabrilloLines(p, true);
    EXPECT_EQ(readers::cabrilloLines(p, false), first);
    EXPECT_NE(readers::cabrilloLines(p, true), first);

    test::writeSjisLines(p, {kStart, qso(), qso(), kEnd});
    EXPECT_EQ(readers::cabrilloLines(p, false)->qsoLines.size(), 2u);

    readers::forgetCabrilloLines();
    fs::remove(p);
    try {
        readers::cabrilloLines(p, false);
        FAIL() << "a missing file was read";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), 53);
    }
}

TEST(CabrilloSharedRead, ALogChangedAfterItsOpeningIsReadAsItIsAtTheRun)
{
    CabrilloRun r;
    const fs::path p = r.write({kStart, qso(), kEnd});
    auto& c = r.context(r.options);
    c.run.in_name = p.string();
    ASSERT_TRUE(readers::FileOpen_cbr(c.run, p));
    readers::count_in_name_cbr(c);
    EXPECT_EQ(c.run.line_count, 1);
    // Rewritten with the same size: only a fresh read sees the change.
    r.write({kStart, qso("7025"), kEnd});
    readers::henkan_cbr_2_t(c);
    const auto rows = test::RunFixture::records(r.work("zlog_1.txt"), 13);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0][Band], "7");
    const auto txt = test::readSjisLines(readers::cabrillo_2_zlog_txt(c));
    ASSERT_EQ(txt.size(), 2u);
    EXPECT_EQ(txt[1], readers::CabrilloTxtForm().line(qso("7025")));
}

TEST(CabrilloSharedRead, AMissingLogFailsEveryPassWith53AndAnEmptyOneReadsPastItsEnd)
{
    CabrilloRun r;
    auto& c = r.context(r.options);
    c.run.in_name = (r.dir / "GONE.CBR").string();
    c.run.setKind(readers::InputKind::Cbr);
    const auto number = [](auto&& pass) {
        try {
            pass();
        } catch (const failure::Failure& e) {
            return e.number();
        }
        return 0;
    };
    EXPECT_EQ(number([&] { readers::FileOpen_cbr(c.run, r.dir / "GONE.CBR"); }), 53);
    EXPECT_EQ(number([&] { readers::count_in_name_cbr(c); }), 53);
    EXPECT_EQ(number([&] { readers::henkan_cbr_2_t(c); }), 53);
    EXPECT_EQ(number([&] { readers::cabrillo_2_zlog_txt(c); }), 53);

    const fs::path empty = r.dir / "EMPTY.CBR";
    test::writeBytes(empty, "");
    c.run.in_name = empty.string();
    EXPECT_FALSE(readers::FileOpen_cbr(c.run, empty));
    c.run.in_name = empty.string();
    c.run.setKind(readers::InputKind::Cbr);
    EXPECT_EQ(readers::count_in_name_cbr(c), 0);
    EXPECT_EQ(number([&] { readers::henkan_cbr_2_t(c); }), 62);
}

// The runs of blanks and tabs of a line as start and end offsets.
std::vector<std::uint16_t> blankRunsOf(std::string_view line)
{
    std::vector<std::uint16_t> edges;
    for (std::size_t i = 0; i < line.size();) {
        if (line[i] != ' ' && line[i] != '\t') {
            ++i;
            continue;
        }
        const std::size_t start = i;
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) {
            ++i;
        }
        edges.push_back(static_cast<std::uint16_t>(start));
        edges.push_back(static_cast<std::uint16_t>(i));
    }
    return edges;
}

TEST(CabrilloReader, TokensFromTheRunsOfALineAreTheTokensOfEveryRangeOfIt)
{
    for (const std::string& line :
         {qso(), qso("7025", "PH"), std::string(" QSO: 14025  CW\t2026-11-22 0905 "),
          std::string("QSO:") + std::string(32, ' ') + "X" + std::string(20, '\t') + "Y",
          std::string("   "), std::string("QSO: a b c d e f g h i j k l m n"),
          std::string("QSO:\t\t 7025 CW 2026-11-22 0905 ZZ9ZZZ 599 13 JA1ABC 599 25 0  ")}) {
        const std::vector<std::uint16_t> edges = blankRunsOf(line);
        std::vector<std::string_view> expected;
        std::vector<std::string_view> fromRuns;
        for (std::size_t from = 0; from <= line.size(); ++from) {
            for (std::size_t to = from; to <= line.size(); ++to) {
                const std::string_view range = std::string_view(line).substr(from, to - from);
                for (const int passes : {6, 10}) {
                    readers::cabrilloTokenViews(range, passes, expected);
                    readers::cabrilloTokensFromRuns(line, edges.data(), edges.size() / 2, from, to,
                                                    fromRuns);
                    ASSERT_EQ(fromRuns, expected) << line << " " << from << " " << to;
                }
                readers::cabrilloTokenViews(range, 6, expected, 3);
                readers::cabrilloTokensFromRuns(line, edges.data(), edges.size() / 2, from, to,
                                                fromRuns, 3);
                ASSERT_EQ(fromRuns, expected) << line << " " << from << " " << to;
            }
        }
    }
}

TEST(CabrilloTxtForm, ALineFormedFromTheReadersRunsIsTheLineFormedFromItsRanges)
{
    for (const std::string& line :
         {qso(), qso("7025", "PH", "2026-11-22", "0905", "JA1ABCDEFGHIJK", "59", "25 AS-007"),
          qso("144100", "RY", "2026-11-22", "0905", "JA1A/1", "599", "1 2 3"),
          std::string("QSO: 14025 CW 2026-11-22 0905 ZZ9ZZZ 599 13 JA1ABC 599 25 0 1 2"),
          std::string("QSO:  3512 CW 2026-11-22 0905 ZZ9ZZZ        599 13     JA1ABC\t599 1"),
          // Runs across both range boundaries.
          std::string(
              "QSO: 14025 CW 2026-11-22 0905    ZZ9ZZZ 599 13            JA1ABC 599 25 0")}) {
        const std::vector<std::uint16_t> edges = blankRunsOf(line);
        readers::CabrilloTxtForm byRanges;
        readers::CabrilloTxtForm byRuns;
        // Twice each, so that the extra columns the line before left are compared too.
        for (int i = 0; i < 2; ++i) {
            std::string a;
            std::string b;
            byRanges.appendLine(line, a);
            byRuns.appendLine(line, b, edges.data(), edges.size() / 2);
            EXPECT_EQ(b, a) << line;
        }
    }
}

TEST(CabrilloTxtForm, AKanjiLogAndALogWithLongBlankRunsGiveTheSameTxtFormAfterTheReader)
{
    CabrilloRun r;
    // A run of 40 blanks is two boundaries for the reader, one for the .TXT form.
    const std::string longRun = qso("21025") + std::string(40, ' ') + "1";
    for (const std::vector<std::string>& lines :
         {std::vector<std::string>{
              kStart, qso(), qso("7025", "PH", "2026-11-22", "0906", "東京", "59", "大阪"), kEnd},
          std::vector<std::string>{kStart, qso(), longRun, qso("3512"), kEnd}}) {
        const fs::path p = r.write(lines, "MIXED.CBR");
        auto& c = r.context(r.options);
        c.run.in_name = p.string();
        c.run.setKind(readers::InputKind::Cbr);
        readers::henkan_cbr_2_t(c);
        const auto txt = test::readSjisLines(readers::cabrillo_2_zlog_txt(c));
        readers::CabrilloTxtForm form;
        ASSERT_EQ(txt.size(), lines.size() - 1);
        for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
            EXPECT_EQ(txt[i], form.line(lines[i]));
        }
    }
}

TEST(CabrilloReader, AFrequencyOfPlainDigitsGivesTheBandValWouldGiveIt)
{
    EXPECT_EQ(readers::cabrilloBandOfKhz("0014025"), "14");
    EXPECT_EQ(readers::cabrilloBandOfKhz("1000"), "1.9");
    EXPECT_EQ(readers::cabrilloBandOfKhz("2000"), "1.9");
    EXPECT_EQ(readers::cabrilloBandOfKhz("999"), "");
    EXPECT_EQ(readers::cabrilloBandOfKhz("5850000"), "5600");
    EXPECT_EQ(readers::cabrilloBandOfKhz("123456789"), "");
    EXPECT_EQ(readers::cabrilloBandOfKhz("1234567890"), "");
    EXPECT_EQ(readers::cabrilloBandOfKhz("14025.5"), "14");
    EXPECT_EQ(readers::cabrilloBandOfKhz("7O25"), "");
    EXPECT_EQ(readers::cabrilloBandOfKhz(""), "");
}
