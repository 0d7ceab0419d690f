#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::base {
class Trace;
} // namespace vornhale::base

namespace vornhale::settings {

/// The layout history `Vornhale_Rireki.cfg`: a header line, then one saved layout a line as
/// 49 comma-separated fields: the name, the twelve cells of row 1, the twelve of row 2, the
/// twelve widths of row 1, the twelve of row 2.
class LayoutHistory
{
public:
    static constexpr std::size_t kFields = 49;
    static constexpr std::size_t kMaxLayouts = 200;
    static constexpr std::string_view kFileName = "Vornhale_Rireki.cfg";

    using Row = std::array<std::string, kFields>;

    /// What a read found: the rows, and the error that stopped it (empty when none).
    struct Table
    {
        std::vector<Row> rows;
        std::string error;
    };

    /// The header that `save_rireki` writes: "Vornhale_Rireki.cfg  ver " and the version.
    static std::string header();
    /// The header that adding a layout writes: "Vornhale_Rireki.cfg  " and the version.
    static std::string appendHeader();

    /// Reads a history. The first line is skipped; each further line gives one row of its
    /// first 49 fields, at most 200 rows. A line of fewer fields stops the reading there with
    /// an error (traced when `trace` is given); the rows before it stay. A file that cannot be
    /// read gives no rows.
    static Table read(const std::filesystem::path& file, base::Trace* trace = nullptr);

    /// `save_rireki`: rewrites the history from `rows`, leaving out rows whose name is blank.
    static void save_rireki(const std::filesystem::path& file, const std::vector<Row>& rows);

    /// Adds `line` to the history. An existing file is copied to `Vornhale_rireki.001` beside
    /// it, the line appended, and copied back with its first line replaced by
    /// `appendHeader()`; the scratch file is removed. A missing or empty file is created with
    /// that header and the line.
    static void addLayout(const std::filesystem::path& file, std::string_view line);

    /// A row as one line: its fields joined by commas.
    static std::string lineOf(const Row& row);
};

} // namespace vornhale::settings
