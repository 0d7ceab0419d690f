#pragma once

#include "session/Session.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/FileChooser.h"
#include "ui/MainWindow.h"

#include <QString>
#include <QStringList>
#include <filesystem>
#include <functional>
#include <memory>

class QTimer;
class QWidget;

namespace vornhale::test {

/// The file dialog as an operator answers it: each call takes the next prepared path (an
/// empty one is a cancel) and remembers the title, start folder and filter it was shown with.
class ScriptedChooser : public ui::FileChooser
{
public:
    QString chooseFile(QWidget* parent, const QString& title, const QString& startFolder,
                       const QString& filter) override;

    QStringList answers;
    QStringList titles, startFolders, filters;
};

/// A program folder that starts straight into the main window: a first start has run, the
/// environment was saved with every row valid (a stand-in HAMLOG file in the folder).
void prepareHome(const std::filesystem::path& home);

/// The window program started on a prepared program folder (`dir`/home), as most window
/// tests begin; `endedWith` is the exit status the program asked for (-1 while it runs).
struct StartedProgram
{
    /// `edit` may change the prepared program folder before the start.
    explicit StartedProgram(
        const std::function<void(const std::filesystem::path& home)>& edit = {});

    TempDir dir;
    ScriptedChooser chooser;
    std::unique_ptr<ui::DesktopProgram> program;
    int endedWith = -1;

    std::filesystem::path home() const { return dir / "home"; }
    session::Session& session() { return *program->session(); }
    ui::MainWindow& window() { return *program->mainWindow(); }
    template <class W> W* find(const QString& name) { return window().findChild<W*>(name); }
};

/// Shows the tab of every tab group that holds `widget`, as an operator would before using it.
void showTabOf(QWidget* widget);

/// Runs the event loop until `done` holds or `timeoutMs` has passed; returns `done()`.
bool waitUntil(const std::function<bool()>& done, int timeoutMs);

/// Presses `button` ("OK", "Yes", …, by the standard button's text or role) on the message
/// box that is open now; returns its text, empty when none is open.
QString answerMessageBox(int standardButton);

/// Answers every message box that opens while it lives with the button `standardButton`
/// (OK by default), remembering each box's title and text.
class BoxAnswerer
{
public:
    explicit BoxAnswerer(int standardButton = 0x00000400);
    ~BoxAnswerer();
    QStringList titles, texts;

private:
    QTimer* m_timer;
};

/// Calls `answer` with the modal widget as soon as one opens, from the event loop.
void whenModal(const std::function<void(QWidget*)>& answer);

} // namespace vornhale::test
