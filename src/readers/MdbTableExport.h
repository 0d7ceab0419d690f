#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::readers {

/// The database engine's numbers for its failures, which users of Access logs know from the
/// engine's own messages.
inline constexpr int kUnrecognizedDatabase = 3343;
inline constexpr int kTableNotFound = 3078;

/// An Access database (`.mdb`, `.accdb`) opened for reading through mdbtools' libmdb, and the
/// export of one of its tables to text, as the database engine's text export writes it:
/// a first line of the column names, then one line a row with every column in table order,
/// separated by ",". Text, memo, date and replication values stand in double quotes (a quote
/// inside is doubled), numbers as the engine prints them, booleans as -1 and 0, dates and
/// times as "yyyy/mm/dd hh:mm:ss", an empty (NULL) value as nothing. Binary and OLE values are
/// left empty. The file is Shift-JIS with CR LF line ends.
class MdbTableExport
{
public:
    /// Opens the database. Throws Failure 53 when the file is missing and Failure 3343 when
    /// it is no Access database (or too damaged to be read as one).
    explicit MdbTableExport(const std::filesystem::path& database);
    ~MdbTableExport();
    MdbTableExport(const MdbTableExport&) = delete;
    MdbTableExport& operator=(const MdbTableExport&) = delete;

    /// The names of the user tables, in catalogue order.
    std::vector<std::string> tableNames() const;

    /// Writes `table` (its name compared without regard to case) to `csv`, replacing the file
    /// only when the export is complete. Returns the number of rows written. Throws Failure
    /// 3078 when the database has no such table and Failure 75 when `csv` cannot be written.
    long exportTable(std::string_view table, const std::filesystem::path& csv);

private:
    struct Database;
    std::unique_ptr<Database> m_db;
    std::filesystem::path m_path;
};

} // namespace vornhale::readers
