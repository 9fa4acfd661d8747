#include "Platform/Linux/Disks/DiskService.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>

#include <algorithm>
#include <limits>
#include <utility>

namespace Quillmere {

namespace {

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

constexpr int withoutEnd = std::numeric_limits<int>::max();
const QString nameOnTheBus = u"org.freedesktop.UDisks2"_qs;
const QString blockInterface = u"org.freedesktop.UDisks2.Block"_qs;
const QString driveInterface = u"org.freedesktop.UDisks2.Drive"_qs;
const QString encryptedInterface = u"org.freedesktop.UDisks2.Encrypted"_qs;
const QString fileSystemInterface = u"org.freedesktop.UDisks2.Filesystem"_qs;

/// udisks2 says "/" where there is no such object.
QString objectIn(const QVariantMap &properties, const QString &name)
{
    const QString path = properties.value(name).value<QDBusObjectPath>().path();
    return path == u"/" ? QString() : path;
}

QList<FilePath> pathsIn(const QVariant &value)
{
    QList<FilePath> paths;
    for (QByteArray path : qdbus_cast<QByteArrayList>(value)) {
        // Each ends with a byte 0.
        while (path.endsWith('\0'))
            path.chop(1);
        paths.append(FilePath(path));
    }
    return paths;
}

DiskDrive driveOf(const QVariantMap &properties)
{
    DiskDrive drive;
    drive.isRemovable = properties.value(u"Removable"_qs).toBool();
    drive.isEjectable = properties.value(u"Ejectable"_qs).toBool();
    drive.bus = properties.value(u"ConnectionBus"_qs).toString();
    const QString serial = properties.value(u"Serial"_qs).toString();
    drive.serial = serial.isEmpty() ? properties.value(u"WWN"_qs).toString() : serial;
    return drive;
}

DiskBlock blockOf(const QString &object, const Interfaces &interfaces)
{
    const QVariantMap properties = interfaces.value(blockInterface);
    DiskBlock block;
    block.object = object;
    block.number = properties.value(u"DeviceNumber"_qs).toULongLong();
    block.isOfSystem = properties.value(u"HintSystem"_qs).toBool();
    block.isIgnored = properties.value(u"HintIgnore"_qs).toBool();
    block.type = properties.value(u"IdType"_qs).toString();
    block.label = properties.value(u"IdLabel"_qs).toString();
    block.uuid = properties.value(u"IdUUID"_qs).toString();
    block.drive = objectIn(properties, u"Drive"_qs);
    block.isFileSystem = interfaces.contains(fileSystemInterface);
    block.mountPoints = pathsIn(interfaces.value(fileSystemInterface).value(u"MountPoints"_qs));
    block.isEncrypted = interfaces.contains(encryptedInterface);
    block.unlocked = objectIn(interfaces.value(encryptedInterface), u"CleartextDevice"_qs);
    return block;
}

/// Whoever may not do it without a password is not asked for one.
QVariantMap quietly()
{
    return {{u"auth.no_user_interaction"_qs, true}};
}

Failure::Kind kindOf(const QString &error)
{
    if (error == u"org.freedesktop.UDisks2.Error.DeviceBusy")
        return Failure::Kind::Busy;
    if (error == u"org.freedesktop.UDisks2.Error.AlreadyMounted")
        return Failure::Kind::AlreadyExists;
    if (error == u"org.freedesktop.UDisks2.Error.NotMounted" || error == u"org.freedesktop.DBus.Error.UnknownObject"
        || error == u"org.freedesktop.DBus.Error.UnknownMethod")
        return Failure::Kind::NotFound;
    if (error.startsWith(u"org.freedesktop.UDisks2.Error.NotAuthorized"))
        return Failure::Kind::NoPermission;
    if (error.startsWith(u"org.freedesktop.UDisks2.Error."))
        return Failure::Kind::Other;
    return Failure::Kind::NotSupported;
}

QString wordsOf(const QDBusMessage &error)
{
    if (kindOf(error.errorName()) == Failure::Kind::NotSupported)
        return u"udisks2 does not answer: "_qs + error.errorMessage();
    return error.errorMessage();
}

} // namespace

DiskService::DiskService(QDBusConnection systemBus, int patience)
    : m_bus(std::move(systemBus))
    , m_patience(patience)
{
}

DiskService DiskService::toShow(QDBusConnection systemBus, int patience, DiskServiceSilence silence)
{
    DiskService service(std::move(systemBus), patience);
    service.m_silence = std::move(silence);
    return service;
}

Result<DiskObjects> DiskService::objects() const
{
    const Result<QVariantList> answer = call(u"/org/freedesktop/UDisks2"_qs, u"org.freedesktop.DBus.ObjectManager"_qs,
                                             u"GetManagedObjects"_qs, {}, m_patience);
    if (!answer)
        return answer.failure();
    const auto argument = answer.value().value(0).value<QDBusArgument>();
    if (argument.currentSignature() != u"a{oa{sa{sv}}}")
        return Failure{Failure::Kind::Malformed, {}, u"udisks2 answered something else."_qs};
    Objects objects;
    argument >> objects;
    DiskObjects known;
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        if (object->contains(driveInterface))
            known.drives.insert(object.key().path(), driveOf(object->value(driveInterface)));
        if (object->contains(blockInterface))
            known.blocks.append(blockOf(object.key().path(), *object));
    }
    return known;
}

Result<FilePath> DiskService::mount(const QString &object) const
{
    const Result<QVariantList> answer = call(object, fileSystemInterface, u"Mount"_qs, {quietly()}, withoutEnd);
    if (!answer)
        return answer.failure();
    return FilePath(answer.value().value(0).toString().toUtf8());
}

Result<void> DiskService::unmount(const QString &object) const
{
    const Result<QVariantList> answer = call(object, fileSystemInterface, u"Unmount"_qs, {quietly()}, withoutEnd);
    return answer ? Result<void>() : answer.failure();
}

Result<void> DiskService::lock(const QString &object) const
{
    const Result<QVariantList> answer = call(object, encryptedInterface, u"Lock"_qs, {quietly()}, withoutEnd);
    return answer ? Result<void>() : answer.failure();
}

Result<void> DiskService::format(const QString &object, const QString &type, const QString &label) const
{
    QVariantMap options = quietly();
    options.insert(u"label"_qs, label);
    options.insert(u"update-partition-type"_qs, true);
    const Result<QVariantList> answer = call(object, blockInterface, u"Format"_qs, {type, options}, withoutEnd);
    return answer ? Result<void>() : answer.failure();
}

Result<QString> DiskService::missingToFormat(const QString &type) const
{
    const Result<QVariantList> answer
        = call(u"/org/freedesktop/UDisks2/Manager"_qs, u"org.freedesktop.UDisks2.Manager"_qs, u"CanFormat"_qs, {type},
               m_patience);
    if (!answer)
        return answer.failure();
    const auto argument = answer.value().value(0).value<QDBusArgument>();
    bool isAvailable = false;
    QString missing;
    argument.beginStructure();
    argument >> isAvailable >> missing;
    argument.endStructure();
    if (isAvailable)
        return QString();
    return missing.isEmpty() ? type : missing;
}

Result<QVariantList> DiskService::call(const QString &object, const QString &interface, const QString &method,
                                       const QVariantList &arguments, int milliseconds) const
{
    if (!m_bus.isConnected())
        return Failure{Failure::Kind::NotSupported, {}, u"There is no system bus, so udisks2 cannot be asked."_qs};
    if (m_silence && m_silence->isRecent())
        return Failure{Failure::Kind::NotSupported, {}, u"udisks2 does not answer: It was silent just now."_qs};
    QDBusMessage question = QDBusMessage::createMethodCall(nameOnTheBus, object, interface, method);
    question.setArguments(arguments);
    const QDBusMessage answer = m_bus.call(question, QDBus::Block, milliseconds);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return answer.arguments();
    if (m_silence && answer.errorName() == QDBusError::errorString(QDBusError::NoReply))
        m_silence->remember();
    return Failure{kindOf(answer.errorName()), {}, wordsOf(answer)};
}

} // namespace Quillmere
