#include "settings/RemarkHistory.h"

#include "base/Dialogs.h"
#include "failure/Failure.h"
#include "base/Trace.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/LineFile.h"

namespace vornhale::settings {

std::string RemarkHistory::fileName(int column)
{
    return column == 2 ? "Vornhale.rmk2" : "Vornhale.rmk1";
}

std::string RemarkHistory::header(int column, std::string_view version)
{
    return fileName(column) + "  for Vornhale.exe  ver " + std::string(version);
}

std::string RemarkHistory::header(int column)
{
    return header(column, kProgramVersion);
}

std::vector<std::string> RemarkHistory::read(const std::filesystem::path& file)
{
    std::vector<std::string> lines;
    try {
        lines = text::readLines(file);
    } catch (const failure::Failure&) {
        return {};
    }
    if (!lines.empty()) {
        lines.erase(lines.begin());
    }
    return lines;
}

void RemarkHistory::save_rmks2(const std::filesystem::path& folder, std::string_view txtRmks1,
                               std::string_view txtRmks2, bool savingOff, base::Dialogs& dialogs,
                               base::Trace* trace)
{
    if (trace != nullptr) {
        trace->line("Public Sub save_rmks2()");
    }
    if (savingOff) {
        return;
    }
    for (int column = 1; column <= 2; ++column) {
        if (!std::filesystem::is_regular_file(folder / fileName(column))) {
            const std::string missing = fileName(column) + " がありません";
            dialogs.message("Vornhale", missing + "\n" + folder.string() + " にコピーして下さい！",
                            base::Dialogs::Icon::Exclamation);
            throw failure::Failure(failure::FileNotFound,
                               missing + " " + (folder / fileName(column)).string());
        }
    }
    const std::string_view comments[] = {txtRmks1, txtRmks2};
    for (int column = 1; column <= 2; ++column) {
        const std::string_view comment = comments[column - 1];
        if (comment.empty()) {
            continue;
        }
        const auto file = folder / fileName(column);
        {
            text::LineWriter out(file, text::LineWriter::Mode::Append);
            out.write(comment);
            out.close();
        }
        dupe_chk(file, trace);
    }
}

void RemarkHistory::dupe_chk(const std::filesystem::path& file, base::Trace* trace)
{
    if (trace != nullptr) {
        trace->line("Private Sub dupe_chk()");
    }
    const std::vector<std::string> lines = text::readLines(file);
    std::vector<std::string> table;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        if (table.size() == kMaxComments) {
            throw failure::Failure(failure::SubscriptOutOfRange,
                               "インデックスが有効範囲にありません。 " + file.string());
        }
        table.emplace_back(text::trim(lines[i]));
    }

    // Descending order, by exchanges, as the histories have always been kept.
    for (std::size_t i = 0; i < table.size(); ++i) {
        for (std::size_t j = i + 1; j < table.size(); ++j) {
            if (table[j] > table[i]) {
                std::swap(table[i], table[j]);
            }
        }
    }

    const auto scratch = file.parent_path() / "rmk_01.txt";
    {
        text::LineWriter out(scratch);
        for (const std::string& entry : table) {
            if (!text::trim(entry).empty()) {
                out.write(entry);
            }
        }
        out.close();
    }

    const std::vector<std::string> sorted = text::readLines(scratch);
    const int column = file.filename().string() == fileName(2) ? 2 : 1;
    text::LineWriter out(file, text::LineWriter::Mode::ReplaceWhenDone);
    out.write(header(column));
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (i + 1 == sorted.size() || sorted[i] != sorted[i + 1]) {
            out.write(sorted[i]);
        }
    }
    out.close();
}

void RemarkHistory::save_rmks(const std::filesystem::path& folder,
                              const std::vector<std::string>& list1,
                              const std::vector<std::string>& list2)
{
    const std::vector<std::string>* lists[] = {&list1, &list2};
    for (int column = 1; column <= 2; ++column) {
        text::LineWriter out(folder / fileName(column), text::LineWriter::Mode::ReplaceWhenDone);
        out.write(header(column));
        for (const std::string& line : *lists[column - 1]) {
            out.write(line);
        }
        out.close();
    }
}

} // namespace vornhale::settings
