#include "Platform/Linux/Removal/UnfinishedItem.h"

#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/RemovalRecord.h"
#include "Platform/Linux/Removal/TreeRemoval.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

namespace {

/// 0, or an error number.
int moveWithin(const FileDescriptor &folder, const QByteArray &from, const QByteArray &to)
{
    const int number = folder.number();
    if (::renameat2(number, from.constData(), number, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL)
        return errno;
    // Not every file system knows how not to replace.
    struct stat status = {};
    if (::fstatat(number, to.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return ::renameat(number, from.constData(), number, to.constData()) == 0 ? 0 : errno;
}

} // namespace

UnfinishedItem::UnfinishedItem(const ItemPlace &item)
    : m_item(item)
    , m_place{openAt(item.folder.number(), ".", O_PATH | O_DIRECTORY), ".quillmere-unfinished-" + item.name, item.path}
{
    RemovalRecord record;
    remove(record);
}

UnfinishedItem::~UnfinishedItem()
{
    RemovalRecord record;
    remove(record);
}

int UnfinishedItem::hide() const
{
    return moveWithin(m_place.folder, m_item.name, m_place.name);
}

int UnfinishedItem::reveal() const
{
    return moveWithin(m_place.folder, m_place.name, m_item.name);
}

void UnfinishedItem::remove(RemovalRecord &record) const
{
    const FileDescriptor item = openAt(m_place.folder.number(), m_place.name, O_PATH | O_NOFOLLOW);
    if (item.isOpen())
        TreeRemoval().remove(m_place, item, record);
}

} // namespace Quillmere
