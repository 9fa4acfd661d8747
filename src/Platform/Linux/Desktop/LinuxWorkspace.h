#pragma once

#include "Platform/Linux/Applications/ApplicationIndex.h"
#include "Platform/Linux/Disks/MountNotices.h"
#include "Platform/Linux/System/ProcessTable.h"
#include "Platform/Workspace.h"

#include <QDBusConnection>

#include <memory>
#include <mutex>

namespace Quillmere {

/// Applications are what the desktop's entries show, so a program without an entry is none.
/// An application's location is the folder that it alone is installed in, or else its program's file; the text that is
/// run where the program is an interpreter; where not even that can be told, its entry, or none for a running one.
/// Launch times are clock ticks from the machine's start.
class LinuxWorkspace final : public Workspace
{
public:
    /// @p entries are the folders of desktop entries, the most important first.
    LinuxWorkspace(FilePath home, QList<FilePath> entries, const FilePath &proc = FilePath("/proc"),
                   const QDBusConnection &sessionBus = QDBusConnection::sessionBus());

    [[nodiscard]] QList<RunningApplication> runningApplications() const override;
    [[nodiscard]] QSet<FilePath> runningPrograms() const override;
    [[nodiscard]] std::optional<InstalledApplication>
    applicationWithIdentifier(const QString &bundleIdentifier) const override;
    /// By SIGTERM to the application itself, also where its first process is the sandbox around it.
    [[nodiscard]] bool terminate(const RunningApplication &application) const override;
    [[nodiscard]] bool forceTerminate(const RunningApplication &application) const override;
    void revealInFileViewer(const QList<FilePath> &files) const override;
    void openURL(const QUrl &url) const override;
    [[nodiscard]] Result<void> registerApplication(const FilePath &location) const override;
    void unregisterApplication(const FilePath &location) const override;
    void observeMounts(std::function<void(const MountNotification &)> mounted) override;

private:
    [[nodiscard]] std::shared_ptr<const ApplicationIndex> index() const;
    /// False when that process has ended, also where a later one has its number.
    [[nodiscard]] bool send(int signal, pid_t pid, quint64 startTime) const;

    FilePath m_home;
    QList<FilePath> m_folders;
    ProcessTable m_processes;
    const QDBusConnection m_sessionBus;
    std::unique_ptr<MountNotices> m_mountNotices; ///< Only while somebody observes.
    mutable std::mutex m_lock; ///< Around the two below.
    mutable QByteArray m_state; ///< Of the folders, when the entries were read. Empty: to be read anew.
    mutable std::shared_ptr<const ApplicationIndex> m_index;
};

} // namespace Quillmere
