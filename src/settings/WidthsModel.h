#pragma once

#include "settings/LayoutModel.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vornhale::base {
class Trace;
} // namespace vornhale::base

namespace vornhale::settings {

class SettingsFiles;

/// The widths dialog `frmKetasu` without its window: one list per remark item holding the
/// widths 60 down to 0 (so the position of width v is 60 - v), the value shown for each item,
/// the layout name, and what the buttons do. It edits the width slots of the main window's
/// layout directly.
class WidthsModel
{
public:
    static constexpr int kMaxWidth = 60;
    static constexpr std::size_t kPositions = kMaxWidth + 1;
    static constexpr std::string_view kLabel14 = "項目の桁数の変更が必要ならｾｯﾄして下さい。";
    static constexpr std::string_view kLabel15 = "０ なら桁数指定は無視されます。";

    /// `layout` is the main window's layout. With `files`, `Form_Load` reads and
    /// `cmdSet_Len_Main` writes the old option file; `trace` receives refused positions.
    WidthsModel(LayoutModel& layout, SettingsFiles* files = nullptr, base::Trace* trace = nullptr);

    /// The label of list `item` ("MNG", "mome=", "o p", …).
    static std::string_view label(std::size_t item);
    /// The width at list position `position`.
    static int valueAt(std::size_t position) { return kMaxWidth - static_cast<int>(position); }

    /// `Form_Load`: the contest name (`lblCont_name_h`), `ini_read_old`, `Disp_Rmks_cfg_bas`,
    /// `Set_len`, `Disp_len`.
    void Form_Load(std::string contestName);

    /// `Set_len`: each list selects the position of its slot, 60 minus the value. A position
    /// outside 0 to 60 (a slot above 60 or below 0) is refused: that list keeps what it had
    /// and the refusal is traced; the other lists go on.
    void Set_len();
    /// `Disp_len`: each `lblLen` shows its list's value; empty when the list has none.
    void Disp_len();

    std::optional<std::size_t> listIndex(std::size_t item) const { return m_index.at(item); }
    const std::string& lblLen(std::size_t item) const { return m_lblLen.at(item); }
    const std::string& lblCont_name_h() const { return m_contestName; }
    const std::string& txtName() const { return m_txtName; }
    void setTxtName(std::string name) { m_txtName = std::move(name); }
    bool open() const { return m_open; }

    /// A click on position `position` of list `item`: the slot takes that width, then
    /// `Disp_len`. A position past the list is refused (false).
    bool clickList(std::size_t item, std::size_t position);

    /// `cmdAll_Zero`: every slot "0", `Set_len`, `Disp_len`, then `cmdSet_Len_Main`.
    void cmdAll_Zero();
    /// `cmdSet_name`: the contest name into `txtName`.
    void cmdSet_name() { m_txtName = m_contestName; }
    /// `cmdSet_Len_Main`: both widths keys rebuilt from the main window's cells and slots,
    /// each cell's width stored in its item's slot, `ini_write_old`, the dialog closes.
    void cmdSet_Len_Main();
    /// `cmdSave2`: adds the current layout to `Vornhale_Rireki.cfg` in `folder` under the name
    /// of `txtName` (a blank name stays empty). The widths keys are rebuilt from the twelve
    /// cells of each row; `Rmks2_cfg_len` loses its last comma. Returns the line added.
    std::string cmdSave2(const std::filesystem::path& folder);
    /// `cmdOK`: closes.
    void cmdOK() { m_open = false; }

private:
    LayoutModel& m_layout;
    SettingsFiles* m_files;
    base::Trace* m_trace;
    std::array<std::optional<std::size_t>, LayoutModel::kItems> m_index{};
    std::array<std::string, LayoutModel::kItems> m_lblLen;
    std::string m_contestName;
    std::string m_txtName;
    bool m_open = false;
};

} // namespace vornhale::settings
