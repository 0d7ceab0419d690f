#pragma once

#include "base/RunObserver.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <atomic>
#include <mutex>

namespace vornhale::ui {

/// What a conversion tells the window, as signals. The conversion calls it on its own
/// thread; the signals reach the window queued, on the window's thread, in the order of the
/// calls. Progress values and label texts that follow each other faster than the window
/// draws are merged: the window shows the latest.
class QtRunObserver : public QObject, public base::RunObserver
{
    Q_OBJECT

public:
    explicit QtRunObserver(QObject* parent = nullptr);

    void status(std::string_view text, base::Colour colour) override;
    void progressRange(long maximum) override;
    void progress(long value) override;
    void label(std::string_view name, std::string_view text) override;
    void counter(int row, long value) override;

Q_SIGNALS:
    /// `colour` is a `base::Colour`.
    void statusChanged(const QString& text, int colour);
    void progressRangeChanged(long maximum);
    void progressChanged(long value);
    void labelChanged(const QString& name, const QString& text);
    void counterChanged(int row, long value);

private:
    void flush();

    std::mutex m_mutex;
    long m_progress = 0;
    bool m_progressPending = false;
    QMap<QString, QString> m_labels;
    std::atomic<bool> m_flushQueued{false};
};

} // namespace vornhale::ui
