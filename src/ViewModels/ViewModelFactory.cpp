#include "ViewModels/ViewModelFactory.h"

namespace Quillmere {

ViewModelFactory::ViewModelFactory(Machine machine, const Services &services, QObject *parent)
    : QObject(parent)
    , m_machine(std::move(machine))
    , m_services(services)
{
}

std::shared_ptr<ScannerService> ViewModelFactory::makeScanner() const
{
    return std::make_shared<ScannerService>(m_machine.files, m_machine.places);
}

std::unique_ptr<ResourceMonitorService> ViewModelFactory::makeResourceMonitorService() const
{
    return std::make_unique<ResourceMonitorService>(m_machine.workspace, m_machine.processes,
                                                    m_services.trafficControl);
}

AdvertisementBannerViewModel *ViewModelFactory::makeAdvertisementBanner(QObject *view) const
{
    return new AdvertisementBannerViewModel(m_services.advertisements, m_machine.workspace, view);
}

AdvertisementMovie *ViewModelFactory::makeAdvertisementMovie(QObject *view) const
{
    return new AdvertisementMovie(m_services.advertisements.media(), view);
}

DashboardViewModel *ViewModelFactory::makeDashboard(QObject *screen) const
{
    return new DashboardViewModel({
                                      m_machine.files,
                                      m_machine.host,
                                      m_machine.processes,
                                      CleanupService(m_machine.files, m_machine.places),
                                      [this] { return makeScanner(); },
                                      [this] { return makeResourceMonitorService(); },
                                      m_services.trafficMonitor,
                                      m_services.trafficControl,
                                      m_services.power,
                                      m_services.state,
                                  },
                                  screen);
}

ResourceMonitorViewModel *ViewModelFactory::makeResourceMonitor(QObject *card) const
{
    return new ResourceMonitorViewModel(makeResourceMonitorService(), card);
}

SafeCleanupViewModel *ViewModelFactory::makeSafeCleanup(QObject *screen) const
{
    return new SafeCleanupViewModel(makeScanner(), CleanupService(m_machine.files, m_machine.places),
                                    m_services.history, m_machine.clock, screen);
}

ProfessionalCleanupViewModel *ViewModelFactory::makeProfessionalCleanup(QObject *screen) const
{
    const DeveloperStorageService storage(m_machine.files, m_machine.places, m_machine.processes,
                                          m_machine.environment);
    return new ProfessionalCleanupViewModel(makeScanner(), storage, CleanupService(m_machine.files, m_machine.places),
                                            m_services.history, m_machine.files, m_machine.clock, screen);
}

ApplicationsViewModel *ViewModelFactory::makeApplications(QObject *screen) const
{
    return new ApplicationsViewModel(
        {
            makeScanner(),
            ApplicationInventory(m_machine.files, m_machine.places, m_machine.applications),
            m_services.trafficControl,
            m_services.history,
            m_machine.workspace,
            m_machine.clock,
        },
        screen);
}

BrowsersViewModel *ViewModelFactory::makeBrowsers(QObject *screen) const
{
    return new BrowsersViewModel(makeScanner(), BrowserService(m_machine.files, m_machine.places, m_machine.workspace),
                                 CleanupService(m_machine.files, m_machine.places), m_services.history, m_machine.clock,
                                 screen);
}

SystemDataViewModel *ViewModelFactory::makeSystemData(QObject *screen) const
{
    return new SystemDataViewModel(makeScanner(), m_machine.files, m_machine.places, screen);
}

HistoryViewModel *ViewModelFactory::makeHistory(QObject *screen) const
{
    return new HistoryViewModel(m_services.history, m_machine.files, screen);
}

LargeFilesViewModel *ViewModelFactory::makeLargeFiles(QObject *screen) const
{
    return new LargeFilesViewModel(m_machine.files, m_machine.places, m_machine.workspace, screen);
}

SidebarListModel *ViewModelFactory::makeSidebar(QObject *screen) const
{
    return new SidebarListModel(screen);
}

StartupViewModel *ViewModelFactory::makeStartup(QObject *screen) const
{
    const StartupService service(m_machine.files, m_machine.startupEntries);
    return new StartupViewModel(service, m_machine.workspace, screen);
}

SettingsViewModel *ViewModelFactory::makeSettings(QObject *screen) const
{
    return new SettingsViewModel(
        {
            m_machine.files,
            m_machine.workspace,
            m_services.power,
            m_services.state,
            DiskDriverHelper(m_machine.files, m_machine.places, m_machine.processes),
            SelfRemoval(
                {m_machine.files, m_machine.places, m_machine.bundles, m_machine.processes, m_machine.workspace}),
            m_services.terminate,
        },
        screen);
}

WelcomeViewModel *ViewModelFactory::makeWelcome(QObject *wizard) const
{
    return new WelcomeViewModel(
        {
            m_machine.files,
            m_machine.bundles,
            m_machine.workspace,
            m_services.receipt,
            BundleInstaller({m_machine.files, m_machine.places, m_machine.bundles, m_machine.processes,
                             m_machine.workspace, m_services.receipt, InstallerTerms(m_machine.files)}),
            DiskDriverHelper(m_machine.files, m_machine.places, m_machine.processes),
        },
        wizard);
}

ToolsViewModel *ViewModelFactory::makeTools(QObject *screen) const
{
    return new ToolsViewModel(m_machine.processes, m_machine.files, m_services.disks, screen);
}

DiskUtilityState *ViewModelFactory::makeDiskUtility(ToolsViewModel *tools, QObject *sheet) const
{
    return new DiskUtilityState(*tools, sheet);
}

} // namespace Quillmere
