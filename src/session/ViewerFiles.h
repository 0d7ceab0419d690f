#pragma once

#include "base/ProgramFolder.h"
#include "readers/ReaderContext.h"

#include <string>
#include <string_view>

namespace vornhale::session {

/// The read-only viewers of the program: which window shows a file, with which title.
enum class ViewerWindow {
    frmDisp,  ///< any file the program made or read: "in : … out: …"
    frmDisp2, ///< the input of a text conversion
    frmDisp3, ///< the .TXT made from the input
    frmDisp4, ///< the .ALL made from the input
};

/// The window's object name and position section: "frmDisp", "frmDisp2", …
std::string_view viewerForm(ViewerWindow window);

/// The title of a viewer showing `shown`: `frmDisp` gives "in : " + `in_name` +
/// "        out: " + `shown`; the others " 入力 ：　", " 出力 TXT：　" or " 出力 ALL：　" +
/// `shown`.
std::string viewerTitle(ViewerWindow window, std::string_view in_name, std::string_view shown);

/// The file that a viewing entry of the main window shows (the entries of `mnuDisp`, their
/// tool-bar buttons and the view buttons of the result tab, by their control names or, for
/// tool buttons, captions): the input, a result or working text beside it, or a settings file
/// of the program folder. Empty when the open input gives the entry no file (no input, or an
/// RTCL name without ".log"), or when the entry is no viewing entry. The grid editors'
/// entries (`mnuDisp_ham_n_new`, `mnuDisp_con_n_new`) name their result files too.
std::string viewedFile(std::string_view entry, const readers::InputState& input,
                       const base::ProgramFolder& folder);

} // namespace vornhale::session
