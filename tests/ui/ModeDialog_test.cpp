// The mode table frmMode: its ten rows, the colours of the ticks, what the two buttons store,
// and how the main window opens it.

#include "DialogTestSupport.h"
#include "settings/ProfileFile.h"
#include "settings/SettingsFiles.h"
#include "ui/ModeDialog.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace vornhale;

namespace {

template <class W> W* child(QWidget& d, const QString& name)
{
    return d.findChild<W*>(name);
}

/// The table as the dialog reads it: the environment section of the current option file.
void storeTable(test::StartedProgram& s)
{
    s.session().files().ini_write_old();
    settings::ProfileFile file(s.home() / "Vornhale.ini");
    file.write("Vornhale_cfg.ini", "mode_1_0_txt", "RTTY");
    file.write("Vornhale_cfg.ini", "mode_1_1_txt", "電信");
    file.write("Vornhale_cfg.ini", "mode_1_chk", "1");
    file.write("Vornhale_cfg.ini", "mode_2_0_txt", "PSK");
    file.write("Vornhale_cfg.ini", "mode_2_chk", "yes");
    QVERIFY(file.save());
}

} // namespace

class ModeDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTenRowsWithTheirArrowsTicksAndButtons();
    void showsTheStoredTableWithBlueTicksForOnlyOne();
    void aTypedTextAndATickAreStoredAtOnce();
    void saveWritesTheTableToTheOptionFileAndCloses();
    void backClosesWithoutWriting();
    void theModeMenuOfTheMainWindowOpensIt();
};

void ModeDialogTest::showsTenRowsWithTheirArrowsTicksAndButtons()
{
    test::StartedProgram s;
    ui::ModeDialog d(s.session());
    QCOMPARE(d.objectName(), QStringLiteral("frmMode"));
    QCOMPARE(child<QLabel>(d, QStringLiteral("Label11"))->text(),
             QStringLiteral("この変換テーブルは最優先で変換する。"));
    for (int n = 1; n <= 10; ++n) {
        QVERIFY(child<QLineEdit>(d, QStringLiteral("Text%1_0").arg(n)) != nullptr);
        QVERIFY(child<QLineEdit>(d, QStringLiteral("Text%1_1").arg(n)) != nullptr);
        QCOMPARE(child<QLabel>(d, QStringLiteral("Label%1").arg(n))->text(),
                 QStringLiteral("--->"));
        QCOMPARE(child<QCheckBox>(d, QStringLiteral("Check%1").arg(n))->text(),
                 QStringLiteral("変換する"));
    }
    QCOMPARE(child<QPushButton>(d, QStringLiteral("Command2"))->text(), QStringLiteral("保　存"));
    QCOMPARE(child<QPushButton>(d, QStringLiteral("Command1"))->text(), QStringLiteral("戻　る"));
}

void ModeDialogTest::showsTheStoredTableWithBlueTicksForOnlyOne()
{
    test::StartedProgram s;
    storeTable(s);
    ui::ModeDialog d(s.session());
    QCOMPARE(child<QLineEdit>(d, QStringLiteral("Text1_0"))->text(), QStringLiteral("RTTY"));
    QCOMPARE(child<QLineEdit>(d, QStringLiteral("Text1_1"))->text(), QStringLiteral("電信"));
    auto* first = child<QCheckBox>(d, QStringLiteral("Check1"));
    QVERIFY(first->isChecked());
    QCOMPARE(ui::captionColour(first), base::Colour::Blue);
    QCOMPARE(child<QLineEdit>(d, QStringLiteral("Text2_0"))->text(), QStringLiteral("PSK"));
    auto* second = child<QCheckBox>(d, QStringLiteral("Check2"));
    QVERIFY(!second->isChecked());
    QCOMPARE(ui::captionColour(second), base::Colour::Black);
}

void ModeDialogTest::aTypedTextAndATickAreStoredAtOnce()
{
    test::StartedProgram s;
    ui::ModeDialog d(s.session());
    d.show();
    QTest::keyClicks(child<QLineEdit>(d, QStringLiteral("Text5_0")), QStringLiteral("CW"));
    QTest::keyClicks(child<QLineEdit>(d, QStringLiteral("Text5_1")), QStringLiteral("A1A"));
    auto* tick = child<QCheckBox>(d, QStringLiteral("Check5"));
    QTest::mouseClick(tick, Qt::LeftButton, {}, QPoint(8, tick->height() / 2));
    QCOMPARE(s.session().options().value("mode_5_0_txt"), std::string("CW"));
    QCOMPARE(s.session().options().value("mode_5_1_txt"), std::string("A1A"));
    QCOMPARE(s.session().options().value("mode_5_chk"), std::string("1"));
    QCOMPARE(ui::captionColour(tick), base::Colour::Blue);
    QTest::mouseClick(tick, Qt::LeftButton, {}, QPoint(8, tick->height() / 2));
    QCOMPARE(s.session().options().value("mode_5_chk"), std::string("0"));
    QCOMPARE(ui::captionColour(tick), base::Colour::Black);
}

void ModeDialogTest::saveWritesTheTableToTheOptionFileAndCloses()
{
    test::StartedProgram s;
    s.session().files().ini_write_old();
    ui::ModeDialog d(s.session());
    d.show();
    QTest::keyClicks(child<QLineEdit>(d, QStringLiteral("Text3_0")), QStringLiteral("FT8"));
    auto* tick = child<QCheckBox>(d, QStringLiteral("Check3"));
    QTest::mouseClick(tick, Qt::LeftButton, {}, QPoint(8, tick->height() / 2));
    QTest::mouseClick(child<QPushButton>(d, QStringLiteral("Command2")), Qt::LeftButton);
    QVERIFY(!d.isVisible());
    const settings::ProfileFile written(s.home() / "Vornhale.ini");
    QCOMPARE(written.read("Vornhale.ini", "mode_3_0_txt"), std::string("FT8"));
    QCOMPARE(written.read("Vornhale.ini", "mode_3_chk"), std::string("1"));
    QVERIFY(!settings::ProfileFile(s.home() / "Vornhale_posi.ini")
                 .read("Position_frmMode", "Width")
                 .empty());
}

void ModeDialogTest::backClosesWithoutWriting()
{
    test::StartedProgram s;
    s.session().files().ini_write_old();
    const std::string before = test::readBytes(s.home() / "Vornhale.ini");
    ui::ModeDialog d(s.session());
    d.show();
    QTest::keyClicks(child<QLineEdit>(d, QStringLiteral("Text7_0")), QStringLiteral("AM"));
    QTest::mouseClick(child<QPushButton>(d, QStringLiteral("Command1")), Qt::LeftButton);
    QVERIFY(!d.isVisible());
    QCOMPARE(test::readBytes(s.home() / "Vornhale.ini"), before);
    // What was typed lasts in memory until the program ends.
    QCOMPARE(s.session().options().value("mode_7_0_txt"), std::string("AM"));
    QVERIFY(!settings::ProfileFile(s.home() / "Vornhale_posi.ini")
                 .read("Position_frmMode", "Left")
                 .empty());
}

void ModeDialogTest::theModeMenuOfTheMainWindowOpensIt()
{
    test::StartedProgram s;
    QString opened;
    test::whenModal([&](QWidget* modal) {
        opened = modal->objectName();
        QTest::keyClicks(modal->findChild<QLineEdit*>(QStringLiteral("Text1_0")),
                         QStringLiteral("USB"));
        QTest::mouseClick(modal->findChild<QPushButton*>(QStringLiteral("Command2")),
                          Qt::LeftButton);
    });
    s.window().findChild<QAction*>(QStringLiteral("mnuMode"))->trigger();
    QCOMPARE(opened, QStringLiteral("frmMode"));
    QCOMPARE(settings::ProfileFile(s.home() / "Vornhale.ini").read("Vornhale.ini", "mode_1_0_txt"),
             std::string("USB"));
}

QTEST_MAIN(ModeDialogTest)
#include "ModeDialog_test.moc"
