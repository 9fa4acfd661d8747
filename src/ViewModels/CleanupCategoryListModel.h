#pragma once

#include "Models/CleanupCategory.h"

#include <QAbstractListModel>
#include <QSet>

namespace Quillmere {

/// The categories of a cleanup screen as rows, each with its selection and whether it is expanded.
class CleanupCategoryListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        NameRole = Qt::UserRole + 1,
        DescriptionRole,
        IconRole,
        RiskLevelRole,
        IsSelectedRole,
        IsAvailableRole,
        CountTextRole,
        SizeTextRole,
        IsExpandedRole,
        ShownItemsRole, ///< The first items of the category, each with `name` and `size`.
        MoreTextRole, ///< How many items are not shown; empty when all are.
    };

    explicit CleanupCategoryListModel(QObject *parent);

    [[nodiscard]] const QList<CleanupCategory> &categories() const { return m_categories; }
    /// Replaces all rows; none is expanded then.
    void setCategories(const QList<CleanupCategory> &categories);
    /// Adds rows behind those that stand, which stay as they are.
    void append(const QList<CleanupCategory> &categories);
    /// The bytes of all categories that are selected.
    [[nodiscard]] qint64 totalSelectedSize() const;
    void selectEach(bool selected);
    /// Selects all but the rows of a read-only inventory, and leaves those.
    void selectAvailable();

    Q_INVOKABLE void setSelected(int row, bool selected);
    Q_INVOKABLE void toggleExpanded(int row);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void selectionChanged();

private:
    void publish(int firstRow, int lastRow, const QList<int> &roles);
    void publishTexts();

    QList<CleanupCategory> m_categories;
    QSet<QUuid> m_expanded;
};

} // namespace Quillmere
