#include "Services/TrafficControlService.h"

#include "Utilities/Continuation.h"

#include <algorithm>
#include <utility>

namespace Quillmere {

namespace {

QSet<QString> storedSet(const UserDefaults &defaults, const QString &key)
{
    const QStringList stored = defaults.stringArray(key).value_or(QStringList());
    return {stored.begin(), stored.end()};
}

// Sorted, so that equal policies give equal records.
QStringList sorted(const QSet<QString> &texts)
{
    QStringList list(texts.begin(), texts.end());
    list.sort();
    return list;
}

bool isPresent(const std::optional<QString> &identifier)
{
    return identifier && !identifier->isEmpty();
}

} // namespace

TrafficControlService::TrafficControlService(std::shared_ptr<UserDefaults> defaults,
                                             std::shared_ptr<FilterManager> filter,
                                             TrafficFilterExtensionManager &extension, QObject *parent)
    : QObject(parent)
    , m_defaults(std::move(defaults))
    , m_filter(std::move(filter))
    , m_extension(extension)
    , m_ecoTrafficEnabled(m_defaults->boolean(ecoTrafficKey()))
    , m_blockedBundleIdentifiers(storedSet(*m_defaults, blockedBundleIdentifiersKey()))
    , m_blockedAppNames(storedSet(*m_defaults, blockedAppNamesKey()))
{
}

const QSet<QString> &TrafficControlService::ecoAllowedBundleIdentifiers()
{
    static const QSet<QString> identifiers = {
        u"com.google.Chrome"_qs,
        u"com.brave.Browser"_qs,
        u"com.apple.Safari"_qs,
        u"org.mozilla.firefox"_qs,
        u"com.duckduckgo.macos.browser"_qs,
        u"com.microsoft.edgemac"_qs,
        u"org.whispersystems.signal-desktop"_qs,
        u"net.whatsapp.WhatsApp"_qs,
        u"com.facebook.archon"_qs,
        u"ru.keepcoder.Telegram"_qs,
        u"org.telegram.desktop"_qs,
        u"com.tdesktop.Telegram"_qs,
    };
    return identifiers;
}

const QStringList &TrafficControlService::ecoAllowedNameTokens()
{
    static const QStringList tokens = {
        u"chrome"_qs, u"brave"_qs,  u"safari"_qs,   u"firefox"_qs,  u"duckduckgo"_qs,
        u"edge"_qs,   u"signal"_qs, u"whatsapp"_qs, u"telegram"_qs,
    };
    return tokens;
}

bool TrafficControlService::isExplicitlyBlocked(const QString &name,
                                                const std::optional<QString> &bundleIdentifier) const
{
    if (isPresent(bundleIdentifier))
        return m_blockedBundleIdentifiers.contains(*bundleIdentifier);
    return m_blockedAppNames.contains(name);
}

bool TrafficControlService::isEcoAllowed(const QString &name, const std::optional<QString> &bundleIdentifier)
{
    if (bundleIdentifier && ecoAllowedBundleIdentifiers().contains(*bundleIdentifier))
        return true;
    const QString lowerCase = name.toLower();
    return std::ranges::any_of(ecoAllowedNameTokens(), [&](const QString &token) { return lowerCase.contains(token); });
}

QCoro::Task<bool> TrafficControlService::setAppTrafficBlocked(bool blocked, QString name,
                                                              std::optional<QString> bundleIdentifier,
                                                              std::optional<FilePath>)
{
    setLastError({});
    if (!isPresent(bundleIdentifier)) {
        setLastError(u"This application has no bundle identifier, so macOS cannot safely create an app-specific "
                     "outbound rule."_qs);
        co_return false;
    }
    QSet<QString> identifiers = m_blockedBundleIdentifiers;
    if (blocked)
        identifiers.insert(*bundleIdentifier);
    else
        identifiers.remove(*bundleIdentifier);

    auto applying = applyPolicy(identifiers, m_ecoTrafficEnabled, true);
    const bool isAccepted = co_await applying;
    if (isAccepted) {
        m_blockedBundleIdentifiers = identifiers;
        m_blockedAppNames.remove(name);
        saveBlockedApps();
        Q_EMIT blockedAppsChanged();
    }
    co_return isAccepted;
}

QCoro::Task<bool> TrafficControlService::setEcoTrafficEnabled(bool enabled)
{
    setLastError({});
    auto applying = applyPolicy(m_blockedBundleIdentifiers, enabled, true);
    const bool isAccepted = co_await applying;
    if (isAccepted) {
        m_ecoTrafficEnabled = enabled;
        m_defaults->setBoolean(ecoTrafficKey(), enabled);
        Q_EMIT ecoTrafficEnabledChanged();
    }
    co_return isAccepted;
}

QCoro::Task<bool> TrafficControlService::applyPolicy(QSet<QString> blockedIdentifiers, bool ecoEnabled,
                                                     bool activateExtension)
{
    if (activateExtension) {
        auto activating = this->activateExtension();
        const bool isActive = co_await activating;
        if (!isActive)
            co_return false;
    }
    auto loading = load(m_filter);
    if (const std::optional<QString> error = co_await loading) {
        setLastError(u"macOS could not load the outbound traffic filter: "_qs + *error);
        co_return false;
    }
    configure(blockedIdentifiers, ecoEnabled);
    auto saving = save(m_filter);
    if (const std::optional<QString> error = co_await saving) {
        setLastError(u"macOS rejected the outbound traffic policy: "_qs + *error);
        co_return false;
    }
    co_return true;
}

QCoro::Task<bool> TrafficControlService::activateExtension()
{
    using Kind = TrafficFilterExtensionManager::ActivationResult::Kind;
    auto activating = m_extension.activateIfNeeded();
    const TrafficFilterExtensionManager::ActivationResult result = co_await activating;
    switch (result.kind) {
    case Kind::Active:
        co_return true;
    case Kind::AwaitingUserApproval:
        setLastError(u"Allow the Quillmere Traffic Filter in System Settings, then try again. No application traffic "
                     "was changed."_qs);
        co_return false;
    case Kind::Failed:
        setLastError(u"macOS could not activate the Quillmere Traffic Filter: "_qs + result.message);
        co_return false;
    }
    Q_UNREACHABLE();
}

QCoro::Task<std::optional<QString>> TrafficControlService::load(std::shared_ptr<FilterManager> filter)
{
    const Continuation<std::optional<QString>> answer;
    filter->loadFromPreferences([answer](const std::optional<QString> &error) { answer.resume(error); });
    co_return co_await answer;
}

QCoro::Task<std::optional<QString>> TrafficControlService::save(std::shared_ptr<FilterManager> filter)
{
    const Continuation<std::optional<QString>> answer;
    filter->saveToPreferences([answer](const std::optional<QString> &error) { answer.resume(error); });
    co_return co_await answer;
}

void TrafficControlService::configure(const QSet<QString> &blockedIdentifiers, bool ecoEnabled) const
{
    FilterProviderConfiguration configuration = m_filter->providerConfiguration.value_or(FilterProviderConfiguration());
    configuration.filterSockets = true;
    configuration.filterDataProviderBundleIdentifier = TrafficFilterExtensionManager::extensionIdentifier();
    configuration.vendorConfiguration = {
        {u"blockedBundleIdentifiers"_qs, sorted(blockedIdentifiers)},
        {u"ecoTrafficEnabled"_qs, ecoEnabled},
        {u"ecoAllowedBundleIdentifiers"_qs, sorted(ecoAllowedBundleIdentifiers())},
    };
    m_filter->localizedDescription = u"Quillmere outbound application traffic filter"_qs;
    m_filter->providerConfiguration = configuration;
    m_filter->isEnabled = true;
}

void TrafficControlService::saveBlockedApps()
{
    m_defaults->setStringArray(blockedBundleIdentifiersKey(), sorted(m_blockedBundleIdentifiers));
    m_defaults->setStringArray(blockedAppNamesKey(), sorted(m_blockedAppNames));
}

void TrafficControlService::setLastError(std::optional<QString> error)
{
    m_lastError = std::move(error);
    Q_EMIT lastErrorChanged();
}

} // namespace Quillmere
