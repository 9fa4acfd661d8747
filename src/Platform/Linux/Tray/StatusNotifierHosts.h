#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>

namespace Quillmere {

/// Whether any panel of the desktop shows status items. Listens and never asks in a circle.
class StatusNotifierHosts final : public QObject
{
    Q_OBJECT

public:
    enum class State { Unknown, Absent, Present };

    explicit StatusNotifierHosts(const QDBusConnection &bus, QObject *parent = nullptr);

    /// Unknown until the desktop has answered, later than the constructor.
    [[nodiscard]] State state() const { return m_state; }

Q_SIGNALS:
    /// The state is another, or the panels are others: what was shown must be shown anew.
    void changed();

private Q_SLOTS:
    void ask();

private:
    void takeOwner(const QString &owner);
    void enter(State state);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    State m_state = State::Unknown;
    int m_questions = 0; ///< Only the answer to the latest counts.
};

} // namespace Quillmere
