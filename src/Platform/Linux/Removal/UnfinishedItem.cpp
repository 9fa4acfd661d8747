#include "Platform/Linux/Removal/UnfinishedItem.h"

#include "Platform/Linux/Files/MoveWithoutReplacing.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/RemovalRecord.h"
#include "Platform/Linux/Removal/TreeRemoval.h"

#include <fcntl.h>

namespace Quillmere {

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
    return moveWithoutReplacing(m_place.folder.number(), m_item.name, m_place.folder.number(), m_place.name);
}

int UnfinishedItem::reveal() const
{
    return moveWithoutReplacing(m_place.folder.number(), m_place.name, m_place.folder.number(), m_item.name);
}

void UnfinishedItem::remove(RemovalRecord &record) const
{
    const FileDescriptor item = openAt(m_place.folder.number(), m_place.name, O_PATH | O_NOFOLLOW);
    if (item.isOpen())
        TreeRemoval().remove(m_place, item, record);
}

} // namespace Quillmere
