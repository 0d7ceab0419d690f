#include "settings/LayoutHistory.h"

#include "failure/Failure.h"
#include "base/Trace.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <system_error>

namespace vornhale::settings {

std::string LayoutHistory::header()
{
    return std::string(kFileName) + "  ver " + std::string(kProgramVersion);
}

std::string LayoutHistory::appendHeader()
{
    return std::string(kFileName) + "  " + std::string(kProgramVersion);
}

LayoutHistory::Table LayoutHistory::read(const std::filesystem::path& file, base::Trace* trace)
{
    Table table;
    auto fail = [&](int number, const std::string& description) {
        table.error = description;
        if (trace != nullptr) {
            trace->line("エラー発生 ：　" + std::to_string(number));
            trace->line("エラー内容 ：　" + description);
        }
    };
    std::vector<std::string> lines;
    try {
        lines = text::readLines(file);
    } catch (const failure::Failure& f) {
        fail(f.number(), f.description());
        return table;
    }
    for (std::size_t i = 1; i < lines.size() && table.rows.size() < kMaxLayouts; ++i) {
        const auto fields = text::split(lines[i], ",");
        if (fields.size() < kFields) {
            fail(failure::SubscriptOutOfRange, "インデックスが有効範囲にありません。 " +
                                                        file.filename().string() + " " +
                                                        std::to_string(i + 1) + " 行目");
            break;
        }
        Row row;
        for (std::size_t f = 0; f < kFields; ++f) {
            row[f] = fields[f];
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

std::string LayoutHistory::lineOf(const Row& row)
{
    std::string line;
    for (std::size_t f = 0; f < kFields; ++f) {
        if (f > 0) {
            line += ',';
        }
        line += row[f];
    }
    return line;
}

void LayoutHistory::save_rireki(const std::filesystem::path& file, const std::vector<Row>& rows)
{
    text::LineWriter out(file, text::LineWriter::Mode::ReplaceWhenDone);
    out.write(header());
    for (const Row& row : rows) {
        if (!text::trim(row[0]).empty()) {
            out.write(lineOf(row));
        }
    }
    out.close();
}

void LayoutHistory::addLayout(const std::filesystem::path& file, std::string_view line)
{
    std::vector<std::string> lines;
    if (std::filesystem::is_regular_file(file)) {
        lines = text::readRawLines(file);
    }
    if (lines.empty()) {
        text::LineWriter out(file);
        out.write(appendHeader());
        out.write(line);
        out.close();
        return;
    }

    const auto scratch = file.parent_path() / "Vornhale_rireki.001";
    std::filesystem::copy_file(file, scratch, std::filesystem::copy_options::overwrite_existing);
    // The kept lines go back byte for byte; the new one follows them even when the file
    // lacked its last line end.
    const std::vector<std::string> copied = text::readRawLines(scratch);
    text::LineWriter out(file, text::LineWriter::Mode::ReplaceWhenDone);
    out.write(appendHeader());
    for (std::size_t i = 1; i < copied.size(); ++i) {
        out.writeRaw(copied[i]);
    }
    out.write(line);
    out.close();
    std::error_code ec;
    std::filesystem::remove(scratch, ec);
}

} // namespace vornhale::settings
