#pragma once

#include "Platform/Linux/Files/ItemPlace.h"

#include <QtGlobal>

namespace Quillmere {

class RemovalRecord;

/// A hidden place beside an item, for what is not whole: a copy that grows, or an item that goes. What lies there goes
/// with this; what stays there all the same, as of a program that was killed, goes at the beginning of the next. Where
/// it cannot go, the next has a place beside it.
class UnfinishedItem
{
public:
    /// @p item must outlive this.
    explicit UnfinishedItem(const ItemPlace &item);
    ~UnfinishedItem();
    Q_DISABLE_COPY_MOVE(UnfinishedItem)

    [[nodiscard]] const QByteArray &name() const { return m_place.name; }
    /// Whether what lies here is @p item.
    [[nodiscard]] bool holds(const FileDescriptor &item) const;

    // These take one step each, so that nobody ever meets half of the item under its own name. They answer 0 or an
    // error number.
    /// Moves the item here.
    [[nodiscard]] int hide() const;
    /// Moves what lies here to the item's own name, which must be free.
    [[nodiscard]] int reveal() const;

    /// What lies here is somebody else's: moves it to the item's name, or where that is taken to the next one like it.
    void giveBack();
    /// Deletes @p item, which lies here, as TreeRemoval does.
    void remove(const FileDescriptor &item, RemovalRecord &record) const;

private:
    void clear() const;

    const ItemPlace &m_item;
    ItemPlace m_place; ///< With the item's own path, which reports name.
    bool m_isOurs = true; ///< What lies here.
};

} // namespace Quillmere
