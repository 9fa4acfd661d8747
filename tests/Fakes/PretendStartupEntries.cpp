#include "Fakes/PretendStartupEntries.h"

#include <algorithm>

namespace Quillmere {

void PretendStartupEntries::add(const StartupEntry &entry)
{
    const std::scoped_lock lock(m_mutex);
    m_entries.append(entry);
}

void PretendStartupEntries::refuse(const FilePath &path)
{
    const std::scoped_lock lock(m_mutex);
    m_refused.append(path);
}

void PretendStartupEntries::onListing(std::function<void()> observer)
{
    const std::scoped_lock lock(m_mutex);
    m_onListing = std::move(observer);
}

QList<StartupEntry> PretendStartupEntries::entries() const
{
    std::unique_lock lock(m_mutex);
    const std::function<void()> observer = m_onListing;
    lock.unlock();
    if (observer)
        observer();
    lock.lock();
    return m_entries;
}

bool PretendStartupEntries::owns(const FilePath &path) const
{
    return path.pathExtension() == "desktop";
}

Result<void> PretendStartupEntries::setEnabled(const FilePath &path, bool enabled) const
{
    const std::scoped_lock lock(m_mutex);
    const auto found = std::ranges::find(m_entries, path, &StartupEntry::path);
    if (found == m_entries.end())
        return Failure{Failure::Kind::NotFound, path, u"pretended"_qs};
    if (m_refused.contains(path))
        return Failure{Failure::Kind::NoPermission, path, u"pretended"_qs};
    found->isEnabled = enabled;
    return {};
}

} // namespace Quillmere
