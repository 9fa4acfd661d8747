#pragma once

#include "Values/Result.h"

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>

namespace Quillmere {

/// What stands against sleep and the closing of the lid, by logind's own account.
class LidInhibitors
{
public:
    explicit LidInhibitors(const QDBusConnection &systemBus, int milliseconds = 5000);

    /// The names that logind lists us by.
    [[nodiscard]] static QString what();
    [[nodiscard]] static QString who();
    [[nodiscard]] static QString why();
    [[nodiscard]] static QString mode();

    /// Whether one of ours is listed. Fails with NotSupported where no logind answers.
    [[nodiscard]] Result<bool> isListed() const;
    /// Holds until the descriptor is closed. Fails with what logind says.
    [[nodiscard]] Result<QDBusUnixFileDescriptor> take() const;

private:
    [[nodiscard]] Result<QVariant> call(const QString &method, const QVariantList &arguments) const;

    QDBusConnection m_bus;
    int m_milliseconds;
};

} // namespace Quillmere
