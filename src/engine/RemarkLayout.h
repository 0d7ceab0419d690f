#pragma once

#include "engine/RunContext.h"
#include "settings/Options.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::engine {

/// The two remark layouts as a run uses them, prepared from the four layout keys the way the
/// driver prepares them before the record loop: an empty key resets the layout to the
/// defaults, the keys are drawn into the twelve cells of each row and the width slots of the
/// items, each row is packed to the left, and the packed rows become the lists of working
/// words that the remark composition walks.
class RemarkLayout
{
public:
    static constexpr std::size_t kCells = 12;

    static RemarkLayout fromOptions(const settings::Options& options);

    /// The packed rows as working words ("ZONE", "cont_name_h", "rmk1", …), empty cells left out.
    const std::vector<std::string>& row1() const { return m_rows[0]; }
    const std::vector<std::string>& row2() const { return m_rows[1]; }

    /// The packed layout keys, as the sort of each row leaves them.
    const std::string& Rmks1_cfg() const { return m_cfg[0]; }
    const std::string& Rmks2_cfg() const { return m_cfg[1]; }
    const std::string& Rmks1_cfg_len() const { return m_len[0]; }
    const std::string& Rmks2_cfg_len() const { return m_len[1]; }

    /// The width slot of an item, by working word; nothing for a word that has no slot
    /// ("memo=", whose slot lookup never matches, and unknown words).
    std::optional<int> slotWidth(std::string_view workingWord) const;
    /// The width of an item by working word, 0 when it has no slot.
    int widthOf(std::string_view workingWord) const { return slotWidth(workingWord).value_or(0); }
    /// The sum of the fourteen width slots.
    int total_width() const { return m_totalWidth; }
    bool anyWidth() const { return m_totalWidth != 0; }

    /// Which items the layouts use.
    LayoutUse use() const { return m_use; }
    /// How many cells of each row hold "Calls".
    int callsInRow1() const { return m_calls[0]; }
    int callsInRow2() const { return m_calls[1]; }

    /// The working word of a display word ("Zone" → "ZONE"); other words unchanged.
    static std::string workingWord(std::string_view displayWord);

private:
    std::array<std::vector<std::string>, 2> m_rows;
    std::array<std::string, 2> m_cfg, m_len;
    std::array<std::string, 14> m_slots; ///< width text of each item, by palette index
    int m_totalWidth = 0;
    LayoutUse m_use;
    std::array<int, 2> m_calls{};
};

} // namespace vornhale::engine
