#include "Services/PowerManagementService.h"

#include "Utilities/BackgroundWork.h"

#include <tuple>
#include <utility>

namespace Quillmere {

PowerManagementService::PowerManagementService(std::shared_ptr<PowerAssertions> assertions,
                                               std::shared_ptr<const ProcessRunner> processes, bool isAdministrator,
                                               QObject *parent)
    : QObject(parent)
    , m_assertions(std::move(assertions))
    , m_processes(std::move(processes))
    , m_isAdministrator(isAdministrator)
{
}

void PowerManagementService::setKeepAwake(bool enabled, AppState *appState)
{
    m_isKeepAwakeEnabled = enabled;
    Q_EMIT isKeepAwakeEnabledChanged();
    if (appState && appState->settings().keepAwakeEnabled != enabled) {
        AppSettings settings = appState->settings();
        settings.keepAwakeEnabled = enabled;
        appState->setSettings(settings);
    }
    applyPmsetDisablesleep(enabled);
    if (enabled)
        enablePowerAssertion();
    else
        releasePowerAssertion();
}

void PowerManagementService::syncWithSettings(AppState &appState)
{
    const bool wanted = appState.settings().keepAwakeEnabled;
    if (wanted != m_isKeepAwakeEnabled)
        setKeepAwake(wanted, &appState);
}

void PowerManagementService::enablePowerAssertion()
{
    if (m_isAssertionActive)
        return;
    const Result<PowerAssertions::ID> created = m_assertions->create(
        u"PreventUserIdleSystemSleep"_qs, PowerAssertions::on, u"Quillmere Keep Awake Mode Active"_qs);
    if (!created)
        return;
    m_assertionID = created.value();
    m_isAssertionActive = true;
}

void PowerManagementService::releasePowerAssertion()
{
    if (!m_isAssertionActive)
        return;
    m_assertions->release(std::exchange(m_assertionID, 0));
    m_isAssertionActive = false;
}

void PowerManagementService::applyPmsetDisablesleep(bool enabled)
{
    const QString value = enabled ? u"1"_qs : u"0"_qs;
    // Nobody looks at how either ends: the switch shows the wish.
    if (m_isAdministrator) {
        std::ignore = m_processes->launch({u"/usr/bin/pmset"_qs, {u"-a"_qs, u"disablesleep"_qs, value}});
        return;
    }
    const QString script = u"do shell script \"pmset -a disablesleep %1\" with administrator privileges"_qs.arg(value);
    std::ignore = inElevation([processes = m_processes, script] { return processes->executeScript(script); });
}

} // namespace Quillmere
