// The start of the window program: the environment settings before the main window at a
// first start, their rows, the save, the OK that goes on to the main window, and the
// forced end.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "ui/ConfigDialog.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <memory>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

struct FirstStart
{
    test::TempDir dir;
    test::ScriptedChooser chooser;
    std::unique_ptr<ui::DesktopProgram> program;
    std::unique_ptr<QSignalSpy> ended;
    int endedWith = -1;

    FirstStart()
    {
        program = std::make_unique<ui::DesktopProgram>(dir / "home", chooser);
        program->setProgramEnd([this](int code) { endedWith = code; });
        ended = std::make_unique<QSignalSpy>(program.get(), &ui::DesktopProgram::ended);
        program->start();
    }
    ui::ConfigDialog* dialog() { return program->configDialog(); }
    template <class W> W* find(const QString& name) { return dialog()->findChild<W*>(name); }
    void click(const QString& name)
    {
        QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton);
    }
};

} // namespace

class StartupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aFirstStartOpensTheEnvironmentSettingsBeforeTheMainWindow();
    void theDialogShowsItsRowsCaptionsAndButtons();
    void savingTheFilledRowsAndOkGoOnToTheMainWindow();
    void theForcedEndKeepsTheFileAndEndsTheProgram();
    void aHamlogNameWithoutItsFolderIsRefused();
    void notUsedTickedAndUntickedRestoresTheText();
    void aLaterStartGoesStraightToTheMainWindow();
    void theEnvironmentMenuOpensTheDialogOverTheMainWindow();
    void aMasterDeclaredNotUsedIsNotRequiredAtTheStart();
    void aSecondStartOnTheSameFolderIsNotRefused();
    void theMarkKeepsOneCharacterWhenSaved();
};

void StartupTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void StartupTest::aFirstStartOpensTheEnvironmentSettingsBeforeTheMainWindow()
{
    FirstStart s;
    QVERIFY(s.dialog() != nullptr);
    QVERIFY(s.dialog()->isVisible());
    QVERIFY(s.dialog()->isModal());
    QCOMPARE(s.program->mainWindow(), nullptr);
    QCOMPARE(s.dialog()->objectName(), QStringLiteral("frmConfig"));
    QCOMPARE(s.dialog()->windowTitle(),
             QStringLiteral("［ 環境設定 ］ Vornhale_ｃｆｇ.ini を新規作成します。"));
    // Nothing is known of HAMLOG here: the save is refused, every label red.
    QVERIFY(!s.find<QPushButton>(QStringLiteral("cmdSave"))->isEnabled());
    QVERIFY(!s.find<QPushButton>(QStringLiteral("cmdOK"))->isEnabled());
    QCOMPARE(ui::captionColour(s.find<QLabel>(QStringLiteral("lblHamlog_hdb"))), base::Colour::Red);
    QCOMPARE(ui::captionColour(s.find<QLabel>(QStringLiteral("lblZlog_dat"))), base::Colour::Red);
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblMsg"))->text(), QStringLiteral("作成必要"));
    QVERIFY(!fs::exists(s.dir / "home" / "Vornhale_cfg.ini"));
}

void StartupTest::theDialogShowsItsRowsCaptionsAndButtons()
{
    FirstStart s;
    for (const settings::ConfigModel::Row& row : settings::ConfigModel::rows()) {
        QVERIFY(s.find<QLineEdit>(qs(row.textBox)));
        QCOMPARE(s.find<QPushButton>(qs(row.button))->text(), QStringLiteral("参照"));
        QCOMPARE(s.find<QLabel>(qs(row.label))->text(), qs(row.caption));
    }
    for (const char* tick : {"chkNo_name", "chkNo_qth", "chkNo_rtcl"}) {
        auto* box = s.find<QCheckBox>(QString::fromUtf8(tick));
        QCOMPARE(box->text(), QStringLiteral("無用"));
        QCOMPARE(box->toolTip(),
                 QStringLiteral("使用する予定が無い時は [ レ点マーク ] を付けて下さい。"));
    }
    QCOMPARE(s.find<QCheckBox>(QStringLiteral("Chk_inet"))->text(),
             QStringLiteral("ＭＮＧ検索する為の常時接続しているインターネット環境がある"));
    QCOMPARE(s.find<QCheckBox>(QStringLiteral("Check1"))->text(),
             QStringLiteral("DXCC_mas.txt の５５桁目を参照し処理する。"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdSave"))->text(), QStringLiteral("保 存"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdSave"))->toolTip(),
             QStringLiteral("現在の内容を保存します。"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdOK"))->text(), QStringLiteral("Ｏ Ｋ"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdOK"))->toolTip(),
             QStringLiteral("メイン画面に戻ります。"));
    QCOMPARE(s.find<QPushButton>(QStringLiteral("cmdEnd"))->text(), QStringLiteral("強制終了"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblMsg1"))->text(),
             QStringLiteral("フォルダ　の場合には　グループのどれか一"));
}

void StartupTest::savingTheFilledRowsAndOkGoOnToTheMainWindow()
{
    FirstStart s;
    const fs::path hdb = s.dir / "Hamlog.hdb";
    test::writeBytes(hdb, "stand-in");
    // The two HAMLOG rows are given through their browse buttons.
    s.chooser.answers << qs(hdb.string()) << qs(hdb.string());
    s.click(QStringLiteral("cmdHamlog_hdb"));
    s.click(QStringLiteral("cmdHamlog_hdb_2"));
    QCOMPARE(s.chooser.filters[0], QStringLiteral("Hamlog の *.hdb ﾌｧｲﾙ　常用( *.hdb )|*.hdb"));
    QCOMPARE(s.find<QLineEdit>(QStringLiteral("txtHamlog_hdb"))->text(), qs(hdb.string()));
    QCOMPARE(ui::captionColour(s.find<QLabel>(QStringLiteral("lblHamlog_hdb"))),
             base::Colour::Black);
    for (const char* tick : {"chkNo_name", "chkNo_qth"}) {
        const auto* row = settings::ConfigModel::rowOf(tick);
        if (s.dialog()->model().invalid(
                static_cast<std::size_t>(row - settings::ConfigModel::rows().data()))) {
            s.click(QString::fromUtf8(tick));
        }
    }
    QVERIFY(s.find<QPushButton>(QStringLiteral("cmdSave"))->isEnabled());
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblMsg"))->text(), QStringLiteral("作成可能"));
    s.click(QStringLiteral("cmdSave"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblMsg"))->text(), QStringLiteral("保存完了"));
    QCOMPARE(settings::ProfileFile(s.dir / "home" / "Vornhale_cfg.ini")
                 .read("Vornhale_cfg.ini", "hamlog_hdb_dir"),
             hdb.string());

    QSignalSpy shown(s.program.get(), &ui::DesktopProgram::mainWindowShown);
    s.click(QStringLiteral("cmdOK"));
    QVERIFY(shown.count() == 1 || shown.wait(5000));
    QVERIFY(s.program->mainWindow() != nullptr);
    QVERIFY(s.program->mainWindow()->isVisible());
    QCOMPARE(s.ended->count(), 0);
}

void StartupTest::theForcedEndKeepsTheFileAndEndsTheProgram()
{
    FirstStart s;
    s.click(QStringLiteral("cmdEnd"));
    QVERIFY(s.ended->count() == 1 || s.ended->wait(5000));
    QCOMPARE(s.ended->at(0).at(0).toInt(), 0);
    QCOMPARE(s.program->mainWindow(), nullptr);
    QVERIFY(!fs::exists(s.dir / "home" / "Vornhale_cfg.ini"));
}

void StartupTest::aHamlogNameWithoutItsFolderIsRefused()
{
    FirstStart s;
    auto* box = s.find<QLineEdit>(QStringLiteral("txtHamlog_hdb"));
    QTest::keyClicks(box, QStringLiteral("Hamlog.hdb"));
    QCOMPARE(ui::captionColour(s.find<QLabel>(QStringLiteral("lblHamlog_hdb"))), base::Colour::Red);
    QVERIFY(!s.find<QPushButton>(QStringLiteral("cmdSave"))->isEnabled());
}

void StartupTest::notUsedTickedAndUntickedRestoresTheText()
{
    FirstStart s;
    auto* box = s.find<QLineEdit>(QStringLiteral("txtName_mas"));
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("/data/names/"));
    s.click(QStringLiteral("chkNo_name"));
    QCOMPARE(box->text(), QStringLiteral("使用しない"));
    QVERIFY(box->isReadOnly());
    QVERIFY(!s.find<QPushButton>(QStringLiteral("cmdName_mas"))->isEnabled());
    s.click(QStringLiteral("chkNo_name"));
    QCOMPARE(box->text(), QStringLiteral("/data/names/"));
    QVERIFY(!box->isReadOnly());
    QVERIFY(s.find<QPushButton>(QStringLiteral("cmdName_mas"))->isEnabled());
}

void StartupTest::aLaterStartGoesStraightToTheMainWindow()
{
    test::TempDir dir;
    test::prepareHome(dir / "home");
    test::ScriptedChooser chooser;
    ui::DesktopProgram program(dir / "home", chooser);
    program.setProgramEnd([](int) {});
    QVERIFY(program.start());
    QCOMPARE(program.configDialog(), nullptr);
    QVERIFY(program.mainWindow() && program.mainWindow()->isVisible());
}

void StartupTest::theEnvironmentMenuOpensTheDialogOverTheMainWindow()
{
    test::TempDir dir;
    test::prepareHome(dir / "home");
    test::ScriptedChooser chooser;
    ui::DesktopProgram program(dir / "home", chooser);
    program.setProgramEnd([](int) {});
    QVERIFY(program.start());
    QString title;
    test::whenModal([&title](QWidget* dialog) {
        title = dialog->windowTitle();
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    });
    program.mainWindow()->findChild<QAction*>(QStringLiteral("mnuConfig"))->trigger();
    QCOMPARE(title, QStringLiteral("［ 環境設定 ］ Vornhale_ｃfg．ｉｎｉ を編集・作成します。"));
}

void StartupTest::aMasterDeclaredNotUsedIsNotRequiredAtTheStart()
{
    test::TempDir dir;
    test::prepareHome(dir / "home");
    {
        settings::ProfileFile cfg(dir / "home" / "Vornhale_cfg.ini");
        cfg.write("Vornhale_cfg.ini", "name_mas_dir", "使用しない");
        QVERIFY(cfg.save());
    }
    fs::remove(dir / "home" / "name_mas.txt");
    test::ScriptedChooser chooser;
    ui::DesktopProgram program(dir / "home", chooser);
    program.setProgramEnd([](int) {});
    test::BoxAnswerer boxes;
    QVERIFY(program.start());
    QVERIFY(program.mainWindow() != nullptr);
    QVERIFY2(boxes.titles.isEmpty(), qPrintable(boxes.titles.join(QLatin1Char('|'))));
    // The name lookup is off: its frame waits.
    QVERIFY(!program.mainWindow()->findChild<QCheckBox*>(QStringLiteral("Check15"))->isEnabled());
}

void StartupTest::aSecondStartOnTheSameFolderIsNotRefused()
{
    test::TempDir dir;
    test::prepareHome(dir / "home");
    test::ScriptedChooser chooser;
    ui::DesktopProgram first(dir / "home", chooser);
    first.setProgramEnd([](int) {});
    QVERIFY(first.start());
    ui::DesktopProgram second(dir / "home", chooser);
    second.setProgramEnd([](int) {});
    QVERIFY(second.start());
    QVERIFY(first.mainWindow()->isVisible());
    QVERIFY(second.mainWindow()->isVisible());
}

void StartupTest::theMarkKeepsOneCharacterWhenSaved()
{
    test::TempDir dir;
    test::prepareHome(dir / "home");
    test::ScriptedChooser chooser;
    ui::DesktopProgram program(dir / "home", chooser);
    program.setProgramEnd([](int) {});
    QVERIFY(program.start());
    test::whenModal([](QWidget* dialog) {
        auto* mark = dialog->findChild<QLineEdit*>(QStringLiteral("Text1"));
        mark->selectAll();
        QTest::keyClicks(mark, QStringLiteral("NN"));
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdSave")),
                          Qt::LeftButton);
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    });
    program.mainWindow()->findChild<QAction*>(QStringLiteral("mnuConfig"))->trigger();
    QCOMPARE(settings::ProfileFile(dir / "home" / "Vornhale_cfg.ini")
                 .read("Vornhale_cfg.ini", "No_QSL_moji"),
             std::string("N"));
}

QTEST_MAIN(StartupTest)
#include "Startup_test.moc"
