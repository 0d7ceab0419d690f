#pragma once

#include "settings/RirekiSelModel.h"

#include <QDialog>
#include <array>
#include <filesystem>

class QLabel;
class QListWidget;

namespace vornhale::settings {
class LayoutModel;
}

namespace vornhale::ui {

/// `frmRmk_Rireki_sel`: the layout history of `Vornhale_Rireki.cfg` in three parallel lists
/// (names, first row, second row), a view over the layout-history model. `cmdOK` puts the
/// chosen layout into the main window's layout; `cmdDel` removes it from the file.
class RirekiSelDialog : public QDialog
{
    Q_OBJECT

public:
    RirekiSelDialog(const std::filesystem::path& folder, settings::LayoutModel& layout,
                    base::Trace* trace, QWidget* parent = nullptr);

    settings::RirekiSelModel& model() { return m_model; }

protected:
    void reject() override;

private:
    void fill();
    void refresh();

    settings::RirekiSelModel m_model;
    std::array<QListWidget*, 3> m_lists{};
    std::array<QLabel*, 4> m_labels{};
    QLabel* m_name = nullptr;
    bool m_closing = false;
};

} // namespace vornhale::ui
