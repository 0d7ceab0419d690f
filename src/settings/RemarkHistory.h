#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::base {
class Dialogs;
class Trace;
} // namespace vornhale::base

namespace vornhale::settings {

/// The comment histories `Vornhale.rmk1` and `Vornhale.rmk2` of the program folder: a header
/// line, then one comment a line, kept unique and in descending text order. Column 1 is the
/// history of `txtRmks1`, column 2 that of `txtRmks2`.
class RemarkHistory
{
public:
    /// Comments a history may hold when it is tidied.
    static constexpr std::size_t kMaxComments = 200;

    /// "Vornhale.rmk1" or "Vornhale.rmk2".
    static std::string fileName(int column);
    /// "Vornhale.rmk1  for Vornhale.exe  ver " and the version (the running one by default).
    static std::string header(int column, std::string_view version);
    static std::string header(int column);

    /// The comments of a history file, its first line skipped; empty when it cannot be read.
    static std::vector<std::string> read(const std::filesystem::path& file);

    /// `save_rmks2`, at the end of a conversion. Nothing at all when `savingOff`. Otherwise
    /// a missing history first shows "Vornhale.rmk1 がありません", a line break, `folder` and
    /// " にコピーして下さい！", and throws Failure 53 so that the program ends. A comment that is
    /// not empty is appended to its history, and the history is tidied by `dupe_chk`.
    static void save_rmks2(const std::filesystem::path& folder, std::string_view txtRmks1,
                           std::string_view txtRmks2, bool savingOff, base::Dialogs& dialogs,
                           base::Trace* trace = nullptr);

    /// `dupe_chk`: reads the comments of `file` (trimmed, first line skipped), sorts them in
    /// descending order by an exchange sort, writes the non-blank ones to `rmk_01.txt` beside
    /// the file, and rewrites the file as the header and those comments with equal neighbours
    /// collapsed. A 201st comment throws Failure 9 before anything is written.
    static void dupe_chk(const std::filesystem::path& file, base::Trace* trace = nullptr);

    /// `save_rmks`: rewrites both histories in `folder` as the header and the lines given.
    static void save_rmks(const std::filesystem::path& folder,
                          const std::vector<std::string>& list1,
                          const std::vector<std::string>& list2);
};

} // namespace vornhale::settings
