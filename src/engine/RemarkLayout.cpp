#include "engine/RemarkLayout.h"

#include "text/Chars.h"

#include <algorithm>
#include <cmath>

namespace vornhale::engine {
namespace {

struct Item
{
    const char* caption;
    const char* working;
    const char* slotName; ///< what the lookups between item and slot compare with
};

// The palette, by index. The slot of "memo=" is looked up as "momo=", which no caption has:
// that item never gets a width of its own, and a lookup for it leaves the width looked up
// before it in place.
constexpr Item kPalette[RemarkLayout::kItems] = {
    {"MNG", "MNG", "MNG"},
    {"$DX", "$DX", "$DX"},
    {"Calls", "Calls", "Calls"},
    {"ｺﾝﾃｽﾄ", "cont_name_h", "ｺﾝﾃｽﾄ"},
    {"memo", "memo", "memo"},
    {"memo=", "memo=", "momo="},
    {"OP", "OP", "OP"},
    {"OP %", "OP %", "OP %"},
    {"IOTA", "IOTA", "IOTA"},
    {"Zone", "ZONE", "Zone"},
    {"州名", "s_name", "州名"},
    {"Rcvd", "Rcvd", "Rcvd"},
    {"Rmks1", "rmk1", "Rmks1"},
    {"Rmks2", "rmk2", "Rmks2"},
};

constexpr const char* kResetRmks1 = "MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,";
constexpr const char* kResetRmks2 = "Rcvd,memo=,,,,,,,,,,,";
constexpr const char* kZeroWidths = "0,0,0,0,0,0,0,0,0,0,0,0,";

using Cells = std::array<std::string, RemarkLayout::kCells>;

int slotOfCaption(std::string_view caption)
{
    for (std::size_t i = 0; i < RemarkLayout::kItems; ++i) {
        if (caption == kPalette[i].slotName) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int slotOfWorkingWord(std::string_view working)
{
    for (const Item& item : kPalette) {
        if (working == item.working) {
            return slotOfCaption(item.caption);
        }
    }
    return -1;
}

// A number as a 16-bit integer takes it: rounded half to even, and held within its range
// rather than overflowing, so that a hand-edited key cannot stop a run.
int asInteger(double value)
{
    value = std::clamp(value, -32768.0, 32767.0);
    return static_cast<int>(std::nearbyint(value));
}

int widthNumber(std::string_view text) { return asInteger(text::val(text)); }

// The first twelve entries of a comma list, each trimmed; entries the list lacks are empty.
Cells cellsOf(std::string_view list)
{
    Cells cells;
    const auto parts = text::split(list, ",");
    for (std::size_t i = 0; i < cells.size() && i < parts.size(); ++i) {
        cells[i] = std::string(text::trim(parts[i]));
    }
    return cells;
}

} // namespace

std::string RemarkLayout::workingWord(std::string_view displayWord)
{
    for (const Item& item : kPalette) {
        if (displayWord == item.caption) {
            return item.working;
        }
    }
    return std::string(displayWord);
}

std::optional<int> RemarkLayout::slotWidth(std::string_view workingWord) const
{
    const int slot = slotOfWorkingWord(workingWord);
    if (slot < 0) {
        return std::nullopt;
    }
    return widthNumber(m_slots[static_cast<std::size_t>(slot)]);
}

int RemarkLayout::widthOf(std::string_view workingWord) const
{
    if (const auto slot = slotWidth(workingWord)) {
        return *slot;
    }
    for (std::size_t row = 0; row < 2; ++row) {
        const auto& words = m_rows[row];
        const auto at = std::find(words.begin(), words.end(), workingWord);
        if (at != words.end()) {
            return m_cellWidths[row][static_cast<std::size_t>(at - words.begin())];
        }
    }
    return 0;
}

RemarkLayout RemarkLayout::fromOptions(const settings::Options& options)
{
    std::array<std::string, 2> cfg = {options.value("Rmks1_cfg"), options.value("Rmks2_cfg")};
    std::array<std::string, 2> len = {options.value("Rmks1_cfg_len"),
                                      options.value("Rmks2_cfg_len")};
    // The reset of `Set_Rmks_Len`: an empty second widths list alone does not trigger it.
    if (cfg[0].empty() || cfg[1].empty() || len[0].empty()) {
        cfg = {kResetRmks1, kResetRmks2};
        len = {kZeroWidths, kZeroWidths};
    }

    RemarkLayout layout;

    // Drawing into the cells: each cell's width goes to the slot of the item in it, so an
    // item standing twice keeps the width of its last cell.
    std::array<Cells, 2> cells;
    for (std::size_t row = 0; row < 2; ++row) {
        cells[row] = cellsOf(cfg[row]);
        const Cells widths = cellsOf(len[row]);
        for (std::size_t i = 0; i < kCells; ++i) {
            if (const int slot = slotOfCaption(cells[row][i]); slot >= 0) {
                layout.m_slots[static_cast<std::size_t>(slot)] = widths[i];
            }
        }
    }

    for (std::size_t row = 0; row < 2; ++row) {
        LayoutUse& u = layout.m_use;
        for (const std::string& caption : cells[row]) {
            u.memo = u.memo || caption == "memo";
            u.memo_eq = u.memo_eq || caption == "memo=";
            u.op = u.op || caption == "OP";
            u.op_pct = u.op_pct || caption == "OP %";
            u.iota = u.iota || caption == "IOTA";
            u.zone = u.zone || caption == "Zone";
            u.state = u.state || caption == "州名";
            u.calls = u.calls || caption == "Calls";
            layout.m_calls[row] += caption == "Calls" ? 1 : 0;
        }
    }

    // `Sort_2`, `Sort_3`: the filled cells move left and the keys are rebuilt, each width
    // from its item's slot. A caption without a slot writes the width looked up last, which
    // carries from the first row into the second.
    std::string lastWidth = "0";
    for (std::size_t row = 0; row < 2; ++row) {
        std::string names, widths;
        std::size_t used = 0;
        for (const std::string& caption : cells[row]) {
            if (caption.empty()) {
                continue;
            }
            if (const int slot = slotOfCaption(caption); slot >= 0) {
                lastWidth = layout.m_slots[static_cast<std::size_t>(slot)];
            }
            names += caption + ",";
            widths += lastWidth + ",";
            ++used;
        }
        for (; used < kCells; ++used) {
            names += ",";
            widths += "0,";
        }
        if (text::trim(names).empty()) {
            names = ",,,,,,,";
        }
        layout.m_cfg[row] = std::move(names);
        layout.m_len[row] = std::move(widths);
    }

    // `Set_Rmks_Len`: the packed keys become the per-cell tables of the composition.
    for (std::size_t row = 0; row < 2; ++row) {
        const Cells names = cellsOf(layout.m_cfg[row]);
        const Cells widths = cellsOf(layout.m_len[row]);
        for (std::size_t i = 0; i < kCells; ++i) {
            if (!names[i].empty()) {
                layout.m_rows[row].push_back(workingWord(names[i]));
                layout.m_cellWidths[row].push_back(widthNumber(widths[i]));
            }
        }
    }

    // The sum is held as a 16-bit integer after each addition.
    double sum = 0;
    for (const std::string& slot : layout.m_slots) {
        sum = asInteger(sum + text::val(slot));
    }
    layout.m_totalWidth = static_cast<int>(sum);
    return layout;
}

} // namespace vornhale::engine
