// Entities through a whole conversion: the system's prefix list for a folder without its own,
// and the bureau flag of the DXCC master.

#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s)
{
    return "'" + s + "'";
}

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
    int convert(const std::string& args)
    {
        if (!fs::exists(dir / "T.ALL")) {
            fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", dir / "T.ALL");
        }
        return run("convert", args + " " + quote((dir / "T.ALL").string()));
    }
    std::string hn() const { return text::decodeSjis(test::readBytes(dir / "T_hn.csv")); }
};

bool hasSystemCty()
{
    return fs::exists("/usr/share/hamradio-files/cty.dat");
}

// The bundled DXCC master with Japan's bureau flag set to "X".
void markJapanWithoutBureau(const fs::path& file)
{
    std::string bytes = test::readBytes(file);
    const auto at = bytes.find("\r\n JA     ");
    ASSERT_NE(at, std::string::npos);
    const auto lineStart = at + 2;
    ASSERT_GE(bytes.find("\r\n", lineStart) - lineStart, 55u);
    bytes[lineStart + 54] = 'X';
    test::writeBytes(file, bytes);
}

} // namespace

TEST(ConvertEntities, AFolderWithoutItsOwnPrefixListTakesTheSystemOne)
{
    if (!hasSystemCty()) {
        GTEST_SKIP() << "hamradio-files is not installed";
    }
    Cli cli;
    ASSERT_EQ(cli.run("settings", "init"), 0);
    fs::remove(cli.home / "cty.dat");
    ASSERT_EQ(cli.convert(""), 0) << cli.output;
    EXPECT_TRUE(fs::exists(cli.home / "cty.dat"));
    EXPECT_NE(
        cli.hn().find("\"K1XX\",\"26/11/22\",\"00:40U\",\"599\",\"599\",\"1.8\",\"CW\",\"784A\""),
        std::string::npos);
}

TEST(ConvertEntities, AnEntityWithoutABureauGetsTheBureauMark)
{
    if (!hasSystemCty()) {
        GTEST_SKIP() << "hamradio-files is not installed";
    }
    Cli cli;
    ASSERT_EQ(cli.run("settings", "init"), 0);
    markJapanWithoutBureau(cli.home / "dxcc_mas.txt");
    ASSERT_EQ(cli.convert("--set buro_QSL_moji=B"), 0) << cli.output;
    const std::string hn = cli.hn();
    // A Japanese station: the bureau mark as route and "not Buro" in the first remark.
    EXPECT_NE(
        hn.find(
            "\"JA1ZZZ\",\"26/11/21\",\"23:19U\",\"599\",\"599\",\"3.5\",\"CW\",\"D339\",\"\",\"B"),
        std::string::npos)
        << hn.substr(0, 300);
    // The conversion's own note goes only to the sort record; the final files take the remark
    // from before it.
    EXPECT_EQ(hn.find("not Buro"), std::string::npos);
    // A station elsewhere keeps the ordinary route.
    EXPECT_NE(
        hn.find(
            "\"K1XX\",\"26/11/22\",\"00:40U\",\"599\",\"599\",\"1.8\",\"CW\",\"784A\",\"\",\"J"),
        std::string::npos);
}

TEST(ConvertEntities, WithTheBureauColumnInUseTheFinalFilesNoteItByCode)
{
    if (!hasSystemCty()) {
        GTEST_SKIP() << "hamradio-files is not installed";
    }
    Cli cli;
    ASSERT_EQ(cli.run("settings", "init"), 0);
    markJapanWithoutBureau(cli.home / "dxcc_mas.txt");
    ASSERT_EQ(cli.convert("--set buro_QSL_moji=B --set DXCC_mas_txt_55_use=Yes"), 0) << cli.output;
    const std::string hn = cli.hn();
    EXPECT_NE(hn.find("\"D339\",\"\",\"B"), std::string::npos) << hn.substr(0, 300);
    EXPECT_NE(hn.find("no_Buro"), std::string::npos) << hn.substr(0, 300);
    EXPECT_EQ(hn.find("\"784A\",\"\",\"B"), std::string::npos);
}
