#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

namespace Quillmere {

/// What one service was asked to hold back, from the question until it is given back. The service may answer late: an
/// answer that comes after this object has gone is given back at once. Needs an event loop for that alone.
class Inhibition final
{
public:
    /// Asks at once and waits for nothing. @p giveBack names the call that takes the answered number back; of an empty
    /// one the answer is a descriptor, which ends with the answer itself.
    Inhibition(const QDBusConnection &bus, const QDBusMessage &question, const QString &giveBack);
    ~Inhibition();
    Q_DISABLE_COPY_MOVE(Inhibition)

    [[nodiscard]] bool isAnswered() const { return m_answer.isFinished(); }
    [[nodiscard]] bool isObtained() const;

private:
    QDBusConnection m_bus;
    QDBusMessage m_giveBack;
    QDBusPendingCall m_answer;
};

} // namespace Quillmere
