// Whole conversions of the three binary inputs that come last: CTESTWIN .lg8 logs and zLog's
// extended .ZLOX logs through the command line, on the real logs in ../shared/realdata, and an
// N1MM Logger table export through the driver (no public N1MM database exists, so the export
// is written here as the database engine writes it). Every file the runs leave is compared
// with the reviewed copies in tests/data/golden, byte for byte; VORNHALE_UPDATE_GOLDEN=1
// rewrites them for review. The failure paths of the database open are pinned by the numbers
// in the trace.

#include "base/WorkingFiles.h"
#include "engine/Driver.h"
#include "readers/InputSelection.h"
#include "readers/OutputNames.h"
#include "session/Session.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"
#include "text/Chars.h"

#include <cctype>
#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s)
{
    return "'" + s + "'";
}

struct Case
{
    const char* name; ///< folder under tests/data/golden
    const char* log;  ///< under ../shared/realdata
    const char* args;
    const char* converted = nullptr; ///< a further file beside the log to compare
};

const Case kCases[] = {
    {"realdata_allja1_lg8", "ctestwin/allja1.lg8", "--set Rmks1_cfg=OP,Rcvd",
     "CONTEST_ctestwin2zlog.all"},
    {"realdata_allja1_lg8_to_japan_time", "ctestwin/allja1.lg8", "--set Option05=1"},
    {"realdata_allja1_zlox", "zlog/allja1_qxsl_fixture.ZLOX", "--set Rmks1_cfg=OP,Rcvd"},
    {"realdata_allja2023_zlox", "zlog/samples_zlog_repo/Release_ALLJA2023.ZLOX", ""},
    {"realdata_allja8_zlox_frequency", "zlog/samples_zlog_repo/Debug_ALLJA8_2022.ZLOx",
     "--set Check17=1 --set Rmks1_cfg=memo,Rcvd"},
    {"realdata_moptest_zlox_operators", "zlog/samples_zlog_repo/Debug_moptest.ZLOX",
     "--set Rmks1_cfg=OP,Rcvd"},
};

void PrintTo(const Case& c, std::ostream* os)
{
    *os << c.name;
}

void compareWithGolden(const char* name, const fs::path& dir, const fs::path& home,
                       const char* converted)
{
    const fs::path golden = test::testData("golden") / name;
    std::vector<std::pair<std::string, fs::path>> files = {
        {"CONTEST_hn.csv", dir / "CONTEST_hn.csv"},
        {"CONTEST_cn.csv", dir / "CONTEST_cn.csv"},
        {"zlog_1.txt", home / "Work" / "zlog_1.txt"},
        {"zlog_2.txt", home / "Work" / "zlog_2.txt"}};
    if (converted != nullptr) {
        files.emplace_back(converted, dir / converted);
    }
    for (const auto& [file, actual] : files) {
        ASSERT_TRUE(fs::exists(actual)) << actual;
        EXPECT_EQ(test::compareGolden(golden / file, test::readBytes(actual)), "") << name;
    }
}

std::vector<std::string> traceLines(const fs::path& home)
{
    std::vector<std::string> lines;
    for (const auto& e : fs::directory_iterator(home / "Error_Log")) {
        const auto more = test::readSjisLines(e.path());
        lines.insert(lines.end(), more.begin(), more.end());
    }
    return lines;
}

bool traceHas(const fs::path& home, const std::string& text)
{
    for (const std::string& line : traceLines(home)) {
        if (text::contains(line, text)) {
            return true;
        }
    }
    return false;
}

} // namespace

class ConvertMdbLg8ZloxGolden : public ::testing::TestWithParam<Case>
{
};

TEST_P(ConvertMdbLg8ZloxGolden, EveryFileMatchesItsReviewedCopy)
{
    const Case& c = GetParam();
    const auto source = test::realData(c.log);
    if (!source) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    test::TempDir dir;
    // The same name for every case, so that the paths in the files do not differ.
    const fs::path log = dir / ("CONTEST" + source->extension().string());
    fs::copy_file(*source, log);
    std::string output;
    const int status = test::runCommand(quote(test::cliPath()) + " convert --keep-work --home " +
                                            quote((dir / "home").string()) + " " + c.args + " " +
                                            quote(log.string()),
                                        &output);
    ASSERT_EQ(status, 0) << output;
    compareWithGolden(c.name, dir.path(), dir / "home", c.converted);
}

INSTANTIATE_TEST_SUITE_P(RealLogs, ConvertMdbLg8ZloxGolden, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

// --- N1MM Logger: the export through the driver ------------------------------------------

namespace {

// Rows as the database engine exports an N1MM Logger contact table: date and time, call,
// frequency in kHz, mode, reports, the exchange in column 20 and the deleted flag in 27.
std::vector<std::string> exportLines()
{
    struct Row
    {
        const char* when;
        const char* call;
        const char* freq;
        const char* mode;
        const char* snt;
        const char* rcv;
        const char* exchange;
        const char* flag;
    };
    const Row rows[] = {
        {"2024/06/01 9:15:00", "JA1ZLO", "14025.5", "CW", "599", "599", "10", "0"},
        {"2024/06/01 00:02:00", "K1AR", "14012.0", "CW", "599", "599", "05", "0"},
        {"2024/06/01 00:05:00", "DL1ABC", "7012", "CW", "599", "579", "14", "0"},
        {"2024/06/01 00:05:00", "VK2XX", "21250.0", "USB", "59", "57", "30", "0"},
        {"2024/06/01 01:30:00", "JA1ZLO", "21030.0", "CW", "599", "599", "10", "0"},
        {"2024/06/01 02:10:00", "W1AW/4", "28450.0", "LSB", "59", "59", "05", "0"},
        {"2024/06/01 02:11:00", "BY1AA", "3525.0", "CW", "599", "599", "24", "-1"},
        {"2024/06/01 03:40:00", "JH8ZZZ", "50150.0", "PH", "59", "59", "108", "0"},
        {"2024/06/01 04:00:00", "UA9XX", "14080.0", "RTTY", "599", "599", "17", "0"},
        {"2024/06/01 04:01:00", "JA6ABC", "1820.0", "CW", "599", "599", "44", "0"},
        {"2024/05/31 23:59:00", "VE3XX", "7080.0", "RTYY", "599", "599", "04", "0"},
    };
    std::string header = "TS";
    for (int i = 1; i < 30; ++i) {
        header += ",F" + std::to_string(i);
    }
    header = text::replaceAll(header, ",F1,F2,", ",Call,Freq,");
    std::vector<std::string> lines{header};
    for (const Row& r : rows) {
        std::vector<std::string> f(30);
        f[0] = "\"" + std::string(r.when) + "\"";
        f[1] = "\"" + std::string(r.call) + "\"";
        f[2] = r.freq;
        f[4] = "\"" + std::string(r.mode) + "\"";
        f[6] = "\"" + std::string(r.snt) + "\"";
        f[7] = "\"" + std::string(r.rcv) + "\"";
        f[20] = "\"" + std::string(r.exchange) + "\"";
        f[27] = r.flag;
        f[29] = "\"JA1XYZ\"";
        std::string line;
        for (std::size_t i = 0; i < f.size(); ++i) {
            line += (i ? "," : "") + f[i];
        }
        lines.push_back(line);
    }
    return lines;
}

} // namespace

TEST(ConvertMdbGolden, AnExportedContactTableConvertsInDateAndTimeOrder)
{
    test::TempDir dir;
    test::RecordingDialogs dialogs;
    session::Session s(dir / "home", dialogs);
    // As the command line starts: the environment as it stands, the files a conversion
    // needs, the main window's load.
    if (s.decision().environmentFirst) {
        s.acceptEnvironment();
    }
    ASSERT_TRUE(s.checkRequiredFiles(true));
    s.loadMainWindow();

    // What the open of the database leaves: the export in the working folder and the names.
    const fs::path log = dir / "CONTEST.mdb";
    test::writeBytes(log, "");
    const fs::path csv = s.folder().drive_path / "dxlog.csv";
    test::writeSjisLines(csv, exportLines());

    settings::Options options = s.options();
    test::RecordingObserver observer;
    engine::RunContext ctx{options,
                           s.folder(),
                           s.trace(),
                           observer,
                           dialogs,
                           s.programState(),
                           s.reference().entities(),
                           {}};
    ctx.settings = &s.files();
    ctx.lookups = &s.reference();
    ctx.run.in_name = log.string();
    ctx.run.chosen_name = log.string();
    ctx.run.setKind(readers::InputKind::Mdb);
    ctx.run.mdb.mdb_csv_name = csv.string();
    ctx.run.names = readers::OutputNames::of(ctx.run.in_name);
    ctx.run.Label37 = readers::countLabel(text::Count_lines(csv));
    ctx.run.keep_work = true;
    engine::cmdStart_Click(ctx);

    EXPECT_EQ(ctx.run.counters.qso_kazu, 10);
    compareWithGolden("mdb_dxlog_export", dir.path(), dir / "home", nullptr);
}

// --- The failure paths and the other commands ------------------------------------------------

TEST(ConvertMdb, ADatabaseWithoutTheTableTakesTheFailurePathWithTheEnginesNumber)
{
    const auto db = test::realData("n1mm/n3fjp_LogData.mdb");
    if (!db) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    for (const char* table : {"DXLOG", "CurrentContest"}) {
        test::TempDir dir;
        std::string output;
        const int status = test::runCommand(
            quote(test::cliPath()) + " convert --home " + quote((dir / "home").string()) +
                " --type mdb --table " + table + " " + quote(db->string()),
            &output);
        EXPECT_EQ(status, 1) << output;
        EXPECT_TRUE(traceHas(dir / "home", "エラー発生 ：　3078")) << table;
        EXPECT_TRUE(traceHas(dir / "home", std::string("'") + table + "' が見つかりません"));
        EXPECT_FALSE(fs::exists(dir / "home" / "Work" / "dxlog.csv"));
    }
}

TEST(ConvertMdb, AFileThatIsNoAccessDatabaseTakesTheFailurePath)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "LOG.mdb", {"zLog for Windows"});
    std::string output;
    const int status = test::runCommand(quote(test::cliPath()) + " convert --home " +
                                            quote((dir / "home").string()) + " " +
                                            quote((dir / "LOG.mdb").string()),
                                        &output);
    EXPECT_EQ(status, 1) << output;
    EXPECT_TRUE(traceHas(dir / "home", "エラー発生 ：　3343"));
    EXPECT_TRUE(traceHas(dir / "home", "Access のデータベースではありません"));
}

TEST(ConvertMdb, ATableOtherThanTheTwoIsBadUsage)
{
    test::TempDir dir;
    std::string output;
    EXPECT_EQ(test::runCommand(quote(test::cliPath()) + " convert --home " +
                                   quote((dir / "home").string()) +
                                   " --type mdb --table tblContacts x.mdb",
                               &output),
              2)
        << output;
}

TEST(OpenLg8, ShowsTheConvertedTextAndTheCountOfTheConverter)
{
    const auto real = test::realData("ctestwin/allja1.lg8");
    if (!real) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    test::TempDir dir;
    fs::copy_file(*real, dir / "A.LG8");
    std::string output;
    ASSERT_EQ(test::runCommand(quote(test::cliPath()) + " open --home " +
                                   quote((dir / "home").string()) + " " +
                                   quote((dir / "A.LG8").string()),
                               &output),
              0)
        << output;
    EXPECT_TRUE(text::contains(output, "f_type\tlg8\n")) << output;
    EXPECT_TRUE(text::contains(output, "Label39\t1000 件\n")) << output;
    EXPECT_TRUE(text::contains(output, "ctestwin_all_name\t" +
                                           (dir / "A_ctestwin2zlog.all").string() + "\n"))
        << output;
    EXPECT_TRUE(text::contains(output, "out_name_ham_n\t" + (dir / "A_hn.csv").string() + "\n"))
        << output;
}

TEST(Z2aZlox, WritesTheTextOfTheZloThatZlogWouldHaveWritten)
{
    const auto real = test::realData("zlog/samples_zlog_repo/Debug_ALLJA8_2022.ZLOx");
    if (!real) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    test::TempDir dir;
    fs::copy_file(*real, dir / "ja8.ZLOx");
    std::string output;
    ASSERT_EQ(test::runCommand(quote(test::cliPath()) + " z2a --home " +
                                   quote((dir / "home").string()) + " " +
                                   quote((dir / "ja8.ZLOx").string()),
                               &output),
              0)
        << output;
    const auto lines = test::readSjisLines(dir / "ja8_z2a.all");
    ASSERT_EQ(lines.size(), 206u);
    EXPECT_TRUE(text::startsWith(lines[1], "2022/06/25 ")) << lines[1];
    EXPECT_TRUE(text::contains(lines[1], "JH8FIH")) << lines[1];
    EXPECT_TRUE(text::endsWith(lines[1], "(7123)")) << lines[1];
}

// Each real .ZLOX converts: the records in _hn.csv are the records of the file with a call.
class ConvertEveryZlox : public ::testing::TestWithParam<std::string>
{
};

TEST_P(ConvertEveryZlox, WritesARecordForEachContactWithACall)
{
    const auto source = test::realData(GetParam());
    if (!source) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    const std::string bytes = test::readBytes(*source);
    long calls = 0;
    for (std::size_t at = 384; at + 384 <= bytes.size(); at += 384) {
        calls += bytes[at + 8] != 0 ? 1 : 0;
    }
    test::TempDir dir;
    fs::copy_file(*source, dir / "LOG.ZLOX");
    std::string output;
    const int status = test::runCommand(quote(test::cliPath()) + " convert --home " +
                                            quote((dir / "home").string()) + " " +
                                            quote((dir / "LOG.ZLOX").string()),
                                        &output);
    if (calls == 0) {
        // Nothing to convert: the run ends at its first read of the empty working file.
        EXPECT_EQ(status, 1) << output;
        EXPECT_TRUE(traceHas(dir / "home", "エラー発生 ：")) << output;
        return;
    }
    ASSERT_EQ(status, 0) << output;
    EXPECT_EQ(static_cast<long>(test::readSjisLines(dir / "LOG_hn.csv").size()), calls);
}

INSTANTIATE_TEST_SUITE_P(
    RealLogs, ConvertEveryZlox,
    ::testing::Values(
        "zlog/allja1_qxsl_fixture.ZLOX", "zlog/samples_zlog_repo/Debug_ALLJA2023.ZLOX",
        "zlog/samples_zlog_repo/Debug_ALLJA8_2022.ZLOx",
        "zlog/samples_zlog_repo/Debug_FD_TEST.ZLOX", "zlog/samples_zlog_repo/Debug_aaaa.ZLOX",
        "zlog/samples_zlog_repo/Debug_acag.ZLOX", "zlog/samples_zlog_repo/Debug_allja.ZLOX",
        "zlog/samples_zlog_repo/Debug_allja8.ZLOX", "zlog/samples_zlog_repo/Debug_alljatest.ZLOX",
        "zlog/samples_zlog_repo/Debug_ap.ZLOX", "zlog/samples_zlog_repo/Debug_arrl.ZLOX",
        "zlog/samples_zlog_repo/Debug_ja0test.ZLOX", "zlog/samples_zlog_repo/Debug_moptest.ZLOX",
        "zlog/samples_zlog_repo/Debug_pedi.ZLOX", "zlog/samples_zlog_repo/Debug_wpxtest.ZLOX",
        "zlog/samples_zlog_repo/Debug_wwtest.ZLOX", "zlog/samples_zlog_repo/Release_6dtest.ZLOX",
        "zlog/samples_zlog_repo/Release_ALLJA2023.ZLOX", "zlog/samples_zlog_repo/Release_aaaa.ZLOX",
        "zlog/samples_zlog_repo/Release_acagtest.ZLOX", "zlog/samples_zlog_repo/Release_ja0.ZLOX",
        "zlog/samples_zlog_repo/Release_ja8.ZLOX", "zlog/samples_zlog_repo/Release_ja8_50.ZLOX",
        "zlog/samples_zlog_repo/Release_moptest.ZLOX",
        "zlog/samples_zlog_repo/Release_newtest.ZLOX"),
    [](const auto& info) {
        std::string name = fs::path(info.param).stem().string();
        for (char& ch : name) {
            if (!std::isalnum(static_cast<unsigned char>(ch))) {
                ch = '_';
            }
        }
        return name;
    });
