#pragma once

#include "settings/ModeTableModel.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QLineEdit;

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

/// `frmMode`: the mode table, a view over its model. Ten rows N of `TextN_0` (the mode
/// written), `LabelN` "--->", `TextN_1` (the mode it becomes) and the tick `CheckN`
/// "変換する" (blue when on); `Command2` stores the table in the option file and closes,
/// `Command1` closes without storing. The dialog remembers its place.
class ModeDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ModeDialog(session::Session& session, QWidget* parent = nullptr);

    settings::ModeTableModel& model() { return m_model; }

protected:
    void reject() override;

private:
    void showRow(int n);

    settings::ModeTableModel m_model;
    std::array<QLineEdit*, settings::ModeTableModel::kRows> m_sources{};
    std::array<QLineEdit*, settings::ModeTableModel::kRows> m_targets{};
    std::array<QCheckBox*, settings::ModeTableModel::kRows> m_ticks{};
};

} // namespace vornhale::ui
