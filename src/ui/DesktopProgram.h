#pragma once

#include <QObject>
#include <QPointer>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

class ConfigDialog;
class FileChooser;
class MainWindow;
class QtDialogs;

/// One start of the window program: the session, then either the environment settings
/// (`frmConfig`, modal over the start, when the start asks for them) or at once the required
/// files and the main window. Nothing blocks: the dialog and the window are shown and the
/// start goes on when the dialog is closed with OK.
class DesktopProgram : public QObject
{
    Q_OBJECT

public:
    /// `chooser` must outlive the program.
    DesktopProgram(std::optional<std::filesystem::path> home, FileChooser& chooser,
                   QObject* parent = nullptr);
    ~DesktopProgram() override;

    /// The font of every window: Noto Sans CJK JP at 9 points where it is installed.
    static void useProgramFont();

    /// `Main`: starts the session and shows the first window. False when the program could
    /// not start (its message was shown); `ended` is then emitted as well.
    bool start();

    /// How the program ends on the spot; by default the process ends. Also given to the
    /// main window.
    void setProgramEnd(std::function<void(int)> end);

    session::Session* session() const { return m_session.get(); }
    QtDialogs& dialogs() { return *m_dialogs; }
    /// The environment settings while they stand before the start; null otherwise.
    ConfigDialog* configDialog() const;
    /// The main window once shown; null before.
    MainWindow* mainWindow() const { return m_window.get(); }

    /// Goes on past the environment settings as if they were closed with OK, without
    /// saving them (for screenshots of a fresh program folder).
    void skipEnvironment();

Q_SIGNALS:
    /// The main window is shown.
    void mainWindowShown();
    /// The program ends with `code` (the start failed, or `cmdEnd` was pressed).
    void ended(int code);

private:
    void continueStart();
    void end(int code);

    std::optional<std::filesystem::path> m_home;
    FileChooser& m_chooser;
    std::unique_ptr<QtDialogs> m_dialogs;
    std::unique_ptr<session::Session> m_session;
    QPointer<ConfigDialog> m_config;
    std::unique_ptr<MainWindow> m_window;
    std::function<void(int)> m_programEnd;
};

} // namespace vornhale::ui
