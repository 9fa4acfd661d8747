#include "ViewModels/CleanupCategoryListModel.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

namespace {

constexpr qsizetype mostItemsShown = 5;

QVariantList shownItems(const CleanupCategory &category)
{
    QVariantList items;
    for (const CleanupItem &item : category.items.first(std::min(mostItemsShown, category.items.size()))) {
        items.append(QVariantMap{
            // Part of a name may be what a program has printed.
            {u"name"_qs, FilePath::displayText(item.name.toUtf8())},
            {u"size"_qs, formatCompactByteCount(item.size)},
        });
    }
    return items;
}

QString moreText(const CleanupCategory &category)
{
    const qsizetype hidden = category.items.size() - mostItemsShown;
    if (hidden <= 0)
        return {};
    return QString::number(hidden) + u' ' + localized(u"cleanup.more"_qs);
}

QString countText(const CleanupCategory &category)
{
    return QString::number(category.itemCount) + u' ' + localized(u"cleanup.itemsCount"_qs);
}

} // namespace

CleanupCategoryListModel::CleanupCategoryListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &CleanupCategoryListModel::publishTexts);
}

void CleanupCategoryListModel::setCategories(const QList<CleanupCategory> &categories)
{
    beginResetModel();
    m_categories = categories;
    m_expanded.clear();
    endResetModel();
    Q_EMIT selectionChanged();
}

void CleanupCategoryListModel::append(const QList<CleanupCategory> &categories)
{
    if (categories.isEmpty())
        return;
    beginInsertRows({}, rowCount(), rowCount() + int(categories.size()) - 1);
    m_categories += categories;
    endInsertRows();
    Q_EMIT selectionChanged();
}

qint64 CleanupCategoryListModel::totalSelectedSize() const
{
    qint64 size = 0;
    for (const CleanupCategory &category : m_categories) {
        if (category.isSelected)
            size += category.totalSize;
    }
    return size;
}

void CleanupCategoryListModel::selectEach(bool selected)
{
    for (CleanupCategory &category : m_categories)
        category.isSelected = selected;
    publish(0, rowCount() - 1, {IsSelectedRole});
    Q_EMIT selectionChanged();
}

void CleanupCategoryListModel::selectAvailable()
{
    for (CleanupCategory &category : m_categories) {
        if (category.isAvailable)
            category.isSelected = true;
    }
    publish(0, rowCount() - 1, {IsSelectedRole});
    Q_EMIT selectionChanged();
}

void CleanupCategoryListModel::setSelected(int row, bool selected)
{
    if (row < 0 || row >= rowCount())
        return;
    m_categories[row].isSelected = selected;
    publish(row, row, {IsSelectedRole});
    Q_EMIT selectionChanged();
}

void CleanupCategoryListModel::toggleExpanded(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    const QUuid id = m_categories.at(row).id;
    if (!m_expanded.remove(id))
        m_expanded.insert(id);
    publish(row, row, {IsExpandedRole});
}

int CleanupCategoryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_categories.size());
}

QVariant CleanupCategoryListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const CleanupCategory &category = m_categories.at(index.row());
    switch (role) {
    case NameRole:
        return category.localizedName;
    case DescriptionRole:
        return category.description;
    case IconRole:
        return category.icon;
    case RiskLevelRole:
        return QVariant::fromValue(category.riskLevel);
    case IsSelectedRole:
        return category.isSelected;
    case IsAvailableRole:
        return category.isAvailable;
    case CountTextRole:
        return countText(category);
    case SizeTextRole:
        return formatByteCount(category.totalSize);
    case IsExpandedRole:
        return m_expanded.contains(category.id);
    case ShownItemsRole:
        return shownItems(category);
    case MoreTextRole:
        return moreText(category);
    default:
        return {};
    }
}

QHash<int, QByteArray> CleanupCategoryListModel::roleNames() const
{
    return {
        {NameRole, "name"},           {DescriptionRole, "description"}, {IconRole, "iconName"},
        {RiskLevelRole, "riskLevel"}, {IsSelectedRole, "selected"},     {IsAvailableRole, "available"},
        {CountTextRole, "countText"}, {SizeTextRole, "sizeText"},       {IsExpandedRole, "expanded"},
        {ShownItemsRole, "items"},    {MoreTextRole, "moreText"},
    };
}

void CleanupCategoryListModel::publish(int firstRow, int lastRow, const QList<int> &roles)
{
    if (lastRow >= firstRow)
        Q_EMIT dataChanged(index(firstRow), index(lastRow), roles);
}

void CleanupCategoryListModel::publishTexts()
{
    publish(0, rowCount() - 1, {CountTextRole, SizeTextRole, ShownItemsRole, MoreTextRole});
}

} // namespace Quillmere
