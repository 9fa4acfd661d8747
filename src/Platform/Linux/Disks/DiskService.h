#pragma once

#include "Platform/Linux/Disks/DiskObjects.h"
#include "Platform/Linux/Disks/DiskServiceSilence.h"
#include "Values/Result.h"

#include <QDBusConnection>
#include <QVariantMap>

namespace Quillmere {

/// udisks2, which mounts and formats. Fails with NotSupported where it does not answer, with Busy while something uses
/// a volume, with NoPermission where the user may not, each with its own words.
class DiskService
{
public:
    static constexpr int patienceToShow = 2'000; ///< Milliseconds.

    /// @p patience for questions, in milliseconds. What is ordered is waited for without end.
    explicit DiskService(QDBusConnection systemBus = QDBusConnection::systemBus(), int patience = 10'000);
    /// For what is only shown, while the user sees nothing else: it is given up soon, and where it has just kept
    /// somebody waiting in vain it is not asked at all.
    [[nodiscard]] static DiskService toShow(QDBusConnection systemBus = QDBusConnection::systemBus(),
                                            int patience = patienceToShow,
                                            DiskServiceSilence silence = DiskServiceSilence::ofThisUser());

    [[nodiscard]] Result<DiskObjects> objects() const;
    /// Answers with where it is mounted now. Fails with AlreadyExists where it was mounted before.
    [[nodiscard]] Result<FilePath> mount(const QString &object) const;
    /// From one of the places where it is mounted. Nothing that is in use is forced.
    [[nodiscard]] Result<void> unmount(const QString &object) const;
    /// Lets go of an unlocked volume.
    [[nodiscard]] Result<void> lock(const QString &object) const;
    /// Makes a file system of udisks2's name @p type on it. All that was there is gone.
    [[nodiscard]] Result<void> format(const QString &object, const QString &type, const QString &label) const;
    /// Empty when file systems of that type can be made here, else what is missing.
    [[nodiscard]] Result<QString> missingToFormat(const QString &type) const;

private:
    [[nodiscard]] Result<QVariantList> call(const QString &object, const QString &interface, const QString &method,
                                            const QVariantList &arguments, int milliseconds) const;

    QDBusConnection m_bus;
    int m_patience;
    std::optional<DiskServiceSilence> m_silence; ///< Where it is heeded.
};

} // namespace Quillmere
