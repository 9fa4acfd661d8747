#include "Platform/Linux/Startup/UserUnits.h"

#include "Platform/Linux/System/SystemdNames.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>

namespace Quillmere {

namespace {

const QString accessDenied = u"org.freedesktop.DBus.Error.AccessDenied"_qs;
const QString enabledState = u"enabled"_qs;
const QString disabledState = u"disabled"_qs;
const QString linkedState = u"linked"_qs;
const QString maskedState = u"masked"_qs;

/// Of this and no other shape the answer is read: a list of pairs of texts.
const QString listOfPairs = u"a(ss)"_qs;

Failure failureOf(const QDBusMessage &answer, const FilePath &path)
{
    const Failure::Kind kind = answer.errorName() == accessDenied ? Failure::Kind::NoPermission : Failure::Kind::Other;
    return {kind, path, answer.errorMessage()};
}

} // namespace

UserUnits::UserUnits(UnitFiles files, FilePath home, const QDBusConnection &sessionBus,
                     std::chrono::milliseconds patience)
    : m_files(std::move(files))
    , m_home(std::move(home))
    , m_sessionBus(sessionBus)
    , m_patience(patience)
{
}

QList<StartupEntry> UserUnits::entries() const
{
    m_files.giveBackOwnLinks();
    if (!hasManager())
        return m_files.entries();
    QList<StartupEntry> found;
    const QDBusMessage answer = ask(SystemdNames::manager, u"ListUnitFiles"_qs, {});
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
        if (const std::optional<StartupEntry> entry = entryOf(FilePath(file.toUtf8()), state))
            found.append(*entry);
    }
    list.endArray();
    sortUnits(found);
    return found;
}

std::optional<StartupEntry> UserUnits::entryOf(const FilePath &path, const QString &state) const
{
    const QByteArray name = path.lastPathComponent();
    const QString shown = FilePath::displayText(name);
    if (!owns(path) || isTemplate(name))
        return std::nullopt;
    const bool isLinked = state == linkedState && m_files.canBeEnabled(path);
    if (state == enabledState || state == disabledState || isLinked) {
        const auto scope = path.isWithin(m_home) ? StartupEntry::Scope::User : StartupEntry::Scope::AllUsers;
        return StartupEntry{m_files.fileOf(path), shown, scope, state == enabledState};
    }
    // Masked by the user, which is how one that is enabled for all users is switched off for one.
    const FilePath system
        = state == maskedState && path.isWithin(m_files.ownFolder()) ? m_files.systemFile(name) : FilePath();
    if (system.isEmpty())
        return std::nullopt;
    return StartupEntry{system, shown, StartupEntry::Scope::AllUsers, false};
}

bool UserUnits::owns(const FilePath &path)
{
    return isUnit(path);
}

Result<void> UserUnits::setEnabled(const FilePath &path, bool enabled) const
{
    if (!hasManager())
        return Failure{Failure::Kind::NotSupported, path, u"No manager of units looks after this home"_qs};
    const Result<void> done = enabled ? enable(path) : disable(path);
    if (!done)
        return done;
    // What became of it shows only now: the manager also accepts what changes nothing.
    const Result<QString> state = stateOf(path);
    if (!state)
        return state.failure();
    if ((state.value() == enabledState) != enabled)
        return Failure{Failure::Kind::Other, path, u"The manager of units has left it as it was"_qs};
    return {};
}

Result<void> UserUnits::enable(const FilePath &path) const
{
    if (m_files.isMasked(path.lastPathComponent())) {
        if (const Result<void> done = change(u"UnmaskUnitFiles"_qs, path, {false}); !done)
            return done;
        if (isOn(path))
            return {};
    }
    return change(u"EnableUnitFiles"_qs, path, {false, false});
}

Result<void> UserUnits::disable(const FilePath &path) const
{
    const QByteArray name = path.lastPathComponent();
    if (!m_files.canBeEnabled(path)) {
        // Links of the user's start it, which the manager would remove and never make again.
        if (path.isWithin(m_files.ownFolder()))
            return Failure{Failure::Kind::NotSupported, path, u"It could not be switched on again"_qs};
        return mask(path);
    }
    // systemctl(1): disabling removes all links to the unit, including those that were made by hand.
    const Result<void> done
        = m_files.keepingOwnLink(name, [&] { return change(u"DisableUnitFiles"_qs, path, {false}); });
    // The links of one that is enabled for all users are not this user's to take away.
    return done && isOn(path) ? mask(path) : done;
}

Result<void> UserUnits::mask(const FilePath &path) const
{
    // Of a masked unit the manager names the mask alone. Without the system's file it would be listed no more.
    if (m_files.systemFile(path.lastPathComponent()).isEmpty())
        return Failure{Failure::Kind::NotSupported, path, u"It could not be switched on again"_qs};
    return change(u"MaskUnitFiles"_qs, path, {false, false});
}

/// @p how says that it is for good, and where asked that nothing is taken by force from another unit.
Result<void> UserUnits::change(const QString &method, const FilePath &path, const QVariantList &how) const
{
    const QStringList units = {QString::fromUtf8(path.lastPathComponent())};
    const QDBusMessage answer = ask(SystemdNames::manager, method, QVariantList{units} + how);
    return answer.type() == QDBusMessage::ReplyMessage ? Result<void>() : Result<void>(failureOf(answer, path));
}

Result<QString> UserUnits::stateOf(const FilePath &path) const
{
    const QString unit = QString::fromUtf8(path.lastPathComponent());
    const QDBusMessage answer = ask(SystemdNames::manager, u"GetUnitFileState"_qs, {unit});
    // An error's text stands among the arguments of its message, too.
    if (answer.type() != QDBusMessage::ReplyMessage)
        return failureOf(answer, path);
    return answer.arguments().value(0).toString();
}

/// Whoever runs the program on another home than their own does not mean their own units.
bool UserUnits::hasManager() const
{
    const QDBusMessage answer
        = ask(u"org.freedesktop.DBus.Properties"_qs, u"Get"_qs, {SystemdNames::manager, u"UnitPath"_qs});
    const QVariant folders = answer.arguments().value(0).value<QDBusVariant>().variant();
    return folders.toStringList().contains(QString::fromUtf8(m_files.ownFolder().bytes()));
}

/// Never starts a manager: without one there is nothing that would start units.
QDBusMessage UserUnits::ask(const QString &interface, const QString &method, const QVariantList &arguments) const
{
    if (!m_sessionBus.isConnected())
        return QDBusMessage::createError(QDBusError::Disconnected, u"No session bus"_qs);
    QDBusMessage question
        = QDBusMessage::createMethodCall(SystemdNames::service, SystemdNames::object, interface, method);
    question.setArguments(arguments);
    question.setAutoStartService(false);
    return m_sessionBus.call(question, QDBus::Block, int(m_patience.count()));
}

} // namespace Quillmere
