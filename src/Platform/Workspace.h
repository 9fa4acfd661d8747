#pragma once

#include "Values/FilePath.h"

#include <QList>
#include <QString>
#include <QUrl>

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

/// What the desktop knows of applications. Safe to call from any thread.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// The user's own, in the order in which they were started.
    [[nodiscard]] virtual QList<RunningApplication> runningApplications() const = 0;
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
};

} // namespace Quillmere
