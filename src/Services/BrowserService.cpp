#include "Services/BrowserService.h"

#include "Services/CleanupService.h"
#include "Utilities/RemovableLocation.h"
#include "Values/CancellationError.h"

#include <algorithm>

namespace Quillmere {

namespace {

CleanupItem itemOf(const QString &name, const FilePath &path, qint64 size, const QString &category)
{
    CleanupItem item;
    item.name = name;
    item.path = path;
    item.size = size;
    item.category = category;
    return item;
}

/// Throws CancellationError once stopped.
qint64 sizeOf(const FilePath &folder, ScannerService &scanner, const std::stop_token &task = {})
{
    const std::optional<qint64> size = scanner.sizeOf(folder, task);
    if (!size || scanner.isCancelled())
        throw CancellationError();
    return *size;
}

} // namespace

BrowserService::BrowserService(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                               std::shared_ptr<const Workspace> workspace)
    : m_files(std::move(files))
    , m_places(std::move(places))
    , m_workspace(std::move(workspace))
{
}

const QList<BrowserService::BrowserDefinition> &BrowserService::supportedBrowsers()
{
    static const QList<BrowserDefinition> browsers = {
        {u"Safari"_qs,
         u"com.apple.Safari"_qs,
         {"Library/Caches/com.apple.Safari", "Library/Containers/com.apple.Safari/Data/Library/Caches"},
         "Library/Safari"},
        {u"Google Chrome"_qs,
         u"com.google.Chrome"_qs,
         {"Library/Caches/Google/Chrome"},
         "Library/Application Support/Google/Chrome"},
        {u"Firefox"_qs,
         u"org.mozilla.firefox"_qs,
         {"Library/Caches/Firefox/Profiles"},
         "Library/Application Support/Firefox/Profiles"},
        {u"Brave"_qs,
         u"com.brave.Browser"_qs,
         {"Library/Caches/BraveSoftware/Brave-Browser"},
         "Library/Application Support/BraveSoftware/Brave-Browser"},
        {u"Microsoft Edge"_qs,
         u"com.microsoft.edgemac"_qs,
         {"Library/Caches/Microsoft Edge"},
         "Library/Application Support/Microsoft Edge"},
        {u"Opera"_qs,
         u"com.operasoftware.Opera"_qs,
         {"Library/Caches/com.operasoftware.Opera"},
         "Library/Application Support/com.operasoftware.Opera"},
    };
    return browsers;
}

bool BrowserService::isBrowserRunning(const QString &bundleIdentifier) const
{
    return std::ranges::any_of(m_workspace->runningApplications(), [&](const RunningApplication &application) {
        return application.bundleIdentifier == bundleIdentifier;
    });
}

QList<BrowserProfile> BrowserService::detectInstalledBrowsers(ScannerService &scanner,
                                                              const std::stop_token &task) const
{
    const FilePath home = m_files->homeDirectory();
    QList<BrowserProfile> profiles;
    for (const BrowserDefinition &browser : supportedBrowsers()) {
        if (task.stop_requested())
            throw CancellationError();
        const auto application = m_workspace->applicationWithIdentifier(browser.bundleIdentifier);
        if (!application)
            continue;
        BrowserProfile profile;
        profile.browserName = browser.name;
        profile.bundleIdentifier = browser.bundleIdentifier;
        profile.isBrowserRunning = isBrowserRunning(browser.bundleIdentifier);
        for (const FilePath &folder : cacheFolders(browser))
            profile.cacheSize += sizeOf(folder, scanner, task);
        if (!application->icon.isEmpty())
            profile.icon = application->icon;
        profile.profilePath = home.appending(browser.profileBasePath);
        profiles.append(profile);
    }
    return profiles;
}

bool BrowserService::quitBrowser(const QString &bundleIdentifier) const
{
    const QList<RunningApplication> running = m_workspace->runningApplications();
    const auto found = std::ranges::find(running, bundleIdentifier, &RunningApplication::bundleIdentifier);
    return found != running.end() && m_workspace->terminate(*found);
}

QList<CleanupItem> BrowserService::getBrowserCacheItems(const BrowserProfile &profile) const
{
    const QList<BrowserDefinition> &browsers = supportedBrowsers();
    const auto browser = std::ranges::find(browsers, profile.bundleIdentifier, &BrowserDefinition::bundleIdentifier);
    if (browser == browsers.end())
        return {};
    ScannerService scanner(m_files, m_places);
    QList<CleanupItem> items;
    for (const FilePath &folder : cacheFolders(*browser)) {
        if (!m_files->fileExists(folder))
            continue;
        const qint64 size = sizeOf(folder, scanner);
        if (size > 0)
            items.append(itemOf(FilePath::displayText(folder.lastPathComponent()), folder, size, u"Browser Cache"_qs));
    }
    return items;
}

std::optional<CleanupItem> BrowserService::cookiesItem(const BrowserProfile &profile) const
{
    const QString category = u"Browser Cookies"_qs;
    if (profile.browserName == u"Safari") {
        const FilePath path = m_files->homeDirectory().appending("Library/Cookies/Cookies.binarycookies");
        return itemOf(u"Safari Cookies"_qs, path, 0, category);
    }
    if (profile.browserName == u"Google Chrome")
        return itemOf(u"Chrome Cookies"_qs, profile.profilePath.appending("Cookies"), 0, category);
    return std::nullopt;
}

std::optional<CleanupItem> BrowserService::historyItem(const BrowserProfile &profile) const
{
    const QString category = u"Browser History"_qs;
    if (profile.browserName == u"Safari") {
        const FilePath path = m_files->homeDirectory().appending("Library/Safari/History.db");
        return itemOf(u"Safari History"_qs, path, 0, category);
    }
    if (profile.browserName == u"Google Chrome")
        return itemOf(u"Chrome History"_qs, profile.profilePath.appending("History"), 0, category);
    return std::nullopt;
}

QList<FilePath> BrowserService::cacheFolders(const BrowserDefinition &browser) const
{
    QList<FilePath> candidates;
    for (const QByteArray &path : browser.cachePaths)
        candidates.append(m_files->homeDirectory().appending(path));
    for (const PlaceEntry &entry : m_places->entriesBehind(browser.bundleIdentifier))
        candidates.append(entry.path);

    QList<FilePath> folders;
    for (const FilePath &candidate : std::as_const(candidates)) {
        if (!m_files->isAnswering(candidate))
            continue;
        const FilePath folder = removableLocation(*m_files, candidate);
        const bool isKnown = std::ranges::any_of(
            folders, [&](const FilePath &known) { return folder.isWithin(known) || known.isWithin(folder); });
        if (!isKnown && mayBeCleaned(folder))
            folders.append(folder);
    }
    return folders;
}

bool BrowserService::mayBeCleaned(const FilePath &folder) const
{
    const QList<CleanupItem> item = {itemOf({}, folder, 0, {})};
    return !CleanupService(m_files, m_places).validateBeforeCleanup(item).isEmpty() && !m_places->reasonToKeep(folder);
}

} // namespace Quillmere
