#pragma once

#include "Platform/InstalledApplications.h"

#include <QHash>

#include <functional>
#include <mutex>

namespace Quillmere {

/// A platform that adds no application behind the bundles until it is told to. Safe to call from any thread.
class PretendInstalledApplications final : public InstalledApplications
{
public:
    void add(const ListedApplication &application, const QList<FilePath> &leftovers = {});
    /// From now on it cannot be uninstalled.
    void refuse(const QByteArray &id, const Failure &failure);

    /// From now on this is called, on the worker, before the applications are told.
    void onListing(std::function<void()> hook);

    [[nodiscard]] QList<QByteArray> uninstalled() const; ///< In their order.

    [[nodiscard]] QList<ListedApplication> applications() const override;
    [[nodiscard]] QList<FilePath> leftoversOf(const ListedApplication &application) const override;
    [[nodiscard]] Result<void> uninstall(const ListedApplication &application) const override;

private:
    mutable std::mutex m_mutex;
    std::function<void()> m_onListing;
    mutable QList<ListedApplication> m_applications;
    QHash<QByteArray, QList<FilePath>> m_leftovers;
    QHash<QByteArray, Failure> m_refusals;
    mutable QList<QByteArray> m_uninstalled;
};

} // namespace Quillmere
