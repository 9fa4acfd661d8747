#pragma once

#include "Values/SharedInstance.h"

#include <QObject>

namespace Quillmere {

/// Counts the runs that must come to their end and their record before the program may end. GUI thread only.
class UnfinishedRuns final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] static UnfinishedRuns &shared() { return SharedInstance<UnfinishedRuns>::get(); }

    /// One run, from its making to its destruction.
    class Token
    {
    public:
        explicit Token(UnfinishedRuns &runs)
            : m_runs(runs)
        {
            ++m_runs.m_count;
        }
        ~Token()
        {
            if (--m_runs.m_count == 0)
                Q_EMIT m_runs.finished();
        }
        Q_DISABLE_COPY_MOVE(Token)

    private:
        UnfinishedRuns &m_runs;
    };

    [[nodiscard]] bool isEmpty() const { return m_count == 0; }

Q_SIGNALS:
    /// The last of them has ended.
    void finished();

private:
    int m_count = 0;
};

} // namespace Quillmere
