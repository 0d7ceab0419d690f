#pragma once

#include <QString>
#include <filesystem>
#include <functional>

class QWidget;

namespace vornhale::base {
class Dialogs;
class RunObserver;
} // namespace vornhale::base

namespace vornhale::failure {
class Failure;
}

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

/// The tool entries of the main window's menu bar that do one thing and are done: the
/// QSOBank export, the import of `cty.dat`, the web page of the manager list, and the
/// download window and the batch manager window they open. Each works on the open input and
/// the masters of the session and tells its outcome on the window's status line.
class ToolActions
{
public:
    /// How a web page is shown; by default the system's browser (`QDesktopServices`).
    using UrlOpener = std::function<bool(const QString& url)>;

    /// All references must outlive the object. `fail` takes the failure path of the program.
    ToolActions(session::Session& session, base::Dialogs& dialogs, base::RunObserver& observer,
                std::function<void(const failure::Failure&)> fail);

    /// `mnuQSOBank_Click`: writes `<stem>.QSOBank.xml` beside the open input from its common
    /// QSO lines; `lblShori` says "　変 換 終 了". A failure is traced ("エラー発生 ：　" and the
    /// number) and the export ends there, the program goes on. Returns the file written, empty
    /// when none.
    std::filesystem::path mnuQSOBank_Click();

    /// `mnuGet_Entity`: imports `cty.dat` again into `cty_mastS.txt` and `cty_mastL.txt`,
    /// reloads `dxcc_mas.txt` and the state master, whatever the first conversion did. A
    /// missing file takes the failure path. True when the masters were made.
    bool mnuGet_Entity_Click();

    /// `mnuWeb_Manager`: shows the web page of the keeper of the manager list, the value
    /// `manager_list_page` of `Vornhale_web.ini` [web]; without one, a message says so and no
    /// page opens. Returns the address shown, empty when none.
    QString mnuWeb_Manager_Click();

    /// Replaces how web pages are shown (tests record the address instead).
    static void setUrlOpener(UrlOpener opener);

private:
    session::Session& m_session;
    base::Dialogs& m_dialogs;
    base::RunObserver& m_observer;
    std::function<void(const failure::Failure&)> m_fail;
};

} // namespace vornhale::ui
