#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vornhale::history {

/// The fourteen text fields of one QSO of the operator's HAMLOG log, by field number less
/// one: call, date "yy/mm/dd", time, his report, my report, frequency (MHz), mode, code, GL,
/// QSL (route, sent and received marks), name, QTH, remarks 1, remarks 2. The order is that
/// of the HAMLOG CSV the program writes. Texts are UTF-8, each cut at its first NUL.
using HamlogFields = std::array<std::string, 14>;

/// The operator's HAMLOG log as the history scan reads it: opened once, read record by
/// record in number order, closed on every way out.
class HamlogReader
{
public:
    virtual ~HamlogReader() = default;

    /// Opens the log and gives its record count, or nothing when the source cannot be
    /// opened as such a log (missing, unreadable, of another format, a header that
    /// contradicts itself). Never throws for bad input.
    virtual std::optional<long> open(const std::filesystem::path& path) = 0;

    /// The fields of record `number` (1 to the count). The returned fields stay valid until
    /// the next call. Throws failure::Failure when the record cannot be read (62 when the file
    /// ends before it, 9 for a number outside the count); never reads past the file.
    virtual const HamlogFields& read(long number) = 0;

    /// Ends the use of the log. Harmless when nothing is open.
    virtual void close() = 0;
};

/// The reader for `hamlog_hdb_dir` by its extension: a HAMLOG CSV export for ".csv" (in any
/// case), the HAMLOG database itself for anything else.
std::unique_ptr<HamlogReader> makeHamlogReader(const std::filesystem::path& path);

/// Whether the files that the history source needs are present: for a CSV export the file
/// itself; for a database the path cut to 120 bytes and after its last ".", with "hdb" and
/// with "mst" behind it (either in lower or in upper case).
bool hamlogFilesPresent(std::string_view hamlog_hdb_dir);

} // namespace vornhale::history
