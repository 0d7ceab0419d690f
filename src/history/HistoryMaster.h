#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vornhale::base {
class Trace;
}

namespace vornhale::history {

/// The band letter and the mode digit of a contact or of a database record.
struct BandModeCode
{
    std::string Band_code; ///< "A" to "O", or "Z" for a frequency in no range
    std::string Mode_code; ///< "1" to "7", or "9" for any other mode
    std::string code() const { return Band_code + Mode_code; }
};

/// `band_mode_code`: the band letter from the leading number of `freq` in MHz (both ends of
/// each range included, the first range that holds it wins), the mode digit from the trimmed
/// `mode`, compared exactly.
BandModeCode band_mode_code(std::string_view freq, std::string_view mode);

/// The history master of one kind in memory and its lookup.
///
/// The load keeps the two parallel arrays as the master file gives them, and an index of the
/// first place of each call, so that a lookup costs the same whatever the size of the
/// master and gives the answer of a walk from the top.
class HistoryMaster
{
public:
    /// `sum_bak_4_bas_p`: loads `<bak_qso_mas_file>p` (`bak_qso_mas_file` being the path
    /// "…/Temp_Files/bak_qso.mas<N>_"), replacing what was loaded. Writes the file name and the
    /// item count to `trace`. The file is read one comma-separated item at a time, as records
    /// are read everywhere; its unquoted last line reads as the pair "ZZZ/ZZZZZZ", "E2".
    /// Throws Failure 53 when the file cannot be opened, 62 when it ends within a pair.
    void sum_bak_4_bas_p(const std::filesystem::path& bak_qso_mas_file, base::Trace& trace);

    /// `chk_bak_qso`: whether `call` counts as worked. The call is trimmed, and cut before its
    /// last "/" when it holds two or more; then compared exactly with the calls of the master
    /// (the first equal one wins). On a hit the code string of that call is searched, without
    /// regard to case: with `sameBand` (`Check04`) and `sameMode` (`Check05`) off any entry
    /// counts; with `sameBand` alone for `Band_code` and "0" in the codes with every digit made
    /// "0"; with `sameMode` alone for "0" and `Mode_code` in the codes with every capital letter
    /// made "0"; with both for `Band_code` and `Mode_code`.
    bool chk_bak_qso(std::string_view call, std::string_view Band_code, std::string_view Mode_code,
                     bool sameBand, bool sameMode) const;

    /// The same with the two-character test key of the record conversion (letter and digit,
    /// letter and "0", "0" and digit, or "00"), whose first character stands for `Band_code`
    /// and second for `Mode_code`.
    bool chk_bak_qso(std::string_view call, std::string_view key, bool sameBand,
                     bool sameMode) const;

    /// `bak_calls_kazu_p`: the number of items the load counted (about twice the lines).
    long bak_calls_kazu_p() const { return m_itemCount; }
    /// The loaded pairs, in the order of the file.
    const std::vector<std::string>& bak_calls_p() const { return m_calls; }
    const std::vector<std::string>& bak_bands_p() const { return m_bands; }

    /// The code string that the walk from the top finds for `call` (already trimmed and cut),
    /// or null. The walk runs over the item count, so past the loaded pairs it meets empty
    /// entries.
    const std::string* codesOf(std::string_view call) const;

private:
    std::vector<std::string> m_calls, m_bands;
    std::unordered_map<std::string, std::size_t> m_index;
    long m_itemCount = 0;
    std::string m_empty;
};

} // namespace vornhale::history
