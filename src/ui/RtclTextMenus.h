#pragma once

#include <string>

class QWidget;

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

class FileChooser;

/// The RTCL menu entries that write a zLog text of a text log beside it, without opening it
/// for a conversion (`mnu_rtcl_log2txt`, `mnu_rtcl_log2all`, `mnu_rtcl_log2txt_new`,
/// `mnu_rtcl_log2all_new`): the RTCL folder dialog of the generation (`newForm`: from version
/// 3.00), the generation check of the open menus with its box, then the `_l2z.txt` or
/// (`all`) `_l2z.all` text. Returns the path written; empty when the dialog was cancelled or
/// the log is of the other generation. Throws the failure of the maker.
std::string makeRtclText(session::Session& session, FileChooser& chooser, QWidget* parent,
                         bool newForm, bool all);

} // namespace vornhale::ui
