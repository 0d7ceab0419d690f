#include "ui/QtRunObserver.h"

#include "ui/WidgetLook.h"

namespace vornhale::ui {

QtRunObserver::QtRunObserver(QObject* parent) : QObject(parent) {}

void QtRunObserver::status(std::string_view text, base::Colour colour)
{
    // A status text comes after the progress and labels told before it.
    flush();
    Q_EMIT statusChanged(qs(text), static_cast<int>(colour));
}

void QtRunObserver::progressRange(long maximum)
{
    flush();
    Q_EMIT progressRangeChanged(maximum);
}

void QtRunObserver::progress(long value)
{
    {
        const std::lock_guard lock(m_mutex);
        m_progress = value;
        m_progressPending = true;
    }
    if (!m_flushQueued.exchange(true)) {
        QMetaObject::invokeMethod(this, &QtRunObserver::flush, Qt::QueuedConnection);
    }
}

void QtRunObserver::label(std::string_view name, std::string_view text)
{
    {
        const std::lock_guard lock(m_mutex);
        m_labels.insert(qs(name), qs(text));
    }
    if (!m_flushQueued.exchange(true)) {
        QMetaObject::invokeMethod(this, &QtRunObserver::flush, Qt::QueuedConnection);
    }
}

void QtRunObserver::counter(int row, long value)
{
    flush();
    Q_EMIT counterChanged(row, value);
}

void QtRunObserver::flush()
{
    m_flushQueued = false;
    bool progressPending = false;
    long value = 0;
    QMap<QString, QString> labels;
    {
        const std::lock_guard lock(m_mutex);
        progressPending = m_progressPending;
        value = m_progress;
        m_progressPending = false;
        labels.swap(m_labels);
    }
    if (progressPending) {
        Q_EMIT progressChanged(value);
    }
    for (auto it = labels.cbegin(); it != labels.cend(); ++it) {
        Q_EMIT labelChanged(it.key(), it.value());
    }
}

} // namespace vornhale::ui
