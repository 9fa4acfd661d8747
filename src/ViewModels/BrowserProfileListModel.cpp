#include "ViewModels/BrowserProfileListModel.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

#include <algorithm>

namespace Quillmere {

BrowserProfileListModel::BrowserProfileListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, [this] {
        if (!m_profiles.isEmpty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    });
}

void BrowserProfileListModel::setProfiles(const QList<BrowserProfile> &profiles)
{
    beginResetModel();
    m_profiles = profiles;
    endResetModel();
}

void BrowserProfileListModel::setNotRunning(const QUuid &id)
{
    const auto found = std::ranges::find(m_profiles, id, &BrowserProfile::id);
    if (found == m_profiles.end())
        return;
    found->isBrowserRunning = false;
    const QModelIndex row = index(static_cast<int>(found - m_profiles.begin()));
    Q_EMIT dataChanged(row, row);
}

int BrowserProfileListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_profiles.size());
}

QVariant BrowserProfileListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const BrowserProfile &profile = m_profiles.at(index.row());
    switch (role) {
    case NameRole:
        return profile.browserName;
    case IconRole:
        return profile.icon.value_or(QString());
    case CacheSizeTextRole:
        return formatByteCount(profile.cacheSize);
    case IsRunningRole:
        return profile.isBrowserRunning;
    default:
        return {};
    }
}

QHash<int, QByteArray> BrowserProfileListModel::roleNames() const
{
    return {
        {NameRole, "name"},
        {IconRole, "icon"},
        {CacheSizeTextRole, "cacheSizeText"},
        {IsRunningRole, "isRunning"},
    };
}

} // namespace Quillmere
