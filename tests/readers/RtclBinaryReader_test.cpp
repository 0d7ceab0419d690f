#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/InputSelection.h"
#include "readers/RtclBinaryReader.h"
#include "readers/RtclWriter.h"
#include "readers/RtclZlogMakers.h"
#include "support/RunFixture.h"

#include <gtest/gtest.h>

using namespace vornhale;
using readers::InputKind;
using test::RtclBinarySpec;
using test::RtclBinaryWriter;

namespace {

namespace tmp = readers::rtcl_tmp;

struct RtclBinary : ::testing::Test, test::RunFixture
{
    settings::Options options = settings::Options::defaults();

    std::filesystem::path file(const std::string& bytes, const char* name = "TEST.log")
    {
        const auto path = dir / name;
        test::writeBytes(path, bytes);
        return path;
    }

    /// The open step through the menu of `word`.
    readers::OpenResult open(const std::filesystem::path& path, const char* word)
    {
        engine::RunContext& c = context(options);
        readers::ReaderContext rc = c;
        return readers::openInput(rc, path, word);
    }

    /// Opens and reads `bytes` as `word`; the common lines written.
    std::vector<std::vector<std::string>> convert(const std::string& bytes, const char* word,
                                                  const char* name = "TEST.log")
    {
        const auto path = file(bytes, name);
        EXPECT_EQ(open(path, word), readers::OpenResult::Opened);
        readers::ReaderContext rc = *ctx;
        readers::makeReader(ctx->run.kind)->read(rc);
        return records(work(base::working::zlog_1), 13);
    }

    /// The decoder's working text of `bytes`.
    std::vector<std::vector<std::string>> decode(const std::string& bytes, InputKind kind)
    {
        const auto out = dir / "rtcl_tmp.txt";
        readers::decodeRtclLog(bytes, kind, out);
        return records(out, tmp::kFields);
    }
};

std::string oneRecord(const RtclBinarySpec& q, bool v430 = false)
{
    return RtclBinaryWriter(v430).record(q).bytes();
}

} // namespace

TEST(RtclVersionCheck, TakesTheFirstByteAndTheLengthOfEachGeneration)
{
    using readers::rtclVersionProblem;
    const std::string v4 = RtclBinaryWriter(false).record({}).record({}).bytes();
    const std::string v430 = RtclBinaryWriter(true).record({}).record({}).bytes();
    EXPECT_EQ(rtclVersionProblem(v4, InputKind::LogV4), "");
    EXPECT_EQ(rtclVersionProblem(v430, InputKind::LogV430), "");
    // Each through the other menu.
    EXPECT_EQ(rtclVersionProblem(v430, InputKind::LogV4), readers::kNotBefore430);
    EXPECT_EQ(rtclVersionProblem(v4, InputKind::LogV430), readers::kNotFrom430);
    // Not starting with the digit 0, and an empty file.
    RtclBinarySpec one;
    one.number = "10001";
    EXPECT_EQ(rtclVersionProblem(oneRecord(one), InputKind::LogV4), readers::kNotRtclV4);
    EXPECT_EQ(rtclVersionProblem("", InputKind::LogV430), readers::kNotRtclV4);
    // Too short for one record.
    EXPECT_EQ(rtclVersionProblem(v4.substr(0, 100), InputKind::LogV4), readers::kNotBefore430);
    EXPECT_EQ(rtclVersionProblem(v4.substr(0, 100), InputKind::LogV430), readers::kNotFrom430);
}

TEST(RtclVersionCheck, A430FileOpensThroughThe400MenuWhenItsLengthAlsoDividesBy203)
{
    RtclBinaryWriter w(true);
    for (int i = 0; i < 203; ++i) {
        w.record({});
    }
    EXPECT_EQ(w.bytes().size(), 203u * 209u);
    EXPECT_EQ(readers::rtclVersionProblem(w.bytes(), InputKind::LogV4), "");
    w.record({});
    EXPECT_EQ(readers::rtclVersionProblem(w.bytes(), InputKind::LogV4), readers::kNotBefore430);
}

TEST_F(RtclBinary, ARefusedFileShowsItsNameAndTheTextInAPlainBox)
{
    const auto path = file(RtclBinaryWriter(true).record({}).bytes());
    EXPECT_EQ(open(path, "log_v4"), readers::OpenResult::Rejected);
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text,
              path.string() + "　は RTCL ver 4.30 より前のｌｏｇ ファイルではありません");
    EXPECT_EQ(dialogs.shown[0].icon, base::Dialogs::Icon::Information);
    // The menu had named the kind; the path stays and no names are derived.
    EXPECT_EQ(ctx->run.f_type, "log_v4");
    EXPECT_EQ(ctx->run.in_name, path.string());
    EXPECT_EQ(ctx->run.names.out_name_ham_n, "");

    const auto v4 = file(RtclBinaryWriter(false).record({}).bytes(), "V4.log");
    EXPECT_EQ(open(v4, "log_v430"), readers::OpenResult::Rejected);
    EXPECT_EQ(dialogs.shown.back().text,
              v4.string() + "　は RTCL ver 4.30 以降のｌｏｇ ファイルではありません");

    const auto text = file("\"1\",\"2023-03-15\"\r\n", "TEXT.log");
    EXPECT_EQ(open(text, "log_v430"), readers::OpenResult::Rejected);
    EXPECT_EQ(dialogs.shown.back().text,
              text.string() + "　は RTCL ver 4.0 のｌｏｇ ファイルではありません");
}

TEST_F(RtclBinary, AnOpenedLogShowsItsNumberOfRecords)
{
    RtclBinaryWriter w(true);
    w.record({}).record({}).record({});
    ASSERT_EQ(open(file(w.bytes()), "LOG_V430"), readers::OpenResult::Opened);
    EXPECT_EQ(ctx->run.f_type, "log_v430");
    EXPECT_EQ(ctx->run.Label37, "   3　件");
    EXPECT_EQ(ctx->run.names.out_name_con_n, (dir / "TEST_cn.csv").string());
    EXPECT_TRUE(dialogs.shown.empty());
}

TEST(RtclRig, EveryRowThatASignedValueReachesGivesItsBaseAndSteps)
{
    for (const readers::RtclRigRow& row : readers::rtclRigTable()) {
        if (row.start > 0x7FFFFFFF) {
            continue;
        }
        const auto at = [&](std::int64_t raw) {
            return readers::rtclHz(static_cast<std::int32_t>(raw), "99");
        };
        EXPECT_EQ(at(row.start), std::to_string(row.baseHz)) << row.baseHz;
        EXPECT_EQ(at(row.start + 1000LL * row.divisor), std::to_string(row.baseHz + 1000))
            << row.baseHz;
        EXPECT_EQ(at(row.start + 85000LL * row.divisor), std::to_string(row.baseHz + 85000))
            << row.baseHz;
    }
}

TEST(RtclRig, AtTheStartLessOneTheRowIsTakenAndTheStepIsZero)
{
    // 3.5 MHz starts at 1253306368; one below its start is still 3.5 MHz, not the top of 1.9.
    EXPECT_EQ(readers::rtclHz(1253306367, "1.9"), "3500000");
    EXPECT_EQ(readers::rtclHz(997670911, ""), "1800000");
    // Two below it is the top of the row below: 1.9 MHz and (1253306366 - 1023270912) / 256
    // steps, rounded to the nearest whole hertz.
    EXPECT_EQ(readers::rtclHz(1253306366, ""), "2798576");
}

TEST(RtclRig, TheRowsFrom50MHzAreBeyondASignedValueAndTheBandTells)
{
    for (const readers::RtclRigRow& row : readers::rtclRigTable()) {
        if (row.start <= 0x7FFFFFFF) {
            continue;
        }
        // The file's unsigned value reads as a negative one.
        const auto raw = static_cast<std::int32_t>(static_cast<std::uint32_t>(row.start + 8000));
        EXPECT_LT(raw, 0);
        EXPECT_EQ(readers::rtclHz(raw, "50"), "50000000") << row.baseHz;
    }
    // The top of the 29 MHz row reaches to the largest signed value.
    // (2147483647 - 2074612736) / 16 = 4554431.94 steps.
    EXPECT_EQ(readers::rtclHz(0x7FFFFFFF, "50"), "33554432");
    // Below the first row the band tells as well.
    EXPECT_EQ(readers::rtclHz(1000, "7"), "7000000");
}

TEST(RtclRig, WithoutARigTheBandGivesTheBase)
{
    const std::pair<const char*, const char*> bands[] = {
        {"1.8", "1800000"},     {"1.9", "1900000"},
        {"3.5", "3500000"},     {"7", "7000000"},
        {"10", "10000000"},     {"14", "14000000"},
        {"18", "18000000"},     {"21", "21000000"},
        {"24", "24000000"},     {"28", "28000000"},
        {"29", "29000000"},     {"50", "50000000"},
        {"144", "144000000"},   {"430", "430000000"},
        {"1200", "1200000000"}, {"2400", "2400000000"},
        {"5600", "5600000000"}, {"14  ", "14000000"},
        {"10G", "0"},           {"", "0"},
    };
    for (const auto& [band, hz] : bands) {
        EXPECT_EQ(readers::rtclHz(0, band), hz) << band;
    }
}

TEST(RtclRig, RoundedKilohertzAndHexadecimalPoints)
{
    EXPECT_EQ(readers::rtclRoundedKhz("14085500"), "14086");
    EXPECT_EQ(readers::rtclRoundedKhz("14085499"), "14085");
    EXPECT_EQ(readers::rtclRoundedKhz("5600000000"), "5600000");
    EXPECT_EQ(readers::rtclRoundedKhz("0"), "0");
    // Three digits and more are hertz with the kHz before the last three; fewer are all
    // decimals of a kHz.
    EXPECT_EQ(readers::rtclRoundedKhz("500"), "1");
    EXPECT_EQ(readers::rtclRoundedKhz("499"), "0");
    EXPECT_EQ(readers::rtclRoundedKhz("1500"), "2");
    EXPECT_EQ(readers::rtclRoundedKhz("50"), "1");
    EXPECT_EQ(readers::rtclRoundedKhz("5"), "1");
    EXPECT_EQ(readers::rtclRoundedKhz("4"), "0");
    EXPECT_EQ(readers::rtclRoundedKhz("999999999999999999"), "1000000000000000");
    EXPECT_EQ(readers::rtclPoints(18), 24);
    EXPECT_EQ(readers::rtclPoints(0), 0);
    EXPECT_EQ(readers::rtclPoints(9), 9);
    EXPECT_EQ(readers::rtclPoints(10), 16);
    EXPECT_EQ(readers::rtclPoints(255), 0x255);
}

TEST_F(RtclBinary, TheDecoderWritesEveryFieldInItsOrder)
{
    RtclBinarySpec q;
    q.when = 45000.5 + (3 * 3600 + 25 * 60 + 7) / 86400.0;
    q.rig = 1790177280 + 85000 * 32; // 14.085 MHz
    q.dupe = 1;
    q.points = 18;
    q.sent1 = "01";
    q.sent2 = "3";
    q.rcvd2 = "X";
    q.multi1 = "25";
    q.multi2 = "JA";
    q.multi3 = "M3";
    q.op = "OP1";
    q.memo = "メモ";
    q.notRead = 0xFF;
    for (const bool v430 : {false, true}) {
        const auto r = decode(oneRecord(q, v430), v430 ? InputKind::LogV430 : InputKind::LogV4);
        ASSERT_EQ(r.size(), 1u);
        const auto& f = r[0];
        EXPECT_EQ(f[tmp::number], "00001");
        EXPECT_EQ(f[tmp::band], "14  ");
        EXPECT_EQ(f[tmp::date], "2023/03/15");
        EXPECT_EQ(f[tmp::time], "152507");
        EXPECT_EQ(f[4], "14  ");
        EXPECT_EQ(f[tmp::hz], "14085000");
        EXPECT_EQ(f[tmp::khz], "14085");
        EXPECT_EQ(f[tmp::mode], "RTTY ");
        EXPECT_EQ(f[8], "ABCDE");
        EXPECT_EQ(f[tmp::call], "JA1ABC       ");
        EXPECT_EQ(f[tmp::sent_rst], "599   ");
        EXPECT_EQ(text::trim(f[tmp::sent1]), "01");
        EXPECT_EQ(text::trim(f[tmp::sent2]), "3");
        EXPECT_EQ(text::trim(f[tmp::rcvd1]), "025");
        EXPECT_EQ(text::trim(f[tmp::rcvd2]), "X");
        EXPECT_EQ(f[tmp::points], "24");
        EXPECT_EQ(text::trim(f[tmp::multi1]), "25");
        EXPECT_EQ(text::trim(f[tmp::multi2]), "JA");
        EXPECT_EQ(text::trim(f[tmp::multi3]), "M3");
        EXPECT_EQ(f[tmp::note], "-DUPE- ");
        EXPECT_EQ(f[tmp::op], "OP1   ");
        EXPECT_EQ(text::trim(f[tmp::memo]), "メモ");
    }
}

TEST_F(RtclBinary, AQtcRecordIsPassedOverByTheDecoderAndAddsNothingToTheConversion)
{
    RtclBinarySpec a, qtc, b;
    qtc.number = "QTC01";
    b.call = "JA2XYZ";
    for (const bool v430 : {false, true}) {
        const std::string bytes = RtclBinaryWriter(v430).record(a).record(qtc).record(b).bytes();
        const auto r = convert(bytes, v430 ? "log_v430" : "log_v4");
        ASSERT_EQ(r.size(), 2u);
        EXPECT_EQ(text::trim(r[1][4]), "JA2XYZ");
        EXPECT_EQ(ctx->run.written_count, 2);
    }
}

TEST_F(RtclBinary, ARecordCountThatDisagreesWithTheLengthIsRoundedAndZeroFilled)
{
    RtclBinaryWriter w(false);
    w.record({}).record({});
    // Two records and 150 bytes round up to three; the third reads zero bytes past the end.
    const auto three = decode(w.bytes(406 + 150), InputKind::LogV4);
    ASSERT_EQ(three.size(), 3u);
    EXPECT_EQ(three[2][tmp::date], "1899/12/30");
    EXPECT_EQ(three[2][tmp::time], "000000");
    // Fifty bytes more round down; half a record rounds to the even count.
    EXPECT_EQ(decode(w.bytes(406 + 50), InputKind::LogV4).size(), 2u);
    EXPECT_EQ(readers::rtclRecordCount(406 + 101, 203), 2);
    EXPECT_EQ(readers::rtclRecordCount(203 + 101, 203), 1);
    EXPECT_EQ(readers::rtclRecordCount(203 + 102, 203), 2);
    EXPECT_EQ(readers::rtclRecordCount(209 * 3, 209), 3);
}

// A long log, behind `lead` plain records, in blocks of five from `from` to `to`: the first of
// a block gives its mode, a QTC record stands third, and the three others have a mode text
// that keeps the mode of the record before.
std::string carryingLog(bool v430, int lead, int from, int to)
{
    RtclBinaryWriter w(v430);
    for (int i = 0; i < lead; ++i) {
        w.record({});
    }
    const char* modes[] = {"CW", "USB", "RTTY", "FM", "PSK31"};
    for (int b = from; b < to; ++b) {
        RtclBinarySpec first;
        first.mode = modes[b % 5];
        first.call = "JA" + std::to_string(1000 + b % 9000);
        first.rig = static_cast<std::uint32_t>(1790177280 + 32 * (b % 1000));
        RtclBinarySpec carrying = first;
        carrying.mode = "XX";
        RtclBinarySpec qtc = first;
        qtc.number = "QTC01";
        w.record(first).record(carrying).record(qtc).record(carrying).record(carrying);
    }
    return w.bytes();
}

// A long log is decoded, and its text made, in two parts side by side, the second part of the
// text taking over the mode that the records just before it leave: wherever the parts meet,
// the lines are those of one pass, and two halves cut at a block give them one after the other.
TEST_F(RtclBinary, ALongLogGivesWhatOnePassGivesWhereverItsPartsMeet)
{
    constexpr int kBlocks = 1800;
    for (const bool v430 : {false, true}) {
        const char* word = v430 ? "log_v430" : "log_v4";
        for (int lead = 0; lead < 4; ++lead) {
            const std::string bytes = carryingLog(v430, lead, 0, kBlocks);
            const auto whole = convert(bytes, word);
            ASSERT_GT(std::filesystem::file_size(work("rtcl_tmp.txt")), 1u << 20);
            const long written = ctx->run.written_count;
            const std::size_t record = RtclBinaryWriter(v430).recordSize();
            auto halves = convert(bytes.substr(0, (lead + 5 * (kBlocks / 2)) * record), word);
            const auto second = convert(carryingLog(v430, 0, kBlocks / 2, kBlocks), word);
            halves.insert(halves.end(), second.begin(), second.end());
            EXPECT_EQ(whole, halves) << word << " " << lead;
            EXPECT_EQ(written, lead + 4 * kBlocks) << word << " " << lead;
            // Each block keeps the mode its first record gave.
            ASSERT_EQ(whole.size(), static_cast<std::size_t>(lead + 4 * kBlocks));
            for (std::size_t i = lead; i < whole.size(); ++i) {
                ASSERT_EQ(whole[i][8], whole[i - (i - lead) % 4][8])
                    << word << " " << lead << " " << i;
            }
        }
    }
}

// Records whose texts try what a record line and Shift-JIS can do to them: texts in double
// bytes, bytes that are no character, a comma and line ends, a zero byte, half-width kana, and
// mode texts that the mode rule does not know.
std::string awkwardLog(bool v430)
{
    RtclBinaryWriter w(v430);
    RtclBinarySpec plain;
    w.record(plain);
    RtclBinarySpec japanese;
    japanese.memo = "メモ　です";
    japanese.op = "ＪＡ";
    japanese.mode = "PSK31";
    w.record(japanese);
    RtclBinarySpec lines;
    lines.memo = "A,B\r\nC\rD\n";
    lines.multi1 = "ｱｲ";
    lines.mode = "XX";
    w.record(lines);
    std::string bytes = w.bytes();
    const std::size_t size = w.recordSize();
    const std::size_t memo = v430 ? 174 : 168;
    // A lead byte that ends the call sign, bytes that begin no character, a zero byte, and,
    // where the sent number is cut to its column, a byte that is no character before one that
    // is written back in other bytes, which the lead byte then takes as its second.
    std::string record = bytes.substr(0, size);
    record[37 + 12] = '\x81';
    record.replace(memo, 4, "\x80\xA0\xFD\xFF");
    record[22] = '\0';
    record.replace(56, 10, "1234567\x81\xEE\xE1");
    return bytes + record;
}

// The decoder makes the `.ALL` text in the same pass as its working text; it is the text that
// the maker makes of that working text, whatever the records hold, and a quote, which the
// working text cannot hold, leaves the text to the maker.
TEST_F(RtclBinary, TheAllTextMadeWithTheDecoderIsTheMakersTextOfItsWorkingText)
{
    context(options);
    for (const bool v430 : {false, true}) {
        const InputKind kind = v430 ? InputKind::LogV430 : InputKind::LogV4;
        const std::string bytes = awkwardLog(v430);
        const auto fused = dir / "fused.all";
        ASSERT_TRUE(readers::decodeRtclLogWithAll(bytes, kind, work("rtcl_tmp.txt"), fused));
        ctx->run.in_name = (dir / "M.log").string();
        readers::ReaderContext rc = *ctx;
        readers::make_rtcl_log_to_zlog_all(rc);
        const std::string made = test::readBytes(dir / "M_log2a.all");
        EXPECT_EQ(test::readBytes(fused), made) << v430;
        EXPECT_NE(made.find(text::encodeSjis("メモ　です")), std::string::npos);
        EXPECT_EQ(test::readBytes(work("zlog_01.txt")), made);

        RtclBinarySpec quoted;
        quoted.call = "JA1\"ABC";
        const std::string withQuote =
            bytes + RtclBinaryWriter(v430).record(quoted).record({}).bytes();
        EXPECT_FALSE(readers::decodeRtclLogWithAll(withQuote, kind, work("rtcl_tmp.txt"), fused));
        EXPECT_EQ(test::readBytes(fused), made) << "left as it was";
        EXPECT_FALSE(std::filesystem::exists(dir / "fused.all.writing"));
    }
}

TEST_F(RtclBinary, ATimeStampThatIsNoDateFails)
{
    RtclBinarySpec q;
    q.when = 1e300;
    try {
        decode(oneRecord(q), InputKind::LogV4);
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::Overflow);
    }
}

TEST_F(RtclBinary, TheConversionReadsItsAllTextAndLeavesItBesideTheLog)
{
    options.set("Check17", "1");
    RtclBinarySpec a;
    a.rig = 1521741824 + 25000 * 64; // 7.025 MHz
    a.band = "7";
    a.mode = "CW";
    RtclBinarySpec b;
    b.call = "ZZ9ZZZ";
    b.mode = "USB";
    b.band = "21";
    b.dupe = 1;
    const auto r = convert(RtclBinaryWriter(false).record(a).record(b).bytes(), "log_v4");
    ASSERT_EQ(r.size(), 2u);
    const std::vector<std::string> first{"2023", "03", "15", "1200", "JA1ABC       ", "599", "599",
                                         "7",    "CW", "",   "",     "7.025",         "025"};
    EXPECT_EQ(r[0], first);
    EXPECT_EQ(r[1][8], "SSB");
    EXPECT_EQ(r[1][11], "21.000");
    // The operator's path is back, and the working text is gone.
    EXPECT_EQ(ctx->run.in_name, (dir / "TEST.log").string());
    EXPECT_FALSE(std::filesystem::exists(work("zlog_01.txt")));
    EXPECT_TRUE(std::filesystem::exists(work("rtcl_tmp.txt")));

    const auto beside = test::readSjisLines(dir / "TEST_log2a.all");
    ASSERT_EQ(beside.size(), 3u);
    EXPECT_EQ(beside[0], "zLog for Windows   (rtcl.log to zlog.all)    by Vornhale 5.44");
    EXPECT_EQ(beside[1], "2023/03/15 12:00 JA1ABC       599 013     599 025     -     -     "
                         "7    CW   1   (7025)");
    EXPECT_EQ(beside[2], "2023/03/15 12:00 ZZ9ZZZ       599 013     599 025     -     -     "
                         "21   SSB  0   -DUPE- (21000)");
}

TEST_F(RtclBinary, ALogNamedInCapitalsKeepsItsOwnFileAndOneWithoutLogStopsBeforeWriting)
{
    const std::string bytes = oneRecord({});
    convert(bytes, "log_v4", "X.LOG");
    EXPECT_TRUE(std::filesystem::exists(dir / "X_log2a.all"));
    EXPECT_EQ(test::readBytes(dir / "X.LOG"), bytes);
    EXPECT_EQ(ctx->run.names.out_name_ham_n, (dir / "X_hn.csv").string());

    std::filesystem::remove(work("rtcl_tmp.txt"));
    std::filesystem::remove(work(base::working::zlog_1));
    const auto path = file(bytes, "contest.bin");
    ASSERT_EQ(open(path, "log_v4"), readers::OpenResult::Opened);
    readers::ReaderContext rc = *ctx;
    try {
        readers::makeReader(InputKind::LogV4)->read(rc);
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::InvalidCall);
        EXPECT_NE(std::string(f.what()).find(path.string()), std::string::npos);
    }
    EXPECT_FALSE(std::filesystem::exists(work("rtcl_tmp.txt")));
    EXPECT_FALSE(std::filesystem::exists(work(base::working::zlog_1)));
    EXPECT_EQ(test::readBytes(path), bytes);
}

TEST(RtclAllLine, TheModeRuleAndItsColumns)
{
    const auto line = [](const std::string& mode, std::string& previous) {
        std::vector<std::string> r(tmp::kFields);
        r[tmp::date] = "2023/03/15";
        r[tmp::time] = "120000";
        r[tmp::mode] = mode;
        r[tmp::points] = "9";
        return readers::rtclAllLine(r, previous).substr(71);
    };
    std::string m;
    EXPECT_EQ(line("RTTY ", m), "RTTY 9   ");
    EXPECT_EQ(line("PSK3 ", m), "PSK31 9   ");
    EXPECT_EQ(line("PSK63", m), "PSK63 9   ");
    EXPECT_EQ(line("LSB  ", m), "SSB  9   ");
    EXPECT_EQ(line("CW   ", m), "CW   9   ");
    EXPECT_EQ(line("FM   ", m), "FM   9   ");
    // A mode outside the rule keeps the one before.
    EXPECT_EQ(line("AM   ", m), "FM   9   ");
    EXPECT_EQ(m, "FM  ");
}

TEST(RtclAllLine, MultipliersOperatorDupeFrequencyAndMemoInTheirPlaces)
{
    std::vector<std::string> r(tmp::kFields);
    r[tmp::date] = "2023/03/15";
    r[tmp::time] = "092512";
    r[tmp::call] = "ZZ9ZZZ/MM/QRP";
    r[tmp::sent_rst] = "599   ";
    r[tmp::sent1] = "0123";
    r[tmp::sent2] = "45678";
    r[tmp::rcvd_rst] = "59";
    r[tmp::rcvd1] = "25 ";
    r[tmp::rcvd2] = "ABCDEF";
    r[tmp::multi1] = "25    ";
    r[tmp::multi2] = "JA1234";
    r[tmp::band] = "14  ";
    r[tmp::mode] = "CW";
    r[tmp::points] = "3";
    r[tmp::note] = "-DUPE- ";
    r[tmp::khz] = "14085";
    r[tmp::op] = "OP1   ";
    r[tmp::memo] = " tnx ";
    std::string mode;
    EXPECT_EQ(readers::rtclAllLine(r, mode), "2023/03/15 09:25 ZZ9ZZZ/MM/QRP599 01234567"
                                             "59  25ABCDE 25    JA123 14   CW   "
                                             "0   %%OP1%% -DUPE- (14085) tnx");
}
