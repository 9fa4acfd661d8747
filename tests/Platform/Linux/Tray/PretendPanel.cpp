#include "Platform/Linux/Tray/PretendPanel.h"

#include "Platform/Linux/EventWaiting.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace Quillmere {

namespace {

const QString connectionName = u"panel"_qs;
const QString watcher = u"org.kde.StatusNotifierWatcher"_qs;
const QString watcherObject = u"/StatusNotifierWatcher"_qs;
const QString itemInterface = u"org.kde.StatusNotifierItem"_qs;
const QString itemObject = u"/StatusNotifierItem"_qs;
const QString menuInterface = u"com.canonical.dbusmenu"_qs;
const QString menuObject = u"/MenuBar"_qs;
constexpr int patience = 20000;

PanelMenuLine readLine(const QDBusArgument &argument, QList<PanelMenuLine> &children)
{
    PanelMenuLine line;
    argument.beginStructure();
    argument >> line.id >> line.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        QList<PanelMenuLine> none;
        children.append(readLine(child.variant().value<QDBusArgument>(), none));
    }
    argument.endArray();
    argument.endStructure();
    return line;
}

} // namespace

PretendPanel::PretendPanel()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName))
{
}

PretendPanel::~PretendPanel()
{
    stop();
    QDBusConnection::disconnectFromBus(connectionName);
}

bool PretendPanel::start(Host host)
{
    // Another Python that stands first in PATH need not have the distribution's modules.
    m_service.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_service.start(u"/usr/bin/python3"_qs,
                    {u"-m"_qs, u"dbusmock"_qs, u"--session"_qs, u"com.example.Panel"_qs, watcherObject, watcher});
    if (!comesTrue([this] { return m_bus.interface()->isServiceRegistered(u"com.example.Panel"_qs).value(); }))
        return false;
    const QVariantMap properties
        = {{u"IsStatusNotifierHostRegistered"_qs, host == Host::Present}, {u"ProtocolVersion"_qs, 0}};
    mock(u"AddProperties"_qs, {watcher, properties});
    mock(u"AddMethod"_qs,
         {watcher, u"RegisterStatusNotifierItem"_qs, u"s"_qs, QString(),
          u"self.known = getattr(self, 'known', []) + [args[0]]"_qs});
    mock(
        u"AddMethod"_qs,
        {watcher, u"Known"_qs, QString(), u"as"_qs, u"ret = dbus.Array(getattr(self, 'known', []), signature='s')"_qs});
    // The name comes last, so that nobody meets a service that is not complete.
    mock(
        u"AddMethod"_qs,
        {watcher, u"TakeName"_qs, QString(), QString(),
         u"import dbus.service; self.taken = dbus.service.BusName('org.kde.StatusNotifierWatcher', self.connection)"_qs});
    ask(u"com.example.Panel"_qs, watcherObject, watcher, u"TakeName"_qs, {});
    return m_bus.interface()->isServiceRegistered(watcher);
}

void PretendPanel::stop()
{
    if (m_service.state() == QProcess::NotRunning)
        return;
    m_service.terminate();
    m_service.waitForFinished(patience);
}

void PretendPanel::addHost()
{
    mock(u"UpdateProperties"_qs, {watcher, QVariantMap{{u"IsStatusNotifierHostRegistered"_qs, true}}});
    tell(u"StatusNotifierHostRegistered"_qs);
}

void PretendPanel::removeHost()
{
    mock(u"UpdateProperties"_qs, {watcher, QVariantMap{{u"IsStatusNotifierHostRegistered"_qs, false}}});
    tell(u"StatusNotifierHostUnregistered"_qs);
}

QStringList PretendPanel::items() const
{
    return ask(watcher, watcherObject, watcher, u"Known"_qs, {}).arguments().value(0).toStringList();
}

QVariant PretendPanel::property(const QString &name) const
{
    const QDBusMessage answer = ask(items().value(items().size() - 1), itemObject,
                                    u"org.freedesktop.DBus.Properties"_qs, u"Get"_qs, {itemInterface, name});
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

QList<QSize> PretendPanel::iconSizes() const
{
    const auto pictures = property(u"IconPixmap"_qs).value<QDBusArgument>();
    QList<QSize> sizes;
    pictures.beginArray();
    while (!pictures.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        pictures.beginStructure();
        pictures >> width >> height >> pixels;
        pictures.endStructure();
        if (pixels.size() == qsizetype(4) * width * height)
            sizes.append({width, height});
    }
    pictures.endArray();
    return sizes;
}

QString PretendPanel::toolTip() const
{
    const auto structure = property(u"ToolTip"_qs).value<QDBusArgument>();
    QString icon;
    QString title;
    structure.beginStructure();
    structure >> icon;
    structure.beginArray();
    while (!structure.atEnd()) {
        int side = 0;
        QByteArray pixels;
        structure.beginStructure();
        structure >> side >> side >> pixels;
        structure.endStructure();
    }
    structure.endArray();
    structure >> title;
    return title;
}

QList<PanelMenuLine> PretendPanel::menu() const
{
    const QDBusMessage answer
        = ask(items().value(items().size() - 1), menuObject, menuInterface, u"GetLayout"_qs, {0, -1, QStringList()});
    QList<PanelMenuLine> lines;
    if (answer.arguments().size() == 2)
        readLine(answer.arguments().at(1).value<QDBusArgument>(), lines);
    return lines;
}

void PretendPanel::click(int id) const
{
    ask(items().value(items().size() - 1), menuObject, menuInterface, u"Event"_qs,
        {id, u"clicked"_qs, QVariant::fromValue(QDBusVariant(QString())), 0u});
}

void PretendPanel::activate() const
{
    ask(items().value(items().size() - 1), itemObject, itemInterface, u"Activate"_qs, {400, 300});
}

void PretendPanel::listen()
{
    heard.clear();
    const QString item = items().value(items().size() - 1);
    for (const char *signal : {"NewIcon", "NewToolTip", "NewMenu", "NewTitle", "NewStatus"})
        m_bus.connect(item, itemObject, itemInterface, QLatin1String(signal), this, SLOT(hear(QDBusMessage)));
    for (const char *signal : {"ItemsPropertiesUpdated", "LayoutUpdated"})
        m_bus.connect(item, menuObject, menuInterface, QLatin1String(signal), this, SLOT(hear(QDBusMessage)));
}

void PretendPanel::hear(const QDBusMessage &signal)
{
    ++heard[signal.member()];
}

QDBusMessage PretendPanel::ask(const QString &service, const QString &object, const QString &interface,
                               const QString &method, const QVariantList &arguments) const
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, object, interface, method);
    question.setArguments(arguments);
    // The item lives in this very thread, so the answer is waited for with events handled.
    const QDBusPendingCallWatcher answering(m_bus.asyncCall(question, patience));
    [[maybe_unused]] const bool isAnswered = comesTrue([&answering] { return answering.isFinished(); });
    return answering.reply();
}

void PretendPanel::mock(const QString &method, const QVariantList &arguments) const
{
    const QDBusMessage answer
        = ask(u"com.example.Panel"_qs, watcherObject, u"org.freedesktop.DBus.Mock"_qs, method, arguments);
    if (answer.type() == QDBusMessage::ErrorMessage)
        qFatal("The pretended panel refused: %s", qPrintable(answer.errorMessage()));
}

void PretendPanel::tell(const QString &signal) const
{
    mock(u"EmitSignal"_qs, {watcher, signal, QString(), QVariantList()});
}

} // namespace Quillmere
