#include "ui/QtDialogs.h"

#include "ui/WidgetLook.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QThread>

namespace vornhale::ui {
namespace {

constexpr int kOkOnly = -1;

QMessageBox::Icon boxIcon(base::Dialogs::Icon icon)
{
    switch (icon) {
    case base::Dialogs::Icon::Stop:
        return QMessageBox::Critical;
    case base::Dialogs::Icon::Exclamation:
        return QMessageBox::Warning;
    case base::Dialogs::Icon::Information:
        break;
    case base::Dialogs::Icon::Question:
        return QMessageBox::Question;
    }
    return QMessageBox::Information;
}

} // namespace

QtDialogs::QtDialogs(QObject* parent) : QObject(parent) {}

void QtDialogs::message(std::string_view title, std::string_view text, Icon icon)
{
    ask(qs(title), qs(text), kOkOnly, icon);
}

base::Dialogs::Answer QtDialogs::question(std::string_view title, std::string_view text,
                                          Buttons buttons, Icon icon)
{
    return ask(qs(title), qs(text), static_cast<int>(buttons), icon);
}

base::Dialogs::Answer QtDialogs::ask(const QString& title, const QString& text, int buttons,
                                     Icon icon)
{
    auto show = [this, title, text, buttons, icon]() -> int {
        QMessageBox box(m_window.data());
        box.setObjectName(kBoxName);
        box.setWindowTitle(title);
        box.setText(text);
        box.setIcon(boxIcon(icon));
        switch (buttons) {
        case static_cast<int>(Buttons::RetryCancel):
            box.setStandardButtons(QMessageBox::Retry | QMessageBox::Cancel);
            box.setDefaultButton(QMessageBox::Retry);
            break;
        case static_cast<int>(Buttons::YesNo):
            box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
            box.setDefaultButton(QMessageBox::Yes);
            break;
        case static_cast<int>(Buttons::OkCancel):
            box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
            box.setDefaultButton(QMessageBox::Ok);
            break;
        default:
            box.setStandardButtons(QMessageBox::Ok);
            break;
        }
        return box.exec();
    };

    int pressed = QMessageBox::Ok;
    if (QThread::currentThread() == thread()) {
        pressed = show();
    } else {
        // The conversion's thread waits for the operator's answer on the window's thread.
        QMetaObject::invokeMethod(this, show, Qt::BlockingQueuedConnection, &pressed);
    }
    switch (pressed) {
    case QMessageBox::Retry:
        return Answer::Retry;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    default:
        break;
    }
    return Answer::Ok;
}

} // namespace vornhale::ui
