// The widths dialog frmKetasu: its lists, labels and buttons, the widths it gives the main
// window's layout, the layout history it writes, and how the main window opens it.

#include "DialogTestSupport.h"
#include "settings/LayoutHistory.h"
#include "settings/LayoutModel.h"
#include "settings/ProfileFile.h"
#include "settings/WidthsModel.h"
#include "ui/KetasuDialog.h"
#include "ui/LayoutRow.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

QListWidget* list(QWidget& d, int n)
{
    return d.findChild<QListWidget*>(QStringLiteral("List%1").arg(n));
}

QString lenLabel(QWidget& d, int item)
{
    return d.findChild<QLabel*>(QStringLiteral("lblLen_%1").arg(item))->text();
}

/// The two rows of cells "MNG,$DX,Rmks1,Zone,IOTA" and "Rcvd,memo=" with their widths as the
/// settings keep them, written where the dialog reads them.
void setWidths(test::StartedProgram& s, const std::string& row1 = "0,0,0,0,0,0,0,0,0,0,0,0,",
               const std::string& row2 = "0,0,0,0,0,0,0,0,0,0,0,0")
{
    s.session().options().set("Rmks1_cfg", "MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,");
    s.session().options().set("Rmks2_cfg", "Rcvd,memo=,,,,,,,,,,,");
    s.session().options().set("Rmks1_cfg_len", row1);
    s.session().options().set("Rmks2_cfg_len", row2);
    s.session().files().ini_write_old();
}

QPushButton* button(QWidget& d, const char* name)
{
    return d.findChild<QPushButton*>(QString::fromUtf8(name));
}

} // namespace

class KetasuDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsEveryListLabelAndButtonWithItsCaption();
    void eachListSelectsTheWidthOfItsItem();
    void aSlotAboveSixtyLeavesItsListWithoutASelection();
    void aClickOnAListStoresTheWidthInTheSlot();
    void allZeroSetsEveryWidthToZeroAndSendsThemToTheMainWindow();
    void theTransferButtonStoresTheCellWidthsAndCloses();
    void theTransferButtonTakesTheNameIntoTheNameBox();
    void savingTwiceWithTheSameNameMakesTwoHistoryRows();
    void aBlankNameIsSavedEmpty();
    void theWidthsButtonOfTheMainWindowOpensTheDialog();
};

void KetasuDialogTest::showsEveryListLabelAndButtonWithItsCaption()
{
    test::StartedProgram s;
    ui::KetasuDialog d(s.session());
    QCOMPARE(d.objectName(), QStringLiteral("frmKetasu"));
    const QStringList captions = {"MNG",    "$DX",   "Calls", "ｺﾝﾃｽﾄ", "memo", "mome=", "o p",
                                  "o p % ", "I OTA", "Zone",  "州名",  "Rcvd", "Rmks1", "Rmks2"};
    for (int n = 1; n <= 14; ++n) {
        QListWidget* l = list(d, n);
        QVERIFY(l != nullptr);
        QCOMPARE(l->count(), 61);
        QCOMPARE(l->item(0)->text(), QStringLiteral("60"));
        QCOMPARE(l->item(60)->text(), QStringLiteral("0"));
        QCOMPARE(d.findChild<QLabel*>(QStringLiteral("listCaption%1").arg(n))->text(),
                 captions[n - 1]);
        QVERIFY(d.findChild<QLabel*>(QStringLiteral("lblLen_%1").arg(n - 1)) != nullptr);
    }
    QCOMPARE(d.findChild<QLabel*>(QStringLiteral("Label14"))->text(),
             QStringLiteral("項目の桁数の変更が必要ならｾｯﾄして下さい。"));
    QCOMPARE(d.findChild<QLabel*>(QStringLiteral("Label15"))->text(),
             QStringLiteral("０ なら桁数指定は無視されます。"));
    QCOMPARE(d.findChild<QLabel*>(QStringLiteral("contestNameCaption"))->text(),
             QStringLiteral("＊．ＺＬＯ　のコンテスト名"));
    QVERIFY(d.findChild<QLabel*>(QStringLiteral("lblCont_name_h")) != nullptr);
    QVERIFY(d.findChild<QLineEdit*>(QStringLiteral("txtName")) != nullptr);
    QCOMPARE(button(d, "cmdAll_Zero")->text(), QStringLiteral(" A L L  ゼ ロ"));
    QCOMPARE(button(d, "cmdAll_Zero")->toolTip(),
             QStringLiteral("全ての桁数をゼロにセットします。"));
    QCOMPARE(button(d, "cmdSet_name")->text(), QStringLiteral("転 記"));
    QVERIFY(button(d, "cmdSet_name")
                ->toolTip()
                .startsWith(QStringLiteral(
                    " ZLO ファイルの場合コンテスト名が 上部の 「 項目 配置 保存名 ")));
    QCOMPARE(button(d, "cmdSet_Len_Main")->text(), QStringLiteral("転 送"));
    QCOMPARE(button(d, "cmdSet_Len_Main")->toolTip(),
             QStringLiteral("現在の項目の桁数をメイン画面にセットします。"));
    QCOMPARE(button(d, "cmdSave2")->text(), QStringLiteral("履 歴保 存"));
    QCOMPARE(button(d, "cmdSave2")->toolTip(),
             QStringLiteral("現在の桁数とメイン画面の項目並び順を保存します。"));
    QCOMPARE(button(d, "cmdOK")->text(), QStringLiteral("戻 る"));
    QCOMPARE(button(d, "cmdOK")->toolTip(), QStringLiteral("メイン画面に戻ります。"));
}

void KetasuDialogTest::eachListSelectsTheWidthOfItsItem()
{
    test::StartedProgram s;
    setWidths(s, "6,0,0,0,0,0,0,0,0,0,0,0,", "12,0,0,0,0,0,0,0,0,0,0,0");
    test::BoxAnswerer boxes;
    ui::KetasuDialog d(s.session());
    QVERIFY(boxes.texts.isEmpty());
    QCOMPARE(list(d, 1)->currentRow(), 54);
    QCOMPARE(lenLabel(d, 0), QStringLiteral("6"));
    QCOMPARE(list(d, 12)->currentRow(), 48);
    QCOMPARE(lenLabel(d, 11), QStringLiteral("12"));
}

void KetasuDialogTest::aSlotAboveSixtyLeavesItsListWithoutASelection()
{
    test::StartedProgram s;
    setWidths(s, "7,0,0,0,0,0,0,0,0,0,0,0,", "0,0,0,0,0,0,0,0,0,0,0,0");
    // "Calls" stands in no cell, so its slot keeps what it holds.
    s.session().layoutModel()->setSlot(2, "61");
    test::BoxAnswerer boxes;
    ui::KetasuDialog d(s.session());
    // The refusal is told once, and the dialog goes on.
    QCOMPARE(boxes.texts, QStringList{QStringLiteral("エラー発生 ：　380")});
    QCOMPARE(list(d, 3)->currentRow(), -1);
    QVERIFY(list(d, 3)->selectedItems().isEmpty());
    QCOMPARE(lenLabel(d, 2), QString());
    // The other lists go on.
    QCOMPARE(list(d, 1)->currentRow(), 53);
    // The slot itself is left as it was.
    QCOMPARE(s.session().layoutModel()->slot(2), std::string("61"));
}

void KetasuDialogTest::aClickOnAListStoresTheWidthInTheSlot()
{
    test::StartedProgram s;
    ui::KetasuDialog d(s.session());
    d.show();
    test::clickEntry(list(d, 5), 50);
    QCOMPARE(s.session().layoutModel()->slot(4), std::string("10"));
    QCOMPARE(lenLabel(d, 4), QStringLiteral("10"));
    QCOMPARE(list(d, 5)->currentRow(), 50);
}

void KetasuDialogTest::allZeroSetsEveryWidthToZeroAndSendsThemToTheMainWindow()
{
    test::StartedProgram s;
    settings::LayoutModel& layout = *s.session().layoutModel();
    setWidths(s, "6,0,0,0,0,0,0,0,0,0,0,0,", "12,0,0,0,0,0,0,0,0,0,0,0");
    ui::KetasuDialog d(s.session());
    d.show();
    QTest::mouseClick(button(d, "cmdAll_Zero"), Qt::LeftButton);
    for (std::size_t item = 0; item < settings::LayoutModel::kItems; ++item) {
        QCOMPARE(layout.slot(item), std::string("0"));
        QCOMPARE(lenLabel(d, static_cast<int>(item)), QStringLiteral("0"));
    }
    QCOMPARE(s.session().options().value("Rmks1_cfg_len"), std::string("0,0,0,0,0,0,0,0,0,0,0,0,"));
    QVERIFY(!d.isVisible());
    QCOMPARE(d.result(), int(QDialog::Accepted));
}

void KetasuDialogTest::theTransferButtonStoresTheCellWidthsAndCloses()
{
    test::StartedProgram s;
    settings::LayoutModel& layout = *s.session().layoutModel();
    setWidths(s);
    ui::KetasuDialog d(s.session());
    d.show();
    // The first cell of the first row holds "MNG".
    QCOMPARE(layout.cell(1, 0), std::string("MNG"));
    test::clickEntry(list(d, 1), 52);
    QTest::mouseClick(button(d, "cmdSet_Len_Main"), Qt::LeftButton);
    QVERIFY(s.session().options().value("Rmks1_cfg_len").starts_with("8,"));
    QVERIFY(!d.isVisible());
    const std::string written = test::readBytes(s.home() / "Vornhale.ini");
    QVERIFY(written.find("Rmks1_cfg_len=8,") != std::string::npos);
}

void KetasuDialogTest::theTransferButtonTakesTheNameIntoTheNameBox()
{
    test::StartedProgram s;
    ui::KetasuDialog d(s.session());
    d.show();
    auto* name = d.findChild<QLineEdit*>(QStringLiteral("txtName"));
    QTest::keyClicks(name, QStringLiteral("ABC"));
    QCOMPARE(d.model().txtName(), std::string("ABC"));
    QTest::mouseClick(button(d, "cmdSet_name"), Qt::LeftButton);
    // The input opened is no .ZLO log: its contest name is empty, and so is the name now.
    QCOMPARE(name->text(), d.findChild<QLabel*>(QStringLiteral("lblCont_name_h"))->text());
    QCOMPARE(name->text(), QString());
}

void KetasuDialogTest::savingTwiceWithTheSameNameMakesTwoHistoryRows()
{
    test::StartedProgram s;
    const fs::path history = s.home() / std::string(settings::LayoutHistory::kFileName);
    const std::size_t before = fs::exists(history) ? test::readSjisLines(history).size() : 0;
    ui::KetasuDialog d(s.session());
    d.show();
    QTest::keyClicks(d.findChild<QLineEdit*>(QStringLiteral("txtName")), QStringLiteral("TEST"));
    QTest::mouseClick(button(d, "cmdSave2"), Qt::LeftButton);
    QTest::mouseClick(button(d, "cmdSave2"), Qt::LeftButton);
    QVERIFY(d.isVisible());
    const auto lines = test::readSjisLines(history);
    const std::size_t added = lines.size() - (before == 0 ? 1 : before);
    QCOMPARE(added, std::size_t(2));
    QVERIFY(lines[lines.size() - 1].starts_with("TEST,"));
    QCOMPARE(lines[lines.size() - 1], lines[lines.size() - 2]);
    // The last widths entry has no comma after it.
    QVERIFY(lines.back().back() != ',');
}

void KetasuDialogTest::aBlankNameIsSavedEmpty()
{
    test::StartedProgram s;
    const fs::path history = s.home() / std::string(settings::LayoutHistory::kFileName);
    setWidths(s);
    ui::KetasuDialog d(s.session());
    d.show();
    QTest::keyClicks(d.findChild<QLineEdit*>(QStringLiteral("txtName")), QStringLiteral("  "));
    QTest::mouseClick(button(d, "cmdSave2"), Qt::LeftButton);
    QVERIFY(test::readSjisLines(history).back().starts_with(",MNG,"));
}

void KetasuDialogTest::theWidthsButtonOfTheMainWindowOpensTheDialog()
{
    test::StartedProgram s;
    settings::LayoutModel& layout = *s.session().layoutModel();
    setWidths(s);
    QString opened;
    test::whenModal([&](QWidget* modal) {
        opened = modal->objectName();
        test::clickEntry(modal->findChild<QListWidget*>(QStringLiteral("List1")), 55);
        QTest::mouseClick(modal->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    });
    s.window().layoutRow()->widthsButton()->click();
    QCOMPARE(opened, QStringLiteral("frmKetasu"));
    QCOMPARE(layout.slot(0), std::string("5"));
    // Its place is kept for the next opening.
    QVERIFY(!settings::ProfileFile(s.home() / "Vornhale_posi.ini")
                 .read("Position_frmKetasu", "Left")
                 .empty());
}

QTEST_MAIN(KetasuDialogTest)
#include "KetasuDialog_test.moc"
