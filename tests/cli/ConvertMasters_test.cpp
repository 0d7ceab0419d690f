// The masters a conversion needs, through the command line: what happens when they are
// missing, and the province master guessed from the log's name.

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

    int run(const std::string& command, const std::string& args)
    {
        return test::runCommand(quote(test::cliPath()) + " " + command + " --home " +
                                    quote(home.string()) + " " + args,
                                &output);
    }
    int convert(const std::string& logName, const std::string& args)
    {
        const fs::path log = dir / logName;
        if (!fs::exists(log)) {
            fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
        }
        return run("convert", args + " " + quote(log.string()));
    }
};

} // namespace

TEST(ConvertMasters, ANameMasterSwitchedOnButMissingEndsTheProgramWithItsDialog)
{
    Cli cli;
    ASSERT_EQ(cli.run("settings", "init"), 0);
    fs::remove(cli.home / "name_mas.txt");
    EXPECT_EQ(cli.convert("TEST.ALL", "--set Check15=1"), 1);
    EXPECT_NE(cli.output.find("　　name_mas．txt がありません。"), std::string::npos) << cli.output;
    EXPECT_FALSE(fs::exists(cli.dir / "TEST_hn.csv"));
}

TEST(ConvertMasters, AMissingNameMasterIsNoMatterWhileItIsSwitchedOff)
{
    Cli cli;
    ASSERT_EQ(cli.run("settings", "init"), 0);
    ASSERT_EQ(cli.run("settings", "set name_mas_dir=使用しない"), 0);
    fs::remove(cli.home / "name_mas.txt");
    EXPECT_EQ(cli.convert("TEST.ALL", "--set Check15=1"), 0) << cli.output;
}

TEST(ConvertMasters, ProvincesWithoutAMasterCannotStart)
{
    Cli cli;
    EXPECT_EQ(cli.convert("TEST.ALL", "--set Check5=1"), 1);
    EXPECT_NE(cli.output.find("Province の Master File の指定をして下さい。"), std::string::npos)
        << cli.output;
    EXPECT_FALSE(fs::exists(cli.dir / "TEST_hn.csv"));
}

TEST(ConvertMasters, StateAndProvinceCannotBothFillARemark)
{
    Cli cli;
    EXPECT_EQ(cli.convert("REF2026.ALL", "--set Check5=1 --set Rmks2_cfg=MNG,州名"), 1);
    EXPECT_NE(cli.output.find("州名 又は Province のどちらかにして下さい。"), std::string::npos)
        << cli.output;
}

TEST(ConvertMasters, TheLogsNameChoosesTheProvinceMaster)
{
    Cli cli;
    ASSERT_EQ(cli.convert("REF2026.ALL", "--set Check5=1"), 0) << cli.output;
    // The sample's exchange "13" is a French department in the REF contest's master.
    const std::string hn = text::decodeSjis(test::readBytes(cli.dir / "REF2026_hn.csv"));
    EXPECT_NE(hn.find("\"JA1ZZZ\",\"26/11/21\""), std::string::npos);
    EXPECT_NE(hn.find("Bouches-du-Rhone"), std::string::npos) << hn.substr(0, 400);
}

TEST(ConvertMasters, AProvinceMasterGivenByHandThatIsMissingIsRefused)
{
    Cli cli;
    EXPECT_EQ(cli.convert("TEST.ALL", "--set Check5=1 --province-master " +
                                          quote((cli.dir / "none.mas").string())),
              1);
    EXPECT_NE(cli.output.find("none.mas"), std::string::npos);
}
