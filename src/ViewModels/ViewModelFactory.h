#pragma once

#include "Platform/Machine.h"
#include "ViewModels/AdvertisementBannerViewModel.h"
#include "ViewModels/AdvertisementMovie.h"
#include "ViewModels/ApplicationsViewModel.h"
#include "ViewModels/BrowsersViewModel.h"
#include "ViewModels/DashboardViewModel.h"
#include "ViewModels/DiskUtilityState.h"
#include "ViewModels/HistoryViewModel.h"
#include "ViewModels/LargeFilesViewModel.h"
#include "ViewModels/ProfessionalCleanupViewModel.h"
#include "ViewModels/ResourceMonitorViewModel.h"
#include "ViewModels/SafeCleanupViewModel.h"
#include "ViewModels/SettingsViewModel.h"
#include "ViewModels/SidebarListModel.h"
#include "ViewModels/StartupViewModel.h"
#include "ViewModels/SystemDataViewModel.h"
#include "ViewModels/ToolsViewModel.h"
#include "ViewModels/WelcomeViewModel.h"

namespace Quillmere {

/// Makes the view model of a screen when the screen is first shown. It belongs to the screen and goes with it, so
/// that coming back to a tab begins anew.
class ViewModelFactory final : public QObject
{
    Q_OBJECT

public:
    /// What lives as long as the program does, and longer than any screen.
    struct Services
    {
        HistoryService &history;
        TrafficMonitorService &trafficMonitor;
        TrafficControlService &trafficControl;
        PowerManagementService &power;
        DiskMountService &disks;
        AppState &state;
        SetupReceipt receipt;
        std::function<void()> terminate; ///< Ends the program, whatever it is doing.
        AdvertisementService &advertisements;
    };

    ViewModelFactory(Machine machine, const Services &services, QObject *parent = nullptr);

    Q_INVOKABLE [[nodiscard]] Quillmere::AdvertisementBannerViewModel *makeAdvertisementBanner(QObject *view) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::AdvertisementMovie *makeAdvertisementMovie(QObject *view) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::DashboardViewModel *makeDashboard(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::ResourceMonitorViewModel *makeResourceMonitor(QObject *card) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::SafeCleanupViewModel *makeSafeCleanup(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::ProfessionalCleanupViewModel *makeProfessionalCleanup(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::ApplicationsViewModel *makeApplications(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::BrowsersViewModel *makeBrowsers(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::SystemDataViewModel *makeSystemData(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::HistoryViewModel *makeHistory(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::LargeFilesViewModel *makeLargeFiles(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::SidebarListModel *makeSidebar(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::StartupViewModel *makeStartup(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::SettingsViewModel *makeSettings(QObject *screen) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::WelcomeViewModel *makeWelcome(QObject *wizard) const;
    Q_INVOKABLE [[nodiscard]] Quillmere::ToolsViewModel *makeTools(QObject *screen) const;
    /// The sheet of @p tools, which must live longer.
    Q_INVOKABLE [[nodiscard]] Quillmere::DiskUtilityState *makeDiskUtility(Quillmere::ToolsViewModel *tools,
                                                                           QObject *sheet) const;

private:
    [[nodiscard]] std::shared_ptr<ScannerService> makeScanner() const;
    [[nodiscard]] std::unique_ptr<ResourceMonitorService> makeResourceMonitorService() const;

    Machine m_machine;
    Services m_services;
};

} // namespace Quillmere
