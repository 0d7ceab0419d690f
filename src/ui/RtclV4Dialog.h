#pragma once

#include "readers/RtclV4Form.h"

#include <QDialog>
#include <functional>

class QAction;
class QLabel;
class QPushButton;

namespace vornhale::failure {
class Failure;
}

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

class FileChooser;

/// `frmRTCL_v4`: writes a binary RTCL log (version 4.00 or 4.30) as a zLog text beside it,
/// without a conversion. The menu entries `mnuVer_430mae` and `mnuVer_430ato` pick a log of
/// the one or the other generation through the RTCL folder dialog; `lblIn_name` shows the log
/// or, for a file of another generation, why it was refused. `cmdMake_txt` writes the
/// `_log2z.txt` text, `cmdMake_all` the `_log2z.all` text; `lblOut_name` shows what was
/// written. The dialog remembers its place.
class RtclV4Dialog : public QDialog
{
    Q_OBJECT

public:
    /// `chooser` must outlive the dialog.
    RtclV4Dialog(session::Session& session, FileChooser& chooser, QWidget* parent = nullptr);

    /// Where a failure of a make goes (the window's failure path); by default it is shown in
    /// a box and the dialog stays.
    void setFailureHandler(std::function<void(const failure::Failure&)> handler)
    {
        m_failure = std::move(handler);
    }

    /// Picks `path` as a log of the generation before 4.30 (`before430`) or from 4.30, as the
    /// two menu entries do once a file is chosen. False when it is refused.
    bool choose(const std::filesystem::path& path, bool before430);

    const readers::RtclV4Form& form() const { return m_form; }

private:
    void pick(bool before430);
    void make(bool all);
    void refresh();

    session::Session& m_session;
    FileChooser& m_chooser;
    readers::RtclV4Form m_form;
    std::function<void(const failure::Failure&)> m_failure;
    QLabel* m_inName = nullptr;
    QLabel* m_outName = nullptr;
    QPushButton* m_makeTxt = nullptr;
    QPushButton* m_makeAll = nullptr;
};

} // namespace vornhale::ui
