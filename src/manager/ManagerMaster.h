#pragma once

#include "base/RunObserver.h"
#include "base/Trace.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vornhale::manager {

/// The operator's list of QSL managers, `MNG_Vornhale_full.txt`: two heading lines, then the
/// station's call in Shift-JIS byte columns 2-21 and its manager text in 22-41, both trimmed;
/// nothing behind column 41 is read. Loaded once and then held for the life of the program.
///
/// The lookup compares the trimmed call in upper case with each entry in upper case, and of
/// several entries for one call the one nearest the top of the file wins. An index built at
/// the load gives that answer at a cost that does not grow with the size of the file.
class ManagerMaster
{
public:
    /// `read_MNG_z_full_mp`: loads `file` and sets the loaded flag. `MNG_kazu` is the line
    /// count of the file (one above its number of lines) less 2. The status line shows
    /// "　MNG_Vornhale_full.txt を読込中 ．．．" during the load when an observer is given.
    /// Throws failure::Failure 53 when the file cannot be opened and 62 when it has fewer than
    /// the two heading lines.
    void read_MNG_z_full_mp(const std::filesystem::path& file, base::Trace& trace,
                            base::RunObserver* observer = nullptr);

    /// `MNG_loaded`.
    bool loaded() const { return m_loaded; }
    /// `MNG_kazu`: the last index of the entries, 0 or below for a file without entries.
    long MNG_kazu() const { return m_kazu; }

    /// `MNG_lookup`: the manager text of the first entry whose call equals `call`, both
    /// trimmed and in upper case; empty when there is none.
    std::string MNG_lookup(std::string_view call) const;

    /// The entries as loaded, in file order (`MNG_call`, `MNG_manager`).
    const std::vector<std::string>& MNG_call() const { return m_calls; }
    const std::vector<std::string>& MNG_manager() const { return m_managers; }

private:
    std::vector<std::string> m_calls;
    std::vector<std::string> m_managers;
    std::unordered_map<std::string, std::size_t> m_index; ///< upper-case call to first entry
    long m_kazu = 0;
    bool m_loaded = false;
};

} // namespace vornhale::manager
