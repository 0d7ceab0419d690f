// The viewers frmDisp and frmDisp2 to frmDisp4 with their ListBoxHS list, and the files the
// main window's viewing entries show in them.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "tools/DuplicateList.h"
#include "ui/DesktopProgram.h"
#include "ui/ListBoxHS.h"
#include "ui/MainWindow.h"
#include "ui/ViewerActions.h"
#include "ui/ViewerDialog.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFontMetrics>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <memory>

using namespace vornhale;
using session::ViewerWindow;
using ui::qs;
using ui::utf8;
namespace fs = std::filesystem;

namespace {

struct Started : test::StartedProgram
{
    fs::path positions() { return session().folder().strPath / "Vornhale_posi.ini"; }
    fs::path openSample(const fs::path& folder)
    {
        fs::create_directories(folder);
        const fs::path log = folder / "CONTEST.ALL";
        fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
        chooser.answers << qs(log.string());
        window().findChild<QAction*>(QStringLiteral("mnuOpen_all_txt_set"))->trigger();
        return log;
    }
};

/// Runs a menu entry's handler; the entries of files not yet made are disabled until the
/// step that makes them, which these tests skip.
void fire(Started& s, const char* entry)
{
    QAction* action = s.window().findChild<QAction*>(QString::fromUtf8(entry));
    QVERIFY2(action != nullptr, entry);
    action->setEnabled(true);
    action->trigger();
}

/// What a viewing entry opened: the window's name, its title and its lines.
struct Seen
{
    QString form, title;
    QStringList lines;
};

Seen viewThrough(const std::function<void()>& open)
{
    Seen seen;
    test::whenModal([&](QWidget* modal) {
        seen.form = modal->objectName();
        seen.title = modal->windowTitle();
        if (auto* list = modal->findChild<QListWidget*>(QStringLiteral("List1"))) {
            for (int i = 0; i < list->count(); ++i) {
                seen.lines << list->item(i)->text();
            }
        }
        if (auto* ok = modal->findChild<QPushButton*>(QStringLiteral("cmdOK"))) {
            ok->click();
        } else if (auto* box = qobject_cast<QDialog*>(modal)) {
            box->reject();
        }
    });
    open();
    return seen;
}

} // namespace

class ViewerDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aLongLineGetsAWorkingHorizontalScrollBar();
    void theScrollWidthIsTheWidestLineAsTheFontMeasuresIt();
    void anEmptyFileShowsAnEmptyListAndTheTitle();
    void tabsAreExpandedToStopsOfEightColumns();
    void eachViewerHasItsTitleAndKeepsItsPlace();
    void aLogOfThirtyThousandLinesOpensWithinAMoment();
    void theTextCheckOpensThreeViewersInARow();
    void theDuplicateListEntryShowsTheListTheConversionWrote();
    void theDisplayEntriesShowTheFilesOfTheOpenInput();
    void aMissingFileIsReportedInsteadOfShown();
};

void ViewerDialogTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void ViewerDialogTest::aLongLineGetsAWorkingHorizontalScrollBar()
{
    Started s;
    const std::string longLine = "START " + std::string(600, 'x') + " 東京 END";
    test::writeSjisLines(s.dir / "long.txt", {"short", longLine, "end"});
    ui::ViewerDialog viewer(ViewerWindow::frmDisp, s.dir / "long.txt", "", s.positions());
    viewer.show();
    QVERIFY(QTest::qWaitForWindowExposed(&viewer));
    QListWidget* list = viewer.list();
    QCOMPARE(list->count(), 3);
    QScrollBar* bar = list->horizontalScrollBar();
    QVERIFY(test::waitUntil([&] { return bar->maximum() > 0; }, 2000));
    QVERIFY(bar->isVisible());
    // The range reaches the end of the longest line.
    QVERIFY(bar->maximum() + list->viewport()->width() >= viewer.listBox().widest());
    bar->setValue(bar->maximum());
    QCOMPARE(bar->value(), bar->maximum());
}

void ViewerDialogTest::theScrollWidthIsTheWidestLineAsTheFontMeasuresIt()
{
    QListWidget list;
    ui::ListBoxHS box(list);
    QCOMPARE(&box.ListBox(), &list);
    const QFontMetrics metrics(list.font());
    box.AddItem(QStringLiteral("abc"));
    QCOMPARE(box.widest(), metrics.horizontalAdvance(QStringLiteral("abc")));
    box.AddItem(QStringLiteral("東京都千代田区霞が関"), 0);
    QCOMPARE(list.item(0)->text(), QStringLiteral("東京都千代田区霞が関"));
    QCOMPARE(box.widest(), metrics.horizontalAdvance(QStringLiteral("東京都千代田区霞が関")));
    QVERIFY(box.horizontalExtent() > box.widest());
    box.AddItem(QStringLiteral("a"));
    QCOMPARE(box.widest(), metrics.horizontalAdvance(QStringLiteral("東京都千代田区霞が関")));
    delete list.takeItem(0);
    box.RefreshHSBar();
    QCOMPARE(box.widest(), metrics.horizontalAdvance(QStringLiteral("abc")));
    QCOMPARE(list.item(0)->sizeHint().width(), box.horizontalExtent());
}

void ViewerDialogTest::anEmptyFileShowsAnEmptyListAndTheTitle()
{
    Started s;
    test::writeBytes(s.dir / "empty.txt", "");
    ui::ViewerDialog viewer(ViewerWindow::frmDisp, s.dir / "empty.txt", "/logs/A.ALL",
                            s.positions());
    QCOMPARE(viewer.objectName(), QStringLiteral("frmDisp"));
    QCOMPARE(viewer.list()->count(), 0);
    QCOMPARE(viewer.windowTitle(),
             QStringLiteral("in : /logs/A.ALL        out: ") + qs((s.dir / "empty.txt").string()));
    QVERIFY(viewer.findChild<QPushButton*>(QStringLiteral("cmdOK")) != nullptr);
}

void ViewerDialogTest::tabsAreExpandedToStopsOfEightColumns()
{
    Started s;
    test::writeSjisLines(s.dir / "tabs.txt", {"a\tb", "東京\tx"});
    ui::ViewerDialog viewer(ViewerWindow::frmDisp, s.dir / "tabs.txt", "", s.positions());
    QCOMPARE(viewer.list()->item(0)->text(), QStringLiteral("a       b"));
    QCOMPARE(viewer.list()->item(1)->text(), QStringLiteral("東京    x"));
}

void ViewerDialogTest::eachViewerHasItsTitleAndKeepsItsPlace()
{
    Started s;
    test::writeSjisLines(s.dir / "a.txt", {"x"});
    const QString path = qs((s.dir / "a.txt").string());
    const struct
    {
        ViewerWindow window;
        QString form, title;
    } cases[] = {
        {ViewerWindow::frmDisp2, QStringLiteral("frmDisp2"), QStringLiteral(" 入力 ：　") + path},
        {ViewerWindow::frmDisp3, QStringLiteral("frmDisp3"),
         QStringLiteral(" 出力 TXT：　") + path},
        {ViewerWindow::frmDisp4, QStringLiteral("frmDisp4"),
         QStringLiteral(" 出力 ALL：　") + path},
    };
    for (const auto& c : cases) {
        ui::ViewerDialog viewer(c.window, s.dir / "a.txt", "", s.positions());
        viewer.show();
        QCOMPARE(viewer.objectName(), c.form);
        QCOMPARE(viewer.windowTitle(), c.title);
        // The smallest height of these viewers holds.
        viewer.resize(300, 100);
        QVERIFY(viewer.height() >= 8145 / 15);
        viewer.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
        QVERIFY(!viewer.isVisible());
        const std::string posi = test::readBytes(s.positions());
        QVERIFY(posi.find("Position_" + utf8(c.form)) != std::string::npos);
    }
}

void ViewerDialogTest::aLogOfThirtyThousandLinesOpensWithinAMoment()
{
    Started s;
    std::vector<std::string> lines;
    for (int i = 0; i < 30000; ++i) {
        lines.push_back(
            "2026/11/21 23:19 JA1ZZZ       599         599 13      -     -     14   CW   1 " +
            std::to_string(i));
    }
    test::writeSjisLines(s.dir / "big.ALL", lines);
    QElapsedTimer timer;
    timer.start();
    ui::ViewerDialog viewer(ViewerWindow::frmDisp, s.dir / "big.ALL", "", s.positions());
    viewer.show();
    QVERIFY(QTest::qWaitForWindowExposed(&viewer));
    const qint64 ms = timer.elapsed();
    qInfo("30000 lines shown in %lld ms", static_cast<long long>(ms));
    QCOMPARE(viewer.list()->count(), 30000);
    QVERIFY(ms < 10000);
}

void ViewerDialogTest::theTextCheckOpensThreeViewersInARow()
{
    Started s;
    test::writeSjisLines(s.dir / "A.ALL", {"all"});
    test::writeSjisLines(s.dir / "A_za2t.txt", {"txt", "2"});
    test::writeSjisLines(s.dir / "A_zt2a.all", {"all", "2", "3"});
    const auto opened =
        ui::showConversionCheck(&s.window(), s.session(), (s.dir / "A.ALL").string(),
                                (s.dir / "A_za2t.txt").string(), (s.dir / "A_zt2a.all").string());
    QCOMPARE(opened.size(), std::size_t(3));
    QCOMPARE(opened[0]->objectName(), QStringLiteral("frmDisp2"));
    QCOMPARE(opened[1]->objectName(), QStringLiteral("frmDisp3"));
    QCOMPARE(opened[2]->objectName(), QStringLiteral("frmDisp4"));
    QCOMPARE(opened[2]->findChild<QListWidget*>(QStringLiteral("List1"))->count(), 3);
    QVERIFY(opened[0]->x() < opened[1]->x());
    QVERIFY(opened[1]->x() < opened[2]->x());
    for (QWidget* w : opened) {
        QVERIFY(w->isVisible());
        w->close();
    }
    // A file that is not there opens no window.
    QCOMPARE(ui::showConversionCheck(&s.window(), s.session(), (s.dir / "A.ALL").string(), "",
                                     (s.dir / "none.all").string())
                 .size(),
             std::size_t(1));
}

void ViewerDialogTest::theDuplicateListEntryShowsTheListTheConversionWrote()
{
    Started s;
    // A point in a folder name: the list is cut there, and the viewer opens that file.
    const fs::path log = s.openSample(s.dir / "logs.2026");
    auto* check06 = s.window().findChild<QCheckBox*>(QStringLiteral("Check06"));
    test::showTabOf(check06);
    if (!check06->isChecked()) {
        check06->click();
    }
    QCOMPARE(s.session().options().value("Check06"), std::string("1"));
    QSignalSpy finished(&s.window(), &ui::MainWindow::conversionFinished);
    QVERIFY(s.window().startConversion());
    QVERIFY(finished.wait(120000) || finished.count() > 0);
    const fs::path dup = s.dir / "logs.dup";
    QCOMPARE(qs(tools::DuplicateList::dupName(log.string())), qs(dup.string()));
    QVERIFY(fs::exists(dup));
    for (const char* entry : {"mnuDisp_dup", "＊．ｄｕｐ"}) {
        const Seen seen = viewThrough([&] { fire(s, entry); });
        QCOMPARE(seen.form, QStringLiteral("frmDisp"));
        QCOMPARE(seen.title, QStringLiteral("in : ") + qs(log.string()) +
                                 QStringLiteral("        out: ") + qs(dup.string()));
        QCOMPARE(seen.lines.size(), static_cast<int>(test::readSjisLines(dup).size()));
    }
}

void ViewerDialogTest::theDisplayEntriesShowTheFilesOfTheOpenInput()
{
    Started s;
    const fs::path log = s.openSample(s.dir / "logs");
    const fs::path folder = s.dir / "logs";
    const struct
    {
        const char* entry;
        fs::path file;
    } cases[] = {
        {"mnuDisp_in", log},
        {"mnuDisp_zt2a", folder / "CONTEST_zt2a.all"},
        {"mnuDisp_za2t", folder / "CONTEST_za2t.txt"},
        {"mnuDisp_QSOBank", folder / "CONTEST.QSOBank.xml"},
        {"mnuDisp_Vornhale_ini", s.session().folder().strPath / "Vornhale.ini"},
        {"mnuDisp_Vornhale_rmk1", s.session().folder().strPath / "Vornhale.rmk1"},
    };
    for (const auto& c : cases) {
        if (!fs::exists(c.file)) {
            test::writeSjisLines(c.file, {std::string("text of ") + c.entry, "second\tline"});
        }
        const Seen seen = viewThrough([&] { fire(s, c.entry); });
        QCOMPARE(seen.form, QStringLiteral("frmDisp"));
        QVERIFY2(seen.title.endsWith(QStringLiteral("out: ") + qs(c.file.string())), c.entry);
        const auto lines = test::readSjisLines(c.file);
        QCOMPARE(seen.lines.size(), static_cast<int>(lines.size()));
        QCOMPARE(seen.lines.front(), qs(lines.front()));
    }
    // The input's button on the result tab shows the same file.
    const Seen input = viewThrough(
        [&] { s.window().findChild<QPushButton*>(QStringLiteral("cmdDisp_in"))->click(); });
    QVERIFY(input.title.endsWith(qs(log.string())));
}

void ViewerDialogTest::aMissingFileIsReportedInsteadOfShown()
{
    Started s;
    const fs::path log = s.openSample(s.dir / "logs");
    for (const char* entry : {"mnuDisp_za2t", "mnuDisp_log2a", "mnuDisp_l2t"}) {
        test::BoxAnswerer boxes;
        fire(s, entry);
        QCOMPARE(boxes.texts.size(), 1);
        QVERIFY2(boxes.texts[0].endsWith(QStringLiteral(" が有りません。")), entry);
    }
    test::BoxAnswerer boxes;
    fire(s, "mnuDisp_za2t");
    QCOMPARE(boxes.texts[0], qs((s.dir / "logs" / "CONTEST_za2t.txt").string()) +
                                 QStringLiteral(" が有りません。"));
}

QTEST_MAIN(ViewerDialogTest)
#include "ViewerDialog_test.moc"
