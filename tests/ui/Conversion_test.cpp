// Opening a log through the window's open actions and converting it with the start button:
// the dialogs, what the window shows of the input, the run on its own thread, the counters,
// the result files, a failure and the stop button.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"
#include "ui/QtDialogs.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <memory>
#include <unistd.h>
#include <vector>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

struct Started : test::StartedProgram
{
    void click(const QString& name)
    {
        QWidget* w = find<QWidget>(name);
        QVERIFY2(w != nullptr, qPrintable(name));
        test::showTabOf(w);
        QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(8, w->height() / 2));
    }
    /// Copies the sample log into the test's folder under `name`.
    fs::path sample(const std::string& name, const char* source = "SAMPLE2026.ALL")
    {
        fs::create_directories(dir / "logs");
        const fs::path log = dir / "logs" / name;
        fs::copy_file(test::sourceDir() / "data" / "sample" / source, log);
        return log;
    }
    /// Opens `log` through the menu entry, as the operator picks it in the dialog.
    void openThroughMenu(const fs::path& log, const char* menu = "mnuOpen_all_txt_set")
    {
        chooser.answers << qs(log.string());
        find<QAction>(QString::fromUtf8(menu))->trigger();
    }
    /// Presses the start button and waits for the end of the run.
    bool convert(int timeoutMs = 120000)
    {
        QSignalSpy finished(&window(), &ui::MainWindow::conversionFinished);
        click(QStringLiteral("cmdStart"));
        return finished.wait(timeoutMs) || finished.count() > 0;
    }
    QString gridCount(int row)
    {
        return find<QTableWidget>(QStringLiteral("MSFlexGrid1"))->item(row, 1)->text();
    }
};

// A zLog .ALL log of `count` contacts with distinct calls, each worked once or twice.
void writeLargeLog(const fs::path& path, int count)
{
    std::ofstream out(path, std::ios::binary);
    out << "zLog for Windows Version 2.80e  (c) JA1ZLO\r\n";
    const char* bands[] = {"3.5 ", "7   ", "14  ", "21  ", "28  "};
    for (int i = 0; i < count; ++i) {
        const int station = i % (count * 2 / 3 + 1);
        std::string call = "JA" + std::to_string(station % 10);
        int n = station / 10;
        for (int k = 0; k < 3; ++k) {
            call += static_cast<char>('A' + n % 26);
            n /= 26;
        }
        call.resize(13, ' ');
        const int minute = i % 60;
        const int hour = (i / 60) % 24;
        char time[32];
        std::snprintf(time, sizeof time, "2026/11/21 %02d:%02d ", hour, minute);
        out << time << call << "599         599 13      -     -     " << bands[i % 5]
            << " CW   1\r\n";
    }
}

} // namespace

class ConversionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theFolderDialogOpensInTheSettingsFolderWithItsTitleAndFilter();
    void anOpenedLogIsShownWithItsCountAndEnablesTheStart();
    void aCancelledPlainDialogAsksForAnInputInRed();
    void aPathOfFortyBytesIsShownWhole();
    void aLongPathIsShortenedWithTheFullPathInTheTip();
    void pressingStartConvertsTheLogAsTheGoldenCaseHasIt();
    void theWindowStaysAliveWhileALargeLogConverts();
    void aFailureShowsItsDialogAndEndsTheProgram();
    void theStopButtonEndsTheProgramAtOnce();
    void theResultViewersFollowTheFilesOfTheInput();
    void aCommentBeyondTheTwoHundredthFailsBeforeTheHistoryIsRewritten();
    void aSecondRunSkipsThePreparationOfTheMasters();
};

void ConversionTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void ConversionTest::theFolderDialogOpensInTheSettingsFolderWithItsTitleAndFilter()
{
    Started s;
    const std::string allDir = s.program->session()->options().value("all_dir");
    s.chooser.answers << QString();
    s.find<QAction>(QStringLiteral("開く"))->trigger();
    QCOMPARE(s.chooser.titles.size(), 1);
    QCOMPARE(s.chooser.titles[0],
             qs(allDir).toUpper() +
                 QStringLiteral("　の ＊．ａｌｌ　または　＊．ｔｘｔ　 ファイルを  開く ...."));
    QCOMPARE(s.chooser.startFolders[0], qs(allDir));
    QCOMPARE(s.chooser.filters[0], QStringLiteral("テキストファイル(*.all;*.txt)|*.all;*.txt|"));

    s.find<QAction>(QStringLiteral("開 z"))->trigger();
    QCOMPARE(s.chooser.filters[1], QStringLiteral("バイナリーファイル(*.zlo)|*.zlo|"));
    s.find<QAction>(QStringLiteral("mnuOpen"))->trigger();
    QCOMPARE(s.chooser.filters[2], QStringLiteral("ﾃｷｽﾄﾌｧｲﾙ ( *.txt , *.all )|*.txt;*.all"));
    QCOMPARE(s.chooser.titles[2], QString());
}

void ConversionTest::anOpenedLogIsShownWithItsCountAndEnablesTheStart()
{
    Started s;
    const fs::path log = s.sample("CONTEST.ALL");
    s.openThroughMenu(log);
    auto* name = s.find<QLabel>(QStringLiteral("lblIn_name"));
    QCOMPARE(ui::captionColour(name), base::Colour::BrightBlue);
    QCOMPARE(name->toolTip(), qs(log.string()));
    QCOMPARE(s.find<QLabel>(QStringLiteral("Label37"))->text(),
             qs(s.program->session()->input().Label37));
    QVERIFY(s.find<QLabel>(QStringLiteral("Label37"))->text().endsWith(QStringLiteral("　件")));
    QVERIFY(s.find<QPushButton>(QStringLiteral("cmdStart"))->isEnabled());
    QVERIFY(s.find<QAction>(QStringLiteral("変換"))->isEnabled());
    QVERIFY(s.find<QAction>(QStringLiteral("入力ﾌｧｲﾙ"))->isEnabled());
    QCOMPARE(s.find<QLabel>(QStringLiteral("control18"))->text(), QStringLiteral("CONTEST_cn.csv"));
    QCOMPARE(s.find<QLabel>(QStringLiteral("control21"))->text(),
             qs((s.dir / "logs" / "CONTEST_hn.csv").string()));
    // An .ALL log carries its year: the box waits. A .TXT log does not.
    QVERIFY(!s.find<QLineEdit>(QStringLiteral("txtYYYY"))->isEnabled());
    s.openThroughMenu(s.sample("CONTEST.TXT", "SAMPLE2026.TXT"));
    QVERIFY(s.find<QLineEdit>(QStringLiteral("txtYYYY"))->isEnabled());
}

void ConversionTest::aCancelledPlainDialogAsksForAnInputInRed()
{
    Started s;
    s.chooser.answers << QString();
    s.find<QAction>(QStringLiteral("mnuOpen"))->trigger();
    auto* name = s.find<QLabel>(QStringLiteral("lblIn_name"));
    QCOMPARE(name->text(), QStringLiteral("入力ファイルを指定して下さい"));
    QCOMPARE(ui::captionColour(name), base::Colour::Red);
    QCOMPARE(s.find<QLabel>(QStringLiteral("Label37"))->text(), QString());
    QVERIFY(!s.find<QPushButton>(QStringLiteral("cmdStart"))->isEnabled());
}

void ConversionTest::aPathOfFortyBytesIsShownWhole()
{
    Started s;
    // A folder of the length that makes the whole path 40 bytes, in a short place.
    const fs::path shortPlace = fs::temp_directory_path() / ("vh" + std::to_string(::getpid()));
    struct Remove
    {
        fs::path p;
        ~Remove() { fs::remove_all(p); }
    } remove{shortPlace};
    const std::string base = shortPlace.string() + "/";
    const std::string file = "A.ALL";
    QVERIFY(base.size() + file.size() < 40);
    const std::string folder = base + std::string(40 - base.size() - file.size() - 1, 'x') + "/";
    fs::create_directories(folder);
    const fs::path log = folder + file;
    QCOMPARE(log.string().size(), std::size_t(40));
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    s.openThroughMenu(log);
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblIn_name"))->text(), qs(log.string()));
}

void ConversionTest::aLongPathIsShortenedWithTheFullPathInTheTip()
{
    Started s;
    const fs::path folder = s.dir / "logs" / std::string(50, 'y');
    fs::create_directories(folder);
    const fs::path log = folder / "LONGNAME.ALL";
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    s.openThroughMenu(log);
    auto* name = s.find<QLabel>(QStringLiteral("lblIn_name"));
    QVERIFY2(name->text().contains(QStringLiteral("...")), qPrintable(name->text()));
    QVERIFY(name->text().endsWith(QStringLiteral("LONGNAME.ALL")));
    QCOMPARE(name->text().toUtf8().size(), 40);
    QCOMPARE(name->toolTip(), qs(log.string()));
}

void ConversionTest::pressingStartConvertsTheLogAsTheGoldenCaseHasIt()
{
    Started s;
    const fs::path log = s.sample("CONTEST.ALL");
    s.openThroughMenu(log);
    QVERIFY(s.convert());
    QCOMPARE(s.program->session() != nullptr, true);
    auto* status = s.find<QLabel>(QStringLiteral("lblShori"));
    QCOMPARE(status->text(), QStringLiteral("　処理終了"));
    QCOMPARE(ui::captionColour(status), base::Colour::BrightBlue);
    QCOMPARE(s.endedWith, -1);

    // The counters are those the command line prints for the same log.
    std::string output;
    test::TempDir other;
    fs::copy_file(log, other / "CONTEST.ALL");
    QCOMPARE(test::runCommand("'" + test::cliPath().string() + "' convert --home '" +
                                  (other / "home").string() + "' '" +
                                  (other / "CONTEST.ALL").string() + "'",
                              &output),
             0);
    for (int row = 0; row < 7; ++row) {
        const QString count = s.gridCount(row);
        QVERIFY2(!count.isEmpty(), qPrintable(QString::number(row)));
        QVERIFY2(qs(output).contains(QStringLiteral("\t") + count + QStringLiteral(" 件")),
                 qPrintable(count));
    }
    QVERIFY(s.gridCount(0).toInt() > 0);

    const fs::path golden = test::testData("golden") / "all_defaults";
    for (const char* name : {"CONTEST_hn.csv", "CONTEST_cn.csv"}) {
        QVERIFY2(fs::exists(s.dir / "logs" / name), name);
        const std::string diff =
            test::compareGolden(golden / name, test::readBytes(s.dir / "logs" / name));
        QVERIFY2(diff.empty(), diff.c_str());
    }
    // Only the two results remain beside the log.
    int files = 0;
    for (const auto& entry : fs::directory_iterator(s.dir / "logs")) {
        (void)entry;
        ++files;
    }
    QCOMPARE(files, 3);
    // The start is ready again, the result tab in front.
    QVERIFY(s.find<QPushButton>(QStringLiteral("cmdStart"))->isEnabled());
    QCOMPARE(s.window().secondTabs()->currentIndex(), 2);
}

void ConversionTest::theWindowStaysAliveWhileALargeLogConverts()
{
    Started s;
    fs::create_directories(s.dir / "logs");
    const fs::path log = s.dir / "logs" / "LARGE.ALL";
    writeLargeLog(log, 30000);
    s.openThroughMenu(log);
    QVERIFY(s.find<QPushButton>(QStringLiteral("cmdStart"))->isEnabled());

    int ticks = 0;
    int progressSeen = 0;
    QTimer heartbeat;
    heartbeat.setInterval(10);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        ++ticks;
        if (s.find<QProgressBar>(QStringLiteral("ProgressBar1"))->value() > 0) {
            ++progressSeen;
        }
    });
    heartbeat.start();
    QElapsedTimer clock;
    clock.start();
    QVERIFY(s.convert(600000));
    const qint64 elapsed = clock.elapsed();
    heartbeat.stop();
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblShori"))->text(), QStringLiteral("　処理終了"));
    QCOMPARE(s.gridCount(0), QStringLiteral("30000"));
    // The event loop ran all through the run: the heartbeat came at least every tenth of
    // the time, and the progress bar moved while it did.
    QVERIFY2(ticks >= elapsed / 100,
             qPrintable(QStringLiteral("%1 ticks in %2 ms").arg(ticks).arg(elapsed)));
    QVERIFY(progressSeen > 0);
}

void ConversionTest::aFailureShowsItsDialogAndEndsTheProgram()
{
    Started s;
    const fs::path log = s.sample("CONTEST.ALL");
    s.openThroughMenu(log);
    // An operator who is not in the log leaves the common lines empty: the run fails.
    s.click(QStringLiteral("Check02"));
    auto* op = s.find<QLineEdit>(QStringLiteral("txtOp_name"));
    QTest::keyClicks(op, QStringLiteral("NOBODY"));
    test::BoxAnswerer boxes;
    s.click(QStringLiteral("cmdStart"));
    QVERIFY(test::waitUntil([&] { return s.endedWith != -1; }, 120000));
    QCOMPARE(s.endedWith, 1);
    // The failure dialog, then the closing thanks.
    QCOMPARE(boxes.titles.size(), 2);
    QCOMPARE(boxes.titles[0], QStringLiteral("　　エラー発生の為、　終了します！"));
    QVERIFY2(boxes.texts[0].startsWith(QStringLiteral("エラー内容 ：　")),
             qPrintable(boxes.texts[0]));
    QCOMPARE(boxes.titles[1], QStringLiteral("　　　　　　お手数をお掛けしています。"));
    const auto traces = fs::directory_iterator(s.dir / "home" / "Error_Log");
    bool traced = false;
    for (const auto& entry : traces) {
        for (const std::string& line : test::readSjisLines(entry.path())) {
            traced = traced || line.rfind("エラー発生 ：　", 0) == 0;
        }
    }
    QVERIFY(traced);
}

void ConversionTest::theStopButtonEndsTheProgramAtOnce()
{
    Started s;
    s.click(QStringLiteral("cmdStop"));
    QCOMPARE(s.endedWith, 0);
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblShori"))->text(),
             QStringLiteral("　　　　終了処理中．．．．．．"));
}

void ConversionTest::theResultViewersFollowTheFilesOfTheInput()
{
    Started s;
    const fs::path log = s.sample("CONTEST.ALL");
    s.openThroughMenu(log);
    // Before a run there is no result to show.
    QVERIFY(!s.find<QAction>(QStringLiteral("contest_n"))->isEnabled());
    QVERIFY(!s.find<QAction>(QStringLiteral("mnuDisp_ham_n_new"))->isEnabled());
    QVERIFY(s.convert());
    QVERIFY(s.find<QAction>(QStringLiteral("contest_n"))->isEnabled());
    QVERIFY(s.find<QAction>(QStringLiteral("hamlog_n"))->isEnabled());
    QVERIFY(s.find<QAction>(QStringLiteral("mnuDisp_con_n_new"))->isEnabled());
    // Without the duplicate list its viewer waits.
    QVERIFY(!s.find<QAction>(QStringLiteral("＊．ｄｕｐ"))->isEnabled());
}

void ConversionTest::aCommentBeyondTheTwoHundredthFailsBeforeTheHistoryIsRewritten()
{
    Started s;
    std::vector<std::string> lines = {"Vornhale.rmk1  for Vornhale.exe  ver 5.44"};
    for (int i = 0; i < 200; ++i) {
        lines.push_back("COMMENT " + std::to_string(1000 + i));
    }
    const fs::path history = s.dir / "home" / "Vornhale.rmk1";
    test::writeSjisLines(history, lines);
    s.openThroughMenu(s.sample("CONTEST.ALL"));
    auto* comment = s.find<QLineEdit>(QStringLiteral("txtRmks1"));
    test::showTabOf(comment);
    QTest::keyClicks(comment, QStringLiteral("TNX NEW"));
    const std::string before = test::readBytes(history);
    test::BoxAnswerer boxes;
    s.click(QStringLiteral("cmdStart"));
    QVERIFY(test::waitUntil([&] { return s.endedWith != -1; }, 120000));
    QCOMPARE(s.endedWith, 1);
    QVERIFY(!boxes.titles.isEmpty());
    QCOMPARE(boxes.titles[0], QStringLiteral("　　エラー発生の為、　終了します！"));
    // The new comment was appended; the history was not sorted and rewritten.
    const std::string after = test::readBytes(history);
    QVERIFY(after.rfind(before, 0) == 0);
}

void ConversionTest::aSecondRunSkipsThePreparationOfTheMasters()
{
    Started s;
    s.openThroughMenu(s.sample("CONTEST.ALL"));
    QVERIFY(s.convert());
    QVERIFY(s.convert());
    QCOMPARE(s.find<QLabel>(QStringLiteral("lblShori"))->text(), QStringLiteral("　処理終了"));
    int preparations = 0;
    for (const auto& entry : fs::directory_iterator(s.dir / "home" / "Error_Log")) {
        for (const std::string& line : test::readSjisLines(entry.path())) {
            preparations += line == "Private sub cmdStart_cty_dat_sep" ? 1 : 0;
        }
    }
    QCOMPARE(preparations, 1);
}

QTEST_MAIN(ConversionTest)
#include "Conversion_test.moc"
