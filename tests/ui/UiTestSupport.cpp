#include "UiTestSupport.h"

#include "base/Dialogs.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>

namespace vornhale::test {

StartedProgram::StartedProgram(const std::function<void(const std::filesystem::path& home)>& edit)
{
    prepareHome(dir / "home");
    if (edit) {
        edit(dir / "home");
    }
    program = std::make_unique<ui::DesktopProgram>(dir / "home", chooser);
    program->setProgramEnd([this](int code) { endedWith = code; });
    program->start();
}
namespace {

class SilentDialogs : public base::Dialogs
{
public:
    void message(std::string_view, std::string_view, Icon) override {}
};

} // namespace

QString ScriptedChooser::chooseFile(QWidget*, const QString& title, const QString& startFolder,
                                    const QString& filter)
{
    titles << title;
    startFolders << startFolder;
    filters << filter;
    return answers.isEmpty() ? QString() : answers.takeFirst();
}

void prepareHome(const std::filesystem::path& home)
{
    std::filesystem::create_directories(home);
    writeBytes(home / "Hamlog.hdb", "stand-in");
    SilentDialogs dialogs;
    session::Session session(home, dialogs);
    settings::Options& o = session.options();
    o.set("hamlog_hdb_dir", (home / "Hamlog.hdb").string());
    o.set("hamlog_hdb_2_dir", (home / "Hamlog.hdb").string());
    for (const char* key : {"zlog_dat_dir", "zlo_dir", "all_dir", "Prov_mas_dat_dir"}) {
        if (o.value(key).empty()) {
            o.set(key, (home / "").string());
        }
    }
    if (o.value("log_dir").empty()) {
        o.set("log_dir", "使用しない");
    }
    session.acceptEnvironment();
    session.files().ini_write_new();
}

void showTabOf(QWidget* widget)
{
    for (QWidget* w = widget; w != nullptr; w = w->parentWidget()) {
        if (auto* stack = qobject_cast<QStackedWidget*>(w->parentWidget())) {
            if (auto* tabs = qobject_cast<QTabWidget*>(stack->parentWidget())) {
                tabs->setCurrentWidget(w);
            }
        }
    }
    QApplication::processEvents();
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < timeoutMs) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return done();
}

QString answerMessageBox(int standardButton)
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) {
        return {};
    }
    const QString text = box->text();
    if (QAbstractButton* b =
            box->button(static_cast<QMessageBox::StandardButton>(standardButton))) {
        b->click();
    }
    return text;
}

BoxAnswerer::BoxAnswerer(int standardButton) : m_timer(new QTimer)
{
    m_timer->setInterval(10);
    QObject::connect(m_timer, &QTimer::timeout, [this, standardButton] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr || !box->isVisible()) {
            return;
        }
        titles << box->windowTitle();
        texts << box->text();
        QAbstractButton* b = box->button(static_cast<QMessageBox::StandardButton>(standardButton));
        if (b == nullptr) {
            b = box->defaultButton();
        }
        if (b != nullptr) {
            b->click();
        } else {
            box->done(QMessageBox::Ok);
        }
    });
    m_timer->start();
}

BoxAnswerer::~BoxAnswerer()
{
    delete m_timer;
}

void whenModal(const std::function<void(QWidget*)>& answer)
{
    auto* timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, answer] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            timer->stop();
            timer->deleteLater();
            answer(modal);
        }
    });
    timer->start();
}

} // namespace vornhale::test
