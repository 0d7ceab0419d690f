#include "failure/Failure.h"
#include "readers/ZlogTextReader.h"
#include "support/RunFixture.h"

#include <gtest/gtest.h>

using namespace vornhale;
using test::ColumnLine;
namespace fs = std::filesystem;

namespace {

constexpr const char* kAllHeader = "zLog for Windows Version 2.80e";
constexpr const char* kTxtHeader =
    "mon day time  callsign      sent         rcvd      multi   MHz mode pts memo";

struct AllQso
{
    std::string date = "2026/11/22", time = "09:05", call = "JA1ABC", sent = "599", rcvd = "599",
                exch = "13", band = "14", mode = "CW", memo;
};

std::string allLine(const AllQso& q)
{
    ColumnLine l;
    l.at(1, q.date).at(12, q.time).at(18, q.call).at(31, q.sent).at(43, q.rcvd).at(47, q.exch);
    l.at(55, "-").at(61, "-").at(67, q.band).at(72, q.mode).at(77, "1");
    if (!q.memo.empty()) {
        l.at(80, q.memo);
    }
    return l.str();
}

struct TxtQso
{
    std::string month = "11", day = "22", time = "0905", call = "JA1ABC", sent = "599",
                rcvd = "599", exch = "13", band = " 14", mode = "CW ", memo;
};

// A .TXT line as the column table places it (zLog writes it one place further, behind a
// leading blank that the reader trims away).
std::string txtLine(const TxtQso& q)
{
    ColumnLine l;
    l.at(1, q.month).at(5, q.day).at(8, q.time).at(13, q.call).at(24, q.sent).at(37, q.rcvd);
    l.at(37 + q.rcvd.size(), q.exch).at(58, q.band).at(64, q.mode).at(69, "1");
    if (!q.memo.empty()) {
        l.at(73, q.memo);
    }
    return " " + l.str();
}

struct ReaderRun : test::RunFixture
{
    settings::Options options = settings::Options::defaults();
    engine::LayoutUse use;

    std::vector<std::vector<std::string>> runAll(const std::vector<std::string>& lines,
                                                 const char* name = "TEST.ALL")
    {
        std::vector<std::string> all{kAllHeader};
        all.insert(all.end(), lines.begin(), lines.end());
        return run(all, name, "A");
    }
    std::vector<std::vector<std::string>> runTxt(const std::vector<std::string>& lines,
                                                 const char* name = "TEST.TXT")
    {
        std::vector<std::string> all{kTxtHeader};
        all.insert(all.end(), lines.begin(), lines.end());
        return run(all, name, "T");
    }
    std::vector<std::vector<std::string>> run(const std::vector<std::string>& lines,
                                              const char* name, const char* letter)
    {
        const auto path = dir / name;
        test::writeSjisLines(path, lines);
        engine::RunContext& c = context(options);
        c.run.in_name = path.string();
        c.run.chosen_name = path.string();
        c.run.file_letter = letter;
        c.run.use = use;
        c.run.op_filter_name = options.value("txtOp_name");
        readers::henkan_at_2_t(c);
        return records(work("zlog_1.txt"), 13);
    }
    int failureOf(const std::vector<std::string>& lines, const char* name, const char* letter)
    {
        try {
            run(lines, name, letter);
        } catch (const failure::Failure& f) {
            return f.number();
        }
        return 0;
    }
};

enum Field { Year, Month, Day, Time, Call, Sent, Rcvd, Band, Mode, Op, Memo, Freq, Exch };

} // namespace

TEST(ZlogAllReader, CutsEveryColumnOfTheTable)
{
    ReaderRun r;
    AllQso q;
    q.date = "2026/ 1/ 2";
    q.exch = "25 X";
    const auto recs = r.runAll({allLine(q)});
    ASSERT_EQ(recs.size(), 1u);
    const auto& f = recs[0];
    EXPECT_EQ(f[Year], "2026");
    EXPECT_EQ(f[Month], "1");
    EXPECT_EQ(f[Day], "2");
    EXPECT_EQ(f[Time], "0905");
    EXPECT_EQ(f[Call], "JA1ABC       ");
    EXPECT_EQ(f[Sent], "599");
    EXPECT_EQ(f[Rcvd], "599");
    EXPECT_EQ(f[Band], "14");
    EXPECT_EQ(f[Mode], "CW");
    EXPECT_EQ(f[Op], "");
    EXPECT_EQ(f[Memo], "");
    EXPECT_EQ(f[Freq], "");
    EXPECT_EQ(f[Exch], "25");
    EXPECT_EQ(r.ctx->run.written_count, 1);
}

TEST(ZlogAllReader, PskModesByTheFiveByteColumn)
{
    ReaderRun r;
    AllQso a, b, c;
    a.mode = "PSK63";
    b.mode = "PSK31";
    c.mode = "PSK";
    const auto recs = r.runAll({allLine(a), allLine(b), allLine(c)});
    EXPECT_EQ(recs[0][Mode], "PSK63");
    EXPECT_EQ(recs[1][Mode], "PSK31");
    EXPECT_EQ(recs[2][Mode], "PSK");
}

TEST(ZlogAllReader, NameEndingInLowerCaseOrOtherLettersIsTestedAsAll)
{
    for (const char* name : {"X.ALL", "x.all", "log.abc"}) {
        test::TempDir dir;
        test::writeSjisLines(dir / name, {kAllHeader, allLine({})});
        engine::RunState run;
        EXPECT_TRUE(readers::FileOpen_all_txt_set(run, dir / name)) << name;
        EXPECT_EQ(run.f_type, "all") << name;
    }
}

TEST(ZlogTextRecognition, RejectsAFileWhoseFirstLineDoesNotMatchItsName)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "X.ALL", {kTxtHeader});
    test::writeSjisLines(dir / "X.TXT", {kAllHeader});
    for (const char* name : {"X.ALL", "X.TXT"}) {
        engine::RunState run;
        EXPECT_FALSE(readers::FileOpen_all_txt_set(run, dir / name));
        EXPECT_EQ(run.in_name, "zlogのﾃｷｽﾄﾌｧｲﾙではありません！");
        EXPECT_EQ(run.lblIn_name, "zlogのﾃｷｽﾄﾌｧｲﾙではありません！");
        EXPECT_EQ(run.f_type, "");
    }
}

TEST(ZlogTextRecognition, TxtNeedsTheColumnTitle)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "x.txt", {kTxtHeader});
    engine::RunState run;
    EXPECT_TRUE(readers::FileOpen_all_txt_set(run, dir / "x.txt"));
    EXPECT_EQ(run.f_type, "txt");
}

TEST(ZlogTextRecognition, OnlyTheStartOfTheFirstLineCountsWhateverItsLengthOrLineEnd)
{
    test::TempDir dir;
    // A heading without a line end, longer than anything read to test it.
    test::writeBytes(dir / "LONG.ALL", std::string(kAllHeader) + std::string(10000, 'x'));
    test::writeBytes(dir / "CR.TXT", std::string(kTxtHeader) + "\r" + "x\r");
    test::writeBytes(dir / "EMPTY.ALL", "");
    engine::RunState run;
    EXPECT_TRUE(readers::FileOpen_all_txt_set(run, dir / "LONG.ALL"));
    EXPECT_TRUE(readers::FileOpen_all_txt_set(run, dir / "CR.TXT"));
    EXPECT_FALSE(readers::FileOpen_all_txt_set(run, dir / "EMPTY.ALL"));
}

TEST(ZlogTextRecognition, AMissingFileOrAFolderFailsAsAWholeReadWould)
{
    test::TempDir dir;
    fs::create_directories(dir / "FOLDER.ALL");
    for (const char* name : {"NONE.ALL", "FOLDER.ALL"}) {
        engine::RunState run;
        try {
            readers::FileOpen_all_txt_set(run, dir / name);
            ADD_FAILURE() << name;
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), 53) << name;
        }
    }
}

TEST(ZlogTextRecognition, ANameOfNeitherLetterChangesNothing)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "x.log", {"anything"});
    engine::RunState run;
    run.f_type = "zlo";
    EXPECT_TRUE(readers::FileOpen_all_txt_set(run, dir / "x.log"));
    EXPECT_EQ(run.f_type, "zlo");
    EXPECT_EQ(run.in_name, "");
}

TEST(ZlogAllReader, Check02WithAnEmptyNameDropsNoLine)
{
    ReaderRun r;
    r.options.set("Check02", "1");
    AllQso a, b;
    a.memo = "%%JA1%%";
    EXPECT_EQ(r.runAll({allLine(a), allLine(b)}).size(), 2u);
}

TEST(ZlogAllReader, OperatorFilterComparesExactly)
{
    AllQso a;
    a.memo = "%%JA1%%";
    {
        ReaderRun r;
        r.options.set("Check02", "1");
        r.options.set("txtOp_name", "JA1");
        const auto recs = r.runAll({allLine(a), allLine(a)});
        EXPECT_EQ(recs.size(), 2u);
        EXPECT_EQ(recs[0][Op], "JA1");
    }
    {
        ReaderRun r;
        r.options.set("Check02", "1");
        r.options.set("txtOp_name", "ja1");
        AllQso other;
        other.memo = "%%ja1%%";
        const auto recs = r.runAll({allLine(a), allLine(other)});
        ASSERT_EQ(recs.size(), 1u);
        EXPECT_EQ(recs[0][Op], "ja1");
        EXPECT_EQ(r.ctx->run.written_count, 1);
    }
}

TEST(ZlogAllReader, ASingleSignKeepsThePreviousOperator)
{
    ReaderRun r;
    r.use.op = true;
    AllQso a, b, c;
    a.memo = "%%JA1%%";
    b.memo = "50% power";
    c.memo = "plain";
    const auto recs = r.runAll({allLine(a), allLine(b), allLine(c)});
    EXPECT_EQ(recs[0][Op], "JA1");
    EXPECT_EQ(recs[1][Op], "JA1");
    EXPECT_EQ(recs[2][Op], "");
}

TEST(ZlogAllReader, FrequencyByTheLengthOfTheParenthesisText)
{
    ReaderRun r;
    r.options.set("Check17", "1");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"(1825)", "1.825"}, {"(14025)", "14.025"}, {"(144100)", "144.100"},
        {"(1296100)", "1296.100"}, {"(14.025)", "14.025"}};
    std::vector<std::string> lines;
    for (const auto& [memo, freq] : cases) {
        AllQso q;
        q.memo = memo;
        lines.push_back(allLine(q));
    }
    const auto recs = r.runAll(lines);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(recs[i][Freq], cases[i].second) << cases[i].first;
    }
}

TEST(ZlogAllReader, AnUnreadableFrequencyKeepsThePreviousLinesValue)
{
    ReaderRun r;
    r.options.set("Check17", "1");
    AllQso first, good, odd;
    first.memo = "(14025 hello)";
    good.memo = "(21025)";
    odd.memo = "(14025 hello)";
    const auto recs = r.runAll({allLine(first), allLine(good), allLine(odd)});
    EXPECT_EQ(recs[0][Freq], "");
    EXPECT_EQ(recs[1][Freq], "21.025");
    EXPECT_EQ(recs[2][Freq], "21.025");
}

TEST(ZlogAllReader, ZeroInParenthesesCopiesTheBand)
{
    ReaderRun r;
    r.options.set("Check17", "1");
    AllQso q;
    q.memo = "(0)";
    EXPECT_EQ(r.runAll({allLine(q)})[0][Freq], "14");
}

TEST(ZlogAllReader, FrequencyIsEmptyWithoutCheck17)
{
    ReaderRun r;
    AllQso q;
    q.memo = "(14025)";
    EXPECT_EQ(r.runAll({allLine(q)})[0][Freq], "");
}

TEST(ZlogAllReader, MemoTakesTheTextBehindOperatorAndFrequency)
{
    ReaderRun r;
    r.use.memo = true;
    AllQso a, b, c, d;
    a.memo = "%%JA1%% (14025) good";
    b.memo = "(14025)";
    c.memo = "nice -DUPE- sig";
    d.memo = "QSB (7012";
    const auto recs = r.runAll({allLine(a), allLine(b), allLine(c), allLine(d)});
    EXPECT_EQ(recs[0][Memo], "good");
    EXPECT_EQ(recs[1][Memo], "");
    EXPECT_EQ(recs[2][Memo], "nice  sig");
    // Without a ")" the whole text stands behind the part before "(".
    EXPECT_EQ(recs[3][Memo], "QSB  QSB (7012");
}

TEST(ZlogAllReader, MemoIsEmptyUnlessTheLayoutUsesIt)
{
    ReaderRun r;
    AllQso q;
    q.memo = "hello";
    EXPECT_EQ(r.runAll({allLine(q)})[0][Memo], "");
}

TEST(ZlogAllReader, ALineOfExactlyTheFixedWidthHasNoMemo)
{
    ReaderRun r;
    r.use.memoEquals = true;
    // 59 characters padded by 20 blanks make the 79 of the fixed part.
    std::string line = allLine({}).substr(0, 59);
    line.resize(59, ' ');
    const auto recs = r.runAll({line});
    EXPECT_EQ(recs[0][Memo], "");
}

TEST(ZlogAllReader, ABlankLineBecomesALineOfEmptyFields)
{
    ReaderRun r;
    const auto recs = r.runAll({"", allLine({})});
    ASSERT_EQ(recs.size(), 2u);
    // Fields taken "as they stand" keep the blanks of the padding; the others are empty.
    EXPECT_EQ(recs[0][Year], "    ");
    EXPECT_EQ(recs[0][Call], "   ");
    EXPECT_EQ(recs[0][Month], "");
    EXPECT_EQ(recs[0][Band], "");
    EXPECT_EQ(recs[0][Exch], "");
    EXPECT_EQ(recs[1][Exch], "13");
}

TEST(ZlogAllReader, AFileWithOnlyItsFirstLineFailsPastItsEnd)
{
    ReaderRun r;
    EXPECT_EQ(r.failureOf({kAllHeader}, "ONLY.ALL", "A"), 62);
}

TEST(ZlogAllReader, AnEmptyFileFailsPastItsEnd)
{
    ReaderRun r;
    test::writeBytes(r.dir / "EMPTY.ALL", "");
    engine::RunContext& c = r.context();
    c.run.in_name = (r.dir / "EMPTY.ALL").string();
    c.run.file_letter = "A";
    try {
        readers::a_2_t(c);
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 62);
    }
}

TEST(ZlogAllReader, LfLineEndsReadLikeCrLf)
{
    ReaderRun r;
    const auto crlf = r.runAll({allLine({}), allLine({})});
    test::writeBytes(r.dir / "LF.ALL", std::string(kAllHeader) + "\n" + allLine({}) + "\n" +
                                           allLine({}) + "\n");
    engine::RunContext& c = r.context();
    c.run.in_name = (r.dir / "LF.ALL").string();
    c.run.file_letter = "A";
    readers::a_2_t(c);
    EXPECT_EQ(r.records(r.work("zlog_1.txt"), 13), crlf);
}

TEST(ZlogAllReader, RestoresTheChosenNameAndRemovesItsPredecessorFiles)
{
    ReaderRun r;
    test::writeBytes(r.work("zlog_0.txt"), "x");
    test::writeBytes(r.work("zlog_01.txt"), "x");
    r.runAll({allLine({})});
    EXPECT_FALSE(std::filesystem::exists(r.work("zlog_0.txt")));
    EXPECT_FALSE(std::filesystem::exists(r.work("zlog_01.txt")));
    EXPECT_EQ(r.ctx->run.in_name, (r.dir / "TEST.ALL").string());
}

TEST(ZlogTxtReader, CutsEveryColumnAndTakesTheYearFromTheTextBox)
{
    ReaderRun r;
    r.options.set("txtYYYY", "2025");
    TxtQso q;
    q.exch = "13 X";
    const auto recs = r.runTxt({txtLine(q)});
    ASSERT_EQ(recs.size(), 1u);
    const auto& f = recs[0];
    EXPECT_EQ(f[Year], "2025");
    EXPECT_EQ(f[Month], "11");
    EXPECT_EQ(f[Day], "22");
    EXPECT_EQ(f[Time], "0905");
    EXPECT_EQ(f[Call], "JA1ABC     ");
    EXPECT_EQ(f[Sent], "599");
    EXPECT_EQ(f[Rcvd], "599");
    EXPECT_EQ(f[Band], " 14");
    EXPECT_EQ(f[Mode], "CW ");
    EXPECT_EQ(f[Exch], "13");
    EXPECT_EQ(r.ctx->run.written_count, 0);
}

TEST(ZlogTxtReader, AOneDigitMonthBehindABlankIsReadCorrectly)
{
    ReaderRun r;
    TxtQso q;
    q.month = " 6";
    q.day = " 4";
    const auto recs = r.runTxt({txtLine(q)});
    EXPECT_EQ(recs[0][Month], "06");
    EXPECT_EQ(recs[0][Day], "04");
    EXPECT_EQ(recs[0][Time], "0905");
    EXPECT_EQ(recs[0][Call], "JA1ABC     ");
}

TEST(ZlogTxtReader, AOneDigitMonthAtTheFirstColumnShiftsEveryLaterColumn)
{
    ReaderRun r;
    TxtQso q;
    q.month = "6 ";
    std::string line = txtLine(q).substr(1); // "6" at column 1, a blank behind it
    const auto recs = r.runTxt({line});
    EXPECT_EQ(recs[0][Month], "06");
    // The "0" pushes the rest one byte to the right.
    EXPECT_EQ(recs[0][Time], "090");
}

TEST(ZlogTxtReader, ABlankLineIsAFailure)
{
    for (const char* blank : {"", "     "}) {
        ReaderRun r;
        EXPECT_EQ(r.failureOf({kTxtHeader, txtLine({}), blank, txtLine({})}, "B.TXT", "T"), 9);
    }
}

TEST(ZlogTxtReader, IotaRuleFormsTheReferenceOrEmptiesTheExchange)
{
    ReaderRun r;
    r.use.iota = true;
    r.use.memo = true;
    TxtQso a, b;
    a.exch = "OC123";
    a.memo = "island";
    b.exch = "25";
    const auto recs = r.runTxt({txtLine(a), txtLine(b)});
    EXPECT_EQ(recs[0][Exch], "OC-123");
    EXPECT_EQ(recs[0][Memo], "OC-123 island");
    EXPECT_EQ(recs[1][Exch], "");
    EXPECT_EQ(recs[1][Memo], "");
}

TEST(ZlogTxtReader, OperatorRuleAlsoRunsForTheOpPercentItem)
{
    ReaderRun r;
    r.use.opPercent = true;
    TxtQso q;
    q.memo = "%%JH1QRL%%";
    EXPECT_EQ(r.runTxt({txtLine(q)})[0][Op], "JH1QRL");
}

TEST(ZlogTxtReader, LeavesThePredecessorFilesAndTheName)
{
    ReaderRun r;
    test::writeBytes(r.work("zlog_01.txt"), "x");
    r.runTxt({txtLine({})});
    EXPECT_TRUE(std::filesystem::exists(r.work("zlog_01.txt")));
}

TEST(ZlogRealData, AllFormOfTheFixtureGivesEveryQso)
{
    const auto all = test::realData("zlog/allja1_qxsl_fixture.ALL");
    const auto txt = test::realData("zlog/allja1_qxsl_fixture.TXT");
    if (!all || !txt) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    ReaderRun r;
    r.use.op = true;
    engine::RunContext& c = r.context(r.options);
    c.run.in_name = all->string();
    c.run.use = r.use;
    c.run.file_letter = "A";
    readers::a_2_t(c);
    const auto allRecs = r.records(r.work("zlog_1.txt"), 13);
    ASSERT_EQ(allRecs.size(), 776u);
    EXPECT_EQ(allRecs[0][Call], "QP3GES       ");
    EXPECT_EQ(allRecs[0][Op], "OP5");
    EXPECT_EQ(allRecs[0][Exch], "26");
    EXPECT_EQ(allRecs[0][Band], "14");
    EXPECT_EQ(c.run.written_count, 776);

    engine::RunContext& t = r.context(r.options);
    t.run.in_name = txt->string();
    t.run.use = r.use;
    t.run.file_letter = "T";
    readers::t_2_t(t);
    const auto txtRecs = r.records(r.work("zlog_1.txt"), 13);
    ASSERT_EQ(txtRecs.size(), allRecs.size());
    for (std::size_t i = 0; i < allRecs.size(); ++i) {
        EXPECT_EQ(text::trim(txtRecs[i][Call]), text::trim(allRecs[i][Call])) << i;
        EXPECT_EQ(txtRecs[i][Time], allRecs[i][Time]) << i;
        EXPECT_EQ(txtRecs[i][Op], allRecs[i][Op]) << i;
    }
}

namespace {

// What a reading of `lines` gave: the bytes of zlog_1.txt, the progress, the count of lines
// written and the failure.
struct Reading
{
    std::string zlog_1;
    std::vector<long> progress;
    long written = 0;
    int failure = 0;
};

Reading readLog(const std::vector<std::string>& lines, const char* name, const char* letter,
                bool frequencies = false)
{
    ReaderRun r;
    r.options.set("Check02", "1");
    r.options.set("Check17", frequencies ? "1" : "0");
    r.options.set("txtOp_name", "JA1");
    const auto path = r.dir / name;
    test::writeSjisLines(path, lines);
    engine::RunContext& c = r.context(r.options);
    c.run.in_name = path.string();
    c.run.chosen_name = path.string();
    c.run.file_letter = letter;
    c.run.op_filter_name = r.options.value("txtOp_name");
    Reading out;
    try {
        readers::henkan_at_2_t(c);
    } catch (const failure::Failure& f) {
        out.failure = f.number();
    }
    out.zlog_1 = test::readBytes(r.work("zlog_1.txt"));
    out.progress = r.observer.progressValues;
    out.written = c.run.written_count;
    return out;
}

// A QSO line of the `.TXT` form (`txt`) or the `.ALL` form.
std::string qsoLine(bool txt, const std::string& call, const std::string& memo)
{
    if (txt) {
        TxtQso q;
        q.call = call;
        q.memo = memo;
        return txtLine(q);
    }
    AllQso q;
    q.call = call;
    q.memo = memo;
    return allLine(q);
}

// A long log of every kind of line: operators kept and dropped by the filter, memos, kanji.
std::vector<std::string> longLog(bool txt, int first, int last)
{
    std::vector<std::string> lines;
    for (int i = first; i < last; ++i) {
        const std::string call = (i % 3 == 0 ? "JA" : "W") + std::to_string(i % 10) + "Z" +
                                 std::to_string(i);
        const std::string memo = i % 4 == 0 ? "%%JA1%%" : i % 4 == 1 ? "%%JA2%% 山田" : "";
        lines.push_back(qsoLine(txt, call, memo));
    }
    return lines;
}

// `readLog` of a long log's QSO lines behind the heading of their form.
Reading readLongLog(bool txt, std::vector<std::string> lines, bool frequencies = false)
{
    lines.insert(lines.begin(), txt ? kTxtHeader : kAllHeader);
    return readLog(lines, txt ? "LONG.TXT" : "LONG.ALL", txt ? "T" : "A", frequencies);
}

} // namespace

// A long log is read in two parts side by side; what comes out is what one pass gives, as the
// two halves of its lines give it one after the other (each short enough for one pass).
TEST(ZlogTextReaders, ALongLogGivesWhatOnePassGives)
{
    constexpr int kLines = 16000;
    for (const bool txt : {false, true}) {
        const char* name = txt ? "LONG.TXT" : "LONG.ALL";
        const std::vector<std::string> lines = longLog(txt, 0, kLines);
        std::size_t bytes = 0;
        for (const std::string& line : lines) {
            bytes += line.size() + 2;
        }
        ASSERT_GT(bytes, 1u << 20) << "long enough to be read in two parts";
        const Reading whole = readLongLog(txt, lines);
        const Reading first = readLongLog(txt, longLog(txt, 0, kLines / 2));
        const Reading second = readLongLog(txt, longLog(txt, kLines / 2, kLines));
        EXPECT_EQ(whole.failure, 0) << name;
        EXPECT_EQ(whole.zlog_1, first.zlog_1 + second.zlog_1) << name;
        EXPECT_EQ(whole.written, txt ? 0 : first.written + second.written) << name;
        EXPECT_EQ(whole.written, txt ? 0 : kLines / 4) << name;
        std::vector<long> progress;
        for (long i = 1; i <= kLines; ++i) {
            progress.push_back(i);
        }
        progress.push_back(0);
        EXPECT_EQ(whole.progress, progress) << name;
    }
}

// A long log behind `lead` plain lines, in blocks of four from `from` to `to`: the first line
// of a block names its operator and frequency, the three others keep them (a lone "%", and a
// text in parentheses that is no frequency).
std::vector<std::string> keepingLog(bool txt, int lead, int from, int to)
{
    std::vector<std::string> lines(static_cast<std::size_t>(lead), qsoLine(txt, "JA1ABC", ""));
    for (int b = from; b < to; ++b) {
        for (int i = 0; i < 4; ++i) {
            const std::string memo =
                i == 0 ? "%%JA1%% (" + std::to_string(14000 + b % 300) + ")" : "% (note)";
            lines.push_back(qsoLine(txt, "JA" + std::to_string(b * 4 + i), memo));
        }
    }
    return lines;
}

// Where a line keeps the operator or the frequency of the line before, the second part takes
// over what the lines just before it leave: wherever the parts meet, the lines are those of one
// pass, as two halves cut at a block give them.
TEST(ZlogTextReaders, ALongLogKeepsOperatorsAndFrequenciesWhereverItsPartsMeet)
{
    constexpr int kBlocks = 4000;
    for (const bool txt : {false, true}) {
        const char* name = txt ? "LONG.TXT" : "LONG.ALL";
        for (int lead = 0; lead < 4; ++lead) {
            const Reading whole = readLongLog(txt, keepingLog(txt, lead, 0, kBlocks), true);
            const Reading first = readLongLog(txt, keepingLog(txt, lead, 0, kBlocks / 2), true);
            const Reading second = readLongLog(txt, keepingLog(txt, 0, kBlocks / 2, kBlocks), true);
            EXPECT_EQ(whole.failure, 0) << name << " " << lead;
            EXPECT_EQ(whole.zlog_1, first.zlog_1 + second.zlog_1) << name << " " << lead;
            EXPECT_EQ(whole.written, first.written + second.written) << name << " " << lead;
        }
    }
}

TEST(ZlogTextReaders, ALongTxtLogWithABlankLineNearItsEndFailsAsOnePassFails)
{
    constexpr int kLines = 16000;
    std::vector<std::string> lines = longLog(true, 0, kLines);
    lines.insert(lines.end() - 10, "");
    const Reading whole = readLongLog(true, lines);
    const Reading expected = readLongLog(true, longLog(true, 0, kLines - 10));
    EXPECT_NE(whole.failure, 0);
    EXPECT_EQ(whole.zlog_1, expected.zlog_1);
    std::vector<long> progress = expected.progress;
    progress.pop_back();
    EXPECT_EQ(whole.progress, progress);
}
