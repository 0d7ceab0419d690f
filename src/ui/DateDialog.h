#pragma once

#include "settings/PeriodModel.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

/// `frmDate`: the period for which the history is extracted, a view over the period model.
/// The start in `List1` (years), `List2` (months), `List3` (days), the end in `List4` to
/// `List6`; `Check1` lets the end follow the system date, `cmdGet_date` takes it once,
/// `cmdOK` stores the period and closes unless the start lies after the end (then `Label7`
/// tells so). A list's choice counts only when clicked. The dialog remembers its place.
class DateDialog : public QDialog
{
    Q_OBJECT

public:
    /// `today` gives the system date.
    explicit DateDialog(session::Session& session, QWidget* parent = nullptr,
                        settings::PeriodModel::Today today = settings::systemToday);

    settings::PeriodModel& model() { return m_model; }

private:
    void refresh();

    settings::PeriodModel m_model;
    std::array<QListWidget*, 6> m_lists{};
    QCheckBox* m_check1 = nullptr;
    QPushButton* m_getDate = nullptr;
    QLabel* m_label7 = nullptr;
};

} // namespace vornhale::ui
