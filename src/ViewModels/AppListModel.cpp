#include "ViewModels/AppListModel.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

#include <algorithm>

namespace Quillmere {

AppListModel::AppListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, [this] {
        if (!m_apps.isEmpty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1), {SizeTextRole});
    });
}

void AppListModel::setApps(const QList<FoundApplication> &apps)
{
    if (m_apps.isEmpty() && apps.isEmpty())
        return;
    beginResetModel();
    m_apps = apps;
    m_running.clear();
    endResetModel();
}

void AppListModel::remove(const QUuid &id)
{
    const int row = rowOf(id);
    if (row < 0)
        return;
    beginRemoveRows({}, row, row);
    m_apps.removeAt(row);
    endRemoveRows();
}

void AppListModel::replace(const FoundApplication &app)
{
    const int row = rowOf(app.item.id);
    if (row < 0)
        return;
    m_apps[row] = app;
    Q_EMIT dataChanged(index(row), index(row));
}

void AppListModel::setRunning(const QSet<QUuid> &running)
{
    if (running == m_running)
        return;
    m_running = running;
    if (!m_apps.isEmpty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {IsRunningRole});
}

int AppListModel::rowOf(const QUuid &id) const
{
    const auto found = std::ranges::find(m_apps, id, [](const FoundApplication &app) { return app.item.id; });
    return found == m_apps.end() ? -1 : static_cast<int>(found - m_apps.begin());
}

int AppListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_apps.size());
}

QVariant AppListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const AppItem &app = m_apps.at(index.row()).item;
    switch (role) {
    case NameRole:
        return app.name;
    case IconRole:
        return app.icon;
    case SizeTextRole:
        return formatByteCount(app.size);
    case IsRunningRole:
        return m_running.contains(app.id);
    default:
        return {};
    }
}

QHash<int, QByteArray> AppListModel::roleNames() const
{
    return {{NameRole, "name"}, {IconRole, "iconName"}, {SizeTextRole, "sizeText"}, {IsRunningRole, "isRunning"}};
}

} // namespace Quillmere
