#pragma once

#include "Models/AppSettings.h"
#include "Models/SidebarTab.h"
#include "Platform/UserDefaults.h"

#include <QDateTime>
#include <QObject>

#include <memory>

namespace Quillmere {

/// What all screens share: the destination shown, the marks of the last runs, and the settings. GUI thread only.
class AppState final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(
        Quillmere::SidebarTabs::SidebarTab selectedTab READ selectedTab WRITE setSelectedTab NOTIFY selectedTabChanged)
    Q_PROPERTY(bool isScanning READ isScanning WRITE setIsScanning NOTIFY isScanningChanged)
    Q_PROPERTY(double scanProgress READ scanProgress WRITE setScanProgress NOTIFY scanProgressChanged)
    Q_PROPERTY(QDateTime lastScanDate READ lastScanDate NOTIFY lastScanDateChanged)
    Q_PROPERTY(QDateTime lastCleanupDate READ lastCleanupDate NOTIFY lastCleanupDateChanged)

public:
    /// Loads the settings.
    explicit AppState(std::shared_ptr<UserDefaults> defaults, QObject *parent = nullptr);

    /// The live state; null until the main window has appeared.
    [[nodiscard]] static AppState *shared() { return s_shared; }
    static void setShared(AppState *state) { s_shared = state; }

    [[nodiscard]] SidebarTab selectedTab() const { return m_selectedTab; }
    void setSelectedTab(SidebarTab tab);
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    void setIsScanning(bool isScanning);
    [[nodiscard]] double scanProgress() const { return m_scanProgress; }
    void setScanProgress(double progress);

    /// Invalid until a safe scan has ended in this run of the program.
    [[nodiscard]] QDateTime lastScanDate() const { return m_lastScanDate; }
    void setLastScanDate(const QDateTime &date);
    /// Invalid until a safe cleanup has ended in this run of the program.
    [[nodiscard]] QDateTime lastCleanupDate() const { return m_lastCleanupDate; }
    void setLastCleanupDate(const QDateTime &date);

    [[nodiscard]] const AppSettings &settings() const { return m_settings; }
    /// Publishes the change, then saves it at once. Every assignment counts, an equal one too.
    void setSettings(const AppSettings &settings);

Q_SIGNALS:
    void selectedTabChanged();
    void isScanningChanged();
    void scanProgressChanged();
    void lastScanDateChanged();
    void lastCleanupDateChanged();
    void settingsChanged();

private:
    inline static AppState *s_shared = nullptr;

    std::shared_ptr<UserDefaults> m_defaults;
    AppSettings m_settings;
    SidebarTab m_selectedTab = SidebarTab::Dashboard;
    bool m_isScanning = false;
    double m_scanProgress = 0;
    QDateTime m_lastScanDate;
    QDateTime m_lastCleanupDate;
};

} // namespace Quillmere
