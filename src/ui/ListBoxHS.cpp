#include "ui/ListBoxHS.h"

#include <QFontMetrics>
#include <QListWidget>
#include <QStyle>
#include <algorithm>

namespace vornhale::ui {
namespace {

// Room the item view gives a line beside its text: the text margins on both sides.
int itemMargins(const QListWidget& list)
{
    return 2 * (list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &list) + 1) + 4;
}

} // namespace

ListBoxHS::ListBoxHS(QListWidget& list) : m_list(&list)
{
    setListBox(list);
}

ListBoxHS::~ListBoxHS() = default;

void ListBoxHS::setListBox(QListWidget& list)
{
    m_list = &list;
    // The first line carries the width of the widest, so the scroll range of the view is the
    // measured extent.
    m_list->setWordWrap(false);
    m_list->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_widest = 0;
    RefreshHSBar();
}

int ListBoxHS::measure(const QString& text) const
{
    if (!m_metrics || m_metricsFont != m_list->font()) {
        m_metricsFont = m_list->font();
        m_metrics = std::make_unique<QFontMetrics>(m_metricsFont);
    }
    return m_metrics->horizontalAdvance(text);
}

int ListBoxHS::horizontalExtent() const
{
    return m_widest + itemMargins(*m_list);
}

void ListBoxHS::AddItem(const QString& item, int index)
{
    if (index < 0 || index > m_list->count()) {
        m_list->addItem(item);
    } else {
        m_list->insertItem(index, item);
    }
    const int width = measure(item);
    if (width > m_widest) {
        m_widest = width;
        if (m_auto) {
            applyExtent();
        }
    } else if (m_auto && (index == 0 || m_list->count() == 1)) {
        // A new first line carries the extent.
        applyExtent();
    }
}

void ListBoxHS::RefreshHSBar()
{
    m_widest = 0;
    for (int row = 0; row < m_list->count(); ++row) {
        m_widest = std::max(m_widest, measure(m_list->item(row)->text()));
    }
    applyExtent();
}

void ListBoxHS::applyExtent()
{
    if (m_list->count() == 0) {
        return;
    }
    if (m_list->count() > 1) {
        // A line inserted before it took the first place: the former first gives it up.
        m_list->item(1)->setSizeHint(QSize());
    }
    const int height = QFontMetrics(m_list->font()).height() + 2;
    m_list->item(0)->setSizeHint(QSize(horizontalExtent(), height));
}

} // namespace vornhale::ui
