#include "Tools/Ditto.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Removal/TreeCopy.h"
#include "Tools/InstallStaging.h"

#include <QDir>
#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr const char *stagedCopy = "copy";

FilePath absolute(const QString &text)
{
    const FilePath path(QFile::encodeName(text));
    if (path.bytes().startsWith('/'))
        return path.standardized();
    return FilePath(QFile::encodeName(QDir::currentPath())).appending(path.bytes()).standardized();
}

bool isFree(const ItemPlace &place)
{
    struct stat status = {};
    return ::fstatat(place.folder.number(), place.name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0;
}

Result<void> copy(const FilePath &from, const FilePath &to)
{
    const Result<ItemPlace> source = ItemPlace::open(from, LinksAbove::Follow);
    if (!source)
        return source.failure();
    const Result<ItemPlace> target = ItemPlace::open(to, LinksAbove::Follow);
    if (!target)
        return target.failure();
    if (to.isWithin(from))
        return Failure{Failure::Kind::NotSupported, to, u"This is inside of what is to be copied"_qs};
    if (!isFree(target.value()))
        return failureFromErrno(EEXIST, to);
    const FilePath above = to.deletingLastPathComponent();
    const Result<FileDescriptor> folder = openFolder(above, LinksAbove::Follow, O_RDONLY);
    if (!folder)
        return folder.failure();
    const Result<InstallStaging> staging = InstallStaging::make(folder.value().number(), above);
    if (!staging)
        return staging.failure();
    const Result<CopiedEntries> copied = copyTree(source.value(), staging.value().descriptor(), stagedCopy, to);
    if (!copied)
        return copied.failure();
    return staging.value().add(stagedCopy, target.value().name);
}

} // namespace

ToolEnd runDitto(const QStringList &arguments)
{
    if (arguments.size() != 2 || arguments.first().isEmpty() || arguments.last().isEmpty())
        return {ToolEnd::wrongUse, u"usage: ditto FROM TO"_qs};
    const Result<void> copied = copy(absolute(arguments.first()), absolute(arguments.last()));
    if (copied)
        return {};
    return {1, u"ditto: %1: %2"_qs.arg(copied.failure().path.displayText(), copied.failure().detail)};
}

} // namespace Quillmere
