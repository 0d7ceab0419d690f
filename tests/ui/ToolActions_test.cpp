// The tool entries of the main window's menu bar: the QSOBank export of the open log, the
// import of cty.dat by hand, the manager list's web page, the two translator ticks, and the
// entries that stay hidden.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/ToolActions.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <memory>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

struct Started
{
    test::TempDir dir;
    test::ScriptedChooser chooser;
    std::unique_ptr<ui::DesktopProgram> program;

    /// With `commonLines`, the working folder holds a `zlog_1.txt` from an earlier run when
    /// the program starts.
    explicit Started(bool commonLines = false, const std::string& managerPage = {})
    {
        test::prepareHome(dir / "home");
        if (commonLines) {
            fs::create_directories(dir / "home" / "Work");
            test::writeBytes(dir / "home" / "Work" / "zlog_1.txt", "");
        }
        if (!managerPage.empty()) {
            settings::ProfileFile web(dir / "home" / "Vornhale_web.ini");
            web.write("web", "manager_list_page", managerPage);
            web.save();
        }
        program = std::make_unique<ui::DesktopProgram>(dir / "home", chooser);
        program->setProgramEnd([](int) {});
        program->start();
    }
    ui::MainWindow& window() { return *program->mainWindow(); }
    QAction* entry(const char* name)
    {
        return window().findChild<QAction*>(QString::fromLatin1(name));
    }
    fs::path home() const { return dir / "home"; }
    fs::path sampleLog()
    {
        fs::create_directories(dir / "logs");
        const fs::path log = dir / "logs" / "test.all";
        test::writeSjisLines(
            log, {"zLog for Windows Version 2.80e  (c) JA1ZLO",
                  "2026/03/05 09:05 XX9TST       599         599 13      -     -     3.5  CW   1",
                  "2026/03/05 09:10 JA1ABC       59          59  11      -     -     7    SSB  1"});
        return log;
    }
};

} // namespace

class ToolActionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void qsoBankIsDisabledWithoutCommonLinesFromAnEarlierRun();
    void qsoBankWritesTheXmlBesideTheLog();
    void getEntityImportsCtyDatAgainEachTime();
    void theManagerListPageOpensInTheBrowser();
    void withoutAManagerListPageAMessageSaysSo();
    void theTranslatorEntriesInvertTheirTickAndStoreIt();
    void theHiddenEntriesStayHidden();
};

void ToolActionsTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void ToolActionsTest::qsoBankIsDisabledWithoutCommonLinesFromAnEarlierRun()
{
    Started s;
    QCOMPARE(s.entry("mnuQSOBank")->text(), QStringLiteral("QSOBank"));
    QVERIFY(!s.entry("mnuQSOBank")->isEnabled());
}

void ToolActionsTest::qsoBankWritesTheXmlBesideTheLog()
{
    Started s(true);
    QVERIFY(s.entry("mnuQSOBank")->isEnabled());
    const fs::path log = s.sampleLog();
    s.window().openPath(log.string());
    s.entry("mnuQSOBank")->trigger();
    const fs::path xml = s.dir / "logs" / "test.QSOBank.xml";
    QVERIFY(fs::exists(xml));
    const QString written = qs(text::decodeSjis(test::readBytes(xml)));
    QVERIFY(written.startsWith(QStringLiteral("<?xml version=\"1\"?>\r\n<putqsodata_body>\r\n")));
    QVERIFY2(written.contains(QStringLiteral("<daytime>2026/03/05 09:05:00 UTC</daytime>\r\n"
                                             "<callsign>XX9TST</callsign>\r\n")),
             qPrintable(written));
    QVERIFY(written.contains(QStringLiteral("<callsign>JA1ABC</callsign>")));
    QVERIFY(written.endsWith(QStringLiteral("</putqsodata_body>\r\n")));
    auto* status = s.window().findChild<QLabel*>(QStringLiteral("lblShori"));
    QVERIFY(
        test::waitUntil([&] { return status->text() == QStringLiteral("　変 換 終 了"); }, 2000));
}

void ToolActionsTest::getEntityImportsCtyDatAgainEachTime()
{
    Started s;
    QCOMPARE(s.entry("mnuGet_Entity")->text(), QStringLiteral("get_Entity"));
    for (int round = 0; round < 2; ++round) {
        fs::remove(s.home() / "cty_mastS.txt");
        fs::remove(s.home() / "cty_mastL.txt");
        s.entry("mnuGet_Entity")->trigger();
        QVERIFY(fs::exists(s.home() / "cty_mastS.txt"));
        QVERIFY(fs::exists(s.home() / "cty_mastL.txt"));
        QVERIFY(fs::file_size(s.home() / "cty_mastS.txt") > 0);
    }
    const std::string trace = [&] {
        std::string all;
        for (const auto& f : fs::directory_iterator(s.home() / "Error_Log")) {
            all += test::readBytes(f.path());
        }
        return text::decodeSjis(all);
    }();
    QVERIFY(trace.find("Private sub cmdStart_ardx_sep") != std::string::npos);
}

void ToolActionsTest::theManagerListPageOpensInTheBrowser()
{
    Started s(false, "http://127.0.0.1:9/managers.html");
    QStringList opened;
    ui::ToolActions::setUrlOpener([&](const QString& url) {
        opened << url;
        return true;
    });
    s.entry("mnuWeb_Manager")->trigger();
    ui::ToolActions::setUrlOpener({});
    QCOMPARE(opened, QStringList{QStringLiteral("http://127.0.0.1:9/managers.html")});
}

void ToolActionsTest::withoutAManagerListPageAMessageSaysSo()
{
    Started s;
    QStringList opened;
    ui::ToolActions::setUrlOpener([&](const QString& url) {
        opened << url;
        return true;
    });
    test::BoxAnswerer boxes;
    s.entry("mnuWeb_Manager")->trigger();
    ui::ToolActions::setUrlOpener({});
    QVERIFY(opened.isEmpty());
    QCOMPARE(boxes.texts.size(), 1);
    QVERIFY(boxes.texts.front().contains(QStringLiteral("manager_list_page")));
}

void ToolActionsTest::theTranslatorEntriesInvertTheirTickAndStoreIt()
{
    Started s;
    for (const char* name : {"mnuMake_a2t", "mnuMake_t2a"}) {
        const std::string key = std::string(name).substr(3);
        QAction* entry = s.entry(name);
        QVERIFY(entry->isCheckable());
        const bool before = entry->isChecked();
        entry->trigger();
        QCOMPARE(entry->isChecked(), !before);
        QCOMPARE(s.program->session()->options().value(key), std::string(before ? "0" : "1"));
        entry->trigger();
        QCOMPARE(entry->isChecked(), before);
        QCOMPARE(s.program->session()->options().value(key), std::string(before ? "1" : "0"));
    }
    QCOMPARE(s.entry("mnuMake_a2t")->text(),
             QStringLiteral("変換時に zLog の ＊．.all  から ＊．txt を作成する。"));
}

void ToolActionsTest::theHiddenEntriesStayHidden()
{
    Started s;
    const std::pair<const char*, const char*> hidden[] = {
        {"mnuVornhale_hlp", "Vornhale.hlp"},
        {"mnuardx_sep", "ardx_sep"},
        {"mnuMake_adif2a", "ADIF から zLog の ＊．.all を作成する。"},
        {"mnuMNG", "MNG"}};
    for (const auto& [name, caption] : hidden) {
        QAction* entry = s.entry(name);
        QVERIFY2(entry != nullptr, name);
        QVERIFY2(!entry->isVisible(), name);
        QCOMPARE(entry->text(), QString::fromUtf8(caption));
    }
    QVERIFY(s.entry("mnuDisp_Readme")->isVisible());
    QVERIFY(s.entry("mnuWeb_Manager")->isVisible());
}

QTEST_MAIN(ToolActionsTest)
#include "ToolActions_test.moc"
