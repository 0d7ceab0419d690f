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
