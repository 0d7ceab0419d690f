#include "engine/FinalOutput.h"
#include "engine/Records.h"
#include "engine/RemarkLayout.h"
#include "failure/Failure.h"
#include "support/RunFixture.h"
#include "text/SjisCodec.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

using namespace vornhale;
using engine::ResultRecord;

namespace {

ResultRecord result(const std::string& call, const std::string& qsl3 = "J* ")
{
    ResultRecord r;
    r.call_key = call;
    r.date8 = "26/11/22";
    r.time6 = "09:05U";
    r.q_rst_sent = "599";
    r.q_rst_rcvd = "599";
    r.band_or_freq = "14";
    r.mode = "CW";
    r.qsl3 = qsl3;
    r.q_call = call;
    return r;
}

struct Final : test::RunFixture
{
    settings::Options options = settings::Options::defaults();
    engine::RunContext* c = nullptr;

    void write(const std::string& path, const std::vector<ResultRecord>& records)
    {
        text::LineWriter w(path);
        for (const auto& r : records) {
            w.write(text::formatRecord(r.fields()));
        }
        w.close();
    }
    // A run on LOG.ALL in the fixture's folder, with the sent marks "J" and "*".
    engine::RunContext& start()
    {
        c = &context(options);
        c->run.in_name = (dir / "LOG.ALL").string();
        c->run.names = readers::OutputNames::of(c->run.in_name);
        c->run.QSL_Q = "J";
        c->run.QSL_S = "*";
        return *c;
    }
    // Counts the reduced log-order file, and holds the counts that the reduction took, where it
    // took them, to what the count reads.
    std::string countAndCompare(const std::optional<engine::CardMarkCounts>& counted)
    {
        const std::string lastMode = engine::count_No_QSL_MNG_2(*c);
        if (counted) {
            EXPECT_EQ(counted->noCard, c->run.counters.no_qsl_kazu);
            EXPECT_EQ(counted->manager, c->run.counters.m_kazu);
            EXPECT_EQ(counted->lastMode, lastMode);
        }
        return lastMode;
    }
    // Both result files hold the same records; returns (_hn.csv, _cn.csv) records.
    std::pair<std::vector<std::vector<std::string>>, std::vector<std::vector<std::string>>>
    run(const std::vector<ResultRecord>& ham, const std::vector<ResultRecord>& con)
    {
        start();
        write(c->run.names.out_name_ham0, ham);
        write(c->run.names.out_name_con0, con);
        const auto layout = engine::RemarkLayout::fromOptions(options);
        const auto counted = engine::count_No_QSL_MNG(*c, layout);
        const std::string lastMode = countAndCompare(counted);
        engine::makeFinalFiles(*c, layout, lastMode);
        return {records(c->run.names.out_name_ham_n, 15), records(c->run.names.out_name_con_n, 15)};
    }
    // The result files hold the bytes given; returns the bytes of `_hn.csv`, `_cn.csv`,
    // `_h.csv` and `_c.csv`.
    std::vector<std::string> runBytes(const std::string& ham, const std::string& con)
    {
        start();
        test::writeBytes(c->run.names.out_name_ham0, ham);
        test::writeBytes(c->run.names.out_name_con0, con);
        const auto layout = engine::RemarkLayout::fromOptions(options);
        const auto counted = engine::count_No_QSL_MNG(*c, layout);
        const std::string lastMode = countAndCompare(counted);
        engine::makeFinalFiles(*c, layout, lastMode);
        std::vector<std::string> out;
        for (const char* name : {"LOG_hn.csv", "LOG_cn.csv", "LOG_h.csv", "LOG_c.csv"}) {
            out.push_back(text::readFileBytes(dir / name));
        }
        return out;
    }
};

enum { FCall, FDate, FTime, FHis, FMy, FFreq, FMode, FCode, FGl, FQsl, FName, FQth, FRmks1, FRmks2, FFlag };

} // namespace

TEST(FinalOutput, HamlogRecordsTakeTheFullCallAndTheTimeFlag)
{
    Final f;
    auto a = result("K1XX");
    a.q_call = "KH6/K1XX";
    auto b = result("JA1ABC");
    b.time6 = "18:05J";
    const auto [hn, cn] = f.run({a, b}, {a, b});
    EXPECT_EQ(hn[0][FCall], "KH6/K1XX");
    EXPECT_EQ(hn[0][FFlag], "8");
    EXPECT_EQ(hn[1][FFlag], "0");
    EXPECT_EQ(hn[1][FCall], "JA1ABC");
    EXPECT_TRUE(std::filesystem::exists(f.dir / "LOG_h.csv"));
    EXPECT_TRUE(std::filesystem::exists(f.dir / "LOG_c.csv"));
}

TEST(FinalOutput, NoCardRecordsCarryNoManagerWithoutCheck23)
{
    Final f;
    auto r = result("VP2EAB", "N  ");
    r.rmks1 = "@W1XX TNX";
    r.rmks1_c = "@W1XX TNX";
    r.rmks1_nomng = "TNX";
    const auto [hn, cn] = f.run({r}, {r});
    EXPECT_EQ(hn[0][FRmks1], "TNX");
    Final g;
    g.options.set("Check23", "1");
    EXPECT_EQ(g.run({r}, {r}).first[0][FRmks1], "@W1XX TNX");
}

TEST(FinalOutput, Check16MakesTheBand19Into18ButKeepsFrequencies)
{
    Final f;
    auto band = result("JA1ABC");
    band.band_or_freq = "1.9";
    auto freq = result("JA1ABC");
    freq.band_or_freq = "1.825";
    auto [hn, cn] = f.run({band, freq}, {band});
    EXPECT_EQ(hn[0][FFreq], "1.8");
    EXPECT_EQ(hn[1][FFreq], "1.825");
    Final off;
    off.options.set("Check16", "0");
    EXPECT_EQ(off.run({band}, {band}).first[0][FFreq], "1.9");
}

TEST(FinalOutput, TheLogPassRewritesModesByTheLastRecordLeftBehind)
{
    Final f;
    auto cw = result("JA1ABC");
    auto ps6 = result("K1XX");
    ps6.mode = "PS6";
    const auto [hn, cn] = f.run({cw, ps6}, {cw, ps6});
    // The last mode of the log-order file was "PS6": every record of that pass says PSK63.
    EXPECT_EQ(hn[0][FMode], "PSK63");
    EXPECT_EQ(hn[1][FMode], "PSK63");
    // The card-order pass looks at each record's own mode.
    EXPECT_EQ(cn[0][FMode], "CW");
    EXPECT_EQ(cn[1][FMode], "PSK63");
}

TEST(FinalOutput, TheNoQslMarkLosesTheSentMark)
{
    Final f;
    f.options.set("No_QSL_moji", "N");
    const auto [hn, cn] = f.run({result("JA1ABC", "N* ")}, {result("JA1ABC", "N* ")});
    EXPECT_EQ(hn[0][FQsl], "N  ");
}

TEST(FinalOutput, DxMarkAndOwnCallAreTakenOutOfTheRemarks)
{
    Final f;
    auto r = result("JA1ABC");
    r.q_call = "JA1ABC/1";
    r.rmks1_c = "@JA1ABC/1 X $DX";
    r.rmks2_c = "@JA1ABC/1 Y";
    const auto [hn, cn] = f.run({r}, {r});
    // Without a "Calls" item, "@" + the call + a blank becomes one blank; "$DX" goes.
    EXPECT_EQ(hn[0][FRmks1], " X ");
    EXPECT_EQ(hn[0][FRmks2], " Y");
    Final calls;
    calls.options.set("Rmks1_cfg", "Calls,,,,,,,,,,,,");
    EXPECT_EQ(calls.run({r}, {r}).first[0][FRmks1], "@JA1ABC/1 X ");
}

TEST(FinalOutput, CountsNoQslManagersAndNamesAndTheirSum)
{
    Final f;
    auto named = result("JA1ABC");
    named.q_name = "Taro";
    const auto [hn, cn] = f.run({result("A1", "N  "), result("B1", "M* "), named},
                                {result("A1", "N  "), result("B1", "M* "), named});
    EXPECT_EQ(f.c->run.counters.no_qsl_kazu, 1);
    EXPECT_EQ(f.c->run.counters.m_kazu, 1);
    EXPECT_EQ(f.c->run.counters.name_kazu, 1);
}

TEST(FinalOutput, BureauFlagOfTheCodeMarksCardsWithoutBureau)
{
    struct NoBureau : reference::NoEntities
    {
        std::string dxcc_buro_by_code(std::string_view code) override { return code == "999A" ? "X" : ""; }
    } entities;
    Final f;
    f.entities = &entities;
    f.options.set("DXCC_mas_txt_55_use", "Yes");
    f.options.set("buro_QSL_moji", "D");
    auto r = result("P5AA");
    r.dx_code = "999A";
    const auto [hn, cn] = f.run({r}, {r});
    EXPECT_EQ(hn[0][FQsl], "D");
    EXPECT_EQ(hn[0][FRmks1], "no_Buro");
}

TEST(FinalOutput, TheReportListsEachRecordInTheColumnsOfTheOldForm)
{
    Final f;
    auto r = result("JA1ABC");
    r.dx_code = "566A";
    r.q_name = "SUZUKI";
    r.rmks2_c = "QSB";
    auto portable = result("VERYLONGCALL/PORTABLE");
    f.run({r, portable}, {r, portable});
    f.c->run.Label37 = "2　件";
    const auto report = engine::Out_Henkan_Result(*f.c);
    const auto lines = test::readSjisLines(report);
    const std::string ham = f.c->run.names.out_name_ham_n;
    const auto banner = std::find(lines.begin(), lines.end(),
                                  std::string(10, '-') + "  " + ham + "  " + std::string(10, '-'));
    ASSERT_NE(banner, lines.end());
    ASSERT_GE(lines.end() - banner, 9);
    // The widths of the old fifteen-field form applied to the new one: the time stands where
    // the date stood, the report where the time stood, the name in the four places of the old
    // QSL column, then the second remark and the time flag.
    EXPECT_EQ(banner[1], "JA1ABC        " + std::string("09:05U ") + "599   " + "CW     " + "566A" +
                             "SUZU" + " " + "QSB" + std::string(16, ' ') + "8" +
                             std::string(18, ' '));
    EXPECT_EQ(banner[2], "VERYLONGCALL/P" + std::string("09:05U ") + "599   " + "CW     " +
                             std::string(8, ' ') + " " + std::string(19, ' ') + "8" +
                             std::string(18, ' '));
    EXPECT_EQ(banner[3], "");
    EXPECT_EQ(banner[4], "");
    EXPECT_EQ(banner[5], std::string(10, '=') + "  " + ham + "  " + std::string(10, '='));
    // Then the file itself, line by line, and the closing rule.
    const auto hamLines = test::readSjisLines(ham);
    ASSERT_EQ(hamLines.size(), 2u);
    EXPECT_EQ(banner[6], hamLines[0]);
    EXPECT_EQ(banner[7], hamLines[1]);
    EXPECT_EQ(banner[8], std::string(32, '='));
    EXPECT_EQ(banner + 9, lines.end());
}

namespace {

// Result records in the notation the stages write, kanji encoded.
std::string quoted(const std::vector<ResultRecord>& records)
{
    std::string out;
    for (const auto& r : records) {
        out += text::encodeSjis(text::formatRecord(r.fields())) + "\r\n";
    }
    return out;
}

ResultRecord kanjiRecord()
{
    auto r = result("JA1ABC");
    r.q_name = "山田";
    r.dx_name = "東京都";
    // The second byte of the ideographic blank is the byte of "@".
    r.rmks1_c = "TNX　";
    r.rmks2_c = "ＱＳＬ @JA1ABC X";
    r.q_call = "JA1ABC";
    return r;
}

} // namespace

TEST(FinalOutput, FieldsInAnyNotationGiveTheSameFilesAsQuotedRecords)
{
    auto a = result("K1XX");
    a.rmks1_c = " @W1XX TNX";
    a.rmks2_c = "QSL @K1XX ";
    const ResultRecord k = kanjiRecord();
    Final quotedRun;
    const auto expected = quotedRun.runBytes(quoted({a, k, a}), quoted({k, a, a}));
    // The same records with blanks outside the quotes, fields without quotes, a record spread
    // over two lines and text after a closing quote.
    const std::string loose = " K1XX ,\"\",\"26/11/22\", "
                              "\"09:05U\"x,599,\"599\",\"14\",\"CW\",\"\",\"\",\"J* \",\"\",\"\","
                              "\"\",\"\",\" @W1XX TNX\",\"QSL @K1XX \"\r\n\"\",\"\",\"K1XX\"\r\n";
    const std::string kanjiLoose = text::encodeSjis(
        "JA1ABC,\"\",\"26/11/22\",\"09:05U\",\"599\",\"599\",\"14\",\"CW\",\"\",\"\",\"J* \", 山田 "
        ","
        "\"東京都\",\"\",\"\",\"TNX　\",\"ＱＳＬ @JA1ABC X\",\"\",\"\"\r\n\"JA1ABC\"\r\n");
    Final looseRun;
    const auto got =
        looseRun.runBytes(loose + kanjiLoose + quoted({a}), kanjiLoose + loose + quoted({a}));
    EXPECT_EQ(got, expected);
}

TEST(FinalOutput, KanjiRemarksKeepTheirBytesAndLoseOnlyTheRealCallMark)
{
    Final f;
    const auto out = f.runBytes(quoted({kanjiRecord()}), quoted({kanjiRecord()}));
    EXPECT_EQ(out[0], text::encodeSjis("\"JA1ABC\",\"26/11/22\",\"09:05U\",\"599\",\"599\",\"14\","
                                       "\"CW\",\"\",\"\",\"J* \",\"山田\",\"東京都\",\"TNX　\","
                                       "\"ＱＳＬ  X\",\"8\"\r\n"));
    EXPECT_EQ(out[1], text::encodeSjis("\"JA1ABC\",\"26/11/22\",\"09:05U\",\"599\",\"599\",\"14\","
                                       "\"CW\",\"\",\"\",\"J* \",\"山田\",\"東京都\",\"TNX　\","
                                       "\"ＱＳＬ  X\",\"8\"\r\n"));
}

namespace {

int failureNumber(const std::function<void()>& action)
{
    try {
        action();
    } catch (const failure::Failure& f) {
        return f.number();
    }
    return 0;
}

} // namespace

// The two results are worked on side by side; what a failure leaves and which failure is told
// are as if they were worked on one after the other, the card-order file first when they are
// reduced, the log-order file first when the final files are written.
TEST(FinalOutput, FailuresOfTheTwoResultsAreToldInTheOrderOfTheirPasses)
{
    Final f;
    auto& run = f.start().run;
    const auto layout = engine::RemarkLayout::fromOptions(f.options);
    const std::string whole = text::formatRecord(result("JA1ABC").fields()) + "\r\n";
    const std::string cut = "\"JA1ABC\",\"\",\"26/11/22\"\r\n";

    // Reducing: a card-order file that is not there is told before a log-order file cut short.
    test::writeBytes(run.names.out_name_ham0, cut);
    std::filesystem::remove(run.names.out_name_con0);
    EXPECT_EQ(failureNumber([&] { engine::count_No_QSL_MNG(*f.c, layout); }), 53);
    test::writeBytes(run.names.out_name_con0, whole);
    EXPECT_EQ(failureNumber([&] { engine::count_No_QSL_MNG(*f.c, layout); }), 62);

    // Writing: the previous pair stays, and a failed log-order pass leaves nothing of the
    // card-order one.
    test::writeBytes(f.dir / "LOG_hn.csv", "old h\r\n");
    test::writeBytes(f.dir / "LOG_cn.csv", "old c\r\n");
    test::writeBytes(run.names.out_name_ham0, whole);
    test::writeBytes(run.names.out_name_con0, whole);
    engine::count_No_QSL_MNG(*f.c, layout);
    const std::string reduced = test::readBytes(run.names.out_name_con0);
    test::writeBytes(run.names.out_name_ham0, cut);
    EXPECT_EQ(failureNumber([&] { engine::makeFinalFiles(*f.c, layout, "CW"); }), 62);
    EXPECT_FALSE(std::filesystem::exists(f.dir / "LOG_c.csv"));
    EXPECT_FALSE(std::filesystem::exists(f.dir / "LOG_cn.csv.writing"));
    EXPECT_FALSE(std::filesystem::exists(f.dir / "LOG_hn.csv.writing"));
    EXPECT_EQ(test::readBytes(f.dir / "LOG_hn.csv"), "old h\r\n");
    EXPECT_EQ(test::readBytes(f.dir / "LOG_cn.csv"), "old c\r\n");

    // A card-order file cut short with a whole log-order one: its own failure.
    test::writeBytes(run.names.out_name_ham0, reduced);
    test::writeBytes(run.names.out_name_con0, cut);
    EXPECT_EQ(failureNumber([&] { engine::makeFinalFiles(*f.c, layout, "CW"); }), 62);
    EXPECT_EQ(test::readBytes(f.dir / "LOG_cn.csv"), "old c\r\n");
    EXPECT_EQ(test::readBytes(f.dir / "LOG_hn.csv"), "old h\r\n");

    // Both whole: the new pair.
    test::writeBytes(run.names.out_name_con0, reduced);
    EXPECT_EQ(failureNumber([&] { engine::makeFinalFiles(*f.c, layout, "CW"); }), 0);
    EXPECT_NE(test::readBytes(f.dir / "LOG_hn.csv"), "old h\r\n");
    EXPECT_EQ(test::readBytes(f.dir / "LOG_hn.csv"), test::readBytes(f.dir / "LOG_cn.csv"));
}

// The reduction takes the card-mark counts of the log-order file while every line goes as it
// stood; the count then reads nothing and tells the same. A line with other than ASCII, or a
// field outside its quotes, leaves the counting to the read.
TEST(FinalOutput, TheReductionCountsTheCardMarksWhileEveryLineStaysAsItStood)
{
    Final f;
    auto& run = f.start().run;
    const auto layout = engine::RemarkLayout::fromOptions(f.options);
    auto last = result("JA1ABC", "M* ");
    last.mode = "SSB";
    const std::vector<ResultRecord> records{result("K1XX", "N  "), result("W1AW", "N  "),
                                            result("DL1AA"), last};
    f.write(run.names.out_name_ham0, records);
    f.write(run.names.out_name_con0, records);
    const auto counted = engine::count_No_QSL_MNG(*f.c, layout);
    ASSERT_TRUE(counted.has_value());
    EXPECT_EQ(counted->noCard, 2);
    EXPECT_EQ(counted->manager, 1);
    EXPECT_EQ(counted->lastMode, "SSB");
    // Told without the file.
    std::filesystem::remove(run.names.out_name_ham0);
    EXPECT_EQ(engine::count_No_QSL_MNG_2(*f.c, counted), "SSB");
    EXPECT_EQ(run.counters.no_qsl_kazu, 2);
    EXPECT_EQ(run.counters.m_kazu, 1);

    auto named = result("JA2XYZ", "N  ");
    named.q_name = "山田";
    f.write(run.names.out_name_ham0, {records[0], named, records[3]});
    f.write(run.names.out_name_con0, records);
    EXPECT_FALSE(engine::count_No_QSL_MNG(*f.c, layout).has_value());
    EXPECT_EQ(f.countAndCompare(std::nullopt), "SSB");
    EXPECT_EQ(run.counters.no_qsl_kazu, 2);

    const std::string quoted = text::formatRecord(records[0].fields());
    test::writeBytes(run.names.out_name_ham0,
                     quoted + "\r\n" + "JA3ABC," + quoted.substr(quoted.find(',') + 1) + "\r\n");
    f.write(run.names.out_name_con0, records);
    EXPECT_FALSE(engine::count_No_QSL_MNG(*f.c, layout).has_value());
    EXPECT_EQ(f.countAndCompare(std::nullopt), "CW");
    EXPECT_EQ(run.counters.no_qsl_kazu, 2);
}
