#include "ui/WindowPlace.h"

#include "settings/WindowPositions.h"

#include <QEvent>
#include <QObject>
#include <QWidget>
#include <algorithm>
#include <string>
#include <utility>

namespace vornhale::ui {

namespace {

/// Saves on the way out and holds the smallest size; lives as a child of its window.
class PlaceKeeper : public QObject
{
public:
    PlaceKeeper(QWidget& window, std::string form, std::filesystem::path file)
        : QObject(&window), m_window(window), m_form(std::move(form)), m_file(std::move(file))
    {
        window.installEventFilter(this);
        holdMinimum();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != &m_window) {
            return false;
        }
        // A dialog ended by accept() only hides; a closed window hides too. One save for
        // each showing is enough. The hiding that the system does to a minimised window is
        // no close.
        const bool closing = (event->type() == QEvent::Hide && !event->spontaneous()) ||
                             event->type() == QEvent::Close;
        if (event->type() == QEvent::Show && !event->spontaneous()) {
            m_saved = false;
        } else if (closing && !m_saved) {
            savePlace(m_window, m_form, m_file);
            m_saved = true;
        } else if (event->type() == QEvent::Resize) {
            holdMinimum();
        }
        return false;
    }

private:
    void holdMinimum()
    {
        const settings::MinimumSize bound = settings::minimumSize(m_form);
        const int w = bound.width ? static_cast<int>(*bound.width / kTwipsPerPixel) : 0;
        const int h = bound.height ? static_cast<int>(*bound.height / kTwipsPerPixel) : 0;
        if (m_window.minimumWidth() < w || m_window.minimumHeight() < h) {
            m_window.setMinimumSize(std::max(m_window.minimumWidth(), w),
                                    std::max(m_window.minimumHeight(), h));
        }
    }

    QWidget& m_window;
    std::string m_form;
    std::filesystem::path m_file;
    bool m_saved = false;
};

} // namespace

void rememberPlace(QWidget& window, std::string_view form, std::filesystem::path positionFile,
                   QSize designSize, QPoint designPos)
{
    settings::WindowPlacement design;
    design.width = designSize.width() * kTwipsPerPixel;
    design.height = designSize.height() * kTwipsPerPixel;
    design.left = designPos.x() * kTwipsPerPixel;
    design.top = designPos.y() * kTwipsPerPixel;
    const settings::WindowPlacement p =
        settings::enforceMinimumSize(form, settings::restorePosition(positionFile, form, design));
    window.resize(static_cast<int>(p.width / kTwipsPerPixel),
                  static_cast<int>(p.height / kTwipsPerPixel));
    window.move(static_cast<int>(p.left / kTwipsPerPixel),
                static_cast<int>(p.top / kTwipsPerPixel));
    if (p.state == 2) {
        window.setWindowState(Qt::WindowMaximized);
    } else if (p.state == 1) {
        window.setWindowState(Qt::WindowMinimized);
    }
    new PlaceKeeper(window, std::string(form), std::move(positionFile));
}

void savePlace(const QWidget& window, std::string_view form,
               const std::filesystem::path& positionFile)
{
    settings::WindowPlacement p;
    const bool away = window.isMaximized() || window.isMinimized() || window.isFullScreen();
    const QRect r =
        away && window.normalGeometry().isValid() ? window.normalGeometry() : window.geometry();
    // A minimised window is stored as a normal one, so that it never opens out of sight.
    p.state = window.isMaximized() ? 2 : 0;
    // The place is where the frame stands, as the restore moves it there; a maximised or
    // minimised window keeps the place it returns to.
    const QPoint at = away ? r.topLeft() : window.pos();
    p.left = at.x() * kTwipsPerPixel;
    p.top = at.y() * kTwipsPerPixel;
    p.width = r.width() * kTwipsPerPixel;
    p.height = r.height() * kTwipsPerPixel;
    settings::savePosition(positionFile, form, p);
}

} // namespace vornhale::ui
