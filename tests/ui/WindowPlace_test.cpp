// Window places: what the position file gives a window when it opens, and what a window
// leaves there when it closes, for plain windows and for the program's own windows.

#include "UiTestSupport.h"
#include "settings/ProfileFile.h"
#include "settings/WindowPositions.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/WindowPlace.h"

#include <QAction>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <memory>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

constexpr int kTwips = ui::kTwipsPerPixel;

/// A position file holding one section with the given lines.
void writeSection(const fs::path& file, const std::string& form,
                  const std::vector<std::string>& lines)
{
    std::vector<std::string> all = {"[Config]", "version=5.44", "", "[Position_" + form + "]"};
    all.insert(all.end(), lines.begin(), lines.end());
    test::writeSjisLines(file, all);
}

std::string stored(const fs::path& file, const std::string& form, const char* key)
{
    return settings::ProfileFile(file).read("Position_" + form, key);
}

/// The keys of a section in the order the file holds them.
std::vector<std::string> keysOf(const fs::path& file, const std::string& form)
{
    std::vector<std::string> keys;
    bool inside = false;
    for (const std::string& line : test::readSjisLines(file)) {
        if (!line.empty() && line.front() == '[') {
            inside = line == "[Position_" + form + "]";
            continue;
        }
        if (inside && line.find('=') != std::string::npos) {
            keys.push_back(line.substr(0, line.find('=')));
        }
    }
    return keys;
}

} // namespace

class WindowPlaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStoredPlaceIsRestored();
    void aStateOfThreeIsIgnored();
    void aStoredMaximisedStateOpensMaximised();
    void aNonNumericLeftKeepsTheDesignPosition();
    void aValueAboveTheSixteenBitLimitKeepsTheDesignValue();
    void aMissingKeyKeepsTheDesignValue();
    void anEmptyFileGetsASectionPerWindowAtEachFirstClose();
    void aClosedDialogStoresItsPlaceOnceForEachShowing();
    void aMaximisedWindowKeepsItsNormalPlace();
    void aMinimisedWindowIsStoredAsNormal();
    void theMainWindowHoldsItsMinimumSize();
    void theHistoryCheckHoldsItsMinimumSizeAfterAResize();
    void theFurtherViewersHoldOnlyAMinimumHeight();
    void windowsWithoutABoundTakeAnySize();
    void theMainWindowReturnsToItsPlaceAtTheNextStart();
    void theHistoryDialogsRememberTheirPlace();

private:
    test::TempDir m_dir;
    fs::path file() const { return m_dir / "Vornhale_posi.ini"; }
};

void WindowPlaceTest::aStoredPlaceIsRestored()
{
    writeSection(file(), "frmDate",
                 {"WindowState=0", "Left=1500", "Top=3000", "Width=6000", "Height=4500"});
    QDialog dialog;
    ui::rememberPlace(dialog, "frmDate", file(), QSize(200, 100), QPoint(10, 20));
    QCOMPARE(dialog.pos(), QPoint(100, 200));
    QCOMPARE(dialog.size(), QSize(400, 300));
    QVERIFY(!dialog.isMaximized());
}

void WindowPlaceTest::aStateOfThreeIsIgnored()
{
    writeSection(file(), "frmKetasu", {"WindowState=3", "Left=1500"});
    QDialog dialog;
    ui::rememberPlace(dialog, "frmKetasu", file(), QSize(200, 100), QPoint(10, 20));
    QCOMPARE(dialog.windowState(), Qt::WindowNoState);
    QCOMPARE(dialog.pos().x(), 100);
}

void WindowPlaceTest::aStoredMaximisedStateOpensMaximised()
{
    writeSection(file(), "frmMode", {"WindowState=2"});
    QDialog dialog;
    ui::rememberPlace(dialog, "frmMode", file(), QSize(200, 100), QPoint(10, 20));
    QVERIFY(dialog.windowState() & Qt::WindowMaximized);
}

void WindowPlaceTest::aNonNumericLeftKeepsTheDesignPosition()
{
    writeSection(file(), "frmDate", {"WindowState=0", "Left=abc", "Top=1500"});
    QDialog dialog;
    ui::rememberPlace(dialog, "frmDate", file(), QSize(200, 100), QPoint(10, 20));
    QCOMPARE(dialog.pos(), QPoint(10, 100));
}

void WindowPlaceTest::aValueAboveTheSixteenBitLimitKeepsTheDesignValue()
{
    writeSection(file(), "frmRTCL_v4", {"Left=32768", "Top=32767", "Width=40000", "Height=3000"});
    QDialog dialog;
    ui::rememberPlace(dialog, "frmRTCL_v4", file(), QSize(200, 100), QPoint(10, 20));
    QCOMPARE(dialog.pos(), QPoint(10, 32767 / kTwips));
    QCOMPARE(dialog.size(), QSize(200, 200));
}

void WindowPlaceTest::aMissingKeyKeepsTheDesignValue()
{
    QDialog dialog;
    ui::rememberPlace(dialog, "frmDownLoad", m_dir / "none.ini", QSize(220, 110), QPoint(30, 40));
    QCOMPARE(dialog.pos(), QPoint(30, 40));
    QCOMPARE(dialog.size(), QSize(220, 110));
}

void WindowPlaceTest::anEmptyFileGetsASectionPerWindowAtEachFirstClose()
{
    const fs::path empty = m_dir / "empty_posi.ini";
    test::writeBytes(empty, "");
    int n = 0;
    for (std::string_view form : settings::kPositionForms) {
        const std::string name(form);
        QVERIFY(stored(empty, name, "Width").empty());
        QDialog dialog;
        ui::rememberPlace(dialog, form, empty, QSize(200 + n, 120), QPoint(10 + n, 20));
        dialog.show();
        dialog.close();
        QCOMPARE(keysOf(empty, name),
                 (std::vector<std::string>{"WindowState", "Left", "Top", "Width", "Height"}));
        QCOMPARE(stored(empty, name, "WindowState"), std::string("0"));
        QCOMPARE(stored(empty, name, "Left"), std::to_string(dialog.pos().x() * kTwips));
        QCOMPARE(stored(empty, name, "Width"), std::to_string(dialog.width() * kTwips));
        ++n;
    }
    // Every window has its section, and none was lost by a later one.
    for (std::string_view form : settings::kPositionForms) {
        QVERIFY(!stored(empty, std::string(form), "Height").empty());
    }
}

void WindowPlaceTest::aClosedDialogStoresItsPlaceOnceForEachShowing()
{
    const fs::path f = m_dir / "accept_posi.ini";
    QDialog dialog;
    ui::rememberPlace(dialog, "frmRmks_sel", f, QSize(200, 100), QPoint(10, 20));
    dialog.show();
    dialog.move(60, 75);
    dialog.accept();
    QCOMPARE(stored(f, "frmRmks_sel", "Left"), std::to_string(60 * kTwips));
    QCOMPARE(stored(f, "frmRmks_sel", "Top"), std::to_string(75 * kTwips));
    // Shown again and moved, it stores the new place when it closes by the system close.
    dialog.show();
    dialog.move(90, 75);
    dialog.close();
    QCOMPARE(stored(f, "frmRmks_sel", "Left"), std::to_string(90 * kTwips));
}

void WindowPlaceTest::aMaximisedWindowKeepsItsNormalPlace()
{
    const fs::path f = m_dir / "max_posi.ini";
    QWidget window;
    ui::rememberPlace(window, "frmDisp", f, QSize(800, 600), QPoint(50, 40));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QRect normal = window.geometry();
    window.showMaximized();
    QVERIFY(test::waitUntil([&] { return window.isMaximized(); }, 2000));
    window.close();
    QCOMPARE(stored(f, "frmDisp", "WindowState"), std::string("2"));
    QCOMPARE(stored(f, "frmDisp", "Width"), std::to_string(normal.width() * kTwips));
    QCOMPARE(stored(f, "frmDisp", "Height"), std::to_string(normal.height() * kTwips));
    QCOMPARE(stored(f, "frmDisp", "Left"), std::to_string(normal.left() * kTwips));
}

void WindowPlaceTest::aMinimisedWindowIsStoredAsNormal()
{
    const fs::path f = m_dir / "min_posi.ini";
    QWidget window;
    ui::rememberPlace(window, "Grid4frm", f, QSize(300, 200), QPoint(50, 40));
    window.show();
    window.setWindowState(Qt::WindowMinimized);
    ui::savePlace(window, "Grid4frm", f);
    QCOMPARE(stored(f, "Grid4frm", "WindowState"), std::string("0"));
}

void WindowPlaceTest::theMainWindowHoldsItsMinimumSize()
{
    writeSection(file(), "Vornhale", {"Width=3000", "Height=3000"});
    QWidget window;
    ui::rememberPlace(window, "Vornhale", file(), QSize(1000, 900), QPoint(0, 0));
    QCOMPARE(window.size(), QSize(10770 / kTwips, 8745 / kTwips));
    window.resize(100, 100);
    QCOMPARE(window.size(), QSize(10770 / kTwips, 8745 / kTwips));
}

void WindowPlaceTest::theHistoryCheckHoldsItsMinimumSizeAfterAResize()
{
    QWidget window;
    ui::rememberPlace(window, "frmCheck_bak_qso_mas", m_dir / "none.ini", QSize(500, 300),
                      QPoint(0, 0));
    QCOMPARE(window.size(), QSize(500, 300));
    window.show();
    window.resize(50, 50);
    QCOMPARE(window.size(), QSize(5985 / kTwips, 2325 / kTwips));
}

void WindowPlaceTest::theFurtherViewersHoldOnlyAMinimumHeight()
{
    for (const char* form : {"frmDisp2", "frmDisp3", "frmDisp4"}) {
        QWidget window;
        ui::rememberPlace(window, form, m_dir / "none.ini", QSize(120, 100), QPoint(0, 0));
        QCOMPARE(window.size(), QSize(120, 8145 / kTwips));
    }
    QWidget viewer;
    ui::rememberPlace(viewer, "frmDisp", m_dir / "none.ini", QSize(120, 100), QPoint(0, 0));
    QCOMPARE(viewer.size(), QSize(11865 / kTwips, 8145 / kTwips));
}

void WindowPlaceTest::windowsWithoutABoundTakeAnySize()
{
    QWidget window;
    ui::rememberPlace(window, "frmMode", m_dir / "none.ini", QSize(120, 90), QPoint(0, 0));
    window.resize(80, 60);
    QCOMPARE(window.size(), QSize(80, 60));
}

void WindowPlaceTest::theMainWindowReturnsToItsPlaceAtTheNextStart()
{
    test::TempDir dir;
    test::ScriptedChooser chooser;
    test::prepareHome(dir / "home");
    const fs::path positions = dir / "home" / "Vornhale_posi.ini";
    {
        ui::DesktopProgram program(dir / "home", chooser);
        program.setProgramEnd([](int) {});
        program.start();
        ui::MainWindow& window = *program.mainWindow();
        window.move(70, 45);
        window.resize(1200, 900);
        window.close();
        QCOMPARE(stored(positions, "Vornhale", "Left"), std::to_string(70 * kTwips));
        QCOMPARE(stored(positions, "Vornhale", "Width"), std::to_string(1200 * kTwips));
    }
    ui::DesktopProgram program(dir / "home", chooser);
    program.setProgramEnd([](int) {});
    program.start();
    QCOMPARE(program.mainWindow()->pos(), QPoint(70, 45));
    QCOMPARE(program.mainWindow()->size(), QSize(1200, 900));
}

void WindowPlaceTest::theHistoryDialogsRememberTheirPlace()
{
    test::TempDir dir;
    test::ScriptedChooser chooser;
    test::prepareHome(dir / "home");
    const fs::path home = dir / "home";
    writeSection(home / "Vornhale_posi.ini", "frmRmks_sel",
                 {"WindowState=0", "Left=1800", "Top=1200", "Width=12000", "Height=9000"});
    ui::DesktopProgram program(home, chooser);
    program.setProgramEnd([](int) {});
    program.start();
    QPoint seenAt;
    QSize seenSize;
    test::whenModal([&](QWidget* modal) {
        if (modal->objectName() == QStringLiteral("frmRmks_sel")) {
            seenAt = modal->pos();
            seenSize = modal->size();
            modal->move(150, 90);
            modal->close();
        }
    });
    program.mainWindow()->findChild<QAction*>(QStringLiteral("mnuEdit_Rmks"))->trigger();
    QCOMPARE(seenAt, QPoint(120, 80));
    QCOMPARE(seenSize, QSize(800, 600));
    QCOMPARE(stored(home / "Vornhale_posi.ini", "frmRmks_sel", "Left"),
             std::to_string(150 * kTwips));

    test::whenModal([&](QWidget* modal) {
        if (modal->objectName() == QStringLiteral("frmRmk_Rireki_sel")) {
            modal->move(33, 44);
            modal->close();
        }
    });
    program.mainWindow()->findChild<QPushButton*>(QStringLiteral("cmdRireki"))->click();
    QCOMPARE(stored(home / "Vornhale_posi.ini", "frmRmk_Rireki_sel", "Top"),
             std::to_string(44 * kTwips));
}

QTEST_MAIN(WindowPlaceTest)
#include "WindowPlace_test.moc"
