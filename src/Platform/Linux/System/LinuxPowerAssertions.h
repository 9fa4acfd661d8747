#pragma once

#include "Platform/PowerAssertions.h"

#include <QDBusConnection>

#include <chrono>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Quillmere {

class Inhibition;

/// Asks logind, and beside it the session managers that desktops obey in its place, where they run.
///
/// All are asked at the same time. The first that grants is enough to go on; what the others grant later is kept with
/// it. So a service that hangs holds the GUI thread only where none grants, and then for the given patience.
class LinuxPowerAssertions final : public PowerAssertions
{
public:
    explicit LinuxPowerAssertions(const QDBusConnection &systemBus = QDBusConnection::systemBus(),
                                  const QDBusConnection &sessionBus = QDBusConnection::sessionBus(),
                                  std::chrono::milliseconds patience = std::chrono::milliseconds(200));
    ~LinuxPowerAssertions() override;

    /// NotSupported for every type but "PreventUserIdleSystemSleep" and every level but `on`, too.
    [[nodiscard]] Result<ID> create(const QString &type, quint32 level, const QString &name) override;
    void release(ID assertion) override;

private:
    using Inhibitions = std::vector<std::unique_ptr<Inhibition>>;

    [[nodiscard]] Inhibitions ask(const QString &name) const;
    /// True as soon as one is granted; false once all have refused or the patience is over.
    [[nodiscard]] bool waitForOne(const Inhibitions &asked) const;

    const QDBusConnection m_systemBus;
    const QDBusConnection m_sessionBus;
    const std::chrono::milliseconds m_patience;
    std::unordered_map<ID, Inhibitions> m_assertions;
    ID m_last = 0;
};

} // namespace Quillmere
