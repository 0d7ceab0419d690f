#include "failure/Failure.h"
#include "readers/MdbTableExport.h"
#include "support/TestSupport.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

// The dates as the export writes them, for mdbtools' own tool.
constexpr const char* kDateFormat = "%Y/%m/%d %H:%M:%S";

std::optional<fs::path> realDatabase(const char* name)
{
    return test::realData(std::string("n1mm/") + name);
}

bool haveMdbExport()
{
    return test::runCommand("command -v mdb-export >/dev/null 2>&1") == 0;
}

/// One field of a comma-separated line as written: its text and whether it stood in quotes.
struct CsvField
{
    std::string text;
    bool quoted = false;
    bool operator==(const CsvField&) const = default;
};

std::vector<CsvField> splitCsv(std::string_view line)
{
    std::vector<CsvField> fields(1);
    bool inQuotes = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (inQuotes) {
            if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
                fields.back().text += '"';
                ++i;
            } else if (c == '"') {
                inQuotes = false;
            } else {
                fields.back().text += c;
            }
        } else if (c == '"') {
            inQuotes = true;
            fields.back().quoted = true;
        } else if (c == ',') {
            fields.emplace_back();
        } else {
            fields.back().text += c;
        }
    }
    return fields;
}

/// What mdbtools' `mdb-export` prints for `table`, with the dates in the export's form,
/// booleans as words and binary values left out, then the words as the engine's numbers.
std::vector<std::vector<CsvField>> mdbExport(const fs::path& database, const std::string& table)
{
    std::string output;
    const int status = test::runCommand("mdb-export -B -b strip -D '" + std::string(kDateFormat) +
                                            "' -T '" + kDateFormat + "' '" + database.string() +
                                            "' '" + table + "' 2>/dev/null",
                                        &output);
    EXPECT_EQ(status, 0) << output;
    std::vector<std::vector<CsvField>> rows;
    for (const std::string_view line : text::splitLines(output)) {
        auto fields = splitCsv(line);
        for (CsvField& f : fields) {
            if (!f.quoted && (f.text == "TRUE" || f.text == "FALSE")) {
                f.text = f.text == "TRUE" ? "-1" : "0";
            }
        }
        rows.push_back(std::move(fields));
    }
    return rows;
}

std::vector<std::vector<CsvField>> ourExport(const fs::path& csv)
{
    std::vector<std::vector<CsvField>> rows;
    for (const std::string& line : test::readSjisLines(csv)) {
        rows.push_back(splitCsv(line));
    }
    return rows;
}

void expectSameAsMdbExport(const fs::path& database)
{
    test::TempDir dir;
    readers::MdbTableExport db(database);
    const std::vector<std::string> tables = db.tableNames();
    ASSERT_FALSE(tables.empty());
    for (const std::string& table : tables) {
        const fs::path csv = dir / (table + ".csv");
        const long rows = db.exportTable(table, csv);
        const auto ours = ourExport(csv);
        const auto theirs = mdbExport(database, table);
        ASSERT_EQ(ours.size(), theirs.size()) << table;
        EXPECT_EQ(static_cast<long>(ours.size()), rows + 1) << table;
        for (std::size_t i = 0; i < ours.size(); ++i) {
            ASSERT_EQ(ours[i], theirs[i]) << table << " line " << i + 1;
        }
    }
}

TEST(MdbTableExport, ExportsEveryTableOfTheAccess97DatabaseAsMdbExportPrintsIt)
{
    const auto db = realDatabase("mdbreader_V1997_test_jet3.mdb");
    if (!db || !haveMdbExport()) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm and mdbtools' mdb-export";
    }
    expectSameAsMdbExport(*db);
}

TEST(MdbTableExport, ExportsTheRealLoggerDatabaseAsMdbExportPrintsIt)
{
    const auto db = realDatabase("n3fjp_LogData.mdb");
    if (!db || !haveMdbExport()) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm and mdbtools' mdb-export";
    }
    expectSameAsMdbExport(*db);
}

TEST(MdbTableExport, ListsTheUserTablesOnly)
{
    const auto db = realDatabase("mdbreader_V1997_test_jet3.mdb");
    if (!db) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm";
    }
    EXPECT_EQ(readers::MdbTableExport(*db).tableNames(),
              (std::vector<std::string>{"Table1", "Table2", "Table3", "Table4"}));
}

TEST(MdbTableExport, WritesColumnNamesThenDatesWithSlashesAndColonsAndBooleansAsTheEnginesNumbers)
{
    const auto db = realDatabase("mdbreader_V1997_test_jet3.mdb");
    if (!db) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm";
    }
    test::TempDir dir;
    const long rows = readers::MdbTableExport(*db).exportTable("table1", dir / "t.csv");
    EXPECT_EQ(rows, 2);
    EXPECT_EQ(
        test::readSjisLines(dir / "t.csv"),
        (std::vector<std::string>{
            "A,B,C,D,E,F,G,H,I", R"("a","b",0,0,0,0,"1981/12/12 00:00:00",0.0000,0)",
            R"("abcdefg","hijklmnop",2,222,333333333,444.555,"1974/09/21 00:00:00",3.5000,-1)"}));
    // Shift-JIS text with CR LF line ends.
    EXPECT_TRUE(text::endsWith(test::readBytes(dir / "t.csv"), "-1\r\n"));
}

TEST(MdbTableExport, ATableWithoutRowsGivesTheLineOfColumnNamesAlone)
{
    const auto db = realDatabase("mdbreader_V1997_test_jet3.mdb");
    if (!db) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm";
    }
    test::TempDir dir;
    EXPECT_EQ(readers::MdbTableExport(*db).exportTable("Table3", dir / "t.csv"), 0);
    EXPECT_EQ(test::readSjisLines(dir / "t.csv"), (std::vector<std::string>{"a,b"}));
}

TEST(MdbTableExport, AMissingTableIsTheEnginesFailure3078)
{
    const auto db = realDatabase("n3fjp_LogData.mdb");
    if (!db) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm";
    }
    test::TempDir dir;
    readers::MdbTableExport database(*db);
    try {
        database.exportTable("DXLOG", dir / "dxlog.csv");
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), readers::kTableNotFound);
        EXPECT_TRUE(text::contains(f.description(), "'DXLOG' が見つかりません")) << f.description();
    }
    EXPECT_FALSE(fs::exists(dir / "dxlog.csv"));
}

TEST(MdbTableExport, AFileThatIsNoAccessDatabaseIsTheEnginesFailure3343)
{
    test::TempDir dir;
    for (const std::string& bytes :
         {std::string("zLog for Windows\r\n"), std::string(), std::string(4096, '\0'),
          std::string("\x00\x01\x00\x00Standard Jet DB\x00", 20) + std::string(100, 'x')}) {
        test::writeBytes(dir / "x.mdb", bytes);
        try {
            readers::MdbTableExport database(dir / "x.mdb");
            FAIL() << "opened " << bytes.size() << " bytes";
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), readers::kUnrecognizedDatabase);
            EXPECT_TRUE(text::contains(f.description(), "x.mdb")) << f.description();
        }
    }
}

TEST(MdbTableExport, AMissingFileIsFailure53)
{
    test::TempDir dir;
    try {
        readers::MdbTableExport database(dir / "none.mdb");
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::FileNotFound);
    }
}

TEST(MdbTableExport, ATruncatedRealDatabaseFailsCleanly)
{
    const auto db = realDatabase("n3fjp_LogData.mdb");
    if (!db) {
        GTEST_SKIP() << "needs ../shared/realdata/n1mm";
    }
    const std::string bytes = test::readBytes(*db);
    test::TempDir dir;
    for (std::size_t size : {20u, 2048u, 4096u, 8192u, 12000u, 65536u, 400000u}) {
        test::writeBytes(dir / "cut.mdb", std::string_view(bytes).substr(0, size));
        try {
            readers::MdbTableExport database(dir / "cut.mdb");
            database.exportTable("tblContacts", dir / "out.csv");
        } catch (const failure::Failure& f) {
            EXPECT_TRUE(f.number() == readers::kUnrecognizedDatabase ||
                        f.number() == readers::kTableNotFound)
                << size << ": " << f.number();
        }
    }
}

} // namespace
