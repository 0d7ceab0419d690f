#pragma once

#include <QDialog>

class QTableWidget;

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

/// The history check `frmCheck_bak_qso_mas`: for each kind of history (worked, card sent,
/// card received) the master `bak_qso.mas<N>_p` and the name list `bak_qso_mas_name<N>_p` in
/// `Temp_Files`, with their sizes and line counts, in the grid `Grid1`. A click on a file
/// name shows the file in the viewer `frmDisp`; `mnuHelp` explains, `mnuBack` closes.
class BakCheckDialog : public QDialog
{
    Q_OBJECT

public:
    explicit BakCheckDialog(session::Session& session, QWidget* parent = nullptr);

    QTableWidget* grid() const { return m_grid; }

    /// Shows the file of grid cell (`row`, `col`) in the viewer when the cell names a file
    /// that exists.
    void showFileAt(int row, int col);

private:
    session::Session& m_session;
    QTableWidget* m_grid = nullptr;
};

} // namespace vornhale::ui
