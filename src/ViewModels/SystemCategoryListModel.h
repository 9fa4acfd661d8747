#pragma once

#include "Models/SystemCategoryItem.h"

#include <QAbstractListModel>

namespace Quillmere {

/// The slices of a disk as rows.
class SystemCategoryListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        LabelRole = Qt::UserRole + 1,
        ColorRole, ///< A SliceColor as a number.
        IconRole,
        SizeTextRole,
        PercentageTextRole, ///< Of the whole disk, with one decimal.
        FractionRole, ///< Of the whole disk. 0 for a slice that its bar leaves out.
    };

    explicit SystemCategoryListModel(QObject *parent);

    [[nodiscard]] const QList<SystemCategoryItem> &items() const { return m_items; }
    void setItems(const QList<SystemCategoryItem> &items, qint64 totalDiskSize);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    [[nodiscard]] double fractionOf(const SystemCategoryItem &item) const;

    QList<SystemCategoryItem> m_items;
    qint64 m_totalDiskSize = 0;
};

/// The label of a category by its name; a name that is none of the screen's is shown as it stands.
[[nodiscard]] QString localizedCategoryName(const QString &name);

} // namespace Quillmere
