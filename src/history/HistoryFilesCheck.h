#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::history {

/// One file of the history check: its name in `Temp_Files`, its size in bytes and its lines.
/// A file that does not exist shows 0 and 0.
struct CheckedFile
{
    std::string name;
    std::uintmax_t size = 0;
    long lines = 0;
    bool exists = false;
};

/// One row of the history check: the kind of history and its two files, the history master
/// `bak_qso.mas<N>_p` and the name list `bak_qso_mas_name<N>_p` made with it.
struct HistoryFilesRow
{
    int kind = 1;               ///< 1 worked, 2 card sent, 3 card received
    std::string_view condition; ///< "　Q S O   済みの局", …
    CheckedFile master;
    CheckedFile names;
};

/// The captions of the three kinds, in order.
inline constexpr std::array<std::string_view, 3> kHistoryConditions = {
    "　Q S O   済みの局", "　QSL 発行済みの局", "　QSL 受領済みの局"};

/// The size and line count of the history files in `Temp_Files`, a row for each kind of which
/// at least one file exists, in kind order. No files, no rows.
std::vector<HistoryFilesRow> checkHistoryFiles(const std::filesystem::path& Temp_Files);

/// The lines of a file: its line ends, and one more when the last line has none. 0 for an
/// empty or missing file.
long lineCount(const std::filesystem::path& file);

} // namespace vornhale::history
