#include "Platform/Linux/Files/FolderListing.h"

#include "Platform/Linux/Files/DirectoryBuffer.h"
#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FolderOpening.h"
#include "Platform/Linux/Files/StatFields.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <optional>

namespace Quillmere {

namespace {

bool isListed(const dirent64 &entry, HiddenFiles hidden)
{
    if (hidden == HiddenFiles::Skip && entry.d_name[0] == '.')
        return false;
    return !DirectoryBuffer::isDots(entry);
}

} // namespace

std::optional<EntryKind> kindOf(const dirent64 &entry, int folder)
{
    if (entry.d_type != DT_UNKNOWN)
        return kindOfMode(DTTOIF(entry.d_type));
    struct statx status = {};
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    if (::statx(folder, entry.d_name, flags, STATX_TYPE, &status) == 0)
        return kindOfMode(status.stx_mode);
    return errno == ENOENT ? std::nullopt : std::optional(EntryKind::Other);
}

Result<QList<DirectoryEntry>> contentsOfDirectory(const FilePath &folder, HiddenFiles hidden)
{
    const FileDescriptor opened = openFolderForReading(folder, FinalLink::Follow);
    if (!opened.isOpen()) // Links that go round in a loop lead nowhere, too.
        return failureFromErrno(errno == ELOOP ? ENOENT : errno, folder);

    QList<DirectoryEntry> entries;
    DirectoryBuffer buffer;
    while (buffer.read(opened.number())) {
        for (const dirent64 &entry : buffer) {
            if (!isListed(entry, hidden))
                continue;
            if (const std::optional<EntryKind> type = kindOf(entry, opened.number()))
                entries.append({folder.appending(entry.d_name), *type});
        }
    }
    if (errno != 0)
        return failureFromErrno(errno, folder);
    return entries;
}

} // namespace Quillmere
