#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::settings {

class Options;

/// The comment-history dialog `frmRmks_sel` without its window: the two histories as lists,
/// the two text boxes, the selections, and what the buttons do. `Vornhale.001` in the program
/// folder marks the dialog as open from `Form_Load` until it closes.
class RmksSelModel
{
public:
    static constexpr std::string_view kGuideKeep = "リスト項目は全てを削除しないで下さい。";
    static constexpr std::string_view kGuideSelect = "リストから項目を選択して下さい｡";

    /// `options` holds the main window's `txtRmks1` and `txtRmks2`; both must outlive the model.
    RmksSelModel(std::filesystem::path folder, Options& options);

    /// `Form_Load`: the lists from `Vornhale.rmk1` and `Vornhale.rmk2` (line 1 skipped; a
    /// missing file gives an empty list), the guidance, the marker file.
    void Form_Load();

    const std::vector<std::string>& list(int column) const { return m_lists[at(column)]; }
    std::optional<std::size_t> selected(int column) const { return m_selected[at(column)]; }
    const std::string& txtRmks(int column) const { return m_text[at(column)]; }
    /// Whether the text box shows a line taken from its list (highlighted).
    bool highlighted(int column) const { return m_highlight[at(column)]; }
    void setTxtRmks(int column, std::string text);
    const std::vector<std::string>& guidance() const { return m_guidance; }
    bool open() const { return m_open; }

    /// A click on line `index` of `List1` or `List2`: the line goes into the text box.
    /// Out of range: nothing.
    void clickList(int column, std::size_t index);
    /// `cmd1to2`: with `txtRmks1` not empty, `List2` loses its selection and takes the text.
    void cmd1to2();
    /// `cmd2to1`: the reverse.
    void cmd2to1();
    /// `cmdIns_1`, `cmdIns_2`: with no line selected and the text not empty, the list takes it.
    void cmdIns(int column);
    /// `cmdDel_1`, `cmdDel_2`: the selected line leaves the list and the text is cleared.
    void cmdDel(int column);
    /// `cmdCan_1`, `cmdCan_2`: clears the selection and the text.
    void cmdCan(int column);
    /// `cmdOK`: removes the marker, gives the main window the two texts, `save_rmks`, closes.
    void cmdOK();
    /// `cmdBack`: closes without saving; a main text box is emptied when no line of its
    /// history was taken, else it takes the chosen text.
    void cmdBack();

private:
    static std::size_t at(int column);
    void close();

    std::filesystem::path m_folder;
    Options& m_options;
    std::vector<std::string> m_lists[2];
    std::optional<std::size_t> m_selected[2];
    std::string m_text[2];
    bool m_highlight[2] = {false, false};
    bool m_taken[2] = {false, false};
    std::vector<std::string> m_guidance;
    bool m_open = false;
};

} // namespace vornhale::settings
