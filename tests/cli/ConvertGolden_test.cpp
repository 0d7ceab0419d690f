// Runs the command-line conversion on the bundled sample logs (and on real zLog logs where
// they are at hand) and compares every file it leaves with the reviewed files in
// tests/data/golden, byte for byte. VORNHALE_UPDATE_GOLDEN=1 rewrites them for review.
// The same table of cases runs in process in tests/session/SessionGolden_test.cpp.

#include "support/GoldenCases.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vornhale;
namespace fs = std::filesystem;

class ConvertGolden : public ::testing::TestWithParam<test::GoldenCase>
{
};

TEST_P(ConvertGolden, EveryFileMatchesItsReviewedCopy)
{
    const test::GoldenCase& c = GetParam();
    test::TempDir dir;
    const test::PreparedCase p = test::prepareGoldenCase(c, dir.path());
    if (p.log.empty()) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    std::vector<std::string> args{"convert", "--keep-work", "--home", p.home.string()};
    args.insert(args.end(), p.args.begin(), p.args.end());
    args.push_back(p.log.string());
    std::string output;
    ASSERT_EQ(test::runCli(args, &output), 0) << output;

    const fs::path golden = test::testData("golden") / c.name;
    for (const auto& [file, actual] : test::goldenOutputs(dir.path())) {
        ASSERT_TRUE(fs::exists(actual)) << actual;
        EXPECT_EQ(test::compareGolden(golden / file, test::readBytes(actual)), "") << c.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, ConvertGolden, ::testing::ValuesIn(test::goldenCases()),
                         [](const auto& info) { return std::string(info.param.name); });
