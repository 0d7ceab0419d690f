#pragma once

#include "base/Trace.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vornhale::reference {

/// The heading line of `ardx_dat.mas`.
inline constexpr const char* kArdxMasHeading =
    "ｺｰﾙｻｲﾝ|__氏  名___|ｺｰﾄﾞ_|26___Ｑ  Ｔ  Ｈ____________|____備    考__________"
    "______________________________";

/// The state and province master of ARRL-style contests, folded from zLog's `ARDX.DAT` and
/// `ARRL10.DAT` into `ardx_dat.mas` and held in memory for the life of the program.
class ArdxMaster
{
public:
    /// `ardx_sep`: builds `ardx_dat.mas` and loads it.
    ///
    /// Both files are read in turn (`ARDX.DAT` up to "end of file ardx.dat"; `ARRL10.DAT` up
    /// to "end of file arrl10.dat" or "end of file ardx.dat"; each to its end otherwise),
    /// their first line skipped. A group is a name line (its first 30 characters) and one to
    /// eleven code lines, each trimmed and read over at most 100 byte positions: "," ends a
    /// code, ";" ends a code and the group, any other character is added to the code; a code
    /// left open at the end of a line is dropped. Each code becomes a line "'" + code (24
    /// columns) + name (30 columns) of `<drive_path>ardx_dat.001`; that file is sorted by its
    /// bytes 1 to 10 into `ardx_dat.002`, and `<zlog_dat_dir>ardx_dat.mas` gets the heading
    /// and the sorted lines without a line equal to the one before it. The load then drops
    /// the heading and the first data line, and takes byte columns 2-7 (code) and 26-53
    /// (name) of each further line, trimmed.
    ///
    /// Trace: "Private sub ardx_sep()_1", "_2", "_3_sort" (with "Public Sub sort_()"), "_4".
    /// Throws Failure 53 when `ARDX.DAT` or `ARRL10.DAT` cannot be opened, Failure 62 when a
    /// group's code lines run past the end of a file or `ardx_dat.mas` holds fewer than two
    /// lines, Failure 75 when a file cannot be written. The loaded master stays as it was
    /// after a failure.
    void ardx_sep(const std::filesystem::path& zlog_dat_dir,
                  const std::filesystem::path& drive_path, base::Trace& trace);

    /// `get_ardx`: the name of a received exchange, or empty. The exchange is padded with
    /// blanks or cut to 6 characters and compared in upper case with the codes, which were
    /// trimmed on loading: only a code of exactly 6 columns can be equal. The first equal
    /// code from index 0 wins.
    std::string get_ardx(std::string_view q_rcvd) const;

    /// Number of codes loaded; 0 means the master is not loaded.
    std::size_t Ardx_kazu() const { return m_code.size(); }
    bool loaded() const { return !m_code.empty(); }
    const std::vector<std::string>& Ardx_code() const { return m_code; }
    const std::vector<std::string>& Ardx_name() const { return m_name; }

private:
    std::vector<std::string> m_code;
    std::vector<std::string> m_name;
    // upper-case code -> first index holding it
    std::unordered_map<std::string, std::size_t> m_first;
};

} // namespace vornhale::reference
