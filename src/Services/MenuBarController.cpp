#include "Services/MenuBarController.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

#include <utility>

namespace Quillmere {

namespace {

const QString heading = u"Quillmere"_qs;

MenuEntry information(const QString &title, const QString &symbol)
{
    MenuEntry entry;
    entry.title = title;
    entry.symbol = symbol;
    return entry;
}

MenuEntry figure(const QString &key, const QString &value, const QString &symbol)
{
    return information(localized(key) + u": "_qs + value, symbol);
}

MenuEntry separator()
{
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Separator;
    return entry;
}

QString byteCount(quint64 bytes)
{
    return formatByteCount(static_cast<qint64>(bytes));
}

} // namespace

MenuBarController::MenuBarController(StatusBar &statusBar, PowerManagementService &power, Application application,
                                     QObject *parent)
    : QObject(parent)
    , m_statusBar(statusBar)
    , m_power(power)
    , m_application(std::move(application))
{
}

MenuBarController::~MenuBarController() = default;

void MenuBarController::start(AppState *appState, MenuBarStatusService *statusService)
{
    m_appState = appState;
    m_statusService = statusService;
    if (!m_statusItem)
        m_statusItem = m_statusBar.makeStatusItem();
    observe();
    updateStatusItem();
}

void MenuBarController::observe()
{
    m_observers = std::make_unique<QObject>();
    const auto update = [this] { updateStatusItem(); };
    const auto follow
        = [&](auto *object, auto signal) { connect(object, signal, m_observers.get(), update, Qt::QueuedConnection); };
    follow(m_appState.data(), &AppState::settingsChanged);
    follow(m_statusService.data(), &MenuBarStatusService::cpuUsageChanged);
    follow(m_statusService.data(), &MenuBarStatusService::ramUsageChanged);
    follow(m_statusService.data(), &MenuBarStatusService::trafficUsageChanged);
    follow(m_statusService.data(), &MenuBarStatusService::trafficStatsChanged);
    follow(&Localizer::shared(), &Localizer::languageChanged);
    m_power.syncWithSettings(*m_appState);
    follow(&m_power, &PowerManagementService::isKeepAwakeEnabledChanged);
}

void MenuBarController::updateStatusItem()
{
    if (!m_statusItem || !m_appState || !m_statusService)
        return;
    const QString title = m_statusService->statusBarTitle(m_appState->settings().menuBarDisplayMode);
    m_statusItem->setTitle(title, title.isEmpty() ? ImagePosition::ImageOnly : ImagePosition::ImageLeft);
    m_statusItem->setToolTip(heading + u" - "_qs + m_statusService->detailText());
    m_statusItem->setMenu(buildMenu());
}

QList<MenuEntry> MenuBarController::buildMenu()
{
    QList<MenuEntry> entries = {information(heading, u"leaf.circle.fill"_qs)};
    if (m_statusService)
        entries += figures();
    entries.append(separator());
    MenuEntry keepAwake = actionItem(u"keepAwake.menuItem"_qs, u"bolt.fill"_qs, &MenuBarController::toggleKeepAwake);
    keepAwake.isCheckable = true;
    keepAwake.isChecked = m_power.isKeepAwakeEnabled();
    entries.append(keepAwake);
    entries.append(separator());
    entries.append(actionItem(u"menu.openDashboard"_qs, u"gauge.with.dots.needle.67percent"_qs,
                              &MenuBarController::openDashboard));
    entries.append(actionItem(u"menu.settings"_qs, u"gearshape"_qs, &MenuBarController::openSettings));
    entries.append(separator());
    entries.append(actionItem(u"menu.quit"_qs, u"power"_qs, &MenuBarController::quitApp));
    return entries;
}

QList<MenuEntry> MenuBarController::figures() const
{
    const TrafficStats &stats = m_statusService->trafficStats();
    return {
        information(m_statusService->detailText(), u"info.circle"_qs),
        separator(),
        figure(u"menu.cpu"_qs, roundedPercent(m_statusService->cpuUsage()), u"cpu"_qs),
        figure(u"menu.ram"_qs, roundedPercent(m_statusService->ramUsage()), u"memorychip"_qs),
        figure(u"menu.download"_qs, formatByteRate(stats.currentDownload), u"arrow.down.circle"_qs),
        figure(u"menu.upload"_qs, formatByteRate(stats.currentUpload), u"arrow.up.circle"_qs),
        figure(u"menu.totalDownload"_qs, byteCount(stats.totalDownload), u"tray.and.arrow.down"_qs),
        figure(u"menu.totalUpload"_qs, byteCount(stats.totalUpload), u"tray.and.arrow.up"_qs),
    };
}

MenuEntry MenuBarController::actionItem(const QString &key, const QString &symbol, void (MenuBarController::*action)())
{
    MenuEntry entry = information(localized(key), symbol);
    entry.isEnabled = true;
    entry.action = [self = QPointer(this), action] {
        if (self)
            (self->*action)();
    };
    return entry;
}

void MenuBarController::toggleKeepAwake()
{
    if (!m_appState)
        return;
    m_power.setKeepAwake(!m_power.isKeepAwakeEnabled(), m_appState);
    updateStatusItem();
}

void MenuBarController::openDashboard()
{
    openTab(SidebarTab::Dashboard);
}

void MenuBarController::openSettings()
{
    openTab(SidebarTab::Settings);
}

void MenuBarController::openTab(SidebarTab tab)
{
    if (m_appState)
        m_appState->setSelectedTab(tab);
    m_application.showMainWindow();
}

void MenuBarController::quitApp()
{
    m_application.terminate();
}

} // namespace Quillmere
