#include "ViewModels/SettingsViewModel.h"

#include "Services/PermissionService.h"
#include "Utilities/Deployment.h"
#include "Utilities/LocalizationManager.h"
#include "ViewModels/DesktopRequests.h"

#include <QUrl>

namespace Quillmere {

SettingsViewModel::SettingsViewModel(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(std::move(parts))
    , m_drivers(m_parts.drivers, DriversViewModel::First::Look)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &SettingsViewModel::languageChanged);
    connect(&m_parts.state, &AppState::settingsChanged, this, &SettingsViewModel::settingsChanged);
}

QStringList SettingsViewModel::languages() const
{
    QStringList names;
    for (const auto &each : RawValues<Language>::cases)
        names.append(displayName(each.first));
    return names;
}

int SettingsViewModel::languageIndex() const
{
    return int(Localizer::shared().language());
}

void SettingsViewModel::setLanguageIndex(int index)
{
    if (const auto language = caseAt<Language>(index))
        Localizer::shared().setLanguage(*language);
}

void SettingsViewModel::setThemeIndex(int index)
{
    if (const auto theme = caseAt<AppTheme>(index))
        edit([theme](AppSettings &settings) { settings.theme = *theme; });
}

void SettingsViewModel::setMenuBarModeIndex(int index)
{
    if (const auto mode = caseAt<MenuBarDisplayMode>(index))
        edit([mode](AppSettings &settings) { settings.menuBarDisplayMode = *mode; });
}

void SettingsViewModel::setKeepAwake(bool keepAwake)
{
    m_parts.power.setKeepAwake(keepAwake, &m_parts.state);
}

void SettingsViewModel::setConfirmsDangerous(bool confirms)
{
    edit([confirms](AppSettings &settings) { settings.alwaysConfirmDangerous = confirms; });
}

QString SettingsViewModel::makerName() const
{
    return Deployment::makerName();
}

QString SettingsViewModel::makerLocation() const
{
    return Deployment::makerLocation();
}

QString SettingsViewModel::leadDeveloper() const
{
    return Deployment::leadDeveloper();
}

QString SettingsViewModel::makerPage() const
{
    return Deployment::makerPage().host();
}

void SettingsViewModel::appear()
{
    m_hasFullDiskAccess = PermissionService::hasFullDiskAccess(*m_parts.files);
    m_drivers.check();
    Q_EMIT appeared();
}

void SettingsViewModel::openFullDiskAccessSettings() const
{
    withoutWaiting(m_parts.workspace, &PermissionService::openFullDiskAccessSettings);
}

void SettingsViewModel::openMakerPage() const
{
    openWithoutWaiting(m_parts.workspace, Deployment::makerPage());
}

void SettingsViewModel::selfUninstall() const
{
    m_parts.removal.run();
    m_parts.terminate();
}

template<typename Change>
void SettingsViewModel::edit(Change change)
{
    AppSettings settings = m_parts.state.settings();
    change(settings);
    m_parts.state.setSettings(settings);
}

} // namespace Quillmere
