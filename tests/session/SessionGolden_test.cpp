// The reviewed end-to-end cases run in process through the session, as the window runs them:
// the same table and the same golden files as the command-line runner.

#include "session/Session.h"
#include "support/GoldenCases.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

// The command-line words of a case as the session takes them.
struct Request
{
    session::RunRequest run;
    std::string type;
};

Request requestOf(const std::vector<std::string>& args)
{
    Request r;
    r.run.keepWork = true;
    for (std::size_t i = 0; i + 1 < args.size(); i += 2) {
        const std::string& flag = args[i];
        const std::string& value = args[i + 1];
        if (flag == "--set") {
            const auto eq = value.find('=');
            r.run.overrides.emplace_back(value.substr(0, eq), value.substr(eq + 1));
        } else if (flag == "--year") {
            r.run.overrides.emplace_back("txtYYYY", value);
        } else if (flag == "--province-master") {
            r.run.provinceMaster = value;
        } else if (flag == "--type") {
            r.type = value;
        } else {
            ADD_FAILURE() << "a flag the in-process runner does not know: " << flag;
        }
    }
    return r;
}

} // namespace

class SessionGolden : public ::testing::TestWithParam<test::GoldenCase>
{
};

TEST_P(SessionGolden, EveryFileMatchesItsReviewedCopy)
{
    const test::GoldenCase& c = GetParam();
    test::TempDir dir;
    const test::PreparedCase p = test::prepareGoldenCase(c, dir.path());
    if (p.log.empty()) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    const Request request = requestOf(p.args);
    // The system's cty.dat, as the command line takes it, whatever an earlier test set.
    ::unsetenv("VORNHALE_CTY_DAT");

    test::RecordingDialogs dialogs;
    test::RecordingObserver observer;
    session::Session s(p.home, dialogs);
    if (s.decision().environmentFirst) {
        s.acceptEnvironment();
    }
    ASSERT_TRUE(s.checkRequiredFiles(true));
    s.loadMainWindow();
    ASSERT_EQ(s.open(p.log, request.type, observer, request.run.overrides),
              readers::OpenResult::Opened);
    const session::RunOutcome outcome = s.runConversion(observer, request.run);
    ASSERT_EQ(outcome.end, session::RunOutcome::End::Done) << outcome.message;
    s.end(false);

    const fs::path golden = test::testData("golden") / c.name;
    for (const auto& [file, actual] : test::goldenOutputs(dir.path())) {
        ASSERT_TRUE(fs::exists(actual)) << actual;
        EXPECT_EQ(test::compareGolden(golden / file, test::readBytes(actual)), "") << c.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, SessionGolden, ::testing::ValuesIn(test::goldenCases()),
                         [](const auto& info) { return std::string(info.param.name); });
