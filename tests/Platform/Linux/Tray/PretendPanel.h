#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QProcess>
#include <QSize>
#include <QStringList>
#include <QVariantMap>

namespace Quillmere {

/// One line of a menu as a panel is told of it.
struct PanelMenuLine
{
    int id = 0;
    QVariantMap properties;
};

/// A desktop's panel that shows status items, or the service behind panels alone.
class PretendPanel final : public QObject
{
    Q_OBJECT

public:
    enum class Host { Absent, Present };

    PretendPanel();
    ~PretendPanel() override;

    /// False when it did not start.
    [[nodiscard]] bool start(Host host);
    void stop();
    /// Puts a panel in front of a service that runs already.
    void addHost();
    void removeHost();

    /// Names of the services that have announced an item, in their order.
    [[nodiscard]] QStringList items() const;

    /// The rest asks the latest item.
    [[nodiscard]] QVariant property(const QString &name) const;
    [[nodiscard]] QList<QSize> iconSizes() const;
    [[nodiscard]] QString toolTip() const;
    [[nodiscard]] QList<PanelMenuLine> menu() const;
    void click(int id) const;
    void activate() const;

    /// Counts what the latest item tells from now on, by the names of its signals.
    void listen();
    QHash<QString, int> heard;

private Q_SLOTS:
    void hear(const QDBusMessage &signal);

private:
    QDBusMessage ask(const QString &service, const QString &object, const QString &interface, const QString &method,
                     const QVariantList &arguments) const;
    void mock(const QString &method, const QVariantList &arguments) const;
    void tell(const QString &signal) const;

    QDBusConnection m_bus;
    QProcess m_service;
};

} // namespace Quillmere
