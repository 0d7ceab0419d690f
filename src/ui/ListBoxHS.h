#pragma once

#include <QFont>
#include <QString>
#include <memory>

class QFontMetrics;
class QListWidget;

namespace vornhale::ui {

/// A list box with a horizontal scroll bar as wide as its widest line: each added text is
/// measured with the list's own font, and the list's horizontal extent follows the widest.
/// It does not own the list.
class ListBoxHS
{
public:
    /// Wraps `list` (which must outlive this object): one line per item, no wrapping, the
    /// horizontal scroll bar shown when a line is wider than the list.
    explicit ListBoxHS(QListWidget& list);
    ~ListBoxHS();

    /// The wrapped list.
    QListWidget& ListBox() const { return *m_list; }
    void setListBox(QListWidget& list);

    /// Whether a wider text refreshes the scroll bar at once (on by default).
    bool autoRefresh() const { return m_auto; }
    void setAutoRefresh(bool on) { m_auto = on; }

    /// Adds `item` at the end, or before row `index` when it is 0 or more; a text wider than
    /// the widest so far becomes the widest and, with `autoRefresh`, refreshes the scroll bar.
    void AddItem(const QString& item, int index = -1);

    /// Measures every line again and sets the horizontal extent of the list to the widest.
    void RefreshHSBar();

    /// The widest text in pixels, as the list's font draws it.
    int widest() const { return m_widest; }
    /// The horizontal extent in force: the widest text plus the item's margins, in pixels.
    int horizontalExtent() const;

private:
    int measure(const QString& text) const;
    void applyExtent();

    QListWidget* m_list;
    // The metrics of the list's font, made again when the font changes.
    mutable QFont m_metricsFont;
    mutable std::unique_ptr<QFontMetrics> m_metrics;
    bool m_auto = true;
    int m_widest = 0;
};

} // namespace vornhale::ui
