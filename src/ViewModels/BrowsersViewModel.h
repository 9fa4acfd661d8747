#pragma once

#include "Models/CleanupResult.h"
#include "Models/OperationLog.h"
#include "Platform/Clock.h"
#include "Services/BrowserService.h"
#include "Services/CleanupService.h"
#include "Services/HistoryService.h"
#include "ViewModels/BrowserProfileListModel.h"
#include "ViewModels/LatestTask.h"

#include <QObject>

#include <QCoro/QCoroTask>

#include <optional>

namespace Quillmere {

/// The Browsers screen: detect what is installed, quit what runs, and clean what does not. A cleaning that was started
/// goes on to its end and is recorded even when the screen has gone; a detection ends with the screen.
class BrowsersViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::BrowserProfileListModel *profiles READ profiles CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY phaseChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY phaseChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY phaseChanged)
    Q_PROPERTY(double scanProgress READ scanProgress NOTIFY progressChanged)
    Q_PROPERTY(double cleanProgress READ cleanProgress NOTIFY progressChanged)
    Q_PROPERTY(bool cleanCache READ cleanCache WRITE setCleanCache NOTIFY scopeChanged)
    Q_PROPERTY(bool cleanCookies READ cleanCookies WRITE setCleanCookies NOTIFY scopeChanged)
    Q_PROPERTY(bool cleanHistory READ cleanHistory WRITE setCleanHistory NOTIFY scopeChanged)
    Q_PROPERTY(bool needsWarning READ needsWarning NOTIFY scopeChanged)
    Q_PROPERTY(bool showingWarningSheet READ showingWarningSheet NOTIFY profileToCleanChanged)

public:
    BrowsersViewModel(std::shared_ptr<ScannerService> scanner, BrowserService service, CleanupService cleaner,
                      HistoryService &history, std::shared_ptr<const Clock> clock, QObject *parent = nullptr);

    [[nodiscard]] BrowserProfileListModel *profiles() { return &m_profiles; }
    [[nodiscard]] bool isEmpty() const { return m_profiles.profiles().isEmpty(); }
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    [[nodiscard]] bool isCleaning() const { return m_isCleaning; }
    [[nodiscard]] double scanProgress() const { return m_scanProgress; }
    [[nodiscard]] double cleanProgress() const { return m_cleanProgress; }
    [[nodiscard]] bool cleanCache() const { return m_scope.cache; }
    void setCleanCache(bool clean);
    [[nodiscard]] bool cleanCookies() const { return m_scope.cookies; }
    void setCleanCookies(bool clean);
    [[nodiscard]] bool cleanHistory() const { return m_scope.history; }
    void setCleanHistory(bool clean);
    /// Has no control and no reader.
    [[nodiscard]] bool cleanLocalStorage() const { return m_cleanLocalStorage; }
    void setCleanLocalStorage(bool clean) { m_cleanLocalStorage = clean; }
    /// More than caches is to go, so that the user is asked first.
    [[nodiscard]] bool needsWarning() const { return m_scope.cookies || m_scope.history; }
    [[nodiscard]] const std::optional<BrowserProfile> &profileToClean() const { return m_profileToClean; }
    [[nodiscard]] bool showingWarningSheet() const { return m_profileToClean.has_value(); }

    // Started and left to themselves; whoever wants to know when they end awaits them.
    QCoro::Task<> detectBrowsers();
    QCoro::Task<> cleanBrowserData(BrowserProfile profile);
    QCoro::Task<> quitBrowser(BrowserProfile profile);

    Q_INVOKABLE void startDetection() { detectBrowsers(); }
    Q_INVOKABLE void quit(int row);
    /// Cleans the browser of that row, or asks first where more than its caches is to go.
    Q_INVOKABLE void clean(int row);
    Q_INVOKABLE void confirmCleaning();
    Q_INVOKABLE void dismissCleaning();

Q_SIGNALS:
    void phaseChanged();
    void progressChanged();
    void scopeChanged();
    void profileToCleanChanged();

private:
    /// What a cleaning is to take.
    struct Scope
    {
        bool cache = true;
        bool cookies = false;
        bool history = false;
    };

    [[nodiscard]] static QList<CleanupItem> collectedItems(const BrowserService &service, const BrowserProfile &profile,
                                                           const Scope &scope);
    [[nodiscard]] bool hasRow(int row) const { return row >= 0 && row < m_profiles.profiles().size(); }
    void setPart(bool &part, bool clean);
    void setScanning(bool isScanning, double progress);
    void setCleaning(bool isCleaning, double progress);

    std::shared_ptr<ScannerService> m_scanner;
    BrowserService m_service;
    CleanupService m_cleaner;
    HistoryService &m_history;
    std::shared_ptr<const Clock> m_clock;
    BrowserProfileListModel m_profiles{nullptr};
    LatestTask m_detection;
    bool m_isScanning = false;
    bool m_isCleaning = false;
    double m_scanProgress = 0;
    double m_cleanProgress = 0;
    Scope m_scope;
    bool m_cleanLocalStorage = false;
    std::optional<BrowserProfile> m_profileToClean;
};

} // namespace Quillmere
