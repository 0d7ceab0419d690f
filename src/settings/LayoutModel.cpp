#include "settings/LayoutModel.h"

#include "base/Dialogs.h"
#include "failure/Failure.h"
#include "base/RunObserver.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <stdexcept>
#include <system_error>
#include <vector>

namespace vornhale::settings {
namespace {

struct Item
{
    const char* caption;
    const char* internal;
    const char* slotName; ///< what the lookups between item and slot compare with
};

// The slot of "memo=" has always been looked up as "momo=", which no caption has: that item
// never gets a width of its own and writes whatever width was looked up before it. Layouts in
// use depend on this, so it stays.
constexpr Item kPalette[LayoutModel::kItems] = {
    {"MNG", "MNG", "MNG"},       {"$DX", "$DX", "$DX"},
    {"Calls", "Calls", "Calls"}, {"ｺﾝﾃｽﾄ", "cont_name_h", "ｺﾝﾃｽﾄ"},
    {"memo", "memo", "memo"},    {"memo=", "memo=", "momo="},
    {"OP", "OP", "OP"},          {"OP %", "OP %", "OP %"},
    {"IOTA", "IOTA", "IOTA"},    {"Zone", "ZONE", "Zone"},
    {"州名", "s_name", "州名"},  {"Rcvd", "Rcvd", "Rcvd"},
    {"Rmks1", "rmk1", "Rmks1"},  {"Rmks2", "rmk2", "Rmks2"},
};

constexpr std::string_view kKeyNames[LayoutModel::kRows] = {"Rmks1_cfg", "Rmks2_cfg"};
constexpr std::string_view kKeyWidths[LayoutModel::kRows] = {"Rmks1_cfg_len", "Rmks2_cfg_len"};

// The first twelve entries of a comma list, each trimmed; entries the list lacks are empty.
LayoutModel::Cells cellsOf(std::string_view list)
{
    LayoutModel::Cells cells;
    const auto parts = text::split(list, ",");
    for (std::size_t i = 0; i < cells.size() && i < parts.size(); ++i) {
        cells[i] = std::string(text::trim(parts[i]));
    }
    return cells;
}

} // namespace

LayoutModel::LayoutModel(Options& options, SettingsFiles* files, base::RunObserver* observer)
    : m_options(options), m_files(files), m_observer(observer)
{
}

std::string_view LayoutModel::caption(std::size_t item)
{
    return kPalette[item].caption;
}
std::string_view LayoutModel::internalName(std::size_t item)
{
    return kPalette[item].internal;
}

int LayoutModel::itemOfCaption(std::string_view caption)
{
    for (std::size_t i = 0; i < kItems; ++i) {
        if (caption == kPalette[i].caption) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int LayoutModel::slotOfCaption(std::string_view caption)
{
    for (std::size_t i = 0; i < kItems; ++i) {
        if (caption == kPalette[i].slotName) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

std::string LayoutModel::internalNameOf(std::string_view caption)
{
    const int item = itemOfCaption(caption);
    return item < 0 ? std::string(caption) : std::string(kPalette[item].internal);
}

std::size_t LayoutModel::rowIndex(int row)
{
    if (row != 1 && row != 2) {
        throw std::out_of_range("remark row must be 1 or 2");
    }
    return static_cast<std::size_t>(row - 1);
}

const std::string& LayoutModel::cell(int row, std::size_t index) const
{
    return m_cells[rowIndex(row)].at(index);
}

void LayoutModel::setCell(int row, std::size_t index, std::string caption)
{
    const std::size_t r = rowIndex(row);
    if (m_cells[r].at(index) != caption) {
        m_red[r][index] = false;
    }
    m_cells[r][index] = std::move(caption);
}

void LayoutModel::refreshCellColours()
{
    lblRmks1_use_name_Check();
    lblRmks2_use_name_Check();
}

void LayoutModel::markCellRed(int row, int index)
{
    if ((row == 1 || row == 2) && index >= 0 && static_cast<std::size_t>(index) < kCells) {
        m_red[rowIndex(row)][static_cast<std::size_t>(index)] = true;
    }
}

bool LayoutModel::highlighted(std::size_t item) const
{
    if (item + 1 >= kItems) {
        return false;
    }
    return m_use[0].used[item] || m_use[1].used[item];
}

// --- Drawing -----------------------------------------------------------------------------

void LayoutModel::Disp_Rmks_cfg_bas()
{
    if (m_options.value("Rmks1_cfg_len").empty()) {
        m_options.set("Rmks1_cfg_len", std::string(kZeroWidths));
    }
    for (std::size_t r = 0; r < kRows; ++r) {
        const Cells names = cellsOf(m_options.value(kKeyNames[r]));
        const Cells widths = cellsOf(m_options.value(kKeyWidths[r]));
        for (std::size_t i = 0; i < kCells; ++i) {
            setCell(static_cast<int>(r + 1), i, names[i]);
            // An item standing twice keeps the width of its last cell.
            if (const int s = slotOfCaption(names[i]); s >= 0) {
                m_slots[static_cast<std::size_t>(s)] = widths[i];
            }
        }
    }
    lblRmks1_use_name_Check();
    lblRmks2_use_name_Check();
}

void LayoutModel::lblRmks1_flag_Clear()
{
    m_use[0] = RowUse{};
}
void LayoutModel::lblRmks2_flag_Clear()
{
    m_use[1] = RowUse{};
}

void LayoutModel::checkRow(std::size_t r)
{
    RowUse& use = m_use[r];
    use = RowUse{};
    for (std::size_t c = 0; c < kCells; ++c) {
        const int item = itemOfCaption(m_cells[r][c]);
        if (item < 0) {
            continue;
        }
        const auto i = static_cast<std::size_t>(item);
        use.used[i] = true;
        use.name[c] = kPalette[i].internal;
        use.index[i] = item;
    }
}

void LayoutModel::lblRmks1_use_name_Check()
{
    checkRow(0);
}
void LayoutModel::lblRmks2_use_name_Check()
{
    checkRow(1);
}

// --- Dragging ----------------------------------------------------------------------------

void LayoutModel::dropFromPalette(std::size_t item, int row, std::size_t index)
{
    if (item >= kItems || index >= kCells || (row != 1 && row != 2)) {
        return;
    }
    setCell(row, index, kPalette[item].caption);
    afterDrop(rowIndex(row), index);
}

void LayoutModel::dropFromCell(int fromRow, std::size_t fromIndex, int row, std::size_t index)
{
    if (fromIndex >= kCells || index >= kCells || (row != 1 && row != 2) ||
        (fromRow != 1 && fromRow != 2)) {
        return;
    }
    const std::string caption = cell(fromRow, fromIndex);
    setCell(row, index, caption);
    // The row marker of the drag says which cell to empty; a cell dropped on itself is
    // emptied too, as it always was.
    setCell(fromRow, fromIndex, "");
    afterDrop(rowIndex(row), index);
}

void LayoutModel::afterDrop(std::size_t r, std::size_t index)
{
    if (r == 0) {
        lblRmks1_Check(index);
    } else {
        lblRmks2_Check(index);
    }
    lblRmks1_use_name_Check();
    lblRmks2_use_name_Check();
    Set_Rmks_Len();
    if (m_files != nullptr) {
        m_files->ini_write_old();
    }
}

void LayoutModel::lblRmks1_Check(std::size_t index)
{
    checkDrop(0, index);
}
void LayoutModel::lblRmks2_Check(std::size_t index)
{
    checkDrop(1, index);
}

void LayoutModel::checkDrop(std::size_t r, std::size_t index)
{
    if (index >= kCells) {
        return;
    }
    const std::string t = m_cells[r][index];
    auto emptyWhere = [this](std::string_view caption, std::size_t keepRow, std::size_t keepCell) {
        for (std::size_t rr = 0; rr < kRows; ++rr) {
            for (std::size_t c = 0; c < kCells; ++c) {
                if ((rr != keepRow || c != keepCell) && m_cells[rr][c] == caption) {
                    setCell(static_cast<int>(rr + 1), c, "");
                }
            }
        }
    };
    constexpr std::size_t kNone = kCells;
    emptyWhere(t, r, index);
    if (t == "memo") {
        emptyWhere("memo=", kRows, kNone);
    } else if (t == "memo=") {
        emptyWhere("memo", kRows, kNone);
    } else if (t == "OP") {
        emptyWhere("OP %", kRows, kNone);
    } else if (t == "OP %") {
        emptyWhere("OP", kRows, kNone);
    }
    if (t == "州名" && m_options.tick("Check5")) {
        m_red[r][index] = true;
        m_status = std::string(kStateOrProvince);
        if (m_observer != nullptr) {
            m_observer->status(m_status, base::Colour::Red);
        }
    }
}

// --- Sorting and restoring ---------------------------------------------------------------

const std::string& LayoutModel::lookUpWidth(std::string_view caption)
{
    if (const int s = slotOfCaption(caption); s >= 0) {
        m_lastWidth = m_slots[static_cast<std::size_t>(s)];
    }
    return m_lastWidth;
}

void LayoutModel::sortRow(std::size_t r)
{
    if (!m_sorted[r]) {
        m_saved[r] = m_cells[r];
        m_hasSaved[r] = true;
    }
    m_options.set(kKeyNames[r], "");
    m_options.set(kKeyWidths[r], "");

    std::vector<std::string> filled;
    for (const std::string& c : m_cells[r]) {
        if (!c.empty()) {
            filled.push_back(c);
        }
    }
    std::string names, widths;
    for (std::size_t i = 0; i < filled.size(); ++i) {
        setCell(static_cast<int>(r + 1), i, filled[i]);
        names += filled[i] + ",";
        widths += lookUpWidth(filled[i]) + ",";
    }
    for (std::size_t i = filled.size(); i < kCells; ++i) {
        setCell(static_cast<int>(r + 1), i, "");
        names += ",";
        widths += "0,";
    }
    if (text::trim(names).empty()) {
        names = ",,,,,,,";
    }
    m_options.set(kKeyNames[r], std::move(names));
    m_options.set(kKeyWidths[r], std::move(widths));
    m_sorted[r] = true;
    Set_Rmks_Len();
}

void LayoutModel::Sort_2()
{
    sortRow(0);
}
void LayoutModel::Sort_3()
{
    sortRow(1);
}

void LayoutModel::Rmks_Sort()
{
    if (!m_sorted[0]) {
        Sort_2();
    }
    if (!m_sorted[1]) {
        Sort_3();
    }
}

void LayoutModel::redoRow(std::size_t r)
{
    if (!m_hasSaved[r]) {
        return;
    }
    for (std::size_t i = 0; i < kCells; ++i) {
        setCell(static_cast<int>(r + 1), i, m_saved[r][i]);
    }
    m_sorted[r] = false;
    checkRow(r);
    Set_Rmks_Len();
}

void LayoutModel::ReDo_2()
{
    redoRow(0);
}
void LayoutModel::ReDo_3()
{
    redoRow(1);
}

// --- Keys and tables ---------------------------------------------------------------------

void LayoutModel::resetWhenEmpty(std::string_view firstWidths)
{
    if (m_options.value("Rmks1_cfg").empty() || m_options.value("Rmks2_cfg").empty() ||
        m_options.value("Rmks1_cfg_len").empty()) {
        m_options.set("Rmks1_cfg", std::string(kResetRmks1));
        m_options.set("Rmks2_cfg", std::string(kResetRmks2));
        m_options.set("Rmks1_cfg_len", std::string(firstWidths));
        m_options.set("Rmks2_cfg_len", std::string(kZeroWidths));
    }
}

void LayoutModel::Set_Rmks_Len()
{
    resetWhenEmpty(kZeroWidths);
    for (std::size_t r = 0; r < kRows; ++r) {
        m_tableNames[r] = cellsOf(m_options.value(kKeyNames[r]));
        m_tableWidths[r] = cellsOf(m_options.value(kKeyWidths[r]));
    }
}

std::string LayoutModel::dragWidth(std::string_view dragCaption)
{
    resetWhenEmpty("6,0,0,0,0,0,0,0,0,0,0,0,");
    for (std::size_t r = 0; r < kRows; ++r) {
        for (std::size_t c = 0; c < kCells; ++c) {
            if (m_cells[r][c] == dragCaption) {
                m_lastWidth = cellsOf(m_options.value(kKeyWidths[r]))[c];
                return m_lastWidth;
            }
        }
    }
    return {};
}

std::string LayoutModel::widthsFromCells(int row, std::size_t count)
{
    const std::size_t r = rowIndex(row);
    std::string widths;
    for (std::size_t c = 0; c < count && c < kCells; ++c) {
        const std::string& caption = m_cells[r][c];
        widths += (caption.empty() ? std::string("0") : lookUpWidth(caption)) + ",";
    }
    return widths;
}

std::string LayoutModel::namesFromCells(int row, std::size_t count) const
{
    const std::size_t r = rowIndex(row);
    std::string names;
    for (std::size_t c = 0; c < count && c < kCells; ++c) {
        names += m_cells[r][c] + ",";
    }
    return names;
}

bool LayoutModel::cmdSet_Len_OK_Click(const std::filesystem::path& folder, base::Dialogs& dialogs)
{
    // The file has room for nine cells of each row only.
    constexpr std::size_t kFileCells = 9;
    for (std::size_t r = 0; r < kRows; ++r) {
        std::string names = namesFromCells(static_cast<int>(r + 1), kFileCells);
        if (text::trim(names).empty()) {
            names = ",,,,,,,";
        }
        m_options.set(kKeyNames[r], std::move(names));
        m_options.set(kKeyWidths[r], widthsFromCells(static_cast<int>(r + 1), kFileCells));
    }

    const auto cfg = folder / "Vornhale.cfg";
    const auto scratch = folder / "Vornhale.100";
    constexpr std::size_t kOwnLines = 21;
    std::vector<std::string> own;
    try {
        auto lines = text::readRawLines(cfg);
        if (lines.size() < kOwnLines) {
            throw failure::Failure(failure::InputPastEnd, "Vornhale.cfg");
        }
        lines.resize(kOwnLines);
        own = std::move(lines);

        text::LineWriter out(scratch);
        for (const std::string& line : own) {
            out.writeRaw(line);
        }
        out.write("'" + m_options.value("Rmks1_cfg"));
        out.write("'" + m_options.value("Rmks2_cfg"));
        out.write("'" + m_options.value("Rmks1_cfg_len"));
        out.write("'" + m_options.value("Rmks2_cfg_len"));
        out.write("end of file");
        out.close();
        std::filesystem::copy_file(scratch, cfg, std::filesystem::copy_options::overwrite_existing);
        std::filesystem::remove(scratch);
    } catch (const std::exception&) {
        std::error_code ec;
        std::filesystem::remove(scratch, ec);
        dialogs.message("Vornhale", "Vornhale.ｃｆｇ が不良です。\n",
                        base::Dialogs::Icon::Exclamation);
        return false;
    }
    return true;
}

} // namespace vornhale::settings
