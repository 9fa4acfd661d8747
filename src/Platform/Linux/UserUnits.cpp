#include "Platform/Linux/UserUnits.h"

#include <QDBusArgument>
#include <QDBusMessage>

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
    const Failure::Kind kind
        = answer.errorName() == accessDenied ? Failure::Kind::NoPermission : Failure::Kind::Other;
    return {kind, path, answer.errorMessage()};
}

} // namespace

UserUnits::UserUnits(FilePath home, const QDBusConnection &sessionBus, std::chrono::milliseconds patience)
    : m_home(std::move(home))
    , m_sessionBus(sessionBus)
    , m_patience(patience)
{
}

QList<StartupEntry> UserUnits::entries() const
{
    const QDBusMessage answer = ask(u"ListUnitFiles"_qs, {});
    QList<StartupEntry> found;
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
    std::ranges::sort(found, {}, [](const StartupEntry &entry) {
        return std::pair(entry.scope, entry.path.lastPathComponent());
    });
    return found;
}

bool UserUnits::owns(const FilePath &path)
{
    static const QList<QByteArray> types = {"service", "socket", "timer", "path", "target", "mount", "automount"};
    return types.contains(path.pathExtension());
}

Result<void> UserUnits::setEnabled(const FilePath &path, bool enabled) const
{
    const QStringList units = {QString::fromUtf8(path.lastPathComponent())};
    // For good, and nothing is taken by force from another unit.
    const QVariantList forGood = {units, false};
    const QDBusMessage answer = enabled ? ask(u"EnableUnitFiles"_qs, forGood + QVariantList{false})
                                        : ask(u"DisableUnitFiles"_qs, forGood);
    if (answer.type() != QDBusMessage::ReplyMessage)
        return failureOf(answer, path);
    return {};
}

/// Never starts a manager: without one there is nothing that would start units.
QDBusMessage UserUnits::ask(const QString &method, const QVariantList &arguments) const
{
    if (!m_sessionBus.isConnected())
        return QDBusMessage::createError(QDBusError::Disconnected, u"No session bus"_qs);
    QDBusMessage question = QDBusMessage::createMethodCall(manager, managerObject, managerInterface, method);
    question.setArguments(arguments);
    question.setAutoStartService(false);
    return m_sessionBus.call(question, QDBus::Block, int(m_patience.count()));
}

} // namespace Quillmere
