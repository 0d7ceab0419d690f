#pragma once

#include "settings/LayoutHooks.h"
#include "settings/Options.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace vornhale::base {
class Dialogs;
class RunObserver;
} // namespace vornhale::base

namespace vornhale::settings {

class SettingsFiles;

/// The two remark rows as the operator arranges them: fourteen palette items, two rows of
/// twelve cells, one width slot per item, the use flags of each row, the sorted state of each
/// row and the tables that conversion reads. The layout keys `Rmks1_cfg`, `Rmks2_cfg`,
/// `Rmks1_cfg_len`, `Rmks2_cfg_len` live in the `Options` given at construction; the model
/// reads them when it draws and writes them when it sorts, resets or saves.
///
/// Nothing here throws on odd keys: a key with too few entries leaves the cells behind them
/// empty, entries past the twelfth are ignored.
class LayoutModel : public LayoutHooks
{
public:
    static constexpr std::size_t kItems = 14;
    static constexpr std::size_t kCells = 12;
    static constexpr std::size_t kRows = 2;

    /// Twelve zero widths, each followed by a comma.
    static constexpr std::string_view kZeroWidths = "0,0,0,0,0,0,0,0,0,0,0,0,";
    /// The layout a missing key resets to.
    static constexpr std::string_view kResetRmks1 = "MNG,$DX,Rmks1,Zone,IOTA,,,,,,,,";
    static constexpr std::string_view kResetRmks2 = "Rcvd,memo=,,,,,,,,,,,";
    /// The status text when "州名" is placed while the province lookup (`Check5`) is on.
    static constexpr std::string_view kStateOrProvince =
        "州名 又は Province のどちらかにして下さい。";

    using Cells = std::array<std::string, kCells>;

    /// What a row's use check (`lblRmks1_use_name_Check`, `lblRmks2_use_name_Check`) leaves.
    struct RowUse
    {
        std::array<bool, kItems> used{};      ///< the item stands in the row
        std::array<std::string, kCells> name; ///< internal name of the item in each cell
        std::array<int, kItems> index{};      ///< the item's own index when used, else 0
    };

    /// `options` holds the layout keys and `Check5`; it must outlive the model. With
    /// `files`, every drop ends with its `ini_write_old`. With `observer`, the status texts
    /// of the checks also go to it (`lblShori`).
    explicit LayoutModel(Options& options, SettingsFiles* files = nullptr,
                         base::RunObserver* observer = nullptr);

    // --- The palette ---------------------------------------------------------------------
    /// Caption of palette item `i` ("ｺﾝﾃｽﾄ", "Zone", …).
    static std::string_view caption(std::size_t item);
    /// Internal name of item `i` ("cont_name_h", "ZONE", …).
    static std::string_view internalName(std::size_t item);
    /// Index of the item with this caption, or -1.
    static int itemOfCaption(std::string_view caption);
    /// Index of the width slot for a caption. Item 5's slot is looked up as "momo=", so
    /// "memo=" has none: -1, as for unknown or empty captions.
    static int slotOfCaption(std::string_view caption);
    /// Internal name of a caption; anything else unchanged.
    static std::string internalNameOf(std::string_view caption);

    // --- State -----------------------------------------------------------------------------
    const std::string& cell(int row, std::size_t index) const;
    const Cells& cells(int row) const { return m_cells[rowIndex(row)]; }
    /// Sets a cell's caption without any check (as drawing does).
    void setCell(int row, std::size_t index, std::string caption);

    /// Width slot of item `i`, as text (the form the keys keep).
    const std::string& slot(std::size_t item) const { return m_slots.at(item); }
    void setSlot(std::size_t item, std::string width) { m_slots.at(item) = std::move(width); }
    const std::array<std::string, kItems>& slots() const { return m_slots; }

    /// The width that the last lookup from caption to slot found; what an item without a
    /// slot ("memo=") is given. "0" before any lookup.
    const std::string& lastWidth() const { return m_lastWidth; }

    const RowUse& use(int row) const { return m_use[rowIndex(row)]; }
    /// Whether the palette button of an item is highlighted: it stands in either row. The
    /// last item's button is always reset to the system colour by the checks.
    bool highlighted(std::size_t item) const;
    /// Whether a cell shows red (the check of "州名" with the province lookup on).
    bool red(int row, std::size_t index) const { return m_red[rowIndex(row)].at(index); }
    /// The status text the checks left (`lblShori`); empty when none.
    const std::string& lblShori() const { return m_status; }
    void clearStatus() { m_status.clear(); }

    bool sorted(int row) const { return m_sorted[rowIndex(row)]; }

    /// The per-cell tables that conversion reads, from the keys (`Set_Rmks_Len`).
    const Cells& tableNames(int row) const { return m_tableNames[rowIndex(row)]; }
    const Cells& tableWidths(int row) const { return m_tableWidths[rowIndex(row)]; }

    Options& options() { return m_options; }

    // --- Drawing ---------------------------------------------------------------------------
    /// `Disp_Rmks_cfg_bas`: an empty `Rmks1_cfg_len` becomes twelve zeros; each row's cells
    /// take the trimmed captions of its key, each trimmed width goes to the slot of its item;
    /// then the use checks run.
    void Disp_Rmks_cfg_bas() override;

    /// The colour refresh of the option rules: the use checks run again.
    void refreshCellColours() override;
    /// The "州名" clash found by the option rules: the cell is shown red.
    void markCellRed(int row, int index) override;
    bool rowSorted(int row) const override { return sorted(row); }

    /// `lblRmks1_flag_Clear`, `lblRmks2_flag_Clear`: zero a row's use flags.
    void lblRmks1_flag_Clear();
    void lblRmks2_flag_Clear();
    /// `lblRmks1_use_name_Check`, `lblRmks2_use_name_Check`: rebuild a row's use flags.
    void lblRmks1_use_name_Check();
    void lblRmks2_use_name_Check();

    // --- Dragging --------------------------------------------------------------------------
    /// A palette item dropped on a cell: the cell takes the caption, the check after a drop
    /// runs, then the use checks, `Set_Rmks_Len` and `ini_write_old`. Item or cell out of
    /// range: nothing happens.
    void dropFromPalette(std::size_t item, int row, std::size_t index);
    /// A cell dropped on a cell: the target takes the source's caption and the source cell is
    /// emptied (also when it is the target itself), then as above.
    void dropFromCell(int fromRow, std::size_t fromIndex, int row, std::size_t index);

    /// The check after a drop on cell `index` of row 1 (`lblRmks1_Check`) or row 2
    /// (`lblRmks2_Check`): the caption stands only there in both rows, "memo" and "memo="
    /// exclude each other, as do "OP" and "OP %"; "州名" with `Check5` on turns the cell red
    /// and sets the status. An index past the last cell does nothing.
    void lblRmks1_Check(std::size_t index);
    void lblRmks2_Check(std::size_t index);

    // --- Sorting and restoring -------------------------------------------------------------
    /// `Sort_2` (row 1) and `Sort_3` (row 2): the filled cells move left, the row's keys are
    /// rebuilt (widths from the slots), the row is marked sorted; `Set_Rmks_Len` follows.
    /// The arrangement before the first sort is kept for `ReDo_2`/`ReDo_3`.
    void Sort_2();
    void Sort_3();
    /// Sorts each row whose sorted flag is clear.
    void Rmks_Sort();
    /// `ReDo_2`, `ReDo_3`: the cells take back the arrangement from before the first sort,
    /// the sorted flag is cleared, `Set_Rmks_Len` follows. A row never sorted is left alone.
    void ReDo_2();
    void ReDo_3();

    // --- Keys and tables -------------------------------------------------------------------
    /// `Set_Rmks_Len`: an empty `Rmks1_cfg`, `Rmks2_cfg` or `Rmks1_cfg_len` resets all four
    /// keys to the default layout with zero widths; then the per-cell tables take the trimmed
    /// entries of the keys.
    void Set_Rmks_Len() override;
    /// The same reset, with "6,0,0,…" as the first widths; then the width of `dragCaption`:
    /// the first cell of row 1, then row 2, holding it gives the position in that row's
    /// widths key. The width found becomes the last width looked up and is returned; "" when
    /// no cell holds it.
    std::string dragWidth(std::string_view dragCaption);

    /// A widths key from the cells of a row: for each of the first `count` cells, the width of
    /// its item's slot (an item without a slot takes the last width looked up; an empty cell
    /// gives "0"), each followed by a comma.
    std::string widthsFromCells(int row, std::size_t count);
    /// A names key from the first `count` cells of a row, each caption followed by a comma.
    std::string namesFromCells(int row, std::size_t count) const;

    /// `cmdSet_Len_OK_Click`: the first nine cells of each row become the layout keys and the
    /// last five lines of `Vornhale.cfg` in `folder` (its first 21 lines kept as they are).
    /// When that file cannot be read or holds fewer than 21 lines, "Vornhale.ｃｆｇ が不良です。"
    /// is shown, the file is left untouched and false is returned; the keys are rebuilt all the
    /// same.
    bool cmdSet_Len_OK_Click(const std::filesystem::path& folder, base::Dialogs& dialogs);

private:
    static std::size_t rowIndex(int row);
    void checkRow(std::size_t row);
    void afterDrop(std::size_t row, std::size_t index);
    void checkDrop(std::size_t row, std::size_t index);
    void sortRow(std::size_t row);
    void redoRow(std::size_t row);
    void resetWhenEmpty(std::string_view firstWidths);
    /// The width of a caption's slot; an unknown caption gives the last width looked up.
    const std::string& lookUpWidth(std::string_view caption);

    Options& m_options;
    SettingsFiles* m_files;
    base::RunObserver* m_observer;

    std::array<Cells, kRows> m_cells;
    std::array<std::array<bool, kCells>, kRows> m_red{};
    std::array<std::string, kItems> m_slots;
    std::string m_lastWidth = "0";
    std::array<RowUse, kRows> m_use;
    std::array<bool, kRows> m_sorted{};
    std::array<bool, kRows> m_hasSaved{};
    std::array<Cells, kRows> m_saved;
    std::array<Cells, kRows> m_tableNames, m_tableWidths;
    std::string m_status;
};

} // namespace vornhale::settings
