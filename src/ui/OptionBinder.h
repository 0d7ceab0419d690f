#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <map>
#include <string>
#include <string_view>

class QAbstractButton;
class QAction;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QWidget;

namespace vornhale::session {
class OptionModel;
}

namespace vornhale::ui {

/// Binds the widgets of a window to the controls of the option model: each widget shows its
/// control's state (value, caption, tool-tip, enabled state, colour) and hands the user's
/// actions to the model, which runs the rules; every change the model makes is shown at once.
/// The widgets hold no option state of their own.
class OptionBinder : public QObject
{
    Q_OBJECT

public:
    explicit OptionBinder(session::OptionModel& model, QObject* parent = nullptr);
    ~OptionBinder() override;

    session::OptionModel& model() { return m_model; }

    /// A tick (`Check06`): checked, caption, colour, enabled; a click goes to `clickTick`.
    void tick(QAbstractButton* box, std::string_view name);
    /// Member `index` of the group `group` (`Option04(2)`); a click goes to `chooseMember`.
    void member(QRadioButton* button, std::string_view group, int index);
    /// A text box; the user's edits go to `editText`.
    void text(QLineEdit* box, std::string_view name);
    /// A combo box of texts; a choice goes to `editText`.
    void combo(QComboBox* box, std::string_view name);
    /// A label whose caption and colour the model sets (`lblShori`, `Label29`).
    void label(QLabel* label, std::string_view name);
    /// A button the model names: its caption and tool-tip when the model has them, its
    /// enabled state; a click goes to `clickButton`, then to `extra` when given.
    void button(QAbstractButton* button, std::string_view name, std::function<void()> extra = {});
    /// A frame: its title when the model has one, its enabled state.
    void frame(QGroupBox* frame, std::string_view name);
    /// A menu entry or tool button: enabled; checked for a menu tick, whose click goes to the
    /// model; any other click goes to `handler`.
    void action(QAction* action, std::string_view name, std::function<void()> handler = {});
    /// Any other widget that only follows its control's enabled state and tool-tip.
    void state(QWidget* widget, std::string_view name);

    /// Shows every bound control as the model holds it.
    void refreshAll();
    /// Shows one control (and every widget bound to it) as the model holds it.
    void refresh(std::string_view name);

Q_SIGNALS:
    /// The user changed a control through one of the bound widgets.
    void userAction(const QString& name);

private:
    enum class Kind { Tick, Member, Text, Combo, Label, Button, Frame, Action, State };
    struct Binding
    {
        Kind kind;
        QPointer<QObject> target;
    };

    void bind(std::string_view name, Kind kind, QObject* target);
    void show(const std::string& name, const Binding& binding);
    /// After a user action the status line follows the model, even when the model's text
    /// did not change (a run may have written it meanwhile).
    void afterUserAction(std::string_view name);

    session::OptionModel& m_model;
    int m_subscription = 0;
    std::multimap<std::string, Binding, std::less<>> m_bindings;
};

} // namespace vornhale::ui
