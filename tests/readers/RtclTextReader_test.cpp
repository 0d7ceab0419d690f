#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/InputSelection.h"
#include "readers/OutputNames.h"
#include "readers/RtclTextReader.h"
#include "readers/RtclWriter.h"
#include "support/RunFixture.h"

#include <gtest/gtest.h>

using namespace vornhale;
using readers::InputKind;
using test::RtclNewSpec;
using test::RtclOldSpec;

namespace {

struct RtclText : ::testing::Test, test::RunFixture
{
    settings::Options options = settings::Options::defaults();

    std::filesystem::path log(const std::vector<std::string>& lines, const char* name = "TEST.log")
    {
        const auto path = dir / name;
        test::writeSjisLines(path, lines);
        return path;
    }

    engine::RunContext& make(const std::filesystem::path& path, InputKind kind)
    {
        engine::RunContext& c = context(options);
        c.run.in_name = path.string();
        c.run.chosen_name = path.string();
        c.run.setKind(kind);
        return c;
    }

    std::vector<std::vector<std::string>> convert(const std::vector<std::string>& lines,
                                                  InputKind kind, const char* opName = "")
    {
        engine::RunContext& c = make(log(lines), kind);
        c.run.op_filter_name = opName;
        readers::ReaderContext rc = c;
        if (kind == InputKind::LogOld) {
            readers::henkan_log_2_t_old(rc);
        } else {
            readers::henkan_log_2_t_new(rc);
        }
        return records(work(base::working::zlog_1), 13);
    }
};

std::vector<std::string> oldLines(std::initializer_list<RtclOldSpec> given)
{
    std::vector<std::string> out;
    for (const auto& s : given) {
        out.push_back(s.line());
    }
    return out;
}

std::vector<std::string> newLines(std::initializer_list<RtclNewSpec> given)
{
    std::vector<std::string> out;
    for (const auto& s : given) {
        out.push_back(s.line());
    }
    return out;
}

} // namespace

TEST_F(RtclText, TheOldFormGivesTheCommonLineFieldByField)
{
    RtclOldSpec q;
    q.call = "ZZ9ZZZ/1";
    q.sent = "599-013";
    q.rcvd = "579-25";
    q.band = "21";
    const auto r = convert(oldLines({q}), InputKind::LogOld);
    ASSERT_EQ(r.size(), 1u);
    const std::vector<std::string> expected{"2023", "03",  "15", "1234", "ZZ9ZZZ/1", "599",  "579",
                                            "21",   "RTY", "",   "",     "",         "57925"};
    EXPECT_EQ(r[0], expected);
    EXPECT_EQ(ctx->run.written_count, 1);
}

TEST_F(RtclText, TheReceivedExchangeLosesEvery599AndEveryDash)
{
    RtclOldSpec q;
    q.rcvd = "599-599-0599";
    q.sent = "5-9";
    const auto r = convert(oldLines({q}), InputKind::LogOld);
    ASSERT_EQ(r.size(), 1u);
    EXPECT_EQ(r[0][12], "0");  // 599 three times away, then the dashes
    EXPECT_EQ(r[0][6], "599"); // the received report is the field's first 3 characters
    EXPECT_EQ(r[0][5], "59");  // the sent report: 3 characters, then without "-"
}

TEST_F(RtclText, TheNewFormCutsDateAndTimeFromOneFieldAndPadsTheCall)
{
    RtclNewSpec q;
    q.when = "2024-11-02 09:05";
    q.call = "JA1ABC";
    q.mode = "CW";
    const auto r = convert(newLines({q}), InputKind::LogNew);
    ASSERT_EQ(r.size(), 1u);
    const std::vector<std::string> expected{
        "2024", "11", "02", "0905", "JA1ABC      ", "599", "599", "14", "CW", "", "", "", "025"};
    EXPECT_EQ(r[0], expected);
}

TEST_F(RtclText, TheNewFormCutsALongCallToTwelve)
{
    RtclNewSpec q;
    q.call = "ZZ9ZZZ/MM/QRP";
    const auto r = convert(newLines({q}), InputKind::LogNew);
    EXPECT_EQ(r.at(0)[4], "ZZ9ZZZ/MM/QR");
}

TEST_F(RtclText, TheNewFormsRttyBecomesRtyAndOtherModesStand)
{
    RtclNewSpec a, b, c;
    a.mode = "RTTY";
    b.mode = "PSK31";
    c.mode = "rtty";
    const auto r = convert(newLines({a, b, c}), InputKind::LogNew);
    ASSERT_EQ(r.size(), 3u);
    EXPECT_EQ(r[0][8], "RTY");
    EXPECT_EQ(r[1][8], "PSK31");
    EXPECT_EQ(r[2][8], "rtty");
}

TEST_F(RtclText, AQtcRecordAddsNothingInEitherTextGeneration)
{
    RtclOldSpec o1, qtc, o2;
    qtc.kind = "QTC";
    o2.call = "JA2XYZ";
    const auto r = convert(oldLines({o1, qtc, o2}), InputKind::LogOld);
    ASSERT_EQ(r.size(), 2u);
    EXPECT_EQ(r[1][4], "JA2XYZ");
    EXPECT_EQ(ctx->run.written_count, 2);

    RtclNewSpec n1, nqtc;
    nqtc.kind = "QTC";
    const auto rn = convert(newLines({nqtc, n1}), InputKind::LogNew);
    EXPECT_EQ(rn.size(), 1u);
}

TEST_F(RtclText, TheOldFormTakesTheFrequencyOfAFrqNoteOnlyWithCheck17)
{
    RtclOldSpec a, b, c;
    a.note = "[FRQ 14085] tnx";
    b.note = "[FRQ 07025]";
    c.note = "no rig";
    EXPECT_EQ(convert(oldLines({a, b, c}), InputKind::LogOld).at(0)[11], "");

    options.set("Check17", "1");
    const auto r = convert(oldLines({a, b, c}), InputKind::LogOld);
    ASSERT_EQ(r.size(), 3u);
    EXPECT_EQ(r[0][11], "14.085");
    EXPECT_EQ(r[1][11], " 7.025"); // the leading blank stays
    EXPECT_EQ(r[2][11], "");
    EXPECT_EQ(r[0][10], ""); // the note is no memo
}

TEST_F(RtclText, TheNewFormTakesTheFrequencyOfField13WithALeadingBlank)
{
    options.set("Check17", "1");
    RtclNewSpec a, b, c;
    a.freq = "14085";
    b.freq = "07025";
    c.freq = "";
    const auto r = convert(newLines({a, b, c}), InputKind::LogNew);
    ASSERT_EQ(r.size(), 3u);
    EXPECT_EQ(r[0][11], " 14.085");
    EXPECT_EQ(r[1][11], " 7.025");
    EXPECT_EQ(r[2][11], "");
}

TEST_F(RtclText, WithCheck02AndANameTheTextGenerationsYieldNoLinesAtAll)
{
    options.set("Check02", "1");
    EXPECT_TRUE(
        convert(oldLines({RtclOldSpec{}, RtclOldSpec{}}), InputKind::LogOld, "JA1ZZZ").empty());
    EXPECT_EQ(ctx->run.written_count, 0);
    EXPECT_TRUE(convert(newLines({RtclNewSpec{}}), InputKind::LogNew, "JA1ZZZ").empty());
    // Without a name nothing is dropped.
    EXPECT_EQ(convert(oldLines({RtclOldSpec{}, RtclOldSpec{}}), InputKind::LogOld).size(), 2u);
}

TEST_F(RtclText, ARecordShortOfFieldsTakesTheNextLinesFirstFields)
{
    // Eleven fields on the first line: the twelfth is the next line's first.
    const std::vector<std::string> lines{
        R"("1","2023-03-15","12:34","JA1ABC","599-013","599-025","14","1","","","")",
        RtclOldSpec{}.line(),
    };
    EXPECT_THROW(convert(lines, InputKind::LogOld), failure::Failure);
    try {
        convert(lines, InputKind::LogOld);
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::InputPastEnd);
    }
}

// Lines of a long new-form log from record `from` to `to`, behind `lead` plain records: a QTC
// record every seventh, and every `twoLines`th record written over two lines.
std::vector<std::string> longNewLog(int from, int to, bool japanese, int twoLines, int lead = 0)
{
    std::vector<std::string> lines(static_cast<std::size_t>(lead), RtclNewSpec{}.line());
    for (int i = from; i < to; ++i) {
        RtclNewSpec q;
        q.call = (japanese && i % 5 == 0 ? "ＪＡ" : "JA") + std::to_string(i);
        q.kind = i % 7 == 0 ? "QTC" : "1";
        q.freq = std::to_string(14000 + i % 300);
        const std::string line = q.line();
        if (i % twoLines == 0) {
            const std::size_t cut = line.find(",\"14\",");
            lines.push_back(line.substr(0, cut));
            lines.push_back(line.substr(cut + 1));
        } else {
            lines.push_back(line);
        }
    }
    return lines;
}

// A long log is read in two parts side by side, however its records lie on its lines (the parts
// join, or the first goes on alone where the second began inside a record): it gives what its
// two halves give one after the other, with the progress of one pass.
TEST_F(RtclText, ALongLogGivesWhatItsHalvesGive)
{
    options.set("Check17", "1");
    constexpr int kRecords = 14000;
    for (const bool japanese : {false, true}) {
        for (const int twoLines : {97, 1}) {
            for (int lead = 0; lead < 3; ++lead) {
                SCOPED_TRACE(std::to_string(japanese) + " " + std::to_string(twoLines) + " " +
                             std::to_string(lead));
                const auto lines = longNewLog(0, kRecords, japanese, twoLines, lead);
                observer.progressValues.clear();
                const auto whole = convert(lines, InputKind::LogNew);
                ASSERT_GT(std::filesystem::file_size(dir / "TEST.log"), 1u << 20);
                const long written = ctx->run.written_count;
                const std::vector<long> progress = observer.progressValues;
                auto halves = convert(longNewLog(0, kRecords / 2, japanese, twoLines, lead),
                                      InputKind::LogNew);
                const auto second = convert(longNewLog(kRecords / 2, kRecords, japanese, twoLines),
                                            InputKind::LogNew);
                halves.insert(halves.end(), second.begin(), second.end());
                EXPECT_EQ(whole, halves);
                EXPECT_EQ(written, lead + kRecords - (kRecords + 6) / 7);
                std::vector<long> expected;
                for (long i = 1; i <= lead + kRecords; ++i) {
                    expected.push_back(i);
                }
                expected.push_back(0);
                EXPECT_EQ(progress, expected);
            }
        }
    }
}

TEST_F(RtclText, OpeningTheOldFormThroughTheNewMenuShowsTheOldVersionBox)
{
    const auto path = log(oldLines({RtclOldSpec{}}));
    engine::RunContext& c = context(options);
    readers::ReaderContext rc = c;
    EXPECT_EQ(readers::openInput(rc, path, "log_new"), readers::OpenResult::Rejected);
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].title, "　　ＲＴＣＬのバージョン違いの　＊．ｌｏｇ　です！");
    EXPECT_EQ(dialogs.shown[0].text, "[　" + path.string() +
                                         " ] は\n\n旧　バージョンのｌｏｇ形式ファイルです。\n\n"
                                         "ファイルを選択し直して下さい。");
    EXPECT_EQ(dialogs.shown[0].icon, base::Dialogs::Icon::Stop);
    // The path stays, but nothing is opened.
    EXPECT_EQ(c.run.in_name, path.string());
    EXPECT_EQ(c.run.kind, InputKind::None);
    EXPECT_EQ(c.run.names.out_name_ham_n, "");
}

TEST_F(RtclText, OpeningTheNewFormThroughTheOldMenuShowsTheNewVersionBox)
{
    const auto path = log(newLines({RtclNewSpec{}}));
    engine::RunContext& c = context(options);
    readers::ReaderContext rc = c;
    EXPECT_EQ(readers::openInput(rc, path, "log_old"), readers::OpenResult::Rejected);
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_NE(dialogs.shown[0].text.find("新　バージョンのｌｏｇ形式ファイルです。"),
              std::string::npos);
}

TEST_F(RtclText, AFirstLineOfAnotherFieldCountSaysNothing)
{
    // One record of the new form over two lines: seven fields, then six.
    const auto path = log({R"("1","2023-03-15 12:34","JA1ABC","599-013","599-025","14","1")",
                           R"("","","","","RTTY","14085")"});
    engine::RunContext& c = context(options);
    readers::ReaderContext rc = c;
    EXPECT_EQ(readers::openInput(rc, path, "log_new"), readers::OpenResult::Opened);
    EXPECT_TRUE(dialogs.shown.empty());
    EXPECT_EQ(c.run.kind, InputKind::LogNew);
    EXPECT_EQ(c.run.exchange.qso_lines, 1);
}

TEST_F(RtclText, EachMenuOpensItsOwnGenerationAsLog)
{
    for (const auto& [word, lines, kind] :
         {std::tuple{"log_old", oldLines({RtclOldSpec{}, RtclOldSpec{}}), InputKind::LogOld},
          std::tuple{"LOG_NEW", newLines({RtclNewSpec{}, RtclNewSpec{}}), InputKind::LogNew}}) {
        const auto path = log(lines);
        engine::RunContext& c = context(options);
        readers::ReaderContext rc = c;
        ASSERT_EQ(readers::openInput(rc, path, word), readers::OpenResult::Opened) << word;
        EXPECT_EQ(c.run.kind, kind);
        EXPECT_EQ(c.run.f_type, "log");
        EXPECT_EQ(c.run.Label37, "   2　件"); // two records, no title line
        EXPECT_EQ(c.run.exchange.qso_lines, 2);
        EXPECT_EQ(c.run.names.out_name_ham_n, (dir / "TEST_hn.csv").string());
    }
    EXPECT_EQ(readers::rtcl_gen(InputKind::LogOld), "old");
    EXPECT_EQ(readers::rtcl_gen(InputKind::LogNew), "new");
    EXPECT_EQ(readers::rtcl_gen(InputKind::LogV4), "new");
    EXPECT_EQ(readers::rtcl_gen(InputKind::LogV430), "new430");
}

TEST_F(RtclText, ANameAloneDoesNotOpenALogAsRtcl)
{
    EXPECT_EQ(readers::rowOfFileName("CONTEST.LOG"), nullptr);
    EXPECT_GE(readers::rowsListingExtension("contest.log").size(), 4u);
}

TEST(RtclOutputNames, ALogNamedInCapitalsGetsResultNamesThatAreNotItsOwn)
{
    const readers::OutputNames n = readers::OutputNames::of("/data/CQ/X.LOG");
    EXPECT_EQ(n.out_name_ham_n, "/data/CQ/X_hn.csv");
    EXPECT_EQ(n.out_name_con_n, "/data/CQ/X_cn.csv");
    EXPECT_EQ(n.out_name_ham0, "/data/CQ/X_h0.csv");
    EXPECT_EQ(n.dup_name, "/data/CQ/X.dup");
}
