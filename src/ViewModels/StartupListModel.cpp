#include "ViewModels/StartupListModel.h"

#include "Utilities/LocalizationManager.h"

#include <algorithm>

namespace Quillmere {

StartupListModel::StartupListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, [this] {
        if (!m_items.isEmpty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1), {TypeTextRole});
    });
}

void StartupListModel::setItems(const QList<StartupItem> &items)
{
    if (!items.isEmpty() && std::ranges::equal(items, m_items, {}, &StartupItem::path, &StartupItem::path)) {
        m_items = items;
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
        return;
    }
    beginResetModel();
    m_items = items;
    endResetModel();
}

int StartupListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_items.size());
}

QVariant StartupListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const StartupItem &item = m_items.at(index.row());
    switch (role) {
    case ItemRole:
        return QVariant::fromValue(item);
    case NameRole:
        return FilePath::displayText(item.name.toUtf8());
    case PathTextRole:
        return item.path.displayText();
    case TypeTextRole:
        return localized(labelKey(item.type));
    case RiskLevelRole:
        return int(item.riskLevel);
    case IsEnabledRole:
        return item.isEnabled;
    default:
        return {};
    }
}

QHash<int, QByteArray> StartupListModel::roleNames() const
{
    return {
        {ItemRole, "item"},         {NameRole, "name"},           {PathTextRole, "pathText"},
        {TypeTextRole, "typeText"}, {RiskLevelRole, "riskLevel"}, {IsEnabledRole, "isEnabled"},
    };
}

} // namespace Quillmere
