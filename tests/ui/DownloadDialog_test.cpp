// The download window frmDownLoad: its rows, the load's look-ups of the two pages, the
// downloads on their own thread, the cty unpack, the menu entry and the start's offer,
// against a loopback stand-in of the download homes.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "settings/ProfileFile.h"
#include "support/LoopbackServer.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"
#include "ui/DesktopProgram.h"
#include "ui/DownloadDialog.h"
#include "ui/MainWindow.h"
#include "ui/QtDialogs.h"
#include "ui/WidgetLook.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>

using namespace vornhale;
using ui::qs;
namespace fs = std::filesystem;

namespace {

const char* const kCtyPage = "<html><body><dl>\n"
                             "\t<dt><a href=\"download/cty-3412.zip\">cty.zip</a></dt>\n"
                             "\t<dd>Big CTY - 18 November 2026</dd>\n"
                             "</dl></body></html>\n";

/// The homes of the six rows on one loopback server. `/slow` in front of a path answers after
/// a second and a half; `/nomarks/cty/` is a country-file page without the link's marks.
class DownloadServer
{
public:
    explicit DownloadServer(std::string ctyZip) : m_ctyZip(std::move(ctyZip))
    {
        auto serve = [this](const std::string& path, std::string body) {
            for (const std::string prefix : {"", "/slow"}) {
                m_server.server().Get(prefix + path, [this, body, prefix](const httplib::Request&,
                                                                          httplib::Response& res) {
                    ++hits;
                    if (!prefix.empty()) {
                        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
                    }
                    res.set_content(body, "application/octet-stream");
                });
            }
        };
        serve("/cty/", kCtyPage);
        serve("/archiver/lib/unlha32.html",
              text::encodeSjis("<html>\r\n<li>UNLHA32.DLL Ver 3.20　・・・ダウンロード\t"
                               "UNL320.EXE (560KB)</li>\r\n</html>\r\n"));
        serve("/lib/UNL320.EXE", "MZ installer");
        serve("/archiver/lib/unzp542.exe", "MZ unzip installer");
        serve("/prog/Th505api.lzh", "an lzh");
        serve("/zlog/dx/ardx.dat", "ARDX list\r\n");
        serve("/zlog/dx/arrl10.dat", "ARRL10 list\r\n");
        serve("/cty/cty-3412.zip", m_ctyZip);
        serve("/nomarks/cty/",
              "<html><a href=\"download/cty-3412.zip\" title=\"x\">the list</a></html>\n");
        m_server.start();
    }
    std::string base() const { return m_server.base(); }
    std::atomic<int> hits{0};

private:
    std::string m_ctyZip;
    test::LoopbackServer m_server;
};

/// The core's messages as the operator would read them; the core may speak from its thread.
class RecordingDialogs : public base::Dialogs
{
public:
    void message(std::string_view title, std::string_view text, Icon) override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        titles << qs(title);
        texts << qs(text);
    }
    QStringList shownTitles()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return titles;
    }

private:
    std::mutex m_mutex;
    QStringList titles, texts;
};

/// A zip holding `cty.dat`, made with the `zip` tool; empty when the tool is missing.
std::string makeCtyZip(const fs::path& folder)
{
    fs::create_directories(folder / "zip");
    test::writeBytes(folder / "zip" / "cty.dat", "Testland: 01: 01: EU: 50.00: -10.00: 0.0: TL:\r\n"
                                                 "    TL;\r\n");
    std::string output;
    if (test::runCommand("cd '" + (folder / "zip").string() + "' && zip -q ../cty.zip cty.dat",
                         &output) != 0) {
        return {};
    }
    return test::readBytes(folder / "cty.zip");
}

/// A program folder whose download homes are `homes` (or each home its own value).
void writeHomes(const fs::path& home, const std::string& homes, const std::string& ctyHome = {})
{
    settings::ProfileFile web(home / "Vornhale_web.ini");
    for (const char* key : {"hamlog_home", "archiver_home", "archiver_home2", "zlog_data_home"}) {
        web.write("web", key, homes);
    }
    web.write("web", "cty_home", ctyHome.empty() ? homes : ctyHome);
    web.write("web", "connect_timeout_s", "2");
    web.write("web", "total_timeout_s", "5");
    web.save();
}

struct Home
{
    test::TempDir dir;
    RecordingDialogs dialogs;
    std::unique_ptr<session::Session> session;
    fs::path home() const { return dir / "home"; }

    Home(const std::string& homes, bool online, const std::string& ctyHome = {})
    {
        test::prepareHome(home());
        writeHomes(home(), homes, ctyHome);
        session = std::make_unique<session::Session>(home(), dialogs);
        session->options().set("inet_flag", online ? "OK" : "NO");
    }
};

template <class W> W* child(QWidget& w, const char* name)
{
    return w.findChild<W*>(QString::fromUtf8(name));
}

QString labelOf(QWidget& w, const char* name)
{
    return child<QLabel>(w, name)->text();
}

bool loaded(ui::DownloadDialog& d)
{
    return test::waitUntil([&] { return !d.busy(); }, 15000);
}

/// Calls `answer` once the modal window named `name` stands.
void whenWindow(const QString& name, const std::function<void(QWidget*)>& answer)
{
    auto* timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, name, answer] {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal != nullptr && modal->isVisible() && modal->objectName() == name) {
            timer->stop();
            timer->deleteLater();
            answer(modal);
        }
    });
    timer->start();
}

constexpr const char* kRowLabels[] = {"Label1",  "Label4",  "Label8",
                                      "Label11", "Label13", "Label15"};

} // namespace

class DownloadDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyRowCarriesItsCaptionAndButton();
    void theLoadShowsTheAddressesAndTheNamesFoundOnThePages();
    void aCtyPageWithoutTheMarksLeavesTheAddressEndingInCty();
    void withoutInternetUseNothingIsAskedAndNoRowIsLabelled();
    void aRowWhoseFileIsThereIsMarked();
    void aFailedRowDoesNotStopTheLaterRows();
    void downloadsRunOffTheWindowsThreadAndTheWindowStaysOpen();
    void theCtyUnpackReplacesCtyDat();
    void theWindowKeepsItsPlace();
    void theMenuEntryOpensTheWindow();
    void theStartOffersTheDownloadOfMissingDataFiles();
};

void DownloadDialogTest::initTestCase()
{
    ui::DesktopProgram::useProgramFont();
}

void DownloadDialogTest::everyRowCarriesItsCaptionAndButton()
{
    DownloadServer server("");
    Home h(server.base(), true);
    ui::DownloadDialog d(*h.session, h.dialogs);
    QVERIFY(loaded(d));
    QCOMPARE(d.objectName(), QStringLiteral("frmDownLoad"));
    const std::pair<const char*, const char*> ticks[] = {
        {"Check1", "THDLL2VB ．DLL　のダウンロード"}, {"Check2", "UNZIP32 ．DLL　のダウンロード"},
        {"Check3", "UNLHA32 ．DLL　のダウンロード"},  {"Check5", "CTY ．dat　のダウンロード"},
        {"Check6", "ARDX ．dat　のダウンロード"},     {"Check7", "ARRL10 ．dat　のダウンロード"}};
    for (const auto& [name, caption] : ticks) {
        QCOMPARE(child<QCheckBox>(d, name)->text(), QString::fromUtf8(caption));
    }
    const std::pair<const char*, const char*> buttons[] = {
        {"Command1", "TH505API ．LZH の解凍・DLL のコピー"},
        {"Command2", "UNZIP32．DLL の解凍・コピー"},
        {"Command3", "UNLHA32 ．DLL　の解凍・コピー"},
        {"Command4", "CTY ．dat　の解凍・コピー"},
        {"cmdStart", "開　始"},
        {"cmdOK", "終　了"}};
    for (const auto& [name, caption] : buttons) {
        QCOMPARE(child<QPushButton>(d, name)->text(), QString::fromUtf8(caption));
    }
    for (const char* name : kRowLabels) {
        QVERIFY2(child<QLabel>(d, name) != nullptr, name);
    }
    QVERIFY(child<QLabel>(d, "Label5") != nullptr);
}

void DownloadDialogTest::theLoadShowsTheAddressesAndTheNamesFoundOnThePages()
{
    DownloadServer server("");
    Home h(server.base(), true);
    ui::DownloadDialog d(*h.session, h.dialogs);
    QVERIFY(loaded(d));
    const QString base = qs(server.base());
    QCOMPARE(labelOf(d, "Label3"), base + QStringLiteral("/prog/Th505api.lzh"));
    QCOMPARE(labelOf(d, "Label6"),
             QStringLiteral("UNL320.EXE  ") + base + QStringLiteral("/lib/UNL320.EXE"));
    QCOMPARE(labelOf(d, "Label2"),
             QStringLiteral("cty-3412.zip  ") + base + QStringLiteral("/cty/cty-3412.zip"));
    // Opened from the menu, no row is ticked in advance.
    for (const char* name : {"Check1", "Check2", "Check3", "Check5", "Check6", "Check7"}) {
        QVERIFY2(!child<QCheckBox>(d, name)->isChecked(), name);
    }
    // The scratch copies of the pages are gone.
    for (const char* name : {"cty_dat.html", "cty_dat.txt", "unlha32.html", "unlha32.txt"}) {
        QVERIFY2(!fs::exists(h.home() / name), name);
    }
}

void DownloadDialogTest::aCtyPageWithoutTheMarksLeavesTheAddressEndingInCty()
{
    DownloadServer server("");
    Home h(server.base(), true, server.base() + "/nomarks");
    ui::DownloadDialog d(*h.session, h.dialogs);
    QVERIFY(loaded(d));
    QCOMPARE(labelOf(d, "Label2"),
             QStringLiteral("  ") + qs(server.base()) + QStringLiteral("/nomarks/cty/"));
}

void DownloadDialogTest::withoutInternetUseNothingIsAskedAndNoRowIsLabelled()
{
    DownloadServer server("");
    Home h(server.base(), false);
    ui::DownloadDialog d(*h.session, h.dialogs);
    QVERIFY(loaded(d));
    QCOMPARE(server.hits.load(), 0);
    for (const char* name : {"Label1", "Label4", "Label8", "Label11", "Label13", "Label15",
                             "Label2", "Label3", "Label6", "Label5"}) {
        QVERIFY2(labelOf(d, name).isEmpty(), name);
    }
}

void DownloadDialogTest::aRowWhoseFileIsThereIsMarked()
{
    DownloadServer server("");
    Home h(server.base(), true);
    test::writeBytes(h.home() / "TH505API.LZH", "an old lzh");
    ui::DownloadDialog d(*h.session, h.dialogs);
    QVERIFY(loaded(d));
    QCOMPARE(child<QCheckBox>(d, "Check1")->property("exists").toBool(), true);
    QVERIFY(child<QCheckBox>(d, "Check1")->font().bold());
    QCOMPARE(child<QCheckBox>(d, "Check2")->property("exists").toBool(), false);
    QVERIFY(!child<QCheckBox>(d, "Check2")->font().bold());
}

void DownloadDialogTest::aFailedRowDoesNotStopTheLaterRows()
{
    DownloadServer server("");
    Home h(server.base(), true);
    // The HAMLOG home is a loopback address where nothing listens any more.
    settings::ProfileFile web(h.home() / "Vornhale_web.ini");
    web.write("web", "hamlog_home", test::closedLoopbackBase());
    web.save();
    ui::DownloadDialog d(*h.session, h.dialogs);
    QVERIFY(loaded(d));
    child<QCheckBox>(d, "Check1")->setChecked(true);
    child<QCheckBox>(d, "Check6")->setChecked(true);
    child<QCheckBox>(d, "Check7")->setChecked(true);
    QTest::mouseClick(child<QPushButton>(d, "cmdStart"), Qt::LeftButton);
    QVERIFY(d.busy());
    QVERIFY(loaded(d));
    QVERIFY(
        test::waitUntil([&] { return labelOf(d, "Label15") == QStringLiteral("完 了"); }, 2000));
    QCOMPARE(labelOf(d, "Label1"), QStringLiteral("失 敗"));
    QCOMPARE(labelOf(d, "Label13"), QStringLiteral("完 了"));
    QCOMPARE(test::readBytes(h.home() / "ARDX.DAT"), std::string("ARDX list\r\n"));
    QCOMPARE(test::readBytes(h.home() / "ARRL10.DAT"), std::string("ARRL10 list\r\n"));
    QVERIFY(h.dialogs.shownTitles().contains(QStringLiteral("　　エラーが発生しました！")));
    // Every tick is cleared afterwards.
    for (const char* name : {"Check1", "Check6", "Check7"}) {
        QVERIFY2(!child<QCheckBox>(d, name)->isChecked(), name);
    }
}

void DownloadDialogTest::downloadsRunOffTheWindowsThreadAndTheWindowStaysOpen()
{
    DownloadServer server("");
    Home h(server.base(), true);
    settings::ProfileFile web(h.home() / "Vornhale_web.ini");
    web.write("web", "zlog_data_home", server.base() + "/slow");
    web.save();
    ui::DownloadDialog d(*h.session, h.dialogs);
    d.show();
    QVERIFY(loaded(d));
    child<QCheckBox>(d, "Check6")->setChecked(true);
    QTest::mouseClick(child<QPushButton>(d, "cmdStart"), Qt::LeftButton);
    // While the row downloads the window's thread goes on: the overall line says so, the
    // buttons wait, and neither the close nor 終了 ends the window.
    QVERIFY(test::waitUntil([&] { return labelOf(d, "Label5") == QStringLiteral("ﾀﾞｳﾝﾛｰﾄﾞ中..."); },
                            1000));
    QVERIFY(d.busy());
    QVERIFY(!child<QPushButton>(d, "cmdStart")->isEnabled());
    d.close();
    d.reject();
    QVERIFY(d.isVisible());
    QVERIFY(loaded(d));
    QVERIFY(
        test::waitUntil([&] { return labelOf(d, "Label13") == QStringLiteral("完 了"); }, 2000));
    QCOMPARE(labelOf(d, "Label5"), QStringLiteral("完 了"));
    QVERIFY(child<QPushButton>(d, "cmdStart")->isEnabled());
    QTest::mouseClick(child<QPushButton>(d, "cmdOK"), Qt::LeftButton);
    QVERIFY(!d.isVisible());
}

void DownloadDialogTest::theCtyUnpackReplacesCtyDat()
{
    test::TempDir zipDir;
    const std::string zip = makeCtyZip(zipDir.path());
    if (zip.empty()) {
        QSKIP("the zip tool is not installed (scripts/install-deps.sh installs it)");
    }
    DownloadServer server(zip);
    Home h(server.base(), true);
    ui::DownloadDialog d(*h.session, h.dialogs);
    QVERIFY(loaded(d));
    child<QCheckBox>(d, "Check5")->setChecked(true);
    d.cmdStart_Click();
    QVERIFY(loaded(d));
    QVERIFY(
        test::waitUntil([&] { return labelOf(d, "Label11") == QStringLiteral("完 了"); }, 2000));
    // The archive still needs its unpacking.
    QCOMPARE(labelOf(d, "Label5"), QStringLiteral("解凍後コピー必要の時あり"));
    QVERIFY(fs::exists(h.home() / "cty-3412.zip"));
    QTest::mouseClick(child<QPushButton>(d, "Command4"), Qt::LeftButton);
    QVERIFY(h.dialogs.shownTitles().contains(QStringLiteral("Succeeded!!")));
    QCOMPARE(test::readBytes(h.home() / "cty.dat"),
             test::readBytes(zipDir.path() / "zip" / "cty.dat"));
    QVERIFY(fs::exists(h.home() / "cty-3412" / "cty.dat"));
}

void DownloadDialogTest::theWindowKeepsItsPlace()
{
    DownloadServer server("");
    Home h(server.base(), false);
    {
        ui::DownloadDialog d(*h.session, h.dialogs);
        QVERIFY(loaded(d));
        d.show();
        d.move(140, 130);
        QTest::mouseClick(child<QPushButton>(d, "cmdOK"), Qt::LeftButton);
    }
    const std::string stored = test::readBytes(h.home() / "Vornhale_posi.ini");
    QVERIFY(stored.find("frmDownLoad") != std::string::npos);
}

void DownloadDialogTest::theMenuEntryOpensTheWindow()
{
    DownloadServer server("");
    test::TempDir dir;
    test::prepareHome(dir / "home");
    writeHomes(dir / "home", server.base());
    test::ScriptedChooser chooser;
    ui::DesktopProgram program(dir / "home", chooser);
    program.setProgramEnd([](int) {});
    QVERIFY(program.start());
    ui::MainWindow& window = *program.mainWindow();
    auto* entry = window.findChild<QAction*>(QStringLiteral("mnuDownload"));
    QVERIFY(entry != nullptr);
    QCOMPARE(entry->text(), QStringLiteral("Download"));
    // Without leave to use the internet the entry is disabled.
    program.session()->options().set("inet_flag", "NO");
    program.session()->optionModel()->inetFlagRule();
    QVERIFY(test::waitUntil([&] { return !entry->isEnabled(); }, 1000));
    program.session()->options().set("inet_flag", "OK");
    program.session()->optionModel()->inetFlagRule();
    QVERIFY(test::waitUntil([&] { return entry->isEnabled(); }, 1000));

    QString seen;
    whenWindow(QStringLiteral("frmDownLoad"), [&](QWidget* modal) {
        auto* d = static_cast<ui::DownloadDialog*>(modal);
        QVERIFY(loaded(*d));
        seen = labelOf(*d, "Label3");
        QTest::mouseClick(child<QPushButton>(*d, "cmdOK"), Qt::LeftButton);
    });
    entry->trigger();
    QCOMPARE(seen, qs(server.base()) + QStringLiteral("/prog/Th505api.lzh"));
}

void DownloadDialogTest::theStartOffersTheDownloadOfMissingDataFiles()
{
    DownloadServer server("");
    test::TempDir dir;
    const fs::path home = dir / "home";
    test::prepareHome(home);
    writeHomes(home, server.base());
    {
        RecordingDialogs dialogs;
        session::Session session(home, dialogs);
        session.options().set("inet_flag", "OK");
        session.files().ini_write_cfg();
    }
    fs::remove(home / "ARDX.DAT");
    fs::remove(home / "ARRL10.DAT");

    test::ScriptedChooser chooser;
    ui::DesktopProgram program(home, chooser);
    program.setProgramEnd([](int) {});
    QString offer;
    QStringList ticked;
    bool unticked2 = false;
    whenWindow(QStringLiteral("messageBox"), [&](QWidget* modal) {
        auto* box = static_cast<QMessageBox*>(modal);
        offer = box->windowTitle() + QStringLiteral("|") + box->text();
        whenWindow(QStringLiteral("frmDownLoad"), [&](QWidget* window) {
            for (const char* name : {"Check1", "Check3", "Check5", "Check6", "Check7"}) {
                if (child<QCheckBox>(*window, name)->isChecked()) {
                    ticked << QString::fromLatin1(name);
                }
            }
            unticked2 = !child<QCheckBox>(*window, "Check2")->isChecked();
            // The operator downloads the two lists and leaves.
            for (const char* name : {"Check1", "Check3", "Check5"}) {
                child<QCheckBox>(*window, name)->setChecked(false);
            }
            auto* d = static_cast<ui::DownloadDialog*>(window);
            d->cmdStart_Click();
            QVERIFY(loaded(*d));
            QTest::mouseClick(child<QPushButton>(*window, "cmdOK"), Qt::LeftButton);
        });
        box->button(QMessageBox::Yes)->click();
    });
    program.start();
    QVERIFY(offer.startsWith(QStringLiteral("　　下記の必要なファイルがありません！|")));
    QVERIFY(offer.contains(QStringLiteral("ardx ．dat が有りません。")));
    QVERIFY(offer.contains(QStringLiteral("「は　い」　：　今直ぐにここからダウンロードする。")));
    QCOMPARE(ticked, QStringList({QStringLiteral("Check1"), QStringLiteral("Check3"),
                                  QStringLiteral("Check5"), QStringLiteral("Check6"),
                                  QStringLiteral("Check7")}));
    QVERIFY(unticked2);
    QCOMPARE(test::readBytes(home / "ARDX.DAT"), std::string("ARDX list\r\n"));
    // The start stops after the window: no main window this time.
    QVERIFY(program.mainWindow() == nullptr);
}

QTEST_MAIN(DownloadDialogTest)
#include "DownloadDialog_test.moc"
