#include "readers/InputKinds.h"
#include "session/OpenActions.h"

#include <gtest/gtest.h>

using namespace vornhale;
using namespace vornhale::session;

TEST(OpenActions, TheFolderDialogIsTitledWithTheUpperCasedFolderAndItsText)
{
    settings::Options options;
    options.set("all_dir", "/home/ja1zzz/zlog/");
    const OpenAction* a = openActionOf("mnuOpen_all_txt_set");
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->procedure, "FileOpen_all_txt_set");
    EXPECT_EQ(a->dialog, OpenAction::Dialog::Folder);
    EXPECT_EQ(openStartFolder(*a, options), "/home/ja1zzz/zlog/");
    EXPECT_EQ(openDialogTitle(*a, options),
              "/HOME/JA1ZZZ/ZLOG/　の ＊．ａｌｌ　または　＊．ｔｘｔ　 ファイルを  開く ....");
    EXPECT_EQ(a->filter, "テキストファイル(*.all;*.txt)|*.all;*.txt|");
}

TEST(OpenActions, ThePlainDialogsHaveTheirFiltersAndNoStartFolder)
{
    settings::Options options;
    options.set("zlo_dir", "/logs/");
    const OpenAction* plain = openActionOf("FileOpen");
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->menu, "mnuOpen");
    EXPECT_EQ(plain->filter, "ﾃｷｽﾄﾌｧｲﾙ ( *.txt , *.all )|*.txt;*.all");
    EXPECT_EQ(openStartFolder(*plain, options), "");
    EXPECT_EQ(openDialogTitle(*plain, options), "");
    EXPECT_EQ(openActionOf("mnuOpen_z")->filter, "ﾊﾞｲﾅﾘ-ﾌｧｲﾙ ( *.zlo )|*.zlo");
    EXPECT_EQ(openDialogTitle(*openActionOf("mnuOpen_z_set"), options),
              "/LOGS/　の ＊．ｚｌｏ ファイルを  開く ....");
    EXPECT_EQ(openDialogTitle(*openActionOf("mnuOpen_rtcl_log_set_new430"), options),
              "　のＲＴＣＬ ｖｅｒ　４３０．ｌｏｇ ファイルを  開く ....");
}

TEST(OpenActions, EveryKindNamedByAnActionIsAKindOfTheTable)
{
    for (const OpenAction& a : openActions()) {
        if (!a.typeWord.empty()) {
            EXPECT_NE(readers::rowOfTypeWord(a.typeWord), nullptr) << a.menu;
        }
    }
    EXPECT_EQ(openActionOf("mnuSomethingElse"), nullptr);
}
