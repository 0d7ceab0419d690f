#pragma once

#include <QString>

class QWidget;

namespace vornhale::base {
class Dialogs;
}

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

/// Pictures of the download window and the batch manager window for the documentation, into
/// `folder`: `frmDownLoad.png`, and `frmGet_MNG.png` after a walk over the open input (the
/// web asked only where `Vornhale_web.ini` names a call directory). Returns false when a
/// picture could not be written.
bool takeToolWindowScreenshots(session::Session& session, base::Dialogs& dialogs, QWidget* parent,
                               const QString& folder);

} // namespace vornhale::ui
