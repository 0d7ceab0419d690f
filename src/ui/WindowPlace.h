#pragma once

#include <QPoint>
#include <QSize>
#include <filesystem>
#include <string_view>

class QWidget;

namespace vornhale::ui {

/// The position file keeps twips; the window works in pixels of a 96-dot screen.
inline constexpr int kTwipsPerPixel = 15;

/// Gives `window` the place that the position file `positionFile` keeps for `form`
/// (`designSize` and `designPos`, in pixels, where a value is missing or bad), and stores
/// the place again in that file each time the window closes or hides: by its own buttons,
/// by `accept`/`reject`, or by the system close. The smallest size of the form holds on
/// restore and on every resize.
void rememberPlace(QWidget& window, std::string_view form, std::filesystem::path positionFile,
                   QSize designSize, QPoint designPos);

/// Stores the current place of `window` for `form` at once.
void savePlace(const QWidget& window, std::string_view form,
               const std::filesystem::path& positionFile);

} // namespace vornhale::ui
