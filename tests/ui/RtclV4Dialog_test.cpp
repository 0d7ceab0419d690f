// The RTCL v4 window frmRTCL_v4 and the RTCL menu entries that write zLog texts without a
// conversion: the version checks with their labels and boxes, the texts written beside the
// log, and how the main window's menus reach them.

#include "DialogTestSupport.h"
#include "readers/RtclV4Form.h"
#include "readers/RtclWriter.h"
#include "settings/ProfileFile.h"
#include "text/SjisCodec.h"
#include "ui/RtclV4Dialog.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

/// A binary log of `records` contacts of one generation, in `folder` under `name`.
fs::path binaryLog(const fs::path& folder, const char* name, bool v430, int records,
                   const std::function<void(int, test::RtclBinarySpec&)>& edit = {})
{
    test::RtclBinaryWriter writer(v430);
    for (int i = 0; i < records; ++i) {
        test::RtclBinarySpec q;
        q.number = "0000" + std::to_string(i % 10);
        q.call = "JA1AB" + std::string(1, static_cast<char>('A' + i % 26));
        if (edit) {
            edit(i, q);
        }
        writer.record(q);
    }
    const fs::path path = folder / name;
    test::writeBytes(path, writer.bytes());
    return path;
}

QString inName(QWidget& d)
{
    return d.findChild<QLabel*>(QStringLiteral("lblIn_name"))->text();
}

QPushButton* button(QWidget& d, const char* name)
{
    return d.findChild<QPushButton*>(QString::fromUtf8(name));
}

} // namespace

class RtclV4DialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsItsMenuEntriesLabelAndButtons();
    void aLogBeforeVersionFourThirtyIsChosenThroughItsMenuEntry();
    void aLogOfVersionFourThirtyThroughTheEarlierEntryIsRefused();
    void aLogOfVersionFourThirtyWhoseLengthAlsoDividesByTheOlderRecordIsTaken();
    void aLogOfVersionFourThroughTheLaterEntryIsRefused();
    void aFileNotStartingWithZeroIsRefused();
    void theAllButtonWritesTheAllTextWithoutTheQtcRecords();
    void theTxtButtonWritesTheTxtText();
    void aRigValueOneBelowARowStartTakesThatRowWithNoStep();
    void theMenuEntriesOfTheMainWindowOpenTheWindow();
    void theOldTextMenuWritesTheAllTextBesideTheLog();
    void theNewTextMenuWritesTheTxtTextBesideTheLog();
    void aTextLogOfTheOtherGenerationIsRefusedWithItsBox();
    void aCancelledDialogWritesNothing();
};

void RtclV4DialogTest::showsItsMenuEntriesLabelAndButtons()
{
    test::StartedProgram s;
    ui::RtclV4Dialog d(s.session(), s.chooser);
    QCOMPARE(d.objectName(), QStringLiteral("frmRTCL_v4"));
    QVERIFY(d.findChild<QAction*>(QStringLiteral("mnuVer_430mae")) != nullptr);
    QVERIFY(d.findChild<QAction*>(QStringLiteral("mnuVer_430ato")) != nullptr);
    QCOMPARE(inName(d), QString());
    // Nothing to write before a log is chosen.
    QVERIFY(!button(d, "cmdMake_txt")->isEnabled());
    QVERIFY(!button(d, "cmdMake_all")->isEnabled());
}

void RtclV4DialogTest::aLogBeforeVersionFourThirtyIsChosenThroughItsMenuEntry()
{
    test::StartedProgram s;
    const fs::path log = binaryLog(s.dir.path(), "v4.log", false, 2);
    s.chooser.answers << ui::qs(log.string());
    ui::RtclV4Dialog d(s.session(), s.chooser);
    d.findChild<QAction*>(QStringLiteral("mnuVer_430mae"))->trigger();
    QCOMPARE(inName(d), ui::qs(log.string()));
    QCOMPARE(d.form().f_type(), std::string("log_430mae"));
    QVERIFY(button(d, "cmdMake_all")->isEnabled());
    // The dialog is the folder dialog of the RTCL 4.00 open.
    QVERIFY(s.chooser.titles.back().endsWith(
        QStringLiteral("　のＲＴＣＬ ｖｅｒ　４＊．ｌｏｇ ファイルを  開く ....")));
    QCOMPARE(s.chooser.filters.back(), QStringLiteral("RTCL テキストファイル( *.log )|*.log|"));
}

void RtclV4DialogTest::aLogOfVersionFourThirtyThroughTheEarlierEntryIsRefused()
{
    test::StartedProgram s;
    const fs::path log = binaryLog(s.dir.path(), "v430.log", true, 2);
    s.chooser.answers << ui::qs(log.string());
    ui::RtclV4Dialog d(s.session(), s.chooser);
    d.findChild<QAction*>(QStringLiteral("mnuVer_430mae"))->trigger();
    QCOMPARE(inName(d), QStringLiteral("RTCL ver 4.30 より前のｌｏｇファイルではありません"));
    QCOMPARE(ui::captionColour(d.findChild<QLabel*>(QStringLiteral("lblIn_name"))),
             base::Colour::Red);
    QVERIFY(!button(d, "cmdMake_txt")->isEnabled());
    QVERIFY(!button(d, "cmdMake_all")->isEnabled());
}

void RtclV4DialogTest::aLogOfVersionFourThirtyWhoseLengthAlsoDividesByTheOlderRecordIsTaken()
{
    test::StartedProgram s;
    // 203 records of 209 bytes are 209 records of 203 bytes as well.
    const fs::path log = binaryLog(s.dir.path(), "both.log", true, 203);
    ui::RtclV4Dialog d(s.session(), s.chooser);
    QVERIFY(d.choose(log, true));
    QCOMPARE(inName(d), ui::qs(log.string()));
    QVERIFY(button(d, "cmdMake_all")->isEnabled());
}

void RtclV4DialogTest::aLogOfVersionFourThroughTheLaterEntryIsRefused()
{
    test::StartedProgram s;
    const fs::path log = binaryLog(s.dir.path(), "v4.log", false, 3);
    s.chooser.answers << ui::qs(log.string());
    ui::RtclV4Dialog d(s.session(), s.chooser);
    d.findChild<QAction*>(QStringLiteral("mnuVer_430ato"))->trigger();
    QCOMPARE(inName(d), QStringLiteral("RTCL ver 4.30 以降のｌｏｇファイルではありません"));
    QCOMPARE(d.form().f_type(), std::string("log_430ato"));
    QVERIFY(!button(d, "cmdMake_all")->isEnabled());
    QVERIFY(s.chooser.titles.back().endsWith(
        QStringLiteral("　のＲＴＣＬ ｖｅｒ　４３０．ｌｏｇ ファイルを  開く ....")));
}

void RtclV4DialogTest::aFileNotStartingWithZeroIsRefused()
{
    test::StartedProgram s;
    const fs::path log = binaryLog(s.dir.path(), "odd.log", false, 1,
                                   [](int, test::RtclBinarySpec& q) { q.number = "10001"; });
    ui::RtclV4Dialog d(s.session(), s.chooser);
    QVERIFY(!d.choose(log, true));
    QCOMPARE(inName(d), QStringLiteral("RTCL ver 4.30 より前のｌｏｇファイルではありません"));
}

void RtclV4DialogTest::theAllButtonWritesTheAllTextWithoutTheQtcRecords()
{
    test::StartedProgram s;
    const fs::path log =
        binaryLog(s.dir.path(), "qtc.log", false, 3, [](int i, test::RtclBinarySpec& q) {
            if (i == 1) {
                q.number = "QTC01";
            }
        });
    ui::RtclV4Dialog d(s.session(), s.chooser);
    QVERIFY(d.choose(log, true));
    QTest::mouseClick(button(d, "cmdMake_all"), Qt::LeftButton);
    const fs::path written = s.dir / "qtc_log2z.all";
    QCOMPARE(d.findChild<QLabel*>(QStringLiteral("lblOut_name"))->text(), ui::qs(written.string()));
    const auto lines = test::readSjisLines(written);
    QCOMPARE(lines.size(), std::size_t(3));
    QCOMPARE(lines[0],
             std::string("zLog for Windows   (rtcl.log to zlog.all)    by Vornhale 5.44"));
    QVERIFY(lines[1].find("JA1ABA") != std::string::npos);
    QVERIFY(lines[2].find("JA1ABC") != std::string::npos);
    // The working file is gone again.
    QVERIFY(!fs::exists(s.dir / "tmp_log.csv"));
}

void RtclV4DialogTest::theTxtButtonWritesTheTxtText()
{
    test::StartedProgram s;
    const fs::path log = binaryLog(s.dir.path(), "new.log", true, 2);
    ui::RtclV4Dialog d(s.session(), s.chooser);
    QVERIFY(d.choose(log, false));
    QTest::mouseClick(button(d, "cmdMake_txt"), Qt::LeftButton);
    const fs::path written = s.dir / "new_log2z.txt";
    QVERIFY(fs::exists(written));
    const std::string all = test::readBytes(written);
    QVERIFY(all.find("JA1ABA") != std::string::npos);
    QVERIFY(all.find("JA1ABB") != std::string::npos);
    QVERIFY(!fs::exists(s.dir / "new_log2z.all"));
}

void RtclV4DialogTest::aRigValueOneBelowARowStartTakesThatRowWithNoStep()
{
    test::StartedProgram s;
    const fs::path log =
        binaryLog(s.dir.path(), "rig.log", false, 2, [](int i, test::RtclBinarySpec& q) {
            q.band = "3.5";
            // One below the start of the 3.5 MHz row, then 600
            // steps of its divisor 128 above it.
            q.rig = i == 0 ? 1253306367u : 1253306368u + 600u * 128u;
        });
    ui::RtclV4Dialog d(s.session(), s.chooser);
    QVERIFY(d.choose(log, true));
    QTest::mouseClick(button(d, "cmdMake_all"), Qt::LeftButton);
    const auto lines = test::readSjisLines(s.dir / "rig_log2z.all");
    QCOMPARE(lines.size(), std::size_t(3));
    QVERIFY2(lines[1].find("(3500)") != std::string::npos, lines[1].c_str());
    QVERIFY2(lines[2].find("(3501)") != std::string::npos, lines[2].c_str());
}

void RtclV4DialogTest::theMenuEntriesOfTheMainWindowOpenTheWindow()
{
    test::StartedProgram s;
    for (const char* entry : {"mnu_rtcl_new4_", "mnu_rtcl_new430_"}) {
        QString opened;
        test::whenModal([&](QWidget* modal) {
            opened = modal->objectName();
            modal->close();
        });
        s.window().findChild<QAction*>(QString::fromUtf8(entry))->trigger();
        QCOMPARE(opened, QStringLiteral("frmRTCL_v4"));
    }
    QVERIFY(!settings::ProfileFile(s.home() / "Vornhale_posi.ini")
                 .read("Position_frmRTCL_v4", "Width")
                 .empty());
}

void RtclV4DialogTest::theOldTextMenuWritesTheAllTextBesideTheLog()
{
    test::StartedProgram s;
    test::RtclOldSpec a, qtc;
    a.note = "[FRQ 14085]";
    qtc.kind = "QTC";
    const fs::path log = s.dir / "old.log";
    test::writeSjisLines(log, {a.line(), qtc.line()});
    s.chooser.answers << ui::qs(log.string());
    s.window().findChild<QAction*>(QStringLiteral("mnu_rtcl_log2all"))->trigger();
    const auto lines = test::readSjisLines(s.dir / "old_l2z.all");
    QCOMPARE(lines.size(), std::size_t(2));
    QVERIFY(lines[1].find("(14085)") != std::string::npos);
    QVERIFY(s.chooser.titles.back().endsWith(
        QStringLiteral("　のＲＴＣＬ 旧 ＊．ｌｏｇ ファイルを  開く ....")));
    // The status line tells what was written.
    auto* status = s.window().findChild<QLabel*>(QStringLiteral("lblShori"));
    QVERIFY(test::waitUntil(
        [&] { return status->text() == ui::qs((s.dir / "old_l2z.all").string()); }, 2000));
}

void RtclV4DialogTest::theNewTextMenuWritesTheTxtTextBesideTheLog()
{
    test::StartedProgram s;
    test::RtclNewSpec a;
    const fs::path log = s.dir / "new.log";
    test::writeSjisLines(log, {a.line()});
    s.chooser.answers << ui::qs(log.string());
    s.window().findChild<QAction*>(QStringLiteral("mnu_rtcl_log2txt_new"))->trigger();
    QVERIFY(fs::exists(s.dir / "new_l2z.txt"));
    QVERIFY(test::readBytes(s.dir / "new_l2z.txt").find("JA1ABC") != std::string::npos);
    QVERIFY(s.chooser.titles.back().endsWith(
        QStringLiteral("　のＲＴＣＬ 新 ＊．ｌｏｇ ファイルを  開く ....")));
}

void RtclV4DialogTest::aTextLogOfTheOtherGenerationIsRefusedWithItsBox()
{
    test::StartedProgram s;
    test::RtclOldSpec a;
    const fs::path log = s.dir / "older.log";
    test::writeSjisLines(log, {a.line()});
    s.chooser.answers << ui::qs(log.string());
    test::BoxAnswerer boxes;
    s.window().findChild<QAction*>(QStringLiteral("mnu_rtcl_log2all_new"))->trigger();
    QCOMPARE(boxes.titles.size(), 1);
    QCOMPARE(boxes.titles[0], QStringLiteral("　　ＲＴＣＬのバージョン違いの　＊．ｌｏｇ　です！"));
    QVERIFY(boxes.texts[0].contains(QStringLiteral("旧")));
    QVERIFY(!fs::exists(s.dir / "older_l2z.all"));
}

void RtclV4DialogTest::aCancelledDialogWritesNothing()
{
    test::StartedProgram s;
    s.chooser.answers << QString();
    s.window().findChild<QAction*>(QStringLiteral("mnu_rtcl_log2txt"))->trigger();
    QCOMPARE(s.chooser.titles.size(), 1);
    QCOMPARE(s.endedWith, -1);
}

QTEST_MAIN(RtclV4DialogTest)
#include "RtclV4Dialog_test.moc"
