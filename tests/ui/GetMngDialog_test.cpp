// The batch manager window frmGet_MNG: its grid, the walk over the calls of the open log on
// its own thread against a loopback stand-in of the call directory, the tick that keeps the
// web out, the growth of the grid, the open of a log from its menu, and the stop that ends
// the program.

#include "UiTestSupport.h"
#include "failure/Failure.h"
#include "manager/ManagerFixtureServer.h"
#include "session/OptionModel.h"
#include "session/Session.h"
#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/GetMngDialog.h"
#include "ui/MainWindow.h"
#include "ui/QtDialogs.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

/// A zLog .ALL log of `calls`, one contact each.
void writeAllLog(const fs::path& log, const std::vector<std::string>& calls)
{
    std::vector<std::string> lines{"zLog for Windows Version 2.80e  (c) JA1ZLO"};
    for (const std::string& call : calls) {
        std::string padded = call;
        padded.resize(12, ' ');
        lines.push_back("2026/11/21 23:19 " + padded +
                        " 599         599 13      -     -     "
                        "3.5  CW   1");
    }
    test::writeSjisLines(log, lines);
}

struct Started
{
    test::ManagerFixtureServer server;
    test::TempDir dir;
    test::ScriptedChooser chooser;
    std::unique_ptr<ui::DesktopProgram> program;
    std::vector<int> endedWith;
    QStringList failures;

    Started()
    {
        test::prepareHome(dir / "home");
        settings::ProfileFile web(dir / "home" / "Vornhale_web.ini");
        web.write("web", "call_directory", server.base());
        web.write("web", "connect_timeout_s", "2");
        web.write("web", "total_timeout_s", "5");
        web.save();
        program = std::make_unique<ui::DesktopProgram>(dir / "home", chooser);
        program->setProgramEnd([](int) {});
        program->start();
        session().options().set("inet_flag", "OK");
    }
    session::Session& session() { return *program->session(); }
    ui::MainWindow& window() { return *program->mainWindow(); }
    fs::path log(const char* name, const std::vector<std::string>& calls)
    {
        fs::create_directories(dir / "logs");
        const fs::path path = dir / "logs" / name;
        writeAllLog(path, calls);
        return path;
    }
    std::unique_ptr<ui::GetMngDialog> dialog()
    {
        ui::GetMngDialog::Hooks hooks{
            [this](std::string_view menu) { window().openBy(menu); },
            [this](int code) { endedWith.push_back(code); },
            [this](const failure::Failure& f) { failures << qs(f.description()); }};
        return std::make_unique<ui::GetMngDialog>(session(), program->dialogs(), hooks);
    }
};

template <class W> W* child(QWidget& w, const char* name)
{
    return w.findChild<W*>(QString::fromUtf8(name));
}

QString cell(ui::GetMngDialog& d, int row, int column)
{
    QTableWidgetItem* item = child<QTableWidget>(d, "MSFlexGrid1")->item(row, column);
    return item == nullptr ? QString() : item->text();
}

bool walk(ui::GetMngDialog& d)
{
    d.mnuGet_MNG_Click();
    return test::waitUntil([&] { return !d.walking(); }, 20000);
}

std::vector<std::string> manyCalls(int count)
{
    std::vector<std::string> calls;
    for (int i = 0; i < count; ++i) {
        calls.push_back("JA1A" + std::string(1, static_cast<char>('A' + i % 26)) +
                        std::string(1, static_cast<char>('A' + i / 26)));
    }
    return calls;
}

} // namespace

class GetMngDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theGridHasItsHeadsAndWidthsAsSpelled();
    void theCaptionIsTheInputsNameAndTheWindowsName();
    void theWalkShowsTheFilesTheWebsAndTheTransferredManager();
    void withTheWebTickOffNoRequestIsMadeAndTheWebColumnStaysBlank();
    void aLogOfMoreThanTwentyNineCallsGrowsTheGrid();
    void theGridFillsRowByRowWhileTheWalkGoesOn();
    void openingALogFromTheWindowListsItsCallsAlone();
    void stopEndsTheProgramNotJustTheWalk();
    void theMenuEntryOfTheMainWindowOpensTheWindow();
    void aLineWithoutACallTakesTheFailurePath();
    void theSearchButtonAsksTheCallDirectory();
};

void GetMngDialogTest::initTestCase()
{
    QVERIFY(test::ManagerFixtureServer().started());
    ui::DesktopProgram::useProgramFont();
}

void GetMngDialogTest::theGridHasItsHeadsAndWidthsAsSpelled()
{
    Started s;
    auto d = s.dialog();
    auto* grid = child<QTableWidget>(*d, "MSFlexGrid1");
    QCOMPARE(grid->columnCount(), 6);
    const char* heads[] = {"   No",       " Calls",   " search call", " Mng_Vornhale_full",
                           " Web Saerch", " 転記 MNG"};
    const int widths[] = {600, 2050, 2050, 2500, 1650, 1650};
    for (int c = 0; c < 6; ++c) {
        QCOMPARE(grid->horizontalHeaderItem(c)->text(), QString::fromUtf8(heads[c]));
        QCOMPARE(grid->columnWidth(c), widths[c] / 15);
    }
    // The head row and 29 more.
    QCOMPARE(grid->rowCount(), 29);
    QCOMPARE(child<QCheckBox>(*d, "Check1")->text(), QStringLiteral("Web でのＭＮＧ検索を実行"));
    QCOMPARE(child<QLineEdit>(*d, "Text1")->text(), QStringLiteral("XX9TST"));
    QCOMPARE(child<QComboBox>(*d, "Combo1")->count(), 10);
    QCOMPARE(child<QComboBox>(*d, "Combo1")->currentText(),
             qs(s.session().options().value("GetMng_Interval")));
    QCOMPARE(child<QPushButton>(*d, "cmdSubmit")->text(), QStringLiteral("Dalmuir"));
    for (const char* name :
         {"mnuFileOpen_all_txt_set", "mnuFileOpen_z_set", "mnuGet_MNG", "mnuStop", "mnuMain"}) {
        QVERIFY2(child<QAction>(*d, name) != nullptr, name);
    }
}

void GetMngDialogTest::theCaptionIsTheInputsNameAndTheWindowsName()
{
    Started s;
    {
        auto d = s.dialog();
        QCOMPARE(d->windowTitle(), QStringLiteral(" ＭＮＧ取得"));
    }
    s.window().openPath(s.log("CONTEST.ALL", {"XX9TST"}).string());
    auto d = s.dialog();
    QCOMPARE(d->windowTitle(), QStringLiteral("CONTEST.ALL ＭＮＧ取得"));
}

void GetMngDialogTest::theWalkShowsTheFilesTheWebsAndTheTransferredManager()
{
    Started s;
    s.window().openPath(s.log("CONTEST.ALL", {"XX9TST", "JA1ABC"}).string());
    auto d = s.dialog();
    QVERIFY(child<QCheckBox>(*d, "Check1")->isChecked());
    QVERIFY(walk(*d));
    QCOMPARE(cell(*d, 0, 0), QStringLiteral("     1"));
    QCOMPARE(cell(*d, 0, 1), QStringLiteral(" XX9TST"));
    QCOMPARE(cell(*d, 0, 4), QStringLiteral(" XX9MGR"));
    QCOMPARE(cell(*d, 0, 5), QStringLiteral(" XX9MGR"));
    QCOMPARE(cell(*d, 1, 1), QStringLiteral(" JA1ABC"));
    QCOMPARE(cell(*d, 1, 4), QStringLiteral(" "));
    QVERIFY(test::waitUntil(
        [&] { return child<QLabel>(*d, "Label1")->text() == QStringLiteral("ＭＮＧ取得終了"); },
        2000));
    QCOMPARE(ui::captionColour(child<QLabel>(*d, "Label1")), base::Colour::Blue);
    QCOMPARE(child<QLabel>(*d, "Label2")->text(), QStringLiteral("   2 /    2"));
    const auto requests = s.server.requests();
    QCOMPARE(requests, (std::vector<std::string>{"call:XX9TST", "call:JA1ABC"}));
    QVERIFY(s.failures.isEmpty());
}

void GetMngDialogTest::withTheWebTickOffNoRequestIsMadeAndTheWebColumnStaysBlank()
{
    Started s;
    s.window().openPath(s.log("CONTEST.ALL", {"XX9TST", "JA1ABC"}).string());
    auto d = s.dialog();
    child<QCheckBox>(*d, "Check1")->setChecked(false);
    QCOMPARE(s.session().options().value("Get_MNG_use_web"), std::string("0"));
    QVERIFY(walk(*d));
    QCOMPARE(cell(*d, 0, 1), QStringLiteral(" XX9TST"));
    QCOMPARE(cell(*d, 0, 4), QStringLiteral(" "));
    QCOMPARE(cell(*d, 1, 4), QStringLiteral(" "));
    QVERIFY(s.server.requests().empty());
    // The tick comes back as it was left.
    auto again = s.dialog();
    QVERIFY(!child<QCheckBox>(*again, "Check1")->isChecked());
}

void GetMngDialogTest::aLogOfMoreThanTwentyNineCallsGrowsTheGrid()
{
    Started s;
    s.window().openPath(s.log("SHORT.ALL", manyCalls(29)).string());
    auto d = s.dialog();
    child<QCheckBox>(*d, "Check1")->setChecked(false);
    QVERIFY(walk(*d));
    QCOMPARE(child<QTableWidget>(*d, "MSFlexGrid1")->rowCount(), 29);

    s.window().openPath(s.log("LONG.ALL", manyCalls(35)).string());
    QVERIFY(walk(*d));
    QCOMPARE(child<QTableWidget>(*d, "MSFlexGrid1")->rowCount(), 35);
    QCOMPARE(cell(*d, 34, 0), QStringLiteral("    35"));
    QCOMPARE(child<QLabel>(*d, "Label2")->text(), QStringLiteral("  35 /   35"));
}

void GetMngDialogTest::theGridFillsRowByRowWhileTheWalkGoesOn()
{
    Started s;
    s.window().openPath(s.log("LONG.ALL", manyCalls(31)).string());
    auto d = s.dialog();
    child<QCheckBox>(*d, "Check1")->setChecked(false);
    std::vector<int> shown;
    std::vector<QString> calls;
    bool finished = false, shownAfterEnd = false;
    QObject::connect(d.get(), &ui::GetMngDialog::rowShown, [&](int row) {
        shown.push_back(row);
        calls.push_back(cell(*d, row, 1));
        shownAfterEnd = shownAfterEnd || finished;
    });
    QObject::connect(d.get(), &ui::GetMngDialog::walkFinished, [&] { finished = true; });
    QVERIFY(walk(*d));
    QVERIFY(test::waitUntil([&] { return finished; }, 5000));
    QCOMPARE(static_cast<int>(shown.size()), 31);
    for (int i = 0; i < 31; ++i) {
        QCOMPARE(shown[static_cast<std::size_t>(i)], i);
    }
    // Each row was in the grid when it was told, and all of them before the walk's end.
    QCOMPARE(calls.front(), QStringLiteral(" JA1AAA"));
    QCOMPARE(calls.back(), cell(*d, 30, 1));
    QVERIFY(!shownAfterEnd);
    QCOMPARE(child<QTableWidget>(*d, "MSFlexGrid1")->rowCount(), 31);
}

void GetMngDialogTest::openingALogFromTheWindowListsItsCallsAlone()
{
    Started s;
    const fs::path log = s.log("OPEN.ALL", {"XX9TST", "JA1ABC", "JA1XYZ"});
    s.chooser.answers << qs(log.string());
    auto d = s.dialog();
    child<QAction>(*d, "mnuFileOpen_all_txt_set")->trigger();
    QCOMPARE(s.chooser.titles.size(), 1);
    QVERIFY(s.chooser.titles.front().endsWith(
        QStringLiteral("の ＊．ａｌｌ　または　＊．ｔｘｔ　 ファイルを  開く ....")));
    QCOMPARE(d->windowTitle(), QStringLiteral("OPEN.ALL ＭＮＧ取得"));
    QCOMPARE(cell(*d, 2, 1), QStringLiteral(" JA1XYZ"));
    QCOMPARE(cell(*d, 0, 3), QString());
    QCOMPARE(cell(*d, 0, 4), QString());
    QCOMPARE(child<QLabel>(*d, "Label2")->text(), QStringLiteral("   0 /    3"));
    QVERIFY(s.server.requests().empty());
}

void GetMngDialogTest::stopEndsTheProgramNotJustTheWalk()
{
    Started s;
    s.window().openPath(s.log("LONG.ALL", manyCalls(200)).string());
    auto d = s.dialog();
    d->mnuGet_MNG_Click();
    QVERIFY(d->walking());
    QTest::mouseClick(child<QPushButton>(*d, "cmdStop"), Qt::LeftButton);
    QCOMPARE(s.endedWith, std::vector<int>{0});
    // The walk itself stops at its next step and shows nothing more.
    QVERIFY(test::waitUntil([&] { return !d->walking(); }, 20000));
    QVERIFY(s.server.requests().size() < 200);
    QVERIFY(child<QLabel>(*d, "Label1")->text().isEmpty());

    // The menu's stop does the same without a walk.
    child<QAction>(*d, "mnuStop")->trigger();
    QCOMPARE(s.endedWith, (std::vector<int>{0, 0}));
}

void GetMngDialogTest::theMenuEntryOfTheMainWindowOpensTheWindow()
{
    Started s;
    auto* entry = s.window().findChild<QAction*>(QStringLiteral("mnuGet_MNG"));
    QCOMPARE(entry->text(), QStringLiteral("MNG 取得"));
    // Without leave to use the internet the entry is disabled.
    s.session().options().set("inet_flag", "NO");
    s.session().optionModel()->inetFlagRule();
    QVERIFY(test::waitUntil([&] { return !entry->isEnabled(); }, 1000));
    s.session().options().set("inet_flag", "OK");
    s.session().optionModel()->inetFlagRule();
    QVERIFY(test::waitUntil([&] { return entry->isEnabled(); }, 1000));
    QString seen;
    auto* timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [&, timer] {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal != nullptr && modal->objectName() == QStringLiteral("frmGet_MNG")) {
            timer->stop();
            timer->deleteLater();
            seen = modal->windowTitle();
            child<QAction>(*modal, "mnuMain")->trigger();
        }
    });
    timer->start();
    entry->trigger();
    QCOMPARE(seen, QStringLiteral(" ＭＮＧ取得"));
}

void GetMngDialogTest::aLineWithoutACallTakesTheFailurePath()
{
    Started s;
    const fs::path log = s.log("SHORT.ALL", {"XX9TST"});
    s.window().openPath(log.string());
    // A later line of two words has no third word to take as the call.
    test::writeSjisLines(log,
                         {"zLog for Windows Version 2.80e  (c) JA1ZLO",
                          "2026/11/21 23:19 XX9TST       599         599 13", "2026/11/21 23:20"});
    auto d = s.dialog();
    child<QCheckBox>(*d, "Check1")->setChecked(false);
    QVERIFY(walk(*d));
    QCOMPARE(s.failures.size(), 1);
    QVERIFY(s.failures.front().contains(QStringLiteral("2026/11/21 23:20")));
    QVERIFY(child<QLabel>(*d, "Label1")->text().isEmpty());
}

void GetMngDialogTest::theSearchButtonAsksTheCallDirectory()
{
    Started s;
    auto d = s.dialog();
    QTest::keyClicks(child<QLineEdit>(*d, "Text2"), QStringLiteral("xx9tst"));
    QTest::mouseClick(child<QPushButton>(*d, "cmdSubmit"), Qt::LeftButton);
    QVERIFY(test::waitUntil([&] { return !d->walking(); }, 10000));
    QVERIFY(test::waitUntil(
        [&] { return child<QLabel>(*d, "Label45")->text() == QStringLiteral("取 得 成 功"); },
        2000));
    QCOMPARE(child<QLabel>(*d, "Label34")->text(), QStringLiteral("XX9MGR"));
    QCOMPARE(ui::captionColour(child<QLabel>(*d, "Label45")), base::Colour::Blue);
    QCOMPARE(s.server.requests(), std::vector<std::string>{"call:XX9TST"});
}

QTEST_MAIN(GetMngDialogTest)
#include "GetMngDialog_test.moc"
