#pragma once

#include "base/Trace.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::tools {

/// One band of the duplicate list: its working files and the text of its head line.
struct DupBand
{
    std::string_view tag;         ///< first two bytes of a row's key ("1.", "3.", "7.", "14", …)
    std::string_view rowsFile;    ///< rows of the band, ended by the sentinel row
    std::string_view sectionFile; ///< the printed section
    std::string_view sentinel;    ///< the last row of the rows file, all three fields alike
    std::string_view headText;    ///< the band as the head line shows it
};

/// The six bands, in the order the list prints them: 1.9, 3.5, 7, 14, 21, 28. Rows of any
/// other band tag are not listed; the list serves HF contests. A plain "7" gives the tag "7 ",
/// which matches no band, so 7 MHz contacts are listed only when the field holds a frequency.
const std::vector<DupBand>& dupBands();

/// What the last step of the list leaves for the window.
struct DupListOutcome
{
    std::filesystem::path dupFile; ///< the list beside the input
    bool written = false;          ///< at least one band had a section
    bool mnuDisp_dup = true;       ///< the list's viewer entries are enabled in any case
};

/// The duplicate list of a conversion: a plain-text check list of the worked stations beside
/// the input, one section per band, grouped by the last character of the home call and six
/// calls to a line. It does not judge duplicates; it only sorts and prints. Every working
/// file lies in `drive_path`; all files are CP932 with CR LF line ends.
///
/// Each step handles its own failures: it writes "エラー発生 ：　" and the number to the trace
/// and goes on, so a band file that cannot be read leaves its section out, without a message.
class DuplicateList
{
public:
    /// `trace` must outlive the list.
    DuplicateList(std::filesystem::path drive_path, base::Trace& trace);

    /// `wpx_dupe_chk`: reads the enriched lines of `zlog_2.txt` and writes one row per
    /// contact to `zlog_3.txt` (key, group, call), then sorts it into `zlog_4.txt` on the raw
    /// columns 1 to 15. The key is the band tag (the first two characters of `band_or_freq`),
    /// the group (the last character of `base_call`) and `q_call` padded or cut to 12.
    void wpx_dupe_chk();

    /// `wpx_dupe_chk_2`: copies each row of `zlog_4.txt` to the rows file of its band tag
    /// and ends each of the six rows files with its sentinel row.
    void wpx_dupe_chk_2();

    /// `wpx_dupe_chk_4`: prints the section of each band whose rows file holds more than
    /// its sentinel. The section file of a band that has none is removed, so that a former
    /// run's section never joins this list.
    void wpx_dupe_chk_4();

    /// `wpx_dupe_chk_5`: whether the first row of the band's rows file is a sentinel (bytes 3
    /// to 7 of its key are "ZZZZZ"), that is, the band has no contacts. A file that cannot be
    /// read counts as empty.
    bool wpx_dupe_chk_5(const DupBand& band);

    /// `wpx_dupe_chk_6`: prints the section of one band from its rows file into its section
    /// file: the head line, the groups ("[g] " and the calls padded to 12, six a line,
    /// continuation lines indented by four blanks), and the foot with the count of rows read
    /// less one.
    void wpx_dupe_chk_6(const DupBand& band);

    /// `wpx_dupe_chk_7`: deletes the list file of `in_name` and writes into it the sections
    /// that exist, in band order. No section, no file.
    DupListOutcome wpx_dupe_chk_7(std::string_view in_name);

    /// The whole list, as a conversion with `Check06` runs it.
    DupListOutcome run(std::string_view in_name);

    /// The list's file for an input: the input's path up to and including its first point,
    /// then "dup" (a point in a folder name cuts the name there). A path without a point
    /// gets ".dup" behind it.
    static std::string dupName(std::string_view in_name);

    /// The section lines of one band from the rows of its rows file, each row its three
    /// fields (key, group, call).
    static std::vector<std::string> section(const std::vector<std::vector<std::string>>& rows);

private:
    std::filesystem::path work(std::string_view name) const;
    void failed(int number);

    std::filesystem::path m_drive_path;
    base::Trace& m_trace;
};

} // namespace vornhale::tools
