#include "Platform/Linux/Removal/UnfinishedItem.h"

#include "Platform/Linux/Files/FileIdentity.h"
#include "Platform/Linux/Files/MoveWithoutReplacing.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/RemovalRecord.h"
#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/Removal/TreeRemoval.h"

#include <cerrno>

#include <fcntl.h>

namespace Quillmere {

namespace {

constexpr int mostNames = 100;
constexpr qsizetype longestName = 255;

/// The @p number -th place for @p item, from 1. No place of one item is that of another.
QByteArray placeName(const QByteArray &item, int number)
{
    return ".quillmere-unfinished" + (number == 1 ? QByteArray() : QByteArray::number(number)) + '-' + item;
}

bool isFree(const ItemPlace &place)
{
    struct stat status = {};
    return ::fstatat(place.folder.number(), place.name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0
        && errno == ENOENT;
}

} // namespace

UnfinishedItem::UnfinishedItem(const ItemPlace &item)
    : m_item(item)
    , m_place{openAt(item.folder.number(), ".", O_PATH | O_DIRECTORY), placeName(item.name, 1), item.path}
{
    clear();
    for (int number = 2; number <= mostNames && !isFree(m_place); ++number) {
        m_place.name = placeName(item.name, number);
        clear();
    }
}

UnfinishedItem::~UnfinishedItem()
{
    if (m_isOurs)
        clear();
}

bool UnfinishedItem::holds(const FileDescriptor &item) const
{
    struct stat status = {};
    return ::fstatat(m_place.folder.number(), m_place.name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0
        && FileIdentity::of(status) == FileIdentity::of(item.number());
}

int UnfinishedItem::hide() const
{
    return moveWithoutReplacing(m_place.folder.number(), m_item.name, m_place.folder.number(), m_place.name);
}

int UnfinishedItem::reveal() const
{
    return moveWithoutReplacing(m_place.folder.number(), m_place.name, m_place.folder.number(), m_item.name);
}

void UnfinishedItem::giveBack()
{
    m_isOurs = false;
    int error = EEXIST;
    for (int number = 1; number <= mostNames && error == EEXIST; ++number)
        error = moveWithoutReplacing(m_place.folder.number(), m_place.name, m_place.folder.number(),
                                     nameInTrash(m_item.name, number, longestName));
}

void UnfinishedItem::remove(const FileDescriptor &item, RemovalRecord &record) const
{
    TreeRemoval().remove(m_place, item, record);
}

void UnfinishedItem::clear() const
{
    const FileDescriptor item = openAt(m_place.folder.number(), m_place.name, O_PATH | O_NOFOLLOW);
    RemovalRecord record;
    if (item.isOpen())
        remove(item, record);
}

} // namespace Quillmere
