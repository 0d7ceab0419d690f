#pragma once

#include "text/Utf8.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::reference {

/// Where the entity masters live: `strPath` is the program's folder (cty.dat, cty_conv.txt,
/// cty_mastS.txt, cty_mastL.txt), `drive_path` the working folder (cty_dat0.txt,
/// cty_dat1.txt, cty_dat3.txt).
/// Blanks added on the right up to `width` characters; a longer text stays whole (the
/// padding of the long master's fields).
inline std::string padTo(std::string_view s, std::size_t width)
{
    std::string out(s);
    const std::size_t n = text::charCount(s);
    if (n < width) {
        out.append(width - n, ' ');
    }
    return out;
}

struct CtyPlaces
{
    std::filesystem::path strPath;
    std::filesystem::path drive_path;

    std::filesystem::path program(const char* name) const { return strPath / name; }
    std::filesystem::path work(const char* name) const { return drive_path / name; }
};

/// One row of the alias table: the entity as the lookup gives it, and the prefix to use
/// instead. Both texts are kept as read, blanks included.
struct CtyConvRow
{
    std::string from;
    std::string to;
};

/// The in-memory masters that the import fills and the lookups read. The arrays keep the
/// program's numbering: the short-prefix arrays count from index 1 (index 0 is unused) up to
/// `cty_s_kazu` inclusive; the DXCC arrays count from index 0 and hold `dxcc_kazu` entries.
struct CtyTables
{
    /// Trimmed columns 2 to 8 of each `cty_mastS.txt` line.
    std::vector<std::string> cty_s_prefix;
    /// Trimmed first 9 characters of columns 9 to 19 of each `cty_mastS.txt` line.
    std::vector<std::string> cty_s_primary;
    /// The line count of `cty_mastS.txt` (line ends plus one): slots past the file's last
    /// line stay empty texts, and the walks include them.
    long cty_s_kazu = 0;

    /// The alias table, at most 51 rows, in file order.
    std::vector<CtyConvRow> cty_conv;

    /// Byte columns 2-8, 20-25, 26-53 and 55 of each `dxcc_mas.txt` data line, as read.
    std::vector<std::string> dxcc_prefix;
    std::vector<std::string> dxcc_code;
    std::vector<std::string> dxcc_name;
    std::vector<std::string> dxcc_buro;
    /// The number of DXCC records loaded.
    long dxcc_kazu = 0;
};

} // namespace vornhale::reference
