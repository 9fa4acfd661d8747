#include "Platform/Linux/Removal/ItemRemoval.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/TreeRemoval.h"
#include "Platform/Linux/Removal/UnfinishedItem.h"

#include <cerrno>
#include <tuple>

#include <fcntl.h>
#include <unistd.h>

namespace Quillmere {

namespace {

/// The item at @p place as an O_PATH descriptor, if it may go.
Result<FileDescriptor> openRemovable(const ItemPlace &place, const FilePath &path, const RemovalGuard &guard)
{
    FileDescriptor item = openAt(place.folder.number(), place.name, O_PATH | O_NOFOLLOW);
    if (!item.isOpen())
        return failureFromErrno(errno, path);
    if (const Result<void> allowed = guard.check(place, item); !allowed)
        return allowed.failure();
    return item;
}

Result<void> outcomeOf(const RemovalRecord &record)
{
    if (const std::optional<Failure> failure = record.failure())
        return *failure;
    return {};
}

} // namespace

Result<void> removeItem(const FilePath &path, const RemovalGuard &guard)
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Refuse);
    if (!place)
        return place.failure();
    const Result<FileDescriptor> item = openRemovable(place.value(), path, guard);
    if (!item)
        return item.failure();
    RemovalRecord record;
    TreeRemoval().remove(place.value(), item.value(), record);
    return outcomeOf(record);
}

Result<void> removeItemAtOnce(const FilePath &path, const RemovalGuard &guard)
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Refuse);
    if (!place)
        return place.failure();
    const Result<FileDescriptor> item = openRemovable(place.value(), path, guard);
    if (!item)
        return item.failure();
    UnfinishedItem going(place.value());
    if (const int error = going.hide())
        return failureFromErrno(error, path);
    if (!going.holds(item.value())) {
        // Somebody has put another thing in its place between the look and the move: that is not what was asked for.
        going.giveBack();
        return Failure{Failure::Kind::Busy, path, u"Replaced by something else meanwhile"_qs};
    }
    // Otherwise a power failure could bring the name back before half of what it stood for.
    const FileDescriptor folder = openAt(place.value().folder.number(), ".", O_RDONLY | O_DIRECTORY);
    if (folder.isOpen())
        ::fsync(folder.number());
    RemovalRecord record;
    going.remove(item.value(), record);
    const Result<void> outcome = outcomeOf(record);
    // Whole as it is, it belongs under its name, where it is found again.
    if (!outcome && record.removed() == 0)
        std::ignore = going.reveal();
    return outcome;
}

} // namespace Quillmere
