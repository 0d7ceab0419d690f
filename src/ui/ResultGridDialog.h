#pragma once

#include "tools/ResultGrid.h"

#include <QDialog>
#include <filesystem>
#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

/// The result grid editors `Grid4frm` (the "hamlog" result `_hn.csv`) and `Grid5frm` (the
/// "contest" result `_cn.csv`): the file in the grid `Grid4` or `Grid5`, cells edited in the
/// yellow box `Text1` (Enter or F2 opens it; Enter, Tab, Up and Down confirm; Escape drops;
/// letters are typed in upper case), column widths from the settings or the initial list
/// (`Check1`), `cmdGet_ColWidth` to keep the widths, `cmdSave` to write the file back. The
/// rules and the file live in tools::ResultGrid; this window only shows them.
class ResultGridDialog : public QDialog
{
    Q_OBJECT

public:
    /// Opens `file` for `form`. `endProgram` is the program's orderly end (`cmdEnd`, `mnuEnd`).
    ResultGridDialog(const tools::GridForm& form, session::Session& session,
                     std::filesystem::path file, std::function<void()> endProgram,
                     QWidget* parent = nullptr);

    const tools::ResultGrid& model() const { return m_model; }
    QTableWidget* grid() const { return m_grid; }

    /// The direction flag: after a confirmed edit the cursor moves down (true) or right.
    void setDownward(bool downward) { m_downward = downward; }

    /// `cmdSave`: writes the grid back over the file.
    void cmdSave_Click();
    /// `ReDataRead`: the widths for the state of `Check1`, the heads and the rows again.
    void ReDataRead();
    /// `cmdGet_ColWidth`: stores the present widths and the tick in the settings.
    void cmdGet_ColWidth_Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void DataRead();
    void setWidths(const std::array<int, tools::ResultGrid::kColumns>& twips);
    void beginEdit();
    void confirmEdit();
    void dropEdit();
    void moveTo(tools::GridCell cell);
    tools::GridCell current() const;
    bool textKey(QObject* watched, QEvent* event);
    bool gridKey(QEvent* event);

    const tools::GridForm& m_form;
    session::Session& m_session;
    std::filesystem::path m_file;
    std::function<void()> m_endProgram;
    tools::ResultGrid m_model;
    QTableWidget* m_grid = nullptr;
    QLineEdit* m_text1 = nullptr;
    QLineEdit* m_text2 = nullptr;
    QLineEdit* m_text3 = nullptr;
    QCheckBox* m_check1 = nullptr;
    QPushButton* m_save = nullptr;
    QLabel* m_label1 = nullptr;
    QLabel* m_label2 = nullptr;
    QLabel* m_label3 = nullptr;
    tools::GridCell m_editing;
    bool m_downward = false;
    bool m_filling = false;
};

} // namespace vornhale::ui
