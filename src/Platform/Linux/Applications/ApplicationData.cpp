#include "Platform/Linux/Applications/ApplicationData.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

#include <fnmatch.h>

namespace Quillmere {

namespace {

QList<QByteArray> texts(const QJsonValue &array)
{
    QList<QByteArray> texts;
    for (const QJsonValue &each : array.toArray())
        texts.append(each.toString().toUtf8());
    return texts;
}

ApplicationData read(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The applications in %s are missing from the program.", qUtf8Printable(name));
    const QJsonObject document = QJsonDocument::fromJson(file.readAll()).object();
    ApplicationData data;
    for (const QJsonValue &each : document[u"identities"].toArray()) {
        data.identities.append(
            {each[u"identifier"].toString().toUtf8(), texts(each[u"desktopIds"]), texts(each[u"executables"])});
    }
    data.sharedPrograms = texts(document[u"sharedPrograms"]);
    data.sandboxPrograms = texts(document[u"sandboxPrograms"]);
    data.sharedFolders = texts(document[u"sharedFolders"]);
    data.sharedNames = texts(document[u"sharedNames"]);
    return data;
}

bool matchesAny(const QList<QByteArray> &patterns, const QByteArray &path)
{
    return std::ranges::any_of(patterns, [&](const QByteArray &pattern) {
        return ::fnmatch(pattern.constData(), path.constData(), FNM_PATHNAME | FNM_NOESCAPE) == 0;
    });
}

} // namespace

const ApplicationData &ApplicationData::builtIn()
{
    static const ApplicationData data = read(u":/platform/Applications.json"_qs);
    return data;
}

QByteArray ApplicationData::identifierOf(const QByteArray &desktopId) const
{
    const auto found = std::ranges::find_if(
        identities, [&](const Identity &identity) { return identity.desktopIds.contains(desktopId); });
    return found == identities.end() ? desktopId : found->identifier;
}

QList<QByteArray> ApplicationData::desktopIdsOf(const QByteArray &identifier) const
{
    const auto found = std::ranges::find(identities, identifier, &Identity::identifier);
    return found == identities.end() ? QList<QByteArray>{identifier} : found->desktopIds;
}

const ApplicationData::Identity *ApplicationData::identityOfExecutable(const FilePath &executable) const
{
    const auto found = std::ranges::find_if(
        identities, [&](const Identity &identity) { return matchesAny(identity.executables, executable.bytes()); });
    return found == identities.end() ? nullptr : &*found;
}

bool ApplicationData::isSharedProgram(const FilePath &executable) const
{
    return matchesAny(sharedPrograms, executable.lastPathComponent());
}

bool ApplicationData::isSandboxProgram(const FilePath &executable) const
{
    return sandboxPrograms.contains(executable.lastPathComponent());
}

bool ApplicationData::isSharedName(const QByteArray &name) const
{
    return matchesAny(sharedNames, name.toLower());
}

FilePath ApplicationData::installFolderOf(const FilePath &executable, const FilePath &home) const
{
    const auto isShared = [&](const FilePath &folder) {
        return std::ranges::any_of(sharedFolders, [&](const QByteArray &shared) {
            return folder == (shared.startsWith('~') ? home.appending(shared.mid(1)) : FilePath(shared)).standardized();
        });
    };
    FilePath folder = executable.deletingLastPathComponent();
    if (!isShared(folder) && folder.lastPathComponent() == "bin")
        folder = folder.deletingLastPathComponent();
    return isShared(folder) ? FilePath() : folder;
}

} // namespace Quillmere
