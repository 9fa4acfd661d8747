#pragma once

#include "Platform/Workspace.h"

#include <QHash>

#include <functional>
#include <mutex>

namespace Quillmere {

/// A desktop on which applications start and end by hand. Safe to call from any thread.
class PretendWorkspace final : public Workspace
{
public:
    void start(const RunningApplication &application);
    /// A program that the desktop knows nothing of.
    void startProgram(const FilePath &program);
    void install(const QString &bundleIdentifier, const InstalledApplication &application = {});
    void uninstall(const QString &bundleIdentifier);
    /// Takes it away as if it had ended of its own accord.
    void end(qint32 pid);
    /// From now on it may be neither asked nor forced to end.
    void protect(qint32 pid);

    /// From now on this is called, on the worker, with the number of the listing, before that is handed over.
    void onListing(std::function<void(int listing)> hook);
    /// From now on it stays when it is asked to quit.
    void letStay(qint32 pid);

    [[nodiscard]] bool isObservedForMounts() const { return bool(m_mounted); }
    /// Tells of a volume as if it had just been mounted. On the GUI thread.
    void announceMount(const MountNotification &notification) const;

    [[nodiscard]] QList<qint32> askedToQuit() const; ///< In their order, also those that stayed.
    [[nodiscard]] QList<qint32> terminated() const; ///< Which were ended by force, in their order.
    [[nodiscard]] QList<FilePath> revealed() const; ///< What was shown in the file manager, in its order.
    [[nodiscard]] QList<QUrl> opened() const; ///< What was handed to other programs, in its order.
    [[nodiscard]] QList<FilePath> registered() const; ///< Applications that the desktop was told of and still knows.
    [[nodiscard]] int listings() const; ///< How often the applications were asked for.

    [[nodiscard]] QList<RunningApplication> runningApplications() const override;
    [[nodiscard]] QSet<FilePath> runningPrograms() const override;
    [[nodiscard]] std::optional<InstalledApplication>
    applicationWithIdentifier(const QString &bundleIdentifier) const override;
    [[nodiscard]] bool terminate(const RunningApplication &application) const override;
    [[nodiscard]] bool forceTerminate(const RunningApplication &application) const override;
    void revealInFileViewer(const QList<FilePath> &files) const override;
    void openURL(const QUrl &url) const override;
    [[nodiscard]] Result<void> registerApplication(const FilePath &location) const override;
    void unregisterApplication(const FilePath &location) const override;
    void observeMounts(std::function<void(const MountNotification &)> mounted) override;

private:
    mutable std::mutex m_mutex;
    mutable QList<RunningApplication> m_running;
    QSet<FilePath> m_programs;
    QHash<QString, InstalledApplication> m_installed;
    QList<qint32> m_protected;
    QList<qint32> m_staying;
    mutable QList<qint32> m_askedToQuit;
    mutable QList<qint32> m_terminated;
    std::function<void(int)> m_onListing;
    mutable int m_listings = 0;
    mutable QList<FilePath> m_revealed;
    mutable QList<QUrl> m_opened;
    mutable QList<FilePath> m_registered;
    std::function<void(const MountNotification &)> m_mounted;
};

} // namespace Quillmere
