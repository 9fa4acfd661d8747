#include "Platform/Linux/Files/FolderOnDisk.h"

#include "Platform/Linux/Files/DirectoryBuffer.h"
#include "Platform/Linux/Files/FolderListing.h"
#include "Platform/Linux/Files/FolderOpening.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

FolderOnDisk::FolderOnDisk(FileDescriptor folder)
    : m_folder(std::move(folder))
{
}

std::unique_ptr<OpenFolder> FolderOnDisk::below(int parent, const QByteArray &name)
{
    FileDescriptor folder = openSubfolder(parent, name.constData());
    // Where names may not be listed, those that are known can still be asked for.
    if (!folder.isOpen() && errno == EACCES)
        folder = openAt(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW, RESOLVE_NO_XDEV);
    return folder.isOpen() ? std::make_unique<FolderOnDisk>(std::move(folder)) : nullptr;
}

bool FolderOnDisk::holds(const QByteArray &name) const
{
    struct statx status = {};
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    return ::statx(m_folder.number(), name.constData(), flags, STATX_TYPE, &status) == 0;
}

std::unique_ptr<OpenFolder> FolderOnDisk::enter(const QByteArray &name) const
{
    return below(m_folder.number(), name);
}

void FolderOnDisk::forEach(const Take &take)
{
    DirectoryBuffer buffer;
    while (buffer.read(m_folder.number())) {
        for (const dirent64 &entry : buffer) {
            if (DirectoryBuffer::isDots(entry))
                continue;
            const std::optional<EntryKind> kind = kindOf(entry, m_folder.number());
            if (kind && !take(QByteArrayView(entry.d_name), *kind))
                return;
        }
    }
}

} // namespace Quillmere
