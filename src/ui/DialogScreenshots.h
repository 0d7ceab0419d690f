#pragma once

#include <QString>

class QWidget;

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

class FileChooser;

/// Pictures of the small dialogs of the main window for the documentation, into `folder`:
/// `frmKetasu.png` (widths), `frmDate.png` (period), `frmMode.png` (mode table) and
/// `frmRTCL_v4.png` (RTCL v4 to zLog). Returns false when a picture could not be written.
bool takeDialogScreenshots(session::Session& session, FileChooser& chooser, QWidget* parent,
                           const QString& folder);

} // namespace vornhale::ui
