#pragma once

#include "Platform/Linux/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>

#include <optional>

namespace Quillmere {

/// A system bus with the traffic filter and the manager of services on it, each as it is told to be.
class PretendSystemBus final : public QDBusVirtualObject
{
public:
    /// What the manager does with an order to start something.
    enum class Habit { Start, EndJobBeforeAnswering, Refuse, Wait };

    explicit PretendSystemBus(const PrivateBus &bus);
    ~PretendSystemBus() override;
    Q_DISABLE_COPY_MOVE(PretendSystemBus)

    Habit habit = Habit::Start;
    QString jobResult = u"done"_qs; ///< What the job ends with.
    QString errorName; ///< Of Habit::Refuse.
    QString errorText; ///< Of Habit::Refuse.
    bool isActiveOnceStarted = true;
    QStringList orders; ///< Each that came: unit, mode and whether a dialog may be shown.

    void putFilter(bool isActive);

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

private:
    void start(const QDBusMessage &order);
    void endJob(const QString &path, const QString &unit);

    QDBusConnection m_bus;
    std::optional<bool> m_isActive; ///< Nothing while there is no filter.
};

} // namespace Quillmere
