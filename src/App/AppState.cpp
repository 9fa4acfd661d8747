#include "App/AppState.h"

#include "Utilities/AppSettingsStore.h"

namespace Quillmere {

AppState::AppState(std::shared_ptr<UserDefaults> defaults, QObject *parent)
    : QObject(parent)
    , m_defaults(std::move(defaults))
    , m_settings(AppSettingsStore::load(*m_defaults))
{
}

void AppState::setSelectedTab(SidebarTab tab)
{
    if (tab == m_selectedTab)
        return;
    m_selectedTab = tab;
    Q_EMIT selectedTabChanged();
}

void AppState::setIsScanning(bool isScanning)
{
    m_isScanning = isScanning;
    Q_EMIT isScanningChanged();
}

void AppState::setScanProgress(double progress)
{
    m_scanProgress = progress;
    Q_EMIT scanProgressChanged();
}

void AppState::setLastScanDate(const QDateTime &date)
{
    m_lastScanDate = date;
    Q_EMIT lastScanDateChanged();
}

void AppState::setLastCleanupDate(const QDateTime &date)
{
    m_lastCleanupDate = date;
    Q_EMIT lastCleanupDateChanged();
}

void AppState::setSettings(const AppSettings &settings)
{
    m_settings = settings;
    Q_EMIT settingsChanged();
    AppSettingsStore::save(m_settings, *m_defaults);
}

} // namespace Quillmere
