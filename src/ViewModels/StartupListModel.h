#pragma once

#include "Models/StartupItem.h"

#include <QAbstractListModel>

namespace Quillmere {

/// Startup items as rows.
class StartupListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        ItemRole = Qt::UserRole + 1, ///< The StartupItem itself, for handing back.
        NameRole,
        PathTextRole,
        TypeTextRole,
        RiskLevelRole,
        IsEnabledRole,
    };

    explicit StartupListModel(QObject *parent);

    [[nodiscard]] const QList<StartupItem> &items() const { return m_items; }
    /// Where the same files come again in the same order, the rows stay and only what they say changes.
    void setItems(const QList<StartupItem> &items);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QList<StartupItem> m_items;
};

} // namespace Quillmere
