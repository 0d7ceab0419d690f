// The layout row of the main window: items dragged from the palette and between cells,
// the checks the layout model runs after a drop, sorting and restoring, the width under the
// mouse, and the comment and layout history dialogs.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "settings/LayoutModel.h"
#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/LayoutRow.h"
#include "ui/MainWindow.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <memory>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

struct Started : test::StartedProgram
{
    using StartedProgram::StartedProgram;
    ui::LayoutRow& row() { return *window().layoutRow(); }
    settings::LayoutModel& layout() { return *program->session()->layoutModel(); }
    QLabel* cell(int r, int c) { return row().cellLabel(r, c); }
    QStringList cells(int r)
    {
        QStringList out;
        for (int c = 0; c < 12; ++c) {
            out << cell(r, c)->text();
        }
        return out;
    }

    /// Drops onto the cell what a drag carries, as the window's drag and drop delivers it.
    void drop(const QString& what, int r, int c)
    {
        QMimeData mime;
        mime.setData(ui::LayoutRow::kMimeType, what.toUtf8());
        QLabel* target = cell(r, c);
        const QPointF at(target->width() / 2.0, target->height() / 2.0);
        QDragEnterEvent enter(at.toPoint(), Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent dropped(at, Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &dropped);
        QVERIFY(dropped.isAccepted());
    }
    void dropPalette(int item, int r, int c) { drop(QStringLiteral("P:%1").arg(item), r, c); }
    void dropCell(int fr, int fc, int r, int c)
    {
        drop(QStringLiteral("C:%1:%2").arg(fr).arg(fc), r, c);
    }
    void setLayout(const char* rmks1, const char* rmks2,
                   const char* len1 = "0,0,0,0,0,0,0,0,0,0,0,0,")
    {
        // A layout drawn from its keys, as the load draws them.
        settings::Options& o = program->session()->options();
        o.set("Rmks1_cfg", rmks1);
        o.set("Rmks2_cfg", rmks2);
        o.set("Rmks1_cfg_len", len1);
        o.set("Rmks2_cfg_len", "0,0,0,0,0,0,0,0,0,0,0,0,");
        layout().Disp_Rmks_cfg_bas();
        layout().Set_Rmks_Len();
        row().refresh();
    }
};

void setNewIni(const fs::path& home, std::string_view key, std::string_view value)
{
    settings::ProfileFile file(home / "Vornhale_new.ini");
    file.write("Vornhale_new.ini", key, value);
    QVERIFY(file.save());
}

QStringList row(std::initializer_list<const char*> filled)
{
    QStringList out;
    for (const char* c : filled) {
        out << QString::fromUtf8(c);
    }
    while (out.size() < 12) {
        out << QString();
    }
    return out;
}

} // namespace

class LayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aPaletteItemDroppedOnACellStandsThereAndLightsItsButton();
    void aDropOnAFilledCellReplacesTheItemWhichLeavesTheLayout();
    void anItemStandsOnceInTheWholeLayout();
    void memoDroppedEmptiesMemoEqualsEvenInTheOtherRow();
    void opAndOpPercentExcludeEachOther();
    void aCellDraggedToAnotherCellMoves();
    void emptyLayoutKeysResetToTheDefaultLayout();
    void sortingTwiceChangesNothingAndRestoreBringsBackTheFirstArrangement();
    void memoEqualsTakesTheWidthLookedUpBeforeIt();
    void theWidthUnderTheMouseComesFromTheModel();
    void theStateItemBesideTheProvinceTurnsTheCellRed();
    void theCommentHistoryGivesTheChosenTextToTheMainWindow();
    void theCommentHistoryBackKeepsNoTextNotTaken();
    void theLayoutHistorySetsTheChosenLayout();
};

void LayoutTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void LayoutTest::aPaletteItemDroppedOnACellStandsThereAndLightsItsButton()
{
    Started s;
    s.setLayout(",,,,,,,,,,,,", ",,,,,,,,,,,,");
    QVERIFY(!s.row().paletteButton(2)->property("highlighted").toBool());
    s.dropPalette(2, 1, 5);
    QCOMPARE(s.cell(1, 5)->text(), QStringLiteral("Calls"));
    QVERIFY(s.row().paletteButton(2)->property("highlighted").toBool());
    QCOMPARE(s.layout().cell(1, 5), std::string("Calls"));
    // The drop was stored in the working copy of the settings at once.
    QVERIFY(fs::exists(s.dir / "home" / "Vornhale.ini"));
}

void LayoutTest::aDropOnAFilledCellReplacesTheItemWhichLeavesTheLayout()
{
    Started s;
    s.setLayout("MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,", "Rcvd,memo=,,,,,,,,,,,");
    s.dropPalette(2, 1, 3); // "Calls" onto "Zone"
    QCOMPARE(s.cells(1), row({"MNG", "$DX", "Rmks1", "Calls", "IOTA"}));
    QVERIFY(!s.row().paletteButton(9)->property("highlighted").toBool());
}

void LayoutTest::anItemStandsOnceInTheWholeLayout()
{
    Started s;
    s.setLayout("MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,", "Rcvd,memo=,,,,,,,,,,,");
    s.dropPalette(0, 2, 4); // "MNG" into the second row
    QCOMPARE(s.cells(1), row({"", "$DX", "Rmks1", "Zone", "IOTA"}));
    QCOMPARE(s.cells(2), row({"Rcvd", "memo=", "", "", "MNG"}));
}

void LayoutTest::memoDroppedEmptiesMemoEqualsEvenInTheOtherRow()
{
    Started s;
    s.setLayout("MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,", "Rcvd,memo=,,,,,,,,,,,");
    s.dropPalette(4, 1, 6); // "memo" into the first row
    QCOMPARE(s.cell(1, 6)->text(), QStringLiteral("memo"));
    QCOMPARE(s.cells(2), row({"Rcvd"}));
    s.dropPalette(5, 2, 3); // "memo=" back: "memo" goes
    QCOMPARE(s.cell(1, 6)->text(), QString());
    QCOMPARE(s.cell(2, 3)->text(), QStringLiteral("memo="));
}

void LayoutTest::opAndOpPercentExcludeEachOther()
{
    Started s;
    s.setLayout("OP,,,,,,,,,,,,", ",,,,,,,,,,,,");
    s.dropPalette(7, 2, 0); // "OP %"
    QCOMPARE(s.cells(1), row({}));
    QCOMPARE(s.cells(2), row({"OP %"}));
}

void LayoutTest::aCellDraggedToAnotherCellMoves()
{
    Started s;
    s.setLayout("MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,", "Rcvd,memo=,,,,,,,,,,,");
    s.dropCell(1, 3, 2, 5); // "Zone" from row 1 to row 2
    QCOMPARE(s.cells(1), row({"MNG", "$DX", "Rmks1", "", "IOTA"}));
    QCOMPARE(s.cells(2), row({"Rcvd", "memo=", "", "", "", "Zone"}));
}

void LayoutTest::emptyLayoutKeysResetToTheDefaultLayout()
{
    Started s([](const fs::path& home) {
        setNewIni(home, "Rmks1_cfg", "");
        setNewIni(home, "Rmks2_cfg", "");
        setNewIni(home, "Rmks1_cfg_len", "");
    });
    const settings::Options& o = s.program->session()->options();
    QCOMPARE(o.value("Rmks1_cfg"), std::string("MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,"));
    QCOMPARE(o.value("Rmks2_cfg"), std::string("Rcvd,memo=,,,,,,,,,,,"));
    QCOMPARE(o.value("Rmks1_cfg_len"), std::string("0,0,0,0,0,0,0,0,0,0,0,0,"));
    QCOMPARE(o.value("Rmks2_cfg_len"), std::string("0,0,0,0,0,0,0,0,0,0,0,0,"));
    QVERIFY(s.row()
                .findChild<QLabel*>(QStringLiteral("previewFirstRow"))
                ->text()
                .contains(QStringLiteral("MNG $DX Rmks1 Zone IOTA")));
}

void LayoutTest::sortingTwiceChangesNothingAndRestoreBringsBackTheFirstArrangement()
{
    Started s;
    s.setLayout(",MNG,,Zone,,,,,,,,,", ",,Rcvd,,,,,,,,,,");
    const QStringList first = s.cells(1);
    QTest::mouseClick(s.row().sortButton(), Qt::LeftButton);
    QCOMPARE(s.cells(1), row({"MNG", "Zone"}));
    QCOMPARE(s.cells(2), row({"Rcvd"}));
    QCOMPARE(s.program->session()->options().value("Rmks1_cfg"),
             std::string("MNG,Zone,,,,,,,,,,,"));
    QTest::mouseClick(s.row().sortButton(), Qt::LeftButton);
    QCOMPARE(s.cells(1), row({"MNG", "Zone"}));
    QTest::mouseClick(s.row().redoButton(), Qt::LeftButton);
    QCOMPARE(s.cells(1), first);
    QCOMPARE(s.cells(2), row({"", "", "Rcvd"}));
}

void LayoutTest::memoEqualsTakesTheWidthLookedUpBeforeIt()
{
    Started s;
    s.setLayout("MNG,memo=,,,,,,,,,,,", ",,,,,,,,,,,,", "6,0,0,0,0,0,0,0,0,0,0,0,");
    QTest::mouseClick(s.row().sortButton(), Qt::LeftButton);
    // "memo=" has no width of its own: it writes the width of "MNG" before it.
    QCOMPARE(s.program->session()->options().value("Rmks1_cfg_len"),
             std::string("6,6,0,0,0,0,0,0,0,0,0,0,"));
    QVERIFY(s.row()
                .findChild<QLabel*>(QStringLiteral("previewFirstRow"))
                ->text()
                .contains(QStringLiteral("memo=(6)")));
}

void LayoutTest::theWidthUnderTheMouseComesFromTheModel()
{
    Started s;
    s.setLayout("MNG,$DX,,,,,,,,,,,", ",,,,,,,,,,,,", "6,0,0,0,0,0,0,0,0,0,0,0,");
    auto* width = s.row().findChild<QLabel*>(QStringLiteral("widthUnderMouse"));
    s.row().showWidthOf(s.cell(1, 0));
    QCOMPARE(width->text(), QStringLiteral("桁数 ： 6"));
    s.row().showWidthOf(s.row().paletteButton(0));
    QCOMPARE(width->text(), QStringLiteral("桁数 ： 6"));
    s.row().showWidthOf(s.cell(1, 1));
    QCOMPARE(width->text(), QStringLiteral("桁数 ： 0"));
    // Timer1 does the same for what stands under the mouse.
    auto* timer = s.row().findChild<QTimer*>(QStringLiteral("Timer1"));
    QVERIFY(timer && timer->isActive());
}

void LayoutTest::theStateItemBesideTheProvinceTurnsTheCellRed()
{
    Started s;
    s.setLayout("MNG,,,,,,,,,,,,", ",,,,,,,,,,,,");
    QWidget* province = s.window().findChild<QCheckBox*>(QStringLiteral("Check5"));
    test::showTabOf(province);
    QTest::mouseClick(province, Qt::LeftButton, {}, QPoint(8, province->height() / 2));
    QVERIFY(static_cast<QCheckBox*>(province)->isChecked());
    s.dropPalette(10, 1, 2); // "州名"
    QVERIFY(s.cell(1, 2)->property("warning").toBool());
    QCOMPARE(s.window().findChild<QLabel*>(QStringLiteral("lblShori"))->text(),
             QStringLiteral("州名 又は Province のどちらかにして下さい。"));
}

void LayoutTest::theCommentHistoryGivesTheChosenTextToTheMainWindow()
{
    Started s;
    test::writeSjisLines(s.dir / "home" / "Vornhale.rmk1",
                         {"Vornhale.rmk1  for Vornhale.exe  ver 5.44", "TNX QSO", "GL"});
    test::writeSjisLines(s.dir / "home" / "Vornhale.rmk2",
                         {"Vornhale.rmk2  for Vornhale.exe  ver 5.44", "CU AGN"});
    // The dialog is answered from inside its own loop.
    test::whenModal([](QWidget* dialog) {
        QCOMPARE(dialog->objectName(), QStringLiteral("frmRmks_sel"));
        auto* list = dialog->findChild<QListWidget*>(QStringLiteral("List1"));
        QCOMPARE(list->count(), 2);
        QCOMPARE(list->item(1)->text(), QStringLiteral("GL"));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(1)).center());
        QCOMPARE(dialog->findChild<QLineEdit*>(QStringLiteral("txtRmks1"))->text(),
                 QStringLiteral("GL"));
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    });
    s.window().findChild<QAction*>(QStringLiteral("mnuEdit_Rmks"))->trigger();
    QCOMPARE(s.window().findChild<QLineEdit*>(QStringLiteral("txtRmks1"))->text(),
             QStringLiteral("GL"));
    QVERIFY(!fs::exists(s.dir / "home" / "Vornhale.001"));
}

void LayoutTest::theCommentHistoryBackKeepsNoTextNotTaken()
{
    Started s;
    auto* main1 = s.window().findChild<QLineEdit*>(QStringLiteral("txtRmks1"));
    test::showTabOf(main1);
    QTest::keyClicks(main1, QStringLiteral("OLD"));
    test::whenModal([](QWidget* dialog) {
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdBack")),
                          Qt::LeftButton);
    });
    s.window().findChild<QAction*>(QStringLiteral("mnuEdit_Rmks"))->trigger();
    // No line of the history was taken: the main window's box is emptied.
    QCOMPARE(main1->text(), QString());
}

void LayoutTest::theLayoutHistorySetsTheChosenLayout()
{
    Started s;
    std::string line = "CQWW";
    const char* first[12] = {"MNG", "Zone", "", "", "", "", "", "", "", "", "", ""};
    const char* second[12] = {"Rcvd", "", "", "", "", "", "", "", "", "", "", ""};
    for (const char* c : first) {
        line += std::string(",") + c;
    }
    for (const char* c : second) {
        line += std::string(",") + c;
    }
    for (int i = 0; i < 24; ++i) {
        line += i == 0 ? ",6" : ",0";
    }
    test::writeSjisLines(s.dir / "home" / "Vornhale_Rireki.cfg",
                         {"Vornhale_Rireki.cfg  ver 5.44", line});
    test::whenModal([](QWidget* dialog) {
        QCOMPARE(dialog->objectName(), QStringLiteral("frmRmk_Rireki_sel"));
        auto* names = dialog->findChild<QListWidget*>(QStringLiteral("List1"));
        QCOMPARE(names->count(), 1);
        QCOMPARE(names->item(0)->text(), QStringLiteral("CQWW"));
        QTest::mouseClick(names->viewport(), Qt::LeftButton, {},
                          names->visualItemRect(names->item(0)).center());
        QCOMPARE(dialog->findChild<QLabel*>(QStringLiteral("lblHozon_Rmks"))->text(),
                 QStringLiteral("CQWW"));
        QCOMPARE(dialog->findChild<QListWidget*>(QStringLiteral("List3"))->currentRow(), 0);
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    });
    QTest::mouseClick(s.row().historyButton(), Qt::LeftButton);
    QCOMPARE(s.cells(1), row({"MNG", "Zone"}));
    QCOMPARE(s.cells(2), row({"Rcvd"}));
    QCOMPARE(s.program->session()->options().value("Rmks1_cfg_len").substr(0, 2),
             std::string("6,"));
}

QTEST_MAIN(LayoutTest)
#include "Layout_test.moc"
