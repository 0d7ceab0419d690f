#include "ui/DesktopProgram.h"

#include "failure/Failure.h"
#include "session/Session.h"
#include "ui/ConfigDialog.h"
#include "ui/DownloadDialog.h"
#include "ui/MainWindow.h"
#include "ui/QtDialogs.h"
#include "ui/WidgetLook.h"

#include <QApplication>
#include <QFontDatabase>
#include <cstdlib>

namespace vornhale::ui {

DesktopProgram::DesktopProgram(std::optional<std::filesystem::path> home, FileChooser& chooser,
                               QObject* parent)
    : QObject(parent), m_home(std::move(home)), m_chooser(chooser),
      m_dialogs(std::make_unique<QtDialogs>()), m_programEnd([](int code) { std::_Exit(code); })
{
}

DesktopProgram::~DesktopProgram()
{
    if (m_config) {
        delete m_config.data();
    }
    m_window.reset();
}

ConfigDialog* DesktopProgram::configDialog() const
{
    return m_config.data();
}

void DesktopProgram::useProgramFont()
{
    const QString family = QStringLiteral("Noto Sans CJK JP");
    if (QFontDatabase::families().contains(family)) {
        QFont font(family);
        font.setPointSize(9);
        QApplication::setFont(font);
    }
}

void DesktopProgram::setProgramEnd(std::function<void(int)> end)
{
    m_programEnd = std::move(end);
    if (m_window) {
        m_window->setProgramEnd(m_programEnd);
    }
}

void DesktopProgram::end(int code)
{
    Q_EMIT ended(code);
}

bool DesktopProgram::start()
{
    try {
        m_session = std::make_unique<session::Session>(m_home, *m_dialogs);
    } catch (const failure::Failure& f) {
        m_dialogs->message("",
                           "エラー内容 ：　" + std::to_string(f.number()) + "  " + f.description(),
                           base::Dialogs::Icon::Stop);
        end(1);
        return false;
    }
    // The start's offer to fetch missing data files opens the download window, loaded with
    // the rows of those files ticked; the start stops once it is closed.
    m_session->start().setDownloadWindow([this](tools::DataDownloads& core) {
        DownloadDialog dialog(core, m_session->folder().strPath);
        dialog.exec();
    });
    if (m_session->decision().environmentFirst) {
        // The environment settings stand before the main window, which waits for their OK.
        m_config = new ConfigDialog(*m_session, m_chooser);
        m_config->setAttribute(Qt::WA_DeleteOnClose);
        connect(m_config, &QDialog::finished, this, [this](int result) {
            const bool ok = result == QDialog::Accepted;
            if (!ok) {
                end(0);
                return;
            }
            continueStart();
        });
        m_config->open();
        return true;
    }
    continueStart();
    return m_window != nullptr;
}

void DesktopProgram::skipEnvironment()
{
    if (!m_config) {
        return;
    }
    ConfigDialog* dialog = m_config.data();
    m_config.clear();
    disconnect(dialog, nullptr, this, nullptr);
    dialog->close();
    m_session->acceptEnvironment();
    continueStart();
}

void DesktopProgram::continueStart()
{
    if (!m_session->checkRequiredFiles(true)) {
        end(1);
        return;
    }
    m_session->loadMainWindow();
    m_window = std::make_unique<MainWindow>(*m_session, m_chooser, *m_dialogs);
    m_window->setProgramEnd(m_programEnd);
    m_window->show();
    Q_EMIT mainWindowShown();
}

} // namespace vornhale::ui
