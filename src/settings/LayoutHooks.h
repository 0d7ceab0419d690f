#pragma once

namespace vornhale::settings {

/// The drawing steps of the remark layout that the option rules and the load order call. The
/// layout model implements them; every step has an empty default so a test overrides only
/// what it watches.
struct LayoutHooks
{
    virtual ~LayoutHooks() = default;
    /// Draws `Rmks1_cfg` and `Rmks2_cfg` into the cells.
    virtual void Disp_Rmks_cfg_bas() {}
    /// Builds the per-cell width tables.
    virtual void Set_Rmks_Len() {}
    /// Refreshes the colours of the layout cells (end of `Check5_Click`).
    virtual void refreshCellColours() {}
    /// Shows the cell `index` (0 to 11) of row `row` (1 or 2) red: the "州名" clash.
    virtual void markCellRed(int /*row*/, int /*index*/) {}
    /// Whether row `row` (1 or 2) carries its sorted flag.
    virtual bool rowSorted(int /*row*/) const { return false; }
};

} // namespace vornhale::settings
