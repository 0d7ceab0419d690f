#pragma once

#include "settings/RmksSelModel.h"

#include <QDialog>
#include <array>
#include <filesystem>

class QLabel;
class QLineEdit;
class QListWidget;

namespace vornhale::settings {
class Options;
}

namespace vornhale::ui {

/// `frmRmks_sel`: the histories of the two remark comments (`Vornhale.rmk1`,
/// `Vornhale.rmk2`), a view over the comment-history model. `cmdOK` gives the main window the
/// chosen texts and saves both histories; `cmdBack` closes without saving.
class RmksSelDialog : public QDialog
{
    Q_OBJECT

public:
    /// `options` holds the main window's `txtRmks1` and `txtRmks2`.
    RmksSelDialog(const std::filesystem::path& folder, settings::Options& options,
                  QWidget* parent = nullptr);

    settings::RmksSelModel& model() { return m_model; }

protected:
    void reject() override;

private:
    void refresh();

    settings::RmksSelModel m_model;
    std::array<QListWidget*, 2> m_lists{};
    std::array<QLineEdit*, 2> m_texts{};
    bool m_closing = false;
};

} // namespace vornhale::ui
