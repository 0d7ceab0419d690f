#include "history/HistoryFilesCheck.h"

#include "text/LineFile.h"

#include <exception>
#include <system_error>

namespace vornhale::history {
namespace {

CheckedFile checked(const std::filesystem::path& folder, std::string name)
{
    CheckedFile f;
    const std::filesystem::path path = folder / name;
    f.name = std::move(name);
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        return f;
    }
    f.exists = true;
    const auto size = std::filesystem::file_size(path, ec);
    f.size = ec ? 0 : size;
    f.lines = lineCount(path);
    return f;
}

} // namespace

long lineCount(const std::filesystem::path& file)
{
    try {
        return static_cast<long>(text::splitLines(text::readFileBytes(file)).size());
    } catch (const std::exception&) {
        return 0;
    }
}

std::vector<HistoryFilesRow> checkHistoryFiles(const std::filesystem::path& Temp_Files)
{
    std::vector<HistoryFilesRow> rows;
    for (int kind = 1; kind <= 3; ++kind) {
        HistoryFilesRow row;
        row.kind = kind;
        row.condition = kHistoryConditions[static_cast<std::size_t>(kind - 1)];
        row.master = checked(Temp_Files, "bak_qso.mas" + std::to_string(kind) + "_p");
        row.names = checked(Temp_Files, "bak_qso_mas_name" + std::to_string(kind) + "_p");
        if (row.master.exists || row.names.exists) {
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

} // namespace vornhale::history
