// The main window as an operator sees it: every control, caption, tool-tip, tab and menu
// entry, and the option rules running through the model when the controls are used.

#include "UiTestSupport.h"
#include "session/OptionCatalog.h"
#include "session/OptionModel.h"
#include "session/Session.h"
#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QToolBar>
#include <memory>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

/// A program folder prepared to start straight into the main window, and the window.
struct Started : test::StartedProgram
{
    using StartedProgram::StartedProgram;
    /// Clicks a control as an operator does: its tab is shown first.
    void click(const QString& name)
    {
        QWidget* w = find<QWidget>(name);
        QVERIFY2(w != nullptr, qPrintable(name));
        test::showTabOf(w);
        QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(8, w->height() / 2));
    }
    std::string newIni(std::string_view key)
    {
        return settings::ProfileFile(dir / "home" / "Vornhale_new.ini")
            .read("Vornhale_new.ini", key);
    }
};

void setNewIni(const fs::path& home, std::string_view key, std::string_view value)
{
    settings::ProfileFile file(home / "Vornhale_new.ini");
    file.write("Vornhale_new.ini", key, value);
    QVERIFY(file.save());
}

} // namespace

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsEveryOptionOfTheCatalogueWithItsCaptionAndTip();
    void showsTheTabsOfBothGroups();
    void showsTheStartStatusProgressAndStop();
    void showsTheWholeMenuTreeWithItsHiddenEntries();
    void showsTheToolBarWithItsTips();
    void showsTheResultGridWithItsSevenRows();
    void showsTheLayoutRowPaletteAndCells();
    void titlesTheWindowWithVersionAndPeriod();
    void aTickClickedIsStoredByTheIniButton();
    void checkThreeAndFourExcludeEachOtherAndAreStoredAtOnce();
    void changingTheInputZoneResetsTheConversion();
    void theNoSortMemberMovesWhenTheSplitIsChosen();
    void aStoredJapanTimeConversionStaysOnThoughDisabled();
    void withoutInternetTheWebTickIsOffAndWrittenBackOff();
    void onlyTheFirstCharacterOfAMarkIsKeptAndABlankMarkIsLost();
    void anEmptyBandTickShowsOnInBlack();
    void aChangeOfAnOptionClearsTheStatusLine();
    void theStartTabsFollowTheirTicks();
    void closingTheWindowRunsTheOrderlyEnd();
    void theListOfControlsIsWritten();
};

void MainWindowTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void MainWindowTest::showsEveryOptionOfTheCatalogueWithItsCaptionAndTip()
{
    Started s;
    for (const session::OptionEntry& e : session::OptionCatalog::all()) {
        const QString name = ui::objectNameOf(e.controlName());
        switch (e.kind) {
        case session::OptionKind::Tick:
        case session::OptionKind::GroupMember: {
            auto* b = s.find<QAbstractButton>(name);
            QVERIFY2(b != nullptr, qPrintable(name));
            if (name != QStringLiteral("Option01_0")) {
                QCOMPARE(b->text(), qs(e.caption));
            }
            if (!e.toolTip.empty()) {
                QCOMPARE(b->toolTip(), qs(e.toolTip));
            }
            break;
        }
        case session::OptionKind::Text: {
            QWidget* w = s.find<QLineEdit>(name);
            if (w == nullptr) {
                w = s.find<QComboBox>(name);
            }
            QVERIFY2(w != nullptr, qPrintable(name));
            if (!e.toolTip.empty()) {
                QCOMPARE(w->toolTip(), qs(e.toolTip));
            }
            break;
        }
        case session::OptionKind::Button: {
            auto* b = s.find<QPushButton>(name);
            QVERIFY2(b != nullptr, qPrintable(name));
            QCOMPARE(b->text(), qs(e.caption));
            break;
        }
        case session::OptionKind::MenuTick: {
            auto* a = s.find<QAction>(name);
            QVERIFY2(a != nullptr, qPrintable(name));
            QCOMPARE(a->text(), qs(e.caption));
            QVERIFY(a->isCheckable());
            break;
        }
        }
    }
    // Frames carry the captions of their options.
    QCOMPARE(s.find<QGroupBox>(QStringLiteral("Frame5"))->title(),
             QStringLiteral(" UTC <--> JST の変換 "));
    QCOMPARE(s.find<QGroupBox>(QStringLiteral("Frame9"))->title(), QStringLiteral(" Dupe List "));
    QCOMPARE(s.find<QLabel>(QStringLiteral("Label40"))->text(),
             QStringLiteral("　該当する局にはNo QSL　　参照する入力ﾌｧｲﾙ"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdCl_rmk1"))->text(), QStringLiteral("消す"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdCheck_bak_qso_mas"))->toolTip(),
             QStringLiteral("bak_qso.mas＊　ファイルのサイズ、件数の確認が出来ます。"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("Label36"))->text(), QStringLiteral("入力件数"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("Label2"))->text(), QStringLiteral("　入力ファイル"));
}

void MainWindowTest::showsTheTabsOfBothGroups()
{
    Started s;
    auto* first = s.find<QTabWidget>(QStringLiteral("SSTab2"));
    auto* second = s.find<QTabWidget>(QStringLiteral("SSTab1"));
    QVERIFY(first && second);
    const QStringList firstTabs = {QStringLiteral("入力ﾌｧｲﾙ"), QStringLiteral("Sort/Zone"),
                                   QStringLiteral("memo単複"), QStringLiteral("Province")};
    const QStringList secondTabs = {QStringLiteral("No QSL"), QStringLiteral("MNG検索"),
                                    QStringLiteral("結 果"), QStringLiteral("qth_mas")};
    QCOMPARE(first->count(), 4);
    QCOMPARE(second->count(), 4);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(first->tabText(i), firstTabs[i]);
        QCOMPARE(second->tabText(i), secondTabs[i]);
    }
    // Each start-tab member stands on its own tab, each start tick on its tab.
    for (int i = 0; i < 4; ++i) {
        QVERIFY(first->widget(i)->findChild<QRadioButton*>(QStringLiteral("Option5_%1").arg(i)));
    }
    QVERIFY(second->widget(0)->findChild<QCheckBox*>(QStringLiteral("Check7")));
    QVERIFY(second->widget(1)->findChild<QCheckBox*>(QStringLiteral("Check8")));
    QVERIFY(second->widget(2)->findChild<QCheckBox*>(QStringLiteral("Check11")));
    QVERIFY(second->widget(1)->findChild<QPushButton*>(QStringLiteral("cmdStop")));
    QVERIFY(second->widget(3)->findChild<QGroupBox*>(QStringLiteral("Frame15")));
    QVERIFY(first->widget(3)->findChild<QLabel*>(QStringLiteral("lblMas_dat_zlo")));
}

void MainWindowTest::showsTheStartStatusProgressAndStop()
{
    Started s;
    auto* start = s.find<QPushButton>(QStringLiteral("cmdStart"));
    QVERIFY(start);
    QCOMPARE(start->text(), QStringLiteral("変 換"));
    // No input yet: the start waits, and the input label asks for a file in red.
    QVERIFY(!start->isEnabled());
    auto* input = s.find<QLabel>(QStringLiteral("lblIn_name"));
    QCOMPARE(input->text(), QStringLiteral("ﾒﾆｭｰより入力ﾌｧｲﾙを指定して下さい。"));
    QCOMPARE(ui::captionColour(input), base::Colour::Red);
    QVERIFY(s.find<QLabel>(QStringLiteral("lblShori")));
    QVERIFY(s.find<QProgressBar>(QStringLiteral("ProgressBar1")));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdStop"))->text(), QStringLiteral("Stop"));
}

void MainWindowTest::showsTheWholeMenuTreeWithItsHiddenEntries()
{
    Started s;
    const std::pair<const char*, const char*> entries[] = {
        {"mnuOpen", "zlogのﾃﾞｰﾀ ( ＊．ALL ，＊．TXT ) ﾌｧｲﾙを選ぶ"},
        {"mnuOpen_all_txt_set", "               ( ＊．ALL ，＊．TXT )  を 指定フォルダから選ぶ"},
        {"mnuOpen_z", "               ( ＊．ZLO ) ﾌｧｲﾙを選ぶ"},
        {"mnuOpen_z_set", "               ( ＊．ZLO ) を 指定フォルダから選ぶ"},
        {"mnu_rtcl_log2txt",
         "RTCLのデータ ( ＊．LOG ) を指定フォルダから選ぶ （ ZLOG の ＊．TXT 作成のみ ）"},
        {"mnu_rtcl_log2all_new",
         "RTCLのデータ ( ＊．LOG ) を指定フォルダから選ぶ （ ZLOG の ＊．ALL 作成のみ ）"},
        {"mnu_rtcl_new4_", "RTCL 新  　(　ver 4.00 以降　)    zLog への変換"},
        {"mnu_rtcl_new430_", "RTCL 新  　(　ver 4.30 以降　)    zLog への変換"},
        {"mnuOpen_Cabrillo", "Cabrillo  ( ＊．ｌｏｇ　，　＊．ｃｂｒ　，＊．ｔｘｔ ) ﾌｧｲﾙを選ぶ"},
        {"mnuOpen_ADIF", "ADIF     ( ＊．ａｄｉ ) ﾌｧｲﾙを選ぶ"},
        {"mnuMDB_dxlog", "すべてのデータ ： DXLOG"},
        {"mnuMDB_CurrentContest", "CurrentContest"},
        {"mnuOpen_Ctestwin", "Ctestwin ( ＊．lg8 )ﾌｧｲﾙ を選ぶ"},
        {"mnuMake_z2a", "＊．.zLo  => ＊．all 作成 "},
        {"mnuDisp_z2a", "＊．.zLo  => ＊．all 表示"},
        {"makeIni", "ini 作成"},
        {"mnuConfig", "環境設定"},
        {"mnuDisp_in", "入力ﾌｧｲﾙ"},
        {"mnuDisp_con_n_new", "hamlog_c ．csv"},
        {"mnuDisp_ham_n_new", "hamlog_h ．csv"},
        {"mnuDisp_Get_Mng_result", "Get_Mng_result"},
        {"mnuDisp_dup", "          * ．dup"},
        {"mnuDisp_l2t", "      *_l2z ．txt"},
        {"mnuDisp_l2a", "      *_l2z ．all"},
        {"mnuDisp_zt2a", "    *_zt2a ．all"},
        {"mnuDisp_za2t", "    *_za2t ．txt"},
        {"mnuDisp_log2a", "    *_log2a ．all"},
        {"mnuDisp_Vornhale_ini", "Vornhale ．ini"},
        {"mnuDisp_Vornhale_new_ini", "Vornhale_new ．ini"},
        {"mnuDisp_Vornhale_Rireki_cfg", "Vornhale_Rireki ．cfg"},
        {"mnuDisp_Vornhale_rmk1", "Vornhale ．rmk1"},
        {"mnuDisp_Vornhale_rmk2", "Vornhale ．rmk2"},
        {"mnuDisp_QSOBank", "QSOBank"},
        {"mnuEdit_Rmks", "Rmks 履歴"},
        {"mnuDownload", "Download"},
        {"mnuDisp_Readme", "ReadMe"},
        {"mnuQSOBank", "QSOBank"},
        {"mnuGet_MNG", "MNG 取得"},
        {"mnuGet_Entity", "get_Entity"},
        {"mnuMode", "Mode"},
    };
    for (const auto& [name, caption] : entries) {
        auto* a = s.find<QAction>(QString::fromUtf8(name));
        QVERIFY2(a != nullptr, name);
        QCOMPARE(a->text(), QString::fromUtf8(caption));
        QVERIFY2(a->isVisible(), name);
    }
    for (const char* hidden :
         {"mnuGet_Value", "mnuMake_adif2a", "mnuVornhale_hlp", "mnuardx_sep", "mnuMNG"}) {
        auto* a = s.find<QAction>(QString::fromUtf8(hidden));
        QVERIFY2(a != nullptr, hidden);
        QVERIFY2(!a->isVisible(), hidden);
    }
    const std::pair<const char*, const char*> menus[] = {
        {"mnuFile", "ファイル"},
        {"mnu_rtcl_old", "RTCL 旧  　(　ver 3.00 より前　)"},
        {"mnu_rtcl_new", "RTCL 新  　(　ver 3.00 以降　)"},
        {"mnu_rtcl_new4", "RTCL 新  　(　ver 4.00 以降　)"},
        {"mnu_rtcl_new430", "RTCL 新  　(　ver 4.30 以降　)"},
        {"mnuOpen_MDB", "N1NN Logger ( ＊．mdb )ﾌｧｲﾙ を選ぶ"},
        {"mnuDisp", "表示"},
        {"mnuDispHelp", "Help"},
    };
    for (const auto& [name, caption] : menus) {
        auto* m = s.find<QMenu>(QString::fromUtf8(name));
        QVERIFY2(m != nullptr, name);
        QCOMPARE(m->title(), QString::fromUtf8(caption));
    }
    // The top level reads in the order of the menu bar.
    QStringList top;
    for (QAction* a : s.window().menuBar()->actions()) {
        if (a->isVisible()) {
            top << a->text();
        }
    }
    QCOMPARE(top, (QStringList{QStringLiteral("ファイル"), QStringLiteral("ini 作成"),
                               QStringLiteral("環境設定"), QStringLiteral("表示"),
                               QStringLiteral("Rmks 履歴"), QStringLiteral("Download"),
                               QStringLiteral("Help"), QStringLiteral("QSOBank"),
                               QStringLiteral("MNG 取得"), QStringLiteral("get_Entity"),
                               QStringLiteral("Mode")}));
}

void MainWindowTest::showsTheToolBarWithItsTips()
{
    Started s;
    auto* bar = s.find<QToolBar>(QStringLiteral("Toolbar1"));
    QVERIFY(bar);
    const std::pair<const char*, const char*> tools[] = {
        {"開く", "zLog の　拡張子 ALL or TXT 入力ﾌｧｲﾙを指定します。"},
        {"開 z", "zLog の　拡張子 ZLO 入力ﾌｧｲﾙを指定します。"},
        {"ini 作成", "現在の設定状況をVornhale_new．iniに保存します"},
        {"変換", "ﾌﾟﾛｸﾞﾗﾑの実行を開始します"},
        {"入力ﾌｧｲﾙ", "入力ﾌｧｲﾙの表示"},
        {"z2a作成", "zLo ﾊﾞｲﾅﾘｰ･ﾌｧｲﾙをALL形式に変換する。"},
        {"z2a表示", "z2aで作成したALL形式ﾌｧｲﾙを表示する。"},
        {"contest_n", "contest_nの表示"},
        {"hamlog_n", "hamlog_nの表示"},
        {"＊．ｄｕｐ", "*.dupの表示"},
        {"終了", "ﾌﾟﾛｸﾞﾗﾑを終了します"},
    };
    const QList<QAction*> actions = bar->actions();
    QCOMPARE(actions.size(), 11);
    for (int i = 0; i < 11; ++i) {
        QCOMPARE(actions[i]->text(), QString::fromUtf8(tools[i].first));
        QCOMPARE(actions[i]->toolTip(), QString::fromUtf8(tools[i].second));
    }
    // Without an input the start and the viewers of an input wait.
    QVERIFY(!s.find<QAction>(QStringLiteral("変換"))->isEnabled());
    QVERIFY(!s.find<QAction>(QStringLiteral("入力ﾌｧｲﾙ"))->isEnabled());
}

void MainWindowTest::showsTheResultGridWithItsSevenRows()
{
    Started s;
    auto* grid = s.find<QTableWidget>(QStringLiteral("MSFlexGrid1"));
    QVERIFY(grid);
    QCOMPARE(grid->rowCount(), 7);
    QCOMPARE(grid->columnCount(), 3);
    const QStringList captions = {
        QStringLiteral(" 今回の処理数は"), QStringLiteral(" 複数の局の数は"),
        QStringLiteral(" 単数の局の数は"), QStringLiteral(" 複 ・単の合計数"),
        QStringLiteral(" No QSL 局の数"),  QStringLiteral(" 転送先 Ｍ の数"),
        QStringLiteral(" Name 取得の数")};
    for (int r = 0; r < 7; ++r) {
        QCOMPARE(grid->item(r, 0)->text(), captions[r]);
        QCOMPARE(grid->item(r, 2)->text(), QStringLiteral("件"));
        QCOMPARE(grid->item(r, 1)->foreground().color(), ui::colourOf(base::Colour::Blue));
        QCOMPARE(grid->rowHeight(r), 500 / 15);
    }
    QCOMPARE(grid->columnWidth(0), 1900 / 15);
    QCOMPARE(grid->columnWidth(1), 800 / 15);
    QCOMPARE(grid->columnWidth(2), 400 / 15);
    const std::pair<const char*, const char*> buttons[] = {
        {"cmdDisp_ham_n_new", "出力ﾌｧｲﾙ　2"},
        {"cmdDisp_con_n_new", "出力ﾌｧｲﾙ　１"},
        {"cmdDisp_in", "入力ﾌｧｲﾙ"},
        {"cmdDisp_Get_Mng_result", "Get Mng result"},
        {"cmdDisp_Henkan_Result", "変換結果ファイル"}};
    for (const auto& [name, caption] : buttons) {
        auto* b = s.find<QPushButton>(QString::fromUtf8(name));
        QVERIFY2(b, name);
        QCOMPARE(b->text(), QString::fromUtf8(caption));
    }
    QVERIFY(!s.find<QPushButton>(QStringLiteral("cmdDisp_Henkan_Result"))->isEnabled());
}

void MainWindowTest::showsTheLayoutRowPaletteAndCells()
{
    Started s;
    const QStringList palette = {
        QStringLiteral("MNG"),   QStringLiteral("$DX"),  QStringLiteral("Calls"),
        QStringLiteral("ｺﾝﾃｽﾄ"), QStringLiteral("memo"), QStringLiteral("memo="),
        QStringLiteral("OP"),    QStringLiteral("OP %"), QStringLiteral("IOTA"),
        QStringLiteral("Zone"),  QStringLiteral("州名"), QStringLiteral("Rcvd"),
        QStringLiteral("Rmks1"), QStringLiteral("Rmks2")};
    for (int i = 0; i < 14; ++i) {
        auto* b = s.find<QPushButton>(QStringLiteral("Command1_%1").arg(i));
        QVERIFY(b);
        QCOMPARE(b->text(), palette[i]);
    }
    // "$DX" is not placed by hand.
    QVERIFY(!s.find<QPushButton>(QStringLiteral("Command1_1"))->isEnabled());
    for (int r = 1; r <= 2; ++r) {
        for (int c = 0; c < 12; ++c) {
            QVERIFY(s.find<QLabel>(QStringLiteral("lblRmks%1_%2").arg(r).arg(c)));
        }
    }
    QCOMPARE(s.find<QLabel>(QStringLiteral("Label5"))->text(), QStringLiteral("Rmks1"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("Label6"))->text(), QStringLiteral("Rmks2"));
    QCOMPARE(s.find<QGroupBox>(QStringLiteral("layoutFrame"))->title(), QStringLiteral(" 配  置 "));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdAll_Sort"))->text(), QStringLiteral("整列"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdAll_Sort"))->toolTip(),
             QStringLiteral("指定の途中の空白を除き左に寄せます。"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdAll_Redo"))->text(), QStringLiteral("戻す"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdAll_Redo"))->toolTip(),
             QStringLiteral("元の配置状態に戻します。"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdKetasu"))->text(), QStringLiteral("桁数"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdKetasu"))->toolTip(),
             QStringLiteral("桁数の変更、履歴の保存をします。"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdRireki"))->text(), QStringLiteral("履歴"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdRireki"))->toolTip(),
             QStringLiteral("項目の並び順の履歴から選択します。"));
}

void MainWindowTest::titlesTheWindowWithVersionAndPeriod()
{
    Started s;
    const QString title = s.window().windowTitle();
    QVERIFY2(title.contains(QStringLiteral("5.44")), qPrintable(title));
    QVERIFY2(title.contains(QStringLiteral("@Tolmer")), qPrintable(title));
    QCOMPARE(title, qs(s.program->session()->optionModel()->windowTitle()));
}

void MainWindowTest::aTickClickedIsStoredByTheIniButton()
{
    Started s;
    auto* dupe = s.find<QCheckBox>(QStringLiteral("Check06"));
    QVERIFY(!dupe->isChecked());
    s.click(QStringLiteral("Check06"));
    QVERIFY(dupe->isChecked());
    QCOMPARE(ui::captionColour(dupe), base::Colour::Blue);
    s.find<QAction>(QStringLiteral("ini 作成"))->trigger();
    QCOMPARE(s.newIni("Check06"), std::string("1"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblShori"))->text(), QStringLiteral("　ini 作成完了"));
}

void MainWindowTest::checkThreeAndFourExcludeEachOtherAndAreStoredAtOnce()
{
    Started s;
    auto* three = s.find<QCheckBox>(QStringLiteral("Check3"));
    auto* four = s.find<QCheckBox>(QStringLiteral("Check4"));
    // With the history unused the replacements wait.
    QVERIFY(!three->isEnabled());
    s.click(QStringLiteral("Option04_2"));
    QVERIFY(three->isEnabled());
    s.click(QStringLiteral("Check3"));
    QCOMPARE(s.newIni("Check3"), std::string("1"));
    s.click(QStringLiteral("Check4"));
    QVERIFY(four->isChecked());
    QVERIFY(!three->isChecked());
    QCOMPARE(s.newIni("Check3"), std::string("0"));
    QCOMPARE(s.newIni("Check4"), std::string("1"));
    QCOMPARE(s.newIni("Option04"), std::string("2"));
    s.click(QStringLiteral("Check4"));
    QVERIFY(!four->isChecked() && !three->isChecked());
}

void MainWindowTest::changingTheInputZoneResetsTheConversion()
{
    Started s;
    s.click(QStringLiteral("Option05_1"));
    QVERIFY(s.find<QRadioButton>(QStringLiteral("Option05_1"))->isChecked());
    s.click(QStringLiteral("Option2_1"));
    QVERIFY(s.find<QRadioButton>(QStringLiteral("Option2_1"))->isChecked());
    QVERIFY(!s.find<QRadioButton>(QStringLiteral("Option2_0"))->isChecked());
    QVERIFY(s.find<QRadioButton>(QStringLiteral("Option05_0"))->isChecked());
    QVERIFY(!s.find<QRadioButton>(QStringLiteral("Option05_1"))->isChecked());
    // A conversion into the zone the log is in cannot be chosen.
    QVERIFY(!s.find<QRadioButton>(QStringLiteral("Option05_1"))->isEnabled());
    QVERIFY(!s.find<QRadioButton>(QStringLiteral("Option05_3"))->isEnabled());
    QVERIFY(s.find<QRadioButton>(QStringLiteral("Option05_2"))->isEnabled());
    QCOMPARE(s.newIni("Option05"), std::string("0"));
}

void MainWindowTest::theNoSortMemberMovesWhenTheSplitIsChosen()
{
    Started s;
    auto* noSort = s.find<QRadioButton>(QStringLiteral("Option02_4"));
    QVERIFY(!noSort->isEnabled());
    s.click(QStringLiteral("Option08_1"));
    QVERIFY(noSort->isEnabled());
    s.click(QStringLiteral("Option02_4"));
    QVERIFY(noSort->isChecked());
    s.click(QStringLiteral("Option08_0"));
    QVERIFY(!noSort->isChecked());
    QVERIFY(!noSort->isEnabled());
    QVERIFY(s.find<QRadioButton>(QStringLiteral("Option02_0"))->isChecked());
    s.find<QAction>(QStringLiteral("ini 作成"))->trigger();
    QCOMPARE(s.newIni("Option02"), std::string("0"));
}

void MainWindowTest::aStoredJapanTimeConversionStaysOnThoughDisabled()
{
    Started s([](const fs::path& home) {
        setNewIni(home, "Option2", "1");
        setNewIni(home, "Option05", "3");
    });
    auto* forJa = s.find<QRadioButton>(QStringLiteral("Option05_3"));
    QVERIFY(forJa->isChecked());
    QVERIFY(!forJa->isEnabled());
    QVERIFY(!s.find<QRadioButton>(QStringLiteral("Option05_0"))->isChecked());
    QVERIFY(s.find<QRadioButton>(QStringLiteral("Option2_1"))->isChecked());
}

void MainWindowTest::withoutInternetTheWebTickIsOffAndWrittenBackOff()
{
    Started s([](const fs::path& home) { setNewIni(home, "Check18", "1"); });
    auto* web = s.find<QCheckBox>(QStringLiteral("Check18"));
    QVERIFY(!web->isChecked());
    QVERIFY(!web->isEnabled());
    QVERIFY(!s.find<QAction>(QStringLiteral("mnuGet_MNG"))->isEnabled());
    QVERIFY(!s.find<QAction>(QStringLiteral("mnuDownload"))->isEnabled());
    s.find<QAction>(QStringLiteral("ini 作成"))->trigger();
    QCOMPARE(s.newIni("Check18"), std::string("0"));
}

void MainWindowTest::onlyTheFirstCharacterOfAMarkIsKeptAndABlankMarkIsLost()
{
    Started s;
    auto* route = s.find<QLineEdit>(QStringLiteral("txtQSL_Q"));
    QCOMPARE(route->text(), QStringLiteral("J"));
    test::showTabOf(route);
    route->selectAll();
    QTest::keyClicks(route, QStringLiteral("BX"));
    QCOMPARE(route->text(), QStringLiteral("B"));
    QCOMPARE(s.newIni("QSL_Q"), std::string("B"));
    auto* sent = s.find<QLineEdit>(QStringLiteral("txtQSL_S"));
    sent->selectAll();
    QTest::keyClicks(sent, QStringLiteral(" "));
    QCOMPARE(sent->text(), QStringLiteral(" "));
    // The writer trims: the blank mark does not survive the file.
    QCOMPARE(s.newIni("QSL_S"), std::string(""));
}

void MainWindowTest::anEmptyBandTickShowsOnInBlack()
{
    Started s([](const fs::path& home) { setNewIni(home, "Check16", ""); });
    auto* band = s.find<QCheckBox>(QStringLiteral("Check16"));
    QVERIFY(band->isChecked());
    QCOMPARE(ui::captionColour(band), base::Colour::Black);
}

void MainWindowTest::aChangeOfAnOptionClearsTheStatusLine()
{
    Started s;
    s.find<QAction>(QStringLiteral("ini 作成"))->trigger();
    auto* status = s.find<QLabel>(QStringLiteral("lblShori"));
    QVERIFY(!status->text().isEmpty());
    s.click(QStringLiteral("Check12"));
    QCOMPARE(status->text(), QString());
}

void MainWindowTest::theStartTabsFollowTheirTicks()
{
    Started s([](const fs::path& home) {
        setNewIni(home, "disp_top_SSTab", "2");
        setNewIni(home, "Option5", "3");
    });
    QCOMPARE(s.window().secondTabs()->currentIndex(), 2);
    QCOMPARE(s.window().firstTabs()->currentIndex(), 3);
    QVERIFY(s.find<QCheckBox>(QStringLiteral("Check11"))->isChecked());
    s.click(QStringLiteral("Check8"));
    QVERIFY(!s.find<QCheckBox>(QStringLiteral("Check11"))->isChecked());
    QVERIFY(!s.find<QCheckBox>(QStringLiteral("Check7"))->isChecked());
    s.find<QAction>(QStringLiteral("ini 作成"))->trigger();
    QCOMPARE(s.newIni("disp_top_SSTab"), std::string("1"));
}

void MainWindowTest::closingTheWindowRunsTheOrderlyEnd()
{
    Started s;
    const fs::path home = s.dir / "home";
    fs::remove(home / "Vornhale.ini");
    s.window().close();
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblShori"))->text(),
             QStringLiteral("　　　　終了処理中．．．．．．"));
    QVERIFY(fs::exists(home / "Vornhale.ini"));
    const settings::ProfileFile positions(home / "Vornhale_posi.ini");
    QVERIFY(!positions.read("Position_Vornhale", "Width").empty());
    QCOMPARE(s.endedWith, -1);
}

void MainWindowTest::theListOfControlsIsWritten()
{
    Started s;
    s.window().mnuGet_Value_Click();
    const auto lines = test::readSjisLines(s.dir / "home" / "Controls.lst_0");
    QVERIFY(!lines.empty());
    QCOMPARE(lines.front(), std::string("Name ,Caption , Index , Value"));
    bool found = false;
    for (const std::string& line : lines) {
        found = found || line == "Check06 ,作成する , 0 , 0" || line == "Check06 ,作成する ,  , 0";
    }
    QVERIFY(found);
}

QTEST_MAIN(MainWindowTest)
#include "MainWindow_test.moc"
