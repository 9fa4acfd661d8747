#include "ViewModels/UnfinishedRuns.h"

namespace Quillmere {

UnfinishedRuns::UnfinishedRuns(std::shared_ptr<const FileManager> files, std::shared_ptr<const Clock> clock,
                               std::chrono::milliseconds betweenLooks, QObject *parent)
    : QObject(parent)
    , m_files(std::move(files))
    , m_clock(std::move(clock))
{
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    m_timer.setInterval(betweenLooks);
    connect(&m_timer, &QTimer::timeout, this, &UnfinishedRuns::look);
}

bool UnfinishedRuns::areHanging()
{
    look();
    return !isEmpty() && m_clock->elapsed() - m_lastSign >= longestSilence;
}

void UnfinishedRuns::begin()
{
    ++m_count;
    hear();
    m_timer.start();
}

void UnfinishedRuns::end()
{
    hear();
    if (--m_count > 0)
        return;
    m_timer.stop();
    Q_EMIT finished();
}

void UnfinishedRuns::hear()
{
    m_steps = m_files->stepsTaken();
    m_lastSign = m_clock->elapsed();
}

void UnfinishedRuns::look()
{
    if (m_files->stepsTaken() != m_steps)
        hear();
}

} // namespace Quillmere
