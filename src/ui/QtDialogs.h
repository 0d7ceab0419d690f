#pragma once

#include "base/Dialogs.h"

#include <QObject>
#include <QPointer>

class QWidget;

namespace vornhale::ui {

/// The core's messages and questions as message boxes over the main window. A call from the
/// conversion's thread waits until the operator has answered the box on the window's thread.
class QtDialogs : public QObject, public base::Dialogs
{
    Q_OBJECT

public:
    explicit QtDialogs(QObject* parent = nullptr);

    /// The window the boxes stand over (may be null).
    void setWindow(QWidget* window) { m_window = window; }

    void message(std::string_view title, std::string_view text, Icon icon) override;
    Answer question(std::string_view title, std::string_view text, Buttons buttons,
                    Icon icon) override;

    /// The object name every box of this class carries, so that tests and screen readers find
    /// it.
    static constexpr const char* kBoxName = "messageBox";

private:
    Answer ask(const QString& title, const QString& text, int buttons, Icon icon);

    QPointer<QWidget> m_window;
};

} // namespace vornhale::ui
