// The start's offer to download missing data files: asked only with web access, answered
// "No" by a front end without a download window, and on "Yes" the window opens with the rows
// of the missing files ticked, web access is stored and the start stops.

#include "session/ProgramStart.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

using namespace vornhale;
using tools::DownloadRow;
namespace fs = std::filesystem;

namespace {

class AnsweringDialogs : public test::RecordingDialogs
{
public:
    Answer question(std::string_view title, std::string_view text, Buttons, Icon icon) override
    {
        shown.push_back({std::string(title), std::string(text), icon});
        return answer;
    }
    Answer answer = Answer::Yes;
};

struct Start
{
    test::TempDir dir;
    test::TempDir root;
    base::ProgramFolder folder = base::ProgramFolder::at(dir / "home");
    base::Trace trace;
    AnsweringDialogs dialogs;
    settings::Options options;
    std::unique_ptr<settings::SettingsFiles> files;
    std::unique_ptr<session::ProgramStart> start;

    explicit Start(const char* inet)
    {
        ::setenv("VORNHALE_CTY_DAT", "", 1);
        files = std::make_unique<settings::SettingsFiles>(folder.strPath, options);
        files->setToday("20261123");
        files->setDriveRoot(root.path());
        start = std::make_unique<session::ProgramStart>(folder, *files, trace, dialogs);
        start->Main(dir / "no-seed");
        options.set("zlog_dat_dir", folder.strPath.string());
        options.set("inet_flag", inet);
        // Every download home unconfigured: the rows fail without a request.
        test::writeBytes(folder.strPath / "ardx.dat", "present");
    }
    bool storedInetOk() const
    {
        return test::readBytes(folder.strPath / "Vornhale_cfg.ini").find("inet_flag=OK\r\n") !=
               std::string::npos;
    }
};

} // namespace

TEST(NeedFilesOffer, WithoutWebAccessTellsTheOperatorToFetchTheFilesLater)
{
    Start s("NO");
    bool opened = false;
    s.start->setDownloadWindow([&](tools::DataDownloads&) { opened = true; });
    EXPECT_EQ(s.start->get_need_files1(), (std::vector<std::string>{"cty.dat", "arrl10.dat"}));
    EXPECT_FALSE(opened);
    EXPECT_FALSE(s.start->needFilesAbort());
    ASSERT_EQ(s.dialogs.shown.size(), 1u);
    EXPECT_EQ(s.dialogs.shown[0].text,
              "cty ．dat が有りません。\narrl10 ．dat が有りません。\n" +
                  s.folder.strPath.string() +
                  "にコピーして下さい。\n"
                  "後で自分で入手してから必要フォルダにコピー下さい。\n"
                  "常時接続しているインターネット環境があるようでしたら\n"
                  "Ｖｏｒｎｈａｌｅ．ｅｘｅを再起動して、「環境設定」画面にて\n"
                  "「ＭＮＧ検索する為の常時接続しているインターネット環境がある」を\n"
                  "クリックしてレ点を付けて下さい。");
}

TEST(NeedFilesOffer, WithWebAccessAsksAndOnYesOpensTheWindowWithTheMissingRowsTicked)
{
    Start s("OK");
    std::vector<DownloadRow> ticked;
    s.start->setDownloadWindow([&](tools::DataDownloads& window) {
        for (const auto& row : tools::downloadRows()) {
            if (window.row(row.row).tick) {
                ticked.push_back(row.row);
            }
        }
        window.cmdStart();
    });
    s.start->get_need_files1();
    ASSERT_FALSE(s.dialogs.shown.empty());
    EXPECT_EQ(s.dialogs.shown[0].title, "　　下記の必要なファイルがありません！");
    EXPECT_NE(s.dialogs.shown[0].text.find("「は　い」　：　今直ぐにここからダウンロードする。\n"
                                           "「いいえ」　：　後で自分でダウンロードする。"),
              std::string::npos);
    EXPECT_EQ(s.dialogs.shown[0].icon, base::Dialogs::Icon::Question);
    EXPECT_EQ(ticked, (std::vector<DownloadRow>{DownloadRow::Th505api, DownloadRow::Unlha32,
                                                DownloadRow::Cty, DownloadRow::Arrl10}));
    EXPECT_EQ(s.start->callerMark(), "0");
    EXPECT_TRUE(s.start->needFilesAbort());
    EXPECT_EQ(s.options.value("inet_flag"), "OK");
    EXPECT_TRUE(s.storedInetOk());
    // With no home configured, every ticked row failed and the error message followed.
    EXPECT_EQ(s.dialogs.shown.back().title, "　　エラーが発生しました！");
}

TEST(NeedFilesOffer, TheStartStopsAfterTheDownloadWindowAndGoesOnAfterNo)
{
    for (const auto answer : {base::Dialogs::Answer::Yes, base::Dialogs::Answer::No}) {
        Start s("OK");
        for (const char* name :
             {"dxcc_mas.txt", "MNG_Vornhale_full.txt", "Vornhale.rmk1", "Vornhale.rmk2"}) {
            test::writeBytes(s.folder.strPath / name, "x");
        }
        s.options.set("mng_z_full_txt_dir", (s.folder.strPath / "MNG_Vornhale_full.txt").string());
        s.dialogs.answer = answer;
        s.start->setDownloadWindow([](tools::DataDownloads&) {});
        EXPECT_EQ(s.start->Main2_bas_2(), answer == base::Dialogs::Answer::No);
    }
}

TEST(NeedFilesOffer, OnNoTheStartGoesOn)
{
    Start s("OK");
    s.dialogs.answer = base::Dialogs::Answer::No;
    bool opened = false;
    s.start->setDownloadWindow([&](tools::DataDownloads&) { opened = true; });
    s.start->get_need_files1();
    EXPECT_FALSE(opened);
    EXPECT_EQ(s.start->callerMark(), "1");
    EXPECT_FALSE(s.start->needFilesAbort());
}

TEST(NeedFilesOffer, AFrontEndWithoutADownloadWindowAnswersNoUnasked)
{
    Start s("OK");
    s.start->get_need_files1();
    ASSERT_EQ(s.dialogs.shown.size(), 1u);
    EXPECT_EQ(s.dialogs.shown[0].icon, base::Dialogs::Icon::Exclamation);
    EXPECT_NE(s.dialogs.shown[0].text.find("→ 「いいえ」"), std::string::npos);
    EXPECT_EQ(s.start->callerMark(), "1");
    EXPECT_FALSE(s.start->needFilesAbort());
}

TEST(NeedFilesOffer, NothingIsAskedWhenTheFilesAreThere)
{
    Start s("OK");
    test::writeBytes(s.folder.strPath / "CTY.DAT", "x");
    test::writeBytes(s.folder.strPath / "ARRL10.DAT", "x");
    bool opened = false;
    s.start->setDownloadWindow([&](tools::DataDownloads&) { opened = true; });
    EXPECT_TRUE(s.start->get_need_files1().empty());
    EXPECT_TRUE(s.dialogs.shown.empty());
    EXPECT_FALSE(opened);
}
