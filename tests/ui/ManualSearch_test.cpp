// The web manager search by hand from the MNG検索 tab: `Text2` and `cmdSubmit`, against a
// loopback stand-in of the search service.

#include "UiTestSupport.h"
#include "manager/ManagerFixtureServer.h"
#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/WidgetLook.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <memory>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

struct Started
{
    test::ManagerFixtureServer server;
    test::TempDir dir;
    test::ScriptedChooser chooser;
    std::unique_ptr<ui::DesktopProgram> program;

    Started()
    {
        test::prepareHome(dir / "home");
        settings::ProfileFile web(dir / "home" / "Vornhale_web.ini");
        web.write("web", "qsl2_search", server.base());
        web.write("web", "connect_timeout_s", "2");
        web.write("web", "total_timeout_s", "5");
        web.save();
        program = std::make_unique<ui::DesktopProgram>(dir / "home", chooser);
        program->setProgramEnd([](int) {});
        program->start();
    }
    ui::MainWindow& window() { return *program->mainWindow(); }
    template <class W> W* find(const QString& name) { return window().findChild<W*>(name); }
    QString label(const char* name) { return find<QLabel>(QString::fromUtf8(name))->text(); }
    /// Types `call` into `Text2` and searches, by the button or by Enter.
    bool search(const QString& call, bool byEnter)
    {
        QSignalSpy finished(&window(), &ui::MainWindow::searchFinished);
        auto* box = find<QLineEdit>(QStringLiteral("Text2"));
        test::showTabOf(box);
        box->clear();
        QTest::keyClicks(box, call);
        if (byEnter) {
            QTest::keyClick(box, Qt::Key_Return);
        } else {
            QTest::mouseClick(find<QPushButton>(QStringLiteral("cmdSubmit")), Qt::LeftButton);
        }
        return finished.count() > 0 || finished.wait(10000);
    }
};

} // namespace

class ManualSearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theCallIsTypedInUpperCaseAndTrimmed();
    void aFoundManagerIsShownWithItsDateSourceAndOutcome();
    void enterInTheCallBoxSearchesToo();
    void aPageWithoutTheCallIsNoResult();
};

void ManualSearchTest::initTestCase()
{
    QVERIFY(test::ManagerFixtureServer().started());
    ui::DesktopProgram::useProgramFont();
}

void ManualSearchTest::theCallIsTypedInUpperCaseAndTrimmed()
{
    Started s;
    auto* box = s.find<QLineEdit>(QStringLiteral("Text2"));
    test::showTabOf(box);
    QTest::keyClicks(box, QStringLiteral(" xx9tst"));
    QCOMPARE(box->text(), QStringLiteral("XX9TST"));
}

void ManualSearchTest::aFoundManagerIsShownWithItsDateSourceAndOutcome()
{
    Started s;
    QVERIFY(s.search(QStringLiteral("xx9tst"), false));
    QCOMPARE(s.label("Label33"), QStringLiteral("XX9TST"));
    QCOMPARE(s.label("Label34"), QStringLiteral("XX9MGR"));
    QCOMPARE(s.label("Label45"), QStringLiteral("取 得 成 功"));
    QVERIFY(test::waitUntil(
        [&] {
            return ui::captionColour(s.find<QLabel>(QStringLiteral("Label45"))) ==
                   base::Colour::Blue;
        },
        2000));
    QVERIFY(s.label("Label30").startsWith(QStringLiteral("Set MNG : ")));
    const auto requests = s.server.requests();
    QVERIFY(std::find(requests.begin(), requests.end(), "qsl2:XX9TST") != requests.end());
    // The page was kept where the search keeps it.
    QVERIFY(fs::exists(s.dir / "home" / "DX_call.htm"));
}

void ManualSearchTest::enterInTheCallBoxSearchesToo()
{
    Started s;
    QVERIFY(s.search(QStringLiteral("XX9TST"), true));
    QCOMPARE(s.label("Label34"), QStringLiteral("XX9MGR"));
}

void ManualSearchTest::aPageWithoutTheCallIsNoResult()
{
    Started s;
    QVERIFY(s.search(QStringLiteral("XX9OTHER"), false));
    QCOMPARE(s.label("Label45"), QStringLiteral("M N G 無 し"));
    QVERIFY(test::waitUntil(
        [&] {
            return ui::captionColour(s.find<QLabel>(QStringLiteral("Label45"))) ==
                   base::Colour::Red;
        },
        2000));
}

QTEST_MAIN(ManualSearchTest)
#include "ManualSearch_test.moc"
