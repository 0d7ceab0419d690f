#pragma once

#include "tools/ResultGrid.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class QWidget;

namespace vornhale::base {
class Dialogs;
}
namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

/// What the main window's viewing entries do: the working copy of the settings is written,
/// then the file is shown in the viewer `frmDisp`, or a missing file is reported.
void viewFileIn(QWidget* parent, session::Session& session, const std::string& path);

/// The viewing entry `entry` (a `mnuDisp` entry, a tool button's caption or a view button's
/// name): shows the file the open input gives it (session::viewedFile).
void viewEntry(QWidget* parent, session::Session& session, std::string_view entry);

/// `mnuDisp_ham_n_new` and `mnuDisp_con_n_new`: the result grid editor of `form` over the
/// result file of the open input, or the missing file reported. `endProgram` is the
/// program's orderly end, for the editor's end button.
void openResultGrid(QWidget* parent, session::Session& session, const tools::GridForm& form,
                    std::function<void()> endProgram);

/// The side-by-side check of a text conversion: the input in `frmDisp2`, its `.TXT` form in
/// `frmDisp3` and its `.ALL` form in `frmDisp4`, three windows in a row that stay open beside
/// the main window (each closes itself and is deleted on close). A path that is empty or
/// names no file opens no window. Returns the windows opened.
std::vector<QWidget*> showConversionCheck(QWidget* parent, session::Session& session,
                                          const std::string& input, const std::string& txt,
                                          const std::string& all);

/// `cmdCheck_bak_qso_mas`: the history check window.
void openBakCheck(QWidget* parent, session::Session& session);

} // namespace vornhale::ui
