#include "ui/ConversionRunner.h"

#include "ui/QtRunObserver.h"

namespace vornhale::ui {

ConversionRunner::ConversionRunner(session::Session& session, QtRunObserver& observer,
                                   QObject* parent)
    : QObject(parent), m_session(session), m_observer(observer)
{
}

ConversionRunner::~ConversionRunner()
{
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

bool ConversionRunner::start(session::RunRequest request)
{
    if (m_running.exchange(true)) {
        return false;
    }
    if (m_thread.joinable()) {
        m_thread.join();
    }
    m_thread = std::thread([this, request = std::move(request)] {
        session::RunOutcome outcome = m_session.runConversion(m_observer, request);
        QMetaObject::invokeMethod(
            this,
            [this, outcome = std::move(outcome)] {
                if (m_thread.joinable()) {
                    m_thread.join();
                }
                m_outcome = outcome;
                m_running = false;
                Q_EMIT finished();
            },
            Qt::QueuedConnection);
    });
    return true;
}

} // namespace vornhale::ui
