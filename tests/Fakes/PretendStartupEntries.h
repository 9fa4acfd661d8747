#pragma once

#include "Platform/StartupEntries.h"

#include <functional>
#include <mutex>

namespace Quillmere {

/// A platform that starts nothing by itself until it is told to. Its entries are files that end in ".desktop". Safe to
/// call from any thread.
class PretendStartupEntries final : public StartupEntries
{
public:
    void add(const StartupEntry &entry);
    /// From now on it cannot be switched.
    void refuse(const FilePath &path);
    /// Called on the asking thread before each listing, which it may hold up or end with an exception.
    void onListing(std::function<void()> observer);

    [[nodiscard]] QList<StartupEntry> entries() const override;
    [[nodiscard]] bool owns(const FilePath &path) const override;
    [[nodiscard]] Result<void> setEnabled(const FilePath &path, bool enabled) const override;

private:
    mutable std::mutex m_mutex;
    mutable QList<StartupEntry> m_entries;
    QList<FilePath> m_refused;
    std::function<void()> m_onListing;
};

} // namespace Quillmere
