// The period dialog frmDate: its lists, tick and buttons, the period it stores, its refusal of
// a start after the end, the system date, and how the main window opens it.

#include "DialogTestSupport.h"
#include "settings/PeriodModel.h"
#include "settings/ProfileFile.h"
#include "ui/DateDialog.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

using namespace vornhale;

namespace {

constexpr settings::CalendarDate kToday{2019, 7, 4};

settings::CalendarDate fixedToday()
{
    return kToday;
}

QListWidget* list(QWidget& d, int n)
{
    return d.findChild<QListWidget*>(QStringLiteral("List%1").arg(n));
}

QPushButton* button(QWidget& d, const char* name)
{
    return d.findChild<QPushButton*>(QString::fromUtf8(name));
}

/// The period as the dialog finds it in the options.
void setPeriod(test::StartedProgram& s, const char* start, const char* end, const char* flag)
{
    s.session().options().set("Start_date", start);
    s.session().options().set("End_date", end);
    s.session().options().set("use_system_date_flag", flag);
}

} // namespace

class DateDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheSixListsTheTickAndTheButtons();
    void theListsShowTheStoredPeriod();
    void anEmptyStartBecomesNineteenSixtyAndAnEmptyEndToday();
    void yearsOutsideTheListSelectNothing();
    void aClickStoresTheEntryAndOkStoresTheEightDigits();
    void aStartEqualToTheEndIsAccepted();
    void aStartAfterTheEndIsRefusedAndTheDialogStaysOpen();
    void withTheSystemDateFlagTheStoredEndIsReplacedByToday();
    void theTickTakesTodayAndDisablesTheButton();
    void theButtonTakesTodayAsTheEnd();
    void thePeriodButtonOfTheMainWindowOpensItAndRetitlesTheWindow();
};

void DateDialogTest::showsTheSixListsTheTickAndTheButtons()
{
    test::StartedProgram s;
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    QCOMPARE(d.objectName(), QStringLiteral("frmDate"));
    QCOMPARE(d.windowTitle(), QStringLiteral("期 間"));
    for (int n : {1, 4}) {
        QCOMPARE(list(d, n)->count(), 91);
        QCOMPARE(list(d, n)->item(0)->text(), QStringLiteral("2020"));
        QCOMPARE(list(d, n)->item(90)->text(), QStringLiteral("1930"));
    }
    for (int n : {2, 5}) {
        QCOMPARE(list(d, n)->count(), 12);
        QCOMPARE(list(d, n)->item(0)->text(), QStringLiteral("12"));
    }
    for (int n : {3, 6}) {
        QCOMPARE(list(d, n)->count(), 31);
        QCOMPARE(list(d, n)->item(30)->text(), QStringLiteral("1"));
    }
    QCOMPARE(d.findChild<QCheckBox*>(QStringLiteral("Check1"))->text(),
             QStringLiteral("終了日はｼｽﾃﾑ日付"));
    QCOMPARE(button(d, "cmdGet_date")->text(), QStringLiteral("システム日付取得"));
    QCOMPARE(button(d, "cmdOK")->text(), QStringLiteral("Ｏ Ｋ"));
    QCOMPARE(d.findChild<QLabel*>(QStringLiteral("Label6"))->text(),
             QStringLiteral("変更したら必ず確定するために青地に白抜きにすること"));
    QCOMPARE(d.findChild<QLabel*>(QStringLiteral("Label7"))->text(), QString());
}

void DateDialogTest::theListsShowTheStoredPeriod()
{
    test::StartedProgram s;
    setPeriod(s, "20150302", "2018/11/25", "0");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    QCOMPARE(list(d, 1)->currentItem()->text(), QStringLiteral("2015"));
    QCOMPARE(list(d, 2)->currentItem()->text(), QStringLiteral("3"));
    QCOMPARE(list(d, 3)->currentItem()->text(), QStringLiteral("2"));
    QCOMPARE(list(d, 4)->currentItem()->text(), QStringLiteral("2018"));
    QCOMPARE(list(d, 5)->currentItem()->text(), QStringLiteral("11"));
    QCOMPARE(list(d, 6)->currentItem()->text(), QStringLiteral("25"));
    QVERIFY(!d.findChild<QCheckBox*>(QStringLiteral("Check1"))->isChecked());
    QVERIFY(button(d, "cmdGet_date")->isEnabled());
    // The end loses its slashes at once.
    QCOMPARE(s.session().options().value("End_date"), std::string("20181125"));
}

void DateDialogTest::anEmptyStartBecomesNineteenSixtyAndAnEmptyEndToday()
{
    test::StartedProgram s;
    setPeriod(s, "", "", "0");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    QCOMPARE(s.session().options().value("Start_date"), std::string("19600101"));
    QCOMPARE(list(d, 1)->currentItem()->text(), QStringLiteral("1960"));
    QCOMPARE(s.session().options().value("End_date"), std::string("20190704"));
    QCOMPARE(list(d, 4)->currentItem()->text(), QStringLiteral("2019"));
    QCOMPARE(list(d, 6)->currentItem()->text(), QStringLiteral("4"));
}

void DateDialogTest::yearsOutsideTheListSelectNothing()
{
    test::StartedProgram s;
    setPeriod(s, "19250101", "20250505", "0");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    for (int n : {1, 4}) {
        QCOMPARE(list(d, n)->currentRow(), -1);
        QVERIFY(list(d, n)->selectedItems().isEmpty());
    }
    QCOMPARE(list(d, 5)->currentItem()->text(), QStringLiteral("5"));
}

void DateDialogTest::aClickStoresTheEntryAndOkStoresTheEightDigits()
{
    test::StartedProgram s;
    setPeriod(s, "20150302", "20181125", "0");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    d.show();
    test::clickEntry(list(d, 1), 10); // 2010
    test::clickEntry(list(d, 2), 11); // 1
    test::clickEntry(list(d, 6), 22); // 9
    // A selection moved without a click does not count.
    list(d, 3)->setCurrentRow(0);
    QTest::mouseClick(button(d, "cmdOK"), Qt::LeftButton);
    QCOMPARE(s.session().options().value("Start_date"), std::string("20100102"));
    QCOMPARE(s.session().options().value("End_date"), std::string("20181109"));
    QVERIFY(!d.isVisible());
    QCOMPARE(d.result(), int(QDialog::Accepted));
    QVERIFY(d.model().mainTitle().find("2010 年 01 月 02 日") != std::string::npos);
}

void DateDialogTest::aStartEqualToTheEndIsAccepted()
{
    test::StartedProgram s;
    setPeriod(s, "20180101", "20180101", "0");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    d.show();
    QTest::mouseClick(button(d, "cmdOK"), Qt::LeftButton);
    QCOMPARE(d.result(), int(QDialog::Accepted));
    QVERIFY(!d.isVisible());
    QCOMPARE(d.findChild<QLabel*>(QStringLiteral("Label7"))->text(), QString());
}

void DateDialogTest::aStartAfterTheEndIsRefusedAndTheDialogStaysOpen()
{
    test::StartedProgram s;
    setPeriod(s, "20180102", "20180101", "0");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    d.show();
    QTest::mouseClick(button(d, "cmdOK"), Qt::LeftButton);
    QVERIFY(d.isVisible());
    QCOMPARE(d.findChild<QLabel*>(QStringLiteral("Label7"))->text(),
             QStringLiteral("日付けの設定エラーです。 抽出開始 ＞ 抽出終了"));
    // The place is kept at the press, though the dialog stays.
    QVERIFY(!settings::ProfileFile(s.home() / "Vornhale_posi.ini")
                 .read("Position_frmDate", "Width")
                 .empty());
    // Put right, the same press closes it.
    test::clickEntry(list(d, 6), 31 - 2); // the end day 2
    QTest::mouseClick(button(d, "cmdOK"), Qt::LeftButton);
    QVERIFY(!d.isVisible());
}

void DateDialogTest::withTheSystemDateFlagTheStoredEndIsReplacedByToday()
{
    test::StartedProgram s;
    setPeriod(s, "20100101", "20120101", "1");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    QVERIFY(d.findChild<QCheckBox*>(QStringLiteral("Check1"))->isChecked());
    QVERIFY(!button(d, "cmdGet_date")->isEnabled());
    QCOMPARE(list(d, 4)->currentItem()->text(), QStringLiteral("2019"));
    QCOMPARE(list(d, 5)->currentItem()->text(), QStringLiteral("7"));
    QCOMPARE(list(d, 6)->currentItem()->text(), QStringLiteral("4"));
    d.show();
    QTest::mouseClick(button(d, "cmdOK"), Qt::LeftButton);
    QCOMPARE(s.session().options().value("End_date"), std::string("20190704"));

    // A second opening replaces a stored end again.
    s.session().options().set("End_date", "20110101");
    ui::DateDialog again(s.session(), nullptr, fixedToday);
    QCOMPARE(again.model().part(4), std::string("2019"));
}

void DateDialogTest::theTickTakesTodayAndDisablesTheButton()
{
    test::StartedProgram s;
    setPeriod(s, "20100101", "20120101", "0");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    d.show();
    auto* tick = d.findChild<QCheckBox*>(QStringLiteral("Check1"));
    QTest::mouseClick(tick, Qt::LeftButton, {}, QPoint(8, tick->height() / 2));
    QVERIFY(tick->isChecked());
    QVERIFY(!button(d, "cmdGet_date")->isEnabled());
    QCOMPARE(s.session().options().value("use_system_date_flag"), std::string("1"));
    QCOMPARE(list(d, 4)->currentItem()->text(), QStringLiteral("2019"));
    QTest::mouseClick(tick, Qt::LeftButton, {}, QPoint(8, tick->height() / 2));
    QVERIFY(!tick->isChecked());
    QVERIFY(button(d, "cmdGet_date")->isEnabled());
    QCOMPARE(s.session().options().value("use_system_date_flag"), std::string("0"));
}

void DateDialogTest::theButtonTakesTodayAsTheEnd()
{
    test::StartedProgram s;
    setPeriod(s, "20100101", "20120101", "0");
    ui::DateDialog d(s.session(), nullptr, fixedToday);
    d.show();
    QTest::mouseClick(button(d, "cmdGet_date"), Qt::LeftButton);
    QCOMPARE(list(d, 4)->currentItem()->text(), QStringLiteral("2019"));
    QCOMPARE(list(d, 6)->currentItem()->text(), QStringLiteral("4"));
    // The start stays.
    QCOMPARE(list(d, 1)->currentItem()->text(), QStringLiteral("2010"));
    QCOMPARE(s.session().options().value("use_system_date_flag"), std::string("0"));
}

void DateDialogTest::thePeriodButtonOfTheMainWindowOpensItAndRetitlesTheWindow()
{
    test::StartedProgram s;
    setPeriod(s, "20100101", "20120101", "0");
    QString opened;
    test::whenModal([&](QWidget* modal) {
        opened = modal->objectName();
        test::clickEntry(modal->findChild<QListWidget*>(QStringLiteral("List1")), 5); // 2015
        test::clickEntry(modal->findChild<QListWidget*>(QStringLiteral("List4")), 3); // 2017
        QTest::mouseClick(modal->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    });
    auto* period = s.window().findChild<QPushButton*>(QStringLiteral("cmdDate"));
    test::showTabOf(period);
    period->click();
    QCOMPARE(opened, QStringLiteral("frmDate"));
    QCOMPARE(s.session().options().value("Start_date"), std::string("20150101"));
    QVERIFY(s.window().windowTitle().contains(QStringLiteral("2015 年 01 月 01 日")));
    QVERIFY(s.window().windowTitle().contains(QStringLiteral("2017 年 01 月 01 日")));
    QVERIFY(s.window()
                .findChild<QLabel*>(QStringLiteral("periodText"))
                ->text()
                .contains(QStringLiteral("2015")));
}

QTEST_MAIN(DateDialogTest)
#include "DateDialog_test.moc"
