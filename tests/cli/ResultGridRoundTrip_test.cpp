// The result grid editor loads and saves the results of real conversions unchanged.

#include "base/Trace.h"
#include "support/TestSupport.h"
#include "tools/ResultGrid.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

void expectRoundTrip(const fs::path& result)
{
    ASSERT_TRUE(fs::exists(result)) << result;
    const std::string before = test::readBytes(result);
    base::Trace trace;
    tools::ResultGrid grid;
    grid.DataRead(result, trace);
    EXPECT_GT(grid.rows(), 0) << result;
    grid.cmdSave(result);
    EXPECT_EQ(test::readBytes(result), before) << result;
}

} // namespace

TEST(ResultGridRoundTrip, TheResultsOfRealLogsAreSavedByteForByteWithoutEdits)
{
    int converted = 0;
    for (const char* name : {"zlog/allja1_qxsl_fixture.ALL", "zlog/allja1_qxsl_fixture.TXT",
                             "zlog/allja1_qxsl_fixture.ZLO"}) {
        const auto source = test::realData(name);
        if (!source) {
            GTEST_SKIP() << "../shared/realdata is not beside the source tree";
        }
        test::TempDir dir;
        const fs::path log = dir / ("CONTEST" + source->extension().string());
        fs::copy_file(*source, log);
        std::string output;
        ASSERT_EQ(test::runCli({"convert", "--home", (dir / "home").string(), "--year", "2026",
                                log.string()},
                               &output),
                  0)
            << name << "\n"
            << output;
        expectRoundTrip(dir / "CONTEST_hn.csv");
        expectRoundTrip(dir / "CONTEST_cn.csv");
        ++converted;
    }
    EXPECT_EQ(converted, 3);
}

TEST(ResultGridRoundTrip, TheResultsOfTheBundledSampleAreSavedByteForByte)
{
    test::TempDir dir;
    const fs::path log = dir / "SAMPLE2026.ALL";
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    std::string output;
    ASSERT_EQ(test::runCli({"convert", "--home", (dir / "home").string(), log.string()}, &output),
              0)
        << output;
    expectRoundTrip(dir / "SAMPLE2026_hn.csv");
    expectRoundTrip(dir / "SAMPLE2026_cn.csv");
}
