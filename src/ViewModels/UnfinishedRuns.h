#pragma once

#include "Platform/Clock.h"
#include "Platform/FileManager.h"
#include "Values/SharedInstance.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <memory>

namespace Quillmere {

/// Counts the runs that must come to their end and their record before the program may end, and watches whether they
/// go forward. GUI thread only.
class UnfinishedRuns final : public QObject
{
    Q_OBJECT

public:
    /// Without a sign from any of them for this long, they hang.
    static constexpr std::chrono::seconds longestSilence{30};

    UnfinishedRuns(std::shared_ptr<const FileManager> files, std::shared_ptr<const Clock> clock,
                   std::chrono::milliseconds betweenLooks = std::chrono::seconds(5), QObject *parent = nullptr);

    [[nodiscard]] static UnfinishedRuns &shared() { return SharedInstance<UnfinishedRuns>::get(); }

    /// One run, from its making to its destruction. It may outlive who counts it.
    class Token
    {
    public:
        explicit Token(UnfinishedRuns &runs)
            : m_runs(&runs)
        {
            runs.begin();
        }
        ~Token()
        {
            if (m_runs)
                m_runs->end();
        }
        Q_DISABLE_COPY_MOVE(Token)

    private:
        QPointer<UnfinishedRuns> m_runs;
    };

    [[nodiscard]] bool isEmpty() const { return m_count == 0; }
    /// Whether there are runs and none has begun, ended or taken a step on a disk for the longest silence, as happens
    /// on a volume that no longer answers. A step of anybody else counts for them, such as one of a scan.
    [[nodiscard]] bool areHanging();

Q_SIGNALS:
    /// The last of them has ended.
    void finished();

private:
    void begin();
    void end();
    void hear();
    void look();

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Clock> m_clock;
    int m_count = 0;
    quint64 m_steps = 0; ///< At the last look.
    std::chrono::milliseconds m_lastSign{0}; ///< Of going forward, by the clock.
    QTimer m_timer; ///< Looks while there are runs.
};

} // namespace Quillmere
