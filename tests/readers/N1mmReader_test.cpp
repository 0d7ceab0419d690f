#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/InputSelection.h"
#include "readers/MdbTableExport.h"
#include "readers/N1mmReader.h"
#include "support/RunFixture.h"
#include "text/Chars.h"

#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

enum Field { Year, Month, Day, Time, Call, RstSent, RstRcvd, Band, Mode, Op, Memo, Freq, Rcvd };

// The column names of an N1MM Logger contact table, as far as the reader looks.
const std::vector<std::string> kColumns = {"TS",
                                           "Call",
                                           "Freq",
                                           "QSXFreq",
                                           "Mode",
                                           "ContestName",
                                           "SNT",
                                           "RCV",
                                           "CountryPrefix",
                                           "StationPrefix",
                                           "QTH",
                                           "Name",
                                           "Comment",
                                           "NR",
                                           "Sect",
                                           "Prec",
                                           "CK",
                                           "ZN",
                                           "SentNr",
                                           "Points",
                                           "Exchange1",
                                           "IsMultiplier2",
                                           "Power",
                                           "Band",
                                           "WPXPrefix",
                                           "IsMultiplier1",
                                           "RadioNR",
                                           "IsDeleted",
                                           "MiscText",
                                           "Operator"};

/// A row of an export: the values by field, every other field empty; text fields quoted as the
/// engine writes them.
struct Row
{
    std::string when = "2024/05/03 12:34:56";
    std::string call = "JA1ABC";
    std::string freq = "14025.5";
    std::string mode = "CW";
    std::string snt = "599";
    std::string rcv = "599";
    std::string exchange = "25";
    std::string skip = "0";
    std::string comment;
    std::string last; ///< the last column, the operator's

    std::string line() const
    {
        std::vector<std::string> f(kColumns.size());
        f[0] = "\"" + when + "\"";
        f[1] = "\"" + call + "\"";
        f[2] = freq;
        f[4] = "\"" + mode + "\"";
        f[6] = "\"" + snt + "\"";
        f[7] = "\"" + rcv + "\"";
        f[12] = comment.empty() ? "" : "\"" + comment + "\"";
        f[20] = "\"" + exchange + "\"";
        f[27] = skip;
        f.back() = last.empty() ? "" : "\"" + last + "\"";
        std::string l;
        for (std::size_t i = 0; i < f.size(); ++i) {
            l += (i ? "," : "") + f[i];
        }
        return l;
    }
};

std::string header()
{
    std::string h;
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        h += (i ? "," : "") + kColumns[i];
    }
    return h;
}

struct N1mmRun : ::testing::Test, test::RunFixture
{
    settings::Options options = settings::Options::defaults();
    engine::LayoutUse use;

    /// Writes an export with these lines after the column names and runs the reader over it.
    std::vector<std::vector<std::string>> convert(const std::vector<std::string>& lines,
                                                  const std::string& first = header())
    {
        engine::RunContext& c = context(options);
        c.run.use = use;
        c.run.op_filter_name = options.value("txtOp_name");
        const fs::path csv = folder.drive_path / "dxlog.csv";
        std::vector<std::string> all{first};
        all.insert(all.end(), lines.begin(), lines.end());
        test::writeSjisLines(csv, all);
        c.run.mdb.mdb_csv_name = csv.string();
        readers::henkan_mdb_2_t(c);
        return records(work(base::working::zlog_1), 13);
    }

    std::vector<std::vector<std::string>> convert(const std::vector<Row>& rows)
    {
        std::vector<std::string> lines;
        for (const Row& r : rows) {
            lines.push_back(r.line());
        }
        return convert(lines);
    }
};

// --- The rows ------------------------------------------------------------------------------

TEST_F(N1mmRun, WritesTheCommonLineOfARow)
{
    const auto lines = convert(std::vector<Row>{Row{}});
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], (std::vector<std::string>{"2024", "05", "03", "1234", "JA1ABC", "599",
                                                  "599", "14", "CW", "", "", "", "25"}));
    EXPECT_EQ(ctx->run.written_count, 1);
}

TEST_F(N1mmRun, ARowFlaggedMinusOneAddsNothing)
{
    Row kept, skipped;
    skipped.call = "JA9ZZZ";
    skipped.skip = "-1";
    Row one = kept;
    one.call = "JA2BBB";
    one.skip = "1"; // only the engine's true, -1, passes a row over
    const auto lines = convert(std::vector<Row>{kept, skipped, one});
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0][Call], "JA1ABC");
    EXPECT_EQ(lines[1][Call], "JA2BBB");
    EXPECT_EQ(ctx->run.written_count, 2);
}

TEST_F(N1mmRun, ACommaInsideAQuotedValueShiftsTheFieldsOfThatRow)
{
    Row plain, shifted;
    shifted.call = "JA1X,YZ"; // the quotes go before the split
    const auto lines = convert(std::vector<Row>{plain, shifted});
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1][Call], "JA1X");
    // Field 2 is now "YZ", whose value lies between the bands: the band of the row before.
    EXPECT_EQ(lines[1][Band], "14");
    // Field 4 is now the empty column 3, field 7 the sent report, field 20 column 19.
    EXPECT_EQ(lines[1][Mode], "");
    EXPECT_EQ(lines[1][RstRcvd], "599");
    EXPECT_EQ(lines[1][Rcvd], "");
    EXPECT_EQ(lines[0][Rcvd], "25");
}

TEST_F(N1mmRun, AnHourOfOneDigitIsPaddedAndTheMinuteStandsAsWritten)
{
    Row a, b, c;
    a.when = "2024/05/03 4:05:00";
    b.when = "2024/05/03 12:7:00";
    c.when = "2024/5/3 0:00:00";
    const auto lines = convert(std::vector<Row>{a, b, c});
    ASSERT_EQ(lines.size(), 3u);
    // Sorted by the date and time fields as they stand: "05" before "5".
    EXPECT_EQ(lines[0][Time], "0405");
    EXPECT_EQ(lines[1][Time], "127");
    EXPECT_EQ(lines[2][Month], "5");
    EXPECT_EQ(lines[2][Day], "3");
    EXPECT_EQ(lines[2][Time], "0000");
}

TEST_F(N1mmRun, TheLinesAreSortedByDateAndTimeAndEqualTimesKeepTheirOrder)
{
    Row late, early, sameA, sameB;
    late.when = "2024/05/04 00:01:00";
    late.call = "LATE";
    early.when = "2024/05/03 23:59:00";
    early.call = "EARLY";
    sameA.when = "2024/05/03 23:59:30";
    sameA.call = "SAMEA";
    sameB.when = "2024/05/03 23:59:10";
    sameB.call = "SAMEB";
    const auto lines = convert(std::vector<Row>{late, early, sameA, sameB});
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0][Call], "EARLY");
    EXPECT_EQ(lines[1][Call], "SAMEA");
    EXPECT_EQ(lines[2][Call], "SAMEB");
    EXPECT_EQ(lines[3][Call], "LATE");
    EXPECT_FALSE(fs::exists(work("bak_0.txt")));
    EXPECT_FALSE(fs::exists(work("bak_1.txt")));
    EXPECT_TRUE(fs::exists(work(base::working::zlog_0)));
}

TEST_F(N1mmRun, WithoutCheck17TheBandComesFromTheTableByValue)
{
    struct Case
    {
        const char* freq;
        const char* band;
    };
    std::vector<Row> rows;
    const std::vector<Case> cases = {{"1810.0", "1.9"},   {"3525", "3.5"},     {"7000", "7"},
                                     {"10120.3", "10"},   {"14025.5", "14"},   {"18070", "18"},
                                     {"21000.0", "21"},   {"24900", "24"},     {"28500", "28"},
                                     {"50100", "50"},     {"144100", "144"},   {"430100", "430"},
                                     {"1295000", "1200"}, {"2400100", "2400"}, {"5760000", "5600"},
                                     {"12000", "5600"},   {"50", "5600"}};
    for (const Case& c : cases) {
        Row r;
        r.freq = c.freq;
        rows.push_back(r);
    }
    const auto lines = convert(rows);
    ASSERT_EQ(lines.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(lines[i][Band], cases[i].band) << cases[i].freq;
    }
}

TEST_F(N1mmRun, AFrequencyBetweenTheBandsOnTheFirstRowGivesAnEmptyBand)
{
    Row r;
    r.freq = "12000";
    const auto lines = convert(std::vector<Row>{r});
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0][Band], "");
}

TEST_F(N1mmRun, WithCheck17TheBandIsTheFrequencyInMegahertz)
{
    options.set("Check17", "1");
    struct Case
    {
        const char* freq;
        const char* band;
    };
    const std::vector<Case> cases = {
        {"14025.5", "14.025"}, {"7025.0", " 7.025"},  {"1.9", "1.9"},
        {"3.5", "3.5"},        {"144100", "144.100"}, {"4", "144.100"},
        {"3", "144.100"},      {"4.0", "144.100"},    {"21000", "21.000"}};
    std::vector<Row> rows;
    for (const Case& c : cases) {
        Row r;
        r.freq = c.freq;
        rows.push_back(r);
    }
    const auto lines = convert(rows);
    ASSERT_EQ(lines.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(lines[i][Band], cases[i].band) << cases[i].freq;
    }
}

TEST_F(N1mmRun, ModesOfVoiceBecomeSsbAndOthersStand)
{
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"PH", "SSB"},    {"USB", "SSB"}, {"LSB", "SSB"},   {"RTYY", "RTY"},
        {"RTTY", "RTTY"}, {"CW", "CW"},   {" FT8 ", "FT8"}, {"usb", "usb"}};
    std::vector<Row> rows;
    for (const auto& [mode, expected] : cases) {
        Row r;
        r.mode = mode;
        rows.push_back(r);
    }
    const auto lines = convert(rows);
    ASSERT_EQ(lines.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(lines[i][Mode], cases[i].second) << cases[i].first;
    }
}

TEST_F(N1mmRun, TheOperatorIsEmptyUnlessCheck02OrTheOpItemAsksForIt)
{
    Row r;
    r.comment = "%%JA1XYZ%%";
    EXPECT_EQ(convert(std::vector<Row>{r})[0][Op], "");
    use.op = true;
    EXPECT_EQ(convert(std::vector<Row>{r})[0][Op], "JA1XYZ");
    use.op = false;
    options.set("Check02", "1");
    EXPECT_EQ(convert(std::vector<Row>{r})[0][Op], "JA1XYZ");
}

TEST_F(N1mmRun, TheOperatorFilterDropsOtherOperators)
{
    options.set("Check02", "1");
    options.set("txtOp_name", "JA1XYZ");
    Row mine, other, none;
    mine.comment = "%%JA1XYZ%%";
    other.comment = "%%JA2QQQ%%";
    other.call = "OTHER";
    none.call = "NONE";
    const auto lines = convert(std::vector<Row>{mine, other, none});
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0][Op], "JA1XYZ");
    EXPECT_EQ(ctx->run.written_count, 1);
}

TEST_F(N1mmRun, AFrequencyInParenthesesIsReadOnlyWithCheck17)
{
    Row r;
    r.last = "rig (14025)";
    EXPECT_EQ(convert(std::vector<Row>{r})[0][Freq], "");
    options.set("Check17", "1");
    EXPECT_EQ(convert(std::vector<Row>{r})[0][Freq], "14.025");
    Row zero;
    zero.comment = "(0)";
    EXPECT_EQ(convert(std::vector<Row>{zero})[0][Freq], "14.025");
}

TEST_F(N1mmRun, AFrequencyInParenthesesBeforeFurtherFieldsCannotBeRead)
{
    // The rule takes everything from the "(" to the end of the line, which here holds the
    // fields after the comment.
    options.set("Check17", "1");
    Row r;
    r.comment = "rig (14025)";
    EXPECT_EQ(convert(std::vector<Row>{r})[0][Freq], "");
}

TEST_F(N1mmRun, TheFrequencyIsEmptiedForEachRow)
{
    options.set("Check17", "1");
    Row withFreq, without;
    withFreq.last = "(14025)";
    without.when = "2024/05/03 12:35:00";
    const auto lines = convert(std::vector<Row>{withFreq, without});
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0][Freq], "14.025");
    EXPECT_EQ(lines[1][Freq], "");
}

TEST_F(N1mmRun, TheMemoStaysEmptyWithOrWithoutTheMemoItems)
{
    Row r;
    r.comment = "good signal";
    EXPECT_EQ(convert(std::vector<Row>{r})[0][Memo], "");
    use.memo = true;
    use.memoEquals = true;
    EXPECT_EQ(convert(std::vector<Row>{r})[0][Memo], "");
}

TEST_F(N1mmRun, ARowOfFewerThan28FieldsIsARunTimeFailure)
{
    try {
        convert(std::vector<std::string>{Row{}.line(), "\"2024/05/03 12:00:00\",\"JA1ABC\",14025"});
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::SubscriptOutOfRange);
    }
}

TEST_F(N1mmRun, ADateAndTimeWithoutItsBlankIsARunTimeFailure)
{
    Row r;
    r.when = "2024/05/03";
    EXPECT_THROW(convert(std::vector<Row>{r}), failure::Failure);
}

TEST_F(N1mmRun, AnExportOfColumnNamesAloneGivesAnEmptyWorkingFile)
{
    EXPECT_TRUE(convert(std::vector<std::string>{}).empty());
    EXPECT_EQ(ctx->run.written_count, 0);
}

// --- The open ------------------------------------------------------------------------------

TEST(N1mmExportName, FollowsTheTable)
{
    EXPECT_EQ(readers::exportNameOf("DXLOG"), "dxlog.csv");
    EXPECT_EQ(readers::exportNameOf("dxlog"), "dxlog.csv");
    EXPECT_EQ(readers::exportNameOf("CurrentContest"), "CurrentContest.csv");
    EXPECT_EQ(readers::exportNameOf("tblContacts"), "");
}

struct N1mmOpen : ::testing::Test, test::RunFixture
{
    bool firstLine(const std::string& line)
    {
        engine::RunContext& c = context();
        c.run.in_name = "/logs/ham.mdb";
        const fs::path csv = folder.drive_path / "dxlog.csv";
        test::writeSjisLines(csv, {line, Row{}.line()});
        c.run.mdb.mdb_csv_name = csv.string();
        return readers::testExportFirstLine(c);
    }
};

TEST_F(N1mmOpen, AFirstLineWithFreqThirdIsAccepted)
{
    EXPECT_TRUE(firstLine(header()));
    EXPECT_TRUE(firstLine("\"TS\",\"Call\",\"Freq\""));
    EXPECT_TRUE(firstLine("a,b,FREQ"));
    EXPECT_EQ(ctx->run.in_name, "/logs/ham.mdb");
}

TEST_F(N1mmOpen, AnyOtherFirstLineRejectsTheFile)
{
    for (const char* line :
         {"TS,Call,Band,Freq", "fldAge,fldARCI,fldBand", "TS,Call", "", "TS,Call, Freq"}) {
        EXPECT_FALSE(firstLine(line)) << line;
        EXPECT_EQ(ctx->run.in_name, readers::kNotN1mm);
        EXPECT_EQ(ctx->run.lblIn_name, readers::kNotN1mm);
    }
}

TEST_F(N1mmOpen, ADatabaseWithoutTheTableTakesTheFailurePath)
{
    const auto db = test::realData("n1mm/n3fjp_LogData.mdb");
    if (!db) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm";
    }
    for (const char* table : {"DXLOG", "CurrentContest"}) {
        engine::RunContext& c = context();
        c.run.mdb.table = table;
        try {
            readers::openInput(c, *db, "mdb");
            FAIL() << table;
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), readers::kTableNotFound);
            EXPECT_TRUE(text::contains(f.description(), table));
        }
        EXPECT_EQ(c.run.kind, readers::InputKind::None);
    }
}

TEST_F(N1mmOpen, AFileThatIsNoDatabaseTakesTheFailurePathAndTheOldExportIsGone)
{
    const fs::path log = dir / "ham.mdb";
    test::writeSjisLines(log, {"zLog for Windows"});
    test::writeSjisLines(folder.drive_path / "dxlog.csv", {header()});
    engine::RunContext& c = context();
    try {
        readers::openInput(c, log, "");
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), readers::kUnrecognizedDatabase);
    }
    EXPECT_FALSE(fs::exists(folder.drive_path / "dxlog.csv"));
}

TEST_F(N1mmOpen, ATableOtherThanTheTwoIsRefused)
{
    const auto db = test::realData("n1mm/n3fjp_LogData.mdb");
    if (!db) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm";
    }
    engine::RunContext& c = context();
    c.run.mdb.table = "tblContacts";
    try {
        readers::openInput(c, *db, "mdb");
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::InvalidCall);
    }
}

} // namespace
