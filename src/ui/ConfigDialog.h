#pragma once

#include "settings/ConfigModel.h"

#include <QDialog>
#include <map>
#include <string>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace vornhale::session {
class Session;
}

namespace vornhale::ui {

class FileChooser;

/// `frmConfig`, the environment settings: ten rows of paths with their browse buttons and
/// labels, the "無用" ticks, the marks, the internet tick; a view over the environment model,
/// which refuses a save until every row is valid. `cmdOK` accepts the dialog, `cmdEnd` asks
/// for the program's end.
class ConfigDialog : public QDialog
{
    Q_OBJECT

public:
    ConfigDialog(session::Session& session, FileChooser& chooser, QWidget* parent = nullptr);

    settings::ConfigModel& model() { return m_model; }
    /// Whether the dialog was left through `cmdEnd`: the program ends at once.
    bool endRequested() const { return m_endRequested; }

private:
    void refresh();
    void browse(const settings::ConfigModel::Row& row);
    void savePosition();

    session::Session& m_session;
    FileChooser& m_chooser;
    settings::ConfigModel m_model;
    std::map<std::string, QLineEdit*> m_boxes;
    std::map<std::string, QCheckBox*> m_ticks;
    std::map<std::string, QPushButton*> m_buttons;
    std::map<std::string, QLabel*> m_labels;
    QLabel* m_msg = nullptr;
    QLabel* m_msg1 = nullptr;
    QLabel* m_msg2 = nullptr;
    bool m_endRequested = false;
};

} // namespace vornhale::ui
