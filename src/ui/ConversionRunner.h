#pragma once

#include "session/Session.h"

#include <QObject>
#include <atomic>
#include <thread>

namespace vornhale::ui {

class QtRunObserver;

/// Runs one conversion of the session on a thread of its own, so that the window stays
/// alive; the observer's signals reach the window queued. `finished` is emitted on the
/// window's thread when the run has returned.
class ConversionRunner : public QObject
{
    Q_OBJECT

public:
    ConversionRunner(session::Session& session, QtRunObserver& observer, QObject* parent = nullptr);
    /// Waits for a run still going.
    ~ConversionRunner() override;

    bool running() const { return m_running; }
    /// Starts a run; false when one is going already.
    bool start(session::RunRequest request = {});
    /// The outcome of the last run that finished.
    const session::RunOutcome& outcome() const { return m_outcome; }

Q_SIGNALS:
    void finished();

private:
    session::Session& m_session;
    QtRunObserver& m_observer;
    std::thread m_thread;
    std::atomic<bool> m_running{false};
    session::RunOutcome m_outcome;
};

} // namespace vornhale::ui
