#pragma once

#include "engine/RunContext.h"
#include "settings/Options.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::engine {

/// The two remark layouts as a run uses them, prepared from the four layout keys the way the
/// driver prepares them before the record loop: an empty key resets the layout to the
/// defaults, the keys are drawn into the twelve cells of each row and the width slots of the
/// items, each row is packed to the left (`Sort_2`, `Sort_3`), and the packed keys become the
/// per-cell tables (`Set_Rmks_Len`) whose non-empty cells, as working words, the remark
/// composition walks. Building never throws: keys of any length or content are taken as the
/// cells can hold them.
class RemarkLayout
{
public:
    /// Cells of one row.
    static constexpr std::size_t kCells = 12;
    /// Items of the palette.
    static constexpr std::size_t kItems = 14;

    /// The layouts of a run from `Rmks1_cfg`, `Rmks2_cfg`, `Rmks1_cfg_len`, `Rmks2_cfg_len`.
    static RemarkLayout fromOptions(const settings::Options& options);

    /// The packed rows as working words ("ZONE", "cont_name_h", "rmk1", …), in cell order,
    /// empty cells left out; at most twelve each.
    const std::vector<std::string>& row1() const { return m_rows[0]; }
    const std::vector<std::string>& row2() const { return m_rows[1]; }

    /// The packed row 1 or 2; any other number throws std::out_of_range.
    const std::vector<std::string>& row(int row) const { return m_rows.at(rowIndex(row)); }

    /// The widths of the packed rows, place by place with `row1()` and `row2()`, as the
    /// packing wrote them into the width keys and the per-cell tables took them: an item's
    /// slot, and for "memo=", which has no slot, the width of the item looked up just before
    /// it (the packing of row 1 runs before that of row 2; 0 when nothing was looked up).
    const std::vector<int>& cellWidths1() const { return m_cellWidths[0]; }
    const std::vector<int>& cellWidths2() const { return m_cellWidths[1]; }
    /// The widths of packed row 1 or 2; any other number throws std::out_of_range.
    const std::vector<int>& cellWidths(int row) const { return m_cellWidths.at(rowIndex(row)); }

    /// The layout keys as the packing leaves them (display words; twelve entries, each
    /// followed by a comma).
    const std::string& Rmks1_cfg() const { return m_cfg[0]; }
    const std::string& Rmks2_cfg() const { return m_cfg[1]; }
    const std::string& Rmks1_cfg_len() const { return m_len[0]; }
    const std::string& Rmks2_cfg_len() const { return m_len[1]; }

    /// The width slot of an item, by working word, as a number; nothing for a word without a
    /// slot: "memo=" (its slot is looked up under a name no caption has) and unknown words.
    std::optional<int> slotWidth(std::string_view workingWord) const;

    /// The width of an item's slot, by working word, as a number; 0 for a word without a
    /// slot. Negative and fractional texts are read as numbers are: rounded, and held within
    /// -32768..32767. The composition reads the widths of the cells instead
    /// (`cellWidths`), which differ from this only for "memo=".
    int widthOf(std::string_view workingWord) const;

    /// The sum of the fourteen width slots ("memo=" adding nothing); 0 means that no width
    /// is set and the remarks are trimmed.
    int total_width() const { return m_totalWidth; }
    bool anyWidth() const { return m_totalWidth != 0; }

    /// Which items the layouts use: an item is used when its caption stands in a cell of
    /// either row.
    LayoutUse use() const { return m_use; }

    /// How many cells of each row hold "Calls".
    int callsInRow1() const { return m_calls[0]; }
    int callsInRow2() const { return m_calls[1]; }

    /// The working word of a display word ("Zone" gives "ZONE"); other words unchanged.
    static std::string workingWord(std::string_view displayWord);

private:
    static std::size_t rowIndex(int row) { return row == 1 ? 0 : row == 2 ? 1 : 2; }

    std::array<std::vector<std::string>, 2> m_rows;
    std::array<std::vector<int>, 2> m_cellWidths;
    std::array<std::string, 2> m_cfg, m_len;
    std::array<std::string, kItems> m_slots; ///< width text of each item, by palette index
    int m_totalWidth = 0;
    LayoutUse m_use;
    std::array<int, 2> m_calls{};
};

} // namespace vornhale::engine
