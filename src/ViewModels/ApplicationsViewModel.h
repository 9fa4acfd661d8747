#pragma once

#include "Platform/Clock.h"
#include "Platform/Workspace.h"
#include "Services/ApplicationInventory.h"
#include "Services/HistoryService.h"
#include "Services/ScannerService.h"
#include "Services/TrafficControlService.h"
#include "ViewModels/AppListModel.h"
#include "ViewModels/LatestTask.h"
#include "ViewModels/SelectedApplication.h"

#include <QObject>

#include <QCoro/QCoroTask>

#include <optional>
#include <stop_token>

namespace Quillmere {

/// The Applications screen: what is installed, what belongs to it, and the three things that can be done with it.
/// An uninstallation or a clearing that was started goes on to its end and is recorded even when the screen has gone.
class ApplicationsViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::AppListModel *apps READ apps CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY appsChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY phaseChanged)
    Q_PROPERTY(bool isUninstalling READ isUninstalling NOTIFY phaseChanged)
    Q_PROPERTY(double scanProgress READ scanProgress NOTIFY progressChanged)
    Q_PROPERTY(QString currentScanningApp READ currentScanningApp NOTIFY progressChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedAppChanged)
    Q_PROPERTY(bool hasSelectedApp READ hasSelectedApp NOTIFY selectedAppChanged)
    Q_PROPERTY(Quillmere::SelectedApplication selected READ selected NOTIFY selectedAppChanged)
    Q_PROPERTY(bool isSelectedRunning READ isSelectedRunning NOTIFY runningChanged)
    Q_PROPERTY(bool isSelectedTrafficBlocked READ isSelectedTrafficBlocked NOTIFY trafficChanged)
    Q_PROPERTY(QString trafficErrorMessage READ trafficErrorMessageText NOTIFY trafficErrorMessageChanged)
    Q_PROPERTY(bool showingTrafficError READ showingTrafficError NOTIFY trafficErrorMessageChanged)

public:
    struct Parts
    {
        std::shared_ptr<ScannerService> scanner;
        ApplicationInventory inventory;
        TrafficControlService &trafficControl;
        HistoryService &history;
        std::shared_ptr<const Workspace> workspace;
        std::shared_ptr<const Clock> clock;
    };

    explicit ApplicationsViewModel(Parts parts, QObject *parent = nullptr);

    [[nodiscard]] AppListModel *apps() { return &m_apps; }
    [[nodiscard]] bool isEmpty() const { return m_apps.apps().isEmpty(); }
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    [[nodiscard]] bool isUninstalling() const { return m_isUninstalling; }
    [[nodiscard]] double scanProgress() const { return m_scanProgress; }
    [[nodiscard]] QString currentScanningApp() const { return m_currentScanningApp; }
    [[nodiscard]] std::optional<AppItem> selectedApp() const;
    [[nodiscard]] const std::optional<QString> &trafficErrorMessage() const { return m_trafficErrorMessage; }

    [[nodiscard]] int selectedRow() const { return m_selectedApp ? m_apps.rowOf(m_selectedApp->item.id) : -1; }
    [[nodiscard]] bool hasSelectedApp() const { return m_selectedApp.has_value(); }
    [[nodiscard]] SelectedApplication selected() const { return SelectedApplication(m_selectedApp); }
    [[nodiscard]] bool isSelectedRunning() const { return m_selectedApp && m_apps.isRunning(m_selectedApp->item.id); }
    [[nodiscard]] bool isSelectedTrafficBlocked() const
    {
        return m_selectedApp && isTrafficBlocked(m_selectedApp->item);
    }
    [[nodiscard]] QString trafficErrorMessageText() const { return m_trafficErrorMessage.value_or(QString()); }
    [[nodiscard]] bool showingTrafficError() const { return m_trafficErrorMessage.has_value(); }

    /// By a rule of its own, or because eco traffic holds it back.
    [[nodiscard]] bool isTrafficBlocked(const AppItem &app) const;

    // Started and left to themselves; whoever wants to know when they end awaits them.
    QCoro::Task<> scanApplications();
    QCoro::Task<> uninstallApp(FoundApplication app);
    QCoro::Task<> clearAppData(FoundApplication app);
    QCoro::Task<> toggleTrafficBlock(AppItem app);
    /// Asks the desktop which of the applications run now.
    QCoro::Task<> refreshRunning();

    /// What the screen does when it comes up: a list that is there is kept.
    Q_INVOKABLE void scanIfEmpty();
    Q_INVOKABLE void startScan() { scanApplications(); }
    /// The scan is over at once, and leaves the list empty.
    Q_INVOKABLE void cancelScan();
    Q_INVOKABLE void select(int row);
    Q_INVOKABLE void lookForRunning() { refreshRunning(); }
    Q_INVOKABLE void uninstallSelected();
    Q_INVOKABLE void clearSelected();
    Q_INVOKABLE void toggleSelectedTraffic();
    Q_INVOKABLE void dismissTrafficError() { setTrafficErrorMessage({}); }

Q_SIGNALS:
    void appsChanged();
    void phaseChanged();
    void progressChanged();
    void selectedAppChanged();
    void runningChanged();
    void trafficChanged();
    void trafficErrorMessageChanged();

private:
    [[nodiscard]] std::stop_token beginScan();
    /// Ends the overlay, unless a later scan has taken its place.
    void leaveScan(const std::stop_token &task);
    void publish(QList<FoundApplication> apps);
    void showProgress(double fraction, const QString &name);
    void setIsUninstalling(bool isUninstalling);
    void setSelectedApp(const std::optional<FoundApplication> &app);
    void setTrafficErrorMessage(const std::optional<QString> &message);

    Parts m_parts;
    AppListModel m_apps{nullptr};
    std::optional<FoundApplication> m_selectedApp;
    std::optional<QString> m_trafficErrorMessage;
    LatestTask m_scanTask;
    LatestTask m_look; ///< For what runs.
    bool m_isScanning = false;
    bool m_isUninstalling = false;
    double m_scanProgress = 0;
    QString m_currentScanningApp;
};

} // namespace Quillmere
