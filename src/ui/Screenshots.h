#pragma once

#include <QString>

namespace vornhale::ui {

class DesktopProgram;

/// Pictures of the program's windows for the documentation: `frmConfig.png`, then
/// `main-1.png` to `main-4.png`, picture N showing tab N of both tab groups. With a log
/// to convert, it is opened and converted first, so that the pictures show an input and a
/// filled result grid, and then `Grid4frm.png` and `frmDisp.png` show its `_hn.csv` in the
/// result grid editor and in the viewer, `frmDisp2.png` the log in the viewer of the text
/// check; `frmCheck_bak_qso_mas.png` shows the history check.
/// Returns false when a picture could not be written.
bool takeScreenshots(DesktopProgram& program, const QString& folder, const QString& log);

} // namespace vornhale::ui
