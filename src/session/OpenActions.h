#pragma once

#include "settings/Options.h"

#include <span>
#include <string>
#include <string_view>

namespace vornhale::session {

/// The open actions of the main window's menus and tool bar: which dialog each shows, with
/// which title and filter, from which folder, and as which kind of input the chosen file
/// opens.
struct OpenAction
{
    /// The two dialogs of the open actions.
    enum class Dialog {
        /// A file dialog with a filter that requires an existing file; a cancel is a failure
        /// of the open.
        Plain,
        /// A dialog that opens in the folder kept in the settings, titled with that folder;
        /// a cancel leaves no name.
        Folder,
    };

    std::string_view menu;      ///< the menu entry: "mnuOpen_all_txt_set"
    std::string_view procedure; ///< the open procedure: "FileOpen_all_txt_set"
    std::string_view typeWord;  ///< the kind of input (`--type` word); empty: by the name
    Dialog dialog;
    std::string_view filter;    ///< "description|pattern", as the dialog is given it
    std::string_view titleText; ///< Folder: the text behind the folder; Plain: the title
    std::string_view folderKey; ///< Folder: the settings key of the start folder
    std::string_view mdbTable;  ///< the table an N1MM Logger database is read from, if any
};

/// Every open action, in the order of the menus.
std::span<const OpenAction> openActions();

/// The action of a menu entry or of an open procedure; null when none.
const OpenAction* openActionOf(std::string_view menuOrProcedure);

/// The folder an action's dialog starts in: the setting `folderKey` (empty for a plain
/// dialog).
std::string openStartFolder(const OpenAction& action, const settings::Options& options);

/// The title of an action's dialog: for a folder dialog, its start folder in upper case, an
/// ideographic blank (U+3000) and the text; for a plain dialog its own title, if any.
std::string openDialogTitle(const OpenAction& action, const settings::Options& options);

/// What `lblIn_name` says after the plain dialog was cancelled, in red.
inline constexpr std::string_view kNoInputChosen = "入力ファイルを指定して下さい";

} // namespace vornhale::session
