#include "ui/WidgetLook.h"

#include <QApplication>
#include <QPalette>
#include <QWidget>

namespace vornhale::ui {

QString qs(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string utf8(const QString& text)
{
    return text.toUtf8().toStdString();
}

QString objectNameOf(std::string_view controlName)
{
    const auto open = controlName.find('(');
    if (open == std::string_view::npos || controlName.back() != ')') {
        return qs(controlName);
    }
    return qs(controlName.substr(0, open)) + QLatin1Char('_') +
           qs(controlName.substr(open + 1, controlName.size() - open - 2));
}

QColor colourOf(base::Colour colour)
{
    switch (colour) {
    case base::Colour::Black:
        break;
    case base::Colour::Green:
        return QColor(0x00, 0x80, 0x00);
    case base::Colour::Red:
        return QColor(0xFF, 0x00, 0x00);
    case base::Colour::Blue:
        return QColor(0x00, 0x00, 0xC0);
    case base::Colour::BrightBlue:
        return QColor(0x00, 0x60, 0xFF);
    case base::Colour::DarkRed:
        return QColor(0x80, 0x00, 0x00);
    }
    return QColor(0x00, 0x00, 0x00);
}

void setCaptionColour(QWidget* widget, base::Colour colour)
{
    QPalette palette = widget->palette();
    const QColor c = colourOf(colour);
    // A disabled control keeps the grey of its kind, whatever its caption colour.
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::WindowText, c);
        palette.setColor(group, QPalette::ButtonText, c);
        palette.setColor(group, QPalette::Text, c);
    }
    widget->setPalette(palette);
    widget->setProperty("captionColour", static_cast<int>(colour));
}

base::Colour captionColour(const QWidget* widget)
{
    const QVariant v = widget->property("captionColour");
    return v.isValid() ? static_cast<base::Colour>(v.toInt()) : base::Colour::Black;
}

void setWarningBackground(QWidget* widget, bool warning)
{
    widget->setAutoFillBackground(warning || widget->autoFillBackground());
    QPalette palette = widget->palette();
    const QPalette standard = QApplication::palette(widget);
    palette.setColor(QPalette::Window,
                     warning ? QColor(0xFF, 0x60, 0x60) : standard.color(QPalette::Button));
    widget->setPalette(palette);
    widget->setProperty("warning", warning);
}

} // namespace vornhale::ui
