#pragma once

#include "settings/LayoutHistory.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vornhale::base {
class Trace;
} // namespace vornhale::base

namespace vornhale::settings {

class LayoutModel;

/// The layout-history dialog `frmRmk_Rireki_sel` without its window: three parallel lists
/// (names, row 1, row 2) over the rows of `Vornhale_Rireki.cfg`, one selection for all three.
class RirekiSelModel
{
public:
    /// Characters each item takes in `List2` and `List3`.
    static constexpr std::size_t kItemWidth = 6;

    /// `layout` is the main window's layout; `folder` the program folder. Both must outlive
    /// the model; `trace` may be null.
    RirekiSelModel(std::filesystem::path folder, LayoutModel& layout, base::Trace* trace = nullptr);

    /// `Form_Load`: the marker `Vornhale.001`, the table and the three lists.
    void Form_Load();

    const std::vector<LayoutHistory::Row>& table() const { return m_rows; }
    /// What stopped the reading, empty when nothing did.
    const std::string& loadError() const { return m_error; }
    const std::vector<std::string>& list1() const { return m_list1; }
    const std::vector<std::string>& list2() const { return m_list2; }
    const std::vector<std::string>& list3() const { return m_list3; }
    std::optional<std::size_t> selected() const { return m_selected; }
    /// `Label5` to `Label8` (row 1, row 2, widths 1, widths 2) and `lblHozon_Rmks` (the name).
    const std::array<std::string, 4>& labels() const { return m_labels; }
    const std::string& lblHozon_Rmks() const { return m_name; }
    bool open() const { return m_open; }

    /// A click on row `index` of any list selects it in all three and draws it (`Sel_Disp`).
    void click(std::size_t index);
    /// `cmdOK`: the selected row becomes the four layout keys and the width slots, the main
    /// layout is drawn, the dialog closes. Without a selection nothing happens (false).
    bool cmdOK();
    /// `cmdDel`: the selected row leaves the table and the file is rewritten (`save_rireki`).
    void cmdDel();
    /// `cmdCan`: clears the selection.
    void cmdCan();
    /// `cmdBack`: closes.
    void cmdBack();

private:
    void fillLists();
    void close();

    std::filesystem::path m_folder;
    LayoutModel& m_layout;
    base::Trace* m_trace;
    std::vector<LayoutHistory::Row> m_rows;
    std::string m_error;
    std::vector<std::string> m_list1, m_list2, m_list3;
    std::optional<std::size_t> m_selected;
    std::array<std::string, 4> m_labels;
    std::string m_name;
    bool m_open = false;
};

} // namespace vornhale::settings
