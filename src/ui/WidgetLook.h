#pragma once

#include "base/RunObserver.h"

#include <QColor>
#include <QString>
#include <string>
#include <string_view>

class QWidget;

namespace vornhale::ui {

/// A UTF-8 text of the core as a Qt string, and back.
QString qs(std::string_view text);
std::string utf8(const QString& text);

/// The object name of a control. A control of an array or a member of a group is named with
/// its index after an underscore: "Option04(2)" becomes "Option04_2", "Command1(13)"
/// "Command1_13"; a cell of a layout row is "lblRmks1_3". Other names stay as they are.
QString objectNameOf(std::string_view controlName);

/// The colour a caption shows for a colour of the core.
QColor colourOf(base::Colour colour);

/// Sets the colour of a widget's caption text (labels, ticks, buttons, frames).
void setCaptionColour(QWidget* widget, base::Colour colour);
/// The caption colour a widget shows, as the core names it (Black when it is none of them).
base::Colour captionColour(const QWidget* widget);

/// Sets a widget's background to the red of a cell in its warning state, or back to the
/// colour of its kind.
void setWarningBackground(QWidget* widget, bool warning);

} // namespace vornhale::ui
