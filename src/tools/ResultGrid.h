#pragma once

#include "base/Trace.h"
#include "settings/Options.h"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::tools {

/// Which result file a grid editor shows, with the keys and names that belong to it.
struct GridForm
{
    std::string_view form;     ///< the window, also its position section: "Grid4frm"
    std::string_view grid;     ///< the grid control: "Grid4"
    std::string_view widthKey; ///< the saved widths: "get_ColWidth_Grid4"
    std::string_view tickKey;  ///< the tick of the literal widths: "Grid4_Check1"

    /// `Grid4frm`: the "hamlog" result `_hn.csv`.
    static const GridForm& hamlog();
    /// `Grid5frm`: the "contest" result `_cn.csv`.
    static const GridForm& contest();
};

/// A position in the grid: row 1 is the first row of the file, column 1 its first field
/// (row 0 and column 0 are the fixed head row and number column).
struct GridCell
{
    int row = 1;
    int col = 1;
    friend bool operator==(const GridCell&, const GridCell&) = default;
};

/// The file model of the result grid editor: a table of at most 5000 rows of the fifteen
/// fields of a HAMLOG CSV record, loaded from and saved to `_hn.csv` or `_cn.csv`. Saving
/// after a load without edits writes the same bytes as the file the program wrote, since its
/// results quote every field.
class ResultGrid
{
public:
    /// Rows the table holds; a file with more is cut there.
    static constexpr int kMaxRows = 5000;
    /// Columns of the grid: the row number and the fifteen fields.
    static constexpr int kColumns = 16;
    /// Fields a row of the file holds.
    static constexpr int kFields = 15;

    /// The head texts, "No.,Call,Date,…,Flag", split at the commas.
    static const std::array<std::string, kColumns>& headers();
    /// The initial widths in twips, "600,1300,850,…,400".
    static const std::array<int, kColumns>& initialWidths();
    /// The initial widths as the settings keep them, joined by commas.
    static std::string_view initialWidthList();

    /// The widths of a comma-joined list in twips. A value that is missing or no positive
    /// number takes the initial width of its column.
    static std::array<int, kColumns> parseWidths(std::string_view list);
    /// The widths joined by commas, as `cmdGet_ColWidth` stores them.
    static std::string joinWidths(const std::array<int, kColumns>& widths);

    /// What the window's load settles from the options: an empty width key takes the initial
    /// list (written back to `options`); a blank or "0" tick leaves `Check1` off and the saved
    /// widths in force, any other value turns `Check1` on with the initial widths.
    struct WidthChoice
    {
        bool Check1 = false;
        std::array<int, kColumns> widths{};
    };
    static WidthChoice widthsAtLoad(settings::Options& options, const GridForm& form);
    /// The widths for the state of `Check1`: the initial list when on, the saved one when off.
    static std::array<int, kColumns> widthsFor(bool Check1, const settings::Options& options,
                                               const GridForm& form);
    /// `cmdGet_ColWidth`: stores `widths` under the width key and the tick under the tick key.
    static void storeWidths(settings::Options& options, const GridForm& form,
                            const std::array<int, kColumns>& widths, bool Check1);

    /// `DataRead`: reads the file, fifteen fields a row, until it ends. A row beyond 5000
    /// stops the read: "エラー発生 ：　" and number 9 go to the trace, and the rows read so far
    /// stay. Throws failure::Failure 53 when the file cannot be opened.
    void DataRead(const std::filesystem::path& file, base::Trace& trace);

    /// `cmdSave`: writes every row as fifteen quoted fields, comma separated, replacing the
    /// file when complete. Throws failure::Failure 75 or 57 when it cannot be written.
    void cmdSave(const std::filesystem::path& file) const;

    /// Rows held (the head row not counted).
    int rows() const { return static_cast<int>(m_rows.size()); }
    /// Whether the last read stopped at the row limit.
    bool cutAtLimit() const { return m_cut; }
    /// The text of a cell: column 0 is the row number, columns 1 to 15 the fields. Empty
    /// outside the table.
    std::string cell(int row, int col) const;
    /// Stores the text of a field cell (columns 1 to 15, rows 1 to `rows()`); other cells
    /// are left alone.
    void setCell(int row, int col, std::string text);

    // The cursor rules of the editor. `last` is the number of rows.

    /// Where the cursor goes after an edit is confirmed by Enter or Tab. `downward` (the
    /// direction flag 1): one row down if a row remains. Otherwise one column right, and
    /// from the last column to column 1 of the next row if there is one.
    static GridCell afterConfirm(GridCell at, bool downward, int last);
    /// Up (-1) or Down (+1) after a confirmed edit: one row, staying between row 1 and `last`.
    static GridCell afterArrow(GridCell at, int step, int last);
    /// `Text2` caught the focus: one cell on, from the last column to column 1 of the next row.
    static GridCell cellOn(GridCell at, int last);
    /// `Text3` caught the focus: one cell back, from column 1 to the previous row, column 1.
    static GridCell cellBack(GridCell at);

    /// A typed character as the edit box keeps it: a lower-case letter becomes upper case.
    static char32_t typed(char32_t ch);

    /// The summary of the No-QSL settings that the label line `Label4` shows.
    static std::string noQslSummary(const settings::Options& options);

private:
    std::vector<std::array<std::string, kFields>> m_rows;
    bool m_cut = false;
};

} // namespace vornhale::tools
