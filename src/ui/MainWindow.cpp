#include "ui/MainWindow.h"

#include "base/FailurePath.h"
#include "engine/ResultGrid.h"
#include "failure/Failure.h"
#include "manager/WebManagerSearch.h"
#include "net/Http.h"
#include "readers/InputKinds.h"
#include "readers/ZloReader.h"
#include "session/InputDisplay.h"
#include "session/OpenActions.h"
#include "session/OptionCatalog.h"
#include "session/OptionModel.h"
#include "session/Session.h"
#include "settings/LayoutModel.h"
#include "settings/SettingsFiles.h"
#include "settings/WindowPositions.h"
#include "text/LineFile.h"
#include "ui/ConfigDialog.h"
#include "ui/ConversionRunner.h"
#include "ui/DateDialog.h"
#include "ui/DownloadDialog.h"
#include "ui/FileChooser.h"
#include "ui/KetasuDialog.h"
#include "ui/GetMngDialog.h"
#include "ui/LayoutRow.h"
#include "ui/ModeDialog.h"
#include "ui/OptionBinder.h"
#include "ui/QtDialogs.h"
#include "ui/QtRunObserver.h"
#include "ui/RirekiSelDialog.h"
#include "ui/RmksSelDialog.h"
#include "ui/RtclTextMenus.h"
#include "ui/RtclV4Dialog.h"
#include "ui/ToolActions.h"
#include "ui/ViewerActions.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTabWidget>
#include <QTableWidget>
#include <QThread>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <thread>

namespace vornhale::ui {
namespace {

namespace fs = std::filesystem;
using base::Colour;

// The frame or label caption the catalogue keeps for an option.
QString frameCaption(std::string_view name, int member = -1)
{
    const session::OptionEntry* e = session::OptionCatalog::find(name, member);
    return e != nullptr ? qs(e->frame) : QString();
}

void addStretchRow(QVBoxLayout* layout)
{
    layout->addStretch(1);
}

} // namespace

MainWindow::MainWindow(session::Session& session, FileChooser& chooser, QtDialogs& dialogs,
                       QWidget* parent)
    : QMainWindow(parent), m_session(session), m_model(*session.optionModel()),
      m_layout(*session.layoutModel()), m_chooser(chooser), m_dialogs(dialogs),
      m_programEnd([](int code) { std::_Exit(code); })
{
    setObjectName(QStringLiteral("Vornhale"));
    m_dialogs.setWindow(this);
    m_binder = new OptionBinder(m_model, this);
    m_observer = new QtRunObserver(this);
    m_runner = new ConversionRunner(m_session, *m_observer, this);

    // The changes a run makes to its options reach the store on this thread.
    m_session.onRunChange([this](std::string_view name, const std::string& value) {
        if (QThread::currentThread() == thread()) {
            m_session.options().set(name, value);
            return;
        }
        const std::string key(name);
        QMetaObject::invokeMethod(
            this, [this, key, value] { m_session.options().set(key, value); },
            Qt::QueuedConnection);
    });

    buildMenus();
    buildToolBar();
    setCentralWidget(buildCentre());

    connect(m_observer, &QtRunObserver::statusChanged, this, &MainWindow::showStatus);
    connect(m_observer, &QtRunObserver::progressRangeChanged, this,
            [this](long maximum) { m_progress->setRange(0, static_cast<int>(maximum)); });
    connect(m_observer, &QtRunObserver::progressChanged, this,
            [this](long value) { m_progress->setValue(static_cast<int>(value)); });
    connect(m_observer, &QtRunObserver::labelChanged, this, &MainWindow::showRunLabel);
    connect(m_observer, &QtRunObserver::counterChanged, this, &MainWindow::showCounter);
    connect(m_runner, &ConversionRunner::finished, this, &MainWindow::conversionEnded);

    m_binder->label(m_status, "lblShori");
    connect(m_binder, &OptionBinder::userAction, this, [this] { m_binder->refresh("Vornhale"); });
    m_binder->refreshAll();
    setWindowTitle(qs(m_model.windowTitle()));
    m_tab2->setCurrentIndex(std::max(0, m_model.startTabFirst()));
    m_tab1->setCurrentIndex(std::max(0, m_model.startTabSecond()));
    showInput();
    restorePosition();
}

MainWindow::~MainWindow()
{
    m_session.onRunChange([this](std::string_view name, const std::string& value) {
        m_session.options().set(name, value);
    });
}

// ---- Small builders -----------------------------------------------------------------------

QCheckBox* MainWindow::tickBox(std::string_view name)
{
    auto* box = new QCheckBox;
    m_binder->tick(box, name);
    return box;
}

QRadioButton* MainWindow::memberButton(std::string_view group, int index)
{
    auto* button = new QRadioButton;
    m_binder->member(button, group, index);
    return button;
}

QGroupBox* MainWindow::frame(std::string_view name, const QString& title)
{
    auto* box = new QGroupBox(title);
    m_binder->frame(box, name);
    return box;
}

QLabel* MainWindow::fixedLabel(const QString& name, const QString& caption)
{
    auto* label = new QLabel(caption);
    label->setObjectName(name);
    return label;
}

QLabel* MainWindow::modelLabel(std::string_view name)
{
    auto* label = new QLabel;
    m_binder->label(label, name);
    return label;
}

QLineEdit* MainWindow::textBox(std::string_view name)
{
    auto* box = new QLineEdit;
    m_binder->text(box, name);
    return box;
}

QPushButton* MainWindow::commandButton(std::string_view name, const QString& caption,
                                       const QString& toolTip, std::function<void()> extra)
{
    auto* button = new QPushButton(caption);
    if (!toolTip.isEmpty()) {
        button->setToolTip(toolTip);
    }
    m_binder->button(button, name, std::move(extra));
    return button;
}

QAction* MainWindow::menuEntry(QMenu* menu, std::string_view name, const QString& caption,
                               std::function<void()> handler, bool hidden)
{
    auto* action = new QAction(caption, this);
    action->setObjectName(qs(name));
    menu->addAction(action);
    m_binder->action(action, name, std::move(handler));
    if (hidden) {
        action->setVisible(false);
    }
    return action;
}

// ---- Menus and tool bar -------------------------------------------------------------------

void MainWindow::buildMenus()
{
    QMenuBar* bar = menuBar();
    auto open = [this](const char* menu) { return [this, menu] { openBy(menu); }; };

    QMenu* file = bar->addMenu(QStringLiteral("ファイル"));
    file->setObjectName(QStringLiteral("mnuFile"));
    menuEntry(
        file, "mnuGet_Value", QStringLiteral("Get_Value"), [this] { mnuGet_Value_Click(); }, true);
    menuEntry(file, "mnuOpen", QStringLiteral("zlogのﾃﾞｰﾀ ( ＊．ALL ，＊．TXT ) ﾌｧｲﾙを選ぶ"),
              open("mnuOpen"));
    menuEntry(file, "mnuOpen_all_txt_set",
              QStringLiteral("               ( ＊．ALL ，＊．TXT )  を 指定フォルダから選ぶ"),
              open("mnuOpen_all_txt_set"));
    menuEntry(file, "mnuOpen_z", QStringLiteral("               ( ＊．ZLO ) ﾌｧｲﾙを選ぶ"),
              open("mnuOpen_z"));
    menuEntry(file, "mnuOpen_z_set",
              QStringLiteral("               ( ＊．ZLO ) を 指定フォルダから選ぶ"),
              open("mnuOpen_z_set"));
    file->addSeparator()->setObjectName(QStringLiteral("mnuTmp0"));

    const QString log2txt = QStringLiteral(
        "RTCLのデータ ( ＊．LOG ) を指定フォルダから選ぶ （ ZLOG の ＊．TXT 作成のみ ）");
    const QString log2all = QStringLiteral(
        "RTCLのデータ ( ＊．LOG ) を指定フォルダから選ぶ （ ZLOG の ＊．ALL 作成のみ ）");
    const QString openLog = QStringLiteral("RTCLのデータ ( ＊．LOG ) を指定フォルダから選ぶ");
    QMenu* rtclOld = file->addMenu(QStringLiteral("RTCL 旧  　(　ver 3.00 より前　)"));
    rtclOld->setObjectName(QStringLiteral("mnu_rtcl_old"));
    menuEntry(rtclOld, "mnuOpen_rtcl_log_set", openLog, open("mnuOpen_rtcl_log_set"));
    menuEntry(rtclOld, "mnu_rtcl_log2txt", log2txt, [this] { rtclText(false, false); });
    menuEntry(rtclOld, "mnu_rtcl_log2all", log2all, [this] { rtclText(false, true); });
    QMenu* rtclNew = file->addMenu(QStringLiteral("RTCL 新  　(　ver 3.00 以降　)"));
    rtclNew->setObjectName(QStringLiteral("mnu_rtcl_new"));
    menuEntry(rtclNew, "mnuOpen_rtcl_log_set_new", openLog, open("mnuOpen_rtcl_log_set_new"));
    menuEntry(rtclNew, "mnu_rtcl_log2txt_new", log2txt, [this] { rtclText(true, false); });
    menuEntry(rtclNew, "mnu_rtcl_log2all_new", log2all, [this] { rtclText(true, true); });
    QMenu* rtcl4 = file->addMenu(QStringLiteral("RTCL 新  　(　ver 4.00 以降　)"));
    rtcl4->setObjectName(QStringLiteral("mnu_rtcl_new4"));
    menuEntry(rtcl4, "mnuOpen_rtcl_log_set_new4", openLog, open("mnuOpen_rtcl_log_set_new4"));
    menuEntry(rtcl4, "mnu_rtcl_new4_",
              QStringLiteral("RTCL 新  　(　ver 4.00 以降　)    zLog への変換"),
              [this] { openRtclV4(); });
    QMenu* rtcl430 = file->addMenu(QStringLiteral("RTCL 新  　(　ver 4.30 以降　)"));
    rtcl430->setObjectName(QStringLiteral("mnu_rtcl_new430"));
    menuEntry(rtcl430, "mnuOpen_rtcl_log_set_new430", openLog, open("mnuOpen_rtcl_log_set_new430"));
    menuEntry(rtcl430, "mnu_rtcl_new430_",
              QStringLiteral("RTCL 新  　(　ver 4.30 以降　)    zLog への変換"),
              [this] { openRtclV4(); });
    file->addSeparator()->setObjectName(QStringLiteral("mnuTemp4"));
    menuEntry(file, "mnuOpen_Cabrillo",
              QStringLiteral("Cabrillo  ( ＊．ｌｏｇ　，　＊．ｃｂｒ　，＊．ｔｘｔ ) ﾌｧｲﾙを選ぶ"),
              open("mnuOpen_Cabrillo"));
    menuEntry(file, "mnuOpen_ADIF", QStringLiteral("ADIF     ( ＊．ａｄｉ ) ﾌｧｲﾙを選ぶ"),
              open("mnuOpen_ADIF"));
    QMenu* mdb = file->addMenu(QStringLiteral("N1NN Logger ( ＊．mdb )ﾌｧｲﾙ を選ぶ"));
    mdb->setObjectName(QStringLiteral("mnuOpen_MDB"));
    menuEntry(mdb, "mnuMDB_dxlog", QStringLiteral("すべてのデータ ： DXLOG"), open("mnuMDB_dxlog"));
    menuEntry(mdb, "mnuMDB_CurrentContest", QStringLiteral("CurrentContest"),
              open("mnuMDB_CurrentContest"));
    menuEntry(file, "mnuOpen_Ctestwin", QStringLiteral("Ctestwin ( ＊．lg8 )ﾌｧｲﾙ を選ぶ"),
              open("mnuOpen_Ctestwin"));
    file->addSeparator()->setObjectName(QStringLiteral("mnuTmp1"));
    menuEntry(file, "mnuMake_z2a", QStringLiteral("＊．.zLo  => ＊．all 作成 "),
              [this] { makeZ2a(); });
    menuEntry(file, "mnuDisp_z2a", QStringLiteral("＊．.zLo  => ＊．all 表示"), [this] {
        viewFile(readers::z2aName(m_session.input().in_name), QStringLiteral("z2a"));
    });
    file->addSeparator()->setObjectName(QStringLiteral("mnuTemp2"));
    menuEntry(file, "mnuMake_a2t", qs(m_model.caption("mnuMake_a2t")));
    menuEntry(file, "mnuMake_t2a", qs(m_model.caption("mnuMake_t2a")));
    file->addSeparator()->setObjectName(QStringLiteral("mnuTemp3"));
    menuEntry(
        file, "mnuMake_adif2a", QStringLiteral("ADIF から zLog の ＊．.all を作成する。"),
        [this] { notBuilt(); }, true);

    auto* makeIni = bar->addAction(QStringLiteral("ini 作成"));
    makeIni->setObjectName(QStringLiteral("makeIni"));
    m_binder->action(makeIni, "makeIni", [this] { m_model.clickButton("makeIni"); });
    auto* config = bar->addAction(QStringLiteral("環境設定"));
    config->setObjectName(QStringLiteral("mnuConfig"));
    m_binder->action(config, "mnuConfig", [this] { openConfig(); });

    QMenu* disp = bar->addMenu(QStringLiteral("表示"));
    disp->setObjectName(QStringLiteral("mnuDisp"));
    menuEntry(disp, "mnuDisp_in", QStringLiteral("入力ﾌｧｲﾙ"),
              [this] { viewFile(m_session.input().in_name, QStringLiteral("入力ﾌｧｲﾙ")); });
    const auto contestGrid = [this] {
        openResultGrid(this, m_session, tools::GridForm::contest(), [this] { cmdStop_Click(); });
    };
    const auto hamlogGrid = [this] {
        openResultGrid(this, m_session, tools::GridForm::hamlog(), [this] { cmdStop_Click(); });
    };
    menuEntry(disp, "mnuDisp_con_n_new", QStringLiteral("hamlog_c ．csv"), contestGrid);
    menuEntry(disp, "mnuDisp_ham_n_new", QStringLiteral("hamlog_h ．csv"), hamlogGrid);
    menuEntry(disp, "mnuDisp_Get_Mng_result", QStringLiteral("Get_Mng_result"), [this] {
        viewFile(m_session.input().names.Get_Mng_result_name, QStringLiteral("Get_Mng_result"));
    });
    menuEntry(disp, "mnuDisp_dup", QStringLiteral("          * ．dup"),
              [this] { viewFile(m_session.input().names.dup_name, QStringLiteral("dup")); });
    menuEntry(disp, "mnuDisp_l2t", QStringLiteral("      *_l2z ．txt"),
              [this] { viewEntry(this, m_session, "mnuDisp_l2t"); });
    menuEntry(disp, "mnuDisp_l2a", QStringLiteral("      *_l2z ．all"),
              [this] { viewEntry(this, m_session, "mnuDisp_l2a"); });
    menuEntry(disp, "mnuDisp_zt2a", QStringLiteral("    *_zt2a ．all"),
              [this] { viewEntry(this, m_session, "mnuDisp_zt2a"); });
    menuEntry(disp, "mnuDisp_za2t", QStringLiteral("    *_za2t ．txt"),
              [this] { viewEntry(this, m_session, "mnuDisp_za2t"); });
    menuEntry(disp, "mnuDisp_log2a", QStringLiteral("    *_log2a ．all"),
              [this] { viewEntry(this, m_session, "mnuDisp_log2a"); });
    menuEntry(disp, "mnuDisp_Vornhale_ini", QStringLiteral("Vornhale ．ini"),
              [this] { viewProgramFile("Vornhale.ini"); });
    menuEntry(disp, "mnuDisp_Vornhale_new_ini", QStringLiteral("Vornhale_new ．ini"),
              [this] { viewProgramFile("Vornhale_new.ini"); });
    menuEntry(disp, "mnuDisp_Vornhale_Rireki_cfg", QStringLiteral("Vornhale_Rireki ．cfg"),
              [this] { viewProgramFile("Vornhale_Rireki.cfg"); });
    menuEntry(disp, "mnuDisp_Vornhale_rmk1", QStringLiteral("Vornhale ．rmk1"),
              [this] { viewProgramFile("Vornhale.rmk1"); });
    menuEntry(disp, "mnuDisp_Vornhale_rmk2", QStringLiteral("Vornhale ．rmk2"),
              [this] { viewProgramFile("Vornhale.rmk2"); });
    menuEntry(disp, "mnuDisp_QSOBank", QStringLiteral("QSOBank"),
              [this] { viewEntry(this, m_session, "mnuDisp_QSOBank"); });

    auto* rmks = bar->addAction(QStringLiteral("Rmks 履歴"));
    rmks->setObjectName(QStringLiteral("mnuEdit_Rmks"));
    m_binder->action(rmks, "mnuEdit_Rmks", [this] { openRmksSel(); });
    auto* download = bar->addAction(QStringLiteral("Download"));
    download->setObjectName(QStringLiteral("mnuDownload"));
    m_binder->action(download, "mnuDownload",
                     [this] { DownloadDialog(m_session, m_dialogs, this).exec(); });

    QMenu* help = bar->addMenu(QStringLiteral("Help"));
    help->setObjectName(QStringLiteral("mnuDispHelp"));
    menuEntry(
        help, "mnuVornhale_hlp", QStringLiteral("Vornhale.hlp"), [this] { notBuilt(); }, true);
    menuEntry(help, "mnuWeb_Manager", QStringLiteral("QSL Manager list (Web)"), [this] {
        ToolActions(m_session, m_dialogs, *m_observer, {}).mnuWeb_Manager_Click();
    });
    menuEntry(help, "mnuDisp_Readme", QStringLiteral("ReadMe"),
              [this] { viewProgramFile("README.md"); });

    auto* qsoBank = bar->addAction(QStringLiteral("QSOBank"));
    qsoBank->setObjectName(QStringLiteral("mnuQSOBank"));
    m_binder->action(qsoBank, "mnuQSOBank");
    // After the binder's own refresh of the status line, so that the export's end stands.
    connect(qsoBank, &QAction::triggered, this,
            [this] { ToolActions(m_session, m_dialogs, *m_observer, {}).mnuQSOBank_Click(); });
    auto* getMng = bar->addAction(QStringLiteral("MNG 取得"));
    getMng->setObjectName(QStringLiteral("mnuGet_MNG"));
    m_binder->action(getMng, "mnuGet_MNG", [this] {
        GetMngDialog::Hooks hooks{[this](std::string_view menu) { openBy(menu); },
                                  [this](int code) {
                                      m_ending = true;
                                      m_programEnd(code);
                                  },
                                  [this](const failure::Failure& f) { failAndEnd(f); }};
        GetMngDialog(m_session, m_dialogs, std::move(hooks), this).exec();
    });
    auto* ardx = bar->addAction(QStringLiteral("ardx_sep"));
    ardx->setObjectName(QStringLiteral("mnuardx_sep"));
    ardx->setVisible(false);
    m_binder->action(ardx, "mnuardx_sep", [this] { notBuilt(); });
    auto* entity = bar->addAction(QStringLiteral("get_Entity"));
    entity->setObjectName(QStringLiteral("mnuGet_Entity"));
    m_binder->action(entity, "mnuGet_Entity", [this] {
        ToolActions(m_session, m_dialogs, *m_observer, [this](const failure::Failure& f) {
            failAndEnd(f);
        }).mnuGet_Entity_Click();
    });
    auto* mng = bar->addAction(QStringLiteral("MNG"));
    mng->setObjectName(QStringLiteral("mnuMNG"));
    mng->setVisible(false);
    m_binder->action(mng, "mnuMNG", [this] { notBuilt(); });
    auto* mode = bar->addAction(QStringLiteral("Mode"));
    mode->setObjectName(QStringLiteral("mnuMode"));
    m_binder->action(mode, "mnuMode", [this] {
        m_session.files().ini_write_old();
        ModeDialog(m_session, this).exec();
    });
}

void MainWindow::buildToolBar()
{
    m_toolBar = addToolBar(QStringLiteral("Toolbar1"));
    m_toolBar->setObjectName(QStringLiteral("Toolbar1"));
    m_toolBar->setMovable(false);
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    struct Tool
    {
        const char* key;
        const char* toolTip;
        std::function<void()> run;
    };
    const Tool tools[] = {
        {"開く", "zLog の　拡張子 ALL or TXT 入力ﾌｧｲﾙを指定します。",
         [this] { openBy("mnuOpen_all_txt_set"); }},
        {"開 z", "zLog の　拡張子 ZLO 入力ﾌｧｲﾙを指定します。", [this] { openBy("mnuOpen_z_set"); }},
        {"ini 作成", "現在の設定状況をVornhale_new．iniに保存します",
         [this] { m_model.clickButton("ini 作成"); }},
        {"変換", "ﾌﾟﾛｸﾞﾗﾑの実行を開始します", [this] { startConversion(); }},
        {"入力ﾌｧｲﾙ", "入力ﾌｧｲﾙの表示",
         [this] { viewFile(m_session.input().in_name, QStringLiteral("入力ﾌｧｲﾙ")); }},
        {"z2a作成", "zLo ﾊﾞｲﾅﾘｰ･ﾌｧｲﾙをALL形式に変換する。", [this] { makeZ2a(); }},
        {"z2a表示", "z2aで作成したALL形式ﾌｧｲﾙを表示する。",
         [this] { viewFile(readers::z2aName(m_session.input().in_name), QStringLiteral("z2a")); }},
        {"contest_n", "contest_nの表示",
         [this] {
             openResultGrid(this, m_session, tools::GridForm::contest(),
                            [this] { cmdStop_Click(); });
         }},
        {"hamlog_n", "hamlog_nの表示",
         [this] {
             openResultGrid(this, m_session, tools::GridForm::hamlog(),
                            [this] { cmdStop_Click(); });
         }},
        {"＊．ｄｕｐ", "*.dupの表示",
         [this] { viewFile(m_session.input().names.dup_name, QStringLiteral("dup")); }},
        {"終了", "ﾌﾟﾛｸﾞﾗﾑを終了します", [this] { close(); }},
    };
    for (const Tool& t : tools) {
        auto* action = new QAction(QString::fromUtf8(t.key), this);
        action->setObjectName(QString::fromUtf8(t.key));
        action->setToolTip(QString::fromUtf8(t.toolTip));
        m_toolBar->addAction(action);
        m_binder->action(action, t.key, t.run);
        if (QWidget* w = m_toolBar->widgetForAction(action)) {
            w->setObjectName(QString::fromUtf8(t.key));
        }
    }
}

// ---- The centre ---------------------------------------------------------------------------

QWidget* MainWindow::buildCentre()
{
    auto* centre = new QWidget;
    centre->setObjectName(QStringLiteral("centre"));
    auto* outer = new QVBoxLayout(centre);

    m_tab2 = new QTabWidget;
    m_tab2->setObjectName(QStringLiteral("SSTab2"));
    m_tab2->addTab(buildInputTab(), QStringLiteral("入力ﾌｧｲﾙ"));
    m_tab2->addTab(buildSortTab(), QStringLiteral("Sort/Zone"));
    m_tab2->addTab(buildMemoTab(), QStringLiteral("memo単複"));
    m_tab2->addTab(buildProvinceTab(), QStringLiteral("Province"));

    m_tab1 = new QTabWidget;
    m_tab1->setObjectName(QStringLiteral("SSTab1"));
    m_tab1->addTab(buildNoQslTab(), QStringLiteral("No QSL"));
    m_tab1->addTab(buildMngTab(), QStringLiteral("MNG検索"));
    m_tab1->addTab(buildResultTab(), QStringLiteral("結 果"));
    m_tab1->addTab(buildQthTab(), QStringLiteral("qth_mas"));

    auto* tabs = new QHBoxLayout;
    tabs->addWidget(m_tab2, 1);
    tabs->addWidget(m_tab1, 1);
    outer->addLayout(tabs, 1);

    m_layoutRow = new LayoutRow(m_layout, *m_binder);
    m_layoutRow->setAfterEdit([this] {
        // The rules of the province follow the layout; the check after a drop tells its clash
        // of the state column with the province on the status line.
        m_model.Check5_Click();
        m_binder->refresh("lblShori");
        if (!m_layout.lblShori().empty()) {
            showStatus(qs(m_layout.lblShori()), static_cast<int>(Colour::Red));
            m_layout.clearStatus();
        }
        m_layoutRow->refresh();
    });
    connect(m_layoutRow->historyButton(), &QPushButton::clicked, this, [this] { openRirekiSel(); });
    connect(m_layoutRow->widthsButton(), &QPushButton::clicked, this, [this] { openKetasu(); });
    outer->addWidget(m_layoutRow);

    auto* statusRow = new QHBoxLayout;
    m_status = new QLabel;
    m_status->setObjectName(QStringLiteral("lblShori"));
    m_status->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    m_status->setMinimumHeight(28);
    m_progress = new QProgressBar;
    m_progress->setObjectName(QStringLiteral("ProgressBar1"));
    m_progress->setRange(0, 100);
    m_progress->setValue(0);
    m_progress->setTextVisible(false);
    m_start = new QPushButton(QStringLiteral("変 換"));
    m_start->setMinimumWidth(110);
    m_start->setMinimumHeight(32);
    m_binder->button(m_start, "cmdStart", [this] { startConversion(); });
    statusRow->addWidget(m_status, 3);
    statusRow->addWidget(m_progress, 2);
    statusRow->addWidget(m_start);
    outer->addLayout(statusRow);
    return centre;
}

QWidget* MainWindow::buildInputTab()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("SSTab2Input"));
    auto* v = new QVBoxLayout(page);

    QGroupBox* input = frame("Frame08", {});
    auto* g = new QGridLayout(input);
    g->addWidget(fixedLabel(QStringLiteral("Label2"), QStringLiteral("　入力ファイル")), 0, 0);
    QLabel* name = modelLabel("lblIn_name");
    name->setMinimumWidth(280);
    g->addWidget(name, 0, 1, 1, 3);
    g->addWidget(fixedLabel(QStringLiteral("Label36"), QStringLiteral("入力件数")), 1, 0);
    QLabel* count = fixedLabel(QStringLiteral("Label37"), {});
    count->setFont(QFont(QStringLiteral("Noto Sans Mono CJK JP"), font().pointSize()));
    g->addWidget(count, 1, 1);
    g->addWidget(fixedLabel(QStringLiteral("Label39"), {}), 1, 2);
    g->setColumnStretch(3, 1);
    v->addWidget(input);

    auto* zones = new QHBoxLayout;
    QGroupBox* zone = frame("Frame2", frameCaption("Option2", 0));
    auto* zl = new QVBoxLayout(zone);
    zl->addWidget(memberButton("Option2", 0));
    zl->addWidget(memberButton("Option2", 1));
    zl->addStretch(1);
    zones->addWidget(zone);
    QGroupBox* convert = frame("Frame5", frameCaption("Option05", 0));
    auto* cl = new QGridLayout(convert);
    for (int i = 0; i < 4; ++i) {
        cl->addWidget(memberButton("Option05", i), i / 2, i % 2);
    }
    zones->addWidget(convert, 1);
    v->addLayout(zones);

    auto* row = new QHBoxLayout;
    QGroupBox* entity = frame("Frame7", frameCaption("Check2"));
    auto* el = new QVBoxLayout(entity);
    el->addWidget(tickBox("Check2"));
    row->addWidget(entity, 1);
    QGroupBox* year = frame("Frame12", frameCaption("txtYYYY"));
    auto* yl = new QHBoxLayout(year);
    QLineEdit* yyyy = textBox("txtYYYY");
    yyyy->setMaxLength(4);
    yyyy->setFixedWidth(64);
    yl->addWidget(yyyy);
    yl->addWidget(commandButton("cmdNow", QStringLiteral("Now")));
    row->addWidget(year);
    v->addLayout(row);

    auto* remarks = new QGridLayout;
    for (int i = 1; i <= 2; ++i) {
        const std::string box = "txtRmks" + std::to_string(i);
        remarks->addWidget(fixedLabel(i == 1 ? QStringLiteral("commentLabelFirst")
                                             : QStringLiteral("commentLabelSecond"),
                                      frameCaption(box)),
                           i - 1, 0);
        remarks->addWidget(textBox(box), i - 1, 1);
        const std::string clear = "cmdCl_rmk" + std::to_string(i);
        remarks->addWidget(commandButton(clear, QStringLiteral("消す"), {},
                                         [this, box] { m_model.editText(box, ""); }),
                           i - 1, 2);
    }
    v->addLayout(remarks);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(
        commandButton("cmdCheck_bak_qso_mas", QStringLiteral("bak_qso.mas確認"),
                      QStringLiteral("bak_qso.mas＊　ファイルのサイズ、件数の確認が出来ます。"),
                      [this] { openBakCheck(this, m_session); }));
    bottom->addStretch(1);
    bottom->addWidget(memberButton("Option5", 0));
    v->addLayout(bottom);
    addStretchRow(v);
    return page;
}

QWidget* MainWindow::buildSortTab()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("SSTab2Sort"));
    auto* v = new QVBoxLayout(page);

    QGroupBox* sort = frame("Frame04", frameCaption("Option02", 0));
    auto* sl = new QVBoxLayout(sort);
    for (int i = 0; i < 5; ++i) {
        sl->addWidget(memberButton("Option02", i));
    }
    v->addWidget(sort);
    v->addWidget(tickBox("Check12"));

    QGroupBox* zone = frame("Frame16", frameCaption("Option6", 0));
    auto* zl = new QGridLayout(zone);
    zl->addWidget(tickBox("Check6"), 0, 0);
    zl->addWidget(memberButton("Option7", 0), 0, 1, 1, 2);
    zl->addWidget(memberButton("Option7", 1), 0, 3, 1, 2);
    for (int i = 0; i < 4; ++i) {
        zl->addWidget(memberButton("Option6", i), 1, i);
    }
    QLineEdit* prefix = textBox("txtZone_moji");
    prefix->setMaximumWidth(120);
    zl->addWidget(prefix, 2, 0);
    zl->addWidget(modelLabel("Label10"), 2, 1);
    zl->addWidget(commandButton("cmdDisp", QStringLiteral("確認")), 2, 2);
    zl->addWidget(commandButton("cmdDel", QStringLiteral("消去")), 2, 3);
    zl->addWidget(commandButton("cmdZone_moji_save", QStringLiteral("保存")), 2, 4);
    v->addWidget(zone);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(tickBox("Check21"));
    bottom->addStretch(1);
    bottom->addWidget(memberButton("Option5", 1));
    v->addLayout(bottom);
    addStretchRow(v);
    return page;
}

QWidget* MainWindow::buildMemoTab()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("SSTab2Memo"));
    auto* v = new QVBoxLayout(page);

    QGroupBox* split = frame("Frame21", frameCaption("Option08", 0));
    auto* spl = new QHBoxLayout(split);
    spl->addWidget(memberButton("Option08", 0));
    spl->addWidget(memberButton("Option08", 1));
    spl->addStretch(1);
    v->addWidget(split);
    v->addWidget(tickBox("Check16"));

    auto* row = new QHBoxLayout;
    QGroupBox* names = frame("Frame10", frameCaption("Check15"));
    auto* nl = new QHBoxLayout(names);
    nl->addWidget(tickBox("Check15"));
    nl->addWidget(commandButton("cmdCount", QStringLiteral("件数"), {},
                                [this] { m_model.clickButton("cmdCount"); }));
    row->addWidget(names, 1);
    QGroupBox* manager = frame("Frame3", frameCaption("Option1", 0));
    auto* ml = new QHBoxLayout(manager);
    ml->addWidget(memberButton("Option1", 0));
    row->addWidget(manager, 1);
    v->addLayout(row);

    auto* row2 = new QHBoxLayout;
    QGroupBox* separator = frame("Frame6", frameCaption("Check1"));
    auto* sepl = new QHBoxLayout(separator);
    sepl->addWidget(tickBox("Check1"));
    row2->addWidget(separator);
    QGroupBox* memo = frame("Frame8", frameCaption("Check17"));
    auto* meml = new QHBoxLayout(memo);
    meml->addWidget(tickBox("Check17"));
    meml->addWidget(tickBox("Check20"));
    row2->addWidget(memo, 1);
    QGroupBox* dupe = frame("Frame9", frameCaption("Check06"));
    auto* dl = new QHBoxLayout(dupe);
    dl->addWidget(tickBox("Check06"));
    row2->addWidget(dupe);
    v->addLayout(row2);

    auto* op = new QHBoxLayout;
    op->addWidget(tickBox("Check02"));
    QLineEdit* opName = textBox("txtOp_name");
    opName->setMaximumWidth(140);
    op->addWidget(opName);
    op->addStretch(1);
    v->addLayout(op);

    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(memberButton("Option5", 2));
    v->addLayout(bottom);
    addStretchRow(v);
    return page;
}

QWidget* MainWindow::buildProvinceTab()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("SSTab2Province"));
    auto* v = new QVBoxLayout(page);
    v->addWidget(tickBox("Check5"));

    auto* masters = new QHBoxLayout;
    masters->addWidget(commandButton("cmdSetMas_mas", QStringLiteral("Master ＊．ｍａｓ の指定"),
                                     QStringLiteral("Master ファイル *.mas の指定をします。"),
                                     [this] { chooseProvinceMaster("cmdSetMas_mas"); }));
    masters->addWidget(commandButton("cmdSetMas_dat", QStringLiteral("Master ＊．ｄａｔ の指定"),
                                     {}, [this] { chooseProvinceMaster("cmdSetMas_dat"); }));
    masters->addWidget(commandButton("cmdDisp_mas_dat", QStringLiteral("Master 表示"), {}, [this] {
        viewFile(m_model.facts().mas_dat_name, QStringLiteral("Master"));
    }));
    masters->addStretch(1);
    v->addLayout(masters);
    v->addWidget(modelLabel("lblMas_dat"));
    QLabel* guess = modelLabel("lblMas_dat_zlo");
    guess->setWordWrap(true);
    v->addWidget(guess);

    auto* row = new QHBoxLayout;
    QGroupBox* place = frame("Frame13", frameCaption("Option3", 0));
    auto* pl = new QVBoxLayout(place);
    pl->addWidget(memberButton("Option3", 0));
    pl->addWidget(memberButton("Option3", 1));
    pl->addStretch(1);
    row->addWidget(place);
    QGroupBox* prefix = frame("Frame14", frameCaption("Option4", 0));
    auto* prl = new QGridLayout(prefix);
    for (int i = 0; i < 5; ++i) {
        prl->addWidget(memberButton("Option4", i), i < 3 ? 0 : 1, i < 3 ? i : i - 3);
    }
    QLineEdit* free = textBox("txtProv_moji");
    free->setMaximumWidth(140);
    prl->addWidget(free, 2, 0, 1, 2);
    prl->addWidget(commandButton("cmdDelProv", QStringLiteral("消去")), 2, 2);
    row->addWidget(prefix, 1);
    v->addLayout(row);
    v->addWidget(tickBox("Check13"));

    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(memberButton("Option5", 3));
    v->addLayout(bottom);
    addStretchRow(v);
    return page;
}

QWidget* MainWindow::buildNoQslTab()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("SSTab1NoQsl"));
    auto* v = new QVBoxLayout(page);
    v->addWidget(fixedLabel(QStringLiteral("Label40"),
                            QStringLiteral("　該当する局にはNo QSL　　参照する入力ﾌｧｲﾙ")));

    auto* top = new QHBoxLayout;
    QGroupBox* which = frame("Frame1", {});
    auto* wl = new QVBoxLayout(which);
    for (int i = 0; i < 4; ++i) {
        wl->addWidget(memberButton("Option04", i));
    }
    top->addWidget(which, 1);
    QGroupBox* source = frame("Frame07", {});
    auto* srcl = new QVBoxLayout(source);
    srcl->addWidget(memberButton("Option01", 0));
    QLabel* same = fixedLabel(QStringLiteral("Label27"), frameCaption("Check04"));
    m_binder->state(same, "Label27");
    srcl->addWidget(same);
    auto* sameRow = new QHBoxLayout;
    sameRow->addWidget(tickBox("Check04"));
    sameRow->addWidget(tickBox("Check05"));
    srcl->addLayout(sameRow);
    auto* marks = new QHBoxLayout;
    marks->addWidget(tickBox("Check3"));
    marks->addWidget(tickBox("Check4"));
    srcl->addLayout(marks);
    srcl->addStretch(1);
    top->addWidget(source, 1);
    v->addLayout(top);

    auto* countries = new QHBoxLayout;
    countries->addWidget(tickBox("Check09"));
    countries->addWidget(textBox("txtNo_qsl_cty"), 1);
    countries->addWidget(commandButton("cmdNG", qs(m_model.caption("cmdNG"))));
    v->addLayout(countries);
    QLabel* unknown = modelLabel("Label3");
    unknown->setWordWrap(true);
    v->addWidget(unknown);

    auto* row = new QHBoxLayout;
    QGroupBox* club = frame("Frame01", frameCaption("Check10"));
    auto* cl = new QHBoxLayout(club);
    cl->addWidget(tickBox("Check10"));
    row->addWidget(club);
    QGroupBox* qslMarks = frame("Frame09", frameCaption("txtQSL_Q"));
    auto* ml = new QHBoxLayout(qslMarks);
    for (const char* box : {"txtQSL_Q", "txtQSL_S"}) {
        ml->addWidget(
            fixedLabel(QString::fromUtf8(box) + QStringLiteral("Caption").remove(QLatin1Char('_')),
                       qs(m_model.caption(box))));
        QLineEdit* mark = textBox(box);
        mark->setFixedWidth(36);
        ml->addWidget(mark);
    }
    row->addWidget(qslMarks);
    v->addLayout(row);

    v->addWidget(tickBox("Check14"));
    v->addWidget(tickBox("Check19"));
    auto* period = new QHBoxLayout;
    period->addWidget(
        commandButton("cmdDate", QStringLiteral("期 間"), {}, [this] { openDate(); }));
    period->addWidget(modelLabel("periodText"), 1);
    v->addLayout(period);

    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(tickBox("Check7"));
    v->addLayout(bottom);
    addStretchRow(v);
    return page;
}

QWidget* MainWindow::buildMngTab()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("SSTab1Mng"));
    auto* v = new QVBoxLayout(page);
    v->addWidget(tickBox("Check18"));
    auto* order = new QHBoxLayout;
    QGroupBox* priority = frame("Frame20", frameCaption("Option10", 0));
    auto* pl = new QVBoxLayout(priority);
    for (int i = 0; i < 3; ++i) {
        pl->addWidget(memberButton("Option10", i));
    }
    order->addWidget(priority, 1);
    auto* labels = new QVBoxLayout;
    labels->addWidget(modelLabel("Label26"));
    labels->addWidget(modelLabel("Label29"));
    labels->addWidget(tickBox("Check22"));
    labels->addWidget(tickBox("Check23"));
    labels->addWidget(tickBox("Check9"));
    order->addLayout(labels, 1);
    v->addLayout(order);

    auto* search = new QGridLayout;
    search->addWidget(fixedLabel(QStringLiteral("intervalCaption"), frameCaption("Combo1")), 0, 0);
    auto* interval = new QComboBox;
    for (int i = 1; i <= 10; ++i) {
        interval->addItem(QString::number(i));
    }
    m_binder->combo(interval, "Combo1");
    search->addWidget(interval, 0, 1);
    search->addWidget(fixedLabel(QStringLiteral("textOneCaption"), QStringLiteral("Web")), 1, 0);
    auto* text1 = new QLineEdit;
    text1->setObjectName(QStringLiteral("Text1"));
    search->addWidget(text1, 1, 1);
    search->addWidget(fixedLabel(QStringLiteral("textTwoCaption"), QStringLiteral("Call")), 2, 0);
    auto* text2 = new QLineEdit;
    text2->setObjectName(QStringLiteral("Text2"));
    connect(text2, &QLineEdit::textEdited, text2, [text2](const QString& t) {
        // The call is kept in upper case and trimmed while it is typed.
        const QString shown = t.toUpper().trimmed();
        if (shown != t) {
            text2->setText(shown);
        }
    });
    search->addWidget(text2, 2, 1);
    auto* submit = new QPushButton(QStringLiteral("検索"));
    submit->setObjectName(QStringLiteral("cmdSubmit"));
    connect(submit, &QPushButton::clicked, this, &MainWindow::cmdSubmit_Click);
    connect(text2, &QLineEdit::returnPressed, submit, &QPushButton::click);
    search->addWidget(submit, 2, 2);
    search->setColumnStretch(1, 1);
    v->addLayout(search);

    auto* state = new QGridLayout;
    const std::pair<const char*, const char*> shown[] = {
        {"Label33", "Call"}, {"Label34", "MNG"}, {"Label31", "Date"}, {"Label32", "Source"},
        {"Label28", ""},     {"Label45", ""},    {"Label30", ""},     {"Label35", ""},
    };
    int r = 0;
    for (const auto& [name, caption] : shown) {
        state->addWidget(new QLabel(QString::fromUtf8(caption)), r / 2, (r % 2) * 2);
        auto* value = new QLabel;
        value->setObjectName(QString::fromUtf8(name));
        state->addWidget(value, r / 2, (r % 2) * 2 + 1);
        ++r;
    }
    state->setColumnStretch(1, 1);
    state->setColumnStretch(3, 1);
    v->addLayout(state);

    auto* bottom = new QHBoxLayout;
    auto* stop = new QPushButton(QStringLiteral("Stop"));
    stop->setObjectName(QStringLiteral("cmdStop"));
    connect(stop, &QPushButton::clicked, this, &MainWindow::cmdStop_Click);
    bottom->addWidget(stop);
    bottom->addStretch(1);
    bottom->addWidget(tickBox("Check8"));
    v->addLayout(bottom);
    addStretchRow(v);
    return page;
}

QWidget* MainWindow::buildResultTab()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("SSTab1Result"));
    auto* v = new QVBoxLayout(page);

    m_grid = new QTableWidget(7, 3);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->horizontalHeader()->hide();
    m_grid->verticalHeader()->hide();
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionMode(QAbstractItemView::NoSelection);
    m_grid->setFocusPolicy(Qt::NoFocus);
    m_grid->horizontalHeader()->setMinimumSectionSize(8);
    m_grid->verticalHeader()->setMinimumSectionSize(8);
    const int widths[] = {1900, 800, 400};
    for (int c = 0; c < 3; ++c) {
        m_grid->setColumnWidth(c, widths[c] / kTwipsPerPixel);
    }
    for (int row = 0; row < 7; ++row) {
        m_grid->setRowHeight(row, 500 / kTwipsPerPixel);
        m_grid->setItem(row, 0,
                        new QTableWidgetItem(QString::fromUtf8(
                            engine::kResultGridCaptions[static_cast<std::size_t>(row)])));
        auto* count = new QTableWidgetItem;
        count->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        count->setForeground(colourOf(Colour::Blue));
        m_grid->setItem(row, 1, count);
        m_grid->setItem(row, 2, new QTableWidgetItem(QString::fromUtf8(engine::kResultGridUnit)));
    }
    int gridWidth = 4;
    for (int c = 0; c < 3; ++c) {
        gridWidth += m_grid->columnWidth(c);
    }
    m_grid->setFixedSize(gridWidth, 7 * (500 / kTwipsPerPixel) + 4);
    m_grid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_grid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    auto* row = new QHBoxLayout;
    row->addWidget(m_grid);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(
        commandButton("cmdDisp_con_n_new", QStringLiteral("出力ﾌｧｲﾙ　１"), {}, [this] {
            openResultGrid(this, m_session, tools::GridForm::contest(), [this] { cmdStop_Click(); });
        }));
    buttons->addWidget(
        commandButton("cmdDisp_ham_n_new", QStringLiteral("出力ﾌｧｲﾙ　2"), {}, [this] {
            openResultGrid(this, m_session, tools::GridForm::hamlog(), [this] { cmdStop_Click(); });
        }));
    buttons->addWidget(commandButton("cmdDisp_in", QStringLiteral("入力ﾌｧｲﾙ"), {}, [this] {
        viewFile(m_session.input().in_name, QStringLiteral("入力ﾌｧｲﾙ"));
    }));
    buttons->addWidget(
        commandButton("cmdDisp_Get_Mng_result", QStringLiteral("Get Mng result"), {}, [this] {
            viewFile(m_session.input().names.Get_Mng_result_name, QStringLiteral("Get Mng result"));
        }));
    buttons->addWidget(
        commandButton("cmdDisp_Henkan_Result", QStringLiteral("変換結果ファイル"), {}, [this] {
            viewFile(m_runner->outcome().reportPath, QStringLiteral("変換結果ファイル"));
        }));
    buttons->addStretch(1);
    row->addLayout(buttons);
    row->addStretch(1);
    v->addLayout(row);

    // The names of the results: of the file alone, and of the whole path.
    auto* names = new QGridLayout;
    int r = 0;
    for (const char* name : {"control18", "control20", "control19", "control21"}) {
        auto* label = new QLabel;
        m_binder->state(label, name);
        label->setObjectName(QString::fromUtf8(name));
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        names->addWidget(label, r++, 0);
    }
    v->addLayout(names);

    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(tickBox("Check11"));
    v->addLayout(bottom);
    addStretchRow(v);
    return page;
}

QWidget* MainWindow::buildQthTab()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("SSTab1Qth"));
    auto* v = new QVBoxLayout(page);
    QGroupBox* qth = frame("Frame15", frameCaption("Check29"));
    auto* ql = new QVBoxLayout(qth);
    ql->addWidget(tickBox("Check29"));
    ql->addWidget(fixedLabel(QStringLiteral("qthFieldsCaption"), frameCaption("Check25")));
    auto* fields = new QHBoxLayout;
    for (const char* name : {"Check25", "Check26", "Check27", "Check28"}) {
        fields->addWidget(tickBox(name));
    }
    fields->addStretch(1);
    ql->addLayout(fields);
    v->addWidget(qth);
    addStretchRow(v);
    return page;
}

// ---- Opening an input ---------------------------------------------------------------------

void MainWindow::openBy(std::string_view menu)
{
    const session::OpenAction* action = session::openActionOf(menu);
    if (action == nullptr || running()) {
        return;
    }
    if (!action->typeWord.empty() && readers::rowOfTypeWord(action->typeWord) == nullptr) {
        notBuilt();
        return;
    }
    const settings::Options& options = m_session.options();
    const QString path =
        m_chooser.chooseFile(this, qs(session::openDialogTitle(*action, options)),
                             qs(session::openStartFolder(*action, options)), qs(action->filter));
    if (path.isEmpty()) {
        // A cancelled dialog opens nothing: the former input stays, and the label says so.
        QLabel* name = findChild<QLabel*>(QStringLiteral("lblIn_name"));
        name->setText(qs(session::kNoInputChosen));
        setCaptionColour(name, Colour::Red);
        findChild<QLabel*>(QStringLiteral("Label37"))->clear();
        Q_EMIT inputOpened();
        return;
    }
    if (!action->mdbTable.empty()) {
        m_session.chooseMdbTable(std::string(action->mdbTable));
    }
    openPath(utf8(path), action->typeWord);
}

void MainWindow::openPath(const std::string& path, std::string_view typeWord)
{
    if (running()) {
        return;
    }
    // A master picked by hand belongs to the log it was picked for.
    m_handProvinceMaster.clear();
    try {
        const readers::OpenResult result = m_session.open(path, typeWord, *m_observer);
        if (result == readers::OpenResult::ProgramEnds) {
            End_Shori_0();
            m_ending = true;
            m_programEnd(0);
            return;
        }
    } catch (const failure::Failure& f) {
        failAndEnd(f);
        return;
    } catch (const std::exception& e) {
        failAndEnd(failure::Failure(failure::InvalidCall, e.what()));
        return;
    }
    m_model.Form_Load_2();
    m_binder->refreshAll();
    showInput();
    Q_EMIT inputOpened();
}

void MainWindow::showInput(bool afterRun)
{
    const session::InputDisplay d = session::inputDisplay(m_session.input(), afterRun);
    QLabel* name = findChild<QLabel*>(QStringLiteral("lblIn_name"));
    if (!d.lblIn_name.empty()) {
        name->setText(qs(d.lblIn_name));
        setCaptionColour(name, d.lblIn_nameColour);
        name->setToolTip(qs(d.lblIn_nameTip));
    }
    findChild<QLabel*>(QStringLiteral("Label37"))->setText(qs(d.Label37));
    findChild<QLabel*>(QStringLiteral("Label39"))->setText(qs(d.Label39));
    findChild<QLabel*>(QStringLiteral("control18"))->setText(qs(d.control18));
    findChild<QLabel*>(QStringLiteral("control20"))->setText(qs(d.control20));
    findChild<QLabel*>(QStringLiteral("control19"))->setText(qs(d.control19));
    findChild<QLabel*>(QStringLiteral("control21"))->setText(qs(d.control21));
    findChild<QGroupBox*>(QStringLiteral("Frame04"))
        ->setTitle(d.Frame04.empty() ? frameCaption("Option02", 0) : qs(d.Frame04));
    if (!d.mnuDisp_dup.empty()) {
        findChild<QAction*>(QStringLiteral("mnuDisp_dup"))->setText(qs(d.mnuDisp_dup));
    }
    for (const char* entry : {"mnuMake_z2a", "z2a作成"}) {
        findChild<QAction*>(QString::fromUtf8(entry))->setEnabled(d.makeZ2a);
    }
    for (const char* entry : {"mnuDisp_z2a", "z2a表示"}) {
        findChild<QAction*>(QString::fromUtf8(entry))->setEnabled(d.showZ2a);
    }
    QLabel* searched = findChild<QLabel*>(QStringLiteral("Label33"));
    searched->setText(qs(d.Label33));
    setCaptionColour(searched, d.Label33Colour);
    findChild<QAction*>(QStringLiteral("mnuDisp_Get_Mng_result"))->setEnabled(d.showMngResult);
    findChild<QPushButton*>(QStringLiteral("cmdDisp_Get_Mng_result"))->setEnabled(d.showMngResult);
    findChild<QLineEdit*>(QStringLiteral("txtYYYY"))
        ->setEnabled(d.yearBox && m_model.enabled("txtYYYY"));
}

// ---- A conversion -------------------------------------------------------------------------

bool MainWindow::running() const
{
    return m_runner->running();
}

void MainWindow::setRunning(bool isRunning)
{
    // While a run goes the start stays out of reach; the options keep still, since the run
    // writes the settings files from them.
    m_start->setEnabled(!isRunning && m_model.enabled("cmdStart"));
    if (auto* tool = findChild<QAction*>(QStringLiteral("変換"))) {
        tool->setEnabled(!isRunning && m_model.enabled("変換"));
    }
    m_tab2->setEnabled(!isRunning);
    m_layoutRow->setEnabled(!isRunning);
    for (int i : {0, 3}) {
        m_tab1->widget(i)->setEnabled(!isRunning);
    }
    menuBar()->setEnabled(!isRunning);
    for (QAction* a : m_toolBar->actions()) {
        if (a->objectName() != QStringLiteral("終了")) {
            a->setEnabled(!isRunning && m_model.enabled(utf8(a->objectName())));
        }
    }
}

bool MainWindow::startConversion()
{
    if (running() || !m_model.enabled("cmdStart")) {
        return false;
    }
    // The run starts from the cells as the operator arranged them.
    m_layout.Sort_2();
    m_layout.Sort_3();
    m_layoutRow->refresh();
    for (int row = 0; row < 7; ++row) {
        m_grid->item(row, 1)->setText(QString());
    }
    setRunning(true);
    session::RunRequest request;
    request.provinceMaster = m_handProvinceMaster;
    m_runner->start(std::move(request));
    return true;
}

void MainWindow::showStatus(const QString& text, int colour)
{
    m_status->setText(text);
    setCaptionColour(m_status, static_cast<Colour>(colour));
}

void MainWindow::showRunLabel(const QString& name, const QString& text)
{
    if (name == QStringLiteral("lblIn_name")) {
        auto* label = findChild<QLabel*>(name);
        label->setText(text);
        setCaptionColour(label, Colour::Red);
        return;
    }
    if (auto* label = findChild<QLabel*>(name)) {
        label->setText(text);
    } else if (auto* box = findChild<QLineEdit*>(name)) {
        box->setText(text);
    }
}

void MainWindow::showCounter(int row, long value)
{
    if (row >= 0 && row < m_grid->rowCount()) {
        m_grid->item(row, 1)->setText(QString::number(value));
    }
}

void MainWindow::conversionEnded()
{
    const session::RunOutcome& outcome = m_runner->outcome();
    switch (outcome.end) {
    case session::RunOutcome::End::Done:
        break;
    case session::RunOutcome::End::Refused:
        showStatus(qs(outcome.message), static_cast<int>(Colour::Red));
        break;
    case session::RunOutcome::End::Failed:
        // The failure was traced and its dialog shown by the run; the program ends.
        m_ending = true;
        m_programEnd(1);
        return;
    case session::RunOutcome::End::ProgramEnded:
        m_ending = true;
        m_programEnd(0);
        return;
    }
    m_model.Form_Load_2();
    m_binder->refreshAll();
    setRunning(false);
    showInput(true);
    if (outcome.end == session::RunOutcome::End::Done) {
        m_tab1->setCurrentIndex(2);
        auto* report = findChild<QPushButton*>(QStringLiteral("cmdDisp_Henkan_Result"));
        report->setEnabled(!outcome.reportPath.empty());
        if (!outcome.reportPath.empty()) {
            report->setToolTip(qs(outcome.reportPath));
        }
    }
    Q_EMIT conversionFinished();
}

void MainWindow::cmdStop_Click()
{
    // No way back: the close code runs, and the program ends whatever the run is doing.
    End_Shori_0();
    QApplication::processEvents();
    m_ending = true;
    m_programEnd(0);
}

void MainWindow::End_Shori_0()
{
    showStatus(QStringLiteral("　　　　終了処理中．．．．．．"), static_cast<int>(Colour::Black));
    savePosition();
    if (!running()) {
        m_session.end(true);
    } else {
        // A run still writes its working files; they stay for the next start to clear.
        m_session.files().ini_write_old();
    }
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (m_ending) {
        event->accept();
        return;
    }
    if (running()) {
        cmdStop_Click();
        event->accept();
        return;
    }
    End_Shori_0();
    m_ending = true;
    event->accept();
}

void MainWindow::showTab(int group, int index)
{
    (group == 0 ? m_tab2 : m_tab1)->setCurrentIndex(index);
}

// ---- Viewers and dialogs ------------------------------------------------------------------

void MainWindow::viewFile(const std::string& path, const QString& /*title*/)
{
    // The viewer titles itself with the input and the file shown.
    viewFileIn(this, m_session, path);
}

void MainWindow::viewProgramFile(const char* name)
{
    viewFile((m_session.folder().strPath / name).string(), QString::fromUtf8(name));
}

void MainWindow::chooseProvinceMaster(std::string_view button)
{
    const session::OptionModel::MasterDialog d = m_model.provinceMasterDialog(button);
    const QString path = m_chooser.chooseFile(this, qs(d.title), qs(d.folder), qs(d.filter));
    if (!path.isEmpty()) {
        m_handProvinceMaster = utf8(path);
    }
    m_model.provinceMasterChosen(utf8(path));
}

void MainWindow::notBuilt()
{
    m_dialogs.message("", "この機能はこの版ではまだ使えません。", base::Dialogs::Icon::Information);
}

void MainWindow::openConfig()
{
    m_session.files().ini_write_old();
    ConfigDialog dialog(m_session, m_chooser, this);
    if (dialog.exec() == QDialog::Accepted) {
        m_model.inetFlagRule();
        m_model.Form_Load_2();
        m_binder->refreshAll();
    } else if (dialog.endRequested()) {
        m_ending = true;
        m_programEnd(0);
    }
}

void MainWindow::openRmksSel()
{
    m_session.files().ini_write_old();
    RmksSelDialog dialog(m_session.folder().strPath, m_session.options(), this);
    dialog.exec();
    m_model.editText("txtRmks1", m_session.options().value("txtRmks1"));
    m_model.editText("txtRmks2", m_session.options().value("txtRmks2"));
    m_binder->refreshAll();
}

void MainWindow::openRirekiSel()
{
    m_session.files().ini_write_old();
    RirekiSelDialog dialog(m_session.folder().strPath, m_layout, &m_session.trace(), this);
    dialog.exec();
    m_layoutRow->refresh();
}

void MainWindow::openKetasu()
{
    m_session.files().ini_write_old();
    KetasuDialog(m_session, this).exec();
    // The widths reach the tables of the conversion once the dialog has closed.
    m_layout.Set_Rmks_Len();
    m_layoutRow->refresh();
}

void MainWindow::openDate()
{
    DateDialog dialog(m_session, this);
    if (dialog.exec() == QDialog::Accepted) {
        m_model.buildPeriodAndTitle();
        setWindowTitle(qs(m_model.windowTitle()));
        m_binder->refreshAll();
    }
}

void MainWindow::openRtclV4()
{
    RtclV4Dialog dialog(m_session, m_chooser, this);
    dialog.setFailureHandler([this, &dialog](const failure::Failure& f) {
        dialog.reject();
        failAndEnd(f);
    });
    dialog.exec();
}

void MainWindow::rtclText(bool newForm, bool all)
{
    try {
        const std::string written = makeRtclText(m_session, m_chooser, this, newForm, all);
        if (!written.empty()) {
            // After the refresh that follows a menu action, which clears the status line.
            QMetaObject::invokeMethod(
                this, [this, written] { showStatus(qs(written), static_cast<int>(Colour::Black)); },
                Qt::QueuedConnection);
        }
    } catch (const failure::Failure& f) {
        failAndEnd(f);
    }
}

void MainWindow::makeZ2a()
{
    readers::InputState input = m_session.input();
    if (input.f_type != "zlo") {
        return;
    }
    const readers::ReaderContext ctx{m_session.options(),
                                     m_session.trace(),
                                     *m_observer,
                                     m_dialogs,
                                     m_session.folder().drive_path,
                                     input};
    try {
        readers::mnuMake_z2a_Click(ctx);
    } catch (const failure::Failure& f) {
        failAndEnd(f);
        return;
    }
    showInput();
}

void MainWindow::cmdSubmit_Click()
{
    auto* call = findChild<QLineEdit*>(QStringLiteral("Text2"));
    const std::string searched = utf8(call->text().trimmed().toUpper());
    if (searched.empty() || m_searching) {
        return;
    }
    m_searching = true;
    findChild<QPushButton*>(QStringLiteral("cmdSubmit"))->setEnabled(false);
    const base::ProgramFolder& folder = m_session.folder();
    const net::WebConfig config = net::WebConfig::load(folder.strPath);
    QPointer<MainWindow> window(this);
    // The download may take its time-out: the window stays alive meanwhile.
    std::thread([window, config, searched, strPath = folder.strPath, drive = folder.drive_path] {
        const manager::WebManagerSearch web(config, strPath, drive);
        const manager::WebSearchResult result = web.Get_MNG_web(searched);
        QMetaObject::invokeMethod(
            qApp,
            [window, result] {
                if (!window) {
                    return;
                }
                manager::WebManagerSearch::show(result, *window->m_observer);
                // The labels reach the window queued; the colour and the end follow them.
                QMetaObject::invokeMethod(
                    window,
                    [window, result] {
                        if (!window) {
                            return;
                        }
                        if (auto* outcome = window->findChild<QLabel*>(QStringLiteral("Label45"))) {
                            setCaptionColour(outcome, result.outcomeColour());
                        }
                        window->m_searching = false;
                        window->findChild<QPushButton*>(QStringLiteral("cmdSubmit"))
                            ->setEnabled(true);
                        Q_EMIT window->searchFinished();
                    },
                    Qt::QueuedConnection);
            },
            Qt::QueuedConnection);
    }).detach();
}

void MainWindow::failAndEnd(const failure::Failure& f)
{
    base::error_exit(f, m_session.trace(), m_dialogs);
    m_ending = true;
    m_programEnd(1);
}

// ---- Place of the window ------------------------------------------------------------------

void MainWindow::restorePosition()
{
    rememberPlace(*this, "Vornhale", m_session.folder().strPath / settings::kPositionFileName,
                  sizeHint().expandedTo(QSize(1180, 860)), QPoint(40, 30));
}

void MainWindow::savePosition()
{
    savePlace(*this, "Vornhale", m_session.folder().strPath / settings::kPositionFileName);
}

// ---- The list of controls -----------------------------------------------------------------

void MainWindow::mnuGet_Value_Click()
{
    std::string out = "Name ,Caption , Index , Value\r\n";
    const QList<QWidget*> widgets = findChildren<QWidget*>();
    for (const QWidget* w : widgets) {
        const QString name = w->objectName();
        if (name.isEmpty()) {
            continue;
        }
        QString base = name;
        QString index;
        if (const qsizetype cut = name.lastIndexOf(QLatin1Char('_'));
            cut > 0 && name.mid(cut + 1).toInt() >= 0 && !name.mid(cut + 1).isEmpty() &&
            name.mid(cut + 1).at(0).isDigit()) {
            base = name.left(cut);
            index = name.mid(cut + 1);
        }
        const std::string n = utf8(base) + (index.isEmpty() ? "" : "(" + utf8(index) + ")");
        if (base.startsWith(QStringLiteral("Text")) || base.startsWith(QStringLiteral("txt"))) {
            if (const auto* box = qobject_cast<const QLineEdit*>(w)) {
                out += n + " ," + utf8(box->text()) + "\r\n";
            }
        } else if (base.startsWith(QStringLiteral("Label")) ||
                   base.startsWith(QStringLiteral("lbl"))) {
            if (const auto* label = qobject_cast<const QLabel*>(w)) {
                out += n + " ," + utf8(label->text()) + "\r\n";
            }
        } else if (base.startsWith(QStringLiteral("Command")) ||
                   base.startsWith(QStringLiteral("cmd"))) {
            if (const auto* b = qobject_cast<const QAbstractButton*>(w)) {
                out += n + " ," + utf8(b->text()) + "\r\n";
            }
        } else if (base.startsWith(QStringLiteral("Check")) ||
                   base.startsWith(QStringLiteral("Option"))) {
            if (const auto* b = qobject_cast<const QAbstractButton*>(w)) {
                out += n + " ," + utf8(b->text()) + " , " + utf8(index) + " , " +
                       (b->isChecked() ? "1" : "0") + "\r\n";
            }
        }
    }
    text::writeFileSjis(m_session.folder().strPath / "Controls.lst_0", out);
}

} // namespace vornhale::ui
