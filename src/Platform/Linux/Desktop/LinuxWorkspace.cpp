#include "Platform/Linux/Desktop/LinuxWorkspace.h"

#include "Platform/Linux/Applications/ApplicationData.h"
#include "Platform/Linux/Applications/ApplicationInstances.h"
#include "Platform/Linux/Applications/ApplicationRegistration.h"
#include "Platform/Linux/Desktop/FileViewer.h"
#include "Platform/Linux/Desktop/UrlOpening.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <csignal>

#include <sys/syscall.h>
#include <unistd.h>

namespace Quillmere {

namespace {

TracedProcesses ownProcesses(const ProcessTable &table, const ApplicationIndex &index)
{
    TracedProcesses own;
    const uid_t user = ::geteuid();
    for (const pid_t pid : table.processes()) {
        if (table.user(pid) != user)
            continue;
        const std::optional<ProcessStat> stat = table.stat(pid);
        if (stat && !stat->isKernelThread && !stat->hasEnded())
            own.insert(pid, {*stat, ApplicationTrace::of(pid, table, index)});
    }
    return own;
}

std::optional<FilePath> locationOf(const TracedProcess &process, const ProcessTable &table,
                                   const ApplicationIndex &index)
{
    const ApplicationTrace &trace = process.trace;
    if (!trace.bundle.isEmpty())
        return trace.bundle;
    const FilePath program = trace.program.isEmpty() ? programOf(process.stat.pid, table) : trace.program;
    const FilePath declared = trace.entry->executable;
    const bool isShared = program.isEmpty() || ApplicationData::builtIn().isSharedProgram(program);
    if (!declared.isEmpty() && (isShared || program.isWithin(index.locationOf(declared))))
        return index.locationOf(declared);
    return isShared ? std::nullopt : std::optional(index.locationOf(program));
}

} // namespace

LinuxWorkspace::LinuxWorkspace(FilePath home, QList<FilePath> entries, const FilePath &proc,
                               const QDBusConnection &sessionBus)
    : m_home(std::move(home))
    , m_folders(std::move(entries))
    , m_processes(proc)
    , m_sessionBus(sessionBus)
{
}

std::shared_ptr<const ApplicationIndex> LinuxWorkspace::index() const
{
    const std::scoped_lock lock(m_lock);
    const QByteArray state = stateOfFolders(m_folders);
    if (!m_index || state != m_state) {
        m_index = std::make_shared<ApplicationIndex>(readDesktopEntries(m_folders), m_home);
        m_state = state;
    }
    return m_index;
}

QList<RunningApplication> LinuxWorkspace::runningApplications() const
{
    const std::shared_ptr<const ApplicationIndex> entries = index();
    QList<RunningApplication> applications;
    for (const TracedProcess &process : firstProcesses(ownProcesses(m_processes, *entries))) {
        const DesktopEntry &entry = *process.trace.entry;
        applications.append({process.stat.pid, process.stat.startTime, entry.name,
                             QString::fromUtf8(ApplicationData::builtIn().identifierOf(entry.id)),
                             locationOf(process, m_processes, *entries), entry.icon});
    }
    return applications;
}

QSet<FilePath> LinuxWorkspace::runningPrograms() const
{
    QSet<FilePath> programs;
    const uid_t user = ::geteuid();
    for (const pid_t pid : m_processes.processes()) {
        const FilePath program = m_processes.user(pid) == user ? programOf(pid, m_processes) : FilePath();
        if (program.isEmpty())
            continue;
        programs.insert(program);
        const FilePath script
            = ApplicationData::builtIn().isSharedProgram(program) ? scriptOf(pid, m_processes) : FilePath();
        const QString text = QFileInfo(QFile::decodeName(script.bytes())).canonicalFilePath();
        if (!text.isEmpty())
            programs.insert(FilePath(QFile::encodeName(text)));
    }
    return programs;
}

std::optional<InstalledApplication> LinuxWorkspace::applicationWithIdentifier(const QString &bundleIdentifier) const
{
    const std::shared_ptr<const ApplicationIndex> entries = index();
    for (const QByteArray &id : ApplicationData::builtIn().desktopIdsOf(bundleIdentifier.toUtf8())) {
        if (const DesktopEntry *entry = entries->byId(id)) {
            const FilePath &program = entry->executable;
            return InstalledApplication{program.isEmpty() ? entry->file : entries->locationOf(program), entry->icon};
        }
    }
    return std::nullopt;
}

bool LinuxWorkspace::terminate(const RunningApplication &application) const
{
    const std::shared_ptr<const ApplicationIndex> entries = index();
    const TracedProcesses processes = ownProcesses(m_processes, *entries);
    const auto first = processes.constFind(application.processIdentifier);
    if (first == processes.constEnd() || first->stat.startTime != application.launchTime)
        return false;
    // What ends the sandbox ends the application without asking it.
    const QList<TracedProcess> instance = processesOfInstance(*first, processes);
    const bool isSandboxed = ApplicationData::builtIn().isSandboxProgram(programOf(first->stat.pid, m_processes));
    const auto asked = std::ranges::find_if(instance, [&](const TracedProcess &process) {
        return !isSandboxed || !ApplicationData::builtIn().isSandboxProgram(programOf(process.stat.pid, m_processes));
    });
    return asked != instance.end() && send(SIGTERM, asked->stat.pid, asked->stat.startTime);
}

bool LinuxWorkspace::forceTerminate(const RunningApplication &application) const
{
    return send(SIGKILL, application.processIdentifier, application.launchTime);
}

bool LinuxWorkspace::send(int signal, pid_t pid, quint64 startTime) const
{
    // From here on the descriptor means this process and no later one of its number; whether it is the right one shows
    // behind it.
    const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)));
    if (!process.isOpen())
        return false;
    const std::optional<ProcessStat> stat = m_processes.stat(pid);
    if (!stat || stat->hasEnded() || stat->startTime != startTime)
        return false;
    return ::syscall(SYS_pidfd_send_signal, process.number(), signal, nullptr, 0) == 0;
}

void LinuxWorkspace::revealInFileViewer(const QList<FilePath> &files) const
{
    Quillmere::revealInFileViewer(files, m_sessionBus);
}

void LinuxWorkspace::openURL(const QUrl &url) const
{
    Quillmere::openURL(url);
}

Result<void> LinuxWorkspace::registerApplication(const FilePath &location) const
{
    // The first folder is the user's own.
    return Quillmere::registerApplication(location, m_folders.value(0));
}

void LinuxWorkspace::unregisterApplication(const FilePath &location) const
{
    Quillmere::unregisterApplication(location, m_folders.value(0));
}

void LinuxWorkspace::observeMounts(std::function<void(const MountNotification &)> mounted)
{
    m_mountNotices.reset();
    if (mounted)
        m_mountNotices = std::make_unique<MountNotices>(
            [mounted = std::move(mounted)](const FilePath &volume) { mounted(MountNotification{volume}); });
}

} // namespace Quillmere
