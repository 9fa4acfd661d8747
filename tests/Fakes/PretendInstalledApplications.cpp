#include "Fakes/PretendInstalledApplications.h"

namespace Quillmere {

void PretendInstalledApplications::add(const ListedApplication &application, const QList<FilePath> &leftovers)
{
    const std::scoped_lock guard(m_mutex);
    m_applications.append(application);
    m_leftovers.insert(application.id, leftovers);
}

void PretendInstalledApplications::refuse(const QByteArray &id, const Failure &failure)
{
    const std::scoped_lock guard(m_mutex);
    m_refusals.insert(id, failure);
}

void PretendInstalledApplications::onListing(std::function<void()> hook)
{
    const std::scoped_lock guard(m_mutex);
    m_onListing = std::move(hook);
}

QList<QByteArray> PretendInstalledApplications::uninstalled() const
{
    const std::scoped_lock guard(m_mutex);
    return m_uninstalled;
}

QList<ListedApplication> PretendInstalledApplications::applications() const
{
    std::unique_lock guard(m_mutex);
    if (const std::function<void()> hook = m_onListing) {
        guard.unlock();
        hook();
        guard.lock();
    }
    return m_applications;
}

QList<FilePath> PretendInstalledApplications::leftoversOf(const ListedApplication &application) const
{
    const std::scoped_lock guard(m_mutex);
    return m_leftovers.value(application.id);
}

Result<void> PretendInstalledApplications::uninstall(const ListedApplication &application) const
{
    const std::scoped_lock guard(m_mutex);
    if (m_refusals.contains(application.id))
        return m_refusals.value(application.id);
    if (application.removal == ApplicationRemoval::System)
        return Failure{Failure::Kind::NotSupported, application.location, {}};
    m_applications.removeIf([&](const ListedApplication &each) { return each.id == application.id; });
    m_uninstalled.append(application.id);
    return {};
}

} // namespace Quillmere
