// What the window shows of an opened log: the output names derived from the path, the
// shown path, the REF tick, the .ZLO entries, and the start gating.

#include "UiTestSupport.h"
#include "readers/ZloWriter.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <memory>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

struct Started : test::StartedProgram
{
    void open(const fs::path& log, const char* menu)
    {
        chooser.answers << qs(log.string());
        find<QAction>(QString::fromUtf8(menu))->trigger();
    }
    fs::path sampleAt(const fs::path& relative)
    {
        const fs::path log = dir.path() / relative;
        fs::create_directories(log.parent_path());
        fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
        return log;
    }
};

fs::path writeZlo(const fs::path& path)
{
    fs::create_directories(path.parent_path());
    test::ZloWriter writer;
    writer.header("ALL JAPAN");
    test::ZloQsoSpec q;
    writer.qso(q);
    q.call = "JA2XYZ";
    writer.qso(q);
    test::writeBytes(path, writer.bytes());
    return path;
}

} // namespace

class OpenTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aSecondZloInTheNameIsReplacedInEveryOutputName();
    void aFolderNamedWithAllChangesTheFolderOfTheOutputNames();
    void aPathWithRefInAnyCaseTicksTheRefBox();
    void aZloLogEnablesItsTextMakerAndHoldsTheYear();
    void theZloTextIsMadeAndThenShown();
    void aRejectedFileShowsItsMessageInRedAndKeepsTheStartOff();
    void eachDatabaseEntryReadsItsOwnTable();
};

void OpenTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void OpenTest::aSecondZloInTheNameIsReplacedInEveryOutputName()
{
    Started s;
    const fs::path log = writeZlo(s.dir / "logs" / "a.zlo.zlo");
    s.open(log, "mnuOpen_z");
    QCOMPARE(s.find<QLabel>(QStringLiteral("control18"))->text(),
             QStringLiteral("a_cn.csv_cn.csv"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("control20"))->text(),
             QStringLiteral("a_hn.csv_hn.csv"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("control19"))->text(),
             qs((s.dir / "logs" / "a_cn.csv_cn.csv").string()));
}

void OpenTest::aFolderNamedWithAllChangesTheFolderOfTheOutputNames()
{
    Started s;
    const fs::path log = s.sampleAt(fs::path("x.all") / "LOG.all");
    s.open(log, "mnuOpen");
    QCOMPARE(s.find<QLabel>(QStringLiteral("control19"))->text(),
             qs((s.dir / "x_cn.csv" / "LOG_cn.csv").string()));
    QCOMPARE(s.find<QLabel>(QStringLiteral("control18"))->text(), QStringLiteral("LOG_cn.csv"));
}

void OpenTest::aPathWithRefInAnyCaseTicksTheRefBox()
{
    Started s;
    auto* ref = s.find<QCheckBox>(QStringLiteral("Check13"));
    test::showTabOf(ref);
    // The tick has no key: it starts from its default at every start.
    QVERIFY(ref->isChecked());
    QTest::mouseClick(ref, Qt::LeftButton, {}, QPoint(8, ref->height() / 2));
    QVERIFY(!ref->isChecked());
    const fs::path log = s.sampleAt(fs::path("Ref-contest") / "LOG.ALL");
    s.open(log, "mnuOpen");
    QCOMPARE(s.program->session()->options().value("Check13"), std::string("1"));
    QVERIFY(ref->isChecked());
}

void OpenTest::aZloLogEnablesItsTextMakerAndHoldsTheYear()
{
    Started s;
    QVERIFY(!s.find<QAction>(QStringLiteral("mnuMake_z2a"))->isEnabled());
    const fs::path log = writeZlo(s.dir / "logs" / "TEST.ZLO");
    s.open(log, "mnuOpen_z");
    QCOMPARE(ui::captionColour(s.find<QLabel>(QStringLiteral("lblIn_name"))),
             base::Colour::BrightBlue);
    QVERIFY(s.find<QAction>(QStringLiteral("mnuMake_z2a"))->isEnabled());
    QVERIFY(s.find<QAction>(QStringLiteral("z2a作成"))->isEnabled());
    QVERIFY(!s.find<QAction>(QStringLiteral("mnuDisp_z2a"))->isEnabled());
    QVERIFY(!s.find<QLineEdit>(QStringLiteral("txtYYYY"))->isEnabled());
    QVERIFY(s.find<QPushButton>(QStringLiteral("cmdStart"))->isEnabled());
}

void OpenTest::theZloTextIsMadeAndThenShown()
{
    Started s;
    const fs::path log = writeZlo(s.dir / "logs" / "TEST.ZLO");
    s.open(log, "mnuOpen_z");
    s.find<QAction>(QStringLiteral("z2a作成"))->trigger();
    QVERIFY(fs::exists(s.dir / "logs" / "TEST_z2a.all"));
    QVERIFY(s.find<QAction>(QStringLiteral("mnuDisp_z2a"))->isEnabled());
    QVERIFY(s.find<QAction>(QStringLiteral("z2a表示"))->isEnabled());
}

void OpenTest::aRejectedFileShowsItsMessageInRedAndKeepsTheStartOff()
{
    Started s;
    fs::create_directories(s.dir / "logs");
    // A .TXT whose first line is not zLog's heading.
    const fs::path log = s.dir / "logs" / "NOTZLOG.TXT";
    test::writeBytes(log, "just some text\r\n");
    test::BoxAnswerer boxes;
    s.open(log, "mnuOpen");
    auto* name = s.find<QLabel>(QStringLiteral("lblIn_name"));
    QCOMPARE(ui::captionColour(name), base::Colour::Red);
    QVERIFY(!name->text().isEmpty());
    QVERIFY(!s.find<QPushButton>(QStringLiteral("cmdStart"))->isEnabled());
}

void OpenTest::eachDatabaseEntryReadsItsOwnTable()
{
    Started s;
    // Any file will do: the table is chosen before the database is looked at.
    fs::create_directories(s.dir / "logs");
    const fs::path db = s.dir / "logs" / "contest.mdb";
    test::writeBytes(db, "not a database");
    test::BoxAnswerer boxes;
    s.open(db, "mnuMDB_CurrentContest");
    QCOMPARE(QString::fromStdString(s.program->session()->input().mdb.table),
             QStringLiteral("CurrentContest"));

    Started t;
    fs::create_directories(t.dir / "logs");
    const fs::path db2 = t.dir / "logs" / "contest.mdb";
    test::writeBytes(db2, "not a database");
    t.program->session()->chooseMdbTable("CurrentContest");
    t.open(db2, "mnuMDB_dxlog");
    QCOMPARE(QString::fromStdString(t.program->session()->input().mdb.table),
             QStringLiteral("DXLOG"));
}

QTEST_MAIN(OpenTest)
#include "Open_test.moc"
