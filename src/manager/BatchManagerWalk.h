#pragma once

#include "base/RunObserver.h"
#include "manager/ManagerMaster.h"
#include "manager/WebManagerSearch.h"

#include <array>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::manager {

/// One column of the walk's grid: its head and its width in twips.
struct WalkColumn
{
    const char* head;
    int width;
};

/// One row of the walk's grid, each cell as the grid shows it.
struct WalkRow
{
    std::string No;          ///< the running number right-aligned to 6 columns
    std::string Calls;       ///< a blank and the call
    std::string search_call; ///< a blank and the call searched
    std::string mng_file;    ///< a blank and the file's manager
    std::string mng_web;     ///< a blank and the web's manager
    std::string transfer;    ///< a blank and the manager to transfer

    std::array<std::string, 6> cells() const
    {
        return {No, Calls, search_call, mng_file, mng_web, transfer};
    }
};

/// What the walk reads of the options: `Check1` of the walk's window (the web search, kept in
/// `Get_MNG_use_web`, empty meaning on) and the main window's `Check18` and `Option10`.
struct WalkOptions
{
    bool Check1 = true;
    bool Check18 = false;
    int Option10 = 0;
};

/// The batch manager fetch (`mnuGet_MNG_Click`): walks the calls of a log without converting
/// anything and fills, for each, a grid row with the file's manager, the web's manager (the
/// call-directory search, when `Check1` is on) and the manager that would be transferred.
/// The walk makes no pause between requests.
class BatchManagerWalk
{
public:
    /// The grid's heads and widths, columns 0 to 5.
    static const std::array<WalkColumn, 6>& columns();
    /// The rows of an empty grid: the head row and 29 more.
    static constexpr long kInitialGridRows = 30;

    /// `web` may be null when no search can run; `shared` are the values the conversion's
    /// search shares with the walk; `observer` receives `Label2` and the search's displays.
    BatchManagerWalk(const ManagerMaster& master, const WebManagerSearch* web,
                     SharedManagerValues& shared, WalkOptions options, base::RunObserver& observer);

    /// Resets the grid to its heads; `total` is the number of calls the walk will go through.
    void start(long total);

    /// Asked at each point where the walk yields to the window: true when the operator pressed
    /// `cmdStop`, which ends the whole program (failure::ProgramEnd), not just the walk.
    void setStopRequest(std::function<bool()> stopRequested)
    {
        m_stopRequested = std::move(stopRequested);
    }

    /// Told each row as it joins the grid, with its grid row (`number`, 1 for the first) and
    /// the rows the grid then has, so that a window fills its grid while the walk goes on.
    using RowWalked = std::function<void(const WalkRow& row, long number, long gridRows)>;
    void setRowWalked(RowWalked rowWalked)
    {
        m_rowWalked = std::move(rowWalked);
    }

    /// The body each walker runs for one call: the file's lookup, the web search when
    /// `Check1` is on, the row and the counter `Label2`.
    void walkCall(std::string_view call);

    /// The walker of zLog text logs (`read_zlog_all`): skips the heading line; for kind "all"
    /// each line, with two blanks made one eleven times and split at blanks, gives its third
    /// word as the call; for kind "txt" no word is taken and the call of the line before
    /// stands. Throws failure::Failure 53 when the file cannot be read and 9 when an "all"
    /// line has fewer than three words.
    void read_zlog_all(const std::filesystem::path& in_name, std::string_view f_type);

    /// The grid's rows so far, from row 1.
    const std::vector<WalkRow>& rows() const { return m_rows; }
    /// The rows the grid has, its head row included: 30, or one more than the running number
    /// once that passes 29.
    long gridRows() const { return m_gridRows; }
    /// The call the last line of a text walk left (kept from one walk to the next).
    const std::string& lastCall() const { return m_call; }

    /// `Label2`: the number and the total, each right-aligned to 4 columns, with " / ".
    static std::string counterText(long number, long total);

private:
    std::string transferManager(const std::string& fileAnswer) const;
    void yieldToWindow() const;

    const ManagerMaster& m_master;
    const WebManagerSearch* m_web;
    SharedManagerValues& m_shared;
    WalkOptions m_options;
    base::RunObserver& m_observer;
    std::vector<WalkRow> m_rows;
    long m_number = 0;
    long m_total = 0;
    long m_gridRows = kInitialGridRows;
    std::string m_call;
    std::function<bool()> m_stopRequested;
    RowWalked m_rowWalked;
};

} // namespace vornhale::manager
