// The entity command: the masters made from the system's cty.dat and the bundled DXCC master.

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s) { return "'" + s + "'"; }

// The lines of stdout that answer for calls (tab-separated), by call.
std::map<std::string, std::string> answers(const std::string& output)
{
    std::map<std::string, std::string> out;
    std::istringstream in(output);
    for (std::string line; std::getline(in, line);) {
        const auto tab = line.find('\t');
        if (tab != std::string::npos) {
            out[line.substr(0, tab)] = line.substr(tab + 1);
        }
    }
    return out;
}

} // namespace

TEST(EntityCommand, TheSystemPrefixListGivesEntitiesAndCodes)
{
    if (!fs::exists("/usr/share/hamradio-files/cty.dat")) {
        GTEST_SKIP() << "hamradio-files is not installed";
    }
    test::TempDir dir;
    std::string output;
    ASSERT_EQ(test::runCommand(quote(test::cliPath()) + " entity --home " +
                                   quote((dir / "home").string()) +
                                   " KH6/AB1CD AB1CD/KH6 3D2AG/R XX9TST/MM W1AW/P JA1ABC VE3XX "
                                   "KL7XX BV2XX 2>/dev/null",
                               &output),
              0)
        << output;
    const auto a = answers(output);
    EXPECT_EQ(a.at("KH6/AB1CD"), "KH6\tD110\tHawaii\t");
    EXPECT_EQ(a.at("AB1CD/KH6"), "KH6\tD110\tHawaii\t");
    EXPECT_EQ(a.at("3D2AG/R"), "3D2/r\tD460\tRotuma Island\t");
    EXPECT_EQ(a.at("XX9TST/MM"), "\t\t\t");
    EXPECT_EQ(a.at("W1AW/P"), "K\t784A\tUnited States\t");
    EXPECT_EQ(a.at("JA1ABC"), "JA\tD339\tJapan\t");
    EXPECT_EQ(a.at("VE3XX"), "VE\t758A\tCanada\t");
    EXPECT_EQ(a.at("KL7XX"), "KL\t667A\tAlaska\t");
    EXPECT_EQ(a.at("BV2XX"), "BV\t566A\tTaiwan\t");
    // The import leaves its masters in the program folder.
    EXPECT_TRUE(fs::exists(dir / "home" / "cty_mastS.txt"));
    EXPECT_TRUE(fs::exists(dir / "home" / "cty_mastL.txt"));
}

TEST(EntityCommand, WithoutCtyDatTheOperatorIsToldAndTheProgramEnds)
{
    test::TempDir dir;
    std::string output;
    EXPECT_EQ(test::runCommand("VORNHALE_CTY_DAT= " + quote(test::cliPath()) + " entity --home " +
                                   quote((dir / "home").string()) + " JA1ABC",
                               &output),
              1);
    EXPECT_NE(output.find("cty.dat　がありません。"), std::string::npos) << output;
}
