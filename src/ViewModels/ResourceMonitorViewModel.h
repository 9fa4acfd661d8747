#pragma once

#include "Services/ResourceMonitorService.h"
#include "ViewModels/ResourceProcessListModel.h"

#include <QObject>

namespace Quillmere {

namespace FilterModes {
Q_NAMESPACE

/// Which applications the process monitor lists.
enum class FilterMode { All, UserApps };
Q_ENUM_NS(FilterMode)
} // namespace FilterModes

namespace SortFields {
Q_NAMESPACE

/// What the process monitor is sorted by: loads falling, names rising.
enum class SortField { Cpu, Memory, Name };
Q_ENUM_NS(SortField)
} // namespace SortFields

using FilterModes::FilterMode;
using SortFields::SortField;

/// The process monitor: the running applications, filtered, searched and sorted, and what can be done with them.
class ResourceMonitorViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::ResourceProcessListModel *processes READ processes CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY processesChanged)
    Q_PROPERTY(bool isMonitoring READ isMonitoring NOTIFY isMonitoringChanged)
    Q_PROPERTY(bool isExpanded READ isExpanded WRITE setIsExpanded NOTIFY choiceChanged)
    Q_PROPERTY(Quillmere::FilterModes::FilterMode filterMode READ filterMode WRITE setFilterMode NOTIFY choiceChanged)
    Q_PROPERTY(Quillmere::SortFields::SortField sortField READ sortField WRITE setSortField NOTIFY choiceChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY choiceChanged)
    Q_PROPERTY(QString trafficErrorMessage READ trafficErrorMessage NOTIFY trafficErrorMessageChanged)
    Q_PROPERTY(bool showingQuitConfirmation READ showingQuitConfirmation NOTIFY processToQuitChanged)
    Q_PROPERTY(QString quitConfirmationText READ quitConfirmationText NOTIFY processToQuitChanged)

public:
    explicit ResourceMonitorViewModel(std::unique_ptr<ResourceMonitorService> service, QObject *parent = nullptr);

    [[nodiscard]] ResourceProcessListModel *processes() { return &m_rows; }
    /// Nothing is left after filtering, or nothing has come yet.
    [[nodiscard]] bool isEmpty() const { return m_rows.processes().isEmpty(); }
    [[nodiscard]] const QList<ResourceProcess> &allProcesses() const { return m_allProcesses; }
    [[nodiscard]] bool isMonitoring() const { return m_isMonitoring; }
    [[nodiscard]] bool isExpanded() const { return m_isExpanded; }
    void setIsExpanded(bool isExpanded);
    [[nodiscard]] FilterMode filterMode() const { return m_filterMode; }
    void setFilterMode(FilterMode mode);
    [[nodiscard]] SortField sortField() const { return m_sortField; }
    void setSortField(SortField field);
    [[nodiscard]] QString searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    /// What to tell of a traffic rule that was refused. Empty when there is nothing to tell.
    [[nodiscard]] QString trafficErrorMessage() const { return m_trafficErrorMessage.value_or(QString()); }

    [[nodiscard]] bool showingQuitConfirmation() const { return m_processToQuit.has_value(); }
    /// What stands under the title of the question. Empty while nothing is asked.
    [[nodiscard]] QString quitConfirmationText() const;

    /// The rows as they are shown, at most 5, or 30 when expanded.
    [[nodiscard]] QList<ResourceProcess> filteredAndSortedProcesses() const;

    Q_INVOKABLE void startMonitoring() { m_service->startMonitoring(); }
    Q_INVOKABLE void stopMonitoring() { m_service->stopMonitoring(); }
    Q_INVOKABLE void refreshProcesses() { m_service->refreshProcesses(); }
    Q_INVOKABLE void toggleInternetAccess(int pid) { toggle(pid); }
    Q_INVOKABLE void dismissTrafficError();
    /// Asks whether the application of that row may be ended, and remembers which one it is.
    Q_INVOKABLE void askToQuit(int pid);
    /// Ends the application that was asked about. Its row goes when the list is refreshed next.
    Q_INVOKABLE void confirmQuit();
    Q_INVOKABLE void dismissQuit();

    /// What toggleInternetAccess() starts and leaves to itself.
    QCoro::Task<> toggle(qint32 pid);

Q_SIGNALS:
    void processesChanged();
    void isMonitoringChanged();
    void choiceChanged();
    void trafficErrorMessageChanged();
    void processToQuitChanged();

private:
    [[nodiscard]] std::optional<ResourceProcess> shownProcess(qint32 pid) const;
    void showProcesses();
    void setTrafficErrorMessage(const std::optional<QString> &message);

    std::unique_ptr<ResourceMonitorService> m_service;
    ResourceProcessListModel m_rows{nullptr};
    QList<ResourceProcess> m_allProcesses;
    bool m_isMonitoring = false;
    std::optional<QString> m_trafficErrorMessage;
    std::optional<ResourceProcess> m_processToQuit;
    bool m_isExpanded = false;
    FilterMode m_filterMode = FilterMode::UserApps;
    SortField m_sortField = SortField::Cpu;
    QString m_searchText;
};

} // namespace Quillmere
