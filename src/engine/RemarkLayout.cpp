#include "engine/RemarkLayout.h"

#include "text/Chars.h"

namespace vornhale::engine {
namespace {

struct Item
{
    const char* caption;
    const char* working;
    const char* slotName; ///< what the slot lookup compares with
};

// The palette, by index. The slot of "memo=" is looked up as "momo=", which no caption has,
// so that item never gets a width of its own.
constexpr Item kItems[14] = {
    {"MNG", "MNG", "MNG"},       {"$DX", "$DX", "$DX"},     {"Calls", "Calls", "Calls"},
    {"ｺﾝﾃｽﾄ", "cont_name_h", "ｺﾝﾃｽﾄ"}, {"memo", "memo", "memo"}, {"memo=", "memo=", "momo="},
    {"OP", "OP", "OP"},          {"OP %", "OP %", "OP %"},  {"IOTA", "IOTA", "IOTA"},
    {"Zone", "ZONE", "Zone"},    {"州名", "s_name", "州名"}, {"Rcvd", "Rcvd", "Rcvd"},
    {"Rmks1", "rmk1", "Rmks1"},  {"Rmks2", "rmk2", "Rmks2"},
};

int slotIndexOfCaption(std::string_view caption)
{
    for (int i = 0; i < 14; ++i) {
        if (caption == kItems[i].slotName) {
            return i;
        }
    }
    return -1;
}

int slotIndexOfWorking(std::string_view working)
{
    for (int i = 0; i < 14; ++i) {
        if (working == kItems[i].working) {
            return slotIndexOfCaption(kItems[i].caption);
        }
    }
    return -1;
}

// Twelve cells from a comma list, each trimmed; missing entries are empty.
std::array<std::string, RemarkLayout::kCells> cellsOf(const std::string& list)
{
    std::array<std::string, RemarkLayout::kCells> cells;
    const auto parts = text::split(list, ",");
    for (std::size_t i = 0; i < cells.size() && i < parts.size(); ++i) {
        cells[i] = std::string(text::trim(parts[i]));
    }
    return cells;
}

} // namespace

std::string RemarkLayout::workingWord(std::string_view displayWord)
{
    for (const Item& item : kItems) {
        if (displayWord == item.caption) {
            return item.working;
        }
    }
    return std::string(displayWord);
}

std::optional<int> RemarkLayout::slotWidth(std::string_view workingWord) const
{
    const int slot = slotIndexOfWorking(workingWord);
    if (slot < 0) {
        return std::nullopt;
    }
    return static_cast<int>(text::val(m_slots[static_cast<std::size_t>(slot)]));
}

RemarkLayout RemarkLayout::fromOptions(const settings::Options& options)
{
    std::array<std::string, 2> cfg = {options.value("Rmks1_cfg"), options.value("Rmks2_cfg")};
    std::array<std::string, 2> len = {options.value("Rmks1_cfg_len"), options.value("Rmks2_cfg_len")};
    if (cfg[0].empty() || cfg[1].empty() || len[0].empty()) {
        cfg = {"MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,", "Rcvd,memo=,,,,,,,,,,,"};
        len = {"0,0,0,0,0,0,0,0,0,0,0,0,", "0,0,0,0,0,0,0,0,0,0,0,0,"};
    }
    if (len[1].empty()) {
        len[1] = "0,0,0,0,0,0,0,0,0,0,0,0,";
    }

    RemarkLayout layout;
    // Draw both rows into the cells; each width goes to the slot of its cell's item.
    std::array<std::array<std::string, kCells>, 2> cells;
    for (std::size_t row = 0; row < 2; ++row) {
        cells[row] = cellsOf(cfg[row]);
        const auto widths = cellsOf(len[row]);
        for (std::size_t i = 0; i < kCells; ++i) {
            if (const int slot = slotIndexOfCaption(cells[row][i]); slot >= 0) {
                layout.m_slots[static_cast<std::size_t>(slot)] = widths[i];
            }
        }
    }

    // Pack each row to the left, rebuilding its keys from the slots. A caption without a slot
    // writes the width that was looked up last.
    std::string lastWidth = "0";
    for (std::size_t row = 0; row < 2; ++row) {
        std::string names, widths;
        std::size_t used = 0;
        for (const std::string& caption : cells[row]) {
            if (caption.empty()) {
                continue;
            }
            if (const int slot = slotIndexOfCaption(caption); slot >= 0) {
                lastWidth = layout.m_slots[static_cast<std::size_t>(slot)];
            }
            names += caption + ",";
            widths += lastWidth + ",";
            layout.m_rows[row].push_back(workingWord(caption));
            ++used;
        }
        for (; used < kCells; ++used) {
            names += ",";
            widths += "0,";
        }
        if (text::trim(names).empty()) {
            names = ",,,,,,,";
        }
        layout.m_cfg[row] = names;
        layout.m_len[row] = widths;
    }

    for (const std::string& slot : layout.m_slots) {
        layout.m_totalWidth += static_cast<int>(text::val(slot));
    }
    for (std::size_t row = 0; row < 2; ++row) {
        for (const std::string& caption : cells[row]) {
            LayoutUse& u = layout.m_use;
            u.memo |= caption == "memo";
            u.memo_eq |= caption == "memo=";
            u.op |= caption == "OP";
            u.op_pct |= caption == "OP %";
            u.iota |= caption == "IOTA";
            u.zone |= caption == "Zone";
            u.state |= caption == "州名";
            u.calls |= caption == "Calls";
            layout.m_calls[row] += caption == "Calls" ? 1 : 0;
        }
    }
    return layout;
}

} // namespace vornhale::engine
