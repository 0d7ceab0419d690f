#include "readers/MdbTableExport.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"

// glib before mdbtools' header: that header declares its own functions as C and includes glib
// inside that block, which a C++ compiler refuses.
#include <cstring>
#include <fstream>
#include <glib.h>
#include <mdbtools.h>

namespace vornhale::readers {
namespace {

namespace fs = std::filesystem;

// The format the engine's text export gives dates and times in, with the year in full.
constexpr const char* kDateFormat = "%Y/%m/%d %H:%M:%S";

// What an Access file begins with: a version word, then the engine's name.
bool looksLikeAccess(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    char head[20] = {};
    in.read(head, sizeof head);
    if (in.gcount() != static_cast<std::streamsize>(sizeof head)) {
        return false;
    }
    const std::string_view name(head + 4, 15);
    return name == "Standard Jet DB" || name == "Standard ACE DB";
}

bool quoted(int type)
{
    return type == MDB_TEXT || type == MDB_MEMO || type == MDB_DATETIME || type == MDB_REPID;
}

bool binary(int type)
{
    return type == MDB_OLE || type == MDB_BINARY;
}

std::string quote(std::string_view value)
{
    return "\"" + text::replaceAll(value, "\"", "\"\"") + "\"";
}

struct Table
{
    MdbTableDef* def = nullptr;
    ~Table()
    {
        if (def != nullptr) {
            mdb_free_tabledef(def);
        }
    }
};

} // namespace

struct MdbTableExport::Database
{
    MdbHandle* handle = nullptr;
    ~Database()
    {
        if (handle != nullptr) {
            mdb_close(handle);
        }
    }

    // The catalogue entries of the user tables.
    std::vector<MdbCatalogEntry*> userTables() const
    {
        std::vector<MdbCatalogEntry*> tables;
        for (unsigned i = 0; i < handle->num_catalog; ++i) {
            auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(handle->catalog, i));
            if (entry->object_type == MDB_TABLE && mdb_is_user_table(entry)) {
                tables.push_back(entry);
            }
        }
        return tables;
    }
};

MdbTableExport::MdbTableExport(const fs::path& database)
    : m_db(std::make_unique<Database>()), m_path(database)
{
    std::error_code ec;
    if (!fs::is_regular_file(database, ec)) {
        throw failure::Failure(failure::FileNotFound,
                               "ファイルが見つかりません。 " + database.string());
    }
    const std::string notAccess =
        "データベースの形式を認識できません。Access のデータベースではありません: " +
        database.string();
    if (!looksLikeAccess(database)) {
        throw failure::Failure(kUnrecognizedDatabase, notAccess);
    }
    m_db->handle = mdb_open(database.c_str(), MDB_NOFLAGS);
    if (m_db->handle == nullptr) {
        throw failure::Failure(kUnrecognizedDatabase, notAccess);
    }
    mdb_set_date_fmt(m_db->handle, kDateFormat);
    mdb_set_shortdate_fmt(m_db->handle, kDateFormat);
    mdb_set_boolean_fmt_numbers(m_db->handle);
    if (mdb_read_catalog(m_db->handle, MDB_TABLE) == nullptr) {
        throw failure::Failure(kUnrecognizedDatabase,
                               "データベースの一覧を読めません。壊れているか途中で切れています: " +
                                   database.string());
    }
}

MdbTableExport::~MdbTableExport() = default;

std::vector<std::string> MdbTableExport::tableNames() const
{
    std::vector<std::string> names;
    for (const MdbCatalogEntry* entry : m_db->userTables()) {
        names.emplace_back(entry->object_name);
    }
    return names;
}

long MdbTableExport::exportTable(std::string_view table, const fs::path& csv)
{
    std::string name;
    for (const MdbCatalogEntry* entry : m_db->userTables()) {
        if (text::equalsNoCase(entry->object_name, table)) {
            name = entry->object_name;
            break;
        }
    }
    Table t;
    if (!name.empty()) {
        t.def = mdb_read_table_by_name(m_db->handle, name.data(), MDB_TABLE);
    }
    if (t.def == nullptr || mdb_read_columns(t.def) == nullptr) {
        throw failure::Failure(kTableNotFound, "入力テーブル '" + std::string(table) +
                                                   "' が見つかりません: " + m_path.string());
    }
    mdb_rewind_table(t.def);

    const unsigned columns = t.def->num_cols;
    std::vector<std::vector<char>> values(columns, std::vector<char>(MDB_BIND_SIZE + 1));
    std::vector<int> lengths(columns);
    std::vector<int> types(columns);
    std::string header;
    for (unsigned i = 0; i < columns; ++i) {
        const auto* col = static_cast<MdbColumn*>(g_ptr_array_index(t.def->columns, i));
        types[i] = col->col_type;
        header += (i == 0 ? "" : ",") + std::string(col->name);
        mdb_bind_column(t.def, static_cast<int>(i + 1), values[i].data(), &lengths[i]);
    }

    text::LineWriter out(csv, text::LineWriter::Mode::ReplaceWhenDone);
    out.write(header);
    long rows = 0;
    std::string line;
    while (mdb_fetch_row(t.def)) {
        line.clear();
        for (unsigned i = 0; i < columns; ++i) {
            if (i > 0) {
                line += ',';
            }
            if (binary(types[i])) {
                continue;
            }
            if (types[i] == MDB_BOOL) {
                // The engine writes a true value as -1, as its own numbers hold it.
                line += std::strcmp(values[i].data(), "0") == 0 ? "0" : "-1";
                continue;
            }
            if (lengths[i] == 0) {
                continue;
            }
            const std::string_view value(
                values[i].data(),
                std::min<std::size_t>(static_cast<std::size_t>(lengths[i]), MDB_BIND_SIZE));
            line += quoted(types[i]) ? quote(value) : std::string(value);
        }
        out.write(line);
        ++rows;
    }
    out.close();
    return rows;
}

} // namespace vornhale::readers
