#pragma once

#include "base/RunObserver.h"
#include "base/Trace.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vornhale::reference {

/// The province master of a run: received-exchange codes and the names of the provinces,
/// states or oblasts they stand for, read from the program's own `.mas` form or from a zLog
/// contest `.dat` file. A load replaces what was loaded before; lookups never touch the disk.
class ProvinceMaster
{
public:
    /// `read_prov_mas`: reads a `.mas` file (Shift-JIS). A line beginning with ";" is a
    /// comment and a blank line is skipped; every other line is `code,name`, taken as they
    /// stand (no trimming), anything behind a second comma ignored. `Prov_kazu` becomes the
    /// number of data lines. Writes "mas_dat_name ： " and the path to the trace first.
    /// Throws Failure 53 when the file cannot be opened and Failure 9 at a data line without
    /// a comma; after a failure the master holds what it held before.
    void read_prov_mas(const std::filesystem::path& mas_dat_name, base::Trace& trace);

    /// `read_prov_dat_all`: reads a zLog contest `.dat` file. A line beginning with ";" is a
    /// comment; a line containing "end of file" ends the reading; a line containing ".DAT" in
    /// any case is skipped. Every other line (a blank one too) is a data line: two blanks
    /// become one in a single pass, then the full-width blank and the tab become blanks; the
    /// code text stands up to the first blank, the name behind it, both trimmed. A code text
    /// with commas gives one entry per code, all with the same name. `Prov_kazu` becomes the
    /// number of data lines plus the commas in them. Trace as `read_prov_mas`.
    /// Throws Failure 53 when the file cannot be opened.
    void read_prov_dat_all(const std::filesystem::path& mas_dat_name, base::Trace& trace);

    /// `read_prov_mas_dat`: picks the reader by the lower-cased extension (".mas" or ".dat").
    /// Returns false, leaving the master as it was, for any other extension.
    bool read_prov_mas_dat(const std::filesystem::path& mas_dat_name, base::Trace& trace);

    /// `get_prov_mas`: the text to add to a remark for a received exchange, or empty.
    /// Unless `keepDigits` (`Check13`) is on, the digits 0 to 9 are removed first; the exchange is
    /// then trimmed, and an empty one finds nothing. Codes compare exactly (case matters) and the
    /// first equal entry from index 0 wins. The text is `Prov_moji` and the name, or the name
    /// alone under `Option4(2)` (`provinceForm` is the member index of `Option4`).
    std::string get_prov_mas(std::string_view q_rcvd, bool keepDigits, std::string_view Prov_moji,
                             int provinceForm) const;

    /// The upper bound of the arrays: `Prov_code` and `Prov_name` hold `Prov_kazu + 1`
    /// places from index 0, entries from index 0 upward, empty texts behind them.
    std::size_t Prov_kazu() const { return m_kazu; }
    const std::vector<std::string>& Prov_code() const { return m_code; }
    const std::vector<std::string>& Prov_name() const { return m_name; }
    /// Whether a master was read.
    bool loaded() const { return m_loaded; }

private:
    void index();

    std::vector<std::string> m_code;
    std::vector<std::string> m_name;
    std::size_t m_kazu = 0;
    bool m_loaded = false;
    // code -> first index holding it, so a lookup answers as the walk from index 0 would
    std::unordered_map<std::string, std::size_t> m_first;
};

/// The place of transfer of `get_prov_mas`'s text: under `Option3(0)` `rmks1` becomes
/// `rmks1`, a blank and the text, trimmed; under `Option3(1)` the same with `rmks2`; with no
/// member on (`provinceRemark` not 0 or 1), or an empty text, nothing changes.
void addProvinceText(std::string& rmks1, std::string& rmks2, std::string_view text,
                     int provinceRemark);

/// What `read_cont_name_zlo` settles for a `.ZLO` log.
struct ContNameChoice
{
    bool Prov_auto_found = false; ///< the contest name stands in `cont_name_zlo.cfg`
    std::string mas_dat_name;     ///< the master chosen, or the one given when none was
    std::string thirdItem;        ///< third item of the matching line, read and not used
    std::string fourthItem;       ///< fourth item, read and kept without use
};

/// `read_cont_name_zlo`, the data side: looks up `cont_name` exactly in
/// `<strPath>cont_name_zlo.cfg` (a heading line, then `contest name,file,item,number`
/// lines split at commas; the first equal line wins). On a match `Prov_auto_found` is set,
/// and a file name whose lower case contains ".mas" is taken from `Prov_mas_dir`, otherwise
/// one containing ".dat" from `Prov_mas_dat_dir` (the folder texts end in a separator and
/// are joined as texts); any other file name leaves `mas_dat_name` as `current`.
/// Throws Failure 53 when the file cannot be opened.
ContNameChoice read_cont_name_zlo(std::string_view cont_name, const std::filesystem::path& strPath,
                                  std::string_view Prov_mas_dir, std::string_view Prov_mas_dat_dir,
                                  std::string_view current);

/// A label of the window as the master choice sets it.
struct LabelText
{
    std::string text;
    base::Colour colour = base::Colour::Black;
};

/// The labels `read_prov_mas_dat` shows before it reads, and whether it reads at all.
struct ProvMasterLabels
{
    std::optional<LabelText> lblMas_dat_zlo; ///< absent: the label stays as it is
    std::optional<LabelText> lblMas_dat;
    std::string status; ///< text for the status line (red), empty for none
    bool read = false;  ///< the master is to be read by its extension
};

/// The label work of `read_prov_mas_dat`. For a `.ZLO` input: with the master present and
/// chosen from `cont_name_zlo.cfg`, a green note and a read; with no master, the red
/// notes and no read; a present master chosen by hand is read with the labels unchanged.
/// For other inputs `lblMas_dat_zlo` is cleared and the master read.
ProvMasterLabels provMasterLabels(bool zloInput, bool masterExists, bool Prov_auto_found);

} // namespace vornhale::reference
