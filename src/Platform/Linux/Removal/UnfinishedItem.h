#pragma once

#include "Platform/Linux/Files/ItemPlace.h"

#include <QtGlobal>

namespace Quillmere {

class RemovalRecord;

/// A hidden place beside an item, for what is not whole: a copy that grows, or an item that goes. What lies there goes
/// with this; what a program that was killed has left there goes at the beginning.
class UnfinishedItem
{
public:
    /// @p item must outlive this.
    explicit UnfinishedItem(const ItemPlace &item);
    ~UnfinishedItem();
    Q_DISABLE_COPY_MOVE(UnfinishedItem)

    [[nodiscard]] const QByteArray &name() const { return m_place.name; }

    // These take one step each, so that nobody ever meets half of the item under its own name. They answer 0 or an
    // error number.
    /// Moves the item here.
    [[nodiscard]] int hide() const;
    /// Moves what lies here to the item's own name, which must be free.
    [[nodiscard]] int reveal() const;

    /// Deletes what lies here.
    void remove(RemovalRecord &record) const;

private:
    const ItemPlace &m_item;
    ItemPlace m_place; ///< With the item's own path, which reports name.
};

} // namespace Quillmere
