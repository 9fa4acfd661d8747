#pragma once

#include "Values/Result.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QObject>
#include <QStringList>

#include <optional>

namespace Quillmere {

/// One order to PackageKit, from its beginning to its end. It asks an event loop of its own, so that the calling thread
/// needs none.
class PackageTransaction final : public QObject
{
    Q_OBJECT

public:
    /// A package that it has named: "name;version;architecture;source".
    struct Package
    {
        uint information = 0; ///< What is known of it, in PackageKit's numbers.
        QString identifier;
    };

    explicit PackageTransaction(const QDBusConnection &systemBus);

    /// Waits for the end, however late. Fails with NotSupported where there is no PackageKit, and otherwise with what
    /// it says, also when it goes away meanwhile.
    [[nodiscard]] Result<QList<Package>> run(const QString &method, const QVariantList &arguments);

private Q_SLOTS:
    void addPackage(uint information, const QString &identifier, const QString &summary);
    void takeError(uint code, const QString &details);
    void finish(uint exit, uint runtime);
    void lose();

private:
    [[nodiscard]] Result<QString> begin();
    [[nodiscard]] bool listen(const QString &object);
    [[nodiscard]] QDBusMessage call(const QString &object, const QString &interface, const QString &method,
                                    const QVariantList &arguments);

    QDBusConnection m_bus;
    QEventLoop m_loop;
    QList<Package> m_packages;
    QString m_error;
    std::optional<uint> m_exit; ///< Nothing while it runs.
};

} // namespace Quillmere
