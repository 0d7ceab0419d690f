#include "failure/Failure.h"
#include "base/FailurePath.h"
#include "base/Trace.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <regex>

using namespace vornhale;

TEST(Trace, IsOneFileNamedByTheStampOfTheStart)
{
    test::TempDir dir;
    base::Trace trace(dir / "Error_Log");
    EXPECT_TRUE(std::regex_match(trace.path().filename().string(),
                                 std::regex(R"(\d{8}_\d{6}(_\d+)?\.txt)")));
    EXPECT_EQ(trace.path().parent_path(), dir / "Error_Log");
}

TEST(Trace, WritesEachLineAtOnceInShiftJisWithCrLf)
{
    test::TempDir dir;
    base::Trace trace(dir / "Error_Log");
    trace.line("Private sub cmd_henkan()");
    trace.line("正常終了");
    // Read while the trace is still open: nothing waits in a buffer.
    EXPECT_EQ(test::readBytes(trace.path()), "Private sub cmd_henkan()\r\n\x90\xB3\x8F\xED\x8F\x49\x97\xB9\r\n");
}

TEST(Trace, TwoStartsInOneSecondKeepTwoFiles)
{
    test::TempDir dir;
    base::Trace first(dir / "Error_Log");
    base::Trace second(dir / "Error_Log");
    EXPECT_NE(first.path(), second.path());
}

TEST(Trace, AnErrorLogThatCannotBeMadeStopsAtTheFirstTrace)
{
    test::TempDir dir;
    test::writeBytes(dir / "Error_Log", "a file where the folder should be");
    EXPECT_THROW(base::Trace(dir / "Error_Log"), failure::Failure);
}

TEST(FailurePath, WritesNumberAndDescriptionAndShowsTheTwoDialogs)
{
    test::TempDir dir;
    base::Trace trace(dir / "Error_Log");
    test::RecordingDialogs dialogs;
    base::error_exit(failure::Failure(62, "ファイルの終わりを越えて入力しようとしました。"), trace, dialogs);

    const auto lines = test::readSjisLines(trace.path());
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "エラー発生 ：　62");
    EXPECT_EQ(lines[1], "エラー内容 ：　ファイルの終わりを越えて入力しようとしました。");

    ASSERT_EQ(dialogs.shown.size(), 2u);
    EXPECT_EQ(dialogs.shown[0].title, "　　エラー発生の為、　終了します！");
    EXPECT_EQ(dialogs.shown[0].icon, base::Dialogs::Icon::Stop);
    const std::string& text = dialogs.shown[0].text;
    EXPECT_NE(text.find("エラー内容 ：　62"), std::string::npos);
    EXPECT_NE(text.find("ファイルの終わりを越えて入力しようとしました。"), std::string::npos);
    EXPECT_NE(text.find("終了します。不具合レポートの時にはお手数でも"), std::string::npos);
    EXPECT_NE(text.find(trace.path().filename().string() + " をお送り下さい。"), std::string::npos);
    EXPECT_EQ(dialogs.shown[1].title, "　　　　　　お手数をお掛けしています。");
    EXPECT_NE(dialogs.shown[1].text.find("エラーが多くてご迷惑をお掛けしています。"), std::string::npos);
    EXPECT_EQ(dialogs.shown[1].icon, base::Dialogs::Icon::Information);
}

TEST(FailurePath, AStartUpHandlerNamesItsProcedure)
{
    test::TempDir dir;
    base::Trace trace(dir / "Error_Log");
    test::RecordingDialogs dialogs;
    failure::Failure failure(53, "ファイルが見つかりません。");
    failure.withHandler("Public Sub Check_ver()");
    base::error_exit(failure, trace, dialogs);
    EXPECT_EQ(test::readSjisLines(trace.path())[0], "エラー発生  Public Sub Check_ver() ：　53");
}
