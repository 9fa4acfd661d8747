#include "Fakes/PretendWorkspace.h"

namespace Quillmere {

void PretendWorkspace::start(const RunningApplication &application)
{
    const std::scoped_lock lock(m_mutex);
    m_running.append(application);
}

void PretendWorkspace::startProgram(const FilePath &program)
{
    const std::scoped_lock lock(m_mutex);
    m_programs.insert(program);
}

void PretendWorkspace::install(const QString &bundleIdentifier, const InstalledApplication &application)
{
    const std::scoped_lock lock(m_mutex);
    m_installed.insert(bundleIdentifier, application);
}

void PretendWorkspace::uninstall(const QString &bundleIdentifier)
{
    const std::scoped_lock lock(m_mutex);
    m_installed.remove(bundleIdentifier);
}

void PretendWorkspace::onListing(std::function<void(int)> hook)
{
    const std::scoped_lock lock(m_mutex);
    m_onListing = std::move(hook);
}

void PretendWorkspace::letStay(qint32 pid)
{
    const std::scoped_lock lock(m_mutex);
    m_staying.append(pid);
}

QList<qint32> PretendWorkspace::askedToQuit() const
{
    const std::scoped_lock lock(m_mutex);
    return m_askedToQuit;
}

void PretendWorkspace::end(qint32 pid)
{
    const std::scoped_lock lock(m_mutex);
    m_running.removeIf([pid](const RunningApplication &each) { return each.processIdentifier == pid; });
}

void PretendWorkspace::protect(qint32 pid)
{
    const std::scoped_lock lock(m_mutex);
    m_protected.append(pid);
}

QList<qint32> PretendWorkspace::terminated() const
{
    const std::scoped_lock lock(m_mutex);
    return m_terminated;
}

QList<FilePath> PretendWorkspace::revealed() const
{
    const std::scoped_lock lock(m_mutex);
    return m_revealed;
}

QList<QUrl> PretendWorkspace::opened() const
{
    const std::scoped_lock lock(m_mutex);
    return m_opened;
}

QList<FilePath> PretendWorkspace::registered() const
{
    const std::scoped_lock lock(m_mutex);
    return m_registered;
}

int PretendWorkspace::listings() const
{
    const std::scoped_lock lock(m_mutex);
    return m_listings;
}

QList<RunningApplication> PretendWorkspace::runningApplications() const
{
    std::unique_lock lock(m_mutex);
    const int listing = ++m_listings;
    const QList<RunningApplication> running = m_running;
    const std::function<void(int)> hook = m_onListing;
    lock.unlock();
    if (hook)
        hook(listing);
    return running;
}

QSet<FilePath> PretendWorkspace::runningPrograms() const
{
    const std::scoped_lock lock(m_mutex);
    return m_programs;
}

std::optional<InstalledApplication> PretendWorkspace::applicationWithIdentifier(const QString &bundleIdentifier) const
{
    const std::scoped_lock lock(m_mutex);
    const auto found = m_installed.constFind(bundleIdentifier);
    return found == m_installed.constEnd() ? std::nullopt : std::optional(*found);
}

bool PretendWorkspace::terminate(const RunningApplication &application) const
{
    const std::scoped_lock lock(m_mutex);
    if (m_protected.contains(application.processIdentifier) || !m_running.contains(application))
        return false;
    m_askedToQuit.append(application.processIdentifier);
    if (!m_staying.contains(application.processIdentifier))
        m_running.removeOne(application);
    return true;
}

bool PretendWorkspace::forceTerminate(const RunningApplication &application) const
{
    const std::scoped_lock lock(m_mutex);
    if (m_protected.contains(application.processIdentifier) || !m_running.removeOne(application))
        return false;
    m_terminated.append(application.processIdentifier);
    return true;
}

void PretendWorkspace::revealInFileViewer(const QList<FilePath> &files) const
{
    const std::scoped_lock lock(m_mutex);
    m_revealed += files;
}

void PretendWorkspace::openURL(const QUrl &url) const
{
    const std::scoped_lock lock(m_mutex);
    m_opened.append(url);
}

Result<void> PretendWorkspace::registerApplication(const FilePath &location) const
{
    const std::scoped_lock lock(m_mutex);
    m_registered.append(location);
    return {};
}

void PretendWorkspace::unregisterApplication(const FilePath &location) const
{
    const std::scoped_lock lock(m_mutex);
    m_registered.removeAll(location);
}

void PretendWorkspace::observeMounts(std::function<void(const MountNotification &)> mounted)
{
    m_mounted = std::move(mounted);
}

void PretendWorkspace::announceMount(const MountNotification &notification) const
{
    if (m_mounted)
        m_mounted(notification);
}

} // namespace Quillmere
