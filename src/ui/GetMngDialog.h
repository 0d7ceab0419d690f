#pragma once

#include "manager/BatchManagerWalk.h"

#include <QDialog>
#include <atomic>
#include <functional>
#include <string_view>
#include <thread>

class QTableWidget;

namespace vornhale::base {
class Dialogs;
}

namespace vornhale::failure {
class Failure;
}

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

class QtRunObserver;

/// The batch manager window `frmGet_MNG` (caption: the input's name and " ＭＮＧ取得"): the
/// grid `MSFlexGrid1` of the calls of the open log with the file's, the web's and the
/// transferred manager, `Check1` (the web search, kept in `Get_MNG_use_web`), `Combo1`,
/// `Text1`, `Text2`, `cmdSubmit`, `cmdStop`, the state `Label1`, the counter `Label2`, the
/// search's displays `Label28` to `Label34` and `Label45`, and the menu entries
/// `mnuFileOpen_all_txt_set`, `mnuFileOpen_z_set`, `mnuFileOpen_rtcl_log_set`, `mnuGet_MNG`,
/// `mnuStop`, `mnuMain`. The walk runs on a thread of its own; `cmdStop` ends the program.
class GetMngDialog : public QDialog
{
    Q_OBJECT

public:
    /// What the window asks of the main window: the open action of one of its menu entries
    /// (the main window's entry name), the end of the program, and the failure path.
    struct Hooks
    {
        std::function<void(std::string_view mainMenu)> open;
        std::function<void(int code)> endProgram;
        std::function<void(const failure::Failure&)> fail;
    };

    /// `Form_Load_GetMng`. `session` and `dialogs` must outlive the window.
    GetMngDialog(session::Session& session, base::Dialogs& dialogs, Hooks hooks,
                 QWidget* parent = nullptr);
    ~GetMngDialog() override;

    /// `mnuGet_MNG_Click`: walks the calls of the open input on the walk's thread. Nothing
    /// happens while a walk runs.
    void mnuGet_MNG_Click();
    /// `cmdStop_Click`, `mnuStop_Click`: yields once and ends the whole program.
    void cmdStop_Click();
    /// Whether a walk is running.
    bool walking() const { return m_walking; }

    void reject() override;

Q_SIGNALS:
    /// A row of the running walk is in the grid (`row` from 0).
    void rowShown(int row);
    /// A walk has ended and the grid shows it.
    void walkFinished();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    QWidget* buildSearchPanel();
    void resetGrid();
    void showRow(const manager::WalkRow& row, int gridRow, int tableRows);
    void showCaption();
    void loadCalls();
    void openBy(std::string_view mainMenu);

    session::Session& m_session;
    base::Dialogs& m_dialogs;
    Hooks m_hooks;
    QtRunObserver* m_observer = nullptr;
    QTableWidget* m_grid = nullptr;
    std::thread m_worker;
    std::atomic<bool> m_stop{false};
    bool m_walking = false;
};

} // namespace vornhale::ui
