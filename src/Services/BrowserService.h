#pragma once

#include "Models/BrowserProfile.h"
#include "Models/CleanupItem.h"
#include "Platform/Workspace.h"
#include "Services/ScannerService.h"

#include <QByteArrayList>

namespace Quillmere {

/// Finds the browsers that the program knows, and what of theirs may be cleaned. It holds nothing but the way to the
/// machine. Runs on the thread that calls it.
class BrowserService
{
public:
    /// A browser that the program knows. Paths are relative to the home.
    struct BrowserDefinition
    {
        QString name;
        QString bundleIdentifier;
        QByteArrayList cachePaths;
        QByteArray profileBasePath;
    };

    BrowserService(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                   std::shared_ptr<const Workspace> workspace);

    [[nodiscard]] static const QList<BrowserDefinition> &supportedBrowsers();

    [[nodiscard]] bool isBrowserRunning(const QString &bundleIdentifier) const;
    /// The installed ones in the order of the table, those without any cache too. Throws CancellationError once
    /// stopped, by the scanner's flag or through @p task.
    [[nodiscard]] QList<BrowserProfile> detectInstalledBrowsers(ScannerService &scanner,
                                                                const std::stop_token &task = {}) const;
    /// Asks the browser politely. False when it does not run or cannot be asked; true says nothing of its answer.
    [[nodiscard]] bool quitBrowser(const QString &bundleIdentifier) const;
    /// The cache folders that hold anything, each one item. Empty for a browser that is none of the table.
    [[nodiscard]] QList<CleanupItem> getBrowserCacheItems(const BrowserProfile &profile) const;
    /// The cookies as an item that the rule of deletion never deletes. Nothing for most browsers.
    [[nodiscard]] std::optional<CleanupItem> cookiesItem(const BrowserProfile &profile) const;
    /// The same for the history.
    [[nodiscard]] std::optional<CleanupItem> historyItem(const BrowserProfile &profile) const;

private:
    /// The table's own, then the platform's: each folder once, and only what a cleanup would not refuse. They need not
    /// exist.
    [[nodiscard]] QList<FilePath> cacheFolders(const BrowserDefinition &browser) const;
    [[nodiscard]] bool mayBeCleaned(const FilePath &folder) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Places> m_places;
    std::shared_ptr<const Workspace> m_workspace;
};

} // namespace Quillmere
