#pragma once

#include <QDialog>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

class QCheckBox;
class QLabel;
class QPushButton;

namespace vornhale::base {
class Dialogs;
}

namespace vornhale::session {
class Session;
}

namespace vornhale::tools {
class DataDownloads;
}

namespace vornhale::ui {

class QtRunObserver;

/// The download window `frmDownLoad`: one tick (`Check1`, `Check2`, `Check3`, `Check5`,
/// `Check6`, `Check7`) and one status label a row, the unpack buttons `Command1` to
/// `Command4`, the addresses `Label3`, `Label6`, `Label2`, the overall line `Label5`, and
/// `cmdStart` "開　始" and `cmdOK` "終　了". A view over `tools::DataDownloads`: the page
/// look-ups of the load and the downloads run on a thread of their own, and every label
/// follows as the core sets it. While they run the buttons are disabled and the window does
/// not close.
class DownloadDialog : public QDialog
{
    Q_OBJECT

public:
    /// The window as the menu entry `mnuDownload` opens it: its own core over the session's
    /// options and `Vornhale_web.ini`; the load (`Form_Load`, the page look-ups) starts on the
    /// worker thread at once. `dialogs` shows the core's messages and must outlive the window.
    DownloadDialog(session::Session& session, base::Dialogs& dialogs, QWidget* parent = nullptr);
    /// The window over a core that the start's check of missing data files has already loaded
    /// (the rows of the missing files ticked). `core` must outlive the window.
    DownloadDialog(tools::DataDownloads& core, const std::filesystem::path& strPath,
                   QWidget* parent = nullptr);
    ~DownloadDialog() override;

    /// Whether the load or the downloads are running.
    bool busy() const { return m_busy; }

    /// `cmdStart`: takes the ticks into the core and downloads the ticked rows on the worker
    /// thread. Nothing happens while the window is busy.
    void cmdStart_Click();

    void reject() override;

Q_SIGNALS:
    /// The load or a round of downloads has ended; the labels and ticks show its outcome.
    void workFinished();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void build(const std::filesystem::path& strPath);
    void runOnWorker(std::function<void()> work);
    void workEnded();
    void showCore();
    void setBusy(bool busy);
    void unpack(int row);

    std::unique_ptr<tools::DataDownloads> m_ownCore;
    tools::DataDownloads* m_core = nullptr;
    QtRunObserver* m_observer = nullptr;
    std::thread m_worker;
    bool m_busy = false;
};

} // namespace vornhale::ui
