// The result grid editors Grid4frm and Grid5frm: loading a result file, editing its cells by
// keyboard, the widths, the byte-exact save, the row limit, and their entries in the main
// window after a real conversion.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "support/TestSupport.h"
#include "text/Record.h"
#include "tools/ResultGrid.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/ResultGridDialog.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <memory>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

struct Started : test::StartedProgram
{
    std::unique_ptr<ui::ResultGridDialog>
    grid(const fs::path& file, const tools::GridForm& form = tools::GridForm::hamlog())
    {
        auto g = std::make_unique<ui::ResultGridDialog>(form, session(), file,
                                                        [this] { endedWith = 0; });
        g->show();
        return g;
    }
};

std::string row(const std::string& call, int n)
{
    return text::formatRecord({call, "26/11/28", "00:01U", "599", "599", "14", "CW",
                               std::to_string(n), "", "J* ", "", "Japan", "", "", "8"});
}

template <class W> W* child(QWidget* parent, const char* name)
{
    return parent->findChild<W*>(QString::fromUtf8(name));
}

// Runs a menu entry or tool button of the main window.
void fire(QWidget& window, const char* entry)
{
    QAction* action = window.findChild<QAction*>(QString::fromUtf8(entry));
    QVERIFY2(action != nullptr, entry);
    QVERIFY2(action->isEnabled(), entry);
    action->trigger();
}

void key(QWidget* w, Qt::Key k)
{
    QTest::keyClick(w, k);
}

} // namespace

class ResultGridDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void anEmptyFileShowsTheHeadRowOnly();
    void theRowsShowTheirNumberAndFields();
    void aTypedLowerCaseCallIsStoredInUpperCase();
    void escapeDropsTheEditAndArrowsConfirmAndMove();
    void tabConfirmsAndMovesRightThenToTheNextRow();
    void savingWithoutEditsWritesTheSameBytes();
    void withCheckOneOnTheWidthsAreTheLiteralListNotTheSavedOne();
    void theWidthButtonKeepsTheWidthsInTheSettings();
    void aRowBeyondFiveThousandIsLeftOut();
    void theHelpEntryShowsTheEditingRules();
    void theEndButtonEndsTheProgram();
    void afterAConversionTheMenuAndButtonsOpenBothGrids();
};

void ResultGridDialogTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void ResultGridDialogTest::anEmptyFileShowsTheHeadRowOnly()
{
    Started s;
    test::writeBytes(s.dir / "E_hn.csv", "");
    auto g = s.grid(s.dir / "E_hn.csv");
    QCOMPARE(g->objectName(), QStringLiteral("Grid4frm"));
    auto* grid = child<QTableWidget>(g.get(), "Grid4");
    QVERIFY(grid != nullptr);
    QCOMPARE(grid->rowCount(), 0);
    QCOMPARE(grid->columnCount(), 16);
    QCOMPARE(grid->horizontalHeaderItem(0)->text(), QStringLiteral("No."));
    QCOMPARE(grid->horizontalHeaderItem(9)->text(), QStringLiteral("G・L"));
    QCOMPARE(grid->horizontalHeaderItem(15)->text(), QStringLiteral("Flag"));
    QVERIFY(!child<QLineEdit>(g.get(), "Text1")->isVisible());
    QCOMPARE(child<QLabel>(g.get(), "Label6")->text(),
             QStringLiteral("Out: ") + qs((s.dir / "E_hn.csv").string()));
}

void ResultGridDialogTest::theRowsShowTheirNumberAndFields()
{
    Started s;
    test::writeSjisLines(s.dir / "A_cn.csv", {row("JA1ABC", 1), row("ﾃｽﾄ", 2)});
    auto g = s.grid(s.dir / "A_cn.csv", tools::GridForm::contest());
    QCOMPARE(g->objectName(), QStringLiteral("Grid5frm"));
    auto* grid = child<QTableWidget>(g.get(), "Grid5");
    QCOMPARE(grid->rowCount(), 2);
    QCOMPARE(grid->item(0, 0)->text(), QStringLiteral("1"));
    QCOMPARE(grid->item(1, 0)->text(), QStringLiteral("2"));
    QCOMPARE(grid->item(1, 1)->text(), QStringLiteral("ﾃｽﾄ"));
    QCOMPARE(grid->item(0, 15)->text(), QStringLiteral("8"));
    QCOMPARE(grid->currentColumn(), 1);
}

void ResultGridDialogTest::aTypedLowerCaseCallIsStoredInUpperCase()
{
    Started s;
    test::writeSjisLines(s.dir / "A_hn.csv", {row("JA1ABC", 1), row("JA2XYZ", 2)});
    auto g = s.grid(s.dir / "A_hn.csv");
    auto* grid = child<QTableWidget>(g.get(), "Grid4");
    auto* text1 = child<QLineEdit>(g.get(), "Text1");
    grid->setFocus();
    grid->setCurrentCell(1, 1);
    key(grid, Qt::Key_Return);
    QVERIFY(text1->isVisible());
    QCOMPARE(text1->text(), QStringLiteral("JA2XYZ"));
    QCOMPARE(text1->palette().color(QPalette::Base), QColor(Qt::yellow));
    text1->selectAll();
    QTest::keyClicks(text1, QStringLiteral("ja3q/p"));
    QCOMPARE(text1->text(), QStringLiteral("JA3Q/P"));
    key(text1, Qt::Key_Return);
    QVERIFY(!text1->isVisible());
    QCOMPARE(grid->item(1, 1)->text(), QStringLiteral("JA3Q/P"));
    QCOMPARE(g->model().cell(2, 1), std::string("JA3Q/P"));

    child<QPushButton>(g.get(), "cmdSave")->click();
    QCOMPARE(child<QLabel>(g.get(), "Label1")->text(), QStringLiteral("上書き保存終了"));
    const auto lines = test::readSjisLines(s.dir / "A_hn.csv");
    QCOMPARE(lines.size(), std::size_t(2));
    QCOMPARE(qs(lines[1]), qs(row("JA3Q/P", 2)));
}

void ResultGridDialogTest::escapeDropsTheEditAndArrowsConfirmAndMove()
{
    Started s;
    test::writeSjisLines(s.dir / "A_hn.csv", {row("JA1ABC", 1), row("JA2XYZ", 2), row("JA3K", 3)});
    auto g = s.grid(s.dir / "A_hn.csv");
    auto* grid = child<QTableWidget>(g.get(), "Grid4");
    auto* text1 = child<QLineEdit>(g.get(), "Text1");
    grid->setFocus();
    grid->setCurrentCell(0, 1);
    key(grid, Qt::Key_F2);
    QTest::keyClicks(text1, QStringLiteral("zz"));
    key(text1, Qt::Key_Escape);
    QVERIFY(!text1->isVisible());
    QVERIFY(g->isVisible());
    QCOMPARE(grid->item(0, 1)->text(), QStringLiteral("JA1ABC"));

    key(grid, Qt::Key_Return);
    text1->setText(QStringLiteral("K1A"));
    key(text1, Qt::Key_Down);
    QCOMPARE(grid->item(0, 1)->text(), QStringLiteral("K1A"));
    QCOMPARE(grid->currentRow(), 1);
    key(grid, Qt::Key_Return);
    key(text1, Qt::Key_Up);
    QCOMPARE(grid->currentRow(), 0);
    key(grid, Qt::Key_Return);
    key(text1, Qt::Key_Up);
    QCOMPARE(grid->currentRow(), 0); // stays below the head row

    // Moving the cursor stores what the box holds.
    key(grid, Qt::Key_Return);
    text1->setText(QStringLiteral("W1AW"));
    grid->setCurrentCell(2, 3);
    QVERIFY(!text1->isVisible());
    QCOMPARE(grid->item(0, 1)->text(), QStringLiteral("W1AW"));
}

void ResultGridDialogTest::tabConfirmsAndMovesRightThenToTheNextRow()
{
    Started s;
    test::writeSjisLines(s.dir / "A_hn.csv", {row("JA1ABC", 1), row("JA2XYZ", 2)});
    auto g = s.grid(s.dir / "A_hn.csv");
    auto* grid = child<QTableWidget>(g.get(), "Grid4");
    auto* text1 = child<QLineEdit>(g.get(), "Text1");
    grid->setFocus();
    grid->setCurrentCell(0, 14);
    key(grid, Qt::Key_Return);
    text1->setText(QStringLiteral("R2"));
    key(text1, Qt::Key_Tab);
    QCOMPARE(grid->item(0, 14)->text(), QStringLiteral("R2"));
    QCOMPARE(grid->currentColumn(), 15);
    key(grid, Qt::Key_Return);
    key(text1, Qt::Key_Return);
    QCOMPARE(grid->currentRow(), 1);
    QCOMPARE(grid->currentColumn(), 1);

    // With the direction flag set the cursor goes down instead.
    g->setDownward(true);
    key(grid, Qt::Key_Return);
    key(text1, Qt::Key_Return);
    QCOMPARE(grid->currentRow(), 1);
    grid->setCurrentCell(0, 4);
    key(grid, Qt::Key_Return);
    key(text1, Qt::Key_Return);
    QCOMPARE(grid->currentRow(), 1);
    QCOMPARE(grid->currentColumn(), 4);
}

void ResultGridDialogTest::savingWithoutEditsWritesTheSameBytes()
{
    Started s;
    const fs::path golden = test::testData("golden/all_defaults/CONTEST_hn.csv");
    fs::copy_file(golden, s.dir / "CONTEST_hn.csv");
    auto g = s.grid(s.dir / "CONTEST_hn.csv");
    QVERIFY(child<QTableWidget>(g.get(), "Grid4")->rowCount() > 0);
    child<QPushButton>(g.get(), "cmdSave")->click();
    QCOMPARE(child<QLabel>(g.get(), "Label1")->text(), QStringLiteral("上書き保存終了"));
    QVERIFY(child<QPushButton>(g.get(), "cmdSave")->isEnabled());
    QCOMPARE(test::readBytes(s.dir / "CONTEST_hn.csv"), test::readBytes(golden));
}

void ResultGridDialogTest::withCheckOneOnTheWidthsAreTheLiteralListNotTheSavedOne()
{
    Started s;
    test::writeSjisLines(s.dir / "A_hn.csv", {row("JA1ABC", 1)});
    s.session().options().set("get_ColWidth_Grid4",
                              "1500,1500,1500,1500,1500,1500,1500,1500,1500,1500,1500,1500,1500,"
                              "1500,1500,1500");
    s.session().files().ini_write_old();
    auto g = s.grid(s.dir / "A_hn.csv");
    auto* grid = child<QTableWidget>(g.get(), "Grid4");
    auto* check1 = child<QCheckBox>(g.get(), "Check1");
    QCOMPARE(check1->text(), QStringLiteral("初期値の幅"));
    QCOMPARE(check1->toolTip(), QStringLiteral("セル幅を初期値に戻します。"));
    // The tick is read under a name no writer uses: the saved widths are in force.
    QVERIFY(!check1->isChecked());
    QCOMPARE(grid->columnWidth(1), 100);
    QCOMPARE(grid->columnWidth(13), 100);
    check1->click();
    QCOMPARE(ui::captionColour(check1), base::Colour::Blue);
    QCOMPARE(grid->columnWidth(0), 600 / 15);
    QCOMPARE(grid->columnWidth(1), 1300 / 15);
    QCOMPARE(grid->columnWidth(13), 7100 / 15);
    QCOMPARE(grid->rowCount(), 1);
    check1->click();
    QCOMPARE(grid->columnWidth(1), 100);
}

void ResultGridDialogTest::theWidthButtonKeepsTheWidthsInTheSettings()
{
    Started s;
    test::writeSjisLines(s.dir / "A_cn.csv", {row("JA1ABC", 1)});
    auto g = s.grid(s.dir / "A_cn.csv", tools::GridForm::contest());
    auto* grid = child<QTableWidget>(g.get(), "Grid5");
    grid->setColumnWidth(1, 200);
    child<QPushButton>(g.get(), "cmdGet_ColWidth")->click();
    QStringList twips;
    for (int col = 0; col < 16; ++col) {
        twips << QString::number(grid->columnWidth(col) * 15);
    }
    QCOMPARE(twips[1], QStringLiteral("3000"));
    QCOMPARE(qs(s.session().options().value("get_ColWidth_Grid5")), twips.join(QLatin1Char(',')));
    QCOMPARE(qs(s.session().options().value("Grid5_Check1")), QStringLiteral("0"));
    g.reset();
    // A second opening takes the kept widths.
    auto again = s.grid(s.dir / "A_cn.csv", tools::GridForm::contest());
    QCOMPARE(child<QTableWidget>(again.get(), "Grid5")->columnWidth(1), 200);
}

void ResultGridDialogTest::aRowBeyondFiveThousandIsLeftOut()
{
    Started s;
    std::vector<std::string> lines;
    for (int n = 1; n <= 5001; ++n) {
        lines.push_back(row("JA1ABC", n));
    }
    test::writeSjisLines(s.dir / "B_hn.csv", lines);
    QElapsedTimer timer;
    timer.start();
    auto g = s.grid(s.dir / "B_hn.csv");
    qInfo("5000 rows loaded in %lld ms", static_cast<long long>(timer.elapsed()));
    QVERIFY(timer.elapsed() < 10000);
    auto* grid = child<QTableWidget>(g.get(), "Grid4");
    QCOMPARE(grid->rowCount(), 5000);
    QCOMPARE(grid->item(4999, 0)->text(), QStringLiteral("5000"));
    QCOMPARE(grid->item(4999, 8)->text(), QStringLiteral("5000"));
    const auto traced = test::readSjisLines(s.session().trace().path());
    QVERIFY(std::find(traced.begin(), traced.end(), "エラー発生 ：　9") != traced.end());
}

void ResultGridDialogTest::theHelpEntryShowsTheEditingRules()
{
    Started s;
    test::writeSjisLines(s.dir / "A_hn.csv", {row("JA1ABC", 1)});
    auto g = s.grid(s.dir / "A_hn.csv");
    QCOMPARE(child<QAction>(g.get(), "mnuMain")->text(), QStringLiteral("[ メイン画面へ ]"));
    QCOMPARE(child<QAction>(g.get(), "mnuEnd")->text(), QStringLiteral("[ 終了 ]"));
    test::BoxAnswerer boxes;
    child<QAction>(g.get(), "mnuEditHelp")->trigger();
    QCOMPARE(boxes.texts.size(), 1);
    QVERIFY(boxes.texts[0].contains(QStringLiteral("小文字は大文字に自動変換されます。")));
    QVERIFY(boxes.texts[0].startsWith(
        QStringLiteral("編集するセルにカーソルを合わせて 「 Ｅｎｔｅｒ 」 キーを押して下さい。")));
    child<QAction>(g.get(), "mnuMain")->trigger();
    QVERIFY(!g->isVisible());
    // Leaving keeps the window's place.
    const std::string posi = test::readBytes(s.session().folder().strPath / "Vornhale_posi.ini");
    QVERIFY(posi.find("Position_Grid4frm") != std::string::npos);
}

void ResultGridDialogTest::theEndButtonEndsTheProgram()
{
    Started s;
    test::writeSjisLines(s.dir / "A_hn.csv", {row("JA1ABC", 1)});
    auto g = s.grid(s.dir / "A_hn.csv");
    QCOMPARE(child<QPushButton>(g.get(), "cmdEnd")->text(), QStringLiteral("終　了"));
    child<QPushButton>(g.get(), "cmdEnd")->click();
    QCOMPARE(s.endedWith, 0);
}

void ResultGridDialogTest::afterAConversionTheMenuAndButtonsOpenBothGrids()
{
    Started s;
    fs::create_directories(s.dir / "logs");
    const fs::path log = s.dir / "logs" / "CONTEST.ALL";
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    s.chooser.answers << qs(log.string());
    s.window().findChild<QAction*>(QStringLiteral("mnuOpen_all_txt_set"))->trigger();
    QSignalSpy finished(&s.window(), &ui::MainWindow::conversionFinished);
    QVERIFY(s.window().startConversion());
    QVERIFY(finished.wait(120000) || finished.count() > 0);
    const fs::path hn = s.dir / "logs" / "CONTEST_hn.csv";
    const fs::path cn = s.dir / "logs" / "CONTEST_cn.csv";
    QVERIFY(fs::exists(hn));
    const std::string hnBytes = test::readBytes(hn);
    const std::string cnBytes = test::readBytes(cn);

    struct Entry
    {
        std::function<void()> open;
        QString form, grid;
        fs::path file;
    };
    const std::vector<Entry> entries = {
        {[&] { fire(s.window(), "mnuDisp_ham_n_new"); }, QStringLiteral("Grid4frm"),
         QStringLiteral("Grid4"), hn},
        {[&] { fire(s.window(), "mnuDisp_con_n_new"); }, QStringLiteral("Grid5frm"),
         QStringLiteral("Grid5"), cn},
        {[&] { fire(s.window(), "hamlog_n"); }, QStringLiteral("Grid4frm"), QStringLiteral("Grid4"),
         hn},
        {[&] { fire(s.window(), "contest_n"); }, QStringLiteral("Grid5frm"),
         QStringLiteral("Grid5"), cn},
        {[&] { s.window().findChild<QPushButton*>(QStringLiteral("cmdDisp_ham_n_new"))->click(); },
         QStringLiteral("Grid4frm"), QStringLiteral("Grid4"), hn},
        {[&] { s.window().findChild<QPushButton*>(QStringLiteral("cmdDisp_con_n_new"))->click(); },
         QStringLiteral("Grid5frm"), QStringLiteral("Grid5"), cn},
    };
    for (const Entry& e : entries) {
        QString seen;
        int rows = -1;
        test::whenModal([&](QWidget* modal) {
            seen = modal->objectName();
            if (auto* grid = modal->findChild<QTableWidget*>(e.grid)) {
                rows = grid->rowCount();
                // A load and a save without edits leave the result as the run wrote it.
                modal->findChild<QPushButton*>(QStringLiteral("cmdSave"))->click();
            }
            modal->findChild<QAction*>(QStringLiteral("mnuMain"))->trigger();
        });
        e.open();
        QCOMPARE(seen, e.form);
        QCOMPARE(rows, static_cast<int>(test::readSjisLines(e.file).size()));
    }
    QCOMPARE(test::readBytes(hn), hnBytes);
    QCOMPARE(test::readBytes(cn), cnBytes);
}

QTEST_MAIN(ResultGridDialogTest)
#include "ResultGridDialog_test.moc"
