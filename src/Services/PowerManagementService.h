#pragma once

#include "App/AppState.h"
#include "Platform/PowerAssertions.h"
#include "Platform/ProcessRunner.h"
#include "Values/SharedInstance.h"

#include <QObject>

namespace Quillmere {

/// Keeps the machine from sleeping, also with its lid closed. GUI thread only. What the system made of it is never
/// asked: the switch shows the wish.
class PowerManagementService final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isKeepAwakeEnabled READ isKeepAwakeEnabled NOTIFY isKeepAwakeEnabledChanged)

public:
    /// @p isAdministrator whether the program itself may do what otherwise needs the system's password dialog.
    PowerManagementService(std::shared_ptr<PowerAssertions> assertions, std::shared_ptr<const ProcessRunner> processes,
                           bool isAdministrator, QObject *parent = nullptr);

    [[nodiscard]] static PowerManagementService &shared() { return SharedInstance<PowerManagementService>::get(); }

    [[nodiscard]] bool isKeepAwakeEnabled() const { return m_isKeepAwakeEnabled; }
    /// Shows the new state at once. @p appState, where given, has the wish stored if it is another one than before.
    void setKeepAwake(bool enabled, AppState *appState);
    /// Follows the stored wish, where it differs.
    void syncWithSettings(AppState &appState);

Q_SIGNALS:
    /// At every setting, an equal one too.
    void isKeepAwakeEnabledChanged();

private:
    void enablePowerAssertion();
    void releasePowerAssertion();
    void applyPmsetDisablesleep(bool enabled);

    std::shared_ptr<PowerAssertions> m_assertions;
    std::shared_ptr<const ProcessRunner> m_processes;
    const bool m_isAdministrator;
    bool m_isKeepAwakeEnabled = false;
    PowerAssertions::ID m_assertionID = 0;
    bool m_isAssertionActive = false;
};

} // namespace Quillmere
