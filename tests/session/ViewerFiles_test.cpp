#include "readers/OutputNames.h"
#include "session/ViewerFiles.h"
#include "tools/DuplicateList.h"

#include <gtest/gtest.h>

using namespace vornhale;
using session::ViewerWindow;

namespace {

readers::InputState openInput(const std::string& in_name)
{
    readers::InputState in;
    in.in_name = in_name;
    in.names = readers::OutputNames::of(in_name);
    return in;
}

base::ProgramFolder folder()
{
    return base::ProgramFolder::at("/home/op/vh/");
}

} // namespace

TEST(ViewerFiles, TheDuplicateListViewerOpensTheFileTheListWrites)
{
    for (const std::string path : {"/logs/CONTEST.ALL", "/home/op/log.old/test.all",
                                   "/logs/x.2026.all", "C:\\log.v2\\a.ZLO", "/logs/CQ.LOG"}) {
        const readers::InputState in = openInput(path);
        EXPECT_EQ(in.names.dup_name, tools::DuplicateList::dupName(path)) << path;
        EXPECT_EQ(session::viewedFile("mnuDisp_dup", in, folder()),
                  tools::DuplicateList::dupName(path))
            << path;
        EXPECT_EQ(session::viewedFile("＊．ｄｕｐ", in, folder()),
                  tools::DuplicateList::dupName(path));
    }
    EXPECT_EQ(openInput("/home/op/log.old/test.all").names.dup_name, "/home/op/log.dup");
}

TEST(ViewerFiles, EachViewingEntryNamesItsFile)
{
    const readers::InputState all = openInput("/logs/TEST.ALL");
    struct Case
    {
        const char* entry;
        std::string file;
    };
    const Case cases[] = {
        {"mnuDisp_in", "/logs/TEST.ALL"},
        {"cmdDisp_in", "/logs/TEST.ALL"},
        {"入力ﾌｧｲﾙ", "/logs/TEST.ALL"},
        {"mnuDisp_ham_n_new", "/logs/TEST_hn.csv"},
        {"cmdDisp_ham_n_new", "/logs/TEST_hn.csv"},
        {"hamlog_n", "/logs/TEST_hn.csv"},
        {"mnuDisp_con_n_new", "/logs/TEST_cn.csv"},
        {"contest_n", "/logs/TEST_cn.csv"},
        {"mnuDisp_Get_Mng_result", "/logs/TEST.mng_rslt"},
        {"cmdDisp_Get_Mng_result", "/logs/TEST.mng_rslt"},
        {"mnuDisp_z2a", "/logs/TEST_z2a.all"},
        {"z2a表示", "/logs/TEST_z2a.all"},
        {"mnuDisp_zt2a", "/logs/TEST_zt2a.all"},
        {"mnuDisp_za2t", "/logs/TEST_za2t.txt"},
        {"mnuDisp_QSOBank", "/logs/TEST.QSOBank.xml"},
        {"mnuDisp_Vornhale_ini", "/home/op/vh/Vornhale.ini"},
        {"mnuDisp_Vornhale_new_ini", "/home/op/vh/Vornhale_new.ini"},
        {"mnuDisp_Vornhale_Rireki_cfg", "/home/op/vh/Vornhale_Rireki.cfg"},
        {"mnuDisp_Vornhale_rmk1", "/home/op/vh/Vornhale.rmk1"},
        {"mnuDisp_Vornhale_rmk2", "/home/op/vh/Vornhale.rmk2"},
        {"mnuDisp_Readme", "/home/op/vh/README.md"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(session::viewedFile(c.entry, all, folder()), c.file) << c.entry;
    }
    EXPECT_EQ(session::viewedFile("mnuNoSuchEntry", all, folder()), "");
}

TEST(ViewerFiles, TheRtclTextsAreNamedFromTheLogInEitherCase)
{
    const readers::InputState log = openInput("/logs/cq.log");
    EXPECT_EQ(session::viewedFile("mnuDisp_l2t", log, folder()), "/logs/cq_l2z.txt");
    EXPECT_EQ(session::viewedFile("mnuDisp_l2a", log, folder()), "/logs/cq_l2z.all");
    EXPECT_EQ(session::viewedFile("mnuDisp_log2a", log, folder()), "/logs/cq_log2a.all");
    const readers::InputState upper = openInput("/logs/CQ.LOG");
    EXPECT_EQ(session::viewedFile("mnuDisp_log2a", upper, folder()), "/logs/CQ_log2a.all");
    // A log whose name holds no ".log" has no such texts.
    const readers::InputState all = openInput("/logs/TEST.ALL");
    EXPECT_EQ(session::viewedFile("mnuDisp_l2t", all, folder()), "");
}

TEST(ViewerFiles, WithoutAnOpenInputOnlyTheProgramFilesHaveNames)
{
    readers::InputState none;
    none.in_name = "ﾒﾆｭｰより入力ﾌｧｲﾙを指定して下さい。";
    EXPECT_EQ(session::viewedFile("mnuDisp_in", none, folder()), "");
    EXPECT_EQ(session::viewedFile("mnuDisp_dup", none, folder()), "");
    EXPECT_EQ(session::viewedFile("mnuDisp_QSOBank", none, folder()), "");
    EXPECT_EQ(session::viewedFile("mnuDisp_Vornhale_ini", none, folder()),
              "/home/op/vh/Vornhale.ini");
}

TEST(ViewerFiles, EachViewerHasItsTitleAndForm)
{
    EXPECT_EQ(session::viewerTitle(ViewerWindow::frmDisp, "/l/A.ALL", "/l/A_hn.csv"),
              "in : /l/A.ALL        out: /l/A_hn.csv");
    EXPECT_EQ(session::viewerTitle(ViewerWindow::frmDisp2, "/l/A.ALL", "/l/A.ALL"),
              " 入力 ：　/l/A.ALL");
    EXPECT_EQ(session::viewerTitle(ViewerWindow::frmDisp3, "", "/l/A_za2t.txt"),
              " 出力 TXT：　/l/A_za2t.txt");
    EXPECT_EQ(session::viewerTitle(ViewerWindow::frmDisp4, "", "/l/A_zt2a.all"),
              " 出力 ALL：　/l/A_zt2a.all");
    EXPECT_EQ(session::viewerForm(ViewerWindow::frmDisp), "frmDisp");
    EXPECT_EQ(session::viewerForm(ViewerWindow::frmDisp3), "frmDisp3");
}
