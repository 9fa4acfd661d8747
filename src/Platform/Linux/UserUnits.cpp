#include "Platform/Linux/UserUnits.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>

#include <algorithm>

namespace Quillmere {

namespace {

const QString manager = u"org.freedesktop.systemd1"_qs;
const QString managerObject = u"/org/freedesktop/systemd1"_qs;
const QString managerInterface = u"org.freedesktop.systemd1.Manager"_qs;
const QString accessDenied = u"org.freedesktop.DBus.Error.AccessDenied"_qs;
const QString enabledState = u"enabled"_qs;
const QString disabledState = u"disabled"_qs;

/// Of this and no other shape the answer is read: a list of pairs of texts.
const QString listOfPairs = u"a(ss)"_qs;

bool isTemplate(const QByteArray &unit)
{
    return unit.contains("@.");
}

Failure failureOf(const QDBusMessage &answer, const FilePath &path)
{
    const Failure::Kind kind = answer.errorName() == accessDenied ? Failure::Kind::NoPermission : Failure::Kind::Other;
    return {kind, path, answer.errorMessage()};
}

} // namespace

UserUnits::UserUnits(FilePath home, const FilePath &config, const QDBusConnection &sessionBus,
                     std::chrono::milliseconds patience)
    : m_home(std::move(home))
    , m_ownFolder(config.appending("systemd/user"))
    , m_sessionBus(sessionBus)
    , m_patience(patience)
{
}

QList<StartupEntry> UserUnits::entries() const
{
    QList<StartupEntry> found;
    if (!hasManager())
        return found;
    const QDBusMessage answer = ask(managerInterface, u"ListUnitFiles"_qs, {});
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != listOfPairs)
        return found;
    const QDBusArgument list = answer.arguments().first().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString file;
        QString state;
        list.beginStructure();
        list >> file >> state;
        list.endStructure();
        const FilePath path(file.toUtf8());
        const bool isSwitched = state == enabledState || state == disabledState;
        if (!isSwitched || !owns(path) || isTemplate(path.lastPathComponent()))
            continue;
        const auto scope = path.isWithin(m_home) ? StartupEntry::Scope::User : StartupEntry::Scope::AllUsers;
        found.append({path, FilePath::displayText(path.lastPathComponent()), scope, state == enabledState});
    }
    list.endArray();
    std::ranges::sort(found, {},
                      [](const StartupEntry &entry) { return std::pair(entry.scope, entry.path.lastPathComponent()); });
    return found;
}

bool UserUnits::owns(const FilePath &path)
{
    static const QList<QByteArray> types = {"service", "socket", "timer", "path", "target", "mount", "automount"};
    return types.contains(path.pathExtension());
}

Result<void> UserUnits::setEnabled(const FilePath &path, bool enabled) const
{
    if (!hasManager())
        return Failure{Failure::Kind::NotSupported, path, u"No manager of units looks after this home"_qs};
    const QStringList units = {QString::fromUtf8(path.lastPathComponent())};
    // For good, and nothing is taken by force from another unit.
    const QVariantList forGood = {units, false};
    const QDBusMessage answer = enabled ? ask(managerInterface, u"EnableUnitFiles"_qs, forGood + QVariantList{false})
                                        : ask(managerInterface, u"DisableUnitFiles"_qs, forGood);
    if (answer.type() != QDBusMessage::ReplyMessage)
        return failureOf(answer, path);
    return {};
}

/// Whoever runs the program on another home than their own does not mean their own units.
bool UserUnits::hasManager() const
{
    const QDBusMessage answer
        = ask(u"org.freedesktop.DBus.Properties"_qs, u"Get"_qs, {managerInterface, u"UnitPath"_qs});
    const QVariant folders = answer.arguments().value(0).value<QDBusVariant>().variant();
    return folders.toStringList().contains(QString::fromUtf8(m_ownFolder.bytes()));
}

/// Never starts a manager: without one there is nothing that would start units.
QDBusMessage UserUnits::ask(const QString &interface, const QString &method, const QVariantList &arguments) const
{
    if (!m_sessionBus.isConnected())
        return QDBusMessage::createError(QDBusError::Disconnected, u"No session bus"_qs);
    QDBusMessage question = QDBusMessage::createMethodCall(manager, managerObject, interface, method);
    question.setArguments(arguments);
    question.setAutoStartService(false);
    return m_sessionBus.call(question, QDBus::Block, int(m_patience.count()));
}

} // namespace Quillmere
