#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace Quillmere {

/// A program with a face: one that the user knows as an application, however many processes it consists of.
struct RunningApplication
{
    qint32 processIdentifier = 0; ///< Of its first process.
    quint64 launchTime = 0; ///< Tells a process from a later one of the same number. Unit and origin are the machine's.
    std::optional<QString> localizedName;
    std::optional<QString> bundleIdentifier;
    std::optional<FilePath> bundleLocation; ///< The folder or file that the application is.
    QString icon; ///< A name of the desktop's icon theme, or the absolute path of a picture. Empty when there is none.

    bool operator==(const RunningApplication &) const = default;
};

/// An application that the desktop knows, whether it runs or not.
struct InstalledApplication
{
    FilePath location; ///< The folder or file that it is.
    QString icon; ///< A name of the desktop's icon theme, or the absolute path of a picture. Empty when there is none.

    bool operator==(const InstalledApplication &) const = default;
};

/// A volume has been mounted.
struct MountNotification
{
    std::optional<FilePath> volume; ///< Where. Nothing when that is not known.

    bool operator==(const MountNotification &) const = default;
};

/// What the desktop knows of applications and of the disks that come. Safe to call from any thread.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// The user's own, in the order in which they were started.
    [[nodiscard]] virtual QList<RunningApplication> runningApplications() const = 0;
    /// The files that the user's processes execute, free of links; where one is an interpreter, also the text that it
    /// runs. So it shows whether a program runs that the desktop does not know.
    [[nodiscard]] virtual QSet<FilePath> runningPrograms() const = 0;
    /// The one that the program knows by @p bundleIdentifier. Nothing when it is not installed.
    [[nodiscard]] virtual std::optional<InstalledApplication>
    applicationWithIdentifier(const QString &bundleIdentifier) const = 0;
    /// Asks @p application to quit, as its own menu does, and does not wait. It may take its time, ask the user or go
    /// on. Never speaks to another process that has come to its number. False when it has gone or may not be asked.
    [[nodiscard]] virtual bool terminate(const RunningApplication &application) const = 0;
    /// Ends @p application at once, without asking it. Never touches another process that has come to its number.
    /// False when it has gone or may not be ended.
    [[nodiscard]] virtual bool forceTerminate(const RunningApplication &application) const = 0;
    /// Shows @p files in the desktop's file manager, selected in their folders; where it cannot select, it opens these.
    /// May wait for the desktop, so call it where nobody is kept waiting. Says nothing of what became of it.
    virtual void revealInFileViewer(const QList<FilePath> &files) const = 0;
    /// Hands @p url to the program that the user has chosen for its scheme; nothing happens where there is none. May
    /// wait for the desktop, so call it where nobody is kept waiting.
    virtual void openURL(const QUrl &url) const = 0;
    /// Has the desktop know the application in the bundle folder @p location, so that it is found by its name. What the
    /// desktop knew of an application with the same identifier is replaced.
    [[nodiscard]] virtual Result<void> registerApplication(const FilePath &location) const = 0;
    /// Has the desktop forget the application in the bundle folder @p location. What it knows of a copy elsewhere,
    /// which can be started, stays; nothing is said of what cannot be forgotten.
    virtual void unregisterApplication(const FilePath &location) const = 0;
    /// From now on @p mounted is called for each volume that is mounted, and not for those that are mounted already. A
    /// volume that comes up again only because this program has mounted it anew may be left out. It takes the place of
    /// the one before; an empty one ends it. To be called on the GUI thread alone, and calls there.
    virtual void observeMounts(std::function<void(const MountNotification &)> mounted) = 0;
};

} // namespace Quillmere
