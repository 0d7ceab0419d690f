#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/RtclV4Form.h"
#include "readers/RtclWriter.h"
#include "readers/RtclZlogMakers.h"
#include "readers/ZlogTextReader.h"
#include "support/RunFixture.h"

#include <gtest/gtest.h>

using namespace vornhale;
using test::RtclBinarySpec;
using test::RtclBinaryWriter;
using test::RtclNewSpec;
using test::RtclOldSpec;

namespace {

namespace fs = std::filesystem;

constexpr const char* kHeader = "zLog for Windows   (rtcl.log to zlog.all)    by Vornhale 5.44";
constexpr const char* kTitle =
    "mon day time  callsign      sent         rcvd      multi   MHz mode pts memo";

struct RtclMaker : ::testing::Test, test::RunFixture
{
    settings::Options options = settings::Options::defaults();

    std::string make(const std::vector<std::string>& lines,
                     std::string (*maker)(const readers::ReaderContext&),
                     const char* name = "TEST.log")
    {
        const auto path = dir / name;
        test::writeSjisLines(path, lines);
        engine::RunContext& c = context(options);
        c.run.in_name = path.string();
        readers::ReaderContext rc = c;
        return maker(rc);
    }
};

std::vector<std::string> linesOf(std::initializer_list<RtclOldSpec> given)
{
    std::vector<std::string> out;
    for (const auto& s : given) {
        out.push_back(s.line());
    }
    return out;
}

std::vector<std::string> linesOf(std::initializer_list<RtclNewSpec> given)
{
    std::vector<std::string> out;
    for (const auto& s : given) {
        out.push_back(s.line());
    }
    return out;
}

} // namespace

TEST_F(RtclMaker, TheOldAllTextHasTheReportsNumbersDateModeAndFrequency)
{
    RtclOldSpec a, b, c;
    a.note = "[FRQ 14085] tnx";
    b.note = "[FRQ 07025]";
    b.call = "ZZ9ZZZ/MM/QRP/X";
    b.sent = "599-1234567890";
    b.rcvd = "579-AB-12";
    c.band = "7";
    c.points = "10";
    const std::string path = make(linesOf({a, b, c}), readers::mnu_rtcl_log2all);
    EXPECT_EQ(path, (dir / "TEST_l2z.all").string());
    const auto lines = test::readSjisLines(path);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], kHeader);
    EXPECT_EQ(lines[1], "2023/03/15 12:34 JA1ABC       599 013     599 025                 "
                        "14   RTY  1  (14085)");
    EXPECT_EQ(lines[2], "2023/03/15 12:34 ZZ9ZZZ/MM/QRP599 12345678599 579AB12             "
                        "14   RTY  1  (7025)");
    EXPECT_EQ(lines[3], "2023/03/15 12:34 JA1ABC       599 013     599 025                 "
                        "7    RTY  10 ");
}

TEST_F(RtclMaker, TheOldTxtTextHasTheColumnsThatTheTxtReaderTakes)
{
    RtclOldSpec a;
    a.note = "[FRQ 14085]";
    const std::string path = make(linesOf({a}), readers::mnu_rtcl_log2txt);
    EXPECT_EQ(path, (dir / "TEST_l2z.txt").string());
    const auto lines = test::readSjisLines(path);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], kTitle);
    EXPECT_EQ(lines[1], "03  15 1234 JA1ABC     599 013      599 025              14    RTY 1    "
                        "(14085)");

    // The zLog .TXT reader reads it back.
    options.set("Check17", "1");
    options.set("txtYYYY", "2023");
    engine::RunContext& c = context(options);
    c.run.in_name = path;
    c.run.use.memo = true;
    readers::ReaderContext rc = c;
    readers::t_2_t(rc);
    const auto r = records(work(base::working::zlog_1), 13);
    ASSERT_EQ(r.size(), 1u);
    const std::vector<std::string> expected{"2023", "03",     "15",  "1234", "JA1ABC     ",
                                            "599",  "599",    "14 ", "RTY",  "",
                                            "",     "14.085", "025"};
    EXPECT_EQ(r[0], expected);
}

TEST_F(RtclMaker, TheNewMakersTakeTheModeAndTheFrequencyOfField13)
{
    RtclNewSpec a, b, c;
    a.freq = "07025";
    b.mode = "PSK31";
    b.freq = "";
    c.mode = "CW";
    c.when = "2024-01-02 23:59";
    const std::string path = make(linesOf({a, b, c}), readers::mnu_rtcl_log2all_new);
    const auto lines = test::readSjisLines(path);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], kHeader);
    const std::string head =
        "2023/03/15 12:34 JA1ABC       599 013     599 025                 14   ";
    EXPECT_EQ(lines[1], head + "RTY  1  (7025)");
    EXPECT_EQ(lines[2], head + "PSK31 1  ");
    EXPECT_EQ(lines[3], "2024/01/02 23:59 JA1ABC       599 013     599 025                 "
                        "14   CW   1  (14085)");

    const auto txt = test::readSjisLines(make(linesOf({a}), readers::mnu_rtcl_log2txt_new));
    ASSERT_EQ(txt.size(), 2u);
    EXPECT_EQ(txt[1], "03  15 1234 JA1ABC     599 013      599 025              14    RTY 1    "
                      "(7025)");
}

TEST_F(RtclMaker, AQtcRecordIsNoContactInTheZlogTexts)
{
    RtclOldSpec a, qtc;
    qtc.kind = "QTC";
    EXPECT_EQ(test::readSjisLines(make(linesOf({qtc, a, qtc}), readers::mnu_rtcl_log2all)).size(),
              2u);
    RtclNewSpec n, nqtc;
    nqtc.kind = "QTC";
    EXPECT_EQ(test::readSjisLines(make(linesOf({n, nqtc}), readers::mnu_rtcl_log2txt_new)).size(),
              2u);
}

TEST_F(RtclMaker, ALogNamedInCapitalsGetsItsTextBesideItAndASecondRunReplacesIt)
{
    const auto lines = linesOf({RtclOldSpec{}});
    const std::string first = make(lines, readers::mnu_rtcl_log2all, "X.LOG");
    EXPECT_EQ(first, (dir / "X_l2z.all").string());
    make(lines, readers::mnu_rtcl_log2all, "X.LOG");
    EXPECT_EQ(test::readSjisLines(first).size(), 2u);
    EXPECT_EQ(test::readSjisLines(dir / "X.LOG"), lines);
}

TEST_F(RtclMaker, ALogWhoseNameHoldsNoLogIsRefusedBeforeAnythingIsWritten)
{
    try {
        make(linesOf({RtclOldSpec{}}), readers::mnu_rtcl_log2txt, "contest.txt");
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::InvalidCall);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 2);
}

TEST(RtclOutputName, ReplacesEveryLogAndComparesWithoutCaseOnlyWhenItMust)
{
    EXPECT_EQ(readers::rtclOutputName("/d/x.log", "_l2z.txt"), "/d/x_l2z.txt");
    EXPECT_EQ(readers::rtclOutputName("/d/X.LOG", "_log2a.all"), "/d/X_log2a.all");
    EXPECT_EQ(readers::rtclOutputName("/d/X.Log", "_log2z.all"), "/d/X_log2z.all");
    EXPECT_EQ(readers::rtclOutputName("/d.log/a.log", "_l2z.all"), "/d_l2z.all/a_l2z.all");
    EXPECT_THROW(readers::rtclOutputName("/d/x.bin", "_l2z.all"), failure::Failure);
}

struct RtclV4 : ::testing::Test
{
    test::TempDir dir;
    base::Trace trace;

    fs::path file(const std::string& bytes, const char* name = "TEST.log")
    {
        test::writeBytes(dir / name, bytes);
        return dir / name;
    }
};

TEST_F(RtclV4, EachVersionMenuRefusesTheOtherGenerationInItsOwnLabel)
{
    readers::RtclV4Form form;
    const auto v430 = file(RtclBinaryWriter(true).record({}).bytes(), "V430.log");
    const auto v4 = file(RtclBinaryWriter(false).record({}).bytes(), "V4.log");
    EXPECT_FALSE(form.mnuVer_430mae(v430));
    EXPECT_EQ(form.lblIn_name(), "RTCL ver 4.30 より前のｌｏｇファイルではありません");
    EXPECT_EQ(form.f_type(), "log_430mae");
    EXPECT_EQ(form.in_name(), "");
    EXPECT_THROW(form.cmdMake_all(trace), failure::Failure);

    EXPECT_FALSE(form.mnuVer_430ato(v4));
    EXPECT_EQ(form.lblIn_name(), "RTCL ver 4.30 以降のｌｏｇファイルではありません");
    EXPECT_EQ(form.f_type(), "log_430ato");

    EXPECT_TRUE(form.mnuVer_430ato(v430));
    EXPECT_EQ(form.lblIn_name(), v430.string());
    EXPECT_TRUE(form.mnuVer_430mae(v4));
    EXPECT_EQ(form.f_type(), "log_430mae");
}

TEST_F(RtclV4, TheMakersWriteTheAllAndTxtTextsThroughAWorkingFileThatGoes)
{
    RtclBinarySpec a, qtc, b;
    a.op = "OP1";
    a.memo = "tnx";
    a.multi1 = "25";
    qtc.number = "QTC02";
    b.dupe = 1;
    b.mode = "PSK31";
    b.rig = 1946612736 + 80000 * 16; // 21.080 MHz
    for (const bool v430 : {false, true}) {
        const auto log = file(RtclBinaryWriter(v430).record(a).record(qtc).record(b).bytes());
        readers::RtclV4Form form;
        ASSERT_TRUE(v430 ? form.mnuVer_430ato(log) : form.mnuVer_430mae(log));

        const std::string all = form.cmdMake_all(trace);
        EXPECT_EQ(all, (dir / "TEST_log2z.all").string());
        const auto allLines = test::readSjisLines(all);
        ASSERT_EQ(allLines.size(), 3u);
        EXPECT_EQ(allLines[0], kHeader);
        EXPECT_EQ(allLines[1], "2023/03/15 12:00 JA1ABC       599 013     599 025     25    -     "
                               "14   RTTY 1   %%OP1%% (14000) tnx");
        EXPECT_EQ(allLines[2], "2023/03/15 12:00 JA1ABC       599 013     599 025     -     -     "
                               "14   PSK31 0   -DUPE- (21080)");

        const std::string txt = form.cmdMake_txt(trace);
        EXPECT_EQ(txt, (dir / "TEST_log2z.txt").string());
        const auto txtLines = test::readSjisLines(txt);
        ASSERT_EQ(txtLines.size(), 3u);
        EXPECT_EQ(txtLines[0], kTitle);
        EXPECT_EQ(txtLines[1], "03  15 1200 JA1ABC     599 013      599 025      25      14    "
                               "RTT 1    %%OP1%% (14000) tnx");
        EXPECT_EQ(txtLines[2], "03  15 1200 JA1ABC     599 013      599 025              14    "
                               "PSK 0    -DUPE- (21080)");
        EXPECT_FALSE(fs::exists(dir / "tmp_log.csv"));
    }
}
