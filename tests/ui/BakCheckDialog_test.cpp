// The history check frmCheck_bak_qso_mas: the sizes and line counts of the history files in
// Temp_Files, a file shown by a click on its name, the help and the way back.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "ui/BakCheckDialog.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QApplication>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <memory>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

struct Started : test::StartedProgram
{
    fs::path temp() { return session().folder().Temp_Files; }
};

} // namespace

class BakCheckDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void withNoFilesInTempFilesTheGridIsEmpty();
    void eachHistoryFileShowsItsSizeAndLines();
    void aClickOnAFileNameShowsTheFile();
    void theHelpExplainsAndBackCloses();
    void theButtonOfTheInputTabOpensTheCheck();
};

void BakCheckDialogTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void BakCheckDialogTest::withNoFilesInTempFilesTheGridIsEmpty()
{
    Started s;
    for (const auto& e : fs::directory_iterator(s.temp())) {
        fs::remove_all(e.path());
    }
    ui::BakCheckDialog check(s.session());
    QCOMPARE(check.objectName(), QStringLiteral("frmCheck_bak_qso_mas"));
    QCOMPARE(check.windowTitle(), QStringLiteral(" bak_qso.mas 確認 ：　") + qs(s.temp().string()) +
                                      QStringLiteral("bak_qso_mas*"));
    auto* grid = check.findChild<QTableWidget*>(QStringLiteral("Grid1"));
    QVERIFY(grid != nullptr);
    QCOMPARE(grid->rowCount(), 0);
    QCOMPARE(grid->columnCount(), 7);
}

void BakCheckDialogTest::eachHistoryFileShowsItsSizeAndLines()
{
    Started s;
    test::writeBytes(s.temp() / "bak_qso.mas2_p", "\"JA1ABC\",\"1C\"\r\n\"JA2XYZ\",\"2C\"\r\n");
    test::writeBytes(s.temp() / "bak_qso_mas_name2_p", "a\r\nb\r\n");
    ui::BakCheckDialog check(s.session());
    auto* grid = check.findChild<QTableWidget*>(QStringLiteral("Grid1"));
    QCOMPARE(grid->rowCount(), 1);
    QCOMPARE(grid->item(0, 0)->text(), QStringLiteral("　QSL 発行済みの局"));
    QCOMPARE(grid->item(0, 1)->text(), QStringLiteral("bak_qso.mas2_p"));
    QCOMPARE(grid->item(0, 2)->text(), QStringLiteral("30"));
    QCOMPARE(grid->item(0, 3)->text(), QStringLiteral("2"));
    QCOMPARE(grid->item(0, 4)->text(), QStringLiteral("bak_qso_mas_name2_p"));
    QCOMPARE(grid->item(0, 5)->text(), QStringLiteral("6"));
    QCOMPARE(grid->item(0, 6)->text(), QStringLiteral("2"));
}

void BakCheckDialogTest::aClickOnAFileNameShowsTheFile()
{
    Started s;
    test::writeBytes(s.temp() / "bak_qso.mas1_p", "\"JA1ABC\",\"1C\"\r\n\"JA2XYZ\",\"2C\"\r\n");
    ui::BakCheckDialog check(s.session());
    check.show();
    auto* grid = check.findChild<QTableWidget*>(QStringLiteral("Grid1"));
    QString form, title;
    int lines = -1;
    test::whenModal([&](QWidget* modal) {
        form = modal->objectName();
        title = modal->windowTitle();
        lines = modal->findChild<QListWidget*>(QStringLiteral("List1"))->count();
        modal->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    const QRect cell = grid->visualItemRect(grid->item(0, 1));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(form, QStringLiteral("frmDisp"));
    QVERIFY(title.endsWith(qs((s.temp() / "bak_qso.mas1_p").string())));
    QCOMPARE(lines, 2);
    // The name of a file that is not there shows nothing.
    check.showFileAt(0, 4);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void BakCheckDialogTest::theHelpExplainsAndBackCloses()
{
    Started s;
    ui::BakCheckDialog check(s.session());
    check.show();
    test::BoxAnswerer boxes;
    auto* help = check.findChild<QAction*>(QStringLiteral("mnuHelp"));
    QCOMPARE(help->text(), QStringLiteral("説明"));
    help->trigger();
    QCOMPARE(boxes.titles.size(), 1);
    QCOMPARE(boxes.titles[0], QStringLiteral(" 　　　　bak_qso.mas 関係ファイルの確認の説明"));
    QVERIFY(boxes.texts[0].startsWith(
        QStringLiteral("同一行の３種類の各ファイルのサイズ、件数は同じが正常です。")));
    QVERIFY(boxes.texts[0].endsWith(
        QStringLiteral("bak_qso_mas_name?_p サイズが 　２０ バイト以下の時は作成が異常です。")));
    auto* back = check.findChild<QAction*>(QStringLiteral("mnuBack"));
    QCOMPARE(back->text(), QStringLiteral("戻る"));
    back->trigger();
    QVERIFY(!check.isVisible());
    const std::string posi = test::readBytes(s.session().folder().strPath / "Vornhale_posi.ini");
    QVERIFY(posi.find("Position_frmCheck_bak_qso_mas") != std::string::npos);
}

void BakCheckDialogTest::theButtonOfTheInputTabOpensTheCheck()
{
    Started s;
    auto* button =
        s.program->mainWindow()->findChild<QPushButton*>(QStringLiteral("cmdCheck_bak_qso_mas"));
    QVERIFY(button != nullptr);
    QCOMPARE(button->toolTip(),
             QStringLiteral("bak_qso.mas＊　ファイルのサイズ、件数の確認が出来ます。"));
    QString form;
    test::whenModal([&](QWidget* modal) {
        form = modal->objectName();
        modal->findChild<QAction*>(QStringLiteral("mnuBack"))->trigger();
    });
    button->click();
    QCOMPARE(form, QStringLiteral("frmCheck_bak_qso_mas"));
}

QTEST_MAIN(BakCheckDialogTest)
#include "BakCheckDialog_test.moc"
