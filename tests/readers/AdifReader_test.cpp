#include "failure/Failure.h"
#include "readers/AdifReader.h"
#include "readers/InputSelection.h"
#include "support/RunFixture.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

enum Field { Year, Month, Day, Time, Call, Sent, Rcvd, Band, Mode, Op, Memo, Freq, Exch };

const std::string kHeader = "<ADIF_VER:5>3.1.0 <PROGRAMID:4>TEST <EOH>";

// One record on one line.
std::string record(const std::string& fields)
{
    return fields + " <EOR>";
}

const std::string kCw = "<CALL:6>JA1ABC <QSO_DATE:8>20261122 <TIME_ON:4>0905 <BAND:3>20M "
                        "<MODE:2>CW <RST_SENT:3>599 <RST_RCVD:3>579";

struct AdifRun : test::RunFixture
{
    settings::Options options = settings::Options::defaults();

    fs::path write(const std::vector<std::string>& lines, const char* name = "TEST.ADI")
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
        c.run.setKind(readers::InputKind::Adi);
        c.run.op_filter_name = options.value("txtOp_name");
        readers::henkan_adi_2_t(c);
        return records(work("zlog_1.txt"), 13);
    }

    std::vector<std::vector<std::string>> runRecords(const std::vector<std::string>& fields)
    {
        std::vector<std::string> lines{kHeader};
        for (const std::string& f : fields) {
            lines.push_back(record(f));
        }
        return run(lines);
    }
};

readers::AdifValues valuesOf(const std::string& rec)
{
    readers::AdifValues v;
    v.take(rec);
    return v;
}

} // namespace

TEST(AdifRecognition, AFileWithRstSentInAnyCaseIsAnAdifLog)
{
    test::RunFixture f;
    for (const char* tag : {"<RST_SENT:3>599", "<rst_sent:3>599", "<Rst_Sent:2>59"}) {
        readers::InputState run;
        const fs::path p = f.dir / "a.adi";
        test::writeSjisLines(p,
                             {"header", "<EOH>", std::string("<CALL:6>JA1ABC ") + tag + "<EOR>"});
        EXPECT_TRUE(readers::FileOpen_adi(run, p)) << tag;
        EXPECT_EQ(run.f_type, "adi");
        EXPECT_FALSE(run.opened_as_cbr);
    }
}

TEST(AdifRecognition, AFileWithoutRstSentIsRejectedWithItsMessage)
{
    test::RunFixture f;
    for (const std::vector<std::string>& lines :
         {std::vector<std::string>{"<EOH>", "<CALL:6>JA1ABC <MODE:2>CW <EOR>"},
          {"<RST_SENT3>599"},
          {}}) {
        readers::InputState run;
        const fs::path p = f.dir / "a.adi";
        test::writeSjisLines(p, lines);
        EXPECT_FALSE(readers::FileOpen_adi(run, p));
        EXPECT_EQ(run.in_name, "ADIF ﾌｧｲﾙではありません！");
        EXPECT_EQ(run.lblIn_name, "ADIF ﾌｧｲﾙではありません！");
        EXPECT_EQ(run.f_type, "");
    }
}

TEST(AdifRecognition, CountsLinesHoldingCallInUpperAndLowerCaseSeparately)
{
    test::RunFixture f;
    auto& ctx = f.context();
    const fs::path p = f.dir / "CONTEST.adi";
    test::writeSjisLines(p, {"<EOH>", "<CALL:6>JA1ABC <RST_SENT:3>599 <EOR>",
                             "<call:6>JA1ABD <rst_sent:3>599 <eor>",
                             "<CALL:6>JA1ABE <call:6>JA1ABE <EOR>", "<Call:6>JA1ABF <EOR>",
                             "<CALL:6>JA1ABG <CALL:6>JA1ABG <EOR>"});
    ASSERT_EQ(readers::openInput(ctx, p, "ADI"), readers::OpenResult::Opened);
    EXPECT_EQ(ctx.run.f_type, "adi");
    // Both spellings on one line count twice; a mixed spelling not at all; a line counts once
    // for each spelling however often it holds it.
    EXPECT_EQ(ctx.run.Label39, "5 件");
    EXPECT_EQ(ctx.run.line_count, 5);
    EXPECT_EQ(ctx.run.names.out_name_con_n, (f.dir / "CONTEST_cn.csv").string());
}

TEST(AdifValues, TheLengthIsOneDigitAndTheValueStartsTwoPlacesBehindIt)
{
    EXPECT_EQ(readers::adifValue("<MODE:2>CW <X:1>Y", "<MODE:"), "CW");
    EXPECT_EQ(readers::adifValue("<MODE:2>CW", "<BAND:"), std::nullopt);
    // Two digits: the first is the length, and the value begins with ">".
    EXPECT_EQ(readers::adifValue("<FREQ:10>14.0250000", "<FREQ:"), ">");
    EXPECT_EQ(readers::adifValue("<SRX:12>ABCDEFGHIJKL", "<SRX:"), ">");
    // A length that is no digit reads as 0.
    EXPECT_EQ(readers::adifValue("<MODE:X>CW", "<MODE:"), "");
}

TEST(AdifValues, ATypeLetterOnAnotherTagShiftsTheValueToTheTypeLetter)
{
    const auto v = valuesOf("<CALL:6:S>JA1ABC <MODE:2:E>CW <RST_SENT:3:S>599 <EOR>");
    EXPECT_EQ(v.call, "S>JA1A");
    EXPECT_EQ(v.mode, "E>");
    EXPECT_EQ(v.rst_sent, "S>5");
}

TEST(AdifValues, AnEightCharacterDateReadsTheSameWithOrWithoutItsTypeLetter)
{
    for (const char* rec : {"<QSO_DATE:8:D>20021123 <EOR>", "<QSO_DATE:8>20021123 <EOR>",
                            "<CALL:4>ZZ9Z <QSO_DATE:8>20021123<TIME_ON:4>1234<EOR>"}) {
        const auto v = valuesOf(rec);
        EXPECT_EQ(v.year, "2002") << rec;
        EXPECT_EQ(v.month, "11") << rec;
        EXPECT_EQ(v.day, "23") << rec;
    }
}

TEST(AdifValues, TheTimeIsCutToFourCharacters)
{
    EXPECT_EQ(valuesOf("<TIME_ON:6>123456").time, "1234");
    EXPECT_EQ(valuesOf("<TIME_ON:4>0905").time, "0905");
    EXPECT_EQ(valuesOf("<TIME_ON:6:T>123456").time, "T>12");
}

TEST(AdifValues, CallsOfTenToNineteenCharactersReadTwoDigits)
{
    EXPECT_EQ(valuesOf("<CALL:10>JA1ABC/QRP <EOR>").call, "JA1ABC/QRP");
    EXPECT_EQ(valuesOf("<CALL:13>KH6/JA1ABC/MM <EOR>").call, "KH6/JA1ABC/MM");
    // A one-character call has the "1" too, and is read one place further on.
    EXPECT_EQ(valuesOf("<CALL:1>XY<EOR>").call, "Y");
}

TEST(AdifValues, ARecordWithoutCallReadsTheCallFromTheStartOfTheText)
{
    // Position 0 stands in for the tag: the length is the sixth character, the value starts
    // at the eighth.
    EXPECT_EQ(valuesOf("<QTH:3>ABC <MODE:2>CW <EOR>").call, "ABC");
    EXPECT_EQ(valuesOf("<MODE:2>CW <EOR>").call, "");
    EXPECT_EQ(valuesOf("").call, "");
}

TEST(AdifValues, PositionsCountCharactersNotBytes)
{
    const auto v = valuesOf("<QTH:2>東京 <CALL:6>JA1ABC <COMMENT:6>ｱｲｳ 桜 <NAME:5>ＹＡＭＡＤＡ");
    EXPECT_EQ(v.call, "JA1ABC");
    EXPECT_EQ(v.comment, "ｱｲｳ 桜");

    // A record's full-width letters are upper-cased with the others.
    AdifRun r;
    const auto recs = r.runRecords({"<qth:2>東京 <call:6>ｊａ１ａｂｃ <rst_sent:3>599"});
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0][Call], "ＪＡ１ＡＢＣ");
}

TEST(AdifValues, AppWritelogRcvdWinsOverRcvdAndSrx)
{
    EXPECT_EQ(valuesOf("<SRX:2>25 <APP_WRITELOG_RCVD:3>13M <EOR>").rcvd_exchange, "13M");
    EXPECT_EQ(valuesOf("<APP_WRITELOG_RCVD:3>13M <SRX:2>25 <EOR>").rcvd_exchange, "13M");
    EXPECT_EQ(valuesOf("<SRX:2>25 <RCVD:3>10H <EOR>").rcvd_exchange, "10H");
    EXPECT_EQ(valuesOf("<SRX:2>25 <RCVD:3>10H <APP_WRITELOG_RCVD:3>13M").rcvd_exchange, "13M");
    EXPECT_EQ(valuesOf("<SRX:2>25 <EOR>").rcvd_exchange, "25");
}

TEST(AdifValues, TheReportsCarryTheExchangesUntilTheCut)
{
    const auto cw = valuesOf("<MODE:2>CW <RST_SENT:3>599 <RST_RCVD:3>599 <STX:3>100 <SRX:2>25");
    EXPECT_EQ(cw.rst_sent, "599");
    EXPECT_EQ(cw.rst_rcvd, "599");
    const auto ssb = valuesOf("<MODE:3>SSB <RST_SENT:2>59 <RST_RCVD:2>59 <STX:3>100 <SRX:2>25");
    EXPECT_EQ(ssb.rst_sent, "59");
    EXPECT_EQ(ssb.rst_rcvd, "59");
    // A report without its own digits shows the exchange through the cut.
    const auto bare = valuesOf("<MODE:2>FM <RST_SENT:0> <STX:4>1234 <SRX:2>25");
    EXPECT_EQ(bare.rst_sent, "123");
    EXPECT_EQ(bare.rst_rcvd, "25");
}

TEST(AdifValues, TheReceivedReportTakesTwoDigitsUnlessItsTagClosesAfterOne)
{
    EXPECT_EQ(valuesOf("<RST_RCVD:3> 59<EOR>").rst_rcvd, "59");
    EXPECT_EQ(valuesOf("<RST_RCVD:10>5990000000<EOR>").rst_rcvd, "599");
    try {
        valuesOf("<RST_RCVD:-5>59<EOR>");
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 5);
    }
}

TEST(AdifValues, TheModesRttyAndSstvAreShortened)
{
    EXPECT_EQ(valuesOf("<MODE:4>RTTY").mode, "RTY");
    EXPECT_EQ(valuesOf("<MODE:4>SSTV").mode, "STV");
    EXPECT_EQ(valuesOf("<MODE:3>FT8").mode, "FT8");
}

TEST(AdifValues, TheBandInMetresGivesTheFrequencyWhenNoneWasRead)
{
    struct Case
    {
        const char* band;
        const char* freq;
        const char* digit;
    };
    for (const Case& c : {Case{"160M", "1.9", "0"},
                          {"80M", "3.5", "1"},
                          {"40M", "7", "2"},
                          {"30M", "10", ""},
                          {"20M", "14", "3"},
                          {"17M", "18", ""},
                          {"15M", "21", "4"},
                          {"12M", "24", ""},
                          {"10M", "28", "5"},
                          {"6", "50", ""},
                          {"6M", "", ""},
                          {"2M", "", ""},
                          {"70CM", "", ""}}) {
        const auto v = valuesOf("<BAND:" + std::to_string(std::string(c.band).size()) + ">" +
                                c.band + " <EOR>");
        EXPECT_EQ(v.freq, c.freq) << c.band;
        EXPECT_EQ(v.band_digit, c.digit) << c.band;
    }
    // A frequency that was read stands as it is.
    EXPECT_EQ(valuesOf("<BAND:3>20M <FREQ:6>14.025").freq, "14.025");
}

TEST(AdifValues, TheValuesKeptForThemselves)
{
    auto v = valuesOf("<CQZ:2>25 <ITUZ:2>45 <STATE:2>CA <CNTY:10>CA,ALAMEDA <COMMENT:10> TNX QSO  "
                      "<QSL_SENT:1>Y <QSL_RCVD:1>Y <IOTA:6>AS-007 <DXCC:3>339");
    EXPECT_EQ(v.cqz, "CQZ: 25");
    EXPECT_EQ(v.ituz, "ITUZ: 45");
    EXPECT_EQ(v.adi_state, "STATE: CA");
    EXPECT_EQ(v.cnty, "CNTY: CA,ALAMEDA");
    EXPECT_EQ(v.comment, "TNX QSO");
    EXPECT_EQ(v.qsl_sent, "J");
    EXPECT_EQ(v.qsl_sent_mark, "*");
    EXPECT_EQ(v.qsl_rcvd_mark, "*");
    EXPECT_EQ(v.adi_iota, "AS-007");
    EXPECT_EQ(v.dxcc, "339");

    v.take("<CNTY:4>MA,X <COMMENT:2>OK <QSL_SENT:1>N <QSL_RCVD:1>N <CQZ:0>");
    EXPECT_EQ(v.cnty, "CNTY: MA,X");
    EXPECT_EQ(v.comment, "OK");
    EXPECT_EQ(v.qsl_sent, "N");
    EXPECT_EQ(v.qsl_sent_mark, " ");
    EXPECT_EQ(v.qsl_rcvd_mark, " ");
    EXPECT_EQ(v.cqz, "");
    // Cleared for each record.
    EXPECT_EQ(v.ituz, "");
    EXPECT_EQ(v.adi_state, "");
    EXPECT_EQ(v.adi_iota, "");
    EXPECT_EQ(v.dxcc, "");
}

TEST(AdifReader, ReadsARecordIntoTheCommonLine)
{
    AdifRun r;
    const auto recs = r.runRecords({kCw + " <STX:3>100 <SRX:2>25"});
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
    EXPECT_EQ(f[Freq], "14");
    EXPECT_EQ(f[Exch], "");
    EXPECT_EQ(r.ctx->run.written_count, 1);
}

TEST(AdifReader, LowerCaseTagsReadTheSameAndEveryValueStandsInUpperCase)
{
    AdifRun r;
    const auto recs = r.run({"<adif_ver:5>3.1.0 <eoh>",
                             "<call:6>ja1abc <qso_date:8>20261122 <time_on:4>0905 "
                             "<band:3>20m <mode:3>ssb <rst_sent:2>59 <rst_rcvd:2>57 "
                             "<comment:9>good sigs <eor>",
                             "<CALL:6>JA1ABC <QSO_DATE:8>20261122 <TIME_ON:4>0905 "
                             "<BAND:3>20M <MODE:3>SSB <RST_SENT:2>59 <RST_RCVD:2>57 "
                             "<COMMENT:9>GOOD SIGS <EOR>"});
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(recs[0], recs[1]);
    EXPECT_EQ(recs[0][Call], "JA1ABC");
    EXPECT_EQ(recs[0][Mode], "SSB");
    EXPECT_EQ(recs[0][Freq], "14");

    readers::AdifValues v;
    v.take(text::upper("<comment:9>good sigs <eor>"));
    EXPECT_EQ(v.comment, "GOOD SIGS");
}

TEST(AdifReader, ALineWithKanjiIsDecodedAndUpperCasedAndTheFirstOfATwiceWrittenTagWins)
{
    AdifRun r;
    const auto recs = r.run({"<EOH>", "<call:6>ja1abc <qso_date:8>20261122 <comment:2>大阪",
                             "<time_on:4>0905 <mode:2>cw <rst_sent:3>599 <mode:3>ssb <eor>"});
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0][Call], "JA1ABC");
    EXPECT_EQ(recs[0][Time], "0905");
    EXPECT_EQ(recs[0][Mode], "CW");
    EXPECT_EQ(recs[0][Sent], "599");
}

TEST(AdifReader, ARecordMayRunAcrossLines)
{
    AdifRun r;
    const auto recs =
        r.run({"header text", "<EOH>", "<CALL:6>JA1ABC", "<QSO_DATE:8>20261122", "<TIME_ON:4>0905",
               "<FREQ:6>14.025", "<MODE:2>CW", "<RST_SENT:3>599", "<RST_RCVD:3>599", "<EOR>", "",
               "<CALL:6>JA1XYZ <TIME_ON:4>0906", "<EOR>"});
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(recs[0][Call], "JA1ABC");
    EXPECT_EQ(recs[0][Band], "14.025");
    EXPECT_EQ(recs[0][Freq], "14.025");
    // The second record keeps date, mode and reports of the first; frequency and band are
    // its own.
    EXPECT_EQ(recs[1][Call], "JA1XYZ");
    EXPECT_EQ(recs[1][Time], "0906");
    EXPECT_EQ(recs[1][Day], "22");
    EXPECT_EQ(recs[1][Mode], "CW");
    EXPECT_EQ(recs[1][Sent], "599");
    EXPECT_EQ(recs[1][Band], "");
    EXPECT_EQ(recs[1][Freq], "");
}

TEST(AdifReader, NeitherFreqNorBandGivesAnEmptyBandAndFrequency)
{
    AdifRun r;
    const auto recs = r.runRecords({"<CALL:6>JA1ABC <MODE:2>CW <RST_SENT:3>599"});
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0][Band], "");
    EXPECT_EQ(recs[0][Freq], "");
}

TEST(AdifReader, ABandOf6mGivesNoFrequencyWhereASixWould)
{
    AdifRun r;
    const auto recs = r.runRecords(
        {"<CALL:6>JA1ABC <BAND:2>6M <RST_SENT:3>599", "<CALL:6>JA1ABC <BAND:1>6 <RST_SENT:3>599"});
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(recs[0][Band], "");
    EXPECT_EQ(recs[1][Band], "50");
}

TEST(AdifReader, ACwContactKeepsThreeDigitsOfItsReportAndAnSsbOneTwo)
{
    AdifRun r;
    const auto recs =
        r.runRecords({"<CALL:6>JA1ABC <MODE:2>CW <RST_SENT:3>599 <RST_RCVD:3>599 <SRX:2>25",
                      "<CALL:6>JA1ABD <MODE:3>SSB <RST_SENT:2>59 <RST_RCVD:2>59 <SRX:2>25"});
    EXPECT_EQ(recs[0][Rcvd], "599");
    EXPECT_EQ(recs[1][Rcvd], "59");
    EXPECT_EQ(recs[0][Exch], "");
}

TEST(AdifReader, WithoutEohWithinTwentyLinesThoseLinesAreGone)
{
    AdifRun r;
    std::vector<std::string> lines;
    for (int i = 0; i < 25; ++i) {
        lines.push_back(
            record("<CALL:6>JA1A" + std::to_string(10 + i) + " <RST_SENT:3>599 <MODE:2>CW"));
    }
    const auto recs = r.run(lines);
    ASSERT_EQ(recs.size(), 5u);
    EXPECT_EQ(recs[0][Call], "JA1A30");
}

TEST(AdifReader, ARecordEndsAfterTwentyLinesWithoutEor)
{
    AdifRun r;
    std::vector<std::string> lines{"<EOH>", "<CALL:6>JA1ABC"};
    for (int i = 0; i < 20; ++i) {
        lines.push_back("<MODE:2>CW");
    }
    lines.push_back("<CALL:6>JA1XYZ <EOR>");
    const auto recs = r.run(lines);
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(recs[0][Call], "JA1ABC");
    EXPECT_EQ(recs[1][Call], "JA1XYZ");
}

TEST(AdifReader, TextAfterTheLastEorIsOneMoreRecord)
{
    AdifRun r;
    const auto recs = r.run({kHeader, record(kCw), "", "<qth:3>abc"});
    ASSERT_EQ(recs.size(), 2u);
    // The call comes from the start of the text; what no tag gives is the record before's.
    EXPECT_EQ(recs[1][Call], "ABC");
    EXPECT_EQ(recs[1][Time], "0905");
    EXPECT_EQ(recs[1][Mode], "CW");
    EXPECT_EQ(recs[1][Band], "");

    // A blank last line is a record with an empty call.
    AdifRun blank;
    const auto withBlank = blank.run({kHeader, record(kCw), ""});
    ASSERT_EQ(withBlank.size(), 2u);
    EXPECT_EQ(withBlank[1][Call], "");
    EXPECT_EQ(withBlank[1][Day], "22");
}

TEST(AdifReader, HasNoOperatorFilter)
{
    AdifRun r;
    r.options.set("Check02", "1");
    r.options.set("txtOp_name", "JA1ZZZ");
    const auto recs = r.runRecords({kCw, kCw});
    EXPECT_EQ(recs.size(), 2u);
    EXPECT_EQ(r.ctx->run.written_count, 2);
}

TEST(AdifReader, AHeaderOnlyFileWritesNothing)
{
    AdifRun r;
    const auto recs = r.run({kHeader});
    EXPECT_TRUE(recs.empty());
    EXPECT_EQ(r.ctx->run.written_count, 0);
}

TEST(AdifReader, UpperCasingTouchesOnlyTheLettersAToZ)
{
    AdifRun r;
    // The characters on either side of both alphabets stay as they are.
    const auto recs = r.runRecords({"<call:17>@[`{~azAZ09/|}_^] <qso_date:8>20261122 "
                                    "<time_on:4>0905 <mode:2>cw <rst_sent:3>599",
                                    "<CALL:11>abcdefghijk <mode:2>cw <rst_sent:3>599"});
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(recs[0][Call], "@[`{~AZAZ09/|}_^]");
    EXPECT_EQ(recs[1][Call], "ABCDEFGHIJK");
}

TEST(AdifValues, LengthsThatAreNotPlainDigitsAreReadAsValReadsThem)
{
    // A blank, a sign or a full-width digit alone reads 0: an empty value.
    EXPECT_EQ(readers::adifValue("<MODE: >CW ", "<MODE:"), "");
    EXPECT_EQ(readers::adifValue("<MODE:+>CW ", "<MODE:"), "");
    EXPECT_EQ(readers::adifValue("<MODE:３>CW ", "<MODE:"), "");
    // A letter ends the number: "1A" is 1, and the value starts behind the two places.
    EXPECT_EQ(valuesOf("<CALL:1A>JA1ABC <RST_SENT:3>599").call, "J");
    // A blank inside the two places is passed over: "1 " is 1.
    EXPECT_EQ(valuesOf("<CALL:6>JA1ABC <RST_RCVD:1 >579").rst_rcvd, "5");
    // Plain digits, one or two of them.
    EXPECT_EQ(valuesOf("<CALL:12>JA1ABC/1/QRP <RST_RCVD:10>5791234567").call, "JA1ABC/1/QRP");
    EXPECT_EQ(valuesOf("<CALL:6>JA1ABC <RST_RCVD:10>5791234567").rst_rcvd, "579");
    // A negative two-digit length is an invalid call.
    try {
        valuesOf("<CALL:6>JA1ABC <RST_RCVD:-5>599");
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 5);
    }
}

TEST(AdifValues, AKanjiRecordCountsPositionsInCharactersAndCutsWholeCharacters)
{
    const readers::AdifValues v =
        valuesOf("<COMMENT:4>大阪府下 <CALL:6>JA1ABC <QSO_DATE:8>２０２６1122 <TIME_ON:4>0905 "
                 "<MODE:2>CW <RST_SENT:3>599 <SRX:2>東京 <STATE:3>大阪府");
    EXPECT_EQ(v.call, "JA1ABC");
    EXPECT_EQ(v.comment, "大阪府下");
    EXPECT_EQ(v.year, "２０２６");
    EXPECT_EQ(v.month, "11");
    EXPECT_EQ(v.day, "22");
    EXPECT_EQ(v.time, "0905");
    EXPECT_EQ(v.adi_state, "STATE: 大阪府");
    EXPECT_EQ(v.rst_rcvd, "東京");
}

TEST(AdifValues, WithTheDateTagWrittenTwiceEachFormIsFoundWhereverItStands)
{
    // The form without a type letter wins over the one with it, wherever each stands.
    readers::AdifValues v = valuesOf("<CALL:6>JA1ABC <QSO_DATE:8>20260101 <QSO_DATE:8:D>20021123");
    EXPECT_EQ(v.year + v.month + v.day, "20260101");
    v = valuesOf("<CALL:6>JA1ABC <QSO_DATE:8:D>20021123 <QSO_DATE:8>20260101");
    EXPECT_EQ(v.year + v.month + v.day, "20260101");
    // A first opening of neither form gives the length; the typed form later gives the place.
    v = valuesOf("<CALL:6>JA1ABC <QSO_DATE:6>260101 <QSO_DATE:8:D>20021123");
    EXPECT_EQ(v.year + v.month + v.day, "20021111"); // six characters: "200211"
    // One opening of neither form: the value starts as if it had the type letter.
    v = valuesOf("<CALL:6>JA1ABC <QSO_DATE:8:X>20021123");
    EXPECT_EQ(v.year + v.month + v.day, "20021123");
}

namespace {

// The count of an ADIF log as the line reader's lines give it: one for a line holding
// "<CALL:", one more for one holding "<call:".
long countByLines(const fs::path& path)
{
    long count = 0;
    text::LineReader in(path);
    while (!in.atEnd()) {
        const std::string line = in.next();
        count +=
            (text::contains(line, "<CALL:") ? 1 : 0) + (text::contains(line, "<call:") ? 1 : 0);
    }
    return count;
}

} // namespace

TEST(AdifCount, CountsCallTagsByLineWhateverTheLineEndsAndTheText)
{
    AdifRun r;
    const std::string kanji = text::encodeSjis("<call:4>JA1A <COMMENT:4>東京 <CALL:4>JA1A <EOR>");
    for (const std::string& bytes :
         {std::string("<RST_SENT:3>599 <EOH>\r\n<CALL:4>JA1A <call:4>JA1B <EOR>\r\n<CALL:4>JA1C "
                      "<EOR>\r\n"),
          std::string("<RST_SENT:3>599\n<call:4>JA1A<EOR>\n<CALL:4>JA1C <CALL:4>JA1D\n"),
          std::string("<RST_SENT:3>599\r<call:4>JA1A<EOR>\r\r<CALL:4>JA1C\r<xcall:1>X"),
          std::string("<RST_SENT:3>599\r\n") + kanji + "\n\r" + kanji + "\r\n<call:1>x",
          std::string("<RST_SENT:3>599 call: <c <call <CALL: <call:")}) {
        const fs::path p = r.dir / "COUNT.ADI";
        test::writeBytes(p, bytes);
        auto& c = r.context(r.options);
        ASSERT_TRUE(readers::FileOpen_adi(c.run, p)) << bytes;
        c.run.in_name = p.string();
        EXPECT_EQ(readers::count_in_name_adi(c), countByLines(p)) << bytes;
        // Without the opening's bytes the file is read anew, to the same count.
        EXPECT_EQ(readers::count_in_name_adi(c), countByLines(p)) << bytes;
    }
}

TEST(AdifCount, ALogChangedAfterItsOpeningIsCountedAsItIsAndAMissingOneFailsWith53)
{
    AdifRun r;
    const fs::path p = r.write({"<RST_SENT:3>599 <EOH>", "<CALL:4>JA1A <EOR>"});
    auto& c = r.context(r.options);
    ASSERT_TRUE(readers::FileOpen_adi(c.run, p));
    c.run.in_name = p.string();
    r.write({"<RST_SENT:3>599 <EOH>", "<CALL:4>JA1A <EOR>", "<CALL:4>JA1B <EOR>"});
    EXPECT_EQ(readers::count_in_name_adi(c), 2);

    ASSERT_TRUE(readers::FileOpen_adi(c.run, p));
    fs::remove(p);
    try {
        readers::count_in_name_adi(c);
        FAIL() << "a missing file was counted";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), 53);
    }
    test::writeBytes(p, "");
    EXPECT_FALSE(readers::FileOpen_adi(c.run, p));
}

// The lines of a long log from record `from` to `to`, behind `lead` plain records, in blocks of
// four: the first of a block gives every value that a record may keep, the others leave out the
// date, time, mode, reports and exchanges and keep those of the record before; every fifth
// record runs across two lines.
std::vector<std::string> longAdifLog(int from, int to, int lead, bool withHeader)
{
    std::vector<std::string> lines;
    if (withHeader) {
        lines.push_back(kHeader);
    }
    for (int i = 0; i < lead; ++i) {
        lines.push_back(record(kCw + " <STX:3>001 <SRX:3>002"));
    }
    const char* modes[] = {"CW", "SSB", "RTTY", "FM"};
    for (int i = from; i < to; ++i) {
        const std::string call = "JA" + std::to_string(1000 + i % 9000);
        std::string fields =
            "<CALL:" + std::to_string(call.size()) + ">" + call + " <BAND:3>20M <FREQ:6>14.025";
        if (i % 4 == 0) {
            const std::string mode = modes[(i / 4) % 4];
            fields += " <QSO_DATE:8>202611" + std::to_string(10 + i % 19) + " <TIME_ON:4>" +
                      std::to_string(1000 + i % 1300) + " <MODE:" + std::to_string(mode.size()) +
                      ">" + mode + " <RST_SENT:3>5" + std::to_string(i % 10) +
                      "9 <RST_RCVD:3>579 <STX:3>" + std::to_string(100 + i % 900) + " <SRX:3>" +
                      std::to_string(100 + (i * 7) % 900);
        } else {
            fields += " <COMMENT:4>kept";
        }
        if (i % 5 == 0) {
            const std::size_t cut = fields.find(" <BAND:");
            lines.push_back(fields.substr(0, cut));
            lines.push_back(record(fields.substr(cut + 1)));
        } else {
            lines.push_back(record(fields));
        }
    }
    return lines;
}

// A long log is read in two parts side by side, the second taking over what the records just
// before it keep: wherever the parts meet, the lines are those of one pass, and two halves cut
// at a block give them one after the other.
TEST(AdifReader, ALongLogGivesWhatOnePassGivesWhereverItsPartsMeet)
{
    AdifRun a;
    constexpr int kRecords = 14000;
    for (int lead = 0; lead < 4; ++lead) {
        const auto whole = a.run(longAdifLog(0, kRecords, lead, true));
        ASSERT_GT(fs::file_size(a.dir / "TEST.ADI"), 1u << 20);
        EXPECT_EQ(a.ctx->run.written_count, lead + kRecords) << lead;
        auto halves = a.run(longAdifLog(0, kRecords / 2, lead, true));
        const auto second = a.run(longAdifLog(kRecords / 2, kRecords, 0, true));
        halves.insert(halves.end(), second.begin(), second.end());
        EXPECT_EQ(whole, halves) << lead;
        ASSERT_EQ(whole.size(), static_cast<std::size_t>(lead + kRecords));
        // Each block keeps the date, time and mode of its first record.
        for (std::size_t i = lead; i < whole.size(); ++i) {
            const auto& first = whole[i - (i - lead) % 4];
            for (const Field f : {Year, Month, Day, Time, Mode}) {
                ASSERT_EQ(whole[i][f], first[f]) << lead << " " << i;
            }
        }
    }
}

// A long log fails at its first record with a negative length, with that record's number,
// wherever its two parts meet.
TEST(AdifReader, ALongLogFailsAtItsFirstBadRecordWithItsNumber)
{
    AdifRun a;
    constexpr int kRecords = 14000;
    for (const int bad : {101, 8999}) {
        std::vector<std::string> lines = longAdifLog(0, kRecords, 0, true);
        // The first line of record n, behind the header and the second lines of the records
        // before it that take two.
        auto breakRecord = [&lines](int n) {
            lines[static_cast<std::size_t>(1 + n + (n + 4) / 5)].insert(0, "<RST_RCVD:-5>599 ");
        };
        breakRecord(bad);
        breakRecord(13001);
        try {
            a.run(lines);
            ADD_FAILURE() << bad;
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), 5);
            EXPECT_TRUE(text::contains(f.description(), "(" + std::to_string(bad + 1) + " 件目"))
                << f.description();
        }
    }
}

TEST(AdifReader, ReadsTheSameRecordsWhateverTheLineEndsAndTheCaseOfTheTags)
{
    AdifRun r;
    const std::string kanji = text::encodeSjis(
        "<call:6>ja1abc <QSO_DATE:8>20261122 <TIME_ON:4>0905 <BAND:3>20M <COMMENT:2>東京 "
        "<MODE:2>CW <RST_SENT:3>599 <RST_RCVD:3>579 <EOR>");
    const std::string lower = "<call:6>ja1xyz <qso_date:8>20261123 <time_on:4>1005 <band:3>40m "
                              "<mode:3>ssb <rst_sent:2>59 <rst_rcvd:2>57 <srx:2>25 <eor>";
    const auto rowsOf = [&](const std::string& end) {
        const fs::path p = r.dir / "ENDS.ADI";
        test::writeBytes(p, "<ADIF_VER:5>3.1.4 <EOH>" + end + kCw + " <EOR>" + end +
                                "<CALL:6>JA1AB" + end + "C <RST_SENT:3>599 <EOR>" + end + lower +
                                end + kanji + end + kCw + "<RST_RCVD:1>5");
        auto& c = r.context(r.options);
        c.run.in_name = p.string();
        c.run.setKind(readers::InputKind::Adi);
        readers::henkan_adi_2_t(c);
        return test::RunFixture::records(r.work("zlog_1.txt"), 13);
    };
    const auto crlf = rowsOf("\r\n");
    ASSERT_EQ(crlf.size(), 5u);
    EXPECT_EQ(crlf[1][Call], "JA1ABC"); // the lines of a record are joined as they stand
    EXPECT_EQ(crlf[2][Call], "JA1XYZ");
    EXPECT_EQ(crlf[2][Mode], "SSB");
    EXPECT_EQ(crlf[2][Rcvd], "57");
    EXPECT_EQ(crlf[3][Call], "JA1ABC");
    EXPECT_EQ(crlf[4][Rcvd], "579");
    EXPECT_EQ(rowsOf("\n"), crlf);
    EXPECT_EQ(rowsOf("\r"), crlf);
}

TEST(AdifReader, AnEmptyLogWritesNoRecordAndAMissingOneFailsWith53)
{
    AdifRun r;
    const fs::path p = r.dir / "EMPTY.ADI";
    test::writeBytes(p, "");
    auto& c = r.context(r.options);
    c.run.in_name = p.string();
    c.run.setKind(readers::InputKind::Adi);
    readers::henkan_adi_2_t(c);
    EXPECT_TRUE(test::RunFixture::records(r.work("zlog_1.txt"), 13).empty());
    c.run.in_name = (r.dir / "GONE.ADI").string();
    try {
        readers::henkan_adi_2_t(c);
        FAIL() << "a missing log was read";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), 53);
    }
}
