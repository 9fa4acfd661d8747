#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>
#include <QVariantList>

#include <memory>

namespace Quillmere {

/// A message bus of a test's own, on which nothing starts by itself, with a pretended settings portal if asked for.
/// Ends both when it goes.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    /// False where the bus did not start.
    [[nodiscard]] bool isRunning() const { return m_connection && m_connection->isConnected(); }
    /// Only when isRunning().
    [[nodiscard]] const QDBusConnection &connection() const { return *m_connection; }
    /// Where other connections find it.
    [[nodiscard]] const QString &address() const { return m_address; }

    /// Puts a portal on the bus whose Read answers with what @p python leaves in `ret`. False when it did not start.
    [[nodiscard]] bool startPortal(const QString &python);
    /// Lets the portal tell that a setting has changed.
    void emitSettingChanged(const QString &group, const QString &key, const QVariant &value);

private:
    void call(const QString &method, const QVariantList &arguments);

    QTemporaryDir m_folder;
    QProcess m_daemon;
    QProcess m_portal;
    QString m_address;
    QString m_name;
    std::unique_ptr<QDBusConnection> m_connection;
};

} // namespace Quillmere
