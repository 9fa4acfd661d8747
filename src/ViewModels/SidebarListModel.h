#pragma once

#include "Models/SidebarTab.h"

#include <QAbstractListModel>

namespace Quillmere {

/// What stands in the sidebar, from top to bottom: headers, destinations, and the place of the promotion.
class SidebarListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum class Kind { Header, Destination, Promotion };
    Q_ENUM(Kind)

    enum Role {
        KindRole = Qt::UserRole + 1,
        TextRole, ///< Empty for the promotion.
        IconRole, ///< Of a destination.
        TabRole, ///< Of a destination.
    };

    explicit SidebarListModel(QObject *parent);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    struct Row
    {
        Kind kind = Kind::Header;
        QString textKey;
        SidebarTab tab = SidebarTab::Dashboard;
    };

    static Row header(const QString &key) { return {Kind::Header, key, {}}; }
    static Row destination(SidebarTab tab) { return {Kind::Destination, titleKey(tab), tab}; }

    const QList<Row> m_rows;
};

} // namespace Quillmere
