#pragma once

#include "settings/WidthsModel.h"

#include <QDialog>
#include <array>
#include <filesystem>

class QLabel;
class QLineEdit;
class QListWidget;

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

/// `frmKetasu`: the width of each remark item, a view over the widths model. Fourteen lists
/// `List1` to `List14` of the widths 60 down to 0 with their values in `lblLen_0` to
/// `lblLen_13`, the contest name of the input (`lblCont_name_h`), the layout name `txtName`,
/// and the buttons `cmdAll_Zero`, `cmdSet_name`, `cmdSet_Len_Main`, `cmdSave2` and `cmdOK`.
/// The widths go straight into the main window's layout; the dialog remembers its place.
class KetasuDialog : public QDialog
{
    Q_OBJECT

public:
    /// The session must have loaded the main window's models.
    explicit KetasuDialog(session::Session& session, QWidget* parent = nullptr);

    settings::WidthsModel& model() { return m_model; }

private:
    void refresh();
    void closeIfDone();

    settings::WidthsModel m_model;
    std::filesystem::path m_folder;
    std::array<QListWidget*, settings::LayoutModel::kItems> m_lists{};
    std::array<QLabel*, settings::LayoutModel::kItems> m_values{};
    QLineEdit* m_name = nullptr;
};

} // namespace vornhale::ui
