#include "ViewModels/ResourceMonitorViewModel.h"

#include "Utilities/LocalizationManager.h"
#include "Utilities/TextComparison.h"

#include <QPointer>

#include <algorithm>

namespace Quillmere {

namespace {

constexpr qsizetype rowsCollapsed = 5;
constexpr qsizetype rowsExpanded = 30;

void sort(QList<ResourceProcess> &processes, SortField field)
{
    switch (field) {
    case SortField::Cpu:
        std::ranges::stable_sort(processes, std::ranges::greater(), &ResourceProcess::cpuUsage);
        return;
    case SortField::Memory:
        std::ranges::stable_sort(processes, std::ranges::greater(), &ResourceProcess::memoryUsage);
        return;
    case SortField::Name:
        const QLocale locale = collationLocale(Localizer::shared().effectiveLanguage());
        std::ranges::stable_sort(
            processes,
            [&](const QString &left, const QString &right) {
                return localizedStandardCompare(left, right, locale) < 0;
            },
            &ResourceProcess::name);
        return;
    }
    Q_UNREACHABLE();
}

} // namespace

ResourceMonitorViewModel::ResourceMonitorViewModel(std::unique_ptr<ResourceMonitorService> service, QObject *parent)
    : QObject(parent)
    , m_service(std::move(service))
{
    connect(
        m_service.get(), &ResourceMonitorService::processesChanged, this,
        [this] {
            m_allProcesses = m_service->processes();
            showProcesses();
        },
        Qt::QueuedConnection);
    connect(
        m_service.get(), &ResourceMonitorService::isMonitoringChanged, this,
        [this] {
            m_isMonitoring = m_service->isMonitoring();
            Q_EMIT isMonitoringChanged();
        },
        Qt::QueuedConnection);
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &ResourceMonitorViewModel::showProcesses);
}

QList<ResourceProcess> ResourceMonitorViewModel::filteredAndSortedProcesses() const
{
    QList<ResourceProcess> processes = m_allProcesses;
    if (m_filterMode == FilterMode::UserApps)
        processes.removeIf([](const ResourceProcess &process) { return process.isSystemProcess; });
    if (!m_searchText.isEmpty()) {
        processes.removeIf([this](const ResourceProcess &process) {
            return !localizedCaseInsensitiveContains(process.name, m_searchText);
        });
    }
    sort(processes, m_sortField);
    return processes.first(std::min(processes.size(), m_isExpanded ? rowsExpanded : rowsCollapsed));
}

void ResourceMonitorViewModel::showProcesses()
{
    m_rows.setProcesses(filteredAndSortedProcesses());
    Q_EMIT processesChanged();
}

void ResourceMonitorViewModel::setIsExpanded(bool isExpanded)
{
    m_isExpanded = isExpanded;
    Q_EMIT choiceChanged();
    showProcesses();
}

void ResourceMonitorViewModel::setFilterMode(FilterMode mode)
{
    m_filterMode = mode;
    Q_EMIT choiceChanged();
    showProcesses();
}

void ResourceMonitorViewModel::setSortField(SortField field)
{
    m_sortField = field;
    Q_EMIT choiceChanged();
    showProcesses();
}

void ResourceMonitorViewModel::setSearchText(const QString &text)
{
    m_searchText = text;
    Q_EMIT choiceChanged();
    showProcesses();
}

QCoro::Task<> ResourceMonitorViewModel::toggle(qint32 pid)
{
    const QPointer self(this);
    const std::optional<ResourceProcess> process = shownProcess(pid);
    const std::optional<quint64> launchTime = process ? std::optional(process->launchTime) : std::nullopt;
    auto toggling = m_service->toggleInternetAccess(pid, launchTime);
    const std::optional<QString> message = co_await toggling;
    if (self)
        setTrafficErrorMessage(message);
}

void ResourceMonitorViewModel::dismissTrafficError()
{
    setTrafficErrorMessage({});
}

std::optional<ResourceProcess> ResourceMonitorViewModel::shownProcess(qint32 pid) const
{
    const QList<ResourceProcess> &shown = m_rows.processes();
    const auto found = std::ranges::find(shown, pid, &ResourceProcess::pid);
    return found == shown.end() ? std::nullopt : std::optional(*found);
}

QString ResourceMonitorViewModel::quitConfirmationText() const
{
    if (!m_processToQuit)
        return {};
    return u"%1 (PID: %2)\n%3"_qs.arg(displayName(*m_processToQuit), QString::number(m_processToQuit->pid),
                                      localized(u"resource.forceQuitWarning"_qs));
}

void ResourceMonitorViewModel::askToQuit(int pid)
{
    m_processToQuit = shownProcess(pid);
    Q_EMIT processToQuitChanged();
}

void ResourceMonitorViewModel::confirmQuit()
{
    const std::optional<ResourceProcess> process = m_processToQuit;
    dismissQuit();
    // The answer reaches no one: the next refresh shows what became of it.
    if (process)
        std::ignore = m_service->forceQuitProcess(process->pid, process->launchTime);
}

void ResourceMonitorViewModel::dismissQuit()
{
    m_processToQuit.reset();
    Q_EMIT processToQuitChanged();
}

void ResourceMonitorViewModel::setTrafficErrorMessage(const std::optional<QString> &message)
{
    m_trafficErrorMessage = message;
    Q_EMIT trafficErrorMessageChanged();
}

} // namespace Quillmere
