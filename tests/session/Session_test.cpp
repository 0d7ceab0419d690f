// The session shared by the window and the command line: one start, one open, one
// conversion with its one catch, and one path by which every change of an option is told.

#include "base/ProgramFolderLock.h"
#include "session/Session.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

bool has(const std::vector<std::string>& names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

// A program folder with its settings, started as the command line starts it.
struct Started
{
    Started()
    {
        ::unsetenv("VORNHALE_CTY_DAT");
        session = std::make_unique<session::Session>(home.path() / "home", dialogs);
        session->acceptEnvironment();
    }

    fs::path copyLog(const char* sample, const std::string& as)
    {
        const fs::path to = logs / as;
        fs::copy_file(test::sourceDir() / "data/sample" / sample, to);
        return to;
    }

    test::TempDir home, logs;
    test::RecordingDialogs dialogs;
    std::unique_ptr<session::Session> session;
};

} // namespace

TEST(Session, TheOpenOfAReferenceLogTicksCheck13ThroughTheStoreAndTheModel)
{
    Started s;
    ASSERT_TRUE(s.session->checkRequiredFiles(true));
    session::OptionModel& model = s.session->loadMainWindow();
    s.session->options().set("Check13", "0");

    std::vector<std::string> stored, shown;
    s.session->options().subscribe(
        [&](std::string_view name, const std::string&) { stored.emplace_back(name); });
    model.subscribe([&](std::string_view name) { shown.emplace_back(name); });

    test::RecordingObserver observer;
    const fs::path log = s.copyLog("SAMPLE2026.ALL", "REF2026.ALL");
    ASSERT_EQ(s.session->open(log, "", observer), readers::OpenResult::Opened);

    EXPECT_TRUE(has(stored, "Check13"));
    EXPECT_TRUE(has(shown, "Check13"));
    EXPECT_TRUE(model.tick("Check13"));
    EXPECT_EQ(s.session->options().value("Check13"), "1");
}

TEST(Session, EveryChangeOfARunReachesTheSubscribersOfTheStore)
{
    Started s;
    ASSERT_TRUE(s.session->checkRequiredFiles(true));
    s.session->loadMainWindow();
    std::vector<std::string> stored;
    s.session->options().subscribe(
        [&](std::string_view name, const std::string&) { stored.emplace_back(name); });

    test::RecordingObserver observer;
    const fs::path log = s.copyLog("SAMPLE2026.ALL", "CONTEST.ALL");
    ASSERT_EQ(s.session->open(log, "", observer), readers::OpenResult::Opened);
    session::RunRequest request;
    request.overrides = {{"Option04", "1"},
                         {"hamlog_hdb_dir",
                          (test::sourceDir() / "tests/data/hamlog/history.csv").string()}};
    const session::RunOutcome outcome = s.session->runConversion(observer, request);
    ASSERT_EQ(outcome.end, session::RunOutcome::End::Done) << outcome.message;

    // The history scan stamps the database it read, and the run stores the settings.
    EXPECT_TRUE(has(stored, "hamlog_hdb_dir_FileDateTime_QSO"));
    // A value given for the run only is never stored.
    EXPECT_NE(s.session->options().value("Option04"), "1");
}

TEST(Session, ARunWorksOnTheValuesAsTheyStoodWhenItStarted)
{
    Started s;
    ASSERT_TRUE(s.session->checkRequiredFiles(true));
    s.session->loadMainWindow();
    const fs::path log = s.copyLog("SAMPLE2026.ALL", "CONTEST.ALL");

    // The window changes the sort while the run goes on: the run keeps its own values.
    struct Meddler : test::RecordingObserver
    {
        settings::Options* store = nullptr;
        void status(std::string_view text, base::Colour colour) override
        {
            store->set("Option02", "4");
            store->set("txtQSL_Q", "Z");
            RecordingObserver::status(text, colour);
        }
    } meddler;
    meddler.store = &s.session->options();
    ASSERT_EQ(s.session->open(log, "", meddler), readers::OpenResult::Opened);
    s.session->options().set("Option02", "0");
    const session::RunOutcome outcome = s.session->runConversion(meddler);
    ASSERT_EQ(outcome.end, session::RunOutcome::End::Done) << outcome.message;

    const fs::path golden = test::sourceDir() / "tests/data/golden/all_defaults";
    for (const char* name : {"CONTEST_hn.csv", "CONTEST_cn.csv"}) {
        EXPECT_EQ(test::compareGolden(golden / name, test::readBytes(s.logs / name)), "")
            << name;
    }
}

TEST(Session, AFailureOfTheRunIsCaughtOnceAndTold)
{
    Started s;
    ASSERT_TRUE(s.session->checkRequiredFiles(true));
    s.session->loadMainWindow();
    test::RecordingObserver observer;
    const fs::path log = s.copyLog("SAMPLE2026.ALL", "CONTEST.ALL");
    ASSERT_EQ(s.session->open(log, "", observer), readers::OpenResult::Opened);
    fs::remove(log); // gone before the start: the reader cannot open it

    const session::RunOutcome outcome = s.session->runConversion(observer);
    EXPECT_EQ(outcome.end, session::RunOutcome::End::Failed);
    EXPECT_EQ(outcome.failureNumber, 53);
    EXPECT_FALSE(outcome.dialogText.empty());
    ASSERT_FALSE(s.dialogs.shown.empty());
}

TEST(Session, AnInputOfNoKnownKindIsRefusedBeforeAnythingRuns)
{
    Started s;
    ASSERT_TRUE(s.session->checkRequiredFiles(true));
    s.session->loadMainWindow();
    test::RecordingObserver observer;
    const fs::path log = s.logs / "contest.xyz";
    test::writeBytes(log, "whatever\r\n");
    ASSERT_EQ(s.session->open(log, "", observer), readers::OpenResult::Opened);

    const session::RunOutcome outcome = s.session->runConversion(observer);
    EXPECT_EQ(outcome.end, session::RunOutcome::End::Refused);
    EXPECT_NE(outcome.message.find("--type"), std::string::npos);
}

TEST(Session, ASettingsWriteBetweenRunsWaitsWhileAnotherRunHoldsTheFolder)
{
    ::unsetenv("VORNHALE_CTY_DAT");
    test::TempDir home;
    test::RecordingDialogs dialogs;
    std::atomic<bool> waited{false};
    // As the window starts it: the folder is held only for the start, each run and the end.
    session::Session session(home.path() / "home", dialogs, session::Session::FolderHold::EachWrite,
                             [&] { waited = true; });
    const fs::path file = session.folder().strPath / "Vornhale.ini";
    session.files().ini_write_old();
    const std::string before = test::readBytes(file);
    session.options().set("Check17", session.options().value("Check17") == "1" ? "0" : "1");

    std::thread writer;
    {
        // A conversion of another process holds the folder (a lock on another descriptor
        // stands for it: the hold is per open file).
        const base::ProgramFolderLock other(session.folder().strPath);
        writer = std::thread([&] { session.files().ini_write_old(); });
        for (int i = 0; i < 1000 && !waited; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        ASSERT_TRUE(waited) << "the write did not wait for the hold";
        EXPECT_EQ(test::readBytes(file), before);
    }
    writer.join();
    EXPECT_NE(test::readBytes(file), before);
}
