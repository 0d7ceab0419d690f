// The HAMLOG history through the command line, with a real database written by another
// implementation and with databases that are missing or broken.

#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s) { return "'" + s + "'"; }

struct Cli
{
    test::TempDir dir;
    fs::path home = dir / "home";
    std::string output;

    int convert(const fs::path& log, const std::string& args)
    {
        return test::runCommand(quote(test::cliPath()) + " convert --home " +
                                    quote(home.string()) + " " + args + " " + quote(log.string()),
                                &output);
    }
    // A HAMLOG database with its companion file beside it.
    fs::path database(const std::string& bytes)
    {
        fs::create_directories(dir / "Hamlog");
        test::writeBytes(dir / "Hamlog" / "Hamlog.hdb", bytes);
        test::writeBytes(dir / "Hamlog" / "Hamlog.mst", "");
        return dir / "Hamlog" / "Hamlog.hdb";
    }
};

// The counter row " No QSL 局の数" of the command's output.
long noQslCount(const std::string& output)
{
    const auto at = output.find(" No QSL 局の数\t");
    return at == std::string::npos ? -1 : std::stol(output.substr(output.find('\t', at) + 1));
}

} // namespace

TEST(ConvertHistory, EveryContactOfTheRealLogIsInItsOwnRealDatabase)
{
    const auto hdb = test::realData("hamlog/allja1_qxsl.hdb");
    const auto all = test::realData("zlog/allja1_qxsl_fixture.ALL");
    if (!hdb || !all) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    Cli cli;
    const fs::path db = cli.database(test::readBytes(*hdb));
    fs::copy_file(*all, cli.dir / "ALLJA1.ALL");
    ASSERT_EQ(cli.convert(cli.dir / "ALLJA1.ALL",
                          "--set Option04=1 --set Check04=0 --set Check05=0 --set "
                          "hamlog_hdb_dir=" + quote(db.string())),
              0)
        << cli.output;
    // The database holds every contact of the log, so each one is a station without a card.
    EXPECT_EQ(noQslCount(cli.output), 776) << cli.output;
    EXPECT_TRUE(fs::exists(cli.home / "Temp_Files" / "bak_qso.mas1_p"));
}

TEST(ConvertHistory, AMissingDatabaseEndsTheProgramWithoutResults)
{
    Cli cli;
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", cli.dir / "T.ALL");
    EXPECT_EQ(cli.convert(cli.dir / "T.ALL", "--set Option04=1 --set hamlog_hdb_dir=" +
                                                 quote((cli.dir / "none.hdb").string())),
              1);
    EXPECT_FALSE(fs::exists(cli.dir / "T_hn.csv"));
}

TEST(ConvertHistory, BrokenDatabasesNeverCrashTheProgram)
{
    Cli cli;
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", cli.dir / "T.ALL");
    for (const std::string& bytes :
         {std::string(), std::string("\x03", 1), std::string(31, '\x03'),
          std::string("\x03\x7d\x01\x01\xff\xff\xff\x7f\x41\x00\x10\x00", 12) + std::string(40, 'A'),
          std::string(5000, '\xff')}) {
        const fs::path db = cli.database(bytes);
        const int status = cli.convert(cli.dir / "T.ALL", "--set Option04=1 --set hamlog_hdb_dir=" +
                                                              quote(db.string()));
        EXPECT_TRUE(status == 0 || status == 1) << status << cli.output;
    }
}

namespace {

// Converts the sample log, named as in the golden cases, against the HAMLOG export of the
// tests; returns the command's status.
int convertSampleWithHistory(Cli& cli, const std::string& args)
{
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", cli.dir / "CONTEST.ALL",
                  fs::copy_options::overwrite_existing);
    const fs::path history = test::testData("hamlog") / "history.csv";
    return cli.convert(cli.dir / "CONTEST.ALL",
                       args + " --set hamlog_hdb_dir=" + quote(history.string()));
}

// Every trace the program folder holds, one after the other.
std::string traces(const Cli& cli)
{
    std::string all;
    for (const auto& entry : fs::directory_iterator(cli.home / "Error_Log")) {
        all += text::decodeSjis(test::readBytes(entry.path()));
    }
    return all;
}

void expectGolden(const Cli& cli, const char* goldenCase)
{
    for (const char* file : {"CONTEST_hn.csv", "CONTEST_cn.csv"}) {
        EXPECT_EQ(test::readBytes(cli.dir / file),
                  test::readBytes(test::testData("golden") / goldenCase / file))
            << file << " against " << goldenCase;
    }
}

} // namespace

TEST(ConvertHistory, WithCheck3AndCheck4BothOnOnlyTheNToJRewriteRuns)
{
    Cli both;
    ASSERT_EQ(convertSampleWithHistory(both, "--set Option04=2 --set Check3=1 --set Check4=1"), 0)
        << both.output;
    // The files are those of the N to J rewrite alone, which differ from the J to N ones.
    expectGolden(both, "history_sent_n_to_j");
    EXPECT_NE(test::readBytes(both.dir / "CONTEST_hn.csv"),
              test::readBytes(test::testData("golden") / "history_sent_j_to_n" / "CONTEST_hn.csv"));
    const std::string trace = traces(both);
    EXPECT_NE(trace.find("all_NJ_Chikan_full"), std::string::npos);
    EXPECT_EQ(trace.find("all_JN_Chikan_full"), std::string::npos);
}

TEST(ConvertHistory, ANoQslMarkOfNLeavesTheFinalFilesAsTheLastStepMakesThem)
{
    Cli keep;
    ASSERT_EQ(
        convertSampleWithHistory(keep, "--set Option04=2 --set No_QSL_moji=N --set Check21=1"), 0)
        << keep.output;
    expectGolden(keep, "history_card_sent");
    EXPECT_EQ(traces(keep).find("No_QSL_moji_ReWrite"), std::string::npos);
    // Neither the rewrite's files nor its copies are left beside the log.
    for (const char* left : {"CONTEST_h.csv", "CONTEST_c.csv", "CONTEST_h0.csv_1"}) {
        EXPECT_FALSE(fs::exists(keep.dir / left)) << left;
    }

    // Any other mark runs the rewrite, which the trace shows; the final files are the same.
    Cli other;
    ASSERT_EQ(
        convertSampleWithHistory(other, "--set Option04=2 --set No_QSL_moji=_ --set Check21=1"), 0)
        << other.output;
    EXPECT_NE(traces(other).find("Private Sub No_QSL_moji_ReWrite"), std::string::npos);
    expectGolden(other, "history_card_sent");
}
