#include "tools/ResultGrid.h"

#include "failure/Failure.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisText.h"

#include <charconv>

namespace vornhale::tools {
namespace {

constexpr std::string_view kHeaderList =
    "No.,Call,Date,Time,His,My,Freq,Mode,Code,G・L,QSL,His Name,QTH,Remarks1,Remarks2,Flag";
constexpr std::string_view kWidthList =
    "600,1300,850,700,400,400,800,450,900,900,550,1800,3700,7100,7100,400";

std::vector<std::string_view> splitCommas(std::string_view list)
{
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = list.find(',', start);
        parts.push_back(
            list.substr(start, comma == std::string_view::npos ? comma : comma - start));
        if (comma == std::string_view::npos) {
            return parts;
        }
        start = comma + 1;
    }
}

std::string_view trimmed(std::string_view s)
{
    while (!s.empty() && s.front() == ' ') {
        s.remove_prefix(1);
    }
    while (!s.empty() && s.back() == ' ') {
        s.remove_suffix(1);
    }
    return s;
}

// A piece of the No-QSL summary, or blanks of its width where the setting is off, so that the
// pieces after it keep their places on the label line.
std::string pieceOrBlanks(bool on, std::string_view piece)
{
    return on ? std::string(piece) : std::string(text::Len_sjis(piece), ' ');
}

} // namespace

const GridForm& GridForm::hamlog()
{
    static const GridForm f{"Grid4frm", "Grid4", "get_ColWidth_Grid4", "Grid4_Check1"};
    return f;
}

const GridForm& GridForm::contest()
{
    static const GridForm f{"Grid5frm", "Grid5", "get_ColWidth_Grid5", "Grid5_Check1"};
    return f;
}

const std::array<std::string, ResultGrid::kColumns>& ResultGrid::headers()
{
    static const std::array<std::string, kColumns> heads = [] {
        std::array<std::string, kColumns> h;
        const auto parts = splitCommas(kHeaderList);
        for (int i = 0; i < kColumns; ++i) {
            h[static_cast<std::size_t>(i)] = std::string(parts[static_cast<std::size_t>(i)]);
        }
        return h;
    }();
    return heads;
}

std::string_view ResultGrid::initialWidthList()
{
    return kWidthList;
}

const std::array<int, ResultGrid::kColumns>& ResultGrid::initialWidths()
{
    static const std::array<int, kColumns> widths = [] {
        std::array<int, kColumns> w{};
        const auto parts = splitCommas(kWidthList);
        for (int i = 0; i < kColumns; ++i) {
            const std::string_view p = parts[static_cast<std::size_t>(i)];
            std::from_chars(p.data(), p.data() + p.size(), w[static_cast<std::size_t>(i)]);
        }
        return w;
    }();
    return widths;
}

std::array<int, ResultGrid::kColumns> ResultGrid::parseWidths(std::string_view list)
{
    std::array<int, kColumns> widths = initialWidths();
    const auto parts = splitCommas(list);
    for (std::size_t i = 0; i < parts.size() && i < widths.size(); ++i) {
        const std::string_view p = trimmed(parts[i]);
        int value = 0;
        const auto [end, ec] = std::from_chars(p.data(), p.data() + p.size(), value);
        if (ec == std::errc() && end == p.data() + p.size() && value > 0) {
            widths[i] = value;
        }
    }
    return widths;
}

std::string ResultGrid::joinWidths(const std::array<int, kColumns>& widths)
{
    std::string list;
    for (const int w : widths) {
        if (!list.empty()) {
            list += ',';
        }
        list += std::to_string(w);
    }
    return list;
}

ResultGrid::WidthChoice ResultGrid::widthsAtLoad(settings::Options& options, const GridForm& form)
{
    if (options.value(form.widthKey).empty()) {
        options.set(form.widthKey, std::string(kWidthList));
    }
    const std::string_view tick = trimmed(options.value(form.tickKey));
    WidthChoice choice;
    choice.Check1 = !(tick.empty() || tick == "0");
    choice.widths = widthsFor(choice.Check1, options, form);
    return choice;
}

std::array<int, ResultGrid::kColumns>
ResultGrid::widthsFor(bool Check1, const settings::Options& options, const GridForm& form)
{
    return Check1 ? initialWidths() : parseWidths(options.value(form.widthKey));
}

void ResultGrid::storeWidths(settings::Options& options, const GridForm& form,
                             const std::array<int, kColumns>& widths, bool Check1)
{
    options.set(form.widthKey, joinWidths(widths));
    options.set(form.tickKey, Check1 ? "1" : "0");
}

void ResultGrid::DataRead(const std::filesystem::path& file, base::Trace& trace)
{
    m_rows.clear();
    m_cut = false;
    text::RecordReader reader(file);
    while (!reader.atEnd()) {
        if (rows() == kMaxRows) {
            // The table has room for 5000 rows: the read stops at the next one, and the
            // grid shows what came before it.
            m_cut = true;
            trace.line("エラー発生 ：　" + std::to_string(failure::SubscriptOutOfRange));
            trace.line("エラー内容 ：　" + file.string() + " の " + std::to_string(kMaxRows) +
                       " 行を超える行は読めません。");
            return;
        }
        std::array<std::string, kFields> row;
        for (std::string& field : row) {
            if (reader.atEnd()) {
                break;
            }
            field = reader.field();
        }
        m_rows.push_back(std::move(row));
    }
}

void ResultGrid::cmdSave(const std::filesystem::path& file) const
{
    text::LineWriter out(file, text::LineWriter::Mode::ReplaceWhenDone);
    for (const auto& row : m_rows) {
        out.write(text::formatRecord(row));
    }
    out.close();
}

std::string ResultGrid::cell(int row, int col) const
{
    if (row < 1 || row > rows() || col < 0 || col >= kColumns) {
        return {};
    }
    if (col == 0) {
        return std::to_string(row);
    }
    return m_rows[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(col - 1)];
}

void ResultGrid::setCell(int row, int col, std::string text)
{
    if (row < 1 || row > rows() || col < 1 || col >= kColumns) {
        return;
    }
    m_rows[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(col - 1)] = std::move(text);
}

GridCell ResultGrid::afterConfirm(GridCell at, bool downward, int last)
{
    if (downward) {
        if (at.row < last) {
            ++at.row;
        }
        return at;
    }
    if (at.col < kColumns - 1) {
        ++at.col;
    } else if (at.row < last) {
        ++at.row;
        at.col = 1;
    }
    return at;
}

GridCell ResultGrid::afterArrow(GridCell at, int step, int last)
{
    const int row = at.row + step;
    if (row >= 1 && row <= last) {
        at.row = row;
    }
    return at;
}

GridCell ResultGrid::cellOn(GridCell at, int last)
{
    return afterConfirm(at, false, last);
}

GridCell ResultGrid::cellBack(GridCell at)
{
    if (at.col > 1) {
        --at.col;
    } else if (at.row > 1) {
        --at.row;
        at.col = 1;
    }
    return at;
}

char32_t ResultGrid::typed(char32_t ch)
{
    if (ch >= U'a' && ch <= U'z') {
        return ch - U'a' + U'A';
    }
    if (ch >= U'ａ' && ch <= U'ｚ') {
        return ch - U'ａ' + U'Ａ';
    }
    return ch;
}

std::string ResultGrid::noQslSummary(const settings::Options& options)
{
    static constexpr std::array<std::string_view, 4> kMarks = {
        "[ この機能は無視する ]　", "[ Q S O  済み ]　", "[ QSL発行済み ]　", "[ QSL受領済み ]　"};
    std::string s;
    const int member = options.member("Option04");
    if (member >= 0 && member < static_cast<int>(kMarks.size())) {
        s += kMarks[static_cast<std::size_t>(member)];
    }
    s += pieceOrBlanks(options.tick("Check04"), "[ 同ﾊﾞﾝﾄﾞ ]　");
    s += pieceOrBlanks(options.tick("Check05"), "[ 同ﾓｰﾄﾞ ]　");
    if (options.tick("Check3")) {
        s += "[ N --> J ]　";
    }
    if (options.tick("Check4")) {
        s += "[ J --> N ]　";
    }
    if (!options.tick("Check3") && !options.tick("Check4")) {
        s += pieceOrBlanks(false, "[ N --> J ]　");
    }
    s += pieceOrBlanks(options.tick("Check9"), "[ QSL MNG がいてもＮ ]　");
    s += pieceOrBlanks(options.tick("Check09"), "[ 指定ctyはNo QSL ]　");
    if (options.tick("Check10")) {
        s += "[ JA のｸﾗﾌﾞ局はNo QSL ]";
    }
    return s;
}

} // namespace vornhale::tools
