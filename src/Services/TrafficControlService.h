#pragma once

#include "Platform/FilterManager.h"
#include "Platform/UserDefaults.h"
#include "Services/TrafficFilterExtensionManager.h"
#include "Values/SharedInstance.h"

#include <QObject>
#include <QSet>

#include <QCoro/QCoroTask>

#include <memory>
#include <optional>

namespace Quillmere {

/// Decides which applications may send traffic out of the machine and hands the decision to the traffic filter. A rule
/// is recorded only after the system has taken it: a refusal changes nothing. GUI thread only. It must live
/// for as long as a change is under way; in the program it lives to the end.
class TrafficControlService : public QObject
{
    Q_OBJECT

public:
    /// Takes the rules over as they were stored. Nothing is sent to the system.
    TrafficControlService(std::shared_ptr<UserDefaults> defaults, std::shared_ptr<FilterManager> filter,
                          TrafficFilterExtensionManager &extension, QObject *parent = nullptr);

    [[nodiscard]] static TrafficControlService &shared() { return SharedInstance<TrafficControlService>::get(); }

    [[nodiscard]] static QString ecoTrafficKey() { return u"trafficControl.ecoTrafficEnabled"_qs; }
    [[nodiscard]] static QString blockedBundleIdentifiersKey() { return u"trafficControl.blockedBundleIdentifiers"_qs; }
    [[nodiscard]] static QString blockedAppNamesKey() { return u"trafficControl.blockedAppNames"_qs; }
    /// Who may send while eco traffic is on. Exact.
    [[nodiscard]] static const QSet<QString> &ecoAllowedBundleIdentifiers();
    /// Parts of lower-case names that count as allowed on the screens; the filter does not know them.
    [[nodiscard]] static const QStringList &ecoAllowedNameTokens();

    [[nodiscard]] bool ecoTrafficEnabled() const { return m_ecoTrafficEnabled; }
    [[nodiscard]] const QSet<QString> &blockedBundleIdentifiers() const { return m_blockedBundleIdentifiers; }
    [[nodiscard]] const QSet<QString> &blockedAppNames() const { return m_blockedAppNames; }
    /// Of the latest change, for people, in English. Nothing when it was not refused.
    [[nodiscard]] const std::optional<QString> &lastError() const { return m_lastError; }

    /// By its identifier where it has one, else by its name.
    [[nodiscard]] bool isExplicitlyBlocked(const QString &name, const std::optional<QString> &bundleIdentifier) const;
    /// Whether it may send while eco traffic is on.
    [[nodiscard]] static bool isEcoAllowed(const QString &name, const std::optional<QString> &bundleIdentifier);

    /// True when the rule took effect. @p applicationPath is not used.
    [[nodiscard]] virtual QCoro::Task<bool> setAppTrafficBlocked(bool blocked, QString name,
                                                                 std::optional<QString> bundleIdentifier,
                                                                 std::optional<FilePath> applicationPath);
    /// True when the change took effect.
    [[nodiscard]] QCoro::Task<bool> setEcoTrafficEnabled(bool enabled);

Q_SIGNALS:
    void ecoTrafficEnabledChanged();
    void blockedAppsChanged();
    void lastErrorChanged();

private:
    [[nodiscard]] QCoro::Task<bool> applyPolicy(QSet<QString> blockedIdentifiers, bool ecoEnabled,
                                                bool activateExtension);
    [[nodiscard]] QCoro::Task<bool> activateExtension();
    [[nodiscard]] static QCoro::Task<std::optional<QString>> load(std::shared_ptr<FilterManager> filter);
    [[nodiscard]] static QCoro::Task<std::optional<QString>> save(std::shared_ptr<FilterManager> filter);
    void configure(const QSet<QString> &blockedIdentifiers, bool ecoEnabled) const;
    void saveBlockedApps();
    void setLastError(std::optional<QString> error);

    std::shared_ptr<UserDefaults> m_defaults;
    std::shared_ptr<FilterManager> m_filter;
    TrafficFilterExtensionManager &m_extension;
    bool m_ecoTrafficEnabled;
    QSet<QString> m_blockedBundleIdentifiers;
    QSet<QString> m_blockedAppNames;
    std::optional<QString> m_lastError;
};

} // namespace Quillmere
