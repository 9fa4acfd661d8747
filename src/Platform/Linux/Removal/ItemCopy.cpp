#include "Platform/Linux/Removal/ItemCopy.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/TreeCopy.h"
#include "Platform/Linux/Removal/UnfinishedItem.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

bool isThere(const ItemPlace &place)
{
    struct stat status = {};
    return ::fstatat(place.folder.number(), place.name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

/// Whether @p folder lies in @p item, or is it; nothing where that cannot be told, with the reason in errno.
std::optional<bool> liesIn(const FileDescriptor &folder, const FileDescriptor &item)
{
    const std::optional<FileIdentity> wanted = FileIdentity::of(item.number());
    return wanted ? isAtOrAbove(*wanted, folder.number()) : std::nullopt;
}

} // namespace

Result<void> copyItem(const FilePath &source, const FilePath &destination)
{
    const Result<ItemPlace> from = ItemPlace::open(source, LinksAbove::Follow);
    const Result<ItemPlace> to = ItemPlace::open(destination, LinksAbove::Follow);
    if (!from || !to)
        return from ? to.failure() : from.failure();
    const FileDescriptor item = openAt(from.value().folder.number(), from.value().name, O_PATH | O_NOFOLLOW);
    if (!item.isOpen())
        return failureFromErrno(errno, source);
    if (isThere(to.value()))
        return failureFromErrno(EEXIST, destination);
    const std::optional<bool> isInItself = liesIn(to.value().folder, item);
    if (!isInItself)
        return failureFromErrno(errno, destination);
    // It would never come to an end.
    if (*isInItself)
        return Failure{Failure::Kind::NotSupported, destination, u"The copy would lie in what is copied"_qs};

    const UnfinishedItem growing(to.value());
    const Result<CopiedEntries> copied
        = copyTree(from.value(), to.value().folder.number(), growing.name(), destination);
    if (!copied)
        return copied.failure();
    const FileDescriptor folder = openAt(to.value().folder.number(), ".", O_RDONLY | O_DIRECTORY);
    if (folder.isOpen() && ::syncfs(folder.number()) != 0)
        return failureFromErrno(errno, destination);
    if (const int error = growing.reveal())
        return failureFromErrno(error, destination);
    return {};
}

} // namespace Quillmere
