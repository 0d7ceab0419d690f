#include "engine/RemarkLayout.h"

#include "settings/LayoutModel.h"
#include "text/Chars.h"

#include <algorithm>
#include <cmath>

namespace vornhale::engine {
namespace {

using settings::LayoutModel;

// The slot of the item whose internal name is `working`; -1 for "memo=" (whose slot is
// looked up under a name no caption has) and for unknown words.
int slotOfWorkingWord(std::string_view working)
{
    for (std::size_t i = 0; i < LayoutModel::kItems; ++i) {
        if (working == LayoutModel::internalName(i)) {
            return LayoutModel::slotOfCaption(LayoutModel::caption(i));
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

int widthNumber(std::string_view text)
{
    return asInteger(text::val(text));
}

} // namespace

std::string RemarkLayout::workingWord(std::string_view displayWord)
{
    return LayoutModel::internalNameOf(displayWord);
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
    return slotWidth(workingWord).value_or(0);
}

RemarkLayout RemarkLayout::fromOptions(const settings::Options& options)
{
    // The run's own copy of the keys: preparing the layouts rewrites them.
    settings::Options keys = options;
    LayoutModel model(keys);
    model.Set_Rmks_Len();
    model.Disp_Rmks_cfg_bas();
    model.Sort_2();
    model.Sort_3();
    model.Set_Rmks_Len();

    RemarkLayout layout;
    layout.m_slots = model.slots();
    layout.m_cfg = {keys.value("Rmks1_cfg"), keys.value("Rmks2_cfg")};
    layout.m_len = {keys.value("Rmks1_cfg_len"), keys.value("Rmks2_cfg_len")};

    for (int row = 1; row <= 2; ++row) {
        const auto r = static_cast<std::size_t>(row - 1);
        const auto& names = model.tableNames(row);
        const auto& widths = model.tableWidths(row);
        for (std::size_t i = 0; i < kCells; ++i) {
            if (!names[i].empty()) {
                layout.m_rows[r].push_back(workingWord(names[i]));
                layout.m_cellWidths[r].push_back(widthNumber(widths[i]));
            }
        }
        const auto& used = model.use(row).used;
        LayoutUse& u = layout.m_use;
        u.memo = u.memo || used[4];
        u.memoEquals = u.memoEquals || used[5];
        u.op = u.op || used[6];
        u.opPercent = u.opPercent || used[7];
        u.iota = u.iota || used[8];
        u.zone = u.zone || used[9];
        u.state = u.state || used[10];
        u.calls = u.calls || used[2];
        for (const std::string& caption : model.cells(row)) {
            layout.m_calls[r] += caption == "Calls" ? 1 : 0;
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
